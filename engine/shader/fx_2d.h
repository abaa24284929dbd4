#pragma once
// Vorn_2DFX: the catalogue of full-screen and overlay programs. Every text is a fixed
// GLSL string: a version 1.20 vertex side that passes a clip-space quad through, and a
// version 3.30 core pixel side. The class has no state; all operations are static so the
// program manager and scripts can ask for texts without an instance.
#include <string>
#include <utility>

namespace vorn {

class Vorn_2DFX {
 public:
  // Identifiers. FX_BEGIN and FX_END are sentinels without a program; the numbers
  // between the listed ones are free and have no program either.
  static constexpr int FX_BEGIN = 200;
  static constexpr int FX_COLOR = 201;
  static constexpr int FX_TEXTURE = 202;
  static constexpr int FX_COLOR_TEXTURE = 203;
  static constexpr int FX_GRAY = 204;
  static constexpr int FX_TEXTURE_BLEND = 205;
  static constexpr int FX_BLUR = 206;
  static constexpr int FX_MSK = 207;
  static constexpr int FX_BRIGHTAREA = 208;
  static constexpr int FX_BLOOM = 209;
  static constexpr int FX_DEPTHOFFIELD = 210;
  static constexpr int FX_NOISE = 211;
  static constexpr int FX_DEFER_LIGHT = 214;
  static constexpr int FX_SSAO = 215;
  static constexpr int FX_VRMODE_LEFT = 220;
  static constexpr int FX_VRMODE_RIGHT = 221;
  static constexpr int FX_END = 230;

  // Vertex and pixel text of an identifier; empty for a number without a program
  // (sentinels, free numbers, anything outside the range).
  static std::string GetVS(int FXID);
  static std::string GetPS(int FXID);
  // Both texts at once, as the program manager compiles them.
  static std::pair<std::string, std::string> ProgramTexts(int fxid);

  // Vertex texts.
  static std::string GetVS_Color();
  static std::string GetVS_Texture();
  static std::string GetVS_Color_Texture();
  static std::string GetVS_VRMode();

  // Pixel texts: plain output.
  static std::string GetPS_Color();
  static std::string GetPS_Texture();
  static std::string GetPS_Color_Texture();
  static std::string GetPS_Gray();
  static std::string GetPS_Texture_Blend();

  // Pixel texts: image filters and the bloom and depth-of-field passes.
  static std::string GetPS_Blur();
  static std::string GetPS_MSK();
  static std::string GetPS_BrightArea();
  static std::string GetPS_Bloom();
  static std::string GetPS_DepthOfField();
  static std::string GetPS_Noise();

  // Pixel texts: deferred point lights and ambient occlusion.
  static std::string GetPS_DeferLight();
  static std::string GetPS_SSAO();

  // Pixel text of a VR eye: the eye's image with two opposite corners cut off in dark
  // grey. GrassType 1 or 2 picks the corner shape; any other value throws ValueError.
  static std::string GetPS_VRMode(int eyeID, int GrassType = 1);
};

}  // namespace vorn
