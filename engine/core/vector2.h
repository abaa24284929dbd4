#pragma once
// Vector2: the two-component value type of 2D scale (and any other x, y pair).
#include <cmath>
#include <cstdint>
#include <string>

#include "core/console.h"

namespace vorn {

class Vector2 {
 public:
  double x = 0.0;
  double y = 0.0;
  // Components that hold whole numbers a script gave as integers (bit 0 x, bit 1 y),
  // printed without ".0" like the script's own numbers; float operations clear them.
  std::uint8_t intMask = 0;

  static constexpr std::uint8_t kAllInt = 3;

  constexpr Vector2() noexcept : intMask(kAllInt) {}
  constexpr Vector2(double x_, double y_) noexcept : x(x_), y(y_) {}
  constexpr Vector2(double x_, double y_, std::uint8_t mask) noexcept : x(x_), y(y_), intMask(mask) {}

  Vector2 operator+(const Vector2& o) const noexcept {
    return {x + o.x, y + o.y, static_cast<std::uint8_t>(intMask & o.intMask)};
  }
  Vector2 operator-(const Vector2& o) const noexcept {
    return {x - o.x, y - o.y, static_cast<std::uint8_t>(intMask & o.intMask)};
  }
  Vector2 operator*(double n) const noexcept { return {x * n, y * n}; }
  // Multiplication by an integer keeps integer components integral.
  Vector2 mul_int(std::int64_t n) const noexcept {
    const auto d = static_cast<double>(n);
    return {x * d, y * d, intMask};
  }
  // self + (dst - self) * progress.
  Vector2 lerp(const Vector2& dst, double progress) const noexcept { return *this + (dst - *this) * progress; }

  bool is_int(int axis) const noexcept { return (intMask >> axis) & 1; }

  // "x,y" with each component printed as the script prints numbers.
  std::string str() const { return component_str(x, is_int(0)) + "," + component_str(y, is_int(1)); }

 private:
  static std::string component_str(double v, bool integral) {
    if (integral && std::isfinite(v) && v == std::floor(v) && std::fabs(v) < 9.2e18) {
      return std::to_string(static_cast<std::int64_t>(v));
    }
    return console::py_float(v);
  }
};

}  // namespace vorn
