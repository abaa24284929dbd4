// Engine-side ownership without a script: owning references count, a node tree
// refuses cycles on every way in and stays as it was, and deep walks stop with
// RecursionError instead of exhausting the stack.
#include <gtest/gtest.h>

#include "core/errors.h"
#include "core/walk_depth.h"
#include "node/game_node.h"

namespace vorn {
namespace {

using Node = Vorn_3DGameNode;

TEST(Ownership, RefsAndListSlotsCountAsOwnersAndReleaseOnEveryExit) {
  auto a = MakeNode<Node>();
  {
    NodeRef field = a;
    NodeRef copy = field;
    NodeRef moved = std::move(copy);
    EXPECT_EQ(a->owner_count(), 2);
    field = nullptr;
    EXPECT_EQ(a->owner_count(), 1);
    moved = MakeNode<Node>();  // reassignment releases the old object
    EXPECT_EQ(a->owner_count(), 0);
  }
  NodeList list;
  list.push_back(a);
  list.insert(-5, a);
  list.set(1, a);  // takes the new reference before dropping the old one
  EXPECT_EQ(a->owner_count(), 2);
  EXPECT_EQ(list.pop(0), a);
  list.remove(a.get());
  NodeList other;
  other.push_back(a);
  list = std::move(other);
  EXPECT_EQ(a->owner_count(), 1);
  list.clear();
  EXPECT_EQ(a->owner_count(), 0);
}

TEST(Ownership, EveryWayIntoChildrenRefusesCyclesAndChangesNothing) {
  auto root = MakeNode<Node>();
  auto mid = MakeNode<Node>(0, 0, 0, root);
  auto leaf = MakeNode<Node>(0, 0, 0, mid);
  auto other = MakeNode<Node>();

  EXPECT_THROW(root->AddChild(root), ValueError);
  EXPECT_THROW(leaf->AddChild(root), ValueError);
  EXPECT_THROW(root->SetParent(leaf), ValueError);
  EXPECT_EQ(root->GetParent(), nullptr) << "a refused SetParent leaves the parent field";
  EXPECT_THROW(leaf->children.push_back(mid), ValueError);
  EXPECT_THROW(leaf->children.insert(0, root), ValueError);
  leaf->children.push_back(other);
  EXPECT_THROW(leaf->children.set(0, mid), ValueError);
  NodeList replacement;
  replacement.push_back(other);
  replacement.push_back(root);
  EXPECT_THROW(leaf->children = std::move(replacement), ValueError);
  ASSERT_EQ(leaf->children.size(), 1u);
  EXPECT_EQ(leaf->children[0], other);
  EXPECT_EQ(root->GetAllChildrens().size(), 3u);

  // Moving children out (as the collector's clearing does) does not carry the check away.
  NodeList taken = std::move(leaf->children);
  EXPECT_THROW(leaf->children.push_back(leaf), ValueError);
  taken.push_back(leaf);  // a free list has no owner to protect
}

TEST(Ownership, DeepChainsStopWithRecursionError) {
  auto root = MakeNode<Node>();
  Node::Ptr at = root;
  for (int i = 0; i < WalkDepth::kMaxDepth + 10; ++i) at = MakeNode<Node>(0, 0, 0, at);
  EXPECT_THROW(root->update(0.1), RecursionError);
  EXPECT_THROW(root->GetAllChildrens(), RecursionError);
  auto shallow = MakeNode<Node>();
  MakeNode<Node>(0, 0, 0, shallow);
  EXPECT_NO_THROW(shallow->update(0.1)) << "the depth count is balanced after a throw";
}

}  // namespace
}  // namespace vorn
