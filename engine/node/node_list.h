#pragma once
// An owning, ordered sequence of nodes (a node's children, a scene's registries).
// Every slot holds a strong reference and counts as one owner of its node: a node
// that a script subclassed keeps its script object alive while some list owns it
// (Vorn_3DGameNode::retain_owner / release_owner).
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace vorn {

class Vorn_3DGameNode;

class NodeList {
 public:
  using Ptr = std::shared_ptr<Vorn_3DGameNode>;

  NodeList() = default;
  NodeList(const NodeList&) = delete;
  NodeList& operator=(const NodeList&) = delete;
  NodeList(NodeList&& other) noexcept : items_(std::move(other.items_)) {}
  // Replaces the content; the old nodes are released after the new ones are owned.
  NodeList& operator=(NodeList&& other) noexcept;
  ~NodeList() { clear(); }

  std::size_t size() const noexcept { return items_.size(); }
  bool empty() const noexcept { return items_.empty(); }
  // Slot i; i must be in range.
  const Ptr& operator[](std::size_t i) const noexcept { return items_[i]; }
  // Python indexing: wraps negatives, IndexError outside [-n, n).
  const Ptr& at(std::int64_t i) const;
  std::vector<Ptr>::const_iterator begin() const noexcept { return items_.begin(); }
  std::vector<Ptr>::const_iterator end() const noexcept { return items_.end(); }
  // A copy of the references, for walks that may change the list as they go.
  std::vector<Ptr> snapshot() const { return items_; }

  void push_back(Ptr node);
  // Inserts before position i, clamped to [0, n] after wrapping as Python's insert does.
  void insert(std::int64_t i, Ptr node);
  // Replaces slot i (Python indexing).
  void set(std::int64_t i, Ptr node);
  // Removes and returns slot i (Python indexing).
  Ptr pop(std::int64_t i);
  // Removes the first slot holding node; false when there is none.
  bool remove(const Vorn_3DGameNode* node);
  // Position of the first slot holding node, or -1.
  std::int64_t index_of(const Vorn_3DGameNode* node) const noexcept;
  void clear() noexcept;
  void reserve(std::size_t n) { items_.reserve(n); }

 private:
  std::vector<Ptr> items_;
};

}  // namespace vorn
