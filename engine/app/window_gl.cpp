#include "app/window_gl.h"

#include "core/console.h"
#include "core/gl_api.h"

namespace vorn {
namespace {

unsigned int g_mode = GLUT_RGBA | GLUT_SINGLE;

}  // namespace

void SetDisplayMode(unsigned int mode) {
  g_mode = mode;
  glutInitDisplayMode(mode);
}

int CreateEngineWindow(const std::string& title) {
  // GLUT ends the process when it finds no visual for the mode: ask first.
  if ((g_mode & GLUT_MULTISAMPLE) && !glutGet(GLUT_DISPLAY_MODE_POSSIBLE)) {
    console::print("No multisample visual on this display; the window opens without multisampling.");
    SetDisplayMode(g_mode & ~static_cast<unsigned int>(GLUT_MULTISAMPLE));
  }
  return glutCreateWindow(title.c_str());
}

}  // namespace vorn
