#include "glb_writer.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>

namespace vorn::tools {
namespace {

int Components(const char* type) {
  const std::string t = type;
  if (t == "SCALAR") return 1;
  if (t == "VEC2") return 2;
  if (t == "VEC3") return 3;
  if (t == "VEC4") return 4;
  if (t == "MAT4") return 16;
  return 0;
}

void PutU32(std::vector<std::uint8_t>& out, std::uint32_t v) {
  for (int i = 0; i < 4; ++i) out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}

}  // namespace

GlbWriter::GlbWriter() {
  doc_["asset"] = {{"version", "2.0"}, {"generator", "Vorn3D make_demo_assets"}};
  doc_["bufferViews"] = Json::array();
  doc_["accessors"] = Json::array();
}

int GlbWriter::AddView(const std::uint8_t* data, std::size_t size) {
  const std::size_t offset = bin_.size();
  bin_.insert(bin_.end(), data, data + size);
  while (bin_.size() % 4) bin_.push_back(0);
  doc_["bufferViews"].push_back({{"buffer", 0}, {"byteOffset", offset}, {"byteLength", size}});
  return static_cast<int>(doc_["bufferViews"].size()) - 1;
}

int GlbWriter::AddAccessor(int view, int componentType, std::size_t count, const char* type) {
  doc_["accessors"].push_back(
      {{"bufferView", view}, {"componentType", componentType}, {"count", count}, {"type", type}});
  return static_cast<int>(doc_["accessors"].size()) - 1;
}

int GlbWriter::AddFloats(const std::vector<float>& values, const char* type, bool withBounds) {
  // Little-endian hosts only, like the rest of the engine's file code.
  std::vector<std::uint8_t> bytes(values.size() * 4);
  if (!values.empty()) std::memcpy(bytes.data(), values.data(), bytes.size());
  const int n = Components(type);
  const int index = AddAccessor(AddView(bytes.data(), bytes.size()), 5126, values.size() / n, type);
  if (withBounds) {
    std::vector<float> lo(n, std::numeric_limits<float>::max()), hi(n, std::numeric_limits<float>::lowest());
    for (std::size_t i = 0; i < values.size(); ++i) {
      lo[i % n] = std::min(lo[i % n], values[i]);
      hi[i % n] = std::max(hi[i % n], values[i]);
    }
    doc_["accessors"][index]["min"] = lo;
    doc_["accessors"][index]["max"] = hi;
  }
  return index;
}

int GlbWriter::AddU16(const std::vector<std::uint16_t>& values, const char* type) {
  std::vector<std::uint8_t> bytes;
  for (const auto v : values) bytes.insert(bytes.end(), {static_cast<std::uint8_t>(v), static_cast<std::uint8_t>(v >> 8)});
  return AddAccessor(AddView(bytes.data(), bytes.size()), 5123, values.size() / Components(type), type);
}

int GlbWriter::AddU8(const std::vector<std::uint8_t>& values, const char* type) {
  return AddAccessor(AddView(values.data(), values.size()), 5121, values.size() / Components(type), type);
}

int GlbWriter::AddImageBytes(const std::vector<std::uint8_t>& bytes) { return AddView(bytes.data(), bytes.size()); }

std::vector<std::uint8_t> GlbWriter::Bytes() const {
  Json doc = doc_;
  doc["buffers"] = Json::array({{{"byteLength", bin_.size()}}});
  std::string json = doc.dump();
  while (json.size() % 4) json += ' ';
  std::vector<std::uint8_t> out{'g', 'l', 'T', 'F'};
  PutU32(out, 2);
  PutU32(out, static_cast<std::uint32_t>(12 + 8 + json.size() + 8 + bin_.size()));
  PutU32(out, static_cast<std::uint32_t>(json.size()));
  out.insert(out.end(), {'J', 'S', 'O', 'N'});
  out.insert(out.end(), json.begin(), json.end());
  PutU32(out, static_cast<std::uint32_t>(bin_.size()));
  out.insert(out.end(), {'B', 'I', 'N', 0});
  out.insert(out.end(), bin_.begin(), bin_.end());
  return out;
}

bool GlbWriter::WriteFile(const std::string& path) const {
  const std::vector<std::uint8_t> bytes = Bytes();
  std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "wb"), &std::fclose);
  return file && std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
}

}  // namespace vorn::tools
