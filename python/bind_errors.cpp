// Maps the engine's exceptions onto the Python exceptions of the same names.
#include "bind_common.h"
#include "core/errors.h"

namespace vorn::py_bind {

void bind_errors(py::module_&) {
  py::register_exception_translator([](std::exception_ptr p) {
    try {
      if (p) std::rethrow_exception(p);
    } catch (const KeyError& e) {
      PyErr_SetString(PyExc_KeyError, e.what());
    } catch (const IndexError& e) {
      PyErr_SetString(PyExc_IndexError, e.what());
    } catch (const TypeError& e) {
      PyErr_SetString(PyExc_TypeError, e.what());
    } catch (const ValueError& e) {
      PyErr_SetString(PyExc_ValueError, e.what());
    } catch (const ZeroDivisionError& e) {
      PyErr_SetString(PyExc_ZeroDivisionError, e.what());
    } catch (const AttributeError& e) {
      PyErr_SetString(PyExc_AttributeError, e.what());
    } catch (const RecursionError& e) {
      PyErr_SetString(PyExc_RecursionError, e.what());
    } catch (const FileNotFoundError& e) {
      PyErr_SetString(PyExc_FileNotFoundError, e.what());
    } catch (const OSError& e) {
      PyErr_SetString(PyExc_OSError, e.what());
    } catch (const RuntimeError& e) {
      PyErr_SetString(PyExc_RuntimeError, e.what());
    }
  });
}

}  // namespace vorn::py_bind
