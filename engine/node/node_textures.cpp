// Texture records of submeshes: finding and reading image files, records from raw
// pixels and from GL textures made elsewhere, densities, and the bump map generator.
// GL textures are made lazily by the draw; the cube map (node_textures_gl.cpp) is the
// one operation here that needs a context at once.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <variant>

#include "core/console.h"
#include "core/errors.h"
#include "core/vector3.h"
#include "node/bump_map.h"
#include "node/game_node.h"
#include "node/node_textures_read.h"
#include "resource/dds_reader.h"
#include "resource/image_file_loader.h"
#include "resource/image_path.h"
#include "resource/res_manager.h"
#include "resource/res_manager.h"
#include "resource/tga_reader.h"
#include "shader/fx_3d.h"
#include "shader/fx_manage.h"
#include "shader/fx_manage.h"

namespace fs = std::filesystem;

namespace vorn {
namespace {

std::vector<TextureInfo>& records_of(Vorn_3DGameNode& n, int s, const char* operation) {
  if (auto* found = n.TextureArray.find(s)) return *found;
  throw KeyError(std::string("Vorn_3DGameNode.") + operation + ": submesh " + std::to_string(s) +
                 " has no texture entry (create it with CreateSubMesh)");
}

const std::vector<TextureInfo>& records_of(const Vorn_3DGameNode& n, int s, const char* operation) {
  return records_of(const_cast<Vorn_3DGameNode&>(n), s, operation);
}

int bytes_per_pixel(const std::string& Format) { return Format == "RGBA" ? 4 : 3; }

}  // namespace

// ---- Reading image files ----

std::optional<DecodedTexture> ReadTextureFile(const std::string& path, bool forceRGBA) {
  std::string ext = LowerExtension(path);
  std::shared_ptr<Image> image;
  std::vector<std::uint8_t> bytes;
  std::string format;
  if (ext == ".tga" || ext == ".dds") {
    // The readers' rows go to GL as they stand; the alpha flag names the format.
    const ImageLoadResult loaded = ext == ".tga" ? LoadTGA(path) : LoadDDS(path);
    if (!loaded.image) return std::nullopt;
    image = loaded.image;
    format = forceRGBA || loaded.flag ? "RGBA" : "RGB";
    const Image::Mode mode = format == "RGBA" ? Image::Mode::RGBA : Image::Mode::RGB;
    if (image->mode() != mode) image = image->convert(mode);
    bytes = image->tobytes();
  } else {
    // Pictures of the image library come rows from the top: GL wants them from the bottom.
    const std::optional<std::vector<std::uint8_t>> file = ReadWholeFile(path);
    if (file) image = DecodeImageBytes(*file);
    if (!image) return std::nullopt;
    format = forceRGBA || image->mode() == Image::Mode::RGBA ? "RGBA" : "RGB";
    const Image::Mode mode = format == "RGBA" ? Image::Mode::RGBA : Image::Mode::RGB;
    if (image->mode() != mode) image = image->convert(mode);
    bytes = image->bytes_bottom_up();
  }
  return DecodedTexture{std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes)), std::move(format),
                        image->width(), image->height()};
}

std::optional<std::string> Vorn_3DGameNode::FindTextureFile(const std::string& fileName) const {
  if (PathExists(fileName)) return fileName;
  const std::string baseName = fs::path(fileName).filename().string();
  // The resource index knows files by name: the first of several matches is taken.
  if (ResManagerInstance && !baseName.empty()) {
    const ResPath found = ResManagerInstance->GetResPath(baseName);
    if (const auto* one = std::get_if<std::string>(&found)) {
      if (PathExists(*one)) return *one;
    } else if (const auto* many = std::get_if<std::vector<std::string>>(&found); many && !many->empty()) {
      if (many->size() > 1) console::print(fileName, " has ", many->size(), " same image.");
      if (PathExists(many->front())) return many->front();
    }
  }
  // Textures stored beside a loaded model.
  if (!MeshFile.empty() && !baseName.empty()) {
    std::error_code ec;
    fs::path meshDir = fs::path(MeshFile).parent_path();
    if (meshDir.is_relative()) meshDir = fs::current_path(ec) / meshDir;
    const std::string beside = (meshDir / baseName).string();
    if (PathExists(beside)) return beside;
  }
  return std::nullopt;
}

void Vorn_3DGameNode::LoadSubMeshTextureFromFile(int submeshIndex, int channel, const std::string& fileName,
                                                 bool mipMap, double density) {
  records_of(*this, submeshIndex, "LoadSubMeshTextureFromFile");
  const std::optional<std::string> path = FindTextureFile(fileName);
  if (!path) {
    console::print("Can't find texture:", fileName);
    return;
  }
  std::optional<DecodedTexture> tex = ReadTextureFile(*path, false);
  if (!tex) {
    console::print("Can't read texture:", *path);
    return;
  }
  LoadSubMeshTextureFromImage(submeshIndex, channel, std::move(tex->pixels), tex->format, tex->width, tex->height,
                              mipMap, density);
}

void Vorn_3DGameNode::LoadTextureFromFile(const std::string& fileName) {
  const std::optional<std::string> path = FindTextureFile(fileName);
  if (!path) {
    console::print("Can't find texture:", fileName);
    return;
  }
  std::optional<DecodedTexture> tex = ReadTextureFile(*path, true);
  if (!tex) {
    console::print("Can't read texture:", *path);
    return;
  }
  if (VertexArray_Positon.empty()) {
    throw RuntimeError("Vorn_3DGameNode.LoadTextureFromFile: the node has no submesh to put the texture on");
  }
  // By position: GenTexCoords of a subclass may touch the maps.
  int last = 0;
  for (std::size_t i = 0; i < VertexArray_Positon.size(); ++i) {
    last = (VertexArray_Positon.begin() + static_cast<std::ptrdiff_t>(i))->first;
    TextureArray.set(last, {});
    LoadSubMeshTextureFromImage(last, 0, tex->pixels, "RGBA", tex->width, tex->height);
  }
  // Only the last submesh changes its effect.
  ApplySubMeshFX(last, Vorn_3DFX::FX_DIFFUSE_TEXTURE);
}

// ---- Records ----

void Vorn_3DGameNode::LoadSubMeshTextureFromImage(int submeshIndex, int channel, TexturePixels imgData,
                                                  const std::string& Format, int width, int height, bool mipMap,
                                                  double density) {
  constexpr const char* op = "LoadSubMeshTextureFromImage";
  std::vector<TextureInfo>& records = records_of(*this, submeshIndex, op);
  if (Format != "RGBA" && Format != "RGB" && Format != "CUBE") {
    throw ValueError(std::string("Vorn_3DGameNode.") + op + ": Format is \"RGBA\", \"RGB\" or \"CUBE\", not \"" +
                     Format + "\"");
  }
  if (width < 0 || height < 0) {
    throw ValueError(std::string("Vorn_3DGameNode.") + op + ": negative size " + std::to_string(width) + " x " +
                     std::to_string(height));
  }
  if (imgData && Format != "CUBE") {
    const std::uint64_t need = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height) *
                               static_cast<std::uint64_t>(bytes_per_pixel(Format));
    if (imgData->size() < need) {
      throw ValueError(std::string("Vorn_3DGameNode.") + op + ": imgData holds " + std::to_string(imgData->size()) +
                       " bytes, a " + std::to_string(width) + " x " + std::to_string(height) + " " + Format +
                       " image needs " + std::to_string(need));
    }
  }
  TextureInfo rec;
  rec.channel = channel;
  rec.texID = 0;
  rec.imgData = std::move(imgData);
  rec.Format = Format;
  rec.width = width;
  rec.height = height;
  rec.genFinish = false;
  rec.mipMap = mipMap;
  rec.density = density;
  records.push_back(std::move(rec));
  GenTexCoords(submeshIndex);
}

void Vorn_3DGameNode::SetDynamicTextureID(unsigned texID, int channel) {
  // Keys first: a subclass's GenTexCoords may add submeshes while this walks.
  for (int s : VertexArray_Positon.keys()) SetSubMeshDynamicTextureID(s, texID, channel);
}

void Vorn_3DGameNode::SetSubMeshDynamicTextureID(int submeshIndex, unsigned texID, int channel) {
  if (!ResManagerInstance) return;
  const DynamicTextureRecord* texInfo = ResManagerInstance->GetDynamicTexture(texID);
  if (!texInfo) return;
  std::vector<TextureInfo>& records = records_of(*this, submeshIndex, "SetSubMeshDynamicTextureID");
  // Made by someone else: the draw never uploads it.
  TextureInfo rec;
  rec.channel = channel;
  rec.texID = texID;
  rec.Format = texInfo->Format;
  rec.width = texInfo->Width;
  rec.height = texInfo->Height;
  rec.genFinish = true;
  rec.mipMap = false;
  rec.density = 1.0;
  records.push_back(std::move(rec));
  GenTexCoords(submeshIndex);
}

void Vorn_3DGameNode::SetSubMeshTextureDensity(int submeshIndex, int channel, double density) {
  for (TextureInfo& rec : records_of(*this, submeshIndex, "SetSubMeshTextureDensity"))
    if (rec.channel == channel) rec.density = density;
}

std::optional<TextureInfo> Vorn_3DGameNode::GetSubMeshTextureInfo(int submeshIndex, int channel) const {
  for (const TextureInfo& rec : records_of(*this, submeshIndex, "GetSubMeshTextureInfo"))
    if (rec.channel == channel) return rec;
  return std::nullopt;
}

// ---- Bump maps ----

std::shared_ptr<Image> MakeBumpMapImage(const std::vector<std::uint8_t>& pixels, int pixel_byte, int width,
                                        int height) {
  if (pixel_byte < 3) throw ValueError("MakeBumpMapImage: a pixel needs at least 3 bytes");
  if (width < 0 || height < 0) throw ValueError("MakeBumpMapImage: negative size");
  const std::uint64_t need = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height) *
                             static_cast<std::uint64_t>(pixel_byte);
  if (pixels.size() < need) {
    throw ValueError("MakeBumpMapImage: " + std::to_string(pixels.size()) + " bytes for a " + std::to_string(width) +
                     " x " + std::to_string(height) + " picture that needs " + std::to_string(need));
  }
  auto bumpImage = std::make_shared<Image>(Image::Mode::RGB, width, height);
  std::vector<std::uint8_t>& out = bumpImage->data();

  // Sample positions are fractions of a pixel off the centre; the index truncates, so
  // the left and lower samples fall on the neighbouring pixel as they did by design.
  const double detalU = 0.3 * (1.0 / width);
  const double detalV = 0.3 * (1.0 / height);
  const std::int64_t count = static_cast<std::int64_t>(width) * height;
  auto GetGaryColor = [&](double u, double v) -> int {
    const std::int64_t index = static_cast<std::int64_t>(v * width + u);
    if (index < 0 || index >= count) throw IndexError("MakeBumpMapImage: sample outside the picture");
    const std::size_t at = static_cast<std::size_t>(index) * static_cast<std::size_t>(pixel_byte);
    const int gray = static_cast<int>(0.2126 * pixels[at] + 0.7152 * pixels[at + 1] + 0.0722 * pixels[at + 2]);
    return std::clamp(gray, 0, 255);
  };

  for (int v = 0; v < height; ++v) {
    for (int u = 0; u < width; ++u) {
      std::uint8_t* px = out.data() + bumpImage->offset(u, v);
      if (u == 0 || v == 0 || u == width - 1 || v == height - 1) {
        px[0] = 0, px[1] = 0, px[2] = 255;
        continue;
      }
      const double U = u, V = v;
      const int u1 = GetGaryColor(U - detalU, V);
      const int u2 = GetGaryColor(U + detalU, V);
      const Vector3 tangent_u(detalU, 0.0, 1e-06 * (u2 - u1));
      const int v1 = GetGaryColor(U, V + detalV);
      const int v2 = GetGaryColor(U, V - detalV);
      const Vector3 tangent_v(0.0, detalV, 1e-06 * (v2 - v1));
      Vector3 normal = tangent_u.cross(tangent_v);
      normal.normalize();
      normal.z *= -1.0;
      px[0] = static_cast<std::uint8_t>(static_cast<int>((normal.x * 0.5 + 0.5) * 255));
      px[1] = static_cast<std::uint8_t>(static_cast<int>((normal.y * 0.5 + 0.5) * 255));
      px[2] = static_cast<std::uint8_t>(static_cast<int>((normal.z * 0.5 + 0.5) * 255));
    }
  }
  return bumpImage;
}

void Vorn_3DGameNode::MakeSubMeshBump(int submeshIndex, int channel) {
  const auto* records = TextureArray.find(submeshIndex);
  if (!records) return;
  const bool needGenBumpTexture =
      std::none_of(records->begin(), records->end(), [](const TextureInfo& r) { return r.channel == 1; });
  if (needGenBumpTexture) {
    const auto diffuse = std::find_if(records->begin(), records->end(), [](const TextureInfo& r) { return r.channel == 0; });
    if (diffuse == records->end() || !diffuse->imgData) {
      throw TypeError("Vorn_3DGameNode.MakeSubMeshBump: submesh " + std::to_string(submeshIndex) +
                      " has no picture on channel 0 to derive a normal map from");
    }
    const int width = diffuse->width, height = diffuse->height;
    const std::shared_ptr<Image> bumpImage =
        MakeBumpMapImage(*diffuse->imgData, bytes_per_pixel(diffuse->Format), width, height);
    bumpImage->flip_top_bottom();
    // Written for the author to look at; the engine shows no window of its own.
    bumpImage->save("bump.png");
    LoadSubMeshTextureFromImage(submeshIndex, channel, std::make_shared<const std::vector<std::uint8_t>>(bumpImage->tobytes()),
                                "RGB", width, height, false, 1.0);
  }
  GenTangentAndBitangent(submeshIndex);
  ApplySubMeshFX(submeshIndex, Vorn_3DFX::FX_DIFFUSE_TEXTURE_BUMP);
  if (FXManagerInstance) FXManagerInstance->PrintShader(Vorn_3DFX::FX_DIFFUSE_TEXTURE_BUMP);
}

}  // namespace vorn
