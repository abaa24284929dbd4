#include "mesh/skin_ani_glb.h"

#include <algorithm>
#include <limits>
#include <string>

#include "core/console.h"
#include "core/errors.h"

namespace vorn {
namespace {

constexpr const char* kWhere = "Vorn_SkinSubMeshAni_GLB.GetFinalBoneMatrixByTime: ";
constexpr std::uint8_t kUnknown = 0, kWalking = 1, kKnown = 2;

std::string key_text(std::int64_t key) { return std::to_string(key); }

}  // namespace

// Evaluation walks every bone's parent chains once per evaluation: the products of the
// bind matrices and of the keyframe matrices above a node are kept in memo_ and shared
// by all bones below it. The products are regrouped against a bone-by-bone walk
// (associativity), so results agree with it up to rounding; which matrices take part,
// and the errors a broken table gives, are exactly those of the bone-by-bone walk.
const std::vector<double>& Vorn_SkinSubMeshAni_GLB::GetFinalBoneMatrixByTime(SkinTime time) {
  const double currTime = time.seconds;
  if (!AniBoneTree) throw RuntimeError(std::string(kWhere) + "no keyframe table, no action started");
  const BoneKeyframeTable& ani = *AniBoneTree;
  if (ani.empty()) return FinalShaderMatrixArray;

  FinalShaderMatrixArray.clear();
  FinalBoneXYZArray.clear();
  console::print("CurrFrame:", time.text());
  BoneCount = static_cast<std::int64_t>(ani.size());
  if (!InitBoneTree) throw RuntimeError(std::string(kWhere) + "no bone tree, SetInitBoneTree was not called");
  if (!InverseBindMatrices) {
    throw RuntimeError(std::string(kWhere) + "no inverse bind matrices, SetInverseBindMatrices was not called");
  }
  const BoneTreeTable& tree = *InitBoneTree;
  const InverseBindTable& inverseBind = *InverseBindMatrices;
  RefreshSortedFlags();
  memo_.clear();

  std::size_t position = 0;
  for (const auto& [bone, keys] : ani) {
    const BoneTreeEntry* entry = tree.find(bone);
    if (!entry) throw KeyError(kWhere + ("bone " + key_text(bone) + " is not in InitBoneTree"));
    const FbxMatrix* inverse = inverseBind.find(bone);
    if (!inverse) throw KeyError(kWhere + ("bone " + key_text(bone) + " is not in InverseBindMatrices"));

    // Bind pose: the parents' local matrices on the left, up to node 0 or a node
    // missing from the tree, both of which end the chain without taking part.
    FbxMatrix init = entry->local;
    if (const FbxMatrix* above = BindWorld(entry->parent, bone)) init = *above * init;

    // Animated pose: the last keyframe reached, with the keyframes of the same index
    // of every animated parent on the left. Node 0 takes part here.
    FbxMatrix frame;
    if (const auto reached = ReachedKeys(keys, sorted_[position] != 0, currTime)) {
      const std::size_t key = reached->last;
      frame = keys[key].matrix;
      if (entry->parent && ani.contains(*entry->parent)) {
        const NodeMemo& chain = AnimChain(*entry->parent);
        // Every reached keyframe walks the chain, so a parent shorter than any of them
        // fails even though only the last one's product is used.
        if (chain.animBroken || chain.animMinKeys <= key) ThrowAnimChainError(bone, *entry, keys, currTime);
        frame = AnimWorld(*entry->parent, key) * frame;
      }
    }

    // Skeleton line in the bind pose, parent point first; node 0 as parent draws none.
    if (entry->parent && *entry->parent != 0) {
      const BoneTreeEntry* parentEntry = tree.find(*entry->parent);
      if (!parentEntry) {
        throw KeyError(kWhere + ("parent " + key_text(*entry->parent) + " of bone " + key_text(bone) +
                                 " is not in InitBoneTree"));
      }
      const FbxMatrix a = parentEntry->local * *inverse;
      const FbxMatrix b = init * *inverse;
      FinalBoneXYZArray.push_back({a.m[3][0], a.m[3][1], a.m[3][2], b.m[3][0], b.m[3][1], b.m[3][2]});
    }

    AppendShaderMatrix(frame * *inverse * init * *inverse);
    ++position;
  }
  return FinalShaderMatrixArray;
}

void Vorn_SkinSubMeshAni_GLB::RefreshSortedFlags() {
  // sortedFor_ keeps the table alive, so an equal pointer is the same table.
  if (sortedFor_ == AniBoneTree) return;
  sorted_.clear();
  for (const auto& [bone, keys] : *AniBoneTree) {
    // A NaN time fails every comparison and sends the bone to the linear search.
    bool ascending = true;
    for (std::size_t i = 1; i < keys.size() && ascending; ++i) ascending = keys[i - 1].time <= keys[i].time;
    sorted_.push_back(ascending ? 1 : 0);
  }
  sortedFor_ = AniBoneTree;
}

std::optional<Vorn_SkinSubMeshAni_GLB::Reached> Vorn_SkinSubMeshAni_GLB::ReachedKeys(const BoneKeyframes& keys,
                                                                                      bool sorted,
                                                                                      double currTime) const {
  if (sorted) {
    // Ascending times: the reached keyframes are a prefix.
    const auto end = std::partition_point(keys.begin(), keys.end(),
                                          [currTime](const BoneKeyframe& k) { return k.time <= currTime; });
    const auto count = static_cast<std::size_t>(end - keys.begin());
    if (count == 0) return std::nullopt;
    return Reached{0, count - 1};
  }
  std::optional<Reached> out;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    if (!(keys[i].time <= currTime)) continue;
    if (!out) out = Reached{i, i};
    out->last = i;
  }
  return out;
}

const FbxMatrix* Vorn_SkinSubMeshAni_GLB::BindWorld(std::optional<std::int64_t> node, std::int64_t bone) {
  const BoneTreeTable& tree = *InitBoneTree;
  // Climb to the end of the chain or to a node whose product is known.
  std::vector<std::int64_t> path;
  const NodeMemo* base = nullptr;
  for (std::optional<std::int64_t> cur = node; cur && *cur != 0;) {
    const BoneTreeEntry* entry = tree.find(*cur);
    if (!entry) break;
    NodeMemo& m = memo_[*cur];
    if (m.bindState == kKnown) {
      base = &m;
      break;
    }
    if (m.bindState == kWalking) {
      throw RecursionError(kWhere + ("the bind parent chain of bone " + key_text(bone) + " loops"));
    }
    m.bindState = kWalking;
    path.push_back(*cur);
    cur = entry->parent;
  }
  // Then fold back down: world(n) = world(parent) * local(n).
  for (auto it = path.rbegin(); it != path.rend(); ++it) {
    NodeMemo& m = memo_[*it];
    const FbxMatrix& local = tree.find(*it)->local;
    m.bindIsIdentity = false;
    m.bindWorld = (base && !base->bindIsIdentity) ? base->bindWorld * local : local;
    m.bindState = kKnown;
    base = &m;
  }
  return (base && !base->bindIsIdentity) ? &base->bindWorld : nullptr;
}

Vorn_SkinSubMeshAni_GLB::NodeMemo& Vorn_SkinSubMeshAni_GLB::AnimChain(std::int64_t node) {
  const BoneKeyframeTable& ani = *AniBoneTree;
  const BoneTreeTable& tree = *InitBoneTree;
  std::vector<std::int64_t> path;
  const NodeMemo* base = nullptr;
  bool broken = false;
  // Climb while the nodes are animated, noting a missing tree entry or a loop.
  for (std::int64_t cur = node;;) {
    NodeMemo& m = memo_[cur];
    if (m.animState == kKnown) {
      base = &m;
      break;
    }
    if (m.animState == kWalking) {
      broken = true;
      break;
    }
    m.animState = kWalking;
    path.push_back(cur);
    const BoneTreeEntry* entry = tree.find(cur);
    if (!entry) {
      broken = true;
      break;
    }
    if (!entry->parent || !ani.contains(*entry->parent)) break;
    cur = *entry->parent;
  }
  // Fold back down: each node's fewest keyframes over itself and the chain above it.
  std::size_t minKeys = base ? base->animMinKeys : std::numeric_limits<std::size_t>::max();
  if (base) broken = base->animBroken;
  for (auto it = path.rbegin(); it != path.rend(); ++it) {
    NodeMemo& m = memo_[*it];
    minKeys = std::min(minKeys, ani.find(*it)->size());
    m.animMinKeys = minKeys;
    m.animBroken = broken;
    m.animState = kKnown;
  }
  return memo_[node];
}

const FbxMatrix& Vorn_SkinSubMeshAni_GLB::AnimWorld(std::int64_t node, std::size_t key) {
  const BoneKeyframeTable& ani = *AniBoneTree;
  const BoneTreeTable& tree = *InitBoneTree;
  // The chain is known to be valid with at least key + 1 keyframes on every node.
  std::vector<std::int64_t> path;
  const FbxMatrix* base = nullptr;
  for (std::int64_t cur = node;;) {
    NodeMemo& m = memo_[cur];
    if (m.animWorldKey == key) {
      base = &m.animWorld;
      break;
    }
    path.push_back(cur);
    const auto& parent = tree.find(cur)->parent;
    if (!parent || !ani.contains(*parent)) break;
    cur = *parent;
  }
  for (auto it = path.rbegin(); it != path.rend(); ++it) {
    NodeMemo& m = memo_[*it];
    const FbxMatrix& keyMatrix = (*ani.find(*it))[key].matrix;
    m.animWorld = base ? *base * keyMatrix : keyMatrix;
    m.animWorldKey = key;
    base = &m.animWorld;
  }
  return *base;
}

void Vorn_SkinSubMeshAni_GLB::ThrowAnimChainError(std::int64_t bone, const BoneTreeEntry& entry,
                                                  const BoneKeyframes& keys, double currTime) const {
  const BoneKeyframeTable& ani = *AniBoneTree;
  const BoneTreeTable& tree = *InitBoneTree;
  // The walk of every reached keyframe, in order, as the bone-by-bone evaluation does it.
  for (std::size_t j = 0; j < keys.size(); ++j) {
    if (!(keys[j].time <= currTime)) continue;
    std::size_t steps = 0;
    for (auto p = entry.parent; p && ani.contains(*p);) {
      if (++steps > ani.size()) {
        throw RecursionError(kWhere + ("the animated parent chain of bone " + key_text(bone) + " loops"));
      }
      const BoneKeyframes& parentKeys = *ani.find(*p);
      if (j >= parentKeys.size()) {
        throw IndexError(kWhere + ("keyframe " + std::to_string(j) + " of bone " + key_text(bone) +
                                   " has no match in its animated parent " + key_text(*p) + ", which has " +
                                   std::to_string(parentKeys.size()) + " keyframes"));
      }
      const BoneTreeEntry* parentEntry = tree.find(*p);
      if (!parentEntry) {
        throw KeyError(kWhere + ("bone " + key_text(*p) + ", an animated parent of bone " + key_text(bone) +
                                 ", is not in InitBoneTree"));
      }
      p = parentEntry->parent;
    }
  }
  throw RuntimeError(kWhere + ("the keyframe walk of bone " + key_text(bone) + " was expected to fail"));
}

}  // namespace vorn
