#pragma once
// Small GLB files built in memory for the reader tests and the fuzz seeds: a JSON
// document and a BIN chunk of packed little-endian values.
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

// A document and its BIN chunk, changed freely before file() packs them.
struct Doc {
  GlbJson json;
  BinBuilder bin;
  Bytes file() const { return MakeGLB(json.dump(), bin.data); }
};

// One triangle with texture coordinates and normals; with `skin`, two joints (node 1
// the parent of node 2) and an animation "wave" moving node 1.
inline Doc Triangle(bool skin) {
  Doc d;
  d.json = {{"asset", {{"version", "2.0"}}}, {"scenes", GlbJson::array({{{"nodes", {0}}}})}};
  const auto pos = d.bin.Floats({0, 0, 0, 1, 0, 0, 0, 1, 0});
  AddAccessor(d.json, pos, 36, 3, "VEC3", 5126);
  const auto nrm = d.bin.Floats({0, 0, 1, 0, 0, 1, 0, 0, 1});
  AddAccessor(d.json, nrm, 36, 3, "VEC3", 5126);
  const auto uv = d.bin.Floats({0, 0, 1, 0, 0, 1});
  AddAccessor(d.json, uv, 24, 3, "VEC2", 5126);
  const auto idx = d.bin.U16({0, 1, 2});
  AddAccessor(d.json, idx, 6, 3, "SCALAR", 5123);
  GlbJson attributes = {{"POSITION", 0}, {"NORMAL", 1}, {"TEXCOORD_0", 2}};
  d.json["nodes"] = GlbJson::array({{{"mesh", 0}}});
  if (skin) {
    const auto joints = d.bin.U8({0, 1, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0});
    AddAccessor(d.json, joints, 12, 3, "VEC4", 5121);
    const auto weights = d.bin.Floats({0.25f, 0.75f, 0, 0, 1, 0, 0, 0, 0.5f, 0.5f, 0, 0});
    AddAccessor(d.json, weights, 48, 3, "VEC4", 5126);
    const auto ibm = d.bin.Floats({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, -1, 0, 1,  //
                                   1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, -2, 0, 1});
    AddAccessor(d.json, ibm, 128, 2, "MAT4", 5126);
    const auto times = d.bin.Floats({0, 1.5f});
    AddAccessor(d.json, times, 8, 2, "SCALAR", 5126);  // 7
    const auto moves = d.bin.Floats({0, 1, 0, 2, 1, 0});
    AddAccessor(d.json, moves, 24, 2, "VEC3", 5126);  // 8
    const auto turns = d.bin.Floats({0, 0, 0, 1, 0, 0, 0, 1});
    AddAccessor(d.json, turns, 32, 2, "VEC4", 5126);  // 9
    const auto sizes = d.bin.Floats({1, 1, 1, 1, 1, 1});
    AddAccessor(d.json, sizes, 24, 2, "VEC3", 5126);  // 10
    attributes["JOINTS_0"] = 4;
    attributes["WEIGHTS_0"] = 5;
    d.json["nodes"][0]["skin"] = 0;
    d.json["nodes"].push_back({{"name", "root"}, {"children", {2}}, {"translation", {0, 1, 0}}});
    d.json["nodes"].push_back({{"name", "tip"}, {"translation", {0, 1, 0}}, {"rotation", {0, 0, 0, 1}}});
    d.json["skins"] = GlbJson::array({{{"joints", {1, 2}}, {"inverseBindMatrices", 6}}});
    const auto channel = [](int sampler, int node, const char* path) {
      return GlbJson{{"sampler", sampler}, {"target", {{"node", node}, {"path", path}}}};
    };
    const auto sampler = [](int input, int output) { return GlbJson{{"input", input}, {"output", output}}; };
    d.json["animations"] = GlbJson::array(
        {{{"name", "wave"},
          {"channels", GlbJson::array({channel(0, 1, "translation"), channel(1, 1, "rotation"),
                                       channel(2, 1, "scale"), channel(0, 2, "translation")})},
          {"samplers", GlbJson::array({sampler(7, 8), sampler(7, 9), sampler(7, 10)})}}});
  }
  d.json["meshes"] = GlbJson::array({{{"primitives", GlbJson::array({{{"attributes", attributes}, {"indices", 3}}})}}});
  return d;
}

}  // namespace vorn::test
