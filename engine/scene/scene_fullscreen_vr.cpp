// VR mode: two eye cameras below the active camera render the scene into targets of
// the window's size, and two half-window images show them through the eye programs,
// which cut two opposite corners of each half. The logo sits on top, centred.
#include <filesystem>
#include <string>

#include "camera/camera.h"
#include "core/errors.h"
#include "core/gl_state_guard.h"
#include "resource/res_manager.h"
#include "scene/open_gl_scene.h"
#include "scene/scene.h"
#include "shader/fx_2d.h"
#include "shader/fx_manage.h"

namespace vorn {
namespace {

// Relative to the working directory, as the logo has always been found.
constexpr const char* kLogoImageFile = "ico/vorn.png";

// An eye: a camera at (0.1, 0, -1) below the active camera, with the projection of
// half the window, looking at the origin, and its colour target. Both eyes stand at
// the same place: the stereo effect of the split comes from the two eye programs.
Vorn_3DCamera::Ptr MakeEyeCamera(Vorn_3Dcene& scene, double Fov, double aspect, double ZNear, double ZFar) {
  auto camera = MakeNode<Vorn_3DCamera>(0.1, 0.0, -1.0, scene.ActiveCamera.ptr());
  camera->InitPrespective(Fov, aspect, ZNear, ZFar);
  camera->OnLoad(scene.shared_from_this());
  camera->LookAt(0, 0, 0);
  return camera;
}

}  // namespace

void Vorn_3Dcene::OpenVRMode(const std::string& /*dOcean*/, double Fov, double ZNear, double ZFar) {
  // Everything is checked before the first camera or image exists.
  const char* op = "Vorn_3Dcene.OpenVRMode";
  gl_state::CheckContext(op);
  const std::shared_ptr<Vorn_3Dcene> target = openGLScene.ptr();
  if (!target) {
    throw AttributeError(std::string(op) + ": openGLScene is not bound; set Vorn3DGameEngine.openGLScene first");
  }
  if (ScreenWidth <= 0 || ScreenHeight <= 0 || target->ScreenWidth <= 0 || target->ScreenHeight <= 0) {
    throw RuntimeError(std::string(op) + ": the scene has no screen size; call InitGL first");
  }
  if (!dynamic_cast<Vorn_3DCamera*>(ActiveCamera.get())) {
    throw AttributeError(std::string(op) + ": the scene has no active Vorn_3DCamera for the eyes to follow");
  }
  if (!ResManagerInstance || !FXManagerInstance) {
    throw AttributeError(std::string(op) + ": ResManagerInstance is None; create the PyGameResManager first");
  }

  const double HalfWidth = ScreenWidth / 2.0;
  const double aspect = HalfWidth / ScreenHeight;

  const Vorn_3DCamera::Ptr left = MakeEyeCamera(*this, Fov, aspect, ZNear, ZFar);
  const unsigned VRLeftCamera_RenderTarget = left->CreateRenderTarget();
  const NodePtr leftImage = target->Create2DImage(0, 0, ScreenWidth / 2.0, ScreenHeight);
  leftImage->SetDynamicTextureID(VRLeftCamera_RenderTarget, 0);
  leftImage->ApplyFX(Vorn_2DFX::FX_VRMODE_LEFT);

  const Vorn_3DCamera::Ptr right = MakeEyeCamera(*this, Fov, aspect, ZNear, ZFar);
  const unsigned VRRightCamera_RenderTarget = right->CreateRenderTarget();
  const NodePtr rightImage = target->Create2DImage(ScreenWidth / 2.0, 0, ScreenWidth / 2.0, ScreenHeight);
  rightImage->SetDynamicTextureID(VRRightCamera_RenderTarget, 0);
  rightImage->ApplyFX(Vorn_2DFX::FX_VRMODE_RIGHT);

  // A second call replaces the fields; the former images stay in ObjectArray_2D.
  VRLeftCamera = left;
  VRLeftEyeImage = leftImage;
  VRRightCamera = right;
  VRRightEyeImage = rightImage;

  // Without the file the logo stays unset, and a VR frame says which file it needs.
  const std::filesystem::path LogoImageFile = std::filesystem::current_path() / kLogoImageFile;
  std::error_code missing;
  if (std::filesystem::exists(LogoImageFile, missing)) {
    const NodePtr logo = target->Create2DImage(ScreenWidth / 2.0 - 80, 20, 160, 75, LogoImageFile.string());
    logo->SetTag("VR_Logo");
    logo->update(0);
    VRLogoImage = logo;
  }
}

const char* Vorn_3Dcene::VRLogoFile() { return kLogoImageFile; }

}  // namespace vorn
