#pragma once
// TrueType fonts over SDL_ttf: a font of one size with bold and italic, the size a
// string takes and the string rendered to an RGBA image.
#include <memory>
#include <string>
#include <utility>

#include "resource/image.h"

typedef struct _TTF_Font TTF_Font;

namespace vorn {

class Vorn_Font {
 public:
  // ValueError for a size of 0 or below (SDL_ttf would accept some of them);
  // RuntimeError naming the path when the file is missing or not a font.
  Vorn_Font(const std::string& path, int fontSize);

  int GetFontSize() const noexcept { return fontSize_; }
  void set_bold(bool bold);
  void set_italic(bool italic);
  bool get_bold() const noexcept { return bold_; }
  bool get_italic() const noexcept { return italic_; }
  // Line height in pixels.
  int get_height() const;
  // (width, height) in pixels that render would give for text.
  std::pair<int, int> size(const std::string& text) const;
  // text (UTF-8) in the colour, antialiased or not, on a transparent background; rows
  // from the top. An empty string gives a 1-pixel-wide transparent image.
  std::shared_ptr<Image> render(const std::string& text, bool antialias, int r, int g, int b, int a = 255) const;
  // The same laid over an opaque background colour: every pixel opaque, for users that
  // draw a picture without blending (a 2D image).
  std::shared_ptr<Image> render_on(const std::string& text, bool antialias, int r, int g, int b, int bgR, int bgG,
                                   int bgB) const;

 private:
  void apply_style();
  std::shared_ptr<TTF_Font> font_;
  int fontSize_ = 0;
  bool bold_ = false;
  bool italic_ = false;
};

}  // namespace vorn
