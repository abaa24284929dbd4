#include "app/screenshot_gl.h"

#include <spng.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "core/console.h"
#include "core/errors.h"
#include "core/gl_api.h"
#include "core/gl_context.h"

namespace vorn {

namespace {

// Reading the window needs GLUT (its height) and the window's context.
void require_window(const char* operation) {
  RequireGlutInit(operation);
  RequireGLContext(operation);
}

}  // namespace

std::string ReadWindowPixels(int x, int y, int width, int height) {
  require_window("ReadScreenPixels");
  if (width < 0 || height < 0) throw ValueError("ReadScreenPixels: width and height must not be negative");
  // Pixels outside the window have no defined value; a rectangle reaching past it is
  // refused before anything is allocated (sums in 64 bits: the values may be huge).
  const int windowWidth = glutGet(GLUT_WINDOW_WIDTH);
  const int windowHeight = glutGet(GLUT_WINDOW_HEIGHT);
  if (x < 0 || y < 0 || std::int64_t{x} + width > windowWidth || std::int64_t{y} + height > windowHeight) {
    throw ValueError("ReadScreenPixels: the rectangle (" + std::to_string(x) + ", " + std::to_string(y) + ", " +
                     std::to_string(width) + ", " + std::to_string(height) + ") is not inside the " +
                     std::to_string(windowWidth) + "x" + std::to_string(windowHeight) + " window");
  }
  glFinish();
  std::string rgb(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3, '\0');
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glReadBuffer(GL_FRONT);
  glReadPixels(x, windowHeight - y - height, width, height, GL_RGB, GL_UNSIGNED_BYTE, rgb.data());
  // GL rows run bottom-up; callers get them top-down.
  std::string flipped(rgb.size(), '\0');
  const std::size_t row = static_cast<std::size_t>(width) * 3;
  for (int r = 0; r < height; ++r) {
    rgb.copy(&flipped[static_cast<std::size_t>(r) * row], row, static_cast<std::size_t>(height - 1 - r) * row);
  }
  return flipped;
}

bool SaveWindowPNG(const std::string& path, int width, int height) {
  require_window("SaveScreenshot");
  if (width <= 0 || height <= 0) return false;
  // A size larger than the window (SCREEN_WIDTH set by hand) saves what the window has.
  width = std::min(width, glutGet(GLUT_WINDOW_WIDTH));
  height = std::min(height, glutGet(GLUT_WINDOW_HEIGHT));
  if (width <= 0 || height <= 0) return false;
  const std::string flipped = ReadWindowPixels(0, 0, width, height);

  std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "wb"), &std::fclose);
  if (!file) {
    console::print("Screenshot: cannot write", path);
    return false;
  }
  std::unique_ptr<spng_ctx, void (*)(spng_ctx*)> ctx(spng_ctx_new(SPNG_CTX_ENCODER), &spng_ctx_free);
  spng_ihdr ihdr{};
  ihdr.width = static_cast<uint32_t>(width);
  ihdr.height = static_cast<uint32_t>(height);
  ihdr.bit_depth = 8;
  ihdr.color_type = SPNG_COLOR_TYPE_TRUECOLOR;
  int err = spng_set_png_file(ctx.get(), file.get());
  if (!err) err = spng_set_ihdr(ctx.get(), &ihdr);
  if (!err) err = spng_encode_image(ctx.get(), flipped.data(), flipped.size(), SPNG_FMT_PNG, SPNG_ENCODE_FINALIZE);
  if (err) {
    console::print("Screenshot: PNG encoding failed:", spng_strerror(err));
    return false;
  }
  return true;
}

}  // namespace vorn
