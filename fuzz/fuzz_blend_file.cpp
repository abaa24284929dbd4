// libFuzzer target of the blend record reader: any bytes give five names without zero
// bytes and five densities, or a ValueError for a record shorter than 340 bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "core/errors.h"
#include "landscape/terrain_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const vorn::BlendRecord record = vorn::ParseBlendRecord({data, size}, "fuzz.ter");
    if (size < vorn::BlendRecord::kBytes) std::abort();
    for (const std::string& name : record.ImageFileNames) {
      // ".jpg" grows by nothing when it becomes ".dds"; no name outgrows its field.
      if (name.size() > vorn::BlendRecord::kNameBytes || name.find('\0') != std::string::npos) std::abort();
      if (name.find(".jpg") != std::string::npos) std::abort();
    }
  } catch (const vorn::ValueError&) {
    if (size >= vorn::BlendRecord::kBytes) std::abort();
  }
  return 0;
}
