#include "app/driver.h"

#include <chrono>
#include <thread>

#include "app/globals.h"
#include "camera/camera.h"
#include "core/console.h"
#include "core/errors.h"
#include "core/gl_api.h"
#include "core/gl_context.h"
#include "core/screen_settings.h"
#include "scene/scene.h"

namespace vorn {
namespace {

Vorn_3Dcene& scene(const char* caller) {
  if (!openGLScene) throw AttributeError(std::string(caller) + ": openGLScene is not bound to a scene");
  return *openGLScene;
}

// The camera of the main view; wheel and pan need one.
Vorn_3DCamera& active_camera(const char* caller) {
  auto camera = std::dynamic_pointer_cast<Vorn_3DCamera>(scene(caller).GetActiveCamera());
  if (!camera) throw AttributeError(std::string(caller) + ": the scene has no active camera");
  return *camera;
}

// The first exception a callback threw since it was last rethrown.
std::exception_ptr callbackError;

// Offsets are taken only when the last position is known and non-zero in both axes
// (a press at column 0 or row 0 loses the next step).
bool has_last() { return driverInput.last_x.value_or(0) != 0 && driverInput.last_y.value_or(0) != 0; }

}  // namespace

void KeepCallbackError(std::exception_ptr error) noexcept {
  if (!callbackError) callbackError = std::move(error);
}

void RethrowCallbackError() {
  if (!callbackError) return;
  std::exception_ptr error = std::move(callbackError);
  callbackError = nullptr;
  std::rethrow_exception(error);
}

void RunMainLoop(void (*idle)()) {
  RequireGlutInit("RunMainLoop");
  // Closing the window ends this loop instead of the process.
  glutSetOption(GLUT_ACTION_ON_WINDOW_CLOSE, GLUT_ACTION_CONTINUE_EXECUTION);
  while (!callbackError && glutGetWindow() != 0) {
    glutMainLoopEvent();
    if (callbackError || glutGetWindow() == 0) break;
    if (idle) {
      AtCallbackBoundary(idle);
    } else {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }
  RethrowCallbackError();
}

void DrawFunc() { scene("DrawFunc").DrawScene(); }

void MouseFunc(int btn, int state, int x, int y) {
  console::print("MouseFunc:");
  console::print("MOUSE:", x, ",", y);
  console::print("Btn:", btn, ",", state);
  auto& in = driverInput;
  if (btn == 0) {
    in.rotateKey = state;
    in.last_x = x;
    in.last_y = y;
    if (state == 0) {
      scene("MouseFunc").SetMouseXY(x, y);
    } else {
      scene("MouseFunc").EndDragAxis();
    }
  }
  if (btn == 2) {
    in.dragKey = state;
    in.last_x = x;
    in.last_y = y;
  }
  // Each wheel press and release counts, so a notch moves twice.
  if (btn == 3) active_camera("MouseFunc").MoveFront(0.1);
  if (btn == 4) active_camera("MouseFunc").MoveFront(-0.1);
}

void MotionFunc(int x, int y) {
  console::print("MotionFunc:");
  console::print("MOUSE:", x, ",", y);
  auto& in = driverInput;
  if (in.rotateKey == 0 && has_last()) {
    const double offset_x = x - *in.last_x, offset_y = y - *in.last_y;
    // When the gizmo does not take the drag, the world rotates.
    if (!scene("MotionFunc").BeginDragAxis(offset_x, offset_y)) {
      scene("MotionFunc").Rotate_H(offset_x * 0.1);
      scene("MotionFunc").Rotate_V(offset_y * 0.1);
    }
  }
  if (in.dragKey == 0 && has_last()) {
    const double offset_x = x - *in.last_x, offset_y = y - *in.last_y;
    active_camera("MotionFunc").MoveRight(offset_x * 0.01);
    active_camera("MotionFunc").MoveUp(offset_y * 0.01);
  }
  in.last_x = x;
  in.last_y = y;
}

void KeyboardFunc(const std::string& keyText, int x, int y) {
  console::print("KeyboardFunc:");
  console::print("MOUSE:", x, ",", y);
  console::print_concat("KEY:", keyText);
}

void ChangeSizeFunc(int w, int h) {
  // Only the module's size changes: the scene's ScreenWidth/Height and the cameras'
  // aspect stay, and the next frame's viewport takes the new size.
  SCREEN_WIDTH = w;
  SCREEN_HEIGHT = h;
}

}  // namespace vorn
