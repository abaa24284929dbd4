// One GLB skin evaluation of 64 bones with 60 keyframes each (a binary tree of bones,
// depth 6), at the middle and at the end of the action, against the same evaluation
// written plainly: every keyframe scanned, and for each one reached the bone's parent
// chain walked and multiplied again, bone by bone.
// Run: build/bench/skin_bench
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "core/console.h"
#include "mesh/skin_ani_glb.h"

namespace {

using namespace vorn;

constexpr int kBones = 64;
constexpr int kKeys = 60;
constexpr double kKeyStep = 1.0 / 30.0;

struct Tables {
  std::shared_ptr<BoneTreeTable> tree = std::make_shared<BoneTreeTable>();
  std::shared_ptr<InverseBindTable> inverse = std::make_shared<InverseBindTable>();
  std::shared_ptr<BoneKeyframeTable> keys = std::make_shared<BoneKeyframeTable>();
};

// Nodes 1..64; node n's parent is n / 2, node 1 is the root.
Tables make_tables() {
  Tables t;
  for (std::int64_t n = 1; n <= kBones; ++n) {
    const auto parent = n == 1 ? std::optional<std::int64_t>() : n / 2;
    const FbxVector4 T(0.1 * n, 1.0, 0.0, 0.0), S(1, 1, 1, 1);
    const double a = 0.01 * n;
    t.tree->set(n, {parent, FbxMatrix::FromTQS(T, {std::sin(a), 0, 0, std::cos(a)}, S)});
    t.inverse->set(n, FbxMatrix::FromTQS({-0.1 * n, -1.0, 0.0, 0.0}, {0, 0, 0, 1}, S));
    BoneKeyframes& frames = (*t.keys)[n];
    for (int k = 0; k < kKeys; ++k) {
      const double b = 0.02 * (n + k);
      frames.push_back({k * kKeyStep, FbxMatrix::FromTQS(T, {0, std::sin(b), 0, std::cos(b)}, S)});
    }
  }
  return t;
}

void quiet(std::string_view) {}

// The plain evaluation of the shader array, as described bone by bone.
std::vector<double> plain_evaluate(const Tables& t, double currTime) {
  std::vector<double> out;
  console::print("CurrFrame:", currTime);
  for (const auto& [bone, frames] : *t.keys) {
    FbxMatrix init = t.tree->at(bone).local;
    const FbxMatrix& inverse = t.inverse->at(bone);
    for (auto p = t.tree->at(bone).parent; p && *p != 0 && t.tree->contains(*p); p = t.tree->at(*p).parent) {
      init = t.tree->at(*p).local * init;
    }
    FbxMatrix frame;
    for (std::size_t k = 0; k < frames.size(); ++k) {
      if (!(frames[k].time <= currTime)) continue;
      frame = frames[k].matrix;
      for (auto p = t.tree->at(bone).parent; p && t.keys->contains(*p); p = t.tree->at(*p).parent) {
        frame = t.keys->at(*p).at(k).matrix * frame;
      }
    }
    const auto flat = (frame * inverse * init * inverse).Flatten();
    out.insert(out.end(), flat.begin(), flat.end());
  }
  return out;
}

double time_of(int which) { return which == 0 ? 0.5 * kKeys * kKeyStep : 10.0; }

void BM_SkinGlb(benchmark::State& state) {
  const auto previous = console::set_sink(&quiet);
  const Tables t = make_tables();
  Vorn_SkinSubMeshAni_GLB skin;
  skin.SetInitBoneTree(t.tree);
  skin.SetInverseBindMatrices(t.inverse);
  skin.SetAniBonesMatrix(t.keys);
  const double time = time_of(static_cast<int>(state.range(0)));
  // The two evaluations agree before anything is timed.
  const auto plain = plain_evaluate(t, time);
  const auto& fast = skin.GetFinalBoneMatrixByTime(time);
  for (std::size_t i = 0; i < plain.size(); ++i) {
    if (std::fabs(plain[i] - fast[i]) > 1e-9) state.SkipWithError("results differ from the plain evaluation");
  }
  for (auto _ : state) benchmark::DoNotOptimize(skin.GetFinalBoneMatrixByTime(time).data());
  console::set_sink(previous);
}

void BM_PlainWalk(benchmark::State& state) {
  const auto previous = console::set_sink(&quiet);
  const Tables t = make_tables();
  const double time = time_of(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(plain_evaluate(t, time).data());
  console::set_sink(previous);
}

// Argument 0: the middle of the action (30 keys reached); 1: past the end (all 60).
BENCHMARK(BM_SkinGlb)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PlainWalk)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
