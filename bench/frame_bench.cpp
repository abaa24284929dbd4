// The whole frame (DrawScene) against a raw GL program doing the same work: a scene of
// 1,000 nodes with one indexed FX_DIFFUSE quad each, the camera set-up, the clear, the
// two text overlays and the flush. The raw loop has its locations, matrices and texts
// prepared beforehand. A second scene adds a 128 by 128 plane and 500 spheres.
// Needs a display (Xvfb is fine). Prints the engine / raw ratio.
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

constexpr int kNodes = 1000;
constexpr int kWidth = 640, kHeight = 480;

std::shared_ptr<Vorn_3Dcene> MakeScene() {
  auto scene = Vorn_3Dcene::Create();
  scene->InitGL(kWidth, kHeight);
  scene->SetAmbientColor(0.9, 0.9, 0.9);
  auto camera = std::dynamic_pointer_cast<vorn::Vorn_3DCamera>(scene->GetActiveCamera());
  camera->SetXYZ(0.0, 0.0, 120.0);
  camera->LookAt(0.0, 0.0, 0.0);
  return scene;
}

void AddQuads(Vorn_3Dcene& scene) {
  for (int i = 0; i < kNodes; ++i) {
    auto n = scene.Create3DGameNode(-60.0 + (i % 40) * 3.0, -45.0 + (i / 40) * 3.6, 0.0);
    const int s = n->CreateSubMesh("quad");
    n->PushQuadVertex_Postion(s, std::array<double, 12>{0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 2, 0});
    n->PushQuadVertex_Normal(s, std::array<double, 12>{0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1});
    n->PushTriangleVIndex(s, 0, 1, 2);
    n->PushTriangleVIndex(s, 0, 2, 3);
    n->SetSubMeshColor(s, 0.2 + 0.0005 * i, 0.6, 0.9);
    n->BuildVBO();
    n->ApplyFX(vorn::Vorn_3DFX::FX_DIFFUSE);
  }
}

std::shared_ptr<Vorn_3Dcene> quadScene, worldScene;

void BM_DrawScene_1000Quads(benchmark::State& state) {
  for (auto _ : state) {
    quadScene->DrawScene();
    glFinish();
  }
  state.SetItemsProcessed(state.iterations() * kNodes);
}
BENCHMARK(BM_DrawScene_1000Quads)->Unit(benchmark::kMicrosecond);

void BM_DrawScene_1000Quads_Plane128_500Spheres(benchmark::State& state) {
  for (auto _ : state) {
    worldScene->DrawScene();
    glFinish();
  }
}
BENCHMARK(BM_DrawScene_1000Quads_Plane128_500Spheres)->Unit(benchmark::kMicrosecond);

void DrawRawText(const char* text, float x, float y) {
  glColor3f(0, 0, 0);
  glWindowPos2f(x + 1, kHeight - 13 - y - 1);
  for (const char* c = text; *c; ++c) glutBitmapCharacter(GLUT_BITMAP_8_BY_13, *c);
  glColor3f(1, 1, 1);
  glWindowPos2f(x, kHeight - 13 - y);
  for (const char* c = text; *c; ++c) glutBitmapCharacter(GLUT_BITMAP_8_BY_13, *c);
}

void BM_RawGLFrame_1000Quads(benchmark::State& state) {
  const vorn::bench::RawDiffuseNodes raw(quadScene->ObjectArray_3D, {0.9f, 0.9f, 0.9f}, {-1, -1, -1, 1, 1, 1});
  for (auto _ : state) {
    glViewport(0, 0, kWidth, kHeight);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(45.0, double(kWidth) / kHeight, 0.1, 1000.0);
    gluLookAt(0, 0, 120, 0, 0, 0, 0, 1, 0);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    raw.Draw();
    DrawRawText("FPS:60", 2, 2);
    DrawRawText("Batch:1002", 2, 22);
    glFlush();
    glFinish();
  }
  state.SetItemsProcessed(state.iterations() * kNodes);
}
BENCHMARK(BM_RawGLFrame_1000Quads)->Unit(benchmark::kMicrosecond);

class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type == Run::RT_Iteration) times[run.run_name.function_name] = run.GetAdjustedCPUTime();
    }
    ConsoleReporter::ReportRuns(runs);
  }
  std::map<std::string, double> times;
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
  quadScene = MakeScene();
  AddQuads(*quadScene);
  worldScene = MakeScene();
  AddQuads(*worldScene);
  worldScene->CreatePlane(-64.0, -10.0, -64.0, nullptr, 128, 128, 1.0);
  for (int i = 0; i < 500; ++i) worldScene->CreateSphere(-50.0 + (i % 25) * 4.0, 10.0, -40.0 + (i / 25) * 4.0);
  vorn::console::set_sink(quiet);
  // The first frames upload the buffers, so every loop starts from the same GL objects.
  quadScene->DrawScene();
  worldScene->DrawScene();
  quiet = vorn::console::set_sink([](std::string_view) {});

  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  const double engine = reporter.times["BM_DrawScene_1000Quads"];
  const double raw = reporter.times["BM_RawGLFrame_1000Quads"];
  if (engine > 0 && raw > 0) std::printf("DrawScene / raw GL frame CPU time, %d nodes: %.3f\n", kNodes, engine / raw);
  vorn::console::set_sink(quiet);
  quadScene.reset();
  worldScene.reset();
  vorn::openGLScene.reset();
  benchmark::Shutdown();
  return 0;
}
