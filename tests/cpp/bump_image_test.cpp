// Normal maps derived from a picture's brightness, against values worked out by hand.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "resource/bump_image.h"

namespace vorn {
namespace {

using RGB = std::array<int, 3>;

struct BumpCase {
  std::string name;
  Image::Mode mode;
  int width, height;
  std::vector<std::uint8_t> pixels;
  std::vector<RGB> expected;
};

TEST(BumpImage, NormalsFollowTheBrightnessSteps) {
  // Brightness of a grey v is int(v * 0.9999): 255 gives 254. A step of 254 is a slope
  // of 254 / 512 = 0.496, a normal of (0.444, 0, 0.896): R 113, B 241.
  const std::vector<BumpCase> cases = {
      {"flat picture: normals along z", Image::Mode::L, 3, 2, {77, 77, 77, 77, 77, 77},
       {{0, 0, 255}, {0, 0, 255}, {0, 0, 255}, {0, 0, 255}, {0, 0, 255}, {0, 0, 255}}},
      {"first row and column are flat; a drop to the right tilts +x, a drop downwards +y",
       Image::Mode::L, 3, 2, {0, 255, 0, 0, 0, 0},
       {{0, 0, 255}, {0, 0, 241}, {113, 0, 241},  //
        {0, 0, 255}, {0, 113, 241}, {0, 0, 255}}},
      {"colour weights: pure red is brightness 76", Image::Mode::RGB, 2, 1, {255, 0, 0, 0, 0, 0},
       {{0, 0, 255}, {37, 0, 253}}},
      {"alpha plays no part", Image::Mode::RGBA, 2, 1, {255, 0, 0, 0, 0, 0, 0, 255},
       {{0, 0, 255}, {37, 0, 253}}},
  };
  for (const BumpCase& c : cases) {
    const auto picture = Image::FromBytes(c.mode, c.width, c.height, c.pixels);
    const auto bump = MakeBumpNormalMap(*picture);
    ASSERT_EQ(bump->mode(), Image::Mode::RGB) << c.name;
    ASSERT_EQ(bump->width(), c.width) << c.name;
    ASSERT_EQ(bump->height(), c.height) << c.name;
    for (int y = 0; y < c.height; ++y) {
      for (int x = 0; x < c.width; ++x) {
        const Image::Pixel p = bump->getpixel(x, y);
        const RGB got{p.c[0], p.c[1], p.c[2]};
        EXPECT_EQ(got, c.expected[static_cast<std::size_t>(y * c.width + x)]) << c.name << " at " << x << "," << y;
      }
    }
  }
}

}  // namespace
}  // namespace vorn
