// The gizmo's geometry, its pick and the drag of the bound node.
#include "overlay/axis.h"

#include <cmath>

#include "camera/camera.h"
#include "core/console.h"
#include "core/errors.h"
#include "core/math_util.h"
#include "core/screen_settings.h"
#include "shader/fx_3d.h"
#include "shader/fx_manage.h"
#include "shader/fx_manage.h"

namespace vorn {
namespace {

using Vertex = Vorn_3DAxis::Vertex;
using Triangles = std::vector<Vertex>;

Vertex sub(const Vertex& a, const Vertex& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }

// Appends the triangle wound counter-clockwise seen from outside, that is with its
// normal pointing away from `inside`, a point within the closed shape.
void triangle(Triangles& out, const Vertex& a, const Vertex& b, const Vertex& c, const Vertex& inside) {
  const Vertex e1 = sub(b, a), e2 = sub(c, a);
  const Vertex n = {e1[1] * e2[2] - e1[2] * e2[1], e1[2] * e2[0] - e1[0] * e2[2], e1[0] * e2[1] - e1[1] * e2[0]};
  const Vertex out_dir = sub(a, inside);
  const bool outward = n[0] * out_dir[0] + n[1] * out_dir[1] + n[2] * out_dir[2] >= 0.0;
  out.push_back(a);
  out.push_back(outward ? b : c);
  out.push_back(outward ? c : b);
}

void quad(Triangles& out, const Vertex& a, const Vertex& b, const Vertex& c, const Vertex& d, const Vertex& inside) {
  triangle(out, a, b, c, inside);
  triangle(out, a, c, d, inside);
}

// The x arrow: a square bar along x up to LineLength, then a four-sided head from a
// square base at LineLength to its tip. The bar's start lies inside the bound node and
// is left open.
Triangles x_arrow() {
  constexpr double r = Vorn_3DAxis::LineRadius, L = Vorn_3DAxis::LineLength;
  constexpr double R = Vorn_3DAxis::ArrowRadius, tip = Vorn_3DAxis::ArrowTip;
  Triangles out;
  const Vertex barInside = {L * 0.5, 0.0, 0.0};
  for (const double s : {1.0, -1.0}) {
    quad(out, {0, s * r, -r}, {L, s * r, -r}, {L, s * r, r}, {0, s * r, r}, barInside);  // +y, -y
    quad(out, {0, -r, s * r}, {L, -r, s * r}, {L, r, s * r}, {0, r, s * r}, barInside);  // +z, -z
  }
  const Vertex headInside = {L + (tip - L) * 0.25, 0.0, 0.0};
  const Vertex base[4] = {{L, R, R}, {L, R, -R}, {L, -R, -R}, {L, -R, R}};
  quad(out, base[0], base[1], base[2], base[3], headInside);
  for (int i = 0; i < 4; ++i) triangle(out, base[i], base[(i + 1) % 4], {tip, 0.0, 0.0}, headInside);
  return out;
}

// The x shape turned onto another axis by a cyclic swap of coordinates, which keeps
// the winding: along x becomes along y (shift 1) or along z (shift 2).
Triangles turned(const Triangles& xs, int shift) {
  Triangles out;
  out.reserve(xs.size());
  for (const Vertex& v : xs) {
    Vertex t;
    for (int a = 0; a < 3; ++a) t[(a + shift) % 3] = v[a];
    out.push_back(t);
  }
  return out;
}

}  // namespace

Vorn_3DAxis::Vorn_3DAxis(double x_, double y_, double z_, const Ptr& parent_) : Vorn_3DGameNode(x_, y_, z_, parent_) {
  NodeType = "3DAxis";
  PickTriangleVisible = true;
  BuildTranslateAxisPickTriangle();
}

void Vorn_3DAxis::BuildTranslateAxisPickTriangle() {
  const Triangles xs = x_arrow();
  AxisTriangles& t = PickTriangleDict["t"];
  t["x"] = xs;
  t["y"] = turned(xs, 1);
  t["z"] = turned(xs, 2);
}

void Vorn_3DAxis::Binding(Ptr gameNode) {
  GameNode = gameNode;
  if (!CurrSubMeshFX && FXManagerInstance) {
    if (auto program = FXManagerInstance->GetShader(Vorn_3DFX::FX_AXIS)) CurrSubMeshFX = *program;
  }
}

bool Vorn_3DAxis::Drag(double newOffsetX, double newOffsetY) {
  if (AxisType == "t" && PickedAxis) {
    offsetX = newOffsetX;
    offsetY = newOffsetY;
    Dragging = true;
    return true;
  }
  return false;
}

std::optional<PickDetail> Vorn_3DAxis::checkPick(const Vector3& Pt, const Vector3& Dir, double /*Length*/) {
  PickedAxis.reset();
  const auto node = GameNode.lock();
  if (!node || AxisType != "t") return std::nullopt;
  const auto found = PickTriangleDict.find("t");
  if (found == PickTriangleDict.end()) return std::nullopt;
  const FloatList16 WorldFloatList = MatrixToFloatList(node->GetWorldMatrix());
  static constexpr const char* kNames[3][2] = {{"x", "picked X"}, {"y", "picked Y"}, {"z", "picked Z"}};
  for (const auto& [axis, line] : kNames) {
    const auto list = found->second.find(axis);
    if (list == found->second.end()) continue;
    const std::vector<Vertex>& vertices = list->second;
    const std::size_t TriangleCount = vertices.size() / 3;
    for (std::size_t index = 0; index < TriangleCount; ++index) {
      const Vector3 V1 = Vec3MulMatrix(std::span<const double, 3>(vertices[index * 3]), WorldFloatList);
      const Vector3 V2 = Vec3MulMatrix(std::span<const double, 3>(vertices[index * 3 + 1]), WorldFloatList);
      const Vector3 V3 = Vec3MulMatrix(std::span<const double, 3>(vertices[index * 3 + 2]), WorldFloatList);
      const auto [Result, Position] = IntersectTriangle(Pt, Dir, V1, V2, V3);
      if (Result) {
        console::print(line);
        PickedAxis = axis;
        return PickDetail{Position, {V1, V2, V3}};
      }
    }
  }
  return std::nullopt;
}

void Vorn_3DAxis::draw_picktriangle() {
  if (!PickTriangleVisible) return;
  if (Dragging) {
    DrogMoving(offsetX, offsetY);
    offsetX = 0.0;
    offsetY = 0.0;
    return;
  }
  const auto scene = GetSceneInstance();
  if (!scene) return;
  const auto [Pt, Dir] = scene->GetScree3DPointAndDir();
  checkPick(Pt, Dir);
}

void Vorn_3DAxis::DrogMoving(double dragOffsetX, double dragOffsetY) {
  const auto node = GameNode.lock();
  if (!node || AxisType != "t" || !PickedAxis) return;
  const int axis = *PickedAxis == "x" ? 0 : *PickedAxis == "y" ? 1 : *PickedAxis == "z" ? 2 : -1;
  if (axis < 0) return;
  const auto scene = GetSceneInstance();
  const auto camera = scene ? std::dynamic_pointer_cast<Vorn_3DCamera>(scene->GetActiveCamera()) : nullptr;
  if (!camera) throw AttributeError("Vorn_3DAxis.DrogMoving: the gizmo's scene has no active camera");

  // The axis as it shows on the screen: its two ends projected, as a unit direction.
  const FloatList16 WorldFloatList = MatrixToFloatList(node->GetWorldMatrix());
  const double origin[3] = {0.0, 0.0, 0.0};
  double unit[3] = {0.0, 0.0, 0.0};
  unit[axis] = 1.0;
  const Vector3 XDir_Begin = Vec3MulMatrix(std::span<const double, 3>(origin), WorldFloatList);
  const Vector3 XDir_End = Vec3MulMatrix(std::span<const double, 3>(unit), WorldFloatList);
  const auto XDir_Screen_Begin = camera->getScreenPosition(XDir_Begin.x, XDir_Begin.y, XDir_Begin.z);
  const auto XDir_Screen_End = camera->getScreenPosition(XDir_End.x, XDir_End.y, XDir_End.z);
  Vector3 XDir_Screen_Translate_Dir = Vector3(XDir_Screen_End[0], XDir_Screen_End[1], 0.0) -
                                      Vector3(XDir_Screen_Begin[0], XDir_Screen_Begin[1], 0.0);
  XDir_Screen_Translate_Dir.normalize();

  // Positive when the mouse goes along the axis. The offset is not normalised, so the
  // step grows with its square; 800 by 600 makes the speed that of the default window.
  const double DirDot = XDir_Screen_Translate_Dir.dot(Vector3(dragOffsetX, dragOffsetY, 0.0));
  if (SCREEN_WIDTH == 0 || SCREEN_HEIGHT == 0) {
    throw ZeroDivisionError("Vorn_3DAxis.DrogMoving: SCREEN_WIDTH or SCREEN_HEIGHT is 0 (float division by zero)");
  }
  double TranslateX = std::fabs(dragOffsetX) * DirDot * 0.002 * 800 / SCREEN_WIDTH;
  double TranslateY = std::fabs(dragOffsetY) * DirDot * 0.002 * 600 / SCREEN_HEIGHT;
  TranslateX = Clamp(TranslateX, -1.0, 1.0);
  TranslateY = Clamp(TranslateY, -1.0, 1.0);
  const double step = TranslateX * 0.5 + TranslateY * 0.5;
  if (axis == 0) node->MoveX(step);
  if (axis == 1) node->MoveY(step);
  if (axis == 2) node->MoveZ(step);
}

}  // namespace vorn
