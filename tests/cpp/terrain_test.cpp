// Vorn_3DTerrain's loaders on files the tests write: the grid and heights of both
// height file forms, the blend record's textures, the resource index lookup, and
// malformed files that leave the terrain as it was.
#include "landscape/terrain.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <string>
#include <variant>
#include <vector>

#include "console_capture.h"
#include "core/errors.h"
#include "terrain_test_files.h"
#include "texture_test_files.h"

namespace vorn {
namespace {

using test::BlendRecordBytes;
using test::Bytes;
using test::HeightFileBytes;
using test::ResourceScope;
using test::TempDir;

// A 3 by 2 grid of uneven heights: h = 0.5 * column + 0.25 * row^2 - 0.125 * column * row.
constexpr int kCows = 3, kRows = 2;
std::vector<float> SlopedHeights() {
  std::vector<float> h;
  for (int r = 0; r <= kRows; ++r)
    for (int c = 0; c <= kCows; ++c) h.push_back(0.5f * c + 0.25f * r * r - 0.125f * c * r);
  return h;
}

Bytes AsBytes(const std::string& text) { return Bytes(text.begin(), text.end()); }

TEST(Terrain, HeightFileReplacesTheGridWithSlopedNormals) {
  TempDir dir;
  ResourceScope index(dir.file(""));
  const std::vector<float> heights = SlopedHeights();
  const std::string binary = dir.write("hill.hei", HeightFileBytes(kCows, kRows, heights));

  auto terrain = MakeNode<Vorn_3DTerrain>(10, 0, -4);
  EXPECT_EQ(terrain->NodeType, "3DTerrain");
  terrain->CreateTerrain();
  EXPECT_EQ(terrain->VertexArray_Positon.at(0).size(), 129u * 129u);
  terrain->LoadHeightFile(binary, "rb", 2.0);
  terrain->update(0.0);

  // One submesh again, of the file's grid, with texture coordinates.
  ASSERT_EQ(terrain->SubMeshList.size(), 1u);
  EXPECT_EQ(terrain->Cows, kCows);
  EXPECT_EQ(terrain->Rows, kRows);
  EXPECT_EQ(terrain->TileSize, 2.0);
  EXPECT_EQ(terrain->VertexDescArray.at(0), glc::T2F_N3F_V3F);
  EXPECT_EQ(terrain->VIndexArray.at(0).size(), 4u * kCows * kRows);
  const auto& positions = terrain->VertexArray_Positon.at(0);
  const auto& normals = terrain->VertexArray_Normal.at(0);
  ASSERT_EQ(positions.size(), heights.size());
  for (int r = 0; r <= kRows; ++r) {
    for (int c = 0; c <= kCows; ++c) {
      const std::size_t i = static_cast<std::size_t>(r * (kCows + 1) + c);
      EXPECT_EQ(terrain->HeightArray[i], static_cast<double>(heights[i]));
      EXPECT_FLOAT_EQ(positions[i][0], -3.0f + 2.0f * c) << i;
      EXPECT_FLOAT_EQ(positions[i][1], heights[i]) << i;
      EXPECT_FLOAT_EQ(positions[i][2], -2.0f + 2.0f * r) << i;
      // Inner points: (-dx, 1, -dz) normalised from the differences to the previous
      // point in the row and in the column; the first row and column point up.
      double n[3] = {0.0, 1.0, 0.0};
      if (r > 0 && c > 0) {
        const double dx = heights[i] - heights[i - 1], dz = heights[i] - heights[i - kCows - 1];
        const double len = std::sqrt(dx * dx + 1.0 + dz * dz);
        n[0] = -dx / len, n[1] = 1.0 / len, n[2] = -dz / len;
      }
      for (int k = 0; k < 3; ++k) EXPECT_NEAR(normals[i][k], n[k], 1e-6) << i;
    }
  }
}

TEST(Terrain, BlendFileLoadsTheBlendMapLayersAndDensities) {
  TempDir dir;
  const auto flat = [](test::RGB c) { return test::EncodeTGA(*test::Quadrants(4, c, c, c, c), false); };
  dir.write("field.ter_Blend1.tga", test::EncodeTGA(*test::Quadrants(8), false));
  dir.write("mask.tga", flat(test::kRed));
  dir.write("grass.tga", flat(test::kGreen));
  // Layer 3 is stored under its JPEG name and shipped as DDS, which is missing here.
  const std::string ter = dir.write(
      "field.ter", BlendRecordBytes({"mask.tga", "grass.tga", "rock.jpg", "", ""}, {1.5f, 0.25f, 3.0f, 4.0f, 5.0f}));
  ResourceScope index(dir.file(""));

  auto terrain = MakeNode<Vorn_3DTerrain>();
  terrain->CreateTerrain();
  // Another flag opens the file and reads nothing.
  terrain->LoadBlendFile(ter, "r");
  EXPECT_TRUE(terrain->TextureArray.at(0).empty());

  ConsoleCapture console;
  terrain->LoadBlendFile(ter);
  EXPECT_EQ(console.lines(),
            (std::vector<std::string>{"Can't find texture: rock.dds", "Can't find texture: ", "Can't find texture: "}));
  const auto blend = terrain->GetSubMeshTextureInfo(0, 0);
  ASSERT_TRUE(blend);
  EXPECT_EQ(blend->width, 8);
  EXPECT_EQ(blend->density, 1.0);
  const auto mask = terrain->GetSubMeshTextureInfo(0, 1);
  const auto grass = terrain->GetSubMeshTextureInfo(0, 2);
  ASSERT_TRUE(mask && grass);
  EXPECT_EQ(mask->density, 1.5);
  EXPECT_EQ(grass->density, 0.25);
  // Each layer holds its own picture.
  EXPECT_EQ(std::vector<int>(mask->imgData->begin(), mask->imgData->begin() + 3), (std::vector<int>{255, 0, 0}));
  EXPECT_EQ(std::vector<int>(grass->imgData->begin(), grass->imgData->begin() + 3), (std::vector<int>{0, 255, 0}));
  EXPECT_FALSE(terrain->GetSubMeshTextureInfo(0, 3));
  EXPECT_EQ(terrain->TextureArray.at(0).size(), 3u);
}

TEST(Terrain, FilesNotFoundAsNamedComeFromTheResourceIndex) {
  TempDir dir;
  std::filesystem::create_directories(dir.file("a"));
  std::filesystem::create_directories(dir.file("b"));
  dir.write("a/dune.hei", HeightFileBytes(1, 1, {1, 2, 3, 4}));
  dir.write("b/dune.hei", HeightFileBytes(1, 1, {5, 6, 7, 8}));
  dir.write("a/solo.hei", HeightFileBytes(2, 1, {0, 0, 0, 0, 0, 9}));
  ResourceScope index(dir.file(""));
  const auto found = std::get<std::vector<std::string>>(index.manager().GetResPath("dune.hei"));
  ASSERT_EQ(found.size(), 2u);

  auto terrain = MakeNode<Vorn_3DTerrain>();
  ConsoleCapture console;
  terrain->LoadHeightFile("solo.hei");
  EXPECT_TRUE(console.lines().empty());
  EXPECT_EQ(terrain->HeightArray[5], 9.0);
  // Of several files of one name the first is read, and a line says how many there are.
  terrain->LoadHeightFile("dune.hei");
  EXPECT_EQ(console.lines(), std::vector<std::string>{found.front() + "  has  2  same image."});
  EXPECT_EQ(terrain->HeightArray[0], found.front().find("/a/") != std::string::npos ? 1.0 : 5.0);
}

// Truncated, oversized, negative, non-numeric, short and missing files are the script
// suite's cases (test_terrain.py); a text file read as binary and a folder are not.
TEST(Terrain, MalformedFilesRaiseAndLeaveTheTerrainAsItWas) {
  TempDir dir;
  const std::string good = dir.write("good.hei", HeightFileBytes(1, 1, {1, 2, 3, 4}));
  const std::string words = dir.write("words.txt", AsBytes("1,1,0,0,cliff,0"));
  ResourceScope index(dir.file(""));
  auto terrain = MakeNode<Vorn_3DTerrain>();
  terrain->LoadHeightFile(good);
  const auto state = [&] {
    return std::make_tuple(terrain->Cows, terrain->Rows, terrain->HeightArray, terrain->VertexArray_Positon.at(0));
  };
  const auto before = state();
  const auto q = [](const std::string& s) { return "'" + s + "'"; };
  const std::string H = "Vorn_3DTerrain.LoadHeightFile: ";
  try {
    terrain->LoadHeightFile(words);
    ADD_FAILURE() << "no exception";
  } catch (const ValueError& e) {
    EXPECT_EQ(std::string(e.what()), H + q(words) +
                                         ": a grid of 741420081 by 741354544 tiles needs 549655147544972690 "
                                         "heights, the file holds 1");
  }
  EXPECT_TRUE(state() == before);
  try {
    terrain->LoadHeightFile(dir.file(""));
    ADD_FAILURE() << "no exception";
  } catch (const FileNotFoundError& e) {
    ADD_FAILURE() << "a folder is not a missing file: " << e.what();
  } catch (const OSError& e) {
    EXPECT_EQ(std::string(e.what()), H + "can't read " + q(dir.file("")));
  }
  EXPECT_TRUE(state() == before);
}

}  // namespace
}  // namespace vorn
