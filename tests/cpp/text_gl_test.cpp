// Bitmap text lands where its layout says: top of the line at y, shadow to the lower right.
#include <vector>

#include "core/screen_settings.h"
#include "gl_scene.h"
#include "overlay/text.h"

namespace vorn {
namespace {

class TextGL : public test::GLTest {
 protected:
  void SetUp() override {
    test::GLTest::SetUp();
    if (!HasContext()) return;
    saved_height_ = SCREEN_HEIGHT;
    SCREEN_HEIGHT = test::kWindowHeight;
    glViewport(0, 0, test::kWindowWidth, test::kWindowHeight);
    glClearColor(0.0f, 0.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  }
  void TearDown() override {
    if (HasContext()) SCREEN_HEIGHT = saved_height_;
    test::GLTest::TearDown();
  }

  // Pixels of the window, rows from the top.
  std::vector<unsigned char> Read() {
    glFinish();
    return test::WindowPixels();
  }
  // Bounding box of pixels matching a colour, in top-left window coordinates.
  struct Box {
    int left = 1 << 30, top = 1 << 30, right = -1, bottom = -1;
    bool empty() const { return right < 0; }
  };
  static Box Find(const std::vector<unsigned char>& px, unsigned char r, unsigned char g, unsigned char b) {
    Box box;
    for (int y = 0; y < test::kWindowHeight; ++y)
      for (int x = 0; x < test::kWindowWidth; ++x) {
        const unsigned char* p = &px[((test::kWindowHeight - 1 - y) * test::kWindowWidth + x) * 4];
        if (p[0] == r && p[1] == g && p[2] == b) {
          box.left = std::min(box.left, x);
          box.right = std::max(box.right, x);
          box.top = std::min(box.top, y);
          box.bottom = std::max(box.bottom, y);
        }
      }
    return box;
  }

 private:
  int saved_height_ = 600;
};

TEST_F(TextGL, TopOfLineAtYAndShadowOnePixelLowerRight) {
  Vorn_Text text(40, 30, "HHH");
  text.SetColor(1.0, 1.0, 1.0);
  text.draw();
  const auto plain = Read();
  const Box white = Find(plain, 255, 255, 255);
  ASSERT_FALSE(white.empty());
  // The glyphs lie inside the 13-pixel line that starts at y = 30.
  EXPECT_TRUE(white.left >= 40 && white.left < 44) << white.left;
  EXPECT_TRUE(white.top >= 30 && white.bottom <= 30 + 13) << white.top << ".." << white.bottom;
  EXPECT_TRUE(Find(plain, 0, 0, 0).empty());

  glClear(GL_COLOR_BUFFER_BIT);
  text.SetBorderMode();
  text.draw();
  const auto bordered = Read();
  const Box shadow = Find(bordered, 0, 0, 0);
  ASSERT_FALSE(shadow.empty());
  const Box white2 = Find(bordered, 255, 255, 255);
  EXPECT_EQ(shadow.right, white2.right + 1);
  EXPECT_EQ(shadow.bottom, white2.bottom + 1);
}

TEST_F(TextGL, AlignmentUnknownFontAndEmptyText) {
  Vorn_Text text(100, 0, "abc");
  text.SetAlignMode(Vorn_Text::FT_ALIGN_RIGHT);
  EXPECT_DOUBLE_EQ(text.AlignedLeft(), 100 - 3 * 13 * 0.7);
  text.SetAlignMode(Vorn_Text::FT_ALIGN_CENTER);
  EXPECT_DOUBLE_EQ(text.AlignedLeft(), 100 - 3 * 0.5 * 13 * 0.7);

  // Text at y 0 touches the window's top rows.
  text.SetAlignMode(Vorn_Text::FT_ALIGN_LEFT);
  text.SetText("HHHH");
  text.draw();
  const Box top = Find(Read(), 255, 255, 255);
  ASSERT_FALSE(top.empty());
  EXPECT_LE(top.top, 4);

  glClear(GL_COLOR_BUFFER_BIT);
  text.SetFont(99);
  text.draw();
  Vorn_Text empty(10, 10, "");
  empty.draw();
  EXPECT_TRUE(Find(Read(), 255, 255, 255).empty());
}

}  // namespace
}  // namespace vorn
