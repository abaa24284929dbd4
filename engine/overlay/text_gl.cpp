// Font table and drawing of Vorn_Text: the GL- and GLUT-facing half.
#include "core/gl_api.h"
#include "core/gl_state_guard.h"
#include "core/screen_settings.h"
#include "overlay/text.h"

namespace vorn {

std::map<int, Vorn_Text::FontInfo> Vorn_Text::DefaultFontDict() {
  return {
      {FT_8_BY_13, {GLUT_BITMAP_8_BY_13, 13}},
      {FT_9_BY_15, {GLUT_BITMAP_9_BY_15, 15}},
      {FT_TIMES_ROMAN_10, {GLUT_BITMAP_TIMES_ROMAN_10, 10}},
      {FT_TIMES_ROMAN_24, {GLUT_BITMAP_TIMES_ROMAN_24, 24}},
      {FT_HELVETICA_10, {GLUT_BITMAP_HELVETICA_10, 10}},
      {FT_HELVETICA_12, {GLUT_BITMAP_HELVETICA_12, 12}},
      {FT_HELVETICA_18, {GLUT_BITMAP_HELVETICA_18, 18}},
  };
}

void Vorn_Text::draw() {
  auto it = FontDict.find(font);
  if (it == FontDict.end() || text.empty()) return;
  const gl_state::DrawScope scope("Vorn_Text.draw");
  // The bitmap fonts are GLUT's: without glutInit GLUT would end the process.
  RequireGlutInit("Vorn_Text.draw");
  const FontInfo info = it->second;
  const GLboolean blending = glIsEnabled(GL_BLEND);
  const double left = AlignedLeft();
  // The base line sits one font height below y, so y is the top of the line.
  const double baseline = SCREEN_HEIGHT - info.height - y;

  auto draw_line = [&](double px, double py) {
    glWindowPos2f(static_cast<float>(px), static_cast<float>(py));
    for (unsigned char ch : text) glutBitmapCharacter(info.glutFont, ch);
  };
  if (borderMode) {
    // A black shadow one pixel right of and below the text.
    glColor3f(0.0f, 0.0f, 0.0f);
    draw_line(left + 1, baseline - 1);
  }
  glColor3f(static_cast<float>(r), static_cast<float>(g), static_cast<float>(b));
  draw_line(left, baseline);
  if (!blending) glDisable(GL_BLEND);
}

}  // namespace vorn
