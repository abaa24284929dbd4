#include "shapes/circle.h"

#include <cstdint>

#include "core/math_util.h"
#include "shapes/solid_mesh.h"

namespace vorn {

Vorn_3DCircle::Vorn_3DCircle(double x, double y, double z, const Ptr& parent) : Vorn_3DGameNode(x, y, z, parent) {
  NodeType = "3DCircle";
}

void Vorn_3DCircle::CreateCircle(double radius, int statckZ_) {
  solid::require_nonzero(statckZ_, "Vorn_3DCircle.CreateCircle", "statckZ");
  solid::require_size(std::int64_t{statckZ_} + 2, "Vorn_3DCircle.CreateCircle");
  solid::reset_geometry(*this);
  const int s = CreateSubMesh("0");
  SetSubMeshShapeType(s, glc::TRIANGLES);
  statckZ = statckZ_;
  const double angleZ = PI * 2 / statckZ;
  solid::push_disc(*this, s, radius, 0.0, statckZ, angleZ, true);
  BuildVBO();
}

void Vorn_3DCircle::GenTexCoords(int s, bool RebuildVBO) {
  if (!solid::has_uv(*this, s, "Vorn_3DCircle.GenTexCoords")) {
    solid::require_nonzero(statckZ, "Vorn_3DCircle.GenTexCoords", "statckZ");
    solid::require_size(std::int64_t{statckZ} + 2, "Vorn_3DCircle.GenTexCoords");
    const double u_step = 1.0 / statckZ;
    PushVertex_UV(s, 0.5, 0.0);
    for (std::int64_t k = 0; k <= statckZ; ++k) PushVertex_UV(s, static_cast<double>(k) * u_step, 1.0);
  }
  solid::add_uv_to_layout(*this, s);
  if (RebuildVBO) BuildVBO();
}

}  // namespace vorn
