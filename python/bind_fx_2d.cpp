#include "bind_common.h"

namespace vorn::py_bind {

void bind_fx_2d(py::module_&) {}

}  // namespace vorn::py_bind
