#pragma once
// Vorn_3DTorus: a ring around the node's y axis, centred on it. Its hole has radius
// radius_in, its outside radius_out, and it is height tall: the cross-section is an
// ellipse of half-width (radius_out - radius_in) / 2 and half-height height / 2
// around a centre line of radius (radius_in + radius_out) / 2.
#include "node/game_node.h"

namespace vorn {

class Vorn_3DTorus : public Vorn_3DGameNode {
 public:
  explicit Vorn_3DTorus(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  // Replaces the node's geometry by one grid: (statckZ + 1) rows around the
  // cross-section, starting at its bottom and going out first, of (statckR + 1)
  // vertices around the axis from +x towards +z; seams duplicated, unit normals
  // pointing out of the ring, triangles counter-clockwise seen from outside.
  void CreateTorus(double radius_in = 0.5, double radius_out = 1.0, double height = 1.0, int statckR = 30,
                   int statckZ = 10);

  int statckR = 30;
  int statckZ = 10;
};

}  // namespace vorn
