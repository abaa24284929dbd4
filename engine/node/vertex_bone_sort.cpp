#include "node/vertex_bone_sort.h"

#include <cstddef>
#include <vector>

namespace vorn {

std::pair<std::array<std::int64_t, 4>, std::array<double, 4>> SortVertex4BoneInfo(
    std::span<const BoneInfo> BoneInfoArray) {
  // Insertion by strictly greater weight keeps equal weights in input order. A vertex
  // has four bones in the files we read: the ranking then stays on the stack.
  constexpr std::size_t kInline = 8;
  std::array<BoneInfo, kInline> inlineBest;
  std::vector<BoneInfo> heapBest;
  BoneInfo* best = inlineBest.data();
  if (BoneInfoArray.size() > kInline) {
    heapBest.resize(BoneInfoArray.size());
    best = heapBest.data();
  }
  std::size_t count = 0;
  for (const BoneInfo& info : BoneInfoArray) {
    std::size_t insertIndex = 0;
    while (insertIndex < count && !(best[insertIndex].second < info.second)) ++insertIndex;
    for (std::size_t i = count; i > insertIndex; --i) best[i] = best[i - 1];
    best[insertIndex] = info;
    ++count;
  }
  std::array<std::int64_t, 4> indices{0, 0, 0, 0};
  std::array<double, 4> weights{0.0, 0.0, 0.0, 0.0};
  for (std::size_t i = 0; i < count && i < 4; ++i) {
    indices[i] = best[i].first;
    weights[i] = best[i].second;
  }
  return {indices, weights};
}

}  // namespace vorn
