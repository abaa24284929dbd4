// The camera's draw, screen ray and screen projection against the GL matrix stacks.
#include <cmath>

#include "camera/camera.h"
#include "core/gl_api.h"
#include "gl_scene.h"

namespace vorn {
namespace {

using Camera = Vorn_3DCamera;

// Distance of point p from the line through o with unit direction d.
double DistanceToRay(const Vector3& p, const Vector3& o, const Vector3& d) {
  const Vector3 op = p - o;
  return (op - d * op.dot(d)).length();
}

FloatList16 GetDoubles(GLenum which) {
  FloatList16 m{};
  glGetDoublev(which, m.data());
  return m;
}

// a * b for column-major 4x4 matrices.
FloatList16 Mul(const FloatList16& a, const FloatList16& b) {
  FloatList16 out{};
  for (int c = 0; c < 4; ++c)
    for (int r = 0; r < 4; ++r)
      for (int k = 0; k < 4; ++k) out[c * 4 + r] += a[k * 4 + r] * b[c * 4 + k];
  return out;
}

class CameraGL : public test::NodeGLTest {
 protected:
  void SetUp() override {
    NodeGLTest::SetUp();
    if (!HasContext()) return;
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    cam = MakeNode<Camera>(0, 10, 10);
    cam->LookAt(0, 0, 0);
    cam->OnLoad(scene);
  }
  // The frame's part for the camera: update, then draw.
  void Frame() {
    cam->update(0.016);
    cam->draw();
  }

  std::shared_ptr<Camera> cam;
};

TEST_F(CameraGL, ActiveDrawLeavesProjectionTimesViewOnTheProjectionStack) {
  cam->InitPrespective(60.0, 4.0 / 3.0, 0.5, 200.0);
  cam->Active();
  Frame();

  GLint mode = 0;
  glGetIntegerv(GL_MATRIX_MODE, &mode);
  EXPECT_EQ(mode, GL_MODELVIEW);
  ASSERT_TRUE(cam->GetProjMatrix() && cam->GetViewMatrix());
  EXPECT_FALSE(cam->viewProjMatrix);

  // The perspective as documented for gluPerspective, in GL memory order.
  const double f = 1.0 / std::tan(60.0 * M_PI / 360.0), n = 0.5, fa = 200.0;
  const FloatList16 expected = {f / (4.0 / 3.0), 0, 0, 0, 0, f, 0, 0, 0, 0, (fa + n) / (n - fa), -1,
                                0, 0, 2 * fa * n / (n - fa), 0};
  const FloatList16 view = Camera::BuildViewMatrix({0, 10, 10}, {0, 0, 0}, {0, 1, 0});
  for (int i = 0; i < 16; ++i) {
    EXPECT_NEAR((*cam->GetProjMatrix())[i], expected[i], 1e-5) << i;
    EXPECT_NEAR((*cam->GetViewMatrix())[i], view[i], 1e-12) << i;
  }
  const FloatList16 onStack = GetDoubles(GL_PROJECTION_MATRIX), product = Mul(expected, view);
  for (int i = 0; i < 16; ++i) EXPECT_NEAR(onStack[i], product[i], 1e-4) << i;
  // The modelview stack is left to the nodes.
  const FloatList16 modelview = GetDoubles(GL_MODELVIEW_MATRIX);
  for (int i = 0; i < 16; ++i) EXPECT_EQ(modelview[i], i % 5 == 0 ? 1.0 : 0.0) << i;
}

TEST_F(CameraGL, CameraWithoutTargetsDoesNothingUnlessActive) {
  auto node = MakeNode<Vorn_3DGameNode>(4, 0, 0);
  node->UpdateMatrices();
  cam->Catch(node);
  glMatrixMode(GL_PROJECTION);
  glTranslated(1, 2, 3);  // a marker the draw would replace
  glMatrixMode(GL_MODELVIEW);

  Frame();
  EXPECT_EQ(GetDoubles(GL_PROJECTION_MATRIX)[12], 1.0);
  EXPECT_FALSE(cam->GetViewMatrix() || cam->GetProjMatrix());
  EXPECT_EQ(cam->targetX, 0.0);

  cam->Active();
  Frame();
  EXPECT_TRUE(cam->GetViewMatrix());
  EXPECT_EQ(cam->targetX, 4.0);
}

TEST_F(CameraGL, ScreenCentreRayRunsFromTheEyeToTheTargetAndProjectsBack) {
  cam->Active();
  Frame();
  const auto [pt, dir] = cam->ScreenPtTo3DPointAndDir(test::kWindowWidth / 2.0, test::kWindowHeight / 2.0);
  Vector3 expectedDir(0, -10, -10);
  expectedDir.normalize();
  EXPECT_NEAR((dir - expectedDir).length(), 0.0, 1e-5);
  // The point lies on the near plane, on the line of sight.
  EXPECT_NEAR((pt - Vector3(0, 10, 10)).length(), cam->Near, 1e-4);
  EXPECT_LT(DistanceToRay(Vector3(0, 0, 0), pt, dir), 1e-4);

  // Screen positions have their origin at the top left: the target lands in the centre,
  // a point above and right of it above and right on screen.
  const auto centre = cam->getScreenPosition(0, 0, 0);
  EXPECT_NEAR(centre[0], test::kWindowWidth / 2.0, 1e-6);
  EXPECT_NEAR(centre[1], test::kWindowHeight / 2.0, 1e-6);
  EXPECT_TRUE(centre[2] > 0.0 && centre[2] < 1.0);
  const auto upRight = cam->getScreenPosition(1, 1, 0);
  EXPECT_LT(upRight[1], centre[1] - 1.0);
  EXPECT_GT(upRight[0], centre[0] + 1.0);
}

TEST_F(CameraGL, WorldRotationIsUndoneOnlyWhenAsked) {
  scene->SetWorldRotation(25, -40);
  cam->Active();
  Frame();
  // A node at p is seen at p rotated by the world rotation: aim at where it shows.
  const Vector3 p(1.5, -0.5, 2.0);
  const Vector3 shown = Vec3MulMatrix(p, MatrixToFloatList(scene->worldRotate));
  const auto screen = cam->getScreenPosition(shown.x, shown.y, shown.z);

  const auto [pt, dir] = cam->ScreenPtTo3DPointAndDir(screen[0], screen[1]);
  EXPECT_LT(DistanceToRay(p, pt, dir), 1e-3);
  EXPECT_GT(DistanceToRay(shown, pt, dir), 0.1);
  EXPECT_NEAR(dir.length(), 1.0, 1e-9);

  const auto [rawPt, rawDir] = cam->ScreenPtTo3DPointAndDir(screen[0], screen[1], false);
  EXPECT_LT(DistanceToRay(shown, rawPt, rawDir), 1e-3);
}

}  // namespace
}  // namespace vorn
