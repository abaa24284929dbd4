// Tile heights, the water walks, FillWater and the shore search.
//
// The height of a tile here is its layer number. A tile index is tileZ * Cows + tileX
// and follows the sequence rule: a column past the edge reads the neighbouring row, a
// row before the first wraps to the last ones, and a row past the last is an
// IndexError. The walks rely on that (or on a bank) to end; each walk is a loop, and
// one that has taken more steps than the map could hold has left it (IndexError).
#include <array>
#include <cmath>
#include <algorithm>
#include <string>
#include <utility>

#include "core/errors.h"
#include "core/pyseq.h"
#include "landscape/tiled_map.h"

namespace vorn {
namespace {

// The eight walks, in their order: left, right, front, back, then the diagonals.
constexpr std::array<std::array<int, 2>, 8> kWalks{{{-1, 0}, {1, 0}, {0, -1}, {0, 1}, {-1, -1}, {1, -1}, {-1, 1}, {1, 1}}};

[[noreturn]] void WalkLeftMap() { throw IndexError("Vorn_3DTiledMap: a tile walk left the map (list index out of range)"); }

}  // namespace

int Vorn_3DTiledMap::HeightAtIndex(std::int64_t tileIndex) const {
  const std::size_t i = py_index(tileIndex, TileCount(), "Vorn_3DTiledMap: tile");
  int height = NO_HEIGHT;
  for (const auto& [layer, tiles] : LayerDict)
    if (i < tiles.size() && tiles[i] >= 0 && layer < height) height = layer;
  return height;
}

int Vorn_3DTiledMap::GetTileHeight(std::int64_t tileX, std::int64_t tileZ) const {
  std::int64_t index = 0;
  if (__builtin_mul_overflow(tileZ, static_cast<std::int64_t>(Cows), &index) ||
      __builtin_add_overflow(index, tileX, &index)) {
    WalkLeftMap();
  }
  return HeightAtIndex(index);
}

double Vorn_3DTiledMap::GetTileDistance(double tileX1, double tileZ1, double tileX2, double tileZ2) const {
  return std::sqrt((tileX1 - tileX2) * (tileX1 - tileX2) + (tileZ1 - tileZ2) * (tileZ1 - tileZ2));
}

double Vorn_3DTiledMap::GetWaterTileAvgHeight(std::int64_t tileX, std::int64_t tileZ) const {
  double sum = 0.0;
  for (std::int64_t dz = -1; dz <= 1; ++dz)
    for (std::int64_t dx = -1; dx <= 1; ++dx) sum += GetTileHeight(tileX + dx, tileZ + dz);
  return sum / 9.0;
}

// ---- Water walks ----

std::vector<Vorn_3DTiledMap::WaterTile> Vorn_3DTiledMap::StraightWaterWalk(int height, std::int64_t tileX,
                                                                           std::int64_t tileZ, int moveX,
                                                                           int moveZ) const {
  std::vector<WaterTile> out;
  for (std::int64_t steps = 0;; ++steps) {
    if (steps > WalkLimit()) WalkLeftMap();
    tileX += moveX, tileZ += moveZ;
    const int next = GetTileHeight(tileX, tileZ);
    if (next > height) return out;  // the bank
    out.push_back({tileX, next, tileZ});
  }
}

std::vector<Vorn_3DTiledMap::WaterTile> Vorn_3DTiledMap::RecursionResearchWaterTiles(int height, std::int64_t tileX,
                                                                                     std::int64_t tileZ, int moveX,
                                                                                     int moveZ) const {
  if (moveX == 0 || moveZ == 0) return StraightWaterWalk(height, tileX, tileZ, moveX, moveZ);
  // A diagonal walk: its own tiles first, then from its last tile back to its first,
  // the two straight walks along x and along z from each (a staircase's order).
  std::vector<WaterTile> out = StraightWaterWalk(height, tileX, tileZ, moveX, moveZ);
  const std::size_t chain = out.size();
  for (std::size_t k = chain; k-- > 0;) {
    const WaterTile from = out[k];
    for (const auto& tile : StraightWaterWalk(height, from[0], from[2], moveX, 0)) out.push_back(tile);
    for (const auto& tile : StraightWaterWalk(height, from[0], from[2], 0, moveZ)) out.push_back(tile);
  }
  return out;
}

std::vector<Vorn_3DTiledMap::WaterTile> Vorn_3DTiledMap::ResearchWaterTiles(int height, std::int64_t tileX,
                                                                            std::int64_t tileZ) const {
  std::vector<WaterTile> out{{tileX, height, tileZ}};
  for (const auto& [mx, mz] : kWalks) {
    const auto walk = RecursionResearchWaterTiles(height, tileX, tileZ, mx, mz);
    out.insert(out.end(), walk.begin(), walk.end());
  }
  return out;
}

void Vorn_3DTiledMap::FillWater(std::int64_t tileX, std::int64_t tileZ) {
  CheckTables("FillWater");
  const int level = GetTileHeight(tileX, tileZ);
  if (level < 0 || level >= NO_HEIGHT) return;
  const std::vector<WaterTile> records = ResearchWaterTiles(level, tileX, tileZ);
  if (records.empty()) return;

  // Every quad is computed before the water changes, so a walk or a neighbour read
  // that fails leaves the map as it was. Tiles reached twice get two quads.
  const double beginX = -Cows * TileSize * 0.5, beginZ = -Rows * TileSize * 0.5;
  const double y = level + 0.5;
  // Every tile's level once, read with the same index rule as GetTileHeight.
  std::vector<int> levels(TileCount(), NO_HEIGHT);
  for (const auto& [layer, tiles] : LayerDict)
    for (std::size_t i = 0; i < std::min(levels.size(), tiles.size()); ++i)
      if (tiles[i] >= 0 && layer < levels[i]) levels[i] = layer;
  const auto cols = static_cast<std::int64_t>(Cows);
  const auto avg = [&](std::int64_t tx, std::int64_t tz) {
    double sum = 0.0;
    for (std::int64_t dz = -1; dz <= 1; ++dz)
      for (std::int64_t dx = -1; dx <= 1; ++dx)
        sum += levels[py_index((tz + dz) * cols + tx + dx, levels.size(), "Vorn_3DTiledMap: tile")];
    return sum / 9.0;
  };
  // The arrays are built in buffers kept from the last fill (swapped with the water's
  // own), so a refill does not take fresh memory.
  Vec3Array& positions = waterScratch_.positions;
  Vec3Array& normals = waterScratch_.normals;
  Vec2Array& uvs = waterScratch_.uvs;
  IndexArray& indices = waterScratch_.indices;
  positions.clear(), normals.clear(), uvs.clear(), indices.clear();
  positions.reserve(records.size() * 4);
  normals.reserve(records.size() * 4);
  uvs.reserve(records.size() * 4);
  indices.reserve(records.size() * 4);
  std::vector<std::size_t> flooded;
  flooded.reserve(records.size());
  for (const WaterTile& tile : records) {
    const std::int64_t tx = tile[0], tz = tile[2];
    const double x = beginX + static_cast<double>(tx) * TileSize, z = beginZ + static_cast<double>(tz) * TileSize;
    // The normal's y carries the bottom's depth below the water to the shader.
    const double h1 = avg(tx, tz) - 1, h2 = avg(tx + 1, tz) - 1;
    const double h3 = avg(tx + 1, tz + 1) - 1, h4 = avg(tx, tz + 1) - 1;
    const auto v = static_cast<std::int64_t>(positions.size());
    positions.insert(positions.end(), {VertexEntry<3>(x, y, z), VertexEntry<3>(x + TileSize, y, z),
                                       VertexEntry<3>(x + TileSize, y, z + TileSize), VertexEntry<3>(x, y, z + TileSize)});
    normals.insert(normals.end(), {VertexEntry<3>(0.0, h1, 0.0), VertexEntry<3>(0.0, h2, 0.0),
                                   VertexEntry<3>(0.0, h3, 0.0), VertexEntry<3>(0.0, h4, 0.0)});
    uvs.insert(uvs.end(), {VertexEntry<2>(0.0, 0.0), VertexEntry<2>(1.0, 0.0), VertexEntry<2>(1.0, 1.0),
                           VertexEntry<2>(0.0, 1.0)});
    indices.insert(indices.end(), {v, v + 1, v + 2, v + 3});
    flooded.push_back(py_index(tz * Cows + tx, TileCount()));
  }

  // One body of water per map. An existing "water" submesh is refilled in place: a new
  // submesh could take the number of a layer's submesh.
  int s = GetSubMeshIndex("water");
  if (s < 0) {
    s = CreateSubMesh("water");
    SetSubMeshShapeType(s, glc::QUADS);
    SetSubMeshAlphaMode(s, glc::BLEND);
    VertexDescArray.set(s, glc::T2F_N3F_V3F);
    if (const unsigned* fx = SubMeshFX.find(0)) SubMeshFX.set(s, *fx);
    for (const auto& [key, texID] : TiledMapTextureDict) SetSubMeshDynamicTextureID(s, texID, key);
    for (TextureInfo& rec : TextureArray.at(s)) rec.density = TiledMapTextureScale;
  }
  std::swap(VertexArray_Positon.at(s), positions);
  std::swap(VertexArray_Normal.at(s), normals);
  std::swap(VertexArray_UV.at(s), uvs);
  std::swap(VIndexArray.at(s), indices);
  TileWaterHeightArray.assign(TileCount(), NO_HEIGHT);
  for (const std::size_t i : flooded) TileWaterHeightArray[i] = level;
}

// ---- The shore search ----

Vorn_3DTiledMap::TileXZ Vorn_3DTiledMap::StraightLandWalk(int height, std::int64_t nextX, std::int64_t nextZ, int moveX,
                                                         int moveZ) const {
  for (std::int64_t steps = 0; GetTileHeight(nextX, nextZ) <= height; ++steps) {
    if (steps > WalkLimit()) WalkLeftMap();
    nextX += moveX, nextZ += moveZ;
  }
  // One step past the first land tile, as the search has always answered.
  return {nextX + moveX, nextZ + moveZ};
}

Vorn_3DTiledMap::TileXZ Vorn_3DTiledMap::RecursionResearchTileNearestLand(int height, std::int64_t tileX,
                                                                         std::int64_t tileZ, std::int64_t nextTileX,
                                                                         std::int64_t nextileZ, int moveX,
                                                                         int moveZ) const {
  if (moveX == 0 || moveZ == 0) return StraightLandWalk(height, nextTileX, nextileZ, moveX, moveZ);
  // The diagonal's water tiles, then, from the last back to the first, the answer so
  // far against the straight walks beside each: strictly nearer replaces it.
  std::vector<TileXZ> chain;
  std::int64_t x = nextTileX, z = nextileZ;
  for (; GetTileHeight(x, z) <= height; x += moveX, z += moveZ) {
    if (static_cast<std::int64_t>(chain.size()) > WalkLimit()) WalkLeftMap();
    chain.push_back({x, z});
  }
  TileXZ nearest{x + moveX, z + moveZ};
  auto distance = [&](const TileXZ& t) {
    return GetTileDistance(static_cast<double>(tileX), static_cast<double>(tileZ), static_cast<double>(t[0]),
                           static_cast<double>(t[1]));
  };
  double nearestLength = distance(nearest);
  for (std::size_t k = chain.size(); k-- > 0;) {
    const TileXZ& c = chain[k];
    for (const TileXZ side : {StraightLandWalk(height, c[0] + moveX, c[1], moveX, 0),
                              StraightLandWalk(height, c[0], c[1] + moveZ, 0, moveZ)}) {
      if (const double d = distance(side); d < nearestLength) nearest = side, nearestLength = d;
    }
  }
  return nearest;
}

std::int64_t Vorn_3DTiledMap::StraightLandLength(std::int64_t length, int height, std::int64_t tileX,
                                                 std::int64_t tileZ, int moveX, int moveZ) const {
  for (std::int64_t steps = 0; GetTileHeight(tileX + moveX, tileZ + moveZ) <= height; ++steps) {
    if (steps > WalkLimit()) WalkLeftMap();
    tileX += moveX, tileZ += moveZ, ++length;
  }
  return length;
}

std::int64_t Vorn_3DTiledMap::RecursionResearchTileNearestLandLength(std::int64_t length, int height, std::int64_t tileX,
                                                                     std::int64_t tileZ, int moveX, int moveZ) const {
  if (moveX == 0 || moveZ == 0) return StraightLandLength(length, height, tileX, tileZ, moveX, moveZ);
  struct Step {
    std::int64_t x, z, length;
  };
  std::vector<Step> chain;
  for (; GetTileHeight(tileX + moveX, tileZ + moveZ) <= height;) {
    if (static_cast<std::int64_t>(chain.size()) > WalkLimit()) WalkLeftMap();
    tileX += moveX, tileZ += moveZ, ++length;
    chain.push_back({tileX, tileZ, length});
  }
  std::int64_t best = length;
  for (std::size_t k = chain.size(); k-- > 0;) {
    const Step& c = chain[k];
    best = std::min(best, StraightLandLength(c.length, height, c.x, c.z, moveX, 0));
    best = std::min(best, StraightLandLength(c.length, height, c.x, c.z, 0, moveZ));
  }
  return best;
}

Vorn_3DTiledMap::TileXZ Vorn_3DTiledMap::ResearchTileNearestLand(int height, std::int64_t tileX,
                                                                std::int64_t tileZ) const {
  // The first direction sets the answer; a later one replaces it only when strictly
  // nearer, so a tie keeps the direction listed earlier.
  TileXZ nearest{};
  double nearestLength = 0.0;
  bool first = true;
  for (const auto& [mx, mz] : kWalks) {
    const TileXZ found = RecursionResearchTileNearestLand(height, tileX, tileZ, tileX + mx, tileZ + mz, mx, mz);
    const double length = GetTileDistance(static_cast<double>(tileX), static_cast<double>(tileZ),
                                          static_cast<double>(found[0]), static_cast<double>(found[1]));
    if (first || length < nearestLength) nearest = found, nearestLength = length;
    first = false;
  }
  return nearest;
}

}  // namespace vorn
