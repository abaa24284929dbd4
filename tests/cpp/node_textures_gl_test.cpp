// Textures under a real driver: pictures from PNG, JPG and TGA files on a diffuse
// textured quad, 2D rectangles and images in screen pixels, cube maps, bump maps and
// the one-picture-for-all-submeshes load.
#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "app/globals.h"
#include "console_capture.h"
#include "core/errors.h"
#include "fake_scene.h"
#include "gl_harness.h"
#include "node/game_node.h"
#include "shader/fx_2d.h"
#include "shader/fx_3d.h"
#include "shader/fx_manage.h"
#include "texture_test_files.h"

namespace vorn::test {
namespace {

using Node = Vorn_3DGameNode;

const std::shared_ptr<Vorn_FXManage>& Manager() {
  static const std::shared_ptr<Vorn_FXManage> manager = [] {
    ConsoleCapture quiet;
    return std::make_shared<Vorn_FXManage>();
  }();
  return manager;
}

// A pixel of the window, y counted from the top as scripts count it.
RGB ScreenPixel(int x, int yFromTop) {
  unsigned char p[4] = {0, 0, 0, 0};
  glReadPixels(x, kWindowHeight - 1 - yFromTop, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
  return {p[0], p[1], p[2]};
}

void ExpectNear(const RGB& got, const RGB& want, int tol, const std::string& what) {
  for (int k = 0; k < 3; ++k) EXPECT_NEAR(got[k], want[k], tol) << what << ", component " << k;
}

class TexturesGL : public GLTest {
 protected:
  void SetUp() override {
    GLTest::SetUp();
    if (IsSkipped()) return;
    savedFX_ = FXManagerInstance;
    FXManagerInstance = Manager();
    savedSize_ = {SCREEN_WIDTH, SCREEN_HEIGHT};
    SCREEN_WIDTH = kWindowWidth;
    SCREEN_HEIGHT = kWindowHeight;
    scene = std::make_shared<FakeScene>();
    // A light that leaves the diffuse texture's colours as they are.
    scene->ambient = {1.0, 1.0, 1.0};
    scene->sunDir = {0.0, 0.0, -1.0};
    scene->sunColor = {1.0, 1.0, 1.0};
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
      glDisable(GL_TEXTURE_2D);
      glActiveTexture(GL_TEXTURE0);
      glBindTexture(GL_TEXTURE_2D, 0);
      glUseProgram(0);
    }
    GLTest::TearDown();
  }

  // A size x size quad with its bottom-left corner at (x, y) in window pixels from the
  // bottom, texture coordinates (0, 0) there and (1, 1) at the top right.
  std::shared_ptr<Node> Quad(double x, double y, double size) {
    auto n = MakeNode<Node>(x, y, 0);
    n->OnLoad(scene);
    const int s = n->CreateSubMesh("quad", true);
    n->PushQuadVertex_Postion(s, std::array<double, 12>{0, 0, 0, size, 0, 0, size, size, 0, 0, size, 0});
    n->PushQuadVertex_Normal(s, std::array<double, 12>{0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1});
    n->PushQuadVertex_UV(s, std::array<double, 8>{0, 0, 1, 0, 1, 1, 0, 1});
    n->PushTriangleVIndex(s, 0, 1, 2);
    n->PushTriangleVIndex(s, 0, 2, 3);
    n->BuildVBO();
    ConsoleCapture quiet;
    n->ApplyFX(Vorn_3DFX::FX_DIFFUSE_TEXTURE);
    n->update(0);
    return n;
  }

  // The four quadrant colours of a quad drawn at (x, y from the bottom) of `size`.
  void ExpectQuadrants(double x, double y, double size, int tol, const std::string& what) {
    const int top = kWindowHeight - 1 - static_cast<int>(y + size * 0.75);
    const int bottom = kWindowHeight - 1 - static_cast<int>(y + size * 0.25);
    const int left = static_cast<int>(x + size * 0.25), right = static_cast<int>(x + size * 0.75);
    ExpectNear(ScreenPixel(left, top), kRed, tol, what + " top left");
    ExpectNear(ScreenPixel(right, top), kGreen, tol, what + " top right");
    ExpectNear(ScreenPixel(left, bottom), kBlue, tol, what + " bottom left");
    ExpectNear(ScreenPixel(right, bottom), kWhite, tol, what + " bottom right");
  }

  TempDir dir;
  std::shared_ptr<FakeScene> scene;

 private:
  std::shared_ptr<Vorn_FXManage> savedFX_;
  std::array<int, 2> savedSize_{};
};

TEST_F(TexturesGL, PngJpgAndBothTgaOriginsShowUprightOnDiffuseTexturedQuads) {
  const auto picture = Quadrants(8);
  picture->save(dir.file("q.png"));
  dir.write("q.jpg", EncodeJPG(*Quadrants(16)));
  dir.write("bottom.tga", EncodeTGA(*picture, false));
  dir.write("top.tga", EncodeTGA(*picture, true));

  const std::array<const char*, 4> files = {"q.png", "q.jpg", "bottom.tga", "top.tga"};
  std::vector<std::shared_ptr<Node>> quads;
  for (std::size_t i = 0; i < files.size(); ++i) {
    quads.push_back(Quad(10 + 75.0 * i, 60, 64));
    quads.back()->LoadSubMeshTextureFromFile(0, 0, dir.file(files[i]));
    quads.back()->draw();
  }
  for (std::size_t i = 0; i < files.size(); ++i) {
    EXPECT_TRUE(quads[i]->TextureArray.at(0)[0].genFinish) << files[i];
    // The TGA reader's pictures always carry alpha.
    EXPECT_EQ(quads[i]->TextureArray.at(0)[0].Format, i < 2 ? "RGB" : "RGBA") << files[i];
    ExpectQuadrants(10 + 75.0 * i, 60, 64, i == 1 ? 12 : 3, files[i]);
  }
}

TEST_F(TexturesGL, Draw2DImageFillsTheWindowUprightAndDraw2DRectCoversItsPixels) {
  Quadrants(8)->save(dir.file("q.png"));
  auto image = MakeNode<Node>();
  {
    ConsoleCapture quiet;
    image->Draw2DImage(0, 0, kWindowWidth, kWindowHeight, dir.file("q.png"));
  }
  image->OnLoad(scene);
  EXPECT_TRUE(image->is2DMode);
  EXPECT_EQ(image->VertexDescArray.at(0), glc::T2F_V3F);
  EXPECT_EQ(image->SubMeshFX.at(0), *Manager()->GetShader(Vorn_2DFX::FX_COLOR_TEXTURE));
  // Corners in device coordinates: the whole range.
  const auto& corners = image->VertexArray_Positon.at(0);
  EXPECT_EQ(corners[0], (VertexEntry<3>(-1.0, 1.0, 0.0)));
  EXPECT_EQ(corners[2], (VertexEntry<3>(1.0, -1.0, 0.0)));

  ConsoleCapture console;
  image->draw();
  // No alpha mode on a 2D submesh: the draw prints its index.
  EXPECT_EQ(console.lines(), std::vector<std::string>{"0"});
  ExpectNear(ScreenPixel(80, 60), kRed, 3, "top left");
  ExpectNear(ScreenPixel(240, 60), kGreen, 3, "top right");
  ExpectNear(ScreenPixel(80, 180), kBlue, 3, "bottom left");
  ExpectNear(ScreenPixel(240, 180), kWhite, 3, "bottom right");

  // A rectangle 100 x 50 pixels at (40, 30) from the top left, in its own colour.
  auto rect = MakeNode<Node>();
  {
    ConsoleCapture quiet;
    rect->Draw2DRect(40, 30, 100, 50, 1.0, 0.5, 0.0);
  }
  rect->OnLoad(scene);
  glClear(GL_COLOR_BUFFER_BIT);
  console.clear();
  rect->draw();
  const RGB orange{255, 128, 0};
  ExpectNear(ScreenPixel(41, 31), orange, 2, "inside top left");
  ExpectNear(ScreenPixel(138, 78), orange, 2, "inside bottom right");
  ExpectNear(ScreenPixel(38, 50), RGB{0, 0, 0}, 0, "left of it");
  ExpectNear(ScreenPixel(90, 82), RGB{0, 0, 0}, 0, "below it");
  ExpectNear(ScreenPixel(142, 50), RGB{0, 0, 0}, 0, "right of it");

  // A screen of no size cannot place a rectangle.
  SCREEN_WIDTH = 0;
  EXPECT_THROW(MakeNode<Node>()->Draw2DRect(0, 0, 1, 1), ZeroDivisionError);
}

TEST_F(TexturesGL, CubeMapLoadsSixFacesAndALostFaceReturnsFalse) {
  const std::array<const char*, 6> faces = {"right.jpg", "left.jpg", "top.jpg", "bottom.jpg", "front.jpg", "back.jpg"};
  const std::array<RGB, 6> colours = {kRed, kGreen, kBlue, kWhite, RGB{255, 255, 0}, RGB{0, 255, 255}};
  std::filesystem::create_directories(dir.file("res/SkyBox/day"));
  std::filesystem::create_directories(dir.file("res/SkyBox/half"));
  for (std::size_t i = 0; i < faces.size(); ++i) {
    const auto face = Quadrants(8, colours[i], colours[i], colours[i], colours[i]);
    dir.write("res/SkyBox/day/" + std::string(faces[i]), EncodeJPG(*face));
    if (i < 5) dir.write("res/SkyBox/half/" + std::string(faces[i]), EncodeJPG(*face));
  }
  ResourceScope res(dir.file("res"));

  auto n = MakeNode<Node>();
  const int s = n->CreateSubMesh("sky", true);
  ASSERT_TRUE(n->LoadSubMeshCubeMapTextureFromFile(s, "SkyBox/day"));
  ASSERT_EQ(n->TextureArray.at(s).size(), 1u);
  const TextureInfo rec = n->TextureArray.at(s)[0];
  EXPECT_EQ(rec.Format, "CUBE");
  EXPECT_EQ(rec.channel, 0);
  EXPECT_TRUE(rec.genFinish);
  EXPECT_EQ((std::array<int, 2>{rec.width, rec.height}), (std::array<int, 2>{8, 8}));
  const DynamicTextureRecord* registered = res.manager().GetDynamicTexture(rec.texID);
  ASSERT_TRUE(registered);
  EXPECT_EQ(registered->Format, "CUBE");
  EXPECT_EQ(registered->Depth, 24);

  // Each face holds its own picture, in the order +x, -x, +y, -y, +z, -z.
  glBindTexture(GL_TEXTURE_CUBE_MAP, rec.texID);
  for (std::size_t i = 0; i < faces.size(); ++i) {
    std::vector<std::uint8_t> texels(8 * 8 * 3);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(static_cast<GLenum>(GL_TEXTURE_CUBE_MAP_POSITIVE_X + i), 0, GL_RGB, GL_UNSIGNED_BYTE, texels.data());
    ExpectNear(RGB{texels[99], texels[100], texels[101]}, colours[i], 6, faces[i]);
  }
  glBindTexture(GL_TEXTURE_CUBE_MAP, 0);

  ConsoleCapture console;
  EXPECT_FALSE(n->LoadSubMeshCubeMapTextureFromFile(s, "SkyBox/half"));
  const std::string lost =
      (std::filesystem::weakly_canonical(dir.file("res/SkyBox/half")) / "back.jpg").string();
  EXPECT_EQ(console.lines(), std::vector<std::string>{"SkyBox Texture  " + lost + "  Lost !"});
  EXPECT_EQ(n->TextureArray.at(s).size(), 1u);
  EXPECT_THROW(n->LoadSubMeshCubeMapTextureFromFile(7, "SkyBox/day"), KeyError);
}

TEST_F(TexturesGL, BumpMapIsWrittenAttachedOnceAndSwitchesTheEffect) {
  const std::filesystem::path savedDir = std::filesystem::current_path();
  std::filesystem::current_path(dir.file(""));
  auto n = Quad(10, 10, 64);
  const std::vector<std::uint8_t> grey(6 * 6 * 3, 90);
  n->LoadSubMeshTextureFromImage(0, 0, std::make_shared<const std::vector<std::uint8_t>>(grey), "RGB", 6, 6);
  ConsoleCapture console;
  n->MakeSubMeshBump(0, 1);
  // The bump program is asked for and its source printed, by the FX call and once more.
  EXPECT_EQ(std::count(console.lines().begin(), console.lines().end(), "VSCode (318)=>"), 2);
  EXPECT_TRUE(std::filesystem::exists("bump.png"));
  ASSERT_EQ(n->TextureArray.at(0).size(), 2u);
  const TextureInfo& bump = n->TextureArray.at(0)[1];
  EXPECT_EQ(bump.channel, 1);
  EXPECT_EQ(bump.Format, "RGB");
  EXPECT_FALSE(bump.mipMap);
  // Inner pixels of a flat picture: (127, 127, 0).
  const std::size_t inner = (2 * 6 + 2) * 3;
  EXPECT_EQ((RGB{(*bump.imgData)[inner], (*bump.imgData)[inner + 1], (*bump.imgData)[inner + 2]}),
            (RGB{127, 127, 0}));
  // The submesh runs the bump program unless the driver refuses it, then keeps its own.
  const unsigned bumpFX = *Manager()->GetShader(Vorn_3DFX::FX_DIFFUSE_TEXTURE_BUMP);
  const unsigned diffuseFX = *Manager()->GetShader(Vorn_3DFX::FX_DIFFUSE_TEXTURE);
  EXPECT_TRUE(n->SubMeshFX.at(0) == bumpFX || n->SubMeshFX.at(0) == diffuseFX);
  EXPECT_FALSE(n->VertexArray_Tangent.at(0).empty());

  // With a channel 1 texture standing, no second map is made.
  n->MakeSubMeshBump(0, 2);
  EXPECT_EQ(n->TextureArray.at(0).size(), 2u);
  std::filesystem::current_path(savedDir);
}

TEST_F(TexturesGL, LoadTextureFromFileReplacesEveryTextureAndSetsTheLastSubmeshEffect) {
  Quadrants(4)->save(dir.file("q.png"));
  auto n = Quad(10, 10, 64);
  const int second = n->CreateSubMesh("second", true);
  n->PushQuadVertex_Postion(second, std::array<double, 12>{});
  const std::vector<std::uint8_t> old(3, 1);
  n->LoadSubMeshTextureFromImage(0, 2, std::make_shared<const std::vector<std::uint8_t>>(old), "RGB", 1, 1);
  {
    ConsoleCapture quiet;
    n->ApplyFX(Vorn_3DFX::FX_DIFFUSE);
    n->LoadTextureFromFile(dir.file("q.png"));
  }
  for (int s : {0, second}) {
    ASSERT_EQ(n->TextureArray.at(s).size(), 1u);
    EXPECT_EQ(n->TextureArray.at(s)[0].Format, "RGBA");
    EXPECT_EQ(n->TextureArray.at(s)[0].channel, 0);
  }
  EXPECT_EQ(n->SubMeshFX.at(0), *Manager()->GetShader(Vorn_3DFX::FX_DIFFUSE));
  EXPECT_EQ(n->SubMeshFX.at(second), *Manager()->GetShader(Vorn_3DFX::FX_DIFFUSE_TEXTURE));

  EXPECT_THROW(MakeNode<Node>()->LoadTextureFromFile(dir.file("q.png")), RuntimeError);
}

}  // namespace
}  // namespace vorn::test
