#include "gl_harness.h"

#include <GL/freeglut.h>

#include <cstdlib>

#include "app/window_gl.h"

namespace vorn::test {

bool EnsureGLContext() {
  static const bool ready = [] {
    // A display that cannot be opened would end the test process inside GLUT.
    if (!CanOpenDisplay(nullptr, 10.0)) return false;
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
