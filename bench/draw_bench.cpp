// The node draw against raw GL doing the same work: 1,000 nodes with one indexed
// FX_DIFFUSE quad each. The raw loop issues the calls the engine's draw issues for such
// a node (matrix push and pop, program switch, the program's uniforms, texture enable,
// polygon and cull state, buffer binds, interleaved arrays, the draw, the unbinds), with
// locations and matrices prepared beforehand. Needs a display (Xvfb is fine).
#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "core/console.h"
#include "core/gl_api.h"
#include "core/screen_settings.h"
#include "node/game_node.h"
#include "node/node_scene.h"
#include "raw_gl_nodes.h"
#include "shader/fx_3d.h"
#include "shader/fx_manage.h"
#include "shader/fx_manage.h"

namespace {

using vorn::Vorn_3DGameNode;

constexpr int kNodes = 1000;
constexpr int kWidth = 320, kHeight = 240;

class BenchScene : public vorn::NodeScene {
 public:
  int GenNewGameNodeID() override { return ++ids; }
  double Get3DTerrainY(double, double) override { return 0.0; }
  std::array<double, 3> GetAmbientColor() const override { return {0.9, 0.9, 0.9}; }
  std::array<double, 3> GetSunLightDir() const override { return {0.0, 0.0, -1.0}; }
  void AddBatchCount() override { ++batches; }
  int ids = 0;
  long batches = 0;
};

std::shared_ptr<BenchScene> scene;
std::vector<std::shared_ptr<Vorn_3DGameNode>> nodes;

void BuildNodes() {
  scene = std::make_shared<BenchScene>();
  auto quiet = vorn::console::set_sink([](std::string_view) {});
  for (int i = 0; i < kNodes; ++i) {
    auto n = vorn::MakeNode<Vorn_3DGameNode>(4.0 + (i % 40) * 7.5, 4.0 + (i / 40) * 9.0, 0.0);
    n->OnLoad(scene);
    const int s = n->CreateSubMesh("quad");
    n->PushQuadVertex_Postion(s, std::array<double, 12>{0, 0, 0, 4, 0, 0, 4, 4, 0, 0, 4, 0});
    n->PushQuadVertex_Normal(s, std::array<double, 12>{0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1});
    n->PushTriangleVIndex(s, 0, 1, 2);
    n->PushTriangleVIndex(s, 0, 2, 3);
    n->SetSubMeshColor(s, 0.2 + 0.0005 * i, 0.6, 0.9);
    n->BuildVBO();
    n->ApplyFX(vorn::Vorn_3DFX::FX_DIFFUSE);
    n->update(0);
    nodes.push_back(std::move(n));
  }
  vorn::console::set_sink(quiet);
}

void BM_EngineDraw(benchmark::State& state) {
  for (auto _ : state) {
    for (const auto& n : nodes) n->draw();
    glFinish();
  }
  state.SetItemsProcessed(state.iterations() * kNodes);
}
BENCHMARK(BM_EngineDraw)->Unit(benchmark::kMicrosecond);

void BM_RawGL(benchmark::State& state) {
  const vorn::bench::RawDiffuseNodes raw(nodes, {0.9f, 0.9f, 0.9f}, {0, 0, -1, 1, 1, 1});
  for (auto _ : state) {
    raw.DrawSameCalls();
    glFinish();
  }
  state.SetItemsProcessed(state.iterations() * kNodes);
}
BENCHMARK(BM_RawGL)->Unit(benchmark::kMicrosecond);

// Keeps the time per iteration of each benchmark for the ratio line.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    // The mean of repetitions when there are some, else the single run.
    for (const Run& run : runs) {
      const std::string& name = run.run_name.function_name;
      if (run.run_type == Run::RT_Iteration && !means.count(name)) times[name] = run.GetAdjustedCPUTime();
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "mean") {
        times[name] = run.GetAdjustedCPUTime();
        means.insert(name);
      }
    }
    ConsoleReporter::ReportRuns(runs);
  }
  std::map<std::string, double> times;
  std::set<std::string> means;
};

}  // namespace

int main(int argc, char** argv) {
  glutInit(&argc, argv);
  glutInitDisplayMode(GLUT_SINGLE | GLUT_RGBA | GLUT_DEPTH);
  glutInitWindowSize(kWidth, kHeight);
  glutCreateWindow("draw_bench");
  vorn::SCREEN_WIDTH = kWidth;
  vorn::SCREEN_HEIGHT = kHeight;
  glMatrixMode(GL_PROJECTION);
  glOrtho(0, kWidth, 0, kHeight, -10, 10);
  glMatrixMode(GL_MODELVIEW);
  glDisable(GL_DEPTH_TEST);
  {
    auto quiet = vorn::console::set_sink([](std::string_view) {});
    vorn::FXManagerInstance = std::make_shared<vorn::Vorn_FXManage>();
    vorn::console::set_sink(quiet);
  }
  BuildNodes();
  // One draw uploads the buffers, so both loops start from the same GL objects.
  for (const auto& n : nodes) n->draw();
  glFinish();

  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  const auto engine = reporter.times.find("BM_EngineDraw");
  const auto raw = reporter.times.find("BM_RawGL");
  if (engine != reporter.times.end() && raw != reporter.times.end() && raw->second > 0) {
    std::printf("engine / raw GL CPU time for %d nodes: %.3f\n", kNodes, engine->second / raw->second);
  }
  nodes.clear();
  benchmark::Shutdown();
  return 0;
}
