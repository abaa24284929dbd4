#pragma once
// Ranking the bone influences of one vertex for the four-bone skinning layout. Kept
// apart from the node so that file readers (and their fuzz targets) use it without the
// node's GL code.
#include <array>
#include <cstdint>
#include <span>
#include <utility>

namespace vorn {

// A bone key and its weight on a vertex.
using BoneInfo = std::pair<std::int64_t, double>;

// Keeps the four heaviest (bone, weight) influences, heaviest first, ties in input
// order; the rest of the arrays are zeros.
std::pair<std::array<std::int64_t, 4>, std::array<double, 4>> SortVertex4BoneInfo(
    std::span<const BoneInfo> BoneInfoArray);

}  // namespace vorn
