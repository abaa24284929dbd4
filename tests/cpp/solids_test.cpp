// Solid primitives and the point light: generated geometry, texture coordinates, the
// box's own pick (no GL: buffers hold their data until the first bind).
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/errors.h"
#include "core/math_util.h"
#include "shapes/solids.h"

namespace vorn {
namespace {

using Node = Vorn_3DGameNode;

Vector3 vec(const VertexEntry<3>& e) { return {e[0], e[1], e[2]}; }

void expect_near(const Vector3& a, const Vector3& b, const std::string& what, double eps = 1e-9) {
  EXPECT_NEAR(a.x, b.x, eps) << what;
  EXPECT_NEAR(a.y, b.y, eps) << what;
  EXPECT_NEAR(a.z, b.z, eps) << what;
}

// A solid made with the given parameters, with where its inside lies next to a vertex
// (normals point away from it) and the length its normals have (0: unit length).
struct SolidCase {
  std::string name;
  std::function<std::shared_ptr<Node>()> make;
  std::vector<std::pair<std::size_t, std::size_t>> counts;  // per submesh: vertices, triangles
  std::function<Vector3(const Vector3&)> inside;
  double normalLength;
};

Vector3 origin(const Vector3&) { return {}; }

std::vector<SolidCase> solid_cases() {
  auto torus_inside = [](const Vector3& p) {
    const double r = std::hypot(p.x, p.z);  // the centre line of the default torus has radius 0.75
    return Vector3(p.x / r * 0.75, 0, p.z / r * 0.75);
  };
  auto tube_inside = [](const Vector3& p) {  // the middle of the default tube's wall
    const double r = std::hypot(p.x, p.z);
    return Vector3(p.x / r * 0.75, 0, p.z / r * 0.75);
  };
  return {
      {"sphere", [] { auto n = MakeNode<Vorn_3DSphere>(); n->CreateSphere(); return n; }, {{961, 1800}}, origin, 0.5},
      {"sphere 2.0, 3, 2", [] { auto n = MakeNode<Vorn_3DSphere>(); n->CreateSphere(2.0, 3, 2); return n; },
       {{12, 12}}, origin, 2.0},
      {"circle", [] { auto n = MakeNode<Vorn_3DCircle>(); n->CreateCircle(); return n; }, {{32, 30}},
       [](const Vector3& p) { return Vector3(p.x, -1, p.z); }, 0},
      {"conus", [] { auto n = MakeNode<Vorn_3DConus>(); n->CreateConus(); return n; }, {{61, 30}, {32, 30}}, origin,
       0},
      {"conus 3 steps", [] { auto n = MakeNode<Vorn_3DConus>(); n->CreateConus(1.0, 0.5, 3); return n; },
       {{7, 3}, {5, 3}}, origin, 0},
      {"cylinder", [] { auto n = MakeNode<Vorn_3DCylinder>(); n->CreateCylinder(); return n; },
       {{32, 30}, {32, 30}, {62, 60}}, origin, 0},
      {"torus", [] { auto n = MakeNode<Vorn_3DTorus>(); n->CreateTorus(); return n; }, {{341, 600}}, torus_inside, 0},
      {"tube", [] { auto n = MakeNode<Vorn_3DTube>(); n->CreateTube(); return n; }, {{62, 60}, {62, 60}, {124, 120}},
       tube_inside, 0},
      {"capsule", [] { auto n = MakeNode<Vorn_3DCapsule>(); n->CreateCapsule(); return n; },
       {{496, 900}, {496, 900}, {62, 60}},
       [](const Vector3& p) { return Vector3(0, std::clamp(p.y, -1.0, 1.0), 0); }, 0.5},
      {"capsule 5 steps", [] { auto n = MakeNode<Vorn_3DCapsule>(); n->CreateCapsule(0.5, 1.0, 5); return n; },
       {{18, 20}, {18, 20}, {12, 10}}, [](const Vector3& p) { return Vector3(0, std::clamp(p.y, -0.5, 0.5), 0); },
       0.5},
  };
}

// Counts, index ranges, normal lengths, normals pointing out, and every non-degenerate
// triangle wound counter-clockwise seen from the side its normals point to.
TEST(Solids, CountsNormalsAndWindingOfEverySolid) {
  for (const SolidCase& c : solid_cases()) {
    SCOPED_TRACE(c.name);
    auto n = c.make();
    ASSERT_EQ(n->SubMeshList.size(), c.counts.size());
    for (std::size_t s = 0; s < c.counts.size(); ++s) {
      const int key = static_cast<int>(s);
      const auto& pos = n->VertexArray_Positon.at(key);
      const auto& nrm = n->VertexArray_Normal.at(key);
      const auto& idx = n->VIndexArray.at(key);
      ASSERT_EQ(pos.size(), c.counts[s].first) << "submesh " << s;
      ASSERT_EQ(nrm.size(), pos.size());
      ASSERT_EQ(idx.size(), c.counts[s].second * 3) << "submesh " << s;
      EXPECT_EQ(n->SubMeshShapeType.at(key), glc::TRIANGLES);
      EXPECT_EQ(n->SubMeshShapeCount.at(key), static_cast<std::int64_t>(idx.size()));
      EXPECT_EQ(n->VVBOArray.at(key)->count(), pos.size() * 6);
      for (std::size_t v = 0; v < pos.size(); ++v) {
        const Vector3 p = vec(pos[v]), nv = vec(nrm[v]);
        EXPECT_NEAR(nv.length(), c.normalLength ? c.normalLength : 1.0, 1e-9) << "vertex " << v;
        EXPECT_GT(nv.dot(p - c.inside(p)), 0.0) << "submesh " << s << " vertex " << v;
      }
      for (std::size_t t = 0; t < idx.size(); t += 3) {
        for (int k = 0; k < 3; ++k) ASSERT_LT(static_cast<std::size_t>(idx[t + k]), pos.size());
        const Vector3 a = vec(pos[idx[t]]), b = vec(pos[idx[t + 1]]), d = vec(pos[idx[t + 2]]);
        const Vector3 face = (b - a).cross(d - a);
        if (face.length() < 1e-12) continue;  // the pole rows of a grid
        const Vector3 vn = vec(nrm[idx[t]]) + vec(nrm[idx[t + 1]]) + vec(nrm[idx[t + 2]]);
        EXPECT_GT(face.dot(vn), 0.0) << "submesh " << s << " triangle " << t / 3;
      }
    }
  }
}

TEST(Solids, SphereGridOrderFromTheSouthPole) {
  auto n = MakeNode<Vorn_3DSphere>();
  n->CreateSphere();
  const auto& pos = n->VertexArray_Positon.at(0);
  // The whole first row is the south pole, the last row the north pole.
  for (int j = 0; j <= 30; ++j) {
    expect_near(vec(pos[j]), {0, -0.5, 0}, "south pole column " + std::to_string(j), 1e-12);
    expect_near(vec(pos[30 * 31 + j]), {0, 0.5, 0}, "north pole column " + std::to_string(j), 1e-12);
  }
  // Row 15 is the equator, starting at +x and turning towards +z.
  expect_near(vec(pos[15 * 31]), {0.5, 0, 0}, "equator, column 0", 1e-12);
  EXPECT_GT(pos[15 * 31 + 1][2], 0.0);
  EXPECT_EQ(std::vector<std::int64_t>(n->VIndexArray.at(0).begin(), n->VIndexArray.at(0).begin() + 6),
            (std::vector<std::int64_t>{0, 31, 1, 1, 31, 32}));
  // 30 steps around reach z = +-0.5 * sin(84 degrees) only.
  expect_near(n->boxMax, {0.5, 0.5, 0.5 * std::sin(84 * PI / 180)}, "boxMax", 1e-9);

  // A second call replaces the geometry instead of adding to it.
  n->CreateSphere(1.0, 4, 4);
  EXPECT_EQ(n->SubMeshList.size(), 1u);
  EXPECT_EQ(n->VertexArray_Positon.at(0).size(), 25u);
}

TEST(Solids, SphereTexCoordsOnceAndOnRequest) {
  auto n = MakeNode<Vorn_3DSphere>();
  n->CreateSphere(0.5, 4, 2);
  auto before = n->VVBOArray.at(0);
  n->GenTexCoords(0, false);
  const auto& uv = n->VertexArray_UV.at(0);
  ASSERT_EQ(uv.size(), 15u);
  using UV = VertexEntry<2>;
  EXPECT_EQ((std::array{uv[0], uv[3], uv[5], uv[14]}), (std::array{UV(0.0, 0.0), UV(0.75, 0.0), UV(0.0, 0.5), UV(1.0, 1.0)}));
  EXPECT_EQ(n->VVBOArray.at(0), before);  // RebuildVBO false: buffers untouched

  // Through the node's hook, as attaching a texture calls it: no second set, a rebuild.
  static_cast<Node&>(*n).GenTexCoords(0);
  EXPECT_EQ(n->VertexArray_UV.at(0).size(), 15u);
  EXPECT_EQ(n->VVBOArray.at(0)->count(), 15u * 8);
  EXPECT_EQ((*n->VVBOArray.at(0)->float_data())[8 * 3], 0.75f);  // u of vertex 3 leads its eight floats
  EXPECT_THROW(n->GenTexCoords(5), KeyError);
}

TEST(Solids, BoxFacesNormalsAndTexCoords) {
  auto n = MakeNode<Vorn_3DBox>();
  n->CreateBox(2.0, 4.0, 6.0);
  const auto& pos = n->VertexArray_Positon.at(0);
  const auto& nrm = n->VertexArray_Normal.at(0);
  // 24 vertices drawn as quads without an index buffer.
  ASSERT_EQ(pos.size(), 24u);
  EXPECT_EQ(n->SubMeshShapeType.at(0), glc::QUADS);
  EXPECT_TRUE(n->VIndexArray.at(0).empty());
  EXPECT_FALSE(n->IVBOArray.contains(0));
  EXPECT_EQ(n->SubMeshShapeCount.at(0), 0);
  expect_near(n->boxMin, {-1, -2, -3}, "boxMin");

  const Vector3 normals[6] = {{0, 0, 1}, {0, 0, -1}, {0, 1, 0}, {0, -1, 0}, {1, 0, 0}, {-1, 0, 0}};
  const double half[3] = {1, 2, 3};
  for (int f = 0; f < 6; ++f) {
    Vector3 centre;
    for (int v = 4 * f; v < 4 * f + 4; ++v) {
      expect_near(vec(nrm[v]), normals[f], "normal of face " + std::to_string(f));
      for (int a = 0; a < 3; ++a) EXPECT_EQ(std::abs(pos[v].v[a]), half[a]) << "vertex " << v;  // a corner of the box
      centre = centre + vec(pos[v]);
    }
    // The face lies on its side and winds counter-clockwise seen from outside.
    EXPECT_GT(centre.dot(normals[f]), 0.0) << "face " << f;
    const Vector3 p0 = vec(pos[4 * f]), p1 = vec(pos[4 * f + 1]), p2 = vec(pos[4 * f + 2]);
    EXPECT_GT((p1 - p0).cross(p2 - p0).dot(normals[f]), 0.0) << "face " << f;
  }

  n->GenTexCoords(0);
  n->GenTexCoords(0);
  const auto& uv = n->VertexArray_UV.at(0);
  ASSERT_EQ(uv.size(), 24u);
  using UV = VertexEntry<2>;
  const std::vector<UV> first = {UV(0.0, 1.0), UV(1.0, 1.0), UV(1.0, 0.0), UV(0.0, 0.0)};
  const std::vector<UV> second = {UV(0.0, 1.0), UV(0.0, 0.0), UV(1.0, 0.0), UV(1.0, 1.0)};
  for (int f = 0; f < 6; ++f) {
    const auto& want = (f == 0 || f == 3 || f == 5) ? first : second;
    for (int c = 0; c < 4; ++c) EXPECT_EQ(uv[4 * f + c], want[c]) << "face " << f << " corner " << c;
  }
  // Faces -z, +y, +x show the image upright from outside: u and v span the face in
  // the same turning sense as its normal.
  for (int f : {1, 2, 4}) {
    const Vector3 p0 = vec(pos[4 * f]), p1 = vec(pos[4 * f + 1]), p2 = vec(pos[4 * f + 2]);
    EXPECT_GT((p2 - p1).cross(p0 - p1).dot(normals[f]), 0.0) << "face " << f;  // corner 1 is (0, 0)
  }
  EXPECT_EQ(n->VVBOArray.at(0)->count(), 24u * 8);
}

TEST(Solids, CircleLandmarksAndTexCoords) {
  auto circle = MakeNode<Vorn_3DCircle>();
  circle->CreateCircle(2.0, 4);
  const auto& cp = circle->VertexArray_Positon.at(0);
  ASSERT_EQ(cp.size(), 6u);
  expect_near(vec(cp[0]), {0, 0, 0}, "centre");
  expect_near(vec(cp[1]), {2, 0, 0}, "rim start");
  expect_near(vec(cp[2]), {0, 0, 2}, "rim turns towards +z");
  expect_near(vec(cp[5]), {2, 0, 0}, "rim closes on the seam");
  circle->GenTexCoords(0, true);
  const auto& cuv = circle->VertexArray_UV.at(0);
  using UV = VertexEntry<2>;
  EXPECT_EQ((std::array{cuv[0], cuv[1], cuv[3], cuv[5]}), (std::array{UV(0.5, 0.0), UV(0.0, 1.0), UV(0.5, 1.0), UV(1.0, 1.0)}));
}

// Zero steps fail clearly and leave the node as it was; negative steps make no grid;
// odd sizes build without complaint.
TEST(Solids, DegenerateParameters) {
  auto sphere = MakeNode<Vorn_3DSphere>();
  sphere->CreateSphere();
  const std::vector<std::pair<const char*, std::function<void()>>> zeroSteps = {
      {"sphere stacks", [&] { sphere->CreateSphere(0.5, 30, 0); }},
      {"circle", [] { MakeNode<Vorn_3DCircle>()->CreateCircle(0.5, 0); }},
      {"conus", [] { MakeNode<Vorn_3DConus>()->CreateConus(0.5, 1.0, 0); }},
      {"cylinder", [] { MakeNode<Vorn_3DCylinder>()->CreateCylinder(0.5, 1.0, 0); }},
      {"torus", [] { MakeNode<Vorn_3DTorus>()->CreateTorus(0.5, 1.0, 1.0, 30, 0); }},
      {"tube", [] { MakeNode<Vorn_3DTube>()->CreateTube(0.5, 1.0, 1.0, 0); }},
  };  // sphere slices 0 and a capsule of one step are the script suite's cases
  for (const auto& [name, call] : zeroSteps) EXPECT_THROW(call(), ZeroDivisionError) << name;
  EXPECT_EQ(sphere->VertexArray_Positon.at(0).size(), 961u);

  // One stack: both rows are poles, every triangle degenerate, nothing fails.
  sphere->CreateSphere(0.5, 3, 1);
  EXPECT_EQ(sphere->VIndexArray.at(0).size(), 18u);
  // Negative steps: no vertices, so no buffer; texture coordinates add nothing.
  sphere->CreateSphere(0.5, -4, 10);
  EXPECT_FALSE(sphere->VVBOArray.contains(0));
  sphere->GenTexCoords(0);
  EXPECT_TRUE(sphere->VertexArray_UV.at(0).empty());
  // A negative radius mirrors the sphere through its centre; a flat torus has zero normals.
  sphere->CreateSphere(-1.0, 4, 4);
  EXPECT_EQ(sphere->VertexArray_Positon.at(0)[0][1], 1.0);
  auto torus = MakeNode<Vorn_3DTorus>();
  torus->CreateTorus(1.0, 1.0, 0.0, 3, 3);
  EXPECT_EQ(torus->VertexArray_Normal.at(0)[0], VertexEntry<3>(0.0, 0.0, 0.0));
}

TEST(Solids, BoxPickTestsTheExactBoxInWorldSpace) {
  auto box = MakeNode<Vorn_3DBox>(5.0, 0.0, 0.0);
  box->CreateBox(2.0, 2.0, 2.0);
  // Before its first update the world matrix is the identity: the box is at the origin.
  EXPECT_FALSE(box->checkBoxPick({5.5, 0.3, -10}, {0, 0, 1}).has_value());
  box->update(0.0);
  // The first face in face order (+z, -z, +y, -y, +x, -x) that the line meets answers.
  const struct {
    Vector3 from, along;
    std::optional<Vector3> hit;
  } rays[] = {
      {{5.5, 0.3, -10}, {0, 0, 1}, Vector3(5.5, 0.3, 1)},
      {{0, 0.3, -0.2}, {1, 0, 0}, Vector3(6, 0.3, -0.2)},
      {{5.5, 10, 0.5}, {0, -1, 0}, Vector3(5.5, 1, 0.5)},
      {{0, 1.5, 0}, {1, 0, 0}, std::nullopt},
      {{5, 0, 1.2}, {0, 1, 0}, std::nullopt},
  };
  for (const auto& r : rays) {
    const auto got = box->checkBoxPick(r.from, r.along);
    ASSERT_EQ(got.has_value(), r.hit.has_value()) << r.from.str();
    if (got) expect_near(got->position, *r.hit, r.from.str());
  }

  // Rotated by 45 degrees about y the corners reach x = 5 +- sqrt(2).
  box->SetRY(45.0);
  box->update(0.0);
  EXPECT_TRUE(box->checkBoxPick({6.2, 0, -10}, {0, 0, 1}).has_value());
  EXPECT_FALSE(box->checkBoxPick({6.5, 0, -10}, {0, 0, 1}).has_value());

  // The pick needs no submesh data, and follows scale and a parent.
  auto parent = MakeNode<Node>(0.0, 10.0, 0.0);
  auto child = MakeNode<Vorn_3DBox>(0.0, 0.0, 0.0, parent);
  child->SetSX(4.0);
  parent->update(0.0);
  EXPECT_TRUE(child->checkBoxPick({1.8, 10.2, -5}, {0, 0, 1}).has_value());
  EXPECT_FALSE(child->checkBoxPick({1.8, 0.2, -5}, {0, 0, 1}).has_value());
}

}  // namespace
}  // namespace vorn
