#pragma once
// Vorn_3DDrawNode: one wire-frame triangle or quad in world coordinates, replaced whole
// by each call. The scene keeps one to mark the picked triangle; it never answers picks.
#include "node/game_node.h"

namespace vorn {

class Vorn_3DDrawNode : public Vorn_3DGameNode {
 public:
  explicit Vorn_3DDrawNode(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  // Replace the geometry by one triangle or quad (corners in order), drawn as lines
  // with FX_COLOR. Each call rebuilds the buffers.
  void DrawTriangle(double x1, double y1, double z1, double x2, double y2, double z2, double x3, double y3,
                    double z3);
  void DrawQuad(double x1, double y1, double z1, double x2, double y2, double z2, double x3, double y3, double z3,
                double x4, double y4, double z4);
  // Nodes mark their picked triangle, planes their picked tile, on the scene's draw node.
  void MarkPickedTriangle(const std::array<Vector3, 3>& corners) override;
  void MarkPickedQuad(const std::array<Vector3, 4>& corners) override;
  // The marker never answers picks: it lies on the very triangle it marks.
  std::optional<PickDetail> checkPick(const Vector3& /*Pt*/, const Vector3& /*Dir*/,
                                      double /*Length*/ = 99999.0) override {
    return std::nullopt;
  }
};

}  // namespace vorn
