#include "core/math_util.h"

#include <random>

#include "core/errors.h"

namespace vorn {
namespace {

std::mt19937_64& generator() {
  static std::mt19937_64 engine{std::random_device{}()};
  return engine;
}

}  // namespace

double RANDOM01() { return std::uniform_real_distribution<double>(0.0, 1.0)(generator()); }

double RANDOM11() { return RANDOM01() * 2.0 - 1.0; }

void SeedRandom(std::uint64_t seed) { generator().seed(seed); }

Vector3 Vec3MulMatrix(std::span<const double, 3> v, std::span<const double, 16> m) {
  double out[4];
  for (int c = 0; c < 4; ++c) out[c] = v[0] * m[c] + v[1] * m[4 + c] + v[2] * m[8 + c] + 1.0 * m[12 + c];
  if (out[3] == 0.0) throw ZeroDivisionError("float division by zero");
  return {out[0] / out[3], out[1] / out[3], out[2] / out[3]};
}

Vector3 Vec3MulMatrix(const Vector3& v, std::span<const double, 16> m) {
  const double xyz[3] = {v.x, v.y, v.z};
  return Vec3MulMatrix(std::span<const double, 3>(xyz), m);
}

}  // namespace vorn
