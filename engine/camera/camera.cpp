// Camera data, view matrix, targeting, movement and the per-frame update (no GL).
#include "camera/camera.h"

#include <string>

#include "core/console.h"
#include "core/errors.h"
#include "core/screen_settings.h"

namespace vorn {

Vorn_3DCamera::Vorn_3DCamera(double x_, double y_, double z_, const NodePtr& parent_)
    : Vorn_3DGameNode(x_, y_, z_, parent_) {
  NodeType = "3DCameara";
  if (SCREEN_HEIGHT == 0) throw ZeroDivisionError("Vorn_3DCamera: SCREEN_HEIGHT is 0, the aspect is undefined");
  Aspect = static_cast<double>(SCREEN_WIDTH) / static_cast<double>(SCREEN_HEIGHT);
}

std::shared_ptr<NodeScene> Vorn_3DCamera::RequireScene(const char* where) const {
  auto scene = sceneInstance.lock();
  if (!scene) {
    throw AttributeError(std::string("Vorn_3DCamera.") + where + ": the camera has no sceneInstance (OnLoad it first)");
  }
  return scene;
}

bool Vorn_3DCamera::IsRendering(const NodeScene& scene) const {
  return !RenderTargetArray.empty() || scene.GetActiveCamera().get() == this;
}

FloatList16 Vorn_3DCamera::BuildViewMatrix(const Vector3& Eye, const Vector3& Target, const Vector3& UpDir) noexcept {
  Vector3 zaxis = Eye - Target;
  zaxis.normalize();
  Vector3 xaxis = UpDir.cross(zaxis);
  xaxis.normalize();
  Vector3 yaxis = zaxis.cross(xaxis);
  yaxis.normalize();
  const Vector3 NegativeEye(-Eye.x, -Eye.y, -Eye.z);
  // Row-vector convention: the camera axes stand in the columns, the translation in
  // the last row.
  return {xaxis.x, yaxis.x, zaxis.x, 0.0,  //
          xaxis.y, yaxis.y, zaxis.y, 0.0,  //
          xaxis.z, yaxis.z, zaxis.z, 0.0,  //
          xaxis.dot(NegativeEye), yaxis.dot(NegativeEye), zaxis.dot(NegativeEye), 1.0};
}

Vorn_3DCamera::Ptr Vorn_3DCamera::CloneCamera() {
  auto scene = sceneInstance.lock();
  auto camera = MakeNode<Vorn_3DCamera>(0.0, 0.0, 0.0, shared_from_this());
  camera->xyzIntMask = 0;
  camera->InitPrespective(Fov, Aspect, Near, Far);
  camera->OnLoad(scene);
  camera->LookAt(0, 0, 0);
  camera->targetIntMask = Vector3::kAllInt;
  return camera;
}

void Vorn_3DCamera::Active() {
  auto scene = sceneInstance.lock();
  if (!scene) {
    console::print("No SceneInstance");
    return;
  }
  scene->SetActiveCamera(shared_from_this());
}

Vector3 Vorn_3DCamera::GetTargetPosition() const {
  if (auto node = tagetNode.lock()) return node->GetWorldXYZ();
  return {targetX, targetY, targetZ, targetIntMask};
}

// ---- Movement ----
// Every move starts from the target position; positions are read from the world
// matrix of the last update and written to the local position.

void Vorn_3DCamera::SetDistance(double distance) {
  const Vector3 targetPos = GetTargetPosition();
  Vector3 moveDir = GetWorldXYZ() - targetPos;
  moveDir.normalize();
  const Vector3 pos = targetPos + moveDir * distance;
  SetXYZ(pos.x, pos.y, pos.z);
}

void Vorn_3DCamera::MoveFront(double distance) {
  const Vector3 targetPos = GetTargetPosition();
  // With the eye at the target the direction stays zero and the camera stays.
  Vector3 moveDir = targetPos - GetWorldXYZ();
  moveDir.normalize();
  moveDir = moveDir * distance;
  MoveXYZ(moveDir.x, moveDir.y, moveDir.z);
}

void Vorn_3DCamera::MoveBack(double distance) {
  const Vector3 targetPos = GetTargetPosition();
  Vector3 moveDir = GetWorldXYZ() - targetPos;
  moveDir.normalize();
  moveDir = moveDir * distance;
  MoveXYZ(moveDir.x, moveDir.y, moveDir.z);
}

namespace {

// Sideways pan of eye and target along moveDir x up. The sign of moveDir decides the
// side; MoveRight's is the one that lets the picture follow a dragging mouse.
void pan_sideways(Vorn_3DCamera& cam, Vector3 targetPos, Vector3 moveDir, double distance) {
  moveDir.normalize();
  const Vector3 upDir(cam.upDirX, cam.upDirY, cam.upDirZ);
  Vector3 rightDir = moveDir.cross(upDir);
  rightDir.normalize();
  rightDir = rightDir * distance;
  targetPos = targetPos + rightDir;
  cam.LookAt(targetPos.x, targetPos.y, targetPos.z);
  cam.MoveXYZ(rightDir.x, rightDir.y, rightDir.z);
}

}  // namespace

void Vorn_3DCamera::MoveLeft(double distance) {
  const Vector3 targetPos = GetTargetPosition();
  pan_sideways(*this, targetPos, targetPos - GetWorldXYZ(), distance);
}

void Vorn_3DCamera::MoveRight(double distance) {
  const Vector3 targetPos = GetTargetPosition();
  pan_sideways(*this, targetPos, GetWorldXYZ() - targetPos, distance);
}

void Vorn_3DCamera::MoveUp(double distance) {
  const Vector3 upDir = Vector3(upDirX, upDirY, upDirZ) * distance;
  const Vector3 targetPos = GetTargetPosition() + upDir;
  LookAt(targetPos.x, targetPos.y, targetPos.z);
  MoveXYZ(upDir.x, upDir.y, upDir.z);
}

void Vorn_3DCamera::MoveDown(double distance) {
  const Vector3 upDir = Vector3(upDirX, upDirY, upDirZ) * distance;
  const Vector3 targetPos = GetTargetPosition() - upDir;
  LookAt(targetPos.x, targetPos.y, targetPos.z);
  MoveXYZ(-upDir.x, -upDir.y, -upDir.z);
}

void Vorn_3DCamera::RotateX(double rx_) {
  // The front vector is read (a caught node standing on the ground asks the scene for
  // its height) but an orbit is not made: only the angle is kept for scripts.
  [[maybe_unused]] const double Length = (GetTargetPosition() - GetWorldXYZ()).length();
  rotateX += rx_;
}

void Vorn_3DCamera::RotateY(double ry_) {
  [[maybe_unused]] const double Length = (GetTargetPosition() - GetWorldXYZ()).length();
  rotateY += ry_;
}

// ---- Per frame ----

void Vorn_3DCamera::update(double delay) {
  Vorn_3DGameNode::update(delay);
  auto scene = RequireScene("update");
  if (!IsRendering(*scene)) return;
  if (auto node = tagetNode.lock()) {
    const Vector3 pos = node->GetWorldXYZ();
    targetX = pos.x, targetY = pos.y, targetZ = pos.z;
    targetIntMask = pos.intMask;
  }
}

// ---- Follow camera of the node ----

// The node's operation that needs the camera class: the node declares it, the camera
// subsystem defines it, so the node layer never names a class above it.
Vorn_3DGameNode::Ptr Vorn_3DGameNode::CreateFollowCamera(double cx, double cy, double cz) {
  if (!FollowCamera) FollowCamera = MakeNode<Vorn_3DCamera>();
  Ptr camera = FollowCamera;
  camera->SetXYZ(cx, cy, cz);
  auto* cam = dynamic_cast<Vorn_3DCamera*>(camera.get());
  if (!cam) throw TypeError("Vorn_3DGameNode.CreateFollowCamera: FollowCamera is not a Vorn_3DCamera");
  cam->Catch(shared_from_this());
  camera->Follow(shared_from_this());
  return camera;
}

}  // namespace vorn
