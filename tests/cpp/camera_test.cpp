// The camera's data, view matrix, targeting, movement and update (no GL).
#include "camera/camera.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>

#include "fake_scene.h"

namespace vorn {
namespace {

using Camera = Vorn_3DCamera;
using Node = Vorn_3DGameNode;
using test::FakeScene;

void ExpectVec(const Vector3& v, double x, double y, double z, const std::string& what) {
  EXPECT_NEAR(v.x, x, 1e-9) << what;
  EXPECT_NEAR(v.y, y, 1e-9) << what;
  EXPECT_NEAR(v.z, z, 1e-9) << what;
}

// A camera at `eye` looking at `target`, with its world matrix up to date.
std::shared_ptr<Camera> CameraAt(Vector3 eye, Vector3 target) {
  auto cam = MakeNode<Camera>(eye.x, eye.y, eye.z);
  cam->LookAt(target.x, target.y, target.z);
  cam->UpdateMatrices();
  return cam;
}

// Column-major 4x4 (GL memory order) applied to a point.
Vector3 Apply(const FloatList16& m, const Vector3& p) {
  return {m[0] * p.x + m[4] * p.y + m[8] * p.z + m[12], m[1] * p.x + m[5] * p.y + m[9] * p.z + m[13],
          m[2] * p.x + m[6] * p.y + m[10] * p.z + m[14]};
}

TEST(Camera, BuildViewMatrixMapsEyeToOriginAndTargetDownMinusZ) {
  struct Case {
    const char* name;
    Vector3 eye, target, up;
  };
  const Case cases[] = {
      {"axis aligned", {0, 0, 10}, {0, 0, 0}, {0, 1, 0}},
      {"from above and aside", {0, 10, 10}, {0, 0, 0}, {0, 1, 0}},
      {"off-centre target", {3, -2, 7}, {-1, 4, 0.5}, {0, 1, 0}},
      {"tilted up", {5, 5, 5}, {1, 2, 3}, {1, 1, 0}},
  };
  for (const auto& c : cases) {
    const FloatList16 m = Camera::BuildViewMatrix(c.eye, c.target, c.up);
    const double dist = (c.target - c.eye).length();
    ExpectVec(Apply(m, c.eye), 0, 0, 0, c.name);
    ExpectVec(Apply(m, c.target), 0, 0, -dist, c.name);
    // The up direction keeps pointing up on screen (positive y, no sideways part).
    Vector3 toward = c.target - c.eye;
    toward.normalize();
    Vector3 upOnly = c.up - toward * c.up.dot(toward);
    const Vector3 up = Apply(m, c.eye + upOnly);
    EXPECT_NEAR(up.x, 0, 1e-9) << c.name;
    EXPECT_GT(up.y, 0) << c.name;
    EXPECT_DOUBLE_EQ(m[15], 1.0) << c.name;
    EXPECT_DOUBLE_EQ(m[3], 0.0) << c.name;
  }
}

TEST(Camera, MovesFromTheLineOfSightAndTheUpVector) {
  // From (0, 0, 10) looking at the origin. Dollies keep the target; pans move both, and
  // MoveRight goes towards -X (the picture follows a drag). The up vector is not
  // normalised: it scales the vertical moves.
  const struct {
    const char* name;
    std::function<void(Camera&)> move;
    Vector3 eye, target;
  } cases[] = {
      {"MoveFront", [](Camera& c) { c.MoveFront(2); }, {0, 0, 8}, {0, 0, 0}},
      {"MoveBack", [](Camera& c) { c.MoveBack(3); }, {0, 0, 13}, {0, 0, 0}},
      {"SetDistance", [](Camera& c) { c.SetDistance(4); }, {0, 0, 4}, {0, 0, 0}},
      {"MoveRight", [](Camera& c) { c.MoveRight(1.5); }, {-1.5, 0, 10}, {-1.5, 0, 0}},
      {"MoveLeft", [](Camera& c) { c.MoveLeft(1.5); }, {1.5, 0, 10}, {1.5, 0, 0}},
      {"MoveUp", [](Camera& c) { c.SetUpDir(0, 2, 0), c.MoveUp(1); }, {0, 2, 10}, {0, 2, 0}},
      {"MoveDown", [](Camera& c) { c.SetUpDir(0, 2, 0), c.MoveDown(0.5); }, {0, -1, 10}, {0, -1, 0}},
  };
  for (const auto& c : cases) {
    auto cam = CameraAt({0, 0, 10}, {0, 0, 0});
    c.move(*cam);
    const auto eye = cam->GetXYZ();
    ExpectVec(Vector3(eye[0], eye[1], eye[2]), c.eye.x, c.eye.y, c.eye.z, c.name);
    ExpectVec(cam->GetTargetPosition(), c.target.x, c.target.y, c.target.z, c.name);
  }

  // With the eye on the target there is no direction: the camera stays.
  auto still = CameraAt({1, 2, 3}, {1, 2, 3});
  still->MoveFront(5);
  still->MoveBack(5);
  EXPECT_EQ(still->GetXYZ(), (std::array<double, 3>{1, 2, 3}));
}

TEST(Camera, CaughtNodeIsTheTargetAndUpdateCopiesItWhileRendering) {
  auto scene = std::make_shared<FakeScene>();
  auto node = MakeNode<Node>(3, 4, 5);
  node->UpdateMatrices();
  auto cam = CameraAt({0, 0, 10}, {1, 1, 1});
  cam->OnLoad(scene);
  cam->Catch(node);
  ExpectVec(cam->GetTargetPosition(), 3, 4, 5, "caught");

  // Not active and no render target: the target fields are left alone.
  cam->update(0.1);
  EXPECT_EQ(cam->targetX, 1);
  // Active: LookAt is overwritten by the caught node at each update.
  scene->SetActiveCamera(cam);
  cam->LookAt(9, 9, 9);
  cam->update(0.1);
  ExpectVec(Vector3(cam->targetX, cam->targetY, cam->targetZ), 3, 4, 5, "copied from the node");

  // A node that is gone no longer counts.
  cam->LookAt(7, 8, 9);
  node.reset();
  ExpectVec(cam->GetTargetPosition(), 7, 8, 9, "node gone");
}

TEST(Camera, ActiveAndCloneUseTheScene) {
  auto cam = MakeNode<Camera>(0, 10, 10);
  auto scene = std::make_shared<FakeScene>();
  cam->OnLoad(scene);
  cam->Active();
  EXPECT_EQ(scene->activeCamera, cam);

  cam->InitPrespective(60, 1.5, 0.5, 100);
  cam->LookAt(1, 2, 3);
  auto clone = cam->CloneCamera();
  EXPECT_EQ(*clone->GetTag(), "3DGameNode_2");  // loaded under a loaded parent
  ExpectVec(clone->GetTargetPosition(), 0, 0, 0, "clone target");
  EXPECT_EQ(clone->GetXYZ(), (std::array<double, 3>{0, 0, 0}));
  // The clone's eye is the parent's: it hangs below the camera.
  cam->update(0);
  ExpectVec(clone->GetWorldXYZ(), 0, 10, 10, "clone eye");
}

TEST(Camera, FollowCameraOfANodeWorksWithoutExplicitRegistration) {
  auto node = MakeNode<Node>(5, 0, 0);
  auto made = node->CreateFollowCamera(0, 2, 6);
  auto cam = std::dynamic_pointer_cast<Camera>(made);
  ASSERT_TRUE(cam);
  EXPECT_EQ(cam->GetCatchNode(), node);
  EXPECT_EQ(node->CreateFollowCamera(1, 1, 1), made);
  EXPECT_EQ(cam->GetXYZ(), (std::array<double, 3>{1, 1, 1}));
  node->UpdateMatrices();
  cam->UpdateMatrices();
  ExpectVec(cam->GetWorldXYZ(), 6, 1, 1, "follows the node's position");
  ExpectVec(cam->GetTargetPosition(), 5, 0, 0, "looks at the node");
}

TEST(Camera, NegativeScreenPointGivesZeroRayWithoutGL) {
  auto cam = MakeNode<Camera>(0, 0, 10);
  for (auto [px, py] : {std::pair{-1.0, 0.0}, std::pair{0.0, -0.5}}) {
    const auto [pt, dir] = cam->ScreenPtTo3DPointAndDir(px, py);
    ExpectVec(pt, 0, 0, 0, "point");
    ExpectVec(dir, 0, 0, 0, "direction");
  }
}

}  // namespace
}  // namespace vorn
