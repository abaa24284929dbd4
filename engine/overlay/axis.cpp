#include "overlay/axis.h"

#include "app/globals.h"
#include "shader/fx_3d.h"
#include "shader/fx_manage.h"

namespace vorn {

Vorn_3DAxis::Vorn_3DAxis(double x_, double y_, double z_, const Ptr& parent_) : Vorn_3DGameNode(x_, y_, z_, parent_) {
  NodeType = "3DAxis";
  PickTriangleVisible = true;
}

void Vorn_3DAxis::Binding(Ptr gameNode) {
  GameNode = gameNode;
  if (!CurrSubMeshFX && FXManagerInstance) {
    if (auto program = FXManagerInstance->GetShader(Vorn_3DFX::FX_AXIS)) CurrSubMeshFX = *program;
  }
}

bool Vorn_3DAxis::Drag(double newOffsetX, double newOffsetY) {
  if (AxisType == "t" && PickedAxis) {
    offsetX = newOffsetX;
    offsetY = newOffsetY;
    Dragging = true;
    return true;
  }
  return false;
}

void Vorn_3DAxis::draw(double /*rx*/, double /*ry*/, double /*rz*/) {
  // The gizmo's shapes come with the editing tools; an unbound gizmo draws nothing.
  if (!IsVisible() || !AxisType || GameNode.expired()) return;
}

}  // namespace vorn
