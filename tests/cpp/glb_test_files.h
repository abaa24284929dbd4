#pragma once
// Small GLB files built in memory for the reader tests: a JSON document and a BIN
// chunk of packed little-endian values.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "mesh/glb_file.h"

namespace vorn::test {

using Bytes = std::vector<std::uint8_t>;

inline void PutU32(Bytes& out, std::uint32_t v) {
  for (int i = 0; i < 4; ++i) out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}
inline void PutF32(Bytes& out, float f) {
  std::uint32_t u;
  std::memcpy(&u, &f, 4);
  PutU32(out, u);
}

// The BIN chunk under construction; Add* return the offset the data starts at.
struct BinBuilder {
  Bytes data;
  std::size_t Floats(std::initializer_list<float> values) {
    const std::size_t at = data.size();
    for (float f : values) PutF32(data, f);
    return at;
  }
  std::size_t U16(std::initializer_list<std::uint16_t> values) {
    const std::size_t at = data.size();
    for (auto v : values) data.insert(data.end(), {static_cast<std::uint8_t>(v), static_cast<std::uint8_t>(v >> 8)});
    while (data.size() % 4) data.push_back(0);
    return at;
  }
  std::size_t U8(const std::vector<std::uint8_t>& values) {
    const std::size_t at = data.size();
    data.insert(data.end(), values.begin(), values.end());
    while (data.size() % 4) data.push_back(0);
    return at;
  }
};

// The file: header, JSON chunk (padded with spaces) and BIN chunk.
inline Bytes MakeGLB(const std::string& json, const Bytes& bin, const char* jsonType = "JSON") {
  std::string text = json;
  while (text.size() % 4) text += ' ';
  Bytes out{'g', 'l', 'T', 'F'};
  PutU32(out, 2);
  PutU32(out, static_cast<std::uint32_t>(12 + 8 + text.size() + 8 + bin.size()));
  PutU32(out, static_cast<std::uint32_t>(text.size()));
  out.insert(out.end(), jsonType, jsonType + 4);
  out.insert(out.end(), text.begin(), text.end());
  PutU32(out, static_cast<std::uint32_t>(bin.size()));
  out.insert(out.end(), {'B', 'I', 'N', 0});
  out.insert(out.end(), bin.begin(), bin.end());
  return out;
}

// An accessor and its own bufferView at `offset`.
inline void AddAccessor(GlbJson& doc, std::size_t offset, std::size_t length, std::int64_t count,
                        const char* type, int componentType) {
  doc["bufferViews"].push_back({{"buffer", 0}, {"byteOffset", offset}, {"byteLength", length}});
  doc["accessors"].push_back({{"bufferView", doc["bufferViews"].size() - 1},
                              {"componentType", componentType},
                              {"count", count},
                              {"type", type}});
}

}  // namespace vorn::test
