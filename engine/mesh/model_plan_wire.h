#pragma once
// A model import's whole outcome as bytes: the load plan, the console lines the read
// printed and the error it ended with. The library's reading helper process sends it to
// the game this way (model_import.cpp), so the game itself never runs the library.
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "mesh/model_import.h"

namespace vorn {

struct ImportOutcome {
  enum class Failure { None, RuntimeError, ValueError, OutOfMemory };
  std::vector<std::string> lines;  // in the order they were printed
  std::optional<ModelPlan> plan;
  Failure failure = Failure::None;
  std::string failureText;
};

// What the helper is asked to read: a file by path, or bytes with the file ending `hint`.
struct ImportRequest {
  bool fromMemory = false;
  ModelSplit split = ModelSplit::PerMeshNode;
  bool swapyz = false;
  std::string path;  // also the name in console lines for bytes
  std::string hint;
  std::string bytes;
};

std::string EncodeImportRequest(const ImportRequest& request);
std::optional<ImportRequest> DecodeImportRequest(std::span<const char> bytes);

std::string EncodeImportOutcome(const ImportOutcome& outcome);
// Nothing for bytes that are not a whole outcome (a helper that died while writing).
std::optional<ImportOutcome> DecodeImportOutcome(std::span<const char> bytes);

}  // namespace vorn
