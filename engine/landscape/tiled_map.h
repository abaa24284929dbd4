#pragma once
// Vorn_3DTiledMap: a plain grid (layer 0) that an editor raises, lowers and slopes tile
// by tile. Every other layer is one submesh "layer_<n>" of bevelled blocks, one layer
// per unit of height. Implemented by concern:
//   tiled_map_model.cpp    the block model, melt, ramps, blend brush (no node, no GL)
//   tiled_map.cpp          creation, tables, masks, materials on submeshes, blend strokes
//   tiled_map_geometry.cpp walls, layer rebuilds, trimming, the grid's index list
//   tiled_map_edit.cpp     UpTile, DownTile, SlopeTile, DropLayer0Tile
//   tiled_map_water.cpp    tile heights, the water walks, FillWater, the shore search
//   tiled_map_gl.cpp       material and blend-map uploads
//
// Every tile is held by exactly one layer in LayerDict (its level); blocks under a
// raised tile (or above a lowered one) stay in their layers trimmed to their walls
// (mask 2). Each block keeps its 36 vertices in its layer's submesh; edits change
// positions, normals and the index list.
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/ordered_map.h"
#include "landscape/plane.h"
#include "landscape/tiled_map_model.h"

namespace vorn {

class Vorn_3DTiledMap : public Vorn_3DPlane {
 public:
  static constexpr int TILEDMAP_TEXTURE_PLAIN = 0;
  static constexpr int TILEDMAP_TEXTURE_SLOPE = 1;
  static constexpr int TILEDMAP_TEXTURE_HOLLOW = 2;
  static constexpr int TILEDMAP_TEXTURE_BOTTOM = 3;
  static constexpr int TILEDMAP_TEXTURE_SIZE = 4;
  static constexpr int TILE_FACE_BASE_FRONT = 0, TILE_FACE_BASE_RIGHT = 1, TILE_FACE_BASE_BACK = 2,
                       TILE_FACE_BASE_LEFT = 3;
  static constexpr int TILE_FACE_MIDDLE_FRONT = 4, TILE_FACE_MIDDLE_RIGHT = 5, TILE_FACE_MIDDLE_BACK = 6,
                       TILE_FACE_MIDDLE_LEFT = 7;
  static constexpr int TILE_FACE_TOP = 8;
  static constexpr int TILE_FACE_VERTEX_LEFTBOTTOM = 0, TILE_FACE_VERTEX_RIGHTBOTTOM = 1,
                       TILE_FACE_VERTEX_RIGHTTOP = 2, TILE_FACE_VERTEX_LEFTTOP = 3;
  // Masks of LayerTileMaskArray.
  static constexpr int MASK_NONE = 0, MASK_BLOCK = 1, MASK_TRIMMED = 2, MASK_SLOPE = 3;
  // The blend map's key in TiledMapTextureDict and its channel on every submesh.
  static constexpr int BLEND_TEXTURE_KEY = 4;
  // Custom textures follow the five files of the material set.
  static constexpr int CUSTOM_TEXTURE_BASE = 5;
  // GetTileHeight of a tile no layer holds.
  static constexpr int NO_HEIGHT = 999;

  // Where a tile's block begins in its layer's submesh: [currVertexIndex, currQuadIndex].
  using BlockIndex = std::array<std::int64_t, 2>;
  using WallInfo = std::array<int, 9>;
  // A water tile record: tile x, height (a layer number), tile z.
  using WaterTile = std::array<std::int64_t, 3>;
  using TileXZ = std::array<std::int64_t, 2>;

  explicit Vorn_3DTiledMap(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  // ---- Creation and tables (tiled_map.cpp) ----
  // The grid (tile size fixed at 1.0: `tilesize` has no effect on a tiled map) and the
  // tables: layer 0 holds every tile with mask 1.
  void CreateTiledMap(int rows = 20, int cows = 20, double tilesize = 1.0);
  // The tile's mask on a layer; 0 outside the grid or on a layer that does not exist.
  int GetTileMask(int layerIndex, std::int64_t tileX, std::int64_t tileZ) const;
  using Vorn_3DPlane::GenTexCoords;
  void GenTexCoords(int submeshIndex, bool RebuildVBO) override;
  // Stores the density and gives it to every texture of every submesh.
  void SetTextureDensity(double density);
  // Every submesh gets the whole material set, each texture on the channel of its key.
  void ReBuildLayerMaterial();
  // BuildVBO, then ReBuildLayerMaterial.
  void ReBuildTiledMap();
  // Paints channel `index` (0 red, 1 green, 2 blue) of the blend map with a round soft
  // brush of `radius` tiles at tile coordinates (x, z) and uploads the rows it changed.
  // RuntimeError before CreateBlendTeture; ValueError for another channel.
  void SetBlendData(int index, double x, double z, double radius = 0.5, double add = 128);

  // ---- Materials and blend map (tiled_map_gl.cpp) ----
  // Loads plain, slope, bottom, water and blend (".jpg", else ".png") from materialDir
  // below the resource root. A missing file prints "TiledMap Texture <name> Lost !",
  // one that does not decode "TiledMap Texture <name> Unreadable !"; the rest load.
  void SetTileMapMaterials(const std::string& materialDir);
  // One more texture at key index + 5. A missing file prints
  // "TiledMap Custom Texture <name> Lost !"; ValueError for one that does not decode.
  void LoadCustomTexture(const std::string& imageFileName, int index = 0);
  // A black size by size RGB blend map at key 4. ValueError for a size below 1 or past
  // the driver's largest texture.
  void CreateBlendTeture(int size = 128);

  // ---- Geometry (tiled_map_geometry.cpp) ----
  void RefreshLayerWall(int layerIndex);
  WallInfo GetTileWall(int layerIndex, std::int64_t tileX, std::int64_t tileZ) const;
  // Regenerates the index list and the positions of full blocks of a layer. Layer 0
  // (the grid) is left alone.
  void ReBuildLayerTiles(int LayerIndex);
  // Gives the block under a raised tile its full height, walls only (mask 2).
  void TrimTile(int LayerIndex, std::int64_t tileX, std::int64_t tileZ);

  // ---- Editing (tiled_map_edit.cpp) ----
  void UpTile(std::int64_t tileX, std::int64_t tileZ, bool ReBuild = false);
  void DownTile(std::int64_t tileX, std::int64_t tileZ, bool ReBuild = false);
  // A ramp on the tile toward a neighbour one level higher (built on the layer above)
  // or, at or below the grid, one level lower (hanging on the layer below). Nothing
  // otherwise. True when a ramp was built.
  bool SlopeTile(std::int64_t tileX, std::int64_t tileZ, int moveX, int moveZ, bool ReBuild = false);
  void MakeSlope(std::int64_t tileX, std::int64_t tileZ);
  void DropLayer0Tile(std::int64_t tileX, std::int64_t tileZ, bool hollowMode = false);

  // ---- Water and shore (tiled_map_water.cpp) ----
  int GetTileHeight(std::int64_t tileX, std::int64_t tileZ) const;
  double GetTileDistance(double tileX1, double tileZ1, double tileX2, double tileZ2) const;
  double GetWaterTileAvgHeight(std::int64_t tileX, std::int64_t tileZ) const;
  std::vector<WaterTile> ResearchWaterTiles(int height, std::int64_t tileX, std::int64_t tileZ) const;
  std::vector<WaterTile> RecursionResearchWaterTiles(int height, std::int64_t tileX, std::int64_t tileZ, int moveX,
                                                     int moveZ) const;
  void FillWater(std::int64_t tileX, std::int64_t tileZ);
  TileXZ ResearchTileNearestLand(int height, std::int64_t tileX, std::int64_t tileZ) const;
  TileXZ RecursionResearchTileNearestLand(int height, std::int64_t tileX, std::int64_t tileZ, std::int64_t nextTileX,
                                          std::int64_t nextileZ, int moveX, int moveZ) const;
  std::int64_t RecursionResearchTileNearestLandLength(std::int64_t length, int height, std::int64_t tileX,
                                                      std::int64_t tileZ, int moveX, int moveZ) const;
  void GetWaterTileNearestLand(std::int64_t /*tileX*/, std::int64_t /*tileZ*/) const {}

  // ---- Fields ----
  std::optional<std::string> CurrTexDir;
  OrderedMap<int, std::vector<int>> LayerDict;
  OrderedMap<int, OrderedMap<std::int64_t, BlockIndex>> LayerTileIndexDict;
  OrderedMap<int, std::vector<int>> LayerTileMaskArray;
  OrderedMap<int, std::vector<WallInfo>> LayerTileWallArray;
  // The direction each ramp leans toward, by layer and tile, so that a ramp that was
  // trimmed under a raised tile comes back as a ramp when the tile is lowered again.
  OrderedMap<int, OrderedMap<std::int64_t, std::array<int, 2>>> LayerTileSlopeDict;
  OrderedMap<int, unsigned> TiledMapTextureDict;
  OrderedMap<int, tiles::TileModel> InitTileModel;  // InitTileVertexList/NormalList/UVList by direction
  tiles::QuadList InitTileVIndexList{};
  std::vector<int> TileWaterHeightArray;
  std::vector<int> TileRoadTypeArray;
  double TiledMapTextureScale = 1.0;
  // The blend map: size by size RGB pixels row by row (empty before CreateBlendTeture).
  std::vector<std::uint8_t> BlendTexturePixelArray;
  int BlendTextureSize = 0;
  std::optional<unsigned> BlendTextureID;

  // ---- Internals shared by the files of the class ----
  // The tile's index by the sequence rule over Rows * Cows tiles (negative wraps, past
  // the end IndexError), and its column and row.
  struct TileRef {
    std::int64_t index;
    std::int64_t tileX;
    std::int64_t tileZ;
  };
  TileRef ResolveTile(const char* operation, std::int64_t tileX, std::int64_t tileZ) const;
  // The grid's index list from the masks of layer 0, row by row.
  void RebuildGroundIndices();
  // World position of a tile's origin on the grid.
  std::pair<double, double> TileOrigin(std::int64_t tileX, std::int64_t tileZ) const noexcept {
    return {-Cows * TileSize * 0.5 + static_cast<double>(tileX) * TileSize,
            -Rows * TileSize * 0.5 + static_cast<double>(tileZ) * TileSize};
  }
  // Writes a block's 36 positions and normals (and UVs when given) at vertex v of s.
  void WriteBlock(int s, std::int64_t v, const tiles::TileModel& model, double x, double y, double z,
                  bool withUV = false);
  // The submesh of a layer, made (or a former one of that name reused) with its tables.
  int EnsureLayer(int layerIndex);
  // Removes a layer's tables and empties its submesh (the submesh keeps its number).
  void DropLayer(int layerIndex);
  // Sends rows first..last of the blend map to its texture (tiled_map_gl.cpp).
  void UploadBlendRows(int first, int last);

 private:
  std::size_t TileCount() const noexcept {
    if (Rows <= 0 || Cows <= 0) return 0;
    return static_cast<std::size_t>(Rows) * static_cast<std::size_t>(Cows);
  }
  // RuntimeError unless the tables were made by CreateTiledMap for the grid's present
  // size: a script may change Rows or Cows, or rebuild the grid, under them.
  void CheckTables(const char* operation) const;
  int HighestLayer(std::int64_t tileIndex) const;
  int LowestLayer(std::int64_t tileIndex) const;
  // Shared by UpTile, DownTile and SlopeTile: moves a tile one level by `step` (+1 or
  // -1), with a ramp toward (moveX, moveZ) when `ramp` is set.
  void MoveTile(const char* operation, std::int64_t tileX, std::int64_t tileZ, int step,
                std::optional<std::array<int, 2>> ramp, bool ReBuild);
  void RaiseBlock(const TileRef& t, int from, int to, std::optional<std::array<int, 2>> ramp);
  void RemoveBlock(const TileRef& t, int from, int to);
  void AppendBlock(int layer, const TileRef& t, const tiles::TileModel& model);
  void EraseBlockVertices(int layer, std::int64_t tileIndex);
  // The tile height of the water walks: the index wraps or fails as a sequence does.
  int HeightAtIndex(std::int64_t tileIndex) const;
  std::vector<WaterTile> StraightWaterWalk(int height, std::int64_t tileX, std::int64_t tileZ, int moveX,
                                           int moveZ) const;
  TileXZ StraightLandWalk(int height, std::int64_t nextX, std::int64_t nextZ, int moveX, int moveZ) const;
  std::int64_t StraightLandLength(std::int64_t length, int height, std::int64_t tileX, std::int64_t tileZ, int moveX,
                                  int moveZ) const;
  // Buffers of FillWater, kept between fills.
  struct WaterScratch {
    Vec3Array positions, normals;
    Vec2Array uvs;
    IndexArray indices;
  } waterScratch_;
  // The most steps a walk takes before it must have left the map.
  std::int64_t WalkLimit() const noexcept { return 2 * static_cast<std::int64_t>(TileCount()) + 2; }
};

}  // namespace vorn
