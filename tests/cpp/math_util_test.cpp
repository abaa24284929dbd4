#include "core/math_util.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vorn {
namespace {

TEST(Vector3, OperatorsAndIntegerTextForm) {
  const Vector3 a(1, 2, 3, Vector3::kAllInt), b(1, 1, 1, Vector3::kAllInt);
  EXPECT_EQ((a + b).str(), "2,3,4");
  EXPECT_EQ((a - b).str(), "0,1,2");
  EXPECT_EQ((a * 2.0).str(), "2.0,4.0,6.0");
  EXPECT_EQ(a.mul_int(2).str(), "2,4,6");
  EXPECT_EQ((a / 2.0).str(), "0.5,1.0,1.5");
  EXPECT_EQ((a + Vector3(0.5, 0, 0)).str(), "1.5,2.0,3.0");
  EXPECT_EQ(Vector3().str(), "0,0,0");
  EXPECT_THROW(a / 0.0, ZeroDivisionError);
  EXPECT_EQ(a.cross(b).str(), "-1,2,-1");
  EXPECT_EQ(a.dot(b), 6.0);
  EXPECT_EQ(Vector3(0, 0, 0).lerp(Vector3(10, 20, 30), 0.25).str(), "2.5,5.0,7.5");
}

TEST(Vector3, NormalizeLeavesZeroAloneAndUnitOtherwise) {
  Vector3 zero(0, 0, 0);
  zero.normalize();
  EXPECT_EQ(zero.length(), 0.0);
  Vector3 v(3, -4, 12);
  v.normalize();
  EXPECT_NEAR(v.length(), 1.0, 1e-15);
  EXPECT_NEAR(v.x, 3.0 / 13.0, 1e-15);
}

TEST(Vector3, RotateAngleAxisKeepsItsSignConventions) {
  // radius = aroundPos - self = (1, 0, 0); 90 degrees about Z gives (0, 1, -0);
  // about Y, the third component is negated: (0, 0, -(-1)) = (0, 0, 1).
  // The offset is not added back to aroundPos.
  const struct {
    Vector3 self, around, axis, want;
  } cases[] = {{{0, 0, 0}, {1, 0, 0}, {0, 0, 1}, {0, 1, 0}},
               {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
               {{5, 5, 5}, {6, 5, 5}, {0, 0, 1}, {1, 0, 0}}};
  for (const auto& c : cases) {
    const Vector3 r = c.self.RotateAngleAxis(c.around, c.axis, c.self.x == 5 ? 0 : 90);
    EXPECT_NEAR((r - c.want).length(), 0.0, 1e-15) << c.axis.str();
  }
}

TEST(MathUtil, ClampLerpAndRectangles) {
  EXPECT_EQ(Clamp(5, 0, 1), 1);
  EXPECT_EQ(Clamp(-5, 0, 1), 0);
  EXPECT_EQ(Clamp(0.5, 0.0, 1.0), 0.5);
  EXPECT_EQ(Lerp(2.0, 4.0, 0.25), 2.5);
  // The border counts as inside; top is the smaller y.
  EXPECT_EQ(checkPtInRect(10, 20, 10, 30, 20, 40), 1);
  EXPECT_EQ(checkPtInRect(30, 40, 10, 30, 20, 40), 1);
  EXPECT_EQ(checkPtInRect(9.9, 25, 10, 30, 20, 40), 0);
  EXPECT_EQ(checkPtInRect(15, 40.1, 10, 30, 20, 40), 0);
  EXPECT_EQ(checkRectInRect(0, 10, 0, 10, 10, 20, 10, 20), 1);  // touching corners overlap
  EXPECT_EQ(checkRectInRect(0, 10, 0, 10, 11, 20, 0, 10), 0);
  EXPECT_EQ(checkRectInRect(0, 10, 0, 10, 2, 3, 2, 3), 1);  // contained
}

TEST(MathUtil, RandomRanges) {
  SeedRandom(42);
  for (int i = 0; i < 1000; ++i) {
    const double a = RANDOM01(), b = RANDOM11();
    EXPECT_GE(a, 0.0);
    EXPECT_LT(a, 1.0);
    EXPECT_GE(b, -1.0);
    EXPECT_LT(b, 1.0);
  }
}

TEST(MathUtil, IntersectTriangleIsTwoSidedAndRejectsDegenerateCases) {
  const Vector3 V1(0, 0, 0), V2(1, 0, 0), V3(0, 1, 0);
  const auto front = IntersectTriangle(Vector3(0.25, 0.25, 5), Vector3(0, 0, -1), V1, V2, V3);
  ASSERT_TRUE(front.first);
  EXPECT_NEAR(front.second.x, 0.25, 1e-12);
  EXPECT_NEAR(front.second.z, 0.0, 1e-12);
  // From behind, and with the triangle behind the origin: the same point.
  const auto back = IntersectTriangle(Vector3(0.25, 0.25, -5), Vector3(0, 0, 1), V1, V2, V3);
  ASSERT_TRUE(back.first);
  EXPECT_NEAR(back.second.z, 0.0, 1e-12);
  const auto behind = IntersectTriangle(Vector3(0.25, 0.25, -5), Vector3(0, 0, -1), V1, V2, V3);
  EXPECT_TRUE(behind.first);
  // A ray in the triangle's plane: Det is 0.
  const auto in_plane = IntersectTriangle(Vector3(-1, 0.2, 0), Vector3(1, 0, 0), V1, V2, V3);
  EXPECT_FALSE(in_plane.first);
  EXPECT_EQ(in_plane.second.str(), "0,0,0");
  // Outside the triangle, and a triangle too small for the absolute threshold.
  EXPECT_FALSE(IntersectTriangle(Vector3(0.8, 0.8, 5), Vector3(0, 0, -1), V1, V2, V3).first);
  EXPECT_FALSE(IntersectTriangle(Vector3(0.001, 0.001, 5), Vector3(0, 0, -1), V1, Vector3(0.005, 0, 0),
                                 Vector3(0, 0.005, 0))
                   .first);
}

TEST(MathUtil, Vec3MulMatrixTreatsInputAsPointAndDividesByW) {
  const FbxAMatrix t(FbxVector4(1, 2, 3, 0), FbxVector4(0, 0, 0, 0), FbxVector4(1, 1, 1, 1));
  const auto list = MatrixToFloatList(t);
  EXPECT_EQ(list[12], 1.0);
  EXPECT_EQ(list[13], 2.0);
  EXPECT_EQ(list[14], 3.0);
  // A "direction" picks up the translation too.
  EXPECT_EQ(Vec3MulMatrix(Vector3(0, 0, 1), list).str(), "1.0,2.0,4.0");
  std::array<double, 16> projective{};
  projective[15] = 2.0;
  projective[0] = projective[5] = projective[10] = 1.0;
  EXPECT_EQ(Vec3MulMatrix(Vector3(2, 4, 6), projective).str(), "1.0,2.0,3.0");
  projective[15] = 0.0;
  EXPECT_THROW(Vec3MulMatrix(Vector3(2, 4, 6), projective), ZeroDivisionError);
}

}  // namespace
}  // namespace vorn
