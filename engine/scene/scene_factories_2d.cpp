// Factories of the 2D objects: a plain node made a rectangle or an image, loaded into
// the scene with its 2D program and listed in ObjectArray_2D, drawn after the 3D world.
#include "node/game_node.h"
#include "scene/scene.h"
#include "shader/fx_2d.h"

namespace vorn {

NodeScene::NodePtr Vorn_3Dcene::Create2DRect(double left, double top, double width, double height, double r, double g,
                                             double b) {
  auto node = MakeNode<Vorn_3DGameNode>();
  node->Draw2DRect(left, top, width, height, r, g, b);
  node->OnLoad(shared_from_this());
  node->ApplyFX(Vorn_2DFX::FX_COLOR);
  ObjectArray_2D.push_back(node);
  return node;
}

NodeScene::NodePtr Vorn_3Dcene::Create2DImage(double left, double top, double width, double height,
                                              const std::optional<std::string>& imageFile) {
  auto node = MakeNode<Vorn_3DGameNode>();
  node->Draw2DImage(left, top, width, height, imageFile);
  node->OnLoad(shared_from_this());
  node->ApplyFX(Vorn_2DFX::FX_TEXTURE);
  ObjectArray_2D.push_back(node);
  return node;
}

}  // namespace vorn
