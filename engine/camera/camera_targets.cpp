// The camera's render-target records: lookups, texture matrices, the forced FX and the
// values a shadow-casting camera hands to the node draw (no GL).
#include "camera/camera.h"
#include "core/errors.h"

namespace vorn {

std::optional<unsigned> Vorn_3DCamera::GetRenderTargetTexture() const {
  if (const RenderTargetRecord* r = FindTarget(CAMERA_RENDERGARGET)) return r->FrameTexture;
  return std::nullopt;
}

std::optional<FloatList16> Vorn_3DCamera::GetRenderTargetTextureMatrix() const {
  if (const RenderTargetRecord* r = FindTarget(CAMERA_RENDERGARGET)) return TextureMatrix(r->Width, r->Height);
  return std::nullopt;
}

std::optional<unsigned> Vorn_3DCamera::GetDepthTargetTexture() const {
  if (const RenderTargetRecord* r = FindTarget(CAMERA_DEPTH)) return r->FrameTexture;
  return std::nullopt;
}

std::pair<std::optional<int>, std::optional<int>> Vorn_3DCamera::GetDepthTargetTextureSize() const {
  if (const RenderTargetRecord* r = FindTarget(CAMERA_DEPTH)) return {r->Width, r->Height};
  return {std::nullopt, std::nullopt};
}

std::optional<FloatList16> Vorn_3DCamera::GetDepthTargetTextureMatrix() const {
  if (const RenderTargetRecord* r = FindTarget(CAMERA_DEPTH)) return TextureMatrix(r->Width, r->Height);
  return std::nullopt;
}

FloatList16 Vorn_3DCamera::TextureMatrix(int TextureWidth, int TextureHeight) {
  if (TextureWidth == 0 || TextureHeight == 0) {
    throw ZeroDivisionError("Vorn_3DCamera: a render target of size 0 has no texture matrix");
  }
  // Clip space [-1, 1] to texture space [0, 1], y flipped, shifted by half a texel.
  const double TexOffsX = 0.5 + 0.5 / TextureWidth;
  const double TexOffsY = 0.5 + 0.5 / TextureHeight;
  return {0.5, 0.0, 0.0, 0.0,   //
          0.0, -0.5, 0.0, 0.0,  //
          0.0, 0.0, 1.0, 0.0,   //
          TexOffsX, TexOffsY, 0.0, 1.0};
}

void Vorn_3DCamera::ApplyFX(int VN_3DFXID, bool /*IncludeChildren*/) {
  // A camera has no submeshes: its FX is the one forced on what it renders.
  if (RenderTargetArray.empty()) return;
  if (RenderTargetRecord* r = RenderTargetArray.find(CameraType)) r->FXID = VN_3DFXID;
}

std::optional<ShadowMapInfo> Vorn_3DCamera::GetShadowMapInfo() const {
  ShadowMapInfo info;
  if (const auto [w, h] = GetDepthTargetTextureSize(); w && h) info.texSize = {*w, *h};
  info.projMatrix = GetProjMatrix();
  info.viewMatrix = GetViewMatrix();
  return info;
}

}  // namespace vorn
