// Vorn_2DFX: the catalogue of full-screen and overlay programs, as class constants and
// static text operations (callable on the class or on an instance).
#include <utility>

#include "bind_common.h"
#include "shader/fx_2d.h"

namespace vorn::py_bind {
namespace {

// A source text, or None where the catalogue has no program.
py::object text_or_none(std::string text) {
  if (text.empty()) return py::none();
  return py::str(text);
}

}  // namespace

void bind_fx_2d(py::module_& m) {
  using FX = Vorn_2DFX;
  py::class_<FX> cls(m, "Vorn_2DFX",
                     "Catalogue of the full-screen and overlay effects: identifiers FX_BEGIN (200) to FX_END (230)\n"
                     "and the GLSL texts of their programs. The vertex side is version 1.20 and passes a clip-space\n"
                     "quad through; the pixel side is version 3.30 core. The class has no state.");
  cls.def(py::init<>(), "Creates a catalogue object; every operation is also callable on the class.");

  const std::pair<const char*, int> identifiers[] = {
      {"FX_BEGIN", FX::FX_BEGIN},
      {"FX_COLOR", FX::FX_COLOR},
      {"FX_TEXTURE", FX::FX_TEXTURE},
      {"FX_COLOR_TEXTURE", FX::FX_COLOR_TEXTURE},
      {"FX_GRAY", FX::FX_GRAY},
      {"FX_TEXTURE_BLEND", FX::FX_TEXTURE_BLEND},
      {"FX_BLUR", FX::FX_BLUR},
      {"FX_MSK", FX::FX_MSK},
      {"FX_BRIGHTAREA", FX::FX_BRIGHTAREA},
      {"FX_BLOOM", FX::FX_BLOOM},
      {"FX_DEPTHOFFIELD", FX::FX_DEPTHOFFIELD},
      {"FX_NOISE", FX::FX_NOISE},
      {"FX_DEFER_LIGHT", FX::FX_DEFER_LIGHT},
      {"FX_SSAO", FX::FX_SSAO},
      {"FX_VRMODE_LEFT", FX::FX_VRMODE_LEFT},
      {"FX_VRMODE_RIGHT", FX::FX_VRMODE_RIGHT},
      {"FX_END", FX::FX_END},
  };
  for (const auto& [name, value] : identifiers) cls.attr(name) = value;

  // Catalogue lookup.
  cls.def_static(
      "GetVS", [](int FXID) { return text_or_none(FX::GetVS(FXID)); }, py::arg("FXID"),
      "Vertex text of a Vorn_2DFX identifier, or None for a number without a program.");
  cls.def_static(
      "GetPS", [](int FXID) { return text_or_none(FX::GetPS(FXID)); }, py::arg("FXID"),
      "Pixel text of a Vorn_2DFX identifier, or None for a number without a program.");

  // Text operations that take no argument.
  struct TextOp {
    const char* name;
    std::string (*op)();
    const char* doc;
  };
  const TextOp ops[] = {
      {"GetVS_Color", &FX::GetVS_Color, "Vertex text that passes the quad's x and y through as clip coordinates."},
      {"GetVS_Texture", &FX::GetVS_Texture,
       "Vertex text that passes the quad through and hands the texture coordinate on as vOutTexcoords."},
      {"GetVS_Color_Texture", &FX::GetVS_Color_Texture, "Vertex text of FX_COLOR_TEXTURE: the text of GetVS_Texture."},
      {"GetVS_VRMode", &FX::GetVS_VRMode, "Vertex text of the VR eye programs: the text of GetVS_Texture."},
      {"GetPS_Color", &FX::GetPS_Color, "Pixel text that outputs uSubmeshColor (default opaque white)."},
      {"GetPS_Texture", &FX::GetPS_Texture, "Pixel text that outputs texture0."},
      {"GetPS_Color_Texture", &FX::GetPS_Color_Texture, "Pixel text that outputs texture0 times uSubmeshColor."},
      {"GetPS_Gray", &FX::GetPS_Gray, "Pixel text that outputs the luminance of texture0 in grey."},
      {"GetPS_Texture_Blend", &FX::GetPS_Texture_Blend, "Pixel text that outputs texture0 times texture1."},
      {"GetPS_Blur", &FX::GetPS_Blur,
       "Pixel text of a 4 by 4 box average of texture0 from the pixel towards +x and +y (uTexSize in pixels)."},
      {"GetPS_MSK", &FX::GetPS_MSK, "Pixel text of a mosaic of texture0 with cells of uMSKSize pixels."},
      {"GetPS_BrightArea", &FX::GetPS_BrightArea,
       "Pixel text that keeps the luminance above 0.2, in grey and lowered by 0.2 (bloom pass 1)."},
      {"GetPS_Bloom", &FX::GetPS_Bloom, "Pixel text that outputs texture0 plus texture1 (bloom pass 2)."},
      {"GetPS_DepthOfField", &FX::GetPS_DepthOfField,
       "Pixel text that switches between texture0 and its 11 by 11 box blur where the depth in texture1 exceeds 0.2."},
      {"GetPS_Noise", &FX::GetPS_Noise, "Pixel text that outputs a hash of the texture coordinate in grey."},
      {"GetPS_DeferLight", &FX::GetPS_DeferLight,
       "Pixel text that sums up to 64 point lights over the position buffer (texture0) and multiplies by the\n"
       "diffuse (texture2) and original (texture3) images."},
      {"GetPS_SSAO", &FX::GetPS_SSAO,
       "Pixel text that outputs the ambient occlusion term in grey from the position (texture0), normal (texture1)\n"
       "and noise (texture2) images; up to 64 kernel samples."},
  };
  for (const auto& op : ops) cls.def_static(op.name, op.op, op.doc);

  cls.def_static("GetPS_VRMode", &FX::GetPS_VRMode, py::arg("eyeID"), py::arg("GrassType") = 1,
                 "Pixel text of a VR eye: texture0 with two opposite corners cut off in dark grey. eyeID 1 is the\n"
                 "left eye, any other value the right one; GrassType 1 or 2 picks the corner shape. Any other\n"
                 "GrassType raises ValueError.");
}

}  // namespace vorn::py_bind
