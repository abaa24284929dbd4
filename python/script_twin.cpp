// The script side of engine object lifetime (core/script_owned.h): records the one
// Python object ("twin") of each engine object, hands the same one back every time,
// forgets it when it is destroyed, and shows the collector what an engine object
// holds. Only public pybind11 and CPython interfaces are used: the type slots are set
// through py::custom_type_setup while the class is being made.
#include <unordered_map>

#include "bind_common.h"

namespace vorn::py_bind {
namespace {

// Twin -> engine object, for the slots below, which only get the Python object. An
// object enters once its construction is complete, so the collector never reaches a
// half-built one (a subclass instance is visible to the collector from the start of
// its __init__).
std::unordered_map<PyObject*, ScriptOwned*>& twins() {
  static auto* table = new std::unordered_map<PyObject*, ScriptOwned*>();  // outlives every twin
  return *table;
}

traverseproc baseTraverse = nullptr;
inquiry baseClear = nullptr;
destructor baseDealloc = nullptr;

// The engine object of a twin when every one of its holders is known (the twin and the
// engine's owning references): only then do its references belong to the twin.
ScriptOwned* fully_owned(PyObject* self) {
  auto it = twins().find(self);
  if (it == twins().end()) return nullptr;
  ScriptOwned* owned = it->second;
  return owned->holder_count() == 1 + owned->owner_count() ? owned : nullptr;
}

struct VisitContext {
  visitproc visit;
  void* arg;
};

int twin_traverse(PyObject* self, visitproc visit, void* arg) {
#if PY_VERSION_HEX >= 0x030B0000
  if (Py_TYPE(self)->tp_traverse != twin_traverse) {
    // A script subclass: the interpreter's own traversal has visited the instance
    // dictionary already (both it and the bound class keep it as a managed dictionary)
    // and leaves the type to us. Visiting the dictionary twice would count a reference
    // too many and keep everything it reaches alive.
    Py_VISIT(Py_TYPE(self));
  } else
#endif
      if (baseTraverse) {
    if (int r = baseTraverse(self, visit, arg)) return r;
  }
  ScriptOwned* owned = fully_owned(self);
  if (!owned) return 0;
  VisitContext context{visit, arg};
  return owned->visit_script_refs(
      [](void* object, void* ctx) {
        auto* c = static_cast<VisitContext*>(ctx);
        return c->visit(static_cast<PyObject*>(object), c->arg);
      },
      &context);
}

int twin_clear(PyObject* self) {
  if (baseClear) baseClear(self);
  if (ScriptOwned* owned = fully_owned(self)) {
    try {
      owned->clear_script_refs();
    } catch (...) {
      // Dropping references does not throw; nothing may escape into the collector.
    }
  }
  return 0;
}

void twin_dealloc(PyObject* self) {
  auto it = twins().find(self);
  if (it != twins().end()) {
    // From here on the engine object (if it lives on) has no twin.
    it->second->detach_script_object(self);
    twins().erase(it);
  }
  baseDealloc(self);
}

}  // namespace

void attach_twin(py::handle twin, ScriptOwned* owned) {
  if (!twin || !owned || owned->script_object() == twin.ptr()) return;
  twins()[twin.ptr()] = owned;
  owned->attach_script_object(twin.ptr());
}

py::custom_type_setup twin_type_setup() {
  return py::custom_type_setup([](PyHeapTypeObject* heapType) {
    PyTypeObject* type = &heapType->ht_type;
    if (!(type->tp_flags & Py_TPFLAGS_HAVE_GC)) {
      throw std::logic_error("engine object classes are bound with py::dynamic_attr()");
    }
    // pybind11 has set the traversal of the instance dictionary; every class shares it.
    if (type->tp_traverse != twin_traverse) {
      baseTraverse = type->tp_traverse;
      baseClear = type->tp_clear;
    }
    type->tp_traverse = twin_traverse;
    type->tp_clear = twin_clear;
    if (!baseDealloc) {
      // The deallocation every pybind11 class inherits from its base.
      for (PyTypeObject* base = type->tp_base; base && !baseDealloc; base = base->tp_base)
        if (base->tp_dealloc != twin_dealloc) baseDealloc = base->tp_dealloc;
    }
    type->tp_dealloc = twin_dealloc;
  });
}

}  // namespace vorn::py_bind
