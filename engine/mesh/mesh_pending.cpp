// TEMPORARY: replaced when the skin data and the OBJ reader land.
#include "mesh/mesh.h"
namespace vorn {
void Vorn_3DMesh::LoadMeshFromFile_OBJ(const std::string&, bool) {}
void Vorn_3DMesh::PlayAction(int) {}
void Vorn_3DMesh::prepare_uniform_for_shader(int) {}
void Vorn_3DMesh::draw_skeleton() {}
}  // namespace vorn
