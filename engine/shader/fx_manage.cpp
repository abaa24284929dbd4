// Vorn_FXManage operations that need no GL: lookup and source printing.
#include "shader/fx_manage.h"

#include <string_view>

#include "core/console.h"
#include "shader/fx_2d.h"
#include "shader/fx_3d.h"

namespace vorn {
namespace {

// Prints a text the way the debugging listing shows it: a header, a blank line, then the
// text split at every newline (a final newline gives a last, empty line).
void PrintSource(const char* label, int FXID, const std::string& code) {
  console::write_line(std::string(label) + " (" + std::to_string(FXID) + ")=>");
  console::write_line("");
  std::string_view rest = code;
  while (true) {
    const std::size_t cut = rest.find('\n');
    console::write_line(rest.substr(0, cut));
    if (cut == std::string_view::npos) break;
    rest.remove_prefix(cut + 1);
  }
}

const char* Name2D(int FXID) {
  switch (FXID) {
    case Vorn_2DFX::FX_BEGIN: return "FX_BEGIN";
    case Vorn_2DFX::FX_COLOR: return "FX_COLOR";
    case Vorn_2DFX::FX_TEXTURE: return "FX_TEXTURE";
    case Vorn_2DFX::FX_COLOR_TEXTURE: return "FX_COLOR_TEXTURE";
    case Vorn_2DFX::FX_GRAY: return "FX_GRAY";
    case Vorn_2DFX::FX_TEXTURE_BLEND: return "FX_TEXTURE_BLEND";
    case Vorn_2DFX::FX_BLUR: return "FX_BLUR";
    case Vorn_2DFX::FX_MSK: return "FX_MSK";
    case Vorn_2DFX::FX_BRIGHTAREA: return "FX_BRIGHTAREA";
    case Vorn_2DFX::FX_BLOOM: return "FX_BLOOM";
    case Vorn_2DFX::FX_DEPTHOFFIELD: return "FX_DEPTHOFFIELD";
    case Vorn_2DFX::FX_NOISE: return "FX_NOISE";
    case Vorn_2DFX::FX_DEFER_LIGHT: return "FX_DEFER_LIGHT";
    case Vorn_2DFX::FX_SSAO: return "FX_SSAO";
    case Vorn_2DFX::FX_VRMODE_LEFT: return "FX_VRMODE_LEFT";
    case Vorn_2DFX::FX_VRMODE_RIGHT: return "FX_VRMODE_RIGHT";
    case Vorn_2DFX::FX_END: return "FX_END";
    default: return nullptr;
  }
}

}  // namespace

std::optional<unsigned int> Vorn_FXManage::GetShader(int FXID) const {
  if (auto it = Shader_2DFX_Dict.find(FXID); it != Shader_2DFX_Dict.end()) return it->second;
  if (auto it = Shader_3DFX_Dict.find(FXID); it != Shader_3DFX_Dict.end()) return it->second;
  return std::nullopt;
}

// The source is generated anew; the compiled program is not touched.
void Vorn_FXManage::PrintShader(int FXID) const {
  if (Shader_2DFX_Dict.count(FXID)) {
    const auto [vsCode, psCode] = Vorn_2DFX::ProgramTexts(FXID);
    if (!vsCode.empty()) PrintSource("VSCode", FXID, vsCode);
    if (!psCode.empty()) PrintSource("PSCode", FXID, psCode);
  } else if (Shader_3DFX_Dict.count(FXID)) {
    Vorn_3DFX vn3DFX;
    const std::optional<std::string> vsCode = vn3DFX.GetVS(FXID);
    if (vsCode && !vsCode->empty()) PrintSource("VSCode", FXID, *vsCode);
    const std::optional<std::string> psCode = vn3DFX.GetPS(FXID);
    if (psCode && !psCode->empty()) PrintSource("PSCode", FXID, *psCode);
  }
}

std::optional<std::pair<unsigned int, unsigned int>> Vorn_FXManage::ShaderObjects(unsigned int program) const {
  const auto it = shaderObjects_.find(program);
  if (it == shaderObjects_.end()) return std::nullopt;
  return it->second;
}

std::string Vorn_FXManage::IdentifierName(int FXID) {
  if (const char* name = Name2D(FXID)) return std::string("Vorn_2DFX.") + name;
  if (const char* name = Vorn_3DFX::IdentifierName(FXID)) return std::string("Vorn_3DFX.") + name;
  return {};
}

}  // namespace vorn
