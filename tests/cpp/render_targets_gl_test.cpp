// Generated textures and render targets under a real driver: the resource manager's
// targets and noise texture, a node drawing into a target, and a camera rendering the
// scene's objects into its colour and depth targets (read back with glGetTexImage).
#include <functional>
#include <tuple>
#include <vector>

#include "camera/camera.h"
#include "core/errors.h"
#include "gl_scene.h"
#include "resource/res_manager.h"
#include "shader/fx_3d.h"

namespace vorn::test {
namespace {

using Camera = Vorn_3DCamera;
using Node = Vorn_3DGameNode;
using RGB = std::array<int, 3>;

// A texture read back as RGBA, rows from the bottom as GL stores them.
struct TexImage {
  int width = 0, height = 0;
  std::vector<unsigned char> rgba;
  RGBA at(int x, int y) const {
    const std::size_t i = (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)) * 4;
    return {rgba[i], rgba[i + 1], rgba[i + 2], rgba[i + 3]};
  }
  RGB rgb(int x, int y) const { return {at(x, y)[0], at(x, y)[1], at(x, y)[2]}; }
};

TexImage ReadTexture(unsigned tex) {
  TexImage img;
  glBindTexture(GL_TEXTURE_2D, tex);
  glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &img.width);
  glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &img.height);
  img.rgba.resize(static_cast<std::size_t>(img.width) * static_cast<std::size_t>(img.height) * 4);
  glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, img.rgba.data());
  glBindTexture(GL_TEXTURE_2D, 0);
  return img;
}

GLint TexParameter(unsigned tex, GLenum name) {
  GLint v = 0;
  glBindTexture(GL_TEXTURE_2D, tex);
  glGetTexParameteriv(GL_TEXTURE_2D, name, &v);
  glBindTexture(GL_TEXTURE_2D, 0);
  return v;
}

// A node that reports the moment of its draw.
class Probe : public Node {
 public:
  using Node::Node;
  std::function<void()> onDraw;
  void draw(double rx, double ry, double rz) override {
    if (onDraw) onDraw();
    Node::draw(rx, ry, rz);
  }
};

class RenderTargetsGL : public NodeGLTest {
 protected:
  void SetUp() override {
    NodeGLTest::SetUp();
    if (!HasContext()) return;
    ResManagerInstance = SharedResources();
    DEBUG_MODE = false;
  }

  // A camera 10 units in front of the origin, looking at it, loaded into the scene.
  std::shared_ptr<Camera> FrontCamera() {
    auto cam = MakeNode<Camera>(0, 0, 10);
    cam->LookAt(0, 0, 0);
    cam->OnLoad(scene);
    cam->update(0);
    return cam;
  }

  // The camera's part of a frame; FX_DEPTH assignments print program sources.
  static void Frame(Camera& cam) {
    ConsoleCapture quiet;
    cam.update(0);
    cam.draw();
  }

  PyGameResManager& res() { return *ResManagerInstance; }
};

TEST_F(RenderTargetsGL, ManagerTargetsTakeTheScreenConstantsAndStayApart) {
  SCREEN_WIDTH = 100;  // the constants, not the window, give the size
  SCREEN_HEIGHT = 50;
  const unsigned a = res().CreateRenderTargetTexture();
  const unsigned b = res().CreateRenderTargetTexture(-4, 0, true);
  const unsigned c = res().CreateRenderTargetTexture(16, 8);
  ASSERT_TRUE(res().GetRenderTargetTextureFrameBuffer(a) && res().GetRenderTargetTextureFrameBuffer(b));
  EXPECT_NE(*res().GetRenderTargetTextureFrameBuffer(a), *res().GetRenderTargetTextureFrameBuffer(b));
  for (unsigned tex : {a, b}) {
    const DynamicTextureRecord* r = res().GetDynamicTexture(tex);
    ASSERT_TRUE(r);
    EXPECT_EQ(std::make_tuple(r->Width, r->Height, r->Format, r->Depth), std::make_tuple(100, 50, std::string("RGB"), 24));
    const TexImage img = ReadTexture(tex);
    EXPECT_EQ(std::make_pair(img.width, img.height), std::make_pair(100, 50));
  }
  EXPECT_EQ(res().GetDynamicTexture(c)->Width, 16);
  // Only the colour variant sets linear filtering.
  EXPECT_EQ(TexParameter(a, GL_TEXTURE_MIN_FILTER), GL_LINEAR);
  EXPECT_EQ(TexParameter(b, GL_TEXTURE_MIN_FILTER), GL_NEAREST_MIPMAP_LINEAR);
  glBindFramebuffer(GL_FRAMEBUFFER, *res().GetRenderTargetTextureFrameBuffer(c));
  EXPECT_EQ(glCheckFramebufferStatus(GL_FRAMEBUFFER), static_cast<GLenum>(GL_FRAMEBUFFER_COMPLETE));
  glBindFramebuffer(GL_FRAMEBUFFER, 0);

  // Refused sizes make nothing.
  const std::size_t count = res().DynamicTextureDict.size();
  EXPECT_THROW(res().CreateRenderTargetTexture(1 << 20, 4), ValueError);
  EXPECT_EQ(res().DynamicTextureDict.size(), count);
}

TEST_F(RenderTargetsGL, NoiseTextureHoldsRandomRedAndGreenOnly) {
  const unsigned tex = res().AddSSAORandTexture(7, 5);
  EXPECT_FALSE(res().GetRenderTargetTextureFrameBuffer(tex));
  EXPECT_EQ(TexParameter(tex, GL_TEXTURE_WRAP_S), GL_REPEAT);
  const TexImage img = ReadTexture(tex);
  ASSERT_EQ(std::make_pair(img.width, img.height), std::make_pair(7, 5));
  int distinctRed = 0;
  for (int y = 0; y < 5; ++y) {
    for (int x = 0; x < 7; ++x) {
      EXPECT_EQ(img.at(x, y)[2], 0);
      EXPECT_EQ(img.at(x, y)[3], 255);
      distinctRed += img.at(x, y)[0] != img.at(0, 0)[0];
    }
  }
  EXPECT_GT(distinctRed, 0) << "35 random reds should not all be equal";
  EXPECT_EQ(res().GetDynamicTexture(res().AddSSAORandTexture())->Width, 10);
  EXPECT_THROW(res().AddSSAORandTexture(-1, 4), ValueError);
}

TEST_F(RenderTargetsGL, NodeDrawsIntoAManagerTargetAndOnScreenTooInDebugMode) {
  const unsigned tex = res().CreateRenderTargetTexture(64, 64);
  // 160 world units of the 320-wide view are 32 pixels of the 64-pixel target.
  auto n = Quad(0, 0, 160, 120, Vorn_3DFX::FX_COLOR);
  // Without a resource manager targets are unknown.
  const auto savedManager = std::exchange(ResManagerInstance, nullptr);
  EXPECT_THROW(n->SetRenderTargetTexture(tex), AttributeError);
  ResManagerInstance = savedManager;
  n->SetRenderTargetTexture(tex, false);
  EXPECT_EQ(n->TargetFrameBuffer, res().GetRenderTargetTextureFrameBuffer(tex));
  EXPECT_EQ(std::make_pair(n->TargetFrameWidth, n->TargetFrameHeight), std::make_pair(64, 64));

  glColor3f(1.0f, 0.5f, 0.0f);
  n->draw();
  EXPECT_EQ(Pixel(10, 10), (RGBA{0, 0, 0, 255})) << "the screen is untouched";
  GLint viewport[4] = {};
  glGetIntegerv(GL_VIEWPORT, viewport);
  EXPECT_EQ(viewport[2], kWindowWidth);
  const TexImage img = ReadTexture(tex);
  ExpectRGB(img.rgb(10, 10), RGB{255, 128, 0}, 2, "inside the quad");
  EXPECT_EQ(img.at(40, 40), (RGBA{0, 0, 0, 255})) << "cleared outside the quad";

  DEBUG_MODE = true;
  n->draw();
  ExpectRGB(Pixel(10, 10), RGB{255, 128, 0}, 2, "debug mode redraws on screen");
  EXPECT_EQ(scene->batchCount, 2);
  // Post mode: the full-screen rectangle instead of the submeshes.
  n->TargetFrameBuffer_IsPostFXMode = true;
  n->draw();
  EXPECT_EQ(scene->postFXRects, 1);
  EXPECT_FALSE(n->GetShader());

  // No manager at all (an unknown id is the Python suite's case).
  auto other = MakeNode<Node>();
  ResManagerInstance = nullptr;
  EXPECT_THROW(other->SetRenderTargetTexture(tex), AttributeError);
}

TEST_F(RenderTargetsGL, ColourTargetShowsTheSceneObjectsFromTheCamera) {
  auto quad = Quad(-1, -1, 2, 2, Vorn_3DFX::FX_COLOR);
  scene->objects.push_back(quad);
  auto cam = FrontCamera();
  const unsigned tex = cam->CreateRenderTarget();
  EXPECT_EQ(cam->GetRenderTargetTexture(), tex);
  // Clip space to texture space: y flipped, shifted by half a texel.
  const FloatList16 m = *cam->GetRenderTargetTextureMatrix();
  EXPECT_EQ(std::vector<double>(m.begin(), m.begin() + 12),
            std::vector<double>({0.5, 0, 0, 0, 0, -0.5, 0, 0, 0, 0, 1, 0}));
  EXPECT_DOUBLE_EQ(m[12], 0.5 + 0.5 / kWindowWidth);
  EXPECT_DOUBLE_EQ(m[13], 0.5 + 0.5 / kWindowHeight);
  EXPECT_FALSE(cam->RenderTargetArray.at(Camera::CAMERA_RENDERGARGET).FXID);
  EXPECT_EQ(res().GetDynamicTexture(tex)->Width, kWindowWidth);
  EXPECT_FALSE(cam->GetDepthTargetTextureMatrix());

  // Fog is off for the pass and on again after it, whatever it was before.
  cam->DisableFog();
  scene->fogEnabled = false;
  glColor3f(0.0f, 1.0f, 0.0f);
  Frame(*cam);  // not the active camera: its targets make it render
  EXPECT_EQ(std::make_tuple(scene->disableFogCalls, scene->enableFogCalls, scene->fogEnabled),
            std::make_tuple(1, 1, true));

  GLint bound = -1, mode = 0;
  glGetIntegerv(GL_FRAMEBUFFER_BINDING, &bound);
  glGetIntegerv(GL_MATRIX_MODE, &mode);
  EXPECT_EQ(std::make_pair(bound, mode), std::make_pair(0, GL_MODELVIEW));

  // The quad of side 2 at distance 10 spans 2 / (2 tan 22.5 deg * 10) of the height:
  // 58 of 240 pixels, centred.
  const TexImage img = ReadTexture(tex);
  ASSERT_EQ(std::make_pair(img.width, img.height), std::make_pair(kWindowWidth, kWindowHeight));
  ExpectRGB(img.rgb(160, 120), RGB{0, 255, 0}, 1, "centre");
  ExpectRGB(img.rgb(160 + 25, 120 - 25), RGB{0, 255, 0}, 1, "inside the corner");
  EXPECT_EQ(img.at(160 + 33, 120), (RGBA{0, 0, 0, 255})) << "right of the quad";
  EXPECT_EQ(img.at(5, 5), (RGBA{0, 0, 0, 255})) << "corner";
  EXPECT_EQ(Pixel(160, 120)[1], 0) << "the window is not drawn into";

  // Without an argument the size is the window's as the constants say now.
  SCREEN_WIDTH = 200;
  SCREEN_HEIGHT = 100;
  auto second = FrontCamera();
  const TexImage small = ReadTexture(second->CreateRenderTarget());
  EXPECT_EQ(std::make_pair(small.width, small.height), std::make_pair(200, 100));
  EXPECT_THROW(second->CreateRenderTarget(-1), ValueError);
  ResManagerInstance = nullptr;
  EXPECT_THROW(second->CreateDepthTarget(), AttributeError);
  EXPECT_EQ(second->CameraType, Camera::CAMERA_RENDERGARGET);
}

TEST_F(RenderTargetsGL, DepthTargetForcesTheDepthFXAndRestoresEachObject) {
  auto first = Quad(-1, -1, 2, 2, Vorn_3DFX::FX_COLOR);
  auto second = Quad<Probe>(2, 2, 1, 1, std::nullopt);
  scene->objects.push_back(first);
  scene->objects.push_back(second);
  bool seen = false;
  second->onDraw = [&] {
    seen = true;
    EXPECT_EQ(first->SubMeshFX.at(0), Program(Vorn_3DFX::FX_COLOR)) << "the first object has its FX back";
    EXPECT_EQ(second->SubMeshFX.at(0), Program(Vorn_3DFX::FX_DEPTH));
  };
  auto cam = FrontCamera();
  const unsigned tex = cam->CreateDepthTarget();
  EXPECT_EQ(cam->RenderTargetArray.at(Camera::CAMERA_DEPTH).FXID, Vorn_3DFX::FX_DEPTH);
  EXPECT_EQ(cam->GetDepthTargetTexture(), tex);

  glColor3f(0.0f, 1.0f, 0.0f);
  Frame(*cam);
  EXPECT_TRUE(seen);
  EXPECT_EQ(first->SubMeshFX.at(0), Program(Vorn_3DFX::FX_COLOR));
  EXPECT_FALSE(second->SubMeshFX.contains(0)) << "an object without FX gets none back";

  // Depth as red: clip z at distance 10 (near 0.1, far 500) is 9.804, over 100.
  const TexImage img = ReadTexture(tex);
  ExpectRGB(img.rgb(160, 120), RGB{25, 0, 0}, 2, "depth of the quad");
  EXPECT_EQ(img.rgb(5, 5), (RGB{0, 0, 0}));

  // What a node's shadow uniforms receive of this camera; nothing of a plain node.
  const auto info = cam->GetShadowMapInfo();
  ASSERT_TRUE(info && info->texSize);
  EXPECT_EQ(*info->texSize, std::make_pair(double(kWindowWidth), double(kWindowHeight)));
  EXPECT_EQ(info->viewMatrix, cam->GetViewMatrix());
  EXPECT_EQ(info->projMatrix, cam->GetProjMatrix());
  EXPECT_FALSE(first->GetShadowMapInfo());
}

TEST_F(RenderTargetsGL, TargetTypesChooseTheListRendered) {
  auto light = Quad(-1, -1, 2, 2, Vorn_3DFX::FX_COLOR);
  scene->pointLights.push_back(light);
  auto cam = FrontCamera();
  const unsigned tex = cam->CreateRenderTarget();
  cam->SetCameraTargetType(Camera::CAMERA_TARGET_POINTLIGHT);
  glColor3f(0.0f, 0.0f, 1.0f);
  Frame(*cam);
  ExpectRGB(ReadTexture(tex).rgb(160, 120), RGB{0, 0, 255}, 1, "the point light list");

  // The object kind without a caught node renders nothing: the target keeps its picture.
  cam->SetCameraTargetType(Camera::CAMERA_TARGET_OBJECT);
  cam->DisableFog();
  Frame(*cam);
  ExpectRGB(ReadTexture(tex).rgb(160, 120), RGB{0, 0, 255}, 1, "untouched");

  // A caught node is not a list of nodes: refused before fog or frame buffer change.
  cam->Catch(light);
  scene->disableFogCalls = 0;
  EXPECT_THROW(Frame(*cam), TypeError);
  EXPECT_EQ(scene->disableFogCalls, 0);
  GLint bound = -1;
  glGetIntegerv(GL_FRAMEBUFFER_BINDING, &bound);
  EXPECT_EQ(bound, 0);
}

}  // namespace
}  // namespace vorn::test
