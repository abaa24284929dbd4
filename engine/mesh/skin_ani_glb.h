#pragma once
// Skin animation of a submesh loaded from a GLB file: bone matrices from keyframe
// tables, without interpolation (the last keyframe reached applies).
//
// The tables are filled by the GLB reader and the mesh node's PlayAction, handed over
// as shared pointers and never copied or changed here. A table must not be changed
// after it was handed over: build a new one and hand that (PlayAction does so at every
// start of an action).
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "core/fbx_matrix.h"
#include "core/ordered_map.h"
#include "mesh/skin_ani_data.h"

namespace vorn {

// One node of the bind skeleton, keyed by its node index in the file.
struct BoneTreeEntry {
  // The parent's node index; none for a node no other node lists as a child.
  std::optional<std::int64_t> parent;
  // The node's local bind matrix (FbxMatrix::FromTQS of its translation, rotation,
  // scale). An entry made for a child before its own node was read holds the identity.
  FbxMatrix local;
};
using BoneTreeTable = OrderedMap<std::int64_t, BoneTreeEntry>;

// Joint node index -> inverse bind matrix.
using InverseBindTable = OrderedMap<std::int64_t, FbxMatrix>;

// One keyframe of one bone: time in seconds and the bone's local matrix then.
struct BoneKeyframe {
  double time = 0.0;
  FbxMatrix matrix;
};
// Keyframes in ascending time order.
using BoneKeyframes = std::vector<BoneKeyframe>;
// Bone key -> keyframes; the iteration order is the order of the shader matrices.
using BoneKeyframeTable = OrderedMap<std::int64_t, BoneKeyframes>;

class Vorn_SkinSubMeshAni_GLB : public Vorn_SkinSubMeshAniData {
 public:
  Vorn_SkinSubMeshAni_GLB() = default;

  // No value until the setters run.
  std::shared_ptr<const BoneTreeTable> InitBoneTree;
  std::shared_ptr<const InverseBindTable> InverseBindMatrices;
  std::shared_ptr<const BoneKeyframeTable> AniBoneTree;
  // Entries of AniBoneTree at the last evaluation; none before the first.
  std::optional<std::int64_t> BoneCount;

  void SetInitBoneTree(std::shared_ptr<const BoneTreeTable> initBoneTree) { InitBoneTree = std::move(initBoneTree); }
  void SetInverseBindMatrices(std::shared_ptr<const InverseBindTable> inverseBindMatrices) {
    InverseBindMatrices = std::move(inverseBindMatrices);
  }
  void SetAniBonesMatrix(std::shared_ptr<const BoneKeyframeTable> aniBoneTree) { AniBoneTree = std::move(aniBoneTree); }

  // Per bone of AniBoneTree, in its order: the keyframe reached at currTime and its
  // animated parents (sampled at the same keyframe index), times the inverse bind
  // matrix, the bind chain and the inverse bind matrix again. Rewrites
  // FinalShaderMatrixArray and FinalBoneXYZArray and prints "CurrFrame: <time>".
  // RuntimeError before SetAniBonesMatrix; KeyError, IndexError or RecursionError for
  // a broken table (bone missing from a table, parent with fewer keyframes than a child
  // reaches, parent chain that loops), with the arrays as far as they were filled.
  const std::vector<double>& GetFinalBoneMatrixByTime(SkinTime currTime) override;

  const std::vector<BoneSegment>& GetBoneXYZList() const { return FinalBoneXYZArray; }

 private:
  // Scratch of one evaluation, per node index.
  struct NodeMemo {
    // Animation chain starting at this node: unknown, being walked, known.
    std::uint8_t animState = 0;
    bool animBroken = false;        // the walk from here fails (missing entry or loop)
    std::size_t animMinKeys = 0;    // fewest keyframes of any node on the chain
    std::optional<std::size_t> animWorldKey;  // keyframe index animWorld is for
    FbxMatrix animWorld;            // product of the chain's keyframe matrices
    std::uint8_t bindState = 0;     // bind chain above and including this node
    bool bindIsIdentity = true;
    FbxMatrix bindWorld;
  };

  void RefreshSortedFlags();
  // Keyframe range reached at currTime: [first, last] indices, none if no key is reached.
  struct Reached {
    std::size_t first, last;
  };
  std::optional<Reached> ReachedKeys(const BoneKeyframes& keys, bool sorted, double currTime) const;
  // Product of the local bind matrices from the top of the chain down to node;
  // nullptr when the chain is empty (the identity).
  const FbxMatrix* BindWorld(std::optional<std::int64_t> node, std::int64_t bone);
  // Fills the structure of the animation chain from node upward.
  NodeMemo& AnimChain(std::int64_t node);
  // The product of the chain's keyframe matrices at index key; the chain is valid there.
  const FbxMatrix& AnimWorld(std::int64_t node, std::size_t key);
  // Replays the keyframe walk of bone as described and throws its first error.
  [[noreturn]] void ThrowAnimChainError(std::int64_t bone, const BoneTreeEntry& entry, const BoneKeyframes& keys,
                                        double currTime) const;

  // Whether each bone's keyframe times ascend, in AniBoneTree order, for sortedFor_.
  std::shared_ptr<const BoneKeyframeTable> sortedFor_;
  std::vector<char> sorted_;
  std::unordered_map<std::int64_t, NodeMemo> memo_;
};

}  // namespace vorn
