// Tile map editing, water and blend strokes against plain loops doing the same work on
// flat arrays, run in the same process.
//   BM_UpTile / BM_UpTileFlat       one raise on a 128 x 128 map whose layer holds 1,500
//                                    blocks (the lowering that restores it is untimed)
//   BM_FillWater / BM_FillWaterFlat a 100 x 100 basin, same records and quads
//   BM_BlendStroke                   strokes per second on a 512 x 512 map, uploading the
//                                    rows a stroke touched (needs a GL window)
#include <benchmark/benchmark.h>

#include <cmath>
#include <string_view>
#include <vector>

#include "core/console.h"
#include "core/gl_api.h"
#include "landscape/tiled_map.h"
#include "resource/res_manager.h"

namespace {

using vorn::Vorn_3DTiledMap;
constexpr int kSide = 128, kBlocks = 1500;

std::shared_ptr<Vorn_3DTiledMap> MapWithBlocks() {
  auto quiet = vorn::console::set_sink([](std::string_view) {});
  auto map = vorn::MakeNode<Vorn_3DTiledMap>();
  map->CreateTiledMap(kSide, kSide);
  // Every other tile of the rows from 2 on, until 1,500 blocks stand on layer 1.
  int placed = 0;
  for (int z = 2; z < kSide && placed < kBlocks; z += 2)
    for (int x = 0; x < kSide && placed < kBlocks; x += 2, ++placed) map->UpTile(x, z);
  vorn::console::set_sink(quiet);
  return map;
}

void BM_UpTile(benchmark::State& state) {
  auto map = MapWithBlocks();
  auto quiet = vorn::console::set_sink([](std::string_view) {});
  for (auto _ : state) {
    map->UpTile(1, 1);
    state.PauseTiming();
    map->DownTile(1, 1);
    state.ResumeTiming();
  }
  vorn::console::set_sink(quiet);
}
BENCHMARK(BM_UpTile)->Unit(benchmark::kMicrosecond);

// The same arithmetic on flat arrays: the wall walk of the layer, the index list and
// the 36 vertices of each block from a fixed model, and the grid's index list.
void BM_UpTileFlat(benchmark::State& state) {
  const int n = kSide * kSide;
  std::vector<int> mask(n, 0), ground(n, 1);
  std::vector<int> tiles;
  for (int z = 2, placed = 0; z < kSide && placed < kBlocks; z += 2)
    for (int x = 0; x < kSide && placed < kBlocks; x += 2, ++placed) tiles.push_back(z * kSide + x), mask[z * kSide + x] = 1;
  tiles.push_back(kSide + 1);
  std::vector<std::array<int, 9>> walls(n);
  std::vector<double> positions(tiles.size() * 36 * 3), normals(positions.size());
  std::vector<std::int64_t> indices, groundIndices;
  const auto model = vorn::tiles::GetInitTileVertexDataModel(1);
  for (auto _ : state) {
    mask[kSide + 1] = 1, ground[kSide + 1] = 0;
    for (int z = 0; z < kSide; ++z)
      for (int x = 0; x < kSide; ++x) {
        auto m = [&](int cx, int cz) { return cx < 0 || cz < 0 || cx >= kSide || cz >= kSide ? 0 : mask[cz * kSide + cx]; };
        const int f = m(x, z - 1), r = m(x + 1, z), b = m(x, z + 1), l = m(x - 1, z);
        walls[z * kSide + x] = {f, r, b, l, f, r, b, l, 0};
      }
    indices.clear();
    std::size_t p = 0;
    for (std::size_t t = 0; t < tiles.size(); ++t) {
      const int i = tiles[t];
      for (int face = 0; face < 9; ++face)
        if (walls[i][face] == 0)
          for (int k = 0; k < 4; ++k) indices.push_back(static_cast<std::int64_t>(t * 36 + face * 4 + k));
      const double x = i % kSide - kSide * 0.5, z = i / kSide - kSide * 0.5;
      for (int face = 0; face < 9; ++face)
        for (int k = 0; k < 4; ++k, p += 3) {
          const auto& v = model.vertices[face][k];
          const auto& nn = model.normals[face][k];
          positions[p] = x + v.x, positions[p + 1] = v.y, positions[p + 2] = z + v.z;
          normals[p] = nn.x, normals[p + 1] = nn.y, normals[p + 2] = nn.z;
        }
    }
    groundIndices.clear();
    for (int z = 0; z < kSide; ++z)
      for (int x = 0; x < kSide; ++x)
        if (ground[z * kSide + x]) {
          const std::int64_t v = z * (kSide + 1) + x;
          groundIndices.insert(groundIndices.end(), {v, v + 1, v + kSide + 2, v + kSide + 1});
        }
    benchmark::DoNotOptimize(positions.data());
    benchmark::DoNotOptimize(indices.data());
    benchmark::DoNotOptimize(groundIndices.data());
    mask[kSide + 1] = 0, ground[kSide + 1] = 1;
  }
}
BENCHMARK(BM_UpTileFlat)->Unit(benchmark::kMicrosecond);

// A 100 x 100 basin at level 0 walled by one ring of raised tiles, two tiles in from
// the map's edge so that no walk leaves the map.
constexpr int kBasin = 100, kWaterSide = kBasin + 4;

std::shared_ptr<Vorn_3DTiledMap> Basin() {
  auto quiet = vorn::console::set_sink([](std::string_view) {});
  auto map = vorn::MakeNode<Vorn_3DTiledMap>();
  map->CreateTiledMap(kWaterSide, kWaterSide);
  for (int z = 0; z < kWaterSide; ++z)
    for (int x = 0; x < kWaterSide; ++x)
      if (x < 2 || z < 2 || x >= kWaterSide - 2 || z >= kWaterSide - 2) map->UpTile(x, z);
  vorn::console::set_sink(quiet);
  return map;
}

void BM_FillWater(benchmark::State& state) {
  auto map = Basin();
  for (auto _ : state) map->FillWater(kWaterSide / 2, kWaterSide / 2);
  state.counters["quads"] = static_cast<double>(map->VIndexArray.at(map->GetSubMeshIndex("water")).size() / 4);
}
BENCHMARK(BM_FillWater)->Unit(benchmark::kMillisecond);

// The same records (straight walks, staircases) and quads from a flat height array.
void BM_FillWaterFlat(benchmark::State& state) {
  std::vector<int> height(kWaterSide * kWaterSide, 0);
  for (int z = 0; z < kWaterSide; ++z)
    for (int x = 0; x < kWaterSide; ++x)
      if (x < 2 || z < 2 || x >= kWaterSide - 2 || z >= kWaterSide - 2) height[z * kWaterSide + x] = 1;
  const auto h = [&](long x, long z) { return height[z * kWaterSide + x]; };
  std::vector<std::array<long, 2>> records;
  std::vector<double> positions, normals, uvs;
  std::vector<std::int64_t> indices;
  const int level = 0;
  const auto straight = [&](long x, long z, int mx, int mz) {
    for (x += mx, z += mz; h(x, z) <= level; x += mx, z += mz) records.push_back({x, z});
  };
  const int moves[8][2] = {{-1, 0}, {1, 0}, {0, -1}, {0, 1}, {-1, -1}, {1, -1}, {-1, 1}, {1, 1}};
  for (auto _ : state) {
    records.clear();
    const long sx = kWaterSide / 2, sz = kWaterSide / 2;
    records.push_back({sx, sz});
    for (const auto& mv : moves) {
      const std::size_t first = records.size();
      straight(sx, sz, mv[0], mv[1]);
      if (mv[0] && mv[1])
        for (std::size_t k = records.size(); k-- > first;) {
          const auto from = records[k];
          straight(from[0], from[1], mv[0], 0);
          straight(from[0], from[1], 0, mv[1]);
        }
    }
    positions.clear(), normals.clear(), uvs.clear(), indices.clear();
    const auto avg = [&](long x, long z) {
      double s = 0;
      for (long dz = -1; dz <= 1; ++dz)
        for (long dx = -1; dx <= 1; ++dx) s += h(x + dx, z + dz);
      return s / 9.0;
    };
    const double begin = -kWaterSide * 0.5;
    for (const auto& r : records) {
      const double x = begin + r[0], z = begin + r[1], y = level + 0.5;
      const auto v = static_cast<std::int64_t>(positions.size() / 3);
      positions.insert(positions.end(), {x, y, z, x + 1, y, z, x + 1, y, z + 1, x, y, z + 1});
      normals.insert(normals.end(), {0, avg(r[0], r[1]) - 1, 0, 0, avg(r[0] + 1, r[1]) - 1, 0, 0,
                                     avg(r[0] + 1, r[1] + 1) - 1, 0, 0, avg(r[0], r[1] + 1) - 1, 0});
      uvs.insert(uvs.end(), {0, 0, 1, 0, 1, 1, 0, 1});
      indices.insert(indices.end(), {v, v + 1, v + 2, v + 3});
    }
    benchmark::DoNotOptimize(positions.data());
    benchmark::DoNotOptimize(normals.data());
  }
  state.counters["quads"] = static_cast<double>(records.size());
}
BENCHMARK(BM_FillWaterFlat)->Unit(benchmark::kMillisecond);

void BM_BlendStroke(benchmark::State& state) {
  auto quiet = vorn::console::set_sink([](std::string_view) {});
  auto map = vorn::MakeNode<Vorn_3DTiledMap>();
  map->CreateTiledMap(512, 512);
  map->CreateBlendTeture(512);
  vorn::console::set_sink(quiet);
  double x = 10;
  for (auto _ : state) {
    map->SetBlendData(0, x, 256.0, 4.0, 16);
    x = x > 500 ? 10 : x + 3;
  }
  glFinish();
  state.counters["strokes/s"] = benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_BlendStroke)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
  glutInit(&argc, argv);
  glutInitDisplayMode(GLUT_SINGLE | GLUT_RGBA | GLUT_DEPTH);
  glutInitWindowSize(64, 64);
  glutCreateWindow("tiled_map_bench");
  {
    auto quiet = vorn::console::set_sink([](std::string_view) {});
    vorn::PyGameResManager::Create("/nonexistent");
    vorn::console::set_sink(quiet);
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
