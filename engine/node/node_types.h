#pragma once
// Value types of a node's data: per-vertex attribute entries, texture records, the
// entries of the binding tables and script callbacks.
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/script_value.h"
#include "core/vector3.h"

namespace vorn {

class Vorn_3DGameNode;

// One vertex's value of an attribute: up to N numbers. An entry may hold fewer (an
// empty entry stands for a vertex that tangent generation did not reach); reading a
// missing component is an IndexError.
template <std::size_t N>
struct VertexEntry {
  std::array<double, N> v{};
  std::uint8_t size = N;

  VertexEntry() noexcept = default;
  template <class... T>
    requires(sizeof...(T) == N)
  explicit VertexEntry(T... values) noexcept : v{static_cast<double>(values)...} {}
  static VertexEntry empty() noexcept {
    VertexEntry e;
    e.size = 0;
    return e;
  }
  double operator[](std::size_t i) const noexcept { return v[i]; }
  bool operator==(const VertexEntry& o) const noexcept {
    if (size != o.size) return false;
    for (std::size_t i = 0; i < size; ++i)
      if (v[i] != o.v[i]) return false;
    return true;
  }
};

using Vec2Array = std::vector<VertexEntry<2>>;
using Vec3Array = std::vector<VertexEntry<3>>;
using Vec4Array = std::vector<VertexEntry<4>>;
using FloatArray = std::vector<double>;
using IndexArray = std::vector<std::int64_t>;

// Pixels of a texture, shared between records and never changed once made.
using TexturePixels = std::shared_ptr<const std::vector<std::uint8_t>>;

// A texture of a submesh: nine entries addressed by position in scripts.
struct TextureInfo {
  int channel = 0;
  unsigned texID = 0;
  // Pixels, rows from the bottom up; null for dynamic textures.
  TexturePixels imgData;
  std::string Format = "RGBA";
  int width = 0;
  int height = 0;
  bool genFinish = false;
  bool mipMap = true;
  double density = 1.0;
};

// An entry of an event table: a sequence whose entry 0 is the bound function or None.
// Entries a script sets keep the further values it gave; the inner events made by the
// node's constructor read as [None, parameter names or None, []].
struct EventEntry {
  ScriptValue function;
  std::vector<ScriptValue> rest;
  bool builtin = false;
  std::optional<std::vector<std::string>> paramNames;
};

// An anchor point: [posType, x, y] as the script gave them.
struct BindingPoint {
  ScriptValue posType;
  ScriptValue x;
  ScriptValue y;
};

// Where a pick ray met a node: the hit position and the triangle's world corners.
struct PickDetail {
  Vector3 position;
  std::array<Vector3, 3> corners;
};

// A callback handed to a node: the function the engine calls, plus the script's own
// callable (if it came from a script) so that reading the field gives it back.
template <class Signature>
struct NodeCallback {
  std::function<Signature> call;
  ScriptValue source;

  explicit operator bool() const noexcept { return static_cast<bool>(call); }
  void reset() noexcept {
    call = nullptr;
    source.reset();
  }
};

using UpdateCallback = NodeCallback<void(Vorn_3DGameNode&)>;
using PickCallback = NodeCallback<void(Vorn_3DGameNode&, const PickDetail&)>;

// The values a shadow-casting camera hands to the programs that sample its depth.
struct ShadowMapInfo {
  // Width and height of the depth target; nothing while the camera has none.
  std::optional<std::pair<double, double>> texSize;
  // The camera's float lists, row by row; nothing before the camera has drawn.
  std::optional<std::array<double, 16>> projMatrix;
  std::optional<std::array<double, 16>> viewMatrix;
};

}  // namespace vorn
