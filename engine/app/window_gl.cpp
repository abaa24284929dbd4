#include "app/window_gl.h"

#include <X11/Xlib.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "core/console.h"
#include "core/gl_api.h"

namespace vorn {
namespace {

unsigned int g_mode = GLUT_RGBA | GLUT_SINGLE;

}  // namespace

bool CanOpenDisplay(const char* name, double waitSeconds) {
  if (!name && !std::getenv("DISPLAY")) return false;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(waitSeconds);
  for (;;) {
    if (Display* display = XOpenDisplay(name)) {
      XCloseDisplay(display);
      return true;
    }
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
}

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
