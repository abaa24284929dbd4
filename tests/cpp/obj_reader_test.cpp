// The OBJ and MTL reader on small texts: the aligned-array model, its quirks, the
// submesh plan, path rules, and a table of malformed inputs that must each give their
// exception and never crash.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <functional>
#include <limits>
#include <fstream>
#include <map>
#include <string>

#include "console_capture.h"
#include "core/errors.h"
#include "image_test_files.h"
#include "mesh/obj_load.h"
#include "mesh/obj_reader.h"
#include "mesh/obj_submesh_plan.h"
#include "resource/res_manager.h"

namespace vorn {
namespace {

using test::TempDir;
using Texts = std::map<std::string, std::string>;

// Parses `obj` as "dir/model.obj"; MTL texts come from `mtls` by path.
ObjModel Parse(const std::string& obj, const Texts& mtls = {}, bool swapyz = false) {
  return ParseOBJText(obj, "dir/model.obj", swapyz, [&](const std::string& path) {
    const auto it = mtls.find(path);
    if (it == mtls.end()) throw FileReadError("no " + path);
    return it->second;
  });
}

std::vector<double> Values(const std::vector<ObjTuple>& tuples) {
  std::vector<double> out;
  for (const auto& t : tuples) out.insert(out.end(), t.v.begin(), t.v.begin() + t.size);
  return out;
}

std::vector<std::string> Keys(const ObjModel& m) {
  std::vector<std::string> out;
  for (const auto& [k, v] : m.obj_faces_array) out.push_back(k);
  return out;
}

// The exception's text, checked for its type.
template <class E>
std::string Failure(const std::function<void()>& f) {
  try {
    f();
  } catch (const E& e) {
    return e.what();
  } catch (const std::exception& e) {
    return std::string("wrong type: ") + e.what();
  }
  return "no exception";
}

TEST(ObjReader, GroupsArraysByMaterialAndKeepsIndicesAsWritten) {
  const ObjModel m = Parse(
      "# exporter\n"
      "mtllib whatever.mtl\n"
      "usemtl red\n"
      "v 1 2 3\nv 4 5 6\nv 7 8 9\n"
      "vn 0 0 1\nvn 0 1 0\nvn 1 0 0\n"
      "vt 0.5 0.25\nvt 1 0\nvt 0 1\n"
      "f 0/0/0 1/1/1 2/2/2 1/2/0\n"
      "\n   \n"
      "o ignored words\ng group\n s 1\n"
      "usemat blue\r\n"
      "v 1.5e1 -2 +3\r\n"
      "f 0 0 0\r",
      {{"dir/model.mtl", "newmtl red\nKd 1 0 0\nmap_Kd red.png\nnewmtl blue\nNs 10\nillum 2\n"}});
  EXPECT_EQ(Keys(m), (std::vector<std::string>{"red", "blue"}));
  EXPECT_EQ(m.material, "blue");
  EXPECT_EQ(Values(m.obj_vertex_array.at("red")), (std::vector<double>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
  EXPECT_EQ(Values(m.obj_normals_array.at("red")), (std::vector<double>{0, 0, 1, 0, 1, 0, 1, 0, 0}));
  EXPECT_EQ(Values(m.obj_texcoords_array.at("red")), (std::vector<double>{0.5, 0.25, 1, 0, 0, 1}));
  EXPECT_EQ(Values(m.obj_vertex_array.at("blue")), (std::vector<double>{15, -2, 3}));
  const auto& face = m.obj_faces_array.at("red").at(0);
  EXPECT_EQ(face.face_v_index, (std::vector<std::int64_t>{0, 1, 2, 1}));
  EXPECT_EQ(face.face_uv_index, (std::vector<std::int64_t>{0, 1, 2, 2}));
  EXPECT_EQ(face.face_n_index, (std::vector<std::int64_t>{0, 1, 2, 0}));
  EXPECT_TRUE(m.withNormal);
  EXPECT_TRUE(m.withTexUV);
  // The MTL: map_Kd as text, everything else as numbers.
  EXPECT_EQ(m.obj_material_array.at("red").map_Kd, "red.png");
  EXPECT_EQ(m.obj_material_array.at("red").values.at("Kd"), (std::vector<double>{1, 0, 0}));
  EXPECT_FALSE(m.obj_material_array.at("blue").map_Kd);
  EXPECT_EQ(m.obj_material_array.at("blue").values.at("illum"), (std::vector<double>{2}));
}

TEST(ObjReader, Quirks) {
  // Faces without texture or normal parts leave both flags clear and put 0 there.
  ObjModel m = Parse("usemtl a\nv 0 0 0\nf 1 2// 3//\n");
  EXPECT_FALSE(m.withNormal);
  EXPECT_FALSE(m.withTexUV);
  EXPECT_EQ(m.obj_faces_array.at("a")[0].face_uv_index, (std::vector<std::int64_t>{0, 0, 0}));

  // Negative numbers count back from the group's length at the face; a number past the
  // front stays negative.
  m = Parse("usemtl a\nv 0 0 0\nv 1 1 1\nvt 0 0\nvn 0 0 1\nvn 0 0 1\nvn 0 0 1\nf -1/-1/-1 -2/-1/-3 -5\n");
  const auto& f = m.obj_faces_array.at("a")[0];
  EXPECT_EQ(f.face_v_index, (std::vector<std::int64_t>{1, 0, -3}));
  EXPECT_EQ(f.face_uv_index, (std::vector<std::int64_t>{0, 0, 0}));
  EXPECT_EQ(f.face_n_index, (std::vector<std::int64_t>{2, 0, 0}));

  // A material named again starts anew: earlier vertices are lost, its place stays.
  m = Parse("usemtl a\nv 1 1 1\nf 0 0 0\nusemtl b\nf 0 0 0\nusemtl a\nv 2 2 2\n");
  EXPECT_EQ(Keys(m), (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(Values(m.obj_vertex_array.at("a")), (std::vector<double>{2, 2, 2}));
  EXPECT_TRUE(m.obj_faces_array.at("a").empty());

  // "vt" keeps two numbers of three; "v" keeps three of four and fewer when given fewer.
  m = Parse("usemtl a\nvt 0.1 0.2 0.3\nv 1 2 3 4\nv 5\n");
  EXPECT_EQ(Values(m.obj_texcoords_array.at("a")), (std::vector<double>{0.1, 0.2}));
  EXPECT_EQ(Values(m.obj_vertex_array.at("a")), (std::vector<double>{1, 2, 3, 5}));

  // swapyz swaps positions and normals, not texture coordinates.
  m = Parse("usemtl a\nv 1 2 3\nvn 4 5 6\nvt 7 8\n", {}, true);
  EXPECT_EQ(Values(m.obj_vertex_array.at("a")), (std::vector<double>{1, 3, 2}));
  EXPECT_EQ(Values(m.obj_normals_array.at("a")), (std::vector<double>{4, 6, 5}));
  EXPECT_EQ(Values(m.obj_texcoords_array.at("a")), (std::vector<double>{7, 8}));

  // Number forms that float() and int() take.
  m = Parse("usemtl a\nv inf -Infinity nan\nv 1_000 .5 5.\nv 1e999 -1e-999 +2E2\nf +1 0_1 -0\n");
  const auto v = Values(m.obj_vertex_array.at("a"));
  EXPECT_TRUE(std::isinf(v[0]) && v[0] > 0 && std::isinf(v[1]) && v[1] < 0 && std::isnan(v[2]));
  EXPECT_EQ(std::vector<double>(v.begin() + 3, v.end()), (std::vector<double>{1000, 0.5, 5, std::numeric_limits<double>::infinity(), -0.0, 200}));
  EXPECT_EQ(m.obj_faces_array.at("a")[0].face_v_index, (std::vector<std::int64_t>{1, 1, 0}));
}

TEST(ObjReader, MtlStatements) {
  // "mtllib" reads the MTL named after the OBJ, whatever the line says; a material
  // named twice in it starts anew; a second "mtllib" reads the file again.
  const Texts mtls = {{"dir/model.mtl", "# comment\n\nnewmtl m\nKa 1 2\nmap_Kd a.png b\nnewmtl m\nNi 1.5\n"}};
  ObjModel m = Parse("mtllib other.mtl\n", mtls);
  const ObjMaterial& mat = m.obj_material_array.at("m");
  EXPECT_FALSE(mat.map_Kd);
  EXPECT_FALSE(mat.values.contains("Ka"));
  EXPECT_EQ(mat.values.at("Ni"), (std::vector<double>{1.5}));
  m = Parse("mtllib\nmtllib\n", mtls);
  EXPECT_EQ(m.obj_material_array.size(), 1u);

  // An OBJ without "mtllib" reads no MTL at all.
  EXPECT_TRUE(Parse("usemtl x\n").obj_material_array.empty());

  EXPECT_EQ(MtlPathFor("a/b.c/model.v2.obj"), "a/b.c/model.v2.mtl");
  EXPECT_EQ(MtlPathFor("model"), "model.mtl");
  EXPECT_EQ(MtlPathFor("/m.obj"), "/m.mtl");
  EXPECT_EQ(JoinPath("dir", "/abs.png"), "/abs.png");
  EXPECT_EQ(JoinPath("", "t.png"), "t.png");
  EXPECT_EQ(SplitPath("a//b"), (std::pair<std::string, std::string>{"a", "b"}));
  EXPECT_EQ(SplitExtension(".hidden"), (std::pair<std::string, std::string>{".hidden", ""}));
}

TEST(ObjReader, PlanInterleavesAlignedArraysAndTakesThreeCorners) {
  const ObjModel m = Parse(
      "mtllib x\nusemtl tex\nv 1 2 3\nv 4 5 6\nvn 0 0 1\nvn 0 1 0\nvt 0.5 0.25\nvt 1 0\n"
      "f 1/1/1 0/0/0 1/1/1 0/0/0\nf 0 1 -1\n"
      "usemtl plain\nvn 1 1 1\nvt 9\n",
      {{"dir/model.mtl", "newmtl tex\nmap_Kd skin.png\n"}});
  const auto plans = PlanOBJSubmeshes(m, "dir", "dir/model.obj");
  ASSERT_EQ(plans.size(), 2u);
  EXPECT_EQ(plans[0].submeshName, "submesh_0");
  EXPECT_EQ(plans[0].textureFile, "dir/skin.png");
  EXPECT_EQ(plans[0].vertices, (std::vector<double>{0.5, 0.25, 0, 0, 1, 1, 2, 3, 1, 0, 0, 1, 0, 4, 5, 6}));
  EXPECT_EQ(plans[0].triangles, (std::vector<std::array<std::int64_t, 3>>{{1, 0, 1}, {0, 1, 1}}));
  // No positions: no vertices, whatever else the group has; no MTL entry: no texture.
  EXPECT_EQ(plans[1].submeshName, "submesh_1");
  EXPECT_FALSE(plans[1].textureFile);
  EXPECT_TRUE(plans[1].vertices.empty());
}

TEST(ObjReader, ResolvesThroughTheResourceIndex) {
  struct IndexOnly : PyGameResManager {};
  const auto saved = ResManagerInstance;
  auto res = std::make_shared<IndexOnly>();
  ResManagerInstance = res;
  TempDir dir;
  const std::string one = dir.write("One.obj", {}), two = dir.write("two.obj", {});
  res->fileDict["one.obj"] = {one};
  res->fileDict["two.obj"] = {two, "/elsewhere/two.obj"};
  res->fileDict["gone.obj"] = {"/no/such/gone.obj"};
  {
    ConsoleCapture console;
    EXPECT_EQ(ResolveModelPath(one), one);
    EXPECT_EQ(ResolveModelPath("ONE.OBJ"), one);
    EXPECT_EQ(ResolveModelPath("two.obj"), two);
    EXPECT_EQ(ResolveModelPath("gone.obj"), std::nullopt);
    EXPECT_EQ(ResolveModelPath("unknown.obj"), std::nullopt);
    EXPECT_EQ(console.lines(), (std::vector<std::string>{"two.obj  has  2  same obj."}));
  }
  ResManagerInstance = nullptr;
  EXPECT_EQ(ResolveModelPath("two.obj"), std::nullopt);
  ResManagerInstance = saved;
}

// Each malformed input raises its exception type with text that names what is wrong.
TEST(ObjReader, MalformedInputsRaiseTheirErrors) {
  const std::string mtlFile = "dir/model.mtl";
  struct Case {
    const char* name;
    std::string obj;
    std::string mtl;  // empty: no MTL file
    enum { Key, Index, Value, Runtime, FileRead } type;
    std::string text;  // expected part of the message
  };
  const std::string huge(100000, '9');
  const std::vector<Case> cases = {
      {"vertex before usemtl", "v 1 2 3\n", "", Case::Key, "line 1: None"},
      {"face before usemtl", "\n\nf 1 2 3\n", "", Case::Key, "line 3: None"},
      {"usemtl without name", "usemtl\n", "", Case::Index, "line 1: \"usemtl\" lacks field 1"},
      {"letters in a position", "usemtl a\nv 1 x 3\n", "", Case::Value,
       "dir/model.obj line 2: could not convert string to float: 'x'"},
      {"letters in a face", "usemtl a\nf 1 b 3\n", "", Case::Value,
       "line 2: invalid literal for int() with base 10: 'b'"},
      {"empty vertex part", "usemtl a\nf /1 2 3\n", "", Case::Value, "with base 10: ''"},
      {"float in a face", "usemtl a\nf 1.0 2 3\n", "", Case::Value, "'1.0'"},
      {"misplaced underscore", "usemtl a\nv 1__0 0 0\n", "", Case::Value, "'1__0'"},
      {"nan with payload", "usemtl a\nv nan(1) 0 0\n", "", Case::Value, "'nan(1)'"},
      {"hex float", "usemtl a\nv 0x10 0 0\n", "", Case::Value, "'0x10'"},
      {"huge index", "usemtl a\nf " + huge + " 1 1\n", "", Case::Value, "is out of range"},
      {"index past 64 bits", "usemtl a\nf -9223372036854775809 1 1\n", "", Case::Value, "is out of range"},
      {"swapyz with two numbers", "usemtl a\nv 1 2\n", "", Case::Index, "swapyz needs three numbers"},
      {"binary garbage", std::string("usemtl a\n\xff\xfe\x00\x01", 13), "", Case::Value,
       "'utf-8' codec can't decode byte 0xff in position 9"},
      {"truncated utf-8", "usemtl \xc3", "", Case::Value, "byte 0xc3 in position 7"},
      {"missing MTL", "mtllib model.mtl\n", "", Case::FileRead, "no dir/model.mtl"},
      {"MTL without newmtl", "mtllib\n", "Kd 1 1 1\n", Case::Runtime, "mtl file doesn't start with newmtl stmt"},
      {"MTL comment after a blank", "mtllib\n", " # indented comment\n", Case::Runtime,
       "mtl file doesn't start with newmtl stmt"},
      {"MTL file name as number", "mtllib\n", "newmtl m\nmap_Bump b.png\n", Case::Value,
       "dir/model.mtl line 2: could not convert string to float: 'b.png'"},
      {"MTL map_Kd without file", "mtllib\n", "newmtl m\nmap_Kd\n", Case::Index, "\"map_Kd\" lacks field 1"},
      {"MTL newmtl without name", "mtllib\n", "newmtl\n", Case::Index, "\"newmtl\" lacks field 1"},
      {"MTL garbage", "mtllib\n", "newmtl m\n\xc0\x80\n", Case::Value, "dir/model.mtl: 'utf-8' codec"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Texts mtls;
    if (!c.mtl.empty()) mtls[mtlFile] = c.mtl;
    const bool swapyz = std::string(c.name).starts_with("swapyz");
    const auto run = [&] { Parse(c.obj, mtls, swapyz); };
    std::string got;
    switch (c.type) {
      case Case::Key: got = Failure<KeyError>(run); break;
      case Case::Index: got = Failure<IndexError>(run); break;
      case Case::Value: got = Failure<ValueError>(run); break;
      case Case::FileRead: got = Failure<FileReadError>(run); break;
      case Case::Runtime: got = Failure<RuntimeError>(run); break;
    }
    EXPECT_NE(got.find(c.text), std::string::npos) << got.substr(0, 300);
    if (c.type == Case::Runtime) {
      EXPECT_EQ(got, c.text);
    }
  }
  // An empty file, or one of only comments and blank lines, is an empty model.
  for (const char* text : {"", "\n\r\n\r", "# only\n#\n\t \f\v\n"}) {
    const ObjModel m = Parse(text);
    EXPECT_TRUE(m.obj_faces_array.empty() && m.obj_material_array.empty() && !m.material);
  }
}

TEST(ObjReader, PlanRefusesWhatTheNodeWouldFailOn) {
  struct Case {
    const char* name;
    std::string obj;
    bool index;  // IndexError, else ValueError
    std::string text;
  };
  const std::vector<Case> cases = {
      {"fewer texture coordinates", "usemtl a\nv 0 0 0\nvn 0 0 1\n", true,
       "material 'a' has 1 positions but 0 texture coordinates"},
      {"fewer normals", "usemtl a\nv 0 0 0\nv 0 0 0\nvt 0 0\nvt 0 0\nvn 0 0 1\n", true, "2 positions but 1 normals"},
      {"face of two corners", "usemtl a\nf 1 2\n", true, "face 0 has 2 corners"},
      {"empty face", "usemtl a\nf\n", true, "face 0 has 0 corners"},
      {"index past the vertices", "usemtl a\nv 0 0 0\nvt 0 0\nvn 0 0 1\nf 0 0 65536\n", false,
       "vertex index 65536 is not one of its 1 vertices"},
      {"negative past the front", "usemtl a\nv 0 0 0\nvt 0 0\nvn 0 0 1\nf 0 0 -2\n", false,
       "vertex index -1 is not one of its 1 vertices"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const ObjModel m = Parse(c.obj);
    const auto run = [&] { PlanOBJSubmeshes(m, "dir", "dir/model.obj"); };
    const std::string got = c.index ? Failure<IndexError>(run) : Failure<ValueError>(run);
    EXPECT_NE(got.find(c.text), std::string::npos) << got;
  }
  // -1 is the group's last vertex, which is fine.
  const ObjModel last = Parse("usemtl a\nv 0 0 0\nvt 0 0\nvn 0 0 1\nf 0 0 -1\n");
  EXPECT_EQ(PlanOBJSubmeshes(last, "", "m.obj")[0].triangles[0], (std::array<std::int64_t, 3>{0, 0, 0}));
}

TEST(ObjReader, FilesOnDisk) {
  TempDir dir;
  const std::string obj = dir.file("crate.obj");
  std::ofstream(obj) << "mtllib crate.mtl\nusemtl wood\nv 1 2 3\nf 0 0 0\n";
  EXPECT_THROW(ReadOBJFile(obj, false), FileReadError);  // no MTL beside it
  std::ofstream(dir.file("crate.mtl")) << "newmtl wood\nmap_Kd wood.png\n";
  EXPECT_EQ(ReadOBJFile(obj, false).obj_material_array.at("wood").map_Kd, "wood.png");
  std::filesystem::create_directory(dir.file("folder.obj"));
  const std::string failure = Failure<FileReadError>([&] { ReadOBJFile(dir.file("folder.obj"), false); });
  EXPECT_NE(failure.find("is a directory"), std::string::npos) << failure;
}

}  // namespace
}  // namespace vorn
