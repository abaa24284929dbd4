// Turning submesh arrays into buffer data: tangent frames, interleaving and the
// bounding box.
#include <algorithm>
#include <cstring>
#include <string>

#include "core/errors.h"
#include "core/pyseq.h"
#include "node/game_node.h"

namespace vorn {
namespace {

std::string where(const char* operation, int s) {
  return std::string("Vorn_3DGameNode.") + operation + ": submesh " + std::to_string(s);
}

// The attribute array of a submesh; KeyError when the map has no entry for it.
template <class V>
const V& attr(const Vorn_3DGameNode::SubMeshMap<V>& map, int s, const char* operation, const char* name) {
  if (const V* found = map.find(s)) return *found;
  throw KeyError(where(operation, s) + " has no " + name + " entry");
}

template <class V>
bool non_empty(const Vorn_3DGameNode::SubMeshMap<V>& map, int s) {
  const V* found = map.find(s);
  return found && !found->empty();
}

// Writes `count` floats per vertex from one attribute array into interleaved output.
// Lengths are checked once up front; short entries are checked per vertex.
class Interleaver {
 public:
  Interleaver(std::size_t vertexCount, std::size_t floatsPerVertex, int s)
      : out_(vertexCount * floatsPerVertex), stride_(floatsPerVertex), vertexCount_(vertexCount), s_(s) {}

  template <std::size_t N>
  void column(const std::vector<VertexEntry<N>>& array, std::size_t count, const char* name, double bias = 0.0) {
    if (array.size() < vertexCount_) missing(name, array.size());
    float* dst = out_.data() + offset_;
    for (std::size_t v = 0; v < vertexCount_; ++v, dst += stride_) {
      const VertexEntry<N>& e = array[v];
      if (e.size < count) missing(name, v);
      for (std::size_t k = 0; k < count; ++k) dst[k] = static_cast<float>(e.v[k] + bias);
    }
    offset_ += count;
  }

  void constant(float value) {
    float* dst = out_.data() + offset_;
    for (std::size_t v = 0; v < vertexCount_; ++v, dst += stride_) *dst = value;
    offset_ += 1;
  }

  std::vector<float> take() { return std::move(out_); }

 private:
  [[noreturn]] void missing(const char* name, std::size_t vertex) const {
    throw IndexError(where("BuildSubMeshVBO", s_) + " has no complete " + name + " for vertex " +
                     std::to_string(vertex));
  }

  std::vector<float> out_;
  std::size_t stride_;
  std::size_t vertexCount_;
  std::size_t offset_ = 0;
  int s_;
};

// Two bone numbers are packed in one float as b1 + b2 * 0.01, and the vertex program
// takes them apart with int(z) and int((z - int(z)) * 100). In a 32-bit float the
// fraction often lands just below the hundredth (1 + 1 * 0.01 gives 0 for b2), so the
// GPU copy is nudged up by a fifth of a hundredth: every pair below 64 then decodes to
// its numbers. The arrays scripts read keep the packed values as they are.
constexpr double kBoneIndexBias = 0.002;

// Floats per vertex and offset of x in each interleaved layout; 0, 0 for others.
std::pair<std::size_t, std::size_t> layout_counts(int layout) {
  switch (layout) {
    case glc::T4F_C4F_N3F_V4F: return {15, 11};
    case glc::T2F_C4F_N3F_V3F: return {12, 9};
    case glc::T2F_N3F_V3F: return {8, 5};
    case glc::N3F_V3F: return {6, 3};
    case glc::T2F_V3F: return {5, 2};
    default: return {0, 0};
  }
}

// Grows the box to hold (x, y, z). A component taken from vertex data is a float.
void grow_box(Vector3& boxMin, Vector3& boxMax, double px, double py, double pz) {
  const double p[3] = {px, py, pz};
  double* mins[3] = {&boxMin.x, &boxMin.y, &boxMin.z};
  double* maxs[3] = {&boxMax.x, &boxMax.y, &boxMax.z};
  for (int a = 0; a < 3; ++a) {
    const auto bit = static_cast<std::uint8_t>(1u << a);
    if (p[a] > *maxs[a]) *maxs[a] = p[a], boxMax.intMask &= static_cast<std::uint8_t>(~bit);
    if (p[a] < *mins[a]) *mins[a] = p[a], boxMin.intMask &= static_cast<std::uint8_t>(~bit);
  }
}

const VertexEntry<3>& vec3_at(const Vec3Array& array, std::int64_t index, const char* name, int s) {
  const VertexEntry<3>& e = array[py_index(index, array.size(), name)];
  if (e.size < 3) throw IndexError(where("GenTangentAndBitangent", s) + ": short " + name + " entry");
  return e;
}

const VertexEntry<2>& vec2_at(const Vec2Array& array, std::int64_t index, int s) {
  const VertexEntry<2>& e = array[py_index(index, array.size(), "UV")];
  if (e.size < 2) throw IndexError(where("GenTangentAndBitangent", s) + ": short UV entry");
  return e;
}

}  // namespace

void Vorn_3DGameNode::GenTangentAndBitangent(int s) {
  if (!VertexArray_Positon.contains(s)) return;
  const int* shape = SubMeshShapeType.find(s);
  const int corners = !shape ? 0 : *shape == glc::TRIANGLES ? 3 : *shape == glc::QUADS ? 4 : 0;
  if (corners) {
    const Vec3Array& positions = VertexArray_Positon.at(s);
    const IndexArray& indices = attr(VIndexArray, s, "GenTangentAndBitangent", "index");
    const Vec2Array& uvs = attr(VertexArray_UV, s, "GenTangentAndBitangent", "UV");
    const std::size_t vertexCount = positions.size();
    const std::size_t faceCount = indices.size() / static_cast<std::size_t>(corners);
    // Entries a face does not reach stay empty, and fail a later interleave.
    Vec3Array& tangents = VertexArray_Tangent.set(s, Vec3Array(vertexCount, VertexEntry<3>::empty()));
    Vec3Array& bitangents = VertexArray_Bitangent.set(s, Vec3Array(vertexCount, VertexEntry<3>::empty()));
    for (std::size_t f = 0; f < faceCount; ++f) {
      const std::int64_t* face = indices.data() + f * static_cast<std::size_t>(corners);
      const auto& V1 = vec3_at(positions, face[0], "position", s);
      const auto& V2 = vec3_at(positions, face[1], "position", s);
      const auto& V3 = vec3_at(positions, face[2], "position", s);
      const auto& UV1 = vec2_at(uvs, face[0], s);
      const auto& UV2 = vec2_at(uvs, face[1], s);
      const auto& UV3 = vec2_at(uvs, face[2], s);
      const double Edge1X = V2[0] - V1[0], Edge1Y = V2[1] - V1[1], Edge1Z = V2[2] - V1[2];
      const double Edge2X = V3[0] - V1[0], Edge2Y = V3[1] - V1[1], Edge2Z = V3[2] - V1[2];
      const double Edge1U = UV2[0] - UV1[0], Edge1V = UV2[1] - UV1[1];
      const double Edge2U = UV3[0] - UV1[0], Edge2V = UV3[1] - UV1[1];
      const double denom = Edge1U * Edge2V - Edge2U * Edge1V;
      // Degenerate texture coordinates end the operation with the arrays half filled.
      if (denom == 0.0) throw ZeroDivisionError("float division by zero");
      const double fr = 1.0 / denom;
      const VertexEntry<3> T(fr * (Edge2V * Edge1X - Edge1V * Edge2X), fr * (Edge2V * Edge1Y - Edge1V * Edge2Y),
                             fr * (Edge2V * Edge1Z - Edge1V * Edge2Z));
      const VertexEntry<3> B(fr * (-Edge2U * Edge1X + Edge1U * Edge2X), fr * (-Edge2U * Edge1Y + Edge1U * Edge2Y),
                             fr * (-Edge2U * Edge1Z + Edge1U * Edge2Z));
      // Overwritten, not averaged: a shared vertex keeps the last face's frame.
      for (int c = 0; c < corners; ++c) {
        const std::size_t at = py_index(face[c], vertexCount, "tangent");
        tangents[at] = T;
        bitangents[at] = B;
      }
    }
    VertexDescArray.set(s, glc::T4F_C4F_N3F_V4F);
  }
  BuildSubMeshVBO(s);
}

std::vector<float> Vorn_3DGameNode::InterleaveSubMesh(int s) const {
  const Vec3Array* positions = VertexArray_Positon.find(s);
  const std::size_t count = positions ? positions->size() : 0;
  const int* layout = VertexDescArray.find(s);
  if (!layout || count == 0) return {};
  const char* op = "BuildSubMeshVBO";
  switch (*layout) {
    case glc::T4F_C4F_N3F_V4F: {
      if (non_empty(VertexArray_BoneIndics, s)) {
        Interleaver out(count, 15, s);
        out.column(attr(VertexArray_UV, s, op, "UV"), 2, "UV");
        out.column(VertexArray_BoneIndics.at(s), 2, "bone indices", kBoneIndexBias);
        out.column(attr(VertexArray_BoneWeight, s, op, "bone weight"), 4, "bone weights");
        out.column(attr(VertexArray_Normal, s, op, "normal"), 3, "normal");
        out.column(*positions, 3, "position");
        out.constant(1.0f);
        return out.take();
      }
      if (non_empty(VertexArray_Tangent, s)) {
        Interleaver out(count, 15, s);
        out.column(attr(VertexArray_UV, s, op, "UV"), 2, "UV");
        out.column(VertexArray_Tangent.at(s), 3, "tangent");
        out.column(attr(VertexArray_Bitangent, s, op, "bitangent"), 3, "bitangent");
        out.column(attr(VertexArray_Normal, s, op, "normal"), 3, "normal");
        out.column(*positions, 3, "position");
        out.constant(1.0f);
        return out.take();
      }
      // Neither bones nor tangents: each vertex is only its closing 1.0.
      return std::vector<float>(count, 1.0f);
    }
    case glc::T2F_C4F_N3F_V3F: {
      Interleaver out(count, 12, s);
      out.column(attr(VertexArray_BoneIndics, s, op, "bone indices"), 2, "bone indices", kBoneIndexBias);
      out.column(attr(VertexArray_BoneWeight, s, op, "bone weight"), 4, "bone weights");
      out.column(attr(VertexArray_Normal, s, op, "normal"), 3, "normal");
      out.column(*positions, 3, "position");
      return out.take();
    }
    case glc::T2F_N3F_V3F: {
      Interleaver out(count, 8, s);
      out.column(attr(VertexArray_UV, s, op, "UV"), 2, "UV");
      out.column(attr(VertexArray_Normal, s, op, "normal"), 3, "normal");
      out.column(*positions, 3, "position");
      return out.take();
    }
    case glc::N3F_V3F: {
      Interleaver out(count, 6, s);
      out.column(attr(VertexArray_Normal, s, op, "normal"), 3, "normal");
      out.column(*positions, 3, "position");
      return out.take();
    }
    case glc::T2F_V3F: {
      Interleaver out(count, 5, s);
      out.column(attr(VertexArray_UV, s, op, "UV"), 2, "UV");
      out.column(*positions, 3, "position");
      return out.take();
    }
    default:
      return {};
  }
}

void Vorn_3DGameNode::BuildSubMeshVBO(int s) {
  // Everything is converted before any entry changes: a failure keeps the old buffers.
  std::vector<float> vertexData = InterleaveSubMesh(s);
  if (vertexData.empty()) {
    const FloatArray* custom = VertexArray_Custom.find(s);
    if (!custom || custom->empty()) return;
    vertexData.assign(custom->begin(), custom->end());
  }
  // Indices must name vertices the buffer holds: GL would read past the buffer. The
  // vertex count is known from the layout's floats per vertex.
  const int* layout = VertexDescArray.find(s);
  const std::size_t floatsPerVertex = layout ? layout_counts(*layout).first : 0;
  const std::size_t vertexCount = floatsPerVertex ? vertexData.size() / floatsPerVertex : 0;
  std::shared_ptr<BufferObject> indexBuffer;
  if (const IndexArray* indices = VIndexArray.find(s); indices && !indices->empty()) {
    std::int64_t largest = 0;
    for (const std::int64_t value : *indices) {
      if (value < 0 || value > std::int64_t{0xFFFFFFFF} ||
          (floatsPerVertex && static_cast<std::uint64_t>(value) >= vertexCount)) {
        throw ValueError(where("BuildSubMeshVBO", s) + ": vertex index " + std::to_string(value) + " is not one of its " +
                         (floatsPerVertex ? std::to_string(vertexCount) + " vertices" : std::string("vertices")));
      }
      largest = std::max(largest, value);
    }
    // 16-bit indices while they reach, 32-bit for larger submeshes.
    if (largest <= 0xFFFF) {
      indexBuffer = std::make_shared<BufferObject>(
          BufferObject::IndexData(indices->begin(), indices->end()), glc::ELEMENT_ARRAY_BUFFER);
    } else {
      indexBuffer = std::make_shared<BufferObject>(
          BufferObject::WideIndexData(indices->begin(), indices->end()), glc::ELEMENT_ARRAY_BUFFER);
    }
  }
  const auto shapeCount = static_cast<std::int64_t>(indexBuffer ? indexBuffer->count() : 0);
  VVBOArray.set(s, std::make_shared<BufferObject>(std::move(vertexData), glc::ARRAY_BUFFER));
  if (indexBuffer) IVBOArray.set(s, std::move(indexBuffer));
  SubMeshShapeCount.set(s, shapeCount);
}

void Vorn_3DGameNode::BuildVBO() {
  boxMin = Vector3(999999, 999999, 999999, Vector3::kAllInt);
  boxMax = Vector3(-999999, -999999, -999999, Vector3::kAllInt);
  // Keys first: a build may not add keys, but the walk must not depend on that.
  for (int s : VertexArray_Positon.keys())
    if (non_empty(VertexArray_Positon, s)) BuildSubMeshVBO(s);
  for (int s : VertexArray_Custom.keys())
    if (non_empty(VertexArray_Custom, s)) BuildSubMeshVBO(s);

  for (const auto& [s, positions] : VertexArray_Positon) {
    for (const auto& p : positions) {
      if (p.size < 3) throw IndexError(where("BuildVBO", s) + ": short position entry");
      grow_box(boxMin, boxMax, p.v[0], p.v[1], p.v[2]);
    }
  }
  for (const auto& [s, custom] : VertexArray_Custom) {
    if (custom.empty()) continue;
    const int* layout = VertexDescArray.find(s);
    const auto [floatsPerVertex, offset] = layout_counts(layout ? *layout : 0);
    if (floatsPerVertex == 0) continue;
    const std::size_t vertexCount = custom.size() / floatsPerVertex;
    for (std::size_t v = 0; v < vertexCount; ++v) {
      const double* p = custom.data() + v * floatsPerVertex + offset;
      grow_box(boxMin, boxMax, p[0], p[1], p[2]);
    }
  }
}

}  // namespace vorn
