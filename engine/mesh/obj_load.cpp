#include "mesh/obj_load.h"

#include <variant>
#include <vector>

#include "core/console.h"
#include "mesh/obj_reader.h"
#include "mesh/obj_submesh_plan.h"
#include "node/game_node.h"
#include "resource/image_path.h"
#include "resource/res_manager.h"
#include "shader/fx_3d.h"

namespace vorn {

std::optional<std::string> ResolveModelPath(const std::string& modelFile) {
  std::string path = modelFile;
  if (!PathExists(path) && ResManagerInstance) {
    const ResPath found = ResManagerInstance->GetResPath(modelFile);
    if (const auto* one = std::get_if<std::string>(&found)) {
      path = *one;
    } else if (const auto* many = std::get_if<std::vector<std::string>>(&found); many && !many->empty()) {
      if (many->size() > 1) {
        // The index knows names in any case: the line shows the name as found on disk.
        console::print(SplitPath(many->front()).second, " has ", many->size(), " same obj.");
      }
      path = many->front();
    }
  }
  if (!PathExists(path)) return std::nullopt;
  return path;
}

void LoadOBJIntoNode(Vorn_3DGameNode& node, const std::string& objFile, bool swapyz) {
  const std::optional<std::string> path = ResolveModelPath(objFile);
  if (!path) return;
  const std::string dirname = SplitPath(*path).first;

  // Everything that can fail on the file's account fails here, before the node changes.
  const ObjModel model = ReadOBJFile(*path, swapyz);
  std::vector<ObjSubmeshPlan> plans = PlanOBJSubmeshes(model, dirname, *path);

  node.MeshFile = *path;
  node.withNormal = model.withNormal;
  node.withTexUV = model.withTexUV;
  for (ObjSubmeshPlan& plan : plans) {
    const int submeshIndex = node.CreateSubMesh(plan.submeshName, model.withTexUV);
    if (plan.textureFile) node.LoadSubMeshTextureFromFile(submeshIndex, 0, *plan.textureFile);
    node.LoadVertex(submeshIndex, std::move(plan.vertices));
    for (const auto& tri : plan.triangles) node.PushTriangleVIndex(submeshIndex, tri[0], tri[1], tri[2]);
  }
  node.BuildVBO();
  node.ApplyFX(model.withNormal ? Vorn_3DFX::FX_DIFFUSE_TEXTURE : Vorn_3DFX::FX_TEXTURE);
}

}  // namespace vorn
