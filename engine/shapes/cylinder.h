#pragma once
// Vorn_3DCylinder: a closed cylinder along the node's y axis, centred on it.
#include "node/game_node.h"

namespace vorn {

class Vorn_3DCylinder : public Vorn_3DGameNode {
 public:
  explicit Vorn_3DCylinder(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  // Replaces the node's geometry. Submesh 0, the top cap at height / 2, and submesh 1,
  // the bottom cap at -height / 2: a centre and statckR + 1 rim vertices from +x
  // towards +z, a fan facing out. Submesh 2, the side band: two rings of statckR + 1
  // vertices, lower first, with unit radial normals. Everything winds
  // counter-clockwise seen from outside.
  void CreateCylinder(double radius = 0.5, double height = 1.0, int statckR = 30);

  int statckR = 30;
};

}  // namespace vorn
