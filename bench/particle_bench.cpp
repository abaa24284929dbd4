// Particles: the emitter's update walk over 10,000 live particles against a plain loop
// making the same steps over a vector of the same fields; and a scene frame with 10
// emitters of 500 particles against the same frame without them.
// The frame benchmarks need a display (Xvfb is fine).
#include <benchmark/benchmark.h>

#include <array>
#include <memory>
#include <vector>

#include "core/console.h"
#include "core/gl_api.h"
#include "core/math_util.h"
#include "overlay/particle.h"
#include "resource/res_manager.h"
#include "scene/scene.h"

namespace {

constexpr int kParticles = 10000;

std::shared_ptr<vorn::Vorn_3DParticleEmitter> full_emitter(int count) {
  vorn::SeedRandom(1);
  auto e = vorn::MakeNode<vorn::Vorn_3DParticleEmitter>();
  e->ParticleTotal = count;
  e->EmitterLifeDecSpeed = 0.0;  // nobody dies: every frame walks the same pool
  e->update(1000.0);
  return e;
}

void BM_EmitterUpdate(benchmark::State& state) {
  auto e = full_emitter(kParticles);
  for (auto _ : state) {
    e->update(0.001);
    benchmark::DoNotOptimize(e->ParticleCount);
  }
  state.SetItemsProcessed(state.iterations() * kParticles);
}
BENCHMARK(BM_EmitterUpdate);

struct PlainParticle {
  std::array<double, 3> pos, speed, acspeed;
  std::array<double, 4> color, colorSpeed;
  double size, sizeSpeed, life;
};

void BM_PlainParticleLoop(benchmark::State& state) {
  std::vector<PlainParticle> ps(kParticles);
  for (auto& p : ps) {
    p = PlainParticle{{0, 0, 0}, {0.1, 1, 0.1}, {0, -2, 0}, {0.5, 0.5, 0.5, 1}, {0.1, 0.1, 0.1, 0.1}, 1, 0.5, 50};
  }
  const double dec = 0.0;
  for (auto _ : state) {
    const double delay = 0.001;
    int count = 0;
    for (auto& p : ps) {
      if (p.life > 0) {
        p.life -= dec * delay;
        for (int i = 0; i < 3; ++i) p.speed[i] += p.acspeed[i] * delay;
        for (int i = 0; i < 3; ++i) p.pos[i] += p.speed[i] * delay;
        for (int i = 0; i < 4; ++i) p.color[i] = vorn::Clamp(p.color[i] + p.colorSpeed[i] * delay, 0.0, 1.0);
        p.size += p.sizeSpeed * delay;
      }
      if (p.life > 0) ++count;
    }
    benchmark::DoNotOptimize(count);
  }
  state.SetItemsProcessed(state.iterations() * kParticles);
}
BENCHMARK(BM_PlainParticleLoop);

std::shared_ptr<vorn::Vorn_3Dcene> scene;

void BM_FrameWithoutEmitters(benchmark::State& state) {
  for (auto _ : state) scene->DrawScene();
}

void BM_FrameWith10Emitters(benchmark::State& state) {
  std::vector<std::shared_ptr<vorn::Vorn_3DParticleEmitter>> emitters;
  for (int i = 0; i < 10; ++i) {
    auto e = full_emitter(500);
    e->x = i - 5.0;
    scene->ObjectArray_3D.push_back(e);
  }
  for (auto _ : state) scene->DrawScene();
  scene->ObjectArray_3D.clear();
}
BENCHMARK(BM_FrameWithoutEmitters)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FrameWith10Emitters)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  glutInit(&argc, argv);
  glutInitDisplayMode(GLUT_SINGLE | GLUT_RGBA | GLUT_DEPTH);
  glutInitWindowSize(320, 240);
  glutCreateWindow("particle_bench");
  [[maybe_unused]] auto quiet = vorn::console::set_sink([](std::string_view) {});
  vorn::PyGameResManager::Create("/nonexistent");
  scene = vorn::Vorn_3Dcene::Create();
  scene->InitGL(320, 240);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  scene.reset();
  return 0;
}
