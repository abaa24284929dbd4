#include "resource/image_path.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "core/console.h"

namespace vorn {

std::optional<std::string> ResolveImagePath(const std::string& fileName, const std::optional<std::string>& dirName,
                                            const ResPathLookup& lookup) {
  if (PathExists(fileName)) return fileName;
  if (!lookup) return std::nullopt;
  ResPathResult found = lookup(fileName, dirName);
  if (auto* one = std::get_if<std::string>(&found)) return std::move(*one);
  if (auto* many = std::get_if<std::vector<std::string>>(&found)) {
    if (many->empty()) return std::nullopt;
    if (many->size() > 1) console::print(fileName, " has ", many->size(), " same image.");
    return std::move(many->front());
  }
  return std::nullopt;
}

bool PathExists(const std::string& path) {
  std::error_code ec;
  return !path.empty() && std::filesystem::exists(path, ec);
}

std::optional<std::vector<std::uint8_t>> ReadWholeFile(const std::string& path) {
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  file.seekg(0, std::ios::end);
  const std::streamoff size = file.tellg();
  if (size < 0) return std::nullopt;
  file.seekg(0, std::ios::beg);
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
  if (size > 0 && !file.read(reinterpret_cast<char*>(bytes.data()), size)) return std::nullopt;
  return bytes;
}

std::string LowerExtension(const std::string& path) {
  const std::size_t slash = path.find_last_of("/\\");
  const std::size_t name_start = slash == std::string::npos ? 0 : slash + 1;
  const std::size_t dot = path.rfind('.');
  if (dot == std::string::npos || dot < name_start) return "";
  // Skip leading dots of the name, as a split of ".hidden" gives no extension.
  std::size_t first = name_start;
  while (first < path.size() && path[first] == '.') ++first;
  if (dot < first) return "";
  std::string ext = path.substr(dot);
  std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char ch) { return std::tolower(ch); });
  return ext;
}

}  // namespace vorn
