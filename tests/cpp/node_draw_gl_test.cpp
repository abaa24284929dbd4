// The node draw under a real driver: pixels of lit, textured, blended and wire-frame
// quads, the buffered and immediate paths, hierarchy, render targets, the uniforms a
// program receives, effect assignment with its undo, and the immediate draw node.
#include <array>
#include <cmath>
#include <memory>
#include <string>

#include "app/globals.h"
#include "console_capture.h"
#include "fake_scene.h"
#include "gl_harness.h"
#include "node/game_node.h"
#include "node/node_draw_hooks.h"
#include "shader/fx_3d.h"
#include "shader/fx_manage.h"
#include "shapes/draw_node.h"

namespace vorn::test {
namespace {

using Node = Vorn_3DGameNode;
using RGBA = std::array<int, 4>;

// One manager for the process: compiling the catalogue is slow on a software driver.
const std::shared_ptr<Vorn_FXManage>& Manager() {
  static const std::shared_ptr<Vorn_FXManage> manager = [] {
    ConsoleCapture quiet;
    return std::make_shared<Vorn_FXManage>();
  }();
  return manager;
}

unsigned Program(int fxid) { return *Manager()->GetShader(fxid); }

RGBA Pixel(int x, int y) {
  unsigned char p[4] = {0, 0, 0, 0};
  glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
  return {p[0], p[1], p[2], p[3]};
}

void ExpectColour(const RGBA& got, double r, double g, double b, const char* what) {
  const double want[3] = {r * 255.0, g * 255.0, b * 255.0};
  for (int c = 0; c < 3; ++c) EXPECT_NEAR(got[c], want[c], 2.0) << what << ", component " << c;
}

GLint IntUniform(GLuint program, const char* name) {
  GLint v = -12345;
  glGetUniformiv(program, glGetUniformLocation(program, name), &v);
  return v;
}

float FloatUniform(GLuint program, const char* name) {
  float v = -12345.0f;
  glGetUniformfv(program, glGetUniformLocation(program, name), &v);
  return v;
}

class NodeDrawGL : public GLTest {
 protected:
  void SetUp() override {
    GLTest::SetUp();
    if (IsSkipped()) return;
    savedFX_ = FXManagerInstance;
    FXManagerInstance = Manager();
    savedSize_ = {SCREEN_WIDTH, SCREEN_HEIGHT};
    SCREEN_WIDTH = kWindowWidth;
    SCREEN_HEIGHT = kWindowHeight;
    savedDebug_ = DEBUG_MODE;
    scene = std::make_shared<FakeScene>();
    // World units are pixels: the fixed-function stack carries the view.
    glViewport(0, 0, kWindowWidth, kWindowHeight);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0, kWindowWidth, 0, kWindowHeight, -10, 10);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glDisable(GL_DEPTH_TEST);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
  }
  void TearDown() override {
    if (!IsSkipped()) {
      FXManagerInstance = savedFX_;
      SCREEN_WIDTH = savedSize_[0];
      SCREEN_HEIGHT = savedSize_[1];
      DEBUG_MODE = savedDebug_;
      glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
      glDisable(GL_CULL_FACE);
      glDisable(GL_TEXTURE_2D);
      glActiveTexture(GL_TEXTURE0);
      glBindTexture(GL_TEXTURE_2D, 0);
      glUseProgram(0);
    }
    GLTest::TearDown();
  }

  // A w x h quad facing +z with its corner at the node's origin, on layout N3F_V3F (or
  // T2F_N3F_V3F with UVs). Indexed quads are two triangles and take the buffered path;
  // without indices it is one GL_QUADS primitive for the immediate path.
  std::shared_ptr<Node> Quad(double x, double y, double w, double h, bool indexed, int fxid,
                             const std::shared_ptr<Node>& parent = nullptr, bool uv = false) {
    auto n = MakeNode<Node>(x, y, 0, parent);
    n->OnLoad(scene);
    const int s = n->CreateSubMesh("quad", uv);
    n->PushQuadVertex_Postion(s, std::array<double, 12>{0, 0, 0, w, 0, 0, w, h, 0, 0, h, 0});
    n->PushQuadVertex_Normal(s, std::array<double, 12>{0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1});
    if (uv) n->PushQuadVertex_UV(s, std::array<double, 8>{0, 0, 1, 0, 1, 1, 0, 1});
    if (indexed) {
      n->PushTriangleVIndex(s, 0, 1, 2);
      n->PushTriangleVIndex(s, 0, 2, 3);
    } else {
      n->SetSubMeshShapeType(s, glc::QUADS);
    }
    n->BuildVBO();
    ConsoleCapture quiet;  // ApplyFX prints the program's source
    n->ApplyFX(fxid);
    n->update(0);
    return n;
  }

  std::shared_ptr<FakeScene> scene;

 private:
  std::shared_ptr<Vorn_FXManage> savedFX_;
  std::array<int, 2> savedSize_{};
  bool savedDebug_ = true;
};

TEST_F(NodeDrawGL, DiffuseQuadShowsHalfLambertSunColourOnBothPaths) {
  scene->ambient = {1.0, 0.5, 0.8};
  scene->sunDir = {0.0, 0.0, -0.5};
  scene->sunColor = {0.8, 0.4, 1.0};
  // FX_DIFFUSE: ambient * submesh colour * sun colour * 0.5 * (1 + dot(N, -sunDir)).
  const double lambert = 0.5 * (1.0 + 0.5);
  const double want[3] = {1.0 * 0.5 * 0.8 * lambert, 0.5 * 1.0 * 0.4 * lambert, 0.8 * 1.0 * 1.0 * lambert};

  auto buffered = Quad(40, 30, 60, 50, true, Vorn_3DFX::FX_DIFFUSE);
  buffered->SetSubMeshColor(0, 0.5, 1.0, 1.0);
  auto immediate = Quad(200, 30, 60, 50, false, Vorn_3DFX::FX_DIFFUSE);
  immediate->SetSubMeshColor(0, 0.5, 1.0, 1.0);
  ASSERT_FALSE(immediate->IVBOArray.contains(0));
  ASSERT_TRUE(immediate->VVBOArray.contains(0));

  buffered->draw();
  immediate->draw();
  EXPECT_EQ(scene->batchCount, 2);
  EXPECT_TRUE(buffered->VVBOArray.at(0)->uploaded());
  // The immediate path sends the arrays and never touches the vertex buffer.
  EXPECT_FALSE(immediate->VVBOArray.at(0)->uploaded());
  EXPECT_FALSE(buffered->GetShader());  // cleared after the node's submeshes

  for (const auto& [x0, what] : {std::pair{40, "buffered"}, std::pair{200, "immediate"}}) {
    ExpectColour(Pixel(x0 + 1, 31), want[0], want[1], want[2], what);
    ExpectColour(Pixel(x0 + 58, 78), want[0], want[1], want[2], what);
    EXPECT_EQ(Pixel(x0 - 2, 55), (RGBA{0, 0, 0, 255})) << what;
    EXPECT_EQ(Pixel(x0 + 30, 82), (RGBA{0, 0, 0, 255})) << what;
  }
}

TEST_F(NodeDrawGL, HiddenNodeHidesItsSubtreeAndChildrenDrawWithTheParentTransform) {
  auto parent = Quad(100, 50, 20, 20, true, Vorn_3DFX::FX_DIFFUSE);
  auto child = Quad(40, 60, 20, 20, true, Vorn_3DFX::FX_DIFFUSE, parent);
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
  auto n = Quad(10, 10, 40, 40, true, Vorn_3DFX::FX_TEXTURE, nullptr, true);
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
  EXPECT_TRUE(stored.genFinish);
  EXPECT_TRUE(glIsTexture(stored.texID));
  ExpectColour(Pixel(30, 30), 200 / 255.0, 100 / 255.0, 50 / 255.0, "textured");
  const GLuint program = Program(Vorn_3DFX::FX_TEXTURE);
  EXPECT_FLOAT_EQ(FloatUniform(program, "uFogInfo[1]"), 100.0f);

  const unsigned texID = stored.texID;
  scene->DisableFog();
  n->draw();
  EXPECT_EQ(n->TextureArray.at(0).front().texID, texID);  // uploaded once
  for (const char* name : {"uFogInfo[0]", "uFogInfo[1]", "uFogInfo[2]", "uFogInfo[3]", "uFogInfo[4]"}) {
    EXPECT_EQ(FloatUniform(program, name), 0.0f) << name;
  }
  EXPECT_EQ(IntUniform(program, "texture0"), 0);
}

// A program that keeps the point-light uniforms and a sampler on channel 9 alive.
GLuint ProbeProgram() {
  static const GLuint program = [] {
    const std::string vs = "#version 120\nvoid main() { gl_Position = ftransform(); }\n";
    const std::string ps =
        "#version 120\nuniform int uPointLightCount;\nuniform vec4 uPointLightXYZRangeArray[8];\n"
        "uniform vec3 uPointLightColorArray[8];\nuniform sampler2D texture9;\nvoid main() {\n"
        "  vec4 s = texture2D(texture9, vec2(0.5)) * float(uPointLightCount);\n"
        "  for (int i = 0; i < 8; ++i) s += uPointLightXYZRangeArray[i] + vec4(uPointLightColorArray[i], 0.0);\n"
        "  gl_FragColor = s;\n}\n";
    return *Manager()->CreateShader(vs, ps);
  }();
  return program;
}

class RangedLight : public Node {
 public:
  using Node::Node;
  double GetLightRange() const override { return 7.5; }
};

TEST_F(NodeDrawGL, PointLightsAreLimitedInForwardModeAndKeepTheirColourLayout) {
  for (int i = 0; i < 5; ++i) {
    auto light = MakeNode<RangedLight>(i + 1.0, 2.0, 3.0);
    light->update(0);
    scene->pointLights.push_back(light);
  }
  auto n = Quad(10, 10, 20, 20, true, Vorn_3DFX::FX_DIFFUSE);
  const GLuint probe = ProbeProgram();
  n->SubMeshFX.set(0, probe);

  n->draw();
  EXPECT_EQ(IntUniform(probe, "uPointLightCount"), 3);
  float xyzr[4] = {};
  glGetUniformfv(probe, glGetUniformLocation(probe, "uPointLightXYZRangeArray[2]"), xyzr);
  EXPECT_EQ((std::array<float, 4>{xyzr[0], xyzr[1], xyzr[2], xyzr[3]}), (std::array<float, 4>{3, 2, 3, 7.5f}));
  // Four colour floats a light into a vec3 array: element 1 starts with light 0's alpha.
  scene->pointLights[0]->SubMeshColor.set(0, {0.1, 0.2, 0.3, 0.4});
  scene->pointLights[1]->SubMeshColor.set(0, {0.5, 0.6, 0.7, 0.8});
  n->draw();
  float colour[3] = {};
  glGetUniformfv(probe, glGetUniformLocation(probe, "uPointLightColorArray[1]"), colour);
  EXPECT_FLOAT_EQ(colour[0], 0.4f);
  EXPECT_FLOAT_EQ(colour[1], 0.5f);
  EXPECT_FLOAT_EQ(colour[2], 0.6f);

  scene->deferLight = true;
  n->draw();
  EXPECT_EQ(IntUniform(probe, "uPointLightCount"), 5);
}

TEST_F(NodeDrawGL, ChannelOutsideTheUnitsLeavesTheActiveUnitAndTellsTheSampler) {
  auto n = Quad(10, 10, 20, 20, true, Vorn_3DFX::FX_DIFFUSE);
  const GLuint probe = ProbeProgram();
  n->SubMeshFX.set(0, probe);
  TextureInfo rec;
  rec.channel = 9;
  rec.imgData = std::make_shared<std::vector<std::uint8_t>>(16, 255);
  rec.width = rec.height = 2;
  n->TextureArray.at(0).push_back(rec);

  glActiveTexture(GL_TEXTURE3);
  n->draw_submesh(0);
  GLint active = 0;
  glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
  EXPECT_EQ(active, GL_TEXTURE3);
  EXPECT_EQ(IntUniform(probe, "texture9"), 9);
  // Uploaded and bound on the unit that was active.
  GLint bound = 0;
  glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
  EXPECT_EQ(static_cast<unsigned>(bound), n->TextureArray.at(0).front().texID);
  n->CurrSubMeshFX.reset();
}

TEST_F(NodeDrawGL, WireFrameCullingBlendAndMissingAlphaMode) {
  auto n = Quad(20, 20, 100, 100, true, Vorn_3DFX::FX_DIFFUSE);
  n->SetWireFrameMode(true);
  n->SetSubMeshShapeType(0, glc::TRIANGLES, glc::CW);
  n->draw();
  GLint mode[2] = {};
  glGetIntegerv(GL_POLYGON_MODE, mode);
  EXPECT_EQ(mode[0], GL_LINE);
  EXPECT_EQ(mode[1], GL_LINE);
  EXPECT_TRUE(glIsEnabled(GL_CULL_FACE));
  GLint front = 0, cull = 0;
  glGetIntegerv(GL_FRONT_FACE, &front);
  glGetIntegerv(GL_CULL_FACE_MODE, &cull);
  EXPECT_EQ(front, GL_CW);
  EXPECT_EQ(cull, GL_BACK);
  // Counter-clockwise triangles seen from the front are back faces now: nothing drawn.
  EXPECT_EQ(Pixel(70, 70), (RGBA{0, 0, 0, 255}));
  EXPECT_EQ(Pixel(21, 21), (RGBA{0, 0, 0, 255}));

  n->SetWireFrameMode(false);
  n->SetSubMeshShapeType(0, glc::TRIANGLES, glc::CCW);
  n->draw();
  EXPECT_EQ(Pixel(70, 70), (RGBA{255, 255, 255, 255}));  // the default sun faces the quad head on

  // Blending with alpha 0.5 over red, then the blend is switched off again.
  glClearColor(1, 0, 0, 1);
  glClear(GL_COLOR_BUFFER_BIT);
  n->SetSubMeshShapeType(0, glc::TRIANGLES);
  n->SetSubMeshColor(0, 0, 0, 1, 0.5);
  n->SetSubMeshAlphaMode(0);
  n->draw();
  ExpectColour(Pixel(70, 70), 0.5, 0, 0.5, "blended");
  EXPECT_FALSE(glIsEnabled(GL_BLEND));
  EXPECT_FALSE(glIsEnabled(GL_CULL_FACE));
  glGetIntegerv(GL_POLYGON_MODE, mode);
  EXPECT_EQ(mode[0], GL_FILL);

  // Without an alpha-mode entry the submesh draws opaque and its index is printed.
  n->SubMeshAlphaMode.erase(0);
  ConsoleCapture console;
  n->draw();
  n->draw();
  EXPECT_EQ(console.lines(), (std::vector<std::string>{"0", "0"}));
  ExpectColour(Pixel(70, 70), 0, 0, 1, "opaque");
}

TEST_F(NodeDrawGL, ApplyAndRecoverKeepOneLevelOfUndoAcrossChildren) {
  auto root = MakeNode<Node>();
  auto child = MakeNode<Node>(0, 0, 0, root);
  for (const auto& n : {root, child}) {
    n->CreateSubMesh("a");
    n->CreateSubMesh("b");
  }
  const unsigned color = Program(Vorn_3DFX::FX_COLOR), diffuse = Program(Vorn_3DFX::FX_DIFFUSE),
                 texture = Program(Vorn_3DFX::FX_TEXTURE);
  ConsoleCapture console;
  root->ApplySubMeshFX(0, Vorn_3DFX::FX_COLOR);
  EXPECT_FALSE(console.lines().empty());  // the program's source
  console.clear();
  root->ApplySubMeshFX(0, Vorn_3DFX::FX_COLOR);
  EXPECT_TRUE(console.lines().empty());  // already in force: nothing at all

  root->ApplyFX(Vorn_3DFX::FX_DIFFUSE, true);
  EXPECT_EQ(root->SubMeshFX.at(1), diffuse);
  EXPECT_EQ(child->SubMeshFX.at(0), diffuse);
  root->ApplyFX(Vorn_3DFX::FX_TEXTURE, true);
  EXPECT_EQ(root->SubMeshFX.at(0), texture);

  root->RecoverFX(true);
  EXPECT_EQ(root->SubMeshFX.at(0), diffuse);  // one level: the FX before the last ApplyFX
  EXPECT_EQ(root->SubMeshFX.at(1), diffuse);
  EXPECT_EQ(child->SubMeshFX.at(0), diffuse);

  // A submesh that had no FX before its first ApplyFX loses it on recovery.
  auto fresh = MakeNode<Node>();
  fresh->CreateSubMesh("a");
  fresh->CreateSubMesh("b");
  fresh->ApplySubMeshFX(0, Vorn_3DFX::FX_COLOR);
  fresh->ApplyFX(Vorn_3DFX::FX_DIFFUSE);
  fresh->RecoverFX();
  EXPECT_EQ(fresh->SubMeshFX.at(0), color);
  EXPECT_FALSE(fresh->SubMeshFX.contains(1));

  // An identifier without a program leaves the submesh as it was and says why.
  console.clear();
  fresh->ApplySubMeshFX(0, 399);
  EXPECT_EQ(fresh->SubMeshFX.at(0), color);
  ASSERT_EQ(console.lines().size(), 1u);
  EXPECT_NE(console.lines()[0].find("399"), std::string::npos);
}

TEST_F(NodeDrawGL, RenderTargetDrawsOffscreenAndRedrawsOnScreenInDebugMode) {
  GLuint fbo = 0, tex = 0;
  glGenFramebuffers(1, &fbo);
  glGenTextures(1, &tex);
  glBindTexture(GL_TEXTURE_2D, tex);
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 64, 64, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
  glBindTexture(GL_TEXTURE_2D, 0);
  glBindFramebuffer(GL_FRAMEBUFFER, fbo);
  glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, tex, 0);
  glBindFramebuffer(GL_FRAMEBUFFER, 0);

  // 200 world units of the 320-wide view are 40 pixels of the 64-pixel target.
  auto n = Quad(0, 0, 200, 200, true, Vorn_3DFX::FX_DIFFUSE);
  // Without hooks (the resource manager fills them when it is made) targets are unknown.
  const RenderTargetHooks savedHooks = renderTargetHooks;
  renderTargetHooks = {};
  EXPECT_THROW(n->SetRenderTargetTexture(tex), RuntimeError);
  renderTargetHooks.frameBuffer = [&](unsigned id) { return id == tex ? std::optional<unsigned>(fbo) : std::nullopt; };
  renderTargetHooks.dynamicTexture = [&](unsigned id) {
    return id == tex ? std::optional<DynamicTextureSize>({64, 64, "RGB"}) : std::nullopt;
  };
  n->SetRenderTargetTexture(tex, false);
  EXPECT_THROW(n->SetRenderTargetTexture(tex + 1000), TypeError);
  n->SetRenderTargetTexture(tex, false);
  renderTargetHooks = savedHooks;
  EXPECT_EQ(n->TargetFrameWidth, 64);

  DEBUG_MODE = false;
  n->draw();
  EXPECT_EQ(Pixel(10, 10), (RGBA{0, 0, 0, 255}));  // the screen is untouched
  GLint viewport[4] = {};
  glGetIntegerv(GL_VIEWPORT, viewport);
  EXPECT_EQ(viewport[2], kWindowWidth);
  glBindFramebuffer(GL_FRAMEBUFFER, fbo);
  const RGBA target = Pixel(10, 10);
  EXPECT_EQ(Pixel(50, 60), (RGBA{0, 0, 0, 0}));  // cleared to transparent black
  glBindFramebuffer(GL_FRAMEBUFFER, 0);
  EXPECT_EQ(target, (RGBA{255, 255, 255, 255}));

  DEBUG_MODE = true;
  n->draw();
  EXPECT_EQ(Pixel(10, 10), (RGBA{255, 255, 255, 255}));
  EXPECT_EQ(scene->batchCount, 2);

  // Post mode: the full-screen rectangle instead of the submeshes.
  n->TargetFrameBuffer_IsPostFXMode = true;
  n->draw();
  EXPECT_EQ(scene->postFXRects, 1);
  EXPECT_FALSE(n->GetShader());

  glDeleteFramebuffers(1, &fbo);
  glDeleteTextures(1, &tex);
}

TEST_F(NodeDrawGL, DrawNodeShowsOnlyItsLatestTriangle) {
  auto marker = MakeNode<Vorn_3DDrawNode>();
  EXPECT_EQ(marker->GetNodeType(), "3DDrawNode");
  EXPECT_FALSE(marker->Enable_PickDown);
  EXPECT_FALSE(marker->Enable_PickUp);
  {
    ConsoleCapture quiet;
    // Half-pixel corners put the edges on pixel centres.
    marker->DrawTriangle(10.5, 10.5, 0, 100.5, 10.5, 0, 10.5, 100.5, 0);
    marker->DrawTriangle(200.5, 10.5, 0, 300.5, 10.5, 0, 200.5, 100.5, 0);
  }
  EXPECT_EQ(marker->SubMeshList.size(), 1u);
  EXPECT_EQ(marker->VertexArray_Positon.at(0).size(), 3u);
  EXPECT_EQ(marker->SubMeshFX.at(0), Program(Vorn_3DFX::FX_COLOR));
  marker->update(0);
  glColor4f(0, 1, 0, 1);
  marker->draw();
  // Wire frame: the edges of the second triangle only.
  EXPECT_EQ(Pixel(250, 10)[1], 255);
  EXPECT_EQ(Pixel(210, 20), (RGBA{0, 0, 0, 255}));
  EXPECT_EQ(Pixel(50, 10), (RGBA{0, 0, 0, 255}));
  EXPECT_EQ(Pixel(10, 50), (RGBA{0, 0, 0, 255}));

  ConsoleCapture quiet;
  marker->DrawQuad(10, 150, 0, 60, 150, 0, 60, 200, 0, 10, 200, 0);
  EXPECT_EQ(marker->VIndexArray.at(0), (IndexArray{0, 1, 2, 3}));
  EXPECT_EQ(marker->SubMeshShapeType.at(0), glc::QUADS);
}

}  // namespace
}  // namespace vorn::test
