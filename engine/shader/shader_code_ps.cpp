// Pixel-side operations of Vorn_Shader_Code: varyings copied from the vertex side,
// uniforms, helpers and the colour terms of main().
#include "shader/shader_code.h"

namespace vorn {
namespace {

void Put(ShaderSlots& slots, int slot, std::initializer_list<const char*> lines) {
  slots[slot].assign(lines.begin(), lines.end());
}

}  // namespace

void Vorn_Shader_Code::SetPSVary_Position() {
  CopyVaryToPS(VS_CODE_VARY_POSITION, PS_CODE_VARY_POSITION, "SetPSVary_Position");
}
void Vorn_Shader_Code::SetPSVary_VertexColor() {
  CopyVaryToPS(VS_CODE_VARY_VERTEXCOLOR, PS_CODE_VARY_VERTEXCOLOR, "SetPSVary_VertexColor");
}
void Vorn_Shader_Code::SetPSVary_Alpha() { CopyVaryToPS(VS_CODE_VARY_ALPHA, PS_CODE_VARY_ALPHA, "SetPSVary_Alpha"); }
void Vorn_Shader_Code::SetPSVary_Normal() {
  CopyVaryToPS(VS_CODE_VARY_NORMAL, PS_CODE_VARY_NORMAL, "SetPSVary_Normal");
}
void Vorn_Shader_Code::SetPSVary_BTN() { CopyVaryToPS(VS_CODE_VARY_BTN, PS_CODE_VARY_BTN, "SetPSVary_BTN"); }
void Vorn_Shader_Code::SetPSVary_UV() { CopyVaryToPS(VS_CODE_VARY_UV, PS_CODE_VARY_UV, "SetPSVary_UV"); }
void Vorn_Shader_Code::SetPSVary_Texture_EnvRef() {
  CopyVaryToPS(VS_CODE_VARY_ENVREF_UV, PS_CODE_VARY_ENVREF_UV, "SetPSVary_Texture_EnvRef");
}
void Vorn_Shader_Code::SetPSVary_Diffuse() {
  CopyVaryToPS(VS_CODE_VARY_DIFFUSE, PS_CODE_VARY_DIFFUSE, "SetPSVary_Diffuse");
}
void Vorn_Shader_Code::SetPSVary_ShadowMapUV() {
  CopyVaryToPS(VS_CODE_VARY_SHADOWMAP_UV, PS_CODE_VARY_SHADOWMAP_UV, "SetPSVary_ShadowMapUV");
}
// The whole slot comes along, the tile constants included.
void Vorn_Shader_Code::SetPSVary_Terrain() {
  CopyVaryToPS(VS_CODE_VARY_TERRAIN, PS_CODE_VARY_TERRAIN, "SetPSVary_Terrain");
}
void Vorn_Shader_Code::SetPSVary_TiledMap() {
  CopyVaryToPS(VS_CODE_VARY_TERRAIN, PS_CODE_VARY_TERRAIN, "SetPSVary_TiledMap");
}
void Vorn_Shader_Code::SetPSVary_Ocean() { CopyVaryToPS(VS_CODE_VARY_Ocean, PS_CODE_VARY_OCEAN, "SetPSVary_Ocean"); }
void Vorn_Shader_Code::SetPSVary_ScreenPos() {
  Put(PSCode_Dict, PS_CODE_VARY_SCREENPOS, {"varying   vec4    vScreenPos;"});
}

void Vorn_Shader_Code::SetPSUniform_Time() {
  Put(PSCode_Dict, PS_CODE_UNIFORM_TIME, {"uniform float uCurrTime = 0.0;"});
}
void Vorn_Shader_Code::SetPSUni_EyePosition() {
  Put(PSCode_Dict, PS_CODE_UNIFORM_EYEPOSITION, {"uniform vec3  uEyePosition;"});
}

// Samplers accumulate in one slot, so a program can declare several.
void Vorn_Shader_Code::SetPSUni_Texture(int texIndex) {
  PSCode_Dict[PS_CODE_UNIFORM_TEXTURE].push_back("uniform sampler2D     texture" + std::to_string(texIndex) + ";");
}
void Vorn_Shader_Code::SetPSUni_CubeTexture(int texIndex) {
  PSCode_Dict[PS_CODE_UNIFORM_TEXTURE].push_back("uniform samplerCube     texture" + std::to_string(texIndex) + ";");
}

void Vorn_Shader_Code::SetPSUni_PointLight() {
  Put(PSCode_Dict, PS_CODE_UNIFORM_POINTLIGHT,
      {
          "uniform int     uPointLightCount;",
          "uniform vec4    uPointLightXYZRangeArray[3];",
          "uniform vec3    uPointLightColorArray[3];",
      });
}

// The sun is declared with the specular terms: a pixel side has uSunLight only after this.
void Vorn_Shader_Code::SetPSUni_Specular() {
  Put(PSCode_Dict, PS_CODE_UNIFORM_SPECULAR, {"uniform vec3    uSunLight[2];", "uniform vec4    uSpecularColor;"});
  Put(PSCode_Dict, PS_CODE_UNIFORM_EYEPOSITION, {"uniform vec3    uEyePosition;"});
}

void Vorn_Shader_Code::SetPSUni_Terrain() {
  Put(PSCode_Dict, PS_CODE_UNIFORM_TERRAIN,
      {
          "uniform sampler2D    texture0;",
          "uniform sampler2D    texture1;",
          "uniform sampler2D    texture2;",
          "uniform sampler2D    texture3;",
          "uniform sampler2D    texture4;",
          "uniform float    uTextureDensity[5];",
      });
}

// Same slot as the terrain: eight layers.
void Vorn_Shader_Code::SetPSUni_TiledMap() {
  Put(PSCode_Dict, PS_CODE_UNIFORM_TERRAIN,
      {
          "uniform sampler2D    texture0;",
          "uniform sampler2D    texture1;",
          "uniform sampler2D    texture2;",
          "uniform sampler2D    texture3;",
          "uniform sampler2D    texture4;",
          "uniform sampler2D    texture5;",
          "uniform sampler2D    texture6;",
          "uniform sampler2D    texture7;",
          "uniform float    uTextureDensity[8];",
      });
}

void Vorn_Shader_Code::GenPSToolFunc_Reflect() {
  Put(PSCode_Dict, PS_CODE_TOOL_FUNCTION_REFLECT,
      {
          "vec3   Reflect(vec3 View, vec3 Normal)",
          "{",
          "return View - 2.0 * Normal * dot(Normal, View);",
          "}",
      });
}

void Vorn_Shader_Code::GenPSFunCode_VertexColor() {
  Put(PSCode_Dict, PS_CODE_GENERATE_VERTEXCOLOR, {"psColor = psColor * vec4(vColor,1.0);"});
}
void Vorn_Shader_Code::GenPSFunCode_Texture() {
  Put(PSCode_Dict, PS_CODE_GENERATE_TEXTURECOLOR, {"psColor = psColor * texture2D(texture0, vTexCoord);"});
}
// Cut-out below alpha 0.7 (grass blades).
void Vorn_Shader_Code::GenPSFunCode_Texture_AlphaTest() {
  Put(PSCode_Dict, PS_CODE_GENERATE_TEXTURECOLOR,
      {
          "psColor = psColor * texture2D(texture0, vTexCoord);",
          "if(psColor.a < 0.7)",
          "{",
          "discard;",
          "}",
      });
}
void Vorn_Shader_Code::GenPSFunCode_Diffuse() {
  Put(PSCode_Dict, PS_CODE_GENERATE_DIFFUSECOLOR, {"psColor = psColor * vec4(vSunLightColor,1.0); "});
}

void Vorn_Shader_Code::GenPSFunCode_SkyBoxRef(int texIndex) {
  PSCode_Dict[PS_CODE_GENERATE_SKYBOX] = {"psColor = psColor * texture(texture" + std::to_string(texIndex) +
                                          ", vEnvRefTexCoord);"};
}

// Reflection lookup of textured objects; it shares the sky-box slot, after fog.
void Vorn_Shader_Code::GenPSFunCode_Texture_EnvRef(int texIndex) {
  PSCode_Dict[PS_CODE_GENERATE_SKYBOX] = {
      "vec3 norm = normalize(vNormal);",
      "vec3   viewDir  = normalize(vPosition - uEyePosition);",
      "vec3   R  = Reflect(-viewDir,norm);",
      "vec4   SkyBoxRefColor  = texture2D(texture" + std::to_string(texIndex) + ",R);",
      "psColor = psColor * vec4(SkyBoxRefColor.xyz,1.0); ",
  };
}

// The highlight is prepared before the diffuse product (slot 59) and added after it
// (slot 64), so the sun's diffuse colour does not tint it. Without addMode the
// highlight replaces the colour.
void Vorn_Shader_Code::GenPSFunCode_Specular(bool addMode) {
  Put(PSCode_Dict, PS_CODE_GENERATE_SPECULARCOLOR,
      {
          "vec3   viewDir  = normalize(vPosition - uEyePosition);",
          "vec3   vReflect  = viewDir - 2.0 * vNormal * dot(vNormal, uSunLight[0]);",
          "vReflect  = normalize(vReflect);",
          "float  fSpecular = pow(clamp(dot(vReflect, -viewDir),0.0,1.0), uSpecularColor.w);",
      });
  if (addMode) {
    Put(PSCode_Dict, PS_CODE_GENERATE_ADDSPECULARCOLOR,
        {"psColor = psColor + vec4(uSpecularColor.xyz,0.0) *  fSpecular;"});
  } else {
    Put(PSCode_Dict, PS_CODE_GENERATE_ADDSPECULARCOLOR, {"psColor = vec4(uSpecularColor.xyz,0.0) *  fSpecular;"});
  }
}

}  // namespace vorn
