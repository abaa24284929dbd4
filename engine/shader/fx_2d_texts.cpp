#include "shader/fx_2d.h"
namespace vorn {
std::string Vorn_2DFX::GetVS_Color() { return {}; }
std::string Vorn_2DFX::GetVS_Texture() { return {}; }
std::string Vorn_2DFX::GetVS_Color_Texture() { return {}; }
std::string Vorn_2DFX::GetVS_VRMode() { return {}; }
std::string Vorn_2DFX::GetPS_Color() { return {}; }
std::string Vorn_2DFX::GetPS_Texture() { return {}; }
std::string Vorn_2DFX::GetPS_Color_Texture() { return {}; }
std::string Vorn_2DFX::GetPS_Gray() { return {}; }
std::string Vorn_2DFX::GetPS_Texture_Blend() { return {}; }
std::string Vorn_2DFX::GetPS_Blur() { return {}; }
std::string Vorn_2DFX::GetPS_MSK() { return {}; }
std::string Vorn_2DFX::GetPS_BrightArea() { return {}; }
std::string Vorn_2DFX::GetPS_Bloom() { return {}; }
std::string Vorn_2DFX::GetPS_DepthOfField() { return {}; }
std::string Vorn_2DFX::GetPS_Noise() { return {}; }
std::string Vorn_2DFX::GetPS_DeferLight() { return {}; }
std::string Vorn_2DFX::GetPS_SSAO() { return {}; }
std::string Vorn_2DFX::GetPS_VRMode(int, int) { return {}; }
}  // namespace vorn
