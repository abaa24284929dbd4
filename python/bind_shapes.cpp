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
      "answers picks (Enable_PickDown and Enable_PickUp are False).");
  // As for the base class: the constructor notes which of x, y, z came as ints.
  auto make = [](auto tag, py::handle x, py::handle y, py::handle z, py::handle parent) {
    using T = typename decltype(tag)::type;
    const char* where = "Vorn_3DDrawNode";
    auto node = std::make_shared<T>(number_arg(x, where, "x"), number_arg(y, where, "y"), number_arg(z, where, "z"),
                                    parent.is_none() ? nullptr : node_arg(parent, where));
    node->xyzIntMask = static_cast<std::uint8_t>((is_py_int(x) ? 1 : 0) | (is_py_int(y) ? 2 : 0) | (is_py_int(z) ? 4 : 0));
    return node;
  };
  cls.def(py::init([make](py::handle x, py::handle y, py::handle z,
                          py::handle parent) { return make(std::type_identity<DrawNode>{}, x, y, z, parent); },
                   [make](py::handle x, py::handle y, py::handle z, py::handle parent) {
                     return make(std::type_identity<PyNode<DrawNode>>{}, x, y, z, parent);
                   }),
          py::arg("x") = 0, py::arg("y") = 0, py::arg("z") = 0, py::arg("parent") = py::none());
  wrap_init_with_parent(cls,
                        "__init__(self, x=0, y=0, z=0, parent=None)\n\n"
                        "NodeType \"3DDrawNode\"; with a parent in a scene, loaded and hung under it.");
  cls.def("DrawTriangle", &DrawNode::DrawTriangle, py::arg("x1"), py::arg("y1"), py::arg("z1"), py::arg("x2"),
          py::arg("y2"), py::arg("z2"), py::arg("x3"), py::arg("y3"), py::arg("z3"),
          "Replaces the geometry by this triangle, drawn as lines with FX_COLOR.")
      .def("DrawQuad", &DrawNode::DrawQuad, py::arg("x1"), py::arg("y1"), py::arg("z1"), py::arg("x2"), py::arg("y2"),
           py::arg("z2"), py::arg("x3"), py::arg("y3"), py::arg("z3"), py::arg("x4"), py::arg("y4"), py::arg("z4"),
           "Replaces the geometry by this quad, drawn as lines with FX_COLOR.");
}

}  // namespace vorn::py_bind
