// Fonts over SDL_ttf. SDL_ttf opens once, on the first font.
#include "resource/font.h"

#include <SDL.h>
#include <SDL_ttf.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "core/errors.h"

namespace vorn {
namespace {

void open_ttf() {
  static const bool opened = [] {
    if (TTF_Init() != 0) throw RuntimeError(std::string("fonts: SDL_ttf does not start: ") + TTF_GetError());
    return true;
  }();
  (void)opened;
}

// A transparent 1-pixel-wide image of the font's height: SDL_ttf refuses empty text.
std::shared_ptr<Image> empty_line(int height) {
  return std::make_shared<Image>(Image::Mode::RGBA, 1, height > 0 ? height : 1);
}

}  // namespace

Vorn_Font::Vorn_Font(const std::string& path, int fontSize) : fontSize_(fontSize) {
  // SDL_ttf takes sizes of 0 and below without complaint and draws nothing sensible.
  if (fontSize <= 0) {
    throw ValueError("Vorn_Font: fontSize must be above 0, not " + std::to_string(fontSize));
  }
  open_ttf();
  TTF_Font* font = TTF_OpenFont(path.c_str(), fontSize);
  if (!font) throw RuntimeError("Vorn_Font: cannot read " + path + ": " + TTF_GetError());
  font_.reset(font, TTF_CloseFont);
}

void Vorn_Font::apply_style() {
  TTF_SetFontStyle(font_.get(), (bold_ ? TTF_STYLE_BOLD : 0) | (italic_ ? TTF_STYLE_ITALIC : 0));
}

void Vorn_Font::set_bold(bool bold) {
  bold_ = bold;
  apply_style();
}

void Vorn_Font::set_italic(bool italic) {
  italic_ = italic;
  apply_style();
}

int Vorn_Font::get_height() const { return TTF_FontHeight(font_.get()); }

std::pair<int, int> Vorn_Font::size(const std::string& text) const {
  int w = 0, h = 0;
  if (text.empty()) return {0, get_height()};
  if (TTF_SizeUTF8(font_.get(), text.c_str(), &w, &h) != 0) {
    throw RuntimeError(std::string("Vorn_Font.size: ") + TTF_GetError());
  }
  return {w, h};
}

std::shared_ptr<Image> Vorn_Font::render(const std::string& text, bool antialias, int r, int g, int b,
                                         int a) const {
  if (text.empty()) return empty_line(get_height());
  const auto channel = [](int v) { return static_cast<Uint8>(v < 0 ? 0 : (v > 255 ? 255 : v)); };
  const SDL_Color colour{channel(r), channel(g), channel(b), channel(a)};
  SDL_Surface* drawn = antialias ? TTF_RenderUTF8_Blended(font_.get(), text.c_str(), colour)
                                 : TTF_RenderUTF8_Solid(font_.get(), text.c_str(), colour);
  if (!drawn) throw RuntimeError(std::string("Vorn_Font.render: ") + TTF_GetError());
  SDL_Surface* rgba = SDL_ConvertSurfaceFormat(drawn, SDL_PIXELFORMAT_RGBA32, 0);
  SDL_FreeSurface(drawn);
  if (!rgba) throw RuntimeError(std::string("Vorn_Font.render: ") + SDL_GetError());
  const int w = rgba->w, h = rgba->h;
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(w) * static_cast<std::size_t>(h) * 4);
  SDL_LockSurface(rgba);
  for (int y = 0; y < h; ++y) {
    std::memcpy(bytes.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(w) * 4,
                static_cast<const std::uint8_t*>(rgba->pixels) + static_cast<std::size_t>(y) * rgba->pitch,
                static_cast<std::size_t>(w) * 4);
  }
  SDL_UnlockSurface(rgba);
  SDL_FreeSurface(rgba);
  // The solid renderer keeps its colour's alpha only where it draws; blended already
  // carries coverage in alpha.
  return Image::FromBytes(Image::Mode::RGBA, w, h, std::move(bytes));
}

std::shared_ptr<Image> Vorn_Font::render_on(const std::string& text, bool antialias, int r, int g, int b, int bgR,
                                            int bgG, int bgB) const {
  const std::shared_ptr<Image> drawn = render(text, antialias, r, g, b);
  std::vector<std::uint8_t> bytes = drawn->tobytes();
  const int bg[3] = {bgR < 0 ? 0 : (bgR > 255 ? 255 : bgR), bgG < 0 ? 0 : (bgG > 255 ? 255 : bgG),
                     bgB < 0 ? 0 : (bgB > 255 ? 255 : bgB)};
  for (std::size_t i = 0; i + 3 < bytes.size(); i += 4) {
    const int alpha = bytes[i + 3];
    for (int c = 0; c < 3; ++c) bytes[i + c] = static_cast<std::uint8_t>((bytes[i + c] * alpha + bg[c] * (255 - alpha) + 127) / 255);
    bytes[i + 3] = 255;
  }
  return Image::FromBytes(Image::Mode::RGBA, drawn->width(), drawn->height(), std::move(bytes));
}

}  // namespace vorn
