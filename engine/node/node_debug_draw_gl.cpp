// Debug aids of a node: the bounding box as corner brackets and the node's own axes.
#include <epoxy/gl.h>

#include <array>

#include "core/gl_state_guard.h"
#include "core/math_util.h"
#include "node/game_node.h"

namespace vorn {
namespace {

// Brackets run this share of each edge in from every corner.
constexpr double kBracketShare = 0.25;

// Colours of edges along x, y and z, as the axis lines show them.
constexpr float kAxisColour[3][3] = {{1.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}, {0.0f, 0.0f, 1.0f}};

inline void vertex(const Vector3& v) {
  glVertex3f(static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z));
}

}  // namespace

void Vorn_3DGameNode::draw_boundingbox() {
  if (!IsVisible() || !IsBoundingBoxVisible()) return;
  gl_state::CheckContext("Vorn_3DGameNode.draw_boundingbox");
  const Vector3 centerPt = (boxMin + boxMax) * 0.5;
  const double half[3] = {boxMax.x - centerPt.x, boxMax.y - centerPt.y, boxMax.z - centerPt.z};
  glBegin(GL_LINES);
  // Each of the eight corners sends one bracket arm along each of its three edges,
  // towards the neighbouring corner.
  for (int c = 0; c < 8; ++c) {
    const double sign[3] = {c & 1 ? 1.0 : -1.0, c & 2 ? 1.0 : -1.0, c & 4 ? 1.0 : -1.0};
    const Vector3 corner(centerPt.x + sign[0] * half[0], centerPt.y + sign[1] * half[1],
                         centerPt.z + sign[2] * half[2]);
    for (int axis = 0; axis < 3; ++axis) {
      // Inwards along the edge: twice the half size is the edge's length.
      double arm[3] = {0.0, 0.0, 0.0};
      arm[axis] = -sign[axis] * 2.0 * half[axis] * kBracketShare;
      glColor3f(kAxisColour[axis][0], kAxisColour[axis][1], kAxisColour[axis][2]);
      vertex(corner);
      vertex(Vector3(corner.x + arm[0], corner.y + arm[1], corner.z + arm[2]));
    }
  }
  glEnd();
}

void Vorn_3DGameNode::draw_axis(double rx_, double ry_, double rz_) {
  if (!IsVisible() || !IsAxisVisible()) return;
  gl_state::CheckContext("Vorn_3DGameNode.draw_axis");
  draw_begin(rx_, ry_, rz_);
  // The node's transform reaches the fixed-function stack only here, so that the
  // lines stand on the node (position and rotation, without its scale).
  const FloatList16 axis = MatrixToFloatList(GetAxisMatrix());
  glMultMatrixd(axis.data());
  glBegin(GL_LINES);
  for (int a = 0; a < 3; ++a) {
    glColor3f(kAxisColour[a][0], kAxisColour[a][1], kAxisColour[a][2]);
    glVertex3f(0.0f, 0.0f, 0.0f);
    glVertex3f(a == 0 ? 1.0f : 0.0f, a == 1 ? 1.0f : 0.0f, a == 2 ? 1.0f : 0.0f);
  }
  glEnd();
  draw_end();
}

}  // namespace vorn
