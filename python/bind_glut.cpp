// The GLUT calls a Python host needs to open its window, and the GLUT constants.
#include <GL/freeglut.h>

#include <vector>

#include "bind_common.h"

namespace vorn::py_bind {

void bind_glut(py::module_& m) {
  m.def(
      "glutInit",
      [](std::vector<std::string> argv) {
        if (argv.empty()) argv.emplace_back("Vorn3DGameEngine");
        std::vector<char*> raw;
        for (auto& a : argv) raw.push_back(a.data());
        raw.push_back(nullptr);
        int argc = static_cast<int>(argv.size());
        glutInit(&argc, raw.data());
      },
      py::arg("argv") = std::vector<std::string>{}, "Initialises GLUT (once per process).");
  m.def("glutInitDisplayMode", [](unsigned int mode) { glutInitDisplayMode(mode); }, py::arg("mode"),
        "Selects the display mode of windows created next (GLUT_SINGLE | GLUT_RGBA | ...).");
  m.def("glutInitWindowSize", [](int width, int height) { glutInitWindowSize(width, height); }, py::arg("width"),
        py::arg("height"), "Size of windows created next.");
  m.def("glutCreateWindow", [](const std::string& title) { return glutCreateWindow(title.c_str()); },
        py::arg("title"), "Opens a window with its OpenGL context and makes it current; returns its id.");
  m.def("glutHideWindow", [] { glutHideWindow(); }, "Hides the current window.");
  m.def("glutGet", [](int what) { return glutGet(static_cast<GLenum>(what)); }, py::arg("state"),
        "Reads a GLUT state value.");

  m.attr("GLUT_RGB") = GLUT_RGB;
  m.attr("GLUT_RGBA") = GLUT_RGBA;
  m.attr("GLUT_SINGLE") = GLUT_SINGLE;
  m.attr("GLUT_DOUBLE") = GLUT_DOUBLE;
  m.attr("GLUT_DEPTH") = GLUT_DEPTH;
  m.attr("GLUT_MULTISAMPLE") = GLUT_MULTISAMPLE;
  m.attr("GLUT_DOWN") = GLUT_DOWN;
  m.attr("GLUT_UP") = GLUT_UP;
  m.attr("GLUT_LEFT_BUTTON") = GLUT_LEFT_BUTTON;
  m.attr("GLUT_MIDDLE_BUTTON") = GLUT_MIDDLE_BUTTON;
  m.attr("GLUT_RIGHT_BUTTON") = GLUT_RIGHT_BUTTON;
  m.attr("GLUT_WINDOW_WIDTH") = static_cast<int>(GLUT_WINDOW_WIDTH);
  m.attr("GLUT_WINDOW_HEIGHT") = static_cast<int>(GLUT_WINDOW_HEIGHT);
}

}  // namespace vorn::py_bind
