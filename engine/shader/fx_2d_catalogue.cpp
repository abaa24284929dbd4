// Which texts make up the program of each 2D identifier.
#include "shader/fx_2d.h"

namespace vorn {

std::string Vorn_2DFX::GetVS(int FXID) {
  switch (FXID) {
    case FX_COLOR:
      return GetVS_Color();
    case FX_COLOR_TEXTURE:
      return GetVS_Color_Texture();
    case FX_TEXTURE:
    case FX_GRAY:
    case FX_TEXTURE_BLEND:
    case FX_BLUR:
    case FX_MSK:
    case FX_BRIGHTAREA:
    case FX_BLOOM:
    case FX_DEPTHOFFIELD:
    case FX_NOISE:
    case FX_DEFER_LIGHT:
    case FX_SSAO:
      return GetVS_Texture();
    case FX_VRMODE_LEFT:
    case FX_VRMODE_RIGHT:
      return GetVS_VRMode();
    default:
      return {};
  }
}

std::string Vorn_2DFX::GetPS(int FXID) {
  switch (FXID) {
    case FX_COLOR:
      return GetPS_Color();
    case FX_TEXTURE:
      return GetPS_Texture();
    case FX_COLOR_TEXTURE:
      return GetPS_Color_Texture();
    case FX_GRAY:
      return GetPS_Gray();
    case FX_TEXTURE_BLEND:
      return GetPS_Texture_Blend();
    case FX_BLUR:
      return GetPS_Blur();
    case FX_MSK:
      return GetPS_MSK();
    case FX_BRIGHTAREA:
      return GetPS_BrightArea();
    case FX_BLOOM:
      return GetPS_Bloom();
    case FX_DEPTHOFFIELD:
      return GetPS_DepthOfField();
    case FX_NOISE:
      return GetPS_Noise();
    case FX_DEFER_LIGHT:
      return GetPS_DeferLight();
    case FX_SSAO:
      return GetPS_SSAO();
    case FX_VRMODE_LEFT:
      return GetPS_VRMode(1);
    case FX_VRMODE_RIGHT:
      return GetPS_VRMode(2);
    default:
      return {};
  }
}

std::pair<std::string, std::string> Vorn_2DFX::ProgramTexts(int fxid) { return {GetVS(fxid), GetPS(fxid)}; }

}  // namespace vorn
