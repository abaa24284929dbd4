// The resource manager's record of generated textures and render targets, the normal
// map of a picture, and the render-target lookups that the node draw reaches.
#include <exception>
#include <filesystem>

#include "app/globals.h"
#include "core/console.h"
#include "core/errors.h"
#include "node/node_draw_hooks.h"
#include "resource/bump_image.h"
#include "resource/image_file_loader.h"
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

namespace {

PyGameResManager& require_manager() {
  if (!ResManagerInstance) {
    throw AttributeError(
        "Vorn_3DGameNode.SetRenderTargetTexture: ResManagerInstance is None; create the PyGameResManager first");
  }
  return *ResManagerInstance;
}

}  // namespace

void RegisterRenderTargetHooks() {
  // The hooks ask the manager of the moment, so a script that makes a new manager is
  // served by that one.
  renderTargetHooks.frameBuffer = [](unsigned texID) {
    return require_manager().GetRenderTargetTextureFrameBuffer(texID);
  };
  renderTargetHooks.dynamicTexture = [](unsigned texID) -> std::optional<DynamicTextureSize> {
    const DynamicTextureRecord* record = require_manager().GetDynamicTexture(texID);
    if (!record) return std::nullopt;
    return DynamicTextureSize{record->Width, record->Height, record->Format};
  };
}

}  // namespace vorn
