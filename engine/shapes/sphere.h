#pragma once
// Vorn_3DSphere: a latitude-longitude sphere centred on the node. The seam column and
// both pole rows are duplicated so that texture coordinates run from 0 to 1.
#include "node/game_node.h"

namespace vorn {

class Vorn_3DSphere : public Vorn_3DGameNode {
 public:
  explicit Vorn_3DSphere(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  // Replaces the node's geometry by the sphere: (statckY + 1) rows of (statckZ + 1)
  // vertices from the south pole up, two triangles per cell, wound counter-clockwise
  // seen from outside. Normals are the unnormalised positions (length = radius).
  void CreateSphere(double radius = 0.5, int statckZ = 30, int statckY = 30);
  void GenTexCoords(int submeshIndex) override { GenTexCoords(submeshIndex, true); }
  // u = column / statckZ, v = row / statckY, in vertex order, unless the submesh has
  // coordinates already; adds them to the layout and rebuilds when RebuildVBO is set.
  void GenTexCoords(int submeshIndex, bool RebuildVBO);

  int statckZ = 30;
  int statckY = 30;
  double radius = 0.5;
};

}  // namespace vorn
