// LoadOBJIntoNode on a plain node under a real driver: submeshes, vertex data, indices,
// texture records, buffers and the program; a bad file leaves the node untouched.
#include <fstream>

#include "core/errors.h"
#include "gl_scene.h"
#include "mesh/obj_load.h"
#include "mesh/obj_reader.h"
#include "shader/fx_3d.h"
#include "texture_test_files.h"

namespace vorn::test {
namespace {

class ObjLoadGL : public NodeGLTest {
 protected:
  std::string Write(const std::string& name, const std::string& text) {
    const std::string path = dir.file(name);
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
  TempDir dir;
};

TEST_F(ObjLoadGL, FillsSubmeshesBuffersTexturesAndProgram) {
  if (!HasContext()) return;
  Quadrants(4)->save(dir.file("skin.png"));
  Write("crate.mtl", "newmtl skin\nmap_Kd skin.png\nnewmtl bare\nKd 1 1 1\n");
  const std::string obj = Write("crate.obj",
                                "mtllib ignored.mtl\nusemtl skin\n"
                                "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 1 1 0\n"
                                "vn 0 0 1\nvn 0 0 1\nvn 0 0 1\nvn 0 0 1\n"
                                "vt 0 0\nvt 1 0\nvt 0 1\nvt 1 1\n"
                                "f 0/0/0 1/1/1 2/2/2\nf 1/1/1 3/3/3 2/2/2 0/0/0\n"
                                "usemtl bare\nv 5 5 5\nvn 0 1 0\nvt 0.5 0.5\nf 0/0/0 0/0/0 0/0/0\n");
  auto node = MakeNode<Vorn_3DGameNode>(0, 0, 0);
  {
    ConsoleCapture quiet;
    LoadOBJIntoNode(*node, obj, false);
  }
  EXPECT_EQ(node->MeshFile, obj);
  EXPECT_TRUE(node->withNormal);
  EXPECT_TRUE(node->withTexUV);
  EXPECT_EQ(node->SubMeshList, (std::vector<std::string>{"submesh_0", "submesh_1"}));
  EXPECT_EQ(node->VertexDescArray.at(0), glc::T2F_N3F_V3F);
  EXPECT_EQ(node->VertexArray_Custom.at(0).size(), 4u * 8u);
  EXPECT_EQ(node->VertexArray_Custom.at(1), (FloatArray{0.5, 0.5, 0, 1, 0, 5, 5, 5}));
  EXPECT_EQ(node->VIndexArray.at(0), (IndexArray{0, 1, 2, 1, 3, 2}));
  EXPECT_EQ(node->VIndexArray.at(1), (IndexArray{0, 0, 0}));
  // The texture of the first material, none for the second.
  ASSERT_EQ(node->TextureArray.at(0).size(), 1u);
  EXPECT_EQ(node->TextureArray.at(0)[0].width, 4);
  EXPECT_TRUE(node->TextureArray.at(1).empty());
  // Buffers, the box over both groups and the normal-lit program.
  ASSERT_TRUE(node->VVBOArray.find(0) && node->IVBOArray.find(1));
  EXPECT_EQ(node->SubMeshShapeCount.at(0), 6);
  EXPECT_EQ(node->boxMax.x, 5.0);
  EXPECT_EQ(node->boxMin.y, 0.0);
  EXPECT_EQ(node->SubMeshFX.at(0), Program(Vorn_3DFX::FX_DIFFUSE_TEXTURE));
  EXPECT_EQ(node->SubMeshFX.at(1), Program(Vorn_3DFX::FX_DIFFUSE_TEXTURE));

  // Read twice, the file adds its submeshes again.
  {
    ConsoleCapture quiet;
    LoadOBJIntoNode(*node, obj, false);
  }
  EXPECT_EQ(node->SubMeshList.size(), 4u);
  EXPECT_EQ(node->SubMeshList[2], "submesh_0");
}

TEST_F(ObjLoadGL, WithoutNormalsTakesTheTextureProgramAndNoUVLayout) {
  if (!HasContext()) return;
  const std::string obj = Write("flat.obj", "usemtl m\nv 0 0 0\nvn 0 0 1\nvt 0 0\nf 0 0 0\n");
  auto node = MakeNode<Vorn_3DGameNode>(0, 0, 0);
  {
    ConsoleCapture quiet;
    LoadOBJIntoNode(*node, obj, false);
  }
  EXPECT_FALSE(node->withNormal);
  EXPECT_FALSE(node->withTexUV);
  EXPECT_EQ(node->VertexDescArray.at(0), glc::N3F_V3F);
  EXPECT_EQ(node->SubMeshFX.at(0), Program(Vorn_3DFX::FX_TEXTURE));
}

TEST_F(ObjLoadGL, BadFilesLeaveTheNodeAsItWas) {
  if (!HasContext()) return;
  auto node = MakeNode<Vorn_3DGameNode>(0, 0, 0);
  node->MeshFile = "before";
  const struct {
    const char* text;
    bool index;  // IndexError, else another engine error
  } cases[] = {
      {"usemtl a\nv 0 0 0\nf 0 0 0\nusemtl b\nv 1 1 1\nvt 0 0\nvn 0 0 1\nf 0 0\n", true},
      {"usemtl a\nv 0 0 0\nvt 0 0\nvn 0 0 1\nf 0 0 0\nusemtl b\nv 1 x 1\n", false},
      {"usemtl a\nv 0 0 0\nvt 0 0\nvn 0 0 1\nf 0 0 70000\n", false},
      // Counted from 1, as many exporters write them: the last corner is past the end.
      {"usemtl a\nv 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nvt 0 0\nvt 0 0\nvn 0 0 1\nvn 0 0 1\nvn 0 0 1\nf 1 2 3\n", false},
      {"mtllib\nusemtl a\n", false},  // no MTL beside the file
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    const std::string obj = Write("bad.obj", c.text);
    if (c.index) {
      EXPECT_THROW(LoadOBJIntoNode(*node, obj, false), IndexError);
    } else {
      EXPECT_THROW(LoadOBJIntoNode(*node, obj, false), Error);
    }
    EXPECT_EQ(node->MeshFile, "before");
    EXPECT_TRUE(node->SubMeshList.empty());
    EXPECT_TRUE(node->VertexArray_Custom.empty());
  }
  // A path that exists nowhere does nothing, and says nothing.
  ConsoleCapture console;
  LoadOBJIntoNode(*node, dir.file("absent.obj"), false);
  EXPECT_EQ(node->MeshFile, "before");
  EXPECT_TRUE(console.lines().empty());
}

}  // namespace
}  // namespace vorn::test
