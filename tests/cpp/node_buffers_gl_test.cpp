// Buffer objects of a node under a GL context: upload on first bind, release when
// an entry is replaced.
#include <gtest/gtest.h>

#include "gl_harness.h"
#include "node/game_node.h"

namespace vorn {
namespace {

class NodeBuffersGL : public test::GLTest {};

GLint bound_size(GLenum target) {
  GLint size = -1;
  glGetBufferParameteriv(target, GL_BUFFER_SIZE, &size);
  return size;
}

TEST_F(NodeBuffersGL, UploadOnFirstBindAndReleaseOnReplace) {
  Vorn_3DGameNode n;
  const int s = n.CreateSubMesh("quad", true);
  n.SetSubMeshShapeType(s, GL_QUADS);
  const double pos[12] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
  const double nrm[12] = {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1};
  const double uv[8] = {0, 0, 1, 0, 1, 1, 0, 1};
  n.PushQuadVertex_Postion(s, std::span<const double, 12>(pos));
  n.PushQuadVertex_Normal(s, std::span<const double, 12>(nrm));
  n.PushQuadVertex_UV(s, std::span<const double, 8>(uv));
  n.PushQuadVIndex(s, 0, 1, 2, 3);
  n.BuildVBO();

  auto vbo = n.VVBOArray.at(s);
  auto ibo = n.IVBOArray.at(s);
  EXPECT_EQ(vbo->gl_name(), 0u);  // nothing reaches GL before the first bind
  vbo->bind();
  const GLuint vertexName = vbo->gl_name();
  ASSERT_NE(vertexName, 0u);
  EXPECT_EQ(bound_size(GL_ARRAY_BUFFER), 32 * 4);
  EXPECT_TRUE(vbo->float_data()->empty());  // the CPU copy is dropped after upload
  vbo->unbind();
  ibo->bind();
  EXPECT_EQ(bound_size(GL_ELEMENT_ARRAY_BUFFER), 4 * 2);
  ibo->unbind();
  vbo->bind();  // a second bind reuses the buffer
  EXPECT_EQ(vbo->gl_name(), vertexName);
  vbo->unbind();

  // Rebuilding replaces the entry; the old buffer goes with the last reference.
  n.BuildSubMeshVBO(s);
  EXPECT_NE(n.VVBOArray.at(s), vbo);
  EXPECT_EQ(glIsBuffer(vertexName), GL_TRUE);
  vbo.reset();
  EXPECT_EQ(glIsBuffer(vertexName), GL_FALSE);
}

}  // namespace
}  // namespace vorn
