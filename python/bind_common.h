#pragma once
// Shared helpers of the binding files. Each subsystem has one bind_<subsystem>.cpp with
// a bind_<subsystem>(py::module_&) function; module.cpp calls them in dependency order.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <concepts>
#include <functional>
#include <memory>
#include <string>

#include "core/script_owned.h"
#include "core/script_value.h"

namespace vorn {
struct ImageLoadResult;
class NodeScene;
class Vorn_3Dcene;
}  // namespace vorn

namespace vorn::py_bind {

namespace py = pybind11;

// Records `twin` as the one Python object of an engine object (script_twin.cpp). Called
// when the twin is complete: after __init__ for objects made by scripts, after the
// first conversion for objects the engine made.
void attach_twin(py::handle twin, ScriptOwned* owned);
// The class attribute every class of engine objects (nodes, the scene, texts) is bound
// with, beside py::dynamic_attr(): their twins show the collector what they hold.
py::custom_type_setup twin_type_setup();

// Wraps the bound __init__ of a class of engine objects: once the object is built, it
// is recorded as the object's twin, then `finish` completes the engine side (a node
// hangs itself under its parent). Call once per class, after its py::init.
template <class Class, class Finish>
void attach_twin_after_init(Class& cls, const char* doc, Finish finish) {
  using T = typename Class::type;
  py::object original = cls.attr("__init__");
  cls.attr("__init__") = py::cpp_function(
      [original, finish](py::handle self, py::args args, py::kwargs kwargs) {
        original(self, *args, **kwargs);
        auto object = self.cast<std::shared_ptr<T>>();
        attach_twin(self, static_cast<ScriptOwned*>(object.get()));
        finish(*object);
      },
      py::is_method(cls), py::name("__init__"), py::doc(doc));
}
template <class Class>
void attach_twin_after_init(Class& cls, const char* doc) {
  attach_twin_after_init(cls, doc, [](auto&) {});
}

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
void bind_terrain(py::module_& m);
void bind_tiled_map(py::module_& m);
void bind_mesh(py::module_& m);
void bind_mesh_skin(py::module_& m);
void bind_overlay(py::module_& m);
void bind_scene(py::module_& m);
void bind_water_grass(py::module_& m);
// The full-screen modes of the scene class, bound by bind_scene.
void bind_scene_fullscreen(py::class_<Vorn_3Dcene, NodeScene, std::shared_ptr<Vorn_3Dcene>>& cls);
// Particles, audio and fonts; bound after the scene (the factory joins its class).
void bind_particles(py::module_& m);
void bind_audio(py::module_& m);
void bind_globals(py::module_& m);

}  // namespace vorn::py_bind

// Conversions of engine objects to Python go through the object's twin: the same
// Python object comes back every time, and one made here is recorded as the twin.
namespace pybind11::detail {

template <class T>
  requires std::derived_from<T, vorn::ScriptOwned>
class type_caster<std::shared_ptr<T>> : public copyable_holder_caster<T, std::shared_ptr<T>> {
  using Base = copyable_holder_caster<T, std::shared_ptr<T>>;

 public:
  static handle cast(const std::shared_ptr<T>& src, return_value_policy policy, handle parent) {
    if (!src) return none().release();
    if (void* twin = src->script_object()) return handle(static_cast<PyObject*>(twin)).inc_ref();
    handle made = Base::cast(src, policy, parent);
    if (made) {
      // The most derived engine class the object has.
      auto* owned = static_cast<vorn::ScriptOwned*>(src.get());
      vorn::py_bind::attach_twin(made, owned);
    }
    return made;
  }
};

template <class T>
  requires std::derived_from<T, vorn::ScriptOwned>
class type_caster<vorn::Ref<T>> {
 public:
  PYBIND11_TYPE_CASTER(vorn::Ref<T>, make_caster<T>::name);
  bool load(handle src, bool convert) {
    make_caster<std::shared_ptr<T>> inner;
    if (!inner.load(src, convert)) return false;
    value = cast_op<std::shared_ptr<T>>(inner);
    return true;
  }
  static handle cast(const vorn::Ref<T>& src, return_value_policy policy, handle parent) {
    return make_caster<std::shared_ptr<T>>::cast(src.ptr(), policy, parent);
  }
};

}  // namespace pybind11::detail
