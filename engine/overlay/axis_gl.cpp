// The gizmo's three shapes and its draw.
#include <epoxy/gl.h>

#include <array>
#include <cmath>

#include "core/errors.h"
#include "core/gl_state_guard.h"
#include "core/math_util.h"
#include "overlay/axis.h"

namespace vorn {
namespace {

using Vertex = Vorn_3DAxis::Vertex;

constexpr const char* kAxisNames[3] = {"x", "y", "z"};
constexpr float kAxisColour[3][3] = {{1.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}, {0.0f, 0.0f, 1.0f}};
constexpr float kPickedColour[3] = {1.0f, 1.0f, 0.0f};

void colour(int axis, const std::optional<std::string>& picked) {
  const float* c = picked && *picked == kAxisNames[axis] ? kPickedColour : kAxisColour[axis];
  glColor3f(c[0], c[1], c[2]);
}

// A vertex given along x, turned onto `axis` by a cyclic swap of coordinates.
void vertex_on(int axis, double along, double u, double v) {
  double p[3];
  p[axis] = along;
  p[(axis + 1) % 3] = u;
  p[(axis + 2) % 3] = v;
  glVertex3d(p[0], p[1], p[2]);
}

// The six faces of the block [a0, a1] along the axis, [-h, h] across it, as quads.
void block(int axis, double a0, double a1, double h) {
  const double u[4] = {-h, h, h, -h}, v[4] = {-h, -h, h, h};
  for (int i = 0; i < 4; ++i) {  // the four sides
    const int j = (i + 1) % 4;
    vertex_on(axis, a0, u[i], v[i]);
    vertex_on(axis, a0, u[j], v[j]);
    vertex_on(axis, a1, u[j], v[j]);
    vertex_on(axis, a1, u[i], v[i]);
  }
  for (int i = 3; i >= 0; --i) vertex_on(axis, a0, u[i], v[i]);  // the two ends
  for (int i = 0; i < 4; ++i) vertex_on(axis, a1, u[i], v[i]);
}

}  // namespace

void Vorn_3DAxis::draw_translate() {
  // Checked before glBegin so that a fault never leaves a primitive open.
  const auto found = PickTriangleDict.find("t");
  if (found == PickTriangleDict.end()) throw KeyError("Vorn_3DAxis.draw_translate: PickTriangleDict has no 't'");
  const std::vector<Vertex>* lists[3];
  for (int a = 0; a < 3; ++a) {
    const auto list = found->second.find(kAxisNames[a]);
    if (list == found->second.end()) {
      throw KeyError(std::string("Vorn_3DAxis.draw_translate: PickTriangleDict['t'] has no '") + kAxisNames[a] + "'");
    }
    lists[a] = &list->second;
  }
  const std::size_t VertexCount = lists[0]->size();
  const std::size_t FaceCount = VertexCount / 3;
  if (lists[1]->size() < FaceCount * 3 || lists[2]->size() < FaceCount * 3) {
    throw IndexError("Vorn_3DAxis.draw_translate: the y and z lists must be as long as the x list");
  }
  glBegin(GL_TRIANGLES);
  for (std::size_t face = 0; face < FaceCount; ++face) {
    for (int a = 0; a < 3; ++a) {
      colour(a, PickedAxis);
      for (std::size_t k = 0; k < 3; ++k) {
        const Vertex& v = (*lists[a])[face * 3 + k];
        glVertex3f(static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2]));
      }
    }
  }
  glEnd();
}

void Vorn_3DAxis::draw_scale() {
  // A thin bar to CrossSize and a block of half-width 0.2 on its end, per axis.
  constexpr double CrossSize = 1.2, BlockHalf = 0.2;
  glBegin(GL_QUADS);
  for (int a = 0; a < 3; ++a) {
    colour(a, PickedAxis);
    block(a, 0.0, CrossSize - BlockHalf, LineRadius);
    block(a, CrossSize - BlockHalf, CrossSize + BlockHalf, BlockHalf);
  }
  glEnd();
}

void Vorn_3DAxis::draw_rotate() {
  // One flat ring about each axis, in the plane across it; the rings are nested (outer
  // sizes 1.2, 0.8 and 0.6, each LineRadius wide) so that none hides another.
  constexpr int NumAngleXY = 48;
  constexpr double CrossSize_Out[3] = {1.2, 0.8, 0.6};
  const double angleXY = PI * 2.0 / NumAngleXY;
  glBegin(GL_QUADS);
  for (int a = 0; a < 3; ++a) {
    colour(a, PickedAxis);
    const double out = CrossSize_Out[a], inner = CrossSize_Out[a] - LineRadius;
    for (int i = 0; i < NumAngleXY; ++i) {
      const double CosV1 = std::cos(i * angleXY), SinV1 = std::sin(i * angleXY);
      const double CosV2 = std::cos((i + 1) * angleXY), SinV2 = std::sin((i + 1) * angleXY);
      // Both windings, so that the flat ring shows from either side with culling on.
      vertex_on(a, 0.0, inner * CosV1, inner * SinV1);
      vertex_on(a, 0.0, out * CosV1, out * SinV1);
      vertex_on(a, 0.0, out * CosV2, out * SinV2);
      vertex_on(a, 0.0, inner * CosV2, inner * SinV2);
      vertex_on(a, 0.0, inner * CosV2, inner * SinV2);
      vertex_on(a, 0.0, out * CosV2, out * SinV2);
      vertex_on(a, 0.0, out * CosV1, out * SinV1);
      vertex_on(a, 0.0, inner * CosV1, inner * SinV1);
    }
  }
  glEnd();
}

void Vorn_3DAxis::draw(double rx_, double ry_, double rz_) {
  if (!IsVisible() || !AxisType) return;
  const Ptr node = GameNode.lock();
  if (!node) return;
  // A failing shape or bounding box leaves no matrix pushed and no program bound.
  const gl_state::DrawScope scope("Vorn_3DAxis.draw");
  draw_begin(rx_, ry_, rz_);
  // The pick and the drag need the view of the pass as it stands, before the node's
  // matrix joins the fixed-function stack below.
  draw_picktriangle();
  // The gizmo stays solid on a wire-frame scene.
  glPolygonMode(GL_FRONT, GL_FILL);
  glPolygonMode(GL_BACK, GL_FILL);
  const FloatList16 axisMatrix = MatrixToFloatList(node->GetAxisMatrix());
  if (CurrSubMeshFX) {
    gl_state::UseProgram(*CurrSubMeshFX);
    const GLint modelMatLocation = glGetUniformLocation(*CurrSubMeshFX, "uModelMatrix");
    if (modelMatLocation >= 0) {
      std::array<float, 16> m;
      for (int i = 0; i < 16; ++i) m[i] = static_cast<float>(axisMatrix[i]);
      glUniformMatrix4fv(modelMatLocation, 1, GL_FALSE, m.data());
    }
  } else {
    // Without the program the fixed-function stack carries the node's matrix.
    glMultMatrixd(axisMatrix.data());
  }
  if (*AxisType == "t") draw_translate();
  if (*AxisType == "s") draw_scale();
  if (*AxisType == "r") draw_rotate();
  // The bound node shows its box while selected; its own flag comes back after.
  const bool isBoxVisible = node->IsBoundingBoxVisible();
  node->SetBoundingBoxVisible(true);
  node->draw_boundingbox();
  node->SetBoundingBoxVisible(isBoxVisible);
  draw_end();
  if (CurrSubMeshFX) gl_state::UseProgram(0);
}

}  // namespace vorn
