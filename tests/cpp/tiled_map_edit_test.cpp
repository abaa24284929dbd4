// The tile map's tables and geometry through a scripted sequence of edits.
#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "console_capture.h"
#include "core/errors.h"
#include "landscape/tiled_map.h"

namespace vorn {
namespace {

using Map = Vorn_3DTiledMap;

std::shared_ptr<Map> NewMap(int rows = 6, int cows = 6) {
  auto map = MakeNode<Map>();
  map->CreateTiledMap(rows, cows, 3.0);
  return map;
}

// Everything an edit may change, in a form that compares with ==.
struct Tables {
  std::vector<std::pair<int, std::vector<int>>> layers, masks;
  std::vector<std::pair<int, std::vector<std::pair<std::int64_t, Map::BlockIndex>>>> blocks;
  std::vector<std::pair<int, std::vector<Map::WallInfo>>> walls;
  IndexArray ground;
  bool operator==(const Tables&) const = default;
};

Tables Snapshot(const Map& m) {
  Tables t;
  for (const auto& [k, v] : m.LayerDict) t.layers.emplace_back(k, v);
  for (const auto& [k, v] : m.LayerTileMaskArray) t.masks.emplace_back(k, v);
  for (const auto& [k, v] : m.LayerTileIndexDict) t.blocks.emplace_back(k, std::vector(v.begin(), v.end()));
  for (const auto& [k, v] : m.LayerTileWallArray) t.walls.emplace_back(k, v);
  t.ground = m.VIndexArray.at(0);
  return t;
}

// Copies: the tables' storage moves when layers come and go.
Vec3Array Positions(const Map& m, int layer) {
  return m.VertexArray_Positon.at(m.GetSubMeshIndex("layer_" + std::to_string(layer)));
}
Map::BlockIndex Block(const Map& m, int layer, std::int64_t tile) { return m.LayerTileIndexDict.at(layer).at(tile); }

int Mask(const Map& m, int layer, int x, int z) { return m.GetTileMask(layer, x, z); }
std::size_t Quads(const Map& m, int layer) {
  return m.VIndexArray.at(m.GetSubMeshIndex("layer_" + std::to_string(layer))).size() / 4;
}

TEST(TiledMap, CreationTablesAndMasks) {
  auto m = NewMap(3, 4);  // type, tile size 1 whatever is asked and layer 0 alone: test_tiled_map.py
  EXPECT_EQ(m->LayerDict.at(0), std::vector<int>(12, 0));
  EXPECT_EQ(m->LayerTileMaskArray.at(0), std::vector<int>(12, 1));
  EXPECT_EQ(m->TileWaterHeightArray, std::vector<int>(12, 999));
  EXPECT_EQ(m->InitTileVIndexList[8], (std::array<int, 4>{32, 33, 34, 35}));
  EXPECT_EQ(m->VIndexArray.at(0).size(), 12u * 4);
  for (const auto& [x, z] : std::vector<std::pair<int, int>>{{-1, 0}, {0, -1}, {4, 0}, {0, 3}})
    EXPECT_EQ(Mask(*m, 0, x, z), 0) << x << "," << z;
  EXPECT_EQ(Mask(*m, 0, 3, 2), 1);
  EXPECT_EQ(Mask(*m, 5, 0, 0), 0) << "a layer that does not exist";
}

TEST(TiledMap, RaiseRaiseLowerLowerRestoresEverything) {
  auto m = NewMap();
  const Tables untouched = Snapshot(*m);
  const std::size_t submeshes = m->SubMeshList.size();

  // Raise: layer 1 appears, the ground quad leaves, a lone block shows nine faces.
  m->UpTile(2, 3);
  EXPECT_EQ(m->LayerDict.keys(), (std::vector<int>{0, 1}));
  EXPECT_EQ(Mask(*m, 0, 2, 3), 0);
  EXPECT_EQ(Mask(*m, 1, 2, 3), 1);
  EXPECT_EQ(m->LayerDict.at(0)[3 * 6 + 2], -1);
  EXPECT_EQ(m->LayerDict.at(1)[3 * 6 + 2], 0);
  EXPECT_EQ(m->VIndexArray.at(0).size(), 35u * 4);
  EXPECT_EQ(Quads(*m, 1), 9u);
  EXPECT_EQ(m->LayerTileIndexDict.at(1).at(20), (Map::BlockIndex{0, 0}));
  // Tile (2, 3) begins at (-1, 0); its top is at 1.0, inset by 0.2.
  const auto top = Positions(*m, 1)[4 * Map::TILE_FACE_TOP];
  EXPECT_NEAR(top[0], -0.8, 1e-12);
  EXPECT_DOUBLE_EQ(top[1], 1.0);
  EXPECT_NEAR(top[2], 0.2, 1e-12);

  // Raise again: layer 2, the block below trimmed to its four walls at full height.
  m->UpTile(2, 3);
  EXPECT_EQ(Mask(*m, 1, 2, 3), 2);
  EXPECT_EQ(Mask(*m, 2, 2, 3), 1);
  EXPECT_EQ(Quads(*m, 1), 4u);
  EXPECT_EQ(Quads(*m, 2), 9u);
  EXPECT_DOUBLE_EQ(Positions(*m, 1)[2][1], 1.0) << "trimmed wall reaches the block's top";
  EXPECT_EQ(m->GetTileHeight(2, 3), 2);

  // Lower: the top block goes, the one below is whole again; then back to the grid.
  m->DownTile(2, 3);
  EXPECT_EQ(Mask(*m, 1, 2, 3), 1);
  EXPECT_FALSE(m->LayerDict.contains(2));
  EXPECT_EQ(Quads(*m, 1), 9u);
  EXPECT_DOUBLE_EQ(Positions(*m, 1)[2][1], 0.8);
  m->DownTile(2, 3);
  EXPECT_EQ(Snapshot(*m), untouched);
  EXPECT_EQ(m->SubMeshList.size(), submeshes + 2) << "emptied layers keep their submeshes";

  // A layer that comes back reuses its submesh.
  const int layer1 = m->GetSubMeshIndex("layer_1");
  m->UpTile(2, 3);
  EXPECT_EQ(m->GetSubMeshIndex("layer_1"), layer1);
  EXPECT_EQ(m->SubMeshList.size(), submeshes + 2);

  // The mirror: lowering an untouched tile hangs a flipped block on layer -1.
  auto n = NewMap();
  n->DownTile(1, 1);
  EXPECT_EQ(Mask(*n, -1, 1, 1), 1);
  const Vec3Array& normals = n->VertexArray_Normal.at(n->GetSubMeshIndex("layer_-1"));
  EXPECT_EQ(normals[0], VertexEntry<3>(0.0, 0.0, 1.0));
  n->DownTile(1, 1);
  EXPECT_EQ(Mask(*n, -1, 1, 1), 2);
  n->UpTile(1, 1);
  n->UpTile(1, 1);
  EXPECT_EQ(Snapshot(*n), untouched);
}

TEST(TiledMap, NeighboursMeltCornersDoNot) {
  auto m = NewMap();
  m->UpTile(1, 1);
  m->UpTile(2, 1);
  // Side by side: their shared walls and bevels vanish and the tops meet at x = 2 - 3.
  EXPECT_EQ(m->GetTileWall(1, 1, 1), (Map::WallInfo{0, 1, 0, 0, 0, 1, 0, 0, 0}));
  EXPECT_EQ(m->GetTileWall(1, 2, 1), (Map::WallInfo{0, 0, 0, 1, 0, 0, 0, 1, 0}));
  EXPECT_EQ(Quads(*m, 1), 14u);
  EXPECT_DOUBLE_EQ(Positions(*m, 1)[Block(*m, 1, 1 * 6 + 1)[0] + 4 * Map::TILE_FACE_TOP + Map::TILE_FACE_VERTEX_RIGHTBOTTOM][0], -1.0);

  // A corner neighbour hides nothing.
  m->UpTile(3, 2);
  EXPECT_EQ(m->GetTileWall(1, 3, 2), (Map::WallInfo{}));
  EXPECT_EQ(Quads(*m, 1), 23u);

  // Blocks on negative layers keep their bevels but still hide shared faces.
  auto n = NewMap();
  n->DownTile(1, 1);
  n->DownTile(2, 1);
  EXPECT_EQ(Quads(*n, -1), 14u);
  EXPECT_DOUBLE_EQ(Positions(*n, -1)[Block(*n, -1, 1 * 6 + 1)[0] + 4 * Map::TILE_FACE_TOP + 1][0], -3.0 + 2.2);

  // At the map's edge the outer wall stays.
  auto e = NewMap();
  e->UpTile(0, 0);
  EXPECT_EQ(Quads(*e, 1), 9u);
}

TEST(TiledMap, RampsJoinTwoLevels) {
  auto m = NewMap();
  m->UpTile(3, 2);
  const Tables raised = Snapshot(*m);
  // Toward a neighbour one level up: a ramp on layer 1, low on the far side.
  EXPECT_TRUE(m->SlopeTile(2, 2, 1, 0));
  EXPECT_EQ(Mask(*m, 1, 2, 2), 3);
  EXPECT_EQ(Mask(*m, 0, 2, 2), 0);
  const Map::BlockIndex ramp = Block(*m, 1, 2 * 6 + 2);
  const Vec3Array p = Positions(*m, 1);
  const auto top = [&](int slot) { return p[ramp[0] + 4 * Map::TILE_FACE_TOP + slot]; };
  EXPECT_EQ(top(Map::TILE_FACE_VERTEX_LEFTBOTTOM), VertexEntry<3>(-1.0, 0.0, -0.8));
  EXPECT_DOUBLE_EQ(top(Map::TILE_FACE_VERTEX_RIGHTBOTTOM)[1], 1.0);
  // The neighbour melts into the ramp's side on the right branch only.
  EXPECT_EQ(m->GetTileWall(1, 3, 2)[3], 3);

  // A second ramp, a neighbour two levels away, or a level neighbour: nothing.
  const Tables sloped = Snapshot(*m);
  EXPECT_FALSE(m->SlopeTile(2, 2, 0, 1));
  m->UpTile(3, 2);
  const Tables twoUp = Snapshot(*m);
  EXPECT_FALSE(m->SlopeTile(4, 2, -1, 0));
  EXPECT_EQ(Snapshot(*m), twoUp);
  m->DownTile(3, 2);
  EXPECT_EQ(Snapshot(*m), sloped);

  // A ramp under a raised tile is trimmed, and comes back as a ramp.
  const Vec3Array before(p.begin() + ramp[0], p.begin() + ramp[0] + 36);
  m->UpTile(2, 2);
  EXPECT_EQ(Mask(*m, 1, 2, 2), 2);
  m->DownTile(2, 2);
  EXPECT_EQ(Mask(*m, 1, 2, 2), 3);
  const Map::BlockIndex back = Block(*m, 1, 2 * 6 + 2);
  const Vec3Array after = Positions(*m, 1);
  EXPECT_EQ(Vec3Array(after.begin() + back[0], after.begin() + back[0] + 36), before);

  // Undo of the ramp is a lowering.
  m->DownTile(2, 2);
  EXPECT_EQ(Snapshot(*m), raised);

  // Below the grid a ramp hangs toward a lower neighbour; MakeSlope builds one only.
  auto n = NewMap();
  n->DownTile(1, 2);
  n->DownTile(3, 2);
  n->MakeSlope(2, 2);
  EXPECT_EQ(Mask(*n, -1, 2, 2), 3);
  EXPECT_EQ(n->LayerTileSlopeDict.at(-1).at(2 * 6 + 2), (std::array<int, 2>{-1, 0}));
}

TEST(TiledMap, BadTilesChangeNothing) {
  auto m = NewMap(3, 4);
  const Tables untouched = Snapshot(*m);
  EXPECT_THROW(m->UpTile(0, 3), IndexError);
  EXPECT_THROW(m->DownTile(100, 100), IndexError);
  EXPECT_THROW(m->SlopeTile(0, 0, 1, 1), ValueError);
  EXPECT_EQ(Snapshot(*m), untouched);
  // A negative index wraps as in a sequence: (-1, 0) is the last tile.
  m->UpTile(-1, 0);
  EXPECT_EQ(Mask(*m, 1, 3, 2), 1);
  // A tile that no layer holds.
  m->LayerDict.at(1)[11] = -1;
  EXPECT_THROW(m->UpTile(3, 2), ValueError);
}

TEST(TiledMap, RebuildIsDeferredUnlessAsked) {
  auto m = NewMap();
  m->UpTile(1, 1);
  const int s = m->GetSubMeshIndex("layer_1");
  EXPECT_EQ(m->VVBOArray.find(s), nullptr);
  m->UpTile(4, 4, true);
  EXPECT_NE(m->VVBOArray.find(s), nullptr);
}

TEST(TiledMap, WallWalkTracesTileElevenEleven) {
  auto m = NewMap(12, 12);
  ConsoleCapture console;
  m->UpTile(0, 0);
  EXPECT_EQ(console.lines(), std::vector<std::string>{"11"});
}

}  // namespace
}  // namespace vorn
