#include "mesh/fbx_load.h"

#include "mesh/mesh.h"
#include "mesh/obj_load.h"
#include "shader/fx_3d.h"

namespace vorn {

void LoadModelIntoMesh(Vorn_3DMesh& mesh, const std::string& modelFile, bool swapyz, ModelSplit split) {
  const std::optional<std::string> path = ResolveModelPath(modelFile);
  if (!path) return;
  if (split == ModelSplit::PerMeshNode) mesh.IsFBX = true;
  std::optional<ModelPlan> model = ImportModelFile(*path, split, swapyz);
  if (!model) return;
  mesh.MeshFile = *path;
  for (ModelSubmeshPlan& plan : model->submeshes) {
    const int submeshIndex = mesh.CreateSubMesh(plan.submeshName, plan.withTexUV, plan.withSkin);
    if (plan.withSkin) {
      auto skin = std::make_shared<Vorn_SkinSubMeshAni_FBX>();
      skin->LoadSkinMeshData(model->tree, std::move(plan.clusters));
      mesh.SubMesh_Dict.set(submeshIndex, skin);
    }
    int channel = 0;
    for (const GlbImage& image : plan.images) {
      mesh.LoadSubMeshTextureFromImage(submeshIndex, channel++, image.pixels, image.format, image.width, image.height);
    }
    for (const std::string& file : plan.textureFiles) mesh.LoadSubMeshTextureFromFile(submeshIndex, channel++, file);
    mesh.LoadVIndex(submeshIndex, std::move(plan.indices));
    mesh.LoadVertex(submeshIndex, std::move(plan.vertices));
  }
  mesh.withNormal = model->withNormal;
  mesh.withTexUV = model->withTexUV;
  mesh.withSkin = model->withSkin;
  mesh.ActionDict = std::move(model->actions);
  if (model->first) {
    const ModelFirstAnimation& f = *model->first;
    mesh.FirstAnimation_TimeSpan = std::pair{f.beginTime, f.endTime};
    mesh.FirstAnimation_Duration = f.duration;
    mesh.FirstAnimation_FrameCount = f.frameCount;
    mesh.FirstAnimation_SecondCount = f.secondCount;
    mesh.FirstAnimation_BeginTime = f.beginTime;
    mesh.FirstAnimation_EndTime = f.endTime;
    mesh.FrameDelayTime = f.frameDelay;
  }
  mesh.BuildVBO();
  if (mesh.withSkin) {
    mesh.ApplyFX(mesh.withNormal ? Vorn_3DFX::FX_DIFFUSE_TEXTURE_SKIN : Vorn_3DFX::FX_TEXTURE_SKIN);
  } else {
    mesh.ApplyFX(mesh.withNormal ? Vorn_3DFX::FX_DIFFUSE_TEXTURE : Vorn_3DFX::FX_TEXTURE);
  }
}

}  // namespace vorn
