#pragma once
// Vorn_3DCamera: a scene node that holds a projection, a look-at target and an up
// direction. Its eye is the node's world position, so a camera can hang below another
// node. Implemented over two files:
//   camera.cpp     data, view matrix, targeting, movement, update (no GL)
//   camera_gl.cpp  projection read-back, draw, screen ray and screen projection
//   camera_targets.cpp     render-target records, texture matrices, ApplyFX (no GL)
//   camera_targets_gl.cpp  creating targets and rendering node lists into them
//
// Ownership: `tagetNode` is a non-owning reference (the caught node usually owns the
// camera as its FollowCamera). Make cameras with MakeNode<Vorn_3DCamera>(...).
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "core/math_util.h"
#include "core/ordered_map.h"
#include "core/vector3.h"
#include "node/game_node.h"

namespace vorn {

// One render target of a camera: the framebuffer it renders into, its colour texture,
// the texture size and the object FX forced while rendering (none: the nodes' own FX).
struct RenderTargetRecord {
  unsigned FrameBuffer = 0;
  unsigned FrameTexture = 0;
  int Width = 0;
  int Height = 0;
  std::optional<int> FXID;
};

class Vorn_3DCamera : public Vorn_3DGameNode {
 public:
  using Ptr = std::shared_ptr<Vorn_3DCamera>;
  using NodePtr = Vorn_3DGameNode::Ptr;

  // Kinds of camera; CameraType is also the key of its record in RenderTargetArray.
  static constexpr int CAMERA_SCENE = 1;
  static constexpr int CAMERA_RENDERGARGET = 2;
  static constexpr int CAMERA_DEPTH = 3;
  // What a render target shows.
  static constexpr int CAMERA_TARGET_SCENE = 1;
  static constexpr int CAMERA_TARGET_OBJECT = 2;
  static constexpr int CAMERA_TARGET_POINTLIGHT = 3;

  // Aspect is taken from SCREEN_WIDTH / SCREEN_HEIGHT now and does not follow later
  // window sizes. ZeroDivisionError while SCREEN_HEIGHT is 0.
  explicit Vorn_3DCamera(double x = 0, double y = 0, double z = 0, const NodePtr& parent = nullptr);

  // ---- Projection and view ----
  void SetCameraTargetType(int targetType) noexcept { CameraTargetType = targetType; }
  void InitPrespective(double fov, double aspect, double zNear, double zFar) noexcept {
    Fov = fov, Aspect = aspect, Near = zNear, Far = zFar;
  }
  void SetRange(double zNear, double zFar) noexcept { Near = zNear, Far = zFar; }
  // The current GL_PROJECTION_MATRIX as 16 numbers in GL memory order.
  static FloatList16 BuildPerspectiveMatrix();
  const std::optional<FloatList16>& GetProjMatrix() const noexcept { return projMatrix; }
  const std::optional<FloatList16>& GetViewMatrix() const noexcept { return viewMatrix; }
  // The look-at view matrix as a float list (translation in the last four numbers).
  static FloatList16 BuildViewMatrix(const Vector3& Eye, const Vector3& Target, const Vector3& UpDir) noexcept;

  // ---- Scene and targeting ----
  // A new camera at the origin below this one, with the same projection, looking at
  // the origin and loaded into this camera's scene.
  Ptr CloneCamera();
  void EnableFog() noexcept { EnableSceneFog = true; }
  void DisableFog() noexcept { EnableSceneFog = false; }
  // Makes this the scene's active camera; without a scene prints "No SceneInstance".
  void Active();
  void LookAt(double tx, double ty, double tz) noexcept {
    targetX = tx, targetY = ty, targetZ = tz, targetIntMask = 0;
  }
  void SetUpDir(double ux, double uy, double uz) noexcept { upDirX = ux, upDirY = uy, upDirZ = uz; }
  void Catch(const NodePtr& targetNode) { tagetNode = targetNode; }
  NodePtr GetCatchNode() const noexcept { return tagetNode.lock(); }
  // The caught node's world position, else the target fields.
  Vector3 GetTargetPosition() const;

  // ---- Screen (GL: reads the matrices in force) ----
  // The ray under window point (px, py), origin at the top left: a point on the near
  // plane and a unit direction. With inverse, the scene's world rotation is undone.
  // Negative coordinates give two zero vectors without touching GL.
  std::pair<Vector3, Vector3> ScreenPtTo3DPointAndDir(double px, double py, bool inverse = true) const;
  // Window x, y (origin at the top left) and depth of a world point.
  std::array<double, 3> getScreenPosition(double px, double py, double pz) const;

  // ---- Movement ----
  void SetDistance(double distance);
  void MoveFront(double distance);
  void MoveBack(double distance);
  void MoveLeft(double distance);
  void MoveRight(double distance);
  void MoveUp(double distance);
  void MoveDown(double distance);
  // Bookkeeping only: the angles add up, eye and target stay.
  void RotateX(double rx) override;
  void RotateY(double ry) override;

  // ---- Render targets ----
  // A colour target (CameraType becomes CAMERA_RENDERGARGET) of texWidth x texHeight, 0
  // meaning SCREEN_WIDTH / SCREEN_HEIGHT; floatMode gives 16-bit float channels. The
  // texture is registered with ResManagerInstance. Returns the texture. ValueError for
  // a negative or oversized side, AttributeError without a resource manager.
  unsigned CreateRenderTarget(int texWidth = 0, int texHeight = 0, bool floatMode = false);
  // A depth target (CameraType becomes CAMERA_DEPTH): a colour texture that receives
  // depth through Vorn_3DFX.FX_DEPTH, forced on every node rendered into it.
  unsigned CreateDepthTarget(int texWidth = 0, int texHeight = 0);
  std::optional<unsigned> GetRenderTargetTexture() const;
  std::optional<FloatList16> GetRenderTargetTextureMatrix() const;
  std::optional<unsigned> GetDepthTargetTexture() const;
  // (Width, Height) of the depth target, or (nothing, nothing).
  std::pair<std::optional<int>, std::optional<int>> GetDepthTargetTextureSize() const;
  std::optional<FloatList16> GetDepthTargetTextureMatrix() const;
  // Clip space to texture space of a target: y flipped, half-texel offset.
  // ZeroDivisionError for a side of 0.
  static FloatList16 TextureMatrix(int TextureWidth, int TextureHeight);
  // Sets the forced FX of the record of the last target created; a camera without
  // targets ignores it. IncludeChildren plays no part for a camera.
  void ApplyFX(int VN_3DFXID, bool IncludeChildren = false) override;
  // Depth target size and matrices for the programs of nodes that cast shadows here.
  std::optional<ShadowMapInfo> GetShadowMapInfo() const override;
  // Clears each target and draws the nodes into it (with the record's FX forced and
  // restored node by node), with zero world rotation; framebuffer 0 is bound after.
  void RenderObjListToRenderTarget(const NodeList& objList);
  void RenderObjListToRenderTarget(const std::vector<NodePtr>& objList);

  // ---- Per frame ----
  // Base update, then a rendering camera takes the caught node's position as target.
  void update(double delay) override;
  // Only for the active camera or one with render targets: projection times view on
  // the GL_PROJECTION stack, projMatrix and viewMatrix filled, GL_MODELVIEW current.
  // The rotation arguments of a node draw play no part for a camera.
  virtual void draw(double rx = 0, double ry = 0, double rz = 0);

  // ---- Fields, in the order the constructor sets them ----
  int CameraType = CAMERA_SCENE;
  int CameraTargetType = CAMERA_TARGET_SCENE;
  std::weak_ptr<Vorn_3DGameNode> tagetNode;
  double targetX = 0.0, targetY = 0.0, targetZ = 0.0;
  // Which target components a script gave as integers (bit 0 x, 1 y, 2 z), so that
  // they read back and print as integers; engine-side writes clear the bits.
  std::uint8_t targetIntMask = 0;
  double upDirX = 0.0, upDirY = 1.0, upDirZ = 0.0;
  double rotateX = 0.0, rotateY = 0.0;
  OrderedMap<int, RenderTargetRecord> RenderTargetArray;
  double Fov = 45.0;
  double Aspect = 1.0;
  double Near = 0.1, Far = 500.0;
  std::optional<FloatList16> viewMatrix;
  std::optional<FloatList16> projMatrix;
  std::optional<FloatList16> viewProjMatrix;
  bool EnableSceneFog = true;

 protected:
  // The scene, or AttributeError naming the operation when the camera is not loaded.
  std::shared_ptr<NodeScene> RequireScene(const char* where) const;
  // Whether this camera renders in this frame: it has render targets or is active.
  bool IsRendering(const NodeScene& scene) const;
  // Projection and view for this frame (the steps every rendering camera takes).
  void SetupProjectionAndView();
  // The target part of draw: the list CameraTargetType names, rendered into every
  // target, with the scene's fog off while EnableSceneFog is false.
  void RenderTargets(NodeScene& scene);

 private:
  unsigned CreateTarget(int key, int texWidth, int texHeight, bool floatMode, std::optional<int> fxid,
                        const char* where);
  const RenderTargetRecord* FindTarget(int key) const { return RenderTargetArray.find(key); }
  // Set while RenderTargets runs: a camera hung under a node it renders would otherwise
  // render itself again without end.
  bool renderingTargets_ = false;
};


}  // namespace vorn
