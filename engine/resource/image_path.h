#pragma once
// Finding and reading an image file: a name that does not exist as given is looked up
// in the resource index (the resource manager's GetResPath), which may answer with
// nothing, one path, or every path that bears the name.
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace vorn {

// What a resource lookup gives for a name.
using ResPathResult = std::variant<std::monostate, std::string, std::vector<std::string>>;
// GetResPath(filename, dirName) of the resource manager.
using ResPathLookup =
    std::function<ResPathResult(const std::string& filename, const std::optional<std::string>& dirName)>;

// The path to open for `fileName`: the name itself when it exists, otherwise the
// lookup's answer. Of several paths the first is used, after the line
// "<fileName>  has  <count>  same image.". Nothing when neither finds a file; an empty
// lookup means there is no resource index.
std::optional<std::string> ResolveImagePath(const std::string& fileName, const std::optional<std::string>& dirName,
                                            const ResPathLookup& lookup);

// Whether a path names an existing file or directory.
bool PathExists(const std::string& path);

// The whole file, or nothing when it can't be opened or read.
std::optional<std::vector<std::uint8_t>> ReadWholeFile(const std::string& path);

// The lower-cased extension of the last path component, with its dot ("" if none).
// A leading dot names a hidden file and is not an extension.
std::string LowerExtension(const std::string& path);

}  // namespace vorn
