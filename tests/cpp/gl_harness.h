#pragma once
// One GLUT window per test process, created on first use under the display that
// scripts/test provides (Xvfb with Mesa llvmpipe). GL tests derive from GLTest, which
// fails a test that leaves a GL error behind. Without a context (skipped, or failed
// under VORN_REQUIRE_GL) a fixture makes no GL call at all, in SetUp or TearDown:
// derived fixtures test HasContext(), not IsSkipped().
#include <epoxy/gl.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace vorn::test {

// Creates the window and makes its context current; false when no display exists.
bool EnsureGLContext();

// The window's size in pixels.
inline constexpr int kWindowWidth = 320;
inline constexpr int kWindowHeight = 240;

class GLTest : public ::testing::Test {
 protected:
  void SetUp() override {
    has_context_ = EnsureGLContext();
    if (!has_context_) {
      // scripts/test always provides a display and sets VORN_REQUIRE_GL: never skip there.
      if (std::getenv("VORN_REQUIRE_GL")) FAIL() << "no OpenGL context although VORN_REQUIRE_GL is set";
      GTEST_SKIP() << "no display for an OpenGL context";
    }
    while (glGetError() != GL_NO_ERROR) {
    }
  }
  void TearDown() override {
    if (!has_context_) return;
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)) << "GL error left by the test";
    while (glGetError() != GL_NO_ERROR) {
    }
  }
  // True once SetUp made the context current; false when the test was skipped or failed.
  bool HasContext() const { return has_context_; }

 private:
  bool has_context_ = false;
};

}  // namespace vorn::test
