// Node picking: the ray test, its agreement with a plain walk, and the picks of the box,
// the plane and the draw node through the node (the pick event is the script suite's).
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "core/errors.h"
#include "core/math_util.h"
#include "landscape/plane.h"
#include "node/game_node.h"
#include "shapes/box.h"
#include "shapes/draw_node.h"
#include "shapes/sphere.h"

namespace vorn {
namespace {

const Vector3 kDown(0.0, -1.0, 0.0);

// Two triangles in the y = 0 plane over the same square, and a third above them at
// y = 1 that comes later in index order.
std::shared_ptr<Vorn_3DGameNode> stacked_node() {
  auto n = MakeNode<Vorn_3DGameNode>();
  const int s = n->CreateSubMesh("0");
  for (const auto& p : {std::array{-1.0, 0.0, -1.0}, {1.0, 0.0, -1.0}, {1.0, 0.0, 1.0}, {-1.0, 0.0, 1.0},
                        {-1.0, 1.0, -1.0}, {1.0, 1.0, -1.0}, {0.0, 1.0, 1.0}})
    n->PushVertex_Position(s, p[0], p[1], p[2]);
  n->PushTriangleVIndex(s, 0, 1, 2);
  n->PushTriangleVIndex(s, 0, 2, 3);
  n->PushTriangleVIndex(s, 4, 5, 6);
  return n;
}

TEST(NodePicking, FirstTriangleInIndexOrderWinsAndWorldMatrixApplies) {
  auto n = stacked_node();
  n->update(0.0);
  // The ray from above meets the upper triangle first, yet the lower one comes first.
  auto hit = n->checkPick(Vector3(0.2, 5.0, 0.1), kDown);
  ASSERT_TRUE(hit);
  EXPECT_DOUBLE_EQ(hit->position.y, 0.0);
  EXPECT_DOUBLE_EQ(hit->corners[2].z, 1.0);

  // Moved and scaled: corners and hit in world space.
  n->SetXYZ(5.0, 2.0, 0.0);
  n->SetScale(2.0);
  n->update(0.0);
  EXPECT_FALSE(n->checkPick(Vector3(0.2, 5.0, 0.1), kDown));
  hit = n->checkPick(Vector3(6.5, 9.0, -1.5), kDown);
  ASSERT_TRUE(hit);
  EXPECT_NEAR(hit->position.x, 6.5, 1e-12);
  EXPECT_NEAR(hit->position.y, 2.0, 1e-12);
  EXPECT_NEAR(hit->corners[1].x, 7.0, 1e-12);  // local (1, 0, -1) times 2, plus (5, 2, 0)

  // Bounding box: the two corners moved, not the box around them.
  n->boxMin = Vector3(-1, 0, -1);
  n->boxMax = Vector3(1, 1, 1);
  const auto [lo, hi] = n->GetBoundingBox(false);
  EXPECT_DOUBLE_EQ(lo.x, 3.0);
  EXPECT_DOUBLE_EQ(hi.y, 4.0);
  EXPECT_DOUBLE_EQ(n->GetBoundingBox().first.x, -1.0);
}

TEST(NodePicking, SubmeshesWithoutIndicesAndBadIndices) {
  auto n = stacked_node();
  n->update(0.0);
  n->CleanVIndex(0);
  EXPECT_FALSE(n->checkPick(Vector3(0.2, 5.0, 0.1), kDown));

  // A negative index wraps to the end of the positions.
  n->PushTriangleVIndex(0, -3, -2, -1);
  EXPECT_TRUE(n->checkPick(Vector3(0.2, 5.0, -0.5), kDown));

  // An index past the positions fails, on a hit as on a miss: a ray far off the
  // mesh skips the triangles but not the check.
  n->CleanVIndex(0);
  n->PushTriangleVIndex(0, 0, 1, 7);
  EXPECT_THROW(n->checkPick(Vector3(0.2, 5.0, 0.1), kDown), IndexError);
  EXPECT_THROW(n->checkPick(Vector3(50.0, 5.0, 50.0), kDown), IndexError);
  // An unused incomplete position is harmless; a used one fails.
  n->CleanVIndex(0);
  n->VertexArray_Positon.at(0).push_back(VertexEntry<3>::empty());
  n->PushTriangleVIndex(0, 0, 1, 2);
  EXPECT_TRUE(n->checkPick(Vector3(0.2, 5.0, 0.1), kDown));
  n->PushTriangleVIndex(0, 0, 1, 7);
  EXPECT_THROW(n->checkPick(Vector3(50.0, 5.0, 50.0), kDown), IndexError);
}

// The walk every pick would take without the box test in front of it.
std::optional<PickDetail> plain_walk(const Vorn_3DGameNode& n, const Vector3& Pt, const Vector3& Dir) {
  const FloatList16 m = MatrixToFloatList(n.GetWorldMatrix());
  for (const auto& [s, pos] : n.VertexArray_Positon) {
    const IndexArray* idx = n.VIndexArray.find(s);
    if (pos.empty() || !idx) continue;
    for (std::size_t f = 0; f + 2 < idx->size(); f += 3) {
      Vector3 c[3];
      for (int k = 0; k < 3; ++k) c[k] = Vec3MulMatrix(std::span<const double, 3>(pos[static_cast<std::size_t>((*idx)[f + k])].v), m);
      if (auto [hit, p] = IntersectTriangle(Pt, Dir, c[0], c[1], c[2]); hit) return PickDetail{p, {c[0], c[1], c[2]}};
    }
  }
  return std::nullopt;
}

TEST(NodePicking, AgreesWithThePlainWalkForRandomRays) {
  auto sphere = MakeNode<Vorn_3DSphere>(1.0, -2.0, 3.0);
  sphere->CreateSphere(1.5, 12, 10);
  sphere->SetRXYZ(20.0, 35.0, -10.0);
  sphere->SetSXYZ(1.0, 0.5, 2.0);
  sphere->update(0.0);
  std::mt19937 rng(7);
  std::uniform_real_distribution<double> u(-1.0, 1.0);
  int hits = 0;
  for (int i = 0; i < 2000; ++i) {
    // Rays through points around the sphere, many grazing its box.
    const Vector3 through(1.0 + 3.5 * u(rng), -2.0 + 3.5 * u(rng), 3.0 + 3.5 * u(rng));
    Vector3 dir(u(rng), u(rng), u(rng));
    if (i % 5 == 0) dir = Vector3(0.0, 0.0, 1.0);  // axis-parallel rays take the slab's other branch
    dir.normalize();
    const Vector3 from = through - dir * 20.0;
    const auto got = sphere->checkPick(from, dir);
    const auto want = plain_walk(*sphere, from, dir);
    ASSERT_EQ(got.has_value(), want.has_value()) << "ray " << i;
    if (got) {
      ++hits;
      EXPECT_EQ(got->position.str(), want->position.str()) << "ray " << i;
    }
  }
  EXPECT_GT(hits, 300);
  EXPECT_LT(hits, 1700);
}

TEST(NodePicking, BoxPlaneAndDrawNodeAnswerThroughTheNode) {
  const Vector3 from(0.1, 0.2, -20.0), along(0.0, 0.0, 1.0);
  auto box = MakeNode<Vorn_3DBox>(0.0, 0.0, 0.0);
  box->CreateBox(1.0, 1.0, 1.0);
  box->CleanVertex();  // the box's own test needs no geometry
  box->update(0.0);
  Vorn_3DGameNode& asNode = *box;
  const auto hit = asNode.checkPick(from, along);
  ASSERT_TRUE(hit);
  EXPECT_DOUBLE_EQ(hit->position.z, 0.5);

  auto plane = MakeNode<Vorn_3DPlane>(0.0, 1.0, 0.0);
  plane->CreatePlane(4, 4, 1.0);
  plane->update(0.0);
  const auto tile = static_cast<Vorn_3DGameNode&>(*plane).checkPick(Vector3(1.5, 10.0, -0.5), kDown);
  ASSERT_TRUE(tile);
  EXPECT_DOUBLE_EQ(tile->position.y, 1.0);

  // The pick marker lies on what it marks and never answers.
  auto marker = MakeNode<Vorn_3DDrawNode>();
  marker->CreateSubMesh("0");
  for (const auto& p : {std::array{-1.0, 0.0, -1.0}, {1.0, 0.0, -1.0}, {0.0, 0.0, 1.0}})
    marker->PushVertex_Position(0, p[0], p[1], p[2]);
  marker->PushTriangleVIndex(0, 0, 1, 2);
  marker->update(0.0);
  EXPECT_FALSE(static_cast<Vorn_3DGameNode&>(*marker).checkPick(Vector3(0.0, 5.0, 0.0), kDown));
}

}  // namespace
}  // namespace vorn
