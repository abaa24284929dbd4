#pragma once
// Vorn_3DAxis: the scene's one gizmo. It is bound to one node, shows three coloured
// axes on it, tests the mouse ray against its own triangles and turns mouse offsets
// into moves of the bound node along one axis. Until a node is bound it draws and
// picks nothing. Implemented over two files:
//   axis.cpp     geometry, picking and dragging (no GL but the screen projection)
//   axis_gl.cpp  the three shapes and the draw
//
// Types: "t" translates (the only type that picks and drags), "s" shows the scale
// shape, "r" the rotation rings; any other type draws only the bound node's box.
#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "node/game_node.h"

namespace vorn {

class Vorn_3DAxis : public Vorn_3DGameNode {
 public:
  using Vertex = std::array<double, 3>;
  // Axis name ("x", "y", "z") to its triangles: vertices of three numbers in the
  // gizmo's own space, three vertices a triangle.
  using AxisTriangles = std::map<std::string, std::vector<Vertex>>;

  // Bar of the translate arrows: half-width and length; then the head's half-width
  // and the point its tip reaches.
  static constexpr double LineRadius = 0.1;
  static constexpr double LineLength = 2.0;
  static constexpr double ArrowRadius = 0.2;
  static constexpr double ArrowTip = 2.5;

  explicit Vorn_3DAxis(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  // ---- Geometry ----
  // Fills PickTriangleDict["t"] with the three arrows (called by the constructor).
  void BuildTranslateAxisPickTriangle();
  // The scale shape has no pick surface: nothing changes.
  void BuildScaleAxisPickTriangle() {}

  // ---- Binding and type ----
  // Binds the gizmo to a node (nullptr unbinds) and takes the axis program once.
  void Binding(Ptr gameNode);
  void SetType(std::optional<std::string> type) { AxisType = std::move(type); }
  const std::optional<std::string>& GetType() const noexcept { return AxisType; }

  // ---- Picking and dragging (axis.cpp) ----
  // The ray against the translate arrows, carried by the bound node's WorldMatrix, in
  // the order x, y, z: the first hit prints "picked X" (Y, Z), sets PickedAxis and
  // gives the detail; a miss, an unbound gizmo or another type leaves PickedAxis none.
  // Length is accepted for the pick interface and not used.
  std::optional<PickDetail> checkPick(const Vector3& Pt, const Vector3& Dir, double Length = 99999.0) override;
  // Run inside draw, with the view of the pass in force: while dragging, carries out
  // the stored offsets (DrogMoving) and clears them; otherwise tests the scene's pick
  // ray of the stored mouse position, whether or not a pick was requested.
  void draw_picktriangle() override;
  // Moves the bound node along the picked axis by the mouse offsets (window pixels,
  // y down): the offsets are weighed by how far they go along the axis as it shows on
  // the screen, so the step grows with the square of the offset; each of its two
  // parts is clamped to [-1, 1]. Needs the active camera's matrices of this pass.
  void DrogMoving(double dragOffsetX, double dragOffsetY);
  // Takes the mouse offsets for the next draw when a translate axis is picked.
  bool Drag(double newOffsetX, double newOffsetY);
  // Ends the drag; PickedAxis stays until the next pick.
  void ReleaseDrag() noexcept { Dragging = false; }

  // ---- Drawing (axis_gl.cpp) ----
  // The translate arrows from PickTriangleDict["t"], one colour per axis and another
  // for the picked one. KeyError without a "t" entry, IndexError when the y or z list
  // is shorter than the x list (both before anything is drawn).
  void draw_translate();
  void draw_scale();
  void draw_rotate();
  // With a node bound and a type set: the pick step, the shape of the type through the
  // gizmo's program (the node's AxisMatrix as uModelMatrix) and the node's bounding
  // box, whose own visibility flag comes back afterwards.
  void draw(double rx = 0, double ry = 0, double rz = 0) override;

  std::weak_ptr<Vorn_3DGameNode> GameNode;
  std::optional<std::string> AxisType;
  bool Dragging = false;
  double offsetX = 0.0;
  double offsetY = 0.0;
  std::optional<std::string> PickedAxis;
  std::map<std::string, AxisTriangles> PickTriangleDict;
};

}  // namespace vorn
