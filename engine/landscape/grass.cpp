// Grass blades: generation over a disc and dropping them onto the ground.
#include "landscape/grass.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "core/console.h"
#include "core/errors.h"
#include "core/math_util.h"
#include "shader/fx_3d.h"

namespace vorn {
namespace {

constexpr const char* kWhere = "Vorn_3DGrass.CreateGrass: ";

std::string number_text(double v) { return console::py_float(v); }

void require_finite(double value, const char* name) {
  if (!std::isfinite(value)) {
    throw ValueError(std::string(kWhere) + name + " must be a finite number, not " + number_text(value));
  }
}

void require_not_negative(double value, const char* name) {
  if (value < 0.0) throw ValueError(std::string(kWhere) + name + " must be 0 or more, not " + number_text(value));
}

// Sections of a blade of height H: int(H / subsectionH), at least one, so that every
// blade has a quad and its v coordinates (section / count) stay finite.
std::int64_t section_count(double H, double subsectionH) {
  const auto count = static_cast<std::int64_t>(H / subsectionH);
  return count < 1 ? 1 : count;
}

}  // namespace

Vorn_3DGrass::Vorn_3DGrass(double x_, double y_, double z_, const Ptr& parent_) : Vorn_3DGameNode(x_, y_, z_, parent_) {
  NodeType = "3DGrass";
}

void Vorn_3DGrass::CreateGrass(double radius, double density, double minW, double maxW, double minH, double maxH,
                               double subsectionH) {
  // Every argument is checked before the first submesh exists.
  require_finite(radius, "radius");
  require_finite(density, "density");
  require_finite(minW, "minW");
  require_finite(maxW, "maxW");
  require_finite(minH, "minH");
  require_finite(maxH, "maxH");
  require_finite(subsectionH, "subsectionH");
  require_not_negative(density, "density");
  require_not_negative(minW, "minW");
  require_not_negative(maxW, "maxW");
  require_not_negative(minH, "minH");
  require_not_negative(maxH, "maxH");
  if (!(subsectionH > 0.0) || subsectionH > maxH) {
    throw ValueError(std::string(kWhere) + "subsectionH must be above 0 and at most maxH (" + number_text(maxH) +
                     "), not " + number_text(subsectionH));
  }
  const double tallest = std::fmax(minH, maxH);
  const double mostSections = std::fmax(1.0, std::floor(tallest / subsectionH));
  const double vertexBound = std::floor(density) * (mostSections + 1.0) * 2.0;
  if (vertexBound > static_cast<double>(kMaxVertices)) {
    throw ValueError(std::string(kWhere) + "density " + number_text(density) + " with blades of up to " +
                     console::to_str(static_cast<std::int64_t>(mostSections)) + " sections would make more than " +
                     std::to_string(kMaxVertices) + " vertices");
  }

  statckR = radius;
  statckRIsInt = false;
  const double Angle360 = PI * 2.0;
  const auto bladeTotal = static_cast<std::int64_t>(density);
  const std::int64_t SubMeshCount =
      bladeTotal > kMaxBladesPerSubMesh ? (bladeTotal + kMaxBladesPerSubMesh - 1) / kMaxBladesPerSubMesh : 1;
  const auto perBladeBound = static_cast<std::size_t>(mostSections + 1.0) * 2;

  for (std::int64_t sub_index = 0; sub_index < SubMeshCount; ++sub_index) {
    const int s = CreateSubMesh("submesh_" + std::to_string(sub_index));
    SetSubMeshShapeType(s, glc::QUADS);
    // Full submeshes take kMaxBladesPerSubMesh blades; the last one takes the rest.
    const std::int64_t blades = sub_index + 1 < SubMeshCount ? kMaxBladesPerSubMesh
                                                             : bladeTotal - kMaxBladesPerSubMesh * (SubMeshCount - 1);
    Vec3Array& positions = VertexArray_Positon.at(s);
    Vec3Array& normals = VertexArray_Normal.at(s);
    Vec2Array& uvs = VertexArray_UV.at(s);
    IndexArray& indices = VIndexArray.at(s);
    const std::size_t vertexGuess = static_cast<std::size_t>(blades) * perBladeBound;
    positions.reserve(vertexGuess);
    normals.reserve(vertexGuess);
    uvs.reserve(vertexGuess);
    indices.reserve(vertexGuess * 2);

    std::int64_t VIndex = 0;
    for (std::int64_t i = 0; i < blades; ++i) {
      // Root on the disc, then the blade's size and facing.
      const double NumAngleH = RANDOM01() * Angle360;
      const double baseX = radius * RANDOM11() * std::cos(NumAngleH);
      const double baseZ = radius * RANDOM11() * std::sin(NumAngleH);
      const double Grass_W = minW + RANDOM01() * (maxW - minW);
      const double Grass_H = minH + RANDOM01() * (maxH - minH);
      const double Grass_Angle = RANDOM01() * Angle360;
      const double cosA = std::cos(Grass_Angle), sinA = std::sin(Grass_Angle);
      // The half width runs along the facing angle; the normal lies a quarter turn on.
      const double Grass_X1 = Grass_W * 0.5 * cosA, Grass_Z1 = Grass_W * 0.5 * sinA;
      const double Grass_NX1 = -sinA, Grass_NZ1 = cosA;
      const std::int64_t SubsectionCount = section_count(Grass_H, subsectionH);

      for (std::int64_t sec_index = 0; sec_index <= SubsectionCount; ++sec_index) {
        const double height = static_cast<double>(sec_index) * subsectionH;
        const double v = static_cast<double>(sec_index) / static_cast<double>(SubsectionCount);
        positions.push_back(VertexEntry<3>(baseX + Grass_X1, height, baseZ + Grass_Z1));
        normals.push_back(VertexEntry<3>(Grass_NX1, 0.0, Grass_NZ1));
        uvs.push_back(VertexEntry<2>(0.0, v));
        positions.push_back(VertexEntry<3>(baseX - Grass_X1, height, baseZ - Grass_Z1));
        normals.push_back(VertexEntry<3>(Grass_NX1, 0.0, Grass_NZ1));
        uvs.push_back(VertexEntry<2>(1.0, v));
      }
      for (std::int64_t sec_index = 0; sec_index < SubsectionCount; ++sec_index) {
        const std::int64_t b = VIndex + sec_index * 2;
        indices.insert(indices.end(), {b, b + 2, b + 3, b + 1});
      }
      VIndex += (SubsectionCount + 1) * 2;
    }
    VertexDescArray.set(s, glc::T2F_N3F_V3F);
  }
  BuildVBO();
  ApplyFX(Vorn_3DFX::FX_GRASS);
}

void Vorn_3DGrass::SetSwing(double swingSpeed, double swingRegion) {
  SwingSpeed = swingSpeed;
  SwingRegion = swingRegion;
}

void Vorn_3DGrass::StandOnGround(bool /*standOn*/) {
  const auto scene = sceneInstance.lock();
  if (!scene) {
    console::print("No SceneInstance");
    return;
  }
  // The world position as of now, not as of the last frame: a patch placed and dropped
  // before its first update stands where it was placed.
  UpdateMatrices();
  const Vector3 WorldPostion = GetWorldXYZ();
  // A blade's edge stands above one ground point at every section, so a vertex has the
  // x and z of the vertex two before it: that one's rise is reused instead of asking
  // the ground again (the query is the cost of this operation).
  struct Rise {
    double x, z, dy;
  };
  for (auto& [s, positions] : VertexArray_Positon) {
    constexpr double none = std::numeric_limits<double>::quiet_NaN();  // equal to no x
    Rise last[2] = {{none, none, 0.0}, {none, none, 0.0}};
    for (std::size_t i = 0; i < positions.size(); ++i) {
      VertexEntry<3>& p = positions[i];
      if (p.size < 3) continue;
      Rise& same = last[i & 1];
      if (p.v[0] != same.x || p.v[2] != same.z) {
        same = {p.v[0], p.v[2], scene->Get3DTerrainY(p.v[0] + WorldPostion.x, p.v[2] + WorldPostion.z)};
      }
      p.v[1] += same.dy;
    }
  }
  BuildVBO();
}

}  // namespace vorn
