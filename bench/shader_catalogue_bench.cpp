// Start-up cost of the shader catalogue: generating every 2D and 3D text (the engine's
// own work) against building every program (text generation plus the driver's compile
// and link). Needs a display (run under xvfb-run on a headless machine).
//
// Mesa keeps compiled programs in an on-disk cache, which would make every iteration
// after the first one a cache hit. The benchmark disables that cache unless the
// environment already says otherwise, so it measures a first start on a machine; run it
// with MESA_SHADER_CACHE_DISABLE=false to see a warm start.
// epoxy must come before the GLUT header, which pulls in GL/gl.h.
#include <epoxy/gl.h>
// (keep this order)
#include <GL/freeglut.h>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "shader/fx_2d.h"
#include "shader/fx_3d.h"
#include "shader/fx_manage.h"

namespace {

using vorn::Vorn_2DFX;
using vorn::Vorn_3DFX;
using vorn::Vorn_FXManage;

// Every text the manager's constructor generates, in the same order.
std::size_t GenerateAllTexts() {
  std::size_t bytes = 0;
  for (int i = Vorn_2DFX::FX_BEGIN; i < Vorn_2DFX::FX_END; ++i) {
    const auto [vs, ps] = Vorn_2DFX::ProgramTexts(i);
    bytes += vs.size() + ps.size();
  }
  Vorn_3DFX fx;
  for (int i = Vorn_3DFX::FX_BEGIN; i < Vorn_3DFX::FX_END; ++i) {
    const auto vs = fx.GetVS(i);
    const auto ps = fx.GetPS(i);
    bytes += (vs ? vs->size() : 0) + (ps ? ps->size() : 0);
  }
  return bytes;
}

void BM_CatalogueTexts(benchmark::State& state) {
  std::size_t bytes = 0;
  for (auto _ : state) {
    bytes = GenerateAllTexts();
    benchmark::DoNotOptimize(bytes);
  }
  state.counters["text_bytes"] = static_cast<double>(bytes);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}
BENCHMARK(BM_CatalogueTexts)->Unit(benchmark::kMicrosecond);

// The catalogue never releases its programs; the benchmark does, between iterations.
void Release(const Vorn_FXManage& fx) {
  for (const auto* map : {&fx.Shader_2DFX_Dict, &fx.Shader_3DFX_Dict}) {
    for (const auto& [id, program] : *map) {
      if (!program) continue;
      if (const auto objects = fx.ShaderObjects(*program)) {
        glDeleteShader(objects->first);
        glDeleteShader(objects->second);
      }
      glDeleteProgram(*program);
    }
  }
}

void BM_CatalogueBuild(benchmark::State& state) {
  int programs = 0;
  for (auto _ : state) {
    Vorn_FXManage fx;
    glFinish();
    state.PauseTiming();
    programs = 0;
    for (const auto* map : {&fx.Shader_2DFX_Dict, &fx.Shader_3DFX_Dict}) {
      for (const auto& entry : *map) programs += entry.second.has_value();
    }
    Release(fx);
    glFinish();
    state.ResumeTiming();
  }
  state.counters["programs"] = programs;
}
BENCHMARK(BM_CatalogueBuild)->Unit(benchmark::kMillisecond)->MinTime(2.0);

}  // namespace

int main(int argc, char** argv) {
  setenv("MESA_SHADER_CACHE_DISABLE", "true", 0);
  if (!std::getenv("DISPLAY")) {
    std::fprintf(stderr, "shader_catalogue_bench needs a display; run it under xvfb-run\n");
    return 1;
  }
  glutInit(&argc, argv);
  glutInitDisplayMode(GLUT_SINGLE | GLUT_RGBA | GLUT_DEPTH);
  glutInitWindowSize(64, 64);
  glutCreateWindow("shader catalogue bench");
  benchmark::AddCustomContext("gl_renderer", reinterpret_cast<const char*>(glGetString(GL_RENDERER)));
  benchmark::AddCustomContext("mesa_shader_cache_disable", std::getenv("MESA_SHADER_CACHE_DISABLE"));
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
