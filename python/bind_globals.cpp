// Module globals, live both ways: Vorn3DGameEngine/__init__.py turns each registered
// name into a property of the module that calls the getter and setter below.
#include <map>

#include "app/globals.h"
#include "bind_common.h"
#include "core/screen_settings.h"
#include "resource/res_manager.h"
#include "shader/fx_manage.h"

namespace vorn::py_bind {
namespace {

std::map<std::string, GlobalSlot>& slots() {
  static auto* table = new std::map<std::string, GlobalSlot>();  // lives until exit, never destroyed
  return *table;
}

template <class T>
GlobalSlot scalar_slot(T& variable, const char* name, const char* doc) {
  return GlobalSlot{
      [&variable]() -> py::object { return py::cast(variable); },
      [&variable, name](py::handle value) {
        if constexpr (std::is_same_v<T, bool>) {
          variable = py::bool_(py::reinterpret_borrow<py::object>(value));
        } else {
          if (!is_py_int(value)) {
            throw py::type_error(std::string(name) + " must be an int, not " +
                                 std::string(py::str(py::type::handle_of(value).attr("__name__"))));
          }
          variable = value.cast<T>();
        }
      },
      doc};
}

// An object global whose class arrives with a later subsystem: until then the value
// is kept on the Python side so that scripts can already bind and read it.
GlobalSlot placeholder_slot(py::module_& m, const std::string& name, const char* doc) {
  py::dict store = m.attr("_global_store");
  store[py::str(name)] = py::none();
  return GlobalSlot{[store, name]() -> py::object { return store[py::str(name)]; },
                    [store, name](py::handle value) mutable { store[py::str(name)] = value; }, doc};
}

}  // namespace

void register_global(const std::string& name, GlobalSlot slot) { slots()[name] = std::move(slot); }

void bind_globals(py::module_& m) {
  m.attr("_global_store") = py::dict();
  register_global("TICKS_PER_SEC", scalar_slot(TICKS_PER_SEC, "TICKS_PER_SEC", "Declared tick rate (60)."));
  register_global("DEBUG_MODE", scalar_slot(DEBUG_MODE, "DEBUG_MODE", "Declared debug switch (True)."));
  register_global("SCREEN_WIDTH",
                  scalar_slot(SCREEN_WIDTH, "SCREEN_WIDTH", "Window width in pixels; written by ChangeSizeFunc."));
  register_global("SCREEN_HEIGHT",
                  scalar_slot(SCREEN_HEIGHT, "SCREEN_HEIGHT", "Window height in pixels; written by ChangeSizeFunc."));
  for (const char* name : {"pickDrawNode", "ResManagerInstance", "FXManagerInstance", "openGLScene"}) {
    if (!slots().count(name)) register_global(name, placeholder_slot(m, name, "Engine object global."));
  }

  m.def(
      "_global_names",
      [] {
        py::list names;
        for (const auto& [name, slot] : slots()) names.append(name);
        return names;
      },
      "Names of the module globals that are live in the engine.");
  m.def(
      "_global_doc", [](const std::string& name) { return std::string(slots().at(name).doc); }, py::arg("name"));
  m.def(
      "_get_global",
      [](const std::string& name) {
        auto it = slots().find(name);
        if (it == slots().end()) throw py::attribute_error("no module global named " + name);
        return it->second.get();
      },
      py::arg("name"), "Reads a module global from the engine.");
  m.def(
      "_set_global",
      [](const std::string& name, py::handle value) {
        auto it = slots().find(name);
        if (it == slots().end()) throw py::attribute_error("no module global named " + name);
        it->second.set(value);
      },
      py::arg("name"), py::arg("value"), "Writes a module global into the engine.");
}

}  // namespace vorn::py_bind
