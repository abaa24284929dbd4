// Every solid's buffers under a GL context: they upload on first bind with the sizes
// their arrays give, and leave no GL error.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

#include "gl_harness.h"
#include "shapes/solids.h"

namespace vorn {
namespace {

class SolidsGL : public test::GLTest {};

GLint bound_size(GLenum target) {
  GLint size = -1;
  glGetBufferParameteriv(target, GL_BUFFER_SIZE, &size);
  return size;
}

TEST_F(SolidsGL, EverySolidUploadsItsBuffers) {
  using Make = std::function<std::shared_ptr<Vorn_3DGameNode>()>;
  const Make makers[] = {
      [] { auto n = MakeNode<Vorn_3DBox>(); n->CreateBox(); n->GenTexCoords(0); return n; },
      [] { auto n = MakeNode<Vorn_3DCircle>(); n->CreateCircle(); n->GenTexCoords(0); return n; },
      [] { auto n = MakeNode<Vorn_3DSphere>(); n->CreateSphere(); n->GenTexCoords(0); return n; },
      [] { auto n = MakeNode<Vorn_3DConus>(); n->CreateConus(); return n; },
      [] { auto n = MakeNode<Vorn_3DCylinder>(); n->CreateCylinder(); return n; },
      [] { auto n = MakeNode<Vorn_3DTorus>(); n->CreateTorus(); return n; },
      [] { auto n = MakeNode<Vorn_3DTube>(); n->CreateTube(); return n; },
      [] { auto n = MakeNode<Vorn_3DCapsule>(); n->CreateCapsule(); return n; },
      [] { auto n = MakeNode<Vorn_3DPointLight>(); n->CreatePointLight(5.0); return n; },
  };
  for (const Make& make : makers) {
    const auto n = make();
    SCOPED_TRACE(n->GetNodeType());
    for (int s : n->VertexArray_Positon.keys()) {
      const auto& vbo = n->VVBOArray.at(s);
      vbo->bind();
      EXPECT_NE(vbo->gl_name(), 0u);
      EXPECT_EQ(bound_size(GL_ARRAY_BUFFER), static_cast<GLint>(vbo->count()) * 4);
      vbo->unbind();
      if (const auto* ibo = n->IVBOArray.find(s)) {
        (*ibo)->bind();
        EXPECT_EQ(bound_size(GL_ELEMENT_ARRAY_BUFFER), static_cast<GLint>(n->VIndexArray.at(s).size() * 2));
        (*ibo)->unbind();
      }
    }
  }
}

}  // namespace
}  // namespace vorn
