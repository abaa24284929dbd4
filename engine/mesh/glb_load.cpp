#include "mesh/glb_load.h"

#include <fstream>
#include <iterator>
#include <vector>

#include "core/errors.h"
#include "mesh/glb_reader.h"
#include "mesh/mesh.h"
#include "mesh/obj_load.h"
#include "shader/fx_3d.h"

namespace vorn {

void LoadGLBIntoMesh(Vorn_3DMesh& mesh, const std::string& glbFile, bool /*swapyz: accepted, not used*/) {
  const std::optional<std::string> path = ResolveModelPath(glbFile);
  if (!path) return;
  // The file's real size bounds everything read from it.
  std::ifstream in(*path, std::ios::binary);
  if (!in) throw ValueError(*path + ": the file cannot be opened");
  std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  mesh.MeshFile = *path;
  std::optional<GlbModel> model = ReadGLB(*path, std::move(bytes));
  if (!model) return;

  for (GlbSubmeshPlan& plan : model->submeshes) {
    const int submeshIndex = mesh.CreateSubMesh(plan.submeshName, plan.withTexUV, plan.withSkin);
    if (plan.withSkin) {
      auto skin = std::make_shared<Vorn_SkinSubMeshAni_GLB>();
      if (plan.inverseBindMatrices) skin->SetInverseBindMatrices(plan.inverseBindMatrices);
      mesh.SubMesh_Dict.set(submeshIndex, skin);
    }
    if (plan.image) {
      mesh.LoadSubMeshTextureFromImage(submeshIndex, 0, plan.image->pixels, plan.image->format, plan.image->width,
                                       plan.image->height);
    }
    mesh.LoadVIndex(submeshIndex, std::move(plan.indices));
    mesh.LoadVertex(submeshIndex, std::move(plan.vertices));
  }
  mesh.withNormal = model->withNormal;
  mesh.withTexUV = model->withTexUV;
  mesh.withSkin = model->withSkin;
  mesh.BuildVBO();
  if (mesh.withSkin) {
    mesh.ApplyFX(mesh.withTexUV ? Vorn_3DFX::FX_DIFFUSE_TEXTURE_SKIN : Vorn_3DFX::FX_TEXTURE_SKIN);
  } else {
    mesh.ApplyFX(mesh.withTexUV ? Vorn_3DFX::FX_DIFFUSE_TEXTURE : Vorn_3DFX::FX_TEXTURE);
  }
  if (!mesh.withSkin) return;
  mesh.ActionDict = std::move(model->actions);
  for (auto& [index, skin] : mesh.SubMesh_Dict) {
    if (auto* glb = dynamic_cast<Vorn_SkinSubMeshAni_GLB*>(skin.get())) glb->SetInitBoneTree(model->initBoneTree);
  }
}

}  // namespace vorn
