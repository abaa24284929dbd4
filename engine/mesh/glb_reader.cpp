#include "mesh/glb_reader.h"

#include <cmath>
#include <cstring>

#include "core/console.h"
#include "core/errors.h"
#include "mesh/glb_print.h"
#include "node/vertex_bone_sort.h"
#include "resource/png_codec.h"

namespace vorn {
namespace {

// A joint or vertex number from the file: float accessors may hold anything, and only
// a whole number in range converts without undefined behaviour.
std::int64_t WholeNumber(double value, const std::string& what) {
  if (!std::isfinite(value) || value != std::floor(value) || std::fabs(value) > 9.0e15) {
    throw ValueError(what + " " + console::py_float(value) + " is not a whole number");
  }
  return static_cast<std::int64_t>(value);
}

// The same with the name in two parts, joined only for the error (once per value read).
std::int64_t WholeNumber(double value, const std::string& path, const char* name) {
  if (std::isfinite(value) && value == std::floor(value) && std::fabs(value) <= 9.0e15) {
    return static_cast<std::int64_t>(value);
  }
  return WholeNumber(value, path + name);
}

class Reader {
 public:
  Reader(std::string path, std::vector<std::uint8_t> bytes) : path_(path), f_(std::move(path), std::move(bytes)) {}

  std::optional<GlbModel> Read() {
    if (!ReadHeader()) return std::nullopt;
    GlbModel model;
    beforePNG_ = f_.tell();
    const std::vector<GlbImage> materials = ReadMaterials();
    f_.seek(beforePNG_);

    const GlbJson& meshes = Top("meshes");
    for (std::int64_t m = 0; m < JsonSize(meshes); ++m) {
      const GlbJson& primitives = JsonMember(JsonElement(meshes, m, "meshes"), "primitives", Where("mesh", m));
      for (std::int64_t p = 0; p < JsonSize(primitives); ++p) {
        model.submeshes.push_back(ReadPrimitive(JsonElement(primitives, p, "primitives"), m, materials));
        const GlbSubmeshPlan& plan = model.submeshes.back();
        model.withNormal = plan.withNormal;
        model.withTexUV = plan.withTexUV;
        model.withSkin = plan.withSkin;
      }
    }
    if (model.withSkin) {
      model.initBoneTree = ReadBoneTree();
      model.actions = ReadActions();
    }
    return model;
  }

 private:
  std::string Where(const char* what, std::int64_t index) const {
    return path_ + ": " + what + " " + std::to_string(index);
  }
  const GlbJson& Top(const char* key) const { return JsonMember(doc_, key, path_ + ": the glTF document"); }
  const GlbJson* TopOptional(const char* key) const {
    const auto it = doc_.find(key);
    return it == doc_.end() ? nullptr : &*it;
  }

  bool ReadHeader() {
    const auto magic = f_.read_up_to(4);
    if (magic.size() != 4 || std::memcmp(magic.data(), "glTF", 4) != 0 || f_.left() < 16) {
      console::print(path_, " is not a valid glb file.");
      return false;
    }
    console::print("GLB_Header_Version:", f_.read_i32_le("the header"));
    console::print("GLB_Header_FileLength:", f_.read_i32_le("the header"));
    const std::int32_t jsonLength = f_.read_i32_le("the header");
    const auto typeBytes = f_.read(4, "the header");
    console::print("JSON_ChunkType:", ChunkTypeText(typeBytes), " Length:", jsonLength);
    // The type field is four bytes: "BIN" comes padded with a zero byte.
    const bool isJson = std::memcmp(typeBytes.data(), "JSON", 4) == 0;
    const bool isBin = std::memcmp(typeBytes.data(), "BIN", 3) == 0 && (typeBytes[3] == 0 || typeBytes[3] == ' ');
    if (!isJson && !isBin) {
      console::print(path_, " is not a valid glb file.");
      return false;
    }
    if (!isJson) return false;  // a file that starts with its BIN chunk has nothing to read
    if (jsonLength < 0 || static_cast<std::uint64_t>(jsonLength) > f_.left()) {
      throw ValueError(path_ + ": the JSON chunk claims " + std::to_string(jsonLength) + " bytes, the file has " +
                       std::to_string(f_.left()) + " left");
    }
    const auto text = f_.read(static_cast<std::uint64_t>(jsonLength), "the JSON chunk");
    try {
      doc_ = GlbJson::parse(text.begin(), text.end());
    } catch (const GlbJson::exception& e) {
      throw ValueError(path_ + ": the JSON chunk is not valid JSON (" + e.what() + ")");
    }
    console::write_line(JsonToPy(doc_));
    for (const char* key : {"scenes", "nodes", "meshes", "accessors"}) {
      if (!doc_.is_object() || !doc_.contains(key)) {
        console::print(path_, " no valid chunkdata.");
        return false;
      }
    }
    console::print(path_, " include ", JsonSize(Top("meshes")), " meshs.");
    console::print(path_, " include ", JsonSize(Top("nodes")), " ndoes.");
    if (const GlbJson* skins = TopOptional("skins")) console::print(path_, " include ", JsonSize(*skins), " skins.");
    return true;
  }

  // Data of an accessor, tightly packed at its bufferView's offset from the first data
  // byte of the BIN chunk; a bufferView without an offset reads on from where the last
  // read ended.
  GlbAttribute ReadAccessor(std::int64_t index) {
    const GlbJson& acc = JsonElement(Top("accessors"), index, path_ + ": accessors");
    const std::string what = Where("accessor", index);
    const std::int64_t count = JsonInt(JsonMember(acc, "count", what), what + " count");
    const std::int64_t componentType = JsonInt(JsonMember(acc, "componentType", what), what + " componentType");
    const std::string type = JsonString(JsonMember(acc, "type", what), what + " type");
    const std::int64_t viewIndex = JsonInt(JsonMember(acc, "bufferView", what), what + " bufferView");
    const GlbJson& view = JsonElement(Top("bufferViews"), viewIndex, path_ + ": bufferViews");
    const std::int64_t offset = view.contains("byteOffset") ? JsonInt(view["byteOffset"], what + " byteOffset") : -1;
    if (offset >= 0) f_.seek(beforeAttr_ + static_cast<std::uint64_t>(offset));
    return f_.ReadAttributeData(count, type, componentType);
  }

  std::vector<GlbImage> ReadMaterials() {
    std::vector<GlbImage> list;
    const GlbJson* materials = TopOptional("materials");
    if (!materials) return list;
    const GlbJson* textures = TopOptional("textures");
    for (std::int64_t m = 0; m < JsonSize(*materials); ++m) {
      const GlbJson& mat = JsonElement(*materials, m, path_ + ": materials");
      const std::string what = Where("material", m);
      std::int64_t textureIndex = -1;
      const auto pbr = mat.is_object() ? mat.find("pbrMetallicRoughness") : mat.end();
      if (pbr != mat.end() && pbr->is_object() && pbr->contains("baseColorTexture")) {
        // The exporter these files come from names the texture "diffuseTexture" here.
        const GlbJson& tex = JsonMember(*pbr, "diffuseTexture", what + " pbrMetallicRoughness");
        textureIndex = JsonInt(JsonMember(tex, "index", what + " diffuseTexture"), what + " texture index");
      } else if (mat.is_object() && mat.contains("extensions")) {
        const GlbJson& ext = JsonMember(mat["extensions"], "KHR_materials_pbrSpecularGlossiness", what + " extensions");
        if (ext.is_object() && ext.contains("diffuseTexture")) {
          textureIndex = JsonInt(JsonMember(ext["diffuseTexture"], "index", what + " diffuseTexture"),
                                 what + " texture index");
        }
      }
      if (!textures || textureIndex < 0 || textureIndex >= JsonSize(*textures)) continue;
      const GlbJson& texture = JsonElement(*textures, textureIndex, path_ + ": textures");
      const std::string texWhat = Where("texture", textureIndex);
      const std::int64_t imageIndex = JsonInt(JsonMember(texture, "source", texWhat), texWhat + " source");
      const GlbJson& image = JsonElement(Top("images"), imageIndex, path_ + ": images");
      const std::string imgWhat = Where("image", imageIndex);
      const std::int64_t viewIndex = JsonInt(JsonMember(image, "bufferView", imgWhat), imgWhat + " bufferView");
      const GlbJson& view = JsonElement(Top("bufferViews"), viewIndex, path_ + ": bufferViews");
      const std::string viewWhat = Where("bufferView", viewIndex);
      const std::int64_t offset = JsonInt(JsonMember(view, "byteOffset", viewWhat), viewWhat + " byteOffset");
      const std::int64_t length = JsonInt(JsonMember(view, "byteLength", viewWhat), viewWhat + " byteLength");
      // The sampler's filters are read and have no effect: textures get the engine's own.
      const std::int64_t samplerIndex = JsonInt(JsonMember(texture, "sampler", texWhat), texWhat + " sampler");
      JsonElement(Top("samplers"), samplerIndex, path_ + ": samplers");
      if (offset < 0) throw ValueError(viewWhat + ": byteOffset " + std::to_string(offset) + " is negative");
      // Image offsets count from the BIN chunk header: the 8 header bytes are passed over.
      f_.seek(beforePNG_ + static_cast<std::uint64_t>(offset));
      list.push_back(ReadPNGFromData(length, imgWhat));
      const GlbImage& img = list.back();
      console::print("<" + std::to_string(img.pixels->size()) + " bytes>", img.format, img.width, img.height);
    }
    return list;
  }

  GlbImage ReadPNGFromData(std::int64_t length, const std::string& what) {
    console::write_line(BytesToPy(f_.read(8, "the bytes before an image")));
    const std::uint64_t pngTell = f_.tell();
    // Signature and the IHDR chunk's length and type, then its first fields.
    console::write_line(BytesToPy(f_.read(4, "a PNG header")));
    console::write_line(BytesToPy(f_.read(8, "a PNG header")));
    console::write_line(BytesToPy(f_.read(4, "a PNG header")));
    const std::int32_t width = f_.read_i32_be("a PNG header");
    const std::int32_t height = f_.read_i32_be("a PNG header");
    const int depth = f_.read_u8("a PNG header");
    const int colorType = f_.read_u8("a PNG header");
    console::print("PNG Width:", width, " Height:", height, " Depth:", depth, " ColorType:", colorType);
    f_.seek(pngTell);
    // The view's length counts from 8 bytes before the image, so its last 8 bytes stay
    // unread; the decoder does without them.
    if (length < 8) throw ValueError(what + ": byteLength " + std::to_string(length) + " is shorter than 8");
    const auto bytes = f_.read(static_cast<std::uint64_t>(length) - 8, "image data");
    std::shared_ptr<Image> image = DecodePNG(bytes);
    if (!image) throw ValueError(what + ": the bytes are not a PNG image");
    if (image->mode() != Image::Mode::RGBA && image->mode() != Image::Mode::RGB) {
      image = image->convert(Image::Mode::RGB);
    }
    // Not flipped: v runs from the top in these files, so rows top first show upright.
    GlbImage out;
    out.format = image->mode() == Image::Mode::RGBA ? "RGBA" : "RGB";
    out.width = image->width();
    out.height = image->height();
    out.pixels = std::make_shared<const std::vector<std::uint8_t>>(std::move(image->data()));
    return out;
  }

  GlbSubmeshPlan ReadPrimitive(const GlbJson& prim, std::int64_t meshIndex, const std::vector<GlbImage>& materials) {
    const std::string what = Where("primitive of mesh", meshIndex);
    // Read as a stream reads: from a later primitive's position the header may be cut
    // short by the end of the file, and its values are meaningless anyway.
    const auto lengthBytes = f_.read_up_to(4);
    std::uint32_t binLength = 0;
    for (std::size_t i = 0; i < lengthBytes.size(); ++i) binLength |= std::uint32_t{lengthBytes[i]} << (8 * i);
    const std::string binType = ChunkTypeText(f_.read_up_to(4));
    console::print("BIN_ChunkType:", binType, " Length:", static_cast<std::int32_t>(binLength));
    beforeAttr_ = f_.tell();

    GlbAttributes data;
    const GlbJson& attributes = JsonMember(prim, "attributes", what);
    if (!attributes.is_object()) throw TypeError(what + ": attributes is not an object");
    for (const auto& [name, accessor] : attributes.items()) {
      data.set(name, ReadAccessor(JsonInt(accessor, what + " attribute " + name)));
    }
    data.set("indices", ReadAccessor(JsonInt(JsonMember(prim, "indices", what), what + " indices")));
    console::write_line(AttributesToPy(data));

    const auto count = [&](const char* name) { return data.contains(name) ? data.at(name).count() : 0; };
    const std::size_t vertexCount = count("POSITION");
    GlbSubmeshPlan plan;
    plan.withNormal = count("NORMAL") > 0;
    plan.withTexUV = count("TEXCOORD_0") > 0;
    plan.withSkin = count("JOINTS_0") > 0;
    plan.submeshName = "submesh_" + std::to_string(meshIndex);

    if (plan.withSkin) ReadInverseBinds(meshIndex, plan);
    if (plan.withTexUV && prim.contains("material")) {
      const std::int64_t material = JsonInt(prim["material"], what + " material");
      // Materials without a texture add no image, so later numbers shift; accepted.
      if (material >= 0 && static_cast<std::uint64_t>(material) < materials.size()) {
        plan.image = materials[static_cast<std::size_t>(material)];
      }
    }

    const GlbAttribute& indices = data.at("indices");
    plan.indices.reserve(indices.values.size());
    const std::string indexWhat = what + ": vertex index";
    for (const double v : indices.values) plan.indices.push_back(WholeNumber(v, indexWhat));
    if (plan.withTexUV) BuildVertices(data, vertexCount, plan);
    return plan;
  }

  void ReadInverseBinds(std::int64_t meshIndex, GlbSubmeshPlan& plan) {
    const GlbJson& nodes = Top("nodes");
    for (std::int64_t n = 0; n < JsonSize(nodes); ++n) {
      const GlbJson& node = JsonElement(nodes, n, path_ + ": nodes");
      const std::string what = Where("node", n);
      if (!node.is_object() || !node.contains("mesh") || !node.contains("skin")) continue;
      if (JsonInt(node["mesh"], what + " mesh") != meshIndex) continue;
      const std::int64_t skinIndex = JsonInt(node["skin"], what + " skin");
      const GlbJson& skin = JsonElement(Top("skins"), skinIndex, path_ + ": skins");
      const std::string skinWhat = Where("skin", skinIndex);
      const GlbJson& joints = JsonMember(skin, "joints", skinWhat);
      const GlbAttribute matrices =
          ReadAccessor(JsonInt(JsonMember(skin, "inverseBindMatrices", skinWhat), skinWhat + " inverseBindMatrices"));
      auto table = std::make_shared<InverseBindTable>();
      for (std::int64_t k = 0; k < JsonSize(joints); ++k) {
        const std::int64_t joint = JsonInt(JsonElement(joints, k, skinWhat + " joints"), skinWhat + " joint");
        FbxMatrix m;
        for (int i = 0; i < 4; ++i) {
          for (int j = 0; j < 4; ++j) {
            m.Set(i, j, matrices.at(static_cast<std::size_t>(k), static_cast<std::size_t>(i * 4 + j),
                                    skinWhat + " inverseBindMatrices"));
          }
        }
        table->set(joint, m);
      }
      plan.inverseBindMatrices = std::move(table);
    }
  }

  void BuildVertices(const GlbAttributes& data, std::size_t vertexCount, GlbSubmeshPlan& plan) {
    const GlbAttribute& uv = data.at("TEXCOORD_0");
    const GlbAttribute& pos = data.at("POSITION");
    const GlbAttribute* normal = plan.withNormal ? &data.at("NORMAL") : nullptr;
    const std::size_t floatsPerVertex = plan.withSkin ? 15 : normal ? 8 : 5;
    plan.vertices.reserve(vertexCount * floatsPerVertex);
    OrderedMap<std::int64_t, std::vector<std::int64_t>> boneDict;
    if (plan.withSkin && !normal) {
      // The exporter's files always have normals; this layout was never completed.
      throw TypeError(path_ + ": a skinned primitive without NORMAL is not supported");
    }
    const GlbAttribute* joints = plan.withSkin ? &data.at("JOINTS_0") : nullptr;
    const GlbAttribute* weights = nullptr;
    if (plan.withSkin) {
      if (!data.contains("WEIGHTS_0")) throw KeyError(path_ + ": a skinned primitive has no 'WEIGHTS_0'");
      weights = &data.at("WEIGHTS_0");
    }
    std::vector<BoneInfo> boneInfo;
    for (std::size_t v = 0; v < vertexCount; ++v) {
      auto& out = plan.vertices;
      out.push_back(uv.at(v, 0, path_, ": TEXCOORD_0"));
      out.push_back(uv.at(v, 1, path_, ": TEXCOORD_0"));
      if (joints) {
        boneInfo.clear();
        for (std::size_t bi = 0; bi < static_cast<std::size_t>(joints->number); ++bi) {
          const std::int64_t joint = WholeNumber(joints->at(v, bi, path_, ": JOINTS_0"), path_, ": joint number");
          boneInfo.emplace_back(joint, weights->at(v, bi, path_, ": WEIGHTS_0"));
          boneDict[joint].push_back(static_cast<std::int64_t>(v));
        }
        const auto [index, weight] = SortVertex4BoneInfo(boneInfo);
        out.push_back(static_cast<double>(index[0]) + static_cast<double>(index[1]) * 0.01);
        out.push_back(static_cast<double>(index[2]) + static_cast<double>(index[3]) * 0.01);
        out.insert(out.end(), weight.begin(), weight.end());
      }
      if (normal) {
        for (std::size_t c = 0; c < 3; ++c) out.push_back(normal->at(v, c, path_, ": NORMAL"));
      }
      for (std::size_t c = 0; c < 3; ++c) out.push_back(pos.at(v, c, path_, ": POSITION"));
      if (joints) out.push_back(1.0);
    }
    if (joints) {
      console::write_line(BoneDictToPy(boneDict));
      // The shader holds 64 bone matrices: joints the vertices use, not the skin's list.
      if (boneDict.size() > 64) throw RuntimeError("The number of bones cannot exceed 64!");
    }
  }

  // The bind skeleton: every node without a mesh, its local matrix and its parent.
  std::shared_ptr<const BoneTreeTable> ReadBoneTree() {
    auto tree = std::make_shared<BoneTreeTable>();
    const GlbJson& nodes = Top("nodes");
    for (std::int64_t n = 0; n < JsonSize(nodes); ++n) {
      const GlbJson& node = JsonElement(nodes, n, path_ + ": nodes");
      const std::string what = Where("node", n);
      if (!node.is_object()) throw TypeError(what + " is not an object");
      if (node.contains("mesh")) continue;
      FbxVector4 R(0, 0, 0, 0), S(1, 1, 1, 1), T(0, 0, 0, 0);
      const auto vec = [&](const char* key, FbxVector4& v, int size) {
        if (!node.contains(key)) return;
        for (int i = 0; i < size; ++i) {
          v[static_cast<std::size_t>(i)] = JsonNumber(JsonElement(node[key], i, what + " " + key), what + " " + key);
        }
      };
      vec("translation", T, 3);
      vec("rotation", R, 4);  // the quaternion (x, y, z, w) as it stands
      vec("scale", S, 3);
      if (node.contains("children")) {
        const GlbJson& children = node["children"];
        for (std::int64_t c = 0; c < JsonSize(children); ++c) {
          const std::int64_t child = JsonInt(JsonElement(children, c, what + " children"), what + " child");
          (*tree)[child].parent = n;
        }
      }
      (*tree)[n].local = FbxMatrix::FromTQS(T, R, S);
    }
    return tree;
  }

  OrderedMap<std::string, MeshAction> ReadActions() {
    OrderedMap<std::string, MeshAction> actions;
    static const GlbJson kNone = GlbJson::array();
    const GlbJson* found = TopOptional("animations");
    const GlbJson& animations = found ? *found : kNone;
    console::print(path_, " include ", JsonSize(animations), " animation.");
    const GlbJson& nodes = Top("nodes");
    for (std::int64_t a = 0; a < JsonSize(animations); ++a) {
      const GlbJson& anim = JsonElement(animations, a, path_ + ": animations");
      const std::string what = Where("animation", a);
      const std::string name = JsonString(JsonMember(anim, "name", what), what + " name");
      const GlbJson& channels = JsonMember(anim, "channels", what);
      const GlbJson& samplers = JsonMember(anim, "samplers", what);
      console::print("Animation", name, " has ", JsonSize(channels), "channels, ", JsonSize(samplers), "samplers.");
      MeshAction action;
      for (std::int64_t c = 0; c < JsonSize(channels); ++c) {
        const GlbJson& channel = JsonElement(channels, c, what + " channels");
        const std::string chWhat = what + " channel " + std::to_string(c);
        const GlbJson& target = JsonMember(channel, "target", chWhat);
        const std::int64_t nodeId = JsonInt(JsonMember(target, "node", chWhat + " target"), chWhat + " node");
        const GlbJson& node = JsonElement(nodes, nodeId, path_ + ": nodes");
        console::print_concat("Node:", JsonString(JsonMember(node, "name", Where("node", nodeId)), "node name"));
        const std::string targetPath = JsonString(JsonMember(target, "path", chWhat + " target"), chWhat + " path");
        const GlbJson& sampler =
            JsonElement(samplers, JsonInt(JsonMember(channel, "sampler", chWhat), chWhat + " sampler"),
                        what + " samplers");
        const GlbAttribute input = ReadAccessor(JsonInt(JsonMember(sampler, "input", chWhat), chWhat + " input"));
        const GlbAttribute output = ReadAccessor(JsonInt(JsonMember(sampler, "output", chWhat), chWhat + " output"));
        if (output.count() < input.count()) {
          throw IndexError(chWhat + ": " + std::to_string(input.count()) + " key times but " +
                           std::to_string(output.count()) + " values");
        }
        ActionChannel out{targetPath, {}};
        out.samples.reserve(input.count());
        for (std::size_t k = 0; k < input.count(); ++k) {
          const auto value = output.record(k);
          out.samples.push_back({input.at(k, 0, chWhat, " input"), std::vector<double>(value.begin(), value.end())});
        }
        action[static_cast<int>(nodeId)].push_back(std::move(out));
      }
      actions.set(name, std::move(action));
    }
    console::write_line(ActionsToPy(actions));
    return actions;
  }

  std::string path_;
  GlbFile f_;
  GlbJson doc_;
  std::uint64_t beforePNG_ = 0;   // at the BIN chunk header: image offsets count from here
  std::uint64_t beforeAttr_ = 0;  // at the first data byte: accessor offsets count from here
};

}  // namespace

std::optional<GlbModel> ReadGLB(const std::string& path, std::vector<std::uint8_t> bytes) {
  return Reader(path, std::move(bytes)).Read();
}

}  // namespace vorn
