#include <epoxy/glx.h>

#include "core/gl_context.h"

namespace vorn {

bool HasCurrentGLContext() noexcept { return glXGetCurrentContext() != nullptr; }

}  // namespace vorn
