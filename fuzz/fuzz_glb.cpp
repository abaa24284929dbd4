// libFuzzer target of the GLB reader. Any input gives no model, a model, or one of the
// reader's exceptions. A model's arrays stay within what the input can hold: every
// accessor value takes at least one byte of the file, so a submesh has at most one
// vertex and one index per input byte, and a channel at most one key per input byte.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "core/console.h"
#include "core/errors.h"
#include "mesh/glb_reader.h"

namespace {

// The reader prints whole documents and accessors; writing them out would slow the
// run down many times. The lines are still formatted, so the printers are fuzzed too.
void DiscardLine(std::string_view) {}

// A failed check names its line, since the abort's stack shows only CheckModel.
void Check(bool ok, int line = __builtin_LINE()) {
  if (ok) return;
  std::fprintf(stderr, "fuzz_glb: the check on line %d failed\n", line);
  std::abort();
}

void CheckModel(const vorn::GlbModel& model, std::size_t size) {
  for (const vorn::GlbSubmeshPlan& plan : model.submeshes) {
    Check(plan.indices.size() <= size);
    // u, v, [bones 2, weights 4], [normal 3], position 3, [w 1]. Records are built for
    // textured primitives only, and a skinned one needs normals then.
    const std::size_t floatsPerVertex = plan.withSkin ? 15 : plan.withNormal ? 8 : 5;
    Check(plan.withTexUV || plan.vertices.empty());
    Check(!plan.withSkin || plan.withNormal || plan.vertices.empty());
    Check(plan.vertices.size() % floatsPerVertex == 0);
    Check(plan.vertices.size() <= floatsPerVertex * size);
    if (plan.image) {
      const std::size_t channels = plan.image->format == "RGBA" ? 4 : 3;
      Check(plan.image->format == "RGBA" || plan.image->format == "RGB");
      Check(plan.image->pixels && plan.image->pixels->size() == static_cast<std::size_t>(plan.image->width) *
                                                                     static_cast<std::size_t>(plan.image->height) *
                                                                     channels);
    }
    if (plan.inverseBindMatrices) Check(plan.inverseBindMatrices->size() <= size);
  }
  if (!model.submeshes.empty()) {
    const vorn::GlbSubmeshPlan& last = model.submeshes.back();
    Check(model.withSkin == last.withSkin && model.withNormal == last.withNormal &&
          model.withTexUV == last.withTexUV);
  }
  // The skeleton and the actions are read for a skinned file only.
  Check(static_cast<bool>(model.initBoneTree) == model.withSkin);
  Check(model.withSkin || model.actions.empty());
  if (model.initBoneTree) Check(model.initBoneTree->size() <= size);
  for (const auto& named : model.actions) {
    for (const auto& bone : named.second) {
      for (const vorn::ActionChannel& channel : bone.second) {
        Check(channel.samples.size() <= size);
        for (const vorn::ActionSample& sample : channel.samples) Check(sample.value.size() <= 16);
      }
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  vorn::console::set_sink(&DiscardLine);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const auto model = vorn::ReadGLB("fuzz/model.glb", std::vector<std::uint8_t>(data, data + size));
    if (model) CheckModel(*model, size);
  } catch (const vorn::Error&) {
    // KeyError, IndexError, TypeError, ValueError and RuntimeError are the documented outcomes.
  }
  return 0;
}
