// Shader generation: the slot assembler Vorn_Shader_Code here; the 3D catalogue, the
// texture units and the program manager in bind_fx_3d.cpp.
#include "bind_common.h"
#include "shader/shader_code.h"

namespace vorn::py_bind {

void bind_fx_3d(py::module_& m);

namespace {

using Code = Vorn_Shader_Code;

struct SlotName {
  const char* name;
  int value;
};

#define VORN_SLOT(name) SlotName{#name, Code::name}
constexpr SlotName kSlots[] = {
    VORN_SLOT(VS_CODE_IN_VERSION), VORN_SLOT(VS_CODE_IN_ATTRIBUTE_POSITION), VORN_SLOT(VS_CODE_IN_ATTRIBUTE_COLOR),
    VORN_SLOT(VS_CODE_IN_ATTRIBUTE_NORMAL), VORN_SLOT(VS_CODE_IN_ATTRIBUTE_TANGENT),
    VORN_SLOT(VS_CODE_IN_ATTRIBUTE_BITANGENT), VORN_SLOT(VS_CODE_IN_ATTRIBUTE_UV),
    VORN_SLOT(VS_CODE_IN_ATTRIBUTE_SKIN), VORN_SLOT(VS_CODE_VARY_POSITION), VORN_SLOT(VS_CODE_VARY_VERTEXCOLOR),
    VORN_SLOT(VS_CODE_VARY_NORMAL), VORN_SLOT(VS_CODE_VARY_BTN), VORN_SLOT(VS_CODE_VARY_UV),
    VORN_SLOT(VS_CODE_VARY_ENVREF_UV), VORN_SLOT(VS_CODE_VARY_DEPTH), VORN_SLOT(VS_CODE_VARY_DIFFUSE),
    VORN_SLOT(VS_CODE_VARY_SHADOWMAP_UV), VORN_SLOT(VS_CODE_VARY_TERRAIN), VORN_SLOT(VS_CODE_VARY_Ocean),
    VORN_SLOT(VS_CODE_VARY_SCREENPOS), VORN_SLOT(VS_CODE_VARY_ALPHA), VORN_SLOT(VS_CODE_UNIFORM_TIME),
    VORN_SLOT(VS_CODE_UNIFORM_MATRIX_MODEL), VORN_SLOT(VS_CODE_UNIFORM_VIEW_MODEL),
    VORN_SLOT(VS_CODE_UNIFORM_PROJ_MODEL), VORN_SLOT(VS_CODE_UNIFORM_DIFFUSE), VORN_SLOT(VS_CODE_UNIFORM_SHADOWMAP),
    VORN_SLOT(VS_CODE_UNIFORM_POINTLIGHT), VORN_SLOT(VS_CODE_UNIFORM_GRASS), VORN_SLOT(VS_CODE_UNIFORM_Ocean),
    VORN_SLOT(VS_CODE_UNIFORM_TEXSCALE), VORN_SLOT(VS_CODE_UNIFORM_EYEPOSITION), VORN_SLOT(VS_CODE_UNIFORM_VAR),
    VORN_SLOT(VS_CODE_TOOL_FUNCTION_REFLECT), VORN_SLOT(VS_CODE_FUNCTION_BEGIN),
    VORN_SLOT(VS_CODE_GENERATE_VARY_POSITION), VORN_SLOT(VS_CODE_GENERATE_VARY_VERTEXCOLOR),
    VORN_SLOT(VS_CODE_GENERATE_VARY_NORMAL), VORN_SLOT(VS_CODE_GENERATE_VARY_BTN),
    VORN_SLOT(VS_CODE_GENERATE_VARY_DIFFUSE), VORN_SLOT(VS_CODE_GENERATE_VARY_SHADOWMAP),
    VORN_SLOT(VS_CODE_GENERATE_VARY_UV), VORN_SLOT(VS_CODE_GENERATE_VARY_ENVREF_UV),
    VORN_SLOT(VS_CODE_GENERATE_VARY_TERRAIN), VORN_SLOT(VS_CODE_GENERATE_VARY_Ocean),
    VORN_SLOT(VS_CODE_GENERATE_GRASS), VORN_SLOT(VS_CODE_GENERATE_SKINPOSITION),
    VORN_SLOT(VS_CODE_GENERATE_OUTPOSITION), VORN_SLOT(VS_CODE_GENERATE_VARY_DEPTH),
    VORN_SLOT(VS_CODE_GENERATE_VARY_SCREENPOS), VORN_SLOT(VS_CODE_FUNCTION_END),
    VORN_SLOT(PS_CODE_IN_VERSION), VORN_SLOT(PS_CODE_VARY_POSITION), VORN_SLOT(PS_CODE_VARY_VERTEXCOLOR),
    VORN_SLOT(PS_CODE_VARY_NORMAL), VORN_SLOT(PS_CODE_VARY_BTN), VORN_SLOT(PS_CODE_VARY_UV),
    VORN_SLOT(PS_CODE_VARY_ENVREF_UV), VORN_SLOT(PS_CODE_VARY_DEPTH), VORN_SLOT(PS_CODE_VARY_DIFFUSE),
    VORN_SLOT(PS_CODE_VARY_SHADOWMAP_UV), VORN_SLOT(PS_CODE_VARY_TERRAIN), VORN_SLOT(PS_CODE_VARY_OCEAN),
    VORN_SLOT(PS_CODE_VARY_SCREENPOS), VORN_SLOT(PS_CODE_VARY_ALPHA), VORN_SLOT(PS_CODE_UNIFORM_TIME),
    VORN_SLOT(PS_CODE_UNIFORM_AMBIENT), VORN_SLOT(PS_CODE_UNIFORM_FOG), VORN_SLOT(PS_CODE_UNIFORM_SUBMESH_COLOR),
    VORN_SLOT(PS_CODE_UNIFORM_POINTLIGHT), VORN_SLOT(PS_CODE_UNIFORM_TEXTURE),
    VORN_SLOT(PS_CODE_UNIFORM_BUMPTEXTURE), VORN_SLOT(PS_CODE_UNIFORM_SHADOWMAP),
    VORN_SLOT(PS_CODE_UNIFORM_ENVREFTEXTURE), VORN_SLOT(PS_CODE_UNIFORM_DIFFUSE),
    VORN_SLOT(PS_CODE_UNIFORM_SPECULAR), VORN_SLOT(PS_CODE_UNIFORM_TERRAIN), VORN_SLOT(PS_CODE_UNIFORM_OCEAN),
    VORN_SLOT(PS_CODE_UNIFORM_EYEPOSITION), VORN_SLOT(PS_CODE_TOOL_FUNCTION_REFLECT),
    VORN_SLOT(PS_CODE_DEFINE_OUT_COLOR), VORN_SLOT(PS_CODE_FUNCTION_BEGIN), VORN_SLOT(PS_CODE_GENERATE_AMBIENTCOLOR),
    VORN_SLOT(PS_CODE_GENERATE_VERTEXCOLOR), VORN_SLOT(PS_CODE_GENERATE_SUBMESH_COLOR),
    VORN_SLOT(PS_CODE_GENERATE_TEXTURECOLOR), VORN_SLOT(PS_CODE_GENERATE_BUMPTEXTURE),
    VORN_SLOT(PS_CODE_GENERATE_SHADOWMAPCOLOR), VORN_SLOT(PS_CODE_GENERATE_ENVREFTEXTURECOLOR),
    VORN_SLOT(PS_CODE_GENERATE_SPECULARCOLOR), VORN_SLOT(PS_CODE_GENERATE_DIFFUSECOLOR),
    VORN_SLOT(PS_CODE_GENERATE_POINTLIGHTCOLOR), VORN_SLOT(PS_CODE_GENERATE_TERRAINTEXTURE),
    VORN_SLOT(PS_CODE_GENERATE_OCEAN), VORN_SLOT(PS_CODE_GENERATE_ADDSPECULARCOLOR),
    VORN_SLOT(PS_CODE_GENERATE_FOG), VORN_SLOT(PS_CODE_GENERATE_SKYBOX), VORN_SLOT(PS_CODE_GENERATE_OUTPOSITION),
    VORN_SLOT(PS_CODE_FUNCTION_END),
};
#undef VORN_SLOT

struct Operation {
  const char* name;
  void (Code::*call)();
  const char* doc;
};

#define VORN_OP(name, doc) Operation{#name, &Code::name, doc}
const Operation kOperations[] = {
    VORN_OP(DisableDepth, "Empties the depth varying and its statement (VS_CODE_VARY_DEPTH, "
                          "VS_CODE_GENERATE_VARY_DEPTH)."),
    VORN_OP(DisableFog, "Empties the fog helper and the fog statement of the pixel side."),
    VORN_OP(SetVSAttribute_Position, "Declares the attribute aPosition (declared, not read)."),
    VORN_OP(SetVSAttribute_Color, "Declares the attribute aColor (declared, not read)."),
    VORN_OP(SetVSAttribute_Normal, "Declares the attribute aNormal (declared, not read)."),
    VORN_OP(SetVSAttribute_Tangent, "Declares the attribute aTangent (declared, not read)."),
    VORN_OP(SetVSAttribute_Bitangent, "Declares the attribute aBitangent (declared, not read)."),
    VORN_OP(SetVSAttribute_UV, "Declares the attribute aTexCoord (declared, not read)."),
    VORN_OP(SetVSAttribute_Skin, "Declares the bone attributes and the 64-matrix palette uBoneMatrixs."),
    VORN_OP(SetVSUniform_Time, "Declares uCurrTime (default 0.0)."),
    VORN_OP(SetVSUniform_ModelMatrix, "Declares uModelMatrix."),
    VORN_OP(SetVSUniform_ViewMatrix, "Declares uViewMatrix."),
    VORN_OP(SetVSUniform_ProjMatrix, "Declares uProjMatrix."),
    VORN_OP(SetVSUniform_Diffuse, "Declares the sun, uSunLight[2]: direction, then colour."),
    VORN_OP(SetVSUniform_TexScale, "Declares uTexScale (default 1.0)."),
    VORN_OP(SetVSUniform_EyePosition, "Declares uEyePosition."),
    VORN_OP(SetVSUniform_ShadowMap, "Declares uShadowMapViewProjectMatrix and uShadowMapDepthBias."),
    VORN_OP(SetVSUniform_PointLight, "Creates the empty point-light slot; the lights are pixel uniforms."),
    VORN_OP(SetVSUniform_Grass, "Declares the swing uniforms uSwingSpeed and uSwingRegion."),
    VORN_OP(SetVSUniform_Ocean, "Declares the wave and bump uniforms and the struct Wave."),
    VORN_OP(SetVSVary_Position, "Declares the varying vPosition."),
    VORN_OP(SetVSVary_Color, "Declares the varying vColor."),
    VORN_OP(SetVSVary_Alpha, "Declares the varying vAlpha."),
    VORN_OP(SetVSVary_Normal, "Declares the varying vNormal."),
    VORN_OP(SetVSVary_BTN, "Declares the varying vBTN (tangent frame)."),
    VORN_OP(SetVSVary_UV, "Declares the varying vTexCoord."),
    VORN_OP(SetVSVary_EnvRefUV, "Declares the varying vEnvRefTexCoord."),
    VORN_OP(SetVSVary_Diffuse, "Declares the varying vSunLightColor."),
    VORN_OP(SetVSVary_ShadowMapUV, "Declares the varying vShadowMapTextureUV."),
    VORN_OP(SetVSVary_ScreenPos, "Declares vScreenPos and writes it from gl_Position."),
    VORN_OP(SetVSVary_Terrain, "Declares the terrain varyings and tileU/tileV (128 units per blend map)."),
    VORN_OP(SetVSVary_TiledMap, "Declares the tiled-map varyings and tileU/tileV (20 units per blend map)."),
    VORN_OP(SetVSVary_Ocean, "Declares the water-surface varyings."),
    VORN_OP(SetVSToolFunc_EnvRefUV, "Declares the helpers Reflect and CalcEnvReflect (sphere-map coordinates)."),
    VORN_OP(GenVSFunCode_WPosition, "Writes vPosition, the world position."),
    VORN_OP(GenVSFunCode_Color, "Writes vColor from gl_Color."),
    VORN_OP(GenVSFunCode_Normal, "Writes vNormal, the normal turned by uModelMatrix."),
    VORN_OP(GenVSFunCode_Normal_Inverse, "Writes vNormal, the untransformed normal."),
    VORN_OP(GenVSFunCode_UV, "Writes vTexCoord from the first texture coordinate."),
    VORN_OP(GenVSFunCode_EnvRefUV, "Writes vEnvRefTexCoord through CalcEnvReflect."),
    VORN_OP(GenVSFunCode_ShadowMap, "Writes vShadowMapTextureUV."),
    VORN_OP(GenVSFunCode_SkinPosition, "Writes the four-bone palette blend and the skinned output position "
                                       "(slot 72, shared with the grass swing)."),
    VORN_OP(GenVSFunCode_Axis, "Writes the default output position."),
    VORN_OP(GenVSFunCode_BTN, "Writes vBTN from a fixed tangent frame."),
    VORN_OP(GenVSFunCode_Diffuse, "Writes vSunLightColor, a half-Lambert sun term."),
    VORN_OP(GenVSFunCode_Ocean, "Writes the two-wave surface; the wave block is stored in slot "
                                "PS_CODE_VARY_OCEAN (11) and so stands ahead of main()."),
    VORN_OP(GenVSFunCode_Terrain, "Writes the terrain blend and texture coordinates."),
    VORN_OP(GenVSFunCode_TiledMap, "Writes the tiled-map coordinates; a normal y below -0.01 marks water."),
    VORN_OP(GenVSFunCode_Grass, "Writes the swung blade vertex and its output position (slot 72)."),
    VORN_OP(GenVSFunCode_SkyBox, "Writes the sky position at the far plane and the cube coordinate."),
    VORN_OP(SetPSVary_Position, "Copies the vertex slot of vPosition (KeyError if never written)."),
    VORN_OP(SetPSVary_VertexColor, "Copies the vertex slot of vColor (KeyError if never written)."),
    VORN_OP(SetPSVary_Alpha, "Copies the vertex slot of vAlpha (KeyError if never written)."),
    VORN_OP(SetPSVary_Normal, "Copies the vertex slot of vNormal (KeyError if never written)."),
    VORN_OP(SetPSVary_BTN, "Copies the vertex slot of vBTN (KeyError if never written)."),
    VORN_OP(SetPSVary_UV, "Copies the vertex slot of vTexCoord (KeyError if never written)."),
    VORN_OP(SetPSVary_Texture_EnvRef, "Copies the vertex slot of vEnvRefTexCoord (KeyError if never written)."),
    VORN_OP(SetPSVary_Diffuse, "Copies the vertex slot of vSunLightColor (KeyError if never written)."),
    VORN_OP(SetPSVary_ShadowMapUV, "Copies the vertex slot of vShadowMapTextureUV (KeyError if never written)."),
    VORN_OP(SetPSVary_Terrain, "Copies the terrain varyings with tileU/tileV (KeyError if never written)."),
    VORN_OP(SetPSVary_TiledMap, "Copies the tiled-map varyings with tileU/tileV (KeyError if never written)."),
    VORN_OP(SetPSVary_Ocean, "Copies the water-surface varyings (KeyError if never written)."),
    VORN_OP(SetPSVary_ScreenPos, "Declares the varying vScreenPos."),
    VORN_OP(SetPSUniform_Time, "Declares uCurrTime (default 0.0)."),
    VORN_OP(SetPSUni_EyePosition, "Declares uEyePosition."),
    VORN_OP(SetPSUni_PointLight, "Declares up to three point lights."),
    VORN_OP(SetPSUni_ShadowMap, "Declares the shadow map (texture1) and its 3x3 filter GetShadowMapColor."),
    VORN_OP(SetPSUni_Specular, "Declares uSunLight, uSpecularColor (w is the exponent) and uEyePosition."),
    VORN_OP(SetPSUni_Terrain, "Declares five terrain samplers and uTextureDensity[5]."),
    VORN_OP(SetPSUni_TiledMap, "Declares eight tiled-map samplers and uTextureDensity[8]."),
    VORN_OP(SetPSUni_Ocean, "Declares the water constants and helpers."),
    VORN_OP(SetPSUni_BumpTexture, "Writes nothing; kept for the catalogue's call lists."),
    VORN_OP(SetPSUni_EnvRefUV, "Writes nothing; kept for the catalogue's call lists."),
    VORN_OP(SetPSUni_Diffuse, "Writes nothing; kept for the catalogue's call lists."),
    VORN_OP(GenPSToolFunc_Reflect, "Declares the helper Reflect."),
    VORN_OP(GenPSFunCode_VertexColor, "Multiplies by the vertex colour."),
    VORN_OP(GenPSFunCode_Texture, "Multiplies by texture0 at vTexCoord."),
    VORN_OP(GenPSFunCode_Texture_AlphaTest, "Multiplies by texture0 and discards below alpha 0.7."),
    VORN_OP(GenPSFunCode_Diffuse, "Multiplies by vSunLightColor."),
    VORN_OP(GenPSFunCode_ShadowMap, "Multiplies by the filtered shadow term."),
    VORN_OP(GenPSFunCode_PointLight, "Multiplies by the point-light sum over a 0.5 grey."),
    VORN_OP(GenPSFunCode_Ocean, "Writes the water surface (bump, refraction, reflection, Fresnel)."),
    VORN_OP(GenPSFunCode_Terrain, "Multiplies by the mask-blended terrain layers."),
    VORN_OP(GenPSFunCode_TiledMap, "Multiplies by the tiled-map layers; water cells scroll with time."),
    VORN_OP(GenPSFunCode_BumpTexture, "Writes nothing; kept for the catalogue's call lists."),
    VORN_OP(GenPSFunCode_EnvRef, "Writes nothing; kept for the catalogue's call lists."),
};
#undef VORN_OP

}  // namespace

void bind_shader(py::module_& m) {
  py::class_<Code, std::shared_ptr<Code>> code(
      m, "Vorn_Shader_Code",
      "GLSL assembled from numbered slots. VSCode_Dict and PSCode_Dict map a slot number to its lines;\n"
      "the text of a side is the lines of every slot in ascending order. Operations replace or extend\n"
      "slots, so the order of the calls never changes where a line lands.");
  for (const SlotName& slot : kSlots) code.attr(slot.name) = slot.value;

  code.def(py::init<>(), "Fills both sides with the skeleton every program starts from.")
      .def_property(
          "VSCode_Dict", [](const Code& self) { return self.VSCode_Dict; },
          [](Code& self, ShaderSlots slots) { self.VSCode_Dict = std::move(slots); },
          "Vertex slots: {slot: [lines]}. Reading gives a copy; assign a whole dict to replace them.")
      .def_property(
          "PSCode_Dict", [](const Code& self) { return self.PSCode_Dict; },
          [](Code& self, ShaderSlots slots) { self.PSCode_Dict = std::move(slots); },
          "Pixel slots: {slot: [lines]}. Reading gives a copy; assign a whole dict to replace them.")
      .def("GenVSCode", &Code::GenVSCode,
           "The vertex text: every slot's lines in slot order, each ending in a newline.")
      .def("GenPSCode", &Code::GenPSCode, "The pixel text, by the same rule.")
      .def("PrintVSCode", &Code::PrintVSCode, "Prints the vertex lines as one list (debugging aid).")
      .def("SetVSAttribute_Version", &Code::SetVSAttribute_Version, py::arg("version"),
           "Replaces the version line with '#version ' + version.")
      .def("AddVSUniform_Var", &Code::AddVSUniform_Var, py::arg("var_type"), py::arg("var_name"),
           "Appends 'uniform   <var_type> <var_name>;' to VS_CODE_UNIFORM_VAR.")
      .def("SetPSUni_Texture", &Code::SetPSUni_Texture, py::arg("texIndex") = 0,
           "Appends a sampler2D declaration 'texture<texIndex>'.")
      .def("SetPSUni_CubeTexture", &Code::SetPSUni_CubeTexture, py::arg("texIndex") = 0,
           "Appends a samplerCube declaration 'texture<texIndex>'.")
      .def("GenPSFunCode_SkyBoxRef", &Code::GenPSFunCode_SkyBoxRef, py::arg("texIndex") = 0,
           "Multiplies by the cube lookup of texture<texIndex> at vEnvRefTexCoord.")
      .def("GenPSFunCode_Texture_EnvRef", &Code::GenPSFunCode_Texture_EnvRef, py::arg("texIndex") = 0,
           "Multiplies by the reflection lookup of texture<texIndex> (after fog).")
      .def(
          "GenPSFunCode_Specular",
          [](Code& self, py::handle addMode) {
            // Only a value equal to True adds the highlight; anything else draws it alone.
            self.GenPSFunCode_Specular(addMode.equal(py::bool_(true)));
          },
          py::arg("addMode") = true,
          "Writes the specular highlight: added to the colour when addMode is True, alone otherwise.");
  for (const Operation& op : kOperations) code.def(op.name, op.call, op.doc);

  bind_fx_3d(m);
}

}  // namespace vorn::py_bind
