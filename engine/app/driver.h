#pragma once
// The five GLUT callbacks of a host: they are the only code that knows GLUT events and
// reach everything else through the scene bound to the module global openGLScene.
#include <exception>
#include <optional>
#include <string>

namespace vorn {

// Input state of the callbacks. GLUT reports a press as 0 (GLUT_DOWN), so a key value
// of 0 means "held".
struct DriverInput {
  std::optional<int> last_x;
  std::optional<int> last_y;
  int rotateKey = 1;
  int dragKey = 1;
};
inline DriverInput driverInput;

// Display and idle: one frame of openGLScene.
void DrawFunc();
void MouseFunc(int btn, int state, int x, int y);
void MotionFunc(int x, int y);
// keyText is the key as the host prints it ("b'a'" for a byte, "100" for a special key).
void KeyboardFunc(const std::string& keyText, int x, int y);
void ChangeSizeFunc(int w, int h);

// GLUT calls a host's callbacks from C frames that no C++ exception may cross. A native
// host runs each callback's body through AtCallbackBoundary: the first exception is
// kept and the main loop ends; RunMainLoop then throws it in the host.
void KeepCallbackError(std::exception_ptr error) noexcept;
template <class Fn>
void AtCallbackBoundary(Fn&& body) noexcept {
  try {
    body();
  } catch (...) {
    KeepCallbackError(std::current_exception());
  }
}
// Throws (once) the exception a callback kept, if any.
void RethrowCallbackError();
// GLUT's events and `idle` (when given, also through the boundary) until the window
// closes or a callback fails; then throws what the callback threw. Unlike GLUT's own
// loop it leaves GLUT, the window and its context in place.
void RunMainLoop(void (*idle)());

}  // namespace vorn
