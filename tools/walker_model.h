#pragma once
// The demonstration's character: a small skinned figure of boxes (nine bones, one
// texture atlas) with two looping actions, "Walk" and "Idle", written as a GLB file.
#include <string>
#include <vector>

namespace vorn::tools {

// The bones in node order (node 0 is the mesh); tests and the demo refer to them by name.
inline const std::vector<std::string>& WalkerBoneNames() {
  static const std::vector<std::string> names = {"Hips",    "Spine",    "Head",    "LeftArm",  "RightArm",
                                                 "LeftLeg", "LeftShin", "RightLeg", "RightShin"};
  return names;
}

// Writes the model to `path`; false when the file can't be written.
bool WriteWalkerGLB(const std::string& path);

}  // namespace vorn::tools
