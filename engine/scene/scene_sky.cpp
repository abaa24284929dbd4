// The two sky objects: made on first use, then reused; only one is visible at a time.
#include "scene/scene.h"
#include "shader/fx_3d.h"
#include "shapes/box.h"
#include "shapes/sphere.h"

namespace vorn {

NodeScene::NodePtr Vorn_3Dcene::LoadSkyBox(const std::string& cubeTextureDir) {
  if (!sceneSkyBox) {
    auto box = MakeNode<Vorn_3DBox>(0.0, 0.0, 0.0);
    box->CreateBox(200.0, 200.0, 200.0);
    box->OnLoad(shared_from_this());
    box->EnablePickDownEvent(false);
    box->EnablePickUpEvent(false);
    box->ApplyFX(Vorn_3DFX::FX_SKYBOX);
    sceneSkyBox = box;
  }
  sceneSkyBox->LoadSubMeshCubeMapTextureFromFile(0, cubeTextureDir);
  sceneSkyBox->SetVisible(true);
  currSkyObject = sceneSkyBox;
  if (sceneSkyShpere) sceneSkyShpere->SetVisible(false);
  return sceneSkyBox;
}

NodeScene::NodePtr Vorn_3Dcene::LoadSkySphere(const std::string& sphereTextureFile) {
  if (!sceneSkyShpere) {
    auto sphere = MakeNode<Vorn_3DSphere>(0.0, 0.0, 0.0);
    sphere->CreateSphere(200.0);
    sphere->OnLoad(shared_from_this());
    sphere->EnablePickDownEvent(false);
    sphere->EnablePickUpEvent(false);
    sphere->ApplyFX(Vorn_3DFX::FX_SKYSPHERE);
    sceneSkyShpere = sphere;
  }
  // The picture goes on channel 0 of submesh 0.
  sceneSkyShpere->LoadSubMeshTextureFromFile(0, 0, sphereTextureFile);
  sceneSkyShpere->SetVisible(true);
  currSkyObject = sceneSkyShpere;
  if (sceneSkyBox) sceneSkyBox->SetVisible(false);
  return sceneSkyShpere;
}

}  // namespace vorn
