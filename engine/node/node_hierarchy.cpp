// The tree of children.
#include "core/console.h"
#include "node/game_node.h"

namespace vorn {

void Vorn_3DGameNode::SetParent(const Ptr& node) {
  // The node stays in an earlier parent's children.
  parent = node;
  if (node) node->AddChild(shared_from_this());
}

void Vorn_3DGameNode::AddChild(Ptr child) { children.push_back(std::move(child)); }

void Vorn_3DGameNode::RemoveChild(const Vorn_3DGameNode* child) {
  const std::int64_t pos = children.index_of(child);
  if (pos < 0) {
    console::print("No Find Child");
    return;
  }
  // Held across the removal: taking the subtree apart may run script code.
  Ptr held = children[static_cast<std::size_t>(pos)];
  held->RemoveAllChild();
  // The child's parent field keeps pointing here.
  children.remove(held.get());
}

std::vector<Vorn_3DGameNode::Ptr> Vorn_3DGameNode::GetAllChildrens() const {
  std::vector<Ptr> out;
  for (const auto& child : children) {
    std::vector<Ptr> below = child->GetAllChildrens();
    out.insert(out.end(), std::make_move_iterator(below.begin()), std::make_move_iterator(below.end()));
    out.push_back(child);
  }
  return out;
}

void Vorn_3DGameNode::RemoveAllChild() {
  for (const auto& child : children.snapshot()) child->RemoveAllChild();
  children.clear();
}

}  // namespace vorn
