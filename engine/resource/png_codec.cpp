#include "resource/png_codec.h"

#include <spng.h>

#include <cstdlib>
#include <string>

#include "core/errors.h"

namespace vorn {

namespace {

// Frees the libspng context on every way out.
struct SpngContext {
  explicit SpngContext(int flags) : ctx(spng_ctx_new(flags)) {}
  ~SpngContext() { spng_ctx_free(ctx); }
  SpngContext(const SpngContext&) = delete;
  SpngContext& operator=(const SpngContext&) = delete;
  spng_ctx* ctx;
};

}  // namespace

std::shared_ptr<Image> DecodePNG(std::span<const std::uint8_t> bytes) {
  SpngContext png(0);
  if (!png.ctx || bytes.empty()) return nullptr;
  // Metadata chunks are kept small: a texture needs none of them.
  spng_set_chunk_limits(png.ctx, 1u << 24, 1u << 26);
  spng_set_image_limits(png.ctx, 1u << 20, 1u << 20);
  if (spng_set_png_buffer(png.ctx, bytes.data(), bytes.size()) != 0) return nullptr;

  spng_ihdr ihdr{};
  if (spng_get_ihdr(png.ctx, &ihdr) != 0) return nullptr;
  if (static_cast<std::uint64_t>(ihdr.width) * ihdr.height > kMaxDecodedPixels) return nullptr;

  spng_trns trns{};
  const bool has_trns = spng_get_trns(png.ctx, &trns) == 0;
  const bool has_alpha = ihdr.color_type == SPNG_COLOR_TYPE_GRAYSCALE_ALPHA ||
                         ihdr.color_type == SPNG_COLOR_TYPE_TRUECOLOR_ALPHA || has_trns;
  Image::Mode mode = has_alpha ? Image::Mode::RGBA : Image::Mode::RGB;
  int fmt = has_alpha ? SPNG_FMT_RGBA8 : SPNG_FMT_RGB8;
  if (ihdr.color_type == SPNG_COLOR_TYPE_GRAYSCALE && ihdr.bit_depth <= 8 && !has_trns) {
    mode = Image::Mode::L;
    fmt = SPNG_FMT_G8;
  }

  std::size_t size = 0;
  if (spng_decoded_image_size(png.ctx, fmt, &size) != 0) return nullptr;
  std::vector<std::uint8_t> pixels(size);
  if (spng_decode_image(png.ctx, pixels.data(), pixels.size(), fmt, has_alpha ? SPNG_DECODE_TRNS : 0) != 0) {
    return nullptr;
  }
  return Image::FromBytes(mode, static_cast<int>(ihdr.width), static_cast<int>(ihdr.height), std::move(pixels));
}

std::vector<std::uint8_t> EncodePNG(const Image& image) {
  SpngContext png(SPNG_CTX_ENCODER);
  if (!png.ctx) throw RuntimeError("Image.save: the PNG encoder could not start");
  spng_set_option(png.ctx, SPNG_ENCODE_TO_BUFFER, 1);

  spng_ihdr ihdr{};
  ihdr.width = static_cast<std::uint32_t>(image.width());
  ihdr.height = static_cast<std::uint32_t>(image.height());
  ihdr.bit_depth = 8;
  switch (image.mode()) {
    case Image::Mode::L:
      ihdr.color_type = SPNG_COLOR_TYPE_GRAYSCALE;
      break;
    case Image::Mode::RGB:
      ihdr.color_type = SPNG_COLOR_TYPE_TRUECOLOR;
      break;
    case Image::Mode::RGBA:
      ihdr.color_type = SPNG_COLOR_TYPE_TRUECOLOR_ALPHA;
      break;
  }
  int err = spng_set_ihdr(png.ctx, &ihdr);
  if (err == 0) {
    err = spng_encode_image(png.ctx, image.data().data(), image.data().size(), SPNG_FMT_PNG, SPNG_ENCODE_FINALIZE);
  }
  if (err != 0) throw RuntimeError(std::string("Image.save: PNG encoding failed: ") + spng_strerror(err));

  std::size_t length = 0;
  void* buffer = spng_get_png_buffer(png.ctx, &length, &err);
  if (!buffer) throw RuntimeError(std::string("Image.save: PNG encoding failed: ") + spng_strerror(err));
  const auto* begin = static_cast<const std::uint8_t*>(buffer);
  std::vector<std::uint8_t> out(begin, begin + length);
  std::free(buffer);
  return out;
}

}  // namespace vorn
