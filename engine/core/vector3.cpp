#include "core/vector3.h"

#include "core/console.h"
#include "core/errors.h"
#include "core/math_util.h"

namespace vorn {
namespace {

std::string component_str(double v, bool is_int) {
  if (is_int && std::isfinite(v) && v == std::floor(v) && std::fabs(v) < 9.2e18) {
    return std::to_string(static_cast<std::int64_t>(v));
  }
  return console::py_float(v);
}

constexpr std::uint8_t bit(int axis) { return static_cast<std::uint8_t>(1u << axis); }

}  // namespace

Vector3 Vector3::operator/(double n) const {
  if (n == 0.0) throw ZeroDivisionError("float division by zero");
  return {x / n, y / n, z / n};
}

void Vector3::normalize() noexcept {
  const double len = length();
  if (len == 0.0) return;
  x /= len;
  y /= len;
  z /= len;
  intMask = 0;
}

Vector3 Vector3::RotateAngleAxis(const Vector3& aroundPos, const Vector3& Axis, double AngleDeg) const noexcept {
  const Vector3 radius = aroundPos - *this;
  const double S = std::sin(PI * AngleDeg / 180.0);
  const double C = std::cos(PI * AngleDeg / 180.0);
  const double OMC = 1.0 - C;
  const double XX = Axis.x * Axis.x, YY = Axis.y * Axis.y, ZZ = Axis.z * Axis.z;
  const double XY = Axis.x * Axis.y, YZ = Axis.y * Axis.z, ZX = Axis.z * Axis.x;
  const double XS = Axis.x * S, YS = Axis.y * S, ZS = Axis.z * S;
  return {
      (OMC * XX + C) * radius.x + (OMC * XY - ZS) * radius.y + (OMC * ZX + YS) * radius.z,
      (OMC * XY + ZS) * radius.x + (OMC * YY + C) * radius.y + (OMC * YZ - XS) * radius.z,
      -((OMC * ZX - YS) * radius.x + (OMC * YZ + XS) * radius.y + (OMC * ZZ + C) * radius.z),
  };
}

std::string Vector3::str() const {
  return component_str(x, is_int(0)) + "," + component_str(y, is_int(1)) + "," + component_str(z, is_int(2));
}

}  // namespace vorn
