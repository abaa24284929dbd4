#include "core/fbx_matrix.h"

#include <gtest/gtest.h>

#include <cmath>

#include "core/math_util.h"

namespace vorn {
namespace {

// Independent reference: a point transformed step by step, scale, then rotations
// about X, Y, Z with the right-hand rule, then translation.
Vector3 reference_transform(Vector3 p, const FbxVector4& T, const FbxVector4& R, const FbxVector4& S) {
  p = Vector3(p.x * S[0], p.y * S[1], p.z * S[2]);
  const double rad = PI / 180.0;
  auto rot = [](double a, double b, double angle, double& oa, double& ob) {
    oa = a * std::cos(angle) - b * std::sin(angle);
    ob = a * std::sin(angle) + b * std::cos(angle);
  };
  double a, b;
  rot(p.y, p.z, R[0] * rad, a, b);  // about X: y, z
  p = Vector3(p.x, a, b);
  rot(p.z, p.x, R[1] * rad, a, b);  // about Y: z, x
  p = Vector3(b, p.y, a);
  rot(p.x, p.y, R[2] * rad, a, b);  // about Z: x, y
  p = Vector3(a, b, p.z);
  return Vector3(p.x + T[0], p.y + T[1], p.z + T[2]);
}

void expect_near(const Vector3& a, const Vector3& b, double tol) {
  EXPECT_NEAR(a.x, b.x, tol);
  EXPECT_NEAR(a.y, b.y, tol);
  EXPECT_NEAR(a.z, b.z, tol);
}

TEST(FbxAMatrix, TrsMapsPointsAsScaleThenRotateXYZThenTranslate) {
  const struct {
    FbxVector4 T, R, S;
  } cases[] = {
      {{0, 0, 0, 0}, {90, 0, 0, 0}, {1, 1, 1, 1}},
      {{0, 0, 0, 0}, {0, 90, 0, 0}, {1, 1, 1, 1}},
      {{0, 0, 0, 0}, {0, 0, 90, 0}, {1, 1, 1, 1}},
      {{1, -2, 3, 0}, {30, 45, 60, 0}, {2, 3, 0.5, 1}},
      {{-7, 0.25, 11, 0}, {-120, 10, 200, 0}, {1, -1, 4, 1}},
  };
  const Vector3 points[] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0.3, -1.7, 2.2}};
  for (const auto& c : cases) {
    const FbxAMatrix m(c.T, c.R, c.S);
    const auto list = MatrixToFloatList(m);
    for (const auto& p : points) {
      expect_near(Vec3MulMatrix(p, list), reference_transform(p, c.T, c.R, c.S), 1e-12);
    }
    // Row 3 holds the translation.
    const FbxVector4 row3 = m.GetRow(3);
    EXPECT_EQ(row3, FbxVector4(c.T[0], c.T[1], c.T[2], 1.0));
  }
}

TEST(FbxAMatrix, ProductAppliesRightOperandFirstAndInverseUndoes) {
  const FbxAMatrix parent(FbxVector4(10, 0, 0, 0), FbxVector4(0, 0, 90, 0), FbxVector4(2, 2, 2, 1));
  const FbxAMatrix local(FbxVector4(1, 0, 0, 0), FbxVector4(0, 0, 0, 0), FbxVector4(1, 1, 1, 1));
  // parent * local: local's translation first, then the parent's scale, rotation and move.
  const Vector3 origin_of_child = Vec3MulMatrix(Vector3(0, 0, 0), MatrixToFloatList(parent * local));
  expect_near(origin_of_child, Vector3(10, 2, 0), 1e-12);

  const FbxAMatrix m(FbxVector4(1, -2, 3, 0), FbxVector4(30, 45, 60, 0), FbxVector4(2, 3, 0.5, 1));
  for (const FbxAMatrix& product : {m.Inverse() * m, m * m.Inverse()}) {
    for (int r = 0; r < 4; ++r)
      for (int c = 0; c < 4; ++c) EXPECT_NEAR(product.Get(r, c), r == c ? 1.0 : 0.0, 1e-12);
  }

  // A singular matrix (scale 0) inverts to zeros rather than to infinities.
  const FbxAMatrix flat(FbxVector4(1, 2, 3, 0), FbxVector4(0, 0, 0, 0), FbxVector4(0, 1, 1, 1));
  const auto inv = MatrixToFloatList(flat.Inverse());
  for (double v : inv) EXPECT_EQ(v, 0.0);
}

TEST(FbxMatrix, SetGetRowAndBoundsChecks) {
  FbxMatrix m;
  m.Set(0, 3, 5.0);
  m.Set(3, 0, -1.0);
  EXPECT_EQ(m.GetRow(0), FbxVector4(1, 0, 0, 5));
  EXPECT_EQ(m.GetRow(3), FbxVector4(-1, 0, 0, 1));
  EXPECT_THROW(m.Set(4, 0, 1.0), IndexError);
  EXPECT_THROW(m.GetRow(-1), IndexError);
  EXPECT_THROW(m.Get(0, 4), IndexError);
  m.SetIdentity();
  EXPECT_EQ(m, FbxMatrix());

  FbxVector4 v(1, 2, 3, 4);
  EXPECT_EQ(v.at(-1), 4.0);
  EXPECT_THROW(v.at(4), IndexError);
  // FbxMatrix(T, R, S) composes like FbxAMatrix(T, R, S).
  const FbxVector4 T(1, 2, 3, 0), R(10, 20, 30, 0), S(1, 2, 3, 1);
  EXPECT_EQ(FbxMatrix(T, R, S).Flatten(), FbxAMatrix(T, R, S).Flatten());
}

TEST(FbxMatrix, FromTQSReadsTheRotationAsAQuaternion) {
  const double h = std::sqrt(0.5);
  const struct {
    const char* name;
    FbxVector4 Q;
    double rows[3][3];  // rotation rows for row vectors, worked out by hand
  } cases[] = {
      {"no rotation (zero quaternion)", {0, 0, 0, 0}, {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
      {"unit w", {0, 0, 0, 1}, {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
      // 90 degrees about Z takes x to y and y to -x.
      {"90 about Z", {0, 0, h, h}, {{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}},
      {"90 about X", {h, 0, 0, h}, {{1, 0, 0}, {0, 0, 1}, {0, -1, 0}}},
      // 120 degrees about (1, 1, 1) cycles the axes x -> y -> z -> x.
      {"120 about (1, 1, 1)", {0.5, 0.5, 0.5, 0.5}, {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}},
      // Not of unit length: normalised, the same rotation.
      {"scaled quaternion", {1, 1, 1, 1}, {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}},
      {"180 about Y", {0, 1, 0, 0}, {{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}},
  };
  const FbxVector4 T(1, -2, 3, 0), S(2, 3, 0.5, 1);
  for (const auto& c : cases) {
    const FbxMatrix m = FbxMatrix::FromTQS(T, c.Q, S);
    for (int r = 0; r < 3; ++r) {
      for (int col = 0; col < 3; ++col) EXPECT_NEAR(m.Get(r, col), S[r] * c.rows[r][col], 1e-12) << c.name;
      EXPECT_EQ(m.Get(r, 3), 0.0) << c.name;
    }
    EXPECT_EQ(m.GetRow(3), FbxVector4(1, -2, 3, 1)) << c.name;
  }
  // Scale, then rotate, then translate: (1, 0, 0) scaled to (2, 0, 0), turned to
  // (0, 2, 0) by 90 degrees about Z, moved by T.
  const FbxMatrix m = FbxMatrix::FromTQS(T, {0, 0, h, h}, S);
  expect_near(Vec3MulMatrix(Vector3(1, 0, 0), MatrixToFloatList(m)), Vector3(1, 0, 3), 1e-12);
}

}  // namespace
}  // namespace vorn
