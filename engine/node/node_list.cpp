#include "node/node_list.h"

#include <algorithm>

#include "core/errors.h"
#include "core/pyseq.h"
#include "node/game_node.h"

namespace vorn {
namespace {

// Releases ownership of nodes already taken out of a list. The references are held
// until every release has run, so a release that lets a script object go (and with
// it the script's last reference) never destroys a node mid-call.
void release_all(std::vector<NodeList::Ptr>& removed) noexcept {
  for (auto& node : removed)
    if (node) node->release_owner();
  removed.clear();
}

}  // namespace

NodeList& NodeList::operator=(NodeList&& other) noexcept {
  if (this == &other) return *this;
  std::vector<Ptr> old = std::exchange(items_, std::move(other.items_));
  release_all(old);
  return *this;
}

const NodeList::Ptr& NodeList::at(std::int64_t i) const { return items_[py_index(i, items_.size())]; }

namespace {
void check_node(const NodeList::Ptr& node) {
  if (!node) throw TypeError("a node list holds nodes, not None");
}
}  // namespace

void NodeList::push_back(Ptr node) {
  check_node(node);
  node->retain_owner();
  items_.push_back(std::move(node));
}

void NodeList::insert(std::int64_t i, Ptr node) {
  const auto n = static_cast<std::int64_t>(items_.size());
  if (i < 0) i = std::max<std::int64_t>(0, i + n);
  i = std::min(i, n);
  check_node(node);
  node->retain_owner();
  items_.insert(items_.begin() + i, std::move(node));
}

void NodeList::set(std::int64_t i, Ptr node) {
  const std::size_t pos = py_index(i, items_.size());
  check_node(node);
  node->retain_owner();
  std::vector<Ptr> old{std::exchange(items_[pos], std::move(node))};
  release_all(old);
}

NodeList::Ptr NodeList::pop(std::int64_t i) {
  const std::size_t pos = py_index(i, items_.size(), "pop");
  Ptr node = std::move(items_[pos]);
  items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(pos));
  // The caller's reference keeps the node alive across the release.
  if (node) node->release_owner();
  return node;
}

bool NodeList::remove(const Vorn_3DGameNode* node) {
  const std::int64_t pos = index_of(node);
  if (pos < 0) return false;
  pop(pos);
  return true;
}

std::int64_t NodeList::index_of(const Vorn_3DGameNode* node) const noexcept {
  for (std::size_t i = 0; i < items_.size(); ++i)
    if (items_[i].get() == node) return static_cast<std::int64_t>(i);
  return -1;
}

void NodeList::clear() noexcept {
  std::vector<Ptr> old = std::exchange(items_, {});
  release_all(old);
}

}  // namespace vorn
