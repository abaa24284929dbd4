#pragma once
// A small stand-in for the scene: node numbers, a flat ground, an active camera, a
// settable world rotation and fog switches that count their calls. Tests set the
// public fields to the values they need.
#include <memory>
#include <utility>
#include <vector>

#include "core/fbx_matrix.h"
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
  void SetActiveCamera(NodePtr camera) override { activeCamera = std::move(camera); }
  FbxAMatrix GetWorldRotateMatrix() const override { return worldRotate; }

  void EnableFog() override { ++enableFogCalls; }
  void DisableFog() override { ++disableFogCalls; }

  // FbxAMatrix(0, (rotateV, rotateH, 0), 1), as the scene builds its world rotation.
  void SetWorldRotation(double rotateV, double rotateH) {
    worldRotate = FbxAMatrix(FbxVector4(0, 0, 0, 0), FbxVector4(rotateV, rotateH, 0, 0), FbxVector4(1, 1, 1, 1));
  }

  int lastId = 0;
  double groundY = 0.0;
  std::vector<std::pair<double, double>> groundQueries;
  NodePtr activeCamera;
  FbxAMatrix worldRotate;
  int enableFogCalls = 0;
  int disableFogCalls = 0;
};

}  // namespace vorn::test
