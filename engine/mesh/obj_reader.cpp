#include "mesh/obj_reader.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

#include "core/console.h"
#include "mesh/obj_text.h"

namespace vorn {
namespace {

using obj_text::Where;
using Words = std::vector<std::string_view>;

constexpr const char* kOp = "Vorn_3DMesh.LoadMeshFromFile_OBJ: ";

// Field `i` of a statement that needs it; IndexError when the line stops short.
std::string_view field(const Words& words, std::size_t i, const Where& where) {
  if (i < words.size()) return words[i];
  throw IndexError(kOp + where.str() + ": \"" + std::string(words[0]) + "\" lacks field " + std::to_string(i) +
                   " (list index out of range)");
}

// Fields 1 to `count` as floats; a shorter line gives fewer, a longer one the first.
ObjTuple numbers(const Words& words, std::size_t count, const Where& where) {
  ObjTuple t;
  for (std::size_t i = 1; i < words.size() && i <= count; ++i) {
    t.v[t.size++] = obj_text::ParseFloat(words[i], where);
  }
  return t;
}

// One "f" corner number; a negative one counts back from the group's current length.
std::int64_t corner_index(std::string_view text, std::size_t count, const Where& where) {
  const std::int64_t index = obj_text::ParseInt(text, where);
  return index < 0 ? static_cast<std::int64_t>(count) + index : index;
}

// The reading state of one OBJ text: the model and the current material's groups.
class ObjParser {
 public:
  ObjParser(const std::string& objPath, bool swapyz, const MtlTextSource& readMtl)
      : path_(objPath), swapyz_(swapyz), readMtl_(readMtl) {}

  void line(std::string_view text, std::size_t number) {
    // Only a "#" in the first column makes a comment.
    if (!text.empty() && text[0] == '#') return;
    obj_text::SplitWords(text, words_);
    if (words_.empty()) return;
    const Where where{&path_, number};
    const std::string_view word = words_[0];
    if (word == "v" || word == "vn") {
      ObjTuple t = numbers(words_, 3, where);
      if (swapyz_) {
        if (t.size < 3) throw IndexError(kOp + where.str() + ": swapyz needs three numbers (tuple index out of range)");
        std::swap(t.v[1], t.v[2]);
      }
      group(word == "v" ? positions_ : normals_, where).push_back(t);
    } else if (word == "vt") {
      group(texcoords_, where).push_back(numbers(words_, 2, where));
    } else if (word == "usemtl" || word == "usemat") {
      use_material(std::string(field(words_, 1, where)));
    } else if (word == "mtllib") {
      // The name on the line is not used: the MTL is the one named after the OBJ.
      const std::string mtlPath = MtlPathFor(path_);
      const std::string text = readMtl_ ? readMtl_(mtlPath) : std::string();
      ParseMTLText(text, mtlPath, model_);
    } else if (word == "f") {
      face(where);
    }
  }

  ObjModel take() { return std::move(model_); }

 private:
  template <class V>
  V& group(V* current, const Where& where) {
    if (!current) {
      throw KeyError(kOp + where.str() + ": None (no material yet: a \"usemtl\" line must come before \"" +
                     std::string(words_[0]) + "\")");
    }
    return *current;
  }

  // A material named again starts its four groups anew (its place in the order stays).
  void use_material(std::string name) {
    model_.obj_vertex_array.set(name, {});
    model_.obj_normals_array.set(name, {});
    model_.obj_texcoords_array.set(name, {});
    model_.obj_faces_array.set(name, {});
    // Only a new material moves the maps' storage: the groups are found again here.
    positions_ = model_.obj_vertex_array.find(name);
    normals_ = model_.obj_normals_array.find(name);
    texcoords_ = model_.obj_texcoords_array.find(name);
    faces_ = model_.obj_faces_array.find(name);
    model_.material = std::move(name);
  }

  void face(const Where& where) {
    const std::size_t vertex_count = group(positions_, where).size();
    const std::size_t texcoord_count = group(texcoords_, where).size();
    const std::size_t normal_count = group(normals_, where).size();
    ObjFace f;
    const std::size_t corners = words_.size() - 1;
    f.face_v_index.reserve(corners);
    f.face_uv_index.reserve(corners);
    f.face_n_index.reserve(corners);
    for (std::size_t c = 1; c < words_.size(); ++c) {
      // Up to three parts split on "/"; further parts are not read.
      std::string_view parts[3];
      std::size_t partCount = 0;
      std::string_view rest = words_[c];
      while (true) {
        const std::size_t slash = rest.find('/');
        if (partCount < 3) parts[partCount] = rest.substr(0, slash);
        ++partCount;
        if (slash == std::string_view::npos) break;
        rest.remove_prefix(slash + 1);
      }
      f.face_v_index.push_back(corner_index(parts[0], vertex_count, where));
      if (partCount >= 2 && !parts[1].empty()) {
        model_.withTexUV = true;
        f.face_uv_index.push_back(corner_index(parts[1], texcoord_count, where));
      } else {
        f.face_uv_index.push_back(0);
      }
      if (partCount >= 3 && !parts[2].empty()) {
        model_.withNormal = true;
        f.face_n_index.push_back(corner_index(parts[2], normal_count, where));
      } else {
        f.face_n_index.push_back(0);
      }
    }
    // The current material always has a faces group here, as "usemtl" makes all four.
    faces_->push_back(std::move(f));
  }

  const std::string& path_;
  bool swapyz_;
  const MtlTextSource& readMtl_;
  ObjModel model_;
  Words words_;
  std::vector<ObjTuple>* positions_ = nullptr;
  std::vector<ObjTuple>* normals_ = nullptr;
  std::vector<ObjTuple>* texcoords_ = nullptr;
  std::vector<ObjFace>* faces_ = nullptr;
};

}  // namespace

ObjModel ParseOBJText(std::string_view objText, const std::string& objPath, bool swapyz,
                      const MtlTextSource& readMtl) {
  obj_text::CheckUTF8(objText, objPath);
  ObjParser parser(objPath, swapyz, readMtl);
  obj_text::ForEachLine(objText, [&](std::string_view line, std::size_t number) { parser.line(line, number); });
  return parser.take();
}

void ParseMTLText(std::string_view mtlText, const std::string& mtlPath, ObjModel& model) {
  obj_text::CheckUTF8(mtlText, mtlPath);
  Words words;
  // The material the statements go to; none until the first "newmtl".
  std::optional<std::string> current;
  obj_text::ForEachLine(mtlText, [&](std::string_view line, std::size_t number) {
    if (!line.empty() && line[0] == '#') return;
    obj_text::SplitWords(line, words);
    if (words.empty()) return;
    const Where where{&mtlPath, number};
    if (words[0] == "newmtl") {
      current = std::string(field(words, 1, where));
      model.obj_material_array.set(*current, ObjMaterial{});
      return;
    }
    if (!current) throw RuntimeError("mtl file doesn't start with newmtl stmt");
    ObjMaterial& mtlinfo = model.obj_material_array.at(*current);
    if (words[0] == "map_Kd") {
      mtlinfo.map_Kd = std::string(field(words, 1, where));
      return;
    }
    std::vector<double> values;
    values.reserve(words.size() - 1);
    for (std::size_t i = 1; i < words.size(); ++i) values.push_back(obj_text::ParseFloat(words[i], where));
    mtlinfo.values.set(std::string(words[0]), std::move(values));
  });
}

std::string ReadTextFile(const std::string& path) {
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) {
    throw FileReadError(kOp + std::string("can't read ") + console::py_repr_str(path) +
                        (std::filesystem::is_directory(path, ec) ? " (it is a directory)" : " (no such file)"));
  }
  std::ifstream in(path, std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) throw FileReadError(kOp + std::string("can't read ") + console::py_repr_str(path));
  return text;
}

ObjModel ReadOBJFile(const std::string& objPath, bool swapyz) {
  const std::string text = ReadTextFile(objPath);
  return ParseOBJText(text, objPath, swapyz, &ReadTextFile);
}

std::pair<std::string, std::string> SplitPath(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return {"", path};
  std::string head = path.substr(0, slash + 1);
  // Trailing slashes leave the head, unless it is nothing but slashes.
  if (head.find_first_not_of('/') != std::string::npos) {
    while (!head.empty() && head.back() == '/') head.pop_back();
  }
  return {head, path.substr(slash + 1)};
}

std::pair<std::string, std::string> SplitExtension(const std::string& fileName) {
  const std::size_t dot = fileName.rfind('.');
  const std::size_t firstNonDot = fileName.find_first_not_of('.');
  // Leading dots belong to the name (".hidden" has no extension).
  if (dot == std::string::npos || firstNonDot == std::string::npos || dot < firstNonDot) return {fileName, ""};
  return {fileName.substr(0, dot), fileName.substr(dot)};
}

std::string JoinPath(const std::string& dir, const std::string& name) {
  if (!name.empty() && name[0] == '/') return name;
  if (dir.empty() || dir.back() == '/') return dir + name;
  return dir + "/" + name;
}

std::string MtlPathFor(const std::string& objPath) {
  const auto [dirname, filename] = SplitPath(objPath);
  return JoinPath(dirname, SplitExtension(filename).first + ".mtl");
}

}  // namespace vorn
