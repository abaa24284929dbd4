// Cost of the full-screen modes. Three groups, all at 800 by 600:
//   * each full-screen program drawn over the window by a 2D image, against the same
//     image with the plain texture program (the bare textured quad);
//   * a render-target camera rendering 1,000 nodes, against the main pass of the same
//     nodes (camera set-up and node draws) and against one clear of a target;
//   * DrawScene of a 1,000-node scene, plain and with each mode open.
// Needs a display (Xvfb is fine). Prints the ratios worth reading.
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
#include "resource/res_manager.h"
#include "scene/scene.h"
#include "shader/fx_2d.h"
#include "shader/fx_3d.h"
#include "shader/fx_manage.h"

namespace {

using vorn::Vorn_2DFX;
using vorn::Vorn_3DCamera;
using vorn::Vorn_3Dcene;
using vorn::Vorn_3DGameNode;

constexpr int kNodes = 1000;
constexpr int kWidth = 800, kHeight = 600;

std::shared_ptr<Vorn_3Dcene> MakeScene() {
  auto scene = Vorn_3Dcene::Create();
  scene->InitGL(kWidth, kHeight);
  scene->SetAmbientColor(0.9, 0.9, 0.9);
  auto camera = std::dynamic_pointer_cast<Vorn_3DCamera>(scene->GetActiveCamera());
  camera->SetXYZ(0.0, 0.0, 120.0);
  camera->LookAt(0.0, 0.0, 0.0);
  for (int i = 0; i < kNodes; ++i) {
    auto n = scene->Create3DGameNode(-60.0 + (i % 40) * 3.0, -45.0 + (i / 40) * 3.6, 0.0);
    const int s = n->CreateSubMesh("quad");
    n->PushQuadVertex_Postion(s, std::array<double, 12>{0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 2, 0});
    n->PushQuadVertex_Normal(s, std::array<double, 12>{0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1});
    n->PushTriangleVIndex(s, 0, 1, 2);
    n->PushTriangleVIndex(s, 0, 2, 3);
    n->BuildVBO();
    n->ApplyFX(vorn::Vorn_3DFX::FX_DIFFUSE);
  }
  return scene;
}

std::shared_ptr<Vorn_3Dcene> fxScene, plainScene, vrScene, deferScene, ssaoScene;
std::shared_ptr<Vorn_3DCamera> targetCamera;
std::map<int, Vorn_3DGameNode::Ptr> fxImages;

// ---- Full-screen programs against the bare textured quad ----

void BM_FullScreenProgram(benchmark::State& state) {
  const int fxid = static_cast<int>(state.range(0));
  Vorn_3DGameNode& image = *fxImages.at(fxid);
  for (auto _ : state) {
    image.draw();
    glFinish();
  }
  state.SetLabel(vorn::Vorn_FXManage::IdentifierName(fxid));
}
BENCHMARK(BM_FullScreenProgram)
    ->Arg(Vorn_2DFX::FX_TEXTURE)
    ->Arg(Vorn_2DFX::FX_GRAY)
    ->Arg(Vorn_2DFX::FX_BLUR)
    ->Arg(Vorn_2DFX::FX_MSK)
    ->Arg(Vorn_2DFX::FX_BRIGHTAREA)
    ->Arg(Vorn_2DFX::FX_BLOOM)
    ->Arg(Vorn_2DFX::FX_DEPTHOFFIELD)
    ->Arg(Vorn_2DFX::FX_NOISE)
    ->Arg(Vorn_2DFX::FX_DEFER_LIGHT)
    ->Arg(Vorn_2DFX::FX_SSAO)
    ->Arg(Vorn_2DFX::FX_VRMODE_LEFT)
    ->Unit(benchmark::kMillisecond);

// ---- A target camera against the main pass of the same nodes ----

void BM_TargetCamera_1000Nodes(benchmark::State& state) {
  for (auto _ : state) {
    targetCamera->draw();
    glFinish();
  }
}
BENCHMARK(BM_TargetCamera_1000Nodes)->Unit(benchmark::kMicrosecond);

void BM_MainPass_1000Nodes(benchmark::State& state) {
  Vorn_3DGameNode& camera = *plainScene->GetActiveCamera();
  for (auto _ : state) {
    camera.draw();
    for (std::size_t i = 0; i < plainScene->ObjectArray_3D.size(); ++i) plainScene->ObjectArray_3D[i]->draw(0, 0, 0);
    glFinish();
  }
}
BENCHMARK(BM_MainPass_1000Nodes)->Unit(benchmark::kMicrosecond);

void BM_ClearTarget(benchmark::State& state) {
  const auto& record = targetCamera->RenderTargetArray.begin()->second;
  for (auto _ : state) {
    glBindFramebuffer(GL_FRAMEBUFFER, record.FrameBuffer);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glFinish();
  }
}
BENCHMARK(BM_ClearTarget)->Unit(benchmark::kMicrosecond);

// ---- The frame, plain and with each mode ----

void BM_Frame(benchmark::State& state, std::shared_ptr<Vorn_3Dcene>* scene) {
  for (auto _ : state) {
    (*scene)->DrawScene();
    glFinish();
  }
}
BENCHMARK_CAPTURE(BM_Frame, Plain, &plainScene)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Frame, VRMode, &vrScene)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Frame, DeferLight, &deferScene)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Frame, SSAO, &ssaoScene)->Unit(benchmark::kMillisecond);

class TimeReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type == Run::RT_Iteration) times[run.benchmark_name()] = run.GetAdjustedRealTime();
    }
    ConsoleReporter::ReportRuns(runs);
  }
  std::map<std::string, double> times;
};

void BuildFXImages() {
  auto& res = *vorn::ResManagerInstance;
  const unsigned source = res.CreateRenderTargetTexture();
  const unsigned noise = res.AddSSAORandTexture();
  fxScene->SSAOKernelList = Vorn_3Dcene::BuildSSAOKernel();
  for (int fxid : {Vorn_2DFX::FX_TEXTURE, Vorn_2DFX::FX_GRAY, Vorn_2DFX::FX_BLUR, Vorn_2DFX::FX_MSK,
                   Vorn_2DFX::FX_BRIGHTAREA, Vorn_2DFX::FX_BLOOM, Vorn_2DFX::FX_DEPTHOFFIELD, Vorn_2DFX::FX_NOISE,
                   Vorn_2DFX::FX_DEFER_LIGHT, Vorn_2DFX::FX_SSAO, Vorn_2DFX::FX_VRMODE_LEFT}) {
    auto image = fxScene->Create2DImage(0, 0, kWidth, kHeight);
    // Four inputs for the programs that read four; the others ignore the rest.
    for (int channel = 0; channel < 4; ++channel) image->SetDynamicTextureID(channel == 2 ? noise : source, channel);
    image->ApplyFX(fxid);
    fxImages[fxid] = image;
  }
}

}  // namespace

int main(int argc, char** argv) {
  glutInit(&argc, argv);
  glutInitDisplayMode(GLUT_SINGLE | GLUT_RGBA | GLUT_DEPTH);
  glutInitWindowSize(kWidth, kHeight);
  glutCreateWindow("fullscreen_bench");
  vorn::SCREEN_WIDTH = kWidth;
  vorn::SCREEN_HEIGHT = kHeight;
  auto quiet = vorn::console::set_sink([](std::string_view) {});
  vorn::PyGameResManager::Create("/nonexistent");
  fxScene = Vorn_3Dcene::Create();
  fxScene->InitGL(kWidth, kHeight);
  BuildFXImages();

  plainScene = MakeScene();
  targetCamera = std::static_pointer_cast<Vorn_3DCamera>(plainScene->CreateCamera(0.0, 0.0, 120.0));
  targetCamera->CreateRenderTarget();
  // The target camera renders only when asked by the benchmark, not in the plain frame.
  plainScene->CameraList.clear();

  vrScene = MakeScene();
  vorn::openGLScene = vrScene;
  vrScene->OpenVRMode();
  // The logo file is the working directory's; a rectangle stands in for it.
  vrScene->VRLogoImage = vrScene->Create2DRect(kWidth / 2 - 80, 20, 160, 75);
  deferScene = MakeScene();
  deferScene->OpenDeferLight();
  ssaoScene = MakeScene();
  ssaoScene->OpenSSAO();
  // The first frames upload the buffers, so every loop starts from the same GL objects.
  for (auto* s : {&plainScene, &vrScene, &deferScene, &ssaoScene}) (*s)->DrawScene();
  targetCamera->draw();

  benchmark::Initialize(&argc, argv);
  TimeReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  auto& t = reporter.times;
  const double quad = t["BM_FullScreenProgram/202"];
  for (const auto& [name, time] : t) {
    if (name.rfind("BM_FullScreenProgram/", 0) == 0 && quad > 0) std::printf("%s / textured quad: %.2f\n", name.c_str(), time / quad);
  }
  const double target = t["BM_TargetCamera_1000Nodes"], main = t["BM_MainPass_1000Nodes"], clear = t["BM_ClearTarget"];
  if (main > 0) std::printf("target camera / (main pass + one clear): %.3f\n", target / (main + clear));
  const double plain = t["BM_Frame/Plain"];
  for (const char* mode : {"BM_Frame/VRMode", "BM_Frame/DeferLight", "BM_Frame/SSAO"}) {
    if (plain > 0) std::printf("%s / plain frame: %.2f\n", mode, t[mode] / plain);
  }
  fxImages.clear();
  targetCamera.reset();
  for (auto* s : {&fxScene, &plainScene, &vrScene, &deferScene, &ssaoScene}) s->reset();
  vorn::openGLScene.reset();
  vorn::console::set_sink(quiet);
  benchmark::Shutdown();
  return 0;
}
