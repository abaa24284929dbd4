// Loading a 1024 by 1024 binary height file into a terrain, against plain loops that
// read the same file's floats. BM_PlainLoop writes only what the GPU takes: interleaved
// texture coordinate, normal and position per grid point (the layout GL_T2F_N3F_V3F)
// and 32-bit quad indices. BM_PlainLoopScriptArrays also writes the arrays a terrain
// keeps for scripts (heights, positions, normals and texture coordinates in doubles,
// quad indices in 64 bits), as the node must: the fair comparison for the loader.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "landscape/terrain.h"
#include "landscape/terrain_files.h"

namespace {

constexpr int kTiles = 1024;
constexpr std::size_t kPoints = static_cast<std::size_t>(kTiles + 1) * (kTiles + 1);

// The file, written once per process into the temporary folder: rolling hills.
const std::string& HeightFilePath() {
  static const std::string path = [] {
    const std::string p =
        (std::filesystem::temp_directory_path() / ("vorn_terrain_bench_" + std::to_string(::getpid()) + ".hei"))
            .string();
    std::vector<std::int32_t> header{kTiles, kTiles};
    std::vector<float> heights(kPoints);
    for (std::size_t i = 0; i < kPoints; ++i) {
      const double x = static_cast<double>(i % (kTiles + 1)), z = static_cast<double>(i / (kTiles + 1));
      heights[i] = static_cast<float>(std::sin(x * 0.05) * 3.0 + std::cos(z * 0.03) * 2.0);
    }
    std::ofstream out(p, std::ios::binary);
    out.write(reinterpret_cast<const char*>(header.data()), 8);
    out.write(reinterpret_cast<const char*>(heights.data()), static_cast<std::streamsize>(kPoints * 4));
    return p;
  }();
  return path;
}

void BM_LoadHeightFile(benchmark::State& state) {
  const std::string& path = HeightFilePath();
  auto terrain = vorn::MakeNode<vorn::Vorn_3DTerrain>();
  terrain->CreatePlane(1, 1, 1.0, true);
  for (auto _ : state) {
    terrain->LoadHeightFile(path);
    benchmark::DoNotOptimize(terrain->VVBOArray.find(0));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kPoints));
}
BENCHMARK(BM_LoadHeightFile)->Unit(benchmark::kMillisecond);

// The reader alone: the file's bytes to heights.
void BM_ParseHeightFile(benchmark::State& state) {
  const std::string& path = HeightFilePath();
  std::vector<std::uint8_t> bytes(std::filesystem::file_size(path));
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (std::fread(bytes.data(), 1, bytes.size(), f) != bytes.size()) state.SkipWithError("short read");
  std::fclose(f);
  for (auto _ : state) {
    const vorn::HeightFile grid = vorn::ParseHeightFileBinary(bytes, path, vorn::Vorn_3DPlane::kMaxGridPoints);
    benchmark::DoNotOptimize(grid.HeightArray.data());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kPoints));
}
BENCHMARK(BM_ParseHeightFile)->Unit(benchmark::kMillisecond);

// The whole file as a plain loader reads it, and the grid size from its header.
struct RawHeightFile {
  std::vector<unsigned char> bytes;
  std::int32_t cows = 0, rows = 0;
};
RawHeightFile ReadRaw(const std::string& path, benchmark::State& state) {
  RawHeightFile raw;
  raw.bytes.resize(std::filesystem::file_size(path));
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (std::fread(raw.bytes.data(), 1, raw.bytes.size(), f) != raw.bytes.size()) state.SkipWithError("short read");
  std::fclose(f);
  std::memcpy(&raw.cows, raw.bytes.data(), 4);
  std::memcpy(&raw.rows, raw.bytes.data() + 4, 4);
  return raw;
}

// The baseline: the file read whole, then one pass for the vertices and one for the
// indices, the normals by the terrain's rule. Its arrays are new at each load, as a
// loader's are: reusing them would leave out the cost of fresh memory that every
// load pays.
void BM_PlainLoop(benchmark::State& state) {
  const std::string& path = HeightFilePath();
  for (auto _ : state) {
    const RawHeightFile raw = ReadRaw(path, state);
    const std::vector<unsigned char>& bytes = raw.bytes;
    const std::int32_t cows = raw.cows, rows = raw.rows;
    std::vector<float> vertices;
    std::vector<std::uint32_t> indices;
    const std::size_t stride = static_cast<std::size_t>(cows) + 1;
    std::vector<float> h((static_cast<std::size_t>(rows) + 1) * stride);
    std::memcpy(h.data(), bytes.data() + 8, h.size() * 4);

    vertices.assign(h.size() * 8, 0.0f);
    const float beginX = -cows * 0.5f, beginZ = -rows * 0.5f;
    for (std::int32_t r = 0; r <= rows; ++r) {
      for (std::int32_t c = 0; c <= cows; ++c) {
        const std::size_t i = static_cast<std::size_t>(r) * stride + static_cast<std::size_t>(c);
        float n[3] = {0.0f, 1.0f, 0.0f};
        if (r > 0 && c > 0) {
          const double dx = static_cast<double>(h[i]) - h[i - 1], dz = static_cast<double>(h[i]) - h[i - stride];
          const double len = std::sqrt(dx * dx + 1.0 + dz * dz);
          n[0] = static_cast<float>(-dx / len), n[1] = static_cast<float>(1.0 / len);
          n[2] = static_cast<float>(-dz / len);
        }
        float* v = vertices.data() + i * 8;
        v[0] = static_cast<float>(c), v[1] = static_cast<float>(r);
        v[2] = n[0], v[3] = n[1], v[4] = n[2];
        v[5] = beginX + static_cast<float>(c), v[6] = h[i], v[7] = beginZ + static_cast<float>(r);
      }
    }
    indices.resize(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cows) * 4);
    std::uint32_t* out = indices.data();
    for (std::int32_t r = 0; r < rows; ++r) {
      for (std::int32_t c = 0; c < cows; ++c) {
        const auto v = static_cast<std::uint32_t>(static_cast<std::size_t>(r) * stride + static_cast<std::size_t>(c));
        const auto s = static_cast<std::uint32_t>(stride);
        *out++ = v, *out++ = v + 1, *out++ = v + 1 + s, *out++ = v + s;
      }
    }
    benchmark::DoNotOptimize(vertices.data());
    benchmark::DoNotOptimize(indices.data());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kPoints));
}
BENCHMARK(BM_PlainLoop)->Unit(benchmark::kMillisecond);

void BM_PlainLoopScriptArrays(benchmark::State& state) {
  const std::string& path = HeightFilePath();
  for (auto _ : state) {
    const RawHeightFile raw = ReadRaw(path, state);
    const std::vector<unsigned char>& bytes = raw.bytes;
    const std::int32_t cows = raw.cows, rows = raw.rows;
    const std::size_t stride = static_cast<std::size_t>(cows) + 1;
    const std::size_t points = (static_cast<std::size_t>(rows) + 1) * stride;
    std::vector<double> heights(points), positions, normals, uvs;
    for (std::size_t i = 0; i < points; ++i) {
      float v;
      std::memcpy(&v, bytes.data() + 8 + 4 * i, 4);
      heights[i] = v;
    }
    positions.reserve(points * 3), normals.reserve(points * 3), uvs.reserve(points * 2);
    const double beginX = -cows * 0.5, beginZ = -rows * 0.5;
    for (std::int32_t r = 0; r <= rows; ++r) {
      for (std::int32_t c = 0; c <= cows; ++c) {
        const std::size_t i = static_cast<std::size_t>(r) * stride + static_cast<std::size_t>(c);
        double n[3] = {0.0, 1.0, 0.0};
        if (r > 0 && c > 0) {
          const double dx = heights[i] - heights[i - 1], dz = heights[i] - heights[i - stride];
          const double len = std::sqrt(dx * dx + 1.0 + dz * dz);
          n[0] = -dx / len, n[1] = 1.0 / len, n[2] = -dz / len;
        }
        positions.insert(positions.end(), {beginX + c, heights[i], beginZ + r});
        normals.insert(normals.end(), {n[0], n[1], n[2]});
        uvs.insert(uvs.end(), {static_cast<double>(c), static_cast<double>(r)});
      }
    }
    std::vector<std::int64_t> quads;
    quads.reserve(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cows) * 4);
    for (std::int32_t r = 0; r < rows; ++r) {
      for (std::int32_t c = 0; c < cows; ++c) {
        const auto v = static_cast<std::int64_t>(static_cast<std::size_t>(r) * stride + static_cast<std::size_t>(c));
        const auto s = static_cast<std::int64_t>(stride);
        quads.insert(quads.end(), {v, v + 1, v + 1 + s, v + s});
      }
    }
    // Then the GPU's copies, as in BM_PlainLoop.
    std::vector<float> vertices(points * 8);
    for (std::size_t i = 0; i < points; ++i) {
      float* v = vertices.data() + i * 8;
      v[0] = static_cast<float>(uvs[i * 2]), v[1] = static_cast<float>(uvs[i * 2 + 1]);
      for (int k = 0; k < 3; ++k) v[2 + k] = static_cast<float>(normals[i * 3 + k]);
      for (int k = 0; k < 3; ++k) v[5 + k] = static_cast<float>(positions[i * 3 + k]);
    }
    std::vector<std::uint32_t> indices(quads.begin(), quads.end());
    benchmark::DoNotOptimize(vertices.data());
    benchmark::DoNotOptimize(indices.data());
    benchmark::DoNotOptimize(quads.data());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kPoints));
}
BENCHMARK(BM_PlainLoopScriptArrays)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
