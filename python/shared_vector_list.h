#pragma once
// A std::vector of shared pointers seen through the list API that ListView expects,
// for engine lists that are still plain vectors (the scene's TextArray). Default
// constructed, it owns a vector of its own: that is the fresh list that bulk changes
// build and then move-assign into the adapted one.
#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "core/errors.h"
#include "core/pyseq.h"

namespace vorn::py_bind {

template <class T>
class SharedVectorList {
 public:
  using Ptr = std::shared_ptr<T>;

  SharedVectorList() = default;
  explicit SharedVectorList(std::vector<Ptr>& items) : items_(&items) {}
  SharedVectorList(const SharedVectorList&) = delete;
  SharedVectorList& operator=(const SharedVectorList&) = delete;
  // Replaces the adapted vector's content; the old items go after the new ones are in.
  SharedVectorList& operator=(SharedVectorList&& other) noexcept {
    if (this != &other) std::vector<Ptr> old = std::exchange(*items_, std::move(*other.items_));
    return *this;
  }

  std::size_t size() const noexcept { return items_->size(); }
  const Ptr& operator[](std::size_t i) const noexcept { return (*items_)[i]; }
  const Ptr& at(std::int64_t i) const { return (*items_)[py_index(i, size())]; }
  void set(std::int64_t i, Ptr item) { (*items_)[py_index(i, size())] = checked(std::move(item)); }
  void insert(std::int64_t i, Ptr item) {
    const auto n = static_cast<std::int64_t>(size());
    i = i < 0 ? std::max<std::int64_t>(0, i + n) : std::min(i, n);
    items_->insert(items_->begin() + i, checked(std::move(item)));
  }
  Ptr pop(std::int64_t i) {
    const std::size_t pos = py_index(i, size(), "pop");
    Ptr item = std::move((*items_)[pos]);
    items_->erase(items_->begin() + static_cast<std::ptrdiff_t>(pos));
    return item;
  }
  bool remove(const T* item) {
    const std::int64_t pos = index_of(item);
    if (pos >= 0) pop(pos);
    return pos >= 0;
  }
  std::int64_t index_of(const T* item) const noexcept {
    for (std::size_t i = 0; i < size(); ++i)
      if ((*items_)[i].get() == item) return static_cast<std::int64_t>(i);
    return -1;
  }
  void push_back(Ptr item) { items_->push_back(checked(std::move(item))); }
  void clear() noexcept { std::vector<Ptr> old = std::exchange(*items_, {}); }

 private:
  static Ptr checked(Ptr item) {
    if (!item) throw TypeError("a list of engine objects holds no None");
    return item;
  }

  std::vector<Ptr> own_;
  std::vector<Ptr>* items_ = &own_;
};

}  // namespace vorn::py_bind
