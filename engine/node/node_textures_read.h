#pragma once
// Image files as texture pixels, shared by the texture operations of the node.
#include <optional>
#include <string>

#include "node/node_types.h"

namespace vorn {

// Pixels ready for glTexImage2D: rows from the bottom up, "RGB" or "RGBA".
struct DecodedTexture {
  TexturePixels pixels;
  std::string format;
  int width = 0;
  int height = 0;
};

// Reads a file by the extension of its path. TGA and DDS go through their readers and
// keep the rows as the readers give them, "RGBA" when the reader's alpha flag is set;
// anything else is decoded as PNG or JPEG and flipped to rows from the bottom up,
// "RGBA" when the picture has alpha. `forceRGBA` converts every picture to "RGBA".
// Nothing when the file cannot be decoded.
std::optional<DecodedTexture> ReadTextureFile(const std::string& path, bool forceRGBA);

}  // namespace vorn
