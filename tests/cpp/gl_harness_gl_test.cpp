// The harness itself: a context exists, is compatibility-profile GL, and reads back
// what it clears to.
#include <cstring>

#include "gl_harness.h"

namespace vorn::test {
namespace {

using GLHarness = GLTest;

TEST_F(GLHarness, ClearsAndReadsBackPixels) {
  EXPECT_GE(epoxy_gl_version(), 30);
  glViewport(0, 0, kWindowWidth, kWindowHeight);
  glClearColor(1.0f, 0.0f, 0.0f, 1.0f);
  glClear(GL_COLOR_BUFFER_BIT);
  glFinish();
  unsigned char pixel[4] = {};
  glReadPixels(kWindowWidth / 2, kWindowHeight / 2, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
  EXPECT_EQ(pixel[0], 255);
  EXPECT_EQ(pixel[1], 0);
  EXPECT_EQ(pixel[2], 0);
}

}  // namespace
}  // namespace vorn::test
