#pragma once
// JPEG decoding through TurboJPEG.
#include <cstdint>
#include <memory>
#include <span>

#include "resource/image.h"

namespace vorn {

// Decodes a JPEG held in memory: "L" for a grey file, "RGB" for everything else (CMYK
// files are converted). Null for a file that is not a JPEG, is damaged, or ends early.
std::shared_ptr<Image> DecodeJPEG(std::span<const std::uint8_t> bytes);

}  // namespace vorn
