#include "mesh/skin_ani_data.h"

#include <cmath>
#include <cstdint>

#include "core/console.h"

namespace vorn {

std::string SkinTime::text() const {
  // Integers print without ".0" while they fit in 64 bits.
  if (isInt && std::isfinite(seconds) && std::fabs(seconds) < 9.0e18 && seconds == std::floor(seconds)) {
    return console::to_str(static_cast<std::int64_t>(seconds));
  }
  return console::py_float(seconds);
}

Vorn_SkinSubMeshAniData::Vorn_SkinSubMeshAniData() {
  FbxAMatrix identity;
  identity.SetIdentity();
  FinalShaderMatrixArray.reserve(kShaderBoneCount * 16);
  for (std::size_t bone = 0; bone < kShaderBoneCount; ++bone) AppendShaderMatrix(identity);
}

const std::vector<double>& Vorn_SkinSubMeshAniData::GetFinalBoneMatrixByTime(SkinTime /*currTime*/) {
  return FinalShaderMatrixArray;
}

void Vorn_SkinSubMeshAniData::AppendShaderMatrix(const Matrix4d& matrix) {
  for (const auto& row : matrix.m) FinalShaderMatrixArray.insert(FinalShaderMatrixArray.end(), row.begin(), row.end());
}

}  // namespace vorn
