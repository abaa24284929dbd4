#include "terrain_assets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "resource/image.h"
#include "resource/png_codec.h"

namespace vorn::tools {
namespace {

constexpr int kTiles = 128;  // the terrain shader spans its mask over 128 tiles
constexpr double kPondX = -7.0, kPondZ = -6.0, kPondRadius = 3.5;

double Smoothstep(double a, double b, double x) {
  const double t = std::clamp((x - a) / (b - a), 0.0, 1.0);
  return t * t * (3.0 - 2.0 * t);
}

bool WriteBytes(const std::filesystem::path& path, const std::vector<std::uint8_t>& bytes) {
  std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.string().c_str(), "wb"), &std::fclose);
  return file && std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
}

void PutU32(std::vector<std::uint8_t>& out, std::uint32_t v) {
  for (int i = 0; i < 4; ++i) out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}

void PutF32(std::vector<std::uint8_t>& out, float f) {
  std::uint32_t u;
  std::memcpy(&u, &f, 4);
  PutU32(out, u);
}

// A small hash noise in [0, 1) for texture grain.
double Grain(int x, int y, unsigned seed) {
  unsigned h = static_cast<unsigned>(x) * 374761393u + static_cast<unsigned>(y) * 668265263u + seed * 2246822519u;
  h = (h ^ (h >> 13)) * 1274126177u;
  return static_cast<double>((h ^ (h >> 16)) & 0xffff) / 65536.0;
}

// A tileable texture: a base colour with grain and a few darker streaks.
std::vector<std::uint8_t> LayerPNG(std::array<int, 3> base, int grain, unsigned seed) {
  constexpr int kSize = 64;
  Image image(Image::Mode::RGB, kSize, kSize);
  for (int y = 0; y < kSize; ++y) {
    for (int x = 0; x < kSize; ++x) {
      const double n = Grain(x, y, seed) - 0.5 + 0.5 * (Grain(x / 4, y / 4, seed + 1) - 0.5);
      std::uint8_t* px = &image.data()[image.offset(x, y)];
      for (int c = 0; c < 3; ++c) px[c] = static_cast<std::uint8_t>(std::clamp(base[c] + static_cast<int>(n * grain), 0, 255));
    }
  }
  return EncodePNG(image);
}

// The mask's weights at world (x, z), summing to 255: red grass, green sand and the
// path, blue rock. The terrain program takes layer 1 as the mask and paints what the
// three leave with the mask itself, so every texel is fully covered.
std::array<std::uint8_t, 3> MaskAt(double x, double z) {
  const double d = std::hypot(x, z);
  const double pond = std::hypot(x - kPondX, z - kPondZ);
  const double sand = std::max(1.0 - Smoothstep(kPondRadius, kPondRadius + 1.5, pond),
                               1.0 - Smoothstep(0.4, 0.9, std::fabs(d - 3.0)));
  const double rock = Smoothstep(2.6, 3.4, IslandHeight(x, z)) * (1.0 - sand);
  const auto byte = [](double v) { return static_cast<int>(std::lround(std::clamp(v, 0.0, 1.0) * 255.0)); };
  const int g = byte(sand), b = std::min(byte(rock), 255 - g);
  return {static_cast<std::uint8_t>(255 - g - b), static_cast<std::uint8_t>(g), static_cast<std::uint8_t>(b)};
}

// Mask image of `size` texels a side over the whole grid, rows from the top: the bottom
// row lies at z = -64 (texture v runs along +z).
Image MaskImage(int size) {
  Image image(Image::Mode::RGB, size, size);
  const double texel = static_cast<double>(kTiles) / size;
  for (int row = 0; row < size; ++row) {
    for (int col = 0; col < size; ++col) {
      const double x = (col + 0.5) * texel - kTiles / 2, z = kTiles / 2 - (row + 0.5) * texel;
      const auto w = MaskAt(x, z);
      std::memcpy(&image.data()[image.offset(col, row)], w.data(), 3);
    }
  }
  return image;
}

// Uncompressed 24-bit TGA, rows from the top (origin bit set), pixels in BGR order.
std::vector<std::uint8_t> TGA(const Image& image) {
  std::vector<std::uint8_t> out(18, 0);
  out[2] = 2;
  out[12] = static_cast<std::uint8_t>(image.width()), out[13] = static_cast<std::uint8_t>(image.width() >> 8);
  out[14] = static_cast<std::uint8_t>(image.height()), out[15] = static_cast<std::uint8_t>(image.height() >> 8);
  out[16] = 24;
  out[17] = 0x20;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const std::uint8_t* px = &image.data()[image.offset(x, y)];
      out.insert(out.end(), {px[2], px[1], px[0]});
    }
  }
  return out;
}

// A blade: darker at the root, lighter at the tip, a thin vein down the middle.
std::vector<std::uint8_t> GrassBladePNG() {
  constexpr int kW = 16, kH = 64;
  Image image(Image::Mode::RGB, kW, kH);
  for (int y = 0; y < kH; ++y) {
    const double up = 1.0 - static_cast<double>(y) / (kH - 1);  // rows from the top: the tip
    for (int x = 0; x < kW; ++x) {
      const double vein = (x == kW / 2 || x == kW / 2 - 1) ? 0.85 : 1.0;
      std::uint8_t* px = &image.data()[image.offset(x, y)];
      px[0] = static_cast<std::uint8_t>((40 + 70 * up) * vein);
      px[1] = static_cast<std::uint8_t>((90 + 120 * up) * vein);
      px[2] = static_cast<std::uint8_t>((25 + 30 * up) * vein);
    }
  }
  return EncodePNG(image);
}

// The blend record: five 64-byte names, then five densities.
std::vector<std::uint8_t> BlendRecord(const std::array<const char*, 5>& names, const std::array<float, 5>& densities) {
  std::vector<std::uint8_t> out;
  for (const char* name : names) {
    std::array<std::uint8_t, 64> field{};
    std::memcpy(field.data(), name, std::min<std::size_t>(std::strlen(name), field.size()));
    out.insert(out.end(), field.begin(), field.end());
  }
  for (const float d : densities) PutF32(out, d);
  return out;
}

}  // namespace

double IslandHeight(double x, double z) {
  const double d = std::hypot(x, z);
  const double hills = Smoothstep(10.0, 22.0, d) *
                       (2.2 + 1.6 * std::sin(x * 0.15) * std::cos(z * 0.12) + 0.8 * std::sin(x * 0.37 + z * 0.21));
  const double rolling = Smoothstep(5.0, 9.0, d) * 0.15 * std::sin(x * 0.9) * std::sin(z * 0.7);
  const double p = std::hypot(x - kPondX, z - kPondZ) / kPondRadius;
  const double pond = -1.0 * std::max(0.0, 1.0 - p * p);
  return hills + rolling + pond;
}

bool WriteIslandTerrain(const std::string& dirName) {
  const std::filesystem::path dir(dirName);
  std::error_code ec;
  std::filesystem::create_directories(dir, ec);

  std::vector<std::uint8_t> heights;
  PutU32(heights, kTiles);
  PutU32(heights, kTiles);
  for (int row = 0; row <= kTiles; ++row) {
    for (int col = 0; col <= kTiles; ++col) {
      PutF32(heights, static_cast<float>(IslandHeight(col - kTiles / 2, row - kTiles / 2)));
    }
  }
  // The program samples layer 1 as the mask (four texels a tile keep the path round);
  // the blend map file beside the record holds the same map, coarser.
  const Image mask = MaskImage(4 * kTiles);
  bool ok = WriteBytes(dir / "island.hei", heights);
  ok = WriteBytes(dir / "island.ter",
                  BlendRecord({"island_mask.png", "grass.png", "sand.png", "rock.png", "grass.png"},
                              {1.0f, 0.25f, 0.3f, 0.2f, 0.25f})) && ok;
  ok = WriteBytes(dir / "island.ter_Blend1.tga", TGA(MaskImage(kTiles))) && ok;
  ok = WriteBytes(dir / "island_mask.png", EncodePNG(mask)) && ok;
  ok = WriteBytes(dir / "grass.png", LayerPNG({70, 135, 50}, 50, 1)) && ok;
  ok = WriteBytes(dir / "sand.png", LayerPNG({205, 185, 130}, 40, 2)) && ok;
  ok = WriteBytes(dir / "rock.png", LayerPNG({120, 115, 110}, 70, 3)) && ok;
  ok = WriteBytes(dir / "grass_blade.png", GrassBladePNG()) && ok;
  return ok;
}

}  // namespace vorn::tools
