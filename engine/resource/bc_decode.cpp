#include "resource/bc_decode.h"

namespace vorn {

namespace {

// The four colours of a colour block, RGB.
struct ColorTable {
  std::uint8_t c[4][3];
};

inline std::uint8_t widen5(unsigned v) { return static_cast<std::uint8_t>((v * 527 + 23) >> 6); }
inline std::uint8_t widen6(unsigned v) { return static_cast<std::uint8_t>((v * 259 + 33) >> 6); }

// int(2/3 * a + 1/3 * b + 0.5), evaluated in doubles in this order.
inline std::uint8_t third_mix(std::uint8_t a, std::uint8_t b) {
  return static_cast<std::uint8_t>(static_cast<int>(2.0 / 3.0 * a + 1.0 / 3.0 * b + 0.5));
}

inline ColorTable color_table(const std::uint8_t* block) {
  const unsigned w0 = block[0] | (block[1] << 8);
  const unsigned w1 = block[2] | (block[3] << 8);
  ColorTable t;
  t.c[0][0] = widen5((w0 >> 11) & 31);
  t.c[0][1] = widen6((w0 >> 5) & 63);
  t.c[0][2] = widen5(w0 & 31);
  t.c[1][0] = widen5((w1 >> 11) & 31);
  t.c[1][1] = widen6((w1 >> 5) & 63);
  t.c[1][2] = widen5(w1 & 31);
  for (int ch = 0; ch < 3; ++ch) {
    t.c[2][ch] = third_mix(t.c[0][ch], t.c[1][ch]);
    // Addition commutes exactly in IEEE arithmetic, so this is int(1/3 c0 + 2/3 c1 + 0.5).
    t.c[3][ch] = third_mix(t.c[1][ch], t.c[0][ch]);
  }
  return t;
}

// Writes the colours of a colour block (8 bytes: ends, then one index byte per row).
template <int Bands>
inline void write_colors(const std::uint8_t* block, std::uint8_t* out, std::size_t row_stride) {
  const ColorTable t = color_table(block);
  for (int row = 0; row < 4; ++row) {
    unsigned bits = block[4 + row];
    std::uint8_t* dst = out + static_cast<std::size_t>(row) * row_stride;
    for (int x = 0; x < 4; ++x, bits >>= 2, dst += Bands) {
      const std::uint8_t* c = t.c[bits & 3];
      dst[0] = c[0];
      dst[1] = c[1];
      dst[2] = c[2];
    }
  }
}

// The eight alpha values of a BC3 block.
inline void alpha_table(std::uint8_t a0, std::uint8_t a1, std::uint8_t table[8]) {
  table[0] = a0;
  table[1] = a1;
  if (a0 > a1) {
    table[2] = static_cast<std::uint8_t>(static_cast<int>(6.0 / 7.0 * a0 + 1.0 / 7.0 * a1));
    table[3] = static_cast<std::uint8_t>(static_cast<int>(5.0 / 7.0 * a0 + 2.0 / 7.0 * a1));
    table[4] = static_cast<std::uint8_t>(static_cast<int>(4.0 / 7.0 * a0 + 3.0 / 7.0 * a1));
    table[5] = static_cast<std::uint8_t>(static_cast<int>(3.0 / 7.0 * a0 + 4.0 / 7.0 * a1));
    table[6] = static_cast<std::uint8_t>(static_cast<int>(2.0 / 7.0 * a0 + 5.0 / 7.0 * a1));
    table[7] = static_cast<std::uint8_t>(static_cast<int>(1.0 / 7.0 * a0 + 6.0 / 7.0 * a1));
  } else {
    table[2] = static_cast<std::uint8_t>(static_cast<int>(0.8 * a0 + 0.2 * a1));
    table[3] = static_cast<std::uint8_t>(static_cast<int>(0.6 * a0 + 0.4 * a1));
    table[4] = static_cast<std::uint8_t>(static_cast<int>(0.4 * a0 + 0.6 * a1));
    table[5] = static_cast<std::uint8_t>(static_cast<int>(0.2 * a0 + 0.8 * a1));
    table[6] = 0;
    table[7] = 255;
  }
}

}  // namespace

void DecodeBC1Block(const std::uint8_t* block, std::uint8_t* out, std::size_t row_stride) {
  write_colors<3>(block, out, row_stride);
}

void DecodeBC2Block(const std::uint8_t* block, std::uint8_t* out, std::size_t row_stride) {
  write_colors<4>(block + 8, out, row_stride);
  // One 16-bit word per row, four 4-bit values from the low bits, kept as 0 to 15.
  for (int row = 0; row < 4; ++row) {
    unsigned word = block[row * 2] | (block[row * 2 + 1] << 8);
    std::uint8_t* dst = out + static_cast<std::size_t>(row) * row_stride + 3;
    for (int x = 0; x < 4; ++x, word >>= 4, dst += 4) *dst = static_cast<std::uint8_t>(word & 15);
  }
}

void DecodeBC3Block(const std::uint8_t* block, std::uint8_t* out, std::size_t row_stride) {
  write_colors<4>(block + 8, out, row_stride);
  std::uint8_t table[8];
  alpha_table(block[0], block[1], table);
  // Two groups of three bytes, each eight 3-bit indices from the low bits: rows 0-1, 2-3.
  for (int half = 0; half < 2; ++half) {
    const std::uint8_t* b = block + 2 + half * 3;
    unsigned bits = b[0] | (b[1] << 8) | (static_cast<unsigned>(b[2]) << 16);
    for (int k = 0; k < 8; ++k, bits >>= 3) {
      const int row = half * 2 + k / 4;
      out[static_cast<std::size_t>(row) * row_stride + static_cast<std::size_t>(k % 4) * 4 + 3] = table[bits & 7];
    }
  }
}

std::size_t BCBlockBytes(BCKind kind) { return kind == BCKind::BC1 ? kBC1BlockBytes : kBC2BlockBytes; }

Image::Mode BCImageMode(BCKind kind) { return kind == BCKind::BC1 ? Image::Mode::RGB : Image::Mode::RGBA; }

void DecodeBCSurface(BCKind kind, const std::uint8_t* blocks, Image& image) {
  const int tiles_wide = image.width() / 4, tiles_high = image.height() / 4;
  const std::size_t bands = static_cast<std::size_t>(image.bands());
  const std::size_t row_stride = static_cast<std::size_t>(image.width()) * bands;
  const std::size_t block_bytes = BCBlockBytes(kind);
  std::uint8_t* pixels = image.data().data();
  for (int i = 0; i < tiles_high; ++i) {
    std::uint8_t* out = pixels + static_cast<std::size_t>(i) * 4 * row_stride;
    for (int j = 0; j < tiles_wide; ++j, blocks += block_bytes, out += 4 * bands) {
      switch (kind) {
        case BCKind::BC1:
          DecodeBC1Block(blocks, out, row_stride);
          break;
        case BCKind::BC2:
          DecodeBC2Block(blocks, out, row_stride);
          break;
        case BCKind::BC3:
          DecodeBC3Block(blocks, out, row_stride);
          break;
      }
    }
  }
}

}  // namespace vorn
