#include "gl_harness.h"

#include <GL/freeglut.h>

#include <cstdlib>

namespace vorn::test {

bool EnsureGLContext() {
  static const bool ready = [] {
    if (!std::getenv("DISPLAY")) return false;
    int argc = 1;
    char name[] = "vorn_tests";
    char* argv[] = {name, nullptr};
    glutInit(&argc, argv);
    glutInitDisplayMode(GLUT_SINGLE | GLUT_RGBA | GLUT_DEPTH);
    glutInitWindowSize(kWindowWidth, kWindowHeight);
    glutCreateWindow("vorn_tests");
    return true;
  }();
  return ready;
}

}  // namespace vorn::test
