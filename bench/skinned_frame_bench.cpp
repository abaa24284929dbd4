// A frame of 100 skinned meshes (a textured quad strip on a three-bone chain, one
// action playing) against the same frame with 100 static meshes of the same geometry
// and texture. The difference is the cost of skinning: the clock, the evaluation of
// the bone matrices and their upload for every mesh, every frame.
// Needs a display (Xvfb is fine).
#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <memory>
#include <vector>

#include "camera/camera.h"
#include "core/console.h"
#include "core/gl_api.h"
#include "core/screen_settings.h"
#include "mesh/mesh.h"
#include "mesh/skin_ani_glb.h"
#include "resource/res_manager.h"
#include "scene/scene.h"
#include "shader/fx_3d.h"

namespace {

using namespace vorn;

constexpr int kMeshes = 100;
constexpr int kBones = 3;
constexpr int kWidth = 640, kHeight = 480;

std::shared_ptr<Vorn_3Dcene> MakeScene() {
  auto scene = Vorn_3Dcene::Create();
  scene->InitGL(kWidth, kHeight);
  auto camera = std::dynamic_pointer_cast<Vorn_3DCamera>(scene->GetActiveCamera());
  camera->SetXYZ(0.0, 0.0, 60.0);
  camera->LookAt(0.0, 0.0, 0.0);
  return scene;
}

// A strip of kBones quads up the y axis; quad b follows bone b.
void BuildStrip(Vorn_3DMesh& mesh, bool skinned) {
  const int s = mesh.CreateSubMesh("strip", true, skinned);
  for (int b = 0; b <= kBones; ++b) {
    for (int x = 0; x <= 1; ++x) {
      mesh.PushVertex_Position(s, x, b, 0);
      mesh.PushVertex_UV(s, x, b);
      mesh.PushVertex_Normal(s, 0, 0, 1);
      if (skinned) {
        const int bone = b < kBones ? b : kBones - 1;
        mesh.PushVertex_BoneIndics(s, bone, 0, 0, 0);
        mesh.PushVertex_BoneWeights(s, 1, 0, 0, 0);
      }
    }
  }
  for (int b = 0; b < kBones; ++b) {
    const int v = b * 2;
    mesh.PushTriangleVIndex(s, v, v + 1, v + 3);
    mesh.PushTriangleVIndex(s, v, v + 3, v + 2);
  }
  mesh.BuildVBO();
  const auto white = std::make_shared<const std::vector<std::uint8_t>>(4 * 4 * 3, 255);
  mesh.LoadSubMeshTextureFromImage(s, 0, white, "RGB", 4, 4);
  mesh.ApplyFX(skinned ? Vorn_3DFX::FX_TEXTURE_SKIN : Vorn_3DFX::FX_TEXTURE);
  if (!skinned) return;
  // A chain of bones, each swaying about z over 30 keys of a one-second action.
  mesh.withSkin = true;
  auto tree = std::make_shared<BoneTreeTable>();
  auto inverse = std::make_shared<InverseBindTable>();
  MeshAction sway;
  for (int b = 0; b < kBones; ++b) {
    const FbxVector4 up(0, b == 0 ? 0 : 1, 0, 0);
    tree->set(b, BoneTreeEntry{b == 0 ? std::nullopt : std::optional<std::int64_t>(b - 1),
                               FbxMatrix::FromTQS(up, FbxVector4(0, 0, 0, 0), FbxVector4(1, 1, 1, 1))});
    inverse->set(b, FbxMatrix::FromTQS(FbxVector4(0, -b, 0, 0), FbxVector4(0, 0, 0, 0), FbxVector4(1, 1, 1, 1)));
    std::vector<ActionChannel> channels{{"translation", {}}, {"rotation", {}}, {"scale", {}}};
    for (int k = 0; k < 30; ++k) {
      const double t = k / 29.0, angle = 0.2 * std::sin(6.283 * t);
      channels[0].samples.push_back({t, {0.0, b == 0 ? 0.0 : 1.0, 0.0}});
      channels[1].samples.push_back({t, {0.0, 0.0, std::sin(angle / 2), std::cos(angle / 2)}});
      channels[2].samples.push_back({t, {1.0, 1.0, 1.0}});
    }
    sway.set(b, std::move(channels));
  }
  auto skin = std::make_shared<Vorn_SkinSubMeshAni_GLB>();
  skin->SetInitBoneTree(tree);
  skin->SetInverseBindMatrices(inverse);
  mesh.SubMesh_Dict.set(s, skin);
  mesh.ActionDict.set("sway", std::move(sway));
  mesh.PlayAction(0);
}

std::shared_ptr<Vorn_3Dcene> MakeMeshScene(bool skinned) {
  auto scene = MakeScene();
  for (int i = 0; i < kMeshes; ++i) {
    auto mesh = std::static_pointer_cast<Vorn_3DMesh>(
        scene->CreateMeshFromFile(-25.0 + (i % 10) * 5.0, -20.0 + (i / 10) * 4.0, 0.0));
    BuildStrip(*mesh, skinned);
  }
  return scene;
}

std::shared_ptr<Vorn_3Dcene> skinnedScene, staticScene;

void BM_Frame_100SkinnedMeshes(benchmark::State& state) {
  for (auto _ : state) {
    skinnedScene->DrawScene();
    glFinish();
  }
  state.SetItemsProcessed(state.iterations() * kMeshes);
}
BENCHMARK(BM_Frame_100SkinnedMeshes)->Unit(benchmark::kMicrosecond);

void BM_Frame_100StaticMeshes(benchmark::State& state) {
  for (auto _ : state) {
    staticScene->DrawScene();
    glFinish();
  }
  state.SetItemsProcessed(state.iterations() * kMeshes);
}
BENCHMARK(BM_Frame_100StaticMeshes)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  glutInit(&argc, argv);
  glutInitDisplayMode(GLUT_SINGLE | GLUT_RGBA | GLUT_DEPTH);
  glutInitWindowSize(kWidth, kHeight);
  glutCreateWindow("skinned_frame_bench");
  SCREEN_WIDTH = kWidth;
  SCREEN_HEIGHT = kHeight;
  // The evaluation prints a line per mesh and frame: the console is silenced so that
  // the figures are the engine's, not the terminal's.
  auto quiet = console::set_sink([](std::string_view) {});
  PyGameResManager::Create("/nonexistent");
  skinnedScene = MakeMeshScene(true);
  staticScene = MakeMeshScene(false);
  skinnedScene->DrawScene();
  staticScene->DrawScene();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  skinnedScene.reset();
  staticScene.reset();
  console::set_sink(quiet);
  benchmark::Shutdown();
  return 0;
}
