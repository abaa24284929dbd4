#pragma once
// Vorn_3DFX: the catalogue of programs scene nodes are drawn with. Each program is a
// short list of calls on a Vorn_Shader_Code. The vertex operation of a program makes a
// new assembler in shaderCode and the pixel operation continues on it (it copies the
// vertex varyings and keeps what the vertex side disabled), so GetVS(FXID) must come
// right before GetPS(FXID) for the same identifier.
#include <memory>
#include <optional>
#include <string>

#include "shader/shader_code.h"

namespace vorn {

class Vorn_3DFX {
 public:
  // Identifiers; FX_BEGIN, FX_END and the rows without texts name no program.
  static constexpr int FX_BEGIN = 300;
  static constexpr int FX_DEPTH = 301;
  static constexpr int FX_XYZ = 302;
  static constexpr int FX_COLOR = 303;
  static constexpr int FX_NORMAL = 304;
  static constexpr int FX_NORMAL_VIEW_INVERSE = 305;
  static constexpr int FX_SPECULAR = 306;
  static constexpr int FX_DIFFUSE = 310;
  static constexpr int FX_DIFFUSE_SPECULAR = 311;
  static constexpr int FX_DIFFUSE_ENVREFLECT = 312;
  static constexpr int FX_TEXTURE = 313;
  static constexpr int FX_POINTSPRITE = 314;
  static constexpr int FX_TEXTURE_SHADOWMAP = 315;
  static constexpr int FX_DIFFUSE_TEXTURE = 316;
  static constexpr int FX_DIFFUSE_TEXTURE_SPECULAR = 317;
  static constexpr int FX_DIFFUSE_TEXTURE_BUMP = 318;
  static constexpr int FX_DIFFUSE_TEXTURE_SHADOWMAP = 319;
  static constexpr int FX_DIFFUSE_TEXTURE_ENVREFLECT = 320;
  static constexpr int FX_DIFFUSE_TEXTURE_ENVREFLECT_SPECULAR = 321;
  static constexpr int FX_DIFFUSE_TEXTURE_PTLIGHT = 323;
  static constexpr int FX_DIFFUSE_TEXTURE_SPECULAR_PTLIGHT = 324;
  static constexpr int FX_SKYBOX = 330;
  static constexpr int FX_SKYSPHERE = 331;
  static constexpr int FX_COLOR_SKIN = 340;
  static constexpr int FX_DIFFUSE_SKIN = 341;
  static constexpr int FX_DIFFUSE_SPECULAR_SKIN = 342;
  static constexpr int FX_TEXTURE_SKIN = 343;
  static constexpr int FX_DIFFUSE_TEXTURE_SKIN = 344;
  static constexpr int FX_DIFFUSE_TEXTURE_SPECULAR_SKIN = 345;
  static constexpr int FX_DIFFUSE_TEXTURE_BUMP_SKIN = 346;
  static constexpr int FX_DIFFUSE_TEXTURE_PTLIGHT_SKIN = 348;
  static constexpr int FX_GRASS = 370;
  static constexpr int FX_OCEAN = 371;
  static constexpr int FX_TERRAIN = 372;
  static constexpr int FX_TILEDMAP = 373;
  static constexpr int FX_AXIS = 375;
  static constexpr int FX_END = 380;

  // Unused; kept as the catalogue's public field.
  ShaderSlots VSCode_Dict;
  // The assembler of the program in work; none until the first vertex operation.
  std::shared_ptr<Vorn_Shader_Code> shaderCode;

  // Text of an identifier, or nothing for a number without that side.
  std::optional<std::string> GetVS(int FXID);
  std::optional<std::string> GetPS(int FXID);

  // Name of a catalogue identifier ("FX_DIFFUSE"); nullptr for a number that has none.
  static const char* IdentifierName(int FXID);

  // Vertex operations: each starts a new assembler.
  std::string GetVS_Depth();
  std::string GetVS_XYZ();
  std::string GetVS_Color();
  std::string GetVS_Normal();
  std::string GetVS_Normal_ViewInverse();
  std::string GetVS_Diffuse();
  std::string GetVS_Specular();
  std::string GetVS_Diffuse_Specular();
  std::string GetVS_Diffuse_EnvReflect();
  std::string GetVS_Texture();
  std::string GetVS_PointSprite();
  std::string GetVS_Texture_ShadowMap();
  std::string GetVS_Diffuse_Texture_EnvReflect();
  std::string GetVS_Diffuse_Texture();
  std::string GetVS_Diffuse_Texture_Bump();
  std::string GetVS_Diffuse_Texture_ShadowMap();
  std::string GetVS_Diffuse_Texture_Specular();
  std::string GetVS_Diffuse_Texture_EnvReflect_Specular();
  std::string GetVS_Diffuse_Texture_PTLight();
  std::string GetVS_Diffuse_Texture_Specular_PTLight();
  std::string GetVS_SkyBox();
  std::string GetVS_SkySphere();
  std::string GetVS_Diffuse_Skin();
  std::string GetVS_Diffuse_Specular_Skin();
  std::string GetVS_Texture_Skin();
  std::string GetVS_Diffuse_Texture_Skin();
  std::string GetVS_Diffuse_Texture_Specular_Skin();
  std::string GetVS_Grass();
  std::string GetVS_Ocean();
  std::string GetVS_Terrain();
  std::string GetVS_TiledMap();
  std::string GetVS_Axis();

  // Pixel operations with a fixed text; they ignore shaderCode.
  std::string GetPS_Depth();
  std::string GetPS_XYZ();
  std::string GetPS_Color();
  std::string GetPS_Normal();
  std::string GetPS_Normal_Inverse();

  // Pixel operations built from fragments; each continues on shaderCode and throws
  // AttributeError when no vertex operation ran before.
  std::string GetPS_Diffuse();
  std::string GetPS_Specular();
  std::string GetPS_Diffuse_Specular();
  std::string GetPS_Texture();
  std::string GetPS_PointSprite();
  std::string GetPS_Texture_ShadowMap();
  std::string GetPS_Ocean();
  std::string GetPS_Grass();
  std::string GetPS_Diffuse_Texture();
  std::string GetPS_Diffuse_Texture_Bump();
  std::string GetPS_Diffuse_Texture_EnvReflect();
  std::string GetPS_Diffuse_EnvReflect();
  std::string GetPS_Diffuse_Texture_Specular();
  std::string GetPS_Diffuse_Texture_EnvReflect_Specular();
  std::string GetPS_Diffuse_Texture_PTLight();
  std::string GetPS_Diffuse_Texture_Specular_PTLight();
  std::string GetPS_SkyBox();
  std::string GetPS_SkySphere();
  std::string GetPS_Terrain();
  std::string GetPS_TiledMap();

 private:
  Vorn_Shader_Code& NewCode();
  Vorn_Shader_Code& CurrentCode(const char* operation);
};

}  // namespace vorn
