// The terrain factory and loader. A terrain gets FX_TERRAIN before OnLoad, unlike the
// other shaded factories, and joins ObjectArray_3DTerrain as a root node.
#include <string>

#include "core/errors.h"
#include "landscape/terrain.h"
#include "scene/scene.h"
#include "shader/fx_3d.h"

namespace vorn {

NodeScene::NodePtr Vorn_3Dcene::CreateTerrain(double x, double y, double z, const NodePtr& parent) {
  auto terrain = MakeNode<Vorn_3DTerrain>(x, y, z, parent);
  terrain->CreateTerrain();
  terrain->ApplyFX(Vorn_3DFX::FX_TERRAIN);
  terrain->OnLoad(shared_from_this());
  if (!parent) ObjectArray_3DTerrain.push_back(terrain);
  return terrain;
}

NodeScene::NodePtr Vorn_3Dcene::LoadTerrain(const std::string& terrainDir) {
  // A second call loads into the first entry of the registry, whatever made it.
  const NodePtr newTerrain = ObjectArray_3DTerrain.empty() ? CreateTerrain(0, 0, 0) : ObjectArray_3DTerrain[0];
  auto* terrain = dynamic_cast<Vorn_3DTerrain*>(newTerrain.get());
  if (!terrain) {
    throw AttributeError("Vorn_3Dcene.LoadTerrain: the first entry of ObjectArray_3DTerrain is a \"" +
                         newTerrain->NodeType + "\" node, which has no LoadHeightFile");
  }
  terrain->LoadHeightFile(terrainDir + ".hei");
  terrain->LoadBlendFile(terrainDir + ".ter");
  terrain->ApplyFX(Vorn_3DFX::FX_TERRAIN);
  return newTerrain;
}

}  // namespace vorn
