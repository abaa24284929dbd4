#pragma once
// The terrain's two files, bytes in and plain records out: no GL, no node, no file
// system. Every failure is a ValueError whose text starts with the file's name and
// says what is wrong, thrown before anything is allocated for a size the file cannot
// hold.
//
// Height file, binary form (little-endian): int32 Cows, int32 Rows, then
// (Cows + 1) * (Rows + 1) float32 heights row by row. Bytes past the heights are not
// read. Text form: fields separated by ",": Cows, Rows, then the heights; fields past
// the last height are not read.
//
// Blend record (340 bytes, little-endian): five 64-byte layer texture names padded
// with zeros, then five float32 repeat densities. Bytes past the record are not read.
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vorn {

struct HeightFile {
  int Cows = 0;
  int Rows = 0;
  // (Cows + 1) * (Rows + 1) heights, row by row.
  std::vector<double> HeightArray;
};

struct BlendRecord {
  static constexpr std::size_t kLayers = 5;
  static constexpr std::size_t kNameBytes = 64;
  static constexpr std::size_t kBytes = kLayers * kNameBytes + kLayers * 4;
  // Layer texture names as stored up to the first zero byte, with ".jpg" replaced by
  // ".dds" (the layers are shipped compressed under their JPEG names).
  std::array<std::string, kLayers> ImageFileNames;
  std::array<double, kLayers> Densities{};
};

// The binary form. maxPoints bounds the grid (the plane's own limit): a larger claim
// fails before anything is read.
HeightFile ParseHeightFileBinary(std::span<const std::uint8_t> bytes, std::string_view fileName,
                                 std::size_t maxPoints);
// The text form: counts as int() reads them, heights as float() reads them.
HeightFile ParseHeightFileText(std::string_view text, std::string_view fileName, std::size_t maxPoints);
BlendRecord ParseBlendRecord(std::span<const std::uint8_t> bytes, std::string_view fileName);

}  // namespace vorn
