#include "brick_wall.h"

#include <turbojpeg.h>

#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace vorn::tools {
namespace {

constexpr int kSize = 512;

// Bricks of 64 by 32 pixels in running bond, with grey mortar and a little noise.
std::vector<unsigned char> BrickWall() {
  std::vector<unsigned char> rgb(kSize * kSize * 3);
  unsigned seed = 12345;
  auto noise = [&seed]() {
    seed = seed * 1103515245u + 12345u;
    return static_cast<int>((seed >> 16) % 25) - 12;
  };
  for (int y = 0; y < kSize; ++y) {
    const int row = y / 32;
    for (int x = 0; x < kSize; ++x) {
      const int shifted = x + (row % 2) * 32;
      const bool mortar = y % 32 < 3 || shifted % 64 < 3;
      const int brickShade = ((row * 7 + shifted / 64 * 13) % 5) * 8;
      int r = mortar ? 170 : 150 + brickShade;
      int g = mortar ? 165 : 60 + brickShade / 2;
      int b = mortar ? 155 : 45;
      const int n = noise();
      auto clamp = [](int v) { return static_cast<unsigned char>(v < 0 ? 0 : v > 255 ? 255 : v); };
      unsigned char* px = &rgb[(y * kSize + x) * 3];
      px[0] = clamp(r + n);
      px[1] = clamp(g + n);
      px[2] = clamp(b + n);
    }
  }
  return rgb;
}

}  // namespace

bool WriteBrickWallJPEG(const std::string& path) {
  const std::vector<unsigned char> rgb = BrickWall();
  std::unique_ptr<void, int (*)(tjhandle)> tj(tjInitCompress(), &tjDestroy);
  unsigned char* jpeg = nullptr;
  unsigned long size = 0;
  if (!tj || tjCompress2(tj.get(), rgb.data(), kSize, 0, kSize, TJPF_RGB, &jpeg, &size, TJSAMP_444, 90, 0) != 0) {
    std::fprintf(stderr, "make_demo_assets: JPEG encoding failed\n");
    return false;
  }
  std::unique_ptr<unsigned char, void (*)(unsigned char*)> owned(jpeg, &tjFree);
  std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "wb"), &std::fclose);
  if (!file || std::fwrite(jpeg, 1, size, file.get()) != size) {
    std::fprintf(stderr, "make_demo_assets: cannot write %s\n", path.c_str());
    return false;
  }
  return true;
}

}  // namespace vorn::tools
