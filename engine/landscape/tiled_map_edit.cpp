// Tile editing: raise, lower, ramps and the grid's dropped tiles.
//
// A tile's level is the layer that holds it in LayerDict. Moving it away from the grid
// (up from level 0 or above, down from level 0 or below) builds a block on the next
// layer and trims the block it stood on, or drops the grid's quad when it stood on the
// grid. Moving it back toward the grid is the reverse edit: the tile's outer block is
// removed and the one it stood on is restored (un-trimmed, or the grid's quad comes
// back at level 0). So UpTile then DownTile leaves every table and the grid's index
// list as they were, and a layer that loses its last block leaves the tables (its
// submesh stays, empty, and is reused when the layer comes back: submesh numbers never
// change). Every index is checked before anything changes.
#include <cstdlib>
#include <string>

#include "core/errors.h"
#include "landscape/tiled_map.h"

namespace vorn {
namespace {

constexpr int kNoLayer = -1000000;

std::string LayerName(int layerIndex) { return "layer_" + std::to_string(layerIndex); }

}  // namespace

int Vorn_3DTiledMap::HighestLayer(std::int64_t tileIndex) const {
  int found = kNoLayer;
  for (const auto& [layer, tiles] : LayerDict)
    if (tiles[static_cast<std::size_t>(tileIndex)] >= 0 && (found == kNoLayer || layer > found)) found = layer;
  return found;
}

int Vorn_3DTiledMap::LowestLayer(std::int64_t tileIndex) const {
  int found = kNoLayer;
  for (const auto& [layer, tiles] : LayerDict)
    if (tiles[static_cast<std::size_t>(tileIndex)] >= 0 && (found == kNoLayer || layer < found)) found = layer;
  return found;
}

void Vorn_3DTiledMap::UpTile(std::int64_t tileX, std::int64_t tileZ, bool ReBuild) {
  MoveTile("UpTile", tileX, tileZ, +1, std::nullopt, ReBuild);
}

void Vorn_3DTiledMap::DownTile(std::int64_t tileX, std::int64_t tileZ, bool ReBuild) {
  MoveTile("DownTile", tileX, tileZ, -1, std::nullopt, ReBuild);
}

bool Vorn_3DTiledMap::SlopeTile(std::int64_t tileX, std::int64_t tileZ, int moveX, int moveZ, bool ReBuild) {
  if (std::abs(moveX) + std::abs(moveZ) != 1) {
    throw ValueError("Vorn_3DTiledMap.SlopeTile: (moveX, moveZ) must be one of (-1, 0), (1, 0), (0, -1), (0, 1)");
  }
  const TileRef t = ResolveTile("SlopeTile", tileX, tileZ);
  const int level = HighestLayer(t.index);
  if (level == kNoLayer) {
    throw ValueError("Vorn_3DTiledMap.SlopeTile: tile (" + std::to_string(t.tileX) + ", " + std::to_string(t.tileZ) +
                     ") is on no layer");
  }
  // A ramp does not stand on a ramp: a tile whose outer block is one takes no second.
  if (const auto* ramps = LayerTileSlopeDict.find(level); ramps && ramps->contains(t.index)) return false;
  // A neighbour outside the grid has no level to lean toward.
  const std::int64_t nx = t.tileX + moveX, nz = t.tileZ + moveZ;
  if (nx < 0 || nz < 0 || nx >= Cows || nz >= Rows) return false;
  const int height = GetTileHeight(nx, nz);
  // A ramp fills the layer between the tile and a neighbour one level away, on the
  // tile's side of the grid: rising toward a higher neighbour from level 0 or above,
  // or hanging toward a lower one from level 0 or below. Elsewhere that layer already
  // holds the tile's own block, and nothing happens.
  int step = 0;
  if (height == level + 1 && level >= 0) step = +1;
  if (height == level - 1 && level <= 0) step = -1;
  if (step == 0) return false;
  MoveTile("SlopeTile", t.tileX, t.tileZ, step, std::array<int, 2>{moveX, moveZ}, ReBuild);
  return true;
}

void Vorn_3DTiledMap::MakeSlope(std::int64_t tileX, std::int64_t tileZ) {
  SlopeTile(tileX, tileZ, -1, 0);
  SlopeTile(tileX, tileZ, 1, 0);
  SlopeTile(tileX, tileZ, 0, -1);
  SlopeTile(tileX, tileZ, 0, 1);
}

void Vorn_3DTiledMap::MoveTile(const char* operation, std::int64_t tileX, std::int64_t tileZ, int step,
                               std::optional<std::array<int, 2>> ramp, bool ReBuild) {
  const TileRef t = ResolveTile(operation, tileX, tileZ);
  // Up starts from the highest layer that holds the tile, down from the lowest.
  const int from = step > 0 ? HighestLayer(t.index) : LowestLayer(t.index);
  if (from == kNoLayer) {
    throw ValueError(std::string("Vorn_3DTiledMap.") + operation + ": tile (" + std::to_string(t.tileX) + ", " +
                     std::to_string(t.tileZ) + ") is on no layer");
  }
  const int to = from + step;
  const bool awayFromGrid = step > 0 ? from >= 0 : from <= 0;
  if (awayFromGrid) {
    RaiseBlock(t, from, to, ramp);
  } else {
    RemoveBlock(t, from, to);
  }
  if (ReBuild) ReBuildTiledMap();
}

void Vorn_3DTiledMap::RaiseBlock(const TileRef& t, int from, int to, std::optional<std::array<int, 2>> ramp) {
  if (const auto* blocks = LayerTileIndexDict.find(to); blocks && blocks->contains(t.index)) {
    throw RuntimeError("Vorn_3DTiledMap: layer " + std::to_string(to) + " already has a block at tile (" +
                       std::to_string(t.tileX) + ", " + std::to_string(t.tileZ) + ")");
  }
  if (from != 0 && !LayerTileIndexDict.at(from).contains(t.index)) {
    throw RuntimeError("Vorn_3DTiledMap: layer " + std::to_string(from) + " has no block under tile (" +
                       std::to_string(t.tileX) + ", " + std::to_string(t.tileZ) + ")");
  }
  EnsureLayer(to);
  const auto i = static_cast<std::size_t>(t.index);
  LayerDict.at(to)[i] = LayerDict.at(from)[i];
  LayerDict.at(from)[i] = -1;

  if (ramp) {
    AppendBlock(to, t, tiles::RampModel(to, (*ramp)[0], (*ramp)[1], TileSize));
    LayerTileMaskArray.at(to)[i] = MASK_SLOPE;
    LayerTileSlopeDict[to].set(t.index, *ramp);
  } else {
    AppendBlock(to, t, InitTileModel.at(tiles::LayerDirection(to)));
    LayerTileMaskArray.at(to)[i] = MASK_BLOCK;
  }

  // What the tile stood on: the grid's quad leaves, or the block below is trimmed.
  if (from == 0) {
    DropLayer0Tile(t.tileX, t.tileZ);
  } else {
    TrimTile(from, t.tileX, t.tileZ);
  }
  ReBuildLayerTiles(to);
  ReBuildLayerTiles(from);
}

void Vorn_3DTiledMap::RemoveBlock(const TileRef& t, int from, int to) {
  if (!LayerTileIndexDict.at(from).contains(t.index)) {
    throw RuntimeError("Vorn_3DTiledMap: layer " + std::to_string(from) + " has no block at tile (" +
                       std::to_string(t.tileX) + ", " + std::to_string(t.tileZ) + ")");
  }
  if (to != 0 && !(LayerTileIndexDict.contains(to) && LayerTileIndexDict.at(to).contains(t.index))) {
    throw RuntimeError("Vorn_3DTiledMap: layer " + std::to_string(to) + " has no block under tile (" +
                       std::to_string(t.tileX) + ", " + std::to_string(t.tileZ) + ")");
  }
  const auto i = static_cast<std::size_t>(t.index);
  // The vertices go first: they refuse arrays a script has changed, before any table moves.
  EraseBlockVertices(from, t.index);
  LayerDict.at(to)[i] = LayerDict.at(from)[i];
  LayerDict.at(from)[i] = -1;
  LayerTileMaskArray.at(from)[i] = MASK_NONE;
  if (auto* ramps = LayerTileSlopeDict.find(from)) {
    ramps->discard(t.index);
    if (ramps->empty()) LayerTileSlopeDict.discard(from);
  }

  // What the tile stands on again: the grid's quad, or the block below restored.
  if (to == 0) {
    LayerTileMaskArray.at(0)[i] = MASK_BLOCK;
    RebuildGroundIndices();
  } else if (const auto* ramps = LayerTileSlopeDict.find(to); ramps && ramps->contains(t.index)) {
    const auto& dir = ramps->at(t.index);
    const auto [x, z] = TileOrigin(t.tileX, t.tileZ);
    WriteBlock(GetSubMeshIndex(LayerName(to)), LayerTileIndexDict.at(to).at(t.index)[0],
               tiles::RampModel(to, dir[0], dir[1], TileSize), x, tiles::LayerBaseY(to), z);
    LayerTileMaskArray.at(to)[i] = MASK_SLOPE;
  } else {
    // A full block is rewritten from the model by the rebuild below.
    LayerTileMaskArray.at(to)[i] = MASK_BLOCK;
  }

  if (LayerTileIndexDict.at(from).empty()) {
    DropLayer(from);
  } else {
    ReBuildLayerTiles(from);
  }
  ReBuildLayerTiles(to);
}

void Vorn_3DTiledMap::DropLayer0Tile(std::int64_t tileX, std::int64_t tileZ, bool hollowMode) {
  const TileRef t = ResolveTile("DropLayer0Tile", tileX, tileZ);
  LayerTileMaskArray.at(0)[static_cast<std::size_t>(t.index)] = MASK_NONE;
  // In hollow mode the grid points around the hole get upright normals, so the
  // neighbours' edges at the hole do not shade as slopes.
  if (hollowMode) {
    Vec3Array& normals = VertexArray_Normal.at(0);
    for (const std::int64_t p : GetTileVertexIndexList(t.tileX, t.tileZ)) {
      normals.at(static_cast<std::size_t>(p)) = VertexEntry<3>(0.0, 1.0, 0.0);
    }
  }
  RebuildGroundIndices();
}

}  // namespace vorn
