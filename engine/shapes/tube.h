#pragma once
// Vorn_3DTube: a thick-walled pipe along the node's y axis, centred on it.
#include "node/game_node.h"

namespace vorn {

class Vorn_3DTube : public Vorn_3DGameNode {
 public:
  explicit Vorn_3DTube(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  // Replaces the node's geometry. Submesh 0, the top ring at height / 2, and submesh 1,
  // the bottom ring at -height / 2: statckR + 1 pairs (outer, inner) from +x towards
  // +z. Submesh 2, the walls: the outer wall (two rings, lower first, normals away
  // from the axis), then the inner wall (normals towards the axis). Everything winds
  // counter-clockwise seen from outside the solid.
  void CreateTube(double radius_in = 0.5, double radius_out = 1.0, double height = 1.0, int statckR = 30);

  int statckR = 30;
};

}  // namespace vorn
