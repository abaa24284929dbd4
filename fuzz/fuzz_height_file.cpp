// libFuzzer target of the height file reader: any bytes, read in both forms, give a
// grid whose size agrees with its counts, or a ValueError.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "core/errors.h"
#include "landscape/terrain_files.h"

namespace {

// A small limit keeps a valid text claim from building a huge grid.
constexpr std::size_t kMaxPoints = std::size_t{1} << 20;

void check(const vorn::HeightFile& grid) {
  if (grid.Cows < 0 || grid.Rows < 0) std::abort();
  const auto points = (static_cast<std::uint64_t>(grid.Cows) + 1) * (static_cast<std::uint64_t>(grid.Rows) + 1);
  if (grid.HeightArray.size() != points || points > kMaxPoints) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const vorn::HeightFile grid = vorn::ParseHeightFileBinary({data, size}, "fuzz.hei", kMaxPoints);
    check(grid);
    // Every height came from the file.
    if (size < 8 + grid.HeightArray.size() * 4) std::abort();
  } catch (const vorn::ValueError&) {
  }
  try {
    check(vorn::ParseHeightFileText({reinterpret_cast<const char*>(data), size}, "fuzz.txt", kMaxPoints));
  } catch (const vorn::ValueError&) {
  }
  return 0;
}
