#include <gtest/gtest.h>
#include <turbojpeg.h>

#include <cstdlib>

#include "console_capture.h"
#include "core/errors.h"
#include "image_test_files.h"
#include "resource/image.h"
#include "resource/image_file_loader.h"
#include "resource/png_codec.h"

namespace vorn {
namespace {

using test::Bytes;

std::array<int, 4> px(const Image& im, int x, int y) {
  const Image::Pixel p = im.getpixel(x, y);
  return {p.c[0], p.count > 1 ? p.c[1] : -1, p.count > 2 ? p.c[2] : -1, p.count > 3 ? p.c[3] : -1};
}

// A gradient image so that rows and columns can't be confused.
std::shared_ptr<Image> gradient(Image::Mode mode, int w, int h) {
  auto im = std::make_shared<Image>(mode, w, h);
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      im->putpixel(x, y, {{std::uint8_t(x * 10), std::uint8_t(y * 20), std::uint8_t(x + y), std::uint8_t(255 - x)}, 4});
    }
  }
  return im;
}

Bytes encode_jpeg(const Image& im, int subsamp) {
  tjhandle tj = tjInitCompress();
  unsigned char* out = nullptr;
  unsigned long size = 0;
  const int pf = im.mode() == Image::Mode::L ? TJPF_GRAY : TJPF_RGB;
  EXPECT_EQ(tjCompress2(tj, im.data().data(), im.width(), 0, im.height(), pf, &out, &size, subsamp, 95, 0), 0);
  Bytes bytes(out, out + size);
  tjFree(out);
  tjDestroy(tj);
  return bytes;
}

std::uint32_t crc32(const std::uint8_t* p, std::size_t n) {
  std::uint32_t c = 0xFFFFFFFFu;
  for (std::size_t i = 0; i < n; ++i) {
    c ^= p[i];
    for (int k = 0; k < 8; ++k) c = (c >> 1) ^ (0xEDB88320u & (0u - (c & 1u)));
  }
  return ~c;
}

// A PNG whose header claims another size, with a correct header checksum.
Bytes png_with_size(Bytes png, std::uint32_t w, std::uint32_t h) {
  for (int i = 0; i < 4; ++i) {
    png[16 + i] = std::uint8_t(w >> (24 - 8 * i));
    png[20 + i] = std::uint8_t(h >> (24 - 8 * i));
  }
  const std::uint32_t c = crc32(&png[12], 17);
  for (int i = 0; i < 4; ++i) png[29 + i] = std::uint8_t(c >> (24 - 8 * i));
  return png;
}

// A JPEG whose frame header claims another size.
Bytes jpeg_with_size(Bytes jpg, std::uint16_t w, std::uint16_t h) {
  for (std::size_t i = 2; i + 9 < jpg.size(); ++i) {
    if (jpg[i] == 0xFF && (jpg[i + 1] == 0xC0 || jpg[i + 1] == 0xC2)) {
      jpg[i + 5] = std::uint8_t(h >> 8);
      jpg[i + 6] = std::uint8_t(h);
      jpg[i + 7] = std::uint8_t(w >> 8);
      jpg[i + 8] = std::uint8_t(w);
      break;
    }
  }
  return jpg;
}

Bytes half(const Bytes& b) { return Bytes(b.begin(), b.begin() + static_cast<std::ptrdiff_t>(b.size() / 2)); }

// Wrapping from -1, alpha 255 for three channels and a column past the end are the
// script suite's checks (test_images.py).
TEST(ImageObject, PixelAccessChecksBounds) {
  Image im(Image::Mode::RGBA, 3, 2, {{1, 2, 3, 4}, 4});
  im.putpixel(-1, 0, {{9, 8, 7, 0}, 3});
  EXPECT_EQ(px(im, 2, 0), (std::array<int, 4>{9, 8, 7, 255}));
  EXPECT_THROW(im.getpixel(0, -3), IndexError);
  EXPECT_THROW(im.putpixel(0, 2, {}), IndexError);
  EXPECT_THROW(Image("RGB", -1, 1), ValueError);
  EXPECT_THROW(Image("P", 1, 1), ValueError);
}

TEST(ImageObject, FlipsConvertsAndGivesRowsBottomUp) {
  const auto im = gradient(Image::Mode::RGB, 3, 2);
  const auto lr = im->transpose(Image::FLIP_LEFT_RIGHT);
  EXPECT_EQ(px(*lr, 0, 1), px(*im, 2, 1));
  const auto tb = im->transpose(Image::FLIP_TOP_BOTTOM);
  EXPECT_EQ(px(*tb, 1, 0), px(*im, 1, 1));
  const std::vector<std::uint8_t> up = im->bytes_bottom_up();
  EXPECT_EQ(up, tb->tobytes());

  Image rgb(Image::Mode::RGB, 1, 1, {{255, 128, 0, 0}, 3});
  // 0.299 * 255 + 0.587 * 128 = 151.4
  EXPECT_EQ(px(*rgb.convert(Image::Mode::L), 0, 0)[0], 151);
  EXPECT_EQ(px(*rgb.convert(Image::Mode::RGBA), 0, 0), (std::array<int, 4>{255, 128, 0, 255}));
}

TEST(ImageCodec, PngRoundTripKeepsModeAndEveryPixel) {
  test::TempDir dir;
  for (Image::Mode mode : {Image::Mode::L, Image::Mode::RGB, Image::Mode::RGBA}) {
    const auto im = gradient(mode, 5, 3);
    const std::string path = dir.file(std::string("g_") + Image::ModeName(mode) + ".png");
    im->save(path);
    const ImageLoadResult r = LoadImageFile(path);
    ASSERT_TRUE(r.image) << Image::ModeName(mode);
    EXPECT_EQ(r.image->mode(), mode);
    EXPECT_EQ(r.width, 5);
    EXPECT_EQ(r.height, 3);
    EXPECT_FALSE(r.flag);
    EXPECT_EQ(r.image->tobytes(), im->tobytes()) << Image::ModeName(mode);
  }
  EXPECT_THROW(gradient(Image::Mode::RGB, 2, 2)->save(dir.file("g.jpg")), ValueError);
}

TEST(ImageCodec, JpegDecodesColourAndGrey) {
  test::TempDir dir;
  const Image flat(Image::Mode::RGB, 16, 16, {{200, 100, 50, 0}, 3});
  const ImageLoadResult rgb = LoadImageFile(dir.write("flat.jpg", encode_jpeg(flat, TJSAMP_420)));
  ASSERT_TRUE(rgb.image);
  EXPECT_EQ(rgb.image->mode(), Image::Mode::RGB);
  EXPECT_EQ(rgb.width, 16);
  const auto c = px(*rgb.image, 7, 9);
  EXPECT_NEAR(c[0], 200, 3);
  EXPECT_NEAR(c[1], 100, 3);
  EXPECT_NEAR(c[2], 50, 3);

  const Image grey(Image::Mode::L, 8, 8, {{77, 0, 0, 0}, 1});
  const ImageLoadResult l = LoadImageFile(dir.write("grey.jpg", encode_jpeg(grey, TJSAMP_GRAY)));
  ASSERT_TRUE(l.image);
  EXPECT_EQ(l.image->mode(), Image::Mode::L);
  EXPECT_NEAR(px(*l.image, 3, 3)[0], 77, 1);
}

TEST(ImageCodec, ExtensionDecidesWhatIsReadAndContentHowItIsDecoded) {
  test::TempDir dir;
  const Bytes png = EncodePNG(*gradient(Image::Mode::RGB, 2, 2));
  EXPECT_TRUE(LoadImageFile(dir.write("caps.PNG", png)).image);
  EXPECT_TRUE(LoadImageFile(dir.write("png_named.jpg", png)).image) << "a PNG named .jpg decodes";
  EXPECT_TRUE(LoadImageFile(dir.write("x.jpeg", png)).failed());

  // A bitmap name never reaches the lookup or the disk.
  int calls = 0;
  const ResPathLookup counting = [&](const std::string&, const std::optional<std::string>&) {
    ++calls;
    return ResPathResult{};
  };
  EXPECT_TRUE(LoadImageFile(dir.write("x.bmp", png), std::nullopt, counting).failed());
  EXPECT_TRUE(LoadImageFile("absent.bmp", std::nullopt, counting).failed());
  EXPECT_EQ(calls, 0);
  EXPECT_TRUE(LoadImageFile("absent.png", std::nullopt, counting).failed());
  EXPECT_EQ(calls, 1);
}

TEST(ImageCodec, NamesNotFoundGoThroughTheLookupWithTheirFolder) {
  test::TempDir dir;
  const std::string first = dir.write("first.png", EncodePNG(*gradient(Image::Mode::RGB, 2, 1)));
  const std::string second = dir.write("second.png", EncodePNG(*gradient(Image::Mode::RGB, 4, 1)));
  ConsoleCapture console;
  std::optional<std::string> seen_dir;
  const ResPathLookup lookup = [&](const std::string& name, const std::optional<std::string>& dirName) {
    seen_dir = dirName;
    if (name == "one.png") return ResPathResult(second);
    if (name == "two.png") return ResPathResult(std::vector<std::string>{first, second});
    if (name == "gone.png") return ResPathResult(dir.file("deleted.png"));
    return ResPathResult{};
  };
  EXPECT_EQ(LoadImageFile("one.png", "Scene", lookup).width, 4);
  EXPECT_EQ(seen_dir, std::optional<std::string>("Scene"));
  EXPECT_TRUE(console.lines().empty());
  EXPECT_EQ(LoadImageFile("two.png", std::nullopt, lookup).width, 2);
  EXPECT_EQ(console.lines(), std::vector<std::string>{"two.png  has  2  same image."});
  EXPECT_TRUE(LoadImageFile("gone.png", std::nullopt, lookup).failed());
  EXPECT_TRUE(LoadImageFile("unknown.jpg", std::nullopt, lookup).failed());
}

TEST(ImageCodec, MalformedFilesGiveTheFailureValue) {
  const Bytes png = EncodePNG(*gradient(Image::Mode::RGBA, 32, 32));
  const Bytes jpg = encode_jpeg(*gradient(Image::Mode::RGB, 32, 32), TJSAMP_444);
  Bytes bad_crc = png;
  bad_crc[bad_crc.size() - 20] ^= 0x55;  // inside the image data chunk
  struct Case {
    const char* name;
    const char* file_name;
    Bytes bytes;
  };
  const Case cases[] = {
      {"empty png", "e.png", {}},
      {"empty jpg", "e.jpg", {}},
      {"text named png", "t.png", {'h', 'e', 'l', 'l', 'o'}},
      {"png signature only", "s.png", Bytes(png.begin(), png.begin() + 8)},
      {"png cut in half", "h.png", half(png)},
      {"png damaged data", "d.png", bad_crc},
      {"png width 0", "w0.png", png_with_size(png, 0, 32)},
      {"png 65535 by 65535", "big.png", png_with_size(png, 65535, 65535)},
      {"png 2^31 wide", "wide.png", png_with_size(png, 0x80000000u, 1)},
      {"jpg cut in half", "h.jpg", half(jpg)},
      {"jpg markers only", "m.jpg", {0xFF, 0xD8, 0xFF, 0xD9}},
      {"jpg 65535 by 65535", "big.jpg", jpeg_with_size(jpg, 65535, 65535)},
      {"jpg height 0", "h0.jpg", jpeg_with_size(jpg, 32, 0)},
  };
  test::TempDir dir;
  for (const Case& c : cases) {
    EXPECT_TRUE(LoadImageFile(dir.write(c.file_name, c.bytes)).failed()) << c.name;
  }
}

}  // namespace
}  // namespace vorn
