// The terrain's loaders: find the file, read and check it whole, then change the node.
#include "landscape/terrain.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <variant>
#include <vector>

#include "core/console.h"
#include "core/errors.h"
#include "landscape/terrain_files.h"
#include "resource/image_path.h"
#include "resource/res_manager.h"

namespace vorn {
namespace {

// FileName as given when it exists, else the resource index's path for it (the first
// of several, with a line that says how many bear the name).
std::string ResolveTerrainFile(const std::string& FileName, const char* op) {
  if (PathExists(FileName)) return FileName;
  if (ResManagerInstance) {
    const ResPath found = ResManagerInstance->GetResPath(FileName);
    if (const auto* one = std::get_if<std::string>(&found)) return *one;
    if (const auto* many = std::get_if<std::vector<std::string>>(&found); many && !many->empty()) {
      if (many->size() > 1) console::print(many->front(), " has ", many->size(), " same image.");
      return many->front();
    }
  }
  throw FileNotFoundError(std::string(op) + ": no such file: " + console::py_repr_str(FileName));
}

std::vector<std::uint8_t> ReadTerrainFile(const std::string& path, const char* op) {
  std::error_code ec;
  if (!std::filesystem::exists(path, ec)) {
    throw FileNotFoundError(std::string(op) + ": no such file: " + console::py_repr_str(path));
  }
  std::optional<std::vector<std::uint8_t>> bytes = ReadWholeFile(path);
  if (!bytes) throw OSError(std::string(op) + ": can't read " + console::py_repr_str(path));
  return std::move(*bytes);
}

// The readers' ValueError with the operation in front.
template <class Parse>
auto Parsed(const char* op, Parse&& parse) {
  try {
    return parse();
  } catch (const ValueError& e) {
    throw ValueError(std::string(op) + ": " + e.what());
  }
}

}  // namespace

Vorn_3DTerrain::Vorn_3DTerrain(double x_, double y_, double z_, const Ptr& parent_) : Vorn_3DPlane(x_, y_, z_, parent_) {
  NodeType = "3DTerrain";
}

void Vorn_3DTerrain::CreateTerrain() { CreatePlane(128, 128, 1.0, true); }

void Vorn_3DTerrain::LoadHeightFile(const std::string& FileName, const std::string& readflag, double tilesize) {
  static constexpr const char* op = "Vorn_3DTerrain.LoadHeightFile";
  const std::string path = ResolveTerrainFile(FileName, op);
  const std::vector<std::uint8_t> bytes = ReadTerrainFile(path, op);
  HeightFile grid = Parsed(op, [&] {
    if (readflag == "rb") return ParseHeightFileBinary(bytes, path, kMaxGridPoints);
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return ParseHeightFileText(text, path, kMaxGridPoints);
  });

  // The old plane goes only now that the new one is known to be buildable. A terrain
  // that was never built has no plane to drop.
  if (!SubMeshList.empty()) DeleteSubMesh(0);
  CreatePlane(grid.Rows, grid.Cows, tilesize, true, std::move(grid.HeightArray));
}

void Vorn_3DTerrain::LoadBlendFile(const std::string& FileName, const std::string& readflag) {
  static constexpr const char* op = "Vorn_3DTerrain.LoadBlendFile";
  const std::string path = ResolveTerrainFile(FileName, op);
  const std::vector<std::uint8_t> bytes = ReadTerrainFile(path, op);
  if (readflag != "rb") return;
  const BlendRecord record = Parsed(op, [&] { return ParseBlendRecord(bytes, path); });

  // Channel 0 is the blend map; the layers follow on channels 1 to 5.
  LoadSubMeshTextureFromFile(0, 0, path + "_Blend1.tga");
  for (std::size_t i = 0; i < BlendRecord::kLayers; ++i) {
    LoadSubMeshTextureFromFile(0, static_cast<int>(i) + 1, record.ImageFileNames[i]);
  }
  for (std::size_t i = 0; i < BlendRecord::kLayers; ++i) {
    SetSubMeshTextureDensity(0, static_cast<int>(i) + 1, record.Densities[i]);
  }
}

}  // namespace vorn
