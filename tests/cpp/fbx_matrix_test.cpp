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

}  // namespace
}  // namespace vorn
