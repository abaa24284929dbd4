#pragma once
// What nodes, cameras and other scene objects need of the scene they are loaded into.
// The scene class implements it; objects hold it by a non-owning reference (the scene
// owns the nodes, not the reverse). Everything a node reads while drawing comes
// through here, so a test can stand a small fake scene in for the real one: beyond the
// first two operations every one has a neutral default (no camera, no fog, no lights).
#include <array>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "core/fbx_matrix.h"
#include "core/vector3.h"
#include "node/node_list.h"

namespace vorn {

class Vorn_3DGameNode;


class NodeScene {
 public:
  using NodePtr = std::shared_ptr<Vorn_3DGameNode>;
  virtual ~NodeScene() = default;

  // ---- Identity and ground ----
  // A fresh node number; the first is 1 and numbers are never reused.
  virtual int GenNewGameNodeID() = 0;
  // Ground height at (x, z); 0.0 where no terrain covers the point.
  virtual double Get3DTerrainY(double x, double z) = 0;

  // ---- Cameras ----
  // The camera of the main view (a Vorn_3DCamera), or nullptr.
  virtual NodePtr GetActiveCamera() const { return nullptr; }
  virtual void SetActiveCamera(NodePtr /*activeCamera*/) {}
  // View and projection float lists of the active camera as of its last draw; nothing
  // before the camera has drawn or with no camera (the uniforms are then left alone).
  virtual std::optional<std::array<double, 16>> GetActiveViewMatrix() const { return std::nullopt; }
  virtual std::optional<std::array<double, 16>> GetActiveProjMatrix() const { return std::nullopt; }
  // World rotation of the main view: FbxAMatrix(0, (Scene_RotateV, Scene_RotateH, 0), 1).
  virtual FbxAMatrix GetWorldRotateMatrix() const { return {}; }

  // ---- Values shaders read ----
  virtual double GetCurrTime() const { return 0.0; }
  virtual std::array<double, 3> GetAmbientColor() const { return {1.0, 1.0, 1.0}; }
  // start, end, r, g, b; five zeros while fog is disabled.
  virtual std::array<double, 5> GetSceneFog() const { return {}; }
  virtual void EnableFog() {}
  virtual void DisableFog() {}
  virtual double GetDepthBlurLerpValue() const { return 0.0; }
  virtual std::array<double, 3> GetSunLightDir() const { return {-1.0, -1.0, -1.0}; }
  virtual std::array<double, 3> GetSunLightColor() const { return {1.0, 1.0, 1.0}; }
  virtual int GetSSAOKernelCount() const { return 64; }
  virtual double GetSSAOKernelRadius() const { return 1.0; }
  virtual const std::vector<double>& GetSSAOKernelList() const;
  virtual bool IsDeferLightMode() const { return false; }

  // ---- Registries a node or camera reads ----
  virtual const NodeList& GetPointLightList() const;
  virtual const NodeList& Get3DObjectArray() const;
  // The built-in immediate draw node that marks picked triangles, or nullptr.
  virtual NodePtr GetCurrDrawNode() const { return nullptr; }

  // ---- Frame services ----
  // One more draw batch in the running frame.
  virtual void AddBatchCount() {}
  // Whether a pick was requested for this frame.
  virtual bool isCheckPickOnce() const { return false; }
  // Binds the scene's gizmo to a picked node, with the scene's default gizmo type.
  virtual void Select3DObject(const NodePtr& /*object3D*/) {}
  // The pick ray of this frame: point and direction in the unrotated world.
  virtual std::pair<Vector3, Vector3> GetScree3DPointAndDir() { return {Vector3(), Vector3()}; }
  // Draws the full-screen rectangle that post effects render through.
  virtual void RenderPostFXRect() {}
};

}  // namespace vorn
