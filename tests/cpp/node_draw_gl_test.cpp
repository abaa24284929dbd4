// The node draw under a real driver: pixels of lit, textured, blended and wire-frame
// quads, the buffered and immediate paths, hierarchy, the uniforms a program receives,
// effect assignment with its undo, and the immediate draw node.
#include <array>
#include <cmath>
#include <memory>
#include <string>

#include "gl_scene.h"
#include "shader/fx_3d.h"
#include "shapes/draw_node.h"

namespace vorn::test {
namespace {

using Node = Vorn_3DGameNode;
using NodeDrawGL = NodeGLTest;

GLint IntUniform(GLuint program, const char* name) {
  GLint v = -12345;
  glGetUniformiv(program, glGetUniformLocation(program, name), &v);
  return v;
}

std::array<float, 4> FloatUniform(GLuint program, const char* name) {
  std::array<float, 4> v{-1, -1, -1, -1};
  glGetUniformfv(program, glGetUniformLocation(program, name), v.data());
  return v;
}

// 0.5 * (1 + 0.5) of ambient * submesh colour * sun colour, per component.
std::array<double, 3> HalfLambert(const std::array<double, 3>& a, const std::array<double, 3>& m,
                                  const std::array<double, 3>& sun) {
  return {a[0] * m[0] * sun[0] * 0.75 * 255, a[1] * m[1] * sun[1] * 0.75 * 255, a[2] * m[2] * sun[2] * 0.75 * 255};
}

TEST_F(NodeDrawGL, DiffuseQuadShowsHalfLambertSunColourOnBothPaths) {
  scene->ambient = {1.0, 0.5, 0.8};
  scene->sunDir = {0.0, 0.0, -0.5};  // dot(N, -sunDir) = 0.5
  scene->sunColor = {0.8, 0.4, 1.0};
  const auto want = HalfLambert(scene->ambient, {0.5, 1.0, 1.0}, scene->sunColor);

  auto buffered = Quad(40, 30, 60, 50, Vorn_3DFX::FX_DIFFUSE);
  auto immediate = Quad(200, 30, 60, 50, Vorn_3DFX::FX_DIFFUSE, kImmediate);
  ASSERT_FALSE(immediate->IVBOArray.contains(0));
  for (const auto& n : {buffered, immediate}) {
    n->SetSubMeshColor(0, 0.5, 1.0, 1.0);
    n->draw();
  }
  EXPECT_EQ(scene->batchCount, 2);
  EXPECT_TRUE(buffered->VVBOArray.at(0)->uploaded());
  EXPECT_FALSE(immediate->VVBOArray.at(0)->uploaded());  // the immediate path sends the arrays
  EXPECT_FALSE(buffered->GetShader());                    // cleared after the node's submeshes

  for (const auto& [x0, what] : {std::pair{40, "buffered"}, std::pair{200, "immediate"}}) {
    ExpectRGB(Pixel(x0 + 1, 31), want, 2, what);
    ExpectRGB(Pixel(x0 + 58, 78), want, 2, what);
    EXPECT_EQ(Pixel(x0 - 2, 55), (RGBA{0, 0, 0, 255})) << what;
    EXPECT_EQ(Pixel(x0 + 30, 82), (RGBA{0, 0, 0, 255})) << what;
  }
}

TEST_F(NodeDrawGL, HiddenNodeHidesItsSubtreeAndChildrenDrawWithTheParentTransform) {
  auto parent = Quad(100, 50, 20, 20, Vorn_3DFX::FX_DIFFUSE);
  auto child = Quad(40, 60, 20, 20, Vorn_3DFX::FX_DIFFUSE, 0, parent);
  parent->SetSXYZ(2, 2, 1);
  parent->update(0);  // child world origin: (100 + 2 * 40, 50 + 2 * 60), quad 40 x 40

  parent->SetVisible(false);
  parent->draw();
  EXPECT_EQ(scene->batchCount, 0);
  EXPECT_EQ(Pixel(200, 190), (RGBA{0, 0, 0, 255}));

  parent->SetVisible(true);
  parent->draw(0, 0, 0);
  EXPECT_EQ(scene->batchCount, 2);
  EXPECT_NE(Pixel(138, 88), (RGBA{0, 0, 0, 255}));   // parent, scaled to 40 x 40
  EXPECT_NE(Pixel(218, 208), (RGBA{0, 0, 0, 255}));  // child, near its far corner
  EXPECT_EQ(Pixel(222, 200), (RGBA{0, 0, 0, 255}));  // beyond the scaled child
}

TEST_F(NodeDrawGL, TexturedQuadUploadsLazilyAndFogDisabledSendsFiveZeros) {
  auto n = Quad(10, 10, 40, 40, Vorn_3DFX::FX_TEXTURE, kUV);
  auto pixels = std::make_shared<std::vector<std::uint8_t>>();
  for (int i = 0; i < 3 * 3; ++i) pixels->insert(pixels->end(), {200, 100, 50});  // 3 x 3 RGB: odd rows
  TextureInfo rec;
  rec.imgData = pixels;
  rec.Format = "RGB";
  rec.width = rec.height = 3;
  n->TextureArray.at(0).push_back(rec);

  scene->EnableFog();
  n->draw();
  const TextureInfo& stored = n->TextureArray.at(0).front();
  EXPECT_TRUE(stored.genFinish && glIsTexture(stored.texID));
  ExpectRGB(Pixel(30, 30), RGBA{200, 100, 50}, 2, "textured");
  const GLuint program = Program(Vorn_3DFX::FX_TEXTURE);
  EXPECT_FLOAT_EQ(FloatUniform(program, "uFogInfo[1]")[0], 100.0f);

  const unsigned texID = stored.texID;
  scene->DisableFog();
  n->draw();
  EXPECT_EQ(n->TextureArray.at(0).front().texID, texID);  // uploaded once
  for (const char* name : {"uFogInfo[0]", "uFogInfo[1]", "uFogInfo[2]", "uFogInfo[3]", "uFogInfo[4]"}) {
    EXPECT_EQ(FloatUniform(program, name)[0], 0.0f) << name;
  }
  EXPECT_EQ(IntUniform(program, "texture0"), 0);
}

class RangedLight : public Node {
 public:
  using Node::Node;
  double GetLightRange() const override { return 7.5; }
};

// A program that keeps the point-light uniforms and a sampler on channel 9 alive.
TEST_F(NodeDrawGL, PointLightUniformsAndAChannelOutsideTheUnits) {
  const std::string vs = "#version 120\nvoid main() { gl_Position = ftransform(); }\n";
  const std::string ps =
      "#version 120\nuniform int uPointLightCount;\nuniform vec4 uPointLightXYZRangeArray[8];\n"
      "uniform vec3 uPointLightColorArray[8];\nuniform sampler2D texture9;\nvoid main() {\n"
      "  vec4 s = texture2D(texture9, vec2(0.5)) * float(uPointLightCount);\n"
      "  for (int i = 0; i < 8; ++i) s += uPointLightXYZRangeArray[i] + vec4(uPointLightColorArray[i], 0.0);\n"
      "  gl_FragColor = s;\n}\n";
  static const GLuint probe = *SharedFXManager()->CreateShader(vs, ps);
  for (int i = 0; i < 5; ++i) {
    auto light = MakeNode<RangedLight>(i + 1.0, 2.0, 3.0);
    light->update(0);
    scene->pointLights.push_back(light);
  }
  auto n = Quad(10, 10, 20, 20, Vorn_3DFX::FX_DIFFUSE);
  n->SubMeshFX.set(0, probe);

  // Forward mode draws three lights; four colour floats a light go into a vec3 array,
  // so element 1 starts with light 0's alpha.
  scene->pointLights[0]->SubMeshColor.set(0, {0.1, 0.2, 0.3, 0.4});
  scene->pointLights[1]->SubMeshColor.set(0, {0.5, 0.6, 0.7, 0.8});
  n->draw();
  EXPECT_EQ(IntUniform(probe, "uPointLightCount"), 3);
  EXPECT_EQ(FloatUniform(probe, "uPointLightXYZRangeArray[2]"), (std::array<float, 4>{3, 2, 3, 7.5f}));
  EXPECT_EQ(FloatUniform(probe, "uPointLightColorArray[1]"), (std::array<float, 4>{0.4f, 0.5f, 0.6f, -1}));
  scene->deferLight = true;
  n->draw();
  EXPECT_EQ(IntUniform(probe, "uPointLightCount"), 5);

  // Channel 9 is past the units: the texture goes on the active unit, the sampler is told 9.
  TextureInfo rec;
  rec.channel = 9;
  rec.imgData = std::make_shared<std::vector<std::uint8_t>>(16, 255);
  rec.width = rec.height = 2;
  n->TextureArray.at(0).push_back(rec);
  glActiveTexture(GL_TEXTURE3);
  n->draw_submesh(0);
  GLint active = 0, bound = 0;
  glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
  glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
  EXPECT_EQ(active, GL_TEXTURE3);
  EXPECT_EQ(IntUniform(probe, "texture9"), 9);
  EXPECT_EQ(static_cast<unsigned>(bound), n->TextureArray.at(0).front().texID);
  n->CurrSubMeshFX.reset();
}

TEST_F(NodeDrawGL, WireFrameCullingBlendAndMissingAlphaMode) {
  auto n = Quad(20, 20, 100, 100, Vorn_3DFX::FX_DIFFUSE);
  n->SetWireFrameMode(true);
  n->SetSubMeshShapeType(0, glc::TRIANGLES, glc::CW);
  n->draw();
  GLint mode[2] = {}, front = 0, cull = 0;
  glGetIntegerv(GL_POLYGON_MODE, mode);
  glGetIntegerv(GL_FRONT_FACE, &front);
  glGetIntegerv(GL_CULL_FACE_MODE, &cull);
  EXPECT_EQ((std::array<GLint, 4>{mode[0], mode[1], front, cull}), (std::array<GLint, 4>{GL_LINE, GL_LINE, GL_CW, GL_BACK}));
  EXPECT_TRUE(glIsEnabled(GL_CULL_FACE));
  // Counter-clockwise triangles seen from the front are back faces now: nothing drawn.
  EXPECT_EQ(Pixel(70, 70), (RGBA{0, 0, 0, 255}));
  EXPECT_EQ(Pixel(21, 21), (RGBA{0, 0, 0, 255}));

  n->SetWireFrameMode(false);
  n->SetSubMeshShapeType(0, glc::TRIANGLES, glc::CCW);
  n->draw();
  EXPECT_EQ(Pixel(70, 70), (RGBA{255, 255, 255, 255}));  // the default sun faces the quad head on

  // Blending with alpha 0.5 over red, then the blend, culling and line mode are off again.
  glClearColor(1, 0, 0, 1);
  glClear(GL_COLOR_BUFFER_BIT);
  n->SetSubMeshShapeType(0, glc::TRIANGLES);
  n->SetSubMeshColor(0, 0, 0, 1, 0.5);
  n->SetSubMeshAlphaMode(0);
  n->draw();
  ExpectRGB(Pixel(70, 70), RGBA{128, 0, 128}, 2, "blended");
  EXPECT_FALSE(glIsEnabled(GL_BLEND) || glIsEnabled(GL_CULL_FACE));
  glGetIntegerv(GL_POLYGON_MODE, mode);
  EXPECT_EQ(mode[0], GL_FILL);

  // Without an alpha-mode entry the submesh draws opaque and its index is printed.
  n->SubMeshAlphaMode.erase(0);
  ConsoleCapture console;
  n->draw();
  n->draw();
  EXPECT_EQ(console.lines(), (std::vector<std::string>{"0", "0"}));
  ExpectRGB(Pixel(70, 70), RGBA{0, 0, 255}, 2, "opaque");
}

TEST_F(NodeDrawGL, ApplyAndRecoverKeepOneLevelOfUndoAcrossChildren) {
  auto root = MakeNode<Node>();
  auto child = MakeNode<Node>(0, 0, 0, root);
  for (const auto& n : {root, child}) {
    n->CreateSubMesh("a");
    n->CreateSubMesh("b");
  }
  const unsigned diffuse = Program(Vorn_3DFX::FX_DIFFUSE);
  ConsoleCapture console;
  root->ApplySubMeshFX(0, Vorn_3DFX::FX_COLOR);
  EXPECT_FALSE(console.lines().empty());  // the program's source
  console.clear();
  root->ApplySubMeshFX(0, Vorn_3DFX::FX_COLOR);
  EXPECT_TRUE(console.lines().empty());  // already in force: nothing at all

  root->ApplyFX(Vorn_3DFX::FX_DIFFUSE, true);
  root->ApplyFX(Vorn_3DFX::FX_TEXTURE, true);
  EXPECT_EQ(child->SubMeshFX.at(0), Program(Vorn_3DFX::FX_TEXTURE));
  root->RecoverFX(true);
  // One level: the FX before the last ApplyFX, on every submesh and child.
  for (const auto& [fx, what] : {std::pair{root->SubMeshFX.at(0), "root 0"}, {root->SubMeshFX.at(1), "root 1"},
                                 {child->SubMeshFX.at(0), "child 0"}}) {
    EXPECT_EQ(fx, diffuse) << what;
  }
  // A submesh with no FX before losing it on recovery is the script suite's case.
}

TEST_F(NodeDrawGL, DrawNodeShowsOnlyItsLatestTriangle) {
  auto marker = MakeNode<Vorn_3DDrawNode>();
  {
    ConsoleCapture quiet;
    // Half-pixel corners put the edges on pixel centres.
    marker->DrawTriangle(10.5, 10.5, 0, 100.5, 10.5, 0, 10.5, 100.5, 0);
    marker->DrawTriangle(200.5, 10.5, 0, 300.5, 10.5, 0, 200.5, 100.5, 0);
  }
  marker->update(0);
  glColor4f(0, 1, 0, 1);
  marker->draw();
  // Wire frame: the edges of the second triangle only.
  EXPECT_EQ(Pixel(250, 10)[1], 255);
  for (const auto& [x, y] : {std::pair{210, 20}, {50, 10}, {10, 50}}) EXPECT_EQ(Pixel(x, y), (RGBA{0, 0, 0, 255})) << x;
}

}  // namespace
}  // namespace vorn::test
