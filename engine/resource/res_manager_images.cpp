// The resource manager's image services: loading by name through the index, and the
// record of used images.
#include <algorithm>
#include <filesystem>
#include <system_error>

#include "core/console.h"
#include "resource/dds_reader.h"
#include "resource/image_file_loader.h"
#include "resource/res_manager.h"
#include "resource/tga_reader.h"

namespace fs = std::filesystem;

namespace vorn {
namespace {

ResPathLookup lookup_of(const PyGameResManager& manager) {
  return [&manager](const std::string& filename, const std::optional<std::string>& dirName) {
    return manager.GetResPath(filename, dirName ? &*dirName : nullptr);
  };
}

// Files of a directory whose names start with `prefix` and end in ".png", sorted.
std::vector<std::string> glob_png(const std::string& key) {
  const fs::path keyPath(key);
  const std::string dir = keyPath.has_parent_path() ? keyPath.parent_path().string() : ".";
  const std::string prefix = key.empty() || key.back() == '/' ? std::string() : keyPath.filename().string();
  std::vector<std::string> out;
  std::error_code ec;
  for (fs::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec)) {
    const std::string name = it->path().filename().string();
    if (name.size() >= prefix.size() + 4 && name.compare(0, prefix.size(), prefix) == 0 &&
        name.compare(name.size() - 4, 4, ".png") == 0) {
      out.push_back(keyPath.has_parent_path() ? (keyPath.parent_path() / name).string() : name);
    }
  }
  std::sort(out.begin(), out.end());
  return out;
}

}  // namespace

ImageLoadResult PyGameResManager::LoadImageFile(const std::string& fileName,
                                                const std::optional<std::string>& dirName) {
  return vorn::LoadImageFile(fileName, dirName, lookup_of(*this));
}

ImageLoadResult PyGameResManager::LoadTGA(const std::string& fileName) {
  return vorn::LoadTGA(fileName, lookup_of(*this));
}

ImageLoadResult PyGameResManager::LoadDDS(const std::string& fileName) {
  return vorn::LoadDDS(fileName, lookup_of(*this));
}

void PyGameResManager::ManageImageMemory(const std::string& fileName) {
  auto& list = ImageDict_MemManage_List;
  for (std::size_t Index = 0; Index < list.size(); ++Index) {
    if (list[Index] == fileName) {
      console::print(fileName, " load:", static_cast<long long>(Index), " -> ", ImageDict_MemManage_Count);
      list.erase(list.begin() + static_cast<std::ptrdiff_t>(Index));
      list.push_back(fileName);
      return;
    }
  }
  list.push_back(fileName);
  ++ImageDict_MemManage_Count;
  console::print(fileName, " load:", ImageDict_MemManage_Count);
}

void PyGameResManager::ReleaseAllImageMemeory() {
  // GL textures stay: only the record is dropped.
  ImageDict.clear();
  ImageDict_MemManage_List.clear();
  ImageDict_MemManage_Total = 100;
  ImageDict_MemManage_Count = 0;
}

std::vector<std::string> PyGameResManager::GetImageListFiles(const std::string& fileName) const {
  const ResPath found = GetResPath(fileName);
  std::string ImagePath;
  if (const auto* one = std::get_if<std::string>(&found)) {
    ImagePath = *one;
  } else if (const auto* many = std::get_if<std::vector<std::string>>(&found); many && !many->empty()) {
    if (many->size() > 1) console::print(fileName, " has ", static_cast<long long>(many->size()), " same image.");
    ImagePath = many->front();
  } else {
    return {};
  }
  // The stem before the last "_"; with no "_" the path loses its last character, as a
  // slice up to position -1 does.
  const auto lastpos = ImagePath.rfind('_');
  const std::string QueryPathKey =
      lastpos == std::string::npos ? ImagePath.substr(0, ImagePath.empty() ? 0 : ImagePath.size() - 1)
                                   : ImagePath.substr(0, lastpos);
  return glob_png(QueryPathKey);
}

}  // namespace vorn
