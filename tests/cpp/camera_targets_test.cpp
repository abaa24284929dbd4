// The camera's render-target records without GL: lookups, texture matrices, the forced
// FX and what a shadow-casting camera hands to the node draw.
#include <gtest/gtest.h>

#include "app/globals.h"
#include "camera/camera.h"
#include "core/errors.h"
#include "node/node_draw_hooks.h"

namespace vorn {
namespace {

using Camera = Vorn_3DCamera;

TEST(CameraTargets, TextureMatrixFlipsYAndAddsHalfATexel) {
  const FloatList16 m = Camera::TextureMatrix(200, 100);
  const FloatList16 want = {0.5, 0, 0, 0, 0, -0.5, 0, 0, 0, 0, 1, 0, 0.5025, 0.505, 0, 1};
  for (int i = 0; i < 16; ++i) EXPECT_DOUBLE_EQ(m[i], want[i]) << i;
  // Clip (-1, 1) is the top left corner: texture (0, 0) up to the half texel.
  EXPECT_NEAR(-1 * m[0] + m[12], 0.5 / 200, 1e-12);
  EXPECT_NEAR(1 * m[5] + m[13], 0.5 / 100, 1e-12);
  EXPECT_THROW(Camera::TextureMatrix(0, 100), ZeroDivisionError);
}

TEST(CameraTargets, LookupsAndForcedFXFollowTheRecords) {
  auto cam = MakeNode<Camera>();
  // Without targets: nothing, and ApplyFX is ignored.
  EXPECT_FALSE(cam->GetRenderTargetTexture());
  EXPECT_FALSE(cam->GetRenderTargetTextureMatrix());
  EXPECT_FALSE(cam->GetDepthTargetTexture());
  EXPECT_FALSE(cam->GetDepthTargetTextureMatrix());
  const auto none = cam->GetDepthTargetTextureSize();
  EXPECT_FALSE(none.first || none.second);
  cam->ApplyFX(305);
  EXPECT_TRUE(cam->RenderTargetArray.empty());

  // A colour target only: the depth lookups still give nothing.
  cam->RenderTargetArray.set(Camera::CAMERA_RENDERGARGET, {7, 8, 64, 32, std::nullopt});
  cam->CameraType = Camera::CAMERA_RENDERGARGET;
  EXPECT_EQ(cam->GetRenderTargetTexture(), 8u);
  EXPECT_EQ(*cam->GetRenderTargetTextureMatrix(), Camera::TextureMatrix(64, 32));
  EXPECT_FALSE(cam->GetDepthTargetTextureMatrix());
  EXPECT_FALSE(cam->GetDepthTargetTextureSize().first);

  // Both: ApplyFX sets the record of CameraType, the kind created last.
  cam->RenderTargetArray.set(Camera::CAMERA_DEPTH, {9, 10, 16, 8, 301});
  cam->CameraType = Camera::CAMERA_DEPTH;
  EXPECT_EQ(cam->GetDepthTargetTexture(), 10u);
  EXPECT_EQ(cam->GetDepthTargetTextureSize(), std::make_pair(std::optional<int>(16), std::optional<int>(8)));
  cam->ApplyFX(305, true);
  EXPECT_EQ(cam->RenderTargetArray.at(Camera::CAMERA_DEPTH).FXID, 305);
  EXPECT_FALSE(cam->RenderTargetArray.at(Camera::CAMERA_RENDERGARGET).FXID);
}

TEST(CameraTargets, ShadowMapHookReadsCamerasOnly) {
  RegisterCameraHooks();
  ASSERT_TRUE(shadowMapCameraHooks.read);
  auto node = MakeNode<Vorn_3DGameNode>();
  EXPECT_FALSE(shadowMapCameraHooks.read(*node));

  auto cam = MakeNode<Camera>();
  auto info = shadowMapCameraHooks.read(*cam);
  ASSERT_TRUE(info);
  EXPECT_FALSE(info->texSize || info->projMatrix || info->viewMatrix);

  cam->RenderTargetArray.set(Camera::CAMERA_DEPTH, {1, 2, 512, 256, 301});
  cam->projMatrix = Camera::TextureMatrix(2, 2);
  cam->viewMatrix = Camera::BuildViewMatrix({0, 0, 5}, {0, 0, 0}, {0, 1, 0});
  info = shadowMapCameraHooks.read(*cam);
  ASSERT_TRUE(info && info->texSize);
  EXPECT_EQ(*info->texSize, std::make_pair(512.0, 256.0));
  EXPECT_EQ(info->projMatrix, cam->projMatrix);
  EXPECT_EQ(info->viewMatrix, cam->viewMatrix);
}

}  // namespace
}  // namespace vorn
