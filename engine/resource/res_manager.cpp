#include "resource/res_manager.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

#include "resource/res_manager.h"

namespace fs = std::filesystem;

namespace vorn {
namespace {

std::string lower(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return s;
}

bool contains(const std::vector<std::string>& list, const std::string& item) {
  return std::find(list.begin(), list.end(), item) != list.end();
}

// Directory entries sorted by name, so the scan order does not depend on the file system.
std::vector<fs::directory_entry> sorted_entries(const std::string& dir) {
  std::vector<fs::directory_entry> entries;
  std::error_code ec;
  for (fs::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec)) entries.push_back(*it);
  std::sort(entries.begin(), entries.end(),
            [](const auto& a, const auto& b) { return a.path().filename() < b.path().filename(); });
  return entries;
}

bool is_dir(const fs::directory_entry& e) {
  std::error_code ec;
  return e.is_directory(ec);
}

// Directory nesting beyond this is taken to be a link cycle and not followed.
constexpr int kMaxScanDepth = 64;

}  // namespace

std::shared_ptr<PyGameResManager> PyGameResManager::Create(const std::string& resdir) {
  std::shared_ptr<PyGameResManager> manager(new PyGameResManager());
  ResManagerInstance = manager;
  manager->Init(resdir);
  return manager;
}

void PyGameResManager::Init(const std::string& root) {
  CreateFXManager();
  ExtensionList = SplitExtensions(ReadGLExtensionString());
  ETC_Support = CheckCompressTextureFormat_ETC();
  DXT_Support = CheckCompressTextureFormat_DXT();
  PVR_Support = CheckCompressTextureFormat_PVR();
  resdir = root;
  fontdir = "/usr/share/fonts/truetype/dejavu";
  FoundAllResFile(resdir);
}

std::vector<std::string> PyGameResManager::SplitExtensions(const std::string& text) {
  // Split at single blanks as the driver writes them; a trailing blank leaves an empty
  // last entry, which no check ever asks for.
  std::vector<std::string> out;
  std::string::size_type start = 0;
  while (true) {
    const auto pos = text.find(' ', start);
    out.push_back(text.substr(start, pos - start));
    if (pos == std::string::npos) break;
    start = pos + 1;
  }
  return out;
}

bool PyGameResManager::CheckCompressTextureFormat_ETC() const {
  return contains(ExtensionList, "GL_OES_compressed_ETC1_RGB8_texture");
}

bool PyGameResManager::CheckCompressTextureFormat_DXT() const {
  return contains(ExtensionList, "GL_EXT_texture_compression_s3tc") ||
         contains(ExtensionList, "GL_EXT_texture_compression_dxt1");
}

bool PyGameResManager::CheckCompressTextureFormat_PVR() const {
  return contains(ExtensionList, "GL_IMG_texture_compression_pvrtc");
}

void PyGameResManager::FoundAllResFile(const std::string& parentDir, const std::string* dirType) {
  Scan(parentDir, dirType, 0);
}

void PyGameResManager::Scan(const std::string& parentDir, const std::string* dirType, int depth) {
  std::error_code ec;
  if (!fs::exists(parentDir, ec) || depth > kMaxScanDepth) return;
  for (const auto& entry : sorted_entries(parentDir)) {
    const std::string fileName = entry.path().filename().string();
    if (fileName.find("__pycache__") != std::string::npos || fileName.find(".git") != std::string::npos) continue;
    const std::string newPath = parentDir + "/" + fileName;
    if (is_dir(entry)) {
      // A first-level folder names the kind of everything below it.
      const std::string ownType = fileName;
      Scan(newPath, depth == 0 && parentDir == resdir ? &ownType : dirType, depth + 1);
      continue;
    }
    fileDict[lower(fileName)].push_back(newPath);
    if (dirType && *dirType == "Scene") {
      const std::string sceneName = fs::path(fileName).stem().string();
      const std::string sceneResFile = parentDir + "/" + sceneName + "_Res.Json";
      if (fs::exists(sceneResFile, ec)) SceneJsonDict.push_back(sceneResFile);
    }
  }
}

ResPath PyGameResManager::GetResPath(const std::string& filename, const std::string* dirName) const {
  const auto* paths = fileDict.find(lower(filename));
  if (!paths) return std::monostate{};
  if (dirName) {
    const std::string subPathName = *dirName + "/" + filename;
    for (const auto& path : *paths) {
      if (path.find(subPathName) != std::string::npos) return path;
    }
  }
  return *paths;
}

std::vector<std::string> PyGameResManager::ListSkyBoxTexture() const {
  std::vector<std::string> out;
  for (const auto& entry : sorted_entries(resdir + "/SkyBox")) {
    const std::string pathName = entry.path().string();
    out.push_back(is_dir(entry) ? pathName + "/left.jpg" : pathName);
  }
  return out;
}

std::vector<std::string> PyGameResManager::ListTerrainDir() const {
  std::vector<std::string> out;
  for (const auto& entry : sorted_entries(resdir + "/Terrain")) {
    if (is_dir(entry)) out.push_back(entry.path().string());
  }
  return out;
}

std::vector<std::string> PyGameResManager::ListOceanDir() const {
  std::vector<std::string> out;
  for (const auto& entry : sorted_entries(resdir + "/Ocean")) {
    if (is_dir(entry)) out.push_back(entry.path().string() + "/deep.png");
  }
  return out;
}

}  // namespace vorn
