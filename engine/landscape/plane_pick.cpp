// Picking a tile of the plane with a ray, and the pick event of the node's draw.
//
// The answer is the first tile in row order whose triangles the line meets, each
// corner carried to the world by the node's world matrix. Instead of testing every
// tile, the line is carried into the plane's own space once: a tile can only be hit
// where the line's footprint on the grid crosses the tile's rectangle, so each row is
// tested only over the columns the footprint spans there (widened a little to absorb
// rounding). The tests themselves run in world space exactly as the full walk would,
// so the result is the same; a large grid costs O(rows) per pick.
#include <algorithm>
#include <cmath>
#include <vector>

#include "core/math_util.h"
#include "core/pyseq.h"
#include "landscape/plane.h"

namespace vorn {
namespace {

// The tile's two triangles; the first one hit gives the record.
bool test_tile(const Vector3& Pt, const Vector3& Dir, const std::array<Vector3, 4>& c, TilePick& out) {
  if (auto [hit, position] = IntersectTriangle(Pt, Dir, c[0], c[1], c[2]); hit) {
    out.position = position;
    out.corners = {c[0], c[1], c[2]};
    return true;
  }
  if (auto [hit, position] = IntersectTriangle(Pt, Dir, c[1], c[3], c[2]); hit) {
    out.position = position;
    out.corners = {c[1], c[3], c[2]};
    return true;
  }
  return false;
}

// A point through a float list without the division test (w is 1 for node matrices;
// a bad matrix shows up as a non-finite result).
Vector3 carry(const Vector3& v, const FloatList16& m) noexcept {
  double out[4];
  for (int c = 0; c < 4; ++c) out[c] = v.x * m[c] + v.y * m[4 + c] + v.z * m[8 + c] + m[12 + c];
  return {out[0] / out[3], out[1] / out[3], out[2] / out[3]};
}

bool finite(const Vector3& v) noexcept { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }

// Whether the local point comes back to the world point: a nearly singular matrix
// fails this, and its picks take the full walk.
bool round_trips(const Vector3& local, const Vector3& point, const FloatList16& world) noexcept {
  const Vector3 back = carry(local, world);
  const double scale = 1.0 + std::fabs(point.x) + std::fabs(point.y) + std::fabs(point.z);
  return std::fabs(back.x - point.x) + std::fabs(back.y - point.y) + std::fabs(back.z - point.z) <= 1e-9 * scale;
}

}  // namespace

std::optional<TilePick> Vorn_3DPlane::PickTileByWalk(const Vector3& Pt, const Vector3& Dir) const {
  TilePick hit;
  for (std::int64_t tileZ = 0; tileZ < Rows; ++tileZ) {
    for (std::int64_t tileX = 0; tileX < Cows; ++tileX) {
      if (test_tile(Pt, Dir, GetTileWorldVertex(tileX, tileZ), hit)) {
        hit.tileX = tileX;
        hit.tileZ = tileZ;
        return hit;
      }
    }
  }
  return std::nullopt;
}

std::optional<TilePick> Vorn_3DPlane::PickTile(const Vector3& Pt, const Vector3& Dir) const {
  if (Rows <= 0 || Cows <= 0) return std::nullopt;
  const std::size_t stride = static_cast<std::size_t>(Cows) + 1;
  const std::size_t pointCount = stride * (static_cast<std::size_t>(Rows) + 1);

  // The line in the plane's space. A short height array (a script may replace it) or
  // a matrix without a good inverse takes the full walk instead, which reads the
  // heights tile by tile and fails on the first one missing.
  const FloatList16 world = MatrixToFloatList(GetWorldMatrix());
  const FloatList16 inverse = MatrixToFloatList(GetWorldMatrix().Inverse());
  const Vector3 localPt = carry(Pt, inverse);
  const Vector3 localDir(Dir.x * inverse[0] + Dir.y * inverse[4] + Dir.z * inverse[8],
                        Dir.x * inverse[1] + Dir.y * inverse[5] + Dir.z * inverse[9],
                        Dir.x * inverse[2] + Dir.y * inverse[6] + Dir.z * inverse[10]);
  const bool affine = world[3] == 0.0 && world[7] == 0.0 && world[11] == 0.0 && world[15] == 1.0;
  if (HeightArray.size() < pointCount || TileSize == 0.0 || !std::isfinite(TileSize) || !affine ||
      !finite(localPt) || !finite(localDir) || !round_trips(localPt, Pt, world) ||
      !round_trips(localPt + localDir, Pt + Dir, world)) {
    return PickTileByWalk(Pt, Dir);
  }

  // Slack in tiles for rounding between the plane's space and the world: far above
  // the error of a matrix that passed the round trip, far below a tile.
  constexpr double kSlack = 1e-6;
  const double size = std::fabs(TileSize);
  const double beginX = -Cows * TileSize * 0.5;
  const double beginZ = -Rows * TileSize * 0.5;
  const double lastColumn = Cows - 1;
  // World points of the row's two grid lines, over the columns in question.
  std::vector<Vector3> nearLine(stride), farLine(stride);
  TilePick hit;
  for (std::int64_t tileZ = 0; tileZ < Rows; ++tileZ) {
    const double z0 = beginZ + static_cast<double>(tileZ) * TileSize;
    const double zLow = std::min(z0, z0 + TileSize) - size * kSlack;
    const double zHigh = std::max(z0, z0 + TileSize) + size * kSlack;

    // Where along x the line's footprint lies inside the row's band.
    double xLow = -INFINITY, xHigh = INFINITY;
    if (localDir.z == 0.0) {
      if (localPt.z < zLow || localPt.z > zHigh) continue;
      if (localDir.x == 0.0) xLow = xHigh = localPt.x;
    } else {
      const double xa = localPt.x + (zLow - localPt.z) / localDir.z * localDir.x;
      const double xb = localPt.x + (zHigh - localPt.z) / localDir.z * localDir.x;
      if (std::isfinite(xa) && std::isfinite(xb)) xLow = std::min(xa, xb), xHigh = std::max(xa, xb);
    }

    // Those x as columns (a boundary counts for the tiles on both sides).
    const double ca = (xLow - beginX) / TileSize, cb = (xHigh - beginX) / TileSize;
    double first = std::floor(std::min(ca, cb) - kSlack), last = std::floor(std::max(ca, cb) + kSlack);
    if (std::isnan(first) || std::isnan(last)) first = 0.0, last = lastColumn;
    if (last < 0.0 || first > lastColumn) continue;
    const auto firstX = static_cast<std::int64_t>(std::max(first, 0.0));
    const auto lastX = static_cast<std::int64_t>(std::min(last, lastColumn));

    const std::size_t rowStart = static_cast<std::size_t>(tileZ) * stride;
    for (std::int64_t col = firstX; col <= lastX + 1; ++col) {
      const std::size_t v = rowStart + static_cast<std::size_t>(col);
      const auto pNear = GridPoint(col, tileZ, HeightArray[v]);
      const auto pFar = GridPoint(col, tileZ + 1, HeightArray[v + stride]);
      nearLine[col] = Vec3MulMatrix(std::span<const double, 3>(pNear), world);
      farLine[col] = Vec3MulMatrix(std::span<const double, 3>(pFar), world);
    }
    for (std::int64_t tileX = firstX; tileX <= lastX; ++tileX) {
      if (test_tile(Pt, Dir, {nearLine[tileX], nearLine[tileX + 1], farLine[tileX], farLine[tileX + 1]}, hit)) {
        hit.tileX = tileX;
        hit.tileZ = tileZ;
        return hit;
      }
    }
  }
  return std::nullopt;
}

void Vorn_3DPlane::draw_picktriangle() {
  auto scene = GetSceneInstance();
  if (!scene || !scene->isCheckPickOnce()) return;
  const auto [Pt, Dir] = scene->GetScree3DPointAndDir();
  if (const auto hit = PickTile(Pt, Dir)) OnTilePicked(*hit, Dir);
}

void Vorn_3DPlane::OnTilePicked(const TilePick& hit, const Vector3& Dir) {
  if (CheckTile_Mode == CHECKTILE_MODE_DRAG) {
    if (hit.tileX == CurrTileX && hit.tileZ == CurrTileZ) return;
    CurrTileX = hit.tileX;
    CurrTileZ = hit.tileZ;
  }
  // The callback may drop the last other owner of this node.
  const auto self = shared_from_this();
  auto scene = GetSceneInstance();
  if (scene) scene->Select3DObject(self);
  if (Enable_PickDown && PickDownFunction) {
    LastPickTile = hit;
    PickDownFunction.call(*this, PickDetail{hit.position, hit.corners});
  }
  if (!PickTriangleVisible || !scene) return;
  const auto drawNode = scene->GetCurrDrawNode();
  if (!drawNode) return;
  // Lifted off the surface towards the viewer, so that the outline is not hidden in it.
  const double YOffset = Dir.y > 0.0 ? -0.001 : 0.001;
  auto c = GetTileWorldVertex(hit.tileX, hit.tileZ);
  for (auto& corner : c) corner.y += YOffset;
  drawNode->MarkPickedQuad({c[0], c[1], c[3], c[2]});
}

}  // namespace vorn
