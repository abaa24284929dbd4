// The demonstration's walker as the tool writes it: the walk puts the feet where a
// hand-written hip and knee rotation puts them (which catches joint order and bind matrix
// mistakes). Its submesh, bones and actions are checked against the FBX loads in
// fbx_walker_test.cpp.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numbers>

#include <unistd.h>

#include "console_capture.h"
#include "mesh/glb_reader.h"
#include "mesh/mesh.h"
#include "mesh/skin_ani_glb.h"
#include "walker_model.h"

namespace vorn {
namespace {

struct P3 {
  double x, y, z;
};

// Rotation about x by `deg` degrees of `p` around `pivot`, the right-handed way.
P3 RotX(P3 p, P3 pivot, double deg) {
  const double a = deg * std::numbers::pi / 180.0, dy = p.y - pivot.y, dz = p.z - pivot.z;
  return {p.x, pivot.y + dy * std::cos(a) - dz * std::sin(a), pivot.z + dy * std::sin(a) + dz * std::cos(a)};
}

// A point through bone `bone` of the shader array (row vectors, rows flattened).
P3 Through(const std::vector<double>& m, std::size_t bone, P3 p) {
  const double* r = &m[bone * 16];
  return {p.x * r[0] + p.y * r[4] + p.z * r[8] + r[12], p.x * r[1] + p.y * r[5] + p.z * r[9] + r[13],
          p.x * r[2] + p.y * r[6] + p.z * r[10] + r[14]};
}

class DemoWalker : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto path = std::filesystem::temp_directory_path() / ("walker_" + std::to_string(::getpid()) + ".glb");
    ASSERT_TRUE(tools::WriteWalkerGLB(path.string()));
    std::ifstream in(path, std::ios::binary);
    std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::filesystem::remove(path);
    ConsoleCapture quiet;
    auto read = ReadGLB("walker.glb", std::move(bytes));
    ASSERT_TRUE(read.has_value());
    model = std::move(*read);
  }

  // The bone matrices of action `action` at `seconds`, through a mesh as PlayAction gives them.
  std::vector<double> Bones(int action, double seconds) {
    Vorn_3DMesh mesh;
    mesh.ActionDict = model.actions;
    auto skin = std::make_shared<Vorn_SkinSubMeshAni_GLB>();
    skin->SetInverseBindMatrices(model.submeshes[0].inverseBindMatrices);
    skin->SetInitBoneTree(model.initBoneTree);
    mesh.SubMesh_Dict.set(0, skin);
    ConsoleCapture out;
    mesh.PlayAction(action);
    const std::vector<double> bones = skin->GetFinalBoneMatrixByTime(seconds);
    EXPECT_EQ(std::count(out.lines().begin(), out.lines().end(), "R,S,T Time not equal"), 0);
    return bones;
  }

  GlbModel model;
};

TEST_F(DemoWalker, TheWalkSwingsTheLegsFromHipAndKnee) {
  // A quarter stride: the hips down 3 cm, the left leg 28 degrees back with the knee
  // bent 40 more, the right leg 28 degrees forward and straight.
  const std::vector<double> bones = Bones(0, 0.25);
  const P3 leftFoot{0.125, 0.03, 0.05}, rightFoot{-0.125, 0.03, 0.05};
  const P3 leftHip{0.13, 0.97, 0.0}, rightHip{-0.13, 0.97, 0.0};
  const auto lowered = [](P3 p) { return P3{p.x, p.y - 0.03, p.z}; };
  const P3 leftKnee = RotX({0.13, 0.47, 0.0}, leftHip, 28.0);
  const P3 wantLeft = RotX(RotX(lowered(leftFoot), leftHip, 28.0), leftKnee, 40.0);
  const P3 wantRight = RotX(lowered(rightFoot), rightHip, -28.0);
  const P3 gotLeft = Through(bones, 6, leftFoot), gotRight = Through(bones, 8, rightFoot);
  EXPECT_NEAR(gotLeft.x, wantLeft.x, 1e-5);
  EXPECT_NEAR(gotLeft.y, wantLeft.y, 1e-5);
  EXPECT_NEAR(gotLeft.z, wantLeft.z, 1e-5);
  EXPECT_NEAR(gotRight.y, wantRight.y, 1e-5);
  EXPECT_NEAR(gotRight.z, wantRight.z, 1e-5);
  EXPECT_LT(gotLeft.z, -0.4);  // well behind
  EXPECT_GT(gotRight.z, 0.4);  // well ahead

  // At the start of the idle, the pose is the bind pose but for the arms' slight lift.
  const std::vector<double> idle = Bones(1, 0.0);
  const P3 head{0.0, 1.9, 0.1};
  const P3 still = Through(idle, 2, head);
  EXPECT_NEAR(still.y, head.y, 1e-5);
  EXPECT_NEAR(still.z, head.z, 1e-5);
}

}  // namespace
}  // namespace vorn
