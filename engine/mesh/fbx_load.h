#pragma once
// Loading a model through the importer (model_import.h) into a mesh node: the
// submeshes with their textures, a skin object per skinned submesh, the actions and the
// first animation's times, then the buffers and the effect.
#include <string>

#include "mesh/model_import.h"

namespace vorn {

class Vorn_3DMesh;

// A path that can't be found does nothing; a file that doesn't load prints its line and
// leaves the node empty. The plan is complete before the node changes, so an error
// leaves the node as it was. BuildVBO and ApplyFX need a GL context.
void LoadModelIntoMesh(Vorn_3DMesh& mesh, const std::string& modelFile, bool swapyz, ModelSplit split);

}  // namespace vorn
