// Camera factories beyond the plain camera.
#include "camera/camera.h"
#include "scene/scene.h"

namespace vorn {

NodeScene::NodePtr Vorn_3Dcene::CreateShadowMapCamera(double x, double y, double z) {
  NodePtr camera = CreateCamera(x, y, z);
  static_cast<Vorn_3DCamera&>(*camera).CreateDepthTarget();
  return camera;
}

}  // namespace vorn
