// The slot mechanism of Vorn_Shader_Code: skeletons, text assembly and the operations
// that touch both sides.
#include "shader/shader_code.h"

#include "core/console.h"
#include "core/errors.h"

namespace vorn {
namespace {

using VS = Vorn_Shader_Code;

// Joins the slots of [first, last] in ascending order, one newline after each line.
std::string JoinSlots(const ShaderSlots& slots, int first, int last) {
  const auto begin = slots.lower_bound(first);
  const auto end = slots.upper_bound(last);
  std::size_t size = 0;
  for (auto it = begin; it != end; ++it) {
    for (const std::string& line : it->second) size += line.size() + 1;
  }
  std::string text;
  text.reserve(size);
  for (auto it = begin; it != end; ++it) {
    for (const std::string& line : it->second) {
      text += line;
      text += '\n';
    }
  }
  return text;
}

}  // namespace

Vorn_Shader_Code::Vorn_Shader_Code() {
  VSCode_Dict = {
      {VS::VS_CODE_IN_VERSION, {"#version 120"}},
      {VS::VS_CODE_VARY_DEPTH, {"varying   float  vDepth;"}},
      {VS::VS_CODE_UNIFORM_MATRIX_MODEL, {"uniform   mat4   uModelMatrix;"}},
      {VS::VS_CODE_FUNCTION_BEGIN, {"void main()", "{"}},
      {VS::VS_CODE_GENERATE_OUTPOSITION,
       {"vec3 wPosition = (uModelMatrix * gl_Vertex).xyz;",
        "gl_Position = gl_ModelViewProjectionMatrix * vec4(wPosition,1.0);"}},
      {VS::VS_CODE_GENERATE_VARY_DEPTH, {"vDepth = gl_Position.z;"}},
      {VS::VS_CODE_FUNCTION_END, {"}"}},
  };
  PSCode_Dict = {
      {VS::PS_CODE_IN_VERSION, {"#version 330 core"}},
      {VS::PS_CODE_VARY_DEPTH, {"varying    float    vDepth;"}},
      {VS::PS_CODE_UNIFORM_AMBIENT, {"uniform vec3    uAmbientColor;"}},
      // Fog: start, end and colour; the ramp is the fourth power of the linear fraction.
      {VS::PS_CODE_UNIFORM_FOG,
       {
           "uniform    float    uFogInfo[5];",
           "vec3    GetPixelFog( float Depth, vec3 PixelColor)",
           "{",
           "    if(uFogInfo[1] > uFogInfo[0])",
           "    {",
           "        float Lerp = clamp(( Depth - uFogInfo[0] ) / ( uFogInfo[1] - uFogInfo[0] ) ,0.0,1.0);",
           "        return ( vec3(uFogInfo[2],uFogInfo[3],uFogInfo[4]) - PixelColor ) * pow(Lerp,4.0) + PixelColor;",
           "    }",
           "    return PixelColor;",
           "}",
       }},
      {VS::PS_CODE_UNIFORM_SUBMESH_COLOR, {"uniform vec4    uSubmeshColor = vec4(1.0,1.0,1.0,1.0);"}},
      {VS::PS_CODE_DEFINE_OUT_COLOR, {"out vec4 outColor;"}},
      {VS::PS_CODE_FUNCTION_BEGIN, {"void main()", "{", "vec4 psColor = vec4(1.0,1.0,1.0,1.0);"}},
      {VS::PS_CODE_GENERATE_AMBIENTCOLOR, {"psColor = psColor * vec4(uAmbientColor,1.0);"}},
      {VS::PS_CODE_GENERATE_SUBMESH_COLOR, {"psColor = psColor * uSubmeshColor;"}},
      {VS::PS_CODE_GENERATE_FOG, {"psColor = vec4(GetPixelFog(vDepth,psColor.xyz),psColor.w);"}},
      {VS::PS_CODE_GENERATE_OUTPOSITION, {"outColor = psColor;"}},
      {VS::PS_CODE_FUNCTION_END, {"}"}},
  };
}

std::string Vorn_Shader_Code::GenVSCode() const {
  return JoinSlots(VSCode_Dict, VS_CODE_IN_VERSION, VS_CODE_FUNCTION_END);
}

std::string Vorn_Shader_Code::GenPSCode() const {
  return JoinSlots(PSCode_Dict, PS_CODE_IN_VERSION, PS_CODE_FUNCTION_END);
}

void Vorn_Shader_Code::PrintVSCode() const {
  std::vector<std::string> VSCodeList;
  for (auto it = VSCode_Dict.lower_bound(VS_CODE_IN_VERSION); it != VSCode_Dict.upper_bound(VS_CODE_FUNCTION_END);
       ++it) {
    VSCodeList.insert(VSCodeList.end(), it->second.begin(), it->second.end());
  }
  console::print(VSCodeList);
}

void Vorn_Shader_Code::DisableDepth() {
  VSCode_Dict[VS_CODE_VARY_DEPTH].clear();
  VSCode_Dict[VS_CODE_GENERATE_VARY_DEPTH].clear();
}

// Touches the pixel side only; the vertex operations of the catalogue call it while they
// build, since both sides live in this one object.
void Vorn_Shader_Code::DisableFog() {
  PSCode_Dict[PS_CODE_UNIFORM_FOG].clear();
  PSCode_Dict[PS_CODE_GENERATE_FOG].clear();
}

void Vorn_Shader_Code::CopyVaryToPS(int vsSlot, int psSlot, const char* operation) {
  const auto it = VSCode_Dict.find(vsSlot);
  if (it == VSCode_Dict.end()) {
    throw KeyError(std::string("Vorn_Shader_Code.") + operation + ": vertex slot " + std::to_string(vsSlot) +
                   " was never written; run the vertex operation on this object first");
  }
  PSCode_Dict[psSlot] = it->second;
}

}  // namespace vorn
