#pragma once
// What a timed action needs of the object it acts on. Scene nodes implement it; the
// actions themselves live in the core and know nothing of nodes.
#include "core/vector3.h"

namespace vorn {

class ActionTarget {
 public:
  virtual ~ActionTarget() = default;

  virtual void SetXYZ(double x, double y, double z) = 0;
  virtual Vector3 GetWorldXYZ() const = 0;
  virtual double GetSX() const = 0;
  virtual double GetSY() const = 0;
  // 2D scale: x and y.
  virtual void SetSXY(double sx, double sy) = 0;
  // 2D angle in degrees (a node's rotation about Z).
  virtual double GetAngle() const = 0;
  virtual void SetAngle(double angle) = 0;
  virtual bool IsVisible() const = 0;
  virtual void SetVisible(bool visible) = 0;
};

}  // namespace vorn
