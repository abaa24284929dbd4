#pragma once
// A map iterated in insertion order with the semantics of a Python dict: assigning to
// an existing key keeps its place, erasing and inserting again puts the key last, and
// a lookup of a missing key raises KeyError.
#include <algorithm>
#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/console.h"
#include "core/errors.h"

namespace vorn {

template <class Key, class Value, class Hash = std::hash<Key>>
class OrderedMap {
 public:
  using value_type = std::pair<Key, Value>;
  using iterator = typename std::vector<value_type>::iterator;
  using const_iterator = typename std::vector<value_type>::const_iterator;

  std::size_t size() const noexcept { return items_.size(); }
  bool empty() const noexcept { return items_.empty(); }
  void clear() noexcept {
    items_.clear();
    index_.clear();
  }

  iterator begin() noexcept { return items_.begin(); }
  iterator end() noexcept { return items_.end(); }
  const_iterator begin() const noexcept { return items_.begin(); }
  const_iterator end() const noexcept { return items_.end(); }

  bool contains(const Key& key) const { return index_.count(key) != 0; }

  // dict[key]: raises KeyError when the key is missing.
  Value& at(const Key& key) {
    auto it = index_.find(key);
    if (it == index_.end()) throw KeyError(console::to_repr(key));
    return items_[it->second].second;
  }
  const Value& at(const Key& key) const { return const_cast<OrderedMap*>(this)->at(key); }

  // Pointer to the value or nullptr, for lookups that may miss.
  Value* find(const Key& key) {
    auto it = index_.find(key);
    return it == index_.end() ? nullptr : &items_[it->second].second;
  }
  const Value* find(const Key& key) const { return const_cast<OrderedMap*>(this)->find(key); }

  // dict[key] = value: overwrite in place or append at the end.
  Value& set(const Key& key, Value value) {
    if (Value* existing = find(key)) {
      *existing = std::move(value);
      return *existing;
    }
    index_.emplace(key, items_.size());
    items_.emplace_back(key, std::move(value));
    return items_.back().second;
  }

  // The value for key, inserted default-constructed at the end when missing.
  Value& operator[](const Key& key) {
    if (Value* existing = find(key)) return *existing;
    return set(key, Value{});
  }

  // del dict[key]: raises KeyError when missing.
  void erase(const Key& key) {
    if (!discard(key)) throw KeyError(console::to_repr(key));
  }

  // Removes the key if present; tells whether it was.
  bool discard(const Key& key) {
    auto it = index_.find(key);
    if (it == index_.end()) return false;
    const std::size_t pos = it->second;
    index_.erase(it);
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(pos));
    for (std::size_t i = pos; i < items_.size(); ++i) index_[items_[i].first] = i;
    return true;
  }

  std::vector<Key> keys() const {
    std::vector<Key> out;
    out.reserve(items_.size());
    for (const auto& [k, v] : items_) out.push_back(k);
    return out;
  }

 private:
  std::vector<value_type> items_;
  std::unordered_map<Key, std::size_t, Hash> index_;
};

}  // namespace vorn
