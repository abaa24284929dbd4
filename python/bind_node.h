#pragma once
// Shared declarations of the node binding files (bind_node*.cpp).
#include <pybind11/pybind11.h>

#include <memory>
#include <string>
#include <type_traits>

#include "bind_common.h"
#include "node/game_node.h"
#include "node_trampoline.h"
#include "node_views.h"

namespace vorn::py_bind {

using NodeClass =
    py::class_<Vorn_3DGameNode, ActionTarget, PyNode<Vorn_3DGameNode>, std::shared_ptr<Vorn_3DGameNode>>;

// A number as the script gave it: an int when it is whole and was given as an int.
inline py::object script_number(double value, bool wasInt) {
  if (wasInt && std::isfinite(value) && value == std::floor(value)) return py::int_(static_cast<long long>(value));
  return py::float_(value);
}

// A Python list of the given values.
template <class... T>
py::list make_list(T&&... values) {
  py::list out;
  (out.append(std::forward<T>(values)), ...);
  return out;
}

// Script callables for the node's callback fields; None clears them.
UpdateCallback update_callback_from_py(py::handle function, const char* where);
PickCallback pick_callback_from_py(py::handle function, PickCallback Vorn_3DGameNode::*field, const char* where);

// DetailInfo of a pick, [position, [V1, V2, V3], None], and the pick result: the pair
// (True, DetailInfo) on a hit, (False, None) on a miss.
py::object pick_detail_to_py(const PickDetail& d);
py::tuple pick_result_to_py(const std::optional<PickDetail>& hit);


void bind_node_views(py::module_& m);
void bind_node_methods(NodeClass& cls);
void bind_node_fields(NodeClass& cls);
void bind_node_submesh(py::module_& m, NodeClass& cls);
void bind_node_draw(NodeClass& cls);
void bind_node_textures(NodeClass& cls);

// The (x=0, y=0, z=0, parent=None) constructor of a node class: builds the C++ class,
// or its trampoline for a script subclass, notes which of x, y, z came as ints (GetXYZ
// gives them back as ints) and hangs the node under its parent once the Python object
// exists. `Alias` is the trampoline the class is bound with.
template <class T, class Alias, class Class>
void def_node_init(Class& cls, const char* className, const char* doc) {
  const std::string where = className;
  auto make = [where](auto tag, py::handle x, py::handle y, py::handle z, py::handle parent) {
    using U = typename decltype(tag)::type;
    auto node = std::make_shared<U>(number_arg(x, where.c_str(), "x"), number_arg(y, where.c_str(), "y"),
                                    number_arg(z, where.c_str(), "z"),
                                    parent.is_none() ? nullptr : node_arg(parent, where));
    node->xyzIntMask =
        static_cast<std::uint8_t>((is_py_int(x) ? 1 : 0) | (is_py_int(y) ? 2 : 0) | (is_py_int(z) ? 4 : 0));
    return node;
  };
  cls.def(py::init([make](py::handle x, py::handle y, py::handle z,
                          py::handle parent) { return make(std::type_identity<T>{}, x, y, z, parent); },
                   [make](py::handle x, py::handle y, py::handle z, py::handle parent) {
                     return make(std::type_identity<Alias>{}, x, y, z, parent);
                   }),
          py::arg("x") = 0, py::arg("y") = 0, py::arg("z") = 0, py::arg("parent") = py::none());
  wrap_init_with_parent(cls, doc);
}

}  // namespace vorn::py_bind
