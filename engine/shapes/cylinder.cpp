#include "shapes/cylinder.h"

#include <cstdint>

#include "core/math_util.h"
#include "shapes/solid_mesh.h"

namespace vorn {

Vorn_3DCylinder::Vorn_3DCylinder(double x, double y, double z, const Ptr& parent)
    : Vorn_3DGameNode(x, y, z, parent) {
  NodeType = "3DCylinder";
}

void Vorn_3DCylinder::CreateCylinder(double radius, double height, int statckR_) {
  solid::require_nonzero(statckR_, "Vorn_3DCylinder.CreateCylinder", "statckR");
  solid::require_size(2 * std::int64_t{statckR_} + 2, "Vorn_3DCylinder.CreateCylinder");
  solid::reset_geometry(*this);
  statckR = statckR_;
  const std::int64_t steps = statckR;
  const double angle = PI * 2 / static_cast<double>(steps);
  const double half = height * 0.5;
  solid::push_disc(*this, CreateSubMesh("0"), radius, half, steps, angle, true);
  solid::push_disc(*this, CreateSubMesh("1"), radius, -half, steps, angle, false);
  solid::push_wall(*this, CreateSubMesh("2"), radius, -half, half, steps, angle, true);
  BuildVBO();
}

}  // namespace vorn
