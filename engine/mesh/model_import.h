#pragma once
// Reading a model file through the Open Asset Import Library into a load plan: the
// submeshes with their vertex records, triangles and textures, the bones of each skin,
// the node tree and the actions. GL-free; fbx_load.cpp applies a plan to a mesh node.
//
// How the FBX notions map onto the library's scene:
//   - control point: a vertex of the library's mesh after identical vertices are joined;
//     normals, UVs and colours are read per such vertex (the library resolves the
//     layer elements' mapping and reference modes, by control point or by polygon
//     vertex, into per-vertex arrays);
//   - layer: one of the library's meshes on the node (the library splits a node's
//     polygons by material, so each has one material, "all same");
//   - "no material applied": the mesh uses the library's default material;
//   - cluster: a bone of the mesh; its offset matrix is the mesh-to-bone bind matrix;
//   - animation stack: an animation; its key times are converted to seconds.
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/ordered_map.h"
#include "mesh/glb_reader.h"
#include "mesh/mesh_action.h"
#include "mesh/skin_ani_fbx.h"
#include "node/node_types.h"

namespace vorn {

// FBX: one submesh per mesh node ("submesh_<node index>"), faces of more than three
// corners are not drawn. Any: one submesh per mesh of the file, polygons triangulated.
enum class ModelSplit { PerMeshNode, PerMesh };

struct ModelSubmeshPlan {
  std::string submeshName;
  bool withNormal = false;
  bool withTexUV = false;
  bool withSkin = false;
  FloatArray vertices;  // uv, [bone indices, weights], normal, position[, 1]: CreateSubMesh's layouts
  IndexArray indices;
  std::vector<std::string> textureFiles;  // in the material walk's order
  std::vector<GlbImage> images;           // textures embedded in the file
  std::vector<FbxCluster> clusters;       // bone order of the vertices' bone indices
};

// The first animation, in seconds (frameCount in frames of the file's frame rate,
// secondCount in whole seconds).
struct ModelFirstAnimation {
  double beginTime = 0, endTime = 0, duration = 0, frameDelay = 0;
  std::int64_t frameCount = 0, secondCount = 0;
};

struct ModelPlan {
  std::vector<ModelSubmeshPlan> submeshes;
  bool withNormal = false, withTexUV = false, withSkin = false;
  std::shared_ptr<const FbxSceneTree> tree;
  OrderedMap<std::string, MeshAction> actions;
  std::optional<ModelFirstAnimation> first;
};

// Reads and maps the file. The library runs in a helper process (import_helper.h) that
// sends the plan and its console lines back, so a file the library dies on ends only the
// helper. Prints "<path> Load Failed." for a file the library can't read or dies on and
// "No find Root" for a scene without a root, giving nothing; the other lines of the
// material and skin walk as it goes. RuntimeError for more than 64 bones on a submesh.
std::optional<ModelPlan> ImportModelFile(const std::string& path, ModelSplit split, bool swapyz);
// The same from bytes in memory; `hint` is the file ending ("fbx").
std::optional<ModelPlan> ImportModelMemory(std::span<const std::uint8_t> bytes, const std::string& hint,
                                           const std::string& path, ModelSplit split, bool swapyz);

// The helper's side of an import: decodes the request (model_plan_wire.h), reads and
// maps, and encodes the outcome with the console lines it printed and the exception it
// ended with. Runs in the helper process; the fuzz target calls it there too.
std::string ServeModelImport(std::string_view request);

}  // namespace vorn
