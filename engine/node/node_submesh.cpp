// Submesh maps and the vertex interface. A submesh is an integer key into the maps.
#include <string>

#include "core/errors.h"
#include "core/pyseq.h"
#include "node/game_node.h"

namespace vorn {
namespace {

// The submesh's sequence in `map`; KeyError when the submesh has no entry there.
template <class V>
V& entry(Vorn_3DGameNode::SubMeshMap<V>& map, int s, const char* operation) {
  if (V* found = map.find(s)) return *found;
  throw KeyError(std::string("Vorn_3DGameNode.") + operation + ": submesh " + std::to_string(s) +
                 " has no entry (create it with CreateSubMesh)");
}

template <std::size_t N, std::size_t Count>
void push_entries(std::vector<VertexEntry<N>>& array, std::span<const double, Count> values) {
  static_assert(Count % N == 0);
  for (std::size_t i = 0; i < Count; i += N) {
    VertexEntry<N> e;
    for (std::size_t k = 0; k < N; ++k) e.v[k] = values[i + k];
    array.push_back(e);
  }
}

// Keys of the maps that DeleteSubMesh and CleanSubMesh clear, in their order.
template <class F>
void for_each_submesh_map(Vorn_3DGameNode& n, F&& f) {
  f(n.VertexDescArray);
  f(n.VertexArray_Custom);
  f(n.VertexArray_Positon);
  f(n.VertexArray_Normal);
  f(n.VertexArray_Tangent);
  f(n.VertexArray_Bitangent);
  f(n.VertexArray_UV);
  f(n.VertexArray_BoneIndics);
  f(n.VertexArray_BoneWeight);
  f(n.VIndexArray);
  f(n.TextureArray);
  f(n.SubMeshShapeType);
  f(n.SubMeshCullMode);
  f(n.SubMeshAlphaMode);
  f(n.SubMeshFX);
}

}  // namespace

int Vorn_3DGameNode::CreateSubMesh(const std::string& submeshName, bool withTexUV_, bool withSkin_) {
  const int s = static_cast<int>(SubMeshList.size());
  SubMeshList.push_back(submeshName);
  int layout = glc::N3F_V3F;
  if (withSkin_) {
    layout = withTexUV_ ? glc::T4F_C4F_N3F_V4F : glc::T2F_C4F_N3F_V3F;
  } else if (withTexUV_) {
    layout = glc::T2F_N3F_V3F;
  }
  VertexDescArray.set(s, layout);
  // A new index may land on a key left by DeleteSubMesh: its entries are overwritten.
  VertexArray_Custom.set(s, {});
  VertexArray_Positon.set(s, {});
  VertexArray_Normal.set(s, {});
  VertexArray_Tangent.set(s, {});
  VertexArray_Bitangent.set(s, {});
  VertexArray_UV.set(s, {});
  VertexArray_BoneIndics.set(s, {});
  VertexArray_BoneWeight.set(s, {});
  VIndexArray.set(s, {});
  TextureArray.set(s, {});
  SetSubMeshShapeType(s, glc::TRIANGLES);
  SetSubMeshAlphaMode(s, glc::NONE);
  withTexUV = withTexUV_;
  withSkin = withSkin_;
  return s;
}

int Vorn_3DGameNode::GetSubMeshIndex(const std::string& subMeshName) const noexcept {
  for (std::size_t i = 0; i < SubMeshList.size(); ++i)
    if (SubMeshList[i] == subMeshName) return static_cast<int>(i);
  return -1;
}

void Vorn_3DGameNode::DeleteSubMesh(int submeshIndex) {
  const std::size_t pos = py_index(submeshIndex, SubMeshList.size(), "Vorn_3DGameNode.DeleteSubMesh: submesh");
  SubMeshList.erase(SubMeshList.begin() + static_cast<std::ptrdiff_t>(pos));
  // The other keys are not renumbered; buffers, counts and colours keep their entries.
  for_each_submesh_map(*this, [submeshIndex](auto& map) { map.discard(submeshIndex); });
}

void Vorn_3DGameNode::CleanSubMesh() {
  SubMeshList.clear();
  for_each_submesh_map(*this, [](auto& map) { map.clear(); });
}

// ---- Vertex family ----

void Vorn_3DGameNode::PushVertex_Position(int s, double vx, double vy, double vz) {
  entry(VertexArray_Positon, s, "PushVertex_Position").push_back(VertexEntry<3>(vx, vy, vz));
}
void Vorn_3DGameNode::PushVertex_Normal(int s, double nx, double ny, double nz) {
  entry(VertexArray_Normal, s, "PushVertex_Normal").push_back(VertexEntry<3>(nx, ny, nz));
}
void Vorn_3DGameNode::PushVertex_Tangent(int s, double tx, double ty, double tz) {
  entry(VertexArray_Tangent, s, "PushVertex_Tangent").push_back(VertexEntry<3>(tx, ty, tz));
}
void Vorn_3DGameNode::PushVertex_Bitangent(int s, double bx, double by, double bz) {
  entry(VertexArray_Bitangent, s, "PushVertex_Bitangent").push_back(VertexEntry<3>(bx, by, bz));
}
void Vorn_3DGameNode::PushVertex_UV(int s, double u, double v) {
  entry(VertexArray_UV, s, "PushVertex_UV").push_back(VertexEntry<2>(u, v));
}
void Vorn_3DGameNode::PushVertex_BoneIndics(int s, double b1, double b2, double b3, double b4) {
  // The low bone number must stay below 100 for the shader to unpack it exactly.
  entry(VertexArray_BoneIndics, s, "PushVertex_BoneIndics").push_back(VertexEntry<2>(b1 + b2 * 0.01, b3 + b4 * 0.01));
}
void Vorn_3DGameNode::PushVertex_BoneWeights(int s, double w1, double w2, double w3, double w4) {
  entry(VertexArray_BoneWeight, s, "PushVertex_BoneWeights").push_back(VertexEntry<4>(w1, w2, w3, w4));
}

#define VORN_PUSH_WIDE(Name, Map, N, Count)                                   \
  void Vorn_3DGameNode::Name(int s, std::span<const double, Count> values) { \
    push_entries<N, Count>(entry(Map, s, #Name), values);                    \
  }
VORN_PUSH_WIDE(PushLineVertex_Position, VertexArray_Positon, 3, 6)
VORN_PUSH_WIDE(PushTriangleVertex_Positon, VertexArray_Positon, 3, 9)
VORN_PUSH_WIDE(PushQuadVertex_Postion, VertexArray_Positon, 3, 12)
VORN_PUSH_WIDE(PushLineVertex_Normal, VertexArray_Normal, 3, 6)
VORN_PUSH_WIDE(PushTriangleVertex_Normal, VertexArray_Normal, 3, 9)
VORN_PUSH_WIDE(PushQuadVertex_Normal, VertexArray_Normal, 3, 12)
VORN_PUSH_WIDE(PushLineVertex_Tangent, VertexArray_Tangent, 3, 6)
VORN_PUSH_WIDE(PushTriangleVertex_Tangent, VertexArray_Tangent, 3, 9)
VORN_PUSH_WIDE(PushQuadVertex_Tangent, VertexArray_Tangent, 3, 12)
VORN_PUSH_WIDE(PushLineVertex_Bitangent, VertexArray_Bitangent, 3, 6)
VORN_PUSH_WIDE(PushTriangleVertex_Bitangent, VertexArray_Bitangent, 3, 9)
VORN_PUSH_WIDE(PushQuadVertex_Bitangent, VertexArray_Bitangent, 3, 12)
VORN_PUSH_WIDE(PushLineVertex_UV, VertexArray_UV, 2, 4)
VORN_PUSH_WIDE(PushTriangleVertex_UV, VertexArray_UV, 2, 6)
VORN_PUSH_WIDE(PushQuadVertex_UV, VertexArray_UV, 2, 8)
VORN_PUSH_WIDE(PushLineVertex_BoneWeights, VertexArray_BoneWeight, 4, 8)
VORN_PUSH_WIDE(PushTriangleVertex_BoneWeights, VertexArray_BoneWeight, 4, 12)
VORN_PUSH_WIDE(PushQuadVertex_BoneWeights, VertexArray_BoneWeight, 4, 16)
#undef VORN_PUSH_WIDE

void Vorn_3DGameNode::PushLineVertex_BoneIndics(int, std::span<const double, 8>) {
  throw TypeError(
      "Vorn_3DGameNode.PushLineVertex_BoneIndics() missing 4 required positional arguments: 'b5', 'b6', 'b7', "
      "and 'b8'");
}

void Vorn_3DGameNode::PushTriangleVertex_BoneIndics(int s, std::span<const double, 12> b) {
  auto& array = entry(VertexArray_BoneIndics, s, "PushTriangleVertex_BoneIndics");
  for (std::size_t i = 0; i < 12; i += 4)
    array.push_back(VertexEntry<2>(b[i] + b[i + 1] * 0.01, b[i + 2] + b[i + 3] * 0.01));
}

void Vorn_3DGameNode::PushQuadVertex_BoneIndics(int s, std::span<const double, 16> b) {
  auto& array = entry(VertexArray_BoneIndics, s, "PushQuadVertex_BoneIndics");
  for (std::size_t i = 0; i < 16; i += 4)
    array.push_back(VertexEntry<2>(b[i] + b[i + 1] * 0.01, b[i + 2] + b[i + 3] * 0.01));
}

// ---- Bulk data and indices ----

void Vorn_3DGameNode::LoadVertex(int s, FloatArray vertexArray) { VertexArray_Custom.set(s, std::move(vertexArray)); }

void Vorn_3DGameNode::CleanVertex() {
  // Tangents and bitangents stay.
  VertexArray_Custom.clear();
  VertexArray_Positon.clear();
  VertexArray_Normal.clear();
  VertexArray_UV.clear();
  VertexArray_BoneIndics.clear();
  VertexArray_BoneWeight.clear();
}

void Vorn_3DGameNode::LoadVIndex(int s, IndexArray indexArray) { VIndexArray.set(s, std::move(indexArray)); }

void Vorn_3DGameNode::PushVIndex(int s, std::int64_t index) { entry(VIndexArray, s, "PushVIndex").push_back(index); }

void Vorn_3DGameNode::DropVIndex(int s, std::int64_t index) {
  auto& array = entry(VIndexArray, s, "DropVIndex");
  array.erase(array.begin() + static_cast<std::ptrdiff_t>(py_index(index, array.size(), "pop")));
}

void Vorn_3DGameNode::PushLineVIndex(int s, std::int64_t i1, std::int64_t i2) {
  auto& array = entry(VIndexArray, s, "PushLineVIndex");
  array.insert(array.end(), {i1, i2});
}
void Vorn_3DGameNode::PushTriangleVIndex(int s, std::int64_t i1, std::int64_t i2, std::int64_t i3) {
  auto& array = entry(VIndexArray, s, "PushTriangleVIndex");
  array.insert(array.end(), {i1, i2, i3});
}
void Vorn_3DGameNode::PushQuadVIndex(int s, std::int64_t i1, std::int64_t i2, std::int64_t i3, std::int64_t i4) {
  auto& array = entry(VIndexArray, s, "PushQuadVIndex");
  array.insert(array.end(), {i1, i2, i3, i4});
}

namespace {
[[noreturn]] void drop_several(const char* operation) {
  throw TypeError(std::string("Vorn_3DGameNode.") + operation +
                  ": 'list' object cannot be interpreted as an integer (the removal takes one position)");
}
}  // namespace

void Vorn_3DGameNode::DropLineVIndex(int s, std::int64_t, std::int64_t) {
  entry(VIndexArray, s, "DropLineVIndex");
  drop_several("DropLineVIndex");
}
void Vorn_3DGameNode::DropTriangleVIndex(int s, std::int64_t, std::int64_t, std::int64_t) {
  entry(VIndexArray, s, "DropTriangleVIndex");
  drop_several("DropTriangleVIndex");
}
void Vorn_3DGameNode::DropQuadVIndex(int s, std::int64_t, std::int64_t, std::int64_t, std::int64_t) {
  entry(VIndexArray, s, "DropQuadVIndex");
  drop_several("DropQuadVIndex");
}

void Vorn_3DGameNode::CleanVIndex(int s) { entry(VIndexArray, s, "CleanVIndex").clear(); }

// ---- Material and state ----

void Vorn_3DGameNode::SetSubMeshColor(int s, double r, double g, double b, double a) {
  SubMeshColor.set(s, {r, g, b, a});
}

void Vorn_3DGameNode::SetMeshColor(double r, double g, double b, double a) {
  for (int s : VertexArray_Positon.keys()) SetSubMeshColor(s, r, g, b, a);
}

std::array<double, 4> Vorn_3DGameNode::GetSubMeshColor(int s) const {
  if (const auto* c = SubMeshColor.find(s)) return *c;
  return {1.0, 1.0, 1.0, 1.0};
}

void Vorn_3DGameNode::SetSubMeshSpecularColor(int s, double r, double g, double b, double power) {
  SubMeshSpecularColor.set(s, {r, g, b, power});
}

void Vorn_3DGameNode::SetMeshSpecularColor(double r, double g, double b, double power) {
  for (int s : VertexArray_Positon.keys()) SetSubMeshSpecularColor(s, r, g, b, power);
}

std::array<double, 4> Vorn_3DGameNode::GetSubMeshSpecularColor(int s) const {
  if (const auto* c = SubMeshSpecularColor.find(s)) return *c;
  return {1.0, 1.0, 1.0, 10.0};
}

void Vorn_3DGameNode::SetSubMeshAlphaMode(int s, int alphaMode) { SubMeshAlphaMode.set(s, alphaMode); }

void Vorn_3DGameNode::SetSubMeshShapeType(int s, int shapeType, int cullMode) {
  SubMeshShapeType.set(s, shapeType);
  SubMeshCullMode.set(s, cullMode);
}

void Vorn_3DGameNode::SetShapeType(int shapeType, int cullMode) {
  for (int s : VertexArray_Positon.keys()) SetSubMeshShapeType(s, shapeType, cullMode);
}

void Vorn_3DGameNode::SetSubMeshWireFrameMode(int s, bool IsWireFrame) { SubMeshWireFrame.set(s, IsWireFrame); }

void Vorn_3DGameNode::SetWireFrameMode(bool IsWireFrame) {
  for (int s : VertexArray_Positon.keys()) SetSubMeshWireFrameMode(s, IsWireFrame);
}

bool Vorn_3DGameNode::IsWireFrameMode() const {
  if (SubMeshWireFrame.empty()) return false;
  const bool* first = SubMeshWireFrame.find(0);
  if (!first) throw KeyError("Vorn_3DGameNode.IsWireFrameMode: submesh 0 has no wire-frame entry");
  return *first;
}

}  // namespace vorn
