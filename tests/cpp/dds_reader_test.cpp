#include "resource/dds_reader.h"

#include <gtest/gtest.h>

#include "core/errors.h"
#include "resource/dds_formats.h"
#include "image_test_files.h"

namespace vorn {
namespace {

using F = Vorn_DXGI_FORMAT;
using test::Bytes;
using test::DDSHeaderFields;
using test::MakeDDS;
using test::Repeat;
using test::operator+;

// Solid BC1 blocks (index 0 everywhere): c0 red or c0 green.
const Bytes kRedBC1 = {0x00, 0xF8, 0x00, 0x00, 0, 0, 0, 0};
const Bytes kGreenBC1 = {0xE0, 0x07, 0x00, 0x00, 0, 0, 0, 0};
// A BC3 block: alpha 200 (index 0 everywhere), colour red.
const Bytes kBC3 = {200, 100, 0, 0, 0, 0, 0, 0, 0x00, 0xF8, 0x00, 0x00, 0, 0, 0, 0};

std::array<int, 4> px(const Image& im, int x, int y) {
  const Image::Pixel p = im.getpixel(x, y);
  return {p.c[0], p.c[1], p.c[2], p.count == 4 ? p.c[3] : -1};
}

TEST(DDSReader, BlockFormatsDecodeWithTheirModeAndFlag) {
  DDSHeaderFields s;
  s.width = 8;
  const ImageLoadResult bc1 = ReadDDS(MakeDDS(s, kRedBC1 + kGreenBC1));
  ASSERT_TRUE(bc1.image);
  EXPECT_EQ(bc1.image->mode(), Image::Mode::RGB);
  EXPECT_FALSE(bc1.flag);
  EXPECT_EQ(std::make_pair(bc1.width, bc1.height), std::make_pair(8, 4));
  EXPECT_EQ(px(*bc1.image, 3, 3), (std::array<int, 4>{255, 0, 0, -1}));
  EXPECT_EQ(px(*bc1.image, 4, 0), (std::array<int, 4>{0, 255, 0, -1}));

  for (const char* fourCC : {"DXT4", "DXT5"}) {
    s.fourCC = fourCC;
    const ImageLoadResult bc3 = ReadDDS(MakeDDS(s, Repeat(kBC3, 2)));
    ASSERT_TRUE(bc3.image) << fourCC;
    EXPECT_EQ(bc3.image->mode(), Image::Mode::RGBA);
    EXPECT_TRUE(bc3.flag);
    EXPECT_EQ(px(*bc3.image, 7, 3), (std::array<int, 4>{255, 0, 0, 200}));
  }
  s.fourCC = "DXT3";
  const ImageLoadResult bc2 = ReadDDS(MakeDDS(s, Repeat(Bytes(8, 0xFF) + kRedBC1, 2)));
  ASSERT_TRUE(bc2.image);
  EXPECT_TRUE(bc2.flag);
  EXPECT_EQ(px(*bc2.image, 0, 0), (std::array<int, 4>{255, 0, 0, 15}));
}

TEST(DDSReader, EveryPassReadsAFullSurfaceAndTheLastWins) {
  DDSHeaderFields s;
  // 4 by 4 with two mips: the second level's single block is read as a full surface.
  s.mipCount = 2;
  const ImageLoadResult two = ReadDDS(MakeDDS(s, kRedBC1 + kGreenBC1));
  ASSERT_TRUE(two.image);
  EXPECT_EQ(px(*two.image, 0, 0), (std::array<int, 4>{0, 255, 0, -1}));

  // 8 by 8 with a full chain of four mips holds 4 + 1 + 1 + 1 blocks, but four passes
  // of four blocks need sixteen: it runs past its end.
  s.width = s.height = 8;
  s.mipCount = 4;
  EXPECT_TRUE(ReadDDS(MakeDDS(s, Repeat(kRedBC1, 7))).failed());

  // A mip count of 0 is read as 1.
  s.mipCount = 0;
  EXPECT_TRUE(ReadDDS(MakeDDS(s, Repeat(kRedBC1, 4))).image);
}

TEST(DDSReader, CubeMapsNeedAllSixFacesAndDecodeTheLast) {
  DDSHeaderFields s;
  s.caps2 = static_cast<std::uint32_t>(Vorn_DDS_CUBE::DDS_CUBEMAP_ALLFACES);
  const ImageLoadResult six = ReadDDS(MakeDDS(s, Repeat(kRedBC1, 5) + kGreenBC1));
  ASSERT_TRUE(six.image);
  EXPECT_EQ(px(*six.image, 0, 0), (std::array<int, 4>{0, 255, 0, -1}));
  // Six faces but one face of data.
  EXPECT_TRUE(ReadDDS(MakeDDS(s, kRedBC1)).failed());

  s.caps2 = static_cast<std::uint32_t>(Vorn_DDS_CUBE::DDS_CUBEMAP_ALLFACES & ~0x8000);  // no -Z
  EXPECT_TRUE(ReadDDS(MakeDDS(s, Repeat(kRedBC1, 6))).failed());

  // A volume flag makes the cube bits irrelevant: one surface.
  s.flags |= 0x800000;
  EXPECT_TRUE(ReadDDS(MakeDDS(s, kRedBC1)).image);
}

TEST(DDSReader, OtherFormatsDecodeNothingButKeepTheirSize) {
  DDSHeaderFields s;
  s.pfFlags = static_cast<std::uint32_t>(F::DDS_RGB);
  s.fourCC = "";
  s.rgbBits = 32;
  s.masks[0] = 0xff;
  s.masks[1] = 0xff00;
  s.masks[2] = 0xff0000;
  s.masks[3] = 0xff000000;
  const ImageLoadResult r = ReadDDS(MakeDDS(s, {}));
  EXPECT_FALSE(r.image);
  EXPECT_EQ(std::make_pair(r.width, r.height), std::make_pair(4, 4));
  EXPECT_TRUE(r.has_flag && !r.flag);
  s = DDSHeaderFields();
  s.fourCC = "ATI2";
  EXPECT_EQ(ReadDDS(MakeDDS(s, Repeat(kBC3, 1))).width, 4);
}

TEST(DDSReader, MalformedFilesGiveTheFailureValue) {
  struct Case {
    const char* name;
    Bytes file;
  };
  const auto header = [](auto change) {
    DDSHeaderFields s;
    change(s);
    return s;
  };
  Bytes short_header = MakeDDS(DDSHeaderFields(), {});
  short_header.pop_back();
  Bytes bad_magic = MakeDDS(DDSHeaderFields(), kRedBC1);
  bad_magic[3] = 'X';
  // A DX10 header with BC1_UNORM and a 2D dimension still doesn't load.
  Bytes dx10;
  for (std::uint32_t v : {71u, 3u, 0u, 1u, 0u}) test::append_u32(dx10, v);
  const Case cases[] = {
      {"empty file", {}},
      {"magic only", {'D', 'D', 'S', ' '}},
      {"bad magic", bad_magic},
      {"header cut at 127 bytes", short_header},
      {"block data one byte short", [] {
         Bytes b = MakeDDS(DDSHeaderFields(), kRedBC1);
         b.pop_back();
         return b;
       }()},
      {"DX10 header", MakeDDS(header([](DDSHeaderFields& s) { s.fourCC = "DX10"; }), dx10 + kRedBC1)},
      {"DX10 header cut short", MakeDDS(header([](DDSHeaderFields& s) { s.fourCC = "DX10"; }), {1, 2})},
      {"6 by 6 BC1 writes past the image", MakeDDS(header([](DDSHeaderFields& s) { s.width = s.height = 6; }),
                                                   Repeat(kRedBC1, 4))},
      {"width 65535", MakeDDS(header([](DDSHeaderFields& s) { s.width = 65535; }), kRedBC1)},
      {"height 65535", MakeDDS(header([](DDSHeaderFields& s) { s.height = 65535; }), kRedBC1)},
      {"width 16385", MakeDDS(header([](DDSHeaderFields& s) { s.width = 16385; }), kRedBC1)},
      {"negative width", MakeDDS(header([](DDSHeaderFields& s) { s.width = 0xFFFFFFF0u; }), kRedBC1)},
      {"16384 squared with one block", MakeDDS(header([](DDSHeaderFields& s) { s.width = s.height = 16384; }), kRedBC1)},
      {"fourCC not UTF-8", MakeDDS(header([](DDSHeaderFields& s) { s.fourCC = "\xC3("; }), kRedBC1)},
  };
  for (const Case& c : cases) {
    const ImageLoadResult r = ReadDDS(c.file);
    EXPECT_TRUE(r.failed()) << c.name;
    EXPECT_TRUE(r.has_flag) << c.name;
  }
}

TEST(DDSReader, EdgeCasesOfSizeMipCountAndPath) {
  DDSHeaderFields s;
  s.width = 0;  // an empty image of that size
  const ImageLoadResult empty = ReadDDS(MakeDDS(s, {}));
  ASSERT_TRUE(empty.image);
  EXPECT_EQ(empty.image->width(), 0);
  EXPECT_EQ(empty.height, 4);
  // More than fifteen mips give the failure without a flag field.
  s = DDSHeaderFields();
  s.mipCount = 16;
  const ImageLoadResult r = ReadDDS(MakeDDS(s, Repeat(kRedBC1, 16)));
  EXPECT_TRUE(r.failed());
  EXPECT_FALSE(r.has_flag);
  s.mipCount = 15;
  EXPECT_TRUE(ReadDDS(MakeDDS(s, Repeat(kRedBC1, 15))).has_flag);

  test::TempDir dir;
  EXPECT_TRUE(LoadDDS(dir.write("t.dds", MakeDDS(DDSHeaderFields(), kRedBC1))).image);
  EXPECT_TRUE(LoadDDS(dir.file("none.dds")).failed());
}

TEST(DXGIFormat, LegacyPixelFormatsMapByFlagsMasksAndFourCC) {
  struct Case {
    std::int64_t flags, bits, r, g, b, a;
    const char* fourCC;
    std::int64_t expected;
  };
  const Case cases[] = {
      {F::DDS_RGB, 32, 0xff, 0xff00, 0xff0000, 0xff000000, "", F::DXGI_FORMAT_R8G8B8A8_UNORM},
      // A mask read as a signed field never equals a constant with the top bit set.
      {F::DDS_RGB, 32, 0xff, 0xff00, 0xff0000, -16777216, "", F::DXGI_FORMAT_UNKNOWN},
      {F::DDS_RGB, 32, 0xff0000, 0xff00, 0xff, 0, "", F::DXGI_FORMAT_B8G8R8X8_UNORM},
      {F::DDS_RGB, 16, 0xf800, 0x7e0, 0x1f, 0, "", F::DXGI_FORMAT_B5G6R5_UNORM},
      {F::DDS_LUMINANCE, 16, 0xff, 0, 0, 0xff00, "", F::DXGI_FORMAT_R8G8_UNORM},
      {F::DDS_ALPHA, 8, 1, 2, 3, 4, "", F::DXGI_FORMAT_A8_UNORM},
      {F::DDS_FOURCC, 0, 0, 0, 0, 0, "DXT2", F::DXGI_FORMAT_BC2_UNORM},
      {F::DDS_FOURCC, 0, 0, 0, 0, 0, "0116", F::DXGI_FORMAT_R32G32B32A32_FLOAT},
      {F::DDS_FOURCC, 0, 0, 0, 0, 0, "dxt1", F::DXGI_FORMAT_UNKNOWN},
      // The RGB group decides alone, even when a fourCC is flagged too.
      {F::DDS_RGB | F::DDS_FOURCC, 24, 0, 0, 0, 0, "DXT1", F::DXGI_FORMAT_UNKNOWN},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(F::GetDXGIFormat(c.flags, c.bits, c.r, c.g, c.b, c.a, c.fourCC), c.expected)
        << c.fourCC << " flags " << c.flags << " bits " << c.bits;
  }
}

TEST(DXGIFormat, SurfaceInfoAndBitsPerPixel) {
  struct Case {
    std::int64_t w, h, fmt, numBytes, rowBytes, numRows;
  };
  const Case cases[] = {
      {6, 6, F::DXGI_FORMAT_BC1_UNORM, 32, 16, 2},     {1, 1, F::DXGI_FORMAT_BC3_UNORM, 16, 16, 1},
      {0, 5, F::DXGI_FORMAT_BC7_UNORM, 0, 0, 2},       {3, 2, F::DXGI_FORMAT_YUY2, 16, 8, 2},
      {5, 1, F::DXGI_FORMAT_NV11, 16, 8, 2},           {4, 3, F::DXGI_FORMAT_P010, 40, 8, 5},
      {3, 2, F::DXGI_FORMAT_R8G8B8A8_UNORM, 24, 12, 2}, {5, 1, F::DXGI_FORMAT_R1_UNORM, 1, 1, 1},
      {7, 7, 9999, 0, 0, 7},
  };
  for (const Case& c : cases) {
    const auto info = F::GetSurfaceInfo(c.w, c.h, c.fmt);
    EXPECT_EQ(info.numBytes, c.numBytes) << c.fmt;
    EXPECT_EQ(info.rowBytes, c.rowBytes) << c.fmt;
    EXPECT_EQ(info.numRows, c.numRows) << c.fmt;
  }
  // Sizes past 64 bits are refused rather than wrapped.
  constexpr std::int64_t kHuge = std::int64_t{1} << 40;
  EXPECT_EQ(F::GetSurfaceInfo(kHuge, 1, F::DXGI_FORMAT_R32G32B32A32_FLOAT).numBytes, kHuge * 16);
  EXPECT_THROW(F::GetSurfaceInfo(kHuge, kHuge, F::DXGI_FORMAT_R32G32B32A32_FLOAT), ValueError);
  EXPECT_THROW(F::GetSurfaceInfo(INT64_MAX, 1, F::DXGI_FORMAT_BC1_UNORM), ValueError);
  for (const auto& [fmt, bits] : {std::pair{F::DXGI_FORMAT_R32G32B32A32_FLOAT, 128}, {F::DXGI_FORMAT_B8G8R8X8_UNORM_SRGB, 32},
                                  {F::DXGI_FORMAT_NV12, 12}, {F::DXGI_FORMAT_BC1_UNORM, 4}, {F::DXGI_FORMAT_BC7_UNORM, 8},
                                  {F::DXGI_FORMAT_FORCE_UINT, 0}}) {
    EXPECT_EQ(F::BitsPerPixel(fmt), bits) << fmt;
  }
  EXPECT_EQ(Vorn_DDS_CUBE::DDS_CUBEMAP_ALLFACES, 0xFE00);
}

}  // namespace
}  // namespace vorn
