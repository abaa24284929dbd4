#pragma once
// Whether this thread has a current OpenGL context. Objects that release GL names in
// their destructors ask first: at process exit the window (and its context) may be
// gone before the last engine object is destroyed. Operations that draw or upload ask
// at their entry and throw instead: with no context the GL loader ends the process.
#include <string_view>

namespace vorn {

bool HasCurrentGLContext() noexcept;

// Throws RuntimeError "<operation>: no OpenGL context is current (create the window
// first)" when this thread has no current context. `operation` reads "Class.Name".
void RequireGLContext(std::string_view operation);

// Throws RuntimeError "<operation>: call glutInit() first" before GLUT is initialised:
// GLUT itself would end the process.
void RequireGlutInit(std::string_view operation);

}  // namespace vorn
