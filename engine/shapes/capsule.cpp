#include "shapes/capsule.h"

#include <cmath>
#include <cstdint>

#include "core/math_util.h"
#include "shapes/solid_mesh.h"

namespace vorn {
namespace {

// A half sphere: rows from angle startH up by angleH, shifted by yShift.
void push_half_sphere(Vorn_3DGameNode& n, int s, double radius, double yShift, std::int64_t rows,
                      std::int64_t cols, double angleH, double angleZ, double startH) {
  if (rows >= 0 && cols >= 0) solid::reserve_vertices(n, s, (rows + 1) * (cols + 1));
  for (std::int64_t i = 0; i <= rows; ++i) {
    const double NumAngleH = static_cast<double>(i) * angleH + startH;
    const double cosH = std::cos(NumAngleH), sinH = std::sin(NumAngleH);
    for (std::int64_t j = 0; j <= cols; ++j) {
      const double NumAngleZ = static_cast<double>(j) * angleZ;
      const double nx = radius * cosH * std::cos(NumAngleZ);
      const double ny = radius * sinH;
      const double nz = radius * cosH * std::sin(NumAngleZ);
      solid::push_vertex(n, s, nx, ny + yShift, nz, nx, ny, nz);
    }
  }
  solid::push_grid_indices(n, s, 0, rows, cols);
}

}  // namespace

Vorn_3DCapsule::Vorn_3DCapsule(double x, double y, double z, const Ptr& parent) : Vorn_3DGameNode(x, y, z, parent) {
  NodeType = "3DCapsule";
}

void Vorn_3DCapsule::CreateCapsule(double radius, double height, int statckR_) {
  const char* where = "Vorn_3DCapsule.CreateCapsule";
  solid::require_nonzero(statckR_, where, "statckR");
  // Integer part, towards zero.
  const std::int64_t HalfStatckR = statckR_ / 2;
  solid::require_nonzero(HalfStatckR, where, "statckR / 2 (statckR must not be 1)");
  solid::require_size(2 * solid::grid_vertices(HalfStatckR, statckR_), where);
  solid::reset_geometry(*this);
  statckR = statckR_;
  const std::int64_t cols = statckR;
  const double angleZ = PI * 2 / static_cast<double>(cols);
  const double angleH = PI * 0.5 / static_cast<double>(HalfStatckR);
  const double HalfHeight = height * 0.5;

  const int upper = CreateSubMesh("0");
  push_half_sphere(*this, upper, radius, HalfHeight, HalfStatckR, cols, angleH, angleZ, 0.0);
  const int lower = CreateSubMesh("1");
  push_half_sphere(*this, lower, radius, -HalfHeight, HalfStatckR, cols, angleH, angleZ, -PI * 0.5);

  // The band: normals of the same length as the halves' so that shading is smooth
  // across the joins.
  const int band = CreateSubMesh("2");
  if (cols >= 0) solid::reserve_vertices(*this, band, 2 * (cols + 1));
  for (const double y : {-HalfHeight, HalfHeight}) {
    for (std::int64_t j = 0; j <= cols; ++j) {
      const double a = static_cast<double>(j) * angleZ;
      const double nx = radius * std::cos(a), nz = radius * std::sin(a);
      solid::push_vertex(*this, band, nx, y, nz, nx, 0.0, nz);
    }
  }
  solid::push_grid_indices(*this, band, 0, 1, cols);
  BuildVBO();
}

}  // namespace vorn
