// The draw cache under a real driver: runs of node draws with the cache on and off give
// the same pictures, the same uniform values and GL state at every draw call, also when
// a subclass's draw, a script's own draw and code between runs change the state behind
// the cache, and a run leaves the state of the draw contract behind.
#include <array>
#include <memory>
#include <vector>

#include "core/gl_state_guard.h"
#include "gl_scene.h"
#include "node/node_run.h"
#include "shader/fx_3d.h"
#include "shader/fx_manage.h"

namespace vorn::test {
namespace {

using Node = Vorn_3DGameNode;
using NodeDrawCacheGL = NodeGLTest;

// What one draw call sees: the program, every value of its active uniforms, the texture
// bound on the active unit, and the fixed-function state a node draw sets.
std::vector<float> Snapshot() {
  std::vector<float> out;
  GLint program = 0;
  glGetIntegerv(GL_CURRENT_PROGRAM, &program);
  out.push_back(static_cast<float>(program));
  if (program != 0) {
    const auto p = static_cast<GLuint>(program);
    GLint count = 0;
    glGetProgramiv(p, GL_ACTIVE_UNIFORMS, &count);
    for (GLint i = 0; i < count; ++i) {
      char name[128];
      GLint size = 0;
      GLenum type = 0;
      glGetActiveUniform(p, static_cast<GLuint>(i), sizeof name, nullptr, &size, &type, name);
      const GLint location = glGetUniformLocation(p, name);
      if (location < 0) continue;  // built-in
      const bool ints = type == GL_INT || type == GL_BOOL || type == GL_SAMPLER_2D || type == GL_SAMPLER_CUBE;
      // Elements of arrays sit at consecutive locations.
      for (GLint e = 0; e < size; ++e) {
        float f[16] = {};
        GLint n[16] = {};
        if (ints) {
          glGetUniformiv(p, location + e, n);
          for (GLint v : n) out.push_back(static_cast<float>(v));
        } else {
          glGetUniformfv(p, location + e, f);
          out.insert(out.end(), f, f + 16);
        }
      }
    }
  }
  GLint modes[2] = {0, 0};
  glGetIntegerv(GL_POLYGON_MODE, modes);
  GLint front = 0;
  glGetIntegerv(GL_FRONT_FACE, &front);
  GLint unit = 0, texture = 0;
  glGetIntegerv(GL_ACTIVE_TEXTURE, &unit);
  glGetIntegerv(GL_TEXTURE_BINDING_2D, &texture);
  out.insert(out.end(), {static_cast<float>(unit), static_cast<float>(texture)});
  float modelview[16];
  glGetFloatv(GL_MODELVIEW_MATRIX, modelview);
  out.insert(out.end(), {static_cast<float>(modes[0]), static_cast<float>(modes[1]), static_cast<float>(front),
                         static_cast<float>(glIsEnabled(GL_CULL_FACE)), static_cast<float>(glIsEnabled(GL_TEXTURE_2D)),
                         static_cast<float>(glIsEnabled(GL_BLEND))});
  out.insert(out.end(), modelview, modelview + 16);
  return out;
}

std::vector<std::vector<float>> snapshots;
void RecordDraw() { snapshots.push_back(Snapshot()); }

// A subclass whose own step sends a colour behind the cache's back.
class RedSubmeshNode : public Node {
 public:
  using Node::Node;
  void prepare_uniform_for_shader(int) override {
    GLint program = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &program);
    glUniform4f(glGetUniformLocation(static_cast<GLuint>(program), "uSubmeshColor"), 1.0f, 0.0f, 0.0f, 1.0f);
  }
};

// A script's draw of its own: no engine draw, just the diffuse program's colour set to
// blue and left so. What the cache knew of that program before must not be trusted after.
class OwnDrawNode : public Node {
 public:
  using Node::Node;
  void draw(double, double, double) override {
    const GLuint program = FXManagerInstance->GetShader(Vorn_3DFX::FX_DIFFUSE).value_or(0);
    glUseProgram(program);
    glUniform4f(glGetUniformLocation(program, "uSubmeshColor"), 0.0f, 0.0f, 1.0f, 1.0f);
    glUseProgram(0);
  }
};

struct Frame {
  std::vector<std::vector<float>> draws;
  std::vector<unsigned char> pixels;
};

TEST_F(NodeDrawCacheGL, RunsDrawTheSameWithAndWithoutTheCache) {
  if (!HasContext()) GTEST_SKIP();
  scene->ambient = {0.9, 0.8, 0.7};
  scene->sunDir = {0.0, 0.0, -0.5};
  std::vector<std::shared_ptr<Node>> nodes;
  // Two nodes of one program and colour, one of another colour, a subclass between them.
  for (int i = 0; i < 3; ++i) {
    nodes.push_back(Quad(10 + 30 * i, 10, 25, 25, Vorn_3DFX::FX_DIFFUSE));
    nodes.back()->SetSubMeshColor(0, i == 2 ? 0.2 : 0.6, 0.5, 1.0);
  }
  nodes.insert(nodes.begin() + 1, Quad<RedSubmeshNode>(100, 10, 25, 25, Vorn_3DFX::FX_DIFFUSE));
  // A node of the same colour as the one before it, with a script's own draw between.
  nodes.insert(nodes.begin() + 3, MakeNode<OwnDrawNode>());
  nodes.insert(nodes.begin() + 4, Quad(10, 90, 25, 25, Vorn_3DFX::FX_DIFFUSE));
  nodes[4]->SetSubMeshColor(0, 0.6, 0.5, 1.0);
  // Unshaded after shaded: the fixed-function draw must not inherit the program.
  nodes.push_back(Quad(130, 10, 25, 25, std::nullopt, kImmediate));
  // A textured node, a wire frame, back faces culled with either winding, blending.
  auto textured = Quad(160, 10, 25, 25, Vorn_3DFX::FX_TEXTURE, kUV);
  textured->LoadSubMeshTextureFromImage(0, 0, std::make_shared<std::vector<std::uint8_t>>(12, 200), "RGB", 2, 2);
  nodes.push_back(textured);
  // The same texture drawn without a program, by the fixed-function path.
  auto unshadedTextured = Quad(40, 90, 25, 25, std::nullopt, kUV);
  unshadedTextured->LoadSubMeshTextureFromImage(0, 0, std::make_shared<std::vector<std::uint8_t>>(12, 90), "RGB", 2, 2);
  nodes.push_back(unshadedTextured);
  nodes.push_back(Quad(190, 10, 25, 25, Vorn_3DFX::FX_DIFFUSE));
  nodes.back()->SetWireFrameMode(true);
  nodes.push_back(Quad(220, 10, 25, 25, Vorn_3DFX::FX_DIFFUSE));
  nodes.back()->SetSubMeshShapeType(0, glc::TRIANGLES, glc::CW);
  nodes.push_back(Quad(250, 10, 25, 25, Vorn_3DFX::FX_DIFFUSE));
  nodes.back()->SetSubMeshShapeType(0, glc::TRIANGLES, glc::CCW);
  nodes.back()->SetSubMeshAlphaMode(0);
  // A parent with two children of the same program, one of them rotated.
  auto parent = Quad(10, 50, 20, 20, Vorn_3DFX::FX_DIFFUSE);
  Quad(30, 0, 20, 20, Vorn_3DFX::FX_DIFFUSE, 0, parent);
  auto child = Quad(60, 0, 20, 20, Vorn_3DFX::FX_DIFFUSE, 0, parent);
  child->SetRXYZ(0, 0, 10);
  parent->update(0);
  nodes.push_back(parent);
  const GLuint diffuse = Program(Vorn_3DFX::FX_DIFFUSE);

  auto draw = [&](bool cache) {
    gl_state::SetDrawCacheEnabled(cache);
    gl_state::drawCache.skipped = 0;
    snapshots.clear();
    gl_state::drawCache.drawObserver = RecordDraw;
    glClear(GL_COLOR_BUFFER_BIT);
    {
      const NodeDrawRun run;
      for (const auto& n : nodes) run.draw(*n, 0, 0, 0);
    }
    // Code between runs changes what the last run left behind.
    glUseProgram(diffuse);
    glUniform4f(glGetUniformLocation(diffuse, "uSubmeshColor"), 0.0f, 1.0f, 0.0f, 1.0f);
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    glEnable(GL_CULL_FACE);
    glFrontFace(GL_CW);
    glUseProgram(0);
    {
      const NodeDrawRun run;
      for (const auto& n : nodes) run.draw(*n, 0, 15, 0);
    }
    gl_state::drawCache.drawObserver = nullptr;
    // The contract holds after a run.
    GLint program = -1, arrayBuffer = -1, elementBuffer = -1;
    glGetIntegerv(GL_CURRENT_PROGRAM, &program);
    glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &arrayBuffer);
    glGetIntegerv(GL_ELEMENT_ARRAY_BUFFER_BINDING, &elementBuffer);
    EXPECT_EQ(program, 0);
    EXPECT_EQ(arrayBuffer, 0);
    EXPECT_EQ(elementBuffer, 0);
    EXPECT_FALSE(glIsEnabled(GL_VERTEX_ARRAY));
    EXPECT_FALSE(glIsEnabled(GL_NORMAL_ARRAY));
    Frame f{snapshots, std::vector<unsigned char>(kWindowWidth * kWindowHeight * 4)};
    glReadPixels(0, 0, kWindowWidth, kWindowHeight, GL_RGBA, GL_UNSIGNED_BYTE, f.pixels.data());
    return f;
  };

  const Frame uncached = draw(false);
  EXPECT_EQ(gl_state::drawCache.skipped, 0u);
  const Frame cached = draw(true);
  EXPECT_GT(gl_state::drawCache.skipped, 20u);
  gl_state::SetDrawCacheEnabled(true);
  ASSERT_EQ(cached.draws.size(), uncached.draws.size());
  // Every node and the two children draw once a run, except the node with its own draw.
  EXPECT_EQ(cached.draws.size(), 2u * (nodes.size() + 1));
  for (std::size_t i = 0; i < cached.draws.size(); ++i) EXPECT_EQ(cached.draws[i], uncached.draws[i]) << "draw " << i;
  EXPECT_TRUE(cached.pixels == uncached.pixels);
  EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

}  // namespace
}  // namespace vorn::test
