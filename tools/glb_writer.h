#pragma once
// A small writer of binary glTF files for our own generated models: every accessor gets
// its own tightly packed bufferView (4-byte aligned) in one BIN chunk, which is the
// layout the engine's reader expects and any glTF reader accepts.
#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace vorn::tools {

class GlbWriter {
 public:
  using Json = nlohmann::ordered_json;

  GlbWriter();

  // The document; the writer fills "buffers", "bufferViews" and "accessors".
  Json& doc() { return doc_; }

  // Accessors of float, unsigned short (indices) and unsigned byte (joints) data. `type`
  // is "SCALAR", "VEC2", ... ; `values` holds count * components numbers. With
  // `withBounds`, the accessor records its per-component min and max (glTF asks this of
  // POSITION). Each returns the accessor's index.
  int AddFloats(const std::vector<float>& values, const char* type, bool withBounds = false);
  int AddU16(const std::vector<std::uint16_t>& values, const char* type);
  int AddU8(const std::vector<std::uint8_t>& values, const char* type);

  // An image's bytes in its own bufferView; returns the bufferView's index.
  int AddImageBytes(const std::vector<std::uint8_t>& bytes);

  // The whole file: header, JSON chunk (space padded), BIN chunk (zero padded).
  std::vector<std::uint8_t> Bytes() const;
  bool WriteFile(const std::string& path) const;

 private:
  int AddView(const std::uint8_t* data, std::size_t size);
  int AddAccessor(int view, int componentType, std::size_t count, const char* type);

  Json doc_;
  std::vector<std::uint8_t> bin_;
};

}  // namespace vorn::tools
