#include "resource/tga_reader.h"

#include <new>

#include "core/errors.h"

namespace vorn {

namespace {

std::int16_t read_i16(const std::uint8_t* p) {
  return static_cast<std::int16_t>(static_cast<std::uint16_t>(p[0] | (p[1] << 8)));
}

}  // namespace

ImageLoadResult ReadTGA(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < kTGAHeaderSize) return ImageLoadResult::Failure();
  TGAHeader h;
  h.TGA_Type = bytes[2];
  h.TGA_Width = read_i16(&bytes[12]);
  h.TGA_Height = read_i16(&bytes[14]);
  h.TGA_Depth = bytes[16];
  h.Read_FlipY = bytes[17];

  // Run-length files are refused as a whole.
  if (h.TGA_Type == 10) return ImageLoadResult::Failure();
  if (h.TGA_Width < 0 || h.TGA_Height < 0) return ImageLoadResult::Failure();

  const int width = h.TGA_Width, height = h.TGA_Height;
  // Every depth of 24 bits or less is read as B, G, R; deeper ones add A.
  const std::size_t pixel_bytes = h.TGA_Depth / 8 > 3 ? 4 : 3;
  const std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  if (bytes.size() - kTGAHeaderSize < pixels * pixel_bytes) return ImageLoadResult::Failure();

  try {
    auto image = std::make_shared<Image>(Image::Mode::RGBA, width, height);
    const std::uint8_t* src = bytes.data() + kTGAHeaderSize;
    std::uint8_t* dst = image->data().data();
    if (pixel_bytes == 4) {
      for (std::size_t i = 0; i < pixels; ++i, src += 4, dst += 4) {
        dst[0] = src[2];
        dst[1] = src[1];
        dst[2] = src[0];
        dst[3] = src[3];
      }
    } else {
      for (std::size_t i = 0; i < pixels; ++i, src += 3, dst += 4) {
        dst[0] = src[2];
        dst[1] = src[1];
        dst[2] = src[0];
        dst[3] = 255;
      }
    }
    // The whole descriptor byte decides, not only its origin bit.
    if (h.Read_FlipY != 0) image->flip_top_bottom();
    return {image, width, height, true};
  } catch (const std::bad_alloc&) {
    return ImageLoadResult::Failure();
  }
}

ImageLoadResult LoadTGA(const std::string& fileName, const ResPathLookup& lookup) {
  const std::optional<std::string> path = ResolveImagePath(fileName, std::nullopt, lookup);
  if (!path) return ImageLoadResult::Failure();
  const std::optional<std::vector<std::uint8_t>> bytes = ReadWholeFile(*path);
  if (!bytes) return ImageLoadResult::Failure();
  return ReadTGA(*bytes);
}

}  // namespace vorn
