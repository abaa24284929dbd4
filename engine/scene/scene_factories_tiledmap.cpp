// The tile map's factory. Unlike the other shaded objects it takes its FX before
// OnLoad; a root map joins the terrain registry.
#include "landscape/tiled_map.h"
#include "scene/scene.h"
#include "shader/fx_3d.h"

namespace vorn {

NodeScene::NodePtr Vorn_3Dcene::CreateTiledMap(double x, double y, double z, const NodePtr& parent, int rows, int cows,
                                               double tilesize) {
  auto map = MakeNode<Vorn_3DTiledMap>(x, y, z, parent);
  map->CreateTiledMap(rows, cows, tilesize);
  map->ApplyFX(Vorn_3DFX::FX_TILEDMAP);
  map->OnLoad(shared_from_this());
  if (!parent) ObjectArray_3DTerrain.push_back(map);
  return map;
}

}  // namespace vorn
