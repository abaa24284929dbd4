// Texts of the 2D effect catalogue and which identifiers have a program.
#include "shader/fx_2d.h"

#include <gtest/gtest.h>

#include <initializer_list>
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
  // Every line indented by twelve spaces except blank ones and the closing brace of main.
  const std::string ssao = FX::GetPS_SSAO();
  std::size_t lines = 0;
  for (std::size_t at = 0, next; at < ssao.size(); at = next + 1, ++lines) {
    next = ssao.find('\n', at);
    const std::string line = ssao.substr(at, next - at);
    if (next + 1 == ssao.size()) {
      EXPECT_EQ(line, "}");
    } else if (!line.empty()) {
      EXPECT_EQ(line.rfind(std::string(12, ' '), 0), 0u) << line;
    }
  }
  EXPECT_EQ(lines, 68u);
  EXPECT_NE(ssao.find("\n            const vec2 randomScale = vec2(800.0f/10.0f,600.0f/10.0f);\n"), std::string::npos);
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
  const std::string rightLine =
      "    if (((1.0 - vOutTexcoords.x ) * vOutTexcoords.y) < 0.04 || (vOutTexcoords.x) * (1.0 - vOutTexcoords.y) < 0.04 )";
  const std::string grassLeft =
      "    if ((abs(1.0 - vOutTexcoords.x)* vOutTexcoords.y) < 0.04 || abs(1.0 - vOutTexcoords.x) * (1.0 - vOutTexcoords.y) < 0.04 )";
  const std::string grassOther =
      "    if (( vOutTexcoords.x * vOutTexcoords.y) < 0.04|| vOutTexcoords.x * (1.0 - vOutTexcoords.y) < 0.04 )";
  const struct {
    int eyeID, GrassType;
    const std::string& line;
  } cases[] = {{2, 1, rightLine}, {0, 1, rightLine}, {-7, 1, rightLine}, {1, 2, grassLeft}, {5, 2, grassOther}};
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

}  // namespace
}  // namespace vorn
