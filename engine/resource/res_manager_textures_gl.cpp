// Generated GL textures: the ambient occlusion noise and render-target textures.
#include <cstdint>
#include <string>
#include <vector>

#include "core/errors.h"
#include "core/gl_api.h"
#include "core/gl_state_guard.h"
#include "core/math_util.h"
#include "core/screen_settings.h"
#include "resource/frame_buffer_gl.h"
#include "resource/res_manager.h"

namespace vorn {
namespace {

// ValueError for a side the driver can't hold; the checks run before any GL object
// is made, so a refused call leaves nothing behind.
void check_side(int side, GLenum limitName, const char* where, const char* what) {
  if (side < 0) throw ValueError(std::string("PyGameResManager.") + where + ": " + what + " must not be negative");
  GLint limit = 0;
  glGetIntegerv(limitName, &limit);
  if (limit > 0 && side > limit) {
    throw ValueError(std::string("PyGameResManager.") + where + ": " + what + " " + std::to_string(side) +
                     " exceeds the driver's limit of " + std::to_string(limit));
  }
}

}  // namespace

unsigned PyGameResManager::AddSSAORandTexture(int Width, int Height) {
  gl_state::CheckContext("PyGameResManager.AddSSAORandTexture");
  check_side(Width, GL_MAX_TEXTURE_SIZE, "AddSSAORandTexture", "Width");
  check_side(Height, GL_MAX_TEXTURE_SIZE, "AddSSAORandTexture", "Height");

  // R and G random, B 0. The pixels go up as RGBA with an opaque alpha: four bytes a
  // pixel need no row padding whatever the width.
  const std::size_t pixels = static_cast<std::size_t>(Width) * static_cast<std::size_t>(Height);
  std::vector<std::uint8_t> imgData(pixels * 4);
  for (std::size_t i = 0; i < pixels; ++i) {
    imgData[i * 4 + 0] = static_cast<std::uint8_t>(static_cast<int>(RANDOM01() * 255));
    imgData[i * 4 + 1] = static_cast<std::uint8_t>(static_cast<int>(RANDOM01() * 255));
    imgData[i * 4 + 2] = 0;
    imgData[i * 4 + 3] = 255;
  }

  GLuint texID = 0;
  glGenTextures(1, &texID);
  glEnable(GL_TEXTURE_2D);
  glActiveTexture(GL_TEXTURE0);
  glBindTexture(GL_TEXTURE_2D, texID);
  glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
  glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
  glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, Width, Height, 0, GL_RGBA, GL_UNSIGNED_BYTE, imgData.data());
  glBindTexture(GL_TEXTURE_2D, 0);

  AddDynamicTexture(texID, Width, Height, "RGB", 24);
  return texID;
}

unsigned PyGameResManager::CreateRenderTargetTexture(int texWidth, int texHeight, bool IsDepthBuffer) {
  gl_state::CheckContext("PyGameResManager.CreateRenderTargetTexture");
  const int FrameWidth = texWidth > 0 ? texWidth : SCREEN_WIDTH;
  const int FrameHeight = texHeight > 0 ? texHeight : SCREEN_HEIGHT;
  check_side(FrameWidth, GL_MAX_RENDERBUFFER_SIZE, "CreateRenderTargetTexture", "width");
  check_side(FrameHeight, GL_MAX_RENDERBUFFER_SIZE, "CreateRenderTargetTexture", "height");
  check_side(FrameWidth, GL_MAX_TEXTURE_SIZE, "CreateRenderTargetTexture", "width");
  check_side(FrameHeight, GL_MAX_TEXTURE_SIZE, "CreateRenderTargetTexture", "height");

  // The depth variant receives depth as colour through the depth FX and sets no filter.
  const ColourFrameBuffer target = CreateColourFrameBuffer(FrameWidth, FrameHeight, false, !IsDepthBuffer);
  const GLuint FrameBuffer = target.frameBuffer;
  const GLuint FrameBuffer_Texture = target.texture;
  AddDynamicTexture(FrameBuffer_Texture, FrameWidth, FrameHeight, "RGB", 24);
  RenderTargetFrameBufferDict.set(FrameBuffer_Texture, FrameBuffer);
  return FrameBuffer_Texture;
}

}  // namespace vorn
