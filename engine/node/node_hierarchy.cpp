// The tree of children.
#include "core/console.h"
#include "core/errors.h"
#include "core/walk_depth.h"
#include "node/game_node.h"

namespace vorn {

bool Vorn_3DGameNode::IsInSubtree(const Vorn_3DGameNode* node) const {
  if (node == this) return true;
  // Iterative: the check must not itself be the walk that runs out of stack.
  std::vector<const Vorn_3DGameNode*> pending{this};
  while (!pending.empty()) {
    const Vorn_3DGameNode* at = pending.back();
    pending.pop_back();
    for (const auto& child : at->children) {
      if (child.get() == node) return true;
      pending.push_back(child.get());
    }
  }
  return false;
}

void Vorn_3DGameNode::CheckNewChild(const Vorn_3DGameNode* child, const char* where) const {
  if (!child) throw TypeError(std::string(where) + ": expected a Vorn_3DGameNode, not None");
  if (child->IsInSubtree(this)) {
    throw ValueError(std::string(where) + ": " +
                     (child == this ? "a node cannot be its own child"
                                    : "the node is an ancestor of this node; a node tree cannot hold a cycle"));
  }
}

void Vorn_3DGameNode::SetParent(const Ptr& node) {
  if (node) node->CheckNewChild(this, "Vorn_3DGameNode.SetParent");
  // The node stays in an earlier parent's children.
  parent = node;
  parentNode_ = node.get();
  if (node) node->AddChild(shared_from_this());
}

void Vorn_3DGameNode::AddChild(Ptr child) {
  CheckNewChild(child.get(), "Vorn_3DGameNode.AddChild");
  children.push_back(std::move(child));
}

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
  WalkDepth depth("Vorn_3DGameNode.GetAllChildrens");
  std::vector<Ptr> out;
  for (const auto& child : children) {
    std::vector<Ptr> below = child->GetAllChildrens();
    out.insert(out.end(), std::make_move_iterator(below.begin()), std::make_move_iterator(below.end()));
    out.push_back(child);
  }
  return out;
}

void Vorn_3DGameNode::RemoveAllChild() {
  WalkDepth depth("Vorn_3DGameNode.RemoveAllChild");
  for (const auto& child : children.snapshot()) child->RemoveAllChild();
  children.clear();
}

}  // namespace vorn
