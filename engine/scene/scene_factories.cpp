// Factories of the scene's shaded objects: construct, shape call, OnLoad, default FX,
// and a root node joins its registry (a child is driven by its parent).
#include "landscape/plane.h"
#include "scene/scene.h"
#include "shader/fx_3d.h"
#include "shapes/solids.h"

namespace vorn {
namespace {

template <class T, class Shape>
NodeScene::NodePtr make_shaded(Vorn_3Dcene& scene, NodeList& registry, double x, double y, double z,
                               const NodeScene::NodePtr& parent, int fxid, Shape&& shape) {
  auto node = MakeNode<T>(x, y, z, parent);
  shape(*node);
  node->OnLoad(scene.shared_from_this());
  node->ApplyFX(fxid);
  if (!parent) registry.push_back(node);
  return node;
}

}  // namespace

NodeScene::NodePtr Vorn_3Dcene::CreatePointLight(double x, double y, double z, const NodePtr& parent, double range,
                                                 double r, double g, double b) {
  auto light = MakeNode<Vorn_3DPointLight>(x, y, z, parent);
  light->CreatePointLight(range);
  light->SetMeshColor(r, g, b);
  light->OnLoad(shared_from_this());
  // Lights are listed with or without a parent; the frame leaves children to it.
  LightList.push_back(light);
  return light;
}

NodeScene::NodePtr Vorn_3Dcene::CreatePlane(double x, double y, double z, const NodePtr& parent, int rows, int cows,
                                            double tilesize) {
  return make_shaded<Vorn_3DPlane>(*this, ObjectArray_3D, x, y, z, parent, Vorn_3DFX::FX_DIFFUSE,
                                   [&](Vorn_3DPlane& n) { n.CreatePlane(rows, cows, tilesize); });
}

NodeScene::NodePtr Vorn_3Dcene::CreateBox(double x, double y, double z, const NodePtr& parent, double size_x,
                                          double size_y, double size_z) {
  return make_shaded<Vorn_3DBox>(*this, ObjectArray_3D, x, y, z, parent, Vorn_3DFX::FX_DIFFUSE,
                                 [&](Vorn_3DBox& n) { n.CreateBox(size_x, size_y, size_z); });
}

NodeScene::NodePtr Vorn_3Dcene::CreateSphere(double x, double y, double z, const NodePtr& parent, double radius,
                                             int statckx, int statcky) {
  return make_shaded<Vorn_3DSphere>(*this, ObjectArray_3D, x, y, z, parent, Vorn_3DFX::FX_DIFFUSE,
                                    [&](Vorn_3DSphere& n) { n.CreateSphere(radius, statckx, statcky); });
}

NodeScene::NodePtr Vorn_3Dcene::CreateCircle(double x, double y, double z, const NodePtr& parent, double radius,
                                             int statckZ) {
  return make_shaded<Vorn_3DCircle>(*this, ObjectArray_3D, x, y, z, parent, Vorn_3DFX::FX_DIFFUSE,
                                    [&](Vorn_3DCircle& n) { n.CreateCircle(radius, statckZ); });
}

NodeScene::NodePtr Vorn_3Dcene::CreateConus(double x, double y, double z, const NodePtr& parent, double radius,
                                            double height, int statckZ) {
  return make_shaded<Vorn_3DConus>(*this, ObjectArray_3D, x, y, z, parent, Vorn_3DFX::FX_DIFFUSE,
                                   [&](Vorn_3DConus& n) { n.CreateConus(radius, height, statckZ); });
}

NodeScene::NodePtr Vorn_3Dcene::CreateCylinder(double x, double y, double z, const NodePtr& parent, double radius,
                                               double height, int statckZ) {
  return make_shaded<Vorn_3DCylinder>(*this, ObjectArray_3D, x, y, z, parent, Vorn_3DFX::FX_DIFFUSE,
                                      [&](Vorn_3DCylinder& n) { n.CreateCylinder(radius, height, statckZ); });
}

NodeScene::NodePtr Vorn_3Dcene::CreateTorus(double x, double y, double z, const NodePtr& parent, double radius_in,
                                            double radius_out, double height, int statckR, int statckZ) {
  return make_shaded<Vorn_3DTorus>(*this, ObjectArray_3D, x, y, z, parent, Vorn_3DFX::FX_DIFFUSE,
                                   [&](Vorn_3DTorus& n) { n.CreateTorus(radius_in, radius_out, height, statckR, statckZ); });
}

NodeScene::NodePtr Vorn_3Dcene::CreateTube(double x, double y, double z, const NodePtr& parent, double radius_in,
                                           double radius_out, double height, int statckR) {
  return make_shaded<Vorn_3DTube>(*this, ObjectArray_3D, x, y, z, parent, Vorn_3DFX::FX_DIFFUSE,
                                  [&](Vorn_3DTube& n) { n.CreateTube(radius_in, radius_out, height, statckR); });
}

NodeScene::NodePtr Vorn_3Dcene::CreateCapsule(double x, double y, double z, const NodePtr& parent, double radius,
                                              double height, int statckR) {
  return make_shaded<Vorn_3DCapsule>(*this, ObjectArray_3D, x, y, z, parent, Vorn_3DFX::FX_DIFFUSE,
                                     [&](Vorn_3DCapsule& n) { n.CreateCapsule(radius, height, statckR); });
}

}  // namespace vorn
