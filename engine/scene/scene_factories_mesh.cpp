// The factory of meshes loaded from files.
#include <algorithm>
#include <cctype>

#include "core/errors.h"
#include "mesh/mesh.h"
#include "scene/scene.h"

namespace vorn {

NodeScene::NodePtr Vorn_3Dcene::CreateMeshFromFile(double x, double y, double z, const NodePtr& parent,
                                                   const std::string& meshFile, bool swapyz) {
  // The kind is found anywhere in the lower-case name but at its very start.
  std::string lower = meshFile;
  std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
  const auto found = [&](const char* ending) {
    const auto at = lower.find(ending);
    return at != std::string::npos && at > 0;
  };
  if (found(".fbx")) {
    // Refused before a mesh is made: the script's scene stays as it was.
    throw RuntimeError("Vorn_3Dcene.CreateMeshFromFile: " + meshFile + ": this build reads OBJ and GLB models only");
  }
  auto newObj = MakeNode<Vorn_3DMesh>(x, y, z, parent);
  if (found(".glb")) {
    newObj->LoadMeshFromFile_GLB(meshFile, swapyz);
  } else if (found(".obj")) {
    newObj->LoadMeshFromFile_OBJ(meshFile, swapyz);
  }
  // A name with none of the endings gives an empty mesh, without a message.
  newObj->OnLoad(shared_from_this());
  if (!parent) ObjectArray_3D.push_back(newObj);
  return newObj;
}

}  // namespace vorn
