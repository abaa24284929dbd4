#pragma once
// The normal map MakeSubMeshBump derives from a submesh's picture.
#include <cstdint>
#include <memory>
#include <vector>

#include "resource/image.h"

namespace vorn {

// An "RGB" image of width x height whose pixel (u, v) is the packed normal of the grey
// slope at pixel index v * width + u of `pixels` (`pixel_byte` bytes a pixel, red,
// green, blue first). The outermost rows and columns are (0, 0, 255); a flat picture
// gives (127, 127, 0) inside, the normal's z being negated before packing. The image
// is not flipped: its row v holds row v of `pixels`. ValueError when `pixels` is
// shorter than the size says or pixel_byte is under 3.
std::shared_ptr<Image> MakeBumpMapImage(const std::vector<std::uint8_t>& pixels, int pixel_byte, int width,
                                        int height);

}  // namespace vorn
