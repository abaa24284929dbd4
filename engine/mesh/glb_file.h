#pragma once
// The byte and JSON layer of the GLB reader: the whole file in memory with a read
// position that moves as a stream's would, bounds-checked reads, the accessor decoder
// and the lookups into the JSON document. Nothing here touches GL or a node.
//
// Every read checks its length against the bytes left before it allocates: a count a
// file merely claims never sizes a buffer on its own.
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace vorn {

// Key order of the file matters (attributes, printed objects), so the ordered variant.
using GlbJson = nlohmann::ordered_json;

// Bytes per component of a componentType number; 0 for an unknown one.
int GetComponentTypeByte(std::int64_t typeId) noexcept;
// Components of an accessor type ("SCALAR" 1 ... "MAT4" 16); 0 for an unknown one.
int GetComponentNumber(const std::string& typeStr) noexcept;
// Sampler numbers to the GL constant names; other values come back as given.
std::string GetFilterString(std::int64_t filter);
std::string GetWarpString(std::int64_t wrap);

// Decoded accessor data, packed: `count` records of `number` values each.
struct GlbAttribute {
  int number = 0;
  bool isFloat = false;  // componentType 5126: values print as floats
  std::vector<double> values;
  std::size_t count() const noexcept { return number ? values.size() / static_cast<std::size_t>(number) : 0; }
  // Value `component` of record `record`; IndexError (naming `what`) outside the data.
  double at(std::size_t record, std::size_t component, const std::string& what) const;
  // The same with the name in two parts, joined only when the lookup fails: readers
  // call this once per value, and building the text each time would cost more than the
  // read.
  double at(std::size_t record, std::size_t component, const std::string& path, const char* name) const {
    if (record < count() && component < static_cast<std::size_t>(number)) {
      return values[record * static_cast<std::size_t>(number) + component];
    }
    return at(record, component, path + name);
  }
  std::span<const double> record(std::size_t i) const {
    return {values.data() + i * static_cast<std::size_t>(number), static_cast<std::size_t>(number)};
  }
};

class GlbFile {
 public:
  // `name` prefixes the error texts.
  GlbFile(std::string name, std::vector<std::uint8_t> bytes) : name_(std::move(name)), bytes_(std::move(bytes)) {}

  const std::string& name() const noexcept { return name_; }
  std::uint64_t size() const noexcept { return bytes_.size(); }
  std::uint64_t tell() const noexcept { return pos_; }
  // Like a stream, a position past the end is allowed; the next read fails.
  void seek(std::uint64_t pos) noexcept { pos_ = pos; }
  std::uint64_t left() const noexcept { return pos_ < bytes_.size() ? bytes_.size() - pos_ : 0; }

  // At most n bytes (fewer at the end), as a stream's read gives them.
  std::span<const std::uint8_t> read_up_to(std::uint64_t n);
  // Exactly n bytes, or ValueError naming `what`.
  std::span<const std::uint8_t> read(std::uint64_t n, const char* what);
  std::int32_t read_i32_le(const char* what);
  std::int32_t read_i32_be(const char* what);
  std::uint8_t read_u8(const char* what);

  // `vertexCount` records of an accessor of type `typeStr` and `componentType`, from the
  // current position, tightly packed and little-endian. ValueError for an unknown type
  // or a count the bytes left cannot hold.
  GlbAttribute ReadAttributeData(std::int64_t vertexCount, const std::string& typeStr, std::int64_t componentType);

 private:
  std::string name_;
  std::vector<std::uint8_t> bytes_;
  std::uint64_t pos_ = 0;
};

// Lookups into the JSON document that fail as a script's lookups would: KeyError for a
// missing member, IndexError for a position outside an array, TypeError for a value
// of the wrong kind. `what` names the place in the error text.
const GlbJson& JsonMember(const GlbJson& obj, const char* key, const std::string& what);
const GlbJson& JsonElement(const GlbJson& arr, std::int64_t index, const std::string& what);
std::int64_t JsonInt(const GlbJson& value, const std::string& what);
double JsonNumber(const GlbJson& value, const std::string& what);
std::string JsonString(const GlbJson& value, const std::string& what);
// Member count of an object or element count of an array (0 for anything else).
std::int64_t JsonSize(const GlbJson& value) noexcept;
}  // namespace vorn
