// The camera's GL side: projection read-back, the per-frame draw, the screen ray and
// the projection of world points to the window.
#include <array>
#include <string>

#include "camera/camera.h"
#include "core/errors.h"
#include "core/gl_api.h"
#include "core/gl_state_guard.h"
#include "core/screen_settings.h"

namespace vorn {
namespace {

struct GLMatrices {
  std::array<GLint, 4> viewport;
  std::array<GLdouble, 16> modelview;
  std::array<GLdouble, 16> projection;
};

GLMatrices read_matrices() {
  GLMatrices m;
  glGetIntegerv(GL_VIEWPORT, m.viewport.data());
  glGetDoublev(GL_MODELVIEW_MATRIX, m.modelview.data());
  glGetDoublev(GL_PROJECTION_MATRIX, m.projection.data());
  return m;
}

Vector3 unproject(const GLMatrices& m, double wx, double wy, double wz) {
  GLdouble x = 0, y = 0, z = 0;
  if (gluUnProject(wx, wy, wz, m.modelview.data(), m.projection.data(), m.viewport.data(), &x, &y, &z) != GL_TRUE) {
    throw ValueError("Vorn_3DCamera.ScreenPtTo3DPointAndDir: the matrices in force can't be inverted");
  }
  return {x, y, z, 0};
}

}  // namespace

FloatList16 Vorn_3DCamera::BuildPerspectiveMatrix() {
  gl_state::CheckContext("Vorn_3DCamera.BuildPerspectiveMatrix");
  std::array<GLfloat, 16> m{};
  glGetFloatv(GL_PROJECTION_MATRIX, m.data());
  FloatList16 out;
  for (int i = 0; i < 16; ++i) out[i] = static_cast<double>(m[i]);
  return out;
}

void Vorn_3DCamera::SetupProjectionAndView() {
  gl_state::CheckContext("Vorn_3DCamera.SetupProjectionAndView");
  const Vector3 EyePosition = GetWorldXYZ();
  glMatrixMode(GL_PROJECTION);
  glLoadIdentity();
  gluPerspective(Fov, Aspect, Near, Far);
  projMatrix = BuildPerspectiveMatrix();
  // The view goes onto the projection stack too: the modelview stack is the nodes'.
  gluLookAt(EyePosition.x, EyePosition.y, EyePosition.z, targetX, targetY, targetZ, upDirX, upDirY, upDirZ);
  viewMatrix = BuildViewMatrix(EyePosition, Vector3(targetX, targetY, targetZ), Vector3(upDirX, upDirY, upDirZ));
  viewProjMatrix.reset();
  glMatrixMode(GL_MODELVIEW);
}

void Vorn_3DCamera::draw(double /*rx*/, double /*ry*/, double /*rz*/) {
  auto scene = RequireScene("draw");
  if (!IsRendering(*scene)) return;
  const gl_state::DrawScope scope("Vorn_3DCamera.draw");
  SetupProjectionAndView();
  if (!RenderTargetArray.empty()) RenderTargets(*scene);
}

std::pair<Vector3, Vector3> Vorn_3DCamera::ScreenPtTo3DPointAndDir(double px, double py, bool inverse) const {
  Vector3 Pt(0.0, 0.0, 0.0, 0), Dir(0.0, 0.0, 0.0, 0);
  if (px < 0 || py < 0) return {Pt, Dir};
  gl_state::CheckContext("Vorn_3DCamera.ScreenPtTo3DPointAndDir");

  // The depth under the point plays no part in the ray, so it is not read back: a read
  // would stall the pipeline once for every object that tests the pick.
  const GLMatrices m = read_matrices();
  const double wy = static_cast<double>(SCREEN_HEIGHT) - py;
  const Vector3 nearPt = unproject(m, px, wy, 0.0);
  const Vector3 farPt = unproject(m, px, wy, 1.0);
  Pt = nearPt;
  Dir = farPt - nearPt;
  Dir.normalize();

  // Undo the scene's world rotation: the ray then lies in the world in which nodes
  // keep their positions.
  if (auto scene = sceneInstance.lock(); scene && inverse) {
    const FloatList16 inv = MatrixToFloatList(scene->GetWorldRotateMatrix().Inverse());
    Pt = Vec3MulMatrix(Pt, inv);
    Dir = Vec3MulMatrix(Dir, inv);
    Dir.normalize();
  }
  return {Pt, Dir};
}

std::array<double, 3> Vorn_3DCamera::getScreenPosition(double px, double py, double pz) const {
  gl_state::CheckContext("Vorn_3DCamera.getScreenPosition");
  const GLMatrices m = read_matrices();
  GLdouble wx = 0, wy = 0, wz = 0;
  if (gluProject(px, py, pz, m.modelview.data(), m.projection.data(), m.viewport.data(), &wx, &wy, &wz) != GL_TRUE) {
    throw ValueError("Vorn_3DCamera.getScreenPosition: the point can't be projected with the matrices in force");
  }
  return {wx, static_cast<double>(SCREEN_HEIGHT) - wy, wz};
}

}  // namespace vorn
