#include "mesh/glb_print.h"

#include <charconv>
#include <cstring>

#include "core/console.h"
#include "core/errors.h"

namespace vorn {

std::string JsonToPy(const GlbJson& value, int depth) {
  // Bounds the recursion: a file could nest arrays a million deep.
  if (depth > 256) throw ValueError("the JSON chunk is nested deeper than 256 levels");
  switch (value.type()) {
    case GlbJson::value_t::object: {
      std::string out = "{";
      bool first = true;
      for (const auto& [k, v] : value.items()) {
        out += (first ? "" : ", ") + console::py_repr_str(k) + ": " + JsonToPy(v, depth + 1);
        first = false;
      }
      return out + "}";
    }
    case GlbJson::value_t::array: {
      std::string out = "[";
      for (std::size_t i = 0; i < value.size(); ++i) out += (i ? ", " : "") + JsonToPy(value[i], depth + 1);
      return out + "]";
    }
    case GlbJson::value_t::string: return console::py_repr_str(value.get_ref<const std::string&>());
    case GlbJson::value_t::boolean: return value.get<bool>() ? "True" : "False";
    case GlbJson::value_t::number_integer: return std::to_string(value.get<std::int64_t>());
    case GlbJson::value_t::number_unsigned: return std::to_string(value.get<std::uint64_t>());
    case GlbJson::value_t::number_float: return console::py_float(value.get<double>());
    default: return "None";
  }
}

std::string AttributeToPy(const GlbAttribute& attr) {
  std::string out = "[";
  out.reserve(attr.values.size() * 12 + 2);
  const auto value = [&](double v) {
    if (attr.isFloat) {
      console::append_py_float(out, v);
    } else {
      char buf[24];
      out.append(buf, std::to_chars(buf, buf + sizeof buf, static_cast<std::int64_t>(v)).ptr);
    }
  };
  for (std::size_t r = 0; r < attr.count(); ++r) {
    if (r) out += ", ";
    if (attr.number == 1) {
      value(attr.values[r]);
      continue;
    }
    out += "[";
    const auto rec = attr.record(r);
    for (std::size_t c = 0; c < rec.size(); ++c) {
      if (c) out += ", ";
      value(rec[c]);
    }
    out += "]";
  }
  return out + "]";
}

std::string BytesToPy(std::span<const std::uint8_t> bytes) {
  const bool hasSingle = std::memchr(bytes.data(), '\'', bytes.size()) != nullptr;
  const bool hasDouble = std::memchr(bytes.data(), '"', bytes.size()) != nullptr;
  const char quote = hasSingle && !hasDouble ? '"' : '\'';
  static const char* hex = "0123456789abcdef";
  std::string out = "b";
  out += quote;
  for (const std::uint8_t c : bytes) {
    if (c == quote || c == '\\') {
      out += '\\';
      out += static_cast<char>(c);
    } else if (c == '\t') {
      out += "\\t";
    } else if (c == '\n') {
      out += "\\n";
    } else if (c == '\r') {
      out += "\\r";
    } else if (c >= 32 && c < 127) {
      out += static_cast<char>(c);
    } else {
      out += "\\x";
      out += hex[c >> 4];
      out += hex[c & 15];
    }
  }
  out += quote;
  return out;
}

std::string ChunkTypeText(std::span<const std::uint8_t> bytes) {
  std::string out;
  for (std::size_t i = 0; i < bytes.size();) {
    const std::uint8_t c = bytes[i];
    const std::size_t len = c < 0x80 ? 1 : (c >> 5) == 6 ? 2 : (c >> 4) == 14 ? 3 : (c >> 3) == 30 ? 4 : 0;
    bool ok = len > 0 && i + len <= bytes.size();
    for (std::size_t k = 1; ok && k < len; ++k) ok = (bytes[i + k] & 0xC0) == 0x80;
    if (ok) {
      out.append(reinterpret_cast<const char*>(bytes.data() + i), len);
      i += len;
    } else {
      ++i;  // an undecodable byte is dropped
    }
  }
  return out;
}

std::string AttributesToPy(const GlbAttributes& data) {
  std::string out = "{";
  bool first = true;
  for (const auto& [name, attr] : data) {
    out += (first ? "" : ", ") + console::py_repr_str(name) + ": " + AttributeToPy(attr);
    first = false;
  }
  return out + "}";
}

std::string BoneDictToPy(const OrderedMap<std::int64_t, std::vector<std::int64_t>>& dict) {
  std::string out = "{";
  bool first = true;
  for (const auto& [joint, vertices] : dict) {
    out += (first ? "" : ", ") + std::to_string(joint) + ": " + console::to_str(vertices);
    first = false;
  }
  return out + "}";
}

std::string ActionsToPy(const OrderedMap<std::string, MeshAction>& actions) {
  std::string out = "{";
  bool firstAction = true;
  for (const auto& [name, action] : actions) {
    out += (firstAction ? "" : ", ") + console::py_repr_str(name) + ": {";
    firstAction = false;
    bool firstBone = true;
    for (const auto& [bone, channels] : action) {
      out += (firstBone ? "" : ", ") + std::to_string(bone) + ": [";
      firstBone = false;
      for (std::size_t c = 0; c < channels.size(); ++c) {
        out += (c ? ", (" : "(") + console::py_repr_str(channels[c].path) + ", [";  // (path, samples)
        const auto& samples = channels[c].samples;
        for (std::size_t s = 0; s < samples.size(); ++s) {
          out += s ? ", (" : "(";
          console::append_py_float(out, samples[s].time);
          out += ", ";
          out += console::to_str(samples[s].value) + ")";
        }
        out += "])";
      }
      out += "]";
    }
    out += "}";
  }
  return out + "}";
}

}  // namespace vorn
