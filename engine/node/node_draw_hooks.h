#pragma once
// What the node draw needs of subsystems that sit above the node (the camera) or that
// do not offer it yet (render targets of the resource manager). Each subsystem fills
// its hook when it exists; until then the draw leaves the shadow uniforms alone and
// SetRenderTargetTexture raises RuntimeError.
#include <array>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "core/vector3.h"

namespace vorn {

class Vorn_3DGameNode;

// The values a shadow-casting camera hands to the programs that sample its depth.
struct ShadowMapInfo {
  // Width and height of the depth target; nothing while the camera has none.
  std::optional<std::pair<double, double>> texSize;
  // The camera's float lists, row by row; nothing before the camera has drawn.
  std::optional<std::array<double, 16>> projMatrix;
  std::optional<std::array<double, 16>> viewMatrix;
};

struct ShadowMapCameraHooks {
  // The values of `camera`, or nothing when the node is not a camera.
  std::function<std::optional<ShadowMapInfo>(const Vorn_3DGameNode& camera)> read;
};
inline ShadowMapCameraHooks shadowMapCameraHooks;

// What the resource manager knows of a generated texture: width, height, format.
struct DynamicTextureSize {
  int width = 0;
  int height = 0;
  std::string format;
};

struct RenderTargetHooks {
  // The frame buffer of a render-target texture, or nothing for an unknown id.
  std::function<std::optional<unsigned>(unsigned texID)> frameBuffer;
  // The record of a generated texture, or nothing for an unknown id.
  std::function<std::optional<DynamicTextureSize>(unsigned texID)> dynamicTexture;
};
inline RenderTargetHooks renderTargetHooks;

// Marks a picked triangle on the scene's draw node (its DrawTriangle with the three
// world corners). The draw node class installs it when the first one is made; until
// then a visible pick mark draws nothing.
struct PickMarkHooks {
  std::function<void(Vorn_3DGameNode& drawNode, const std::array<Vector3, 3>& corners)> triangle;
};
inline PickMarkHooks pickMarkHooks;

}  // namespace vorn
