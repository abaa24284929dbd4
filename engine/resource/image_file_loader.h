#pragma once
// LoadImageFile: a file name to a decoded image, by its extension.
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "resource/image_load_result.h"
#include "resource/image_path.h"

namespace vorn {

// A PNG or JPEG held in memory, told apart by their signatures; null for anything else
// or for a damaged file.
std::shared_ptr<Image> DecodeImageBytes(std::span<const std::uint8_t> bytes);

// ".tga" goes to LoadTGA and ".dds" to LoadDDS (without `dirName`), any letter case.
// ".png" and ".jpg" are found (as given, else through `lookup` with `dirName`) and
// decoded by content: (image, width, height, false). Every other extension, a name
// that can't be found and a file that can't be decoded give (nothing, 0, 0, false).
ImageLoadResult LoadImageFile(const std::string& fileName, const std::optional<std::string>& dirName = std::nullopt,
                              const ResPathLookup& lookup = {});

}  // namespace vorn
