// The draw operations of Vorn_3DGameNode: effects, render targets and the draw walk.
#include "bind_node.h"

namespace vorn::py_bind {

void bind_node_draw(NodeClass& cls) {
  using Node = Vorn_3DGameNode;
  cls.def("ApplyFX", &Node::ApplyFX, py::arg("VN_FXID"), py::arg("IncludeChildren") = false,
          "Gives every submesh the program of VN_FXID, keeping the former program of each\n"
          "in SubMeshFX_BackUp (one level of undo); with IncludeChildren, the whole subtree.")
      .def("ApplySubMeshFX", &Node::ApplySubMeshFX, py::arg("submeshIndex"), py::arg("VN_FXID"),
           "Gives one submesh the program of VN_FXID and prints the program's source. A\n"
           "program already in force does nothing; one the driver refuses is not stored, and\n"
           "the reason and the source are printed. RuntimeError without FXManagerInstance.")
      .def("RecoverFX", &Node::RecoverFX, py::arg("IncludeChildren") = false,
           "Restores SubMeshFX from SubMeshFX_BackUp; a submesh without backup loses its FX.\n"
           "The backup stays.")
      .def("GetShader", &Node::GetShader, "CurrSubMeshFX: the program bound during this node's draw, or None.")
      .def("SetRenderTargetTexture", &Node::SetRenderTargetTexture, py::arg("texID"), py::arg("isPostFXMode") = true,
           "Draws the node into the frame buffer of the render-target texture texID from now on;\n"
           "in post mode through the scene's full-screen rectangle.")
      .def("draw", &Node::draw, py::arg("rx") = 0, py::arg("ry") = 0, py::arg("rz") = 0,
           "Draws the node and its subtree (nothing while hidden), counts one batch in the\n"
           "scene, then the axis aid. rx, ry, rz rotate the fixed-function view of this node.")
      .def("draw_begin", &Node::draw_begin, py::arg("rx") = 0, py::arg("ry") = 0, py::arg("rz") = 0,
           "glPushMatrix and the rotations rx, ry, rz (degrees) of the fixed-function stack.")
      .def("draw_end", &Node::draw_end, "glPopMatrix.")
      .def("draw_begin_shader", &Node::draw_begin_shader, py::arg("submeshIndex"),
           "Binds the submesh's program and sets its per-program uniforms, unless that program\n"
           "is already CurrSubMeshFX.")
      .def("draw_allsubmesh", &Node::draw_allsubmesh,
           "draw_submesh for every submesh in order, then unbinds texture and program.")
      .def("draw_submesh", &Node::draw_submesh, py::arg("submeshIndex"),
           "Uniforms, textures, blend, wire-frame and culling state, then the draw of one submesh.")
      .def("prepare_uniform_for_shader", &Node::prepare_uniform_for_shader, py::arg("submeshIndex"),
           "Hook for subclasses, called with the submesh's program bound; empty here.")
      .def("draw_children", &Node::draw_children, "draw() of every child, with no rotation.")
      .def("draw_skeleton", &Node::draw_skeleton, "Debug hook; empty here.")
      .def("draw_picktriangle", &Node::draw_picktriangle,
           "The pick event, run inside draw: while the scene has a pick requested, a hit of\n"
           "its pick ray selects this node (Select3DObject), calls PickDownFunction(self,\n"
           "DetailInfo) if Enable_PickDown and, with PickTriangleVisible, marks the triangle\n"
           "on the scene's draw node.")
      .def("draw_boundingbox", &Node::draw_boundingbox,
           "With the node visible and its box visible: the box from boxMin to boxMax as\n"
           "corner brackets (edges along x red, y green, z blue), in the transform in force.")
      .def("draw_axis", &Node::draw_axis, py::arg("rx") = 0, py::arg("ry") = 0, py::arg("rz") = 0,
           "With the node visible and axisVisible: unit lines along the node's x (red), y\n"
           "(green) and z (blue) axes, placed by its AxisMatrix.")
      .def(
          "checkPick",
          [](Node& n, const Vector3& Pt, const Vector3& Dir, double Length) {
            return pick_result_to_py(n.checkPick(Pt, Dir, Length));
          },
          py::arg("Pt"), py::arg("Dir"), py::arg("Length") = 99999.0,
          "The world-space line through Pt along Dir against the node's triangles (three\n"
          "indices a triangle, corners through WorldMatrix): (True, [position, [V1, V2, V3],\n"
          "None]) for the first triangle hit in submesh and index order (not the nearest),\n"
          "else (False, None). Length is not used. Planes, boxes and the gizmo answer\n"
          "with their own test.")
      .def("GetBoundingBox", &Node::GetBoundingBox, py::arg("LocalMode") = true,
           "(boxMin, boxMax); with LocalMode False both corners moved by WorldMatrix (not\n"
           "the box around the moved box).")
      .def("GetLightRange", &Node::GetLightRange, "Reach of a point light; 0.0 for other nodes.");
}

}  // namespace vorn::py_bind
