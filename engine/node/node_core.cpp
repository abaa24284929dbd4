// Identity, loading, destruction, the per-frame update and the follow camera.
#include <string>

#include "core/console.h"
#include "core/errors.h"
#include "node/game_node.h"

namespace vorn {
namespace {

EventEntry builtin_event(std::optional<std::vector<std::string>> paramNames) {
  EventEntry entry;
  entry.builtin = true;
  entry.paramNames = std::move(paramNames);
  return entry;
}

}  // namespace

Vorn_3DGameNode::Vorn_3DGameNode(double x_, double y_, double z_, const Ptr& parent_)
    : parent(parent_), x(x_), y(y_), z(z_) {
  // Loaded here, before the subclass writes its label: the automatic tag of a node
  // built under a loaded parent is "3DGameNode_<n>" whatever its class.
  if (parent_) {
    if (auto scene = parent_->GetSceneInstance()) OnLoad(scene);
  }
  for (const char* name : {"Load", "Update", "Render", "Destroy"}) {
    InnerBindingEventArray.set(name, builtin_event(std::nullopt));
  }
  for (const char* name : {"PickDown", "PickUp"}) {
    InnerBindingEventArray.set(name, builtin_event(std::vector<std::string>{"px", "py"}));
  }
  boxMin = Vector3(0, 0, 0, Vector3::kAllInt);
  boxMax = Vector3(0, 0, 0, Vector3::kAllInt);
}

Vorn_3DGameNode::~Vorn_3DGameNode() = default;

void Vorn_3DGameNode::FinishConstruction() {
  if (auto p = parent.lock()) p->AddChild(shared_from_this());
}

void Vorn_3DGameNode::OnLoad(const std::shared_ptr<NodeScene>& scene) {
  sceneInstance = scene;
  if (scene && !TagName) {
    NodeIndex = scene->GenNewGameNodeID();
    TagName = NodeType + "_" + std::to_string(NodeIndex);
  }
  // A copy: a child's load may run script code that changes this list.
  for (const auto& child : children.snapshot()) child->OnLoad(scene);
}

void Vorn_3DGameNode::OnDestroy() {
  for (const auto& child : children.snapshot()) child->OnDestroy();
  children.clear();
  BindingVarArray.clear();
  BindingEventArray.clear();
  BindingPointArray.clear();
  instanceID = -1;
}

void Vorn_3DGameNode::update(double delay) {
  // Loop rotation; the angles are not wrapped.
  if (rx_speed != 0) rx += rx_speed * delay;
  if (ry_speed != 0) ry += ry_speed * delay;
  if (rz_speed != 0) rz += rz_speed * delay;

  UpdateMatrices();
  update_skin_animation(delay);

  // Children see this frame's matrix of their parent. Each child is held while it
  // updates, since a script may take it out of the list meanwhile.
  for (std::size_t i = 0; i < children.size(); ++i) {
    Ptr child = children[i];
    child->update(delay);
  }

  // Actions and the callback come after the matrices: their moves show next frame.
  if (ActionPlayer) UpdateActionPlayer(delay);
  if (UpdateFunction) {
    auto callback = UpdateFunction.call;
    callback(*this);
  }
}

Vorn_3DGameNode::Ptr Vorn_3DGameNode::CreateFollowCamera(double cx, double cy, double cz) {
  if (!FollowCamera) {
    if (!followCameraHooks.create || !followCameraHooks.catch_target) {
      throw RuntimeError("Vorn_3DGameNode.CreateFollowCamera: no camera class is available in this build");
    }
    FollowCamera = followCameraHooks.create();
    if (!FollowCamera) throw RuntimeError("Vorn_3DGameNode.CreateFollowCamera: the camera could not be created");
  }
  Ptr camera = FollowCamera;
  camera->SetXYZ(cx, cy, cz);
  followCameraHooks.catch_target(*camera, *this);
  camera->Follow(shared_from_this());
  return camera;
}

ScriptValue Vorn_3DGameNode::FindEventOperation(const std::string&) { return {}; }

ScriptValue Vorn_3DGameNode::FindScriptSelf() { return scriptSelfHook ? scriptSelfHook(*this) : ScriptValue{}; }

void Vorn_3DGameNode::retain_owner() {
  if (ownerCount_++ == 0) scriptSelf_ = FindScriptSelf();
}

void Vorn_3DGameNode::release_owner() noexcept {
  if (ownerCount_ > 0 && --ownerCount_ == 0) {
    // Dropping the reference may end the script object; nothing touches this after.
    ScriptValue self = std::move(scriptSelf_);
  }
}

}  // namespace vorn
