// Per-frame update of a node tree and interleaving of a large submesh.
// Run: build/bench/node_update_bench. The same tree driven from Python is timed by
// bench/node_update_bench.py.
//
// The tree update beside two plain loops over flat arrays doing the same arithmetic
// (loop rotation, the local matrices with and without scale, times the parent's world
// matrix) for the same tree, parents before children:
//   BM_FlatLoopChangedOnly10k  recomputes only the matrices whose inputs changed (the
//                              spinning nodes and everything under a changed parent);
//   BM_FlatLoopAll10k          recomputes all of them.
// The ratios of the tree update to both are printed at the end.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "node/game_node.h"

namespace {

using vorn::MakeNode;
using Node = vorn::Vorn_3DGameNode;

// 1 root, 99 branches, 100 leaves per branch: 10,000 nodes. Every tenth node spins.
std::shared_ptr<Node> make_tree() {
  auto root = MakeNode<Node>();
  int n = 1;
  for (int b = 0; b < 99; ++b) {
    auto branch = MakeNode<Node>(b, 0, 0, root);
    ++n;
    for (int l = 0; l < 100; ++l, ++n) {
      auto leaf = MakeNode<Node>(0, l * 0.1, 0, branch);
      leaf->SetRXYZ(l, 2.0 * l, 0);
      if (n % 10 == 0) leaf->SetLoopRotateY(45);
    }
  }
  return root;
}

void BM_UpdateTree10k(benchmark::State& state) {
  auto root = make_tree();
  for (auto _ : state) {
    root->update(1.0 / 60.0);
    benchmark::DoNotOptimize(root->GetWorldMatrix());
  }
  state.SetItemsProcessed(state.iterations() * 10000);
}
BENCHMARK(BM_UpdateTree10k)->Unit(benchmark::kMicrosecond);

// ---- Plain-loop baselines ----

struct FlatTree {
  struct Transform {
    double x, y, z, sx, sy, sz, rx, ry, rz, rxSpeed, rySpeed, rzSpeed;
    int parent;  // index of an earlier node, or -1
  };
  std::vector<Transform> nodes;
  std::vector<vorn::FbxAMatrix> world, axis;
  std::vector<unsigned char> changed;
};

// The tree of make_tree, parents before children.
FlatTree make_flat_tree() {
  FlatTree t;
  auto add = [&t](double x, double y, int parent, double rx, double ry, double rySpeed) {
    t.nodes.push_back({x, y, 0, 1, 1, 1, rx, ry, 0, 0, rySpeed, 0, parent});
  };
  add(0, 0, -1, 0, 0, 0);
  int n = 1;
  for (int b = 0; b < 99; ++b) {
    const int branch = static_cast<int>(t.nodes.size());
    add(b, 0, 0, 0, 0, 0);
    ++n;
    for (int l = 0; l < 100; ++l, ++n) add(0, l * 0.1, branch, l, 2.0 * l, n % 10 == 0 ? 45 : 0);
  }
  t.world.resize(t.nodes.size());
  t.axis.resize(t.nodes.size());
  t.changed.assign(t.nodes.size(), 1);
  return t;
}

// Local matrices with and without scale, then times the parent's world matrix.
inline void compute(FlatTree& t, std::size_t i) {
  const FlatTree::Transform& n = t.nodes[i];
  const double deg = 3.14159265358979323846 / 180.0;
  const double cx = std::cos(n.rx * deg), sx = std::sin(n.rx * deg);
  const double cy = std::cos(n.ry * deg), sy = std::sin(n.ry * deg);
  const double cz = std::cos(n.rz * deg), sz = std::sin(n.rz * deg);
  const double rot[3][3] = {{cy * cz, cy * sz, -sy},
                            {sx * sy * cz - cx * sz, sx * sy * sz + cx * cz, sx * cy},
                            {cx * sy * cz + sx * sz, cx * sy * sz - sx * cz, cx * cy}};
  vorn::FbxAMatrix local, unscaled;
  const double scale[3] = {n.sx, n.sy, n.sz};
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c) {
      local.m[r][c] = scale[r] * rot[r][c];
      unscaled.m[r][c] = rot[r][c];
    }
    local.m[r][3] = unscaled.m[r][3] = 0.0;
  }
  local.m[3] = unscaled.m[3] = {n.x, n.y, n.z, 1.0};
  if (n.parent < 0) {
    t.world[i] = local;
    t.axis[i] = unscaled;
    return;
  }
  const vorn::FbxAMatrix& p = t.world[static_cast<std::size_t>(n.parent)];
  t.world[i] = p * local;
  t.axis[i] = p * unscaled;
}

inline void spin(FlatTree::Transform& n, double delay) {
  if (n.rxSpeed != 0) n.rx += n.rxSpeed * delay;
  if (n.rySpeed != 0) n.ry += n.rySpeed * delay;
  if (n.rzSpeed != 0) n.rz += n.rzSpeed * delay;
}

void BM_FlatLoopChangedOnly10k(benchmark::State& state) {
  FlatTree t = make_flat_tree();
  const double delay = 1.0 / 60.0;
  for (auto _ : state) {
    for (std::size_t i = 0; i < t.nodes.size(); ++i) {
      FlatTree::Transform& n = t.nodes[i];
      const bool spinning = n.rxSpeed != 0 || n.rySpeed != 0 || n.rzSpeed != 0;
      spin(n, delay);
      const bool changed = spinning || (n.parent >= 0 && t.changed[static_cast<std::size_t>(n.parent)]);
      t.changed[i] = changed;
      if (changed) compute(t, i);
    }
    benchmark::DoNotOptimize(t.world.data());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(t.nodes.size()));
}
BENCHMARK(BM_FlatLoopChangedOnly10k)->Unit(benchmark::kMicrosecond);

void BM_FlatLoopAll10k(benchmark::State& state) {
  FlatTree t = make_flat_tree();
  const double delay = 1.0 / 60.0;
  for (auto _ : state) {
    for (std::size_t i = 0; i < t.nodes.size(); ++i) {
      spin(t.nodes[i], delay);
      compute(t, i);
    }
    benchmark::DoNotOptimize(t.world.data());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(t.nodes.size()));
}
BENCHMARK(BM_FlatLoopAll10k)->Unit(benchmark::kMicrosecond);

constexpr int kVertices = 65536;

Node& big_submesh(Node& n) {
  const int s = n.CreateSubMesh("big", true);
  auto& pos = n.VertexArray_Positon.at(s);
  auto& nrm = n.VertexArray_Normal.at(s);
  auto& uv = n.VertexArray_UV.at(s);
  for (int v = 0; v < kVertices; ++v) {
    pos.emplace_back(v % 256, v / 256, 0.5);
    nrm.emplace_back(0, 0, 1);
    uv.emplace_back((v % 256) / 255.0, (v / 256) / 255.0);
  }
  return n;
}

void BM_InterleaveSubmesh65536(benchmark::State& state) {
  Node n;
  big_submesh(n);
  for (auto _ : state) {
    auto data = n.InterleaveSubMesh(0);
    benchmark::DoNotOptimize(data.data());
  }
  state.SetItemsProcessed(state.iterations() * kVertices);
}
BENCHMARK(BM_InterleaveSubmesh65536)->Unit(benchmark::kMicrosecond);

void BM_BuildSubMeshVBO65536(benchmark::State& state) {
  Node n;
  big_submesh(n);
  for (auto _ : state) n.BuildSubMeshVBO(0);
  state.SetItemsProcessed(state.iterations() * kVertices);
}
BENCHMARK(BM_BuildSubMeshVBO65536)->Unit(benchmark::kMicrosecond);

// Baseline: the same 8 floats a vertex from three packed float arrays, no checks.
void BM_InterleaveBaselinePackedFloats(benchmark::State& state) {
  std::vector<float> pos(kVertices * 3), nrm(kVertices * 3), uv(kVertices * 2);
  for (int v = 0; v < kVertices; ++v) {
    pos[v * 3] = static_cast<float>(v % 256), pos[v * 3 + 1] = static_cast<float>(v / 256), pos[v * 3 + 2] = 0.5f;
    nrm[v * 3 + 2] = 1.0f;
    uv[v * 2] = static_cast<float>(v % 256) / 255.0f;
  }
  for (auto _ : state) {
    std::vector<float> out(kVertices * 8);
    for (int v = 0; v < kVertices; ++v) {
      std::memcpy(&out[v * 8], &uv[v * 2], 2 * sizeof(float));
      std::memcpy(&out[v * 8 + 2], &nrm[v * 3], 3 * sizeof(float));
      std::memcpy(&out[v * 8 + 5], &pos[v * 3], 3 * sizeof(float));
    }
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(state.iterations() * kVertices);
}
BENCHMARK(BM_InterleaveBaselinePackedFloats)->Unit(benchmark::kMicrosecond);

// Keeps the CPU time per iteration (the median of repetitions when there are some).
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      const std::string name = run.run_name.function_name;
      if (run.run_type == Run::RT_Iteration && !medians[name]) times[name] = run.GetAdjustedCPUTime();
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
        times[name] = run.GetAdjustedCPUTime();
        medians[name] = true;
      }
    }
    ConsoleReporter::ReportRuns(runs);
  }
  std::map<std::string, double> times;
  std::map<std::string, bool> medians;
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  const double tree = reporter.times["BM_UpdateTree10k"];
  const double changed = reporter.times["BM_FlatLoopChangedOnly10k"];
  const double all = reporter.times["BM_FlatLoopAll10k"];
  if (tree > 0 && changed > 0 && all > 0) {
    // Times are in microseconds per 10,000 nodes: 0.1 * us is ns a node.
    std::printf("update of 10,000 nodes: %.1f ns a node; flat loop changed only %.1f ns, all %.1f ns; "
                "update / changed only %.2f, update / all %.2f\n",
                tree * 0.1, changed * 0.1, all * 0.1, tree / changed, tree / all);
  }
  benchmark::Shutdown();
  return 0;
}
