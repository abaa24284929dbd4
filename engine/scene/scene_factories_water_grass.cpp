// Factories of the ocean and the grass: construct, shape call, OnLoad, default FX, and a
// root node joins its registry (a child is driven by its parent).
#include "landscape/grass.h"
#include "landscape/ocean.h"
#include "scene/scene.h"
#include "shader/fx_3d.h"

namespace vorn {

NodeScene::NodePtr Vorn_3Dcene::CreateOcean(double x, double y, double z, const NodePtr& parent) {
  auto ocean = MakeNode<Vorn_3DOcean>(x, y, z, parent);
  ocean->CreateOcean();
  ocean->OnLoad(shared_from_this());
  ocean->ApplyFX(Vorn_3DFX::FX_OCEAN);
  // Oceans stand with the terrains: the frame draws them there and the ground query
  // finds them.
  if (!parent) ObjectArray_3DTerrain.push_back(ocean);
  return ocean;
}

NodeScene::NodePtr Vorn_3Dcene::LoadOcean(const std::string& /*oceanDir*/) {
  // The ocean registry is looked at, the terrain registry is where CreateOcean puts the
  // new one: a script relies on each call in a plain scene adding an ocean.
  if (ObjectArray_3DOcean.empty()) return CreateOcean(0, 0, 0);
  return ObjectArray_3DOcean[0];
}

NodeScene::NodePtr Vorn_3Dcene::CreateGrass(double x, double y, double z, const NodePtr& parent, double radius,
                                            double density, double minW, double maxW, double minH, double maxH,
                                            double subsectionH) {
  auto grass = MakeNode<Vorn_3DGrass>(x, y, z, parent);
  grass->CreateGrass(radius, density, minW, maxW, minH, maxH, subsectionH);
  grass->OnLoad(shared_from_this());
  grass->ApplyFX(Vorn_3DFX::FX_GRASS);
  if (!parent) ObjectArray_3D.push_back(grass);
  return grass;
}

}  // namespace vorn
