#pragma once
// Script subclasses of node classes. PyNode<Base> is the trampoline of every bound node
// class (Vorn_3DGameNode and its engine subclasses): it sends the overridable
// operations to a script override when there is one and finds `on_*` operations for
// CallEvent.
//
// Lifetime: a node's Python object is its twin (core/script_owned.h, script_twin.cpp):
// while the engine holds the node, the twin lives with its class and attributes.
#include <pybind11/pybind11.h>

#include <string>

#include "bind_common.h"
#include "node/game_node.h"
#include "overlay/text_child.h"

namespace vorn::py_bind {

template <class Base>
class PyNode : public Base {
 public:
  using Base::Base;

  void update(double delay) override { PYBIND11_OVERRIDE(void, Base, update, delay); }
  void update_skin_animation(double delay) override {
    PYBIND11_OVERRIDE(void, Base, update_skin_animation, delay);
  }
  bool checkColl(const Vorn_3DGameNode* other) override { PYBIND11_OVERRIDE(bool, Base, checkColl, other); }
  void RotateX(double rx) override { PYBIND11_OVERRIDE(void, Base, RotateX, rx); }
  void RotateY(double ry) override { PYBIND11_OVERRIDE(void, Base, RotateY, ry); }
  void StandOnGround(bool standOn) override { PYBIND11_OVERRIDE(void, Base, StandOnGround, standOn); }
  void GenTexCoords(int submeshIndex) override { PYBIND11_OVERRIDE(void, Base, GenTexCoords, submeshIndex); }
  void ApplyFX(int fxid, bool includeChildren) override { PYBIND11_OVERRIDE(void, Base, ApplyFX, fxid, includeChildren); }
  void draw(double rx, double ry, double rz) override { PYBIND11_OVERRIDE(void, Base, draw, rx, ry, rz); }
  void draw_begin_shader(int submeshIndex) override {
    PYBIND11_OVERRIDE(void, Base, draw_begin_shader, submeshIndex);
  }
  void draw_allsubmesh() override { PYBIND11_OVERRIDE(void, Base, draw_allsubmesh, ); }
  void prepare_uniform_for_shader(int submeshIndex) override {
    PYBIND11_OVERRIDE(void, Base, prepare_uniform_for_shader, submeshIndex);
  }
  void draw_skeleton() override { PYBIND11_OVERRIDE(void, Base, draw_skeleton, ); }

  ScriptValue FindEventOperation(const std::string& name) override {
    py::gil_scoped_acquire gil;
    py::handle self = script_self();
    if (!self) return {};
    return to_script(py::getattr(self, name.c_str(), py::none()));
  }

 private:
  // The twin of this instance (a script subclass's instance is its own twin).
  py::handle script_self() const { return py::handle(static_cast<PyObject*>(this->script_object())); }
};

// The Python object of a node: its twin, made on first need. A text hung below a node
// rides in a carrier node that scripts never see: they get the text itself.
inline py::object node_to_py(const std::shared_ptr<Vorn_3DGameNode>& node) {
  if (!node) return py::none();
  if (auto text = Vorn_TextChild::TextOf(node.get())) return py::cast(text);
  return py::cast(node);
}
inline py::object node_to_py(Vorn_3DGameNode& node) { return node_to_py(node.shared_from_this()); }

// Completes the construction of node classes bound with a (..., parent=None)
// constructor: pybind11 makes the object, it becomes the node's twin, then the node is
// hung under its parent, so that a script subclass built under a parent is already
// held with its script state. Call it once per bound node class.
template <class Class>
void wrap_init_with_parent(Class& cls, const char* doc) {
  attach_twin_after_init(cls, doc, [](Vorn_3DGameNode& node) { node.FinishConstruction(); });
}

}  // namespace vorn::py_bind
