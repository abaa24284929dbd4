#include "bind_common.h"

namespace vorn::py_bind {

void bind_actions(py::module_&) {}

}  // namespace vorn::py_bind
