// The GLUT calls a Python host needs to open its window and run the main loop, and
// the GLUT constants. Python callables registered as callbacks are called from GLUT's
// C frames: an exception they raise must not unwind through those frames, so it is
// caught at the callback boundary, the main loop is left, and glutMainLoop() raises
// it again in the script. GLUT ends the process on misuse (a call before glutInit, a
// window call with no window, a display callback of None); each such call is refused
// here with a Python exception first.
#include <GL/freeglut.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "app/window_gl.h"
#include "bind_common.h"
#include "core/errors.h"
#include "core/gl_context.h"

namespace vorn::py_bind {
namespace {

struct CallbackSlots {
  py::object display, idle, mouse, motion, passive_motion, keyboard, special, reshape;
  // The first exception raised by a callback since the main loop started.
  std::optional<py::error_already_set> pending;
  bool leave = false;
};

// Allocated once and cleared at interpreter exit, so no Python object outlives Python.
CallbackSlots& slots() {
  static auto* s = new CallbackSlots();
  return *s;
}

template <class... Args>
void invoke(const py::object& callback, Args&&... args) {
  if (!callback || callback.is_none() || slots().pending) return;
  py::gil_scoped_acquire gil;
  try {
    callback(std::forward<Args>(args)...);
  } catch (py::error_already_set& e) {
    slots().pending.emplace(std::move(e));
    slots().leave = true;
  } catch (const std::exception& e) {
    // Callables bound from C++ already turn engine exceptions into Python ones; this
    // only guards against anything else escaping into GLUT.
    PyErr_SetString(PyExc_RuntimeError, e.what());
    slots().pending.emplace();
    slots().leave = true;
  } catch (...) {
    PyErr_SetString(PyExc_RuntimeError, "GLUT callback: unknown C++ exception");
    slots().pending.emplace();
    slots().leave = true;
  }
}

// Raises, in the script, the exception a callback raised.
void raise_pending() {
  auto& s = slots();
  if (!s.pending) return;
  auto error = std::move(*s.pending);
  s.pending.reset();
  if (error.type()) throw error;
  throw py::error_already_set();
}

void display_cb() { invoke(slots().display); }
void idle_cb() { invoke(slots().idle); }
void mouse_cb(int btn, int state, int x, int y) { invoke(slots().mouse, btn, state, x, y); }
void motion_cb(int x, int y) { invoke(slots().motion, x, y); }
void passive_motion_cb(int x, int y) { invoke(slots().passive_motion, x, y); }
void keyboard_cb(unsigned char key, int x, int y) {
  // Ordinary keys arrive as one byte, as a Python GLUT layer hands them over.
  const char k = static_cast<char>(key);
  invoke(slots().keyboard, py::bytes(&k, 1), x, y);
}
void special_cb(int key, int x, int y) { invoke(slots().special, key, x, y); }
void reshape_cb(int w, int h) { invoke(slots().reshape, w, h); }

// GLUT's window calls act on the current window and end the process without one.
void require_window(const char* name) {
  RequireGlutInit(name);
  if (glutGetWindow() == 0) throw RuntimeError(std::string(name) + ": no window; call glutCreateWindow() first");
}

enum class Needs { Init, Window };

// Stores a Python callable (or None, which unregisters) and tells GLUT.
template <class Fn>
void set_callback(py::object& slot, py::object callable, void (*register_fn)(Fn), Fn trampoline, const char* name,
                  Needs needs = Needs::Window) {
  if (!callable.is_none() && !PyCallable_Check(callable.ptr())) {
    throw py::type_error(std::string(name) + ": func must be callable or None");
  }
  if (needs == Needs::Window) {
    require_window(name);
  } else {
    RequireGlutInit(name);
  }
  slot = std::move(callable);
  register_fn(slot.is_none() ? nullptr : trampoline);
}

// Python's signal handlers only set a flag; a loop that runs no Python code between
// events must look at it, or Ctrl-C would never reach the script.
void check_signals() {
  if (PyErr_CheckSignals() != 0) throw py::error_already_set();
}

}  // namespace

void bind_glut(py::module_& m) {
  py::module_::import("atexit").attr("register")(py::cpp_function([] {
    auto& s = slots();
    s.display = s.idle = s.mouse = s.motion = s.passive_motion = s.keyboard = s.special = s.reshape = py::object();
    s.pending.reset();
  }));

  m.def(
      "glutInit",
      [](std::vector<std::string> argv) {
        if (glutGet(GLUT_INIT_STATE)) return;  // a second init is harmless
        if (argv.empty()) argv.emplace_back("Vorn3DGameEngine");
        std::vector<char*> raw;
        for (auto& a : argv) raw.push_back(a.data());
        raw.push_back(nullptr);
        // GLUT ends the process when the display cannot be opened: refuse first.
        const char* display = nullptr;
        for (std::size_t i = 0; i + 1 < argv.size(); ++i)
          if (argv[i] == "-display") display = argv[i + 1].c_str();
        if (!CanOpenDisplay(display)) {
          const char* shown = display ? display : std::getenv("DISPLAY");
          throw RuntimeError(std::string("glutInit: cannot open the display ") +
                             (shown ? std::string("'") + shown + "'" : std::string("(DISPLAY is not set)")));
        }
        int argc = static_cast<int>(argv.size());
        glutInit(&argc, raw.data());
        // Closing the window ends glutMainLoop() instead of the process.
        glutSetOption(GLUT_ACTION_ON_WINDOW_CLOSE, GLUT_ACTION_CONTINUE_EXECUTION);
      },
      py::arg("argv") = std::vector<std::string>{}, "Initialises GLUT (once per process).");
  m.def("glutInitDisplayMode", [](unsigned int mode) { SetDisplayMode(mode); }, py::arg("mode"),
        "Selects the display mode of windows created next (GLUT_SINGLE | GLUT_RGBA | ...).");
  m.def("glutInitWindowSize", [](int width, int height) { glutInitWindowSize(width, height); }, py::arg("width"),
        py::arg("height"), "Size of windows created next.");
  m.def("glutInitWindowPosition", [](int x, int y) { glutInitWindowPosition(x, y); }, py::arg("x"), py::arg("y"),
        "Position of windows created next.");
  m.def(
      "glutCreateWindow",
      [](const std::string& title) {
        RequireGlutInit("glutCreateWindow");
        const int window = CreateEngineWindow(title);
        // GLUT ends the process when it has to show a window without a display callback;
        // every new window starts with the script's one (which may still be unset: then
        // showing it does nothing until glutDisplayFunc gives it one).
        glutDisplayFunc(&display_cb);
        return window;
      },
      py::arg("title"),
      "Opens a window with its OpenGL context and makes it current; returns its id. Where\n"
      "the display has no multisample visual, the window opens without multisampling.");
  m.def(
      "glutHideWindow",
      [] {
        require_window("glutHideWindow");
        glutHideWindow();
      },
      "Hides the current window.");
  m.def(
      "glutShowWindow",
      [] {
        require_window("glutShowWindow");
        glutShowWindow();
      },
      "Shows the current window.");
  m.def(
      "glutReshapeWindow",
      [](int w, int h) {
        require_window("glutReshapeWindow");
        glutReshapeWindow(w, h);
      },
      py::arg("width"), py::arg("height"), "Asks for a new size of the current window.");
  m.def(
      "glutPostRedisplay",
      [] {
        require_window("glutPostRedisplay");
        glutPostRedisplay();
      },
      "Asks for a display callback.");
  m.def(
      "glutGet",
      [](int what) {
        // These two GLUT answers before glutInit; everything else needs it.
        if (what != GLUT_INIT_STATE && what != GLUT_ELAPSED_TIME) RequireGlutInit("glutGet");
        return glutGet(static_cast<GLenum>(what));
      },
      py::arg("state"), "Reads a GLUT state value.");

  m.def(
      "glutDisplayFunc",
      [](py::object f) {
        // GLUT has no "no display callback": it ends the process when given none.
        if (f.is_none()) throw py::type_error("glutDisplayFunc: func must be callable; GLUT needs a display callback");
        set_callback(slots().display, std::move(f), &glutDisplayFunc, &display_cb, "glutDisplayFunc");
      },
      py::arg("func"), "Registers the display callback func() (None is refused: GLUT needs one).");
  m.def(
      "glutIdleFunc",
      [](py::object f) { set_callback(slots().idle, std::move(f), &glutIdleFunc, &idle_cb, "glutIdleFunc", Needs::Init); },
      py::arg("func"), "Registers the idle callback func().");
  m.def(
      "glutMouseFunc",
      [](py::object f) { set_callback(slots().mouse, std::move(f), &glutMouseFunc, &mouse_cb, "glutMouseFunc"); },
      py::arg("func"), "Registers func(btn, state, x, y) for mouse presses and releases.");
  m.def(
      "glutMotionFunc",
      [](py::object f) { set_callback(slots().motion, std::move(f), &glutMotionFunc, &motion_cb, "glutMotionFunc"); },
      py::arg("func"), "Registers func(x, y) for motion with a button held.");
  m.def(
      "glutPassiveMotionFunc",
      [](py::object f) {
        set_callback(slots().passive_motion, std::move(f), &glutPassiveMotionFunc, &passive_motion_cb,
                     "glutPassiveMotionFunc");
      },
      py::arg("func"), "Registers func(x, y) for motion without a button.");
  m.def(
      "glutKeyboardFunc",
      [](py::object f) {
        set_callback(slots().keyboard, std::move(f), &glutKeyboardFunc, &keyboard_cb, "glutKeyboardFunc");
      },
      py::arg("func"), "Registers func(key, x, y); key is one byte (bytes).");
  m.def(
      "glutSpecialFunc",
      [](py::object f) { set_callback(slots().special, std::move(f), &glutSpecialFunc, &special_cb, "glutSpecialFunc"); },
      py::arg("func"), "Registers func(key, x, y) for special keys; key is an int (GLUT_KEY_...).");
  m.def(
      "glutReshapeFunc",
      [](py::object f) { set_callback(slots().reshape, std::move(f), &glutReshapeFunc, &reshape_cb, "glutReshapeFunc"); },
      py::arg("func"), "Registers func(w, h) for window size changes.");

  m.def(
      "glutMainLoop",
      [] {
        RequireGlutInit("glutMainLoop");
        // Our own loop over glutMainLoopEvent: GLUT's loop tears GLUT down when it
        // returns, which would take the window and its context with it.
        auto& s = slots();
        s.pending.reset();
        s.leave = false;
        // Whatever ends the loop, the next one starts clean.
        struct ClearLeave {
          ~ClearLeave() { slots().leave = false; }
        } clear_leave;
        while (!s.leave && !s.pending && glutGetWindow() != 0) {
          glutMainLoopEvent();
          if (s.leave || s.pending || glutGetWindow() == 0) break;
          if (s.idle && !s.idle.is_none()) {
            idle_cb();
          } else {
            // Other Python threads run while the loop waits.
            py::gil_scoped_release released;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
          }
          check_signals();
        }
        raise_pending();
      },
      "Runs the main loop: window events, the display callback when asked for, and the idle\n"
      "callback, until glutLeaveMainLoop() or the window closes. An exception raised by a\n"
      "callback ends the loop and is raised again here; so does Ctrl-C (KeyboardInterrupt).");
  m.def(
      "glutLeaveMainLoop", [] { slots().leave = true; }, "Ends the main loop after the current callback.");
  m.def(
      "glutMainLoopEvent",
      [] {
        RequireGlutInit("glutMainLoopEvent");
        glutMainLoopEvent();
        raise_pending();
      },
      "Processes pending window events and callbacks once (for tests and custom loops).");

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
  m.attr("GLUT_KEY_LEFT") = GLUT_KEY_LEFT;
  m.attr("GLUT_KEY_RIGHT") = GLUT_KEY_RIGHT;
  m.attr("GLUT_KEY_UP") = GLUT_KEY_UP;
  m.attr("GLUT_KEY_DOWN") = GLUT_KEY_DOWN;
}

}  // namespace vorn::py_bind
