// One pick ray through the node pick path (Vorn_3DGameNode::checkPick, virtual, as a
// node's draw calls it) against:
//   - a 128 by 128 tile plane (32,768 triangles), whose override is the tile pick;
//   - 500 spheres of 1,800 triangles each, every one tested as in a frame's pick.
// The *Walk cases are the baselines in the same run: every triangle tested in order,
// with the corners carried to the world one by one, as a plain walk does.
// Run: build/bench/pick_bench
#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <optional>
#include <vector>

#include "core/math_util.h"
#include "landscape/plane.h"
#include "shapes/sphere.h"

namespace {

using vorn::Vector3;
using NodePtr = std::shared_ptr<vorn::Vorn_3DGameNode>;

// Rolling hills, turned and moved as a placed terrain would be.
NodePtr make_plane() {
  std::vector<double> heights;
  for (int row = 0; row <= 128; ++row)
    for (int cow = 0; cow <= 128; ++cow) heights.push_back(3.0 * std::sin(cow * 0.1) * std::cos(row * 0.13));
  auto plane = vorn::MakeNode<vorn::Vorn_3DPlane>(20, -2, 5);
  plane->CreatePlane(128, 128, 1.0, false, heights);
  plane->SetRY(30.0);
  plane->update(0.0);
  return plane;
}

// From above and in front of the plane to a point on its far side (a hit in the last
// rows, the walk's worst case) or past it (a miss).
std::pair<Vector3, Vector3> plane_ray(bool hit) {
  const Vector3 eye(20.0, 60.0, -90.0);
  Vector3 dir = (hit ? Vector3(20.0, 0.0, 60.0) : Vector3(20.0, 0.0, 200.0)) - eye;
  dir.normalize();
  return {eye, dir};
}

// 25 by 20 default spheres (radius 0.5, 30 by 30 steps), three units apart.
std::vector<NodePtr> make_spheres() {
  std::vector<NodePtr> spheres;
  for (int i = 0; i < 500; ++i) {
    auto s = vorn::MakeNode<vorn::Vorn_3DSphere>((i % 25) * 3.0, 0.0, (i / 25) * 3.0);
    s->CreateSphere();
    s->update(0.0);
    spheres.push_back(s);
  }
  return spheres;
}

// A camera-like ray from above the grid's near corner to the last sphere (a hit) or
// to a point between spheres (a miss).
std::pair<Vector3, Vector3> sphere_ray(bool hit) {
  const Vector3 eye(-10.0, 30.0, -10.0);
  Vector3 dir = (hit ? Vector3(72.0, 0.1, 57.0) : Vector3(73.5, 0.0, 58.5)) - eye;
  dir.normalize();
  return {eye, dir};
}

// Every triangle of every submesh in index order, corners carried one by one.
bool walk_triangles(const vorn::Vorn_3DGameNode& n, const Vector3& Pt, const Vector3& Dir) {
  const vorn::FloatList16 m = vorn::MatrixToFloatList(n.GetWorldMatrix());
  for (const auto& [s, pos] : n.VertexArray_Positon) {
    const vorn::IndexArray* idx = n.VIndexArray.find(s);
    if (!idx) continue;
    for (std::size_t f = 0; f + 2 < idx->size(); f += 3) {
      Vector3 c[3];
      for (int k = 0; k < 3; ++k)
        c[k] = vorn::Vec3MulMatrix(std::span<const double, 3>(pos[static_cast<std::size_t>((*idx)[f + k])].v), m);
      if (vorn::IntersectTriangle(Pt, Dir, c[0], c[1], c[2]).first) return true;
    }
  }
  return false;
}

// The plane's triangles, two per tile in row order, as a plain walk over the grid.
bool walk_plane(const vorn::Vorn_3DPlane& plane, const Vector3& Pt, const Vector3& Dir) {
  for (std::int64_t tz = 0; tz < plane.Rows; ++tz)
    for (std::int64_t tx = 0; tx < plane.Cows; ++tx) {
      const auto c = plane.GetTileWorldVertex(tx, tz);
      if (vorn::IntersectTriangle(Pt, Dir, c[0], c[1], c[2]).first ||
          vorn::IntersectTriangle(Pt, Dir, c[1], c[3], c[2]).first)
        return true;
    }
  return false;
}

void BM_PlaneNodePick(benchmark::State& state) {
  const NodePtr plane = make_plane();
  const auto [Pt, Dir] = plane_ray(state.range(0) != 0);
  for (auto _ : state) benchmark::DoNotOptimize(plane->checkPick(Pt, Dir));
  state.SetLabel(plane->checkPick(Pt, Dir) ? "hit" : "miss");
}
BENCHMARK(BM_PlaneNodePick)->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

void BM_PlaneWalk(benchmark::State& state) {
  const NodePtr plane = make_plane();
  const auto& p = static_cast<const vorn::Vorn_3DPlane&>(*plane);
  const auto [Pt, Dir] = plane_ray(state.range(0) != 0);
  for (auto _ : state) benchmark::DoNotOptimize(walk_plane(p, Pt, Dir));
  state.SetLabel(walk_plane(p, Pt, Dir) ? "hit" : "miss");
}
BENCHMARK(BM_PlaneWalk)->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

void BM_500SpheresNodePick(benchmark::State& state) {
  const auto spheres = make_spheres();
  const auto [Pt, Dir] = sphere_ray(state.range(0) != 0);
  int hits = 0;
  for (auto _ : state) {
    hits = 0;
    for (const auto& s : spheres) hits += s->checkPick(Pt, Dir).has_value();
    benchmark::DoNotOptimize(hits);
  }
  state.SetLabel(std::to_string(hits) + " hit");
}
BENCHMARK(BM_500SpheresNodePick)->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

void BM_500SpheresWalk(benchmark::State& state) {
  const auto spheres = make_spheres();
  const auto [Pt, Dir] = sphere_ray(state.range(0) != 0);
  int hits = 0;
  for (auto _ : state) {
    hits = 0;
    for (const auto& s : spheres) hits += walk_triangles(*s, Pt, Dir);
    benchmark::DoNotOptimize(hits);
  }
  state.SetLabel(std::to_string(hits) + " hit");
}
BENCHMARK(BM_500SpheresWalk)->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
