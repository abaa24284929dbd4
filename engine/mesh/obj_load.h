#pragma once
// Loading an OBJ file (and the MTL beside it) into a node: one submesh per material
// group, each with its vertices, triangles and map_Kd texture; then the buffers and
// FX_DIFFUSE_TEXTURE (files with normals) or FX_TEXTURE.
#include <optional>
#include <string>

namespace vorn {

class Vorn_3DGameNode;

// The file to open for a model name: the name itself when it exists, else what the
// resource index knows by it (the first of several, after the line
// "<name>  has  <count>  same obj."). Nothing when neither exists.
std::optional<std::string> ResolveModelPath(const std::string& modelFile);

// Reads objFile into the node. A path that can't be found does nothing. The file is
// read and checked completely before the node changes, so a bad file raises (see
// obj_reader.h and obj_submesh_plan.h) and leaves the node as it was. BuildVBO and
// ApplyFX run at the end (a GL context and the FX manager are needed for ApplyFX).
void LoadOBJIntoNode(Vorn_3DGameNode& node, const std::string& objFile, bool swapyz);

}  // namespace vorn
