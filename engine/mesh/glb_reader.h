#pragma once
// Reading a GLB file into a load plan: the submeshes with their vertex records,
// triangles, textures and skins, the bind skeleton and the actions. The plan is built
// and checked completely before a node changes (glb_load.cpp applies it), so a bad file
// leaves the node as it was. The console lines of the load are printed while reading.
//
// The reader serves the files of one exporter: data is taken tightly packed at a
// bufferView's offset, and every primitive reads a BIN chunk header from where the last
// read ended, so only the first primitive of a file has the right positions.
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "mesh/glb_file.h"
#include "mesh/mesh_action.h"
#include "mesh/skin_ani_glb.h"
#include "node/node_types.h"

namespace vorn {

// A decoded material image: pixels rows from the top, "RGB" or "RGBA".
struct GlbImage {
  TexturePixels pixels;
  std::string format;
  int width = 0;
  int height = 0;
};

struct GlbSubmeshPlan {
  std::string submeshName;
  bool withNormal = false;
  bool withTexUV = false;
  bool withSkin = false;
  FloatArray vertices;  // flat records, layout by the attributes present
  IndexArray indices;
  std::optional<GlbImage> image;
  // Joint node -> inverse bind matrix, when a node binds the mesh to a skin.
  std::shared_ptr<const InverseBindTable> inverseBindMatrices;
};

struct GlbModel {
  std::vector<GlbSubmeshPlan> submeshes;
  // The node flags as the last primitive leaves them.
  bool withNormal = false;
  bool withTexUV = false;
  bool withSkin = false;
  // Filled for a skinned file only.
  std::shared_ptr<const BoneTreeTable> initBoneTree;
  OrderedMap<std::string, MeshAction> actions;
};

// The parsed header: nullopt after the line of an invalid file (or silently for a
// file whose first chunk is BIN), the model otherwise. `path` names the file in the
// lines and errors. Errors: ValueError for truncated data, invalid JSON or an image that
// is not a PNG; KeyError, IndexError, TypeError for missing or wrong members;
// RuntimeError "The number of bones cannot exceed 64!".
std::optional<GlbModel> ReadGLB(const std::string& path, std::vector<std::uint8_t> bytes);

}  // namespace vorn
