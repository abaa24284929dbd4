#pragma once
// Vorn_3DPlane: a regular grid of quads centred on the node, one height per grid point.
// Terrain, ocean and tiled map derive from it. Implemented in two files:
//   plane.cpp       the grid, heights, normals, tile access and height queries
//   plane_pick.cpp  the tile test of a pick ray and the pick event of the draw
//
// Tiles are numbered by column tileX (0 to Cows - 1, along x) and row tileZ (0 to
// Rows - 1, along z). Grid points are stored row by row: the first corner of tile
// (tileX, tileZ) is grid point tileZ * (Cows + 1) + tileX. Tile operations read heights
// with sequence rules (an index in [-n, n) wraps, anything else is an IndexError), so
// a tile at the grid's edge reads wrapped or neighbouring points instead of failing.
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "core/vector3.h"
#include "node/game_node.h"

namespace vorn {

// Where a pick ray met a plane: the tile, the hit position and the world corners of
// the triangle that was hit.
struct TilePick {
  std::int64_t tileX = 0;
  std::int64_t tileZ = 0;
  Vector3 position;
  std::array<Vector3, 3> corners;
};

class Vorn_3DPlane : public Vorn_3DGameNode {
 public:
  // Pick behaviour: a click fires on every pick; a drag fires only when the tile
  // under the ray changes.
  static constexpr int CHECKTILE_MODE_CLICK = 0;
  static constexpr int CHECKTILE_MODE_DRAG = 1;
  // The largest grid a plane builds (8192 by 8192 tiles is about this): past it the
  // vertex arrays alone would take gigabytes, and a script's typo should not.
  static constexpr std::size_t kMaxGridPoints = std::size_t{1} << 26;

  using Corner = std::array<double, 3>;

  explicit Vorn_3DPlane(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  // ValueError for anything but the two CHECKTILE_MODE constants.
  void SetCheckTileMode(int CheckTileMode);

  // Builds submesh "layer_0" as a GL_QUADS grid of rows by cows tiles and stores the
  // heights (zeros without HeightArray; ValueError for negative counts, IndexError for
  // a HeightArray shorter than the grid, both before anything changes). With
  // withTexUV the grid gets the texture coordinates of GenTexCoords as well.
  void CreatePlane(int rows = 1, int cows = 1, double tilesize = 1.0, bool withTexUV = false,
                   std::optional<std::vector<double>> HeightArray = std::nullopt);

  // Texture coordinates in tile units, once per submesh (only while its UV array is
  // empty); the layout gains them and, with RebuildVBO, the buffers are rebuilt.
  // Subclasses that override the two-argument form add `using Vorn_3DPlane::GenTexCoords;`.
  void GenTexCoords(int submeshIndex) override { GenTexCoords(submeshIndex, true); }
  virtual void GenTexCoords(int submeshIndex, bool RebuildVBO);

  // ---- Tile access ----
  // First grid point of a tile (no range test; overflow is an IndexError).
  std::int64_t TileVertexIndex(std::int64_t tileX, std::int64_t tileZ) const;
  // The four corners in corner order (V1, V2, V3, V4) in world offsets: x and z from
  // the node's world position, y the stored height without the node's world y.
  std::array<Corner, 4> GetTileVertex(std::int64_t tileX, std::int64_t tileZ) const;
  // The four corners in corner order through the world matrix.
  std::array<Vector3, 4> GetTileWorldVertex(std::int64_t tileX, std::int64_t tileZ) const;
  // The tile's grid points in drawing order: V1, V2, V4, V3.
  std::array<std::int64_t, 4> GetTileVertexIndexList(std::int64_t tileX, std::int64_t tileZ) const;

  // ---- Heights ----
  // Writes all four corners with one height.
  void SetTileVertexY(std::int64_t tileX, std::int64_t tileZ, double y);
  // Writes the first 1 to 4 corners in corner order (ValueError for other lengths).
  // Only HeightArray changes; rebuilding the vertex buffer is the caller's matter.
  void SetTileVertexY(std::int64_t tileX, std::int64_t tileZ, std::span<const double> y);
  void SetTileY(std::int64_t tileX, std::int64_t tileZ, double y) { SetTileVertexY(tileX, tileZ, y); }
  void SetTileY(std::int64_t tileX, std::int64_t tileZ, std::span<const double> y) { SetTileVertexY(tileX, tileZ, y); }
  // The four heights in corner order.
  std::array<double, 4> GetTileVertexY(std::int64_t tileX, std::int64_t tileZ) const;
  // Mean of the (2 * radiusTile + 1)^2 grid points around the tile's first corner,
  // not clipped to the grid: callers keep radiusTile away from the edge.
  double GetTileAverageY(std::int64_t tileX, std::int64_t tileZ, std::int64_t radiusTile = 2) const;
  // Height of the plane below the world point (x, z): (true, height), or (false, 0.0)
  // outside the grid. The far edges count as inside and read the tile beyond the
  // last one. FastMode gives the tile's average height and prints it.
  std::pair<bool, double> CheckInHeight(double x, double z, bool FastMode = false);
  // The scene's ground query: CheckInHeight's height where the plane covers (x, z).
  std::optional<double> GroundHeightAt(double x, double z) override {
    const auto [inside, y] = CheckInHeight(x, z);
    return inside ? std::optional<double>(y) : std::nullopt;
  }

  // ---- Picking (plane_pick.cpp) ----
  // The first tile in row order whose triangles the line Pt + t * Dir meets, any t.
  // Only tiles whose footprint the line crosses are tested, which gives the same
  // answer as testing every tile.
  std::optional<TilePick> PickTile(const Vector3& Pt, const Vector3& Dir) const;
  // The node's pick is the tile pick: the hit position and the triangle's corners.
  // Length is accepted for the pick interface; the line is unbounded.
  std::optional<PickDetail> checkPick(const Vector3& Pt, const Vector3& Dir, double /*Length*/ = 99999.0) override {
    if (const auto hit = PickTile(Pt, Dir)) return PickDetail{hit->position, hit->corners};
    return std::nullopt;
  }
  // The pick event, run by the node's draw for every visible node: with a pick
  // requested this frame, tests the scene's pick ray and hands a hit to OnTilePicked.
  void draw_picktriangle() override;
  // What a hit does: in drag mode nothing unless the tile changed (CurrTileX and
  // CurrTileZ keep the last one); then the scene selects this node, PickDownFunction
  // runs, and with PickTriangleVisible the scene's draw node outlines the tile.
  void OnTilePicked(const TilePick& hit, const Vector3& Dir);

  // ---- Fields ----
  int Cows = 0;
  int Rows = 0;
  double TileSize = 0.0;
  std::vector<double> HeightArray;
  int CheckTile_Mode = CHECKTILE_MODE_CLICK;
  std::int64_t CurrTileX = -1;
  std::int64_t CurrTileZ = -1;
  // The hit that fired the last pick event; the script binding hands its tile to
  // PickDownFunction.
  std::optional<TilePick> LastPickTile;

 private:
  // Local position of grid point (column, row) with height y.
  std::array<double, 3> GridPoint(std::int64_t column, std::int64_t row, double y) const noexcept {
    const double beginX = -Cows * TileSize * 0.5, beginZ = -Rows * TileSize * 0.5;
    return {beginX + static_cast<double>(column) * TileSize, y, beginZ + static_cast<double>(row) * TileSize};
  }
  // Grid points of the four corners in corner order.
  std::array<std::int64_t, 4> CornerIndices(std::int64_t tileX, std::int64_t tileZ) const;
  std::optional<TilePick> PickTileByWalk(const Vector3& Pt, const Vector3& Dir) const;
};


}  // namespace vorn
