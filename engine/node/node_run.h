#pragma once
// Runs of node draws that share what the draw cache knows (core/gl_draw_cache.h).
#include <typeinfo>

#include "core/gl_state_guard.h"
#include "node/game_node.h"

namespace vorn {

// Calls fn on each node of a list by index, reading the length at each step (a node a
// script appends meanwhile takes part in the same walk), each held while it runs. The
// nodes lie apart in memory and a walk over thousands of them waits mostly on loads:
// what the nodes a few places ahead will read starts loading meanwhile. For draws that
// goes in three steps, each reading what the one before loaded (the node's fields,
// its first submesh's entries, the buffer objects).
enum class WalkFor { kUpdate, kDraw };

template <WalkFor purpose, class Fn>
void ForEachNode(const NodeList& list, Fn&& fn) {
  const auto ahead = [&list](std::size_t j) { return j < list.size() ? list[j].get() : nullptr; };
  for (std::size_t i = 0; i < list.size(); ++i) {
    if constexpr (purpose == WalkFor::kDraw) {
      if (const Vorn_3DGameNode* n = ahead(i + 3)) n->PrefetchDrawFields();
      if (const Vorn_3DGameNode* n = ahead(i + 2)) n->PrefetchDrawEntries();
      if (const Vorn_3DGameNode* n = ahead(i + 1)) n->PrefetchDrawBuffers();
    } else {
      if (const Vorn_3DGameNode* n = ahead(i + 4)) n->PrefetchUpdateFields();
    }
    const Vorn_3DGameNode::Ptr node = list[i];
    if (node) fn(*node);
  }
}

// Hands GL to code outside the cached path (a subclass's or a script's draw, a pick
// callback, the debug lines): the contract state first, and afterwards nothing of what
// was known is trusted.
class DrawCacheHandOff {
 public:
  DrawCacheHandOff() : wasActive_(gl_state::drawCache.active) {
    if (!wasActive_) return;
    gl_state::Settle();
    gl_state::drawCache.active = false;
  }
  ~DrawCacheHandOff() {
    if (!wasActive_) return;
    gl_state::InvalidateDrawCache();
    gl_state::drawCache.active = true;
  }
  DrawCacheHandOff(const DrawCacheHandOff&) = delete;
  DrawCacheHandOff& operator=(const DrawCacheHandOff&) = delete;

 private:
  bool wasActive_;
};

// Nodes drawn one after another. The outermost run starts from nothing known and
// settles at its end; a run inside an engine node's draw (its children) goes on with
// what that draw knows.
class NodeDrawRun {
 public:
  NodeDrawRun() : outer_(gl_state::drawCache.active) {
    if (outer_ || !gl_state::drawCache.enabled) return;
    gl_state::InvalidateDrawCache();
    gl_state::drawCache.active = true;
  }
  ~NodeDrawRun() {
    if (outer_ || !gl_state::drawCache.active) return;
    gl_state::Settle();
    gl_state::drawCache.active = false;
  }
  NodeDrawRun(const NodeDrawRun&) = delete;
  NodeDrawRun& operator=(const NodeDrawRun&) = delete;

  // Only the engine's own node draw keeps the cache; any other class (a script's
  // subclass included) may override a step, and a node with a render target passes
  // through frame buffers and the post rectangle.
  static bool CachedDraw(const Vorn_3DGameNode& node) {
    return typeid(node) == typeid(Vorn_3DGameNode) && !node.TargetFrameBuffer;
  }

  void draw(Vorn_3DGameNode& node, double rx, double ry, double rz) const {
    if (!gl_state::drawCache.active || CachedDraw(node)) {
      node.draw(rx, ry, rz);
      return;
    }
    const DrawCacheHandOff handOff;
    node.draw(rx, ry, rz);
  }

 private:
  bool outer_;
};

}  // namespace vorn
