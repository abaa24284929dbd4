#pragma once
// Converts a model file to FBX with the model importer's own exporter.
#include <string>

namespace vorn::tools {

// Reads `in` (any format the importer reads) and writes `out` as ASCII FBX ("fbxa") or
// binary FBX ("fbx"). The exporter of Debian 12's library writes key times in the
// source's ticks as if they were seconds (a glTF source, counted in milliseconds,
// comes out 1000 times too slow and cut off at the stack's end), so the keys are
// converted to seconds first, and a binary file gets the end records its writer leaves
// out (fbx_binary_repair.h). Prints the exporter's error and returns false on failure.
bool ConvertModelToFBX(const std::string& in, const std::string& out, const std::string& formatId = "fbxa");

}  // namespace vorn::tools
