// Shape node classes: Vorn_3DDrawNode. Scripts may subclass them like any node class.
#include <pybind11/pybind11.h>

#include "bind_node.h"
#include "node_trampoline.h"
#include "node_views.h"
#include "shapes/draw_node.h"

namespace vorn::py_bind {

void bind_shapes(py::module_& m) {
  using Node = Vorn_3DGameNode;
  using DrawNode = Vorn_3DDrawNode;
  py::class_<DrawNode, Node, PyNode<DrawNode>, std::shared_ptr<DrawNode>> cls(
      m, "Vorn_3DDrawNode",
      "One wire-frame triangle or quad in world coordinates, replaced whole by each\n"
      "DrawTriangle or DrawQuad. The scene keeps one to mark the picked triangle; it never\n"
      "answers picks (Enable_PickDown and Enable_PickUp are False).",
      py::dynamic_attr(), twin_type_setup());
  def_node_init<DrawNode, PyNode<DrawNode>>(cls, "Vorn_3DDrawNode", "__init__(self, x=0, y=0, z=0, parent=None)\n\n"
                        "NodeType \"3DDrawNode\"; with a parent in a scene, loaded and hung under it.");
  cls.def("DrawTriangle", &DrawNode::DrawTriangle, py::arg("x1"), py::arg("y1"), py::arg("z1"), py::arg("x2"),
          py::arg("y2"), py::arg("z2"), py::arg("x3"), py::arg("y3"), py::arg("z3"),
          "Replaces the geometry by this triangle, drawn as lines with FX_COLOR.")
      .def("DrawQuad", &DrawNode::DrawQuad, py::arg("x1"), py::arg("y1"), py::arg("z1"), py::arg("x2"), py::arg("y2"),
           py::arg("z2"), py::arg("x3"), py::arg("y3"), py::arg("z3"), py::arg("x4"), py::arg("y4"), py::arg("z4"),
           "Replaces the geometry by this quad, drawn as lines with FX_COLOR.");
}

}  // namespace vorn::py_bind
