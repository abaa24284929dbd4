#pragma once
// Whether this thread has a current OpenGL context. Objects that release GL names in
// their destructors ask first: at process exit the window (and its context) may be
// gone before the last engine object is destroyed.
namespace vorn {

bool HasCurrentGLContext() noexcept;

}  // namespace vorn
