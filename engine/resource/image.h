#pragma once
// A decoded picture in main memory: width, height, a mode ("L", "RGB" or "RGBA") and
// 8-bit samples in rows from the top. Readers and generators fill it, texture upload
// takes its bytes. Pixel access follows the scripting convention: a coordinate in
// [-n, n) wraps, anything else raises IndexError.
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vorn {

// The most pixels a decoded PNG or JPG may have. A file that claims more is refused
// before any pixel memory is taken, so a small file cannot demand gigabytes.
inline constexpr std::uint64_t kMaxDecodedPixels = 178956970;

class Image {
 public:
  // The channel layout; the value is the number of bytes per pixel.
  enum class Mode : std::uint8_t { L = 1, RGB = 3, RGBA = 4 };

  // The two transpose operations the engine uses.
  enum Transpose : int { FLIP_LEFT_RIGHT = 0, FLIP_TOP_BOTTOM = 1 };

  // A pixel value: `count` meaningful channels (1, 3 or 4).
  struct Pixel {
    std::array<std::uint8_t, 4> c{0, 0, 0, 255};
    int count = 4;
  };

  // A new image filled with `fill` (grey for "L", RGB with opaque alpha, or RGBA).
  // Throws ValueError for a negative size or an unknown mode name.
  Image(Mode mode, std::int64_t width, std::int64_t height, Pixel fill = {{0, 0, 0, 0}, 4});
  Image(std::string_view mode, std::int64_t width, std::int64_t height, Pixel fill = {{0, 0, 0, 0}, 4});

  // Takes ownership of samples already laid out in rows from the top.
  static std::shared_ptr<Image> FromBytes(Mode mode, int width, int height, std::vector<std::uint8_t> bytes);

  // Mode names as scripts spell them; ValueError for anything else.
  static Mode ModeFromName(std::string_view name);
  static const char* ModeName(Mode mode);

  int width() const { return width_; }
  int height() const { return height_; }
  Mode mode() const { return mode_; }
  const char* mode_name() const { return ModeName(mode_); }
  int bands() const { return static_cast<int>(mode_); }

  // Samples, rows from the top, `bands()` bytes per pixel, no padding.
  std::vector<std::uint8_t>& data() { return data_; }
  const std::vector<std::uint8_t>& data() const { return data_; }
  // The byte offset of an in-range pixel.
  std::size_t offset(int x, int y) const {
    return (static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)) *
           static_cast<std::size_t>(bands());
  }

  // Channels of the pixel at (x, y); IndexError outside the image.
  Pixel getpixel(std::int64_t x, std::int64_t y) const;
  // Writes a pixel. A value with fewer channels than the mode fills alpha with 255; for
  // "L" only the first channel counts. IndexError outside the image.
  void putpixel(std::int64_t x, std::int64_t y, const Pixel& value);

  // A new image mirrored left to right or top to bottom.
  std::shared_ptr<Image> transpose(Transpose method) const;
  // Mirrors the rows in place.
  void flip_top_bottom();
  // A copy in another mode ("L" uses the ITU-R 601-2 luma weights, as image tools do).
  std::shared_ptr<Image> convert(Mode mode) const;

  // The samples, rows from the top.
  const std::vector<std::uint8_t>& tobytes() const { return data_; }
  // The samples with rows from the bottom up, as OpenGL reads them.
  std::vector<std::uint8_t> bytes_bottom_up() const;

  // Writes a PNG file; ValueError for a name without ".png", RuntimeError on a write error.
  void save(const std::string& path) const;

 private:
  Image() = default;
  Mode mode_ = Mode::RGB;
  int width_ = 0;
  int height_ = 0;
  std::vector<std::uint8_t> data_;
};

}  // namespace vorn
