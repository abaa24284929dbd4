// libFuzzer target of the OBJ and MTL reader: the input is split at the first NUL byte
// into OBJ text and the MTL text its "mtllib" lines read. Any input gives a model or
// one of the reader's exceptions; a model always gives a plan or a plan exception.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/errors.h"
#include "mesh/obj_reader.h"
#include "mesh/obj_submesh_plan.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::size_t split = input.find('\0');
  const std::string_view obj = input.substr(0, split);
  const std::string mtl(split == std::string_view::npos ? std::string_view() : input.substr(split + 1));
  const std::string path = "fuzz/model.obj";
  const bool swapyz = size % 2 == 1;
  try {
    const vorn::ObjModel model = vorn::ParseOBJText(obj, path, swapyz, [&](const std::string&) { return mtl; });
    const auto plans = vorn::PlanOBJSubmeshes(model, "fuzz", path);
    if (plans.size() != model.obj_faces_array.size()) std::abort();
    for (const auto& plan : plans) {
      // At most eight floats a vertex, so nothing grows beyond the input's size.
      if (plan.vertices.size() > 8 * size) std::abort();
    }
  } catch (const vorn::Error&) {
    // KeyError, IndexError, ValueError and RuntimeError are the documented outcomes.
  }
  return 0;
}
