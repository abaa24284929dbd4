// Grass of 30,000 blades: CreateGrass against a plain loop making the same random draws
// and pushing the same vertices into plain vectors, and StandOnGround over a 128 by 128
// terrain (a plane in the scene's terrain registry, found through Get3DTerrainY) against
// a plain loop reading the height of the same triangles from the height array.
// Needs a display (Xvfb is fine): CreateGrass applies its program. Prints the ratios.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/console.h"
#include "core/gl_api.h"
#include "core/math_util.h"
#include "core/screen_settings.h"
#include "landscape/grass.h"
#include "landscape/plane.h"
#include "resource/res_manager.h"
#include "scene/scene.h"

namespace {

using vorn::PI;
using vorn::Vorn_3DGrass;

constexpr int kBlades = 30000;
constexpr double kRadius = 30.0, kMinW = 0.3, kMaxW = 0.6, kMinH = 0.3, kMaxH = 0.6, kSubsectionH = 0.2;

std::shared_ptr<vorn::Vorn_3Dcene> scene;
std::shared_ptr<vorn::Vorn_3DPlane> ground;

void BM_CreateGrass(benchmark::State& state) {
  for (auto _ : state) {
    vorn::SeedRandom(1);
    auto grass = vorn::MakeNode<Vorn_3DGrass>();
    grass->CreateGrass(kRadius, kBlades, kMinW, kMaxW, kMinH, kMaxH, kSubsectionH);
    benchmark::DoNotOptimize(grass->VertexArray_Positon.size());
  }
  state.SetItemsProcessed(state.iterations() * kBlades);
}
BENCHMARK(BM_CreateGrass)->Unit(benchmark::kMillisecond);

// The baseline: the same draws and trigonometry, vertices into flat double vectors.
struct PlainPatch {
  std::vector<double> positions, normals, uvs;
  std::vector<std::int64_t> indices;
};

void plain_grass(PlainPatch& p) {
  for (auto* v : {&p.positions, &p.normals, &p.uvs}) v->clear();
  p.indices.clear();
  std::int64_t VIndex = 0;
  for (int i = 0; i < kBlades; ++i) {
    if (i % Vorn_3DGrass::kMaxBladesPerSubMesh == 0) VIndex = 0;
    const double angle = vorn::RANDOM01() * PI * 2.0;
    const double x = kRadius * vorn::RANDOM11() * std::cos(angle);
    const double z = kRadius * vorn::RANDOM11() * std::sin(angle);
    const double w = kMinW + vorn::RANDOM01() * (kMaxW - kMinW);
    const double h = kMinH + vorn::RANDOM01() * (kMaxH - kMinH);
    const double g = vorn::RANDOM01() * PI * 2.0;
    const double c = std::cos(g), s = std::sin(g);
    const double hx = w * 0.5 * c, hz = w * 0.5 * s;
    const auto sections = std::max<std::int64_t>(1, static_cast<std::int64_t>(h / kSubsectionH));
    for (std::int64_t k = 0; k <= sections; ++k) {
      const double y = static_cast<double>(k) * kSubsectionH, v = static_cast<double>(k) / static_cast<double>(sections);
      p.positions.insert(p.positions.end(), {x + hx, y, z + hz, x - hx, y, z - hz});
      p.normals.insert(p.normals.end(), {-s, 0.0, c, -s, 0.0, c});
      p.uvs.insert(p.uvs.end(), {0.0, v, 1.0, v});
    }
    for (std::int64_t k = 0; k < sections; ++k) {
      const std::int64_t b = VIndex + k * 2;
      p.indices.insert(p.indices.end(), {b, b + 2, b + 3, b + 1});
    }
    VIndex += (sections + 1) * 2;
  }
}

void BM_PlainGrassLoop(benchmark::State& state) {
  for (auto _ : state) {
    vorn::SeedRandom(1);
    PlainPatch patch;  // fresh vectors each time, as a new node has
    plain_grass(patch);
    benchmark::DoNotOptimize(patch.positions.data());
  }
  state.SetItemsProcessed(state.iterations() * kBlades);
}
BENCHMARK(BM_PlainGrassLoop)->Unit(benchmark::kMillisecond);

// A patch on the scene, dropped again each iteration (heights add up; the work is alike).
void BM_StandOnGround(benchmark::State& state) {
  vorn::SeedRandom(2);
  auto grass = vorn::MakeNode<Vorn_3DGrass>(1.0, 0.0, -2.0);
  grass->OnLoad(scene);
  grass->CreateGrass(kRadius, kBlades, kMinW, kMaxW, kMinH, kMaxH, kSubsectionH);
  std::size_t vertices = 0;
  for (const auto& [s, positions] : grass->VertexArray_Positon) vertices += positions.size();
  for (auto _ : state) grass->StandOnGround(true);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * vertices));
  state.SetLabel(std::to_string(vertices) + " vertices");
}
BENCHMARK(BM_StandOnGround)->Unit(benchmark::kMillisecond);

// The baseline: the same vertices in one flat vector, each height read from the plane's
// array (the tile, then the triangle under the point, interpolated) and added.
void BM_PlainHeightLoop(benchmark::State& state) {
  vorn::SeedRandom(2);
  PlainPatch patch;
  plain_grass(patch);
  const vorn::Vorn_3DPlane& plane = *ground;
  const double size = plane.TileSize;
  const double beginX = plane.GetX() - plane.Cows * size * 0.5, beginZ = plane.GetZ() - plane.Rows * size * 0.5;
  const std::size_t stride = static_cast<std::size_t>(plane.Cows) + 1;
  const double* heights = plane.HeightArray.data();
  for (auto _ : state) {
    for (std::size_t i = 0; i < patch.positions.size(); i += 3) {
      const double x = patch.positions[i] + 1.0, z = patch.positions[i + 2] - 2.0;
      const double fx = (x - beginX) / size, fz = (z - beginZ) / size;
      if (fx < 0 || fz < 0 || fx >= plane.Cows || fz >= plane.Rows) continue;
      const auto tx = static_cast<std::size_t>(fx), tz = static_cast<std::size_t>(fz);
      const double u = fx - static_cast<double>(tx), v = fz - static_cast<double>(tz);
      const double* h = heights + tz * stride + tx;
      // Corners V1 (0, 0), V2 (1, 0), V3 (0, 1), V4 (1, 1); the diagonal runs V2 to V3.
      const double y = u + v <= 1.0 ? h[0] + u * (h[1] - h[0]) + v * (h[stride] - h[0])
                                    : h[stride + 1] + (1 - u) * (h[stride] - h[stride + 1]) +
                                          (1 - v) * (h[1] - h[stride + 1]);
      patch.positions[i + 1] += y;
    }
    benchmark::DoNotOptimize(patch.positions.data());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * (patch.positions.size() / 3)));
}
BENCHMARK(BM_PlainHeightLoop)->Unit(benchmark::kMillisecond);

class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) times[run.benchmark_name()] = run.GetAdjustedCPUTime();
    ConsoleReporter::ReportRuns(runs);
  }
  std::map<std::string, double> times;
};

}  // namespace

int main(int argc, char** argv) {
  glutInit(&argc, argv);
  glutInitDisplayMode(GLUT_SINGLE | GLUT_RGBA | GLUT_DEPTH);
  glutInitWindowSize(64, 64);
  glutCreateWindow("grass_bench");
  // ApplyFX prints each program it applies; the figures are the output here.
  auto quiet = vorn::console::set_sink([](std::string_view) {});
  vorn::PyGameResManager::Create("/nonexistent");
  scene = vorn::Vorn_3Dcene::Create();
  // Rolling hills of 128 by 128 tiles of one unit, under the whole patch.
  std::vector<double> heights;
  for (int row = 0; row <= 128; ++row)
    for (int cow = 0; cow <= 128; ++cow) heights.push_back(3.0 * std::sin(cow * 0.1) * std::cos(row * 0.13));
  ground = vorn::MakeNode<vorn::Vorn_3DPlane>();
  ground->CreatePlane(128, 128, 1.0, false, heights);
  ground->OnLoad(scene);
  ground->update(0.0);
  scene->ObjectArray_3DTerrain.push_back(ground);

  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  const auto ratio = [&](const char* engine, const char* plain) {
    const double a = reporter.times[engine], b = reporter.times[plain];
    if (a > 0 && b > 0) std::printf("%s / %s CPU time: %.2f\n", engine, plain, a / b);
  };
  ratio("BM_CreateGrass", "BM_PlainGrassLoop");
  ratio("BM_StandOnGround", "BM_PlainHeightLoop");
  vorn::console::set_sink(quiet);
  ground.reset();
  scene.reset();
  benchmark::Shutdown();
  return 0;
}
