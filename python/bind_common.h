#pragma once
// Shared helpers of the binding files. Each subsystem has one bind_<subsystem>.cpp with
// a bind_<subsystem>(py::module_&) function; module.cpp calls them in dependency order.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <functional>
#include <string>

#include "core/script_value.h"

namespace vorn {
struct ImageLoadResult;
}  // namespace vorn

namespace vorn::py_bind {

namespace py = pybind11;

// Wraps a Python object into a core handle (None becomes the empty handle) and back.
ScriptValue to_script(py::handle object);
py::object from_script(const ScriptValue& value);

// A module global: its getter and setter run against the engine's own variable.
struct GlobalSlot {
  std::function<py::object()> get;
  std::function<void(py::handle)> set;
  const char* doc = "";
};
// Registers (or replaces) the slot of a module global; later subsystems replace the
// placeholder slots of object globals once their classes exist.
void register_global(const std::string& name, GlobalSlot slot);

// Reads a Python number as double, raising TypeError("<where>: <what> must be a
// number, not <type>") for anything else.
double number_arg(py::handle value, const char* where, const char* what);
// Whether a Python value is an int (bool included), which scripts print without ".0".
inline bool is_py_int(py::handle value) { return PyLong_Check(value.ptr()) != 0; }

void bind_errors(py::module_& m);
void bind_console(py::module_& m);
void bind_core(py::module_& m);
void bind_glut(py::module_& m);
void bind_shader(py::module_& m);
void bind_resource_images(py::module_& m);
// An image load record as scripts see it: (image, width, height, flag).
py::tuple load_result_to_py(const ImageLoadResult& r);
void bind_fx_2d(py::module_& m);
void bind_resource(py::module_& m);
void bind_actions(py::module_& m);
void bind_node(py::module_& m);
void bind_camera(py::module_& m);
void bind_shapes(py::module_& m);
void bind_shapes_solids(py::module_& m);
void bind_landscape(py::module_& m);
void bind_overlay(py::module_& m);
void bind_scene(py::module_& m);
void bind_globals(py::module_& m);

}  // namespace vorn::py_bind
