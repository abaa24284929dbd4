// Texture records of submeshes without GL: records from pixels and their misuse, the
// file search and its console lines, generated textures, and the normal map generator.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "console_capture.h"
#include "core/errors.h"
#include "node/bump_map.h"
#include "node/game_node.h"
#include "texture_test_files.h"

namespace vorn::test {
namespace {

using Node = Vorn_3DGameNode;

TexturePixels Bytes3(std::size_t pixels, std::uint8_t value = 7) {
  return std::make_shared<const std::vector<std::uint8_t>>(pixels * 3, value);
}

// The first row of a bottom-up RGB record: the picture's bottom row.
RGB FirstPixel(const TextureInfo& rec) {
  const auto& d = *rec.imgData;
  return {d[0], d[1], d[2]};
}

TEST(NodeTextures, RecordsFromPixelsDensityLookupAndMisuse) {
  auto n = MakeNode<Node>();
  const int s = n->CreateSubMesh("a", true);
  n->LoadSubMeshTextureFromImage(s, 0, Bytes3(4), "RGB", 2, 2);
  n->LoadSubMeshTextureFromImage(s, 2, Bytes3(1), "RGB", 1, 1, false, 3.0);
  n->LoadSubMeshTextureFromImage(s, 2, nullptr, "RGBA", 8, 8, true, 4.0);

  const std::optional<TextureInfo> first = n->GetSubMeshTextureInfo(s, 2);  // the first of channel 2
  ASSERT_TRUE(first);
  EXPECT_EQ(std::make_tuple(first->width, first->mipMap, first->genFinish), std::make_tuple(1, false, false));
  EXPECT_FALSE(n->GetSubMeshTextureInfo(s, 1));

  n->SetSubMeshTextureDensity(s, 2, 0.25);
  const auto& records = n->TextureArray.at(s);
  ASSERT_EQ(records.size(), 3u);
  EXPECT_EQ(records[0].density, 1.0);
  EXPECT_EQ(records[1].density, 0.25);
  EXPECT_EQ(records[2].density, 0.25);

  // Misuse raises and appends nothing.
  EXPECT_THROW(n->LoadSubMeshTextureFromImage(5, 0, Bytes3(1), "RGB", 1, 1), KeyError);
  for (const auto& [pixels, format, w] : {std::tuple{Bytes3(1), "BGR", 1}, {Bytes3(3), "RGB", 2}, {Bytes3(1), "RGBA", 1},
                                          {TexturePixels(), "RGB", -1}}) {
    EXPECT_THROW(n->LoadSubMeshTextureFromImage(s, 0, pixels, format, w, w == 2 ? 2 : 1), ValueError) << format << w;
  }
  EXPECT_THROW(n->GetSubMeshTextureInfo(5, 0), KeyError);
  EXPECT_THROW(n->SetSubMeshTextureDensity(5, 0, 1.0), KeyError);
  EXPECT_EQ(n->TextureArray.at(s).size(), 3u);
}

TEST(NodeTextures, FileSearchAsGivenThroughTheIndexAndBesideTheMesh) {
  TempDir dir;
  std::filesystem::create_directories(dir.file("res/a"));
  std::filesystem::create_directories(dir.file("res/b"));
  std::filesystem::create_directories(dir.file("model"));
  Quadrants(4, kRed, kRed, kBlue, kBlue)->save(dir.file("res/a/twice.png"));
  Quadrants(4, kGreen, kGreen, kGreen, kGreen)->save(dir.file("res/b/twice.png"));
  Quadrants(4, kWhite, kWhite, kGreen, kGreen)->save(dir.file("model/skin.png"));
  ResourceScope res(dir.file("res"));

  auto n = MakeNode<Node>();
  const int s = n->CreateSubMesh("a", true);
  ConsoleCapture console;
  n->LoadSubMeshTextureFromFile(s, 0, "missing.png");
  EXPECT_EQ(console.lines(), std::vector<std::string>{"Can't find texture: missing.png"});
  EXPECT_TRUE(n->TextureArray.at(s).empty());

  // Found twice: a warning, then the first match (folder a) is read.
  console.clear();
  n->LoadSubMeshTextureFromFile(s, 0, "twice.png");
  EXPECT_EQ(console.lines(), std::vector<std::string>{"twice.png  has  2  same image."});
  ASSERT_EQ(n->TextureArray.at(s).size(), 1u);
  EXPECT_EQ(FirstPixel(n->TextureArray.at(s)[0]), kBlue);

  // A texture beside a loaded model, named with a folder that does not exist.
  console.clear();
  n->MeshFile = dir.file("model/mesh.obj");
  n->LoadSubMeshTextureFromFile(s, 1, "textures/skin.png", false, 2.0);
  EXPECT_TRUE(console.lines().empty());
  const std::optional<TextureInfo> skin = n->GetSubMeshTextureInfo(s, 1);
  ASSERT_TRUE(skin);
  EXPECT_EQ(FirstPixel(*skin), kGreen);
  EXPECT_EQ(std::make_pair(skin->density, skin->mipMap), std::make_pair(2.0, false));

  // A found file that is no picture.
  console.clear();
  dir.write("res/a/broken.png", {1, 2, 3});
  n->LoadSubMeshTextureFromFile(s, 0, dir.file("res/a/broken.png"));
  EXPECT_EQ(console.lines(), std::vector<std::string>{"Can't read texture: " + dir.file("res/a/broken.png")});
  EXPECT_EQ(n->TextureArray.at(s).size(), 2u);
  EXPECT_THROW(n->LoadSubMeshTextureFromFile(9, 0, "twice.png"), KeyError);
}

TEST(NodeTextures, GeneratedTexturesAreAppendedFinishedAndUnknownIdsIgnored) {
  TempDir dir;
  auto n = MakeNode<Node>();
  const int a = n->CreateSubMesh("a", true);
  const int b = n->CreateSubMesh("b", true);
  // No resource manager: nothing happens.
  n->SetSubMeshDynamicTextureID(a, 42);
  EXPECT_TRUE(n->TextureArray.at(a).empty());

  ResourceScope res(dir.file(""));
  res.manager().AddDynamicTexture(42, 64, 32, "RGB", 24);
  n->SetSubMeshDynamicTextureID(a, 7);
  EXPECT_TRUE(n->TextureArray.at(a).empty());
  n->SetDynamicTextureID(42, 3);
  for (int s : {a, b}) {
    ASSERT_EQ(n->TextureArray.at(s).size(), 1u);
    const TextureInfo& rec = n->TextureArray.at(s)[0];
    EXPECT_EQ(std::make_tuple(rec.channel, rec.texID, rec.Format, rec.width, rec.height, rec.genFinish, rec.mipMap),
              std::make_tuple(3, 42u, std::string("RGB"), 64, 32, true, false));
    EXPECT_FALSE(rec.imgData);
  }
  EXPECT_THROW(n->SetSubMeshDynamicTextureID(9, 42), KeyError);
}

TEST(NodeTextures, BumpMapOfFlatAndSlopedPictures) {
  // Flat grey: borders (0, 0, 255), inside the normal along z, negated: (127, 127, 0).
  const std::vector<std::uint8_t> grey(5 * 4 * 4, 128);
  const auto flat = MakeBumpMapImage(grey, 4, 5, 4);
  ASSERT_EQ(flat->mode(), Image::Mode::RGB);
  for (int v = 0; v < 4; ++v) {
    for (int u = 0; u < 5; ++u) {
      const bool border = u == 0 || v == 0 || u == 4 || v == 3;
      const auto p = flat->getpixel(u, v).c;
      const RGB want = border ? RGB{0, 0, 255} : RGB{127, 127, 0};
      EXPECT_EQ((RGB{p[0], p[1], p[2]}), want) << u << "," << v;
    }
  }

  // A step from black to white at column 300 of a 600 x 3 picture. Samples a fraction
  // of a pixel to the left (and, through the index, below) fall on the darker side, so
  // the normal leans to -x there; 0.2126 + 0.7152 + 0.0722 of 255 truncates to 254.
  std::vector<std::uint8_t> step;
  for (int v = 0; v < 3; ++v)
    for (int u = 0; u < 600; ++u) step.insert(step.end(), 3, u < 300 ? 0 : 255);
  const auto stepped = MakeBumpMapImage(step, 3, 600, 3);
  const auto edge = stepped->getpixel(300, 1).c;
  EXPECT_EQ((RGB{edge[0], edge[1], edge[2]}), (RGB{69, 127, 13}));
  const auto away = stepped->getpixel(100, 1).c;
  EXPECT_EQ((RGB{away[0], away[1], away[2]}), (RGB{127, 127, 0}));

  EXPECT_THROW(MakeBumpMapImage(grey, 4, 6, 4), ValueError);
  EXPECT_THROW(MakeBumpMapImage(grey, 1, 2, 2), ValueError);
  // Pictures of one or two pixels a side are all border.
  EXPECT_EQ(MakeBumpMapImage(grey, 4, 2, 1)->getpixel(1, 0).c[2], 255);
}

TEST(NodeTextures, MakeSubMeshBumpWithoutTexturesDoesNothingAndNeedsAPicture) {
  auto n = MakeNode<Node>();
  n->MakeSubMeshBump(0);  // no submesh at all
  EXPECT_TRUE(n->TextureArray.empty());
  const int s = n->CreateSubMesh("a", true);
  n->LoadSubMeshTextureFromImage(s, 0, nullptr, "RGB", 4, 4);
  EXPECT_THROW(n->MakeSubMeshBump(s), TypeError);
  EXPECT_EQ(n->TextureArray.at(s).size(), 1u);
}

}  // namespace
}  // namespace vorn::test
