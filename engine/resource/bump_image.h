#pragma once
// Normal maps derived from the brightness of a picture.
#include <memory>

#include "resource/image.h"

namespace vorn {

// An "RGB" image of the picture's size whose pixels encode a surface normal. The
// brightness (R * 0.2989 + G * 0.587 + B * 0.114) is taken as height; the slope towards
// the left and the upper neighbour is their brightness step over 512, and the first
// row and column count as flat. The normal of the tangents (1, 0, slope_x) and
// (0, 1, slope_y) is stored as R = x * 255, G = y * 255, B = (z + 1) / 2 * 255, each
// truncated; R and G hold only the positive part of x and y, so a flat picture gives
// (0, 0, 255) and a picture darkening to the right tilts its normals towards +x.
// An "L" picture is its own brightness; the alpha of "RGBA" plays no part.
std::shared_ptr<Image> MakeBumpNormalMap(const Image& picture);

}  // namespace vorn
