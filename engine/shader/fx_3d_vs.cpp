// Vertex operations of Vorn_3DFX: each program's list of calls on a fresh assembler.
#include "shader/fx_3d.h"

namespace vorn {

std::string Vorn_3DFX::GetVS_Depth() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_XYZ() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSVary_Position();
  code.GenVSFunCode_WPosition();
  code.DisableDepth();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Color() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSVary_Color();
  code.GenVSFunCode_Color();
  code.DisableDepth();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Normal() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Normal();
  code.SetVSVary_Normal();
  code.GenVSFunCode_Normal();
  code.DisableDepth();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Normal_ViewInverse() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Normal();
  code.SetVSVary_Normal();
  code.SetVSUniform_ViewMatrix();
  code.GenVSFunCode_Normal_Inverse();
  code.DisableDepth();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Diffuse() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Normal();
  code.SetVSVary_Normal();
  code.SetVSVary_Diffuse();
  code.SetVSUniform_Diffuse();
  code.GenVSFunCode_Diffuse();
  code.DisableFog();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Specular() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Normal();
  code.SetVSVary_Position();
  code.SetVSVary_Normal();
  code.SetVSVary_Diffuse();
  code.SetVSUniform_Diffuse();
  code.GenVSFunCode_WPosition();
  code.GenVSFunCode_Normal();
  code.GenVSFunCode_Diffuse();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Diffuse_Specular() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Normal();
  code.SetVSVary_Position();
  code.SetVSVary_Normal();
  code.SetVSVary_Diffuse();
  code.SetVSUniform_Diffuse();
  code.GenVSFunCode_WPosition();
  code.GenVSFunCode_Normal();
  code.GenVSFunCode_Diffuse();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Diffuse_EnvReflect() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Normal();
  code.SetVSVary_Position();
  code.SetVSVary_Normal();
  code.SetVSVary_Diffuse();
  code.SetVSVary_EnvRefUV();
  code.SetVSUniform_Diffuse();
  code.SetVSToolFunc_EnvRefUV();
  code.GenVSFunCode_WPosition();
  code.GenVSFunCode_Normal();
  code.GenVSFunCode_EnvRefUV();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Texture() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_UV();
  code.SetVSVary_UV();
  code.GenVSFunCode_UV();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_PointSprite() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Color();
  code.SetVSAttribute_UV();
  code.SetVSVary_Color();
  code.SetVSVary_UV();
  code.GenVSFunCode_Color();
  code.GenVSFunCode_UV();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Texture_ShadowMap() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_UV();
  code.SetVSVary_UV();
  code.SetVSVary_ShadowMapUV();
  code.GenVSFunCode_WPosition();
  code.GenVSFunCode_UV();
  code.GenVSFunCode_ShadowMap();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Diffuse_Texture_EnvReflect() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_UV();
  code.SetVSVary_Position();
  code.SetVSVary_Normal();
  code.SetVSVary_UV();
  code.SetVSVary_EnvRefUV();
  code.SetVSVary_Diffuse();
  code.SetVSUniform_Diffuse();
  code.SetVSToolFunc_EnvRefUV();
  code.GenVSFunCode_WPosition();
  code.GenVSFunCode_Normal();
  code.GenVSFunCode_UV();
  code.GenVSFunCode_EnvRefUV();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Diffuse_Texture() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Normal();
  code.SetVSAttribute_UV();
  code.SetVSVary_UV();
  code.SetVSVary_Diffuse();
  code.SetVSUniform_Diffuse();
  code.GenVSFunCode_Diffuse();
  code.GenVSFunCode_UV();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Diffuse_Texture_Bump() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Normal();
  code.SetVSAttribute_Tangent();
  code.SetVSAttribute_Bitangent();
  code.SetVSAttribute_UV();
  code.SetVSVary_UV();
  code.SetVSVary_Diffuse();
  code.SetVSVary_BTN();
  code.SetVSVary_Diffuse();
  code.SetVSUniform_Diffuse();
  code.GenVSFunCode_Diffuse();
  code.GenVSFunCode_UV();
  code.GenVSFunCode_BTN();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Diffuse_Texture_ShadowMap() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Normal();
  code.SetVSAttribute_UV();
  code.SetVSVary_UV();
  code.SetVSVary_Diffuse();
  code.SetVSUniform_Diffuse();
  code.GenVSFunCode_Diffuse();
  code.GenVSFunCode_UV();
  code.GenVSFunCode_ShadowMap();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Diffuse_Texture_Specular() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Normal();
  code.SetVSAttribute_UV();
  code.SetVSVary_Position();
  code.SetVSVary_Normal();
  code.SetVSVary_UV();
  code.SetVSVary_Diffuse();
  code.SetVSUniform_Diffuse();
  code.GenVSFunCode_WPosition();
  code.GenVSFunCode_Normal();
  code.GenVSFunCode_Diffuse();
  code.GenVSFunCode_UV();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Diffuse_Texture_EnvReflect_Specular() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_UV();
  code.SetVSVary_Position();
  code.SetVSVary_Normal();
  code.SetVSVary_UV();
  code.SetVSVary_Diffuse();
  code.SetVSVary_EnvRefUV();
  code.SetVSUniform_Diffuse();
  code.SetVSUniform_EyePosition();
  code.SetVSToolFunc_EnvRefUV();
  code.GenVSFunCode_WPosition();
  code.GenVSFunCode_Normal();
  code.GenVSFunCode_Diffuse();
  code.GenVSFunCode_UV();
  code.GenVSFunCode_EnvRefUV();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Diffuse_Texture_PTLight() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Normal();
  code.SetVSAttribute_UV();
  code.SetVSVary_Position();
  code.SetVSVary_UV();
  code.SetVSVary_Diffuse();
  code.SetVSUniform_Diffuse();
  code.GenVSFunCode_WPosition();
  code.GenVSFunCode_Diffuse();
  code.GenVSFunCode_UV();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Diffuse_Texture_Specular_PTLight() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Normal();
  code.SetVSAttribute_UV();
  code.SetVSVary_Position();
  code.SetVSVary_Normal();
  code.SetVSVary_UV();
  code.SetVSVary_Diffuse();
  code.SetVSUniform_Diffuse();
  code.GenVSFunCode_WPosition();
  code.GenVSFunCode_Normal();
  code.GenVSFunCode_Diffuse();
  code.GenVSFunCode_UV();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_SkyBox() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Normal();
  code.SetVSAttribute_UV();
  code.SetVSVary_Position();
  code.SetVSVary_Normal();
  code.SetVSVary_EnvRefUV();
  code.GenVSFunCode_Normal();
  code.GenVSFunCode_SkyBox();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_SkySphere() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_UV();
  code.SetVSVary_UV();
  code.GenVSFunCode_UV();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Diffuse_Skin() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Normal();
  code.SetVSAttribute_Skin();
  code.SetVSVary_Diffuse();
  code.GenVSFunCode_Diffuse();
  code.GenVSFunCode_SkinPosition();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Diffuse_Specular_Skin() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Normal();
  code.SetVSAttribute_Skin();
  code.SetVSVary_Position();
  code.SetVSVary_Normal();
  code.SetVSVary_Diffuse();
  code.GenVSFunCode_WPosition();
  code.GenVSFunCode_Normal();
  code.GenVSFunCode_Diffuse();
  code.GenVSFunCode_SkinPosition();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Texture_Skin() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_UV();
  code.SetVSAttribute_Skin();
  code.SetVSVary_UV();
  code.GenVSFunCode_UV();
  code.GenVSFunCode_SkinPosition();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Diffuse_Texture_Skin() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Normal();
  code.SetVSAttribute_UV();
  code.SetVSAttribute_Skin();
  code.SetVSVary_UV();
  code.SetVSVary_Diffuse();
  code.SetVSUniform_Diffuse();
  code.GenVSFunCode_UV();
  code.GenVSFunCode_Diffuse();
  code.GenVSFunCode_SkinPosition();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Diffuse_Texture_Specular_Skin() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSAttribute_Normal();
  code.SetVSAttribute_UV();
  code.SetVSAttribute_Skin();
  code.SetVSVary_Position();
  code.SetVSVary_Normal();
  code.SetVSVary_UV();
  code.SetVSVary_Diffuse();
  code.SetVSUniform_Diffuse();
  code.GenVSFunCode_WPosition();
  code.GenVSFunCode_Normal();
  code.GenVSFunCode_UV();
  code.GenVSFunCode_Diffuse();
  code.GenVSFunCode_SkinPosition();
  return code.GenVSCode();
}

// The swing reads uCurrTime and the diffuse term uSunLight; both are declared here so
// that strict drivers (Mesa) compile the program.
std::string Vorn_3DFX::GetVS_Grass() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSUniform_Grass();
  code.SetVSUniform_Time();
  code.SetVSUniform_Diffuse();
  code.SetVSVary_UV();
  code.SetVSVary_Diffuse();
  code.GenVSFunCode_Grass();
  code.GenVSFunCode_Diffuse();
  code.GenVSFunCode_UV();
  return code.GenVSCode();
}

// The waves read uCurrTime, uTexScale and uEyePosition, declared here, and their
// statements run inside main() rather than where GenVSFunCode_Ocean leaves them, so
// that strict drivers (Mesa) compile the program.
std::string Vorn_3DFX::GetVS_Ocean() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSUniform_Ocean();
  code.SetVSUniform_Time();
  code.SetVSUniform_TexScale();
  code.SetVSUniform_EyePosition();
  code.SetVSVary_Position();
  code.SetVSVary_Ocean();
  code.GenVSFunCode_Ocean();
  code.MoveVSWaveBlockIntoMain();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Terrain() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSUniform_TexScale();
  code.SetVSVary_Terrain();
  code.SetVSVary_Diffuse();
  code.SetVSUniform_Diffuse();
  code.GenVSFunCode_Diffuse();
  code.GenVSFunCode_Terrain();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_TiledMap() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSVary_Position();
  code.SetVSVary_UV();
  code.SetVSVary_TiledMap();
  code.SetVSVary_Diffuse();
  code.SetVSVary_Alpha();
  code.SetVSUniform_Diffuse();
  code.GenVSFunCode_WPosition();
  code.GenVSFunCode_Diffuse();
  code.GenVSFunCode_UV();
  code.GenVSFunCode_TiledMap();
  return code.GenVSCode();
}

std::string Vorn_3DFX::GetVS_Axis() {
  Vorn_Shader_Code& code = NewCode();
  code.SetVSAttribute_Position();
  code.SetVSVary_Color();
  code.GenVSFunCode_Color();
  return code.GenVSCode();
}

}  // namespace vorn
