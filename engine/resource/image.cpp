#include "resource/image.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <fstream>
#include <limits>

#include "core/errors.h"
#include "core/pyseq.h"
#include "resource/png_codec.h"

namespace vorn {

namespace {

int checked_side(std::int64_t side, const char* what) {
  if (side < 0) throw ValueError(std::string("Image: ") + what + " must not be negative");
  if (side > std::numeric_limits<int>::max()) throw ValueError(std::string("Image: ") + what + " is too large");
  return static_cast<int>(side);
}

bool ends_with_png(const std::string& path) {
  if (path.size() < 4) return false;
  std::string ext = path.substr(path.size() - 4);
  std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char ch) { return std::tolower(ch); });
  return ext == ".png";
}

}  // namespace

Image::Image(Mode mode, std::int64_t width, std::int64_t height, Pixel fill)
    : mode_(mode), width_(checked_side(width, "width")), height_(checked_side(height, "height")) {
  const std::size_t pixels = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
  const int n = bands();
  if (fill.count < 4 && mode == Mode::RGBA) fill.c[3] = 255;
  if (n == 1 || std::all_of(fill.c.begin(), fill.c.begin() + n, [&](std::uint8_t v) { return v == fill.c[0]; })) {
    data_.assign(pixels * static_cast<std::size_t>(n), fill.c[0]);
    return;
  }
  data_.resize(pixels * static_cast<std::size_t>(n));
  for (std::size_t i = 0; i < pixels; ++i) std::memcpy(&data_[i * static_cast<std::size_t>(n)], fill.c.data(), n);
}

Image::Image(std::string_view mode, std::int64_t width, std::int64_t height, Pixel fill)
    : Image(ModeFromName(mode), width, height, fill) {}

std::shared_ptr<Image> Image::FromBytes(Mode mode, int width, int height, std::vector<std::uint8_t> bytes) {
  const std::size_t expected =
      static_cast<std::size_t>(checked_side(width, "width")) * static_cast<std::size_t>(checked_side(height, "height")) *
      static_cast<std::size_t>(mode);
  if (bytes.size() != expected) throw ValueError("Image: byte count does not match the size and mode");
  std::shared_ptr<Image> image(new Image());
  image->mode_ = mode;
  image->width_ = width;
  image->height_ = height;
  image->data_ = std::move(bytes);
  return image;
}

Image::Mode Image::ModeFromName(std::string_view name) {
  if (name == "RGB") return Mode::RGB;
  if (name == "RGBA") return Mode::RGBA;
  if (name == "L") return Mode::L;
  throw ValueError("Image: unknown mode '" + std::string(name) + "' (use \"L\", \"RGB\" or \"RGBA\")");
}

const char* Image::ModeName(Mode mode) {
  switch (mode) {
    case Mode::L:
      return "L";
    case Mode::RGB:
      return "RGB";
    case Mode::RGBA:
      return "RGBA";
  }
  return "RGB";
}

Image::Pixel Image::getpixel(std::int64_t x, std::int64_t y) const {
  const std::size_t px = py_index(x, static_cast<std::size_t>(width_), "image");
  const std::size_t py = py_index(y, static_cast<std::size_t>(height_), "image");
  Pixel out;
  out.count = bands();
  std::memcpy(out.c.data(), &data_[offset(static_cast<int>(px), static_cast<int>(py))], out.count);
  return out;
}

void Image::putpixel(std::int64_t x, std::int64_t y, const Pixel& value) {
  const std::size_t px = py_index(x, static_cast<std::size_t>(width_), "image");
  const std::size_t py = py_index(y, static_cast<std::size_t>(height_), "image");
  std::uint8_t* dst = &data_[offset(static_cast<int>(px), static_cast<int>(py))];
  switch (mode_) {
    case Mode::L:
      dst[0] = value.c[0];
      break;
    case Mode::RGB:
      if (value.count == 1) {
        dst[0] = dst[1] = dst[2] = value.c[0];
      } else {
        std::memcpy(dst, value.c.data(), 3);
      }
      break;
    case Mode::RGBA:
      if (value.count == 1) {
        dst[0] = dst[1] = dst[2] = value.c[0];
        dst[3] = 255;
      } else {
        std::memcpy(dst, value.c.data(), 3);
        dst[3] = value.count >= 4 ? value.c[3] : 255;
      }
      break;
  }
}

std::shared_ptr<Image> Image::transpose(Transpose method) const {
  std::shared_ptr<Image> out(new Image(*this));
  if (method == FLIP_TOP_BOTTOM) {
    out->flip_top_bottom();
  } else if (method == FLIP_LEFT_RIGHT) {
    const std::size_t n = static_cast<std::size_t>(bands());
    for (int y = 0; y < height_; ++y) {
      for (int x = 0; x < width_ / 2; ++x) {
        std::swap_ranges(&out->data_[offset(x, y)], &out->data_[offset(x, y)] + n,
                         &out->data_[offset(width_ - 1 - x, y)]);
      }
    }
  } else {
    throw ValueError("Image.transpose: method must be FLIP_LEFT_RIGHT or FLIP_TOP_BOTTOM");
  }
  return out;
}

void Image::flip_top_bottom() {
  const std::size_t row = static_cast<std::size_t>(width_) * static_cast<std::size_t>(bands());
  if (row == 0) return;
  for (int top = 0, bottom = height_ - 1; top < bottom; ++top, --bottom) {
    std::swap_ranges(data_.begin() + static_cast<std::ptrdiff_t>(top * row),
                     data_.begin() + static_cast<std::ptrdiff_t>((top + 1) * row),
                     data_.begin() + static_cast<std::ptrdiff_t>(bottom * row));
  }
}

std::shared_ptr<Image> Image::convert(Mode mode) const {
  if (mode == mode_) return std::shared_ptr<Image>(new Image(*this));
  std::shared_ptr<Image> out(new Image(mode, width_, height_));
  const std::size_t pixels = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
  const std::size_t sn = static_cast<std::size_t>(bands());
  const std::size_t dn = static_cast<std::size_t>(out->bands());
  const std::uint8_t* src = data_.data();
  std::uint8_t* dst = out->data_.data();
  for (std::size_t i = 0; i < pixels; ++i, src += sn, dst += dn) {
    if (mode == Mode::L) {
      // Fixed-point luma, rounded: L = (299 R + 587 G + 114 B) / 1000.
      dst[0] = static_cast<std::uint8_t>((src[0] * 299 + src[1] * 587 + src[2] * 114 + 500) / 1000);
      continue;
    }
    if (sn == 1) {
      dst[0] = dst[1] = dst[2] = src[0];
    } else {
      dst[0] = src[0];
      dst[1] = src[1];
      dst[2] = src[2];
    }
    if (dn == 4) dst[3] = sn == 4 ? src[3] : 255;
  }
  return out;
}

std::vector<std::uint8_t> Image::bytes_bottom_up() const {
  std::vector<std::uint8_t> out(data_.size());
  const std::size_t row = static_cast<std::size_t>(width_) * static_cast<std::size_t>(bands());
  for (int y = 0; y < height_; ++y) {
    std::memcpy(out.data() + static_cast<std::size_t>(height_ - 1 - y) * row,
                data_.data() + static_cast<std::size_t>(y) * row, row);
  }
  return out;
}

void Image::save(const std::string& path) const {
  if (!ends_with_png(path)) throw ValueError("Image.save: only PNG files can be written, not '" + path + "'");
  const std::vector<std::uint8_t> png = EncodePNG(*this);
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  if (!file) throw RuntimeError("Image.save: cannot open '" + path + "' for writing");
  file.write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
  if (!file) throw RuntimeError("Image.save: writing '" + path + "' failed");
}

}  // namespace vorn
