// Textures under a real driver: pictures from PNG, JPG and TGA files on a diffuse
// textured quad, 2D rectangles and images in screen pixels, cube maps, bump maps and
// the one-picture-for-all-submeshes load.
#include <algorithm>
#include <filesystem>
#include <tuple>

#include "core/errors.h"
#include "gl_scene.h"
#include "shader/fx_2d.h"
#include "shader/fx_3d.h"
#include "texture_test_files.h"

namespace vorn::test {
namespace {

using Node = Vorn_3DGameNode;

// A pixel of the window, y counted from the top as scripts count it.
RGBA ScreenPixel(int x, int yFromTop) { return Pixel(x, kWindowHeight - 1 - yFromTop); }

class TexturesGL : public NodeGLTest {
 protected:
  void SetUp() override {
    NodeGLTest::SetUp();
    scene->sunDir = {0.0, 0.0, -1.0};  // with white light the diffuse texture shows as it is
  }

  // A textured quad with its bottom-left corner at (x, y) in window pixels from the bottom.
  std::shared_ptr<Node> TexQuad(double x, double y, double size) {
    return Quad(x, y, size, size, Vorn_3DFX::FX_DIFFUSE_TEXTURE, kUV);
  }

  // The four quadrant colours of a picture drawn at (x, y from the bottom), w x h.
  void ExpectQuadrants(double x, double y, double w, double h, int tol, const std::string& what) {
    const int top = kWindowHeight - 1 - static_cast<int>(y + h * 0.75);
    const int bottom = kWindowHeight - 1 - static_cast<int>(y + h * 0.25);
    const int left = static_cast<int>(x + w * 0.25), right = static_cast<int>(x + w * 0.75);
    ExpectRGB(ScreenPixel(left, top), kRed, tol, what + " top left");
    ExpectRGB(ScreenPixel(right, top), kGreen, tol, what + " top right");
    ExpectRGB(ScreenPixel(left, bottom), kBlue, tol, what + " bottom left");
    ExpectRGB(ScreenPixel(right, bottom), kWhite, tol, what + " bottom right");
  }

  TempDir dir;
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
    quads.push_back(TexQuad(10 + 75.0 * i, 60, 64));
    quads.back()->LoadSubMeshTextureFromFile(0, 0, dir.file(files[i]));
    quads.back()->draw();
  }
  for (std::size_t i = 0; i < files.size(); ++i) {
    EXPECT_TRUE(quads[i]->TextureArray.at(0)[0].genFinish) << files[i];
    // The TGA reader's pictures always carry alpha.
    EXPECT_EQ(quads[i]->TextureArray.at(0)[0].Format, i < 2 ? "RGB" : "RGBA") << files[i];
    ExpectQuadrants(10 + 75.0 * i, 60, 64, 64, i == 1 ? 12 : 3, files[i]);
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
  EXPECT_EQ(image->SubMeshFX.at(0), Program(Vorn_2DFX::FX_COLOR_TEXTURE));
  ConsoleCapture console;
  image->draw();
  // No alpha mode on a 2D submesh: the draw prints its index.
  EXPECT_EQ(console.lines(), std::vector<std::string>{"0"});
  ExpectQuadrants(0, 0, kWindowWidth, kWindowHeight, 3, "2D image");

  // A rectangle 100 x 50 pixels at (40, 30) from the top left, in its own colour.
  auto rect = MakeNode<Node>();
  {
    ConsoleCapture quiet;
    rect->Draw2DRect(40, 30, 100, 50, 1.0, 0.5, 0.0);
  }
  rect->OnLoad(scene);
  glClear(GL_COLOR_BUFFER_BIT);
  rect->draw();
  for (const auto& [x, y, inside] : {std::tuple{41, 31, true}, {138, 78, true}, {38, 50, false}, {90, 82, false},
                                     {142, 50, false}}) {
    ExpectRGB(ScreenPixel(x, y), inside ? RGB{255, 128, 0} : RGB{0, 0, 0}, 2, std::to_string(x) + "," + std::to_string(y));
  }

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
  EXPECT_EQ(std::make_tuple(rec.Format, rec.channel, rec.genFinish, rec.width), std::make_tuple(std::string("CUBE"), 0, true, 8));
  const DynamicTextureRecord* registered = res.manager().GetDynamicTexture(rec.texID);
  ASSERT_TRUE(registered);
  EXPECT_EQ(registered->Format, "CUBE");

  // Each face holds its own picture, in the order +x, -x, +y, -y, +z, -z.
  glBindTexture(GL_TEXTURE_CUBE_MAP, rec.texID);
  for (std::size_t i = 0; i < faces.size(); ++i) {
    std::vector<std::uint8_t> texels(8 * 8 * 3);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(static_cast<GLenum>(GL_TEXTURE_CUBE_MAP_POSITIVE_X + i), 0, GL_RGB, GL_UNSIGNED_BYTE, texels.data());
    ExpectRGB(RGB{texels[99], texels[100], texels[101]}, colours[i], 6, faces[i]);
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
  auto n = TexQuad(10, 10, 64);
  const std::vector<std::uint8_t> grey(6 * 6 * 3, 90);
  n->LoadSubMeshTextureFromImage(0, 0, std::make_shared<const std::vector<std::uint8_t>>(grey), "RGB", 6, 6);
  ConsoleCapture console;
  n->MakeSubMeshBump(0, 1);
  // The bump program is asked for and its source printed, by the FX call and once more.
  EXPECT_EQ(std::count(console.lines().begin(), console.lines().end(), "VSCode (318)=>"), 2);
  EXPECT_TRUE(std::filesystem::exists("bump.png"));
  ASSERT_EQ(n->TextureArray.at(0).size(), 2u);
  const TextureInfo& bump = n->TextureArray.at(0)[1];
  EXPECT_EQ(std::make_tuple(bump.channel, bump.Format, bump.mipMap), std::make_tuple(1, std::string("RGB"), false));
  // Inner pixels of a flat picture: (127, 127, 0).
  const std::size_t inner = (2 * 6 + 2) * 3;
  EXPECT_EQ((RGB{(*bump.imgData)[inner], (*bump.imgData)[inner + 1], (*bump.imgData)[inner + 2]}),
            (RGB{127, 127, 0}));
  // The submesh runs the bump program unless the driver refuses it, then keeps its own.
  EXPECT_TRUE(n->SubMeshFX.at(0) == Program(Vorn_3DFX::FX_DIFFUSE_TEXTURE_BUMP) ||
              n->SubMeshFX.at(0) == Program(Vorn_3DFX::FX_DIFFUSE_TEXTURE));
  EXPECT_FALSE(n->VertexArray_Tangent.at(0).empty());

  // With a channel 1 texture standing, no second map is made.
  n->MakeSubMeshBump(0, 2);
  EXPECT_EQ(n->TextureArray.at(0).size(), 2u);
  std::filesystem::current_path(savedDir);
}

TEST_F(TexturesGL, LoadTextureFromFileReplacesEveryTextureAndSetsTheLastSubmeshEffect) {
  Quadrants(4)->save(dir.file("q.png"));
  auto n = TexQuad(10, 10, 64);
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
  EXPECT_EQ(n->SubMeshFX.at(0), Program(Vorn_3DFX::FX_DIFFUSE));
  EXPECT_EQ(n->SubMeshFX.at(second), Program(Vorn_3DFX::FX_DIFFUSE_TEXTURE));

  EXPECT_THROW(MakeNode<Node>()->LoadTextureFromFile(dir.file("q.png")), RuntimeError);
}

}  // namespace
}  // namespace vorn::test
