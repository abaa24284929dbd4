// The 3D effect catalogue, the texture units and the program manager with its global.
#include <cmath>
#include <limits>

#include "bind_common.h"
#include "shader/fx_3d.h"
#include "shader/fx_manage.h"
#include "shader/fx_manage.h"
#include "shader/tex_id.h"

namespace vorn::py_bind {
namespace {

using FX = Vorn_3DFX;

// An identifier as scripts pass it: an int, or a float with an integral value (which a
// dictionary lookup or == comparison would match as well). Anything else names no
// program.
std::optional<int> fx_key(py::handle value) {
  if (PyLong_Check(value.ptr())) {
    int overflow = 0;
    const long long id = PyLong_AsLongLongAndOverflow(value.ptr(), &overflow);
    if (overflow || id < std::numeric_limits<int>::min() || id > std::numeric_limits<int>::max()) return std::nullopt;
    return static_cast<int>(id);
  }
  if (PyFloat_Check(value.ptr())) {
    const double id = PyFloat_AsDouble(value.ptr());
    if (std::floor(id) != id || id < std::numeric_limits<int>::min() || id > std::numeric_limits<int>::max()) {
      return std::nullopt;
    }
    return static_cast<int>(id);
  }
  return std::nullopt;
}

py::dict program_dict(const Vorn_FXManage::ProgramMap& map) {
  py::dict out;
  for (const auto& [id, program] : map) out[py::int_(id)] = program ? py::object(py::int_(*program)) : py::none();
  return out;
}

struct Constant {
  const char* name;
  int value;
};

const Constant k3DIdentifiers[] = {
    {"FX_BEGIN", FX::FX_BEGIN},
    {"FX_DEPTH", FX::FX_DEPTH},
    {"FX_XYZ", FX::FX_XYZ},
    {"FX_COLOR", FX::FX_COLOR},
    {"FX_NORMAL", FX::FX_NORMAL},
    {"FX_NORMAL_VIEW_INVERSE", FX::FX_NORMAL_VIEW_INVERSE},
    {"FX_SPECULAR", FX::FX_SPECULAR},
    {"FX_DIFFUSE", FX::FX_DIFFUSE},
    {"FX_DIFFUSE_SPECULAR", FX::FX_DIFFUSE_SPECULAR},
    {"FX_DIFFUSE_ENVREFLECT", FX::FX_DIFFUSE_ENVREFLECT},
    {"FX_TEXTURE", FX::FX_TEXTURE},
    {"FX_POINTSPRITE", FX::FX_POINTSPRITE},
    {"FX_TEXTURE_SHADOWMAP", FX::FX_TEXTURE_SHADOWMAP},
    {"FX_DIFFUSE_TEXTURE", FX::FX_DIFFUSE_TEXTURE},
    {"FX_DIFFUSE_TEXTURE_SPECULAR", FX::FX_DIFFUSE_TEXTURE_SPECULAR},
    {"FX_DIFFUSE_TEXTURE_BUMP", FX::FX_DIFFUSE_TEXTURE_BUMP},
    {"FX_DIFFUSE_TEXTURE_SHADOWMAP", FX::FX_DIFFUSE_TEXTURE_SHADOWMAP},
    {"FX_DIFFUSE_TEXTURE_ENVREFLECT", FX::FX_DIFFUSE_TEXTURE_ENVREFLECT},
    {"FX_DIFFUSE_TEXTURE_ENVREFLECT_SPECULAR", FX::FX_DIFFUSE_TEXTURE_ENVREFLECT_SPECULAR},
    {"FX_DIFFUSE_TEXTURE_PTLIGHT", FX::FX_DIFFUSE_TEXTURE_PTLIGHT},
    {"FX_DIFFUSE_TEXTURE_SPECULAR_PTLIGHT", FX::FX_DIFFUSE_TEXTURE_SPECULAR_PTLIGHT},
    {"FX_SKYBOX", FX::FX_SKYBOX},
    {"FX_SKYSPHERE", FX::FX_SKYSPHERE},
    {"FX_COLOR_SKIN", FX::FX_COLOR_SKIN},
    {"FX_DIFFUSE_SKIN", FX::FX_DIFFUSE_SKIN},
    {"FX_DIFFUSE_SPECULAR_SKIN", FX::FX_DIFFUSE_SPECULAR_SKIN},
    {"FX_TEXTURE_SKIN", FX::FX_TEXTURE_SKIN},
    {"FX_DIFFUSE_TEXTURE_SKIN", FX::FX_DIFFUSE_TEXTURE_SKIN},
    {"FX_DIFFUSE_TEXTURE_SPECULAR_SKIN", FX::FX_DIFFUSE_TEXTURE_SPECULAR_SKIN},
    {"FX_DIFFUSE_TEXTURE_BUMP_SKIN", FX::FX_DIFFUSE_TEXTURE_BUMP_SKIN},
    {"FX_DIFFUSE_TEXTURE_PTLIGHT_SKIN", FX::FX_DIFFUSE_TEXTURE_PTLIGHT_SKIN},
    {"FX_GRASS", FX::FX_GRASS},
    {"FX_OCEAN", FX::FX_OCEAN},
    {"FX_TERRAIN", FX::FX_TERRAIN},
    {"FX_TILEDMAP", FX::FX_TILEDMAP},
    {"FX_AXIS", FX::FX_AXIS},
    {"FX_END", FX::FX_END},
};

const Constant kTextureUnits[] = {
    {"TEX_DIFFUSE", Vorn_TEXID::TEX_DIFFUSE},
    {"TEX_MASK", Vorn_TEXID::TEX_MASK},
    {"TEX_ENVREFLECT", Vorn_TEXID::TEX_ENVREFLECT},
    {"TEX_OCEAN_WAVEBUMP1", Vorn_TEXID::TEX_OCEAN_WAVEBUMP1},
    {"TEX_OCEAN_WAVEBUMP2", Vorn_TEXID::TEX_OCEAN_WAVEBUMP2},
    {"TEX_OCEAN_REFRACT", Vorn_TEXID::TEX_OCEAN_REFRACT},
    {"TEX_OCEAN_REFLECT", Vorn_TEXID::TEX_OCEAN_REFLECT},
    {"TEX_TERRAIN_BLEND", Vorn_TEXID::TEX_TERRAIN_BLEND},
    {"TEX_TERRAIN_LAYER1", Vorn_TEXID::TEX_TERRAIN_LAYER1},
    {"TEX_TERRAIN_LAYER2", Vorn_TEXID::TEX_TERRAIN_LAYER2},
    {"TEX_TERRAIN_LAYER3", Vorn_TEXID::TEX_TERRAIN_LAYER3},
    {"TEX_TERRAIN_LAYER4", Vorn_TEXID::TEX_TERRAIN_LAYER4},
    {"TEX_TERRAIN_SHADOW", Vorn_TEXID::TEX_TERRAIN_SHADOW},
};

struct TextOperation {
  const char* name;
  std::string (FX::*call)();
  const char* doc;
};

const TextOperation kTextOperations[] = {
    {"GetVS_Depth", &FX::GetVS_Depth, "Vertex text of FX_DEPTH; starts a new shaderCode."},
    {"GetVS_XYZ", &FX::GetVS_XYZ, "Vertex text of FX_XYZ; starts a new shaderCode."},
    {"GetVS_Color", &FX::GetVS_Color, "Vertex text of FX_COLOR; starts a new shaderCode."},
    {"GetVS_Normal", &FX::GetVS_Normal, "Vertex text of FX_NORMAL; starts a new shaderCode."},
    {"GetVS_Normal_ViewInverse", &FX::GetVS_Normal_ViewInverse,
     "Vertex text of FX_NORMAL_VIEW_INVERSE; starts a new shaderCode."},
    {"GetVS_Diffuse", &FX::GetVS_Diffuse, "Vertex text of FX_DIFFUSE; starts a new shaderCode."},
    {"GetVS_Specular", &FX::GetVS_Specular, "Vertex text of FX_SPECULAR; starts a new shaderCode."},
    {"GetVS_Diffuse_Specular", &FX::GetVS_Diffuse_Specular,
     "Vertex text of FX_DIFFUSE_SPECULAR; starts a new shaderCode."},
    {"GetVS_Diffuse_EnvReflect", &FX::GetVS_Diffuse_EnvReflect,
     "Vertex text of FX_DIFFUSE_ENVREFLECT; starts a new shaderCode."},
    {"GetVS_Texture", &FX::GetVS_Texture, "Vertex text of FX_TEXTURE; starts a new shaderCode."},
    {"GetVS_PointSprite", &FX::GetVS_PointSprite, "Vertex text of FX_POINTSPRITE; starts a new shaderCode."},
    {"GetVS_Texture_ShadowMap", &FX::GetVS_Texture_ShadowMap,
     "Vertex text of FX_TEXTURE_SHADOWMAP; starts a new shaderCode."},
    {"GetVS_Diffuse_Texture_EnvReflect", &FX::GetVS_Diffuse_Texture_EnvReflect,
     "Vertex text of FX_DIFFUSE_TEXTURE_ENVREFLECT; starts a new shaderCode."},
    {"GetVS_Diffuse_Texture", &FX::GetVS_Diffuse_Texture,
     "Vertex text of FX_DIFFUSE_TEXTURE; starts a new shaderCode."},
    {"GetVS_Diffuse_Texture_Bump", &FX::GetVS_Diffuse_Texture_Bump,
     "Vertex text of FX_DIFFUSE_TEXTURE_BUMP; starts a new shaderCode."},
    {"GetVS_Diffuse_Texture_ShadowMap", &FX::GetVS_Diffuse_Texture_ShadowMap,
     "Vertex text of FX_DIFFUSE_TEXTURE_SHADOWMAP; starts a new shaderCode."},
    {"GetVS_Diffuse_Texture_Specular", &FX::GetVS_Diffuse_Texture_Specular,
     "Vertex text of FX_DIFFUSE_TEXTURE_SPECULAR; starts a new shaderCode."},
    {"GetVS_Diffuse_Texture_EnvReflect_Specular", &FX::GetVS_Diffuse_Texture_EnvReflect_Specular,
     "Vertex text of FX_DIFFUSE_TEXTURE_ENVREFLECT_SPECULAR; starts a new shaderCode."},
    {"GetVS_Diffuse_Texture_PTLight", &FX::GetVS_Diffuse_Texture_PTLight,
     "Vertex text of FX_DIFFUSE_TEXTURE_PTLIGHT; starts a new shaderCode."},
    {"GetVS_Diffuse_Texture_Specular_PTLight", &FX::GetVS_Diffuse_Texture_Specular_PTLight,
     "Vertex text of FX_DIFFUSE_TEXTURE_SPECULAR_PTLIGHT; starts a new shaderCode."},
    {"GetVS_SkyBox", &FX::GetVS_SkyBox, "Vertex text of FX_SKYBOX; starts a new shaderCode."},
    {"GetVS_SkySphere", &FX::GetVS_SkySphere, "Vertex text of FX_SKYSPHERE; starts a new shaderCode."},
    {"GetVS_Diffuse_Skin", &FX::GetVS_Diffuse_Skin, "Vertex text of FX_DIFFUSE_SKIN; starts a new shaderCode."},
    {"GetVS_Diffuse_Specular_Skin", &FX::GetVS_Diffuse_Specular_Skin,
     "Vertex text of FX_DIFFUSE_SPECULAR_SKIN; starts a new shaderCode."},
    {"GetVS_Texture_Skin", &FX::GetVS_Texture_Skin, "Vertex text of FX_TEXTURE_SKIN; starts a new shaderCode."},
    {"GetVS_Diffuse_Texture_Skin", &FX::GetVS_Diffuse_Texture_Skin,
     "Vertex text of FX_DIFFUSE_TEXTURE_SKIN; starts a new shaderCode."},
    {"GetVS_Diffuse_Texture_Specular_Skin", &FX::GetVS_Diffuse_Texture_Specular_Skin,
     "Vertex text of FX_DIFFUSE_TEXTURE_SPECULAR_SKIN; starts a new shaderCode."},
    {"GetVS_Grass", &FX::GetVS_Grass, "Vertex text of FX_GRASS; starts a new shaderCode."},
    {"GetVS_Ocean", &FX::GetVS_Ocean, "Vertex text of FX_OCEAN; starts a new shaderCode."},
    {"GetVS_Terrain", &FX::GetVS_Terrain, "Vertex text of FX_TERRAIN; starts a new shaderCode."},
    {"GetVS_TiledMap", &FX::GetVS_TiledMap, "Vertex text of FX_TILEDMAP; starts a new shaderCode."},
    {"GetVS_Axis", &FX::GetVS_Axis, "Vertex text of FX_AXIS; starts a new shaderCode."},
    {"GetPS_Depth", &FX::GetPS_Depth, "Fixed pixel text of FX_DEPTH."},
    {"GetPS_XYZ", &FX::GetPS_XYZ, "Fixed pixel text of FX_XYZ."},
    {"GetPS_Color", &FX::GetPS_Color, "Fixed pixel text of FX_COLOR, FX_AXIS."},
    {"GetPS_Normal", &FX::GetPS_Normal, "Fixed pixel text of FX_NORMAL."},
    {"GetPS_Normal_Inverse", &FX::GetPS_Normal_Inverse, "Fixed pixel text of FX_NORMAL_VIEW_INVERSE."},
    {"GetPS_Diffuse", &FX::GetPS_Diffuse,
     "Pixel text of FX_DIFFUSE, FX_DIFFUSE_SKIN; continues on shaderCode (call the vertex operation "
     "first)."},
    {"GetPS_Specular", &FX::GetPS_Specular,
     "Pixel text of FX_SPECULAR; continues on shaderCode (call the vertex operation first)."},
    {"GetPS_Diffuse_Specular", &FX::GetPS_Diffuse_Specular,
     "Pixel text of FX_DIFFUSE_SPECULAR, FX_DIFFUSE_SPECULAR_SKIN; continues on shaderCode (call the "
     "vertex operation first)."},
    {"GetPS_Texture", &FX::GetPS_Texture,
     "Pixel text of FX_TEXTURE, FX_TEXTURE_SKIN; continues on shaderCode (call the vertex operation "
     "first)."},
    {"GetPS_PointSprite", &FX::GetPS_PointSprite,
     "Pixel text of FX_POINTSPRITE; continues on shaderCode (call the vertex operation first)."},
    {"GetPS_Texture_ShadowMap", &FX::GetPS_Texture_ShadowMap,
     "Pixel text of FX_TEXTURE_SHADOWMAP; continues on shaderCode (call the vertex operation first)."},
    {"GetPS_Ocean", &FX::GetPS_Ocean,
     "Pixel text of FX_OCEAN; continues on shaderCode (call the vertex operation first)."},
    {"GetPS_Grass", &FX::GetPS_Grass,
     "Pixel text of FX_GRASS; continues on shaderCode (call the vertex operation first)."},
    {"GetPS_Diffuse_Texture", &FX::GetPS_Diffuse_Texture,
     "Pixel text of FX_DIFFUSE_TEXTURE, FX_DIFFUSE_TEXTURE_SKIN; continues on shaderCode (call the vertex "
     "operation first)."},
    {"GetPS_Diffuse_Texture_Bump", &FX::GetPS_Diffuse_Texture_Bump,
     "Pixel text of FX_DIFFUSE_TEXTURE_BUMP; continues on shaderCode (call the vertex operation first)."},
    {"GetPS_Diffuse_Texture_EnvReflect", &FX::GetPS_Diffuse_Texture_EnvReflect,
     "Pixel text of FX_DIFFUSE_TEXTURE_ENVREFLECT; continues on shaderCode (call the vertex operation "
     "first)."},
    {"GetPS_Diffuse_EnvReflect", &FX::GetPS_Diffuse_EnvReflect,
     "Pixel text of FX_DIFFUSE_ENVREFLECT; continues on shaderCode (call the vertex operation first)."},
    {"GetPS_Diffuse_Texture_Specular", &FX::GetPS_Diffuse_Texture_Specular,
     "Pixel text of FX_DIFFUSE_TEXTURE_SPECULAR, FX_DIFFUSE_TEXTURE_SPECULAR_SKIN; continues on shaderCode"
     " (call the vertex operation first)."},
    {"GetPS_Diffuse_Texture_EnvReflect_Specular", &FX::GetPS_Diffuse_Texture_EnvReflect_Specular,
     "Pixel text of FX_DIFFUSE_TEXTURE_ENVREFLECT_SPECULAR; continues on shaderCode (call the vertex "
     "operation first)."},
    {"GetPS_Diffuse_Texture_PTLight", &FX::GetPS_Diffuse_Texture_PTLight,
     "Pixel text of FX_DIFFUSE_TEXTURE_PTLIGHT; continues on shaderCode (call the vertex operation first)."},
    {"GetPS_Diffuse_Texture_Specular_PTLight", &FX::GetPS_Diffuse_Texture_Specular_PTLight,
     "Pixel text of FX_DIFFUSE_TEXTURE_SPECULAR_PTLIGHT; continues on shaderCode (call the vertex "
     "operation first)."},
    {"GetPS_SkyBox", &FX::GetPS_SkyBox,
     "Pixel text of FX_SKYBOX; continues on shaderCode (call the vertex operation first)."},
    {"GetPS_SkySphere", &FX::GetPS_SkySphere,
     "Pixel text of FX_SKYSPHERE; continues on shaderCode (call the vertex operation first)."},
    {"GetPS_Terrain", &FX::GetPS_Terrain,
     "Pixel text of FX_TERRAIN; continues on shaderCode (call the vertex operation first)."},
    {"GetPS_TiledMap", &FX::GetPS_TiledMap,
     "Pixel text of FX_TILEDMAP; continues on shaderCode (call the vertex operation first)."},
};

void bind_catalogue(py::module_& m) {
  py::class_<FX, std::shared_ptr<FX>> fx(
      m, "Vorn_3DFX",
      "Catalogue of the programs scene nodes are drawn with. GetVS(FXID) makes a new Vorn_Shader_Code\n"
      "in shaderCode and the pixel text continues on it, so GetVS(FXID) must come right before\n"
      "GetPS(FXID) for the same identifier.");
  for (const Constant& id : k3DIdentifiers) fx.attr(id.name) = id.value;
  fx.def(py::init<>(), "An empty catalogue: shaderCode is None.")
      .def_property(
          "VSCode_Dict", [](const FX& self) { return self.VSCode_Dict; },
          [](FX& self, ShaderSlots slots) { self.VSCode_Dict = std::move(slots); }, "Unused map, kept as a field.")
      .def_readwrite("shaderCode", &FX::shaderCode,
                     "The Vorn_Shader_Code of the program in work; None until the first vertex text.")
      .def(
          "GetVS",
          [](FX& self, py::handle FXID) -> std::optional<std::string> {
            const auto id = fx_key(FXID);
            return id ? self.GetVS(*id) : std::nullopt;
          },
          py::arg("FXID"), "Vertex text of an identifier, or None when it has none.")
      .def(
          "GetPS",
          [](FX& self, py::handle FXID) -> std::optional<std::string> {
            const auto id = fx_key(FXID);
            return id ? self.GetPS(*id) : std::nullopt;
          },
          py::arg("FXID"),
          "Pixel text of an identifier, or None when it has none. Texts built from fragments need\n"
          "GetVS(FXID) just before; without any vertex text this raises AttributeError.");
  for (const TextOperation& op : kTextOperations) fx.def(op.name, op.call, op.doc);

  py::class_<Vorn_TEXID> texid(m, "Vorn_TEXID",
                               "Texture-unit numbers by role: plain node programs, ocean, terrain.");
  texid.def(py::init<>());
  for (const Constant& unit : kTextureUnits) texid.attr(unit.name) = unit.value;
}

void bind_manager(py::module_& m) {
  py::class_<FXProgramStatus>(m, "FXProgramStatus", "Compile and link result of one catalogue program.")
      .def_readonly("FXID", &FXProgramStatus::FXID, "The identifier.")
      .def_readonly("Name", &FXProgramStatus::Name, "Catalogue name, e.g. 'Vorn_3DFX.FX_DIFFUSE'.")
      .def_readonly("Program", &FXProgramStatus::Program, "The program handle in the manager's map.")
      .def_readonly("VSCompiled", &FXProgramStatus::VSCompiled, "Whether the vertex text compiled.")
      .def_readonly("PSCompiled", &FXProgramStatus::PSCompiled, "Whether the pixel text compiled.")
      .def_readonly("Linked", &FXProgramStatus::Linked, "Whether the program linked.")
      .def_readonly("VSLog", &FXProgramStatus::VSLog, "The driver's vertex compile log.")
      .def_readonly("PSLog", &FXProgramStatus::PSLog, "The driver's pixel compile log.")
      .def_readonly("LinkLog", &FXProgramStatus::LinkLog, "The driver's link log.")
      .def_property_readonly("Usable", &FXProgramStatus::Usable, "Both texts compiled and the program linked.")
      .def("__repr__", [](const FXProgramStatus& s) {
        return "<FXProgramStatus " + s.Name + " (" + std::to_string(s.FXID) + ") vs=" +
               (s.VSCompiled ? "ok" : "refused") + " ps=" + (s.PSCompiled ? "ok" : "refused") +
               " link=" + (s.Linked ? "ok" : "refused") + ">";
      });

  py::class_<Vorn_FXManage, std::shared_ptr<Vorn_FXManage>>(
      m, "Vorn_FXManage",
      "Compiles every 2D and 3D catalogue program once, at construction (a GL context must be\n"
      "current), and hands out the program of an identifier. Compile results are not checked at\n"
      "construction; DiagnoseShaders() reports them.")
      .def(py::init<>(), "Generates and compiles the whole catalogue, 2D range first, then 3D.")
      .def_property_readonly(
          "Shader_2DFX_Dict", [](const Vorn_FXManage& self) { return program_dict(self.Shader_2DFX_Dict); },
          "{FXID: program or None} for every integer of [Vorn_2DFX.FX_BEGIN, Vorn_2DFX.FX_END) (a copy).")
      .def_property_readonly(
          "Shader_3DFX_Dict", [](const Vorn_FXManage& self) { return program_dict(self.Shader_3DFX_Dict); },
          "{FXID: program or None} for every integer of [Vorn_3DFX.FX_BEGIN, Vorn_3DFX.FX_END) (a copy).")
      .def(
          "CreateShader",
          [](Vorn_FXManage& self, const std::optional<std::string>& vsCode,
             const std::optional<std::string>& psCode) {
            return self.CreateShader(vsCode.value_or(std::string()), psCode.value_or(std::string()));
          },
          py::arg("vsCode"), py::arg("psCode"),
          "Compiles and links two texts into a program and returns its handle; None, and no GL\n"
          "object, when either text is empty or None.")
      .def(
          "GetShader",
          [](const Vorn_FXManage& self, py::handle FXID) -> std::optional<unsigned int> {
            const auto id = fx_key(FXID);
            return id ? self.GetShader(*id) : std::nullopt;
          },
          py::arg("FXID"), "The program of an identifier (2D map first, then 3D), or None.")
      .def(
          "PrintShader",
          [](const Vorn_FXManage& self, py::handle FXID) {
            if (const auto id = fx_key(FXID)) self.PrintShader(*id);
          },
          py::arg("FXID"), "Prints the regenerated source of an identifier; nothing for an unknown one.")
      .def("DiagnoseShaders", &Vorn_FXManage::DiagnoseShaders,
           "Compile and link status with the driver's logs for every program in the maps (a\n"
           "list of FXProgramStatus, 2D first). Diagnostic only; start-up never calls it.");

  register_global("FXManagerInstance",
                  GlobalSlot{[]() -> py::object { return py::cast(FXManagerInstance); },
                             [](py::handle value) {
                               if (value.is_none()) {
                                 FXManagerInstance.reset();
                                 return;
                               }
                               if (!py::isinstance<Vorn_FXManage>(value)) {
                                 const std::string type = py::str(py::type::handle_of(value).attr("__name__"));
                                 throw py::type_error("FXManagerInstance must be a Vorn_FXManage or None, not " + type);
                               }
                               FXManagerInstance = value.cast<std::shared_ptr<Vorn_FXManage>>();
                             },
                             "The one Vorn_FXManage; set by the resource manager."});
}

}  // namespace

void bind_fx_3d(py::module_& m) {
  bind_catalogue(m);
  bind_manager(m);
}

}  // namespace vorn::py_bind
