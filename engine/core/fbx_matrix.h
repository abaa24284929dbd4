#pragma once
// The engine's 4x4 transform and four-vector value types, in doubles.
//
// Convention (the whole engine rests on it): points are row vectors multiplied from
// the left, so a matrix built from T, R, S scales first, then rotates about X, then Y,
// then Z (Euler angles in degrees), then translates; row 3 holds the translation.
// A * B applies B first and A after it. Flattening rows 0..3 gives the sixteen
// numbers OpenGL takes as a column-major matrix with transpose false.
#include <array>
#include <cstdint>

#include "core/errors.h"

namespace vorn {

class FbxVector4 {
 public:
  std::array<double, 4> v{0.0, 0.0, 0.0, 1.0};

  constexpr FbxVector4() noexcept = default;
  constexpr FbxVector4(double x, double y, double z, double w = 1.0) noexcept : v{x, y, z, w} {}

  // Indexing 0..3; -4..-1 count from the end; anything else raises IndexError.
  double& at(std::int64_t i);
  double at(std::int64_t i) const { return const_cast<FbxVector4*>(this)->at(i); }
  double& operator[](std::size_t i) noexcept { return v[i]; }
  double operator[](std::size_t i) const noexcept { return v[i]; }

  friend bool operator==(const FbxVector4&, const FbxVector4&) = default;
};

// Storage shared by the two matrix types: m[row][column], identity by default.
class Matrix4d {
 public:
  std::array<std::array<double, 4>, 4> m{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};

  void SetIdentity() noexcept;
  // Row r (0..3) as a four-vector; IndexError outside.
  FbxVector4 GetRow(int r) const;
  void SetRow(int r, const FbxVector4& row);
  double Get(int r, int c) const;
  void Set(int r, int c, double value);
  // Flattens rows 0..3 in order.
  std::array<double, 16> Flatten() const noexcept;
  std::array<float, 16> FlattenFloat() const noexcept;

 protected:
  // Fills m from translation, Euler rotation in degrees and scale.
  void ComposeTRS(const FbxVector4& T, const FbxVector4& R, const FbxVector4& S) noexcept;
  // Fills m from translation, rotation quaternion (x, y, z, w) and scale.
  void ComposeTQS(const FbxVector4& T, const FbxVector4& Q, const FbxVector4& S) noexcept;
  // Row-major product with b applied first: result = b (applied first) then a.
  static Matrix4d Multiply(const Matrix4d& a, const Matrix4d& b) noexcept;
  // General inverse; a singular matrix gives the zero matrix.
  Matrix4d Inverted() const noexcept;
};

// Affine transform value.
class FbxAMatrix : public Matrix4d {
 public:
  FbxAMatrix() noexcept = default;
  FbxAMatrix(const FbxVector4& T, const FbxVector4& R, const FbxVector4& S) noexcept { ComposeTRS(T, R, S); }
  explicit FbxAMatrix(const Matrix4d& src) noexcept : Matrix4d(src) {}

  FbxAMatrix Inverse() const noexcept { return FbxAMatrix(Inverted()); }
  FbxVector4 GetT() const noexcept { return {m[3][0], m[3][1], m[3][2], 1.0}; }
  FbxAMatrix operator*(const FbxAMatrix& b) const noexcept { return FbxAMatrix(Multiply(*this, b)); }
  friend bool operator==(const FbxAMatrix& a, const FbxAMatrix& b) { return a.m == b.m; }
};

// General 4x4 matrix value.
class FbxMatrix : public Matrix4d {
 public:
  FbxMatrix() noexcept = default;
  FbxMatrix(const FbxVector4& T, const FbxVector4& R, const FbxVector4& S) noexcept { ComposeTRS(T, R, S); }
  explicit FbxMatrix(const Matrix4d& src) noexcept : Matrix4d(src) {}

  // The transform of a GLB node or keyframe: scale S, then the rotation of the
  // quaternion Q = (x, y, z, w), then translation T, in the row-vector convention
  // above. GLB files store rotations as quaternions, not Euler angles, so the keyframe
  // and bind matrices of skinned meshes are built here rather than by FbxMatrix(T, R, S).
  // Q need not be of unit length: it is normalised. (0, 0, 0, 0), the value a node
  // without a rotation gets, is the identity rotation.
  static FbxMatrix FromTQS(const FbxVector4& T, const FbxVector4& Q, const FbxVector4& S) noexcept {
    FbxMatrix out;
    out.ComposeTQS(T, Q, S);
    return out;
  }

  FbxMatrix Inverse() const noexcept { return FbxMatrix(Inverted()); }
  FbxMatrix operator*(const FbxMatrix& b) const noexcept { return FbxMatrix(Multiply(*this, b)); }
  friend bool operator==(const FbxMatrix& a, const FbxMatrix& b) { return a.m == b.m; }
};

}  // namespace vorn
