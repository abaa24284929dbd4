// libFuzzer target of the FBX path: the importer reads the bytes as FBX and our mapping
// turns the scene into submeshes, skins and actions. Any input gives no model ("Load
// Failed." or "No find Root"), a model, or one of the engine's exceptions; a model's
// arrays are whole vertex records and its indices name vertices it holds.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string_view>

#include "core/console.h"
#include "core/errors.h"
#include "mesh/model_import.h"

namespace {

void DiscardLine(std::string_view) {}

void Check(bool ok, int line = __builtin_LINE()) {
  if (ok) return;
  std::fprintf(stderr, "fuzz_fbx: the check on line %d failed\n", line);
  std::abort();
}

void CheckModel(const vorn::ModelPlan& model) {
  Check(static_cast<bool>(model.tree));
  for (const vorn::ModelSubmeshPlan& plan : model.submeshes) {
    const std::size_t floatsPerVertex = plan.withSkin ? 15 : 8;
    Check(plan.vertices.size() % floatsPerVertex == 0);
    Check(plan.indices.size() % 3 == 0);
    const std::size_t vertexCount = plan.vertices.size() / floatsPerVertex;
    for (std::int64_t i : plan.indices) Check(i >= 0 && static_cast<std::size_t>(i) < vertexCount);
    Check(plan.clusters.size() <= 64);
    for (const vorn::FbxCluster& c : plan.clusters)
      Check(c.node >= 0 && static_cast<std::size_t>(c.node) < model.tree->nodes.size());
  }
  for (std::size_t n = 0; n < model.tree->nodes.size(); ++n)
    Check(model.tree->nodes[n].parent < static_cast<std::int64_t>(n));
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  vorn::console::set_sink(&DiscardLine);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const auto model = vorn::ImportModelMemory(std::span(data, size), "fbx", "fuzz/model.fbx",
                                               vorn::ModelSplit::PerMeshNode, false);
    if (model) CheckModel(*model);
  } catch (const vorn::Error&) {
    // RuntimeError (too many bones) and ValueError (a face past the vertices) are documented.
  }
  return 0;
}
