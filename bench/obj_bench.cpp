// Reading an OBJ file of 100,000 vertices (positions, normals and texture coordinates
// aligned, one triangle per three vertices) with the engine's reader, and the same file
// through Debian's tinyobjloader as the baseline when it is installed.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "core/console.h"
#include "mesh/obj_reader.h"

#ifdef VORN_HAVE_TINYOBJ
#include <tiny_obj_loader.h>
#endif

namespace {

constexpr int kVertices = 100000;

// The file, written once per process into the temporary folder.
const std::string& ModelFile() {
  static const std::string path = [] {
    const std::string p =
        (std::filesystem::temp_directory_path() / ("vorn_obj_bench_" + std::to_string(::getpid()) + ".obj")).string();
    std::ofstream out(p);
    out << "usemtl body\n";
    char line[128];
    for (int i = 0; i < kVertices; ++i) {
      const double a = i * 0.001;
      std::snprintf(line, sizeof line, "v %.6f %.6f %.6f\n", a, a * 0.5 - 3.0, 100.0 - a);
      out << line;
      std::snprintf(line, sizeof line, "vn %.6f %.6f %.6f\n", 0.0, 0.6, 0.8);
      out << line;
      std::snprintf(line, sizeof line, "vt %.6f %.6f\n", (i % 256) / 255.0, (i / 256 % 256) / 255.0);
      out << line;
    }
    // Numbered from 1 so that the baseline accepts the faces too.
    for (int i = 1; i + 2 <= kVertices; i += 3) out << "f " << i << '/' << i << '/' << i << ' ' << i + 1 << '/'
                                                    << i + 1 << '/' << i + 1 << ' ' << i + 2 << '/' << i + 2 << '/'
                                                    << i + 2 << '\n';
    return p;
  }();
  return path;
}

void DiscardConsole(std::string_view) {}

void BM_VornReadOBJ(benchmark::State& state) {
  const std::string& path = ModelFile();
  const auto previous = vorn::console::set_sink(&DiscardConsole);
  for (auto _ : state) {
    const vorn::ObjModel model = vorn::ReadOBJFile(path, false);
    benchmark::DoNotOptimize(model.obj_vertex_array.at("body").size());
  }
  vorn::console::set_sink(previous);
  state.SetItemsProcessed(state.iterations() * kVertices);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(std::filesystem::file_size(path)));
}
BENCHMARK(BM_VornReadOBJ)->Unit(benchmark::kMillisecond);

#ifdef VORN_HAVE_TINYOBJ
void BM_TinyObjLoader(benchmark::State& state) {
  const std::string& path = ModelFile();
  for (auto _ : state) {
    tinyobj::attrib_t attrib;
    std::vector<tinyobj::shape_t> shapes;
    std::vector<tinyobj::material_t> materials;
    std::string warn, err;
    const bool ok = tinyobj::LoadObj(&attrib, &shapes, &materials, &warn, &err, path.c_str(), nullptr, true);
    if (!ok || attrib.vertices.size() != 3u * kVertices) state.SkipWithError("baseline could not read the file");
    benchmark::DoNotOptimize(attrib.vertices.data());
  }
  state.SetItemsProcessed(state.iterations() * kVertices);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(std::filesystem::file_size(path)));
}
BENCHMARK(BM_TinyObjLoader)->Unit(benchmark::kMillisecond);
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
