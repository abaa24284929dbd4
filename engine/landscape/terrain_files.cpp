#include "landscape/terrain_files.h"

#include <algorithm>
#include <bit>
#include <limits>

#include "core/console.h"
#include "core/errors.h"
#include "mesh/obj_text.h"

namespace vorn {
namespace {

[[noreturn]] void refuse(std::string_view fileName, const std::string& what) {
  throw ValueError(console::py_repr_str(fileName) + ": " + what);
}

std::uint32_t u32_le(const std::uint8_t* p) {
  return std::uint32_t{p[0]} | std::uint32_t{p[1]} << 8 | std::uint32_t{p[2]} << 16 | std::uint32_t{p[3]} << 24;
}

float f32_le(const std::uint8_t* p) { return std::bit_cast<float>(u32_le(p)); }

std::string grid_text(std::int64_t cows, std::int64_t rows) {
  return "a grid of " + std::to_string(cows) + " by " + std::to_string(rows) + " tiles";
}

// Grid points of cows by rows tiles after the counts were checked: both lie in
// [0, 2^31), so the product stays below 2^62.
std::uint64_t grid_points(std::int64_t cows, std::int64_t rows) {
  return (static_cast<std::uint64_t>(cows) + 1) * (static_cast<std::uint64_t>(rows) + 1);
}

void check_counts(std::string_view fileName, std::int64_t cows, std::int64_t rows) {
  if (cows < 0 || rows < 0) refuse(fileName, grid_text(cows, rows) + " has a negative tile count");
}

void check_grid_limit(std::string_view fileName, std::int64_t cows, std::int64_t rows, std::size_t maxPoints) {
  constexpr std::int64_t kIntMax = std::numeric_limits<int>::max();
  if (cows > kIntMax || rows > kIntMax || grid_points(cows, rows) > maxPoints) {
    const std::string points =
        cows > kIntMax || rows > kIntMax ? std::string("too many") : std::to_string(grid_points(cows, rows));
    refuse(fileName, grid_text(cows, rows) + " has " + points + " points, more than the " +
                         std::to_string(maxPoints) + " a terrain holds");
  }
}

// Python's whitespace around a number, which int() and float() ignore.
bool is_space(unsigned char c) { return c == ' ' || (c >= '\t' && c <= '\r') || (c >= 0x1c && c <= 0x1f); }

std::string_view trimmed(std::string_view field) {
  while (!field.empty() && is_space(static_cast<unsigned char>(field.front()))) field.remove_prefix(1);
  while (!field.empty() && is_space(static_cast<unsigned char>(field.back()))) field.remove_suffix(1);
  return field;
}

// The fields of a text split on ",", one at a time.
class FieldReader {
 public:
  explicit FieldReader(std::string_view text) : text_(text) {}
  std::string_view next() {
    const std::size_t end = std::min(text_.find(',', pos_), text_.size());
    const std::string_view field = text_.substr(pos_, end - pos_);
    pos_ = end + 1;
    return field;
  }

 private:
  std::string_view text_;
  std::size_t pos_ = 0;
};

std::int64_t count_field(std::string_view fileName, std::string_view field, const char* name, int index) {
  const std::string file(fileName);
  try {
    return obj_text::ParseInt(trimmed(field), obj_text::Where{&file, 0});
  } catch (const ValueError&) {
    refuse(fileName, "field " + std::to_string(index) + " (" + name + ") is not an integer: " +
                         console::py_repr_str(field));
  }
}

}  // namespace

HeightFile ParseHeightFileBinary(std::span<const std::uint8_t> bytes, std::string_view fileName,
                                 std::size_t maxPoints) {
  constexpr std::size_t kHeader = 8;
  if (bytes.size() < kHeader) {
    refuse(fileName, "a binary height file starts with an 8-byte header, the file has " +
                         std::to_string(bytes.size()) + " bytes");
  }
  const auto cows = static_cast<std::int32_t>(u32_le(bytes.data()));
  const auto rows = static_cast<std::int32_t>(u32_le(bytes.data() + 4));
  check_counts(fileName, cows, rows);
  // Compared as counts of heights, so no claim can overflow the arithmetic.
  const std::uint64_t points = grid_points(cows, rows);
  const std::uint64_t held = (bytes.size() - kHeader) / 4;
  if (points > held) {
    refuse(fileName, grid_text(cows, rows) + " needs " + std::to_string(points) + " heights, the file holds " +
                         std::to_string(held));
  }
  check_grid_limit(fileName, cows, rows, maxPoints);

  HeightFile out{cows, rows, std::vector<double>(static_cast<std::size_t>(points))};
  const std::uint8_t* p = bytes.data() + kHeader;
  for (double& h : out.HeightArray) {
    h = f32_le(p);
    p += 4;
  }
  return out;
}

HeightFile ParseHeightFileText(std::string_view text, std::string_view fileName, std::size_t maxPoints) {
  const std::size_t fields = static_cast<std::size_t>(std::count(text.begin(), text.end(), ',')) + 1;
  if (fields < 2) {
    refuse(fileName, "a text height file starts with the fields Cows and Rows, the file has 1 field");
  }
  FieldReader reader(text);
  const std::int64_t cows = count_field(fileName, reader.next(), "Cows", 0);
  const std::int64_t rows = count_field(fileName, reader.next(), "Rows", 1);
  check_counts(fileName, cows, rows);
  check_grid_limit(fileName, cows, rows, maxPoints);
  const std::uint64_t points = grid_points(cows, rows);
  if (points > fields - 2) {
    refuse(fileName, grid_text(cows, rows) + " needs " + std::to_string(points) + " heights, the file has " +
                         std::to_string(fields - 2));
  }

  HeightFile out{static_cast<int>(cows), static_cast<int>(rows), {}};
  out.HeightArray.reserve(static_cast<std::size_t>(points));
  const std::string file(fileName);
  for (std::uint64_t i = 0; i < points; ++i) {
    const std::string_view field = reader.next();
    try {
      out.HeightArray.push_back(obj_text::ParseFloat(trimmed(field), obj_text::Where{&file, 0}));
    } catch (const ValueError&) {
      refuse(fileName, "field " + std::to_string(i + 2) + " (height " + std::to_string(i) +
                           ") is not a number: " + console::py_repr_str(field));
    }
  }
  return out;
}

BlendRecord ParseBlendRecord(std::span<const std::uint8_t> bytes, std::string_view fileName) {
  if (bytes.size() < BlendRecord::kBytes) {
    refuse(fileName, "a blend record is " + std::to_string(BlendRecord::kBytes) + " bytes, the file has " +
                         std::to_string(bytes.size()));
  }
  BlendRecord out;
  for (std::size_t layer = 0; layer < BlendRecord::kLayers; ++layer) {
    // The name ends at the first zero byte; a full 64-byte name has none.
    const auto* begin = reinterpret_cast<const char*>(bytes.data() + layer * BlendRecord::kNameBytes);
    const std::string_view stored(begin, BlendRecord::kNameBytes);
    const std::string_view name = stored.substr(0, std::min(stored.find('\0'), stored.size()));
    std::string& replaced = out.ImageFileNames[layer];
    for (std::size_t pos = 0;;) {
      const std::size_t hit = name.find(".jpg", pos);
      replaced.append(name.substr(pos, hit == std::string_view::npos ? std::string_view::npos : hit - pos));
      if (hit == std::string_view::npos) break;
      replaced += ".dds";
      pos = hit + 4;
    }
  }
  const std::uint8_t* p = bytes.data() + BlendRecord::kLayers * BlendRecord::kNameBytes;
  for (double& density : out.Densities) {
    density = f32_le(p);
    p += 4;
  }
  return out;
}

}  // namespace vorn
