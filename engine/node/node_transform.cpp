// Matrices, following and standing on the ground. The accessors are inline in the
// class declaration.
#include <cmath>
#include <cstdint>
#include <cstring>

#include "core/console.h"
#include "core/math_util.h"
#include "node/game_node.h"

namespace vorn {
namespace {

// The 3x3 rotation of Euler angles in degrees (X first, then Y, then Z) for row
// vectors: the same numbers as FbxAMatrix(T, R, S) with a scale of 1.
void rotation_rows(double rx, double ry, double rz, double out[3][3]) noexcept {
  const double deg = PI / 180.0;
  const double cx = std::cos(rx * deg), sx = std::sin(rx * deg);
  const double cy = std::cos(ry * deg), sy = std::sin(ry * deg);
  const double cz = std::cos(rz * deg), sz = std::sin(rz * deg);
  out[0][0] = cy * cz, out[0][1] = cy * sz, out[0][2] = -sy;
  out[1][0] = sx * sy * cz - cx * sz, out[1][1] = sx * sy * sz + cx * cz, out[1][2] = sx * cy;
  out[2][0] = cx * sy * cz + sx * sz, out[2][1] = cx * sy * sz - sx * cz, out[2][2] = cx * cy;
}

// Whether two records of doubles hold the same bits (inline, no library call).
template <class T>
bool same_bits(const T& a, const T& b) noexcept {
  static_assert(sizeof(T) % sizeof(std::uint64_t) == 0);
  std::uint64_t wa[sizeof(T) / 8], wb[sizeof(T) / 8];
  std::memcpy(wa, &a, sizeof a);
  std::memcpy(wb, &b, sizeof b);
  std::uint64_t diff = 0;
  for (std::size_t i = 0; i < sizeof(T) / 8; ++i) diff |= wa[i] ^ wb[i];
  return diff == 0;
}

}  // namespace

FbxAMatrix Vorn_3DGameNode::GetParentMatrix() const {
  // A target wins over a parent, and only its position is followed.
  if (auto target = followTarget.lock()) {
    const Vector3 p = target->GetWorldXYZ();
    return FbxAMatrix(FbxVector4(p.x, p.y, p.z, 0.0), FbxVector4(0, 0, 0, 0.0), FbxVector4(1.0, 1.0, 1.0, 1.0));
  }
  if (auto p = parent.lock()) return p->GetWorldMatrix();
  return FbxAMatrix();
}

void Vorn_3DGameNode::UpdateMatrices() {
  // Nothing the matrices are made of changed: they stay. The inputs are compared as
  // stored bits, so a NaN that stays NaN counts as unchanged too.
  const MatrixInputs inputs{x, y, z, sx, sy, sz, rx, ry, rz};
  const bool hasParent = !parent.expired();
  const bool following = !followTarget.expired();
  const Vorn_3DGameNode* parentNode = hasParent ? parentNode_ : nullptr;
  const std::uint64_t parentVersion = parentNode ? parentNode->matrixVersion_ : 0;
  if (matrixVersion_ != 0 && !following && parentNode == matrixParent_ && parentVersion == matrixParentVersion_ &&
      same_bits(inputs, matrixInputs_)) {
    return;
  }
  static std::uint64_t versions = 0;
  matrixVersion_ = ++versions;
  matrixInputs_ = inputs;
  matrixParent_ = parentNode;
  // Matrices made while following match no later inputs: the next update without a
  // target computes again.
  matrixParentVersion_ = following ? ~std::uint64_t{0} : parentVersion;

  // Local matrices with and without the node's own scale share one rotation.
  double rot[3][3];
  rotation_rows(rx, ry, rz, rot);
  FbxAMatrix local, localUnscaled;
  const double scale[3] = {sx, sy, sz};
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c) {
      local.m[r][c] = scale[r] * rot[r][c];
      localUnscaled.m[r][c] = rot[r][c];
    }
    local.m[r][3] = localUnscaled.m[r][3] = 0.0;
  }
  local.m[3] = localUnscaled.m[3] = {x, y, z, 1.0};

  if (!hasParent && !following) {
    // A free root: the parent matrix is the identity.
    WorldMatrix = local;
    AxisMatrix = localUnscaled;
    return;
  }
  // The operand order differs between the two cases on purpose: a following root
  // applies the target's translation first, so its own rotation and scale act on it.
  const FbxAMatrix parentMatrix = following || !parentNode ? GetParentMatrix() : parentNode->WorldMatrix;
  if (hasParent) {
    WorldMatrix = parentMatrix * local;
    AxisMatrix = parentMatrix * localUnscaled;
  } else {
    WorldMatrix = local * parentMatrix;
    AxisMatrix = localUnscaled * parentMatrix;
  }
}

Vector3 Vorn_3DGameNode::GetWorldXYZ() const {
  const auto& row = WorldMatrix.m[3];
  if (standOnGround) {
    if (auto scene = sceneInstance.lock()) return Vector3(row[0], scene->Get3DTerrainY(row[0], row[2]), row[2]);
  }
  return Vector3(row[0], row[1], row[2]);
}

void Vorn_3DGameNode::StandOnGround(bool standOn) {
  if (!parent.expired()) {
    console::print("it can't stand on Ground,because has parent.");
    return;
  }
  standOnGround = standOn;
}

}  // namespace vorn
