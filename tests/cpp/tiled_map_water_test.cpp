// Water fill and the shore search of the tile map.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <vector>

#include "core/errors.h"
#include "landscape/tiled_map.h"

namespace vorn {
namespace {

using Map = Vorn_3DTiledMap;
using XZ = std::pair<std::int64_t, std::int64_t>;

// A map whose tiles are raised where `plan` (rows of text, '#' raised) says.
std::shared_ptr<Map> Plan(const std::vector<std::string>& plan) {
  auto map = MakeNode<Map>();
  map->CreateTiledMap(static_cast<int>(plan.size()), static_cast<int>(plan[0].size()));
  for (std::size_t z = 0; z < plan.size(); ++z)
    for (std::size_t x = 0; x < plan[z].size(); ++x)
      if (plan[z][x] == '#') map->UpTile(static_cast<std::int64_t>(x), static_cast<std::int64_t>(z));
  return map;
}

std::multiset<XZ> Flooded(const std::vector<Map::WaterTile>& records) {
  std::multiset<XZ> out;
  for (const auto& r : records) out.insert({r[0], r[2]});
  return out;
}

const std::vector<std::string> kBasin = {
    "#######",
    "#######",
    "##...##",
    "##...##",
    "##...##",
    "#######",
    "#######",
};

TEST(TiledMapWater, FillsABasinAndRefillsInPlace) {
  auto m = Plan(kBasin);
  m->FillWater(3, 3);
  const int w = m->GetSubMeshIndex("water");
  ASSERT_GE(w, 0);
  // The start, four straight steps and four diagonal steps: the nine basin tiles.
  EXPECT_EQ(m->VertexArray_Positon.at(w).size(), 9u * 4);
  EXPECT_EQ(m->VIndexArray.at(w).size(), 9u * 4);
  EXPECT_EQ(m->SubMeshAlphaMode.at(w), glc::BLEND);
  for (const auto& p : m->VertexArray_Positon.at(w)) {
    EXPECT_DOUBLE_EQ(p[1], 0.5);
    EXPECT_GE(p[0], -1.5);
    EXPECT_LE(p[0], 1.5);
  }
  // The middle of the basin lies a full layer below its neighbours' average.
  EXPECT_DOUBLE_EQ(m->VertexArray_Normal.at(w)[0][1], m->GetWaterTileAvgHeight(3, 3) - 1);
  EXPECT_EQ(m->TileWaterHeightArray[3 * 7 + 3], 0);
  EXPECT_EQ(m->TileWaterHeightArray[0], 999);

  // A tile of the bank raised onto a new layer after the fill: the second fill reuses
  // the water submesh, and the new layer survives and can be edited.
  m->UpTile(1, 1);
  const int layer2 = m->GetSubMeshIndex("layer_2");
  ASSERT_GT(layer2, w);
  m->UpTile(2, 2);  // shrinks the basin by one corner
  m->FillWater(3, 3);
  EXPECT_EQ(m->GetSubMeshIndex("water"), w);
  EXPECT_EQ(m->SubMeshList.size(), static_cast<std::size_t>(layer2) + 1);
  EXPECT_EQ(m->VertexArray_Positon.at(w).size(), 8u * 4);
  EXPECT_EQ(m->VIndexArray.at(layer2).size(), 9u * 4);
  m->DownTile(1, 1);
  EXPECT_FALSE(m->LayerDict.contains(2));
}

TEST(TiledMapWater, WalksAreStraightLinesAndStaircases) {
  // A cove up the right side needs a turn backward from the start at (1, 4): it stays
  // dry, while the straight walk along the row floods to the bank.
  auto m = Plan({
      "#######",
      "#####.#",
      "#####.#",
      "#####.#",
      "#.....#",
      "#######",
      "#######",
  });
  const auto records = m->ResearchWaterTiles(0, 1, 4);
  const std::multiset<XZ> want{{1, 4}, {2, 4}, {3, 4}, {4, 4}, {5, 4}};
  EXPECT_EQ(Flooded(records), want);

  // The staircase order: the diagonal's tiles, then straight walks from its far end back.
  auto open = Plan({
      "#####",
      "#...#",
      "#...#",
      "#...#",
      "#####",
  });
  const auto stairs = open->RecursionResearchWaterTiles(0, 1, 1, 1, 1);
  const std::vector<Map::WaterTile> expected{{2, 0, 2}, {3, 0, 3}, {3, 0, 2}, {2, 0, 3}};
  EXPECT_EQ(stairs, expected);
  // Two starts beside each other flood different shapes, duplicates kept.
  EXPECT_EQ(open->ResearchWaterTiles(0, 2, 2).size(), 9u);
  EXPECT_EQ(open->ResearchWaterTiles(0, 1, 1).size(), 1u + 4 + 4);
}

TEST(TiledMapWater, ABasinOnTheLastRowFailsAndChangesNothing) {
  auto m = Plan({
      "#####",
      "#####",
      "##.##",
      "##.##",
      "##.##",
  });
  const auto layers = m->LayerDict.keys();
  const std::size_t submeshes = m->SubMeshList.size();
  EXPECT_THROW(m->FillWater(2, 3), IndexError);
  EXPECT_EQ(m->GetSubMeshIndex("water"), -1);
  EXPECT_EQ(m->SubMeshList.size(), submeshes);
  EXPECT_EQ(m->LayerDict.keys(), layers);
  EXPECT_EQ(m->TileWaterHeightArray, std::vector<int>(25, 999));
  // A tile no layer holds floods nothing.
  m->LayerDict.at(0)[12] = -1;
  EXPECT_EQ(m->GetTileHeight(2, 2), 999);
  m->FillWater(2, 2);
  EXPECT_EQ(m->GetSubMeshIndex("water"), -1);
}

TEST(TiledMapWater, ShoreSearchTiesAndLengths) {
  auto m = Plan({
      "#######",
      "#.....#",
      "#.....#",
      "#.....#",
      "#.....#",
      "#.....#",
      "#######",
  });
  // From (2, 3) land lies 2 to the left and 4 to the right: the answer is one step past
  // the nearest land tile.
  EXPECT_EQ(m->ResearchTileNearestLand(0, 2, 3), (Map::TileXZ{-1, 3}));
  // From the centre every side is 3 away: the left, listed first, wins the tie.
  EXPECT_EQ(m->ResearchTileNearestLand(0, 3, 3), (Map::TileXZ{-1, 3}));
  EXPECT_DOUBLE_EQ(m->GetTileDistance(0, 0, 3, 4), 5.0);
  // Straight and diagonal step counts to the bank.
  EXPECT_EQ(m->RecursionResearchTileNearestLandLength(0, 0, 2, 3, 1, 0), 3);
  EXPECT_EQ(m->RecursionResearchTileNearestLandLength(0, 0, 2, 3, -1, 0), 1);
  EXPECT_EQ(m->RecursionResearchTileNearestLandLength(0, 0, 2, 3, 1, 1), 2);
  // A diagonal walk takes a side walk's nearer land.
  const auto diag = m->RecursionResearchTileNearestLand(0, 2, 3, 3, 4, 1, 1);
  EXPECT_EQ(diag, (Map::TileXZ{3, 7}));
}

}  // namespace
}  // namespace vorn
