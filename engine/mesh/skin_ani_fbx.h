#pragma once
// Skin animation of a submesh loaded through the model importer (FBX and the other
// formats): every bone's global transform is evaluated from the node tree and the
// playing action at the asked time, with linear interpolation of translation and scale
// and spherical interpolation of rotation between keys, as an FBX scene evaluates.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/fbx_matrix.h"
#include "mesh/mesh_action.h"
#include "mesh/skin_ani_data.h"

namespace vorn {

// The file's node tree in depth-first order: index 0 is the root, a parent always
// comes before its children.
struct FbxSceneNode {
  std::string name;
  std::int64_t parent = -1;
  FbxVector4 T{0, 0, 0, 0}, Q{0, 0, 0, 1}, S{1, 1, 1, 1};  // rest pose (quaternion x, y, z, w)
  FbxMatrix local;                                         // FbxMatrix::FromTQS(T, Q, S)
};
struct FbxSceneTree {
  std::vector<FbxSceneNode> nodes;
  double frameRate = 30.0;  // frames per second, for the "CurrFrame:" line
};

// One bone of a skin: the node that moves it and its mesh-to-bone bind matrix.
struct FbxCluster {
  std::string name;
  std::int64_t node = 0;
  FbxMatrix meshToBone;
};

class Vorn_SkinSubMeshAni_FBX : public Vorn_SkinSubMeshAniData {
 public:
  Vorn_SkinSubMeshAni_FBX() = default;

  // Takes the bones of the submesh once, at load, in the order of the vertices' bone
  // indices; clears the matrix arrays (evaluation at time zero then gives nothing).
  void LoadSkinMeshData(std::shared_ptr<const FbxSceneTree> tree, std::vector<FbxCluster> clusters);
  // The action whose channels drive the nodes (none: the rest pose).
  void SetCurrentAction(std::shared_ptr<const MeshAction> action) { action_ = std::move(action); }

  // currTime in seconds. At time zero the last array is returned unchanged; otherwise
  // per bone: its global transform times its bind matrix, and a skeleton segment from
  // the bone to its parent. Prints "CurrFrame: <frame>".
  const std::vector<double>& GetFinalBoneMatrixByTime(SkinTime currTime) override;
  const std::vector<BoneSegment>& GetBoneXYZList() const { return FinalBoneXYZArray; }

  const std::vector<FbxCluster>& Clusters() const { return clusters_; }

 private:
  std::shared_ptr<const FbxSceneTree> tree_;
  std::shared_ptr<const MeshAction> action_;
  std::vector<FbxCluster> clusters_;
  std::vector<FbxMatrix> global_;  // scratch: every node's global transform
};

// The local transform of a node at `seconds` under `action` (its rest pose where the
// action has no channel for it).
FbxMatrix EvaluateLocalTransform(const FbxSceneNode& node, const std::vector<ActionChannel>* channels, double seconds);

}  // namespace vorn
