// The submesh interface of nodes: vertex pushes, index operations, materials,
// buffers, and the submesh maps as fields (read as copies, replaced on assignment).
#include <string>
#include <vector>

#include "bind_node.h"
#include "node/gl_enums.h"

namespace vorn::py_bind {
namespace {

using Node = Vorn_3DGameNode;

std::string type_name(py::handle v) { return py::str(py::type::handle_of(v).attr("__name__")); }

bool is_sequence(py::handle v) { return py::isinstance<py::sequence>(v) && !py::isinstance<py::str>(v); }

// ---- Values of the submesh maps, to and from script values ----

template <std::size_t N>
py::list entries_to_py(const std::vector<VertexEntry<N>>& array) {
  py::list out(array.size());
  for (std::size_t i = 0; i < array.size(); ++i) {
    py::list e(array[i].size);
    for (std::size_t k = 0; k < array[i].size; ++k) e[k] = py::float_(array[i].v[k]);
    out[i] = std::move(e);
  }
  return out;
}

template <std::size_t N>
std::vector<VertexEntry<N>> entries_from_py(py::handle value, const std::string& where) {
  if (!is_sequence(value)) throw py::type_error(where + ": expected a sequence of vertex entries");
  std::vector<VertexEntry<N>> out;
  const py::list entries(py::reinterpret_borrow<py::object>(value));
  out.reserve(entries.size());
  for (py::handle item : entries) {
    // Counted from the items themselves: a sequence's len() may not match what it yields.
    const py::list components =
        is_sequence(item) ? py::list(py::reinterpret_borrow<py::object>(item)) : py::list();
    if (!is_sequence(item) || components.size() > N) {
      throw py::type_error(where + ": each vertex entry is a sequence of at most " + std::to_string(N) + " numbers");
    }
    VertexEntry<N> e;
    e.size = 0;
    for (py::handle c : components) e.v[e.size++] = number_arg(c, where.c_str(), "vertex component");
    out.push_back(e);
  }
  return out;
}

struct Converter {
  template <std::size_t N>
  static py::object to_py(const std::vector<VertexEntry<N>>& a) { return entries_to_py(a); }
  static py::object to_py(const FloatArray& a) { return py::cast(a); }
  static py::object to_py(const IndexArray& a) { return py::cast(a); }
  static py::object to_py(int v) { return py::int_(v); }
  static py::object to_py(std::int64_t v) { return py::int_(v); }
  static py::object to_py(unsigned v) { return py::int_(v); }
  static py::object to_py(bool v) { return py::bool_(v); }
  static py::object to_py(const std::array<double, 4>& v) { return py::cast(std::vector<double>(v.begin(), v.end())); }
  static py::object to_py(const std::shared_ptr<BufferObject>& b) { return py::cast(b); }
  static py::object to_py(const std::vector<TextureInfo>& records) {
    py::list out;
    for (const auto& t : records) {
      py::object data = t.imgData ? py::object(py::bytes(reinterpret_cast<const char*>(t.imgData->data()),
                                                          t.imgData->size()))
                                  : py::object(py::none());
      out.append(make_list(t.channel, t.texID, data, t.Format, t.width, t.height, t.genFinish, t.mipMap,
                               t.density));
    }
    return out;
  }
};

template <class V>
V value_from_py(py::handle v, const std::string& where) {
  if constexpr (std::is_same_v<V, Vec2Array>) {
    return entries_from_py<2>(v, where);
  } else if constexpr (std::is_same_v<V, Vec3Array>) {
    return entries_from_py<3>(v, where);
  } else if constexpr (std::is_same_v<V, Vec4Array>) {
    return entries_from_py<4>(v, where);
  } else if constexpr (std::is_same_v<V, std::vector<TextureInfo>>) {
    if (!is_sequence(v)) throw py::type_error(where + ": expected a sequence of texture records");
    std::vector<TextureInfo> out;
    for (py::handle item : v) {
      if (!is_sequence(item) || py::len(item) != 9) throw py::type_error(where + ": a texture record has nine entries");
      py::sequence r = py::reinterpret_borrow<py::sequence>(item);
      TextureInfo t;
      t.channel = r[0].cast<int>();
      t.texID = r[1].cast<unsigned>();
      if (!r[2].is_none()) {
        const std::string bytes = r[2].cast<std::string>();
        t.imgData = std::make_shared<const std::vector<std::uint8_t>>(bytes.begin(), bytes.end());
      }
      t.Format = r[3].cast<std::string>();
      t.width = r[4].cast<int>();
      t.height = r[5].cast<int>();
      t.genFinish = r[6].cast<bool>();
      t.mipMap = r[7].cast<bool>();
      t.density = number_arg(r[8], where.c_str(), "density");
      out.push_back(std::move(t));
    }
    return out;
  } else if constexpr (std::is_same_v<V, std::array<double, 4>>) {
    if (!is_sequence(v) || py::len(v) != 4) throw py::type_error(where + ": expected four numbers");
    py::sequence s = py::reinterpret_borrow<py::sequence>(v);
    return {number_arg(s[0], where.c_str(), "value"), number_arg(s[1], where.c_str(), "value"),
            number_arg(s[2], where.c_str(), "value"), number_arg(s[3], where.c_str(), "value")};
  } else if constexpr (std::is_same_v<V, std::shared_ptr<BufferObject>>) {
    if (!py::isinstance<BufferObject>(v)) throw py::type_error(where + ": expected a BufferObject");
    return v.cast<std::shared_ptr<BufferObject>>();
  } else {
    try {
      return v.cast<V>();
    } catch (const py::cast_error&) {
      throw py::type_error(where + ": unexpected value of type " + type_name(v));
    }
  }
}

template <class V>
void submesh_map_field(NodeClass& cls, const char* name, Node::SubMeshMap<V> Node::*member, const char* doc) {
  cls.def_property(
      name,
      [member](const Node& n) {
        py::dict out;
        for (const auto& [k, v] : n.*member) out[py::int_(k)] = Converter::to_py(v);
        return out;
      },
      [member, name](Node& n, py::handle value) {
        const std::string where = std::string("Vorn_3DGameNode.") + name;
        if (!py::isinstance<py::dict>(value)) throw py::type_error(where + ": expected a dict keyed by submesh index");
        Node::SubMeshMap<V> fresh;
        for (auto [k, v] : value.cast<py::dict>()) {
          if (!py::isinstance<py::int_>(k)) throw py::type_error(where + ": keys are submesh indices (int)");
          fresh.set(py::cast<int>(k), value_from_py<V>(v, where));
        }
        n.*member = std::move(fresh);
      },
      doc);
}

// Numbers of a wide push: exactly `count` after the submesh index.
template <std::size_t Count>
std::array<double, Count> numbers(const py::args& values, const char* operation) {
  if (values.size() != Count) {
    throw py::type_error(std::string("Vorn_3DGameNode.") + operation + "() takes the submesh index and " +
                         std::to_string(Count) + " numbers (" + std::to_string(values.size()) + " given)");
  }
  std::array<double, Count> out{};
  for (std::size_t i = 0; i < Count; ++i) out[i] = number_arg(values[i], operation, "value");
  return out;
}

template <std::size_t Count>
void wide_push(NodeClass& cls, const char* name, void (Node::*op)(int, std::span<const double, Count>),
               const char* doc) {
  cls.def(
      name,
      [op, name](Node& n, int s, py::args values) {
        const auto v = numbers<Count>(values, name);
        (n.*op)(s, std::span<const double, Count>(v));
      },
      py::arg("submeshIndex"), doc);
}

void bind_gl_constants(py::module_& m) {
  const std::pair<const char*, int> constants[] = {
      {"GL_NONE", glc::NONE},
      {"GL_LINES", glc::LINES},
      {"GL_TRIANGLES", glc::TRIANGLES},
      {"GL_QUADS", glc::QUADS},
      {"GL_BLEND", glc::BLEND},
      {"GL_CW", glc::CW},
      {"GL_CCW", glc::CCW},
      {"GL_V3F", glc::V3F},
      {"GL_N3F_V3F", glc::N3F_V3F},
      {"GL_T2F_V3F", glc::T2F_V3F},
      {"GL_T2F_N3F_V3F", glc::T2F_N3F_V3F},
      {"GL_T2F_C4F_N3F_V3F", glc::T2F_C4F_N3F_V3F},
      {"GL_T4F_C4F_N3F_V4F", glc::T4F_C4F_N3F_V4F},
      {"GL_ARRAY_BUFFER", glc::ARRAY_BUFFER},
      {"GL_ELEMENT_ARRAY_BUFFER", glc::ELEMENT_ARRAY_BUFFER},
  };
  for (const auto& [name, value] : constants)
    if (!py::hasattr(m, name)) m.attr(name) = value;
}

void bind_buffer_object(py::module_& m) {
  py::class_<BufferObject, std::shared_ptr<BufferObject>>(
      m, "BufferObject",
      "A GL buffer over typed data (vertex floats or unsigned 16-bit indices). The data\n"
      "goes to GL at the first bind(); the GL buffer is deleted with the object.")
      .def("bind", &BufferObject::bind, "Binds to the target, uploading on the first call (needs a GL context).")
      .def("unbind", &BufferObject::unbind, "Binds 0 to the target.")
      .def_property_readonly("target", &BufferObject::target, "GL binding target.")
      .def_property_readonly("count", &BufferObject::count, "Number of elements.")
      .def_property_readonly("glName", &BufferObject::gl_name, "GL buffer name; 0 before the first bind.")
      .def_property_readonly(
          "data",
          [](const BufferObject& b) -> py::object {
            if (const auto* f = b.float_data()) return py::cast(*f);
            if (const auto* i = b.index_data()) return py::cast(*i);
            if (const auto* i = b.wide_index_data()) return py::cast(*i);
            return py::none();
          },
          "A copy of the data before upload (empty after it).")
      .def("__len__", &BufferObject::count);
}

}  // namespace

void bind_node_submesh(py::module_& m, NodeClass& cls) {
  bind_gl_constants(m);
  bind_buffer_object(m);

  // ---- Creation and removal ----
  cls.def("CreateSubMesh", &Node::CreateSubMesh, py::arg("submeshName"), py::arg("withTexUV") = false,
          py::arg("withSkin") = false, "Creates a submesh and returns its index; the layout follows the flags.")
      .def("GetSubMeshIndex", &Node::GetSubMeshIndex, py::arg("subMeshName"),
           "Position of the name in SubMeshList, -1 if absent.")
      .def("DeleteSubMesh", &Node::DeleteSubMesh, py::arg("submeshIndex"),
           "Removes the name at that position and the key from the data maps (keys are not renumbered).")
      .def("CleanSubMesh", &Node::CleanSubMesh, "Empties SubMeshList and the data maps; buffers stay.");

  // ---- Vertex family ----
  cls.def("PushVertex_Position", &Node::PushVertex_Position, py::arg("submeshIndex"), py::arg("x"), py::arg("y"),
          py::arg("z"), "Appends a position; KeyError for an unknown submesh.")
      .def("PushVertex_Normal", &Node::PushVertex_Normal, py::arg("submeshIndex"), py::arg("nx"), py::arg("ny"),
           py::arg("nz"), "Appends a normal.")
      .def("PushVertex_Tangent", &Node::PushVertex_Tangent, py::arg("submeshIndex"), py::arg("tx"), py::arg("ty"),
           py::arg("tz"), "Appends a tangent.")
      .def("PushVertex_Bitangent", &Node::PushVertex_Bitangent, py::arg("submeshIndex"), py::arg("bx"),
           py::arg("by"), py::arg("bz"), "Appends a bitangent.")
      .def("PushVertex_UV", &Node::PushVertex_UV, py::arg("submeshIndex"), py::arg("u"), py::arg("v"),
           "Appends texture coordinates.")
      .def("PushVertex_BoneIndics", &Node::PushVertex_BoneIndics, py::arg("submeshIndex"), py::arg("b1"),
           py::arg("b2"), py::arg("b3"), py::arg("b4"), "Appends [b1 + b2 * 0.01, b3 + b4 * 0.01].")
      .def("PushVertex_BoneWeights", &Node::PushVertex_BoneWeights, py::arg("submeshIndex"), py::arg("w1"),
           py::arg("w2"), py::arg("w3"), py::arg("w4"), "Appends four bone weights.");
  wide_push<6>(cls, "PushLineVertex_Position", &Node::PushLineVertex_Position, "(s, x1, y1, z1, x2, y2, z2)");
  wide_push<9>(cls, "PushTriangleVertex_Positon", &Node::PushTriangleVertex_Positon, "(s, x1 .. z3)");
  wide_push<12>(cls, "PushQuadVertex_Postion", &Node::PushQuadVertex_Postion, "(s, x1 .. z4)");
  wide_push<6>(cls, "PushLineVertex_Normal", &Node::PushLineVertex_Normal, "(s, nx1 .. nz2)");
  wide_push<9>(cls, "PushTriangleVertex_Normal", &Node::PushTriangleVertex_Normal, "(s, nx1 .. nz3)");
  wide_push<12>(cls, "PushQuadVertex_Normal", &Node::PushQuadVertex_Normal, "(s, nx1 .. nz4)");
  wide_push<6>(cls, "PushLineVertex_Tangent", &Node::PushLineVertex_Tangent, "(s, tx1 .. tz2)");
  wide_push<9>(cls, "PushTriangleVertex_Tangent", &Node::PushTriangleVertex_Tangent, "(s, tx1 .. tz3)");
  wide_push<12>(cls, "PushQuadVertex_Tangent", &Node::PushQuadVertex_Tangent, "(s, tx1 .. tz4)");
  wide_push<6>(cls, "PushLineVertex_Bitangent", &Node::PushLineVertex_Bitangent, "(s, bx1 .. bz2)");
  wide_push<9>(cls, "PushTriangleVertex_Bitangent", &Node::PushTriangleVertex_Bitangent, "(s, bx1 .. bz3)");
  wide_push<12>(cls, "PushQuadVertex_Bitangent", &Node::PushQuadVertex_Bitangent, "(s, bx1 .. bz4)");
  wide_push<4>(cls, "PushLineVertex_UV", &Node::PushLineVertex_UV, "(s, u1, v1, u2, v2)");
  wide_push<6>(cls, "PushTriangleVertex_UV", &Node::PushTriangleVertex_UV, "(s, u1 .. v3)");
  wide_push<8>(cls, "PushQuadVertex_UV", &Node::PushQuadVertex_UV, "(s, u1 .. v4)");
  wide_push<8>(cls, "PushLineVertex_BoneIndics", &Node::PushLineVertex_BoneIndics,
               "(s, b1 .. b8). Kept as it always was: it fails with TypeError and changes nothing.");
  wide_push<12>(cls, "PushTriangleVertex_BoneIndics", &Node::PushTriangleVertex_BoneIndics, "(s, b1 .. b12)");
  wide_push<16>(cls, "PushQuadVertex_BoneIndics", &Node::PushQuadVertex_BoneIndics, "(s, b1 .. b16)");
  wide_push<8>(cls, "PushLineVertex_BoneWeights", &Node::PushLineVertex_BoneWeights, "(s, w1 .. w8)");
  wide_push<12>(cls, "PushTriangleVertex_BoneWeights", &Node::PushTriangleVertex_BoneWeights, "(s, w1 .. w12)");
  wide_push<16>(cls, "PushQuadVertex_BoneWeights", &Node::PushQuadVertex_BoneWeights, "(s, w1 .. w16)");

  // ---- Bulk data and indices ----
  cls.def(
         "LoadVertex",
         [](Node& n, int s, py::handle values) {
           if (!is_sequence(values)) throw py::type_error("Vorn_3DGameNode.LoadVertex: vertexArray must be a sequence");
           FloatArray data;
           data.reserve(py::len(values));
           for (py::handle v : values) data.push_back(number_arg(v, "Vorn_3DGameNode.LoadVertex", "vertexArray"));
           n.LoadVertex(s, std::move(data));
         },
         py::arg("submeshIndex"), py::arg("vertexArray"),
         "VertexArray_Custom[s] = a flat float sequence in the submesh's interleaved layout.")
      .def("CleanVertex", &Node::CleanVertex, "Empties the vertex maps for all submeshes; tangents stay.")
      .def("LoadVIndex", &Node::LoadVIndex, py::arg("submeshIndex"), py::arg("indexArray"), "VIndexArray[s] = indices.")
      .def("PushVIndex", &Node::PushVIndex, py::arg("submeshIndex"), py::arg("index"), "Appends one index.")
      .def("DropVIndex", &Node::DropVIndex, py::arg("submeshIndex"), py::arg("index"),
           "Removes the entry at position index (a position, not a vertex number).")
      .def("PushLineVIndex", &Node::PushLineVIndex, py::arg("submeshIndex"), py::arg("index1"), py::arg("index2"),
           "Appends two indices.")
      .def("PushTriangleVIndex", &Node::PushTriangleVIndex, py::arg("submeshIndex"), py::arg("index1"),
           py::arg("index2"), py::arg("index3"), "Appends three indices.")
      .def("PushQuadVIndex", &Node::PushQuadVIndex, py::arg("submeshIndex"), py::arg("index1"), py::arg("index2"),
           py::arg("index3"), py::arg("index4"), "Appends four indices.")
      .def("DropLineVIndex", &Node::DropLineVIndex, py::arg("submeshIndex"), py::arg("index1"), py::arg("index2"),
           "Kept as it always was: fails with TypeError, the array unchanged.")
      .def("DropTriangleVIndex", &Node::DropTriangleVIndex, py::arg("submeshIndex"), py::arg("index1"),
           py::arg("index2"), py::arg("index3"), "Kept as it always was: fails with TypeError.")
      .def("DropQuadVIndex", &Node::DropQuadVIndex, py::arg("submeshIndex"), py::arg("index1"), py::arg("index2"),
           py::arg("index3"), py::arg("index4"), "Kept as it always was: fails with TypeError.")
      .def("CleanVIndex", &Node::CleanVIndex, py::arg("submeshIndex"), "Empties the submesh's indices.");

  // ---- Material and state ----
  cls.def("SetSubMeshColor", &Node::SetSubMeshColor, py::arg("submeshIndex"), py::arg("r"), py::arg("g"),
          py::arg("b"), py::arg("a") = 1.0, "SubMeshColor[s] = [r, g, b, a].")
      .def("SetMeshColor", &Node::SetMeshColor, py::arg("r"), py::arg("g"), py::arg("b"), py::arg("a") = 1.0,
           "SetSubMeshColor for each key of VertexArray_Positon.")
      .def(
          "GetSubMeshColor", [](const Node& n, int s) { return Converter::to_py(n.GetSubMeshColor(s)); },
          py::arg("submeshIndex") = 0, "The colour, or [1.0, 1.0, 1.0, 1.0].")
      .def("SetSubMeshSpecularColor", &Node::SetSubMeshSpecularColor, py::arg("submeshIndex"), py::arg("r"),
           py::arg("g"), py::arg("b"), py::arg("power") = 1.0, "SubMeshSpecularColor[s] = [r, g, b, power].")
      .def("SetMeshSpecularColor", &Node::SetMeshSpecularColor, py::arg("r"), py::arg("g"), py::arg("b"),
           py::arg("power") = 10.0, "SetSubMeshSpecularColor for each key of VertexArray_Positon.")
      .def(
          "GetSubMeshSpecularColor",
          [](const Node& n, int s) { return Converter::to_py(n.GetSubMeshSpecularColor(s)); },
          py::arg("submeshIndex") = 0, "The specular colour, or [1.0, 1.0, 1.0, 10.0].")
      .def("SetSubMeshAlphaMode", &Node::SetSubMeshAlphaMode, py::arg("submeshIndex"),
           py::arg("alphaMode") = glc::BLEND, "GL_BLEND to blend, GL_NONE for opaque.")
      .def("SetSubMeshShapeType", &Node::SetSubMeshShapeType, py::arg("submeshIndex"), py::arg("shapeType"),
           py::arg("cullMode") = glc::NONE, "Primitive type and culling of a submesh.")
      .def("SetShapeType", &Node::SetShapeType, py::arg("shapeType"), py::arg("cullMode") = glc::NONE,
           "SetSubMeshShapeType for each key of VertexArray_Positon.")
      .def("SetSubMeshWireFrameMode", &Node::SetSubMeshWireFrameMode, py::arg("submeshIndex"),
           py::arg("IsWireFrame") = true, "Wire-frame drawing of a submesh.")
      .def("SetWireFrameMode", &Node::SetWireFrameMode, py::arg("IsWireFrame") = true,
           "SetSubMeshWireFrameMode for each key of VertexArray_Positon.")
      .def("IsWireFrameMode", &Node::IsWireFrameMode, "False with no entries, else submesh 0's entry.")
      .def("GenTexCoords", &Node::GenTexCoords, py::arg("submeshIndex"), "Hook after a texture is attached.");

  // ---- Buffers ----
  cls.def("GenTangentAndBitangent", &Node::GenTangentAndBitangent, py::arg("submeshIndex"),
          "Fills tangents and bitangents of a triangle or quad submesh, switches it to the\n"
          "15-float layout and rebuilds its buffers.")
      .def("BuildSubMeshVBO", &Node::BuildSubMeshVBO, py::arg("submeshIndex"),
           "Interleaves the submesh into a vertex buffer (and an index buffer when it has indices).")
      .def("BuildVBO", &Node::BuildVBO, "Builds every submesh and the bounding box.")
      .def(
          "SortVertex4BoneInfo",
          [](const Node&, const std::vector<std::pair<std::int64_t, double>>& info) {
            const auto [bones, weights] = Node::SortVertex4BoneInfo(info);
            return py::make_tuple(std::vector<std::int64_t>(bones.begin(), bones.end()),
                                  std::vector<double>(weights.begin(), weights.end()));
          },
          py::arg("BoneInfoArray"),
          "The four heaviest (bone, weight) pairs as ([b1..b4], [w1..w4]), zeros for the rest.");

  // ---- The submesh maps ----
  cls.def_property(
      "SubMeshList", [](const Node& n) { return n.SubMeshList; },
      [](Node& n, std::vector<std::string> names) { n.SubMeshList = std::move(names); },
      "Submesh names by position (a copy when read).");
  submesh_map_field(cls, "VertexArray_Custom", &Node::VertexArray_Custom, "Flat interleaved floats per submesh.");
  submesh_map_field(cls, "VertexArray_Positon", &Node::VertexArray_Positon, "[x, y, z] per vertex, per submesh.");
  submesh_map_field(cls, "VertexArray_Normal", &Node::VertexArray_Normal, "[nx, ny, nz] per vertex.");
  submesh_map_field(cls, "VertexArray_Tangent", &Node::VertexArray_Tangent, "[tx, ty, tz] per vertex.");
  submesh_map_field(cls, "VertexArray_Bitangent", &Node::VertexArray_Bitangent, "[bx, by, bz] per vertex.");
  submesh_map_field(cls, "VertexArray_UV", &Node::VertexArray_UV, "[u, v] per vertex.");
  submesh_map_field(cls, "VertexArray_BoneIndics", &Node::VertexArray_BoneIndics, "[b1b2, b3b4] per vertex.");
  submesh_map_field(cls, "VertexArray_BoneWeight", &Node::VertexArray_BoneWeight, "[w1, w2, w3, w4] per vertex.");
  submesh_map_field(cls, "VertexDescArray", &Node::VertexDescArray, "Interleaved layout per submesh.");
  submesh_map_field(cls, "VIndexArray", &Node::VIndexArray, "Vertex indices per submesh.");
  submesh_map_field(cls, "TextureArray", &Node::TextureArray, "Texture records per submesh.");
  submesh_map_field(cls, "VVBOArray", &Node::VVBOArray, "Vertex BufferObject per submesh.");
  submesh_map_field(cls, "IVBOArray", &Node::IVBOArray, "Index BufferObject per submesh.");
  submesh_map_field(cls, "SubMeshShapeType", &Node::SubMeshShapeType, "GL primitive per submesh.");
  submesh_map_field(cls, "SubMeshShapeCount", &Node::SubMeshShapeCount, "Number of indices drawn per submesh.");
  submesh_map_field(cls, "SubMeshCullMode", &Node::SubMeshCullMode, "GL_NONE or the front-face winding.");
  submesh_map_field(cls, "SubMeshAlphaMode", &Node::SubMeshAlphaMode, "GL_BLEND or GL_NONE.");
  submesh_map_field(cls, "SubMeshWireFrame", &Node::SubMeshWireFrame, "Wire-frame flag per submesh.");
  submesh_map_field(cls, "SubMeshColor", &Node::SubMeshColor, "[r, g, b, a] per submesh.");
  submesh_map_field(cls, "SubMeshSpecularColor", &Node::SubMeshSpecularColor, "[r, g, b, power] per submesh.");
  submesh_map_field(cls, "SubMeshFX", &Node::SubMeshFX, "GL program per submesh.");
  submesh_map_field(cls, "SubMeshFX_BackUp", &Node::SubMeshFX_BackUp, "Program before the last ApplyFX.");
}

}  // namespace vorn::py_bind
