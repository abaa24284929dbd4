#pragma once
// Submesh map lookups for the draw path. CreateSubMesh puts the keys 0, 1, 2, ... into
// every map in the same order, so the entry of submesh s usually stands at position s:
// checking that slot first touches one contiguous array instead of a hash table, which
// matters when a frame walks thousands of nodes. The result is always that of find().
#include <cstddef>

#include "core/ordered_map.h"

namespace vorn {

template <class K, class V>
const V* FindSubMeshEntry(const OrderedMap<K, V>& map, int s) {
  const auto pos = static_cast<std::size_t>(s);
  if (s >= 0 && pos < map.size()) {
    const auto& slot = *(map.begin() + static_cast<std::ptrdiff_t>(pos));
    if (slot.first == s) return &slot.second;
  }
  return map.find(s);
}

// Asks for the slot FindSubMeshEntry will read first, so that the reads of several maps
// overlap instead of waiting one after the other. Harmless when the slot is elsewhere.
template <class K, class V>
void PrefetchSubMeshEntry(const OrderedMap<K, V>& map, int s) {
  const auto pos = static_cast<std::size_t>(s);
  if (s >= 0 && pos < map.size()) __builtin_prefetch(&*(map.begin() + static_cast<std::ptrdiff_t>(pos)));
}

template <class K, class V>
V* FindSubMeshEntry(OrderedMap<K, V>& map, int s) {
  return const_cast<V*>(FindSubMeshEntry(static_cast<const OrderedMap<K, V>&>(map), s));
}

}  // namespace vorn
