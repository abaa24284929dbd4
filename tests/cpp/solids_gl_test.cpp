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
  std::vector<std::shared_ptr<Vorn_3DGameNode>> solids;
  auto box = MakeNode<Vorn_3DBox>();
  box->CreateBox();
  box->GenTexCoords(0);
  solids.push_back(box);
  auto circle = MakeNode<Vorn_3DCircle>();
  circle->CreateCircle();
  circle->GenTexCoords(0);
  solids.push_back(circle);
  auto sphere = MakeNode<Vorn_3DSphere>();
  sphere->CreateSphere();
  sphere->GenTexCoords(0);
  solids.push_back(sphere);
  auto conus = MakeNode<Vorn_3DConus>();
  conus->CreateConus();
  solids.push_back(conus);
  auto cylinder = MakeNode<Vorn_3DCylinder>();
  cylinder->CreateCylinder();
  solids.push_back(cylinder);
  auto torus = MakeNode<Vorn_3DTorus>();
  torus->CreateTorus();
  solids.push_back(torus);
  auto tube = MakeNode<Vorn_3DTube>();
  tube->CreateTube();
  solids.push_back(tube);
  auto capsule = MakeNode<Vorn_3DCapsule>();
  capsule->CreateCapsule();
  solids.push_back(capsule);
  auto light = MakeNode<Vorn_3DPointLight>();
  light->CreatePointLight(5.0);
  solids.push_back(light);

  for (const auto& n : solids) {
    SCOPED_TRACE(n->GetNodeType());
    for (int s : n->VertexArray_Positon.keys()) {
      const auto& vbo = n->VVBOArray.at(s);
      const auto floats = static_cast<GLint>(vbo->count());
      vbo->bind();
      EXPECT_NE(vbo->gl_name(), 0u);
      EXPECT_EQ(bound_size(GL_ARRAY_BUFFER), floats * 4);
      vbo->unbind();
      if (const auto* ibo = n->IVBOArray.find(s)) {
        (*ibo)->bind();
        EXPECT_EQ(bound_size(GL_ELEMENT_ARRAY_BUFFER), static_cast<GLint>(n->VIndexArray.at(s).size() * 2));
        (*ibo)->unbind();
      }
    }
  }
  // The box alone has no index buffer; it is drawn from its vertices.
  EXPECT_FALSE(box->IVBOArray.contains(0));
  EXPECT_EQ(box->VVBOArray.at(0)->count(), 24u * 8);
}

}  // namespace
}  // namespace vorn
