// The node's hierarchy, loading, per-frame update and matrices (no GL).
#include "node/game_node.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "console_capture.h"
#include "core/actions.h"
#include "core/math_util.h"
#include "fake_scene.h"

namespace vorn {
namespace {

using Node = Vorn_3DGameNode;

using test::FakeScene;

// A subclass that writes its own label after the base constructor, as every
// engine node class does.
class LabelledNode : public Node {
 public:
  explicit LabelledNode(const Ptr& parent = nullptr) : Node(0, 0, 0, parent) { NodeType = "3DBox"; }
};

std::vector<const Node*> raw(const std::vector<Node::Ptr>& nodes) {
  std::vector<const Node*> out;
  for (const auto& n : nodes) out.push_back(n.get());
  return out;
}

TEST(GameNode, AutomaticTagsFollowTheConstructionOrder) {
  auto scene = std::make_shared<FakeScene>();
  auto root = MakeNode<LabelledNode>();
  EXPECT_FALSE(root->GetTag());
  root->OnLoad(scene);
  EXPECT_EQ(*root->GetTag(), "3DBox_1");  // loaded after construction: the subclass label

  // Built under a loaded parent: loaded inside the base constructor, base label.
  auto child = MakeNode<LabelledNode>(root);
  EXPECT_EQ(child->GetNodeType(), "3DBox");
  EXPECT_EQ(*child->GetTag(), "3DGameNode_2");
  EXPECT_EQ(child->GetNodeIndex(), 2);
  EXPECT_EQ(child->GetParent(), root);
  ASSERT_EQ(root->children.size(), 1u);
  EXPECT_EQ(root->children[0], child);

  // A second load keeps tag and number; a tag set beforehand survives without a number.
  root->OnLoad(scene);
  EXPECT_EQ(*child->GetTag(), "3DGameNode_2");
  auto named = MakeNode<Node>();
  named->SetTag("hero");
  named->OnLoad(scene);
  EXPECT_EQ(*named->GetTag(), "hero");
  EXPECT_EQ(named->GetNodeIndex(), -1);

  // Loading passes down to children that were added unloaded.
  auto late = MakeNode<Node>();
  auto lateChild = MakeNode<Node>(0, 0, 0, late);
  EXPECT_FALSE(lateChild->GetTag());
  late->OnLoad(scene);
  EXPECT_EQ(*lateChild->GetTag(), "3DGameNode_4");
  EXPECT_EQ(lateChild->GetSceneInstance(), scene);
}

TEST(GameNode, HierarchyOperations) {
  auto a = MakeNode<Node>(), b = MakeNode<Node>(0, 0, 0, a), c = MakeNode<Node>(0, 0, 0, a);
  auto d = MakeNode<Node>(0, 0, 0, b), e = MakeNode<Node>(0, 0, 0, b);
  // Depth first, descendants before their parent, the node itself left out.
  EXPECT_EQ(raw(a->GetAllChildrens()), (std::vector<const Node*>{d.get(), e.get(), b.get(), c.get()}));
  EXPECT_TRUE(d->GetAllChildrens().empty());

  ConsoleCapture console;
  a->RemoveChild(d.get());  // a grandchild is not a child
  EXPECT_EQ(console.lines(), (std::vector<std::string>{"No Find Child"}));
  EXPECT_EQ(a->children.size(), 2u);

  a->RemoveChild(b.get());  // takes the child's own subtree apart too
  EXPECT_EQ(raw(a->GetAllChildrens()), (std::vector<const Node*>{c.get()}));
  EXPECT_TRUE(b->children.empty());
  EXPECT_EQ(b->GetParent(), a);  // the parent field stays

  // SetParent does not leave the earlier parent; AddChild takes duplicates.
  c->SetParent(b);
  EXPECT_EQ(a->children.size(), 1u);
  EXPECT_EQ(b->children.size(), 1u);
  b->AddChild(c);
  EXPECT_EQ(b->children.size(), 2u);
  EXPECT_EQ(c->owner_count(), 3);
  c->SetParent(nullptr);
  EXPECT_FALSE(c->GetParent());
  EXPECT_EQ(b->children.size(), 2u);
  EXPECT_THROW(a->AddChild(nullptr), TypeError);
}

TEST(GameNode, OnDestroyClearsScriptTablesButKeepsInnerEvents) {
  auto scene = std::make_shared<FakeScene>();
  auto node = MakeNode<Node>();
  auto child = MakeNode<Node>(0, 0, 0, node);
  auto grandchild = MakeNode<Node>(0, 0, 0, child);
  node->SetBindingVar("hp", {});
  node->SetBindingEvent("hit", {});
  node->SetBindingPoint("p", {}, {}, {});
  node->SetInstanceID(4);
  node->OnDestroy();
  EXPECT_TRUE(node->children.empty());
  EXPECT_TRUE(child->children.empty());  // children are destroyed first
  EXPECT_TRUE(node->BindingVarArray.empty() && node->BindingEventArray.empty() && node->BindingPointArray.empty());
  EXPECT_EQ(node->InnerBindingEventArray.keys(),
            (std::vector<std::string>{"Load", "Update", "Render", "Destroy", "PickDown", "PickUp"}));
  EXPECT_EQ(node->GetInstanceID(), -1);
  node->OnLoad(scene);  // and can be loaded again
  EXPECT_EQ(*node->GetTag(), "3DGameNode_1");
}

TEST(GameNode, UpdateRunsRotationMatricesChildrenActionsThenCallback) {
  auto root = MakeNode<Node>(10, 0, 0);
  auto child = MakeNode<Node>(1, 0, 0, root);
  root->SetLoopRotateY(90);
  std::vector<std::string> order;
  child->SetUpdateFunction({[&](Node& n) { order.push_back("child x=" + std::to_string(n.GetWorldXYZ().x)); }, {}});
  root->SetUpdateFunction({[&](Node& n) {
                             order.push_back("root");
                             n.MoveX(5);  // shows only at the next frame
                           },
                           {}});
  root->update(0.5);
  EXPECT_DOUBLE_EQ(root->GetRY(), 45.0);
  EXPECT_EQ(order, (std::vector<std::string>{"child x=" + std::to_string(10 + std::cos(PI / 4)), "root"}));
  EXPECT_DOUBLE_EQ(root->GetWorldXYZ().x, 10.0);

  // A speed back at 0 leaves the angle where it stands.
  root->StopLoopRotate();
  root->update(1.0);
  EXPECT_DOUBLE_EQ(root->GetRY(), 45.0);
  EXPECT_DOUBLE_EQ(root->GetWorldXYZ().x, 15.0);

  // Actions run after the matrices: their moves show at the next frame.
  root->UpdateFunction.reset();
  root->RunAction({std::make_shared<MoveToAction>(0.0, 100, 0, 0)});
  root->update(0.1);
  EXPECT_EQ(root->GetX(), 100);
  EXPECT_DOUBLE_EQ(root->GetWorldXYZ().x, 20.0);  // the matrix still has the earlier move
  // A second RunAction replaces the queue.
  root->RunAction({std::make_shared<RotateByAction>(1.0, 90)});
  root->RunAction({std::make_shared<RotateByAction>(1.0, 10)});
  const double rz = root->GetRZ();
  root->update(1.0);
  EXPECT_DOUBLE_EQ(root->GetRZ(), rz + 10);
}

TEST(GameNode, UpdateSurvivesAChildRemovingItself) {
  auto root = MakeNode<Node>();
  auto keep = MakeNode<Node>(0, 0, 0, root);
  {
    auto leaving = MakeNode<Node>(0, 0, 0, root);
    Node* self = leaving.get();
    leaving->SetUpdateFunction({[&root, self](Node&) { root->RemoveChild(self); }, {}});
  }
  root->update(0.1);
  EXPECT_EQ(root->children.size(), 1u);
  EXPECT_EQ(root->children[0], keep);
}

void ExpectRow3(const FbxAMatrix& m, double x, double y, double z) {
  EXPECT_NEAR(m.m[3][0], x, 1e-12);
  EXPECT_NEAR(m.m[3][1], y, 1e-12);
  EXPECT_NEAR(m.m[3][2], z, 1e-12);
  EXPECT_EQ(m.m[3][3], 1.0);
}

TEST(GameNodeTransform, WorldAndAxisMatrices) {
  // Same numbers as the matrix type itself builds; the axis matrix leaves the scale out.
  auto root = MakeNode<Node>(1, 2, 3);
  root->SetScale(2);
  root->SetRXYZ(10, 20, 30);
  root->update(0);
  EXPECT_EQ(root->GetWorldMatrix(), FbxAMatrix(FbxVector4(1, 2, 3, 0), FbxVector4(10, 20, 30, 0), FbxVector4(2, 2, 2)));
  EXPECT_EQ(root->GetAxisMatrix(), FbxAMatrix(FbxVector4(1, 2, 3, 0), FbxVector4(10, 20, 30, 0), FbxVector4(1, 1, 1)));

  // A child moves by its parent's scale; the parent's scale stays in its axis matrix.
  auto parent = MakeNode<Node>(10, 0, 0);
  auto child = MakeNode<Node>(1, 0, 0, parent);
  parent->SetScale(2);
  parent->update(0);
  EXPECT_DOUBLE_EQ(child->GetWorldXYZ().x, 12.0);
  EXPECT_EQ(child->GetAxisMatrix().m[0][0], 2.0);

  // Relative scale adds.
  auto n = MakeNode<Node>();
  n->ScaleXYZ(1, 1, 1);
  n->ScaleX(0.5);
  EXPECT_EQ(n->GetSXYZ(), (std::array<double, 3>{2.5, 2, 2}));
}

TEST(GameNodeTransform, FollowTargetOperandOrder) {
  auto target = MakeNode<Node>(5, 0, 0);
  target->update(0);
  // Root follower: target position plus own position at scale 1...
  auto follower = MakeNode<Node>(1, 2, 0);
  follower->Follow(target);
  follower->update(0);
  ExpectRow3(follower->GetWorldMatrix(), 6, 2, 0);
  // ...and its scale acts on the target's position as well.
  follower->SetScale(2);
  follower->update(0);
  ExpectRow3(follower->GetWorldMatrix(), 11, 2, 0);
  // A following child: the target matrix stands in for the parent's.
  auto parent = MakeNode<Node>(100, 0, 0);
  auto child = MakeNode<Node>(1, 0, 0, parent);
  child->SetScale(2);
  child->Follow(target);
  parent->update(0);
  ExpectRow3(child->GetWorldMatrix(), 6, 0, 0);
  // Follow(None) returns to the parent at the next update.
  child->Follow(nullptr);
  parent->update(0);
  ExpectRow3(child->GetWorldMatrix(), 101, 0, 0);
}

TEST(GameNodeTransform, StandingOnTheGround) {
  auto scene = std::make_shared<FakeScene>();
  scene->groundY = 7.5;
  auto node = MakeNode<Node>(3, 4, 5);
  node->update(0);
  node->StandOnGround(true);
  EXPECT_DOUBLE_EQ(node->GetWorldXYZ().y, 4.0);  // no scene: the matrix height
  node->OnLoad(scene);
  const Vector3 p = node->GetWorldXYZ();
  EXPECT_DOUBLE_EQ(p.y, 7.5);
  EXPECT_EQ(scene->groundQueries.back(), (std::pair<double, double>{3, 5}));
  EXPECT_DOUBLE_EQ(node->GetWorldMatrix().m[3][1], 4.0);  // the matrix keeps y

  auto child = MakeNode<Node>(0, 0, 0, node);
  ConsoleCapture console;
  child->StandOnGround(true);
  EXPECT_EQ(console.lines(), (std::vector<std::string>{"it can't stand on Ground,because has parent."}));
  EXPECT_FALSE(child->standOnGround);
}

}  // namespace
}  // namespace vorn
