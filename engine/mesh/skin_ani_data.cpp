#include "mesh/skin_ani_data.h"

namespace vorn {

Vorn_SkinSubMeshAniData::Vorn_SkinSubMeshAniData() {
  FbxAMatrix identity;
  identity.SetIdentity();
  FinalShaderMatrixArray.reserve(kShaderBoneCount * 16);
  for (std::size_t bone = 0; bone < kShaderBoneCount; ++bone) AppendShaderMatrix(identity);
}

const std::vector<double>& Vorn_SkinSubMeshAniData::GetFinalBoneMatrixByTime(double /*currTime*/) {
  return FinalShaderMatrixArray;
}

void Vorn_SkinSubMeshAniData::AppendShaderMatrix(const Matrix4d& matrix) {
  for (const auto& row : matrix.m) FinalShaderMatrixArray.insert(FinalShaderMatrixArray.end(), row.begin(), row.end());
}

}  // namespace vorn
