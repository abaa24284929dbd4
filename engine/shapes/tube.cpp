#include "shapes/tube.h"

#include <cmath>
#include <cstdint>

#include "core/math_util.h"
#include "shapes/solid_mesh.h"

namespace vorn {
namespace {

// An annulus in the plane y between the two radii, facing +y or -y.
void push_ring(Vorn_3DGameNode& n, int s, double radius_in, double radius_out, double y, std::int64_t steps,
               double angle, bool up) {
  const double ny = up ? 1.0 : -1.0;
  if (steps >= 0) solid::reserve_vertices(n, s, 2 * (steps + 1));
  for (std::int64_t k = 0; k <= steps; ++k) {
    const double a = static_cast<double>(k) * angle;
    const double c = std::cos(a), sn = std::sin(a);
    solid::push_vertex(n, s, radius_out * c, y, radius_out * sn, 0.0, ny, 0.0);
    solid::push_vertex(n, s, radius_in * c, y, radius_in * sn, 0.0, ny, 0.0);
  }
  for (std::int64_t k = 0; k < steps; ++k) {
    const std::int64_t o0 = 2 * k, i0 = o0 + 1, o1 = o0 + 2, i1 = o0 + 3;
    if (up) {
      n.PushTriangleVIndex(s, o0, i0, o1);
      n.PushTriangleVIndex(s, o1, i0, i1);
    } else {
      n.PushTriangleVIndex(s, o0, o1, i0);
      n.PushTriangleVIndex(s, o1, i1, i0);
    }
  }
}

}  // namespace

Vorn_3DTube::Vorn_3DTube(double x, double y, double z, const Ptr& parent) : Vorn_3DGameNode(x, y, z, parent) {
  NodeType = "3DTube";
}

void Vorn_3DTube::CreateTube(double radius_in, double radius_out, double height, int statckR_) {
  solid::require_nonzero(statckR_, "Vorn_3DTube.CreateTube", "statckR");
  solid::require_size(4 * (std::int64_t{statckR_} + 1), "Vorn_3DTube.CreateTube");
  solid::reset_geometry(*this);
  statckR = statckR_;
  const std::int64_t steps = statckR;
  const double angle = PI * 2 / static_cast<double>(steps);
  const double half = height * 0.5;
  push_ring(*this, CreateSubMesh("0"), radius_in, radius_out, half, steps, angle, true);
  push_ring(*this, CreateSubMesh("1"), radius_in, radius_out, -half, steps, angle, false);
  const int walls = CreateSubMesh("2");
  solid::push_wall(*this, walls, radius_out, -half, half, steps, angle, true);
  solid::push_wall(*this, walls, radius_in, -half, half, steps, angle, false);
  BuildVBO();
}

}  // namespace vorn
