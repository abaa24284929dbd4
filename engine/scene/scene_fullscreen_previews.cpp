// The deferred-light and ambient-occlusion previews: one camera per object FX, each
// rendering the scene's objects into its own target, a 200 by 200 tile showing each
// target, and a result image whose full-screen FX combines the targets.
#include <string>
#include <vector>

#include "camera/camera.h"
#include "core/errors.h"
#include "core/gl_state_guard.h"
#include "overlay/text_child.h"
#include "resource/res_manager.h"
#include "scene/scene.h"
#include "shader/fx_2d.h"
#include "shader/fx_3d.h"
#include "shader/fx_manage.h"

namespace vorn {
namespace {

constexpr int kTileSize = 200;
constexpr int kTilesPerRow = 4;

// One entry of a preview's FX list: the object FX its camera forces (none: the plain
// picture), the tile's label, and whether the target keeps float channels.
struct PreviewItem {
  std::optional<int> FX;
  const char* label;
  bool floatMode;
};

// Labels are red, with a black border, right-aligned to the point given.
void AddLabel(Vorn_3DGameNode& image, double x, double y, const char* text) {
  auto label = std::make_shared<Vorn_Text>(x, y, text);
  label->SetColor(1.0, 0.0, 0.0);
  label->SetBorderMode();
  label->SetAlignMode(Vorn_Text::FT_ALIGN_RIGHT);
  AddTextChild(image, label);
}

// Everything a preview needs, checked before the first camera or image exists.
Vorn_3DCamera& RequirePreviewSetup(const Vorn_3Dcene& scene, const char* where) {
  const std::string op = std::string("Vorn_3Dcene.") + where;
  gl_state::CheckContext(op);
  if (!ResManagerInstance) throw AttributeError(op + ": ResManagerInstance is None; create the PyGameResManager first");
  if (!FXManagerInstance) throw AttributeError(op + ": FXManagerInstance is None; create the PyGameResManager first");
  if (scene.ScreenWidth <= 0 || scene.ScreenHeight <= 0) {
    throw RuntimeError(op + ": the scene has no screen size; call InitGL first");
  }
  auto* camera = dynamic_cast<Vorn_3DCamera*>(scene.ActiveCamera.get());
  if (!camera) throw AttributeError(op + ": the scene has no active Vorn_3DCamera to clone");
  return *camera;
}

// The cameras and tiles of the items not yet in the map. A camera is a clone of the
// active one (so it follows it), renders without fog, and is kept under its FX.
void AddPreviewTiles(Vorn_3Dcene& scene, Vorn_3DCamera& active, Vorn_3Dcene::PreviewCameraMap& map,
                     const std::vector<PreviewItem>& items, const char* tag) {
  for (std::size_t i = 0; i < items.size(); ++i) {
    const PreviewItem& item = items[i];
    if (map.contains(item.FX)) continue;
    const int Row = static_cast<int>(i) / kTilesPerRow;
    const int Cow = static_cast<int>(i) % kTilesPerRow;
    const Vorn_3DCamera::Ptr camera = active.CloneCamera();
    camera->DisableFog();
    const unsigned target = camera->CreateRenderTarget(0, 0, item.floatMode);
    if (item.FX) camera->ApplyFX(*item.FX);
    const NodeScene::NodePtr tile = scene.Create2DImage(Cow * kTileSize, Row * kTileSize, kTileSize, kTileSize);
    tile->SetDynamicTextureID(target, 0);
    tile->SetTag(tag);
    tile->ApplyFX(Vorn_2DFX::FX_TEXTURE);
    map.set(item.FX, camera);
    AddLabel(*tile, Cow * kTileSize + kTileSize, Row * kTileSize + 180, item.label);
  }
}

// The colour texture of the camera kept under fx.
unsigned TargetOf(const Vorn_3Dcene::PreviewCameraMap& map, std::optional<int> fx, const char* where) {
  const NodeRef* found = map.find(fx);
  const auto* camera = found ? dynamic_cast<const Vorn_3DCamera*>(found->get()) : nullptr;
  const std::optional<unsigned> texture = camera ? camera->GetRenderTargetTexture() : std::nullopt;
  if (!texture) {
    throw RuntimeError(std::string("Vorn_3Dcene.") + where + ": the preview camera of FX " +
                       (fx ? std::to_string(*fx) : std::string("None")) + " has no render target");
  }
  return *texture;
}

}  // namespace

void Vorn_3Dcene::OpenDeferLight() {
  Vorn_3DCamera& active = RequirePreviewSetup(*this, "OpenDeferLight");
  AddPreviewTiles(*this, active, DeferLightCamera,
                  {{Vorn_3DFX::FX_XYZ, "XYZ", true},
                   {Vorn_3DFX::FX_NORMAL, "Normal", true},
                   {Vorn_3DFX::FX_DIFFUSE, "Diffuse", false},
                   {std::nullopt, "Original", false}},
                  "DeferLight_Light");
  DeferLightMode = true;

  const unsigned Original_RenderTarget = TargetOf(DeferLightCamera, std::nullopt, "OpenDeferLight");
  const unsigned XYZ_RenderTarget = TargetOf(DeferLightCamera, Vorn_3DFX::FX_XYZ, "OpenDeferLight");
  const unsigned Normal_RenderTarget = TargetOf(DeferLightCamera, Vorn_3DFX::FX_NORMAL, "OpenDeferLight");
  const unsigned Diffuse_RenderTarget = TargetOf(DeferLightCamera, Vorn_3DFX::FX_DIFFUSE, "OpenDeferLight");

  // The result, made anew at each call. Channels follow the samplers of the program:
  // texture0 position, texture1 normal, texture2 diffuse light, texture3 the picture.
  const NodePtr result = Create2DImage(0, 200, 800, 400);
  result->SetTag("DeferLight");
  result->SetDynamicTextureID(XYZ_RenderTarget, 0);
  result->SetDynamicTextureID(Normal_RenderTarget, 1);
  result->SetDynamicTextureID(Diffuse_RenderTarget, 2);
  result->SetDynamicTextureID(Original_RenderTarget, 3);
  result->ApplyFX(Vorn_2DFX::FX_DEFER_LIGHT);
  AddLabel(*result, 800, 380, "DeferLight");
}

void Vorn_3Dcene::OpenSSAO() {
  Vorn_3DCamera& active = RequirePreviewSetup(*this, "OpenSSAO");
  AddPreviewTiles(*this, active, SSAOCamera,
                  {{Vorn_3DFX::FX_XYZ, "XYZ", true},
                   {Vorn_3DFX::FX_DEPTH, "Depth", true},
                   {Vorn_3DFX::FX_NORMAL_VIEW_INVERSE, "Normal_View_Inverse", true},
                   {Vorn_3DFX::FX_DIFFUSE, "Diffuse", false},
                   {std::nullopt, "Original", false}},
                  "SSAO_Light");

  const unsigned Original_RenderTarget = TargetOf(SSAOCamera, std::nullopt, "OpenSSAO");
  const unsigned XYZ_RenderTarget = TargetOf(SSAOCamera, Vorn_3DFX::FX_XYZ, "OpenSSAO");
  const unsigned Normal_RenderTarget = TargetOf(SSAOCamera, Vorn_3DFX::FX_NORMAL_VIEW_INVERSE, "OpenSSAO");
  const unsigned SSAORandTexture = ResManagerInstance->AddSSAORandTexture();

  // Channels follow the samplers of the program: texture0 world position, texture1
  // normal, texture2 the noise that turns the kernel, texture3 the picture. The depth
  // tile is a preview only; the program compares the z of the position target.
  const NodePtr result = Create2DImage(200, 200, 400, 300);
  result->SetTag("SSAO");
  result->SetDynamicTextureID(XYZ_RenderTarget, 0);
  result->SetDynamicTextureID(Normal_RenderTarget, 1);
  result->SetDynamicTextureID(SSAORandTexture, 2);
  result->SetDynamicTextureID(Original_RenderTarget, 3);
  result->ApplyFX(Vorn_2DFX::FX_SSAO);
  AddLabel(*result, 400, 380, "SSAO");

  SSAOKernelList = BuildSSAOKernel();
  SSAOKernelRadius = 1.0;
}

}  // namespace vorn
