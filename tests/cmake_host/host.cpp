// The smallest host of the installed engine: opens a GLUT window, builds a scene with a
// red box in front of the camera on a blue background, draws one frame and checks the
// centre pixel (the box) and a corner pixel (the background).
//   vorn3d_host <resource folder>
#include <cstdio>
#include <exception>
#include <filesystem>

#include "app/window_gl.h"
#include "core/gl_api.h"
#include "core/screen_settings.h"
#include "node/game_node.h"
#include "resource/res_manager.h"
#include "scene/scene.h"

namespace {

struct RGB {
  int r, g, b;
};

// A window pixel, y from the bottom as GL counts.
RGB pixel(int x, int y) {
  unsigned char p[4] = {0, 0, 0, 0};
  glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
  return {p[0], p[1], p[2]};
}

int run(const char* resdir) {
  using namespace vorn;
  if (!CanOpenDisplay()) {
    std::fprintf(stderr, "vorn3d_host: no display\n");
    return 1;
  }
  int argc = 1;
  char name[] = "vorn3d_host";
  char* argv[] = {name, nullptr};
  glutInit(&argc, argv);
  SCREEN_WIDTH = 160;
  SCREEN_HEIGHT = 120;
  SetDisplayMode(GLUT_SINGLE | GLUT_RGBA | GLUT_DEPTH);
  glutInitWindowSize(SCREEN_WIDTH, SCREEN_HEIGHT);
  CreateEngineWindow("vorn3d host");

  auto resources = PyGameResManager::Create(resdir);
  auto scene = Vorn_3Dcene::Create();
  scene->InitGL(SCREEN_WIDTH, SCREEN_HEIGHT);
  scene->SetBGColor(0.0, 0.0, 1.0);
  auto box = scene->CreateBox(0.0, 0.0, 0.0, nullptr, 2.0, 2.0, 2.0);
  box->SetMeshColor(1.0, 0.0, 0.0, 1.0);
  scene->DrawScene();
  glFinish();

  const RGB centre = pixel(SCREEN_WIDTH / 2, SCREEN_HEIGHT / 2);
  const RGB corner = pixel(1, 1);
  std::printf("centre %d %d %d, corner %d %d %d\n", centre.r, centre.g, centre.b, corner.r, corner.g, corner.b);
  const bool boxDrawn = centre.r > 100 && centre.r > centre.b + 60;
  const bool background = corner.b > 200 && corner.r < 40 && corner.g < 40;
  return boxDrawn && background ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: vorn3d_host <resource folder>\n");
    return 2;
  }
  try {
    return run(argv[1]);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "vorn3d_host: %s\n", e.what());
    return 1;
  }
}
