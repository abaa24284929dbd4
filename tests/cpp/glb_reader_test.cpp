// The GLB reader without GL: header and chunks, accessors, the vertex records of a
// plain and a skinned triangle, the bind skeleton and actions, material images, and a
// table of malformed files that must each give their line or exception, never a crash.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

#include "console_capture.h"
#include "core/errors.h"
#include "glb_test_files.h"
#include "mesh/glb_file.h"
#include "mesh/glb_print.h"
#include "mesh/glb_reader.h"
#include "resource/image.h"
#include "resource/png_codec.h"

namespace vorn {
namespace {

using test::Bytes;
using test::Doc;
using test::MakeGLB;
using test::Triangle;

bool HasLine(const ConsoleCapture& out, const std::string& line) {
  return std::find(out.lines().begin(), out.lines().end(), line) != out.lines().end();
}

// A diffuse texture whose image is the bufferView at `offset` of `length` bytes, behind
// the given materials.
void AddImage(Doc& d, long long offset, long long length, GlbJson materials = GlbJson::array()) {
  d.json["bufferViews"].push_back({{"byteOffset", offset}, {"byteLength", length}});
  d.json["images"] = GlbJson::array({{{"bufferView", d.json["bufferViews"].size() - 1}}});
  d.json["samplers"] = GlbJson::array({{{"magFilter", 9729}}});
  d.json["textures"] = GlbJson::array({{{"source", 0}, {"sampler", 0}}});
  materials.push_back(
      {{"extensions", {{"KHR_materials_pbrSpecularGlossiness", {{"diffuseTexture", {{"index", 0}}}}}}}});
  d.json["materials"] = materials;
}

TEST(GlbFile, ComponentTablesAndPackedAccessors) {
  EXPECT_EQ(GetComponentTypeByte(5121), 1);
  EXPECT_EQ(GetComponentTypeByte(5123), 2);
  EXPECT_EQ(GetComponentTypeByte(5126), 4);
  EXPECT_EQ(GetComponentTypeByte(5124), 0);
  EXPECT_EQ(GetComponentNumber("MAT2"), 4);
  EXPECT_EQ(GetComponentNumber("MAT4"), 16);
  EXPECT_EQ(GetComponentNumber("vec3"), 0);

  // 5125 is read signed; 16-bit values unsigned; floats as floats.
  GlbFile f("t", {0xFF, 0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0, 0, 0x80, 0x3F});
  EXPECT_EQ(f.ReadAttributeData(1, "SCALAR", 5125).values, std::vector<double>{-1.0});
  EXPECT_EQ(f.ReadAttributeData(1, "SCALAR", 5123).values, std::vector<double>{65534.0});
  EXPECT_EQ(f.ReadAttributeData(1, "SCALAR", 5126).values, std::vector<double>{1.0});
  EXPECT_EQ(f.left(), 0u);
  // A count the bytes cannot hold is refused before anything is allocated.
  f.seek(0);
  EXPECT_THROW(f.ReadAttributeData(4'000'000'000'000'000'000LL, "MAT4", 5126), ValueError);
  EXPECT_THROW(f.ReadAttributeData(3, "SCALAR", 5126), ValueError);
  EXPECT_THROW(f.ReadAttributeData(-1, "SCALAR", 5126), ValueError);
  EXPECT_THROW(f.ReadAttributeData(1, "VEC5", 5126), ValueError);
  EXPECT_EQ(f.tell(), 0u);
}

TEST(GlbFile, PrintsValuesAsScriptsDo) {
  EXPECT_EQ(BytesToPy(Bytes{'g', 'l', 'T', 'F', 2, 0, '\\'}), "b'glTF\\x02\\x00\\\\'");
  // A single quote inside switches to double quotes, as scripts print it.
  EXPECT_EQ(BytesToPy(Bytes{'a', '\''}), "b\"a'\"");
  EXPECT_EQ(JsonToPy(GlbJson::parse(R"({"b": [1, 2.5, null, true], "a": "x"})")),
            "{'b': [1, 2.5, None, True], 'a': 'x'}");
  EXPECT_EQ(ChunkTypeText(Bytes{'B', 0xFF, 'I', 'N'}), "BIN");
  GlbJson deep = GlbJson::array();
  for (int i = 0; i < 300; ++i) deep = GlbJson::array({deep});
  EXPECT_THROW(JsonToPy(deep), ValueError);
}

TEST(GlbReader, PlainTriangle) {
  ConsoleCapture out;
  const auto model = ReadGLB("tri.glb", Triangle(false).file());
  ASSERT_TRUE(model);
  EXPECT_EQ(out.lines()[0], "GLB_Header_Version: 2");
  EXPECT_TRUE(HasLine(out, "tri.glb  include  1  meshs."));
  EXPECT_TRUE(HasLine(out, "tri.glb  include  1  ndoes."));
  EXPECT_TRUE(HasLine(out, "{'POSITION': [[0.0, 0.0, 0.0], [1.0, 0.0, 0.0], [0.0, 1.0, 0.0]], "
                           "'NORMAL': [[0.0, 0.0, 1.0], [0.0, 0.0, 1.0], [0.0, 0.0, 1.0]], "
                           "'TEXCOORD_0': [[0.0, 0.0], [1.0, 0.0], [0.0, 1.0]], 'indices': [0, 1, 2]}"));
  ASSERT_EQ(model->submeshes.size(), 1u);
  const GlbSubmeshPlan& s = model->submeshes[0];
  EXPECT_EQ(s.submeshName, "submesh_0");
  EXPECT_TRUE(s.withTexUV && s.withNormal && !s.withSkin && !model->withSkin);
  EXPECT_EQ(s.indices, (IndexArray{0, 1, 2}));
  // u, v, normal, position: 8 floats a vertex.
  ASSERT_EQ(s.vertices.size(), 24u);
  EXPECT_EQ(std::vector<double>(s.vertices.begin() + 8, s.vertices.begin() + 16),
            (std::vector<double>{1, 0, 0, 0, 1, 1, 0, 0}));
  EXPECT_FALSE(model->initBoneTree);
}

TEST(GlbReader, SkinnedTriangleWithAnAction) {
  ConsoleCapture out;
  const auto model = ReadGLB("skin.glb", Triangle(true).file());
  ASSERT_TRUE(model);
  const GlbSubmeshPlan& s = model->submeshes[0];
  ASSERT_TRUE(s.withSkin && model->withSkin);
  // u, v, packed bones (heaviest first), four weights, normal, position, 1.0.
  ASSERT_EQ(s.vertices.size(), 45u);
  EXPECT_EQ(std::vector<double>(s.vertices.begin(), s.vertices.begin() + 15),
            (std::vector<double>{0, 0, 1.0, 0.0, 0.75, 0.25, 0, 0, 0, 0, 1, 0, 0, 0, 1}));
  // Equal weights keep the file's order: joint 1 before joint 0, packed as 1 + 0 * 0.01.
  EXPECT_DOUBLE_EQ(s.vertices[30 + 2], 1.0);
  EXPECT_TRUE(HasLine(out, "{0: [0, 0, 0, 1, 1, 1, 2, 2, 2], 1: [0, 1, 2]}"));

  ASSERT_TRUE(s.inverseBindMatrices);
  EXPECT_EQ(s.inverseBindMatrices->size(), 2u);
  EXPECT_EQ(s.inverseBindMatrices->at(2).Get(3, 1), -2.0);  // element (i, j) is float i*4+j

  ASSERT_TRUE(model->initBoneTree);
  const BoneTreeTable& tree = *model->initBoneTree;
  EXPECT_FALSE(tree.contains(0));  // the mesh node is no bone
  EXPECT_FALSE(tree.at(1).parent);
  EXPECT_EQ(tree.at(2).parent, 1);
  EXPECT_EQ(tree.at(1).local.Get(3, 1), 1.0);

  ASSERT_EQ(model->actions.size(), 1u);
  const MeshAction& wave = model->actions.at("wave");
  ASSERT_EQ(wave.size(), 2u);
  ASSERT_EQ(wave.at(1).size(), 3u);
  EXPECT_EQ(wave.at(1)[1].path, "rotation");
  EXPECT_EQ(wave.at(1)[0].samples[1].time, 1.5);
  EXPECT_EQ(wave.at(1)[0].samples[1].value, (std::vector<double>{2, 1, 0}));
  EXPECT_EQ(wave.at(2)[0].samples.size(), 2u);
  EXPECT_TRUE(HasLine(out, "skin.glb  include  1  animation."));
  EXPECT_TRUE(HasLine(out, "Animation wave  has  4 channels,  3 samplers."));
  EXPECT_TRUE(HasLine(out, "Node:root"));
}

TEST(GlbReader, MaterialImageFromTheBinChunk) {
  Doc d = Triangle(false);
  Image picture(Image::Mode::RGBA, 2, 3, {{10, 20, 30, 40}, 4});
  const Bytes png = EncodePNG(picture);
  // Image offsets count from the BIN chunk header, 8 bytes before the data. The plain
  // material first adds no image, so numbers after it shift.
  AddImage(d, static_cast<long long>(d.bin.U8(png)), static_cast<long long>(png.size() + 8),
           GlbJson::array({{{"name", "plain"}}}));
  d.json["meshes"][0]["primitives"][0]["material"] = 0;
  ConsoleCapture out;
  const auto model = ReadGLB("img.glb", d.file());
  ASSERT_TRUE(model && model->submeshes[0].image);
  const GlbImage& img = *model->submeshes[0].image;
  EXPECT_EQ(img.format, "RGBA");
  EXPECT_EQ(img.width, 2);
  EXPECT_EQ(img.height, 3);
  ASSERT_EQ(img.pixels->size(), 24u);
  EXPECT_EQ((*img.pixels)[3], 40);
  EXPECT_TRUE(HasLine(out, "PNG Width: 2  Height: 3  Depth: 8  ColorType: 6"));
}

// Each malformed file gives its line (and no model) or its exception.
TEST(GlbReader, MalformedFiles) {
  const auto header = [](std::function<void(Bytes&)> change) {
    Bytes file = Triangle(false).file();
    change(file);
    return file;
  };
  const auto withDoc = [](std::function<void(Doc&)> change) {
    Doc d = Triangle(false);
    change(d);
    return d.file();
  };
  struct LineCase {
    const char* name;
    Bytes file;
    std::string line;  // empty: silent
  };
  const std::vector<LineCase> lineCases = {
      {"wrong magic", header([](Bytes& f) { f[0] = 'G'; }), "bad.glb  is not a valid glb file."},
      {"empty", {}, "bad.glb  is not a valid glb file."},
      {"short", {'g', 'l', 'T', 'F', 2, 0}, "bad.glb  is not a valid glb file."},
      {"unknown chunk", MakeGLB("{}", {}, "XYZW"), "bad.glb  is not a valid glb file."},
      {"BIN chunk first", MakeGLB("{}", {}, "BIN\0"), ""},
      {"no meshes", withDoc([](Doc& d) { d.json.erase("meshes"); }), "bad.glb  no valid chunkdata."},
      {"not an object", MakeGLB("[1, 2]", {}), "bad.glb  no valid chunkdata."},
  };
  for (const auto& c : lineCases) {
    ConsoleCapture out;
    EXPECT_FALSE(ReadGLB("bad.glb", c.file)) << c.name;
    if (c.line.empty()) {
      EXPECT_TRUE(std::none_of(out.lines().begin(), out.lines().end(),
                               [](const std::string& l) { return l.find("valid") != std::string::npos; }))
          << c.name;
    } else {
      ASSERT_FALSE(out.lines().empty()) << c.name;
      EXPECT_EQ(out.lines().back(), c.line) << c.name;
    }
  }

  const auto expect = [](const char* name, const Bytes& file, auto exceptionTag, const std::string& text) {
    ConsoleCapture out;
    using E = decltype(exceptionTag);
    try {
      ReadGLB("bad.glb", file);
      ADD_FAILURE() << name << ": no exception";
    } catch (const E& e) {
      EXPECT_NE(std::string(e.what()).find(text), std::string::npos) << name << ": " << e.what();
    } catch (const std::exception& e) {
      ADD_FAILURE() << name << ": wrong exception " << e.what();
    }
  };
  expect("JSON length past the end", header([](Bytes& f) { f[13] = 0x7F; }), ValueError{""}, "JSON chunk claims");
  expect("negative JSON length", header([](Bytes& f) { f[15] = 0x80; }), ValueError{""}, "JSON chunk claims");
  expect("invalid JSON", MakeGLB("{\"meshes\": [", {}), ValueError{""}, "not valid JSON");
  expect("JSON nested a million deep", MakeGLB(std::string(1'000'000, '[') + std::string(1'000'000, ']'), {}),
         ValueError{""}, "nested deeper");
  expect("float vertex index", withDoc([](Doc& d) {
           d.json["accessors"][3] = d.json["accessors"][0];
           d.json["accessors"][3]["type"] = "SCALAR";
           d.bin.data[4] = 0xFF, d.bin.data[5] = 0xFF, d.bin.data[6] = 0xFF, d.bin.data[7] = 0x7F;  // NaN
         }),
         ValueError{""}, "vertex index nan");
  expect("second primitive past the end", withDoc([](Doc& d) {
           d.json["meshes"][0]["primitives"].push_back(d.json["meshes"][0]["primitives"][0]);
         }),
         ValueError{""}, "accessor of 3 VEC3 records");
  // The BIN header is read as a stream reads (short at the end); the data then is missing.
  expect("no BIN chunk", header([](Bytes& f) { f.resize(20 + f[12] + (f[13] << 8)); }), ValueError{""},
         "needs at least 3 bytes at offset");
  expect("count in the billions", withDoc([](Doc& d) { d.json["accessors"][0]["count"] = 3'000'000'000LL; }),
         ValueError{""}, "3000000000 VEC3 records");
  expect("count past int64", withDoc([](Doc& d) { d.json["accessors"][0]["count"] = 18'000'000'000'000'000'000ULL; }),
         ValueError{""}, "too large");
  expect("bufferView out of range", withDoc([](Doc& d) { d.json["accessors"][1]["bufferView"] = 99; }),
         IndexError{""}, "bufferViews index 99");
  expect("accessor out of range", withDoc([](Doc& d) { d.json["meshes"][0]["primitives"][0]["indices"] = -1; }),
         IndexError{""}, "accessors index -1");
  expect("no indices", withDoc([](Doc& d) { d.json["meshes"][0]["primitives"][0].erase("indices"); }), KeyError{""},
         "'indices'");
  expect("count as text", withDoc([](Doc& d) { d.json["accessors"][0]["count"] = "3"; }), TypeError{""},
         "must be an integer");
  expect("short texture coordinates", withDoc([](Doc& d) { d.json["accessors"][2]["count"] = 2; }), IndexError{""},
         "TEXCOORD_0");
  expect("image not PNG", withDoc([](Doc& d) { AddImage(d, static_cast<long long>(d.bin.U8(Bytes(64, 'x'))), 72); }),
         ValueError{""}, "not a PNG");
  expect("image past the end", withDoc([](Doc& d) { AddImage(d, 1'000'000'000'000LL, 1'000'000'000LL); }),
         ValueError{""}, "the file has 0 left");
  expect("standard base colour member", withDoc([](Doc& d) {
           d.json["materials"] = GlbJson::array({{{"pbrMetallicRoughness", {{"baseColorTexture", {{"index", 0}}}}}}});
         }),
         KeyError{""}, "'diffuseTexture'");
  expect("skinned without normals", [] {
           Doc d = Triangle(true);
           d.json["meshes"][0]["primitives"][0]["attributes"].erase("NORMAL");
           return d.file();
         }(),
         TypeError{""}, "without NORMAL");
  expect("channel node out of range", [] {
           Doc d = Triangle(true);
           d.json["animations"][0]["channels"][0]["target"]["node"] = 7;
           return d.file();
         }(),
         IndexError{""}, "nodes index 7");
  expect("fewer values than times", [] {
           Doc d = Triangle(true);
           d.json["accessors"][8]["count"] = 1;
           return d.file();
         }(),
         IndexError{""}, "2 key times but 1 values");
}

// 64 distinct joints used by the vertices load; 65 raise.
TEST(GlbReader, AtMost64JointsInUse) {
  const auto file = [](int joints) {
    Doc d = Triangle(true);
    // 17 vertices of four joints each: joint numbers 0 .. joints-1, the rest repeat 0.
    const int vertices = 17;
    std::vector<float> pos, nrm, uv, w;
    std::vector<std::uint8_t> j;
    for (int v = 0; v < vertices; ++v) {
      pos.insert(pos.end(), {float(v), 0, 0});
      nrm.insert(nrm.end(), {0, 0, 1});
      uv.insert(uv.end(), {0, 0});
      for (int k = 0; k < 4; ++k) j.push_back(static_cast<std::uint8_t>(v * 4 + k < joints ? v * 4 + k : 0));
      w.insert(w.end(), {1, 0, 0, 0});
    }
    const auto floats = [&](const std::vector<float>& values) {
      const std::size_t at = d.bin.data.size();
      for (float f : values) test::PutF32(d.bin.data, f);
      return at;
    };
    const auto redirect = [&](int accessor, std::size_t at) {
      d.json["bufferViews"][d.json["accessors"][accessor]["bufferView"].get<int>()]["byteOffset"] = at;
      d.json["accessors"][accessor]["count"] = vertices;
    };
    redirect(0, floats(pos));
    redirect(1, floats(nrm));
    redirect(2, floats(uv));
    redirect(4, d.bin.U8(j));
    redirect(5, floats(w));
    return d.file();
  };
  ConsoleCapture out;
  EXPECT_TRUE(ReadGLB("j64.glb", file(64)));
  EXPECT_THROW(
      {
        try {
          ReadGLB("j65.glb", file(65));
        } catch (const RuntimeError& e) {
          EXPECT_STREQ(e.what(), "The number of bones cannot exceed 64!");
          throw;
        }
      },
      RuntimeError);
}

}  // namespace
}  // namespace vorn
