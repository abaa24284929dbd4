// The plane's grid: creation, texture coordinates, tile access and height queries.
#include "landscape/plane.h"

#include <cmath>
#include <cstdio>
#include <string>

#include "core/console.h"
#include "core/errors.h"
#include "core/math_util.h"
#include "core/pyseq.h"

namespace vorn {
namespace {

// a * b + c with the sequence rule for results beyond 64 bits: they are out of any
// range, so they fail as an index would.
std::int64_t index_of(std::int64_t a, std::int64_t b, std::int64_t c) {
  std::int64_t product = 0, sum = 0;
  if (__builtin_mul_overflow(a, b, &product) || __builtin_add_overflow(product, c, &sum)) {
    throw IndexError("list index out of range");
  }
  return sum;
}

std::int64_t offset(std::int64_t i, std::int64_t k) {
  std::int64_t sum = 0;
  if (__builtin_add_overflow(i, k, &sum)) throw IndexError("list index out of range");
  return sum;
}

}  // namespace

Vorn_3DPlane::Vorn_3DPlane(double x_, double y_, double z_, const Ptr& parent_) : Vorn_3DGameNode(x_, y_, z_, parent_) {
  NodeType = "3DPlane";
}

void Vorn_3DPlane::SetCheckTileMode(int CheckTileMode) {
  if (CheckTileMode != CHECKTILE_MODE_CLICK && CheckTileMode != CHECKTILE_MODE_DRAG) {
    throw ValueError("Vorn_3DPlane.SetCheckTileMode: CheckTileMode must be CHECKTILE_MODE_CLICK or "
                     "CHECKTILE_MODE_DRAG, not " + std::to_string(CheckTileMode));
  }
  CheckTile_Mode = CheckTileMode;
}

void Vorn_3DPlane::CreatePlane(int rows, int cows, double tilesize, bool withTexUV_,
                               std::optional<std::vector<double>> heights) {
  if (rows < 0 || cows < 0) {
    throw ValueError("Vorn_3DPlane.CreatePlane: rows and cows must be 0 or more");
  }
  const std::size_t pointCount = (static_cast<std::size_t>(rows) + 1) * (static_cast<std::size_t>(cows) + 1);
  if (pointCount > kMaxGridPoints) {
    throw ValueError("Vorn_3DPlane.CreatePlane: a grid of " + std::to_string(rows) + " by " + std::to_string(cows) +
                     " tiles is too large (" + std::to_string(pointCount) + " points; at most " +
                     std::to_string(kMaxGridPoints) + ")");
  }
  if (heights && heights->size() < pointCount) {
    throw IndexError("Vorn_3DPlane.CreatePlane: HeightArray has " + std::to_string(heights->size()) +
                     " heights, the grid needs " + std::to_string(pointCount));
  }

  const int s = CreateSubMesh("layer_0", withTexUV_);
  SetSubMeshShapeType(s, glc::QUADS);
  Cows = cows;
  Rows = rows;
  TileSize = tilesize;

  // Grid points row by row. A point with a point before it in both directions takes
  // its normal from the two height differences (not scaled by the tile size): the
  // normalised cross product of (0, dz, 1) and (1, dx, 0), written out so that a large
  // grid does not pay for a general vector product per point. The products by 0 and 1
  // stay, so infinite and NaN heights give what the general product gives.
  Vec3Array& positions = VertexArray_Positon.at(s);
  Vec3Array& normals = VertexArray_Normal.at(s);
  positions.reserve(positions.size() + pointCount);
  normals.reserve(normals.size() + pointCount);
  const std::size_t stride = static_cast<std::size_t>(cows) + 1;
  for (int row = 0; row <= rows; ++row) {
    for (int cow = 0; cow <= cows; ++cow) {
      const std::size_t vIndex = static_cast<std::size_t>(row) * stride + static_cast<std::size_t>(cow);
      const double y = heights ? (*heights)[vIndex] : 0.0;
      double nx = 0.0, ny = 1.0, nz = 0.0;
      if (heights && row > 0 && cow > 0) {
        const double dx = y - (*heights)[vIndex - 1];
        const double dz = y - (*heights)[vIndex - stride];
        nx = dz * 0.0 - 1.0 * dx;
        ny = 1.0 * 1.0 - 0.0 * 0.0;
        nz = 0.0 * dx - dz * 1.0;
        const double len = std::sqrt(nx * nx + ny * ny + nz * nz);
        if (len != 0.0) nx /= len, ny /= len, nz /= len;
      }
      const auto p = GridPoint(cow, row, y);
      positions.push_back(VertexEntry<3>(p[0], p[1], p[2]));
      normals.push_back(VertexEntry<3>(nx, ny, nz));
    }
  }
  // A renderer without UV data could not build a textured layout.
  if (withTexUV_) GenTexCoords(s, false);

  // Each tile's corners in the order of GetTileVertexIndexList; the grid's size was
  // checked above, so no index can overflow.
  IndexArray& indices = VIndexArray.at(s);
  indices.reserve(indices.size() + static_cast<std::size_t>(rows) * static_cast<std::size_t>(cows) * 4);
  const auto step = static_cast<std::int64_t>(stride);
  for (int tileZ = 0; tileZ < rows; ++tileZ) {
    for (int tileX = 0; tileX < cows; ++tileX) {
      const std::int64_t vIndex = tileZ * step + tileX;
      indices.insert(indices.end(), {vIndex, vIndex + 1, vIndex + 1 + step, vIndex + step});
    }
  }

  if (heights) {
    HeightArray = std::move(*heights);
  } else {
    HeightArray.assign(pointCount, 0.0);
  }
  BuildVBO();
}

void Vorn_3DPlane::GenTexCoords(int submeshIndex, bool RebuildVBO) {
  Vec2Array& uvs = VertexArray_UV.at(submeshIndex);
  if (!uvs.empty()) return;
  // One texture repeat per tile, in the order of the grid points.
  uvs.reserve(static_cast<std::size_t>(Rows + 1) * static_cast<std::size_t>(Cows + 1));
  for (int row = 0; row <= Rows; ++row) {
    for (int cow = 0; cow <= Cows; ++cow) uvs.push_back(VertexEntry<2>(cow, row));
  }
  if (int* layout = VertexDescArray.find(submeshIndex)) {
    if (*layout == glc::N3F_V3F) {
      *layout = glc::T2F_N3F_V3F;
    } else if (*layout == glc::T2F_C4F_N3F_V3F) {
      *layout = glc::T4F_C4F_N3F_V4F;
    }
  }
  if (RebuildVBO) BuildVBO();
}

// ---- Tile access ----

std::int64_t Vorn_3DPlane::TileVertexIndex(std::int64_t tileX, std::int64_t tileZ) const {
  return index_of(tileZ, static_cast<std::int64_t>(Cows) + 1, tileX);
}

std::array<std::int64_t, 4> Vorn_3DPlane::CornerIndices(std::int64_t tileX, std::int64_t tileZ) const {
  const std::int64_t vIndex = TileVertexIndex(tileX, tileZ);
  const std::int64_t stride = static_cast<std::int64_t>(Cows) + 1;
  return {vIndex, offset(vIndex, 1), offset(vIndex, stride), offset(vIndex, stride + 1)};
}

std::array<std::int64_t, 4> Vorn_3DPlane::GetTileVertexIndexList(std::int64_t tileX, std::int64_t tileZ) const {
  const auto c = CornerIndices(tileX, tileZ);
  return {c[0], c[1], c[3], c[2]};
}

std::array<Vorn_3DPlane::Corner, 4> Vorn_3DPlane::GetTileVertex(std::int64_t tileX, std::int64_t tileZ) const {
  const Vector3 centerXYZ = GetWorldXYZ();
  const auto c = CornerIndices(tileX, tileZ);
  const double beginX = centerXYZ.x - Cows * TileSize * 0.5;
  const double beginZ = centerXYZ.z - Rows * TileSize * 0.5;
  const double x0 = beginX + static_cast<double>(tileX) * TileSize;
  const double z0 = beginZ + static_cast<double>(tileZ) * TileSize;
  return {{{x0, at(HeightArray, c[0]), z0},
           {x0 + TileSize, at(HeightArray, c[1]), z0},
           {x0, at(HeightArray, c[2]), z0 + TileSize},
           {x0 + TileSize, at(HeightArray, c[3]), z0 + TileSize}}};
}

std::array<Vector3, 4> Vorn_3DPlane::GetTileWorldVertex(std::int64_t tileX, std::int64_t tileZ) const {
  const auto m = MatrixToFloatList(GetWorldMatrix());
  const auto c = CornerIndices(tileX, tileZ);
  std::array<Vector3, 4> out;
  for (int k = 0; k < 4; ++k) {
    const auto p = GridPoint(tileX + (k & 1), tileZ + (k >> 1), at(HeightArray, c[k]));
    out[k] = Vec3MulMatrix(std::span<const double, 3>(p), m);
  }
  return out;
}

// ---- Heights ----

void Vorn_3DPlane::SetTileVertexY(std::int64_t tileX, std::int64_t tileZ, double y) {
  const double four[4] = {y, y, y, y};
  SetTileVertexY(tileX, tileZ, std::span<const double>(four));
}

void Vorn_3DPlane::SetTileVertexY(std::int64_t tileX, std::int64_t tileZ, std::span<const double> y) {
  if (y.empty() || y.size() > 4) {
    throw ValueError("Vorn_3DPlane.SetTileVertexY: y must be a height or a sequence of 1 to 4 heights, not " +
                     std::to_string(y.size()));
  }
  // Every index is checked before the first write, so a failure changes nothing.
  const auto c = CornerIndices(tileX, tileZ);
  std::size_t slots[4];
  for (std::size_t k = 0; k < y.size(); ++k) slots[k] = py_index(c[k], HeightArray.size());
  for (std::size_t k = 0; k < y.size(); ++k) HeightArray[slots[k]] = y[k];
}

std::array<double, 4> Vorn_3DPlane::GetTileVertexY(std::int64_t tileX, std::int64_t tileZ) const {
  const auto c = CornerIndices(tileX, tileZ);
  return {at(HeightArray, c[0]), at(HeightArray, c[1]), at(HeightArray, c[2]), at(HeightArray, c[3])};
}

double Vorn_3DPlane::GetTileAverageY(std::int64_t tileX, std::int64_t tileZ, std::int64_t radiusTile) const {
  const std::int64_t stride = static_cast<std::int64_t>(Cows) + 1;
  double Sum_Y = 0.0;
  for (std::int64_t r = -radiusTile; r <= radiusTile; ++r) {
    for (std::int64_t c = -radiusTile; c <= radiusTile; ++c) {
      Sum_Y += at(HeightArray, offset(index_of(offset(tileZ, r), stride, tileX), c));
    }
  }
  const double side = static_cast<double>(radiusTile) * 2.0 + 1.0;
  return Sum_Y / (side * side);
}

std::pair<bool, double> Vorn_3DPlane::CheckInHeight(double x, double z, bool FastMode) {
  const Vector3 centerXYZ = GetWorldXYZ();
  const double beginX = centerXYZ.x - Cows * TileSize * 0.5;
  const double endX = beginX + Cows * TileSize;
  const double beginZ = centerXYZ.z - Rows * TileSize * 0.5;
  const double endZ = beginZ + Rows * TileSize;
  if (x < beginX || x > endX || z < beginZ || z > endZ) return {false, 0.0};

  if (TileSize == 0.0) throw ZeroDivisionError("float division by zero");
  // The far edges are inside: a point on endX gives tileX == Cows.
  const double columns = (x - beginX) / TileSize, rows = (z - beginZ) / TileSize;
  if (!std::isfinite(columns) || !std::isfinite(rows)) {
    throw ValueError("Vorn_3DPlane.CheckInHeight: cannot convert float NaN to integer");
  }
  const auto tileX = static_cast<std::int64_t>(columns);
  const auto tileZ = static_cast<std::int64_t>(rows);

  if (FastMode) {
    const double Y_RESULT = GetTileAverageY(tileX, tileZ);
    char height[64];
    std::snprintf(height, sizeof height, "%.2f", Y_RESULT);
    console::print_concat("Tile X:", std::to_string(tileX), "  Z:", std::to_string(tileZ), " Y:", height);
    return {true, Y_RESULT};
  }

  const double tileX_X = beginX + static_cast<double>(tileX) * TileSize;
  const double tileX_Z = beginZ + static_cast<double>(tileZ) * TileSize;
  // Inside the grid the four corners are read directly (the common case: every vertex a
  // patch drops onto the ground asks this); on the far edges GetTileVertexY's index
  // rules give the neighbouring row or an IndexError, as for any lookup.
  const std::int64_t stride = static_cast<std::int64_t>(Cows) + 1;
  const std::size_t first = static_cast<std::size_t>(tileZ * stride + tileX);
  const bool inner = tileX < Cows && tileZ < Rows && first + static_cast<std::size_t>(stride) + 1 < HeightArray.size();
  const std::array<double, 4> Y =
      inner ? std::array<double, 4>{HeightArray[first], HeightArray[first + 1], HeightArray[first + stride],
                                    HeightArray[first + stride + 1]}
            : GetTileVertexY(tileX, tileZ);
  const Vector3 V1(tileX_X, Y[0], tileX_Z);
  const Vector3 V2(tileX_X + TileSize, Y[1], tileX_Z);
  const Vector3 V3(tileX_X, Y[2], tileX_Z + TileSize);
  const Vector3 V4(tileX_X + TileSize, Y[3], tileX_Z + TileSize);

  // A vertical line through the point against the tile's two triangles; it starts at
  // the sum of the corner heights, though the test does not depend on where it starts.
  const Vector3 Src(x, Y[0] + Y[1] + Y[2] + Y[3], z);
  const Vector3 Dir(0.0, -1.0, 0.0);
  if (auto [hit, position] = IntersectTriangle(Src, Dir, V1, V2, V3); hit) return {true, position.y};
  if (auto [hit, position] = IntersectTriangle(Src, Dir, V2, V4, V3); hit) return {true, position.y};
  return {false, 0.0};
}

}  // namespace vorn
