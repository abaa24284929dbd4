// The slot assembler: skeletons, slot ordering, shared slots and the copies from the
// vertex to the pixel side.
#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "console_capture.h"
#include "core/errors.h"
#include "shader/shader_code.h"

namespace vorn {
namespace {

using Code = Vorn_Shader_Code;

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::size_t LineIndex(const std::string& text, const std::string& line) {
  const auto lines = Lines(text);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i] == line) return i;
  }
  return std::string::npos;
}

TEST(ShaderCode, SkeletonsGiveCompleteTexts) {
  const Code code;
  EXPECT_EQ(code.GenVSCode(),
            "#version 120\n"
            "varying   float  vDepth;\n"
            "uniform   mat4   uModelMatrix;\n"
            "void main()\n"
            "{\n"
            "vec3 wPosition = (uModelMatrix * gl_Vertex).xyz;\n"
            "gl_Position = gl_ModelViewProjectionMatrix * vec4(wPosition,1.0);\n"
            "vDepth = gl_Position.z;\n"
            "}\n");
  // Pixel side: ambient, submesh colour and fog multiply in that order, then the output.
  const std::string ps = code.GenPSCode();
  const auto lines = Lines(ps);
  ASSERT_EQ(lines.size(), 23u);
  EXPECT_EQ(lines.front(), "#version 330 core");
  EXPECT_EQ(lines[1], "varying    float    vDepth;");
  const std::size_t ambient = LineIndex(ps, "psColor = psColor * vec4(uAmbientColor,1.0);");
  const std::size_t submesh = LineIndex(ps, "psColor = psColor * uSubmeshColor;");
  const std::size_t fog = LineIndex(ps, "psColor = vec4(GetPixelFog(vDepth,psColor.xyz),psColor.w);");
  const std::size_t out = LineIndex(ps, "outColor = psColor;");
  EXPECT_LT(LineIndex(ps, "void main()"), ambient);
  EXPECT_LT(ambient, submesh);
  EXPECT_LT(submesh, fog);
  EXPECT_LT(fog, out);
  EXPECT_EQ(lines.back(), "}");
}

TEST(ShaderCode, DisableDepthAndFogEmptyTheirSlots) {
  Code code;
  code.DisableDepth();
  EXPECT_EQ(code.GenVSCode().find("vDepth"), std::string::npos);

  code.DisableFog();
  const std::string ps = code.GenPSCode();
  EXPECT_EQ(ps.find("uFogInfo"), std::string::npos);
  EXPECT_EQ(ps.find("GetPixelFog"), std::string::npos);
  EXPECT_NE(ps.find("varying    float    vDepth;"), std::string::npos);
}

TEST(ShaderCode, SlotNumberAloneOrdersTheText) {
  // The same calls in opposite orders give one text.
  const std::vector<std::function<void(Code&)>> calls = {
      [](Code& c) { c.GenVSFunCode_UV(); },        [](Code& c) { c.SetVSVary_UV(); },
      [](Code& c) { c.SetVSAttribute_UV(); },      [](Code& c) { c.GenVSFunCode_Diffuse(); },
      [](Code& c) { c.SetVSUniform_Diffuse(); },   [](Code& c) { c.SetVSVary_Diffuse(); },
      [](Code& c) { c.SetVSAttribute_Position(); },
  };
  Code forward, backward;
  for (const auto& call : calls) call(forward);
  for (auto it = calls.rbegin(); it != calls.rend(); ++it) (*it)(backward);
  EXPECT_EQ(forward.GenVSCode(), backward.GenVSCode());
  const std::string vs = forward.GenVSCode();
  EXPECT_LT(LineIndex(vs, "attribute vec3   aPosition;"), LineIndex(vs, "attribute vec2   aTexCoord;"));
  EXPECT_LT(LineIndex(vs, "uniform   vec3   uSunLight[2];"), LineIndex(vs, "void main()"));
  EXPECT_LT(LineIndex(vs, "vSunLightColor = uSunLight[1] * fDotNL;"),
            LineIndex(vs, "vTexCoord = vec2(gl_MultiTexCoord0.x,gl_MultiTexCoord0.y);"));
}

TEST(ShaderCode, GrassAndSkinShareSlot72) {
  static_assert(Code::VS_CODE_GENERATE_GRASS == 72 && Code::VS_CODE_GENERATE_SKINPOSITION == 72);
  Code code;
  code.GenVSFunCode_Grass();
  code.GenVSFunCode_SkinPosition();
  const std::string vs = code.GenVSCode();
  EXPECT_EQ(vs.find("SwingVertex"), std::string::npos);
  EXPECT_NE(vs.find("int     boneIndex1 = int(gl_MultiTexCoord0.z);"), std::string::npos);
  EXPECT_NE(vs.find("gl_Position = gl_ModelViewProjectionMatrix * (uModelMatrix * skinposition);\n"),
            std::string::npos);
  EXPECT_EQ(vs.find("wPosition"), std::string::npos);

  // Grass replaces the output position with the swung vertex.
  Code grass;
  grass.GenVSFunCode_Grass();
  EXPECT_NE(grass.GenVSCode().find("float TimeOffset =  uCurrTime * uSwingSpeed;\n"), std::string::npos);
  EXPECT_EQ(grass.VSCode_Dict.at(Code::VS_CODE_GENERATE_OUTPOSITION),
            ShaderLines{"gl_Position = gl_ModelViewProjectionMatrix * SwingVertex;"});
}

TEST(ShaderCode, OceanWaveBlockLandsAheadOfMain) {
  static_assert(Code::PS_CODE_VARY_OCEAN == 11 && Code::VS_CODE_VARY_VERTEXCOLOR == 11);
  Code code;
  code.SetVSVary_Color();
  code.GenVSFunCode_Ocean();
  const std::string vs = code.GenVSCode();
  const std::size_t wave = LineIndex(vs, "vec4 P = vec4(gl_Vertex.x,0.0,gl_Vertex.z,1.0);");
  ASSERT_NE(wave, std::string::npos);
  EXPECT_LT(wave, LineIndex(vs, "void main()"));
  // The wave block replaced the colour varying that shares its slot.
  EXPECT_EQ(vs.find("vColor"), std::string::npos);
  // The output position was emptied, then given the wave position and the projection.
  EXPECT_EQ(code.VSCode_Dict.at(Code::VS_CODE_GENERATE_OUTPOSITION),
            (ShaderLines{"gl_Position = gl_ModelViewProjectionMatrix * P;", "vProjTexC = gl_Position;"}));
}

TEST(ShaderCode, WaveBlockMovesToTheTopOfMain) {
  Code code;
  code.GenVSFunCode_Ocean();
  const ShaderLines wave = code.VSCode_Dict.at(Code::PS_CODE_VARY_OCEAN);
  code.MoveVSWaveBlockIntoMain();
  EXPECT_FALSE(code.VSCode_Dict.count(Code::PS_CODE_VARY_OCEAN));
  ShaderLines begin{"void main()", "{"};
  begin.insert(begin.end(), wave.begin(), wave.end());
  EXPECT_EQ(code.VSCode_Dict.at(Code::VS_CODE_FUNCTION_BEGIN), begin);
  // Without a wave block nothing moves.
  Code plain;
  const std::string before = plain.GenVSCode();
  plain.MoveVSWaveBlockIntoMain();
  EXPECT_EQ(plain.GenVSCode(), before);
}

TEST(ShaderCode, TextOperationsWithArguments) {
  Code code;
  code.AddVSUniform_Var("vec4", "uFirst");
  code.AddVSUniform_Var("float", "uSecond");
  code.SetVSAttribute_Version("330");
  const std::string vs = code.GenVSCode();
  EXPECT_EQ(Lines(vs).front(), "#version 330");
  EXPECT_EQ(LineIndex(vs, "uniform   vec4 uFirst;") + 1, LineIndex(vs, "uniform   float uSecond;"));

  // Texture declarations append, named by their channel.
  code.SetPSUni_Texture();
  code.SetPSUni_CubeTexture();
  code.SetPSUni_Texture(3);
  EXPECT_EQ(code.PSCode_Dict.at(Code::PS_CODE_UNIFORM_TEXTURE),
            (ShaderLines{"uniform sampler2D     texture0;", "uniform samplerCube     texture0;",
                         "uniform sampler2D     texture3;"}));
  code.GenPSFunCode_Texture_EnvRef(4);
  EXPECT_EQ(code.PSCode_Dict.at(Code::PS_CODE_GENERATE_SKYBOX).at(3), "vec4   SkyBoxRefColor  = texture2D(texture4,R);");
  // The specular statement replaces the colour unless it is asked to add to it.
  code.GenPSFunCode_Specular(false);
  EXPECT_EQ(code.PSCode_Dict.at(Code::PS_CODE_GENERATE_ADDSPECULARCOLOR),
            ShaderLines{"psColor = vec4(uSpecularColor.xyz,0.0) *  fSpecular;"});
}

TEST(ShaderCode, PixelVaryingsCopyTheVertexSlots) {
  struct Copy {
    const char* name;
    void (Code::*vertex)();
    void (Code::*pixel)();
    int psSlot;
  };
  const Copy copies[] = {
      {"Position", &Code::SetVSVary_Position, &Code::SetPSVary_Position, Code::PS_CODE_VARY_POSITION},
      {"VertexColor", &Code::SetVSVary_Color, &Code::SetPSVary_VertexColor, Code::PS_CODE_VARY_VERTEXCOLOR},
      {"Alpha", &Code::SetVSVary_Alpha, &Code::SetPSVary_Alpha, Code::PS_CODE_VARY_ALPHA},
      {"Normal", &Code::SetVSVary_Normal, &Code::SetPSVary_Normal, Code::PS_CODE_VARY_NORMAL},
      {"BTN", &Code::SetVSVary_BTN, &Code::SetPSVary_BTN, Code::PS_CODE_VARY_BTN},
      {"UV", &Code::SetVSVary_UV, &Code::SetPSVary_UV, Code::PS_CODE_VARY_UV},
      {"EnvRef", &Code::SetVSVary_EnvRefUV, &Code::SetPSVary_Texture_EnvRef, Code::PS_CODE_VARY_ENVREF_UV},
      {"Diffuse", &Code::SetVSVary_Diffuse, &Code::SetPSVary_Diffuse, Code::PS_CODE_VARY_DIFFUSE},
      {"ShadowMapUV", &Code::SetVSVary_ShadowMapUV, &Code::SetPSVary_ShadowMapUV, Code::PS_CODE_VARY_SHADOWMAP_UV},
      {"Terrain", &Code::SetVSVary_Terrain, &Code::SetPSVary_Terrain, Code::PS_CODE_VARY_TERRAIN},
      {"TiledMap", &Code::SetVSVary_TiledMap, &Code::SetPSVary_TiledMap, Code::PS_CODE_VARY_TERRAIN},
      {"Ocean", &Code::SetVSVary_Ocean, &Code::SetPSVary_Ocean, Code::PS_CODE_VARY_OCEAN},
  };
  for (const Copy& copy : copies) {
    SCOPED_TRACE(copy.name);
    Code fresh;
    EXPECT_THROW((fresh.*copy.pixel)(), KeyError);
    Code code;
    (code.*copy.vertex)();
    (code.*copy.pixel)();
    ASSERT_TRUE(code.PSCode_Dict.count(copy.psSlot));
    EXPECT_FALSE(code.PSCode_Dict.at(copy.psSlot).empty());
    // The copy is the vertex declaration line for line.
    const std::string ps = code.GenPSCode();
    for (const std::string& line : code.PSCode_Dict.at(copy.psSlot)) {
      EXPECT_NE(code.GenVSCode().find(line + "\n"), std::string::npos) << line;
      EXPECT_NE(ps.find(line + "\n"), std::string::npos) << line;
    }
  }
  // The terrain copy brings the tile constants along.
  Code terrain;
  terrain.SetVSVary_Terrain();
  terrain.SetPSVary_Terrain();
  EXPECT_NE(terrain.GenPSCode().find("float tileU = 1.0 / 128.0;\n"), std::string::npos);
}

TEST(ShaderCode, PixelOperationsThatCreateSlots) {
  Code code;
  code.GenPSFunCode_ShadowMap();
  code.GenPSFunCode_ShadowMap();  // a second call does not stack the statements
  EXPECT_TRUE(code.PSCode_Dict.at(Code::PS_CODE_UNIFORM_SHADOWMAP).empty());
  EXPECT_EQ(code.PSCode_Dict.at(Code::PS_CODE_GENERATE_SHADOWMAPCOLOR).size(), 6u);
  EXPECT_EQ(code.PSCode_Dict.at(Code::PS_CODE_GENERATE_SHADOWMAPCOLOR).back(),
            "psColor = psColor * GetShadowMapColor(UVCoords);");

  // The ocean uniforms close their last helper in the ocean varying slot, which the
  // operation creates when the varyings were never copied.
  Code ocean;
  ocean.SetPSUni_Ocean();
  EXPECT_EQ(ocean.PSCode_Dict.at(Code::PS_CODE_VARY_OCEAN), ShaderLines{"}"});
}

TEST(ShaderCode, PrintVSCodePrintsTheLinesAsOneList) {
  ConsoleCapture capture;
  Code code;
  code.DisableDepth();
  code.PrintVSCode();
  ASSERT_EQ(capture.lines().size(), 1u);
  EXPECT_EQ(capture.lines()[0],
            "['#version 120', 'uniform   mat4   uModelMatrix;', 'void main()', '{', "
            "'vec3 wPosition = (uModelMatrix * gl_Vertex).xyz;', "
            "'gl_Position = gl_ModelViewProjectionMatrix * vec4(wPosition,1.0);', '}']");
}

}  // namespace
}  // namespace vorn
