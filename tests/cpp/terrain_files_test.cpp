// The terrain file readers on bytes: valid height files in both forms, blend records,
// and a table of malformed input with the exact error each gives.
#include "landscape/terrain_files.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "core/errors.h"
#include "terrain_test_files.h"

namespace vorn {
namespace {

using test::BlendRecordBytes;
using test::Bytes;
using test::HeightFileBytes;

constexpr std::size_t kLimit = std::size_t{1} << 26;

TEST(TerrainFiles, BinaryHeightFileGivesTheGridRowByRow) {
  // A 2 by 2 grid is 8 + 9 * 4 = 44 bytes; bytes past the heights are not read.
  const std::vector<float> heights{0.0f, 0.5f, -1.25f, 3.0f, 1e-3f, 7.0f, -0.0f, 2.5f, 1e6f};
  Bytes bytes = HeightFileBytes(2, 2, heights);
  ASSERT_EQ(bytes.size(), 44u);
  bytes.insert(bytes.end(), {1, 2, 3});
  const HeightFile grid = ParseHeightFileBinary(bytes, "h.hei", kLimit);
  EXPECT_EQ(grid.Cows, 2);
  EXPECT_EQ(grid.Rows, 2);
  ASSERT_EQ(grid.HeightArray.size(), 9u);
  for (std::size_t i = 0; i < 9; ++i) EXPECT_EQ(grid.HeightArray[i], static_cast<double>(heights[i])) << i;

  // Uneven counts: Cows is the row length. A grid of no tiles is one point.
  const HeightFile wide = ParseHeightFileBinary(HeightFileBytes(3, 1, {0, 1, 2, 3, 4, 5, 6, 7}), "w.hei", kLimit);
  EXPECT_EQ(wide.Cows, 3);
  EXPECT_EQ(wide.Rows, 1);
  EXPECT_EQ(wide.HeightArray[4], 4.0);
  EXPECT_EQ(ParseHeightFileBinary(HeightFileBytes(0, 0, {9}), "p.hei", kLimit).HeightArray, std::vector<double>{9.0});
}

TEST(TerrainFiles, TextHeightFileReadsNumbersAsFloatAndIntDo) {
  // Whitespace around fields, exponents, signs, underscores and the special values are
  // numbers; heights are doubles, not rounded to float; fields past the grid are not read.
  const std::string text = "1, 1 ,0.1,\t-2e1 ,1_000, inf\n,x,y";
  const HeightFile grid = ParseHeightFileText(text, "t.txt", kLimit);
  EXPECT_EQ(grid.Cows, 1);
  EXPECT_EQ(grid.Rows, 1);
  ASSERT_EQ(grid.HeightArray.size(), 4u);
  EXPECT_EQ(grid.HeightArray[0], 0.1);
  EXPECT_EQ(grid.HeightArray[1], -20.0);
  EXPECT_EQ(grid.HeightArray[2], 1000.0);
  EXPECT_EQ(grid.HeightArray[3], std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isnan(ParseHeightFileText("0,0,NaN", "n.txt", kLimit).HeightArray[0]));
}

TEST(TerrainFiles, MalformedHeightFilesNameTheFileAndTheFault) {
  struct Case {
    const char* name;
    bool binary;
    Bytes bytes;
    std::size_t limit;
    std::string message;
  };
  const auto text = [](const std::string& t) { return Bytes(t.begin(), t.end()); };
  Bytes truncated = HeightFileBytes(2, 2, std::vector<float>(9, 1.0f));
  truncated.pop_back();
  const std::vector<Case> cases = {
      {"empty", true, {}, kLimit, "'f': a binary height file starts with an 8-byte header, the file has 0 bytes"},
      {"short header", true, {2, 0, 0, 0, 2, 0, 0}, kLimit,
       "'f': a binary height file starts with an 8-byte header, the file has 7 bytes"},
      {"negative cows", true, HeightFileBytes(-1, 2, {}), kLimit, "'f': a grid of -1 by 2 tiles has a negative tile count"},
      {"negative rows", true, HeightFileBytes(1, -2147483647 - 1, {}), kLimit,
       "'f': a grid of 1 by -2147483648 tiles has a negative tile count"},
      {"one byte short", true, truncated, kLimit, "'f': a grid of 2 by 2 tiles needs 9 heights, the file holds 8"},
      // 2^31 by 2^31 points claimed by a 12-byte file: refused before any allocation.
      {"huge claim", true, HeightFileBytes(2147483647, 2147483647, {0}), kLimit,
       "'f': a grid of 2147483647 by 2147483647 tiles needs 4611686018427387904 heights, the file holds 1"},
      {"more than a terrain holds", true, HeightFileBytes(2, 2, std::vector<float>(9, 0.0f)), 8,
       "'f': a grid of 2 by 2 tiles has 9 points, more than the 8 a terrain holds"},
      {"text empty", false, {}, kLimit, "'f': a text height file starts with the fields Cows and Rows, the file has 1 field"},
      {"text one field", false, text("4"), kLimit,
       "'f': a text height file starts with the fields Cows and Rows, the file has 1 field"},
      {"text word count", false, text("two,1,0,0,0,0"), kLimit, "'f': field 0 (Cows) is not an integer: 'two'"},
      {"text float count", false, text("1,1.0,0,0,0,0"), kLimit, "'f': field 1 (Rows) is not an integer: '1.0'"},
      {"text empty count", false, text(",1"), kLimit, "'f': field 0 (Cows) is not an integer: ''"},
      {"text negative", false, text("1,-1"), kLimit, "'f': a grid of 1 by -1 tiles has a negative tile count"},
      {"text beyond int", false, text("3000000000,1"), kLimit,
       "'f': a grid of 3000000000 by 1 tiles has too many points, more than the 67108864 a terrain holds"},
      {"text too few heights", false, text("2,2,1,2,3"), kLimit, "'f': a grid of 2 by 2 tiles needs 9 heights, the file has 3"},
      {"text word height", false, text("1,1,0,0,hill,0"), kLimit, "'f': field 4 (height 2) is not a number: 'hill'"},
      {"text empty height", false, text("1,1,0,,0,0"), kLimit, "'f': field 3 (height 1) is not a number: ''"},
      {"text two numbers in a field", false, text("1,1,0,0,0,1 2"), kLimit,
       "'f': field 5 (height 3) is not a number: '1 2'"},
  };
  for (const Case& c : cases) {
    try {
      if (c.binary) {
        ParseHeightFileBinary(c.bytes, "f", c.limit);
      } else {
        ParseHeightFileText(std::string_view(reinterpret_cast<const char*>(c.bytes.data()), c.bytes.size()), "f", c.limit);
      }
      ADD_FAILURE() << c.name << ": no exception";
    } catch (const ValueError& e) {
      EXPECT_EQ(std::string(e.what()), c.message) << c.name;
    }
  }
}

TEST(TerrainFiles, BlendRecordGivesNamesAndDensities) {
  // ".jpg" becomes ".dds" wherever it stands, in that case only; a 64-byte name has no
  // zero byte and is taken whole; bytes past the record are not read.
  const std::string full(60, 'n');
  Bytes bytes = BlendRecordBytes({"mask.tga", "grass.jpg", full + ".jpg", "a.jpg.jpg.JPG", ""},
                                 {1.0f, 0.25f, 8.0f, -2.0f, 0.0f});
  ASSERT_EQ(bytes.size(), 340u);
  bytes.push_back(7);
  const BlendRecord record = ParseBlendRecord(bytes, "b.ter");
  EXPECT_EQ(record.ImageFileNames[0], "mask.tga");
  EXPECT_EQ(record.ImageFileNames[1], "grass.dds");
  EXPECT_EQ(record.ImageFileNames[2], full + ".dds");
  EXPECT_EQ(record.ImageFileNames[3], "a.dds.dds.JPG");
  EXPECT_EQ(record.ImageFileNames[4], "");
  EXPECT_EQ(record.Densities, (std::array<double, 5>{1.0, 0.25, 8.0, -2.0, 0.0}));
  // A short record is the script suite's case (test_terrain.py), message and all.
}

}  // namespace
}  // namespace vorn
