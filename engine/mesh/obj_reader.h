#pragma once
// The OBJ and MTL reader: text in, a plain model out, no GL and no node.
//
// The reader serves exporters that write aligned arrays: positions, normals and texture
// coordinates are grouped by the current material, and the i-th of each in a group
// belong to one vertex. Face indices are kept exactly as the file writes them (only
// negative ones are counted back from the group's current length); the loader hands
// them on unchanged.
//
// Failures: a face before any "usemtl" is a KeyError; a statement before "newmtl" in
// the MTL is the ValueError "mtl file doesn't start with newmtl stmt"; a word where a
// number belongs, or text that is not UTF-8, is a ValueError naming file and line; a
// statement without the field it needs is an IndexError; a file that can't be read is
// a FileReadError.
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/errors.h"
#include "core/ordered_map.h"

namespace vorn {

// A file named by the model could not be opened or read (Python's OSError).
class FileReadError : public RuntimeError {
 public:
  using RuntimeError::RuntimeError;
};

// The numbers of one "v", "vn" or "vt" line: as many as the line gave, up to three
// (two for "vt").
struct ObjTuple {
  std::array<double, 3> v{};
  std::uint8_t size = 0;
};

// One "f" line: per corner the position, texture and normal numbers (0 where absent).
struct ObjFace {
  std::vector<std::int64_t> face_v_index;
  std::vector<std::int64_t> face_uv_index;
  std::vector<std::int64_t> face_n_index;
};

// The statements of one MTL material: "map_Kd" as text, every other one as numbers.
struct ObjMaterial {
  std::optional<std::string> map_Kd;
  OrderedMap<std::string, std::vector<double>> values;
};

struct ObjModel {
  // Keyed by material name, in the order the names first appeared.
  OrderedMap<std::string, std::vector<ObjTuple>> obj_vertex_array;
  OrderedMap<std::string, std::vector<ObjTuple>> obj_normals_array;
  OrderedMap<std::string, std::vector<ObjTuple>> obj_texcoords_array;
  OrderedMap<std::string, std::vector<ObjFace>> obj_faces_array;
  OrderedMap<std::string, ObjMaterial> obj_material_array;
  std::optional<std::string> material;
  bool withNormal = false;
  bool withTexUV = false;
};

// Gives the text of the MTL file at a path, or throws FileReadError.
using MtlTextSource = std::function<std::string(const std::string& mtlPath)>;

// Parses OBJ text. `objPath` names the file in errors and places the MTL: a "mtllib"
// line reads MtlPathFor(objPath) through readMtl, whatever name the line gives.
ObjModel ParseOBJText(std::string_view objText, const std::string& objPath, bool swapyz,
                      const MtlTextSource& readMtl);

// Parses MTL text into model.obj_material_array.
void ParseMTLText(std::string_view mtlText, const std::string& mtlPath, ObjModel& model);

// ParseOBJText over the file at objPath, the MTL read from disk.
ObjModel ReadOBJFile(const std::string& objPath, bool swapyz);

// The whole file as text; FileReadError when it can't be read.
std::string ReadTextFile(const std::string& path);

// Path helpers with the rules of Python's os.path (POSIX): split, splitext, join.
std::pair<std::string, std::string> SplitPath(const std::string& path);
std::pair<std::string, std::string> SplitExtension(const std::string& fileName);
std::string JoinPath(const std::string& dir, const std::string& name);

// The MTL that belongs to an OBJ: its name with ".mtl" for the extension, beside it.
std::string MtlPathFor(const std::string& objPath);

}  // namespace vorn
