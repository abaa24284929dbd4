#include "resource/image_file_loader.h"

#include <cstring>

#include "resource/dds_reader.h"
#include "resource/jpeg_codec.h"
#include "resource/png_codec.h"
#include "resource/tga_reader.h"

namespace vorn {

std::shared_ptr<Image> DecodeImageBytes(std::span<const std::uint8_t> bytes) {
  static constexpr std::uint8_t kPngSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  if (bytes.size() >= 8 && std::memcmp(bytes.data(), kPngSignature, 8) == 0) return DecodePNG(bytes);
  if (bytes.size() >= 3 && bytes[0] == 0xFF && bytes[1] == 0xD8 && bytes[2] == 0xFF) return DecodeJPEG(bytes);
  return nullptr;
}

ImageLoadResult LoadImageFile(const std::string& fileName, const std::optional<std::string>& dirName,
                              const ResPathLookup& lookup) {
  const std::string extension = LowerExtension(fileName);
  if (extension == ".tga") return LoadTGA(fileName, lookup);
  if (extension == ".dds") return LoadDDS(fileName, lookup);
  if (extension != ".png" && extension != ".jpg") return ImageLoadResult::Failure();

  const std::optional<std::string> path = ResolveImagePath(fileName, dirName, lookup);
  if (!path || !PathExists(*path)) return ImageLoadResult::Failure();
  const std::optional<std::vector<std::uint8_t>> bytes = ReadWholeFile(*path);
  if (!bytes) return ImageLoadResult::Failure();
  std::shared_ptr<Image> image = DecodeImageBytes(*bytes);
  if (!image) return ImageLoadResult::Failure();
  const int width = image->width(), height = image->height();
  return {std::move(image), width, height, false};
}

}  // namespace vorn
