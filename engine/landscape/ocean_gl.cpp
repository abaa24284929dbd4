// The ocean's wave and bump fields reach its program with each draw.
#include <epoxy/gl.h>

#include "landscape/ocean.h"
#include "landscape/world_placed_draw.h"
#include "shader/fx_3d.h"
#include "node/program_uniforms.h"

namespace vorn {

void Vorn_3DOcean::draw_begin_shader(int submeshIndex) {
  Vorn_3DPlane::draw_begin_shader(submeshIndex);
  if (!CurrSubMeshFX) return;
  // Each uniform only where the program has it, so another FX on the ocean still draws.
  const ProgramUniforms& u = GetProgramUniforms(*CurrSubMeshFX);
  const auto set = [](GLint location, double value) {
    if (location >= 0) glUniform1f(location, static_cast<float>(value));
  };
  set(u.uWaveFreq, WaveFreq);
  set(u.uWaveAmp, WaveAmp);
  set(u.uBumpScale, BumpScale);
  set(u.uBumpSpeedX, BumpSpeedX);
  set(u.uBumpSpeedY, BumpSpeedY);
}

void Vorn_3DOcean::draw_allsubmesh() {
  DrawWithWorldMatrixForProgram(*this, Vorn_3DFX::FX_OCEAN, [this] { Vorn_3DPlane::draw_allsubmesh(); });
}

}  // namespace vorn
