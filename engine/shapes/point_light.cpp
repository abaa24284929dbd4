#include "shapes/point_light.h"

namespace vorn {

Vorn_3DPointLight::Vorn_3DPointLight(double x, double y, double z, const Ptr& parent)
    : Vorn_3DSphere(x, y, z, parent) {
  NodeType = "3DPointLight";
}

void Vorn_3DPointLight::CreatePointLight(double range) {
  LightRange = range;
  CreateSphere(0.1, 10, 10);
}

}  // namespace vorn
