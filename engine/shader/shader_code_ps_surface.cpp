// Pixel-side surface fragments of Vorn_Shader_Code: shadow map, point lights, water,
// terrain and tiled map. These are the long texts; the shorter operations live in
// shader_code_ps.cpp.
#include "shader/shader_code.h"

namespace vorn {
namespace {

void Put(ShaderSlots& slots, int slot, std::initializer_list<const char*> lines) {
  slots[slot].assign(lines.begin(), lines.end());
}

}  // namespace

// 3x3 percentage-closer filter over texture1; a tap counts 1.0 when lit and
// uShadowBlackColor when shadowed, with a literal depth bias of 0.0001.
void Vorn_Shader_Code::SetPSUni_ShadowMap() {
  Put(PSCode_Dict, PS_CODE_UNIFORM_SHADOWMAP,
      {
          "uniform sampler2D     texture1;",
          "uniform vec2     uShadoMapTexSize = vec2(512.0,512.0);",
          "uniform vec4     uShadowColor = vec4(1.0f, 1.0f, 1.0f, 1.0f);",
          "uniform float    uShadowBlackColor = 0.4f;",
          "vec4  GetShadowMapColor(vec3 vProjCoord)",
          "{",
          "vec4 ResultColor = vec4(1.0,1.0,1.0,1.0);",
          "vec2 TexCoords[9];",
          "vec2 TexSize = vec2(1.0/uShadoMapTexSize.x,1.0/uShadoMapTexSize.y);",
          "TexCoords[0] = vProjCoord.xy;",
          "TexCoords[1] = vProjCoord.xy + vec2( -TexSize.x, 0.0f );",
          "TexCoords[2] = vProjCoord.xy + vec2(  TexSize.x, 0.0f );",
          "TexCoords[3] = vProjCoord.xy + vec2( 0.0f, -TexSize.y );",
          "TexCoords[6] = vProjCoord.xy + vec2( 0.0f,  TexSize.y );",
          "TexCoords[4] = vProjCoord.xy + vec2( -TexSize.x, -TexSize.y );",
          "TexCoords[5] = vProjCoord.xy + vec2(  TexSize.x, -TexSize.y );",
          "TexCoords[7] = vProjCoord.xy + vec2( -TexSize.x,  TexSize.y );",
          "TexCoords[8] = vProjCoord.xy + vec2(  TexSize.x,  TexSize.y );",
          "float fShadowTerm = 0.0f;",
          "float B = vProjCoord.z - 0.0001;",
          "for( int i = 0; i < 9; i++ )",
          "{",
          "    float A = texture2D( texture1, TexCoords[i].xy ).r;",
          "    if( A < B )",
          "    {",
          "        fShadowTerm += uShadowBlackColor ;",
          "    }",
          "    else",
          "    {",
          "        fShadowTerm += 1.0f;",
          "    }",
          "}",
          "fShadowTerm /= 9.0f;",
          "ResultColor = uShadowColor * fShadowTerm;",
          "ResultColor.a = 1.0f; ",
          "return ResultColor; ",
          "}",
      });
}

// The shadow lookup divides depth by 100.0, as the depth render does.
void Vorn_Shader_Code::GenPSFunCode_ShadowMap() {
  PSCode_Dict.try_emplace(PS_CODE_UNIFORM_SHADOWMAP);
  PSCode_Dict.try_emplace(PS_CODE_VARY_SHADOWMAP_UV);
  ShaderLines& lines = PSCode_Dict[PS_CODE_GENERATE_SHADOWMAPCOLOR];
  lines.clear();
  for (const char* line : {
          "vec3 ProjCoords = vShadowMapTextureUV.xyz/vShadowMapTextureUV.w;",
          "vec3 UVCoords ;",
          "UVCoords.x = 0.5 * ProjCoords.x + 0.5 ;",
          "UVCoords.y = 0.5 * ProjCoords.y + 0.5 ;",
          "UVCoords.z = vShadowMapTextureUV.z/100.0 ;",
          "psColor = psColor * GetShadowMapColor(UVCoords);",
       }) {
    lines.emplace_back(line);
  }
}

// Up to three lights with linear fall-off over the range in w, on top of a 0.5 grey;
// the colour is applied once, inside the test for at least one light.
void Vorn_Shader_Code::GenPSFunCode_PointLight() {
  Put(PSCode_Dict, PS_CODE_GENERATE_POINTLIGHTCOLOR,
      {
          "vec3    vLightColor = vec3(0.5,0.5,0.5);",
          "if(uPointLightCount > 0)",
          "{",
          "vec3    tempPos = uPointLightXYZRangeArray[0].xyz - vPosition;",
          "float   fLerp   = 1.0 - clamp(length(tempPos) / uPointLightXYZRangeArray[0].w,0.0,1.0);",
          "vLightColor += uPointLightColorArray[0] * fLerp ;",
          "if(uPointLightCount > 1)",
          "{",
          "tempPos = uPointLightXYZRangeArray[1].xyz - vPosition;",
          "fLerp   = 1.0 - clamp(length(tempPos) / uPointLightXYZRangeArray[1].w,0.0,1.0);",
          "vLightColor += uPointLightColorArray[1] * fLerp ;",
          "}",
          "if(uPointLightCount > 2)",
          "{",
          "tempPos = uPointLightXYZRangeArray[2].xyz - vPosition;",
          "fLerp   = 1.0 - clamp(length(tempPos) / uPointLightXYZRangeArray[2].w,0.0,1.0);",
          "vLightColor += uPointLightColorArray[2] * fLerp ;",
          "}",
          "psColor = psColor * vec4(vLightColor,1.0); ",
          "}",
      });
}

// Water constants and helpers. saturate() has min and max crossed and so yields 0.0;
// the water surface text is written that way. The closing brace of the last helper is
// stored in the ocean varying slot.
void Vorn_Shader_Code::SetPSUni_Ocean() {
  Put(PSCode_Dict, PS_CODE_UNIFORM_OCEAN,
      {
          "uniform sampler2D    texture0;",
          "uniform sampler2D    texture1;",
          "uniform sampler2D    texture2;",
          "uniform sampler2D    texture3;",
          "uniform sampler2D    texture4;",
          "uniform sampler2D    texture5;",
          "uniform float    uRefractBias = 0.001;",
          "uniform float    uRefractPower = 8.0;",
          "uniform vec2     uRippleScale = vec2(1.0,1.0);",
          "uniform vec4     uDeepColor = vec4(0.0,0.28,0.28,1.0);",
          "uniform vec4     uShallowColor = vec4(0.25,0.68,0.3,1.0);",
          "uniform float    uWaterAmount = 0.8;",
          "uniform float    uHighLightLevel = 1.0;",
          "uniform vec4     uReflectionColor = vec4(1.0,1.0,1.0,1.0);",
          "uniform float    uReflectionBlur = 1.0;",
          "uniform float    uWaterTransparent = 0.6;",
          "uniform float    uHdrMultiplier = 1.0;",
          "uniform int      uWaterReflectEnable = 0;",
          "uniform int      uSkyReflectEnable = 0;",
          "uniform int      uSceneSize = 128;",
          "uniform vec3     uSunLight[2];",
          "vec3     Reflect(vec3 View, vec3 Normal)",
          "{",
          "return View - 2.0 * Normal * dot(Normal, View);",
          "}",
          "float     saturate(float Value)",
          "{",
          "return min(max(1.0,Value),0.0);",
          "}",
          "vec4     V4lerp(vec4 Value1,vec4 Value2,float flerp)",
          "{",
          "return  (Value1 * (1.0 - flerp) + Value2 * flerp);",
          "}",
          "vec3     V3lerp(vec3 Value1,vec3 Value2,float flerp)",
          "{",
          "return  (Value1 * (1.0 - flerp) + Value2 * flerp);",
      });
  PSCode_Dict[PS_CODE_VARY_OCEAN].emplace_back("}");
}

// Two scrolling bump maps, sun highlight, depth-tinted refraction, static and dynamic
// reflection, Fresnel mix. texture0/1 bump, 2 depth, 3 refraction, 4 and 5 reflection.
void Vorn_Shader_Code::GenPSFunCode_Ocean() {
  Put(PSCode_Dict, PS_CODE_GENERATE_OCEAN,
      {
          "vec4 normalT0 = texture2D(texture0, vBumpCoord0.xy) * 2.0 - 1.0;",
          "vec4 normalT1 = texture2D(texture1, vBumpCoord0.zw) * 2.0 - 1.0; ",
          "vec3 normalT = normalize(0.5*(normalT0.xyz + normalT1.xyz));",
          "mat3 M;",
          "M[0] = vRotMatrix1;",
          "M[1] = vRotMatrix2;",
          "M[2] = vRotMatrix3;",
          "float  LightRT = uHighLightLevel;",
          "vec3   TangentLightDirection = normalize(-uSunLight[0].xyz * M );",
          "vec3   ReflectDirection = Reflect( TangentLightDirection  , normalT );",
          "vec3   TangentViewDirection = normalize( vEyeVector * M );",
          "float  LightSpecular = pow(max(dot(ReflectDirection, TangentViewDirection), 0.0), 512.0) * LightRT ;",
          "normalT = normalize( normalT * M );",
          "float  Facing = 1.0 - max(dot(-vEyeVector, normalT), 0);",
          "vec2    WaterDepthUV;",
          "WaterDepthUV.x  =  (vPosition.x + 64.0) / 128.0;",
          "WaterDepthUV.y  =  (vPosition.z + 64.0) / 128.0;",
          "float      DepthValue    = texture2D( texture2, WaterDepthUV ).r;",
          "vec4    WaterColor = V4lerp(uShallowColor , uDeepColor, DepthValue) * uWaterAmount ;",
          "float   ProjTexCX = 0.5 * vProjTexC.x / vProjTexC.w + 0.5;",
          "float   ProjTexCY = -0.5 * vProjTexC.y / vProjTexC.w + 0.5;",
          "float   PerturbMod = 1.0 - pow(ProjTexCY, 2.0);",
          "vec2    PerturbVec = normalT.xz * uRippleScale;",
          "PerturbVec.y *= PerturbMod;",
          "vec2     RefraceUV    = vec2(ProjTexCX,ProjTexCY) + PerturbVec ;",
          "vec4   RefractColor = texture2D( texture3, RefraceUV );",
          "RefractColor = V4lerp(RefractColor , WaterColor, DepthValue);",
          "vec4   ReflectColor = texture2D( texture4, RefraceUV );",
          "vec4   DynamicReflectColor = texture2D( texture5, RefraceUV );",
          "ReflectColor = V4lerp(DynamicReflectColor , ReflectColor, DepthValue);",
          "float  Fresnel = saturate(uRefractBias + pow(Facing, uRefractPower)) * pow((1.0 - DepthValue) ,8) ;",
          "vec4   Re2FColor = V4lerp( ReflectColor ,RefractColor  , Fresnel) ;",
          "psColor = psColor * Re2FColor  + vec4(LightSpecular,LightSpecular,LightSpecular,LightSpecular); ",
          "psColor.a *= uWaterTransparent; ",
      });
}

// Mask blend: red, green and blue of texture1 weigh texture2..4; the rest of 1.0 goes
// to texture1 itself at the base layer's density.
void Vorn_Shader_Code::GenPSFunCode_Terrain() {
  Put(PSCode_Dict, PS_CODE_GENERATE_TERRAINTEXTURE,
      {
          "vec4    MaskColor  = texture2D(texture1, vTerrain_BlendUV.xy); ",
          "float   BlendWeight = 0.0f; ",
          "vec4    TerrainColor = vec4(0.0,0.0,0.0,0.0); ",
          "if( MaskColor.r > 0) ",
          "{",
          "BlendWeight += MaskColor.r ;",
          "TerrainColor += texture2D(texture2, vTerrain_TextureUV * uTextureDensity[2]) * MaskColor.r;",
          "}",
          "if( MaskColor.g > 0) ",
          "{",
          "BlendWeight += MaskColor.g ;",
          "TerrainColor += texture2D(texture3, vTerrain_TextureUV * uTextureDensity[3]) * MaskColor.g;",
          "}",
          "if( MaskColor.b > 0) ",
          "{",
          "BlendWeight += MaskColor.b ;",
          "TerrainColor += texture2D(texture4, vTerrain_TextureUV * uTextureDensity[4]) * MaskColor.b;",
          "}",
          "BlendWeight  = 1.0 - BlendWeight ;",
          "if( BlendWeight > 0) ",
          "{",
          "TerrainColor += texture2D(texture1, vTerrain_TextureUV * uTextureDensity[1]) * BlendWeight;",
          "}",
          "psColor = psColor * TerrainColor; ",
      });
}

// Water cells scroll texture3 with time; land cells mix two base layers by height side
// and lay texture5..7 over them by the mask texture4.
void Vorn_Shader_Code::GenPSFunCode_TiledMap() {
  Put(PSCode_Dict, PS_CODE_GENERATE_TERRAINTEXTURE,
      {
          "vec4    TerrainColor = vec4(0.0,0.0,0.0,0.0); ",
          "if( vBlendTexture < -0.01) ",
          "{",
          "TerrainColor = texture2D(texture3, vTexCoord * uTextureDensity[0] + vec2(uCurrTime*0.024,uCurrTime*0.017)) ;",
          "TerrainColor.a = vAlpha;",
          "}",
          "else",
          "{",
          "vec4   BlendColor = vec4(0.0,0.0,0.0,0.0); ",
          "if( vPosition.y >= 0.0) ",
          "{",
          "    BlendColor += texture2D(texture0, vTexCoord * uTextureDensity[0]) * vBlendTexture   ;",
          "    BlendColor += texture2D(texture1, vTexCoord * uTextureDensity[1]) * (1.0-vBlendTexture);",
          "}",
          "else",
          "{",
          "    BlendColor += texture2D(texture2, vTexCoord * uTextureDensity[2]) * vBlendTexture;",
          "    BlendColor += texture2D(texture1, vTexCoord * uTextureDensity[1]) * (1.0-vBlendTexture);",
          "}",
          "vec4    MaskColor  = texture2D(texture4, vTerrain_BlendUV.xy); ",
          "float   BlendWeight = 0.0f; ",
          "vec4    BlendTerrainColor = vec4(0.0,0.0,0.0,0.0); ",
          "if( MaskColor.r > 0) ",
          "{",
          "BlendWeight += MaskColor.r ;",
          "BlendTerrainColor += texture2D(texture5, vTexCoord * uTextureDensity[2]) * MaskColor.r;",
          "}",
          "if( MaskColor.g > 0) ",
          "{",
          "BlendWeight += MaskColor.g ;",
          "BlendTerrainColor += texture2D(texture6, vTexCoord * uTextureDensity[3]) * MaskColor.g;",
          "}",
          "if( MaskColor.b > 0) ",
          "{",
          "BlendWeight += MaskColor.b ;",
          "BlendTerrainColor += texture2D(texture7, vTexCoord * uTextureDensity[4]) * MaskColor.b;",
          "}",
          "BlendWeight  = 1.0 - BlendWeight ;",
          "if( BlendWeight > 0) ",
          "{",
          "BlendTerrainColor += BlendColor * BlendWeight;",
          "}",
          "TerrainColor = BlendTerrainColor;",
          "}",
          "psColor = psColor * TerrainColor; ",
      });
}

}  // namespace vorn
