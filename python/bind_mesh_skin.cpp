// Skin animation data of skinned submeshes: the shared base and the GLB evaluation.
// Tables are handed in as dicts and read back as copies: a handed-over table is never
// changed by the engine, and a script changes one by handing in a new dict.
#include <memory>
#include <string>

#include "bind_common.h"
#include "core/fbx_matrix.h"
#include "mesh/skin_ani_data.h"
#include "mesh/skin_ani_fbx.h"
#include "mesh/skin_ani_glb.h"

namespace vorn::py_bind {
namespace {

using SkinData = Vorn_SkinSubMeshAniData;
using SkinGlb = Vorn_SkinSubMeshAni_GLB;

std::string type_name(py::handle value) { return py::str(py::type::handle_of(value).attr("__name__")); }

[[noreturn]] void bad(const std::string& where, const std::string& what, py::handle value) {
  throw py::type_error(where + ": " + what + ", not " + type_name(value));
}

std::int64_t key_arg(py::handle value, const std::string& where, const char* what) {
  if (!PyLong_Check(value.ptr())) bad(where, std::string(what) + " must be an int", value);
  return value.cast<std::int64_t>();  // OverflowError beyond 64 bits
}

FbxMatrix matrix_arg(py::handle value, const std::string& where, const std::string& what) {
  if (!py::isinstance<Matrix4d>(value)) bad(where, what + " must be an FbxMatrix", value);
  return FbxMatrix(value.cast<const Matrix4d&>());
}

py::dict dict_arg(py::handle value, const std::string& where, const char* what) {
  if (!py::isinstance<py::dict>(value)) bad(where, std::string(what) + " must be a dict", value);
  return py::reinterpret_borrow<py::dict>(value);
}

// A two-element record (list or tuple).
py::sequence pair_arg(py::handle value, const std::string& where, const std::string& what) {
  if ((!py::isinstance<py::list>(value) && !py::isinstance<py::tuple>(value)) || py::len(value) != 2) {
    bad(where, what + " must be a two-element list or tuple", value);
  }
  return py::reinterpret_borrow<py::sequence>(value);
}

std::shared_ptr<const BoneTreeTable> bone_tree_arg(py::handle value) {
  const std::string where = "Vorn_SkinSubMeshAni_GLB.SetInitBoneTree";
  auto table = std::make_shared<BoneTreeTable>();
  for (auto [key, record] : dict_arg(value, where, "initBoneTree")) {
    const std::int64_t node = key_arg(key, where, "a node index");
    const std::string what = "the record of node " + std::to_string(node);
    py::sequence pair = pair_arg(record, where, what + " (parent index or None, FbxMatrix)");
    BoneTreeEntry entry;
    if (!pair[0].is_none()) entry.parent = key_arg(pair[0], where, "a parent index");
    entry.local = matrix_arg(pair[1], where, "element 1 of " + what);
    table->set(node, std::move(entry));
  }
  return table;
}

std::shared_ptr<const InverseBindTable> inverse_bind_arg(py::handle value) {
  const std::string where = "Vorn_SkinSubMeshAni_GLB.SetInverseBindMatrices";
  auto table = std::make_shared<InverseBindTable>();
  for (auto [key, matrix] : dict_arg(value, where, "inverseBindMatrices")) {
    const std::int64_t joint = key_arg(key, where, "a joint key");
    table->set(joint, matrix_arg(matrix, where, "the matrix of joint " + std::to_string(joint)));
  }
  return table;
}

std::shared_ptr<const BoneKeyframeTable> keyframes_arg(py::handle value) {
  const std::string where = "Vorn_SkinSubMeshAni_GLB.SetAniBonesMatrix";
  auto table = std::make_shared<BoneKeyframeTable>();
  for (auto [key, frames] : dict_arg(value, where, "aniBoneTree")) {
    const std::int64_t bone = key_arg(key, where, "a bone key");
    const std::string what = "the keyframes of bone " + std::to_string(bone);
    if (!py::isinstance<py::list>(frames) && !py::isinstance<py::tuple>(frames)) {
      bad(where, what + " must be a list of (time, FbxMatrix)", frames);
    }
    BoneKeyframes keys;
    keys.reserve(py::len(frames));
    for (py::handle frame : frames) {
      py::sequence pair = pair_arg(frame, where, "a keyframe of bone " + std::to_string(bone) + " (time, FbxMatrix)");
      keys.push_back({number_arg(pair[0], where.c_str(), "a keyframe time"),
                      matrix_arg(pair[1], where, "a keyframe matrix of bone " + std::to_string(bone))});
    }
    table->set(bone, std::move(keys));
  }
  return table;
}

py::object optional_int(const std::optional<std::int64_t>& v) { return v ? py::object(py::int_(*v)) : py::none(); }

template <class Table, class Convert>
py::object table_to_py(const std::shared_ptr<const Table>& table, Convert convert) {
  if (!table) return py::none();
  py::dict out;
  for (const auto& [key, value] : *table) out[py::int_(key)] = convert(value);
  return out;
}

py::dict matrix_map_to_py(const OrderedMap<std::int64_t, FbxAMatrix>& map) {
  py::dict out;
  for (const auto& [key, matrix] : map) out[py::int_(key)] = matrix;
  return out;
}

py::list segments_to_py(const std::vector<SkinData::BoneSegment>& segments) {
  py::list out;
  for (const auto& s : segments) {
    py::list record;
    for (double v : s) record.append(v);
    out.append(record);
  }
  return out;
}

py::list floats_to_py(const std::vector<double>& values) {
  py::list out(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) out[i] = py::float_(values[i]);
  return out;
}

SkinTime time_arg(py::handle value) {
  return {number_arg(value, "Vorn_SkinSubMeshAniData.GetFinalBoneMatrixByTime", "currTime"), is_py_int(value)};
}

void bind_skin_data(py::module_& m) {
  py::class_<SkinData, std::shared_ptr<SkinData>>(
      m, "Vorn_SkinSubMeshAniData",
      "Bone data of one skinned submesh: the arrays the GLB and FBX paths share and the\n"
      "matrices handed to the shader (16 floats per bone, rows in order).")
      .def(py::init<>(), "FinalShaderMatrixArray starts as 64 identity matrices (1,024 floats).")
      .def_readwrite("SubMeshMatrix", &SkinData::SubMeshMatrix, "The submesh's own matrix (FbxAMatrix).")
      .def_property_readonly(
          "BoneArray", [](const SkinData& s) { return py::list(s.BoneArray.size()); },
          "FBX path: the clusters in load order (empty without the FBX SDK).")
      .def_property_readonly(
          "BoneVertexMatrixArray", [](const SkinData& s) { return matrix_map_to_py(s.BoneVertexMatrixArray); },
          "FBX path: bone index -> bind matrix (a copy).")
      .def_property_readonly(
          "BoneAnimationMatrixArray", [](const SkinData& s) { return matrix_map_to_py(s.BoneAnimationMatrixArray); },
          "FBX path: bone index -> global transform at the last evaluation (a copy).")
      .def_property_readonly(
          "FinalBoneXYZArray", [](const SkinData& s) { return segments_to_py(s.FinalBoneXYZArray); },
          "Bone segments of the last evaluation, six floats each (a copy).")
      .def_property_readonly(
          "FinalShaderMatrixArray", [](const SkinData& s) { return floats_to_py(s.FinalShaderMatrixArray); },
          "The flat bone matrix array of the last evaluation (a copy).")
      .def("SetSubMeshMatrix", &SkinData::SetSubMeshMatrix, py::arg("matrix"), "Stores matrix in SubMeshMatrix.")
      .def(
          "GetFinalBoneMatrixByTime",
          [](SkinData& s, py::handle currTime) { return floats_to_py(s.GetFinalBoneMatrixByTime(time_arg(currTime))); },
          py::arg("currTime"), "The bone matrices at currTime as a list of floats; the base returns them as they stand.");
}

void bind_skin_glb(py::module_& m) {
  py::class_<SkinGlb, SkinData, std::shared_ptr<SkinGlb>>(
      m, "Vorn_SkinSubMeshAni_GLB",
      "Skin animation of a GLB submesh: bone matrices from keyframe tables, the last\n"
      "keyframe reached applies (no interpolation).")
      .def(py::init<>(), "The three tables hold no value until their setters run.")
      .def_property(
          "InitBoneTree",
          [](const SkinGlb& s) {
            return table_to_py(s.InitBoneTree, [](const BoneTreeEntry& e) {
              return py::make_tuple(optional_int(e.parent), e.local);
            });
          },
          [](SkinGlb& s, py::handle v) { s.SetInitBoneTree(bone_tree_arg(v)); },
          "Node index -> (parent index or None, local bind FbxMatrix); None before SetInitBoneTree.")
      .def_property(
          "InverseBindMatrices",
          [](const SkinGlb& s) { return table_to_py(s.InverseBindMatrices, [](const FbxMatrix& mat) { return mat; }); },
          [](SkinGlb& s, py::handle v) { s.SetInverseBindMatrices(inverse_bind_arg(v)); },
          "Joint key -> inverse bind FbxMatrix; None before SetInverseBindMatrices.")
      .def_property(
          "AniBoneTree",
          [](const SkinGlb& s) {
            return table_to_py(s.AniBoneTree, [](const BoneKeyframes& keys) {
              py::list out;
              for (const auto& k : keys) out.append(py::make_tuple(k.time, k.matrix));
              return out;
            });
          },
          [](SkinGlb& s, py::handle v) { s.SetAniBonesMatrix(keyframes_arg(v)); },
          "Bone key -> [(time, FbxMatrix), ...] in ascending time; None before SetAniBonesMatrix.")
      .def_property_readonly(
          "BoneCount", [](const SkinGlb& s) { return optional_int(s.BoneCount); },
          "Entries of AniBoneTree at the last evaluation; None before it.")
      .def(
          "SetInitBoneTree", [](SkinGlb& s, py::handle t) { s.SetInitBoneTree(bone_tree_arg(t)); },
          py::arg("initBoneTree"), "Sets the bind skeleton: {node: [parent or None, FbxMatrix]}.")
      .def(
          "SetInverseBindMatrices",
          [](SkinGlb& s, py::handle t) { s.SetInverseBindMatrices(inverse_bind_arg(t)); },
          py::arg("inverseBindMatrices"), "Sets the inverse bind matrices: {joint: FbxMatrix}.")
      .def(
          "SetAniBonesMatrix", [](SkinGlb& s, py::handle t) { s.SetAniBonesMatrix(keyframes_arg(t)); },
          py::arg("aniBoneTree"), "Sets the keyframes of the action: {bone: [(time, FbxMatrix), ...]}.")
      .def(
          "GetFinalBoneMatrixByTime",
          [](SkinGlb& s, py::handle currTime) { return floats_to_py(s.GetFinalBoneMatrixByTime(time_arg(currTime))); },
          py::arg("currTime"),
          "The bone matrices at currTime seconds, 16 floats per bone in AniBoneTree order.\n"
          "Prints 'CurrFrame: <time>'. RuntimeError before SetAniBonesMatrix; KeyError or\n"
          "IndexError for a bone missing from a table or a parent with too few keyframes.")
      .def(
          "GetBoneXYZList", [](const SkinGlb& s) { return segments_to_py(s.GetBoneXYZList()); },
          "The skeleton segments of the last evaluation: [parent x, y, z, bone x, y, z] each.");
}

void bind_skin_fbx(py::module_& m) {
  using SkinFbx = Vorn_SkinSubMeshAni_FBX;
  py::class_<SkinFbx, SkinData, std::shared_ptr<SkinFbx>>(
      m, "Vorn_SkinSubMeshAni_FBX",
      "Skin animation of a submesh read by LoadMeshFromFile_FBX or LoadMeshFromFile_Model:\n"
      "each bone's global transform is evaluated from the file's node tree and the playing\n"
      "action, interpolating between keys. The loader fills it; a new one has no bones.")
      .def(py::init<>(), "An object without bones: evaluation returns the array as it stands.")
      .def_property_readonly(
          "BoneNames",
          [](const SkinFbx& s) {
            py::list out;
            for (const FbxCluster& c : s.Clusters()) out.append(c.name);
            return out;
          },
          "The bones' node names in the order of the vertices' bone indices.")
      .def(
          "GetFinalBoneMatrixByTime",
          [](SkinFbx& s, py::handle currTime) { return floats_to_py(s.GetFinalBoneMatrixByTime(time_arg(currTime))); },
          py::arg("currTime"),
          "The bone matrices at currTime seconds, 16 floats per bone; at time zero the last\n"
          "array as it stands (empty after the load). Prints 'CurrFrame: <frame>'.")
      .def(
          "GetBoneXYZList", [](const SkinFbx& s) { return segments_to_py(s.GetBoneXYZList()); },
          "The skeleton segments of the last evaluation: [bone x, y, z, parent x, y, z] each.");
}

}  // namespace

void bind_mesh_skin(py::module_& m) {
  // GLB bone and keyframe matrices are built from quaternion rotations.
  auto matrix = py::reinterpret_borrow<py::class_<FbxMatrix, Matrix4d>>(py::type::of<FbxMatrix>());
  matrix.def_static("FromTQS", &FbxMatrix::FromTQS, py::arg("T"), py::arg("Q"), py::arg("S"),
                    "Scale S, then the rotation of quaternion Q = (x, y, z, w), then translation T;\n"
                    "Q is normalised and (0, 0, 0, 0) is no rotation.");
  bind_skin_data(m);
  bind_skin_glb(m);
  bind_skin_fbx(m);
}

}  // namespace vorn::py_bind
