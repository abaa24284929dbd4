#pragma once
// PNG decoding and encoding through libspng.
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "resource/image.h"

namespace vorn {

// Decodes a PNG held in memory: "L" for 8-bit-or-less grey without transparency,
// "RGBA" when the file has an alpha channel or a transparency chunk, "RGB" otherwise.
// Null for anything that is not a complete, valid PNG.
std::shared_ptr<Image> DecodePNG(std::span<const std::uint8_t> bytes);

// A PNG file of the image (grey, RGB or RGBA, 8 bits a sample).
// RuntimeError when the encoder fails.
std::vector<std::uint8_t> EncodePNG(const Image& image);

}  // namespace vorn
