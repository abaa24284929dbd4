#pragma once
// The raw GL baselines of the draw benchmarks, with locations and matrices prepared
// beforehand, for nodes with one indexed FX_DIFFUSE submesh:
//   DrawSameCalls    every call a node draw issues when nothing is cached (matrix push
//                    and pop, program switch, the program's uniforms, texture enable,
//                    polygon and cull state, buffer binds, interleaved arrays, the draw,
//                    the unbinds);
//   DrawFewestCalls  the fewest calls that draw the same picture: the program, the
//                    shared uniforms and the state once, then per node its matrix and
//                    colour, its buffers, the arrays and the draw.
//   DrawFewestCalls(false)  the same calls without the per-node matrix and colour: a
//                    different picture (every quad with the first one's), kept to show
//                    what the driver charges for a draw whose uniforms changed.
#include <array>
#include <vector>

#include "core/gl_api.h"
#include "node/game_node.h"
#include "shader/fx_3d.h"
#include "shader/fx_manage.h"

namespace vorn::bench {

class RawDiffuseNodes {
 public:
  // Reads what each node's draw needs; the nodes' buffers must be uploaded already.
  template <class Nodes>
  RawDiffuseNodes(const Nodes& nodes, std::array<float, 3> ambient, std::array<float, 6> sun)
      : ambient_(ambient), sun_(sun) {
    program_ = *FXManagerInstance->GetShader(Vorn_3DFX::FX_DIFFUSE);
    uModel_ = glGetUniformLocation(program_, "uModelMatrix");
    uColour_ = glGetUniformLocation(program_, "uSubmeshColor");
    uAmbient_ = glGetUniformLocation(program_, "uAmbientColor");
    uSun_ = glGetUniformLocation(program_, "uSunLight");
    for (const auto& n : nodes) {
      const auto c = n->GetSubMeshColor(0);
      nodes_.push_back({n->GetWorldMatrix().FlattenFloat(),
                        {float(c[0]), float(c[1]), float(c[2]), float(c[3])},
                        n->VVBOArray.at(0)->gl_name(),
                        n->IVBOArray.at(0)->gl_name(),
                        GLsizei(n->SubMeshShapeCount.at(0))});
    }
  }

  void DrawSameCalls() const {
    for (const Node& r : nodes_) {
      glPushMatrix();
      glUseProgram(program_);
      SendNodeUniforms(r);
      glUniform3fv(uAmbient_, 1, ambient_.data());
      glUniform3fv(uSun_, 2, sun_.data());
      glEnable(GL_TEXTURE_2D);
      glPolygonMode(GL_FRONT, GL_FILL);
      glPolygonMode(GL_BACK, GL_FILL);
      glDisable(GL_CULL_FACE);
      DrawBuffers(r);
      glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
      glBindBuffer(GL_ARRAY_BUFFER, 0);
      glBindTexture(GL_TEXTURE_2D, 0);
      glUseProgram(0);
      glPopMatrix();
    }
  }

  void DrawFewestCalls(bool perNodeUniforms = true) const {
    glUseProgram(program_);
    glUniform3fv(uAmbient_, 1, ambient_.data());
    glUniform3fv(uSun_, 2, sun_.data());
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glDisable(GL_CULL_FACE);
    if (!perNodeUniforms && !nodes_.empty()) SendNodeUniforms(nodes_.front());
    for (const Node& r : nodes_) {
      if (perNodeUniforms) SendNodeUniforms(r);
      DrawBuffers(r);
    }
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_NORMAL_ARRAY);
    glUseProgram(0);
  }

 private:
  struct Node {
    std::array<float, 16> model;
    std::array<float, 4> colour;
    GLuint vbo, ibo;
    GLsizei count;
  };
  void SendNodeUniforms(const Node& r) const {
    glUniformMatrix4fv(uModel_, 1, GL_FALSE, r.model.data());
    glUniform4fv(uColour_, 1, r.colour.data());
  }
  static void DrawBuffers(const Node& r) {
    glBindBuffer(GL_ARRAY_BUFFER, r.vbo);
    glInterleavedArrays(GL_N3F_V3F, 0, nullptr);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, r.ibo);
    glDrawElements(GL_TRIANGLES, r.count, GL_UNSIGNED_SHORT, nullptr);
  }

  std::vector<Node> nodes_;
  std::array<float, 3> ambient_;
  std::array<float, 6> sun_;
  GLuint program_ = 0;
  GLint uModel_ = -1, uColour_ = -1, uAmbient_ = -1, uSun_ = -1;
};

}  // namespace vorn::bench
