#include "overlay/text.h"

namespace vorn {

Vorn_Text::Vorn_Text(double x_, double y_, std::string text_, int font_)
    : x(x_), y(y_), text(std::move(text_)), font(font_), FontDict(DefaultFontDict()) {}

void Vorn_Text::update(double) {}

double Vorn_Text::AlignedLeft() const {
  auto it = FontDict.find(font);
  if (it == FontDict.end()) return x;
  const double avgW = it->second.height * 0.7;
  const double length = static_cast<double>(text.size());
  if (alignMode == FT_ALIGN_CENTER) return x - length * 0.5 * avgW;
  if (alignMode == FT_ALIGN_RIGHT) return x - length * avgW;
  return x;
}

}  // namespace vorn
