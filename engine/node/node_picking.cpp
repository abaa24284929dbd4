// Picking a node with a world-space ray, the pick event of the draw and the bounding
// box query.
//
// The answer is the first triangle in submesh and index order that the line meets,
// its corners carried to the world by WorldMatrix. Before any triangle is tested, the
// line is tested against the box around the submesh's positions, carried to the world
// the same way: every triangle lies in that box, so a line that misses the box misses
// every triangle, and most nodes of a scene are rejected for the price of a min/max
// walk over their positions. A line that meets the box takes the plain walk, so the
// result is always that of the walk.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "core/errors.h"
#include "core/math_util.h"
#include "core/pyseq.h"
#include "node/game_node.h"

namespace vorn {
namespace {

[[noreturn]] void short_position(int s, std::size_t vertex) {
  throw IndexError("Vorn_3DGameNode.checkPick: submesh " + std::to_string(s) + " has no complete position for vertex " +
                   std::to_string(vertex));
}

// Whether the infinite line Pt + t * Dir can meet the axis-aligned box [lo, hi]. The
// box is widened by a margin far above the rounding of the corner transforms, so a
// line that grazes a triangle on the box's face is never rejected.
bool line_meets_box(const Vector3& Pt, const Vector3& Dir, const double lo[3], const double hi[3]) {
  const double p[3] = {Pt.x, Pt.y, Pt.z};
  const double d[3] = {Dir.x, Dir.y, Dir.z};
  double tNear = -std::numeric_limits<double>::infinity();
  double tFar = std::numeric_limits<double>::infinity();
  for (int a = 0; a < 3; ++a) {
    const double margin = 1e-7 * (1.0 + (hi[a] - lo[a]) + std::fabs(lo[a]) + std::fabs(hi[a]));
    const double low = lo[a] - margin, high = hi[a] + margin;
    if (d[a] == 0.0) {
      if (p[a] < low || p[a] > high) return false;
      continue;
    }
    double t1 = (low - p[a]) / d[a], t2 = (high - p[a]) / d[a];
    if (t1 > t2) std::swap(t1, t2);
    tNear = std::max(tNear, t1);
    tFar = std::min(tFar, t2);
    if (tNear > tFar) return false;
  }
  return true;
}

// World-space box around a submesh's positions: the local box's eight corners through
// the matrix. False when it can't be had (a non-affine or non-finite matrix), in which
// case the caller walks the triangles.
bool world_box(const Vec3Array& positions, const FloatList16& m, double lo[3], double hi[3], bool& allComplete) {
  if (m[3] != 0.0 || m[7] != 0.0 || m[11] != 0.0 || m[15] != 1.0) return false;
  double llo[3] = {INFINITY, INFINITY, INFINITY}, lhi[3] = {-INFINITY, -INFINITY, -INFINITY};
  allComplete = true;
  for (const auto& p : positions) {
    if (p.size < 3) {  // such a vertex fails only if a triangle uses it
      allComplete = false;
      continue;
    }
    for (int a = 0; a < 3; ++a) {
      llo[a] = std::min(llo[a], p.v[a]);
      lhi[a] = std::max(lhi[a], p.v[a]);
    }
  }
  if (!(llo[0] <= lhi[0])) return false;  // no complete vertex (or NaN coordinates)
  for (int a = 0; a < 3; ++a) lo[a] = INFINITY, hi[a] = -INFINITY;
  for (int c = 0; c < 8; ++c) {
    const double v[3] = {c & 1 ? lhi[0] : llo[0], c & 2 ? lhi[1] : llo[1], c & 4 ? lhi[2] : llo[2]};
    for (int a = 0; a < 3; ++a) {
      const double w = v[0] * m[a] + v[1] * m[4 + a] + v[2] * m[8 + a] + m[12 + a];
      lo[a] = std::min(lo[a], w);
      hi[a] = std::max(hi[a], w);
    }
  }
  for (int a = 0; a < 3; ++a)
    if (!std::isfinite(lo[a]) || !std::isfinite(hi[a])) return false;
  return true;
}

// Whether every index lies in [-n, n), the range a Python sequence of n accepts.
// Shifted by n, a valid index is below 2n as an unsigned number and an invalid one
// is not; four independent accumulators keep the loop from waiting on itself.
bool indices_in_range(std::span<const std::int64_t> indices, std::size_t n) noexcept {
  const auto shift = static_cast<std::uint64_t>(n), limit = 2 * static_cast<std::uint64_t>(n);
  std::uint64_t bad[4] = {0, 0, 0, 0};
  std::size_t i = 0;
  for (; i + 4 <= indices.size(); i += 4)
    for (int k = 0; k < 4; ++k) bad[k] |= static_cast<std::uint64_t>(indices[i + k]) + shift >= limit;
  for (; i < indices.size(); ++i) bad[0] |= static_cast<std::uint64_t>(indices[i]) + shift >= limit;
  return (bad[0] | bad[1] | bad[2] | bad[3]) == 0;
}

// Scratch space of the walk: world positions, carried on first use. One thread.
std::vector<Vector3> worldPositions;
std::vector<std::uint8_t> carried;

}  // namespace

std::optional<PickDetail> Vorn_3DGameNode::checkPick(const Vector3& Pt, const Vector3& Dir, double /*Length*/) {
  const FloatList16 mat_float_list = MatrixToFloatList(GetWorldMatrix());
  for (const auto& [s, FaceVertex] : VertexArray_Positon) {
    if (FaceVertex.empty()) continue;
    const IndexArray* indices = VIndexArray.find(s);
    if (!indices || indices->empty()) continue;
    const IndexArray& FaceInfoArray = *indices;
    const std::size_t FaceCount = FaceInfoArray.size() / 3;
    const std::size_t n = FaceVertex.size();

    double lo[3], hi[3];
    bool allComplete = true;
    if (world_box(FaceVertex, mat_float_list, lo, hi, allComplete) && !line_meets_box(Pt, Dir, lo, hi)) {
      // No triangle can be hit; the walk would still have failed on a bad index or an
      // incomplete vertex, so those fail here too. The common case, every index in
      // range and every vertex complete, is one pass over the indices.
      const auto used = std::span<const std::int64_t>(FaceInfoArray.data(), FaceCount * 3);
      if (!allComplete || !indices_in_range(used, n)) {
        for (const std::int64_t i : used) {
          const std::size_t v = py_index(i, n);
          if (FaceVertex[v].size < 3) short_position(s, v);
        }
      }
      continue;
    }

    worldPositions.resize(n);
    carried.assign(n, 0);
    auto corner = [&](std::int64_t index) -> const Vector3& {
      const std::size_t v = py_index(index, n);
      if (!carried[v]) {
        if (FaceVertex[v].size < 3) short_position(s, v);
        worldPositions[v] = Vec3MulMatrix(std::span<const double, 3>(FaceVertex[v].v.data(), 3), mat_float_list);
        carried[v] = 1;
      }
      return worldPositions[v];
    };
    for (std::size_t f = 0; f < FaceCount; ++f) {
      const Vector3& V1 = corner(FaceInfoArray[3 * f]);
      const Vector3& V2 = corner(FaceInfoArray[3 * f + 1]);
      const Vector3& V3 = corner(FaceInfoArray[3 * f + 2]);
      const auto [Result, Position] = IntersectTriangle(Pt, Dir, V1, V2, V3);
      if (Result) return PickDetail{Position, {V1, V2, V3}};
    }
  }
  return std::nullopt;
}

std::pair<Vector3, Vector3> Vorn_3DGameNode::GetBoundingBox(bool LocalMode) const {
  if (LocalMode) return {boxMin, boxMax};
  const FloatList16 mat_float_list = MatrixToFloatList(GetWorldMatrix());
  return {Vec3MulMatrix(boxMin, mat_float_list), Vec3MulMatrix(boxMax, mat_float_list)};
}

void Vorn_3DGameNode::draw_picktriangle() {
  auto scene = sceneInstance.lock();
  if (!scene || !scene->isCheckPickOnce()) return;
  const auto [Pt, Dir] = scene->GetScree3DPointAndDir();
  const auto hit = checkPick(Pt, Dir);
  if (!hit) return;
  // Held while the scene and the callback run: either may drop the last other owner.
  const Ptr self = shared_from_this();
  const PickDetail DetailInfo = *hit;
  scene->Select3DObject(self);
  if (Enable_PickDown && PickDownFunction) PickDownFunction.call(*this, DetailInfo);
  if (!PickTriangleVisible) return;
  if (const auto pickDrawNode = scene->GetCurrDrawNode()) pickDrawNode->MarkPickedTriangle(DetailInfo.corners);
}

}  // namespace vorn
