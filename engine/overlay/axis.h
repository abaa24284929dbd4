#pragma once
// Vorn_3DAxis: the scene's one gizmo. It is bound to one node, shows three coloured
// axes on it, tests the mouse ray against its own triangles and turns mouse offsets
// into moves of the bound node along one axis. Until a node is bound it draws and
// picks nothing.
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
  // Axis name ("x", "y", "z") to a flat list of vertices, three numbers each.
  using AxisTriangles = std::map<std::string, std::vector<double>>;

  explicit Vorn_3DAxis(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  // Binds the gizmo to a node (nullptr unbinds) and takes the axis program once.
  void Binding(Ptr gameNode);
  void SetType(std::optional<std::string> type) { AxisType = std::move(type); }
  const std::optional<std::string>& GetType() const noexcept { return AxisType; }
  // Takes the mouse offsets for the next draw when a translate axis is picked.
  bool Drag(double newOffsetX, double newOffsetY);
  void ReleaseDrag() noexcept { Dragging = false; }

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
