// The height grid: layout, normals, heights below a point, tile access, tile picking.
#include "landscape/plane.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "console_capture.h"
#include "core/errors.h"
#include "core/math_util.h"

namespace vorn {
namespace {

using Plane = Vorn_3DPlane;
using Tile = std::pair<std::int64_t, std::int64_t>;

// A scene that asks for a pick along a given ray and records selections.
class PickScene : public NodeScene {
 public:
  int GenNewGameNodeID() override { return ++lastId; }
  double Get3DTerrainY(double, double) override { return 0.0; }
  bool isCheckPickOnce() const override { return pickRequested; }
  std::pair<Vector3, Vector3> GetScree3DPointAndDir() override { return {rayPt, rayDir}; }
  void Select3DObject(const NodePtr& node) override { selected.push_back(node.get()); }
  NodePtr GetCurrDrawNode() const override { return drawNode; }

  int lastId = 0;
  bool pickRequested = true;
  Vector3 rayPt, rayDir;
  std::vector<const Vorn_3DGameNode*> selected;
  NodePtr drawNode;
};

// A vertical ray down onto world point (x, z).
std::pair<Vector3, Vector3> down_at(double x, double z) { return {Vector3(x, 50.0, z), Vector3(0.0, -1.0, 0.0)}; }

// Height of a tile's surface at fractions (u, v) of its edge, split along the V2-V3
// diagonal, from plane equations rather than a ray test.
double surface(const std::array<double, 4>& Y, double u, double v) {
  if (u + v <= 1.0) return Y[0] + u * (Y[1] - Y[0]) + v * (Y[2] - Y[0]);
  return Y[3] + (1.0 - u) * (Y[2] - Y[3]) + (1.0 - v) * (Y[1] - Y[3]);
}

TEST(Plane, GridOfTwoByTwoTilesIsNinePointsRowByRow) {
  auto plane = MakeNode<Plane>();
  EXPECT_EQ(plane->GetNodeType(), "3DPlane");
  plane->CreatePlane(2, 2, 2.0);

  EXPECT_EQ(plane->SubMeshList, std::vector<std::string>{"layer_0"});
  EXPECT_EQ(plane->SubMeshShapeType.at(0), glc::QUADS);
  EXPECT_EQ(plane->VertexDescArray.at(0), glc::N3F_V3F);
  const auto& p = plane->VertexArray_Positon.at(0);
  ASSERT_EQ(p.size(), 9u);
  for (int i = 0; i < 9; ++i) {
    EXPECT_EQ(p[i], VertexEntry<3>(-2.0 + 2.0 * (i % 3), 0.0, -2.0 + 2.0 * (i / 3))) << "point " << i;
    EXPECT_EQ(plane->VertexArray_Normal.at(0)[i], VertexEntry<3>(0.0, 1.0, 0.0));
  }
  EXPECT_EQ(plane->VIndexArray.at(0), (IndexArray{0, 1, 4, 3, 1, 2, 5, 4, 3, 4, 7, 6, 4, 5, 8, 7}));
  EXPECT_EQ(plane->HeightArray, std::vector<double>(9, 0.0));
  EXPECT_EQ(plane->SubMeshShapeCount.at(0), 16);
  EXPECT_EQ(plane->InterleaveSubMesh(0).size(), 9u * 6u);

  // Texture coordinates in tile units, given once; the layout gains them.
  plane->GenTexCoords(0);
  EXPECT_EQ(plane->VertexDescArray.at(0), glc::T2F_N3F_V3F);
  ASSERT_EQ(plane->VertexArray_UV.at(0).size(), 9u);
  EXPECT_EQ(plane->VertexArray_UV.at(0)[5], VertexEntry<2>(2.0, 1.0));
  plane->GenTexCoords(0, false);
  EXPECT_EQ(plane->VertexArray_UV.at(0).size(), 9u);

  // Made with texture coordinates, the grid can be interleaved at once.
  auto textured = MakeNode<Plane>();
  textured->CreatePlane(1, 3, 1.0, true);
  EXPECT_EQ(textured->VertexDescArray.at(0), glc::T2F_N3F_V3F);
  EXPECT_EQ(textured->InterleaveSubMesh(0).size(), 8u * 8u);
  EXPECT_THROW(textured->GenTexCoords(7), KeyError);
}

TEST(Plane, SlopedHeightsGiveNormalsFromTheirDifferences) {
  // y = 0.5 per column + 0.25 per row; the tile size does not scale the slope.
  std::vector<double> heights;
  for (int row = 0; row <= 2; ++row)
    for (int cow = 0; cow <= 3; ++cow) heights.push_back(0.5 * cow + 0.25 * row);
  auto plane = MakeNode<Plane>();
  plane->CreatePlane(2, 3, 4.0, false, heights);
  EXPECT_EQ(plane->HeightArray, heights);
  const double len = std::sqrt(0.5 * 0.5 + 1.0 + 0.25 * 0.25);
  const auto& normals = plane->VertexArray_Normal.at(0);
  const auto& positions = plane->VertexArray_Positon.at(0);
  for (int i = 0; i < 12; ++i) {
    const bool firstRowOrColumn = i < 4 || i % 4 == 0;
    const VertexEntry<3> expected =
        firstRowOrColumn ? VertexEntry<3>(0.0, 1.0, 0.0) : VertexEntry<3>(-0.5 / len, 1.0 / len, -0.25 / len);
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(normals[i][k], expected[k], 1e-12) << "point " << i;
    EXPECT_EQ(positions[i][1], heights[i]);
  }

  // Misuse is refused before anything changes.
  auto empty = MakeNode<Plane>();
  EXPECT_THROW(empty->CreatePlane(2, 2, 1.0, false, std::vector<double>(8, 0.0)), IndexError);
  EXPECT_THROW(empty->CreatePlane(-1, 2), ValueError);
  EXPECT_TRUE(empty->SubMeshList.empty());
  EXPECT_TRUE(empty->HeightArray.empty());
}

// A 4 by 3 plane with uneven heights, tile size 2, standing at (10, 5, -3).
Vorn_3DGameNode::Ptr bumpy_plane(std::shared_ptr<Plane>& plane) {
  std::vector<double> heights;
  for (int i = 0; i < 5 * 4; ++i) heights.push_back(std::sin(i * 1.7) * 2.0 + (i % 3) * 0.5);
  plane = MakeNode<Plane>(10, 5, -3);
  plane->CreatePlane(3, 4, 2.0, false, heights);
  plane->update(0.0);
  return plane;
}

TEST(Plane, CheckInHeightFollowsTheTileTriangles) {
  std::shared_ptr<Plane> plane;
  bumpy_plane(plane);
  // beginX = 10 - 4 = 6, endX = 14; beginZ = -3 - 3 = -6, endZ = 0.
  for (int tileZ = 0; tileZ < 3; ++tileZ) {
    for (int tileX = 0; tileX < 4; ++tileX) {
      const auto Y = plane->GetTileVertexY(tileX, tileZ);
      for (const auto& [u, v] : {std::pair{0.25, 0.25}, {0.8, 0.1}, {0.6, 0.7}, {0.1, 0.95}, {0.5, 0.5}, {0.0, 0.0}}) {
        const auto [inside, y] = plane->CheckInHeight(6.0 + 2.0 * (tileX + u), -6.0 + 2.0 * (tileZ + v));
        EXPECT_TRUE(inside);
        EXPECT_NEAR(y, surface(Y, u, v), 1e-9) << "tile " << tileX << "," << tileZ << " at " << u << "," << v;
      }
    }
  }
  // The node's world y plays no part; a point outside gives (false, 0.0).
  for (const auto& [x, z] : {std::pair{5.99, -3.0}, {14.01, -3.0}, {10.0, -6.01}, {10.0, 0.01}}) {
    EXPECT_EQ(plane->CheckInHeight(x, z), std::make_pair(false, 0.0)) << x << "," << z;
  }

  // FastMode: the average around the tile, printed with two decimals.
  auto flat = MakeNode<Plane>();
  std::vector<double> ramp;
  for (int row = 0; row <= 6; ++row)
    for (int cow = 0; cow <= 6; ++cow) ramp.push_back(0.5 * cow + row);
  flat->CreatePlane(6, 6, 1.0, false, ramp);
  flat->update(0.0);
  ConsoleCapture console;
  EXPECT_EQ(flat->CheckInHeight(0.2, 0.7, true), std::make_pair(true, 0.5 * 3 + 3.0));
  EXPECT_EQ(console.lines(), std::vector<std::string>{"Tile X:3  Z:3 Y:4.50"});
}

TEST(Plane, CheckInHeightAtTheFarEdgesReadsBeyondTheLastTile) {
  std::shared_ptr<Plane> plane;
  bumpy_plane(plane);
  const auto& H = plane->HeightArray;
  // On endX the column is Cows; its V1 and V3 are still the last grid column, so the
  // height runs along that edge of the grid.
  for (int row = 0; row < 2; ++row) {
    const auto [inside, y] = plane->CheckInHeight(14.0, -6.0 + 2.0 * row + 0.5);
    EXPECT_TRUE(inside);
    EXPECT_NEAR(y, H[row * 5 + 4] + 0.25 * (H[row * 5 + 9] - H[row * 5 + 4]), 1e-9) << "row " << row;
  }
  // In the last row V4 lies past the grid, and on endZ V3 does.
  EXPECT_THROW(plane->CheckInHeight(14.0, -1.0), IndexError);
  EXPECT_THROW(plane->CheckInHeight(9.0, 0.0), IndexError);

  auto degenerate = MakeNode<Plane>();
  degenerate->CreatePlane(2, 2, 0.0);
  EXPECT_THROW(degenerate->CheckInHeight(0.0, 0.0), ZeroDivisionError);
  EXPECT_THROW(plane->CheckInHeight(std::nan(""), -3.0), ValueError);
}

TEST(Plane, TileHeightsAndCorners) {
  auto plane = MakeNode<Plane>(10, 5, 0);
  plane->CreatePlane(2, 3, 2.0);  // 4 by 3 points; beginX = -3, beginZ = -2
  plane->SetRY(90.0);
  plane->update(0.0);

  // A sequence of three leaves V4; a number writes all four.
  plane->SetTileVertexY(1, 1, std::vector<double>{1.0, 2.0, 3.0});
  EXPECT_EQ(plane->GetTileVertexY(1, 1), (std::array<double, 4>{1.0, 2.0, 3.0, 0.0}));
  EXPECT_EQ(plane->HeightArray[5], 1.0);
  EXPECT_EQ(plane->HeightArray[9], 3.0);
  plane->SetTileY(0, 0, 7.0);
  EXPECT_EQ(plane->GetTileVertexY(0, 0), (std::array<double, 4>{7.0, 7.0, 7.0, 7.0}));
  EXPECT_EQ(plane->GetTileVertexIndexList(1, 1), (std::array<std::int64_t, 4>{5, 6, 10, 9}));

  // Misuse changes nothing: no height is written before all corners are known.
  const auto before = plane->HeightArray;
  EXPECT_THROW(plane->SetTileVertexY(2, 1, std::vector<double>(5, 1.0)), ValueError);
  EXPECT_THROW(plane->SetTileVertexY(0, 0, std::vector<double>{}), ValueError);
  EXPECT_THROW(plane->SetTileVertexY(2, 2, 9.0), IndexError);  // V3 and V4 lie past the grid
  EXPECT_EQ(plane->HeightArray, before);

  // World offsets: x, z around the node's world position, y the height alone.
  const auto corners = plane->GetTileVertex(1, 1);
  EXPECT_EQ(corners[0], (Plane::Corner{9.0, 7.0, 0.0}));  // V1 is also a corner of tile (0, 0)
  EXPECT_EQ(corners[3], (Plane::Corner{11.0, 0.0, 2.0}));
  // Through the world matrix: turned 90 degrees about y, a local (x, h, z) lands on
  // (10 + z, 5 + h, -x).
  const auto world = plane->GetTileWorldVertex(1, 1);
  const double expected[4][3] = {{10.0, 12.0, 1.0}, {10.0, 7.0, -1.0}, {12.0, 8.0, 1.0}, {12.0, 5.0, -1.0}};
  for (int k = 0; k < 4; ++k) {
    EXPECT_NEAR(world[k].x, expected[k][0], 1e-12) << k;
    EXPECT_NEAR(world[k].y, expected[k][1], 1e-12) << k;
    EXPECT_NEAR(world[k].z, expected[k][2], 1e-12) << k;
  }
}

TEST(Plane, TileAverageWrapsAtTheEdgesAndFailsBeyond) {
  // Heights 2^i on a 3 by 3 tile grid (16 points) show which points were summed.
  std::vector<double> heights;
  for (int i = 0; i < 16; ++i) heights.push_back(std::ldexp(1.0, i));
  auto plane = MakeNode<Plane>();
  plane->CreatePlane(3, 3, 1.0, false, heights);

  EXPECT_EQ(plane->GetTileAverageY(1, 2, 0), heights[9]);
  // Around tile (1, 1): points 0-2, 4-6, 8-10.
  EXPECT_EQ(plane->GetTileAverageY(1, 1, 1), (1 + 2 + 4 + 16 + 32 + 64 + 256 + 512 + 1024) / 9.0);
  // Around tile (0, 0) the points -5, -4, -3 and -1 wrap to 11, 12, 13 and 15.
  EXPECT_EQ(plane->GetTileAverageY(0, 0, 1), (2048 + 4096 + 8192 + 32768 + 1 + 2 + 8 + 16 + 32) / 9.0);
  // Points past the end are an error, not a wrap.
  EXPECT_THROW(plane->GetTileAverageY(3, 3, 1), IndexError);
  EXPECT_THROW(plane->GetTileAverageY(0, 0, 4), IndexError);  // starts at point -20
  EXPECT_THROW(plane->GetTileAverageY(0, INT64_MAX, 1), IndexError);
}

// Every tile in row order, both triangles, through GetTileWorldVertex.
std::optional<Tile> walk_all(const Plane& plane, const Vector3& Pt, const Vector3& Dir, Vector3* position) {
  for (std::int64_t tz = 0; tz < plane.Rows; ++tz) {
    for (std::int64_t tx = 0; tx < plane.Cows; ++tx) {
      const auto c = plane.GetTileWorldVertex(tx, tz);
      auto r = IntersectTriangle(Pt, Dir, c[0], c[1], c[2]);
      if (!r.first) r = IntersectTriangle(Pt, Dir, c[1], c[3], c[2]);
      if (r.first) {
        *position = r.second;
        return Tile{tx, tz};
      }
    }
  }
  return std::nullopt;
}

TEST(Plane, PickTileGivesTheFirstTileInRowOrder) {
  auto plane = MakeNode<Plane>(1, 0, 0);
  plane->CreatePlane(2, 2, 2.0);  // x from -1 to 3, z from -2 to 2
  plane->update(0.0);
  auto [Pt, Dir] = down_at(1.5, -1.5);
  auto hit = plane->PickTile(Pt, Dir);
  ASSERT_TRUE(hit);
  EXPECT_EQ(std::pair(hit->tileX, hit->tileZ), Tile(1, 0));
  EXPECT_DOUBLE_EQ(hit->position.x, 1.5);
  EXPECT_NEAR(hit->position.y, 0.0, 1e-12);
  // The line is unbounded: a ray pointing away from the plane still meets it.
  EXPECT_TRUE(plane->PickTile(Vector3(1.5, 50.0, 1.0), Vector3(0.0, 1.0, 0.0)));
  EXPECT_FALSE(plane->PickTile(Vector3(3.5, 50.0, 1.0), Vector3(0.0, -1.0, 0.0)));
  EXPECT_FALSE(plane->PickTile(Vector3(0.0, 1.0, 0.0), Vector3(1.0, 0.0, 0.0)));  // parallel

  // A raised far row: a slanted line meets the near row's ground and the far row's
  // wall; row order, not distance, decides.
  plane->SetTileVertexY(0, 1, std::vector<double>{0.0, 0.0, 8.0, 8.0});
  plane->SetTileVertexY(1, 1, std::vector<double>{0.0, 0.0, 8.0, 8.0});
  hit = plane->PickTile(Vector3(0.5, 4.0, 3.0), Vector3(0.0, -1.0, -1.0));
  ASSERT_TRUE(hit);
  EXPECT_EQ(hit->tileZ, 0);

  // A height array cut short is read tile by tile: a hit before the gap comes back,
  // a miss fails at the first missing height.
  plane->HeightArray.resize(5);
  std::tie(Pt, Dir) = down_at(0.5, -1.5);
  EXPECT_EQ(plane->PickTile(Pt, Dir)->tileX, 0);
  std::tie(Pt, Dir) = down_at(10.0, 10.0);
  EXPECT_THROW(plane->PickTile(Pt, Dir), IndexError);
}

TEST(Plane, PickTileAgreesWithTestingEveryTile) {
  std::mt19937 rng(7);
  std::uniform_real_distribution<double> unit(-1.0, 1.0);
  std::shared_ptr<Plane> plane;
  bumpy_plane(plane);
  int hits = 0;
  // Turned, scaled and moved planes, rays from all sides, many of them grazing.
  for (int round = 0; round < 4; ++round) {
    plane->SetRXYZ(30.0 * round, 75.0 * round, -20.0 * round);
    plane->SetSXYZ(1.0 + round * 0.5, round == 3 ? -0.5 : 1.0, 0.8);
    plane->update(0.0);
    for (int i = 0; i < 800; ++i) {
      // Every other ray runs exactly through a grid point or the middle of a tile edge,
      // where a hit sits on the boundary between tiles.
      Vector3 target(10.0 + 8.0 * unit(rng), 5.0 + 3.0 * unit(rng), -3.0 + 8.0 * unit(rng));
      if (i % 4 < 2) {
        const auto c = plane->GetTileWorldVertex(i % 4, (i / 4) % 3);
        target = i % 8 < 4 ? c[(i / 8) % 4] : (c[0] + c[(i / 8) % 3 + 1]) * 0.5;
      }
      const Vector3 Pt(target.x + 30.0 * unit(rng), target.y + 30.0 * unit(rng), target.z + 30.0 * unit(rng));
      const Vector3 Dir = (target - Pt) * (i % 2 ? 1.0 : 0.01);
      Vector3 expectedPosition;
      const auto expected = walk_all(*plane, Pt, Dir, &expectedPosition);
      const auto hit = plane->PickTile(Pt, Dir);
      ASSERT_EQ(bool(hit), bool(expected)) << "round " << round << " ray " << i;
      if (!hit) continue;
      ++hits;
      EXPECT_EQ(std::pair(hit->tileX, hit->tileZ), *expected) << "round " << round << " ray " << i;
      EXPECT_EQ(hit->position.x, expectedPosition.x);
      EXPECT_EQ(hit->position.z, expectedPosition.z);
    }
  }
  EXPECT_GT(hits, 1200);
}

TEST(Plane, PickEventInClickAndDragMode) {
  auto scene = std::make_shared<PickScene>();
  auto plane = MakeNode<Plane>();
  plane->OnLoad(scene);
  plane->CreatePlane(2, 2, 2.0);  // tiles of 2 from -2 to 2
  plane->update(0.0);
  std::vector<std::pair<const Vorn_3DGameNode*, Vector3>> calls;
  plane->SetPickDownFunction(
      {[&](Vorn_3DGameNode& n, const PickDetail& d) { calls.push_back({&n, d.position}); }, {}});
  auto pick_at = [&](double x, double z) {
    std::tie(scene->rayPt, scene->rayDir) = down_at(x, z);
    plane->draw_picktriangle();
  };

  // Click: every pick fires, the same tile too.
  pick_at(-1.0, -1.0);
  pick_at(-1.5, -0.5);
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(scene->selected, (std::vector<const Vorn_3DGameNode*>{plane.get(), plane.get()}));
  EXPECT_EQ(calls[1].first, plane.get());
  EXPECT_DOUBLE_EQ(calls[1].second.x, -1.5);
  EXPECT_EQ(plane->LastPickTile->tileX, 0);
  EXPECT_EQ(plane->CurrTileX, -1);  // click mode keeps no tile

  // Drag: only a change of tile fires, and the tile is kept.
  plane->SetCheckTileMode(Plane::CHECKTILE_MODE_DRAG);
  pick_at(1.0, 1.0);
  pick_at(1.5, 1.5);
  pick_at(-1.0, 1.0);
  pick_at(-1.0, 1.0);
  EXPECT_EQ(calls.size(), 4u);
  EXPECT_EQ(scene->selected.size(), 4u);
  EXPECT_EQ(std::pair(plane->CurrTileX, plane->CurrTileZ), Tile(0, 1));
  EXPECT_THROW(plane->SetCheckTileMode(2), ValueError);

  // Without a pick request, or off the plane, nothing happens; a disabled pick event
  // still selects.
  scene->pickRequested = false;
  pick_at(1.0, -1.0);
  scene->pickRequested = true;
  pick_at(5.0, 5.0);
  EXPECT_EQ(scene->selected.size(), 4u);
  plane->EnablePickDownEvent(false);
  pick_at(1.0, -1.0);
  EXPECT_EQ(scene->selected.size(), 5u);
  EXPECT_EQ(calls.size(), 4u);
}

TEST(Plane, VisiblePickOutlinesTheTileOnTheDrawNode) {
  auto scene = std::make_shared<PickScene>();
  scene->drawNode = MakeNode<Vorn_3DGameNode>();
  auto plane = MakeNode<Plane>();
  plane->OnLoad(scene);
  plane->CreatePlane(2, 2, 2.0);
  plane->update(0.0);
  std::vector<std::array<Vector3, 4>> quads;
  drawNodeQuadHook = [&](Vorn_3DGameNode& node, const std::array<Vector3, 4>& c) {
    EXPECT_EQ(&node, scene->drawNode.get());
    quads.push_back(c);
  };
  std::tie(scene->rayPt, scene->rayDir) = down_at(1.0, -1.0);
  plane->draw_picktriangle();
  EXPECT_TRUE(quads.empty());  // PickTriangleVisible is off

  plane->SetPickTriangleVisible(true);
  plane->draw_picktriangle();
  scene->rayDir = Vector3(0.0, 1.0, 0.0);  // seen from below
  plane->draw_picktriangle();
  drawNodeQuadHook = nullptr;
  ASSERT_EQ(quads.size(), 2u);
  // Tile (1, 0) in drawing order, just above (or below) the surface.
  const double xz[4][2] = {{0.0, -2.0}, {2.0, -2.0}, {2.0, 0.0}, {0.0, 0.0}};
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(quads[0][k].x, xz[k][0]);
    EXPECT_EQ(quads[0][k].z, xz[k][1]);
    EXPECT_EQ(quads[0][k].y, 0.001);
    EXPECT_EQ(quads[1][k].y, -0.001);
  }
}

}  // namespace
}  // namespace vorn
