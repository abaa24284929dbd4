#pragma once
// Vorn_3DCircle: a flat disc in the node's x-z plane, facing +y.
#include "node/game_node.h"

namespace vorn {

class Vorn_3DCircle : public Vorn_3DGameNode {
 public:
  explicit Vorn_3DCircle(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  // Replaces the node's geometry by the disc: the centre, then statckZ + 1 rim vertices
  // from +x towards +z (the seam twice), all with normal (0, 1, 0), and a fan of
  // statckZ triangles facing +y.
  void CreateCircle(double radius = 0.5, int statckZ = 30);
  void GenTexCoords(int submeshIndex) override { GenTexCoords(submeshIndex, true); }
  // The centre gets (0.5, 0.0), the rim a walk (k / statckZ, 1.0) along it, unless the
  // submesh has coordinates already; adds them to the layout and rebuilds when
  // RebuildVBO is set.
  void GenTexCoords(int submeshIndex, bool RebuildVBO);

  int statckZ = 30;
};

}  // namespace vorn
