// The tile map's GL side: material textures and the blend map's uploads. Every upload
// and read-back sets the pixel alignment to 1: RGB rows of odd widths are not padded.
#include <filesystem>
#include <string>
#include <variant>
#include <vector>

#include "core/console.h"
#include "core/errors.h"
#include "core/gl_api.h"
#include "core/gl_state_guard.h"
#include "landscape/tiled_map.h"
#include "resource/image_file_loader.h"
#include "resource/res_manager.h"
#include "shader/fx_3d.h"

namespace vorn {
namespace {

namespace fs = std::filesystem;

// Sets GL_UNPACK_ALIGNMENT and GL_PACK_ALIGNMENT to 1 and puts the former values back.
class TightRows {
 public:
  TightRows() {
    glGetIntegerv(GL_UNPACK_ALIGNMENT, &unpack_);
    glGetIntegerv(GL_PACK_ALIGNMENT, &pack_);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
  }
  ~TightRows() {
    glPixelStorei(GL_UNPACK_ALIGNMENT, unpack_);
    glPixelStorei(GL_PACK_ALIGNMENT, pack_);
  }
  TightRows(const TightRows&) = delete;
  TightRows& operator=(const TightRows&) = delete;

 private:
  GLint unpack_ = 4, pack_ = 4;
};

PyGameResManager& Resources(const char* operation) {
  if (!ResManagerInstance) {
    throw RuntimeError(std::string("Vorn_3DTiledMap.") + operation + ": no resource manager (create PyGameResManager first)");
  }
  return *ResManagerInstance;
}

// The file of `name` in `folder`, found through the resource index; nothing if the
// index has no such file there.
std::optional<std::string> FindInFolder(const PyGameResManager& res, const std::string& name, const fs::path& folder) {
  const ResPath found = res.GetResPath(name);
  std::vector<std::string> candidates;
  if (const auto* one = std::get_if<std::string>(&found)) candidates.push_back(*one);
  if (const auto* many = std::get_if<std::vector<std::string>>(&found)) candidates = *many;
  const fs::path want = folder.lexically_normal();
  for (const std::string& path : candidates) {
    std::error_code ec;
    if (fs::path(path).parent_path().lexically_normal() == want && fs::exists(path, ec)) return path;
  }
  return std::nullopt;
}

// A texture with the material parameters: linear, repeating, with mipmaps.
unsigned UploadRGB(const std::vector<std::uint8_t>& rgb, int width, int height) {
  TightRows tight;
  GLuint id = 0;
  glGenTextures(1, &id);
  glActiveTexture(GL_TEXTURE0);
  glBindTexture(GL_TEXTURE_2D, id);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, width, height, 0, GL_RGB, GL_UNSIGNED_BYTE, rgb.data());
  glGenerateMipmap(GL_TEXTURE_2D);
  glBindTexture(GL_TEXTURE_2D, 0);
  return id;
}

enum class Loaded { Ok, Lost, Unreadable };

// Finds `name` (else its ".png" twin) in `folder`, decodes it and stores its texture.
Loaded LoadMaterial(PyGameResManager& res, const std::string& name, const fs::path& folder, unsigned& texID) {
  std::optional<std::string> path = FindInFolder(res, name, folder);
  if (!path) {
    std::string png = name;
    if (const auto dot = png.rfind(".jpg"); dot != std::string::npos) png.replace(dot, 4, ".png");
    path = FindInFolder(res, png, folder);
  }
  if (!path) return Loaded::Lost;
  const ImageLoadResult loaded = LoadImageFile(*path);
  if (!loaded.image || loaded.width <= 0 || loaded.height <= 0) return Loaded::Unreadable;
  GLint limit = 0;
  glGetIntegerv(GL_MAX_TEXTURE_SIZE, &limit);
  if (limit > 0 && (loaded.width > limit || loaded.height > limit)) return Loaded::Unreadable;
  // GL rows run from the bottom up.
  const auto rgb = loaded.image->mode() == Image::Mode::RGB ? loaded.image : loaded.image->convert(Image::Mode::RGB);
  texID = UploadRGB(rgb->bytes_bottom_up(), loaded.width, loaded.height);
  res.AddDynamicTexture(texID, loaded.width, loaded.height, "RGB", 24);
  return Loaded::Ok;
}

}  // namespace

void Vorn_3DTiledMap::SetTileMapMaterials(const std::string& materialDir) {
  gl_state::CheckContext("Vorn_3DTiledMap.SetTileMapMaterials");
  PyGameResManager& res = Resources("SetTileMapMaterials");
  // Five files against the four material indices: water and blend follow.
  static const char* const kTextureArray[] = {"plain.jpg", "slope.jpg", "bottom.jpg", "water.jpg", "blend.jpg"};
  CurrTexDir = (fs::path(res.GetResRootDir()) / materialDir).string();
  for (int i = 0; i < 5; ++i) {
    unsigned texID = 0;
    switch (LoadMaterial(res, kTextureArray[i], *CurrTexDir, texID)) {
      case Loaded::Ok: TiledMapTextureDict.set(i, texID); break;
      case Loaded::Lost: console::print_concat("TiledMap Texture ", kTextureArray[i], " Lost !"); break;
      case Loaded::Unreadable: console::print_concat("TiledMap Texture ", kTextureArray[i], " Unreadable !"); break;
    }
  }
  ReBuildLayerMaterial();
  ApplyFX(Vorn_3DFX::FX_TILEDMAP);
  SetTextureDensity(TiledMapTextureScale);
}

void Vorn_3DTiledMap::LoadCustomTexture(const std::string& imageFileName, int index) {
  gl_state::CheckContext("Vorn_3DTiledMap.LoadCustomTexture");
  PyGameResManager& res = Resources("LoadCustomTexture");
  if (index < 0) throw ValueError("Vorn_3DTiledMap.LoadCustomTexture: index must be 0 or more");
  const fs::path folder = CurrTexDir ? fs::path(*CurrTexDir) : fs::path(res.GetResRootDir());
  unsigned texID = 0;
  switch (LoadMaterial(res, imageFileName, folder, texID)) {
    case Loaded::Ok: TiledMapTextureDict.set(index + CUSTOM_TEXTURE_BASE, texID); break;
    case Loaded::Lost: console::print_concat("TiledMap Custom Texture ", imageFileName, " Lost !"); break;
    case Loaded::Unreadable:
      throw ValueError("Vorn_3DTiledMap.LoadCustomTexture: " + imageFileName + " is not a readable image");
  }
  ReBuildLayerMaterial();
  ApplyFX(Vorn_3DFX::FX_TILEDMAP);
  SetTextureDensity(TiledMapTextureScale);
}

void Vorn_3DTiledMap::CreateBlendTeture(int size) {
  gl_state::CheckContext("Vorn_3DTiledMap.CreateBlendTeture");
  PyGameResManager& res = Resources("CreateBlendTeture");
  GLint limit = 0;
  glGetIntegerv(GL_MAX_TEXTURE_SIZE, &limit);
  if (size < 1 || (limit > 0 && size > limit)) {
    throw ValueError("Vorn_3DTiledMap.CreateBlendTeture: size must be 1 to " + std::to_string(limit) + ", not " +
                     std::to_string(size));
  }
  std::vector<std::uint8_t> black(static_cast<std::size_t>(size) * static_cast<std::size_t>(size) * 3, 0);
  const unsigned texID = UploadRGB(black, size, size);
  // The map keeps what the texture holds, read back once.
  {
    TightRows tight;
    glBindTexture(GL_TEXTURE_2D, texID);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGB, GL_UNSIGNED_BYTE, black.data());
    glBindTexture(GL_TEXTURE_2D, 0);
  }
  BlendTexturePixelArray = std::move(black);
  BlendTextureSize = size;
  res.AddDynamicTexture(texID, size, size, "RGB", 24);
  BlendTextureID = texID;
  TiledMapTextureDict.set(BLEND_TEXTURE_KEY, texID);
  ReBuildLayerMaterial();
}

void Vorn_3DTiledMap::UploadBlendRows(int first, int last) {
  if (!BlendTextureID) return;
  gl_state::CheckContext("Vorn_3DTiledMap.SetBlendData");
  // Only the rows a stroke touched go up.
  TightRows tight;
  glBindTexture(GL_TEXTURE_2D, *BlendTextureID);
  const std::size_t rowBytes = static_cast<std::size_t>(BlendTextureSize) * 3;
  glTexSubImage2D(GL_TEXTURE_2D, 0, 0, first, BlendTextureSize, last - first + 1, GL_RGB, GL_UNSIGNED_BYTE,
                  BlendTexturePixelArray.data() + static_cast<std::size_t>(first) * rowBytes);
  glBindTexture(GL_TEXTURE_2D, 0);
}

}  // namespace vorn
