// The mesh node: Vorn_3DMesh with its loaders and skeletal actions. Scripts may
// subclass it and override update_skin_animation, prepare_uniform_for_shader and
// draw_skeleton like any node operation.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "bind_node.h"
#include "mesh/mesh.h"
#include "mesh/skin_ani_data.h"
#include "node_trampoline.h"

namespace vorn::py_bind {

namespace {

// An action table from a script: {name: {bone: [(path, [(time, [values...]), ...]), ...]}}.
OrderedMap<std::string, MeshAction> actions_from_py(py::dict actions) {
  const auto bad = [] {
    return py::type_error(
        "Vorn_3DMesh.ActionDict: expected {name: {bone: [(path, [(time, [values]), ...]), ...]}}");
  };
  OrderedMap<std::string, MeshAction> out;
  for (const auto& [name, bones] : actions) {
    if (!py::isinstance<py::str>(name) || !py::isinstance<py::dict>(bones)) throw bad();
    MeshAction action;
    for (const auto& [bone, channels] : bones.cast<py::dict>()) {
      if (!py::isinstance<py::int_>(bone)) throw bad();
      std::vector<ActionChannel> list;
      for (py::handle channel : py::list(py::reinterpret_borrow<py::object>(channels))) {
        const py::list pair(py::reinterpret_borrow<py::object>(channel));
        if (pair.size() != 2 || !py::isinstance<py::str>(pair[0])) throw bad();
        ActionChannel c{pair[0].cast<std::string>(), {}};
        for (py::handle sample : py::list(py::reinterpret_borrow<py::object>(pair[1]))) {
          const py::list ts(py::reinterpret_borrow<py::object>(sample));
          if (ts.size() != 2) throw bad();
          ActionSample s{number_arg(ts[0], "Vorn_3DMesh.ActionDict", "a sample time"), {}};
          for (py::handle v : py::list(py::reinterpret_borrow<py::object>(ts[1])))
            s.value.push_back(number_arg(v, "Vorn_3DMesh.ActionDict", "a sample value"));
          c.samples.push_back(std::move(s));
        }
        list.push_back(std::move(c));
      }
      action.set(bone.cast<int>(), std::move(list));
    }
    out.set(name.cast<std::string>(), std::move(action));
  }
  return out;
}

}  // namespace

void bind_mesh(py::module_& m) {
  using Mesh = Vorn_3DMesh;
  py::class_<Mesh, Vorn_3DGameNode, PyNode<Mesh>, std::shared_ptr<Mesh>> cls(
      m, "Vorn_3DMesh",
      "The node of a model loaded from a file, with skeletal actions: a named table of\n"
      "animations, one of which plays at a time on the mesh's clock.",
      py::dynamic_attr(), twin_type_setup());
  def_node_init<Mesh, PyNode<Mesh>>(cls, "Vorn_3DMesh", "__init__(self, x=0, y=0, z=0, parent=None)\n\n"
                                    "NodeType \"3DMesh\"; with a parent in a scene, loaded and hung under it.");
  cls.def("LoadMeshFromFile_GLB", &Mesh::LoadMeshFromFile_GLB, py::arg("glbFile"), py::arg("swapyz") = false,
          "Reads a binary glTF file: one submesh per primitive with its material's PNG image,\n"
          "and for a skinned file a skin object per skinned submesh (SubMesh_Dict), the bind\n"
          "skeleton and one action per animation (ActionDict). swapyz is accepted and unused.\n"
          "A file that is not GLB prints a line and loads nothing; a broken one raises.");
  cls.def("LoadMeshFromFile_OBJ", &Mesh::LoadMeshFromFile_OBJ, py::arg("objFile"), py::arg("swapyz") = false,
          "Reads an OBJ file and the MTL file beside it (the OBJ's name with \".mtl\"): one\n"
          "submesh per material, its map_Kd texture, FX_DIFFUSE_TEXTURE (FX_TEXTURE without\n"
          "normals). The i-th position, normal and texture coordinate of a material belong\n"
          "together; face indices are used as the file gives them.")
      .def("LoadMeshFromFile_FBX", &Mesh::LoadMeshFromFile_FBX, py::arg("fbxFile"), py::arg("swapyz") = false,
           "Reads an FBX file (binary or ASCII) through the model importer: one submesh per mesh\n"
           "node named 'submesh_<node index>' (depth first below the root), triangles only, its\n"
           "textures, a Vorn_SkinSubMeshAni_FBX per skinned submesh (SubMesh_Dict), one action\n"
           "per animation stack (ActionDict) and the FirstAnimation_* fields in seconds.\n"
           "swapyz swaps y and z. IsFBX becomes True. A file that does not load prints\n"
           "'<path> Load Failed.' and leaves the mesh empty; too many bones raise RuntimeError.")
      .def("LoadMeshFromFile_Model", &Mesh::LoadMeshFromFile_Model, py::arg("modelFile"), py::arg("swapyz") = false,
           "An addition of this engine: reads any format of the model importer (glTF and GLB\n"
           "with every primitive and material, Collada, 3DS, PLY, STL, FBX, ...) the way\n"
           "LoadMeshFromFile_FBX does, with one submesh per mesh of the file ('submesh_<n>')\n"
           "and polygons triangulated. IsFBX is left as it is.")
      .def("AddAction", &Mesh::AddAction, py::arg("actionName"), "Accepts the name and does nothing.")
      .def("GetActionCount", &Mesh::GetActionCount, "Number of actions in ActionDict.")
      .def("GetActionName", &Mesh::GetActionName, py::arg("actionIndex"),
           "The name of the action at that position of ActionDict, or None outside the range.")
      .def("PlayAction", &Mesh::PlayAction, py::arg("actionIndex"),
           "Starts the action at that position, looping; an unknown index is ignored.")
      .def("SetActionSpeed", &Mesh::SetActionSpeed, py::arg("speed"),
           "Multiplier on the frame step from the next frame; the clock keeps its place.")
      .def("SetSkeletonVisible", &Mesh::SetSkeletonVisible, py::arg("isVisible"), "Writes SkeletonVisible.")
      .def("update_skin_animation", &Mesh::update_skin_animation, py::arg("delay"),
           "Advances the clock by delay times CurrAnimation_Speed; past the end it restarts at the\n"
           "beginning (looping) or stays at the end.")
      .def("prepare_uniform_for_shader", &Mesh::prepare_uniform_for_shader, py::arg("submeshIndex"),
           "Uploads the submesh's bone matrices to uBoneMatrixs (needs a GL context).")
      .def("draw_skeleton", &Mesh::draw_skeleton, "Draws the bone segments when SkeletonVisible.")
      .def_readwrite("IsFBX", &Mesh::IsFBX, "The mesh came from an FBX file.")
      .def_property("ActionDict",
                             [](const Mesh& mesh) {
                               py::dict out;
                               for (const auto& [name, action] : mesh.ActionDict) {
                                 py::dict bones;
                                 for (const auto& [bone, channels] : action) {
                                   py::list list;
                                   for (const auto& c : channels) {
                                     py::list samples;
                                     for (const auto& s : c.samples) samples.append(py::make_tuple(s.time, s.value));
                                     list.append(py::make_tuple(c.path, samples));
                                   }
                                   bones[py::int_(bone)] = list;
                                 }
                                 out[py::str(name)] = bones;
                               }
                               return out;
                             },
                             [](Mesh& mesh, py::dict actions) { mesh.ActionDict = actions_from_py(actions); },
                             "Action name to {bone: [(path, [(time, value), ...]), ...]}: read as a copy,\n"
                             "assigned whole (the GLB reader fills it).")
      .def_property(
          "SubMesh_Dict",
          [](const Mesh& mesh) {
            py::dict out;
            for (const auto& [index, skin] : mesh.SubMesh_Dict) out[py::int_(index)] = py::cast(skin);
            return out;
          },
          [](Mesh& mesh, py::dict skins) {
            OrderedMap<int, std::shared_ptr<Vorn_SkinSubMeshAniData>> fresh;
            for (const auto& [index, skin] : skins) {
              if (!py::isinstance<py::int_>(index) || !py::isinstance<Vorn_SkinSubMeshAniData>(skin)) {
                throw py::type_error("Vorn_3DMesh.SubMesh_Dict: expected {submesh index: Vorn_SkinSubMeshAniData}");
              }
              fresh.set(index.cast<int>(), skin.cast<std::shared_ptr<Vorn_SkinSubMeshAniData>>());
            }
            mesh.SubMesh_Dict = std::move(fresh);
          },
          "Submesh index to its skin animation object: read as a copy, assigned whole.")
      .def_readwrite("CurrActionName", &Mesh::CurrActionName, "Name of the action being played (FBX files).")
      .def_readwrite("CurrAnimation_Duration", &Mesh::CurrAnimation_Duration, "Length of the current action, or None.")
      .def_readwrite("CurrAnimation_BeginTime", &Mesh::CurrAnimation_BeginTime, "Start of the clock, or None.")
      .def_readwrite("CurrAnimation_EndTime", &Mesh::CurrAnimation_EndTime, "End of the clock, or None.")
      .def_readwrite("CurrAnimation_CurrTime", &Mesh::CurrAnimation_CurrTime, "The clock, or None.")
      .def_readwrite("CurrAnimation_Speed", &Mesh::CurrAnimation_Speed, "Multiplier on the frame step.")
      .def_readwrite("Playing", &Mesh::Playing, "The clock runs.")
      .def_readwrite("Looping", &Mesh::Looping, "The clock restarts at the end; None before the first PlayAction.")
      .def_readwrite("SkeletonVisible", &Mesh::SkeletonVisible, "draw_skeleton draws.")
      .def_readwrite("FirstAnimation_TimeSpan", &Mesh::FirstAnimation_TimeSpan,
                     "(begin, end) of the file's first animation in seconds, or None.")
      .def_readwrite("FirstAnimation_Duration", &Mesh::FirstAnimation_Duration,
                     "Length of the first animation in seconds, or None.")
      .def_readwrite("FirstAnimation_FrameCount", &Mesh::FirstAnimation_FrameCount,
                     "Length of the first animation in frames of the file's frame rate, or None.")
      .def_readwrite("FirstAnimation_SecondCount", &Mesh::FirstAnimation_SecondCount,
                     "Length of the first animation in whole seconds, or None.")
      .def_readwrite("FirstAnimation_BeginTime", &Mesh::FirstAnimation_BeginTime,
                     "First key time of the first animation in seconds, or None.")
      .def_readwrite("FirstAnimation_EndTime", &Mesh::FirstAnimation_EndTime,
                     "Last key time of the first animation in seconds, or None.")
      .def_readwrite("FrameDelayTime", &Mesh::FrameDelayTime, "One frame of the file's frame rate in seconds, or None.");
}

}  // namespace vorn::py_bind
