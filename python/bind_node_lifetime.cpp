// Keeps a node's Python object alive while the engine owns the node, and lets
// Python's cycle collector see the script values a node holds (userData, the
// binding tables, callbacks), so that a node whose callback refers back to the node
// is freed like any Python object once nothing else reaches it.
//
// Only a node whose sole owner is its Python object shows its values: a node that the
// engine also holds (a parent's children, a registry) is alive for reasons the
// collector cannot see, so its values count as reachable from outside and are never
// cleared.
#include "bind_node.h"

namespace vorn::py_bind {
namespace {

using Node = Vorn_3DGameNode;

traverseproc baseTraverse = nullptr;
inquiry baseClear = nullptr;

Node* solely_owned_node(PyObject* self) {
  // Node classes have single inheritance: an instance has one value and holder, that
  // of its own bound class (Vorn_3DGameNode or an engine subclass), whose shared
  // pointer has the layout of a shared_ptr<Node>. Looking it up by the base's type
  // would find nothing for a subclass instance.
  auto* inst = reinterpret_cast<py::detail::instance*>(self);
  py::detail::values_and_holders vhs(inst);
  auto it = vhs.begin();
  if (it == vhs.end()) return nullptr;
  auto vh = *it;
  if (!vh.holder_constructed() || !vh.value_ptr()) return nullptr;
  auto& holder = vh.holder<std::shared_ptr<Node>>();
  return holder.use_count() == 1 ? holder.get() : nullptr;
}

template <class F>
int for_each_script_value(Node& n, F&& f) {
  int r = 0;
  auto one = [&](ScriptValue& v) {
    if (r == 0) r = f(v);
  };
  one(n.userData);
  for (auto& [k, v] : n.BindingVarArray) one(v);
  for (auto* table : {&n.BindingEventArray, &n.InnerBindingEventArray}) {
    for (auto& [k, e] : *table) {
      one(e.function);
      for (auto& v : e.rest) one(v);
    }
  }
  for (auto& [k, p] : n.BindingPointArray) {
    one(p.posType);
    one(p.x);
    one(p.y);
  }
  one(n.UpdateFunction.source);
  one(n.PickDownFunction.source);
  one(n.PickUpFunction.source);
  return r;
}

int node_traverse(PyObject* self, visitproc visit, void* arg) {
  if (baseTraverse) {
    if (int r = baseTraverse(self, visit, arg)) return r;
  }
  Node* node = solely_owned_node(self);
  if (!node) return 0;
  return for_each_script_value(*node, [&](ScriptValue& v) {
    return v.is_none() ? 0 : visit(static_cast<PyObject*>(v.get()), arg);
  });
}

int node_clear(PyObject* self) {
  if (baseClear) baseClear(self);
  if (Node* node = solely_owned_node(self)) {
    // Resetting one at a time: each release may run script code.
    for_each_script_value(*node, [](ScriptValue& v) {
      ScriptValue dropped = std::move(v);
      return 0;
    });
    node->UpdateFunction.call = nullptr;
    node->PickDownFunction.call = nullptr;
    node->PickUpFunction.call = nullptr;
  }
  return 0;
}

// The registered Python object wrapping a node, if any.
ScriptValue node_script_self(Node& node) {
  if (!Py_IsInitialized()) return {};
  py::gil_scoped_acquire gil;
  auto& instances = py::detail::get_internals().registered_instances;
  const auto range = instances.equal_range(static_cast<const void*>(&node));
  const py::handle nodeType = py::type::of<Node>();
  for (auto it = range.first; it != range.second; ++it) {
    py::handle object(reinterpret_cast<PyObject*>(it->second));
    if (PyObject_IsInstance(object.ptr(), nodeType.ptr()) == 1) return to_script(object);
  }
  return {};
}

}  // namespace

void enable_node_gc(py::handle type) {
  scriptSelfHook = &node_script_self;
  auto* t = reinterpret_cast<PyTypeObject*>(type.ptr());
  if (!(t->tp_flags & Py_TPFLAGS_HAVE_GC)) {
    throw std::logic_error("enable_node_gc: bind the node class with py::dynamic_attr()");
  }
  if (t->tp_traverse != node_traverse) {
    baseTraverse = t->tp_traverse;
    baseClear = t->tp_clear;
    t->tp_traverse = node_traverse;
    t->tp_clear = node_clear;
  }
}

}  // namespace vorn::py_bind
