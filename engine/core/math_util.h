#pragma once
// Free math helpers used throughout the engine.
#include <array>
#include <cstdint>
#include <span>
#include <utility>

#include "core/fbx_matrix.h"
#include "core/vector3.h"

namespace vorn {

inline constexpr double PI = 3.141592653589793;

// min if value < min, else max if value > max, else value.
template <class T>
constexpr T Clamp(T value, T min, T max) {
  if (value < min) return min;
  if (value > max) return max;
  return value;
}

// Uniform in [0, 1).
double RANDOM01();
// Uniform in [-1, 1).
double RANDOM11();
// Reseeds the generator behind RANDOM01 and RANDOM11.
void SeedRandom(std::uint64_t seed);

constexpr double Lerp(double a, double b, double f) { return a + f * (b - a); }

// Two-sided ray/triangle test; the ray is an infinite line. A miss gives
// (false, Vector3()). Inline: ground-height queries run it for every vertex they drop.
inline std::pair<bool, Vector3> IntersectTriangle(const Vector3& vPt, const Vector3& vDir, const Vector3& V1,
                                                  const Vector3& V2, const Vector3& V3) {
  const Vector3 Edge1 = V2 - V1;
  const Vector3 Edge2 = V3 - V1;
  const Vector3 Pvec = vDir.cross(Edge2);
  double Det = Edge1.dot(Pvec);
  Vector3 Tvec;
  if (Det > 0) {
    Tvec = vPt - V1;
  } else {
    Tvec = V1 - vPt;
    Det = -Det;
  }
  // Absolute threshold: tiny triangles are never hit.
  if (Det < 0.0001) return {false, Vector3()};
  double U = Tvec.dot(Pvec);
  if (U < 0.0 || U > Det) return {false, Vector3()};
  const Vector3 Qvec = Tvec.cross(Edge1);
  double V = vDir.dot(Qvec);
  if (V < 0.0 || U + V > Det) return {false, Vector3()};
  double T = Edge2.dot(Qvec);
  const double InvDet = 1.0 / Det;
  T *= InvDet;
  return {true, Vector3(vPt.x + vDir.x * T, vPt.y + vDir.y * T, vPt.z + vDir.z * T)};
}

using FloatList16 = std::array<double, 16>;

// The sixteen numbers of a matrix, row by row.
inline FloatList16 MatrixToFloatList(const Matrix4d& Matrix) { return Matrix.Flatten(); }

// Transforms the point v (three numbers) by the float list m and divides by the
// fourth component; ZeroDivisionError when it is zero.
Vector3 Vec3MulMatrix(std::span<const double, 3> v, std::span<const double, 16> m);
Vector3 Vec3MulMatrix(const Vector3& v, std::span<const double, 16> m);

// 1 when (x, y) lies in the rectangle, border included; top is above bottom on screen.
constexpr int checkPtInRect(double x, double y, double left, double right, double top, double bottom) {
  return (x < left || x > right || y < top || y > bottom) ? 0 : 1;
}

// 1 when the two rectangles overlap, border included.
constexpr int checkRectInRect(double left1, double right1, double top1, double bottom1, double left2,
                              double right2, double top2, double bottom2) {
  return (left1 > right2 || right1 < left2 || top1 > bottom2 || bottom1 < top2) ? 0 : 1;
}

}  // namespace vorn
