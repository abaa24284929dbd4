#include "shapes/torus.h"

#include <cmath>
#include <cstdint>

#include "core/math_util.h"
#include "shapes/solid_mesh.h"

namespace vorn {

Vorn_3DTorus::Vorn_3DTorus(double x, double y, double z, const Ptr& parent) : Vorn_3DGameNode(x, y, z, parent) {
  NodeType = "3DTorus";
}

void Vorn_3DTorus::CreateTorus(double radius_in, double radius_out, double height, int statckR_, int statckZ_) {
  solid::require_nonzero(statckR_, "Vorn_3DTorus.CreateTorus", "statckR");
  solid::require_nonzero(statckZ_, "Vorn_3DTorus.CreateTorus", "statckZ");
  solid::require_size(solid::grid_vertices(statckZ_, statckR_), "Vorn_3DTorus.CreateTorus");
  solid::reset_geometry(*this);
  const int s = CreateSubMesh("0");
  SetSubMeshShapeType(s, glc::TRIANGLES);
  statckR = statckR_;
  statckZ = statckZ_;

  const std::int64_t rows = statckZ, cols = statckR;
  const double centre = (radius_in + radius_out) * 0.5;
  const double a = (radius_out - radius_in) * 0.5;  // half-width of the cross-section
  const double b = height * 0.5;                     // half-height of the cross-section
  const double angleR = PI * 2 / static_cast<double>(cols);
  const double angleZ = PI * 2 / static_cast<double>(rows);
  if (rows >= 0 && cols >= 0) solid::reserve_vertices(*this, s, (rows + 1) * (cols + 1));
  for (std::int64_t i = 0; i <= rows; ++i) {
    const double phi = static_cast<double>(i) * angleZ - PI * 0.5;
    const double cosP = std::cos(phi), sinP = std::sin(phi);
    const double ring = centre + a * cosP;
    for (std::int64_t j = 0; j <= cols; ++j) {
      const double theta = static_cast<double>(j) * angleR;
      const double cosT = std::cos(theta), sinT = std::sin(theta);
      // The ellipse (a cos, b sin) has the normal (b cos, a sin).
      solid::push_unit_normal_vertex(*this, s, ring * cosT, b * sinP, ring * sinT, b * cosP * cosT, a * sinP,
                                     b * cosP * sinT);
    }
  }
  solid::push_grid_indices(*this, s, 0, rows, cols);
  BuildVBO();
}

}  // namespace vorn
