#include "shapes/conus.h"

#include <cmath>
#include <cstdint>

#include "core/math_util.h"
#include "shapes/solid_mesh.h"

namespace vorn {

Vorn_3DConus::Vorn_3DConus(double x, double y, double z, const Ptr& parent) : Vorn_3DGameNode(x, y, z, parent) {
  NodeType = "3DConus";
}

void Vorn_3DConus::CreateConus(double radius, double height, int statckZ_) {
  solid::require_nonzero(statckZ_, "Vorn_3DConus.CreateConus", "statckZ");
  solid::require_size(2 * std::int64_t{statckZ_} + 1, "Vorn_3DConus.CreateConus");
  solid::reset_geometry(*this);
  statckZ = statckZ_;
  const std::int64_t steps = statckZ;
  const double angleZ = PI * 2 / static_cast<double>(steps);
  const double half = height * 0.5;

  // The side's normal at angle a is perpendicular to the slope and to the rim.
  const int side = CreateSubMesh("0");
  if (steps >= 0) solid::reserve_vertices(*this, side, 2 * steps + 1);
  for (std::int64_t k = 0; k <= steps; ++k) {
    const double a = static_cast<double>(k) * angleZ;
    const double c = std::cos(a), sn = std::sin(a);
    solid::push_unit_normal_vertex(*this, side, radius * c, -half, radius * sn, height * c, radius, height * sn);
  }
  for (std::int64_t k = 0; k < steps; ++k) {
    const double a = (static_cast<double>(k) + 0.5) * angleZ;
    solid::push_unit_normal_vertex(*this, side, 0.0, half, 0.0, height * std::cos(a), radius, height * std::sin(a));
  }
  for (std::int64_t k = 0; k < steps; ++k) PushTriangleVIndex(side, steps + 1 + k, k + 1, k);

  const int base = CreateSubMesh("1");
  solid::push_disc(*this, base, radius, -half, steps, angleZ, false);
  BuildVBO();
}

}  // namespace vorn
