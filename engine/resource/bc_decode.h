#pragma once
// Software decoding of BC1, BC2 and BC3 blocks (4 by 4 texels each).
//
// Colours: two 5:6:5 end colours, widened to 8 bits with red and blue
// (v * 527 + 23) >> 6 and green (v * 259 + 33) >> 6; the two middle colours are
// int(2/3 c0 + 1/3 c1 + 0.5) and int(1/3 c0 + 2/3 c1 + 0.5), whatever the order of the
// end colours, so the three-colour mode of BC1 does not exist here.
// BC2 alpha is stored unscaled, 0 to 15. BC3 alpha interpolates in sevenths (a0 > a1) or
// fifths plus 0 and 255, truncated.
#include <cstddef>
#include <cstdint>

#include "resource/image.h"

namespace vorn {

inline constexpr std::size_t kBC1BlockBytes = 8;
inline constexpr std::size_t kBC2BlockBytes = 16;
inline constexpr std::size_t kBC3BlockBytes = 16;

// Decode one block into a 4 by 4 texel area at `out`, whose rows are `row_stride`
// bytes apart. BC1 writes 3 bytes a texel (RGB), BC2 and BC3 write 4 (RGBA).
void DecodeBC1Block(const std::uint8_t* block, std::uint8_t* out, std::size_t row_stride);
void DecodeBC2Block(const std::uint8_t* block, std::uint8_t* out, std::size_t row_stride);
void DecodeBC3Block(const std::uint8_t* block, std::uint8_t* out, std::size_t row_stride);

// The kinds of block a surface can hold.
enum class BCKind { BC1, BC2, BC3 };
std::size_t BCBlockBytes(BCKind kind);
Image::Mode BCImageMode(BCKind kind);

// Decodes a whole surface of blocks in rows from the top into `image`, whose width and
// height must be multiples of 4 and of the image's mode for the kind. `blocks` must
// hold width/4 * height/4 blocks.
void DecodeBCSurface(BCKind kind, const std::uint8_t* blocks, Image& image);

}  // namespace vorn
