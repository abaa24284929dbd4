// Tile geometry: wall records, layer rebuilds, trimming, the grid's index list and the
// bookkeeping of layer submeshes.
#include <algorithm>
#include <string>

#include "core/console.h"
#include "core/errors.h"
#include "landscape/tiled_map.h"

namespace vorn {
namespace {

std::string LayerName(int layerIndex) { return "layer_" + std::to_string(layerIndex); }

}  // namespace

void Vorn_3DTiledMap::RefreshLayerWall(int layerIndex) {
  // The layer's previous table lends its memory: an edit refreshes the walls of a whole
  // layer, and fresh pages for every edit cost more than the walk.
  std::vector<WallInfo> walls;
  if (std::vector<WallInfo>* previous = LayerTileWallArray.find(layerIndex)) walls.swap(*previous);
  walls.clear();
  walls.reserve(TileCount());
  const std::vector<int>* masks = LayerTileMaskArray.find(layerIndex);
  // A neighbour outside the grid counts as no tile, so the outer walls stay visible.
  auto mask = [&](int cow, int row) -> int {
    if (!masks || cow < 0 || row < 0 || cow >= Cows || row >= Rows) return MASK_NONE;
    const std::size_t i = static_cast<std::size_t>(row) * static_cast<std::size_t>(Cows) + static_cast<std::size_t>(cow);
    return i < masks->size() ? (*masks)[i] : MASK_NONE;
  };
  for (int row = 0; row < Rows; ++row) {
    for (int cow = 0; cow < Cows; ++cow) {
      const int front = mask(cow, row - 1), right = mask(cow + 1, row), back = mask(cow, row + 1),
                left = mask(cow - 1, row);
      walls.push_back({front, right, back, left, front, right, back, left, 0});
      // A trace of the walk that scripts have come to expect on the console.
      if (row == 11 && cow == 11) console::print(cow);
    }
  }
  LayerTileWallArray.set(layerIndex, std::move(walls));
}

Vorn_3DTiledMap::WallInfo Vorn_3DTiledMap::GetTileWall(int layerIndex, std::int64_t tileX, std::int64_t tileZ) const {
  const TileRef t = ResolveTile("GetTileWall", tileX, tileZ);
  return LayerTileWallArray.at(layerIndex).at(static_cast<std::size_t>(t.index));
}

void Vorn_3DTiledMap::WriteBlock(int s, std::int64_t v, const tiles::TileModel& model, double x, double y, double z,
                                 bool withUV) {
  Vec3Array& positions = VertexArray_Positon.at(s);
  Vec3Array& normals = VertexArray_Normal.at(s);
  if (v < 0 || static_cast<std::size_t>(v) + tiles::kVertsPerBlock > positions.size() ||
      static_cast<std::size_t>(v) + tiles::kVertsPerBlock > normals.size()) {
    throw RuntimeError("Vorn_3DTiledMap: a block's vertices lie outside its layer's submesh");
  }
  auto* pos = positions.data() + v;
  auto* nor = normals.data() + v;
  for (int f = 0; f < tiles::kFaceCount; ++f) {
    for (int k = 0; k < 4; ++k) {
      const Vector3& p = model.vertices[f][k];
      const Vector3& n = model.normals[f][k];
      *pos++ = VertexEntry<3>(x + p.x, y + p.y, z + p.z);
      *nor++ = VertexEntry<3>(n.x, n.y, n.z);
    }
  }
  if (withUV) {
    Vec2Array& uvs = VertexArray_UV.at(s);
    if (static_cast<std::size_t>(v) + tiles::kVertsPerBlock > uvs.size()) {
      throw RuntimeError("Vorn_3DTiledMap: a block's UVs lie outside its layer's submesh");
    }
    auto* uv = uvs.data() + v;
    for (int f = 0; f < tiles::kFaceCount; ++f)
      for (int k = 0; k < 4; ++k) *uv++ = VertexEntry<2>(model.uvs[f][k][0], model.uvs[f][k][1]);
  }
}

void Vorn_3DTiledMap::ReBuildLayerTiles(int LayerIndex) {
  // The grid is layer 0: its index list follows the masks (RebuildGroundIndices).
  if (LayerIndex == 0) return;
  const auto* blocks = LayerTileIndexDict.find(LayerIndex);
  if (!blocks) return;
  const int s = GetSubMeshIndex(LayerName(LayerIndex));
  if (s < 0) throw RuntimeError("Vorn_3DTiledMap.ReBuildLayerTiles: layer " + std::to_string(LayerIndex) + " has no submesh");
  CheckTables("ReBuildLayerTiles");
  RefreshLayerWall(LayerIndex);
  CleanVIndex(s);

  const std::vector<int>& masks = LayerTileMaskArray.at(LayerIndex);
  const std::vector<WallInfo>& walls = LayerTileWallArray.at(LayerIndex);
  const tiles::TileModel& init = InitTileModel.at(tiles::LayerDirection(LayerIndex));
  IndexArray& indices = VIndexArray.at(s);
  const double y = tiles::LayerBaseY(LayerIndex);

  for (const auto& [tileIndex, where] : *blocks) {
    const std::int64_t v = where[0];
    const auto i = static_cast<std::size_t>(tileIndex);
    const WallInfo& wall = walls[i];
    const int mask = masks[i];
    // Faces with a neighbour on their side are hidden; a trimmed block shows its walls.
    const int faces = mask == MASK_TRIMMED ? 4 : tiles::kFaceCount;
    for (int f = 0; f < faces; ++f) {
      if (wall[f] != 0) continue;
      const std::int64_t first = v + 4 * f;
      indices.insert(indices.end(), {first, first + 1, first + 2, first + 3});
    }
    // Full blocks are regenerated from the model and melted into their neighbours; ramps
    // and trimmed blocks keep their vertices. Negative layers do not melt.
    if (mask != MASK_BLOCK) continue;
    tiles::TileModel model = init;
    tiles::QuadList quads = InitTileVIndexList;
    if (LayerIndex > 0) {
      tiles::CheckComboTileVertex(LayerIndex, model.vertices, model.normals, quads, wall[0], wall[1], wall[2], wall[3],
                                  TileSize);
    }
    const auto [x, z] = TileOrigin(tileIndex % Cows, tileIndex / Cows);
    WriteBlock(s, v, model, x, y, z);
  }
}

void Vorn_3DTiledMap::TrimTile(int LayerIndex, std::int64_t tileX, std::int64_t tileZ) {
  const TileRef t = ResolveTile("TrimTile", tileX, tileZ);
  const auto* blocks = LayerTileIndexDict.find(LayerIndex);
  const BlockIndex* where = blocks ? blocks->find(t.index) : nullptr;
  if (!where) {
    throw KeyError("Vorn_3DTiledMap.TrimTile: layer " + std::to_string(LayerIndex) + " has no block at tile (" +
                   std::to_string(t.tileX) + ", " + std::to_string(t.tileZ) + ")");
  }
  const int s = GetSubMeshIndex(LayerName(LayerIndex));
  // The walls start from the model: a melt or a ramp written before does not carry
  // into the trimmed block. Their upper corners then rise to the block's full height.
  const int d = tiles::LayerDirection(LayerIndex);
  const tiles::TileModel& model = InitTileModel.at(d);
  const auto [x, z] = TileOrigin(t.tileX, t.tileZ);
  const double y = tiles::LayerBaseY(LayerIndex);
  Vec3Array& positions = VertexArray_Positon.at(s);
  Vec3Array& normals = VertexArray_Normal.at(s);
  const std::int64_t v = (*where)[0];
  if (v < 0 || static_cast<std::size_t>(v) + tiles::kVertsPerBlock > positions.size()) {
    throw RuntimeError("Vorn_3DTiledMap.TrimTile: the block's vertices lie outside its layer's submesh");
  }
  for (int f = 0; f < 4; ++f) {
    for (int k = 0; k < 4; ++k) {
      const Vector3& p = model.vertices[f][k];
      const double lift = k >= 2 ? 0.2 * d : 0.0;
      const Vector3& n = model.normals[f][k >= 2 ? 3 - k : k];
      positions[static_cast<std::size_t>(v + 4 * f + k)] = VertexEntry<3>(x + p.x, y + p.y + lift, z + p.z);
      normals[static_cast<std::size_t>(v + 4 * f + k)] = VertexEntry<3>(n.x, n.y, n.z);
    }
  }
  LayerTileMaskArray.at(LayerIndex)[static_cast<std::size_t>(t.index)] = MASK_TRIMMED;
}

void Vorn_3DTiledMap::RebuildGroundIndices() {
  CheckTables("RebuildGroundIndices");
  CleanVIndex(0);
  IndexArray& indices = VIndexArray.at(0);
  const std::vector<int>& masks = LayerTileMaskArray.at(0);
  const std::int64_t stride = static_cast<std::int64_t>(Cows) + 1;
  // Sized once for every tile, then cut to the tiles that stand on the grid.
  indices.resize(static_cast<std::size_t>(Rows) * static_cast<std::size_t>(Cows) * 4);
  std::int64_t* out = indices.data();
  for (int row = 0; row < Rows; ++row) {
    const int* rowMasks = masks.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(Cows);
    for (int cow = 0; cow < Cows; ++cow) {
      if (!rowMasks[cow]) continue;
      const std::int64_t vIndex = row * stride + cow;
      out[0] = vIndex, out[1] = vIndex + 1, out[2] = vIndex + stride + 1, out[3] = vIndex + stride;
      out += 4;
    }
  }
  indices.resize(static_cast<std::size_t>(out - indices.data()));
}

int Vorn_3DTiledMap::EnsureLayer(int layerIndex) {
  const std::string name = LayerName(layerIndex);
  int s = GetSubMeshIndex(name);
  if (LayerDict.contains(layerIndex)) {
    if (s < 0) throw RuntimeError("Vorn_3DTiledMap: layer " + std::to_string(layerIndex) + " has no submesh");
    return s;
  }
  // A layer that was emptied before left its submesh behind, empty: it is reused, so
  // that no submesh number changes.
  if (s < 0) {
    s = CreateSubMesh(name);
    SetSubMeshShapeType(s, glc::QUADS);
    VertexDescArray.set(s, glc::T2F_N3F_V3F);
    if (const unsigned* fx = SubMeshFX.find(0)) SubMeshFX.set(s, *fx);
    for (const auto& [key, texID] : TiledMapTextureDict) SetSubMeshDynamicTextureID(s, texID, key);
    for (TextureInfo& rec : TextureArray.at(s)) rec.density = TiledMapTextureScale;
  }
  const std::size_t n = TileCount();
  LayerDict.set(layerIndex, std::vector<int>(n, -1));
  LayerTileMaskArray.set(layerIndex, std::vector<int>(n, MASK_NONE));
  LayerTileIndexDict.set(layerIndex, {});
  return s;
}

void Vorn_3DTiledMap::DropLayer(int layerIndex) {
  LayerDict.discard(layerIndex);
  LayerTileIndexDict.discard(layerIndex);
  LayerTileMaskArray.discard(layerIndex);
  LayerTileWallArray.discard(layerIndex);
  LayerTileSlopeDict.discard(layerIndex);
  const int s = GetSubMeshIndex(LayerName(layerIndex));
  if (s < 0) return;
  VertexArray_Positon.at(s).clear();
  VertexArray_Normal.at(s).clear();
  VertexArray_UV.at(s).clear();
  VIndexArray.at(s).clear();
  // The buffers of an empty submesh would keep drawing the last blocks.
  VVBOArray.discard(s);
  IVBOArray.discard(s);
}

void Vorn_3DTiledMap::AppendBlock(int layer, const TileRef& t, const tiles::TileModel& model) {
  const int s = GetSubMeshIndex(LayerName(layer));
  Vec3Array& positions = VertexArray_Positon.at(s);
  const auto v = static_cast<std::int64_t>(positions.size());
  const auto q = static_cast<std::int64_t>(VIndexArray.at(s).size());
  positions.resize(positions.size() + tiles::kVertsPerBlock);
  VertexArray_Normal.at(s).resize(positions.size());
  VertexArray_UV.at(s).resize(positions.size());
  const auto [x, z] = TileOrigin(t.tileX, t.tileZ);
  WriteBlock(s, v, model, x, tiles::LayerBaseY(layer), z, true);
  LayerTileIndexDict.at(layer).set(t.index, {v, q});
}

void Vorn_3DTiledMap::EraseBlockVertices(int layer, std::int64_t tileIndex) {
  // The layer's last block moves into the hole, so vertex ranges stay packed.
  auto& blocks = LayerTileIndexDict.at(layer);
  const std::int64_t v = blocks.at(tileIndex)[0];
  const int s = GetSubMeshIndex(LayerName(layer));
  Vec3Array& positions = VertexArray_Positon.at(s);
  Vec3Array& normals = VertexArray_Normal.at(s);
  Vec2Array& uvs = VertexArray_UV.at(s);
  const auto last = static_cast<std::int64_t>(positions.size()) - tiles::kVertsPerBlock;
  // A script may have changed the submesh's arrays: nothing moves unless they still
  // hold the block where the table says.
  if (last < 0 || v < 0 || v > last || normals.size() != positions.size() || uvs.size() != positions.size()) {
    throw RuntimeError("Vorn_3DTiledMap: the vertices of layer " + std::to_string(layer) +
                       " no longer match its blocks");
  }
  if (v != last) {
    for (auto& [other, where] : blocks) {
      if (where[0] != last) continue;
      std::copy_n(positions.begin() + last, tiles::kVertsPerBlock, positions.begin() + v);
      std::copy_n(normals.begin() + last, tiles::kVertsPerBlock, normals.begin() + v);
      std::copy_n(uvs.begin() + last, tiles::kVertsPerBlock, uvs.begin() + v);
      where[0] = v;
      break;
    }
  }
  positions.resize(static_cast<std::size_t>(last));
  normals.resize(static_cast<std::size_t>(last));
  uvs.resize(static_cast<std::size_t>(last));
  blocks.erase(tileIndex);
}

}  // namespace vorn
