#pragma once
// Pictures and a resource index for the texture tests: quadrant images written as PNG,
// JPG or TGA, and a resource manager that only indexes a folder (no GL).
#include <turbojpeg.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "image_test_files.h"
#include "resource/image.h"
#include "resource/res_manager.h"

namespace vorn::test {

using RGB = std::array<std::uint8_t, 3>;

inline constexpr RGB kRed{255, 0, 0}, kGreen{0, 255, 0}, kBlue{0, 0, 255}, kWhite{255, 255, 255};

// A picture in four quadrants: top-left, top-right, bottom-left, bottom-right as seen.
inline std::shared_ptr<Image> Quadrants(int size, RGB tl = kRed, RGB tr = kGreen, RGB bl = kBlue, RGB br = kWhite,
                                        bool alpha = false) {
  auto im = std::make_shared<Image>(alpha ? Image::Mode::RGBA : Image::Mode::RGB, size, size);
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      const RGB& c = y < size / 2 ? (x < size / 2 ? tl : tr) : (x < size / 2 ? bl : br);
      im->putpixel(x, y, Image::Pixel{{c[0], c[1], c[2], 200}, 4});
    }
  }
  return im;
}

// A JPEG of an RGB picture at full quality without chroma subsampling.
inline Bytes EncodeJPG(const Image& im) {
  tjhandle tj = tjInitCompress();
  unsigned char* out = nullptr;
  unsigned long size = 0;
  tjCompress2(tj, im.data().data(), im.width(), 0, im.height(), TJPF_RGB, &out, &size, TJSAMP_444, 100, 0);
  Bytes bytes(out, out + size);
  tjFree(out);
  tjDestroy(tj);
  return bytes;
}

// An uncompressed 24-bit TGA of a picture, rows stored from the bottom (descriptor 0)
// or from the top (descriptor 0x20, the origin bit).
inline Bytes EncodeTGA(const Image& im, bool topOrigin) {
  Bytes pixels;
  for (int row = 0; row < im.height(); ++row) {
    const int y = topOrigin ? row : im.height() - 1 - row;
    for (int x = 0; x < im.width(); ++x) {
      const Image::Pixel p = im.getpixel(x, y);
      pixels.insert(pixels.end(), {p.c[2], p.c[1], p.c[0]});
    }
  }
  return MakeTGA(2, static_cast<std::uint16_t>(im.width()), static_cast<std::uint16_t>(im.height()), 24,
                 topOrigin ? 0x20 : 0, pixels);
}

// A resource manager that indexes a folder and nothing else: no GL, no programs.
class IndexOnlyResManager : public PyGameResManager {
 public:
  explicit IndexOnlyResManager(const std::string& root) {
    resdir = root;
    FoundAllResFile(root);
  }
};

// Installs an index of `root` as ResManagerInstance, put back as it was at the end.
class ResourceScope {
 public:
  explicit ResourceScope(const std::string& root) : saved_(ResManagerInstance) {
    ResManagerInstance = std::make_shared<IndexOnlyResManager>(root);
  }
  ~ResourceScope() { ResManagerInstance = saved_; }
  ResourceScope(const ResourceScope&) = delete;
  ResourceScope& operator=(const ResourceScope&) = delete;

  PyGameResManager& manager() { return *ResManagerInstance; }

 private:
  std::shared_ptr<PyGameResManager> saved_;
};

}  // namespace vorn::test
