// The demonstration's landscape files as the tool writes them: the terrain's readers
// take them, the layers the record names are there, the mask covers every texel fully
// (the terrain program paints what the layers leave with the mask itself, so a gap
// shows as a dark patch), and the ground is flat where the walkers stand and below the
// water in the pond.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include <unistd.h>

#include "landscape/terrain_files.h"
#include "resource/png_codec.h"
#include "terrain_assets.h"

namespace vorn {
namespace {

std::vector<std::uint8_t> ReadAll(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

TEST(DemoTerrain, FilesReadBackAndTheMaskCoversEveryTexel) {
  const auto dir = std::filesystem::temp_directory_path() / ("vorn_island_" + std::to_string(::getpid()));
  ASSERT_TRUE(tools::WriteIslandTerrain(dir.string()));

  const HeightFile grid = ParseHeightFileBinary(ReadAll(dir / "island.hei"), "island.hei", 1u << 20);
  ASSERT_EQ(grid.Cows, 128);
  ASSERT_EQ(grid.Rows, 128);
  const auto height = [&](int x, int z) { return grid.HeightArray[static_cast<std::size_t>((z + 64) * 129 + x + 64)]; };
  for (int x = -4; x <= 4; ++x) EXPECT_NEAR(height(x, 0), 0.0, 1e-6) << x;
  EXPECT_LT(height(-7, -6), -0.8);  // the pond's bottom, under the water at -0.35
  EXPECT_FLOAT_EQ(static_cast<float>(height(20, 30)), static_cast<float>(tools::IslandHeight(20, 30)));

  const BlendRecord record = ParseBlendRecord(ReadAll(dir / "island.ter"), "island.ter");
  for (const std::string& name : record.ImageFileNames) EXPECT_TRUE(std::filesystem::exists(dir / name)) << name;
  EXPECT_TRUE(std::filesystem::exists(dir / "island.ter_Blend1.tga"));

  const auto mask = DecodePNG(ReadAll(dir / record.ImageFileNames[0]));
  ASSERT_TRUE(mask);
  ASSERT_EQ(mask->mode(), Image::Mode::RGB);
  const auto& px = mask->data();
  for (std::size_t i = 0; i < px.size(); i += 3) ASSERT_EQ(px[i] + px[i + 1] + px[i + 2], 255) << i / 3;
  std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace vorn
