// One pick ray against a 128 by 128 tile plane (32,768 triangles).
// Run: build/bench/plane_pick_bench. BM_PickTile is the engine's tile picking; the
// WalkEveryTile cases are the baseline of testing every tile in row order, as a plain
// walk does, for the same rays.
#include <benchmark/benchmark.h>

#include <cmath>
#include <optional>
#include <vector>

#include "core/math_util.h"
#include "landscape/plane.h"

namespace {

using vorn::Vector3;
using Plane = vorn::Vorn_3DPlane;

// Rolling hills, turned and moved as a placed terrain would be.
std::shared_ptr<Plane> make_plane() {
  std::vector<double> heights;
  for (int row = 0; row <= 128; ++row)
    for (int cow = 0; cow <= 128; ++cow) heights.push_back(3.0 * std::sin(cow * 0.1) * std::cos(row * 0.13));
  auto plane = vorn::MakeNode<Plane>(20, -2, 5);
  plane->CreatePlane(128, 128, 1.0, false, heights);
  plane->SetRY(30.0);
  plane->update(0.0);
  return plane;
}

// A camera above and in front of the plane, looking at a point on its far side (the
// last rows: the walk's worst case for a hit), or past the plane (a miss).
std::pair<Vector3, Vector3> ray(bool hit) {
  const Vector3 eye(20.0, 60.0, -90.0);
  const Vector3 target = hit ? Vector3(20.0, 0.0, 60.0) : Vector3(20.0, 0.0, 200.0);
  Vector3 dir = target - eye;
  dir.normalize();
  return {eye, dir};
}

std::optional<std::pair<std::int64_t, std::int64_t>> walk_every_tile(const Plane& plane, const Vector3& Pt,
                                                                    const Vector3& Dir) {
  for (std::int64_t tz = 0; tz < plane.Rows; ++tz) {
    for (std::int64_t tx = 0; tx < plane.Cows; ++tx) {
      const auto c = plane.GetTileWorldVertex(tx, tz);
      if (vorn::IntersectTriangle(Pt, Dir, c[0], c[1], c[2]).first ||
          vorn::IntersectTriangle(Pt, Dir, c[1], c[3], c[2]).first) {
        return std::pair{tx, tz};
      }
    }
  }
  return std::nullopt;
}

void BM_PickTile(benchmark::State& state) {
  const auto plane = make_plane();
  const auto [Pt, Dir] = ray(state.range(0) != 0);
  for (auto _ : state) benchmark::DoNotOptimize(plane->PickTile(Pt, Dir));
  const auto hit = plane->PickTile(Pt, Dir);
  state.SetLabel(hit ? "hit row " + std::to_string(hit->tileZ) : "miss");
}
BENCHMARK(BM_PickTile)->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

void BM_WalkEveryTile(benchmark::State& state) {
  const auto plane = make_plane();
  const auto [Pt, Dir] = ray(state.range(0) != 0);
  for (auto _ : state) benchmark::DoNotOptimize(walk_every_tile(*plane, Pt, Dir));
  const auto hit = walk_every_tile(*plane, Pt, Dir);
  state.SetLabel(hit ? "hit row " + std::to_string(hit->second) : "miss");
}
BENCHMARK(BM_WalkEveryTile)->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
