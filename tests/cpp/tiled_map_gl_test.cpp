// The tile map's blend map on the GPU: strokes reach the texture in their patch only.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <vector>

#include "console_capture.h"
#include "core/errors.h"
#include "gl_harness.h"
#include "landscape/tiled_map.h"
#include "resource/res_manager.h"
#include "resource/image.h"

namespace vorn {
namespace {

class TiledMapGL : public test::GLTest {
 protected:
  void SetUp() override {
    GLTest::SetUp();
    if (!HasContext()) return;
    if (!ResManagerInstance) {
      const auto dir = std::filesystem::temp_directory_path() / ("vorn_tiles_gl_" + std::to_string(::getpid()));
      std::filesystem::create_directories(dir);
      ConsoleCapture quiet;
      PyGameResManager::Create(dir.string());
    }
  }
};

std::vector<std::uint8_t> ReadBack(unsigned id, int size) {
  std::vector<std::uint8_t> out(static_cast<std::size_t>(size) * size * 3);
  GLint pack = 0;
  glGetIntegerv(GL_PACK_ALIGNMENT, &pack);
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glBindTexture(GL_TEXTURE_2D, id);
  glGetTexImage(GL_TEXTURE_2D, 0, GL_RGB, GL_UNSIGNED_BYTE, out.data());
  glBindTexture(GL_TEXTURE_2D, 0);
  glPixelStorei(GL_PACK_ALIGNMENT, pack);
  return out;
}

TEST_F(TiledMapGL, StrokeChangesItsPatchOnly) {
  if (!HasContext()) return;
  auto map = MakeNode<Vorn_3DTiledMap>();
  map->CreateTiledMap(10, 10);
  EXPECT_THROW(map->SetBlendData(0, 5, 5), RuntimeError) << "no blend map yet";
  // An odd width: rows of 3 * 37 bytes are not 4-aligned.
  map->CreateBlendTeture(37);
  ASSERT_TRUE(map->BlendTextureID);
  EXPECT_EQ(map->TiledMapTextureDict.at(Vorn_3DTiledMap::BLEND_TEXTURE_KEY), *map->BlendTextureID);
  EXPECT_EQ(map->GetSubMeshTextureInfo(0, 4)->width, 37);
  EXPECT_EQ(ReadBack(*map->BlendTextureID, 37), std::vector<std::uint8_t>(37 * 37 * 3, 0));

  map->SetBlendData(1, 5.5, 5.5, 0.5, 200);
  std::vector<std::uint8_t> want(37 * 37 * 3, 0);
  // The same stroke on a map of our own: (5.5 / 11) * 37 = pixel 18, radius int(3.7 * 0.5 + 1) = 2.
  tiles::PaintBlendBrush(want, 37, 37, 1, 18, 18, 2, 200);
  const auto got = ReadBack(*map->BlendTextureID, 37);
  EXPECT_EQ(got, want);
  EXPECT_EQ(got, map->BlendTexturePixelArray);
  EXPECT_EQ(got[(18 * 37 + 18) * 3 + 1], 200);

  EXPECT_THROW(map->SetBlendData(3, 5, 5), ValueError);
  EXPECT_THROW(map->CreateBlendTeture(0), ValueError);
  EXPECT_THROW(map->CreateBlendTeture(-4), ValueError);
  EXPECT_THROW(map->CreateBlendTeture(1 << 20), ValueError);
  EXPECT_EQ(map->BlendTextureSize, 37) << "a refused size keeps the map";
}

TEST_F(TiledMapGL, LostMaterialsPrintAndTheRestLoad) {
  if (!HasContext()) return;
  const auto root = std::filesystem::path(ResManagerInstance->GetResRootDir());
  std::filesystem::create_directories(root / "mat");
  Image("RGB", 3, 5, Image::Pixel{{200, 10, 10, 255}, 3}).save((root / "mat" / "plain.png").string());
  { std::ofstream((root / "mat" / "slope.jpg")) << "not a picture"; }
  ResManagerInstance->fileDict.clear();
  ResManagerInstance->FoundAllResFile(root.string());
  auto map = MakeNode<Vorn_3DTiledMap>();
  map->CreateTiledMap(4, 4);
  ConsoleCapture console;
  map->SetTileMapMaterials("mat");
  // Applying the program prints its text after these lines.
  ASSERT_GE(console.lines().size(), 4u);
  EXPECT_EQ(std::vector<std::string>(console.lines().begin(), console.lines().begin() + 4),
            (std::vector<std::string>{"TiledMap Texture slope.jpg Unreadable !",
                                                       "TiledMap Texture bottom.jpg Lost !",
                                                       "TiledMap Texture water.jpg Lost !",
                                                       "TiledMap Texture blend.jpg Lost !"}));
  EXPECT_EQ(map->TiledMapTextureDict.keys(), std::vector<int>{0});
  EXPECT_EQ(map->GetSubMeshTextureInfo(0, 0)->width, 3) << "an odd width through the plain material";
  console.clear();
  map->LoadCustomTexture("nothing.png", 0);
  ASSERT_GE(console.lines().size(), 1u);
  EXPECT_EQ(console.lines()[0], "TiledMap Custom Texture nothing.png Lost !");
  map->LoadCustomTexture("plain.png", 0);
  EXPECT_TRUE(map->TiledMapTextureDict.contains(5));
  EXPECT_THROW(map->LoadCustomTexture("slope.jpg", 1), ValueError);
}

}  // namespace
}  // namespace vorn
