// The ambient-occlusion kernel of the full-screen modes (no GL).
#include "core/math_util.h"
#include "core/vector3.h"
#include "node/game_node.h"
#include "scene/scene.h"

namespace vorn {

std::vector<double> Vorn_3Dcene::BuildSSAOKernel() {
  constexpr int kSamples = 64;
  std::vector<double> kernel;
  kernel.reserve(kSamples * 3);
  for (int i = 0; i < kSamples; ++i) {
    // A point of the hemisphere around +z, deliberately not normalised.
    const Vector3 RandVec3(RANDOM11(), RANDOM11(), RANDOM01());
    // Squared falloff: the samples cluster towards the surface point, the last one
    // reaches the full radius.
    double scale = static_cast<double>(i) / (kSamples - 1);
    scale = Lerp(0.0, 1.0, scale * scale);
    kernel.insert(kernel.end(), {RandVec3.x * scale, RandVec3.y * scale, RandVec3.z * scale});
  }
  return kernel;
}

}  // namespace vorn
