// GL state around draws that fail: whatever a node's draw throws, the frame buffer,
// viewport, program, matrix stacks, client arrays and texture unit of the enclosing
// pass come back. Also: a dropped shader manager deletes its programs.
#include <array>
#include <memory>
#include <stdexcept>

#include "core/gl_state_guard.h"
#include "gl_scene.h"
#include "node/program_uniforms.h"
#include "resource/frame_buffer_gl.h"
#include "shader/fx_3d.h"

namespace vorn::test {
namespace {

using GLStateGuardGL = NodeGLTest;

GLint Integer(GLenum name) {
  GLint value = -1;
  glGetIntegerv(name, &value);
  return value;
}

std::array<GLint, 4> CurrentViewport() {
  std::array<GLint, 4> v{};
  glGetIntegerv(GL_VIEWPORT, v.data());
  return v;
}

// Leaves every piece of the contract changed, then throws from inside the draw.
class FailingNode : public Vorn_3DGameNode {
 public:
  void draw_allsubmesh() override {
    draw_begin(10, 0, 0);
    draw_begin(0, 10, 0);
    gl_state::UseProgram(Program(Vorn_3DFX::FX_DIFFUSE));
    gl_state::SelectTextureUnit(3);
    glEnableClientState(GL_VERTEX_ARRAY);
    gl_state::MarkClientArrays();
    glMatrixMode(GL_PROJECTION);
    throw std::runtime_error("draw failed");
  }
};

// What a draw must find again after it has thrown.
struct PassState {
  GLint frameBuffer;
  std::array<GLint, 4> viewport;
};

void ExpectContractRestored(const PassState& pass, GLint modelviewDepth, GLint projectionDepth) {
  EXPECT_EQ(Integer(GL_FRAMEBUFFER_BINDING), pass.frameBuffer);
  EXPECT_EQ(CurrentViewport(), pass.viewport);
  EXPECT_EQ(Integer(GL_CURRENT_PROGRAM), 0);
  EXPECT_EQ(Integer(GL_MATRIX_MODE), GL_MODELVIEW);
  EXPECT_EQ(Integer(GL_MODELVIEW_STACK_DEPTH), modelviewDepth);
  EXPECT_EQ(Integer(GL_PROJECTION_STACK_DEPTH), projectionDepth);
  EXPECT_EQ(Integer(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
  EXPECT_FALSE(glIsEnabled(GL_VERTEX_ARRAY));
  EXPECT_EQ(gl_state::tracked.modelviewPushes, 0);
}

std::shared_ptr<FailingNode> FailingTargetNode(const ColourFrameBuffer& target, int side) {
  auto node = std::make_shared<FailingNode>();
  node->CreateSubMesh("one");
  node->TargetFrameBuffer = target.frameBuffer;
  node->TargetFrameWidth = side;
  node->TargetFrameHeight = side;
  return node;
}

TEST_F(GLStateGuardGL, ThrowingTargetDrawRestoresTheEnclosingPass) {
  const ColourFrameBuffer inner = CreateColourFrameBuffer(16, 16, false, true);
  const ColourFrameBuffer outer = CreateColourFrameBuffer(48, 32, false, true);
  const GLint modelviewDepth = Integer(GL_MODELVIEW_STACK_DEPTH);
  const GLint projectionDepth = Integer(GL_PROJECTION_STACK_DEPTH);

  struct Case {
    const char* name;
    bool insideOuterPass;
    PassState expected;
  };
  const Case cases[] = {
      {"on the window", false, {0, {0, 0, kWindowWidth, kWindowHeight}}},
      {"inside another target's pass", true, {static_cast<GLint>(outer.frameBuffer), {0, 0, 48, 32}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    auto node = FailingTargetNode(inner, 16);
    if (c.insideOuterPass) {
      const gl_state::PassScope pass(outer.frameBuffer, {0, 0, 48, 32}, {0, 0, kWindowWidth, kWindowHeight});
      EXPECT_THROW(node->draw(), std::runtime_error);
      ExpectContractRestored(c.expected, modelviewDepth, projectionDepth);
    } else {
      EXPECT_THROW(node->draw(), std::runtime_error);
      ExpectContractRestored(c.expected, modelviewDepth, projectionDepth);
    }
  }
  // Leaving the outer pass put the window back.
  EXPECT_EQ(Integer(GL_FRAMEBUFFER_BINDING), 0);
  EXPECT_EQ(CurrentViewport(), (std::array<GLint, 4>{0, 0, kWindowWidth, kWindowHeight}));

  // The failed node draws again once it no longer fails: its program is bound anew.
  auto quad = Quad(100, 100, 40, 40, Vorn_3DFX::FX_DIFFUSE);
  quad->CurrSubMeshFX = Program(Vorn_3DFX::FX_DIFFUSE);  // as a failed draw leaves it
  scene->ambient = {1.0, 1.0, 1.0};
  scene->sunDir = {0.0, 0.0, -1.0};
  scene->sunColor = {1.0, 1.0, 1.0};
  quad->SetSubMeshColor(0, 1.0, 0.0, 0.0);
  glColor4f(1, 1, 1, 1);  // what the quad would show without its program
  quad->draw();
  ExpectRGB(Pixel(120, 120), RGBA{255, 0, 0, 255}, 3, "quad after the failure");
}

TEST_F(GLStateGuardGL, DroppedShaderManagerDeletesItsPrograms) {
  unsigned program = 0;
  {
    ConsoleCapture quiet;
    Vorn_FXManage manager;
    program = *manager.GetShader(Vorn_3DFX::FX_DIFFUSE);
    ASSERT_TRUE(glIsProgram(program));
    EXPECT_EQ(GetProgramUniforms(program).program, program);
  }
  EXPECT_FALSE(glIsProgram(program));
  // The node draw's cache forgot the name: a program made under it later is looked up anew.
  EXPECT_EQ(GetProgramUniforms(program).uModelMatrix, -1);
}

}  // namespace
}  // namespace vorn::test
