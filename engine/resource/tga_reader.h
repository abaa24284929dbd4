#pragma once
// The TGA reader: uncompressed true-colour files into an "RGBA" image.
#include <cstdint>
#include <span>
#include <string>

#include "resource/image_load_result.h"
#include "resource/image_path.h"

namespace vorn {

// The fields of the 18-byte header that the reader uses.
struct TGAHeader {
  std::uint8_t TGA_Type = 0;     // 2 uncompressed, 10 run-length encoded
  std::int16_t TGA_Width = 0;    // signed: 65535 reads as -1
  std::int16_t TGA_Height = 0;
  std::uint8_t TGA_Depth = 0;    // bits per pixel
  std::uint8_t Read_FlipY = 0;   // the whole image descriptor byte
};
inline constexpr std::size_t kTGAHeaderSize = 18;

// Decodes a TGA held in memory; (image, width, height, true) or the failure value.
// Run-length files, files too short for their pixels and negative sizes fail. Pixels
// are B, G, R (and A for more than 24 bits); depths under 24 bits are read as three
// bytes a pixel all the same. A non-zero descriptor byte flips the rows.
ImageLoadResult ReadTGA(std::span<const std::uint8_t> bytes);

// LoadTGA(fileName): the file by name, looked up through `lookup` when it doesn't exist.
ImageLoadResult LoadTGA(const std::string& fileName, const ResPathLookup& lookup = {});

}  // namespace vorn
