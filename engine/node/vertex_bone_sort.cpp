#include "node/vertex_bone_sort.h"

#include <cstddef>
#include <vector>

namespace vorn {

std::pair<std::array<std::int64_t, 4>, std::array<double, 4>> SortVertex4BoneInfo(
    std::span<const BoneInfo> BoneInfoArray) {
  // Insertion by strictly greater weight keeps equal weights in input order.
  std::vector<BoneInfo> best;
  best.reserve(BoneInfoArray.size());
  for (const BoneInfo& info : BoneInfoArray) {
    std::size_t insertIndex = 0;
    while (insertIndex < best.size() && !(best[insertIndex].second < info.second)) ++insertIndex;
    best.insert(best.begin() + static_cast<std::ptrdiff_t>(insertIndex), info);
  }
  std::array<std::int64_t, 4> indices{0, 0, 0, 0};
  std::array<double, 4> weights{0.0, 0.0, 0.0, 0.0};
  for (std::size_t i = 0; i < best.size() && i < 4; ++i) {
    indices[i] = best[i].first;
    weights[i] = best[i].second;
  }
  return {indices, weights};
}

}  // namespace vorn
