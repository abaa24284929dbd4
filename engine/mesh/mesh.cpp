// Actions, the animation clock and the loaders' entry points of Vorn_3DMesh.
#include "mesh/mesh.h"

#include "core/console.h"
#include "core/errors.h"
#include "mesh/fbx_load.h"
#include "mesh/glb_load.h"
#include "mesh/obj_load.h"

namespace vorn {

Vorn_3DMesh::Vorn_3DMesh(double x_, double y_, double z_, const Ptr& parent_) : Vorn_3DGameNode(x_, y_, z_, parent_) {
  NodeType = "3DMesh";
}

Vorn_3DMesh::~Vorn_3DMesh() = default;

std::optional<std::string> Vorn_3DMesh::GetActionName(int actionIndex) const {
  if (actionIndex < 0 || actionIndex >= GetActionCount()) return std::nullopt;
  int counter = 0;
  for (const auto& [name, action] : ActionDict) {
    if (counter++ == actionIndex) return name;
  }
  return std::nullopt;
}

void Vorn_3DMesh::update_skin_animation(double delay) {
  if (!Playing || !CurrAnimation_CurrTime) return;
  *CurrAnimation_CurrTime += delay * CurrAnimation_Speed;
  if (CurrAnimation_EndTime && *CurrAnimation_CurrTime > *CurrAnimation_EndTime) {
    // The overshoot is dropped: a loop restarts exactly at the beginning.
    CurrAnimation_CurrTime = Looping.value_or(false) ? CurrAnimation_BeginTime.value_or(0.0) : *CurrAnimation_EndTime;
  }
}

void Vorn_3DMesh::LoadMeshFromFile_OBJ(const std::string& objFile, bool swapyz) {
  LoadOBJIntoNode(*this, objFile, swapyz);
}

void Vorn_3DMesh::LoadMeshFromFile_GLB(const std::string& glbFile, bool swapyz) {
  LoadGLBIntoMesh(*this, glbFile, swapyz);
}

void Vorn_3DMesh::LoadMeshFromFile_FBX(const std::string& fbxFile, bool swapyz) {
  LoadModelIntoMesh(*this, fbxFile, swapyz, ModelSplit::PerMeshNode);
}

void Vorn_3DMesh::LoadMeshFromFile_Model(const std::string& modelFile, bool swapyz) {
  LoadModelIntoMesh(*this, modelFile, swapyz, ModelSplit::PerMesh);
}

}  // namespace vorn
