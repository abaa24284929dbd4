#pragma once
// Loading a GLB file into a mesh node: one submesh per primitive with its vertex
// records, triangles and material image, then the buffers and the effect; for a skinned
// file a skin animation object per skinned submesh, the bind skeleton and the actions.
#include <string>

namespace vorn {

class Vorn_3DMesh;

// A path that can't be found does nothing; an invalid header prints its line and leaves
// the node empty. The file is read and checked completely before the node changes, so
// a bad file raises (see glb_reader.h) and leaves the node as it was. BuildVBO and
// ApplyFX run at the end (a GL context and the FX manager are needed for ApplyFX).
void LoadGLBIntoMesh(Vorn_3DMesh& mesh, const std::string& glbFile, bool swapyz);

}  // namespace vorn
