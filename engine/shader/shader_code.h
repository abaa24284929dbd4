#pragma once
// Vorn_Shader_Code: GLSL written into numbered slots. Each side of a program (vertex,
// pixel) is a map from slot number to a short list of lines; the text is the lines of
// every slot in ascending slot order. Operations only replace or extend slots, so the
// order of the calls that build a program never changes where its lines land.
#include <map>
#include <string>
#include <vector>

namespace vorn {

using ShaderLines = std::vector<std::string>;
using ShaderSlots = std::map<int, ShaderLines>;

class Vorn_Shader_Code {
 public:
  // Vertex slots: version, attributes, varyings, uniforms, helpers, main() and its body.
  static constexpr int VS_CODE_IN_VERSION = 0;
  static constexpr int VS_CODE_IN_ATTRIBUTE_POSITION = 1;
  static constexpr int VS_CODE_IN_ATTRIBUTE_COLOR = 2;
  static constexpr int VS_CODE_IN_ATTRIBUTE_NORMAL = 3;
  static constexpr int VS_CODE_IN_ATTRIBUTE_TANGENT = 4;
  static constexpr int VS_CODE_IN_ATTRIBUTE_BITANGENT = 5;
  static constexpr int VS_CODE_IN_ATTRIBUTE_UV = 6;
  static constexpr int VS_CODE_IN_ATTRIBUTE_SKIN = 7;
  static constexpr int VS_CODE_VARY_POSITION = 10;
  static constexpr int VS_CODE_VARY_VERTEXCOLOR = 11;
  static constexpr int VS_CODE_VARY_NORMAL = 12;
  static constexpr int VS_CODE_VARY_BTN = 13;
  static constexpr int VS_CODE_VARY_UV = 14;
  static constexpr int VS_CODE_VARY_ENVREF_UV = 15;
  static constexpr int VS_CODE_VARY_DEPTH = 16;
  static constexpr int VS_CODE_VARY_DIFFUSE = 17;
  static constexpr int VS_CODE_VARY_SHADOWMAP_UV = 18;
  static constexpr int VS_CODE_VARY_TERRAIN = 19;
  static constexpr int VS_CODE_VARY_Ocean = 20;
  static constexpr int VS_CODE_VARY_SCREENPOS = 21;
  static constexpr int VS_CODE_VARY_ALPHA = 22;
  static constexpr int VS_CODE_UNIFORM_TIME = 30;
  static constexpr int VS_CODE_UNIFORM_MATRIX_MODEL = 31;
  static constexpr int VS_CODE_UNIFORM_VIEW_MODEL = 32;
  static constexpr int VS_CODE_UNIFORM_PROJ_MODEL = 33;
  static constexpr int VS_CODE_UNIFORM_DIFFUSE = 34;
  static constexpr int VS_CODE_UNIFORM_SHADOWMAP = 35;
  static constexpr int VS_CODE_UNIFORM_POINTLIGHT = 36;
  static constexpr int VS_CODE_UNIFORM_GRASS = 37;
  static constexpr int VS_CODE_UNIFORM_Ocean = 38;
  static constexpr int VS_CODE_UNIFORM_TEXSCALE = 39;
  static constexpr int VS_CODE_UNIFORM_EYEPOSITION = 40;
  static constexpr int VS_CODE_UNIFORM_VAR = 41;
  static constexpr int VS_CODE_TOOL_FUNCTION_REFLECT = 50;
  static constexpr int VS_CODE_FUNCTION_BEGIN = 60;
  static constexpr int VS_CODE_GENERATE_VARY_POSITION = 61;
  static constexpr int VS_CODE_GENERATE_VARY_VERTEXCOLOR = 62;
  static constexpr int VS_CODE_GENERATE_VARY_NORMAL = 63;
  static constexpr int VS_CODE_GENERATE_VARY_BTN = 64;
  static constexpr int VS_CODE_GENERATE_VARY_DIFFUSE = 66;
  static constexpr int VS_CODE_GENERATE_VARY_SHADOWMAP = 67;
  static constexpr int VS_CODE_GENERATE_VARY_UV = 68;
  static constexpr int VS_CODE_GENERATE_VARY_ENVREF_UV = 69;
  static constexpr int VS_CODE_GENERATE_VARY_TERRAIN = 70;
  static constexpr int VS_CODE_GENERATE_VARY_Ocean = 71;
  // Grass swing and skinning share one slot on purpose: a program gets one or the other.
  static constexpr int VS_CODE_GENERATE_GRASS = 72;
  static constexpr int VS_CODE_GENERATE_SKINPOSITION = 72;
  static constexpr int VS_CODE_GENERATE_OUTPOSITION = 74;
  static constexpr int VS_CODE_GENERATE_VARY_DEPTH = 75;
  static constexpr int VS_CODE_GENERATE_VARY_SCREENPOS = 76;
  static constexpr int VS_CODE_FUNCTION_END = 77;

  // Pixel slots.
  static constexpr int PS_CODE_IN_VERSION = 0;
  static constexpr int PS_CODE_VARY_POSITION = 1;
  static constexpr int PS_CODE_VARY_VERTEXCOLOR = 2;
  static constexpr int PS_CODE_VARY_NORMAL = 3;
  static constexpr int PS_CODE_VARY_BTN = 4;
  static constexpr int PS_CODE_VARY_UV = 5;
  static constexpr int PS_CODE_VARY_ENVREF_UV = 6;
  static constexpr int PS_CODE_VARY_DEPTH = 7;
  static constexpr int PS_CODE_VARY_DIFFUSE = 8;
  static constexpr int PS_CODE_VARY_SHADOWMAP_UV = 9;
  static constexpr int PS_CODE_VARY_TERRAIN = 10;
  // The ocean's wave block is stored on the vertex side under this pixel slot, which puts
  // it among the vertex varyings (slot 11), ahead of main().
  static constexpr int PS_CODE_VARY_OCEAN = 11;
  static constexpr int PS_CODE_VARY_SCREENPOS = 12;
  static constexpr int PS_CODE_VARY_ALPHA = 13;
  static constexpr int PS_CODE_UNIFORM_TIME = 20;
  static constexpr int PS_CODE_UNIFORM_AMBIENT = 21;
  static constexpr int PS_CODE_UNIFORM_FOG = 22;
  static constexpr int PS_CODE_UNIFORM_SUBMESH_COLOR = 23;
  static constexpr int PS_CODE_UNIFORM_POINTLIGHT = 24;
  static constexpr int PS_CODE_UNIFORM_TEXTURE = 25;
  static constexpr int PS_CODE_UNIFORM_BUMPTEXTURE = 26;
  static constexpr int PS_CODE_UNIFORM_SHADOWMAP = 27;
  static constexpr int PS_CODE_UNIFORM_ENVREFTEXTURE = 28;
  static constexpr int PS_CODE_UNIFORM_DIFFUSE = 29;
  static constexpr int PS_CODE_UNIFORM_SPECULAR = 30;
  static constexpr int PS_CODE_UNIFORM_TERRAIN = 31;
  static constexpr int PS_CODE_UNIFORM_OCEAN = 32;
  static constexpr int PS_CODE_UNIFORM_EYEPOSITION = 33;
  static constexpr int PS_CODE_TOOL_FUNCTION_REFLECT = 40;
  static constexpr int PS_CODE_DEFINE_OUT_COLOR = 50;
  static constexpr int PS_CODE_FUNCTION_BEGIN = 51;
  static constexpr int PS_CODE_GENERATE_AMBIENTCOLOR = 52;
  static constexpr int PS_CODE_GENERATE_VERTEXCOLOR = 53;
  static constexpr int PS_CODE_GENERATE_SUBMESH_COLOR = 54;
  static constexpr int PS_CODE_GENERATE_TEXTURECOLOR = 55;
  static constexpr int PS_CODE_GENERATE_BUMPTEXTURE = 56;
  static constexpr int PS_CODE_GENERATE_SHADOWMAPCOLOR = 57;
  static constexpr int PS_CODE_GENERATE_ENVREFTEXTURECOLOR = 58;
  static constexpr int PS_CODE_GENERATE_SPECULARCOLOR = 59;
  static constexpr int PS_CODE_GENERATE_DIFFUSECOLOR = 60;
  static constexpr int PS_CODE_GENERATE_POINTLIGHTCOLOR = 61;
  static constexpr int PS_CODE_GENERATE_TERRAINTEXTURE = 62;
  static constexpr int PS_CODE_GENERATE_OCEAN = 63;
  static constexpr int PS_CODE_GENERATE_ADDSPECULARCOLOR = 64;
  static constexpr int PS_CODE_GENERATE_FOG = 65;
  static constexpr int PS_CODE_GENERATE_SKYBOX = 66;
  static constexpr int PS_CODE_GENERATE_OUTPOSITION = 67;
  static constexpr int PS_CODE_FUNCTION_END = 68;

  ShaderSlots VSCode_Dict;
  ShaderSlots PSCode_Dict;

  // Fills both sides with the skeleton every program starts from.
  Vorn_Shader_Code();

  // Texts: the lines of every slot in ascending order, each followed by a newline.
  std::string GenVSCode() const;
  std::string GenPSCode() const;
  // Prints the vertex lines as one list, a debugging aid.
  void PrintVSCode() const;

  void DisableDepth();
  void DisableFog();

  // Vertex inputs.
  void SetVSAttribute_Version(const std::string& version);
  void SetVSAttribute_Position();
  void SetVSAttribute_Color();
  void SetVSAttribute_Normal();
  void SetVSAttribute_Tangent();
  void SetVSAttribute_Bitangent();
  void SetVSAttribute_UV();
  void SetVSAttribute_Skin();

  // Vertex uniforms.
  void AddVSUniform_Var(const std::string& var_type, const std::string& var_name);
  void SetVSUniform_Time();
  void SetVSUniform_ModelMatrix();
  void SetVSUniform_ViewMatrix();
  void SetVSUniform_ProjMatrix();
  void SetVSUniform_Diffuse();
  void SetVSUniform_TexScale();
  void SetVSUniform_EyePosition();
  void SetVSUniform_ShadowMap();
  void SetVSUniform_PointLight();
  void SetVSUniform_Grass();
  void SetVSUniform_Ocean();

  // Vertex varyings.
  void SetVSVary_Position();
  void SetVSVary_Color();
  void SetVSVary_Alpha();
  void SetVSVary_Normal();
  void SetVSVary_BTN();
  void SetVSVary_UV();
  void SetVSVary_EnvRefUV();
  void SetVSVary_Diffuse();
  void SetVSVary_ShadowMapUV();
  void SetVSVary_ScreenPos();
  void SetVSVary_Terrain();
  void SetVSVary_TiledMap();
  void SetVSVary_Ocean();

  // Vertex helper functions.
  void SetVSToolFunc_EnvRefUV();

  // Vertex statements inside main().
  void GenVSFunCode_WPosition();
  void GenVSFunCode_Color();
  void GenVSFunCode_Normal();
  void GenVSFunCode_Normal_Inverse();
  void GenVSFunCode_UV();
  void GenVSFunCode_EnvRefUV();
  void GenVSFunCode_ShadowMap();
  void GenVSFunCode_SkinPosition();
  void GenVSFunCode_Axis();
  void GenVSFunCode_BTN();
  void GenVSFunCode_Diffuse();
  void GenVSFunCode_Ocean();
  // Moves the wave block that GenVSFunCode_Ocean leaves ahead of main() to the top of
  // main()'s body, where its statements are legal GLSL; call it right after
  // GenVSFunCode_Ocean (slot 11 then holds the wave block only). Nothing happens when
  // slot 11 is absent.
  void MoveVSWaveBlockIntoMain();
  void GenVSFunCode_Terrain();
  void GenVSFunCode_TiledMap();
  void GenVSFunCode_Grass();
  void GenVSFunCode_SkyBox();

  // Pixel varyings: each copies the matching vertex slot, which must exist (KeyError).
  void SetPSVary_Position();
  void SetPSVary_VertexColor();
  void SetPSVary_Alpha();
  void SetPSVary_Normal();
  void SetPSVary_BTN();
  void SetPSVary_UV();
  void SetPSVary_Texture_EnvRef();
  void SetPSVary_Diffuse();
  void SetPSVary_ShadowMapUV();
  void SetPSVary_Terrain();
  void SetPSVary_TiledMap();
  void SetPSVary_Ocean();
  void SetPSVary_ScreenPos();

  // Pixel uniforms.
  void SetPSUniform_Time();
  void SetPSUni_EyePosition();
  void SetPSUni_Texture(int texIndex = 0);
  void SetPSUni_CubeTexture(int texIndex = 0);
  void SetPSUni_PointLight();
  void SetPSUni_ShadowMap();
  void SetPSUni_Specular();
  void SetPSUni_Terrain();
  void SetPSUni_TiledMap();
  void SetPSUni_Ocean();
  // Kept so that the catalogue's call lists read alike; they write nothing.
  void SetPSUni_BumpTexture() {}
  void SetPSUni_EnvRefUV() {}
  void SetPSUni_Diffuse() {}

  // Pixel helper functions.
  void GenPSToolFunc_Reflect();

  // Pixel statements inside main().
  void GenPSFunCode_VertexColor();
  void GenPSFunCode_Texture();
  void GenPSFunCode_Texture_AlphaTest();
  void GenPSFunCode_Diffuse();
  void GenPSFunCode_SkyBoxRef(int texIndex = 0);
  void GenPSFunCode_Texture_EnvRef(int texIndex = 0);
  void GenPSFunCode_Specular(bool addMode = true);
  void GenPSFunCode_ShadowMap();
  void GenPSFunCode_PointLight();
  void GenPSFunCode_Ocean();
  void GenPSFunCode_Terrain();
  void GenPSFunCode_TiledMap();
  // Kept so that the catalogue's call lists read alike; they write nothing.
  void GenPSFunCode_BumpTexture() {}
  void GenPSFunCode_EnvRef() {}

 private:
  // Copies a vertex slot into a pixel slot; a vertex slot never written is a KeyError.
  void CopyVaryToPS(int vsSlot, int psSlot, const char* operation);
};

}  // namespace vorn
