// The whole frame (DrawScene) against raw GL frames drawing the same picture, in the same
// process: scenes of 1,000 and 10,000 nodes with one indexed FX_DIFFUSE quad each, the
// camera set-up, the clear, the two text overlays and the flush, in a 160 by 120 window.
// Two raw baselines, with locations, matrices and texts prepared beforehand:
//   BM_RawFrame_SameCalls     the calls an uncached node draw issues, per node;
//   BM_RawFrame_FewestCalls   the fewest calls for the same picture (one program bind,
//                             then matrix, colour, buffers and draw per node);
//   BM_RawFrame_NoUniformChanges  the same without the per-node matrix and colour (not
//                             the same picture): the driver's price of uniform changes.
// A third scene adds a 128 by 128 plane and 500 spheres to the 1,000 quads.
// Needs a display (Xvfb is fine). Times are wall-clock (llvmpipe rasterises on other
// threads until glFinish); the ratios printed at the end use the medians of repetitions,
// e.g. --benchmark_repetitions=9.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/globals.h"
#include "camera/camera.h"
#include "core/console.h"
#include "core/gl_api.h"
#include "core/screen_settings.h"
#include "node/game_node.h"
#include "raw_gl_nodes.h"
#include "resource/res_manager.h"
#include "scene/scene.h"
#include "shader/fx_3d.h"
#include "shader/fx_manage.h"

namespace {

using vorn::Vorn_3Dcene;
using vorn::Vorn_3DGameNode;

constexpr int kWidth = 160, kHeight = 120;

std::shared_ptr<Vorn_3Dcene> MakeScene() {
  auto scene = Vorn_3Dcene::Create();
  scene->InitGL(kWidth, kHeight);
  scene->SetAmbientColor(0.9, 0.9, 0.9);
  auto camera = std::dynamic_pointer_cast<vorn::Vorn_3DCamera>(scene->GetActiveCamera());
  camera->SetXYZ(0.0, 0.0, 120.0);
  camera->LookAt(0.0, 0.0, 0.0);
  return scene;
}

// `count` quads on a grid that fills the view: 40 columns for 1,000, 100 for 10,000.
void AddQuads(Vorn_3Dcene& scene, int count) {
  const int columns = count > 1000 ? 100 : 40;
  const double step = 120.0 / columns, size = step * 0.66;
  const int rows = (count + columns - 1) / columns;
  const double rowStep = 90.0 / rows;
  for (int i = 0; i < count; ++i) {
    auto n = scene.Create3DGameNode(-60.0 + (i % columns) * step, -45.0 + (i / columns) * rowStep, 0.0);
    const int s = n->CreateSubMesh("quad");
    n->PushQuadVertex_Postion(s, std::array<double, 12>{0, 0, 0, size, 0, 0, size, size, 0, 0, size, 0});
    n->PushQuadVertex_Normal(s, std::array<double, 12>{0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1});
    n->PushTriangleVIndex(s, 0, 1, 2);
    n->PushTriangleVIndex(s, 0, 2, 3);
    n->SetSubMeshColor(s, 0.2 + 0.5 * i / count, 0.6, 0.9);
    n->BuildVBO();
    n->ApplyFX(vorn::Vorn_3DFX::FX_DIFFUSE);
  }
}

std::map<int, std::shared_ptr<Vorn_3Dcene>> quadScenes;
std::shared_ptr<Vorn_3Dcene> worldScene;

void BM_DrawScene_Quads(benchmark::State& state) {
  Vorn_3Dcene& scene = *quadScenes.at(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    scene.DrawScene();
    glFinish();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_DrawScene_Quads)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond)->UseRealTime();

void BM_DrawScene_1000Quads_Plane128_500Spheres(benchmark::State& state) {
  for (auto _ : state) {
    worldScene->DrawScene();
    glFinish();
  }
}
BENCHMARK(BM_DrawScene_1000Quads_Plane128_500Spheres)->Unit(benchmark::kMicrosecond)->UseRealTime();

void DrawRawText(const char* text, float x, float y) {
  glColor3f(0, 0, 0);
  glWindowPos2f(x + 1, kHeight - 13 - y - 1);
  for (const char* c = text; *c; ++c) glutBitmapCharacter(GLUT_BITMAP_8_BY_13, *c);
  glColor3f(1, 1, 1);
  glWindowPos2f(x, kHeight - 13 - y);
  for (const char* c = text; *c; ++c) glutBitmapCharacter(GLUT_BITMAP_8_BY_13, *c);
}

// One raw frame around the nodes' draw: the camera, the clear, the overlays, the flush.
template <class DrawNodes>
void RawFrame(DrawNodes&& drawNodes) {
  glViewport(0, 0, kWidth, kHeight);
  glClearColor(0, 0, 0, 1);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glMatrixMode(GL_PROJECTION);
  glLoadIdentity();
  gluPerspective(45.0, double(kWidth) / kHeight, 0.1, 1000.0);
  gluLookAt(0, 0, 120, 0, 0, 0, 0, 1, 0);
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
  drawNodes();
  DrawRawText("FPS:60", 2, 2);
  DrawRawText("Batch:1002", 2, 22);
  glFlush();
  glFinish();
}

vorn::bench::RawDiffuseNodes RawNodes(int count) {
  return vorn::bench::RawDiffuseNodes(quadScenes.at(count)->ObjectArray_3D, {0.9f, 0.9f, 0.9f},
                                      {-1, -1, -1, 1, 1, 1});
}

void BM_RawFrame_SameCalls(benchmark::State& state) {
  const auto raw = RawNodes(static_cast<int>(state.range(0)));
  for (auto _ : state) RawFrame([&] { raw.DrawSameCalls(); });
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_RawFrame_SameCalls)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond)->UseRealTime();

void BM_RawFrame_FewestCalls(benchmark::State& state) {
  const auto raw = RawNodes(static_cast<int>(state.range(0)));
  for (auto _ : state) RawFrame([&] { raw.DrawFewestCalls(); });
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_RawFrame_FewestCalls)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond)->UseRealTime();

// Not the same picture: the fewest calls with one matrix and colour for all quads. Its
// distance to BM_RawFrame_FewestCalls is what the driver charges for per-node uniform
// changes, which no engine drawing these nodes one by one can avoid.
void BM_RawFrame_NoUniformChanges(benchmark::State& state) {
  const auto raw = RawNodes(static_cast<int>(state.range(0)));
  for (auto _ : state) RawFrame([&] { raw.DrawFewestCalls(false); });
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_RawFrame_NoUniformChanges)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond)->UseRealTime();

// Keeps the wall time per iteration of each benchmark (the median of repetitions when
// there are some) for the ratio lines.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      const std::string name = run.run_name.str();
      if (run.run_type == Run::RT_Iteration && !medians.count(name)) times[name] = run.GetAdjustedRealTime();
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
        times[name] = run.GetAdjustedRealTime();
        medians[name] = true;
      }
    }
    ConsoleReporter::ReportRuns(runs);
  }
  double time(const std::string& name) const {
    const auto it = times.find(name);
    return it == times.end() ? 0.0 : it->second;
  }
  std::map<std::string, double> times;
  std::map<std::string, bool> medians;
};

}  // namespace

int main(int argc, char** argv) {
  glutInit(&argc, argv);
  glutInitDisplayMode(GLUT_SINGLE | GLUT_RGBA | GLUT_DEPTH);
  glutInitWindowSize(kWidth, kHeight);
  glutCreateWindow("frame_bench");
  vorn::SCREEN_WIDTH = kWidth;
  vorn::SCREEN_HEIGHT = kHeight;
  auto quiet = vorn::console::set_sink([](std::string_view) {});
  vorn::PyGameResManager::Create("/nonexistent");
  for (int count : {1000, 10000}) {
    quadScenes[count] = MakeScene();
    AddQuads(*quadScenes[count], count);
  }
  worldScene = MakeScene();
  AddQuads(*worldScene, 1000);
  worldScene->CreatePlane(-64.0, -10.0, -64.0, nullptr, 128, 128, 1.0);
  for (int i = 0; i < 500; ++i) worldScene->CreateSphere(-50.0 + (i % 25) * 4.0, 10.0, -40.0 + (i / 25) * 4.0);
  vorn::console::set_sink(quiet);
  // The first frames upload the buffers, so every loop starts from the same GL objects.
  for (auto& [count, scene] : quadScenes) scene->DrawScene();
  worldScene->DrawScene();
  quiet = vorn::console::set_sink([](std::string_view) {});

  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  for (const char* count : {"1000", "10000"}) {
    const std::string suffix = std::string("/") + count + "/real_time";
    const double engine = reporter.time("BM_DrawScene_Quads" + suffix);
    const double same = reporter.time("BM_RawFrame_SameCalls" + suffix);
    const double fewest = reporter.time("BM_RawFrame_FewestCalls" + suffix);
    const double still = reporter.time("BM_RawFrame_NoUniformChanges" + suffix);
    if (engine > 0 && fewest > 0) {
      std::printf("%s nodes: DrawScene %.0f us, raw same calls %.0f us, raw fewest calls %.0f us; "
                  "DrawScene / fewest calls %.2f, DrawScene / same calls %.2f\n",
                  count, engine, same, fewest, engine / fewest, same > 0 ? engine / same : 0.0);
    }
    if (fewest > 0 && still > 0) {
      std::printf("%s nodes: raw fewest calls without per-node uniform changes %.0f us: the driver's share of "
                  "the uniform changes %.0f%%\n",
                  count, still, 100.0 * (fewest - still) / fewest);
    }
  }
  vorn::console::set_sink(quiet);
  quadScenes.clear();
  worldScene.reset();
  vorn::openGLScene.reset();
  benchmark::Shutdown();
  return 0;
}
