// Generated textures and render targets under a real driver: the resource manager's
// targets and noise texture, a node drawing into a target, and a camera rendering the
// scene's objects into its colour and depth targets (read back with glGetTexImage).
#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <unistd.h>

#include "app/globals.h"
#include "camera/camera.h"
#include "console_capture.h"
#include "core/errors.h"
#include "fake_scene.h"
#include "gl_harness.h"
#include "node/game_node.h"
#include "node/node_draw_hooks.h"
#include "resource/res_manager.h"
#include "shader/fx_3d.h"
#include "shader/fx_manage.h"

namespace vorn::test {
namespace {

namespace fs = std::filesystem;
using Camera = Vorn_3DCamera;
using Node = Vorn_3DGameNode;
using RGB = std::array<int, 3>;

// One manager, and with it one compiled catalogue, for the process.
const std::pair<std::shared_ptr<PyGameResManager>, std::shared_ptr<Vorn_FXManage>>& Managers() {
  static const auto made = [] {
    const fs::path dir = fs::temp_directory_path() / ("vorn_render_targets_" + std::to_string(::getpid()));
    fs::create_directories(dir);
    ConsoleCapture quiet;
    auto resources = PyGameResManager::Create(dir.string());
    return std::make_pair(resources, FXManagerInstance);
  }();
  return made;
}

unsigned Program(int fxid) { return *FXManagerInstance->GetShader(fxid); }

// A texture read back as RGBA, rows from the bottom as GL stores them.
struct TexImage {
  int width = 0, height = 0;
  std::vector<unsigned char> rgba;
  std::array<int, 4> at(int x, int y) const {
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

void ExpectNear(const RGB& got, const RGB& want, int tol, const std::string& what) {
  for (int c = 0; c < 3; ++c) EXPECT_NEAR(got[c], want[c], tol) << what << ", component " << c;
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

class RenderTargetsGL : public GLTest {
 protected:
  void SetUp() override {
    GLTest::SetUp();
    if (IsSkipped()) return;
    savedRes_ = ResManagerInstance;
    savedFX_ = FXManagerInstance;
    savedSize_ = {SCREEN_WIDTH, SCREEN_HEIGHT};
    savedDebug_ = DEBUG_MODE;
    ResManagerInstance = Managers().first;
    FXManagerInstance = Managers().second;
    // Another test may have put its own hooks in and cleared them.
    RegisterRenderTargetHooks();
    SCREEN_WIDTH = kWindowWidth, SCREEN_HEIGHT = kWindowHeight;
    DEBUG_MODE = false;
    glViewport(0, 0, kWindowWidth, kWindowHeight);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glDisable(GL_DEPTH_TEST);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    scene = std::make_shared<FakeScene>();
  }
  void TearDown() override {
    if (!IsSkipped()) {
      ResManagerInstance = savedRes_;
      FXManagerInstance = savedFX_;
      SCREEN_WIDTH = savedSize_[0], SCREEN_HEIGHT = savedSize_[1];
      DEBUG_MODE = savedDebug_;
      glDisable(GL_DEPTH_TEST);
      glDisable(GL_CULL_FACE);
      glDisable(GL_TEXTURE_2D);
    }
    GLTest::TearDown();
  }

  // A w x h quad facing +z with its lower left corner at (x, y, z), drawn with `fxid`
  // (or none) through the buffered path.
  template <class T = Node>
  std::shared_ptr<T> Quad(double x, double y, double z, double w, double h, std::optional<int> fxid) {
    auto n = MakeNode<T>(x, y, z);
    n->OnLoad(scene);
    const int s = n->CreateSubMesh("quad");
    n->PushQuadVertex_Postion(s, std::array<double, 12>{0, 0, 0, w, 0, 0, w, h, 0, 0, h, 0});
    n->PushQuadVertex_Normal(s, std::array<double, 12>{0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1});
    n->PushTriangleVIndex(s, 0, 1, 2);
    n->PushTriangleVIndex(s, 0, 2, 3);
    n->BuildVBO();
    if (fxid) {
      ConsoleCapture quiet;  // ApplyFX prints the program's source
      n->ApplyFX(*fxid);
    }
    n->update(0);
    return n;
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

  std::shared_ptr<FakeScene> scene;

 private:
  std::shared_ptr<PyGameResManager> savedRes_;
  std::shared_ptr<Vorn_FXManage> savedFX_;
  std::array<int, 2> savedSize_{};
  bool savedDebug_ = true;
};

TEST_F(RenderTargetsGL, ManagerTargetsTakeTheScreenConstantsAndStayApart) {
  // The constants, not the window, give the size.
  SCREEN_WIDTH = 100;
  SCREEN_HEIGHT = 50;
  const unsigned a = res().CreateRenderTargetTexture();
  const unsigned b = res().CreateRenderTargetTexture(-4, 0, true);
  const unsigned c = res().CreateRenderTargetTexture(16, 8);
  EXPECT_NE(a, b);
  ASSERT_TRUE(res().GetRenderTargetTextureFrameBuffer(a) && res().GetRenderTargetTextureFrameBuffer(b));
  EXPECT_NE(*res().GetRenderTargetTextureFrameBuffer(a), *res().GetRenderTargetTextureFrameBuffer(b));
  for (unsigned tex : {a, b}) {
    const DynamicTextureRecord* r = res().GetDynamicTexture(tex);
    ASSERT_TRUE(r);
    EXPECT_EQ(r->Width, 100);
    EXPECT_EQ(r->Height, 50);
    EXPECT_EQ(r->Format, "RGB");
    EXPECT_EQ(r->Depth, 24);
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

  // Unknown ids answer nothing, silently; refused sizes make nothing.
  const unsigned unknown = a + b + c + 1000;
  EXPECT_FALSE(res().GetDynamicTexture(unknown));
  EXPECT_FALSE(res().GetRenderTargetTextureFrameBuffer(unknown));
  const std::size_t count = res().DynamicTextureDict.size();
  EXPECT_THROW(res().CreateRenderTargetTexture(1 << 20, 4), ValueError);
  EXPECT_EQ(res().DynamicTextureDict.size(), count);
}

TEST_F(RenderTargetsGL, NoiseTextureHoldsRandomRedAndGreenOnly) {
  const unsigned tex = res().AddSSAORandTexture(7, 5);
  const DynamicTextureRecord* r = res().GetDynamicTexture(tex);
  ASSERT_TRUE(r);
  EXPECT_EQ(std::make_tuple(r->Width, r->Height, r->Format, r->Depth), std::make_tuple(7, 5, std::string("RGB"), 24));
  EXPECT_FALSE(res().GetRenderTargetTextureFrameBuffer(tex));
  EXPECT_EQ(TexParameter(tex, GL_TEXTURE_WRAP_S), GL_REPEAT);
  EXPECT_EQ(TexParameter(tex, GL_TEXTURE_MIN_FILTER), GL_LINEAR);

  const TexImage img = ReadTexture(tex);
  ASSERT_EQ(std::make_pair(img.width, img.height), std::make_pair(7, 5));
  int distinctRed = 0, firstRed = img.at(0, 0)[0];
  for (int y = 0; y < 5; ++y) {
    for (int x = 0; x < 7; ++x) {
      const auto p = img.at(x, y);
      EXPECT_EQ(p[2], 0);
      EXPECT_EQ(p[3], 255);
      if (p[0] != firstRed) ++distinctRed;
    }
  }
  EXPECT_GT(distinctRed, 0) << "35 random reds should not all be equal";

  const unsigned standard = res().AddSSAORandTexture();
  EXPECT_EQ(res().GetDynamicTexture(standard)->Width, 10);
  EXPECT_EQ(res().GetDynamicTexture(standard)->Height, 10);
  EXPECT_THROW(res().AddSSAORandTexture(-1, 4), ValueError);
  glDisable(GL_TEXTURE_2D);
}

TEST_F(RenderTargetsGL, NodeDrawsIntoAManagerTarget) {
  // World units are pixels of the window; the target's viewport shrinks them.
  glMatrixMode(GL_PROJECTION);
  glOrtho(0, kWindowWidth, 0, kWindowHeight, -10, 10);
  glMatrixMode(GL_MODELVIEW);
  const unsigned tex = res().CreateRenderTargetTexture(64, 64);
  auto n = Quad(0, 0, 0, 160, 120, Vorn_3DFX::FX_COLOR);
  n->SetRenderTargetTexture(tex, false);
  EXPECT_EQ(n->TargetFrameBuffer, res().GetRenderTargetTextureFrameBuffer(tex));
  EXPECT_EQ(std::make_pair(n->TargetFrameWidth, n->TargetFrameHeight), std::make_pair(64, 64));

  glColor3f(1.0f, 0.5f, 0.0f);
  n->draw();
  glColor3f(1.0f, 1.0f, 1.0f);
  unsigned char screen[3] = {9, 9, 9};
  glReadPixels(10, 10, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, screen);
  EXPECT_EQ(RGB({screen[0], screen[1], screen[2]}), RGB({0, 0, 0})) << "the screen is untouched";
  const TexImage img = ReadTexture(tex);
  ExpectNear(img.rgb(10, 10), {255, 128, 0}, 2, "inside the quad");
  EXPECT_EQ(img.at(40, 40), (std::array<int, 4>{0, 0, 0, 255})) << "cleared outside the quad";

  // Misuse: an id the manager did not make, and no manager at all.
  auto other = MakeNode<Node>();
  EXPECT_THROW(other->SetRenderTargetTexture(tex + 1000), TypeError);
  EXPECT_FALSE(other->TargetFrameBuffer);
  ResManagerInstance = nullptr;
  EXPECT_THROW(other->SetRenderTargetTexture(tex), AttributeError);
}

TEST_F(RenderTargetsGL, ColourTargetShowsTheSceneObjectsFromTheCamera) {
  auto quad = Quad(-1, -1, 0, 2, 2, Vorn_3DFX::FX_COLOR);
  scene->objects.push_back(quad);
  auto cam = FrontCamera();
  const unsigned tex = cam->CreateRenderTarget();
  EXPECT_EQ(cam->CameraType, Camera::CAMERA_RENDERGARGET);
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
  glColor3f(1.0f, 1.0f, 1.0f);
  EXPECT_EQ(std::make_tuple(scene->disableFogCalls, scene->enableFogCalls, scene->fogEnabled),
            std::make_tuple(1, 1, true));

  GLint bound = -1, mode = 0;
  glGetIntegerv(GL_FRAMEBUFFER_BINDING, &bound);
  glGetIntegerv(GL_MATRIX_MODE, &mode);
  EXPECT_EQ(bound, 0);
  EXPECT_EQ(mode, GL_MODELVIEW);

  // The quad of side 2 at distance 10 spans 2 / (2 tan 22.5 deg * 10) of the height:
  // 58 of 240 pixels, centred.
  const TexImage img = ReadTexture(tex);
  ASSERT_EQ(std::make_pair(img.width, img.height), std::make_pair(kWindowWidth, kWindowHeight));
  ExpectNear(img.rgb(160, 120), {0, 255, 0}, 1, "centre");
  ExpectNear(img.rgb(160 + 25, 120 - 25), {0, 255, 0}, 1, "inside the corner");
  EXPECT_EQ(img.at(160 + 33, 120), (std::array<int, 4>{0, 0, 0, 255})) << "right of the quad";
  EXPECT_EQ(img.at(5, 5), (std::array<int, 4>{0, 0, 0, 255})) << "corner";
  unsigned char screen[3] = {9, 9, 9};
  glReadPixels(160, 120, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, screen);
  EXPECT_EQ(screen[1], 0) << "the window is not drawn into";

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
  auto first = Quad(-1, -1, 0, 2, 2, Vorn_3DFX::FX_COLOR);
  auto second = Quad<Probe>(2, 2, 0, 1, 1, std::nullopt);
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
  EXPECT_EQ(cam->CameraType, Camera::CAMERA_DEPTH);
  EXPECT_EQ(cam->RenderTargetArray.at(Camera::CAMERA_DEPTH).FXID, Vorn_3DFX::FX_DEPTH);
  EXPECT_EQ(cam->GetDepthTargetTexture(), tex);
  EXPECT_EQ(cam->GetDepthTargetTextureSize(),
            std::make_pair(std::optional<int>(kWindowWidth), std::optional<int>(kWindowHeight)));

  glColor3f(0.0f, 1.0f, 0.0f);
  Frame(*cam);
  glColor3f(1.0f, 1.0f, 1.0f);
  EXPECT_TRUE(seen);
  EXPECT_EQ(first->SubMeshFX.at(0), Program(Vorn_3DFX::FX_COLOR));
  EXPECT_FALSE(second->SubMeshFX.contains(0)) << "an object without FX gets none back";

  // Depth as red: clip z at distance 10 (near 0.1, far 500) is 9.804, over 100.
  const TexImage img = ReadTexture(tex);
  ExpectNear(img.rgb(160, 120), {25, 0, 0}, 2, "depth of the quad");
  EXPECT_EQ(img.rgb(5, 5), (RGB{0, 0, 0}));

  // What a node's shadow uniforms receive of this camera; nothing of a plain node.
  ASSERT_TRUE(shadowMapCameraHooks.read);
  const auto info = shadowMapCameraHooks.read(*cam);
  ASSERT_TRUE(info && info->texSize);
  EXPECT_EQ(*info->texSize, std::make_pair(double(kWindowWidth), double(kWindowHeight)));
  EXPECT_EQ(info->viewMatrix, cam->GetViewMatrix());
  EXPECT_EQ(info->projMatrix, cam->GetProjMatrix());
  EXPECT_FALSE(shadowMapCameraHooks.read(*first));
}

TEST_F(RenderTargetsGL, TargetTypesChooseTheListRendered) {
  auto light = Quad(-1, -1, 0, 2, 2, Vorn_3DFX::FX_COLOR);
  scene->pointLights.push_back(light);
  auto cam = FrontCamera();
  const unsigned tex = cam->CreateRenderTarget();
  cam->SetCameraTargetType(Camera::CAMERA_TARGET_POINTLIGHT);
  glColor3f(0.0f, 0.0f, 1.0f);
  Frame(*cam);
  ExpectNear(ReadTexture(tex).rgb(160, 120), {0, 0, 255}, 1, "the point light list");

  // The object kind without a caught node renders nothing: the target keeps its picture.
  cam->SetCameraTargetType(Camera::CAMERA_TARGET_OBJECT);
  cam->DisableFog();
  Frame(*cam);
  ExpectNear(ReadTexture(tex).rgb(160, 120), {0, 0, 255}, 1, "untouched");

  // A caught node is not a list of nodes: refused before fog or frame buffer change.
  cam->Catch(light);
  scene->disableFogCalls = 0;
  EXPECT_THROW(Frame(*cam), TypeError);
  glColor3f(1.0f, 1.0f, 1.0f);
  EXPECT_EQ(scene->disableFogCalls, 0);
  GLint bound = -1;
  glGetIntegerv(GL_FRAMEBUFFER_BINDING, &bound);
  EXPECT_EQ(bound, 0);
}

}  // namespace
}  // namespace vorn::test
