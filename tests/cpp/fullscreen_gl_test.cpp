// The pieces of the full-screen modes that live below the scene: the post-pass quad
// under back-face culling, post-mode filters that step by texels, a camera's forced FX
// pass without program listings, text after a multi-channel image, and the kernel.
#include <cmath>
#include <vector>

#include "camera/camera.h"
#include "core/math_util.h"
#include "gl_scene.h"
#include "overlay/text.h"
#include "overlay/text_child.h"
#include "scene/scene.h"
#include "shader/fx_2d.h"
#include "shader/fx_3d.h"

namespace vorn::test {
namespace {

class FullscreenGL : public NodeGLTest {
 protected:
  void SetUp() override {
    NodeGLTest::SetUp();
    if (!HasContext()) return;
    ResManagerInstance = SharedResources();
  }
};

}  // namespace

TEST_F(FullscreenGL, PostPassBlursAndCoversItsTargetWithCullingOn) {
  if (!HasContext()) return;
  // A source texture with one white texel at (10, 10) of 32 x 32.
  std::vector<unsigned char> pixels(32 * 32 * 3, 0);
  for (int c = 0; c < 3; ++c) pixels[(10 * 32 + 10) * 3 + c] = 255;
  const GLuint source = MakeTexture(32, 32, GL_RGB, pixels.data());
  SharedResources()->AddDynamicTexture(source, 32, 32, "RGB", 24);
  const unsigned target = SharedResources()->CreateRenderTargetTexture(32, 32);

  // The real scene draws the quad; culling of back faces is on as InitGL leaves it.
  auto sceneHolder = [] {
    ConsoleCapture quiet;
    return Vorn_3Dcene::Create();
  }();
  auto post = MakeNode<Vorn_3DGameNode>();
  post->OnLoad(sceneHolder);
  {
    ConsoleCapture quiet;
    post->Draw2DImage(0, 0, 32, 32);
    post->SetDynamicTextureID(source, 0);
    post->ApplyFX(Vorn_2DFX::FX_BLUR);
  }
  post->SetRenderTargetTexture(target);
  glEnable(GL_CULL_FACE);
  glCullFace(GL_BACK);
  glFrontFace(GL_CCW);
  DEBUG_MODE = false;  // no second draw to the screen, which sets culling for itself
  post->draw();
  EXPECT_TRUE(glIsEnabled(GL_CULL_FACE)) << "culling is as it was after the quad";

  std::vector<unsigned char> out(32 * 32 * 4);
  glBindTexture(GL_TEXTURE_2D, target);
  glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, out.data());
  glBindTexture(GL_TEXTURE_2D, 0);
  // The box reaches three texels right and up of each pixel: the white texel lands in
  // the 4 x 4 block below and left of it, at a sixteenth of its value.
  int lit = 0;
  for (int y = 0; y < 32; ++y)
    for (int x = 0; x < 32; ++x) {
      const int v = out[(y * 32 + x) * 4];
      const bool inBox = x >= 7 && x <= 10 && y >= 7 && y <= 10;
      EXPECT_NEAR(v, inBox ? 16 : 0, inBox ? 2 : 0) << x << "," << y;
      lit += v > 0;
    }
  EXPECT_EQ(lit, 16);
  glDeleteTextures(1, &source);
}

TEST_F(FullscreenGL, ForcedFXPassRestoresEachNodeWithoutListingTheProgram) {
  if (!HasContext()) return;
  auto quad = Quad(0, 0, 10, 10, Vorn_3DFX::FX_DIFFUSE);
  scene->objects.push_back(quad);
  auto camera = MakeNode<Vorn_3DCamera>(0, 0, 5);
  camera->OnLoad(scene);
  camera->CreateDepthTarget(16, 16);
  ConsoleCapture captured;
  camera->RenderObjListToRenderTarget(scene->objects);
  EXPECT_TRUE(captured.lines().empty()) << captured.lines().front();
  EXPECT_EQ(*quad->SubMeshFX.find(0), Program(Vorn_3DFX::FX_DIFFUSE));
  // A script's own ApplyFX still lists the program.
  quad->ApplyFX(Vorn_3DFX::FX_COLOR);
  EXPECT_FALSE(captured.lines().empty());
}

TEST_F(FullscreenGL, TextStaysVisibleAfterAnImageWithFourChannels) {
  if (!HasContext()) return;
  // An image drawn with four texture channels, as the preview results are, leaves
  // texturing on; the text drawn next must still show its colour.
  auto image = Quad(0, 0, 40, 40, Vorn_2DFX::FX_TEXTURE_BLEND, kUV);
  const std::vector<unsigned char> zeros(4 * 4 * 3, 0);
  const GLuint black = MakeTexture(4, 4, GL_RGB, zeros.data());
  SharedResources()->AddDynamicTexture(black, 4, 4, "RGB", 24);
  for (int channel = 0; channel < 4; ++channel) image->SetDynamicTextureID(black, channel);
  auto label = std::make_shared<Vorn_Text>(50, 10, "MMMM");
  label->SetColor(0.0, 1.0, 0.0);
  AddTextChild(*image, label);
  image->draw();
  glFinish();
  int green = 0;
  for (int y = kWindowHeight - 30; y < kWindowHeight - 5; ++y)
    for (int x = 48; x < 90; ++x) {
      const RGBA p = Pixel(x, y);
      green += p[1] > 200 && p[0] < 50 && p[2] < 50;
    }
  EXPECT_GT(green, 20);
  // The label is a child that adds no batch of its own.
  EXPECT_EQ(scene->batchCount, 1);
  EXPECT_EQ(Vorn_TextChild::TextOf(image->children[0].get()), label);
  glDeleteTextures(1, &black);
}

TEST(SSAOKernel, SixtyFourSamplesInTheUpperHemisphereGrowingToFullScale) {
  SeedRandom(3);
  const std::vector<double> kernel = Vorn_3Dcene::BuildSSAOKernel();
  ASSERT_EQ(kernel.size(), 192u);
  for (std::size_t i = 0; i < 64; ++i) {
    const double scale = (i / 63.0) * (i / 63.0);
    for (int c = 0; c < 2; ++c) EXPECT_LE(std::abs(kernel[i * 3 + c]), scale + 1e-12) << i;
    EXPECT_GE(kernel[i * 3 + 2], 0.0) << i;
    EXPECT_LE(kernel[i * 3 + 2], scale + 1e-12) << i;
  }
  SeedRandom(3);
  EXPECT_EQ(Vorn_3Dcene::BuildSSAOKernel(), kernel);
}

}  // namespace vorn::test
