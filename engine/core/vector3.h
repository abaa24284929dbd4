#pragma once
// Vector3: the engine's three-component value type.
#include <cmath>
#include <cstdint>
#include <string>

namespace vorn {

class Vector3 {
 public:
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
  // Components that hold whole numbers a script gave as integers (bit 0 x, 1 y, 2 z).
  // str() prints them without ".0", exactly as the script's own numbers print; any
  // operation that brings in a float clears the bit. Vector3() is three integer zeros.
  std::uint8_t intMask = 0;

  static constexpr std::uint8_t kAllInt = 7;

  constexpr Vector3() noexcept : intMask(kAllInt) {}
  constexpr Vector3(double x_, double y_, double z_) noexcept : x(x_), y(y_), z(z_) {}
  constexpr Vector3(double x_, double y_, double z_, std::uint8_t mask) noexcept
      : x(x_), y(y_), z(z_), intMask(mask) {}

  Vector3 operator+(const Vector3& o) const noexcept {
    return {x + o.x, y + o.y, z + o.z, static_cast<std::uint8_t>(intMask & o.intMask)};
  }
  Vector3 operator-(const Vector3& o) const noexcept {
    return {x - o.x, y - o.y, z - o.z, static_cast<std::uint8_t>(intMask & o.intMask)};
  }
  Vector3 operator*(double n) const noexcept { return {x * n, y * n, z * n}; }
  // Multiplication by an integer keeps integer components integral.
  Vector3 mul_int(std::int64_t n) const noexcept {
    const auto d = static_cast<double>(n);
    return {x * d, y * d, z * d, intMask};
  }
  // Raises ZeroDivisionError for n == 0.
  Vector3 operator/(double n) const;

  // Inline: the ray/triangle test behind ground queries calls it per point.
  Vector3 cross(const Vector3& o) const noexcept {
    // Each component is integral when the four factors it multiplies are.
    const std::uint8_t both = intMask & o.intMask;
    const auto mask = static_cast<std::uint8_t>(((both & 6) == 6 ? 1 : 0) | ((both & 5) == 5 ? 2 : 0) |
                                                ((both & 3) == 3 ? 4 : 0));
    return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x, mask};
  }
  double dot(const Vector3& o) const noexcept { return x * o.x + y * o.y + z * o.z; }
  // Whether dot() of these two is a script integer.
  bool dot_is_int(const Vector3& o) const noexcept { return (intMask & o.intMask) == kAllInt; }
  double length() const noexcept { return std::sqrt(x * x + y * y + z * z); }
  // Divides by length() in place; a zero vector stays as it is.
  void normalize() noexcept;
  Vector3 copy() const noexcept { return *this; }
  // self + (dstPostion - self) * progress.
  Vector3 lerp(const Vector3& dstPostion, double progress) const noexcept {
    return *this + (dstPostion - *this) * progress;
  }
  // The offset of self rotated about Axis through aroundPos; see the engine docs for
  // the kept sign conventions (radius = aroundPos - self, third component negated).
  Vector3 RotateAngleAxis(const Vector3& aroundPos, const Vector3& Axis, double AngleDeg) const noexcept;

  // "x,y,z" with each component printed as the script prints numbers.
  std::string str() const;

  bool is_int(int axis) const noexcept { return (intMask >> axis) & 1; }
};

}  // namespace vorn
