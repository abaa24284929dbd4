// Screen picking through the active camera, the gizmo's selection and drag, and the
// ground height of the terrain registry.
//
// Nothing here walks the objects: each node tests the frame's pick ray in its own draw
// and selects itself through Select3DObject; the gizmo tests itself in its draw.
#include <string>

#include "camera/camera.h"
#include "core/errors.h"
#include "node/game_node.h"
#include "overlay/axis.h"
#include "scene/scene.h"

namespace vorn {
namespace {

Vorn_3DCamera& active_camera(const NodeScene::NodePtr& node, const char* where) {
  auto* camera = dynamic_cast<Vorn_3DCamera*>(node.get());
  if (!camera) throw AttributeError(std::string("Vorn_3Dcene.") + where + ": the scene has no active camera");
  return *camera;
}

}  // namespace

void Vorn_3Dcene::Select3DObject(const NodePtr& object3D, std::optional<std::string> axisType) {
  if (!CurrObjectAxis) return;
  CurrObjectAxis->Binding(object3D);
  CurrObjectAxis->SetType(std::move(axisType));
}

void Vorn_3Dcene::Select3DObjectByTag(const std::string& tagName, std::optional<std::string> axisType) {
  Select3DObject(Quey3DObjectByTag(tagName), std::move(axisType));
}

std::pair<Vector3, Vector3> Vorn_3Dcene::ScreenPtTo3DPointAndDir(double px, double py) {
  return active_camera(ActiveCamera, "ScreenPtTo3DPointAndDir").ScreenPtTo3DPointAndDir(px, py);
}

std::pair<Vector3, Vector3> Vorn_3Dcene::GetScree3DPointAndDir() {
  return active_camera(ActiveCamera, "GetScree3DPointAndDir").ScreenPtTo3DPointAndDir(MouseX, MouseY, false);
}

bool Vorn_3Dcene::CheckPickAxis(double px, double py, bool Immediate) {
  const auto [Pt, Dir] = Immediate ? active_camera(ActiveCamera, "CheckPickAxis").ScreenPtTo3DPointAndDir(px, py)
                                   : GetScree3DPointAndDir();
  // The gizmo's answer (a pick result) is never equal to true; only PickedAxis counts.
  if (CurrObjectAxis) CurrObjectAxis->checkPick(Pt, Dir);
  return false;
}

bool Vorn_3Dcene::BeginDragAxis(double offsetX, double offsetY) {
  return CurrObjectAxis ? CurrObjectAxis->Drag(offsetX, offsetY) : false;
}

void Vorn_3Dcene::EndDragAxis() {
  if (CurrObjectAxis) CurrObjectAxis->ReleaseDrag();
}

double Vorn_3Dcene::Get3DTerrainY(double x, double z) {
  // GroundHeightAt is engine code that runs no script (scripts can't override it), so the
  // registry can't change during a query and its entries need no extra hold: this runs
  // for every vertex a patch drops onto the ground.
  for (const NodePtr& node : ObjectArray_3DTerrain) {
    if (const auto Y = node->GroundHeightAt(x, z)) return *Y;
  }
  return 0.0;
}

}  // namespace vorn
