// The tile block model with no node: faces, melt, ramps and the blend brush.
#include "landscape/tiled_map_model.h"

#include <gtest/gtest.h>

#include <map>
#include <tuple>

namespace vorn::tiles {
namespace {

using Key = std::tuple<long, long, long>;
Key key(const Vector3& v) { return {std::lround(v.x * 1000), std::lround(v.y * 1000), std::lround(v.z * 1000)}; }

// Every edge of a block but those of its open base ring is shared by exactly two
// faces, unless it collapsed to a point: the block is closed.
void ExpectClosed(const TileModel& m, const char* what) {
  std::map<std::pair<Key, Key>, int> edges;
  for (int f = 0; f < kFaceCount; ++f) {
    for (int k = 0; k < 4; ++k) {
      Key a = key(m.vertices[f][k]), b = key(m.vertices[f][(k + 1) % 4]);
      if (a == b) continue;
      if (b < a) std::swap(a, b);
      ++edges[{a, b}];
    }
  }
  for (const auto& [edge, count] : edges) {
    const bool baseRing = std::get<1>(edge.first) == 0 && std::get<1>(edge.second) == 0;
    if (!baseRing) {
      EXPECT_EQ(count % 2, 0) << what;
    }
  }
}

TEST(TileModel, BlockOfEachDirection) {
  const TileModel up = GetInitTileVertexDataModel(1);
  // A raised block narrows to its top at 1.0; a hanging one flares out at -1.0.
  EXPECT_EQ(key(up.vertices[TOP][LEFTBOTTOM]), key(Vector3(0.2, 1.0, 0.2)));
  EXPECT_EQ(key(up.vertices[TOP][RIGHTTOP]), key(Vector3(0.8, 1.0, 0.8)));
  EXPECT_EQ(key(up.vertices[BASE_RIGHT][RIGHTTOP]), key(Vector3(1.0, 0.8, 1.0)));
  EXPECT_EQ(key(up.normals[BASE_FRONT][RIGHTTOP]), key(Vector3(0, 1, -1)));
  EXPECT_EQ(key(up.normals[MIDDLE_LEFT][LEFTBOTTOM]), key(Vector3(-1, 1, 0)));
  EXPECT_EQ(up.uvs[MIDDLE_BACK][LEFTTOP], (UV{0.8, 0.2}));

  const TileModel down = GetInitTileVertexDataModel(-2);
  EXPECT_EQ(key(down.vertices[TOP][LEFTBOTTOM]), key(Vector3(-0.2, -1.0, -0.2)));
  EXPECT_EQ(key(down.normals[BASE_FRONT][LEFTBOTTOM]), key(Vector3(0, 0, 1)));
  EXPECT_EQ(key(down.normals[BASE_RIGHT][LEFTTOP]), key(Vector3(-1, 1, 0)));
  ExpectClosed(up, "raised block");
  ExpectClosed(down, "hanging block");

  const QuadList q = InitTileVIndexList();
  EXPECT_EQ(q[0], (std::array<int, 4>{0, 1, 2, 3}));
  EXPECT_EQ(q[8], (std::array<int, 4>{32, 33, 34, 35}));
}

TEST(TileModel, MeltByWallValue) {
  struct Case {
    const char* name;
    std::array<int, 4> walls;  // front, right, back, left
    Face face;
    Slot slot;
    Vector3 expected;
    int reversed;  // face whose quad is reversed, or -1
  };
  const Case cases[] = {
      {"front full: top reaches z 0", {1, 0, 0, 0}, TOP, LEFTBOTTOM, {0, 1, 0}, -1},
      {"front trimmed: rim drops to base", {2, 0, 0, 0}, TOP, RIGHTBOTTOM, {1, 0, 0}, MIDDLE_RIGHT},
      {"front ramp: nothing", {3, 0, 0, 0}, TOP, LEFTBOTTOM, {0.2, 1, 0.2}, -1},
      {"right full", {0, 1, 0, 0}, TOP, RIGHTTOP, {1, 1, 1}, -1},
      {"right ramp lifts the top to the tile size", {0, 3, 0, 0}, TOP, RIGHTBOTTOM, {1, 1, 0}, -1},
      {"back trimmed", {0, 0, 2, 0}, MIDDLE_LEFT, LEFTBOTTOM, {0, 0, 1}, MIDDLE_LEFT},
      {"left trimmed", {0, 0, 0, 2}, BASE_FRONT, LEFTTOP, {0, 0, 0}, MIDDLE_FRONT},
      {"left ramp", {0, 0, 0, 3}, TOP, LEFTTOP, {0, 1, 1}, -1},
  };
  for (const Case& c : cases) {
    TileModel m = GetInitTileVertexDataModel(1);
    QuadList q = InitTileVIndexList();
    CheckComboTileVertex(1, m.vertices, m.normals, q, c.walls[0], c.walls[1], c.walls[2], c.walls[3]);
    EXPECT_EQ(key(m.vertices[c.face][c.slot]), key(c.expected)) << c.name;
    for (int f = 0; f < kFaceCount; ++f) {
      const int b = 4 * f;
      const std::array<int, 4> want = f == c.reversed ? std::array<int, 4>{b + 3, b + 2, b + 1, b}
                                                      : std::array<int, 4>{b, b + 1, b + 2, b + 3};
      EXPECT_EQ(q[f], want) << c.name << " face " << f;
    }
  }
}

TEST(TileModel, RampsAreClosedAndRiseTowardTheNeighbour) {
  const std::array<std::array<int, 2>, 4> moves{{{-1, 0}, {1, 0}, {0, -1}, {0, 1}}};
  for (const int layer : {1, -1}) {
    for (const auto& [mx, mz] : moves) {
      const TileModel m = RampModel(layer, mx, mz);
      ExpectClosed(m, "ramp");
      // The top's corners beside the neighbour keep the full height; the far ones sit
      // on the base at the tile's edge.
      for (int k = 0; k < 4; ++k) {
        const Vector3& v = m.vertices[TOP][k];
        const double along = mx != 0 ? v.x : v.z;
        const int move = mx != 0 ? mx : mz;
        const bool nearSide = move > 0 ? along > 0.5 : along < 0.5;
        EXPECT_DOUBLE_EQ(v.y, nearSide ? 1.0 * LayerDirection(layer) : 0.0) << layer << " " << mx << " " << mz;
        if (!nearSide) {
          EXPECT_DOUBLE_EQ(along, move > 0 ? 0.0 : 1.0);
        }
      }
    }
  }
}

TEST(BlendBrush, SoftRoundClampedAndInsideTheMap) {
  std::vector<std::uint8_t> px(9 * 7 * 3, 0);
  // Full at the centre, nothing at the rim, only the chosen channel.
  RowSpan rows = PaintBlendBrush(px, 9, 7, 1, 4, 3, 3, 90.0);
  EXPECT_EQ(px[(3 * 9 + 4) * 3 + 1], 90);
  EXPECT_EQ(px[(3 * 9 + 4) * 3 + 0], 0);
  EXPECT_EQ(px[(3 * 9 + 4 + 3) * 3 + 1], 0) << "the rim";
  EXPECT_EQ(px[(3 * 9 + 5) * 3 + 1], 60);
  EXPECT_EQ(rows.first, 1);
  EXPECT_EQ(rows.last, 5);

  // Strokes add and clamp at 255; a negative amount erases down to 0, never wrapping.
  for (int i = 0; i < 4; ++i) PaintBlendBrush(px, 9, 7, 1, 4, 3, 3, 90.0);
  EXPECT_EQ(px[(3 * 9 + 4) * 3 + 1], 255);
  PaintBlendBrush(px, 9, 7, 1, 4, 3, 3, -1000.0);
  EXPECT_EQ(px[(3 * 9 + 4) * 3 + 1], 0);

  // At the corner only pixels inside the map change; the row before stays untouched.
  std::vector<std::uint8_t> corner(9 * 7 * 3, 0);
  rows = PaintBlendBrush(corner, 9, 7, 0, 8, 6, 3, 200.0);
  EXPECT_EQ(rows.first, 4);
  EXPECT_EQ(rows.last, 6);
  EXPECT_EQ(corner[(6 * 9 + 8) * 3], 200);
  int painted = 0;
  for (std::size_t i = 0; i < corner.size(); ++i) painted += corner[i] != 0;
  EXPECT_EQ(painted, 9) << "a quarter disc of radius 3 without its rim";
  EXPECT_TRUE(PaintBlendBrush(corner, 9, 7, 0, 30, 30, 3, 200.0).empty());
}

}  // namespace
}  // namespace vorn::tiles
