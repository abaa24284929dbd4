// Identity, loading, destruction, the per-frame update and the follow camera.
#include <string>
#include <typeinfo>

#include "core/console.h"
#include "core/errors.h"
#include "core/walk_depth.h"
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
    : parent(parent_), x(x_), y(y_), z(z_), parentNode_(parent_.get()) {
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
  // Every way into the children (AddChild, SetParent, the script's list operations)
  // refuses a node that would close a cycle.
  children.set_guard(this, [](const void* owner, const Vorn_3DGameNode* child) {
    static_cast<const Vorn_3DGameNode*>(owner)->CheckNewChild(child, "Vorn_3DGameNode.children");
  });
  boxMin = Vector3(0, 0, 0, Vector3::kAllInt);
  boxMax = Vector3(0, 0, 0, Vector3::kAllInt);
}

Vorn_3DGameNode::~Vorn_3DGameNode() = default;

void Vorn_3DGameNode::FinishConstruction() {
  if (auto p = parent.lock()) p->AddChild(shared_from_this());
}

void Vorn_3DGameNode::OnLoad(const std::shared_ptr<NodeScene>& scene) {
  WalkDepth depth("Vorn_3DGameNode.OnLoad");
  sceneInstance = scene;
  if (scene && !TagName) {
    NodeIndex = scene->GenNewGameNodeID();
    TagName = NodeType + "_" + std::to_string(NodeIndex);
  }
  // A copy: a child's load may run script code that changes this list.
  for (const auto& child : children.snapshot()) child->OnLoad(scene);
}

void Vorn_3DGameNode::OnDestroy() {
  WalkDepth depth("Vorn_3DGameNode.OnDestroy");
  for (const auto& child : children.snapshot()) child->OnDestroy();
  children.clear();
  BindingVarArray.clear();
  BindingEventArray.clear();
  BindingPointArray.clear();
  instanceID = -1;
}

bool Vorn_3DGameNode::UpdatesAlone() const noexcept {
  // A subclass (a script's included) may override a step; actions, the callback, the
  // children and a follow target (through the scene's ground height) may run script code.
  return typeid(*this) == typeid(Vorn_3DGameNode) && children.empty() && !ActionPlayer && !UpdateFunction &&
         followTarget.expired();
}

void Vorn_3DGameNode::LoopRotate(double delay) noexcept {
  // The angles are not wrapped.
  if (rx_speed != 0) rx += rx_speed * delay;
  if (ry_speed != 0) ry += ry_speed * delay;
  if (rz_speed != 0) rz += rz_speed * delay;
}

void Vorn_3DGameNode::UpdateAlone(double delay) {
  // What update does for a node UpdatesAlone vouches for: no skin, children, actions or
  // callback to run, and no override to call, so no virtual call and no depth count.
  LoopRotate(delay);
  UpdateMatrices();
}

void Vorn_3DGameNode::update(double delay) {
  WalkDepth depth("Vorn_3DGameNode.update");
  LoopRotate(delay);
  UpdateMatrices();
  update_skin_animation(delay);

  // Children see this frame's matrix of their parent. A child whose update may run
  // script code is held while it updates, since a script may take it out of the list
  // meanwhile. Nodes lie apart in memory: the fields of the children a few places
  // ahead load while this one updates.
  constexpr std::size_t kAhead = 8;
  for (std::size_t i = 0; i < kAhead && i < children.size(); ++i) {
    if (const Vorn_3DGameNode* next = children[i].get()) next->PrefetchUpdateFields();
  }
  for (std::size_t i = 0; i < children.size() && children[i]; ++i) {
    if (i + kAhead < children.size()) {
      if (const Vorn_3DGameNode* next = children[i + kAhead].get()) next->PrefetchUpdateFields();
    }
    Vorn_3DGameNode& child = *children[i];
    if (child.UpdatesAlone()) {
      child.UpdateAlone(delay);
    } else {
      const Ptr held = children[i];
      held->update(delay);
    }
  }

  // Actions and the callback come after the matrices: their moves show next frame.
  if (ActionPlayer) UpdateActionPlayer(delay);
  if (UpdateFunction) {
    auto callback = UpdateFunction.call;
    callback(*this);
  }
}


ScriptValue Vorn_3DGameNode::FindEventOperation(const std::string&) { return {}; }

int Vorn_3DGameNode::visit_script_refs(ScriptRefVisit visit, void* context) const {
  int r = 0;
  auto value = [&](const ScriptValue& v) {
    if (r == 0) r = visit_value(v, visit, context);
  };
  value(userData);
  for (const auto& [name, v] : BindingVarArray) value(v);
  for (const auto* table : {&BindingEventArray, &InnerBindingEventArray}) {
    for (const auto& [name, e] : *table) {
      value(e.function);
      for (const auto& v : e.rest) value(v);
    }
  }
  for (const auto& [name, p] : BindingPointArray) {
    value(p.posType);
    value(p.x);
    value(p.y);
  }
  value(UpdateFunction.source);
  value(PickDownFunction.source);
  value(PickUpFunction.source);
  if (r == 0) r = children.visit(visit, context);
  if (r == 0) r = FollowCamera.visit(visit, context);
  if (r == 0) r = ShadowMapCamera.visit(visit, context);
  return r;
}

void Vorn_3DGameNode::clear_script_refs() {
  // Everything is moved out first and dropped at the end: each drop may run script
  // code that reaches this node again.
  ScriptValue data = std::move(userData);
  auto vars = std::move(BindingVarArray);
  auto events = std::move(BindingEventArray);
  auto inner = std::move(InnerBindingEventArray);
  auto points = std::move(BindingPointArray);
  UpdateCallback update = std::move(UpdateFunction);
  PickCallback down = std::move(PickDownFunction);
  PickCallback up = std::move(PickUpFunction);
  NodeList kids = std::move(children);
  NodeRef follow = std::move(FollowCamera);
  NodeRef shadow = std::move(ShadowMapCamera);
  BindingVarArray = {};
  BindingEventArray = {};
  InnerBindingEventArray = {};
  BindingPointArray = {};
  UpdateFunction = {};
  PickDownFunction = {};
  PickUpFunction = {};
}

}  // namespace vorn
