#pragma once
// What an OBJ model becomes on a node, worked out before the node is touched: per face
// group, in group order, the submesh name, the texture file, the vertex floats for
// LoadVertex and the triangles for PushTriangleVIndex. Every failure the node's
// operations would meet on the way is raised here instead, so a bad file leaves the
// node as it was.
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "mesh/obj_reader.h"

namespace vorn {

struct ObjSubmeshPlan {
  std::string submeshName;                // "submesh_<n>"
  std::optional<std::string> textureFile;  // map_Kd joined to the OBJ's folder
  // Per position i of the group: texture coordinate i, normal i, position i, each with
  // as many numbers as its line gave.
  std::vector<double> vertices;
  // The first three corners of each face, as the file numbers them.
  std::vector<std::array<std::int64_t, 3>> triangles;
};

// IndexError when a group has fewer texture coordinates or normals than positions, or
// a face fewer than three corners; ValueError for a corner number the 16-bit index
// buffer can't hold in a group with vertices. `objPath` names the file in errors.
std::vector<ObjSubmeshPlan> PlanOBJSubmeshes(const ObjModel& model, const std::string& dirname,
                                             const std::string& objPath);

}  // namespace vorn
