#pragma once
// An owning, ordered sequence of engine objects (a node's children, the scene's
// registries and texts). Every slot holds a strong reference and counts as one owner
// of its object (core/script_owned.h). Changes that drop references release them only
// after the list is consistent again, and keep the objects alive until every release
// has run, so a release that ends a script object (and runs script code) never sees a
// half-changed list or destroys an object mid-call.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "core/errors.h"
#include "core/pyseq.h"
#include "core/script_owned.h"

namespace vorn {

template <class T>
class OwnedList {
 public:
  using Ptr = std::shared_ptr<T>;
  // A check every object must pass to enter the list (a node's children refuse the
  // node itself and its ancestors); it throws to refuse, before anything changes.
  using Guard = void (*)(const void* owner, const T* item);

  OwnedList() = default;
  OwnedList(const OwnedList&) = delete;
  OwnedList& operator=(const OwnedList&) = delete;
  // The guard stays with the list it was set on.
  OwnedList(OwnedList&& other) noexcept : items_(std::move(other.items_)) {}
  // Replaces the content; the old objects are released after the new ones are owned.
  OwnedList& operator=(OwnedList&& other) {
    if (this == &other) return *this;
    for (const auto& item : other.items_) guard(item);
    std::vector<Ptr> old = std::exchange(items_, std::move(other.items_));
    release_all(old);
    return *this;
  }
  ~OwnedList() { clear(); }

  std::size_t size() const noexcept { return items_.size(); }
  bool empty() const noexcept { return items_.empty(); }
  // Slot i; i must be in range.
  const Ptr& operator[](std::size_t i) const noexcept { return items_[i]; }
  // Python indexing: wraps negatives, IndexError outside [-n, n).
  const Ptr& at(std::int64_t i) const { return items_[py_index(i, items_.size())]; }
  // Plain iteration is for walks that cannot change the list; walks that run script
  // code index with a bounds check each step or take a snapshot.
  typename std::vector<Ptr>::const_iterator begin() const noexcept { return items_.begin(); }
  typename std::vector<Ptr>::const_iterator end() const noexcept { return items_.end(); }
  // A copy of the references, for walks that may change the list as they go.
  std::vector<Ptr> snapshot() const { return items_; }
  // Slot i as a new reference, or null past the end: the step of a walk whose body
  // may change the list.
  Ptr get_or_null(std::size_t i) const noexcept { return i < items_.size() ? items_[i] : nullptr; }

  void set_guard(const void* owner, Guard g) noexcept {
    guardOwner_ = owner;
    guard_ = g;
  }

  void push_back(Ptr item) {
    check(item);
    guard(item);
    item->retain_owner();
    items_.push_back(std::move(item));
  }
  // Inserts before position i, clamped to [0, n] after wrapping as Python's insert does.
  void insert(std::int64_t i, Ptr item) {
    const auto n = static_cast<std::int64_t>(items_.size());
    if (i < 0) i = std::max<std::int64_t>(0, i + n);
    i = std::min(i, n);
    check(item);
    guard(item);
    item->retain_owner();
    items_.insert(items_.begin() + i, std::move(item));
  }
  // Replaces slot i (Python indexing).
  void set(std::int64_t i, Ptr item) {
    const std::size_t pos = py_index(i, items_.size(), "list assignment");
    check(item);
    guard(item);
    item->retain_owner();
    std::vector<Ptr> old{std::exchange(items_[pos], std::move(item))};
    release_all(old);
  }
  // Removes and returns slot i (Python indexing).
  Ptr pop(std::int64_t i) {
    const std::size_t pos = py_index(i, items_.size(), "pop");
    Ptr item = std::move(items_[pos]);
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(pos));
    // The caller's reference keeps the object alive across the release.
    item->release_owner();
    return item;
  }
  // Removes the first slot holding item; false when there is none.
  bool remove(const T* item) {
    const std::int64_t pos = index_of(item);
    if (pos < 0) return false;
    pop(pos);
    return true;
  }
  // Position of the first slot holding item, or -1.
  std::int64_t index_of(const T* item) const noexcept {
    for (std::size_t i = 0; i < items_.size(); ++i)
      if (items_[i].get() == item) return static_cast<std::int64_t>(i);
    return -1;
  }
  void clear() noexcept {
    std::vector<Ptr> old = std::exchange(items_, {});
    release_all(old);
  }
  void reserve(std::size_t n) { items_.reserve(n); }

  // Visits the twin of every slot (one counted reference each).
  int visit(ScriptRefVisit visit, void* context) const {
    for (const auto& item : items_)
      if (void* twin = item->script_object())
        if (int r = visit(twin, context)) return r;
    return 0;
  }

 private:
  static void check(const Ptr& item) {
    if (!item) throw TypeError("an engine list holds objects, not None");
  }
  void guard(const Ptr& item) const {
    if (guard_ && item) guard_(guardOwner_, item.get());
  }
  // Releases ownership of objects already taken out of the list.
  static void release_all(std::vector<Ptr>& removed) noexcept {
    for (auto& item : removed)
      if (item) item->release_owner();
    removed.clear();
  }

  std::vector<Ptr> items_;
  const void* guardOwner_ = nullptr;
  Guard guard_ = nullptr;
};

}  // namespace vorn
