#pragma once
// Skin animation data of one skinned submesh: the bone arrays shared by the GLB and FBX
// paths and the flat matrix array handed to the shader's uBoneMatrixs uniform.
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/fbx_matrix.h"
#include "core/ordered_map.h"

namespace vorn {

// An animation time in seconds. A clock that starts at the integer 0 prints as "0",
// not "0.0", in the evaluation's console line, so the time remembers whether it is an
// integer value.
struct SkinTime {
  double seconds = 0.0;
  bool isInt = false;
  SkinTime(double s) noexcept : seconds(s) {}  // NOLINT: a plain float time converts
  SkinTime(double s, bool integral) noexcept : seconds(s), isInt(integral) {}
  // The time as a script prints it.
  std::string text() const;
};

class Vorn_SkinSubMeshAniData {
 public:
  // The shader reads at most this many bone matrices.
  static constexpr std::size_t kShaderBoneCount = 64;
  // One line segment of the debug skeleton: first point (green), then second (red).
  using BoneSegment = std::array<double, 6>;

  // FinalShaderMatrixArray starts as 64 identity matrices: a rest pose.
  Vorn_SkinSubMeshAniData();
  virtual ~Vorn_SkinSubMeshAniData() = default;
  Vorn_SkinSubMeshAniData(const Vorn_SkinSubMeshAniData&) = default;
  Vorn_SkinSubMeshAniData& operator=(const Vorn_SkinSubMeshAniData&) = default;

  // The submesh's own matrix; stored only, no evaluation reads it.
  FbxAMatrix SubMeshMatrix;
  // FBX path: the SDK's clusters, one per bone, in load order. Opaque here; a build
  // without the SDK never fills it.
  std::vector<std::shared_ptr<const void>> BoneArray;
  // FBX path: per bone, mesh-space to bone-space bind matrix.
  OrderedMap<std::int64_t, FbxAMatrix> BoneVertexMatrixArray;
  // FBX path: per bone, the global transform at the last evaluated time.
  OrderedMap<std::int64_t, FbxAMatrix> BoneAnimationMatrixArray;
  // Bone line segments of the last evaluation, for the debug skeleton.
  std::vector<BoneSegment> FinalBoneXYZArray;
  // 16 floats per bone, bone after bone, each matrix row after row.
  std::vector<double> FinalShaderMatrixArray;

  void SetSubMeshMatrix(const FbxAMatrix& matrix) { SubMeshMatrix = matrix; }

  // The matrices to upload at time currTime (seconds on the GLB path). The base returns
  // FinalShaderMatrixArray as it stands.
  virtual const std::vector<double>& GetFinalBoneMatrixByTime(SkinTime currTime);

 protected:
  // Appends the 16 elements of a matrix to FinalShaderMatrixArray, rows 0 to 3.
  void AppendShaderMatrix(const Matrix4d& matrix);
};

}  // namespace vorn
