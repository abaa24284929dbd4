#include "shapes/draw_node.h"

#include <array>

#include "shader/fx_3d.h"

namespace vorn {

Vorn_3DDrawNode::Vorn_3DDrawNode(double x_, double y_, double z_, const Ptr& parent_)
    : Vorn_3DGameNode(x_, y_, z_, parent_) {
  NodeType = "3DDrawNode";
  Enable_PickDown = false;
  Enable_PickUp = false;
}

void Vorn_3DDrawNode::MarkPickedTriangle(const std::array<Vector3, 3>& c) {
  DrawTriangle(c[0].x, c[0].y, c[0].z, c[1].x, c[1].y, c[1].z, c[2].x, c[2].y, c[2].z);
}

void Vorn_3DDrawNode::MarkPickedQuad(const std::array<Vector3, 4>& c) {
  DrawQuad(c[0].x, c[0].y, c[0].z, c[1].x, c[1].y, c[1].z, c[2].x, c[2].y, c[2].z, c[3].x, c[3].y, c[3].z);
}

void Vorn_3DDrawNode::DrawTriangle(double x1, double y1, double z1, double x2, double y2, double z2, double x3,
                                   double y3, double z3) {
  CleanSubMesh();
  CreateSubMesh("0");
  SetSubMeshShapeType(0, glc::TRIANGLES);
  const std::array<double, 9> corners = {x1, y1, z1, x2, y2, z2, x3, y3, z3};
  PushTriangleVertex_Positon(0, corners);
  PushTriangleVIndex(0, 0, 1, 2);
  SetWireFrameMode(true);
  VertexDescArray.set(0, glc::V3F);
  ApplyFX(Vorn_3DFX::FX_COLOR);
  BuildVBO();
}

void Vorn_3DDrawNode::DrawQuad(double x1, double y1, double z1, double x2, double y2, double z2, double x3, double y3,
                               double z3, double x4, double y4, double z4) {
  CleanSubMesh();
  CreateSubMesh("0");
  SetSubMeshShapeType(0, glc::QUADS);
  const std::array<double, 12> corners = {x1, y1, z1, x2, y2, z2, x3, y3, z3, x4, y4, z4};
  PushQuadVertex_Postion(0, corners);
  PushQuadVIndex(0, 0, 1, 2, 3);
  SetWireFrameMode(true);
  VertexDescArray.set(0, glc::V3F);
  ApplyFX(Vorn_3DFX::FX_COLOR);
  BuildVBO();
}

}  // namespace vorn
