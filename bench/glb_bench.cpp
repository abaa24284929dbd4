// Reading a skinned GLB file of 10,000 vertices (positions, normals, texture
// coordinates, four joints and weights a vertex, a 100 x 100 grid of triangles), with a
// skin of four joints and one animation of 30 keys a channel. The engine's reader is
// timed with its console lines discarded, then with the lines written out and with the
// line formatting alone, so the cost of the printing shows apart; Debian's tinygltf
// parses the same bytes as the baseline when it is installed, once alone and once also
// building the same vertex records from its accessors.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "core/console.h"
#include "mesh/glb_file.h"
#include "mesh/glb_print.h"
#include "mesh/glb_reader.h"
#include "node/vertex_bone_sort.h"

#ifdef VORN_HAVE_TINYGLTF
#include <tiny_gltf.h>
#endif

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int kGrid = 100;  // vertices a side
constexpr int kVertices = kGrid * kGrid;
constexpr int kJoints = 4;
constexpr int kKeys = 30;

// The BIN chunk and the document describing it, built side by side.
struct Builder {
  vorn::GlbJson doc;
  Bytes bin;

  template <class T>
  int Add(const std::vector<T>& values, std::int64_t count, const char* type, int componentType) {
    while (bin.size() % 4) bin.push_back(0);
    const std::size_t offset = bin.size();
    const std::size_t length = values.size() * sizeof(T);
    bin.resize(offset + length);
    std::memcpy(bin.data() + offset, values.data(), length);  // little-endian host
    doc["bufferViews"].push_back({{"buffer", 0}, {"byteOffset", offset}, {"byteLength", length}});
    doc["accessors"].push_back({{"bufferView", doc["bufferViews"].size() - 1},
                                {"componentType", componentType},
                                {"count", count},
                                {"type", type}});
    return static_cast<int>(doc["accessors"].size() - 1);
  }
};

void PutU32(Bytes& out, std::uint32_t v) {
  for (int i = 0; i < 4; ++i) out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}

Bytes BuildFile() {
  Builder b;
  b.doc = {{"asset", {{"version", "2.0"}}}, {"scene", 0}, {"scenes", vorn::GlbJson::array({{{"nodes", {0, 1}}}})}};
  std::vector<float> pos, nrm, uv, weights;
  std::vector<std::uint8_t> joints;
  for (int y = 0; y < kGrid; ++y) {
    for (int x = 0; x < kGrid; ++x) {
      pos.insert(pos.end(), {x * 0.1f, y * 0.1f, std::sin(x * 0.2f) * 0.3f});
      nrm.insert(nrm.end(), {0.0f, 0.6f, 0.8f});
      uv.insert(uv.end(), {x / float(kGrid - 1), y / float(kGrid - 1)});
      // Each row band leans on the joint of its height and the one above.
      const int j = y * kJoints / kGrid;
      joints.insert(joints.end(), {std::uint8_t(j), std::uint8_t((j + 1) % kJoints), 0, 0});
      const float w = (y % (kGrid / kJoints)) / float(kGrid / kJoints);
      weights.insert(weights.end(), {1.0f - w * 0.5f, w * 0.5f, 0.0f, 0.0f});
    }
  }
  std::vector<std::uint16_t> indices;
  for (int y = 0; y + 1 < kGrid; ++y) {
    for (int x = 0; x + 1 < kGrid; ++x) {
      const auto v = static_cast<std::uint16_t>(y * kGrid + x);
      indices.insert(indices.end(), {v, std::uint16_t(v + 1), std::uint16_t(v + kGrid), std::uint16_t(v + 1),
                                     std::uint16_t(v + kGrid + 1), std::uint16_t(v + kGrid)});
    }
  }
  const int aPos = b.Add(pos, kVertices, "VEC3", 5126);
  b.doc["accessors"][static_cast<std::size_t>(aPos)]["min"] = {0.0, 0.0, -0.3};
  b.doc["accessors"][static_cast<std::size_t>(aPos)]["max"] = {(kGrid - 1) * 0.1, (kGrid - 1) * 0.1, 0.3};
  const int aNrm = b.Add(nrm, kVertices, "VEC3", 5126);
  const int aUV = b.Add(uv, kVertices, "VEC2", 5126);
  const int aJoints = b.Add(joints, kVertices, "VEC4", 5121);
  const int aWeights = b.Add(weights, kVertices, "VEC4", 5126);
  const int aIndices = b.Add(indices, static_cast<std::int64_t>(indices.size()), "SCALAR", 5123);

  // Joints are nodes 1..4, a chain one unit apart; each inverse bind matrix undoes its
  // joint's height (column-major, translation in the last column).
  std::vector<float> ibm;
  for (int j = 0; j < kJoints; ++j) {
    ibm.insert(ibm.end(), {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, -float(j), 0, 1});
  }
  const int aIbm = b.Add(ibm, kJoints, "MAT4", 5126);
  std::vector<float> times, rotations, moves;
  for (int k = 0; k < kKeys; ++k) {
    times.push_back(k / 30.0f);
    const float half = 0.02f * k;
    rotations.insert(rotations.end(), {0.0f, 0.0f, std::sin(half), std::cos(half)});
    moves.insert(moves.end(), {0.0f, 0.01f * k, 0.0f});
  }
  const int aTimes = b.Add(times, kKeys, "SCALAR", 5126);
  const int aRot = b.Add(rotations, kKeys, "VEC4", 5126);
  const int aMove = b.Add(moves, kKeys, "VEC3", 5126);

  b.doc["nodes"] = vorn::GlbJson::array({{{"name", "body"}, {"mesh", 0}, {"skin", 0}}});
  for (int j = 0; j < kJoints; ++j) {
    vorn::GlbJson node = {{"name", "joint" + std::to_string(j)}, {"translation", {0.0, j ? 1.0 : 0.0, 0.0}}};
    if (j + 1 < kJoints) node["children"] = {j + 2};
    b.doc["nodes"].push_back(node);
  }
  b.doc["skins"] = vorn::GlbJson::array({{{"joints", {1, 2, 3, 4}}, {"inverseBindMatrices", aIbm}}});
  vorn::GlbJson channels = vorn::GlbJson::array();
  for (int j = 0; j < kJoints; ++j) {
    channels.push_back({{"sampler", 0}, {"target", {{"node", j + 1}, {"path", "rotation"}}}});
  }
  channels.push_back({{"sampler", 1}, {"target", {{"node", 1}, {"path", "translation"}}}});
  b.doc["animations"] = vorn::GlbJson::array(
      {{{"name", "sway"},
        {"channels", channels},
        {"samplers", vorn::GlbJson::array({{{"input", aTimes}, {"output", aRot}, {"interpolation", "LINEAR"}},
                                           {{"input", aTimes}, {"output", aMove}, {"interpolation", "LINEAR"}}})}}});
  b.doc["meshes"] = vorn::GlbJson::array(
      {{{"name", "grid"},
        {"primitives", vorn::GlbJson::array({{{"attributes", {{"POSITION", aPos},
                                                               {"NORMAL", aNrm},
                                                               {"TEXCOORD_0", aUV},
                                                               {"JOINTS_0", aJoints},
                                                               {"WEIGHTS_0", aWeights}}},
                                              {"indices", aIndices},
                                              {"mode", 4}}})}}});
  while (b.bin.size() % 4) b.bin.push_back(0);
  b.doc["buffers"] = vorn::GlbJson::array({{{"byteLength", b.bin.size()}}});

  std::string json = b.doc.dump();
  while (json.size() % 4) json += ' ';
  Bytes out{'g', 'l', 'T', 'F'};
  PutU32(out, 2);
  PutU32(out, static_cast<std::uint32_t>(12 + 8 + json.size() + 8 + b.bin.size()));
  PutU32(out, static_cast<std::uint32_t>(json.size()));
  out.insert(out.end(), {'J', 'S', 'O', 'N'});
  out.insert(out.end(), json.begin(), json.end());
  PutU32(out, static_cast<std::uint32_t>(b.bin.size()));
  out.insert(out.end(), {'B', 'I', 'N', 0});
  out.insert(out.end(), b.bin.begin(), b.bin.end());
  return out;
}

// The file, written once per process into the temporary folder.
const std::string& ModelFile() {
  static const std::string path = [] {
    const std::string p =
        (std::filesystem::temp_directory_path() / ("vorn_glb_bench_" + std::to_string(::getpid()) + ".glb")).string();
    const Bytes bytes = BuildFile();
    std::ofstream out(p, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return p;
  }();
  return path;
}

// The file's bytes as the mesh loader reads them.
Bytes ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

const Bytes& FileBytes() {
  static const Bytes bytes = ReadFile(ModelFile());
  return bytes;
}

void DiscardConsole(std::string_view) {}

// Writes each line as the standard sink does (a write and a flush a line), into the
// null device instead of the benchmark's own output.
std::FILE* g_null = nullptr;
void NullDeviceConsole(std::string_view line) {
  std::fwrite(line.data(), 1, line.size(), g_null);
  std::fputc('\n', g_null);
  std::fflush(g_null);
}

void CheckModel(benchmark::State& state, const std::optional<vorn::GlbModel>& model) {
  if (!model || model->submeshes.size() != 1 || model->submeshes[0].vertices.size() != 15u * kVertices ||
      model->actions.size() != 1) {
    state.SkipWithError("the reader did not give the expected model");
  }
}

void SetCounters(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * kVertices);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(FileBytes().size()));
}

// The bytes in memory: the reader alone, console lines formatted and discarded.
void BM_VornReadGLB(benchmark::State& state) {
  const Bytes& bytes = FileBytes();
  const auto previous = vorn::console::set_sink(&DiscardConsole);
  for (auto _ : state) {
    auto model = vorn::ReadGLB("bench.glb", bytes);
    CheckModel(state, model);
    benchmark::DoNotOptimize(model);
  }
  vorn::console::set_sink(previous);
  SetCounters(state);
}
BENCHMARK(BM_VornReadGLB)->Unit(benchmark::kMillisecond);

// As the mesh loader does it: the file read through a stream, then the reader.
void BM_VornReadGLBFile(benchmark::State& state) {
  const std::string& path = ModelFile();
  const auto previous = vorn::console::set_sink(&DiscardConsole);
  for (auto _ : state) {
    auto model = vorn::ReadGLB(path, ReadFile(path));
    CheckModel(state, model);
    benchmark::DoNotOptimize(model);
  }
  vorn::console::set_sink(previous);
  SetCounters(state);
}
BENCHMARK(BM_VornReadGLBFile)->Unit(benchmark::kMillisecond);

// The reader with its lines written out (to the null device): the writing's share is
// the difference to BM_VornReadGLB.
void BM_VornReadGLBPrinted(benchmark::State& state) {
  const Bytes& bytes = FileBytes();
  g_null = std::fopen("/dev/null", "w");
  if (!g_null) {
    state.SkipWithError("no null device");
    return;
  }
  const auto previous = vorn::console::set_sink(&NullDeviceConsole);
  for (auto _ : state) {
    auto model = vorn::ReadGLB("bench.glb", bytes);
    CheckModel(state, model);
    benchmark::DoNotOptimize(model);
  }
  vorn::console::set_sink(previous);
  std::fclose(g_null);
  SetCounters(state);
}
BENCHMARK(BM_VornReadGLBPrinted)->Unit(benchmark::kMillisecond);

// The formatting of the reader's large lines alone (the document, the primitive's
// accessors, the joint table and the actions), made from the same data: the share of
// BM_VornReadGLB that goes to lines nobody reads when the console is discarded.
void BM_VornGLBLineFormatting(benchmark::State& state) {
  const Bytes& bytes = FileBytes();
  const auto previous = vorn::console::set_sink(&DiscardConsole);
  const auto model = vorn::ReadGLB("bench.glb", bytes);
  vorn::console::set_sink(previous);
  CheckModel(state, model);
  if (!model) return;
  std::uint32_t jsonLength = 0;
  std::memcpy(&jsonLength, bytes.data() + 12, 4);
  const auto doc = vorn::GlbJson::parse(bytes.begin() + 20, bytes.begin() + 20 + jsonLength);
  vorn::GlbFile file("bench.glb", bytes);
  const std::uint64_t binData = 20 + jsonLength + 8;
  vorn::GlbAttributes data;
  const auto& prim = doc["meshes"][0]["primitives"][0];
  const auto read = [&](const vorn::GlbJson& index) {
    const auto& acc = doc["accessors"][index.get<std::size_t>()];
    const auto& view = doc["bufferViews"][acc["bufferView"].get<std::size_t>()];
    file.seek(binData + view["byteOffset"].get<std::uint64_t>());
    return file.ReadAttributeData(acc["count"].get<std::int64_t>(), acc["type"].get<std::string>(),
                                  acc["componentType"].get<std::int64_t>());
  };
  for (const auto& [name, accessor] : prim["attributes"].items()) data.set(name, read(accessor));
  data.set("indices", read(prim["indices"]));
  vorn::OrderedMap<std::int64_t, std::vector<std::int64_t>> boneDict;
  const vorn::GlbAttribute& joints = data.at("JOINTS_0");
  for (std::size_t v = 0; v < joints.count(); ++v) {
    for (std::size_t c = 0; c < 4; ++c) {
      boneDict[static_cast<std::int64_t>(joints.at(v, c, ""))].push_back(static_cast<std::int64_t>(v));
    }
  }
  std::size_t length = 0;
  for (auto _ : state) {
    length += vorn::JsonToPy(doc).size();
    length += vorn::AttributesToPy(data).size();
    length += vorn::BoneDictToPy(boneDict).size();
    length += vorn::ActionsToPy(model->actions).size();
  }
  benchmark::DoNotOptimize(length);
  SetCounters(state);
}
BENCHMARK(BM_VornGLBLineFormatting)->Unit(benchmark::kMillisecond);

#ifdef VORN_HAVE_TINYGLTF
// Parses into tinygltf's model: the document and a copy of the buffer; the accessors
// stay packed (no vertex records are built). The file has no images.
void BM_TinyGltfLoadBinary(benchmark::State& state) {
  const Bytes& bytes = FileBytes();
  tinygltf::TinyGLTF loader;
  for (auto _ : state) {
    tinygltf::Model model;
    std::string err, warn;
    const bool ok = loader.LoadBinaryFromMemory(&model, &err, &warn, bytes.data(),
                                                static_cast<unsigned>(bytes.size()), "");
    if (!ok || model.accessors.empty() || model.accessors[0].count != kVertices) {
      state.SkipWithError(("baseline could not read the file: " + err).c_str());
    }
    benchmark::DoNotOptimize(model.buffers.data());
  }
  SetCounters(state);
}
BENCHMARK(BM_TinyGltfLoadBinary)->Unit(benchmark::kMillisecond);

// An accessor's values as doubles, for the component types the file uses.
std::vector<double> Decode(const tinygltf::Model& model, int index) {
  const tinygltf::Accessor& acc = model.accessors[static_cast<std::size_t>(index)];
  const tinygltf::BufferView& view = model.bufferViews[static_cast<std::size_t>(acc.bufferView)];
  const std::uint8_t* p = model.buffers[static_cast<std::size_t>(view.buffer)].data.data() + view.byteOffset +
                          acc.byteOffset;
  const std::size_t n = acc.count * static_cast<std::size_t>(tinygltf::GetNumComponentsInType(acc.type));
  std::vector<double> out(n);
  for (std::size_t i = 0; i < n; ++i) {
    if (acc.componentType == TINYGLTF_COMPONENT_TYPE_FLOAT) {
      float f;
      std::memcpy(&f, p + 4 * i, 4);
      out[i] = f;
    } else if (acc.componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT) {
      out[i] = static_cast<std::uint16_t>(p[2 * i] | p[2 * i + 1] << 8);
    } else {
      out[i] = p[i];
    }
  }
  return out;
}

// The baseline doing the reader's main work too: the primitive's accessors decoded and
// interleaved into the same 15-float skinned records (bones ranked by weight), and the
// indices widened. Without the skeleton, the actions and the console lines.
void BM_TinyGltfLoadAndBuildRecords(benchmark::State& state) {
  const Bytes& bytes = FileBytes();
  tinygltf::TinyGLTF loader;
  for (auto _ : state) {
    tinygltf::Model model;
    std::string err, warn;
    if (!loader.LoadBinaryFromMemory(&model, &err, &warn, bytes.data(), static_cast<unsigned>(bytes.size()), "")) {
      state.SkipWithError(("baseline could not read the file: " + err).c_str());
      break;
    }
    const tinygltf::Primitive& prim = model.meshes[0].primitives[0];
    const auto pos = Decode(model, prim.attributes.at("POSITION"));
    const auto nrm = Decode(model, prim.attributes.at("NORMAL"));
    const auto uv = Decode(model, prim.attributes.at("TEXCOORD_0"));
    const auto joints = Decode(model, prim.attributes.at("JOINTS_0"));
    const auto weights = Decode(model, prim.attributes.at("WEIGHTS_0"));
    const auto index = Decode(model, prim.indices);
    std::vector<double> records;
    records.reserve(15 * static_cast<std::size_t>(kVertices));
    std::vector<vorn::BoneInfo> info;
    for (std::size_t v = 0; v < static_cast<std::size_t>(kVertices); ++v) {
      records.insert(records.end(), {uv[2 * v], uv[2 * v + 1]});
      info.clear();
      for (std::size_t k = 0; k < 4; ++k) {
        info.emplace_back(static_cast<std::int64_t>(joints[4 * v + k]), weights[4 * v + k]);
      }
      const auto [bone, weight] = vorn::SortVertex4BoneInfo(info);
      records.push_back(static_cast<double>(bone[0]) + static_cast<double>(bone[1]) * 0.01);
      records.push_back(static_cast<double>(bone[2]) + static_cast<double>(bone[3]) * 0.01);
      records.insert(records.end(), weight.begin(), weight.end());
      records.insert(records.end(), {nrm[3 * v], nrm[3 * v + 1], nrm[3 * v + 2], pos[3 * v], pos[3 * v + 1],
                                     pos[3 * v + 2], 1.0});
    }
    std::vector<std::int64_t> indices(index.begin(), index.end());
    benchmark::DoNotOptimize(records.data());
    benchmark::DoNotOptimize(indices.data());
  }
  SetCounters(state);
}
BENCHMARK(BM_TinyGltfLoadAndBuildRecords)->Unit(benchmark::kMillisecond);
#endif

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  std::error_code ec;
  std::filesystem::remove(ModelFile(), ec);
  return 0;
}
