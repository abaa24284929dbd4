// Per-frame update of a node tree and interleaving of a large submesh.
// Run: build/bench/node_update_bench. The same tree driven from Python is timed by
// bench/node_update_bench.py.
#include <benchmark/benchmark.h>

#include <cstring>
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

}  // namespace

BENCHMARK_MAIN();
