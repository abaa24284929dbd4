// Reading the demonstration's walker from ASCII FBX: the model importer alone (the same
// post-processing steps as the engine asks for) against the engine's whole load plan
// (the importer and our mapping into vertex records, skins and actions), so the
// overhead of the mapping shows; and one evaluation of the walker's nine bones. The
// engine runs the library in its helper process and gets the plan back over a socket,
// so both loads are timed by the clock on the wall, not by this process's CPU time.
#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "core/console.h"
#include "fbx_convert.h"
#include "mesh/model_import.h"
#include "mesh/skin_ani_fbx.h"
#include "walker_model.h"

namespace {

void DiscardLine(std::string_view) {}

const std::string& WalkerFBX() {
  static const std::string path = [] {
    const auto dir = std::filesystem::temp_directory_path() / ("fbx_bench_" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    const std::string glb = (dir / "walker.glb").string(), fbx = (dir / "walker.fbx").string();
    if (!vorn::tools::WriteWalkerGLB(glb) || !vorn::tools::ConvertModelToFBX(glb, fbx, "fbxa")) std::abort();
    return fbx;
  }();
  return path;
}

void BM_LibraryImport(benchmark::State& state) {
  const std::string& path = WalkerFBX();
  for (auto _ : state) {
    Assimp::Importer importer;
    const aiScene* scene =
        importer.ReadFile(path, aiProcess_JoinIdenticalVertices | aiProcess_FlipUVs | aiProcess_ValidateDataStructure);
    benchmark::DoNotOptimize(scene);
  }
}
BENCHMARK(BM_LibraryImport)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_EngineImport(benchmark::State& state) {
  const std::string& path = WalkerFBX();
  vorn::console::set_sink(&DiscardLine);
  for (auto _ : state) {
    auto plan = vorn::ImportModelFile(path, vorn::ModelSplit::PerMeshNode, false);
    benchmark::DoNotOptimize(plan);
  }
  vorn::console::set_sink(nullptr);
}
BENCHMARK(BM_EngineImport)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_SkinEvaluate(benchmark::State& state) {
  vorn::console::set_sink(&DiscardLine);
  auto plan = vorn::ImportModelFile(WalkerFBX(), vorn::ModelSplit::PerMeshNode, false);
  vorn::Vorn_SkinSubMeshAni_FBX skin;
  skin.LoadSkinMeshData(plan->tree, plan->submeshes.at(0).clusters);
  skin.SetCurrentAction(std::make_shared<const vorn::MeshAction>(*plan->actions.find("Walk")));
  double t = 0.01;
  for (auto _ : state) {
    benchmark::DoNotOptimize(skin.GetFinalBoneMatrixByTime(t).data());
    t = t > 0.99 ? 0.01 : t + 0.013;
  }
  vorn::console::set_sink(nullptr);
}
BENCHMARK(BM_SkinEvaluate);

}  // namespace

BENCHMARK_MAIN();
