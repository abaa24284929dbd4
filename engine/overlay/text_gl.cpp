// Font table and drawing of Vorn_Text: the GL- and GLUT-facing half.
#include "core/gl_api.h"
#include "core/gl_state_guard.h"
#include "core/screen_settings.h"
#include "overlay/text.h"

namespace vorn {
namespace {

// Texture units the draws of this engine use.
constexpr int kTextureUnits = 8;

// Bitmap fragments are textured like any other while a unit has texturing on, with
// the texture coordinate the last draw left: a dark texel there hides the text. The
// text is drawn with texturing off on every unit and the units are left as found.
class TexturingOff {
 public:
  TexturingOff() {
    for (int unit = 0; unit < kTextureUnits; ++unit) {
      glActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
      was2D_[unit] = glIsEnabled(GL_TEXTURE_2D);
      wasCube_[unit] = glIsEnabled(GL_TEXTURE_CUBE_MAP);
      if (was2D_[unit]) glDisable(GL_TEXTURE_2D);
      if (wasCube_[unit]) glDisable(GL_TEXTURE_CUBE_MAP);
    }
    gl_state::SelectTextureUnit(0);
  }
  ~TexturingOff() {
    for (int unit = 0; unit < kTextureUnits; ++unit) {
      if (!was2D_[unit] && !wasCube_[unit]) continue;
      glActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
      if (was2D_[unit]) glEnable(GL_TEXTURE_2D);
      if (wasCube_[unit]) glEnable(GL_TEXTURE_CUBE_MAP);
    }
    gl_state::SelectTextureUnit(0);
  }
  TexturingOff(const TexturingOff&) = delete;
  TexturingOff& operator=(const TexturingOff&) = delete;

 private:
  GLboolean was2D_[kTextureUnits] = {};
  GLboolean wasCube_[kTextureUnits] = {};
};

}  // namespace

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
  const TexturingOff untextured;

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
