// Vertex-side operations of Vorn_Shader_Code: inputs, uniforms, varyings, helpers and
// the statements of main().
#include "shader/shader_code.h"

namespace vorn {
namespace {

void Put(ShaderSlots& slots, int slot, std::initializer_list<const char*> lines) {
  ShaderLines& target = slots[slot];
  target.assign(lines.begin(), lines.end());
}

}  // namespace

void Vorn_Shader_Code::SetVSAttribute_Version(const std::string& version) {
  VSCode_Dict[VS_CODE_IN_VERSION] = {"#version " + version};
}

void Vorn_Shader_Code::SetVSAttribute_Position() {
  Put(VSCode_Dict, VS_CODE_IN_ATTRIBUTE_POSITION, {"attribute vec3   aPosition;"});
}
void Vorn_Shader_Code::SetVSAttribute_Color() {
  Put(VSCode_Dict, VS_CODE_IN_ATTRIBUTE_COLOR, {"attribute vec3   aColor;"});
}
void Vorn_Shader_Code::SetVSAttribute_Normal() {
  Put(VSCode_Dict, VS_CODE_IN_ATTRIBUTE_NORMAL, {"attribute vec3   aNormal;"});
}
void Vorn_Shader_Code::SetVSAttribute_Tangent() {
  Put(VSCode_Dict, VS_CODE_IN_ATTRIBUTE_TANGENT, {"attribute vec3   aTangent;"});
}
void Vorn_Shader_Code::SetVSAttribute_Bitangent() {
  Put(VSCode_Dict, VS_CODE_IN_ATTRIBUTE_BITANGENT, {"attribute vec3   aBitangent;"});
}
void Vorn_Shader_Code::SetVSAttribute_UV() {
  Put(VSCode_Dict, VS_CODE_IN_ATTRIBUTE_UV, {"attribute vec2   aTexCoord;"});
}

// The 64-matrix bone palette.
void Vorn_Shader_Code::SetVSAttribute_Skin() {
  Put(VSCode_Dict, VS_CODE_IN_ATTRIBUTE_SKIN,
      {"attribute vec4   aBoneIndics;", "attribute vec4   aBoneWeight;", "uniform   mat4   uBoneMatrixs[64];"});
  Put(VSCode_Dict, VS_CODE_UNIFORM_MATRIX_MODEL, {"uniform   mat4   uModelMatrix;"});
}

void Vorn_Shader_Code::AddVSUniform_Var(const std::string& var_type, const std::string& var_name) {
  VSCode_Dict[VS_CODE_UNIFORM_VAR].push_back("uniform   " + var_type + " " + var_name + ";");
}

void Vorn_Shader_Code::SetVSUniform_Time() {
  Put(VSCode_Dict, VS_CODE_UNIFORM_TIME, {"uniform float uCurrTime = 0.0;"});
}
void Vorn_Shader_Code::SetVSUniform_ModelMatrix() {
  Put(VSCode_Dict, VS_CODE_UNIFORM_MATRIX_MODEL, {"uniform   mat4   uModelMatrix;"});
}
void Vorn_Shader_Code::SetVSUniform_ViewMatrix() {
  Put(VSCode_Dict, VS_CODE_UNIFORM_VIEW_MODEL, {"uniform   mat4   uViewMatrix;"});
}
void Vorn_Shader_Code::SetVSUniform_ProjMatrix() {
  Put(VSCode_Dict, VS_CODE_UNIFORM_PROJ_MODEL, {"uniform   mat4   uProjMatrix;"});
}
void Vorn_Shader_Code::SetVSUniform_Diffuse() {
  Put(VSCode_Dict, VS_CODE_UNIFORM_DIFFUSE, {"uniform   vec3   uSunLight[2];"});
}
void Vorn_Shader_Code::SetVSUniform_TexScale() {
  Put(VSCode_Dict, VS_CODE_UNIFORM_TEXSCALE, {"uniform float uTexScale = 1.0;"});
}
void Vorn_Shader_Code::SetVSUniform_EyePosition() {
  Put(VSCode_Dict, VS_CODE_UNIFORM_EYEPOSITION, {"uniform vec3  uEyePosition;"});
}
void Vorn_Shader_Code::SetVSUniform_ShadowMap() {
  Put(VSCode_Dict, VS_CODE_UNIFORM_SHADOWMAP,
      {"uniform   mat4   uShadowMapViewProjectMatrix;", "uniform   float   uShadowMapDepthBias = 0.0001;"});
}
// Point-light uniforms live on the pixel side; the vertex slot only exists.
void Vorn_Shader_Code::SetVSUniform_PointLight() { VSCode_Dict[VS_CODE_UNIFORM_POINTLIGHT].clear(); }
void Vorn_Shader_Code::SetVSUniform_Grass() {
  Put(VSCode_Dict, VS_CODE_UNIFORM_GRASS, {"uniform float uSwingSpeed = 1.0;", "uniform float uSwingRegion = 0.1;"});
}
void Vorn_Shader_Code::SetVSUniform_Ocean() {
  Put(VSCode_Dict, VS_CODE_UNIFORM_Ocean,
      {
          "uniform float uWaveFreq = 0.6;",
          "uniform float uWaveAmp = 0.05;",
          "uniform float uBumpScale = 1.0;",
          "uniform float uBumpSpeedX = 0.01;",
          "uniform float uBumpSpeedY = 0.01;",
          "struct Wave",
          "{",
          "float    freq; ",
          "float    amp; ",
          "float    phase; ",
          "vec2     dir; ",
          "};",
      });
}

void Vorn_Shader_Code::SetVSVary_Position() {
  Put(VSCode_Dict, VS_CODE_VARY_POSITION, {"varying   vec3    vPosition;"});
}
void Vorn_Shader_Code::SetVSVary_Color() {
  Put(VSCode_Dict, VS_CODE_VARY_VERTEXCOLOR, {"varying   vec3    vColor;"});
}
void Vorn_Shader_Code::SetVSVary_Alpha() { Put(VSCode_Dict, VS_CODE_VARY_ALPHA, {"varying   float    vAlpha;"}); }
void Vorn_Shader_Code::SetVSVary_Normal() { Put(VSCode_Dict, VS_CODE_VARY_NORMAL, {"varying   vec3    vNormal;"}); }
void Vorn_Shader_Code::SetVSVary_BTN() { Put(VSCode_Dict, VS_CODE_VARY_BTN, {"varying   mat3    vBTN;"}); }
void Vorn_Shader_Code::SetVSVary_UV() { Put(VSCode_Dict, VS_CODE_VARY_UV, {"varying   vec2    vTexCoord;"}); }
void Vorn_Shader_Code::SetVSVary_EnvRefUV() {
  Put(VSCode_Dict, VS_CODE_VARY_ENVREF_UV, {"varying vec3  vEnvRefTexCoord;"});
}
void Vorn_Shader_Code::SetVSVary_Diffuse() {
  Put(VSCode_Dict, VS_CODE_VARY_DIFFUSE, {"varying   vec3  vSunLightColor;"});
}
void Vorn_Shader_Code::SetVSVary_ShadowMapUV() {
  Put(VSCode_Dict, VS_CODE_VARY_SHADOWMAP_UV, {"varying   vec4   vShadowMapTextureUV;"});
}
void Vorn_Shader_Code::SetVSVary_ScreenPos() {
  Put(VSCode_Dict, VS_CODE_VARY_SCREENPOS, {"varying   vec4    vScreenPos;"});
  Put(VSCode_Dict, VS_CODE_GENERATE_VARY_SCREENPOS, {"vScreenPos = gl_Position;"});
}
// 128 world units per blend map.
void Vorn_Shader_Code::SetVSVary_Terrain() {
  Put(VSCode_Dict, VS_CODE_VARY_TERRAIN,
      {"varying vec2    vTerrain_BlendUV;", "varying vec2    vTerrain_TextureUV;", "float tileU = 1.0 / 128.0;",
       "float tileV = 1.0 / 128.0;"});
}
// Same slot as the terrain, 20 world units per blend map.
void Vorn_Shader_Code::SetVSVary_TiledMap() {
  Put(VSCode_Dict, VS_CODE_VARY_TERRAIN,
      {"varying  vec2   vTerrain_BlendUV;", "varying  float  vBlendTexture;", "varying  float  vTextureIndex;",
       "float tileU = 1.0 / 20.0;", "float tileV = 1.0 / 20.0;"});
}
void Vorn_Shader_Code::SetVSVary_Ocean() {
  Put(VSCode_Dict, VS_CODE_VARY_Ocean,
      {"varying   vec4  vProjTexC;", "varying   vec3  vEyeVector;", "varying   vec3  vRotMatrix1;",
       "varying   vec3  vRotMatrix2;", "varying   vec3  vRotMatrix3;", "varying   vec4  vBumpCoord0;"});
}

// Sphere-map coordinates of the reflected view direction.
void Vorn_Shader_Code::SetVSToolFunc_EnvRefUV() {
  Put(VSCode_Dict, VS_CODE_TOOL_FUNCTION_REFLECT,
      {
          "vec3     Reflect(vec3 View, vec3 Normal)",
          "{",
          "return View - 2.0 * Normal * dot(Normal, View);",
          "}",
          "vec2  CalcEnvReflect(vec3 Position, vec3 EyePos,vec3 Normal)",
          "{",
          "vec3      VertexViewDir = normalize( Position.xyz - EyePos.xyz);",
          "vec3      ReflectViewDir = Reflect( VertexViewDir,-Normal);",
          "ReflectViewDir.z = ReflectViewDir.z + 1.0;",
          "float   M = 2.0 * sqrt( dot( ReflectViewDir, ReflectViewDir));",
          "vec2    UV = ReflectViewDir.xy / M + vec2( 0.5, 0.5);",
          "return UV;",
          "}",
      });
}

void Vorn_Shader_Code::GenVSFunCode_WPosition() {
  Put(VSCode_Dict, VS_CODE_GENERATE_VARY_POSITION, {"vPosition = (uModelMatrix * gl_Vertex).xyz;"});
}
void Vorn_Shader_Code::GenVSFunCode_Color() {
  Put(VSCode_Dict, VS_CODE_GENERATE_VARY_VERTEXCOLOR, {"vColor = gl_Color.xyz;"});
}
void Vorn_Shader_Code::GenVSFunCode_Normal() {
  Put(VSCode_Dict, VS_CODE_GENERATE_VARY_NORMAL, {"vNormal = mat3(uModelMatrix) * gl_Normal.xyz;"});
}
void Vorn_Shader_Code::GenVSFunCode_Normal_Inverse() {
  Put(VSCode_Dict, VS_CODE_GENERATE_VARY_NORMAL, {"vNormal = gl_Normal.xyz;"});
}
void Vorn_Shader_Code::GenVSFunCode_UV() {
  Put(VSCode_Dict, VS_CODE_GENERATE_VARY_UV, {"vTexCoord = vec2(gl_MultiTexCoord0.x,gl_MultiTexCoord0.y);"});
}
void Vorn_Shader_Code::GenVSFunCode_EnvRefUV() {
  Put(VSCode_Dict, VS_CODE_GENERATE_VARY_ENVREF_UV,
      {"vEnvRefTexCoord = vec3(CalcEnvReflect(vPosition,uEyePosition,vNormal),0.0);"});
}
void Vorn_Shader_Code::GenVSFunCode_ShadowMap() {
  Put(VSCode_Dict, VS_CODE_GENERATE_VARY_SHADOWMAP,
      {"vShadowMapTextureUV = vec4(gl_Vertex.xyz,1.0) * uShadowMapViewProjectMatrix ;"});
}

// Four-bone palette blend. Two bone indices are packed per float of the first texture
// coordinate's z and w (whole part and two decimals); the weights are the vertex colour.
void Vorn_Shader_Code::GenVSFunCode_SkinPosition() {
  Put(VSCode_Dict, VS_CODE_GENERATE_SKINPOSITION,
      {
          "int     boneIndex1 = int(gl_MultiTexCoord0.z);",
          "int     boneIndex2 = int((gl_MultiTexCoord0.z-boneIndex1)*100);",
          "int     boneIndex3 = int(gl_MultiTexCoord0.w);",
          "int     boneIndex4 = int((gl_MultiTexCoord0.w-boneIndex3)*100);",
          "vec4    skinposition = vec4(0,0,0,0);",
          "vec4    skinnormal = vec4(0,0,0,0);",
          "if(  boneIndex1 >= 0 && boneIndex1 < 64 )",
          "{",
          "mat4  matrixpalette = uBoneMatrixs[boneIndex1] * gl_Color.x;",
          "skinposition   = matrixpalette * gl_Vertex;",
          "}",
          "if(  boneIndex2 >= 0 && boneIndex2 < 64 )",
          "{",
          "mat4  matrixpalette = uBoneMatrixs[boneIndex2] * gl_Color.y;",
          "skinposition   += matrixpalette * gl_Vertex;",
          "}",
          "if(  boneIndex3 >= 0 && boneIndex3 < 64 )",
          "{",
          "mat4  matrixpalette = uBoneMatrixs[boneIndex3] * gl_Color.z;",
          "skinposition   += matrixpalette * gl_Vertex;",
          "}",
          "if(  boneIndex4 >= 0 && boneIndex4 < 64 )",
          "{",
          "mat4  matrixpalette = uBoneMatrixs[boneIndex4] * gl_Color.w;",
          "skinposition   += matrixpalette * gl_Vertex;",
          "}",
      });
  Put(VSCode_Dict, VS_CODE_GENERATE_OUTPOSITION,
      {"gl_Position = gl_ModelViewProjectionMatrix * (uModelMatrix * skinposition);"});
}

void Vorn_Shader_Code::GenVSFunCode_Axis() {
  Put(VSCode_Dict, VS_CODE_GENERATE_OUTPOSITION,
      {"vec3 wPosition = (uModelMatrix * gl_Vertex).xyz;",
       "gl_Position = gl_ModelViewProjectionMatrix * vec4(wPosition,1.0);"});
}

// Fixed tangent frame; the tangent attributes are declared but not read.
void Vorn_Shader_Code::GenVSFunCode_BTN() {
  Put(VSCode_Dict, VS_CODE_GENERATE_VARY_BTN,
      {"vec3  T = vec3(1,0,0);", "vec3  B = vec3(0,-1,0);", "vec3  N = normalize(cross(B,T));",
       "vBTN = mat3(T, B, N);"});
}

// Half-Lambert: dot(N, -sun) mapped from -1..1 to 0..1, times the sun colour.
void Vorn_Shader_Code::GenVSFunCode_Diffuse() {
  Put(VSCode_Dict, VS_CODE_GENERATE_VARY_DIFFUSE,
      {
          "vec3   vLocalNormal = mat3(uModelMatrix) * gl_Normal.xyz;",
          "vec3   vWorldNormal = vLocalNormal;//gl_NormalMatrix * vLocalNormal.xyz;",
          "float  fDotNL = 0.5 * (1.0 + dot(vec3(vWorldNormal.x,vWorldNormal.y,vWorldNormal.z), -uSunLight[0]));",
          "vSunLightColor = uSunLight[1] * fDotNL;",
      });
}

// Two summed sine waves. The wave block goes under the pixel-side slot number of the
// ocean varyings, so it is emitted among the vertex varyings, ahead of main().
void Vorn_Shader_Code::GenVSFunCode_Ocean() {
  Put(VSCode_Dict, PS_CODE_VARY_OCEAN,
      {
          "vec4 P = vec4(gl_Vertex.x,0.0,gl_Vertex.z,1.0);",
          "Wave wave[2];",
          "wave[0] = Wave(uWaveFreq * 2.0, uWaveAmp, 0.5, vec2(-1,1.0));",
          "wave[1] = Wave(uWaveFreq * 3.0, uWaveAmp * 0.33, 1.5, vec2(-0.5, 0.5));",
          "float  ddx1 = 0.0, ddy1 = 0.0;",
          "float  deriv;",
          "float  angle;",
          "float  time = uCurrTime;",
          "for( int i = 0; i < 2 ; i++ )",
          "{",
          "angle = dot(wave[i].dir, P.xz) * wave[i].freq + time * wave[i].phase;",
          "P.y += wave[i].amp * sin( angle );",
          "deriv = wave[i].freq * wave[i].amp * cos(angle);",
          "ddx1 -= deriv * wave[i].dir.x;",
          "ddy1 -= deriv * wave[i].dir.y;",
          "}",
      });
  Put(VSCode_Dict, VS_CODE_GENERATE_VARY_POSITION,
      {"vec4 vWorldPositon = uModelMatrix * P;", "vPosition = vWorldPositon.xyz;"});
  Put(VSCode_Dict, VS_CODE_GENERATE_VARY_Ocean,
      {
          "vRotMatrix1.xyz = uBumpScale * normalize(vec3(1, ddy1, 0));",
          "vRotMatrix2.xyz = uBumpScale * normalize(vec3(0, ddx1, -1));",
          "vRotMatrix3.xyz = normalize(vec3(ddx1, 1, ddy1));",
          "vBumpCoord0.x = gl_MultiTexCoord0.x*uTexScale + time * uBumpSpeedX;",
          "vBumpCoord0.y = vBumpCoord0.x;",
          "vBumpCoord0.z = gl_MultiTexCoord0.y*uTexScale + time * uBumpSpeedY;",
          "vBumpCoord0.w = vBumpCoord0.z;",
          "vEyeVector.xyz = normalize(vWorldPositon.xyz - uEyePosition.xyz);",
      });
  Put(VSCode_Dict, VS_CODE_GENERATE_OUTPOSITION,
      {"gl_Position = gl_ModelViewProjectionMatrix * P;", "vProjTexC = gl_Position;"});
}

void Vorn_Shader_Code::MoveVSWaveBlockIntoMain() {
  const auto wave = VSCode_Dict.find(PS_CODE_VARY_OCEAN);
  if (wave == VSCode_Dict.end()) return;
  ShaderLines& body = VSCode_Dict[VS_CODE_FUNCTION_BEGIN];
  body.insert(body.end(), wave->second.begin(), wave->second.end());
  VSCode_Dict.erase(wave);
}

void Vorn_Shader_Code::GenVSFunCode_Terrain() {
  Put(VSCode_Dict, VS_CODE_GENERATE_VARY_TERRAIN,
      {"vTerrain_BlendUV = vec2(gl_Vertex.x * tileU + 0.5,gl_Vertex.z * tileV + 0.5);",
       "vTerrain_TextureUV = vec2(gl_Vertex.x,gl_Vertex.z);"});
}

// The tile kind rides in the normal: y below -0.01 marks water, whose opacity is -y * 0.3.
void Vorn_Shader_Code::GenVSFunCode_TiledMap() {
  Put(VSCode_Dict, VS_CODE_GENERATE_VARY_TERRAIN,
      {
          "vTerrain_BlendUV = vec2(gl_Vertex.x * tileU + 0.5,gl_Vertex.z * tileV + 0.5);",
          "vBlendTexture = gl_Normal.y;",
          "vTextureIndex = 0.0;",
          "if(vBlendTexture < -0.01)",
          "{",
          "vSunLightColor = vec3(1.0,1.0,1.0);",
          "vAlpha =-vBlendTexture*0.3;",
          "}",
      });
}

// Swings the vertex on a horizontal circle, scaled by the second texture coordinate so
// that a blade's root (coordinate 0) stays put.
void Vorn_Shader_Code::GenVSFunCode_Grass() {
  Put(VSCode_Dict, VS_CODE_GENERATE_GRASS,
      {
          "float TimeOffset =  uCurrTime * uSwingSpeed;",
          "vec3  SwingOffset = uSwingRegion * vec3(cos(TimeOffset),0,sin(TimeOffset)) * gl_MultiTexCoord0.y;",
          "vec4  SwingVertex = vec4(gl_Vertex.x + SwingOffset.x,gl_Vertex.y + SwingOffset.y,gl_Vertex.z + "
          "SwingOffset.z,1.0);",
      });
  Put(VSCode_Dict, VS_CODE_GENERATE_OUTPOSITION, {"gl_Position = gl_ModelViewProjectionMatrix * SwingVertex;"});
}

// Depth written as w puts the sky at the far plane; the vertex is the cube coordinate.
void Vorn_Shader_Code::GenVSFunCode_SkyBox() {
  Put(VSCode_Dict, VS_CODE_GENERATE_OUTPOSITION,
      {"vec4 MVPPos = gl_ModelViewProjectionMatrix * gl_Vertex;", "gl_Position = MVPPos.xyww;",
       "vEnvRefTexCoord = gl_Vertex.xyz;"});
}

}  // namespace vorn
