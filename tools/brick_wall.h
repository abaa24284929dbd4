#pragma once
// The demonstration's floor texture: a brick wall drawn procedurally, written as JPEG.
#include <string>

namespace vorn::tools {

// Writes a 512 by 512 "wall.jpg" to `path`; false when encoding or writing fails.
bool WriteBrickWallJPEG(const std::string& path);

}  // namespace vorn::tools
