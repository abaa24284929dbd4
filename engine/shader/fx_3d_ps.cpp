// Pixel operations of Vorn_3DFX. The fixed texts stand alone; the others continue on
// the assembler that the vertex operation of the same program left in shaderCode.
#include "shader/fx_3d.h"

namespace vorn {

std::string Vorn_3DFX::GetPS_Depth() {
  return
      "#version 330 core\n"
      "varying   float   vDepth;\n"
      "out vec4  outColor;\n"
      "void main()\n"
      "{\n"
      "    float  fRed = vDepth/100.0;\n"
      "    outColor = vec4(fRed,0.0,0.0,1.0);\n"
      "}\n";
}

std::string Vorn_3DFX::GetPS_XYZ() {
  return
      "#version 330 core\n"
      "varying   vec3    vPosition;\n"
      "out vec4  outColor;\n"
      "void main()\n"
      "{\n"
      "    outColor = vec4(vPosition.x,vPosition.y,vPosition.z,vPosition.z/100.0);\n"
      "}\n";
}

std::string Vorn_3DFX::GetPS_Color() {
  return
      "#version 330 core\n"
      "varying   vec3    vColor;\n"
      "out vec4  outColor;\n"
      "void main()\n"
      "{\n"
      "    outColor = vec4(vColor.x,vColor.y,vColor.z,1.0);\n"
      "}\n";
}

std::string Vorn_3DFX::GetPS_Normal() {
  return
      "#version 330 core\n"
      "varying   vec3    vNormal;\n"
      "out vec4  outColor;\n"
      "void main()\n"
      "{\n"
      "    outColor = vec4(vNormal.x,vNormal.y,vNormal.z,1.0);\n"
      "}\n";
}

std::string Vorn_3DFX::GetPS_Normal_Inverse() {
  return
      "#version 330 core\n"
      "varying   vec3    vNormal;\n"
      "uniform   mat4   uModelMatrix;\n"
      "uniform   mat4   uViewMatrix;\n"
      "out vec4  outColor;\n"
      "void main()\n"
      "{\n"
      "    mat4   viewModelMatrix = uViewMatrix * uModelMatrix;\n"
      "    mat4   viewModelMatrixInverse = inverse(viewModelMatrix);\n"
      "    mat4   transPoseMatrix = transpose(viewModelMatrixInverse);\n"
      "    vec4   Normal = (transPoseMatrix * vec4(vNormal.xyz,1.0)).xyz;\n"
      "    outColor = vec4(Normal.x,Normal.y,Normal.z,1.0);\n"
      "}\n";
}

std::string Vorn_3DFX::GetPS_Diffuse() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_Diffuse");
  code.SetPSVary_Diffuse();
  code.SetPSUni_Diffuse();
  code.GenPSFunCode_Diffuse();
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_Specular() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_Specular");
  code.SetPSVary_Position();
  code.SetPSVary_Normal();
  code.SetPSVary_Diffuse();
  code.SetPSUni_Diffuse();
  code.SetPSUni_Specular();
  code.GenPSFunCode_Specular(false);
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_Diffuse_Specular() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_Diffuse_Specular");
  code.SetPSVary_Position();
  code.SetPSVary_Normal();
  code.SetPSVary_Diffuse();
  code.SetPSUni_Specular();
  code.SetPSUni_Diffuse();
  code.GenPSFunCode_Diffuse();
  code.GenPSFunCode_Specular();
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_Texture() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_Texture");
  code.SetPSVary_UV();
  code.SetPSUni_Texture();
  code.GenPSFunCode_Texture();
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_PointSprite() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_PointSprite");
  code.SetPSVary_VertexColor();
  code.SetPSVary_UV();
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_Texture_ShadowMap() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_Texture_ShadowMap");
  code.SetPSVary_UV();
  code.SetPSVary_ShadowMapUV();
  code.SetPSUni_ShadowMap();
  code.GenPSFunCode_ShadowMap();
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_Ocean() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_Ocean");
  code.SetPSVary_Position();
  code.SetPSVary_Ocean();
  return code.GenPSCode();
}

// The alpha test samples texture0 at vTexCoord; both are declared here so that strict
// drivers (Mesa) compile the program.
std::string Vorn_3DFX::GetPS_Grass() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_Grass");
  code.SetPSVary_Diffuse();
  code.SetPSVary_UV();
  code.SetPSUni_Texture();
  code.GenPSFunCode_Texture_AlphaTest();
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_Diffuse_Texture() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_Diffuse_Texture");
  code.SetPSVary_Diffuse();
  code.SetPSVary_UV();
  code.SetPSUni_Texture();
  code.GenPSFunCode_Texture();
  code.GenPSFunCode_Diffuse();
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_Diffuse_Texture_Bump() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_Diffuse_Texture_Bump");
  code.SetPSVary_UV();
  code.SetPSVary_BTN();
  code.SetPSUni_Texture();
  code.GenPSFunCode_Texture();
  code.GenPSFunCode_Diffuse();
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_Diffuse_Texture_EnvReflect() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_Diffuse_Texture_EnvReflect");
  code.SetPSVary_Position();
  code.SetPSVary_Normal();
  code.SetPSVary_UV();
  code.SetPSVary_Texture_EnvRef();
  code.SetPSUni_Texture();
  code.SetPSUni_EyePosition();
  code.SetPSUni_CubeTexture();
  code.GenPSToolFunc_Reflect();
  code.GenPSFunCode_Texture();
  code.GenPSFunCode_Texture_EnvRef();
  code.GenPSFunCode_Diffuse();
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_Diffuse_EnvReflect() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_Diffuse_EnvReflect");
  code.SetPSVary_Position();
  code.SetPSVary_Normal();
  code.SetPSVary_Texture_EnvRef();
  code.SetPSUni_EyePosition();
  code.SetPSUni_CubeTexture();
  code.GenPSToolFunc_Reflect();
  code.GenPSFunCode_Texture();
  code.GenPSFunCode_Diffuse();
  code.GenPSFunCode_EnvRef();
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_Diffuse_Texture_Specular() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_Diffuse_Texture_Specular");
  code.SetPSVary_Position();
  code.SetPSVary_Normal();
  code.SetPSVary_Diffuse();
  code.SetPSVary_UV();
  code.SetPSUni_Texture();
  code.SetPSUni_Specular();
  code.GenPSFunCode_Texture();
  code.GenPSFunCode_Diffuse();
  code.GenPSFunCode_Specular();
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_Diffuse_Texture_EnvReflect_Specular() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_Diffuse_Texture_EnvReflect_Specular");
  code.SetPSVary_Position();
  code.SetPSVary_Diffuse();
  code.SetPSVary_Normal();
  code.SetPSVary_UV();
  code.SetPSVary_Texture_EnvRef();
  code.SetPSUni_Texture();
  code.SetPSUni_Specular();
  code.SetPSUni_EyePosition();
  code.SetPSUni_CubeTexture();
  code.GenPSToolFunc_Reflect();
  code.GenPSFunCode_Texture();
  code.GenPSFunCode_Diffuse();
  code.GenPSFunCode_Texture_EnvRef();
  code.GenPSFunCode_Specular();
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_Diffuse_Texture_PTLight() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_Diffuse_Texture_PTLight");
  code.SetPSVary_Diffuse();
  code.SetPSVary_UV();
  code.SetPSVary_Position();
  code.SetPSUni_Texture();
  code.SetPSUni_PointLight();
  code.GenPSFunCode_Texture();
  code.GenPSFunCode_Diffuse();
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_Diffuse_Texture_Specular_PTLight() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_Diffuse_Texture_Specular_PTLight");
  code.SetPSVary_Position();
  code.SetPSVary_Normal();
  code.SetPSVary_Diffuse();
  code.SetPSVary_UV();
  code.SetPSUni_Texture();
  code.SetPSUni_Specular();
  code.SetPSUni_PointLight();
  code.GenPSFunCode_Texture();
  code.GenPSFunCode_Diffuse();
  code.GenPSFunCode_Specular();
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_SkyBox() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_SkyBox");
  code.SetPSVary_Position();
  code.SetPSVary_Normal();
  code.SetPSVary_Texture_EnvRef();
  code.SetPSUni_CubeTexture();
  code.GenPSFunCode_SkyBoxRef();
  code.DisableFog();
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_SkySphere() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_SkySphere");
  code.SetPSVary_UV();
  code.SetPSUni_Texture();
  code.GenPSFunCode_Texture();
  code.DisableFog();
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_Terrain() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_Terrain");
  code.SetPSVary_Diffuse();
  code.SetPSVary_Terrain();
  code.SetPSUni_Terrain();
  code.GenPSFunCode_Terrain();
  return code.GenPSCode();
}

std::string Vorn_3DFX::GetPS_TiledMap() {
  Vorn_Shader_Code& code = CurrentCode("GetPS_TiledMap");
  code.SetPSVary_Position();
  code.SetPSVary_UV();
  code.SetPSVary_Diffuse();
  code.SetPSVary_TiledMap();
  code.SetPSVary_Alpha();
  code.SetPSUniform_Time();
  code.SetPSUni_TiledMap();
  code.GenPSFunCode_TiledMap();
  code.GenPSFunCode_Diffuse();
  return code.GenPSCode();
}

}  // namespace vorn
