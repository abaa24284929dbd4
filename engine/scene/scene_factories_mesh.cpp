// The factory of meshes loaded from files.
#include <algorithm>
#include <cctype>

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
  auto newObj = MakeNode<Vorn_3DMesh>(x, y, z, parent);
  if (found(".fbx")) {
    newObj->LoadMeshFromFile_FBX(meshFile, swapyz);
  } else if (found(".glb")) {
    newObj->LoadMeshFromFile_GLB(meshFile, swapyz);
  } else if (found(".obj")) {
    newObj->LoadMeshFromFile_OBJ(meshFile, swapyz);
  }
  // A name with none of the endings gives an empty mesh, without a message.
  newObj->OnLoad(shared_from_this());
  if (!parent) ObjectArray_3D.push_back(newObj);
  return newObj;
}

NodeScene::NodePtr Vorn_3Dcene::CreateMeshFromModelFile(double x, double y, double z, const NodePtr& parent,
                                                        const std::string& modelFile, bool swapyz) {
  auto newObj = MakeNode<Vorn_3DMesh>(x, y, z, parent);
  newObj->LoadMeshFromFile_Model(modelFile, swapyz);
  newObj->OnLoad(shared_from_this());
  if (!parent) ObjectArray_3D.push_back(newObj);
  return newObj;
}

}  // namespace vorn
