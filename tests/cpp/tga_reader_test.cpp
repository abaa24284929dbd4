#include "resource/tga_reader.h"

#include <gtest/gtest.h>

#include "console_capture.h"
#include "image_test_files.h"

namespace vorn {
namespace {

using test::Bytes;
using test::MakeTGA;

std::array<int, 4> rgba(const Image& im, int x, int y) {
  const Image::Pixel p = im.getpixel(x, y);
  return {p.c[0], p.c[1], p.c[2], p.c[3]};
}

TEST(TGAReader, TwentyFourBitReadsBGRInFileOrderWithOpaqueAlpha) {
  // 2 by 2, descriptor 0: file rows go to image rows as they come.
  const Bytes px = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  const ImageLoadResult r = ReadTGA(MakeTGA(2, 2, 2, 24, 0, px));
  ASSERT_TRUE(r.image);
  EXPECT_EQ(r.width, 2);
  EXPECT_EQ(r.height, 2);
  EXPECT_TRUE(r.flag);
  EXPECT_EQ(r.image->mode(), Image::Mode::RGBA);
  EXPECT_EQ(rgba(*r.image, 0, 0), (std::array<int, 4>{3, 2, 1, 255}));
  EXPECT_EQ(rgba(*r.image, 1, 0), (std::array<int, 4>{6, 5, 4, 255}));
  EXPECT_EQ(rgba(*r.image, 0, 1), (std::array<int, 4>{9, 8, 7, 255}));
}

TEST(TGAReader, AnyNonZeroDescriptorFlipsTheRows) {
  // 32-bit with only the alpha-depth bits set (8) flips like the top-origin bit (0x20).
  const Bytes px = {1, 2, 3, 4, 5, 6, 7, 8};  // 1 by 2
  for (std::uint8_t descriptor : {std::uint8_t{8}, std::uint8_t{0x20}}) {
    const ImageLoadResult r = ReadTGA(MakeTGA(2, 1, 2, 32, descriptor, px));
    ASSERT_TRUE(r.image);
    EXPECT_EQ(rgba(*r.image, 0, 0), (std::array<int, 4>{7, 6, 5, 8})) << int(descriptor);
    EXPECT_EQ(rgba(*r.image, 0, 1), (std::array<int, 4>{3, 2, 1, 4})) << int(descriptor);
  }
}

TEST(TGAReader, DepthsBelowTwentyFourBitsReadThreeBytesAPixel) {
  for (std::uint8_t depth : {std::uint8_t{8}, std::uint8_t{16}}) {
    const Bytes px = {1, 2, 3, 4, 5, 6};
    const ImageLoadResult r = ReadTGA(MakeTGA(3, 2, 1, depth, 0, px));
    ASSERT_TRUE(r.image) << int(depth);
    EXPECT_EQ(rgba(*r.image, 1, 0), (std::array<int, 4>{6, 5, 4, 255}));
    // Two pixels need six bytes: five are too few.
    EXPECT_FALSE(ReadTGA(MakeTGA(3, 2, 1, depth, 0, {1, 2, 3, 4, 5})).image);
  }
}

TEST(TGAReader, MalformedFilesGiveTheFailureValue) {
  struct Case {
    const char* name;
    Bytes file;
  };
  const Bytes four = {1, 2, 3, 4};
  Bytes short_header = MakeTGA(2, 1, 1, 24, 0, {});
  short_header.pop_back();
  const Case cases[] = {
      {"empty file", {}},
      {"header cut at 17 bytes", short_header},
      {"run-length file", MakeTGA(10, 1, 1, 24, 0, {0x80, 1, 2, 3})},
      {"run-length file without pixels", MakeTGA(10, 0, 0, 24, 0, {})},
      {"pixels one byte short", MakeTGA(2, 1, 1, 32, 0, {1, 2, 3})},
      {"width 65535 reads as -1", MakeTGA(2, 65535, 1, 24, 0, four)},
      {"height 65535 reads as -1", MakeTGA(2, 1, 65535, 24, 0, four)},
      {"32767 squared with four bytes of pixels", MakeTGA(2, 32767, 32767, 32, 0, four)},
  };
  for (const Case& c : cases) {
    const ImageLoadResult r = ReadTGA(c.file);
    EXPECT_TRUE(r.failed()) << c.name;
    EXPECT_TRUE(r.has_flag) << c.name;
  }
}

TEST(TGAReader, ZeroWidthAndLoadingByNameOrPath) {
  const ImageLoadResult r = ReadTGA(MakeTGA(2, 0, 3, 24, 0, {}));
  ASSERT_TRUE(r.image);
  EXPECT_EQ(r.image->width(), 0);
  EXPECT_EQ(r.height, 3);

  // The lookup's message for duplicates is the image loader's (tested there); the first path is read.
  test::TempDir dir;
  const std::string a = dir.write("a.tga", MakeTGA(2, 1, 1, 24, 0, {1, 2, 3}));
  const std::string b = dir.write("b.tga", MakeTGA(2, 1, 1, 24, 0, {9, 9, 9}));
  ConsoleCapture console;
  EXPECT_EQ(rgba(*LoadTGA(a).image, 0, 0)[0], 3);
  EXPECT_TRUE(LoadTGA(dir.file("missing.tga")).failed());
  const ResPathLookup lookup = [&](const std::string& name, const std::optional<std::string>& dirName) {
    EXPECT_EQ(name, "wall.tga");
    EXPECT_FALSE(dirName);
    return ResPathResult(std::vector<std::string>{a, b});
  };
  EXPECT_EQ(rgba(*LoadTGA("wall.tga", lookup).image, 0, 0)[0], 3);
  EXPECT_EQ(console.lines(), std::vector<std::string>{"wall.tga  has  2  same image."});
}

}  // namespace
}  // namespace vorn
