#include "core/fbx_matrix.h"

#include <cmath>
#include <string>
#include <utility>

#include "core/math_util.h"
#include "core/pyseq.h"

namespace vorn {
namespace {

void check_index(int i, const char* what) {
  if (i < 0 || i > 3) throw IndexError(std::string(what) + " index out of range (0..3): " + std::to_string(i));
}

}  // namespace

double& FbxVector4::at(std::int64_t i) { return v[py_index(i, 4, "FbxVector4")]; }

void Matrix4d::SetIdentity() noexcept { *this = Matrix4d(); }

FbxVector4 Matrix4d::GetRow(int r) const {
  check_index(r, "row");
  return {m[r][0], m[r][1], m[r][2], m[r][3]};
}

void Matrix4d::SetRow(int r, const FbxVector4& row) {
  check_index(r, "row");
  for (int c = 0; c < 4; ++c) m[r][c] = row.v[c];
}

double Matrix4d::Get(int r, int c) const {
  check_index(r, "row");
  check_index(c, "column");
  return m[r][c];
}

void Matrix4d::Set(int r, int c, double value) {
  check_index(r, "row");
  check_index(c, "column");
  m[r][c] = value;
}

std::array<double, 16> Matrix4d::Flatten() const noexcept {
  std::array<double, 16> out{};
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) out[r * 4 + c] = m[r][c];
  return out;
}

std::array<float, 16> Matrix4d::FlattenFloat() const noexcept {
  std::array<float, 16> out{};
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) out[r * 4 + c] = static_cast<float>(m[r][c]);
  return out;
}

void Matrix4d::ComposeTRS(const FbxVector4& T, const FbxVector4& R, const FbxVector4& S) noexcept {
  const double deg = PI / 180.0;
  const double cx = std::cos(R[0] * deg), sx = std::sin(R[0] * deg);
  const double cy = std::cos(R[1] * deg), sy = std::sin(R[1] * deg);
  const double cz = std::cos(R[2] * deg), sz = std::sin(R[2] * deg);
  // Rows of Rx * Ry * Rz for row vectors (X applied first, Z last).
  const double rot[3][3] = {
      {cy * cz, cy * sz, -sy},
      {sx * sy * cz - cx * sz, sx * sy * sz + cx * cz, sx * cy},
      {cx * sy * cz + sx * sz, cx * sy * sz - sx * cz, cx * cy},
  };
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c) m[r][c] = S[static_cast<std::size_t>(r)] * rot[r][c];
    m[r][3] = 0.0;
  }
  m[3] = {T[0], T[1], T[2], 1.0};
}

void Matrix4d::ComposeTQS(const FbxVector4& T, const FbxVector4& Q, const FbxVector4& S) noexcept {
  const double x = Q[0], y = Q[1], z = Q[2], w = Q[3];
  const double norm2 = x * x + y * y + z * z + w * w;
  // 2 / |q|^2 normalises the quaternion inside the products; the zero quaternion
  // stands for "no rotation" and gives the identity.
  const double s = norm2 == 0.0 ? 0.0 : 2.0 / norm2;
  // Rows of the rotation for row vectors: the transpose of the usual column form.
  const double rot[3][3] = {
      {1.0 - s * (y * y + z * z), s * (x * y + z * w), s * (x * z - y * w)},
      {s * (x * y - z * w), 1.0 - s * (x * x + z * z), s * (y * z + x * w)},
      {s * (x * z + y * w), s * (y * z - x * w), 1.0 - s * (x * x + y * y)},
  };
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c) m[r][c] = S[static_cast<std::size_t>(r)] * rot[r][c];
    m[r][3] = 0.0;
  }
  m[3] = {T[0], T[1], T[2], 1.0};
}

Matrix4d Matrix4d::Multiply(const Matrix4d& a, const Matrix4d& b) noexcept {
  // a * b applies b first: with row vectors, p' = p * B * A.
  Matrix4d out;
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) {
      double sum = 0.0;
      for (int k = 0; k < 4; ++k) sum += b.m[r][k] * a.m[k][c];
      out.m[r][c] = sum;
    }
  return out;
}

Matrix4d Matrix4d::Inverted() const noexcept {
  // Gauss-Jordan elimination with partial pivoting on [M | I].
  double a[4][8];
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) {
      a[r][c] = m[r][c];
      a[r][c + 4] = (r == c) ? 1.0 : 0.0;
    }
  for (int col = 0; col < 4; ++col) {
    int pivot = col;
    for (int r = col + 1; r < 4; ++r)
      if (std::fabs(a[r][col]) > std::fabs(a[pivot][col])) pivot = r;
    if (a[pivot][col] == 0.0 || !std::isfinite(a[pivot][col])) {
      Matrix4d zero;
      for (auto& row : zero.m) row = {0.0, 0.0, 0.0, 0.0};
      return zero;
    }
    if (pivot != col)
      for (int c = 0; c < 8; ++c) std::swap(a[pivot][c], a[col][c]);
    const double inv = 1.0 / a[col][col];
    for (int c = 0; c < 8; ++c) a[col][c] *= inv;
    for (int r = 0; r < 4; ++r) {
      if (r == col || a[r][col] == 0.0) continue;
      const double f = a[r][col];
      for (int c = 0; c < 8; ++c) a[r][c] -= f * a[col][c];
    }
  }
  Matrix4d out;
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) out.m[r][c] = a[r][c + 4];
  return out;
}

}  // namespace vorn
