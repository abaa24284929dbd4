#pragma once
// Vorn_3DCapsule: two half spheres joined by a band, along the node's y axis and
// centred on it.
#include "node/game_node.h"

namespace vorn {

class Vorn_3DCapsule : public Vorn_3DGameNode {
 public:
  explicit Vorn_3DCapsule(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  // Replaces the node's geometry. Submesh 0 is the upper half sphere, centred at
  // height / 2; submesh 1 the lower one, centred at -height / 2; submesh 2 the band
  // between them. The halves are sphere grids of statckR steps around and statckR / 2
  // (integer part) steps from equator to pole, rows from south to north; the band is
  // two rings, lower first. Normals are the offsets from the axis or the half's centre
  // (length = radius), as on the sphere. ZeroDivisionError for statckR 0 or 1.
  void CreateCapsule(double radius = 0.5, double height = 2.0, int statckR = 30);

  int statckR = 30;
};

}  // namespace vorn
