// The block model of a tile map: faces, melt, ramps and the blend brush.
#include "landscape/tiled_map_model.h"

#include <algorithm>
#include <cmath>

namespace vorn::tiles {
namespace {

// The twelve corners of a block: base ring V1..V4, middle ring, top ring.
using Corners = std::array<Vector3, 12>;
constexpr int kBase = 0, kMiddle = 4, kTop = 8;

// Corners of each face, slot 0 to 3, as indices into Corners.
constexpr std::array<std::array<int, 4>, kFaceCount> kFaceCorners{{
    {0, 1, 5, 4}, {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7},
    {4, 5, 9, 8}, {5, 6, 10, 9}, {6, 7, 11, 10}, {7, 4, 8, 11},
    {8, 9, 10, 11},
}};

Corners ModelCorners(int d, double size) {
  const double base = 0.8 * d, head = 0.2 * d, top = base + head;
  return {Vector3(0, 0, 0),        Vector3(size, 0, 0),        Vector3(size, 0, size),        Vector3(0, 0, size),
          Vector3(0, base, 0),     Vector3(size, base, 0),     Vector3(size, base, size),     Vector3(0, base, size),
          Vector3(head, top, head), Vector3(size - head, top, head), Vector3(size - head, top, size - head),
          Vector3(head, top, size - head)};
}

TileModel BuildModel(const Corners& c, int d) {
  TileModel m;
  for (int f = 0; f < kFaceCount; ++f)
    for (int s = 0; s < 4; ++s) m.vertices[f][s] = c[kFaceCorners[f][s]];

  // Walls lean their upper normals toward the bevel; bevels end on the top's normal.
  const double dd = d;
  const Vector3 up(0, 1, 0);
  const std::array<Vector3, 4> out{Vector3(0, 0, -dd), Vector3(dd, 0, 0), Vector3(0, 0, dd), Vector3(-dd, 0, 0)};
  for (int w = 0; w < 4; ++w) {
    const Vector3 lean(out[w].x, 1, out[w].z);
    m.normals[w] = {out[w], out[w], lean, lean};
    m.normals[4 + w] = {lean, lean, up, up};
  }
  m.normals[TOP] = {up, up, up, up};

  // The rim runs from the texture's outer frame to its inner square.
  const std::array<UV, 4> wall{{{0, 1}, {1, 1}, {1, 0}, {0, 0}}};
  for (int w = 0; w < 4; ++w) m.uvs[w] = wall;
  m.uvs[MIDDLE_FRONT] = {{{0, 1}, {1, 1}, {0.8, 0.8}, {0.2, 0.8}}};
  m.uvs[MIDDLE_RIGHT] = {{{1, 1}, {1, 0}, {0.8, 0.2}, {0.8, 0.8}}};
  m.uvs[MIDDLE_BACK] = {{{1, 0}, {0, 0}, {0.2, 0.2}, {0.8, 0.2}}};
  m.uvs[MIDDLE_LEFT] = {{{0, 0}, {0, 1}, {0.2, 0.8}, {0.2, 0.2}}};
  m.uvs[TOP] = {{{0.2, 0.8}, {0.8, 0.8}, {0.8, 0.2}, {0.2, 0.2}}};
  return m;
}

void SetXZ(FaceList<Vector3>& v, int face, int slot, double x, double z) {
  v[face][slot].x = x;
  v[face][slot].z = z;
}

void SetY(FaceList<Vector3>& v, std::initializer_list<std::pair<int, int>> at, double y) {
  for (const auto& [face, slot] : at) v[face][slot].y = y;
}

void Reverse(QuadList& q, int face) { q[face] = {4 * face + 3, 4 * face + 2, 4 * face + 1, 4 * face}; }

}  // namespace

TileModel GetInitTileVertexDataModel(int layerIndex, double tileSize) {
  const int d = LayerDirection(layerIndex);
  return BuildModel(ModelCorners(d, tileSize), d);
}

QuadList InitTileVIndexList() {
  QuadList q;
  for (int f = 0; f < kFaceCount; ++f) q[f] = {4 * f, 4 * f + 1, 4 * f + 2, 4 * f + 3};
  return q;
}

void CheckComboTileVertex(int /*LayerIndex*/, FaceList<Vector3>& v, FaceList<Vector3>& /*TileNormalList*/,
                          QuadList& q, int wall_front, int wall_right, int wall_back, int wall_left, double T) {
  // Beside a full or trimmed neighbour the top reaches the shared edge; beside a
  // trimmed one (a block stands on it) the rim drops to the base on that side.
  if (wall_front == 1 || wall_front == 2) {
    SetXZ(v, TOP, LEFTBOTTOM, 0, 0);
    SetXZ(v, TOP, RIGHTBOTTOM, T, 0);
    SetXZ(v, MIDDLE_RIGHT, LEFTTOP, T, 0);
    SetXZ(v, MIDDLE_LEFT, RIGHTTOP, 0, 0);
    if (wall_front == 2) {
      SetY(v, {{TOP, LEFTBOTTOM}, {TOP, RIGHTBOTTOM}, {MIDDLE_RIGHT, LEFTTOP}, {MIDDLE_RIGHT, LEFTBOTTOM},
               {BASE_RIGHT, LEFTTOP}, {MIDDLE_LEFT, RIGHTTOP}, {MIDDLE_LEFT, RIGHTBOTTOM}, {BASE_LEFT, RIGHTTOP}}, 0.0);
      Reverse(q, MIDDLE_RIGHT);
    }
  }
  // Front and back have no ramp branch (value 3): right and left do.
  if (wall_right >= 1 && wall_right <= 3) {
    SetXZ(v, TOP, RIGHTBOTTOM, T, 0);
    SetXZ(v, TOP, RIGHTTOP, T, T);
    SetXZ(v, MIDDLE_FRONT, RIGHTTOP, T, 0);
    SetXZ(v, MIDDLE_BACK, LEFTTOP, T, T);
    if (wall_right == 2) {
      SetY(v, {{TOP, RIGHTBOTTOM}, {TOP, RIGHTTOP}, {MIDDLE_FRONT, RIGHTTOP}, {MIDDLE_FRONT, RIGHTBOTTOM},
               {BASE_FRONT, RIGHTTOP}, {MIDDLE_BACK, LEFTTOP}, {MIDDLE_BACK, LEFTBOTTOM}, {BASE_BACK, LEFTTOP}}, 0.0);
      Reverse(q, MIDDLE_BACK);
    } else if (wall_right == 3) {
      SetY(v, {{TOP, RIGHTBOTTOM}, {TOP, RIGHTTOP}}, T);
    }
  }
  if (wall_back == 1 || wall_back == 2) {
    SetXZ(v, TOP, LEFTTOP, 0, T);
    SetXZ(v, TOP, RIGHTTOP, T, T);
    SetXZ(v, MIDDLE_RIGHT, RIGHTTOP, T, T);
    SetXZ(v, MIDDLE_LEFT, LEFTTOP, 0, T);
    if (wall_back == 2) {
      SetY(v, {{TOP, LEFTTOP}, {TOP, RIGHTTOP}, {MIDDLE_RIGHT, RIGHTTOP}, {MIDDLE_RIGHT, RIGHTBOTTOM},
               {BASE_RIGHT, RIGHTTOP}, {MIDDLE_LEFT, LEFTTOP}, {MIDDLE_LEFT, LEFTBOTTOM}, {BASE_LEFT, LEFTTOP}}, 0.0);
      Reverse(q, MIDDLE_LEFT);
    }
  }
  if (wall_left >= 1 && wall_left <= 3) {
    SetXZ(v, TOP, LEFTTOP, 0, T);
    SetXZ(v, MIDDLE_BACK, RIGHTTOP, 0, T);
    SetXZ(v, TOP, LEFTBOTTOM, 0, 0);
    SetXZ(v, MIDDLE_FRONT, LEFTTOP, 0, 0);
    if (wall_left == 2) {
      SetY(v, {{TOP, LEFTTOP}, {MIDDLE_BACK, RIGHTTOP}, {MIDDLE_BACK, RIGHTBOTTOM}, {BASE_BACK, RIGHTTOP},
               {TOP, LEFTBOTTOM}, {MIDDLE_FRONT, LEFTTOP}, {MIDDLE_FRONT, LEFTBOTTOM}, {BASE_FRONT, LEFTTOP}}, 0.0);
      Reverse(q, MIDDLE_FRONT);
    } else if (wall_left == 3) {
      SetY(v, {{TOP, LEFTTOP}, {TOP, LEFTBOTTOM}}, T);
    }
  }
}

TileModel RampModel(int layerIndex, int moveX, int moveZ, double tileSize) {
  const int d = LayerDirection(layerIndex);
  Corners c = ModelCorners(d, tileSize);
  // The low side is the one away from the neighbour: its middle and top corners come
  // down to the base, and its top corners move out to the tile's edge.
  for (int k = 0; k < 4; ++k) {
    const Vector3& base = c[kBase + k];
    const bool low = (moveX > 0 && base.x == 0) || (moveX < 0 && base.x == tileSize) ||
                     (moveZ > 0 && base.z == 0) || (moveZ < 0 && base.z == tileSize);
    if (!low) continue;
    c[kMiddle + k].y = 0.0;
    c[kTop + k].y = 0.0;
    if (moveX != 0) c[kTop + k].x = base.x;
    if (moveZ != 0) c[kTop + k].z = base.z;
  }
  return BuildModel(c, d);
}

RowSpan PaintBlendBrush(std::vector<std::uint8_t>& pixels, int width, int height, int channel, std::int64_t px,
                        std::int64_t py, std::int64_t sr, double add) {
  RowSpan rows;
  if (sr <= 0 || width <= 0 || height <= 0) return rows;
  // Only the part of the brush's square that lies inside the map is walked.
  const std::int64_t r0 = std::max(-sr, -py), r1 = std::min(sr - 1, std::int64_t{height} - 1 - py);
  const std::int64_t c0 = std::max(-sr, -px), c1 = std::min(sr - 1, std::int64_t{width} - 1 - px);
  const double inv = 1.0 / static_cast<double>(sr);
  for (std::int64_t r = r0; r <= r1; ++r) {
    const auto row = static_cast<std::size_t>(py + r);
    bool touched = false;
    for (std::int64_t c = c0; c <= c1; ++c) {
      const double grading = std::sqrt(static_cast<double>(r * r + c * c)) * inv;
      if (grading >= 1.0) continue;
      const std::size_t at = (row * static_cast<std::size_t>(width) + static_cast<std::size_t>(px + c)) * 3 +
                             static_cast<std::size_t>(channel);
      const double value = std::clamp(pixels[at] + add * (1.0 - grading), 0.0, 255.0);
      pixels[at] = static_cast<std::uint8_t>(std::lround(value));
      touched = true;
    }
    if (touched) {
      if (rows.empty()) rows.first = static_cast<int>(row);
      rows.last = static_cast<int>(row);
    }
  }
  return rows;
}

}  // namespace vorn::tiles
