#pragma once
#include <string>

namespace vorn {

// Saves the window's front buffer (the engine's windows are single-buffered) as a PNG
// file; false with a console line when it cannot be written.
bool SaveWindowPNG(const std::string& path, int width, int height);

// RGB bytes of a window rectangle given from the top left, rows from the top (front
// buffer).
std::string ReadWindowPixels(int x, int y, int width, int height);

}  // namespace vorn
