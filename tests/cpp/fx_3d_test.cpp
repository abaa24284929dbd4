// The 3D catalogue: the stateful vertex/pixel pair, the gaps of the catalogue, the texts
// of grass and ocean, and fingerprints of every other program text.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <set>
#include <string>

#include "core/errors.h"
#include "shader/fx_2d.h"
#include "shader/fx_3d.h"

namespace vorn {
namespace {

using FX = Vorn_3DFX;

// Identifiers whose pixel text is a fixed string, independent of the assembler.
const std::set<int> kFixedPixelText = {FX::FX_DEPTH, FX::FX_XYZ, FX::FX_COLOR, FX::FX_NORMAL,
                                       FX::FX_NORMAL_VIEW_INVERSE, FX::FX_AXIS};
// Identifiers without a program; 319 has a vertex text only.
const std::set<int> kNoPixelText = {FX::FX_BEGIN, FX::FX_DIFFUSE_TEXTURE_SHADOWMAP, FX::FX_COLOR_SKIN,
                                    FX::FX_DIFFUSE_TEXTURE_BUMP_SKIN, FX::FX_DIFFUSE_TEXTURE_PTLIGHT_SKIN};

TEST(FX3D, PixelTextNeedsTheVertexTextFirstAndGapsHaveNone) {
  for (int id = FX::FX_BEGIN - 5; id <= FX::FX_END + 5; ++id) {
    FX fresh;
    if (!FX::IdentifierName(id)) {  // gaps of the catalogue have no text at all
      EXPECT_FALSE(fresh.GetVS(id) || fresh.GetPS(id)) << id;
      continue;
    }
    if (kNoPixelText.count(id) || id == FX::FX_END) continue;
    SCOPED_TRACE(FX::IdentifierName(id));
    if (kFixedPixelText.count(id)) {
      EXPECT_TRUE(fresh.GetPS(id).has_value());
    } else {
      EXPECT_THROW(fresh.GetPS(id), AttributeError);
      EXPECT_EQ(fresh.shaderCode, nullptr);
    }
    // In the intended order both sides come out, and each vertex text starts a new object.
    FX fx;
    ASSERT_TRUE(fx.GetVS(id).has_value());
    const auto first = fx.shaderCode;
    EXPECT_TRUE(fx.GetPS(id).has_value());
    fx.GetVS(id);
    EXPECT_NE(fx.shaderCode, first);
  }
}

// Every other program's text is pinned byte for byte by the fingerprints below; grass
// and ocean gained declarations and are checked by what they declare.
TEST(FX3D, GrassAndOceanDeclareWhatTheyUse) {
  FX fx;
  // The ocean declares the time, texture scale and eye position its waves read, and its
  // wave block runs at the top of main(); its pixel side has no surface text.
  const std::string ocean = *fx.GetVS(FX::FX_OCEAN);
  for (const char* line : {"uniform float uCurrTime = 0.0;\n", "uniform float uTexScale = 1.0;\n",
                           "uniform vec3  uEyePosition;\n"}) {
    EXPECT_LT(ocean.find(line), ocean.find("void main()")) << line;
  }
  EXPECT_NE(ocean.find("void main()\n{\nvec4 P = vec4(gl_Vertex.x,0.0,gl_Vertex.z,1.0);\nWave wave[2];\n"),
            std::string::npos);
  const std::string oceanPS = *fx.GetPS(FX::FX_OCEAN);
  EXPECT_NE(oceanPS.find("varying   vec4  vProjTexC;"), std::string::npos);
  EXPECT_EQ(oceanPS.find("normalT0"), std::string::npos);

  // The grass declares the time and sun its vertex side reads and the sampler and
  // coordinate of its alpha test.
  const std::string grass = *fx.GetVS(FX::FX_GRASS);
  for (const char* line : {"uniform float uCurrTime = 0.0;\n", "uniform   vec3   uSunLight[2];\n"}) {
    EXPECT_LT(grass.find(line), grass.find("void main()")) << line;
  }
  const std::string grassPS = *fx.GetPS(FX::FX_GRASS);
  for (const char* line : {"varying   vec2    vTexCoord;\n", "uniform sampler2D     texture0;\n"}) {
    EXPECT_LT(grassPS.find(line), grassPS.find("void main()")) << line;
  }
}

// FNV-1a, 64 bits: a fingerprint of a program text.
std::uint64_t Fingerprint(const std::string& text) {
  std::uint64_t h = 0xcbf29ce484222325ull;
  for (unsigned char c : text) h = (h ^ c) * 0x100000001b3ull;
  return h;
}

// Fingerprints of the vertex and pixel texts of every catalogue program but grass and
// ocean (whose texts gained declarations), taken before that change: the change leaves
// every other program byte for byte as it was. An empty pixel text stands for none.
struct TextPrint {
  int id;
  std::uint64_t vs, ps;
};
constexpr TextPrint kTextPrints[] = {
{201, 0x22e17d50bf722172ull, 0x233a73ea94f3a037ull},
    {202, 0xdbe76fcef4a24b55ull, 0xa12a2e346b504269ull},
    {203, 0xdbe76fcef4a24b55ull, 0xef2e0cf6fbbc6970ull},
    {204, 0xdbe76fcef4a24b55ull, 0x0a8fcfdf18746322ull},
    {205, 0xdbe76fcef4a24b55ull, 0x9ea811c7dd7b01eaull},
    {206, 0xdbe76fcef4a24b55ull, 0x042d8f5a5030a6c7ull},
    {207, 0xdbe76fcef4a24b55ull, 0x8f23d2c79cc6fc70ull},
    {208, 0xdbe76fcef4a24b55ull, 0xe44d374093dd498aull},
    {209, 0xdbe76fcef4a24b55ull, 0x1c14a03d3fffc325ull},
    {210, 0xdbe76fcef4a24b55ull, 0xdbdf0a510cc0a37eull},
    {211, 0xdbe76fcef4a24b55ull, 0x875da825cf169273ull},
    {214, 0xdbe76fcef4a24b55ull, 0xe6cced849039a397ull},
    {215, 0xdbe76fcef4a24b55ull, 0xd165e183698ba66bull},
    {220, 0xdbe76fcef4a24b55ull, 0x4c678ca25dc8539dull},
    {221, 0xdbe76fcef4a24b55ull, 0x978c4774d8a1364cull},
    {301, 0x560478c4f76ae1d4ull, 0x22adcad74daf9317ull},
    {302, 0xe3fe729c86e95f25ull, 0xb4f4d8917596988bull},
    {303, 0xa86a944aea1f6e9eull, 0x0ef9547ed2e95e77ull},
    {304, 0xf539eb36d1cf30adull, 0x91806def0174bbf9ull},
    {305, 0x3d22548590536d98ull, 0x465e2a898db8f871ull},
    {306, 0x471a2757df428d49ull, 0xb70d0931bf32869aull},
    {310, 0xcf7a5ad3c8c58080ull, 0xc96d248e2d802d7cull},
    {311, 0x471a2757df428d49ull, 0xf4c2077b413cd438ull},
    {312, 0x65195d4e36f4119dull, 0xa7846ed042762bc1ull},
    {313, 0x8b9184472ce93393ull, 0x8689c7bc2be9cae6ull},
    {314, 0x4b1bd51c104a63f7ull, 0xe9adb8ee1e1f1836ull},
    {315, 0xe336c8662a9affb9ull, 0xf6e87c6488d2cf28ull},
    {316, 0x53760b92cc696dfcull, 0xd4b362e3a5438accull},
    {317, 0x5749e1101ca30038ull, 0xce0fee614c009592ull},
    {318, 0x6ab256c3586a8ad2ull, 0x6319239aaf220139ull},
    {319, 0x487af2b49e4050b5ull, 0xcbf29ce484222325ull},
    {320, 0x35bc2b7e328d5548ull, 0x5e5e7fa06927934eull},
    {321, 0x3edb50501f704e38ull, 0x98664efa8517b434ull},
    {323, 0x93d2c3a9e9f32047ull, 0xfb092c7e91fb5031ull},
    {324, 0x5749e1101ca30038ull, 0xc10486b3e23e7270ull},
    {330, 0x9c2fc3bbff98595cull, 0x4f536cfe86a17ca2ull},
    {331, 0xc6957eca9c850eddull, 0x7a20a3d53af37f7eull},
    {341, 0xc00ffa5c33528023ull, 0x93c55e50ae560582ull},
    {342, 0x363dd7380858a70bull, 0xf4c2077b413cd438ull},
    {343, 0x362baf19993fe3d2ull, 0x8689c7bc2be9cae6ull},
    {344, 0x34d403fc5ba06af1ull, 0xd4b362e3a5438accull},
    {345, 0x3324de54db065f1dull, 0xce0fee614c009592ull},
    {372, 0xb508479c95d23fd4ull, 0xd3a0d2cb5ed15c16ull},
    {373, 0x00ef04538740f978ull, 0xea1c2c3f251bdc04ull},
    {375, 0xb27eddc474704910ull, 0x0ef9547ed2e95e77ull},
};

TEST(FX3D, EveryProgramButGrassAndOceanKeepsItsText) {
  std::set<int> seen;
  for (int id = Vorn_2DFX::FX_BEGIN; id < Vorn_2DFX::FX_END; ++id) {
    const auto [vs, ps] = Vorn_2DFX::ProgramTexts(id);
    if (vs.empty() && ps.empty()) continue;
    seen.insert(id);
    const auto* print = std::find_if(std::begin(kTextPrints), std::end(kTextPrints),
                                     [id](const TextPrint& p) { return p.id == id; });
    ASSERT_NE(print, std::end(kTextPrints)) << "a new 2D program " << id;
    EXPECT_EQ(Fingerprint(vs), print->vs) << "vertex text of " << id;
    EXPECT_EQ(Fingerprint(ps), print->ps) << "pixel text of " << id;
  }
  for (int id = FX::FX_BEGIN; id < FX::FX_END; ++id) {
    FX fx;
    const std::optional<std::string> vs = fx.GetVS(id);
    if (!vs || id == FX::FX_GRASS || id == FX::FX_OCEAN) continue;
    const std::string ps = fx.GetPS(id).value_or(std::string());
    seen.insert(id);
    const auto* print = std::find_if(std::begin(kTextPrints), std::end(kTextPrints),
                                     [id](const TextPrint& p) { return p.id == id; });
    ASSERT_NE(print, std::end(kTextPrints)) << "a new 3D program " << id;
    EXPECT_EQ(Fingerprint(*vs), print->vs) << "vertex text of " << FX::IdentifierName(id);
    EXPECT_EQ(Fingerprint(ps), print->ps) << "pixel text of " << FX::IdentifierName(id);
  }
  EXPECT_EQ(seen.size(), std::size(kTextPrints)) << "every fingerprinted program still exists";
}

}  // namespace
}  // namespace vorn
