// Console output to sys.stdout, and the hooks that let the core hold Python objects.
#include <string_view>

#include "bind_common.h"
#include "core/console.h"

namespace vorn::py_bind {
namespace {

void python_stdout_sink(std::string_view line) {
  if (!Py_IsInitialized()) return;
  py::gil_scoped_acquire gil;
  // Keep a pending exception (the line may be printed while one propagates).
  PyObject *type, *value, *trace;
  PyErr_Fetch(&type, &value, &trace);
  try {
    std::string text(line);
    text += '\n';
    py::module_::import("sys").attr("stdout").attr("write")(text);
  } catch (py::error_already_set&) {
    PyErr_Clear();
  }
  PyErr_Restore(type, value, trace);
}

void hook_incref(void* o) { Py_INCREF(static_cast<PyObject*>(o)); }

void hook_decref(void* o) {
  // Handles destroyed after interpreter shutdown leak instead of touching a dead heap.
  if (!Py_IsInitialized()) return;
  py::gil_scoped_acquire gil;
  Py_DECREF(static_cast<PyObject*>(o));
}

std::string hook_str(void* o) { return py::str(py::handle(static_cast<PyObject*>(o))); }

bool hook_truthy(void* o) {
  const int r = PyObject_IsTrue(static_cast<PyObject*>(o));
  if (r < 0) throw py::error_already_set();
  return r != 0;
}

bool hook_equals(void* a, void* b) {
  return py::handle(static_cast<PyObject*>(a)).equal(py::handle(static_cast<PyObject*>(b)));
}

ScriptValue hook_call(void* callable, std::span<const ScriptValue> args) {
  py::tuple py_args(args.size());
  for (std::size_t i = 0; i < args.size(); ++i) py_args[i] = from_script(args[i]);
  py::object result = py::handle(static_cast<PyObject*>(callable))(*py_args);
  return to_script(result);
}

const ScriptValue::Hooks kPythonHooks{&hook_incref, &hook_decref, &hook_str,
                                      &hook_truthy, &hook_equals, &hook_call};

}  // namespace

ScriptValue to_script(py::handle object) {
  if (!object || object.is_none()) return {};
  return ScriptValue::borrow(object.ptr());
}

py::object from_script(const ScriptValue& value) {
  if (value.is_none()) return py::none();
  return py::reinterpret_borrow<py::object>(static_cast<PyObject*>(value.get()));
}

double number_arg(py::handle value, const char* where, const char* what) {
  if (PyFloat_Check(value.ptr())) return PyFloat_AS_DOUBLE(value.ptr());
  if (PyLong_Check(value.ptr())) {
    const double d = PyLong_AsDouble(value.ptr());
    if (d == -1.0 && PyErr_Occurred()) throw py::error_already_set();
    return d;
  }
  // Other numeric types (numpy scalars, fractions) through __float__; str is refused.
  if (!PyUnicode_Check(value.ptr()) && !PyBytes_Check(value.ptr()) && PyNumber_Check(value.ptr())) {
    const double d = PyFloat_AsDouble(value.ptr());
    if (d == -1.0 && PyErr_Occurred()) throw py::error_already_set();
    return d;
  }
  throw py::type_error(std::string(where) + ": " + what + " must be a number, not " +
                       std::string(py::str(py::type::handle_of(value).attr("__name__"))));
}

void bind_console(py::module_& m) {
  ScriptValue::install(&kPythonHooks);
  console::set_sink(&python_stdout_sink);
  // Restore the plain stdout sink before the interpreter goes away.
  py::module_::import("atexit").attr("register")(py::cpp_function([] { console::set_sink(nullptr); }));
  m.def(
      "_console_print", [](const std::string& line) { console::write_line(line); }, py::arg("line"),
      "Writes one line through the engine console (for tests of the console sink).");
}

}  // namespace vorn::py_bind
