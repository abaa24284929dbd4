#include <epoxy/glx.h>
// After the loader.
#include <GL/freeglut.h>

#include <string>

#include "core/errors.h"
#include "core/gl_context.h"

namespace vorn {

// Asking GLX costs one thread-local read in the driver; no GL call is made, so the
// loader never needs a context to answer.
bool HasCurrentGLContext() noexcept { return glXGetCurrentContext() != nullptr; }

void RequireGLContext(std::string_view operation) {
  if (HasCurrentGLContext()) return;
  throw RuntimeError(std::string(operation) + ": no OpenGL context is current (create the window first)");
}

void RequireGlutInit(std::string_view operation) {
  // GLUT_INIT_STATE is the one query GLUT answers before glutInit.
  if (glutGet(GLUT_INIT_STATE)) return;
  throw RuntimeError(std::string(operation) + ": call glutInit() first");
}

}  // namespace vorn
