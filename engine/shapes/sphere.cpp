// The sphere's grid and its texture coordinates.
#include "shapes/sphere.h"

#include <cmath>
#include <cstdint>

#include "core/math_util.h"
#include "shapes/solid_mesh.h"

namespace vorn {

Vorn_3DSphere::Vorn_3DSphere(double x, double y, double z, const Ptr& parent) : Vorn_3DGameNode(x, y, z, parent) {
  NodeType = "3DSphere";
}

void Vorn_3DSphere::CreateSphere(double radius_, int statckZ_, int statckY_) {
  solid::require_nonzero(statckY_, "Vorn_3DSphere.CreateSphere", "statckY");
  solid::require_nonzero(statckZ_, "Vorn_3DSphere.CreateSphere", "statckZ");
  solid::require_size(solid::grid_vertices(statckY_, statckZ_), "Vorn_3DSphere.CreateSphere");
  solid::reset_geometry(*this);
  const int s = CreateSubMesh("0");
  SetSubMeshShapeType(s, glc::TRIANGLES);
  radius = radius_;
  statckZ = statckZ_;
  statckY = statckY_;

  const std::int64_t rows = statckY, cols = statckZ;
  const double angleH = PI / static_cast<double>(rows);
  const double angleZ = PI * 2 / static_cast<double>(cols);
  if (rows >= 0 && cols >= 0) solid::reserve_vertices(*this, s, (rows + 1) * (cols + 1));
  for (std::int64_t i = 0; i <= rows; ++i) {
    const double NumAngleH = static_cast<double>(i) * angleH - PI * 0.5;
    const double cosH = std::cos(NumAngleH), sinH = std::sin(NumAngleH);
    for (std::int64_t j = 0; j <= cols; ++j) {
      const double NumAngleZ = static_cast<double>(j) * angleZ;
      const double px = radius * cosH * std::cos(NumAngleZ);
      const double py = radius * sinH;
      const double pz = radius * cosH * std::sin(NumAngleZ);
      solid::push_vertex(*this, s, px, py, pz, px, py, pz);
    }
  }
  solid::push_grid_indices(*this, s, 0, rows, cols);
  BuildVBO();
}

void Vorn_3DSphere::GenTexCoords(int s, bool RebuildVBO) {
  if (!solid::has_uv(*this, s, "Vorn_3DSphere.GenTexCoords")) {
    solid::require_nonzero(statckZ, "Vorn_3DSphere.GenTexCoords", "statckZ");
    solid::require_nonzero(statckY, "Vorn_3DSphere.GenTexCoords", "statckY");
    solid::require_size(solid::grid_vertices(statckY, statckZ), "Vorn_3DSphere.GenTexCoords");
    const double u_step = 1.0 / statckZ;
    const double v_step = 1.0 / statckY;
    for (std::int64_t i = 0; i <= statckY; ++i)
      for (std::int64_t j = 0; j <= statckZ; ++j)
        PushVertex_UV(s, static_cast<double>(j) * u_step, static_cast<double>(i) * v_step);
  }
  solid::add_uv_to_layout(*this, s);
  if (RebuildVBO) BuildVBO();
}

}  // namespace vorn
