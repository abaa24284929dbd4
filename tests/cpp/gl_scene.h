#pragma once
// Shared set-up of the GL tests that draw nodes: one program manager for the process,
// the screen constants at the window's size, a fake scene, world units as window pixels,
// a quad builder and pixel reads; one resource manager for the tests that need one.
#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <unistd.h>

#include "console_capture.h"
#include "core/screen_settings.h"
#include "fake_scene.h"
#include "gl_harness.h"
#include "node/game_node.h"
#include "resource/res_manager.h"
#include "shader/fx_manage.h"

namespace vorn::test {

// One manager for the process: compiling the catalogue is slow on a software driver.
inline const std::shared_ptr<Vorn_FXManage>& SharedFXManager() {
  static const std::shared_ptr<Vorn_FXManage> manager = [] {
    ConsoleCapture quiet;
    return std::make_shared<Vorn_FXManage>();
  }();
  return manager;
}

// One resource manager for the process, in a folder of its own; the program manager it
// makes is put aside for the shared one.
inline const std::shared_ptr<PyGameResManager>& SharedResources() {
  static const std::shared_ptr<PyGameResManager> made = [] {
    const auto dir = std::filesystem::temp_directory_path() / ("vorn_gl_resources_" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    ConsoleCapture quiet;
    const auto savedFX = FXManagerInstance;
    auto resources = PyGameResManager::Create(dir.string());
    FXManagerInstance = savedFX;
    return resources;
  }();
  return made;
}

inline unsigned Program(int fxid) { return *SharedFXManager()->GetShader(fxid); }

using RGBA = std::array<int, 4>;

// A window pixel; y counts from the bottom as GL does.
inline RGBA Pixel(int x, int y) {
  unsigned char p[4] = {0, 0, 0, 0};
  glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
  return {p[0], p[1], p[2], p[3]};
}

// The whole window as RGBA, rows from the bottom.
inline std::vector<unsigned char> WindowPixels() {
  std::vector<unsigned char> pixels(static_cast<std::size_t>(kWindowWidth) * kWindowHeight * 4);
  glReadPixels(0, 0, kWindowWidth, kWindowHeight, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
  return pixels;
}

// A texture of w x h tightly packed texels with nearest filtering; the binding and the
// unpack alignment are left as they were.
inline GLuint MakeTexture(int w, int h, GLenum format, const void* texels) {
  GLint alignment = 4, bound = 0;
  glGetIntegerv(GL_UNPACK_ALIGNMENT, &alignment);
  glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
  GLuint tex = 0;
  glGenTextures(1, &tex);
  glBindTexture(GL_TEXTURE_2D, tex);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), w, h, 0, format, GL_UNSIGNED_BYTE, texels);
  glPixelStorei(GL_UNPACK_ALIGNMENT, alignment);
  glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(bound));
  return tex;
}

// The first three components of `got` within `tol` of `want`.
template <class A, class B>
void ExpectRGB(const A& got, const B& want, int tol, const std::string& what) {
  for (int c = 0; c < 3; ++c) EXPECT_NEAR(double(got[c]), double(want[c]), tol) << what << ", component " << c;
}

// Quad builder flags: one GL_QUADS primitive without indices (the immediate path)
// instead of two indexed triangles; texture coordinates with (0, 0) at the origin corner.
enum QuadFlags { kImmediate = 1, kUV = 2 };

class NodeGLTest : public GLTest {
 protected:
  void SetUp() override {
    GLTest::SetUp();
    if (!HasContext()) return;
    savedFX_ = FXManagerInstance;
    savedRes_ = ResManagerInstance;
    savedSize_ = {SCREEN_WIDTH, SCREEN_HEIGHT};
    savedDebug_ = DEBUG_MODE;
    FXManagerInstance = SharedFXManager();
    SCREEN_WIDTH = kWindowWidth;
    SCREEN_HEIGHT = kWindowHeight;
    scene = std::make_shared<FakeScene>();
    glViewport(0, 0, kWindowWidth, kWindowHeight);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0, kWindowWidth, 0, kWindowHeight, -10, 10);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glDisable(GL_DEPTH_TEST);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
  }
  void TearDown() override {
    if (HasContext()) {
      FXManagerInstance = savedFX_;
      ResManagerInstance = savedRes_;
      SCREEN_WIDTH = savedSize_[0];
      SCREEN_HEIGHT = savedSize_[1];
      DEBUG_MODE = savedDebug_;
      glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
      glDisable(GL_CULL_FACE);
      glDisable(GL_TEXTURE_2D);
      glDisable(GL_DEPTH_TEST);
      glActiveTexture(GL_TEXTURE0);
      glBindTexture(GL_TEXTURE_2D, 0);
      glUseProgram(0);
      glColor4f(1, 1, 1, 1);
    }
    GLTest::TearDown();
  }

  // A w x h quad facing +z with its corner at (x, y), loaded into the scene and updated.
  template <class T = Vorn_3DGameNode>
  std::shared_ptr<T> Quad(double x, double y, double w, double h, std::optional<int> fxid, int flags = 0,
                          const std::shared_ptr<Vorn_3DGameNode>& parent = nullptr) {
    auto n = MakeNode<T>(x, y, 0, parent);
    n->OnLoad(scene);
    const int s = n->CreateSubMesh("quad", (flags & kUV) != 0);
    n->PushQuadVertex_Postion(s, std::array<double, 12>{0, 0, 0, w, 0, 0, w, h, 0, 0, h, 0});
    n->PushQuadVertex_Normal(s, std::array<double, 12>{0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1});
    if ((flags & kUV)) n->PushQuadVertex_UV(s, std::array<double, 8>{0, 0, 1, 0, 1, 1, 0, 1});
    if (!(flags & kImmediate)) {
      n->PushTriangleVIndex(s, 0, 1, 2);
      n->PushTriangleVIndex(s, 0, 2, 3);
    } else {
      n->SetSubMeshShapeType(s, glc::QUADS);
    }
    n->BuildVBO();
    if (fxid) {
      ConsoleCapture quiet;  // ApplyFX prints the program's source
      n->ApplyFX(*fxid);
    }
    n->update(0);
    return n;
  }

  std::shared_ptr<FakeScene> scene;

 private:
  std::shared_ptr<Vorn_FXManage> savedFX_;
  std::shared_ptr<PyGameResManager> savedRes_;
  std::array<int, 2> savedSize_{};
  bool savedDebug_ = true;
};

}  // namespace vorn::test
