#pragma once
// The block model of a tile map, with no GL and no node: the nine faces of a bevelled
// block, the melt of a block into its neighbours, ramps, and the round blend brush.
// Everything here is plain data in, plain data out, so it is tested and benchmarked
// on its own.
#include <array>
#include <cstdint>
#include <vector>

#include "core/vector3.h"

namespace vorn::tiles {

// Faces of a block, in the order of the TILE_FACE_ constants: four base walls (front,
// right, back, left), the four bevels above them, the top.
inline constexpr int kFaceCount = 9;
inline constexpr int kVertsPerBlock = kFaceCount * 4;
enum Face : int {
  BASE_FRONT, BASE_RIGHT, BASE_BACK, BASE_LEFT,
  MIDDLE_FRONT, MIDDLE_RIGHT, MIDDLE_BACK, MIDDLE_LEFT,
  TOP
};
// Slots of a vertex inside a face.
enum Slot : int { LEFTBOTTOM, RIGHTBOTTOM, RIGHTTOP, LEFTTOP };

using UV = std::array<double, 2>;
template <class T>
using FaceList = std::array<std::array<T, 4>, kFaceCount>;
using QuadList = std::array<std::array<int, 4>, kFaceCount>;

// One block: per face, four positions (local to the tile's origin), normals and UVs.
struct TileModel {
  FaceList<Vector3> vertices;
  FaceList<Vector3> normals;
  FaceList<UV> uvs;
};

// +1 for layers at or above the grid, -1 below it.
constexpr int LayerDirection(int layerIndex) noexcept { return layerIndex >= 0 ? 1 : -1; }

// The base height of a block of `layerIndex`: a block of layer L > 0 stands between
// L - 1 and L, one of layer -L hangs from -L + 1 down to -L.
constexpr double LayerBaseY(int layerIndex) noexcept {
  return layerIndex >= 0 ? layerIndex - 1.0 : layerIndex + 1.0;
}

// The block of a layer's direction (d = LayerDirection): walls up to 0.8 * d, the top
// at 1.0 * d, inset by 0.2 * d (negative layers flare outward).
TileModel GetInitTileVertexDataModel(int layerIndex, double tileSize = 1.0);

// The nine plain index quads [4f, 4f + 1, 4f + 2, 4f + 3].
QuadList InitTileVIndexList();

// Melts a block of a layer above 0 into its neighbours by their masks (1 full, 2
// trimmed, 3 ramp; 0 none), in the order front, right, back, left. Changes the lists
// given.
void CheckComboTileVertex(int LayerIndex, FaceList<Vector3>& TileVertexList, FaceList<Vector3>& TileNormalList,
                          QuadList& TileVIndexList, int wall_front, int wall_right, int wall_back, int wall_left,
                          double tileSize = 1.0);

// A ramp block of a layer: the model with the side away from (moveX, moveZ) brought
// down to the block's base, so that its top runs from the base on that side to the
// full height beside the neighbour. Every copy of a corner moves alike, so the block
// stays closed. (moveX, moveZ) is one of (+-1, 0), (0, +-1).
TileModel RampModel(int layerIndex, int moveX, int moveZ, double tileSize = 1.0);

// Rows of a blend map that a brush stroke changed: [first, last], or first > last.
struct RowSpan {
  int first = 1;
  int last = 0;
  bool empty() const noexcept { return first > last; }
};

// The round soft brush of a blend map: channel `channel` of the pixels within `sr`
// of (px, py) gains `add` scaled from full at the centre to nothing at the rim,
// clamped to 0..255 (a negative `add` erases). Pixels outside the map are skipped.
// `pixels` holds width * height RGB pixels, row by row.
RowSpan PaintBlendBrush(std::vector<std::uint8_t>& pixels, int width, int height, int channel, std::int64_t px,
                        std::int64_t py, std::int64_t sr, double add);

}  // namespace vorn::tiles
