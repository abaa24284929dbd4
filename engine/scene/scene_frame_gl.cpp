// InitGL and the frame: the GL-facing half of the scene.
#include <cstdio>
#include <limits>
#include <string>

#include "camera/camera.h"
#include "core/errors.h"
#include "core/gl_api.h"
#include "core/gl_state_guard.h"
#include "core/screen_settings.h"
#include "node/game_node.h"
#include "node/node_run.h"
#include "overlay/axis.h"
#include "scene/scene.h"
#include "shapes/draw_node.h"

namespace vorn {
namespace {

// Walks a registry by index, reading its length at each step: an object appended by a
// script callback during the walk takes part in the same walk.
template <class Fn>
void walk(const NodeList& list, Fn&& fn) {
  ForEachNode<WalkFor::kUpdate>(list, fn);
}
template <class Fn>
void walk_draw(const NodeList& list, Fn&& fn) {
  ForEachNode<WalkFor::kDraw>(list, fn);
}

// The same over a camera map: by position, each camera held while it runs.
template <class Fn>
void walk_map(const Vorn_3Dcene::PreviewCameraMap& map, Fn&& fn) {
  for (std::size_t i = 0; i < map.size(); ++i) {
    const NodeScene::NodePtr camera = (map.begin() + static_cast<std::ptrdiff_t>(i))->second;
    if (camera) fn(*camera);
  }
}

// A field the frame calls into; a script may have set it to None. The message is the
// one a script gets for the same call on None.
template <class T>
T& require(const Ref<T>& field, const char* operation) {
  if (!field) throw AttributeError(std::string("'NoneType' object has no attribute '") + operation + "'");
  return *field;
}

template <class Fn>
void walk_roots(const NodeList& list, Fn&& fn) {
  walk(list, [&](Vorn_3DGameNode& node) {
    if (!node.GetParent()) fn(node);
  });
}

}  // namespace

void Vorn_3Dcene::InitGL(int screenWidth, int screenHeight, double viewNear, double viewFar) {
  RequireGLContext("Vorn_3Dcene.InitGL");
  glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
  glClearDepth(1.0);
  glDepthFunc(GL_LEQUAL);
  glShadeModel(GL_SMOOTH);
  glEnable(GL_DEPTH_TEST);
  glEnable(GL_CULL_FACE);
  glCullFace(GL_BACK);
  glEnable(GL_POINT_SMOOTH);
  glEnable(GL_LINE_SMOOTH);
  glEnable(GL_POLYGON_SMOOTH);
  glEnable(GL_MULTISAMPLE);
  glDisable(GL_DITHER);
  glMatrixMode(GL_PROJECTION);
  glHint(GL_POINT_SMOOTH_HINT, GL_NICEST);
  glHint(GL_LINE_SMOOTH_HINT, GL_NICEST);
  glHint(GL_POLYGON_SMOOTH_HINT, GL_NICEST);
  glLoadIdentity();
  if (screenHeight == 0) throw ZeroDivisionError("Vorn_3Dcene.InitGL: screenHeight is 0 (float division by zero)");
  gluPerspective(45.0, static_cast<double>(screenWidth) / static_cast<double>(screenHeight), viewNear, viewFar);
  glMatrixMode(GL_MODELVIEW);
  if (auto camera = std::dynamic_pointer_cast<Vorn_3DCamera>(ActiveCamera.ptr())) camera->SetRange(viewNear, viewFar);
  ScreenWidth = screenWidth;
  ScreenHeight = screenHeight;
  glLineWidth(0.01f);
  const auto self = shared_from_this();
  require(CurrObjectAxis, "OnLoad").OnLoad(self);
  if (ActiveCamera) ActiveCamera->OnLoad(self);
  require(CurrDrawNode, "OnLoad").OnLoad(self);
}

bool Vorn_3Dcene::IsVRMode() const { return VRLeftCamera && VRRightCamera && VRLeftEyeImage && VRRightEyeImage; }

void Vorn_3Dcene::UpdatePhase(double delay) {
  auto update = [delay](Vorn_3DGameNode& node) { node.update(delay); };
  if (ActiveCamera && !ActiveCamera->GetParent()) ActiveCamera->update(delay);
  walk_map(DeferLightCamera, update);
  walk_map(SSAOCamera, update);
  walk_roots(CameraList, update);
  walk_roots(LightList, update);
  walk(ObjectArray_3D, update);
  walk(DrawNodeArray_3D, update);
  walk(ObjectArray_3DTerrain, update);
  walk(ObjectArray_3DOcean, update);
  if (sceneSkyBox) sceneSkyBox->update(delay);
  if (sceneSkyShpere) sceneSkyShpere->update(delay);
  walk(ObjectArray_2D, update);
  for (std::size_t i = 0; i < TextArray.size(); ++i) {
    auto text = TextArray[i];
    if (text) text->update(delay);
  }
  if (CurrObjectAxis) CurrObjectAxis->update(delay);
  if (CurrDrawNode) CurrDrawNode->update(delay);
}

void Vorn_3Dcene::MainPass(bool vrMode) {
  if (vrMode) {
    // Both eye cameras render the scene into their targets and the images show them.
    VRLeftCamera->draw();
    VRRightCamera->draw();
    VRLeftEyeImage->draw();
    VRRightEyeImage->draw();
    if (!VRLogoImage) {
      throw AttributeError(std::string("Vorn_3Dcene.DrawScene: VR mode needs VRLogoImage, made from the logo file ") +
                           VRLogoFile() + " under the working directory, which was not found");
    }
    VRLogoImage->draw();
    return;
  }
  const double rx = Scene_RotateV, ry = Scene_RotateH, rz = 0.0;
  // The active camera sets up projection and view for everything after it.
  if (ActiveCamera) ActiveCamera->draw();
  auto drawCamera = [](Vorn_3DGameNode& camera) { camera.draw(); };
  walk_map(DeferLightCamera, drawCamera);
  walk_map(SSAOCamera, drawCamera);
  {
    // The world's nodes share what the draw cache knows, from the first to the last.
    const NodeDrawRun run;
    auto drawInRun = [&run, rx, ry, rz](Vorn_3DGameNode& node) { run.draw(node, rx, ry, rz); };
    walk_roots(LightList, drawInRun);
    walk_draw(ObjectArray_3DTerrain, drawInRun);
    walk_draw(ObjectArray_3DOcean, drawInRun);
    walk_draw(ObjectArray_3D, drawInRun);
    walk_draw(DrawNodeArray_3D, drawInRun);
  }
  if (CurrObjectAxis) CurrObjectAxis->draw(rx, ry, rz);
  if (CurrDrawNode) CurrDrawNode->draw(rx, ry, rz);
  // The sky after the world: its depth test discards what the world covers.
  if (sceneSkyBox) sceneSkyBox->draw(rx, ry, rz);
  if (sceneSkyShpere) sceneSkyShpere->draw(rx, ry, rz);
  // 2D last, in creation order: later objects lie on top.
  walk(ObjectArray_2D, [](Vorn_3DGameNode& node) { node.draw(); });
  for (std::size_t i = 0; i < TextArray.size(); ++i) {
    auto text = TextArray[i];
    if (text) text->draw();
  }
}

void Vorn_3Dcene::DrawScene() {
  // The frame starts on the window's frame buffer; whatever a draw throws, the GL state
  // of the contract in core/gl_state_guard.h holds again when the frame is left.
  const gl_state::FrameScope frame("Vorn_3Dcene.DrawScene", {0, 0, SCREEN_WIDTH, SCREEN_HEIGHT});
  // Clock and statistics: the first frame has delay 0.
  uCurrTime = ElapsedSeconds();
  if (UpdateLastTime == 0.0) UpdateLastTime = uCurrTime;
  const double delay = uCurrTime - UpdateLastTime;
  FPSTimer += delay;
  if (FPSTimer > 0.5) {
    char text[32];
    std::snprintf(text, sizeof text, "FPS:%d", static_cast<int>(FPSCount / FPSTimer + 0.5));
    require(FPSText, "SetText").SetText(text);
    FPSTimer = 0.0;
    FPSCount = 0;
  }

  UpdatePhase(delay);
  UpdateLastTime = uCurrTime;
  const bool vrMode = IsVRMode();
  if (vrMode) {
    VRLeftCamera->update(delay);
    VRRightCamera->update(delay);
    VRLeftEyeImage->update(delay);
    VRRightEyeImage->update(delay);
  }

  // The overlay shows the previous frame's batches; this frame's count starts here.
  require(BatchText, "SetText").SetText("Batch:" + std::to_string(BatchCount));
  BatchCount = 0;

  // Render-target cameras draw before the clear, so their textures are ready.
  glViewport(0, 0, SCREEN_WIDTH, SCREEN_HEIGHT);
  glLoadIdentity();
  walk_roots(CameraList, [](Vorn_3DGameNode& camera) { camera.draw(); });

  glClearColor(static_cast<float>(BGColor[0]), static_cast<float>(BGColor[1]), static_cast<float>(BGColor[2]),
               1.0f);
  glClearDepth(1.0);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glLoadIdentity();
  const bool pickAtStart = checkPickOnce;

  MainPass(vrMode);

  // A request made during the frame (flag false at the start) waits for the next one.
  if (checkPickOnce && checkPickOnce == pickAtStart) checkPickOnce = false;
  glFlush();
  if (FPSCount < std::numeric_limits<int>::max()) ++FPSCount;
}

}  // namespace vorn
