#include "resource/jpeg_codec.h"

#include <turbojpeg.h>

#include <cstring>
#include <vector>

namespace vorn {

namespace {

// Destroys the TurboJPEG handle on every way out.
struct TjHandle {
  TjHandle() : handle(tjInitDecompress()) {}
  ~TjHandle() {
    if (handle) tjDestroy(handle);
  }
  TjHandle(const TjHandle&) = delete;
  TjHandle& operator=(const TjHandle&) = delete;
  tjhandle handle;
};

// Adobe writes CMYK inverted (0 is full ink), which is what nearly every CMYK JPEG
// holds; the product with K then gives the RGB value.
std::vector<std::uint8_t> cmyk_to_rgb(const std::vector<std::uint8_t>& cmyk) {
  std::vector<std::uint8_t> rgb(cmyk.size() / 4 * 3);
  for (std::size_t i = 0, o = 0; i + 3 < cmyk.size(); i += 4, o += 3) {
    const unsigned k = cmyk[i + 3];
    for (std::size_t c = 0; c < 3; ++c) rgb[o + c] = static_cast<std::uint8_t>((cmyk[i + c] * k + 127) / 255);
  }
  return rgb;
}

}  // namespace

std::shared_ptr<Image> DecodeJPEG(std::span<const std::uint8_t> bytes) {
  TjHandle tj;
  if (!tj.handle || bytes.empty()) return nullptr;
  int width = 0, height = 0, subsamp = 0, colorspace = 0;
  if (tjDecompressHeader3(tj.handle, bytes.data(), static_cast<unsigned long>(bytes.size()), &width, &height,
                          &subsamp, &colorspace) != 0) {
    return nullptr;
  }
  if (width <= 0 || height <= 0 || static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height) > kMaxDecodedPixels) {
    return nullptr;
  }

  const bool grey = colorspace == TJCS_GRAY;
  const bool cmyk = colorspace == TJCS_CMYK || colorspace == TJCS_YCCK;
  const int pixel_format = grey ? TJPF_GRAY : (cmyk ? TJPF_CMYK : TJPF_RGB);
  const int pixel_size = tjPixelSize[pixel_format];
  std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                                   static_cast<std::size_t>(pixel_size));
  // LIMITSCANS refuses progressive files with absurd scan counts, which would otherwise
  // take minutes of CPU for a few kilobytes of input.
  if (tjDecompress2(tj.handle, bytes.data(), static_cast<unsigned long>(bytes.size()), pixels.data(), width,
                    width * pixel_size, height, pixel_format, TJFLAG_LIMITSCANS) != 0) {
    // A warning leaves a usable picture, except the one for a file that ends early:
    // its missing part would be filled with grey, so it counts as a failure.
    if (tjGetErrorCode(tj.handle) != TJERR_WARNING) return nullptr;
    if (std::strstr(tjGetErrorStr2(tj.handle), "Premature end of JPEG file") != nullptr) return nullptr;
  }
  if (cmyk) return Image::FromBytes(Image::Mode::RGB, width, height, cmyk_to_rgb(pixels));
  return Image::FromBytes(grey ? Image::Mode::L : Image::Mode::RGB, width, height, std::move(pixels));
}

}  // namespace vorn
