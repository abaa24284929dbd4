#pragma once
// A scene for tests of scene objects: every value a node or camera reads of its scene
// is a plain field the test sets, and the frame services count their calls.
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "core/fbx_matrix.h"
#include "node/node_list.h"
#include "node/node_scene.h"

namespace vorn::test {

class FakeScene : public NodeScene {
 public:
  int GenNewGameNodeID() override { return ++lastId; }
  double Get3DTerrainY(double x, double z) override {
    groundQueries.emplace_back(x, z);
    return groundY;
  }

  NodePtr GetActiveCamera() const override { return activeCamera; }
  void SetActiveCamera(NodePtr camera_) override { activeCamera = std::move(camera_); }
  std::optional<std::array<double, 16>> GetActiveViewMatrix() const override { return viewMatrix; }
  std::optional<std::array<double, 16>> GetActiveProjMatrix() const override { return projMatrix; }
  FbxAMatrix GetWorldRotateMatrix() const override { return worldRotate; }

  double GetCurrTime() const override { return currTime; }
  std::array<double, 3> GetAmbientColor() const override { return ambient; }
  std::array<double, 5> GetSceneFog() const override {
    return fogEnabled ? fog : std::array<double, 5>{0.0, 0.0, 0.0, 0.0, 0.0};
  }
  void EnableFog() override {
    fogEnabled = true;
    ++enableFogCalls;
  }
  void DisableFog() override {
    fogEnabled = false;
    ++disableFogCalls;
  }
  double GetDepthBlurLerpValue() const override { return blurLerp; }
  std::array<double, 3> GetSunLightDir() const override { return sunDir; }
  std::array<double, 3> GetSunLightColor() const override { return sunColor; }
  int GetSSAOKernelCount() const override { return ssaoCount; }
  double GetSSAOKernelRadius() const override { return ssaoRadius; }
  const std::vector<double>& GetSSAOKernelList() const override { return ssaoKernel; }
  bool IsDeferLightMode() const override { return deferLight; }
  const NodeList& GetPointLightList() const override { return pointLights; }
  const NodeList& Get3DObjectArray() const override { return objects; }

  void AddBatchCount() override { ++batchCount; }
  void RenderPostFXRect() override { ++postFXRects; }

  // FbxAMatrix(0, (rotateV, rotateH, 0), 1), as the scene builds its world rotation.
  void SetWorldRotation(double rotateV, double rotateH) {
    worldRotate = FbxAMatrix(FbxVector4(0, 0, 0, 0), FbxVector4(rotateV, rotateH, 0, 0), FbxVector4(1, 1, 1, 1));
  }

  // Row-major float lists as the engine hands them to GL (transpose false).
  static std::array<double, 16> Identity() { return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}; }
  // An orthographic projection of the box [l, r] x [b, t] x [n, f].
  static std::array<double, 16> Ortho(double l, double r, double b, double t, double n, double f) {
    return {2 / (r - l),        0, 0, 0, 0, 2 / (t - b), 0, 0, 0, 0, -2 / (f - n), 0, -(r + l) / (r - l),
            -(t + b) / (t - b), -(f + n) / (f - n), 1};
  }

  int lastId = 0;
  double groundY = 0.0;
  std::vector<std::pair<double, double>> groundQueries;
  NodePtr activeCamera;
  NodePtr& camera = activeCamera;  // the name draw tests use
  std::optional<std::array<double, 16>> viewMatrix;
  std::optional<std::array<double, 16>> projMatrix;
  FbxAMatrix worldRotate;
  double currTime = 0.0;
  std::array<double, 3> ambient{1.0, 1.0, 1.0};
  bool fogEnabled = false;
  std::array<double, 5> fog{10.0, 100.0, 0.5, 0.6, 0.7};
  int enableFogCalls = 0;
  int disableFogCalls = 0;
  double blurLerp = 0.0;
  std::array<double, 3> sunDir{-1.0, -1.0, -1.0};
  std::array<double, 3> sunColor{1.0, 1.0, 1.0};
  int ssaoCount = 0;
  double ssaoRadius = 1.0;
  std::vector<double> ssaoKernel;
  bool deferLight = false;
  NodeList pointLights;
  NodeList objects;
  int batchCount = 0;
  int postFXRects = 0;
};

// A scene that asks for a pick along a given ray and records the selections.
class PickScene : public FakeScene {
 public:
  bool isCheckPickOnce() const override { return pickRequested; }
  std::pair<Vector3, Vector3> GetScree3DPointAndDir() override { return {rayPt, rayDir}; }
  void Select3DObject(const NodePtr& node) override { selected.push_back(node.get()); }
  NodePtr GetCurrDrawNode() const override { return drawNode; }

  bool pickRequested = true;
  Vector3 rayPt, rayDir;
  std::vector<const Vorn_3DGameNode*> selected;
  NodePtr drawNode;
};

}  // namespace vorn::test
