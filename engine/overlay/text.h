#pragma once
// Vorn_Text: a line of bitmap text placed in window pixels, drawn with the raster
// position and GLUT's bitmap fonts. It is not a scene node: no transform, no shader.
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "core/script_owned.h"

namespace vorn {

class Vorn_3DGameNode;

class Vorn_Text : public ScriptOwned, public std::enable_shared_from_this<Vorn_Text> {
 public:
  static constexpr int FT_8_BY_13 = 0;
  static constexpr int FT_9_BY_15 = 1;
  static constexpr int FT_TIMES_ROMAN_10 = 2;
  static constexpr int FT_TIMES_ROMAN_24 = 3;
  static constexpr int FT_HELVETICA_10 = 4;
  static constexpr int FT_HELVETICA_12 = 5;
  static constexpr int FT_HELVETICA_18 = 6;

  static constexpr int FT_ALIGN_LEFT = 0;
  static constexpr int FT_ALIGN_CENTER = 1;
  static constexpr int FT_ALIGN_RIGHT = 2;

  // A GLUT bitmap font and the height the layout uses for it.
  struct FontInfo {
    void* glutFont;
    int height;
  };

  Vorn_Text(double x, double y, std::string text, int font = FT_8_BY_13);
  virtual ~Vorn_Text() = default;

  long holder_count() const noexcept override { return weak_from_this().use_count(); }

  double x, y;
  std::string text;
  int font;
  int height = 15;  // declared line height; drawing uses the font's own
  std::map<int, FontInfo> FontDict;
  double r = 1.0, g = 1.0, b = 1.0;
  bool borderMode = false;
  int alignMode = FT_ALIGN_LEFT;
  // The node that carries this text below a parent node (overlay/text_child.h), if any.
  std::weak_ptr<Vorn_3DGameNode> carrier;

  void SetText(std::string newText) { text = std::move(newText); }
  void SetFont(int newFont) { font = newFont; }
  void SetColor(double red, double green, double blue) {
    r = red;
    g = green;
    b = blue;
  }
  void SetBorderMode(bool mode = true) { borderMode = mode; }
  void SetAlignMode(int mode = FT_ALIGN_LEFT) { alignMode = mode; }

  virtual void update(double delay);
  virtual void draw();

  // Left edge of the line after alignment; characters are taken as 0.7 of the font
  // height wide. Returns nothing useful for an unknown font.
  double AlignedLeft() const;

  // The font table every text starts with.
  static std::map<int, FontInfo> DefaultFontDict();
};

}  // namespace vorn
