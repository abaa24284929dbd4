#pragma once
// Builders of terrain files for the tests: binary height files and blend records.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "image_test_files.h"

namespace vorn::test {

inline void append_f32(Bytes& b, float f) {
  std::uint32_t bits = 0;
  std::memcpy(&bits, &f, 4);
  append_u32(b, bits);
}

// int32 cows, int32 rows, then the heights as float32.
inline Bytes HeightFileBytes(std::int32_t cows, std::int32_t rows, const std::vector<float>& heights) {
  Bytes b;
  append_u32(b, static_cast<std::uint32_t>(cows));
  append_u32(b, static_cast<std::uint32_t>(rows));
  for (float h : heights) append_f32(b, h);
  return b;
}

// Five names in 64-byte zero-padded fields (longer names are cut), then five densities.
inline Bytes BlendRecordBytes(const std::array<std::string, 5>& names, const std::array<float, 5>& densities) {
  Bytes b;
  for (const std::string& name : names) {
    Bytes field(64, 0);
    std::memcpy(field.data(), name.data(), std::min<std::size_t>(name.size(), 64));
    b.insert(b.end(), field.begin(), field.end());
  }
  for (float d : densities) append_f32(b, d);
  return b;
}

}  // namespace vorn::test
