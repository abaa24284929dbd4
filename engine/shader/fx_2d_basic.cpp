// Vertex texts and the plain colour, texture and VR eye pixel texts of Vorn_2DFX.
#include "shader/fx_2d.h"

#include "core/errors.h"

namespace vorn {

std::string Vorn_2DFX::GetVS_Color() {
  return R"glsl(#version 120
attribute vec3  vPosition;
void main()
{
    gl_Position = vec4(gl_Vertex.x,gl_Vertex.y, 0, 1);
}
)glsl";
}

std::string Vorn_2DFX::GetVS_Texture() {
  return R"glsl(#version 120
attribute vec3  vPosition;
varying   vec2  vOutTexcoords;
void main()
{
    gl_Position = vec4(gl_Vertex.x,gl_Vertex.y, 0, 1);
    vOutTexcoords = vec2(gl_MultiTexCoord0.x,gl_MultiTexCoord0.y);
}
)glsl";
}

// Colour and texture share the texture vertex text; the colour is a uniform.
std::string Vorn_2DFX::GetVS_Color_Texture() { return GetVS_Texture(); }

std::string Vorn_2DFX::GetVS_VRMode() { return GetVS_Texture(); }

std::string Vorn_2DFX::GetPS_Color() {
  return R"glsl(#version 330 core
uniform vec4    uSubmeshColor = vec4(1.0,1.0,1.0,1.0);
out     vec4 outColor;

void main()
{
    outColor = uSubmeshColor;
}
)glsl";
}

std::string Vorn_2DFX::GetPS_Texture() {
  return R"glsl(#version 330 core
uniform sampler2D texture0;
varying vec2   vOutTexcoords;
out vec4 outColor;
void main()
{
    outColor = texture2D(texture0, vOutTexcoords.xy);
}
)glsl";
}

std::string Vorn_2DFX::GetPS_Color_Texture() {
  return R"glsl(#version 330 core
uniform  sampler2D texture0;
uniform  vec4   uSubmeshColor = vec4(1.0,1.0,1.0,1.0);
varying  vec2   vOutTexcoords;
out vec4 outColor;
void main()
{
    outColor = texture2D(texture0, vOutTexcoords.xy) * uSubmeshColor;
}
)glsl";
}

std::string Vorn_2DFX::GetPS_Gray() {
  return R"glsl(#version 330 core
uniform sampler2D texture0;
varying vec2   vOutTexcoords;
out vec4 outColor;
void main()
{
    vec4 texColor = texture2D(texture0, vOutTexcoords.xy);
    float gray = texColor.x*0.2989+texColor.y*0.5870+texColor.z*0.1140;
    outColor = vec4(gray,gray,gray,1.0);
}
)glsl";
}

std::string Vorn_2DFX::GetPS_Texture_Blend() {
  return R"glsl(#version 330 core
uniform sampler2D texture0;
uniform sampler2D texture1;
varying vec2   vOutTexcoords;
out vec4 outColor;
void main()
{
    vec4 texColor1 = texture2D(texture0, vOutTexcoords.xy);
    vec4 texColor2 = texture2D(texture1, vOutTexcoords.xy);
    outColor = texColor1 * texColor2;
    //outColor = texColor1;
}
)glsl";
}

// The VR eye mask: a fixed head and tail around one condition line. The product of two
// corner distances below 0.04 marks the two cut-off corners of the eye's image.
std::string Vorn_2DFX::GetPS_VRMode(int eyeID, int GrassType) {
  const char* EyeCheckLine = nullptr;
  if (GrassType == 1) {
    EyeCheckLine = eyeID == 1
        ? "if ((vOutTexcoords.x * vOutTexcoords.y) < 0.04 || (1.0 - vOutTexcoords.x) * (1.0 - vOutTexcoords.y) < 0.04 )"
        : "if (((1.0 - vOutTexcoords.x ) * vOutTexcoords.y) < 0.04 || (vOutTexcoords.x) * (1.0 - vOutTexcoords.y) < 0.04 )";
  } else if (GrassType == 2) {
    EyeCheckLine = eyeID == 1
        ? "if ((abs(1.0 - vOutTexcoords.x)* vOutTexcoords.y) < 0.04 || abs(1.0 - vOutTexcoords.x) * (1.0 - vOutTexcoords.y) < 0.04 )"
        : "if (( vOutTexcoords.x * vOutTexcoords.y) < 0.04|| vOutTexcoords.x * (1.0 - vOutTexcoords.y) < 0.04 )";
  } else {
    throw ValueError("Vorn_2DFX.GetPS_VRMode: GrassType must be 1 or 2, not " + std::to_string(GrassType));
  }
  std::string code = R"glsl(#version 330 core
uniform sampler2D texture0;
varying vec2   vOutTexcoords;
out vec4 outColor;
void main()
{
    vec4 texColor = texture2D(texture0, vOutTexcoords.xy);

)glsl";
  code += "    ";
  code += EyeCheckLine;
  code += R"glsl(

    {
        outColor = vec4(0.1,0.105,0.11,1.0);
    }
    else
    {
        outColor = texColor ;
    }

}
)glsl";
  return code;
}

}  // namespace vorn
