// The tile map's creation, tables, materials on submeshes and blend strokes.
#include "landscape/tiled_map.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "core/errors.h"
#include "core/pyseq.h"

namespace vorn {

Vorn_3DTiledMap::Vorn_3DTiledMap(double x_, double y_, double z_, const Ptr& parent_)
    : Vorn_3DPlane(x_, y_, z_, parent_) {
  NodeType = "3DTiledMap";
}

void Vorn_3DTiledMap::CreateTiledMap(int rows, int cows, double /*tilesize*/) {
  // A tiled map's tiles are one world unit: block heights are in layers of 1.0.
  CreatePlane(rows, cows, 1.0, true);
  const std::size_t n = TileCount();
  LayerDict.set(0, std::vector<int>(n, 0));
  LayerTileMaskArray.set(0, std::vector<int>(n, MASK_BLOCK));
  TileWaterHeightArray.assign(n, NO_HEIGHT);
  TileRoadTypeArray.assign(n, 0);
  InitTileModel.set(1, tiles::GetInitTileVertexDataModel(1, TileSize));
  InitTileModel.set(-1, tiles::GetInitTileVertexDataModel(-1, TileSize));
  InitTileVIndexList = tiles::InitTileVIndexList();
}

int Vorn_3DTiledMap::GetTileMask(int layerIndex, std::int64_t tileX, std::int64_t tileZ) const {
  if (tileX < 0 || tileZ < 0 || tileX >= Cows || tileZ >= Rows) return MASK_NONE;
  const std::vector<int>* masks = LayerTileMaskArray.find(layerIndex);
  const auto i = static_cast<std::size_t>(tileZ * Cows + tileX);
  if (!masks || i >= masks->size()) return MASK_NONE;
  return (*masks)[i];
}

void Vorn_3DTiledMap::CheckTables(const char* operation) const {
  const std::string where = std::string("Vorn_3DTiledMap.") + operation;
  if (!LayerDict.contains(0) || !LayerTileMaskArray.contains(0)) {
    throw RuntimeError(where + ": the map has no layer 0 (call CreateTiledMap first)");
  }
  const std::size_t n = TileCount();
  const auto sized = [&](const auto& table) {
    for (const auto& [layer, values] : table) {
      if (values.size() != n) {
        throw RuntimeError(where + ": the tables of layer " + std::to_string(layer) +
                           " do not match a grid of " + std::to_string(Rows) + " by " + std::to_string(Cows) +
                           " tiles (call CreateTiledMap again)");
      }
    }
  };
  sized(LayerDict);
  sized(LayerTileMaskArray);
  for (const auto& [layer, blocks] : LayerTileIndexDict) {
    if (!LayerTileMaskArray.contains(layer)) throw RuntimeError(where + ": layer " + std::to_string(layer) + " has no masks");
    for (const auto& [tile, at] : blocks)
      if (tile < 0 || static_cast<std::size_t>(tile) >= n) throw RuntimeError(where + ": a block lies outside the grid");
  }
}

Vorn_3DTiledMap::TileRef Vorn_3DTiledMap::ResolveTile(const char* operation, std::int64_t tileX,
                                                      std::int64_t tileZ) const {
  CheckTables(operation);
  std::int64_t index = 0;
  if (__builtin_mul_overflow(tileZ, static_cast<std::int64_t>(Cows), &index) ||
      __builtin_add_overflow(index, tileX, &index)) {
    throw IndexError(std::string("Vorn_3DTiledMap.") + operation + ": tile index out of range");
  }
  const auto i = static_cast<std::int64_t>(
      py_index(index, TileCount(), (std::string("Vorn_3DTiledMap.") + operation + ": tile").c_str()));
  return {i, i % Cows, i / Cows};
}

void Vorn_3DTiledMap::GenTexCoords(int submeshIndex, bool RebuildVBO) {
  // Only the grid takes grid coordinates; a layer's blocks carry their own UVs.
  if (submeshIndex == 0) Vorn_3DPlane::GenTexCoords(submeshIndex, RebuildVBO);
}

void Vorn_3DTiledMap::SetTextureDensity(double density) {
  TiledMapTextureScale = density;
  for (auto& [s, records] : TextureArray)
    for (TextureInfo& rec : records) rec.density = density;
}

void Vorn_3DTiledMap::ReBuildLayerMaterial() {
  for (const int s : VertexArray_Positon.keys()) {
    if (auto* records = TextureArray.find(s)) records->clear();
    for (const auto& [key, texID] : TiledMapTextureDict) SetSubMeshDynamicTextureID(s, texID, key);
  }
  SetTextureDensity(TiledMapTextureScale);
}

void Vorn_3DTiledMap::ReBuildTiledMap() {
  BuildVBO();
  ReBuildLayerMaterial();
}

void Vorn_3DTiledMap::SetBlendData(int index, double x, double z, double radius, double add) {
  if (BlendTexturePixelArray.empty()) {
    throw RuntimeError("Vorn_3DTiledMap.SetBlendData: the map has no blend map (call CreateBlendTeture first)");
  }
  if (index < 0 || index > 2) {
    throw ValueError("Vorn_3DTiledMap.SetBlendData: index must be a channel 0, 1 or 2, not " + std::to_string(index));
  }
  if (Cows <= 0 || Rows <= 0) throw ZeroDivisionError("Vorn_3DTiledMap.SetBlendData: the map has no tiles");
  const int size = BlendTextureSize;
  // Tile coordinates to pixels; the brush's radius is in tiles.
  const double sx = x / (Cows + 1), sz = z / (Rows + 1);
  const double scale = static_cast<double>(size) / Cows;
  const double pxf = size * sx, pyf = size * sz, srf = scale * radius + 1.0;
  if (!std::isfinite(pxf) || !std::isfinite(pyf) || !std::isfinite(srf)) {
    throw ValueError("Vorn_3DTiledMap.SetBlendData: x, z and radius must be finite numbers");
  }
  // A point far off the map paints nothing; the clamp keeps the integers in range.
  constexpr double kFar = 1e12;
  const auto px = static_cast<std::int64_t>(std::clamp(pxf, -kFar, kFar));
  const auto py = static_cast<std::int64_t>(std::clamp(pyf, -kFar, kFar));
  const auto sr = static_cast<std::int64_t>(std::clamp(srf, -1.0, 1e9));
  const tiles::RowSpan rows = tiles::PaintBlendBrush(BlendTexturePixelArray, size, size, index, px, py, sr, add);
  if (!rows.empty()) UploadBlendRows(rows.first, rows.last);
}

}  // namespace vorn
