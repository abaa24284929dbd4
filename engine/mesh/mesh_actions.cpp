// Starting an action: the GLB channels of every bone become keyframe matrices that the
// skin objects of the submeshes evaluate.
#include <algorithm>
#include <cstdio>
#include <memory>

#include "core/console.h"
#include "core/errors.h"
#include "mesh/mesh.h"
#include "mesh/skin_ani_fbx.h"
#include "mesh/skin_ani_glb.h"

namespace vorn {
namespace {

// Element `i` of a sample's value; an IndexError like the list lookup it stands for.
double component(const ActionSample& sample, std::size_t i) {
  if (i >= sample.value.size()) throw IndexError("list index out of range");
  return sample.value[i];
}

// The time of the last sample of a channel; an empty channel fails the lookup.
double last_time(const ActionChannel& channel) {
  if (channel.samples.empty()) throw IndexError("list index out of range");
  return channel.samples.back().time;
}

}  // namespace

void Vorn_3DMesh::PlayAction(int actionIndex) {
  const std::optional<std::string> actionName1 = GetActionName(actionIndex);
  if (!actionName1) return;
  const MeshAction* BoneRSTDict = ActionDict.find(*actionName1);
  if (!BoneRSTDict) {
    console::print("PlayAction:", *actionName1);
    return;
  }
  if (PlayImportedAction(*BoneRSTDict)) return;
  // Each start builds the keyframes anew; the table handed out is never changed after.
  auto BoneRSBMatrixDict = std::make_shared<BoneKeyframeTable>();
  double Duration = 0.0;
  for (const auto& [BoneIndex, BoneRSTList] : *BoneRSTDict) {
    for (const ActionChannel& channel : BoneRSTList) Duration = std::max(Duration, last_time(channel));
    std::vector<const ActionSample*> T_Array, R_Array, S_Array;
    for (const ActionChannel& channel : BoneRSTList) {
      std::vector<const ActionSample*>* into = channel.path == "scale"         ? &S_Array
                                               : channel.path == "translation" ? &T_Array
                                               : channel.path == "rotation"    ? &R_Array
                                                                               : nullptr;
      if (into)
        for (const ActionSample& sample : channel.samples) into->push_back(&sample);
    }
    BoneKeyframes RSTMatrix_Array;
    // Keyframes only when the three channels have the same, non-zero length; otherwise
    // the bone keeps no keyframes (its bind pose), without a message.
    if (R_Array.size() == S_Array.size() && S_Array.size() == T_Array.size() && !R_Array.empty()) {
      for (std::size_t index = 0; index < R_Array.size(); ++index) {
        const ActionSample& r = *R_Array[index];
        const ActionSample& s = *S_Array[index];
        const ActionSample& t = *T_Array[index];
        const FbxVector4 R(component(r, 0), component(r, 1), component(r, 2), component(r, 3));
        const FbxVector4 S(component(s, 0), component(s, 1), component(s, 2), 1.0);
        const FbxVector4 T(component(t, 0), component(t, 1), component(t, 2), 0.0);
        // GLB rotations are quaternions (x, y, z, w): see FbxMatrix::FromTQS.
        const FbxMatrix M = FbxMatrix::FromTQS(T, R, S);
        if (r.time == s.time && s.time == t.time) {
          RSTMatrix_Array.push_back(BoneKeyframe{r.time, M});
        } else {
          console::print("R,S,T Time not equal");
        }
      }
    }
    BoneRSBMatrixDict->set(BoneIndex, std::move(RSTMatrix_Array));
  }
  char line[64];
  std::snprintf(line, sizeof line, "Duration:%.4f", Duration);
  console::print(line);
  CurrAnimation_Duration = Duration;
  CurrAnimation_BeginTime = 0.0;
  CurrAnimation_EndTime = Duration;
  CurrAnimation_CurrTime = 0.0;
  std::shared_ptr<const BoneKeyframeTable> shared = BoneRSBMatrixDict;
  for (const auto& [submesh_index, skin] : SubMesh_Dict)
    if (auto* glb = dynamic_cast<Vorn_SkinSubMeshAni_GLB*>(skin.get())) glb->SetAniBonesMatrix(shared);
  Playing = true;
  Looping = true;
}

bool Vorn_3DMesh::PlayImportedAction(const MeshAction& action) {
  std::vector<Vorn_SkinSubMeshAni_FBX*> skins;
  for (const auto& [submesh_index, skin] : SubMesh_Dict)
    if (auto* fbx = dynamic_cast<Vorn_SkinSubMeshAni_FBX*>(skin.get())) skins.push_back(fbx);
  if (skins.empty()) return false;
  // The skins interpolate the channels themselves; they share one copy of the action.
  auto shared = std::make_shared<const MeshAction>(action);
  double Duration = 0.0;
  for (const auto& [bone, channels] : action)
    for (const ActionChannel& channel : channels)
      if (!channel.samples.empty()) Duration = std::max(Duration, channel.samples.back().time);
  char line[64];
  std::snprintf(line, sizeof line, "Duration:%.4f", Duration);
  console::print(line);
  CurrAnimation_Duration = Duration;
  CurrAnimation_BeginTime = 0.0;
  CurrAnimation_EndTime = Duration;
  CurrAnimation_CurrTime = 0.0;
  for (Vorn_SkinSubMeshAni_FBX* skin : skins) skin->SetCurrentAction(shared);
  Playing = true;
  Looping = true;
  return true;
}

}  // namespace vorn
