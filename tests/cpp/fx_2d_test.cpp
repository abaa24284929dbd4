// Texts of the 2D effect catalogue and which identifiers have a program.
#include "shader/fx_2d.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <string>

#include "core/errors.h"

namespace vorn {
namespace {

using FX = Vorn_2DFX;

// A text given line by line; every line of a stored text ends with a line break.
std::string Lines(std::initializer_list<const char*> lines) {
  std::string text;
  for (const char* line : lines) text += std::string(line) + "\n";
  return text;
}

TEST(Vorn2DFX, TextsThatCarryOddLayoutAreExact) {
  EXPECT_EQ(FX::GetVS_Texture(), Lines({
      "#version 120",
      "attribute vec3  vPosition;",
      "varying   vec2  vOutTexcoords;",
      "void main()",
      "{",
      "    gl_Position = vec4(gl_Vertex.x,gl_Vertex.y, 0, 1);",
      "    vOutTexcoords = vec2(gl_MultiTexCoord0.x,gl_MultiTexCoord0.y);",
      "}",
  }));
  // The blank line between the declarations and main stays.
  EXPECT_EQ(FX::GetPS_Color(), Lines({
      "#version 330 core",
      "uniform vec4    uSubmeshColor = vec4(1.0,1.0,1.0,1.0);",
      "out     vec4 outColor;",
      "",
      "void main()",
      "{",
      "    outColor = uSubmeshColor;",
      "}",
  }));
  EXPECT_EQ(FX::GetPS_MSK(), Lines({
      "#version 330 core",
      "uniform sampler2D texture0;",
      "uniform vec2   uTexSize;",
      "uniform vec2   uMSKSize;",
      "varying vec2   vOutTexcoords;",
      "out vec4 outColor;",
      "void main()",
      "{",
      "    vec2  intXY = vec2(vOutTexcoords.x * uTexSize.x , vOutTexcoords.y * uTexSize.y);",
      "    vec2  XYMosaic   = vec2(int(intXY.x/uMSKSize.x) * uMSKSize.x, int(intXY.y/uMSKSize.y) * uMSKSize.y );",
      "    vec2  UVMosaic   = vec2(XYMosaic.x/uTexSize.x , XYMosaic.y/uTexSize.y);",
      "    outColor = texture2D( texture0, UVMosaic );",
      "}",
  }));
  // Every line indented by twelve spaces except the closing brace of main.
  EXPECT_EQ(FX::GetPS_SSAO(), Lines({
      "            #version 330 core",
      "            //XYZ",
      "            uniform sampler2D texture0;",
      "            //Normal",
      "            uniform sampler2D texture1;",
      "            //随机纹理",
      "            uniform sampler2D texture2;",
      "            //原始纹理",
      "            uniform sampler2D texture3;",
      "            //主摄像机观察矩阵",
      "            uniform mat4    uViewMatrix;",
      "            //主摄像机投影矩阵",
      "            uniform mat4    uProjMatrix;",
      "            //半球内采样数量",
      "            uniform int     uSSAOKernelCount = 64;",
      "            //半球内采样半径",
      "            uniform float   uSSAOKernelRadius = 1.0;",
      "            //半球内采样随机向量",
      "            uniform vec3    uSSAOKernelSample[64];",
      "            //偏移判断误差值",
      "            uniform float   uCheckDepthBias = 0.2;",
      "            //纹理大小",
      "            varying vec2    vOutTexcoords;",
      "            //输出的结果",
      "            out vec4        outColor;",
      "            //偏移",
      "            const vec2 randomScale = vec2(800.0f/10.0f,600.0f/10.0f);",
      "            //函数",
      "            void main()",
      "            {",
      "                // 1. 根据当前的纹理坐标从Gbuffer中获取位置,法线,随机噪声向量",
      "                //世界坐标系下的XYZ",
      "                vec3  modelXYZ = texture2D(texture0, vOutTexcoords.xy).xyz;",
      "                //观察矩阵下的XYZ",
      "                vec3  viewModelXYZ = (uViewMatrix * vec4(modelXYZ,1.0)).xyz;",
      "                //法线",
      "                vec3  normal = texture2D(texture1, vOutTexcoords.xy).xyz;",
      "                //随机法线",
      "                vec3  randomVec = texture2D(texture2, vOutTexcoords.xy*randomScale).xyz;",
      "                if(dot(randomVec,normal) < 0)",
      "                {",
      "                    randomVec = -randomVec;",
      "                }",
      "                //原始屏幕纹理",
      "                vec3  screenColor =  texture2D(texture3, vOutTexcoords.xy).xyz;",
      "",
      "                vec3  tangent = normalize(randomVec - normal * dot(randomVec, normal));",
      "                vec3  bitangent = cross(normal, tangent);",
      "                mat3  TBN = mat3(tangent, bitangent, normal);",
      "                float occlusion = 0.0;",
      "                for(int i = 0; i < uSSAOKernelCount; ++i)",
      "                {",
      "                    vec3 samplePos = TBN * uSSAOKernelSample[i];",
      "                    samplePos = modelXYZ + samplePos * uSSAOKernelRadius;",
      "                    vec3 viewSamplePos = (uViewMatrix * vec4(samplePos,1.0)).xyz;",
      "                    vec4 offset = vec4(viewSamplePos, 1.0);",
      "                    offset = uProjMatrix * offset;",
      "                    offset.xyz /= offset.w;",
      "                    offset.xyz = offset.xyz * 0.5 + 0.5;",
      "                    vec4  offsetXYZColor = texture2D(texture0, offset.xy);",
      "                    float sampleDepth = offsetXYZColor.z;",
      "                    float rangeCheck = smoothstep(0.0, 1.0, uSSAOKernelRadius / abs(samplePos.z - sampleDepth));",
      "                    occlusion += (sampleDepth < (samplePos.z + uCheckDepthBias) ? 0.0 : 1.0)*rangeCheck;",
      "                }",
      "                occlusion = 1.0 - (occlusion / uSSAOKernelCount);",
      "                //outColor = vec4(screenColor * occlusion,1.0);",
      "                outColor = vec4(occlusion,occlusion,occlusion,1.0);",
      "}",
  }));
}

TEST(Vorn2DFX, VRModeAssemblesHeadConditionAndTail) {
  const std::string left = Lines({
      "#version 330 core",
      "uniform sampler2D texture0;",
      "varying vec2   vOutTexcoords;",
      "out vec4 outColor;",
      "void main()",
      "{",
      "    vec4 texColor = texture2D(texture0, vOutTexcoords.xy);",
      "",
      "    if ((vOutTexcoords.x * vOutTexcoords.y) < 0.04 || (1.0 - vOutTexcoords.x) * (1.0 - vOutTexcoords.y) < 0.04 )",
      "",
      "    {",
      "        outColor = vec4(0.1,0.105,0.11,1.0);",
      "    }",
      "    else",
      "    {",
      "        outColor = texColor ;",
      "    }",
      "",
      "}",
  });
  EXPECT_EQ(FX::GetPS_VRMode(1), left);
  EXPECT_EQ(FX::GetPS_VRMode(1, 1), left);

  // Only the condition line differs between the variants: eye 1 or any other eye,
  // GrassType 1 or 2.
  const std::string leftLine =
      "    if ((vOutTexcoords.x * vOutTexcoords.y) < 0.04 || (1.0 - vOutTexcoords.x) * (1.0 - vOutTexcoords.y) < 0.04 )";
  const struct {
    int eyeID, GrassType;
    const char* line;
  } cases[] = {
      {2, 1,
       "    if (((1.0 - vOutTexcoords.x ) * vOutTexcoords.y) < 0.04 || (vOutTexcoords.x) * (1.0 - vOutTexcoords.y) < 0.04 )"},
      {0, 1,
       "    if (((1.0 - vOutTexcoords.x ) * vOutTexcoords.y) < 0.04 || (vOutTexcoords.x) * (1.0 - vOutTexcoords.y) < 0.04 )"},
      {-7, 1,
       "    if (((1.0 - vOutTexcoords.x ) * vOutTexcoords.y) < 0.04 || (vOutTexcoords.x) * (1.0 - vOutTexcoords.y) < 0.04 )"},
      {1, 2,
       "    if ((abs(1.0 - vOutTexcoords.x)* vOutTexcoords.y) < 0.04 || abs(1.0 - vOutTexcoords.x) * (1.0 - vOutTexcoords.y) < 0.04 )"},
      {2, 2, "    if (( vOutTexcoords.x * vOutTexcoords.y) < 0.04|| vOutTexcoords.x * (1.0 - vOutTexcoords.y) < 0.04 )"},
      {5, 2, "    if (( vOutTexcoords.x * vOutTexcoords.y) < 0.04|| vOutTexcoords.x * (1.0 - vOutTexcoords.y) < 0.04 )"},
  };
  for (const auto& c : cases) {
    std::string expected = left;
    expected.replace(expected.find(leftLine), leftLine.size(), c.line);
    EXPECT_EQ(FX::GetPS_VRMode(c.eyeID, c.GrassType), expected) << "eyeID " << c.eyeID << ", GrassType " << c.GrassType;
  }

  // Without a condition line there is no text.
  for (int GrassType : {0, 3, -1}) {
    EXPECT_THROW(FX::GetPS_VRMode(1, GrassType), ValueError) << "GrassType " << GrassType;
  }
}

TEST(Vorn2DFX, ProgramTextsFollowTheCatalogue) {
  const std::string vsColor = FX::GetVS_Color();
  const std::string vsTexture = FX::GetVS_Texture();
  const std::map<int, std::pair<std::string, std::string>> programs = {
      {201, {vsColor, FX::GetPS_Color()}},
      {202, {vsTexture, FX::GetPS_Texture()}},
      {203, {vsTexture, FX::GetPS_Color_Texture()}},
      {204, {vsTexture, FX::GetPS_Gray()}},
      {205, {vsTexture, FX::GetPS_Texture_Blend()}},
      {206, {vsTexture, FX::GetPS_Blur()}},
      {207, {vsTexture, FX::GetPS_MSK()}},
      {208, {vsTexture, FX::GetPS_BrightArea()}},
      {209, {vsTexture, FX::GetPS_Bloom()}},
      {210, {vsTexture, FX::GetPS_DepthOfField()}},
      {211, {vsTexture, FX::GetPS_Noise()}},
      {214, {vsTexture, FX::GetPS_DeferLight()}},
      {215, {vsTexture, FX::GetPS_SSAO()}},
      {220, {vsTexture, FX::GetPS_VRMode(1)}},
      {221, {vsTexture, FX::GetPS_VRMode(2)}},
  };
  // Sentinels, free numbers and numbers outside the range (3D identifiers included)
  // give no text at all.
  for (int id = 190; id <= 240; ++id) {
    const auto texts = FX::ProgramTexts(id);
    EXPECT_EQ(texts.first, FX::GetVS(id)) << id;
    EXPECT_EQ(texts.second, FX::GetPS(id)) << id;
    const auto found = programs.find(id);
    if (found == programs.end()) {
      EXPECT_EQ(texts.first, "") << id;
      EXPECT_EQ(texts.second, "") << id;
    } else {
      EXPECT_EQ(texts, found->second) << id;
    }
  }
  for (int id : {-1, 0, 300, 303, 313, 375}) EXPECT_EQ(FX::ProgramTexts(id), (std::pair<std::string, std::string>{})) << id;

  // The three vertex entry points the catalogue names are one text.
  EXPECT_EQ(FX::GetVS_Color_Texture(), vsTexture);
  EXPECT_EQ(FX::GetVS_VRMode(), vsTexture);
  EXPECT_NE(vsColor, vsTexture);
}

TEST(Vorn2DFX, EveryProgramPairsAVersion120VertexWithA330CorePixelText) {
  for (int id = FX::FX_BEGIN; id < FX::FX_END; ++id) {
    const auto [vs, ps] = FX::ProgramTexts(id);
    if (vs.empty()) continue;
    EXPECT_EQ(vs.rfind("#version 120\n", 0), 0u) << id;
    EXPECT_EQ(ps.substr(ps.find_first_not_of(' '), 18), "#version 330 core\n") << id;
    EXPECT_EQ(ps.substr(ps.size() - 2), "}\n") << id;
  }
}

}  // namespace
}  // namespace vorn
