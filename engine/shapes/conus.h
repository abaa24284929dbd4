#pragma once
// Vorn_3DConus: a cone along the node's y axis, centred on it: base at -height / 2,
// apex at +height / 2.
#include "node/game_node.h"

namespace vorn {

class Vorn_3DConus : public Vorn_3DGameNode {
 public:
  explicit Vorn_3DConus(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  // Replaces the node's geometry. Submesh 0, the side: statckZ + 1 rim vertices from
  // +x towards +z, then statckZ copies of the apex, one per triangle, each with the
  // normal of the middle of its segment so the side shades smoothly up to the tip;
  // triangle k is (apex k, rim k + 1, rim k). Submesh 1, the base: a fan facing -y.
  // All normals are unit length and point out of the cone.
  void CreateConus(double radius = 0.5, double height = 1.0, int statckZ = 30);

  int statckZ = 30;
};

}  // namespace vorn
