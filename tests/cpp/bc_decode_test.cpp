#include "resource/bc_decode.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>

namespace vorn {
namespace {

using RGB = std::array<int, 3>;

// Expected values were computed independently with the decoder's float formulas in a
// script interpreter (whose int() truncates exactly as the decoder's must).
constexpr std::uint8_t kColorBlock[8] = {0xEF, 0x7B, 0x1F, 0x00, 0b11100100, 0b00011011, 0xFF, 0x55};
constexpr RGB kC0 = {123, 125, 123}, kC1 = {0, 0, 255}, kC2 = {82, 83, 167}, kC3 = {41, 42, 211};

template <int Bands>
RGB texel(const std::uint8_t* out, int x, int y) {
  const std::uint8_t* p = out + (y * 4 + x) * Bands;
  return {p[0], p[1], p[2]};
}

template <int Bands>
void expect_color_rows(const std::uint8_t* out) {
  const RGB rows[4][4] = {{kC0, kC1, kC2, kC3}, {kC3, kC2, kC1, kC0}, {kC3, kC3, kC3, kC3}, {kC1, kC1, kC1, kC1}};
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 4; ++x) EXPECT_EQ((texel<Bands>(out, x, y)), rows[y][x]) << "texel " << x << "," << y;
  }
}

TEST(BCDecode, BC1WidensEndColoursAndPlacesIndicesFromTheLowBits) {
  std::uint8_t out[16 * 3] = {};
  DecodeBC1Block(kColorBlock, out, 4 * 3);
  expect_color_rows<3>(out);
}

TEST(BCDecode, BC1HasNoThreeColourModeWhenTheEndsAreSwapped) {
  // c0 = pure blue < c1 = pure red: index 3 is still an interpolated colour, not black.
  const std::uint8_t block[8] = {0x1F, 0x00, 0x00, 0xF8, 0xFF, 0xFF, 0xAA, 0xAA};
  std::uint8_t out[16 * 3] = {};
  DecodeBC1Block(block, out, 4 * 3);
  EXPECT_EQ((texel<3>(out, 0, 0)), (RGB{170, 0, 85}));
  EXPECT_EQ((texel<3>(out, 3, 2)), (RGB{85, 0, 170}));
}

TEST(BCDecode, BC2KeepsAlphaAsStoredZeroToFifteen) {
  std::uint8_t block[16] = {0x10, 0x32, 0x54, 0x76, 0x98, 0xBA, 0xDC, 0xFE};
  for (int i = 0; i < 8; ++i) block[8 + i] = kColorBlock[i];
  std::uint8_t out[16 * 4] = {};
  DecodeBC2Block(block, out, 4 * 4);
  expect_color_rows<4>(out);
  for (int i = 0; i < 16; ++i) EXPECT_EQ(out[i * 4 + 3], i) << "texel " << i;
}

TEST(BCDecode, BC3AlphaModesTruncateTheirFloatWeights) {
  struct Case {
    const char* name;
    std::uint8_t a0, a1;
    std::array<int, 16> alpha;
  };
  // Indices 0..7 for rows 0-1 and 7..0 for rows 2-3 show the whole table.
  // 1 <= 6: fifths with 0 and 255; 0.4 * 1 + 0.6 * 6 truncates to 3, not 4.
  // 9 > 2: sevenths; 6/7 * 9 + 1/7 * 2 truncates to 7, not 8.
  const Case cases[] = {
      {"fifths", 1, 6, {1, 6, 2, 3, 3, 5, 0, 255, 255, 0, 5, 3, 3, 2, 6, 1}},
      {"sevenths", 9, 2, {9, 2, 7, 7, 5, 5, 4, 3, 3, 4, 5, 5, 7, 7, 2, 9}},
      {"sevenths full range", 255, 0, {255, 0, 218, 182, 145, 109, 72, 36, 36, 72, 109, 145, 182, 218, 0, 255}},
      {"equal ends", 200, 200, {200, 200, 200, 200, 200, 200, 0, 255, 255, 0, 200, 200, 200, 200, 200, 200}},
  };
  for (const Case& c : cases) {
    std::uint8_t block[16] = {c.a0, c.a1, 0x88, 0xC6, 0xFA, 0x77, 0x39, 0x05};
    for (int i = 0; i < 8; ++i) block[8 + i] = kColorBlock[i];
    std::uint8_t out[16 * 4] = {};
    DecodeBC3Block(block, out, 4 * 4);
    expect_color_rows<4>(out);
    for (int i = 0; i < 16; ++i) EXPECT_EQ(out[i * 4 + 3], c.alpha[static_cast<std::size_t>(i)]) << c.name << " texel " << i;
  }
}

TEST(BCDecode, SurfaceRunsBlocksInRowsFromTheTop) {
  // 8 by 8 BC1: four blocks, each a single colour by its index byte pattern.
  const std::uint8_t solid[4][8] = {
      {0x00, 0xF8, 0x00, 0x00, 0, 0, 0, 0},  // red
      {0xE0, 0x07, 0x00, 0x00, 0, 0, 0, 0},  // green
      {0x1F, 0x00, 0x00, 0x00, 0, 0, 0, 0},  // blue
      {0xFF, 0xFF, 0x00, 0x00, 0, 0, 0, 0},  // white
  };
  std::uint8_t data[32];
  for (int b = 0; b < 4; ++b) {
    for (int i = 0; i < 8; ++i) data[b * 8 + i] = solid[b][i];
  }
  Image image(Image::Mode::RGB, 8, 8);
  DecodeBCSurface(BCKind::BC1, data, image);
  const auto px = [&](int x, int y) {
    const Image::Pixel p = image.getpixel(x, y);
    return RGB{p.c[0], p.c[1], p.c[2]};
  };
  EXPECT_EQ(px(3, 3), (RGB{255, 0, 0}));
  EXPECT_EQ(px(4, 0), (RGB{0, 255, 0}));
  EXPECT_EQ(px(0, 4), (RGB{0, 0, 255}));
  EXPECT_EQ(px(7, 7), (RGB{255, 255, 255}));
}

}  // namespace
}  // namespace vorn
