// Vorn_3DTerrain's loaders on files the tests write: the grid and heights of both
// height file forms, the blend record's textures, the resource index lookup, and
// malformed files that leave the terrain as it was.
#include "landscape/terrain.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <functional>
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

std::string TextForm(int cows, int rows, const std::vector<float>& heights) {
  std::string text = std::to_string(cows);
  text.push_back(',');
  text.append(std::to_string(rows));
  for (float h : heights) {
    text.push_back(',');
    text.append(std::to_string(h));
  }
  text.push_back('\n');
  return text;
}

Bytes AsBytes(const std::string& text) { return Bytes(text.begin(), text.end()); }

// The height of the tile's two triangles (split along V2-V3) at fractions u, v.
double TriangleHeight(const std::array<double, 4>& Y, double u, double v) {
  if (u + v <= 1.0) return Y[0] + u * (Y[1] - Y[0]) + v * (Y[2] - Y[0]);
  return Y[3] + (1.0 - u) * (Y[2] - Y[3]) + (1.0 - v) * (Y[1] - Y[3]);
}

TEST(Terrain, HeightFileReplacesTheGridWithSlopedNormals) {
  TempDir dir;
  ResourceScope index(dir.file(""));
  const std::vector<float> heights = SlopedHeights();
  const std::string binary = dir.write("hill.hei", HeightFileBytes(kCows, kRows, heights));
  const std::string text = dir.write("hill.txt", AsBytes(TextForm(kCows, kRows, heights)));

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

  // Heights below world points follow the tile triangles; the grid spans x 7..13, z -6..-2.
  for (const auto& [x, z] : {std::pair{7.3, -5.9}, {8.9, -4.1}, {10.5, -3.0}, {12.2, -2.4}, {11.0, -5.0}}) {
    const double fx = (x - 7.0) / 2.0, fz = (z + 6.0) / 2.0;
    const int tileX = static_cast<int>(fx), tileZ = static_cast<int>(fz);
    const auto Y = terrain->GetTileVertexY(tileX, tileZ);
    const auto [inside, y] = terrain->CheckInHeight(x, z);
    EXPECT_TRUE(inside) << x << ", " << z;
    EXPECT_NEAR(y, TriangleHeight(Y, fx - tileX, fz - tileZ), 1e-9) << x << ", " << z;
    EXPECT_EQ(terrain->GroundHeightAt(x, z), y);
  }
  EXPECT_EQ(terrain->GroundHeightAt(6.9, -4.0), std::nullopt);

  // The text form of the same grid gives the same grid; a terrain never built loads too.
  auto fromText = MakeNode<Vorn_3DTerrain>();
  fromText->LoadHeightFile(text, "r", 2.0);
  EXPECT_EQ(fromText->Cows, kCows);
  EXPECT_EQ(fromText->Rows, kRows);
  ASSERT_EQ(fromText->HeightArray.size(), heights.size());
  for (std::size_t i = 0; i < heights.size(); ++i) EXPECT_NEAR(fromText->HeightArray[i], heights[i], 1e-6) << i;
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

TEST(Terrain, MalformedFilesRaiseAndLeaveTheTerrainAsItWas) {
  TempDir dir;
  const auto flat = test::EncodeTGA(*test::Quadrants(2, test::kBlue, test::kBlue, test::kBlue, test::kBlue), false);
  dir.write("good.ter_Blend1.tga", flat);
  const std::string good = dir.write("good.hei", HeightFileBytes(1, 1, {1, 2, 3, 4}));
  const std::string goodBlend = dir.write("good.ter", BlendRecordBytes({"", "", "", "", ""}, {1, 1, 1, 1, 1}));
  Bytes truncated = HeightFileBytes(2, 2, std::vector<float>(9, 1.0f));
  truncated.resize(43);
  Bytes shortBlend = BlendRecordBytes({"a", "b", "c", "d", "e"}, {1, 1, 1, 1, 1});
  shortBlend.resize(320);
  const std::string cut = dir.write("cut.hei", truncated);
  const std::string huge = dir.write("huge.hei", HeightFileBytes(2147483647, 2147483647, {0}));
  const std::string negative = dir.write("neg.hei", HeightFileBytes(-3, 1, {}));
  const std::string words = dir.write("words.txt", AsBytes("1,1,0,0,cliff,0"));
  const std::string shortTer = dir.write("short.ter", shortBlend);
  const std::string missing = dir.file("missing.hei");
  ResourceScope index(dir.file(""));

  auto terrain = MakeNode<Vorn_3DTerrain>();
  terrain->LoadHeightFile(good);
  {
    ConsoleCapture quiet;
    terrain->LoadBlendFile(goodBlend);
  }
  const auto before = std::make_tuple(terrain->Cows, terrain->Rows, terrain->HeightArray,
                                      terrain->VertexArray_Positon.at(0), terrain->TextureArray.at(0).size());

  enum Kind { Value, NotFound, OS };
  struct Case {
    const char* name;
    std::function<void()> load;
    Kind kind;
    std::string message;
  };
  const std::string H = "Vorn_3DTerrain.LoadHeightFile: ", B = "Vorn_3DTerrain.LoadBlendFile: ";
  const auto q = [](const std::string& s) {
    std::string quoted(1, '\'');
    quoted.append(s).push_back('\'');
    return quoted;
  };
  const std::vector<Case> cases = {
      {"truncated", [&] { terrain->LoadHeightFile(cut); }, Value,
       H + q(cut) + ": a grid of 2 by 2 tiles needs 9 heights, the file holds 8"},
      {"huge claim", [&] { terrain->LoadHeightFile(huge); }, Value,
       H + q(huge) + ": a grid of 2147483647 by 2147483647 tiles needs 4611686018427387904 heights, the file holds 1"},
      {"negative", [&] { terrain->LoadHeightFile(negative, "rb", 3.0); }, Value,
       H + q(negative) + ": a grid of -3 by 1 tiles has a negative tile count"},
      {"text word", [&] { terrain->LoadHeightFile(words, "r"); }, Value,
       H + q(words) + ": field 4 (height 2) is not a number: 'cliff'"},
      {"binary read of text", [&] { terrain->LoadHeightFile(words); }, Value,
       H + q(words) + ": a grid of 741420081 by 741354544 tiles needs 549655147544972690 heights, the file holds 1"},
      {"missing", [&] { terrain->LoadHeightFile(missing); }, NotFound, H + "no such file: " + q(missing)},
      {"folder", [&] { terrain->LoadHeightFile(dir.file("")); }, OS, H + "can't read " + q(dir.file(""))},
      {"short blend", [&] { terrain->LoadBlendFile(shortTer); }, Value,
       B + q(shortTer) + ": a blend record is 340 bytes, the file has 320"},
      {"missing blend", [&] { terrain->LoadBlendFile("nowhere.ter", "r"); }, NotFound,
       B + "no such file: 'nowhere.ter'"},
  };
  for (const Case& c : cases) {
    try {
      c.load();
      ADD_FAILURE() << c.name << ": no exception";
    } catch (const FileNotFoundError& e) {
      EXPECT_EQ(c.kind, NotFound) << c.name;
      EXPECT_EQ(std::string(e.what()), c.message) << c.name;
    } catch (const OSError& e) {
      EXPECT_EQ(c.kind, OS) << c.name;
      EXPECT_EQ(std::string(e.what()), c.message) << c.name;
    } catch (const ValueError& e) {
      EXPECT_EQ(c.kind, Value) << c.name;
      EXPECT_EQ(std::string(e.what()), c.message) << c.name;
    }
    const auto after = std::make_tuple(terrain->Cows, terrain->Rows, terrain->HeightArray,
                                       terrain->VertexArray_Positon.at(0), terrain->TextureArray.at(0).size());
    EXPECT_TRUE(after == before) << c.name << ": the terrain changed";
  }
}

}  // namespace
}  // namespace vorn
