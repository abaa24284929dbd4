// The resource manager's record of generated textures and render targets, the normal
// map of a picture, and the render-target lookups that the node draw reaches.
#include <exception>
#include <filesystem>

#include "core/console.h"
#include "core/errors.h"
#include "resource/bump_image.h"
#include "resource/image_file_loader.h"
#include "resource/res_manager.h"
#include "resource/res_manager.h"

namespace fs = std::filesystem;

namespace vorn {

void PyGameResManager::AddDynamicTexture(unsigned texID, int Width, int Height, const std::string& Format,
                                         int Depth) {
  DynamicTextureDict.set(texID, DynamicTextureRecord{Width, Height, Format, Depth});
}

std::optional<unsigned> PyGameResManager::GetRenderTargetTextureFrameBuffer(unsigned textID) const {
  if (const unsigned* frameBuffer = RenderTargetFrameBufferDict.find(textID)) return *frameBuffer;
  return std::nullopt;
}

ImageLoadResult PyGameResManager::MakeBumpImage(const std::string& fileName) {
  const fs::path name(fileName);
  const fs::path texturedir = name.parent_path();
  const std::string shotname = name.stem().string();
  const std::string extension = name.extension().string();

  // Only the index is asked: the name is a file name, not a path.
  const ResPath found = GetResPath(fileName);
  std::string path;
  if (const auto* one = std::get_if<std::string>(&found)) {
    path = *one;
  } else if (const auto* many = std::get_if<std::vector<std::string>>(&found); many && !many->empty()) {
    if (many->size() > 1) console::print(fileName, " has ", static_cast<long long>(many->size()), " same image.");
    path = many->front();
  } else {
    return ImageLoadResult::Failure();
  }

  const std::string BumpFileName = (texturedir / (shotname + "_bump" + extension)).string();
  if (const ImageLoadResult* cached = ImageDict.find(BumpFileName)) {
    ManageImageMemory(BumpFileName);
    return *cached;
  }

  try {
    const auto bytes = ReadWholeFile(path);
    if (!bytes) return ImageLoadResult::Failure();
    const std::shared_ptr<Image> srcImage = DecodeImageBytes(*bytes);
    if (!srcImage) return ImageLoadResult::Failure();
    std::shared_ptr<Image> bumpImage = MakeBumpNormalMap(*srcImage);
    const int width = bumpImage->width(), height = bumpImage->height();
    return ImageLoadResult{std::move(bumpImage), width, height, false};
  } catch (const std::exception&) {
    return ImageLoadResult::Failure();
  }
}

}  // namespace vorn
