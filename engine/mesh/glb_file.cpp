#include "mesh/glb_file.h"

#include <bit>
#include <limits>

#include "core/console.h"
#include "core/errors.h"

namespace vorn {

int GetComponentTypeByte(std::int64_t typeId) noexcept {
  switch (typeId) {
    case 5120: case 5121: return 1;
    case 5122: case 5123: return 2;
    case 5125: case 5126: return 4;
    default: return 0;
  }
}

int GetComponentNumber(const std::string& typeStr) noexcept {
  if (typeStr == "SCALAR") return 1;
  if (typeStr == "VEC2") return 2;
  if (typeStr == "VEC3") return 3;
  if (typeStr == "VEC4" || typeStr == "MAT2") return 4;
  if (typeStr == "MAT3") return 9;
  if (typeStr == "MAT4") return 16;
  return 0;
}

std::string GetFilterString(std::int64_t filter) {
  switch (filter) {
    case 9728: return "GL_NEAREST";
    case 9729: return "GL_LINEAR";
    case 9984: return "GL_NEAREST_MIPMAP_NEAREST";
    case 9985: return "GL_LINEAR_MIPMAP_NEAREST";
    case 9986: return "GL_NEAREST_MIPMAP_LINEAR";
    case 9987: return "GL_LINEAR_MIPMAP_LINEAR";
    default: return std::to_string(filter);
  }
}

std::string GetWarpString(std::int64_t wrap) {
  switch (wrap) {
    case 33071: return "GL_CLAMP_TO_EDGE";
    case 33648: return "GL_MIRRORED_REPEAT";
    // The repeat mode is matched under this number, kept as the exporter's files need it.
    case 10297: return "GL_REPEAT";
    default: return std::to_string(wrap);
  }
}

double GlbAttribute::at(std::size_t rec, std::size_t component, const std::string& what) const {
  if (rec >= count() || component >= static_cast<std::size_t>(number)) {
    throw IndexError(what + ": value " + std::to_string(component) + " of record " + std::to_string(rec) +
                     " is outside the accessor (" + std::to_string(count()) + " records of " +
                     std::to_string(number) + ")");
  }
  return values[rec * static_cast<std::size_t>(number) + component];
}

std::span<const std::uint8_t> GlbFile::read_up_to(std::uint64_t n) {
  const std::uint64_t take = n < left() ? n : left();
  std::span<const std::uint8_t> out(bytes_.data() + (take ? pos_ : 0), static_cast<std::size_t>(take));
  pos_ += take;
  return out;
}

std::span<const std::uint8_t> GlbFile::read(std::uint64_t n, const char* what) {
  if (n > left()) {
    throw ValueError(name_ + ": " + what + " needs " + std::to_string(n) + " bytes at offset " +
                     std::to_string(pos_) + ", the file has " + std::to_string(left()) + " left");
  }
  return read_up_to(n);
}

std::int32_t GlbFile::read_i32_le(const char* what) {
  const auto b = read(4, what);
  const std::uint32_t u = std::uint32_t{b[0]} | std::uint32_t{b[1]} << 8 | std::uint32_t{b[2]} << 16 |
                          std::uint32_t{b[3]} << 24;
  return std::bit_cast<std::int32_t>(u);
}

std::int32_t GlbFile::read_i32_be(const char* what) {
  const auto b = read(4, what);
  const std::uint32_t u = std::uint32_t{b[3]} | std::uint32_t{b[2]} << 8 | std::uint32_t{b[1]} << 16 |
                          std::uint32_t{b[0]} << 24;
  return std::bit_cast<std::int32_t>(u);
}

std::uint8_t GlbFile::read_u8(const char* what) { return read(1, what)[0]; }

GlbAttribute GlbFile::ReadAttributeData(std::int64_t vertexCount, const std::string& typeStr,
                                        std::int64_t componentType) {
  const int number = GetComponentNumber(typeStr);
  const int bytes = GetComponentTypeByte(componentType);
  if (number == 0 || bytes == 0) {
    throw ValueError(name_ + ": accessor type " + console::py_repr_str(typeStr) + " with componentType " +
                     std::to_string(componentType) + " is not supported");
  }
  if (vertexCount < 0) throw ValueError(name_ + ": accessor count " + std::to_string(vertexCount) + " is negative");
  // count <= left first, so the product below (at most 64 bytes a record) cannot overflow.
  const std::uint64_t count = static_cast<std::uint64_t>(vertexCount);
  const std::uint64_t recordBytes = static_cast<std::uint64_t>(number) * static_cast<std::uint64_t>(bytes);
  if (count > left() || count * recordBytes > left()) {
    throw ValueError(name_ + ": accessor of " + std::to_string(vertexCount) + " " + typeStr + " records needs " +
                     (count > left() ? "at least " + std::to_string(count)
                                     : std::to_string(count * recordBytes)) +
                     " bytes at offset " + std::to_string(pos_) + ", the file has " + std::to_string(left()) +
                     " left");
  }
  const auto data = read(count * recordBytes, "accessor data");
  GlbAttribute out;
  out.number = number;
  out.isFloat = componentType == 5126;
  out.values.reserve(static_cast<std::size_t>(count) * static_cast<std::size_t>(number));
  for (std::size_t i = 0; i < data.size(); i += static_cast<std::size_t>(bytes)) {
    const std::uint8_t* p = data.data() + i;
    switch (bytes) {
      case 1: out.values.push_back(p[0]); break;
      case 2: out.values.push_back(static_cast<std::uint16_t>(p[0] | p[1] << 8)); break;
      default: {
        const std::uint32_t u = std::uint32_t{p[0]} | std::uint32_t{p[1]} << 8 | std::uint32_t{p[2]} << 16 |
                                std::uint32_t{p[3]} << 24;
        // Four-byte components are floats for 5126 and signed integers otherwise.
        out.values.push_back(componentType == 5126 ? static_cast<double>(std::bit_cast<float>(u))
                                                   : static_cast<double>(std::bit_cast<std::int32_t>(u)));
      }
    }
  }
  return out;
}

const GlbJson& JsonMember(const GlbJson& obj, const char* key, const std::string& what) {
  if (!obj.is_object()) throw TypeError(what + " is not an object");
  const auto it = obj.find(key);
  if (it == obj.end()) throw KeyError(what + " has no " + console::py_repr_str(key));
  return *it;
}

const GlbJson& JsonElement(const GlbJson& arr, std::int64_t index, const std::string& what) {
  if (!arr.is_array()) throw TypeError(what + " is not an array");
  if (index < 0 || static_cast<std::uint64_t>(index) >= arr.size()) {
    throw IndexError(what + " index " + std::to_string(index) + " out of range (" + std::to_string(arr.size()) +
                     " entries)");
  }
  return arr[static_cast<std::size_t>(index)];
}

std::int64_t JsonInt(const GlbJson& value, const std::string& what) {
  if (value.is_number_unsigned()) {
    const auto u = value.get<std::uint64_t>();
    if (u > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
      throw ValueError(what + " " + std::to_string(u) + " is too large");
    }
    return static_cast<std::int64_t>(u);
  }
  if (value.is_number_integer()) return value.get<std::int64_t>();
  throw TypeError(what + " must be an integer, not " + value.dump());
}

double JsonNumber(const GlbJson& value, const std::string& what) {
  if (!value.is_number()) throw TypeError(what + " must be a number, not " + value.dump());
  return value.get<double>();
}

std::string JsonString(const GlbJson& value, const std::string& what) {
  if (!value.is_string()) throw TypeError(what + " must be a string, not " + value.dump());
  return value.get<std::string>();
}

std::int64_t JsonSize(const GlbJson& value) noexcept {
  return value.is_array() || value.is_object() ? static_cast<std::int64_t>(value.size()) : 0;
}

}  // namespace vorn
