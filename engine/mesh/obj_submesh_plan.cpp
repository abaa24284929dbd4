#include "mesh/obj_submesh_plan.h"

#include "core/console.h"
#include "core/errors.h"

namespace vorn {
namespace {

constexpr const char* kOp = "Vorn_3DMesh.LoadMeshFromFile_OBJ: ";

void append(std::vector<double>& out, const ObjTuple& t) { out.insert(out.end(), t.v.begin(), t.v.begin() + t.size); }

const std::vector<ObjTuple>& group_of(const OrderedMap<std::string, std::vector<ObjTuple>>& map,
                                      const std::string& key) {
  static const std::vector<ObjTuple> none;
  const auto* found = map.find(key);
  return found ? *found : none;
}

}  // namespace

std::vector<ObjSubmeshPlan> PlanOBJSubmeshes(const ObjModel& model, const std::string& dirname,
                                             const std::string& objPath) {
  std::vector<ObjSubmeshPlan> plans;
  plans.reserve(model.obj_faces_array.size());
  for (const auto& [key, faces] : model.obj_faces_array) {
    ObjSubmeshPlan plan;
    plan.submeshName = "submesh_" + std::to_string(plans.size());
    const std::string where = kOp + objPath + ": material " + console::py_repr_str(key);

    // A material the MTL does not describe has no texture.
    if (const ObjMaterial* mtl = model.obj_material_array.find(key); mtl && mtl->map_Kd) {
      plan.textureFile = JoinPath(dirname, *mtl->map_Kd);
    }

    // The i-th texture coordinate, normal and position make vertex i.
    const auto& positions = group_of(model.obj_vertex_array, key);
    const auto& texcoords = group_of(model.obj_texcoords_array, key);
    const auto& normals = group_of(model.obj_normals_array, key);
    const auto shortOf = [&](const char* what, std::size_t have) {
      return IndexError(where + " has " + std::to_string(positions.size()) + " positions but " + std::to_string(have) +
                        " " + what + " (list index out of range)");
    };
    if (texcoords.size() < positions.size()) throw shortOf("texture coordinates", texcoords.size());
    if (normals.size() < positions.size()) throw shortOf("normals", normals.size());
    plan.vertices.reserve(positions.size() * 8);
    for (std::size_t i = 0; i < positions.size(); ++i) {
      append(plan.vertices, texcoords[i]);
      append(plan.vertices, normals[i]);
      append(plan.vertices, positions[i]);
    }

    // One triangle per face from its first three corners.
    plan.triangles.reserve(faces.size());
    for (std::size_t f = 0; f < faces.size(); ++f) {
      const auto& v_index = faces[f].face_v_index;
      if (v_index.size() < 3) {
        throw IndexError(where + ": face " + std::to_string(f) + " has " + std::to_string(v_index.size()) +
                         " corners, a triangle needs 3 (list index out of range)");
      }
      plan.triangles.push_back({v_index[0], v_index[1], v_index[2]});
    }
    // Corners must name vertices of the group: the node's buffer refuses others, and
    // refusing them here leaves the node as it was. Indices are used as the file gives
    // them, so a file counting from 1 fails at its last vertex.
    if (!plan.vertices.empty()) {
      const auto count = static_cast<std::int64_t>(positions.size());
      for (const auto& tri : plan.triangles) {
        for (const std::int64_t index : tri) {
          if (index < 0 || index >= count) {
            throw ValueError(where + ": vertex index " + std::to_string(index) + " is not one of its " +
                             std::to_string(count) + " vertices (indices count from 0)");
          }
        }
      }
    }
    plans.push_back(std::move(plan));
  }
  return plans;
}

}  // namespace vorn
