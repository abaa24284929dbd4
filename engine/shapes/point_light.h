#pragma once
// Vorn_3DPointLight: a positioned light. It is a node so that it moves and hangs under
// parents like any other; its colour is its submesh colour (white until set), and the
// draw pipeline reads its world position and GetLightRange(). Its small marker sphere
// is never drawn.
#include "shapes/sphere.h"

namespace vorn {

class Vorn_3DPointLight : public Vorn_3DSphere {
 public:
  explicit Vorn_3DPointLight(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  // Stores the range and builds the marker: a sphere of radius 0.1 with 10 by 10 steps.
  void CreatePointLight(double range);
  double GetLightRange() const override { return LightRange; }
  // A light has no visible body: drawing it changes nothing, GL state included. Same
  // signature as the node's draw, which it replaces in the draw walk.
  void draw(double /*rx*/ = 0, double /*ry*/ = 0, double /*rz*/ = 0) override {}

  double LightRange = 10;
};

}  // namespace vorn
