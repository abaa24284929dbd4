#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "console_capture.h"
#include "mesh/skin_ani_data.h"
#include "mesh/skin_ani_glb.h"

namespace vorn {
namespace {

// Reference arithmetic of the tests, independent of the engine's matrix code: row-major
// 4x4 arrays for row vectors, so mul(a, b) transforms by a first, then by b.
using M4 = std::array<double, 16>;

M4 identity4() { return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}; }

M4 mul(const M4& a, const M4& b) {
  M4 out{};
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c)
      for (int k = 0; k < 4; ++k) out[r * 4 + c] += a[r * 4 + k] * b[k * 4 + c];
  return out;
}

// v rotated by the unit quaternion q = (x, y, z, w) as q v q*, by Hamilton products.
std::array<double, 3> rotate(const std::array<double, 4>& q, const std::array<double, 3>& v) {
  using Q = std::array<double, 4>;  // x, y, z, w
  auto ham = [](const Q& a, const Q& b) -> Q {
    return {a[3] * b[0] + a[0] * b[3] + a[1] * b[2] - a[2] * b[1], a[3] * b[1] - a[0] * b[2] + a[1] * b[3] + a[2] * b[0],
            a[3] * b[2] + a[0] * b[1] - a[1] * b[0] + a[2] * b[3], a[3] * b[3] - a[0] * b[0] - a[1] * b[1] - a[2] * b[2]};
  };
  const Q r = ham(ham(q, {v[0], v[1], v[2], 0.0}), {-q[0], -q[1], -q[2], q[3]});
  return {r[0], r[1], r[2]};
}

// Scale, then rotation by a unit quaternion, then translation: each row is the image
// of a scaled basis vector, row 3 the translation.
M4 tqs(std::array<double, 3> t, std::array<double, 4> q, std::array<double, 3> s) {
  M4 out = identity4();
  for (int r = 0; r < 3; ++r) {
    std::array<double, 3> e{0, 0, 0};
    e[r] = s[r];
    const auto row = rotate(q, e);
    for (int c = 0; c < 3; ++c) out[r * 4 + c] = row[c];
  }
  for (int c = 0; c < 3; ++c) out[12 + c] = t[c];
  return out;
}

// A unit quaternion for angle degrees about an axis.
std::array<double, 4> axis_angle(std::array<double, 3> axis, double degrees) {
  const double n = std::sqrt(axis[0] * axis[0] + axis[1] * axis[1] + axis[2] * axis[2]);
  const double h = degrees * M_PI / 360.0;
  return {axis[0] / n * std::sin(h), axis[1] / n * std::sin(h), axis[2] / n * std::sin(h), std::cos(h)};
}

FbxMatrix to_fbx(const M4& a) {
  FbxMatrix out;
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) out.Set(r, c, a[r * 4 + c]);
  return out;
}

void expect_matrix_near(const double* got, const M4& want, const std::string& what) {
  for (int i = 0; i < 16; ++i) EXPECT_NEAR(got[i], want[i], 1e-5) << what << ", element " << i;
}

// The shader matrix of one bone: inverse bind, bind, inverse bind again, then the
// animated frame, applied in this order to a point.
M4 shader_matrix(const M4& frame, const M4& inverse, const M4& init) {
  return mul(mul(mul(inverse, init), inverse), frame);
}

// Root joint 1 (no parent) and child joint 2, three keyframes each at 0, 0.5 and 1 s.
struct TwoJoints {
  M4 bindRoot = tqs({0, 1, 0}, axis_angle({0, 0, 1}, 30), {1, 1, 1});
  M4 bindChild = tqs({0, 2, 0}, axis_angle({1, 0, 0}, -20), {1, 1, 1});
  M4 invRoot = tqs({0.5, -1, 0.2}, axis_angle({0, 1, 0}, 15), {1, 1, 1});
  M4 invChild = tqs({0, -3, 0.1}, axis_angle({1, 1, 0}, 40), {1, 1, 1});
  std::array<M4, 3> keysRoot = {tqs({0, 1, 0}, axis_angle({0, 0, 1}, 10), {1, 1, 1}),
                                tqs({0.2, 1, 0}, axis_angle({0, 1, 1}, 50), {1, 2, 1}),
                                tqs({0.4, 1.5, -1}, axis_angle({1, 2, 3}, 95), {1, 1, 0.5})};
  std::array<M4, 3> keysChild = {tqs({0, 2, 0}, axis_angle({1, 0, 0}, 5), {1, 1, 1}),
                                 tqs({0, 2.5, 0}, axis_angle({3, -1, 0}, 70), {1, 1, 1}),
                                 tqs({1, 2, 0}, axis_angle({0, -1, 2}, 135), {2, 2, 2})};
  std::array<double, 3> times = {0.0, 0.5, 1.0};

  std::shared_ptr<BoneTreeTable> tree = std::make_shared<BoneTreeTable>();
  std::shared_ptr<InverseBindTable> inverse = std::make_shared<InverseBindTable>();
  std::shared_ptr<BoneKeyframeTable> keys = std::make_shared<BoneKeyframeTable>();
  Vorn_SkinSubMeshAni_GLB skin;

  TwoJoints() {
    tree->set(1, {std::nullopt, to_fbx(bindRoot)});
    tree->set(2, {1, to_fbx(bindChild)});
    inverse->set(1, to_fbx(invRoot));
    inverse->set(2, to_fbx(invChild));
    for (int k = 0; k < 3; ++k) {
      (*keys)[1].push_back({times[k], to_fbx(keysRoot[k])});
      (*keys)[2].push_back({times[k], to_fbx(keysChild[k])});
    }
    skin.SetInitBoneTree(tree);
    skin.SetInverseBindMatrices(inverse);
    skin.SetAniBonesMatrix(keys);
  }

  // The two shader matrices when keyframe `key` (none: before the first) applies.
  std::array<M4, 2> expected(std::optional<int> key) const {
    const M4 frameRoot = key ? keysRoot[*key] : identity4();
    const M4 frameChild = key ? mul(keysChild[*key], keysRoot[*key]) : identity4();
    return {shader_matrix(frameRoot, invRoot, bindRoot),
            shader_matrix(frameChild, invChild, mul(bindChild, bindRoot))};
  }
};

TEST(SkinSubMeshAniData, StartsAsSixtyFourIdentityBonesAndReturnsThemUnchanged) {
  Vorn_SkinSubMeshAniData data;
  ASSERT_EQ(data.FinalShaderMatrixArray.size(), 1024u);
  for (std::size_t i = 0; i < 1024; ++i) {
    EXPECT_EQ(data.FinalShaderMatrixArray[i], (i % 16) % 5 == 0 ? 1.0 : 0.0) << i;
  }
  EXPECT_EQ(&data.GetFinalBoneMatrixByTime(3.0), &data.FinalShaderMatrixArray);
  EXPECT_TRUE(data.FinalBoneXYZArray.empty());
}

TEST(SkinSubMeshAniGlb, LastKeyframeReachedAppliesWithParentsAtTheSameIndex) {
  TwoJoints j;
  const struct {
    double time;
    std::optional<int> key;
    const char* line;
  } cases[] = {
      {-0.5, std::nullopt, "CurrFrame: -0.5"},  // before the first key: identity frames
      {0.0, 0, "CurrFrame: 0.0"},               // exactly on a key selects it
      {0.25, 0, "CurrFrame: 0.25"},             // no interpolation between keys
      {0.5, 1, "CurrFrame: 0.5"},
      {0.99, 1, "CurrFrame: 0.99"},
      {1.0, 2, "CurrFrame: 1.0"},
      {7.0, 2, "CurrFrame: 7.0"},  // past the last key the last one stays
  };
  for (const auto& c : cases) {
    ConsoleCapture console;
    const std::vector<double>& out = j.skin.GetFinalBoneMatrixByTime(c.time);
    ASSERT_EQ(out.size(), 32u) << c.time;
    const auto want = j.expected(c.key);
    expect_matrix_near(out.data(), want[0], "root at " + std::to_string(c.time));
    expect_matrix_near(out.data() + 16, want[1], "child at " + std::to_string(c.time));
    EXPECT_EQ(console.lines(), std::vector<std::string>{c.line});
    EXPECT_EQ(j.skin.BoneCount, 2);
  }
}

TEST(SkinSubMeshAniGlb, SkeletonSegmentsShowTheBindPoseParentFirst) {
  TwoJoints j;
  ConsoleCapture console;
  j.skin.GetFinalBoneMatrixByTime(0.5);
  // Only the child has a parent; its segment runs from the parent's local matrix to its
  // own bind chain, both through the child's inverse bind matrix.
  ASSERT_EQ(j.skin.GetBoneXYZList().size(), 1u);
  const M4 a = mul(j.invChild, j.bindRoot);
  const M4 b = mul(mul(j.invChild, j.bindChild), j.bindRoot);
  const auto& seg = j.skin.GetBoneXYZList()[0];
  for (int i = 0; i < 3; ++i) {
    EXPECT_NEAR(seg[i], a[12 + i], 1e-9) << i;
    EXPECT_NEAR(seg[3 + i], b[12 + i], 1e-9) << i;
  }
  // The segments do not move with time; the shader matrices do.
  const auto first = j.skin.FinalShaderMatrixArray;
  j.skin.GetFinalBoneMatrixByTime(1.0);
  EXPECT_EQ(j.skin.GetBoneXYZList()[0], seg);
  EXPECT_NE(j.skin.FinalShaderMatrixArray, first);
}

TEST(SkinSubMeshAniGlb, NodeZeroEndsTheBindChainButItsKeyframesApply) {
  const M4 bind0 = tqs({5, 0, 0}, axis_angle({0, 0, 1}, 90), {1, 1, 1});
  const M4 bind1 = tqs({0, 1, 0}, axis_angle({1, 0, 0}, 30), {1, 1, 1});
  const M4 inv1 = tqs({0, -1, 0}, axis_angle({0, 1, 0}, 10), {1, 1, 1});
  const M4 key0 = tqs({1, 0, 0}, axis_angle({0, 1, 0}, 60), {1, 1, 1});
  const M4 key1 = tqs({0, 1, 1}, axis_angle({1, 1, 1}, 45), {1, 1, 1});
  auto tree = std::make_shared<BoneTreeTable>();
  tree->set(0, {std::nullopt, to_fbx(bind0)});
  tree->set(1, {0, to_fbx(bind1)});
  auto inverse = std::make_shared<InverseBindTable>();
  inverse->set(0, to_fbx(identity4()));
  inverse->set(1, to_fbx(inv1));
  auto keys = std::make_shared<BoneKeyframeTable>();
  (*keys)[0].push_back({0.0, to_fbx(key0)});
  (*keys)[1].push_back({0.0, to_fbx(key1)});
  (*keys)[5];  // a bone whose keyframe list is empty
  tree->set(5, {1, to_fbx(bind1)});
  inverse->set(5, to_fbx(inv1));

  Vorn_SkinSubMeshAni_GLB skin;
  skin.SetInitBoneTree(tree);
  skin.SetInverseBindMatrices(inverse);
  skin.SetAniBonesMatrix(keys);
  ConsoleCapture console;
  const auto& out = skin.GetFinalBoneMatrixByTime(0.0);
  ASSERT_EQ(out.size(), 48u);
  expect_matrix_near(out.data(), shader_matrix(key0, identity4(), bind0), "node 0");
  // Bone 1: node 0's bind matrix is left out, its keyframe is not.
  expect_matrix_near(out.data() + 16, shader_matrix(mul(key1, key0), inv1, bind1), "bone 1");
  // Bone 5: no keyframes, so an identity frame over the bind chain through bone 1.
  expect_matrix_near(out.data() + 32, shader_matrix(identity4(), inv1, mul(bind1, bind1)), "bone 5");
  // No segment for a parent of index 0: only bone 5 (parent 1) has one.
  EXPECT_EQ(skin.GetBoneXYZList().size(), 1u);
}

TEST(SkinSubMeshAniGlb, BonesOfOneParentMayReachDifferentKeyframes) {
  // Two children of one animated parent with their own key timings: each samples the
  // parent at its own keyframe index, in one evaluation.
  std::array<M4, 3> parentKeys, aKeys, bKeys;
  for (int k = 0; k < 3; ++k) {
    parentKeys[k] = tqs({double(k), 0, 0}, axis_angle({0, 0, 1}, 20.0 * (k + 1)), {1, 1, 1});
    aKeys[k] = tqs({0, 1, 0}, axis_angle({1, 0, 0}, 15.0 * (k + 1)), {1, 1, 1});
    bKeys[k] = tqs({0, 0, 1}, axis_angle({0, 1, 0}, -25.0 * (k + 1)), {1, 1, 1});
  }
  auto tree = std::make_shared<BoneTreeTable>();
  auto inverse = std::make_shared<InverseBindTable>();
  auto keys = std::make_shared<BoneKeyframeTable>();
  for (std::int64_t n : {3, 4, 6}) {
    tree->set(n, {n == 3 ? std::optional<std::int64_t>() : 3, to_fbx(identity4())});
    inverse->set(n, to_fbx(identity4()));
  }
  for (int k = 0; k < 3; ++k) {
    (*keys)[4].push_back({0.5 * k, to_fbx(aKeys[k])});  // 0, 0.5, 1
    (*keys)[6].push_back({0.1 * k, to_fbx(bKeys[k])});  // 0, 0.1, 0.2
    (*keys)[3].push_back({0.5 * k, to_fbx(parentKeys[k])});
  }
  Vorn_SkinSubMeshAni_GLB skin;
  skin.SetInitBoneTree(tree);
  skin.SetInverseBindMatrices(inverse);
  skin.SetAniBonesMatrix(keys);
  ConsoleCapture console;
  const auto& out = skin.GetFinalBoneMatrixByTime(0.6);
  ASSERT_EQ(out.size(), 48u);
  expect_matrix_near(out.data(), mul(aKeys[1], parentKeys[1]), "bone 4 at key 1");
  expect_matrix_near(out.data() + 16, mul(bKeys[2], parentKeys[2]), "bone 6 at key 2");
  expect_matrix_near(out.data() + 32, parentKeys[1], "bone 3 at key 1");
}

TEST(SkinSubMeshAniGlb, KeyTimesOutOfOrderTakeTheLastReachedInListOrder) {
  TwoJoints j;
  // Times 0, 1, 0.5: at 0.7 keyframes 0 and 2 are reached, and 2 is the later one.
  auto keys = std::make_shared<BoneKeyframeTable>(*j.keys);
  (*keys)[1][1].time = 1.0;
  (*keys)[1][2].time = 0.5;
  j.skin.SetAniBonesMatrix(keys);
  ConsoleCapture console;
  const auto& out = j.skin.GetFinalBoneMatrixByTime(0.7);
  expect_matrix_near(out.data(), j.expected(2)[0], "root");
  // The child's times ascend: keyframe 1, with its parent's keyframe 1.
  expect_matrix_near(out.data() + 16, j.expected(1)[1], "child");
}

TEST(SkinSubMeshAniGlb, TablesNotSetOrEmpty) {
  Vorn_SkinSubMeshAni_GLB skin;
  EXPECT_FALSE(skin.BoneCount.has_value());
  ConsoleCapture console;
  try {
    skin.GetFinalBoneMatrixByTime(0.0);
    ADD_FAILURE() << "no exception";
  } catch (const RuntimeError& e) {
    EXPECT_STREQ(e.what(), "Vorn_SkinSubMeshAni_GLB.GetFinalBoneMatrixByTime: no keyframe table, no action started");
  }
  // An empty table leaves the arrays as they were, without a console line.
  skin.SetAniBonesMatrix(std::make_shared<BoneKeyframeTable>());
  EXPECT_EQ(skin.GetFinalBoneMatrixByTime(1.0).size(), 1024u);
  EXPECT_TRUE(console.lines().empty());
  EXPECT_FALSE(skin.BoneCount.has_value());
}

// A broken table fails with the lookup error of the walk, after the bones before the
// broken one were written.
TEST(SkinSubMeshAniGlb, BrokenTablesGiveTheWalksLookupErrors) {
  enum class Kind { Key, Index, Recursion };
  struct Case {
    const char* name;
    void (*breakTables)(BoneTreeTable&, InverseBindTable&, BoneKeyframeTable&);
    double time;
    Kind kind;
    const char* message;
    std::size_t floatsWritten;
  };
  const Case cases[] = {
      {"bone missing from the tree",
       [](BoneTreeTable& t, InverseBindTable&, BoneKeyframeTable&) { t.erase(2); }, 0.0, Kind::Key,
       "bone 2 is not in InitBoneTree", 16},
      {"bone missing from the inverse bind matrices",
       [](BoneTreeTable&, InverseBindTable& i, BoneKeyframeTable&) { i.erase(1); }, 0.0, Kind::Key,
       "bone 1 is not in InverseBindMatrices", 0},
      {"parent with fewer keyframes than the child reaches",
       [](BoneTreeTable&, InverseBindTable&, BoneKeyframeTable& k) { k[1].pop_back(); }, 1.0, Kind::Index,
       "keyframe 2 of bone 2 has no match in its animated parent 1, which has 2 keyframes", 16},
      // Node 9 is animated but has no tree entry: the keyframe walk fails on it.
      {"animated parent missing from the tree",
       [](BoneTreeTable& t, InverseBindTable&, BoneKeyframeTable& k) {
         t.at(1).parent = 9;
         const BoneKeyframes copy = k.at(1);  // copied first: inserting may move k's storage
         k.set(9, copy);
       },
       0.0, Kind::Key, "bone 9, an animated parent of bone 1, is not in InitBoneTree", 0},
      {"skeleton parent missing from the tree",
       [](BoneTreeTable& t, InverseBindTable&, BoneKeyframeTable&) { t.at(1).parent = 9; }, 0.0, Kind::Key,
       "parent 9 of bone 1 is not in InitBoneTree", 0},
      {"bind chain that loops",
       [](BoneTreeTable& t, InverseBindTable&, BoneKeyframeTable&) { t.at(1).parent = 2; }, 0.0, Kind::Recursion,
       "the bind parent chain of bone 1 loops", 0},
  };
  for (const auto& c : cases) {
    TwoJoints j;
    auto tree = std::make_shared<BoneTreeTable>(*j.tree);
    auto inverse = std::make_shared<InverseBindTable>(*j.inverse);
    auto keys = std::make_shared<BoneKeyframeTable>(*j.keys);
    c.breakTables(*tree, *inverse, *keys);
    j.skin.SetInitBoneTree(tree);
    j.skin.SetInverseBindMatrices(inverse);
    j.skin.SetAniBonesMatrix(keys);
    ConsoleCapture console;
    const std::string want = std::string("Vorn_SkinSubMeshAni_GLB.GetFinalBoneMatrixByTime: ") + c.message;
    try {
      j.skin.GetFinalBoneMatrixByTime(c.time);
      ADD_FAILURE() << c.name << ": no exception";
    } catch (const KeyError& e) {
      EXPECT_EQ(c.kind, Kind::Key) << c.name;
      EXPECT_EQ(e.what(), want) << c.name;
    } catch (const IndexError& e) {
      EXPECT_EQ(c.kind, Kind::Index) << c.name;
      EXPECT_EQ(e.what(), want) << c.name;
    } catch (const RecursionError& e) {
      EXPECT_EQ(c.kind, Kind::Recursion) << c.name;
      EXPECT_EQ(e.what(), want) << c.name;
    }
    EXPECT_EQ(j.skin.FinalShaderMatrixArray.size(), c.floatsWritten) << c.name;
    EXPECT_EQ(console.lines().size(), 1u) << c.name;
  }
}

TEST(SkinSubMeshAniGlb, ShortParentFailsAtTheFirstReachedKeyframeItCannotMatch) {
  // Chain 2 -> 20 -> 30 with 3, 2 and 1 keyframes. At the last key every reached
  // keyframe walks the chain: keyframe 1 already fails on node 30, before keyframe 2
  // could fail on node 20.
  TwoJoints j;
  auto tree = std::make_shared<BoneTreeTable>(*j.tree);
  auto keys = std::make_shared<BoneKeyframeTable>();
  tree->at(2).parent = 20;
  tree->set(20, {30, to_fbx(identity4())});
  tree->set(30, {std::nullopt, to_fbx(identity4())});
  auto inverse = std::make_shared<InverseBindTable>(*j.inverse);
  inverse->set(20, to_fbx(identity4()));
  inverse->set(30, to_fbx(identity4()));
  j.skin.SetInverseBindMatrices(inverse);
  (*keys)[2] = (*j.keys)[2];
  (*keys)[20] = {(*j.keys)[1][0], (*j.keys)[1][1]};
  (*keys)[30] = {(*j.keys)[1][0]};
  j.skin.SetInitBoneTree(tree);
  j.skin.SetAniBonesMatrix(keys);
  ConsoleCapture console;
  // Only keyframe 0 reached: every chain node has it.
  EXPECT_NO_THROW(j.skin.GetFinalBoneMatrixByTime(0.2));
  try {
    j.skin.GetFinalBoneMatrixByTime(1.0);
    ADD_FAILURE() << "no exception";
  } catch (const IndexError& e) {
    EXPECT_STREQ(e.what(),
                 "Vorn_SkinSubMeshAni_GLB.GetFinalBoneMatrixByTime: keyframe 1 of bone 2 has no match in its "
                 "animated parent 30, which has 1 keyframes");
  }
  // An animated chain that loops fails instead of walking forever.
  tree->at(30).parent = 2;
  (*keys)[30].push_back((*j.keys)[1][1]);
  (*keys)[30].push_back((*j.keys)[1][2]);
  (*keys)[20].push_back((*j.keys)[1][2]);
  EXPECT_THROW(j.skin.GetFinalBoneMatrixByTime(1.0), RecursionError);
}

}  // namespace
}  // namespace vorn
