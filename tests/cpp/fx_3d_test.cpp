// The 3D catalogue: texts of its call lists, the stateful vertex/pixel pair, and the
// gaps of the catalogue.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "core/errors.h"
#include "shader/fx_3d.h"

namespace vorn {
namespace {

using FX = Vorn_3DFX;

// Identifiers whose pixel text is a fixed string, independent of the assembler.
const std::set<int> kFixedPixelText = {FX::FX_DEPTH, FX::FX_XYZ, FX::FX_COLOR, FX::FX_NORMAL,
                                       FX::FX_NORMAL_VIEW_INVERSE, FX::FX_AXIS};
// Identifiers without a program; 319 has a vertex text only.
const std::set<int> kNoPixelText = {FX::FX_BEGIN, FX::FX_DIFFUSE_TEXTURE_SHADOWMAP, FX::FX_COLOR_SKIN,
                                    FX::FX_DIFFUSE_TEXTURE_BUMP_SKIN, FX::FX_DIFFUSE_TEXTURE_PTLIGHT_SKIN};

TEST(FX3D, DiffuseTextureSpecularTexts) {
  FX fx;
  EXPECT_EQ(fx.GetVS(FX::FX_DIFFUSE_TEXTURE_SPECULAR),
            "#version 120\n"
            "attribute vec3   aPosition;\n"
            "attribute vec3   aNormal;\n"
            "attribute vec2   aTexCoord;\n"
            "varying   vec3    vPosition;\n"
            "varying   vec3    vNormal;\n"
            "varying   vec2    vTexCoord;\n"
            "varying   float  vDepth;\n"
            "varying   vec3  vSunLightColor;\n"
            "uniform   mat4   uModelMatrix;\n"
            "uniform   vec3   uSunLight[2];\n"
            "void main()\n"
            "{\n"
            "vPosition = (uModelMatrix * gl_Vertex).xyz;\n"
            "vNormal = mat3(uModelMatrix) * gl_Normal.xyz;\n"
            "vec3   vLocalNormal = mat3(uModelMatrix) * gl_Normal.xyz;\n"
            "vec3   vWorldNormal = vLocalNormal;//gl_NormalMatrix * vLocalNormal.xyz;\n"
            "float  fDotNL = 0.5 * (1.0 + dot(vec3(vWorldNormal.x,vWorldNormal.y,vWorldNormal.z), -uSunLight[0]));\n"
            "vSunLightColor = uSunLight[1] * fDotNL;\n"
            "vTexCoord = vec2(gl_MultiTexCoord0.x,gl_MultiTexCoord0.y);\n"
            "vec3 wPosition = (uModelMatrix * gl_Vertex).xyz;\n"
            "gl_Position = gl_ModelViewProjectionMatrix * vec4(wPosition,1.0);\n"
            "vDepth = gl_Position.z;\n"
            "}\n");
  // The diffuse statement keeps the trailing blank of its fragment.
  EXPECT_EQ(fx.GetPS(FX::FX_DIFFUSE_TEXTURE_SPECULAR),
            "#version 330 core\n"
            "varying   vec3    vPosition;\n"
            "varying   vec3    vNormal;\n"
            "varying   vec2    vTexCoord;\n"
            "varying    float    vDepth;\n"
            "varying   vec3  vSunLightColor;\n"
            "uniform vec3    uAmbientColor;\n"
            "uniform    float    uFogInfo[5];\n"
            "vec3    GetPixelFog( float Depth, vec3 PixelColor)\n"
            "{\n"
            "    if(uFogInfo[1] > uFogInfo[0])\n"
            "    {\n"
            "        float Lerp = clamp(( Depth - uFogInfo[0] ) / ( uFogInfo[1] - uFogInfo[0] ) ,0.0,1.0);\n"
            "        return ( vec3(uFogInfo[2],uFogInfo[3],uFogInfo[4]) - PixelColor ) * pow(Lerp,4.0) + PixelColor;\n"
            "    }\n"
            "    return PixelColor;\n"
            "}\n"
            "uniform vec4    uSubmeshColor = vec4(1.0,1.0,1.0,1.0);\n"
            "uniform sampler2D     texture0;\n"
            "uniform vec3    uSunLight[2];\n"
            "uniform vec4    uSpecularColor;\n"
            "uniform vec3    uEyePosition;\n"
            "out vec4 outColor;\n"
            "void main()\n"
            "{\n"
            "vec4 psColor = vec4(1.0,1.0,1.0,1.0);\n"
            "psColor = psColor * vec4(uAmbientColor,1.0);\n"
            "psColor = psColor * uSubmeshColor;\n"
            "psColor = psColor * texture2D(texture0, vTexCoord);\n"
            "vec3   viewDir  = normalize(vPosition - uEyePosition);\n"
            "vec3   vReflect  = viewDir - 2.0 * vNormal * dot(vNormal, uSunLight[0]);\n"
            "vReflect  = normalize(vReflect);\n"
            "float  fSpecular = pow(clamp(dot(vReflect, -viewDir),0.0,1.0), uSpecularColor.w);\n"
            "psColor = psColor * vec4(vSunLightColor,1.0); \n"
            "psColor = psColor + vec4(uSpecularColor.xyz,0.0) *  fSpecular;\n"
            "psColor = vec4(GetPixelFog(vDepth,psColor.xyz),psColor.w);\n"
            "outColor = psColor;\n"
            "}\n");
}

TEST(FX3D, PixelTextNeedsTheVertexTextFirstAndGapsHaveNone) {
  for (int id = FX::FX_BEGIN - 5; id <= FX::FX_END + 5; ++id) {
    FX fresh;
    if (!FX::IdentifierName(id)) {  // gaps of the catalogue have no text at all
      EXPECT_FALSE(fresh.GetVS(id) || fresh.GetPS(id)) << id;
      continue;
    }
    if (kNoPixelText.count(id) || id == FX::FX_END) continue;
    SCOPED_TRACE(FX::IdentifierName(id));
    if (kFixedPixelText.count(id)) {
      EXPECT_TRUE(fresh.GetPS(id).has_value());
    } else {
      EXPECT_THROW(fresh.GetPS(id), AttributeError);
      EXPECT_EQ(fresh.shaderCode, nullptr);
    }
    // In the intended order both sides come out, and each vertex text starts a new object.
    FX fx;
    ASSERT_TRUE(fx.GetVS(id).has_value());
    const auto first = fx.shaderCode;
    EXPECT_TRUE(fx.GetPS(id).has_value());
    fx.GetVS(id);
    EXPECT_NE(fx.shaderCode, first);
  }
}

TEST(FX3D, DepthAndFogFollowTheirPixelTexts) {
  FX fx;
  // Fixed pixel texts have no vDepth, so their vertex texts drop it.
  for (int id : {FX::FX_XYZ, FX::FX_COLOR, FX::FX_NORMAL, FX::FX_NORMAL_VIEW_INVERSE}) {
    EXPECT_EQ(fx.GetVS(id)->find("vDepth"), std::string::npos) << id;
  }
  EXPECT_NE(fx.GetVS(FX::FX_DEPTH)->find("vDepth = gl_Position.z;"), std::string::npos);

  fx.GetVS(FX::FX_DIFFUSE);
  EXPECT_EQ(fx.GetPS(FX::FX_DIFFUSE)->find("GetPixelFog"), std::string::npos);
  fx.GetVS(FX::FX_DIFFUSE_SPECULAR);
  EXPECT_NE(fx.GetPS(FX::FX_DIFFUSE_SPECULAR)->find("GetPixelFog"), std::string::npos);
  fx.GetVS(FX::FX_SKYBOX);
  const std::string sky = *fx.GetPS(FX::FX_SKYBOX);
  EXPECT_EQ(sky.find("uFogInfo"), std::string::npos);
  EXPECT_NE(sky.find("uniform samplerCube     texture0;"), std::string::npos);
  EXPECT_NE(sky.find("psColor = psColor * texture(texture0, vEnvRefTexCoord);"), std::string::npos);
}

TEST(FX3D, ProgramsKeepTheirCallListsAsWritten) {
  FX fx;
  // The sky sphere declares no position attribute yet keeps the default position.
  const std::string sphere = *fx.GetVS(FX::FX_SKYSPHERE);
  EXPECT_EQ(sphere.find("aPosition"), std::string::npos);
  EXPECT_NE(sphere.find("gl_Position = gl_ModelViewProjectionMatrix * vec4(wPosition,1.0);"), std::string::npos);

  // The reflective textured program declares texture0 twice.
  fx.GetVS(FX::FX_DIFFUSE_TEXTURE_ENVREFLECT);
  const std::string envref = *fx.GetPS(FX::FX_DIFFUSE_TEXTURE_ENVREFLECT);
  EXPECT_NE(envref.find("uniform sampler2D     texture0;\nuniform samplerCube     texture0;\n"), std::string::npos);

  // The ocean's wave block stands ahead of main(); its pixel side has no surface text.
  const std::string ocean = *fx.GetVS(FX::FX_OCEAN);
  EXPECT_LT(ocean.find("Wave wave[2];"), ocean.find("void main()"));
  const std::string oceanPS = *fx.GetPS(FX::FX_OCEAN);
  EXPECT_NE(oceanPS.find("varying   vec4  vProjTexC;"), std::string::npos);
  EXPECT_EQ(oceanPS.find("normalT0"), std::string::npos);

  // Skinned variants blend bones.
  EXPECT_NE(fx.GetVS(FX::FX_TEXTURE_SKIN)->find("uniform   mat4   uBoneMatrixs[64];"), std::string::npos);
}

}  // namespace
}  // namespace vorn
