// The height grid: layout, normals, heights below a point, tile access, tile picking.
#include "landscape/plane.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "core/errors.h"
#include "core/math_util.h"
#include "fake_scene.h"

namespace vorn {
namespace {

using Plane = Vorn_3DPlane;
using Tile = std::pair<std::int64_t, std::int64_t>;

using test::PickScene;

std::pair<Vector3, Vector3> down_at(double x, double z) { return {Vector3(x, 50.0, z), Vector3(0.0, -1.0, 0.0)}; }

// A 4 by 3 plane with uneven heights, tile size 2, at (10, 5, -3): x 6..14, z -6..0.
std::shared_ptr<Plane> bumpy_plane() {
  std::vector<double> heights;
  for (int i = 0; i < 5 * 4; ++i) heights.push_back(std::sin(i * 1.7) * 2.0 + (i % 3) * 0.5);
  auto plane = MakeNode<Plane>(10, 5, -3);
  plane->CreatePlane(3, 4, 2.0, false, heights);
  plane->update(0.0);
  return plane;
}

TEST(Plane, GridOfTwoByTwoTilesIsNinePointsRowByRow) {
  auto plane = MakeNode<Plane>();
  plane->CreatePlane(2, 2, 2.0);
  const auto& p = plane->VertexArray_Positon.at(0);
  ASSERT_EQ(p.size(), 9u);
  for (int i = 0; i < 9; ++i) EXPECT_EQ(p[i], VertexEntry<3>(-2.0 + 2.0 * (i % 3), 0.0, -2.0 + 2.0 * (i / 3))) << i;
  EXPECT_EQ(plane->VIndexArray.at(0), (IndexArray{0, 1, 4, 3, 1, 2, 5, 4, 3, 4, 7, 6, 4, 5, 8, 7}));
  EXPECT_EQ(plane->HeightArray, std::vector<double>(9, 0.0));

  // Texture coordinates in tile units, given once; the layout gains them.
  plane->GenTexCoords(0);
  EXPECT_EQ(plane->VertexDescArray.at(0), glc::T2F_N3F_V3F);
  EXPECT_EQ(plane->VertexArray_UV.at(0)[5], VertexEntry<2>(2.0, 1.0));
  auto textured = MakeNode<Plane>();
  textured->CreatePlane(1, 3, 1.0, true);
  EXPECT_EQ(textured->InterleaveSubMesh(0).size(), 8u * 8u);
  // A grid too large to build is refused before anything is allocated or added.
  auto huge = MakeNode<Plane>();
  EXPECT_THROW(huge->CreatePlane(2147483647, 20, 1.0), ValueError);
  EXPECT_THROW(huge->CreatePlane(8192, 8192, 1.0), ValueError);
  EXPECT_TRUE(huge->SubMeshList.empty());
}

TEST(Plane, SlopedHeightsGiveNormalsFromTheirDifferences) {
  // y = 0.5 per column + 0.25 per row; the tile size does not scale the slope.
  std::vector<double> heights;
  for (int row = 0; row <= 2; ++row)
    for (int cow = 0; cow <= 3; ++cow) heights.push_back(0.5 * cow + 0.25 * row);
  auto plane = MakeNode<Plane>();
  plane->CreatePlane(2, 3, 4.0, false, heights);
  const double len = std::sqrt(0.5 * 0.5 + 1.0 + 0.25 * 0.25);
  for (int i = 0; i < 12; ++i) {
    const bool edge = i < 4 || i % 4 == 0;  // first row and column keep (0, 1, 0)
    const double expected[3] = {edge ? 0.0 : -0.5 / len, edge ? 1.0 : 1.0 / len, edge ? 0.0 : -0.25 / len};
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(plane->VertexArray_Normal.at(0)[i][k], expected[k], 1e-12) << i;
  }
}

TEST(Plane, CheckInHeightFollowsTheTileTriangles) {
  auto plane = bumpy_plane();
  for (int tileZ = 0; tileZ < 3; ++tileZ) {
    for (int tileX = 0; tileX < 4; ++tileX) {
      // The tile's surface from its two plane equations, split along V2-V3.
      const auto Y = plane->GetTileVertexY(tileX, tileZ);
      for (const auto& [u, v] : {std::pair{0.25, 0.25}, {0.8, 0.1}, {0.6, 0.7}, {0.1, 0.95}, {0.5, 0.5}}) {
        const double expected = u + v <= 1.0 ? Y[0] + u * (Y[1] - Y[0]) + v * (Y[2] - Y[0])
                                             : Y[3] + (1 - u) * (Y[2] - Y[3]) + (1 - v) * (Y[1] - Y[3]);
        const auto [inside, y] = plane->CheckInHeight(6.0 + 2.0 * (tileX + u), -6.0 + 2.0 * (tileZ + v));
        EXPECT_TRUE(inside);
        EXPECT_NEAR(y, expected, 1e-9) << tileX << "," << tileZ << " at " << u << "," << v;
      }
    }
  }
  for (const auto& [x, z] : {std::pair{5.99, -3.0}, {14.01, -3.0}, {10.0, -6.01}, {10.0, 0.01}}) {
    EXPECT_EQ(plane->CheckInHeight(x, z), std::make_pair(false, 0.0)) << x << "," << z;
  }

  // On endX the column is Cows: its V1 and V3 are still the grid's last column. In
  // the last row V4 lies past the grid, and on endZ V3 does.
  const auto& H = plane->HeightArray;
  EXPECT_NEAR(plane->CheckInHeight(14.0, -3.5).second, H[9] + 0.25 * (H[14] - H[9]), 1e-9);
  EXPECT_THROW(plane->CheckInHeight(14.0, -1.0), IndexError);
  EXPECT_THROW(plane->CheckInHeight(9.0, 0.0), IndexError);
  // FastMode, the average around the tile with its printed line, is the script suite's case.
}

TEST(Plane, TileHeightsAndCorners) {
  auto plane = MakeNode<Plane>(10, 5, 0);
  plane->CreatePlane(2, 3, 2.0);  // 4 by 3 points; x from -3, z from -2
  plane->SetRY(90.0);
  plane->update(0.0);
  plane->SetTileVertexY(1, 1, std::vector<double>{1.0, 2.0, 3.0});  // leaves V4
  EXPECT_EQ(plane->GetTileVertexY(1, 1), (std::array<double, 4>{1.0, 2.0, 3.0, 0.0}));
  plane->SetTileY(2, 0, 7.0);
  EXPECT_EQ(plane->GetTileVertexY(2, 0), (std::array<double, 4>{7.0, 7.0, 7.0, 7.0}));
  // A failing write changes nothing.
  const auto before = plane->HeightArray;
  EXPECT_THROW(plane->SetTileVertexY(2, 2, 9.0), IndexError);
  EXPECT_EQ(plane->HeightArray, before);

  EXPECT_EQ(plane->GetTileVertex(1, 1)[0], (Plane::Corner{9.0, 1.0, 0.0}));  // no world y, no rotation
  // Through the world matrix a local (x, h, z) lands on (10 + z, 5 + h, -x).
  const auto world = plane->GetTileWorldVertex(1, 1);
  const double expected[4][3] = {{10.0, 6.0, 1.0}, {10.0, 12.0, -1.0}, {12.0, 8.0, 1.0}, {12.0, 5.0, -1.0}};
  for (int k = 0; k < 4; ++k) {
    EXPECT_NEAR(world[k].x, expected[k][0], 1e-12);
    EXPECT_NEAR(world[k].y, expected[k][1], 1e-12);
    EXPECT_NEAR(world[k].z, expected[k][2], 1e-12);
  }
}

TEST(Plane, TileAverageWrapsAtTheEdgesAndFailsBeyond) {
  // Heights 2^i on 4 by 4 points show which points were summed.
  std::vector<double> heights;
  for (int i = 0; i < 16; ++i) heights.push_back(std::ldexp(1.0, i));
  auto plane = MakeNode<Plane>();
  plane->CreatePlane(3, 3, 1.0, false, heights);
  EXPECT_EQ(plane->GetTileAverageY(1, 1, 1), (1 + 2 + 4 + 16 + 32 + 64 + 256 + 512 + 1024) / 9.0);
  // Around tile (0, 0) the points -5, -4, -3 and -1 wrap to 11, 12, 13 and 15.
  EXPECT_EQ(plane->GetTileAverageY(0, 0, 1), (2048 + 4096 + 8192 + 32768 + 1 + 2 + 8 + 16 + 32) / 9.0);
  EXPECT_THROW(plane->GetTileAverageY(3, 3, 1), IndexError);  // reaches point 20
  EXPECT_THROW(plane->GetTileAverageY(0, 0, 4), IndexError);  // starts at point -20
}

TEST(Plane, PickTileGivesTheFirstTileInRowOrder) {
  auto plane = MakeNode<Plane>(1, 0, 0);
  plane->CreatePlane(2, 2, 2.0);  // x from -1 to 3, z from -2 to 2
  plane->update(0.0);
  const Vector3 Dir(0.0, -1.0, 0.0);
  // A line meeting the far row's raised slope first still gives the near row.
  plane->SetTileVertexY(0, 1, std::vector<double>{0.0, 0.0, 8.0, 8.0});
  plane->SetTileVertexY(1, 1, std::vector<double>{0.0, 0.0, 8.0, 8.0});
  EXPECT_EQ(plane->PickTile(Vector3(0.5, 4.0, 3.0), Vector3(0.0, -1.0, -1.0))->tileZ, 0);

  // A height array cut short is read tile by tile and fails at the first gap.
  plane->HeightArray.resize(5);
  EXPECT_TRUE(plane->PickTile(Vector3(0.5, 50.0, -1.5), Dir));
  EXPECT_THROW(plane->PickTile(Vector3(10.0, 50.0, 10.0), Dir), IndexError);
}

TEST(Plane, PickTileAgreesWithTestingEveryTile) {
  std::mt19937 rng(7);
  std::uniform_real_distribution<double> unit(-1.0, 1.0);
  auto plane = bumpy_plane();
  int hits = 0;
  for (int round = 0; round < 4; ++round) {
    plane->SetRXYZ(30.0 * round, 75.0 * round, -20.0 * round);
    plane->SetSXYZ(1.0 + round * 0.5, round == 3 ? -0.5 : 1.0, 0.8);
    plane->update(0.0);
    for (int i = 0; i < 800; ++i) {
      // Half the rays run exactly through a grid point or the middle of a tile edge,
      // where the hit sits on the boundary between tiles.
      Vector3 target(10.0 + 8.0 * unit(rng), 5.0 + 3.0 * unit(rng), -3.0 + 8.0 * unit(rng));
      if (i % 4 < 2) {
        const auto c = plane->GetTileWorldVertex(i % 4, (i / 4) % 3);
        target = i % 8 < 4 ? c[(i / 8) % 4] : (c[0] + c[(i / 8) % 3 + 1]) * 0.5;
      }
      const Vector3 Pt(target.x + 30.0 * unit(rng), target.y + 30.0 * unit(rng), target.z + 30.0 * unit(rng));
      const Vector3 Dir = (target - Pt) * (i % 2 ? 1.0 : 0.01);
      // Every tile in row order, both triangles.
      std::optional<Tile> expected;
      for (std::int64_t tz = 0; tz < plane->Rows && !expected; ++tz) {
        for (std::int64_t tx = 0; tx < plane->Cows && !expected; ++tx) {
          const auto c = plane->GetTileWorldVertex(tx, tz);
          if (IntersectTriangle(Pt, Dir, c[0], c[1], c[2]).first || IntersectTriangle(Pt, Dir, c[1], c[3], c[2]).first)
            expected = Tile(tx, tz);
        }
      }
      const auto hit = plane->PickTile(Pt, Dir);
      ASSERT_EQ(bool(hit), bool(expected)) << "round " << round << " ray " << i;
      if (!hit) continue;
      EXPECT_EQ(Tile(hit->tileX, hit->tileZ), *expected) << "round " << round << " ray " << i;
      ++hits;
    }
  }
  EXPECT_GT(hits, 1200);
}

TEST(Plane, PickEventInClickAndDragMode) {
  auto scene = std::make_shared<PickScene>();
  // Records the outlines a pick asks the scene's draw node for.
  struct Marker : Vorn_3DGameNode {
    std::vector<std::array<Vector3, 4>> outlines;
    void MarkPickedQuad(const std::array<Vector3, 4>& c) override { outlines.push_back(c); }
  };
  auto marker = MakeNode<Marker>();
  scene->drawNode = marker;
  auto plane = MakeNode<Plane>();
  plane->OnLoad(scene);
  plane->CreatePlane(2, 2, 2.0);  // tiles of 2 from -2 to 2
  plane->update(0.0);
  std::vector<Vector3> calls;
  plane->SetPickDownFunction({[&](Vorn_3DGameNode&, const PickDetail& d) { calls.push_back(d.position); }, {}});
  const auto& outlines = marker->outlines;
  auto pick_at = [&](double x, double z) {
    std::tie(scene->rayPt, scene->rayDir) = down_at(x, z);
    plane->draw_picktriangle();
  };

  // Click: every pick fires, the same tile too; the tile is not kept.
  pick_at(-1.0, -1.0);
  pick_at(-1.5, -0.5);
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(scene->selected, (std::vector<const Vorn_3DGameNode*>{plane.get(), plane.get()}));
  EXPECT_EQ(calls[1].x, -1.5);
  EXPECT_EQ(plane->CurrTileX, -1);

  // Drag: only a change of tile fires, and the tile is kept.
  plane->SetCheckTileMode(Plane::CHECKTILE_MODE_DRAG);
  for (const auto& [x, z] : {std::pair{1.0, 1.0}, {1.5, 1.5}, {-1.0, 1.0}, {-1.0, 1.0}}) pick_at(x, z);
  EXPECT_EQ(calls.size(), 4u);
  EXPECT_EQ(Tile(plane->CurrTileX, plane->CurrTileZ), Tile(0, 1));

  // No request or a miss does nothing; a disabled event still selects. A visible
  // pick outlines the tile in drawing order, lifted towards the viewer.
  scene->pickRequested = false;
  pick_at(1.0, -1.0);
  scene->pickRequested = true;
  pick_at(5.0, 5.0);
  plane->EnablePickDownEvent(false);
  plane->SetPickTriangleVisible(true);
  pick_at(1.0, -1.0);
  EXPECT_EQ(scene->selected.size(), 5u);
  EXPECT_EQ(calls.size(), 4u);
  ASSERT_EQ(outlines.size(), 1u);
  const double xz[4][2] = {{0.0, -2.0}, {2.0, -2.0}, {2.0, 0.0}, {0.0, 0.0}};
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(outlines[0][k].x, xz[k][0]);
    EXPECT_EQ(outlines[0][k].y, 0.001);
    EXPECT_EQ(outlines[0][k].z, xz[k][1]);
  }
}

}  // namespace
}  // namespace vorn
