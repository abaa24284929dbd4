#pragma once
// What a node needs of the scene it is loaded into. The scene class implements it;
// nodes hold it by a non-owning reference (the scene owns the nodes, not the reverse).
namespace vorn {

class NodeScene {
 public:
  virtual ~NodeScene() = default;

  // A fresh node number; the first is 1 and numbers are never reused.
  virtual int GenNewGameNodeID() = 0;
  // Ground height at (x, z); 0.0 where no terrain covers the point.
  virtual double Get3DTerrainY(double x, double z) = 0;
};

}  // namespace vorn
