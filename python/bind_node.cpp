#include "bind_common.h"

namespace vorn::py_bind {

void bind_node(py::module_&) {}

}  // namespace vorn::py_bind
