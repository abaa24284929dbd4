// The grass's swing reaches its program with each draw.
#include <epoxy/gl.h>

#include "landscape/grass.h"
#include "landscape/world_placed_draw.h"
#include "shader/fx_3d.h"
#include "node/program_uniforms.h"

namespace vorn {

void Vorn_3DGrass::draw_begin_shader(int submeshIndex) {
  Vorn_3DGameNode::draw_begin_shader(submeshIndex);
  if (!CurrSubMeshFX) return;
  const ProgramUniforms& u = GetProgramUniforms(*CurrSubMeshFX);
  if (u.uSwingSpeed >= 0) glUniform1f(u.uSwingSpeed, static_cast<float>(SwingSpeed));
  if (u.uSwingRegion >= 0) glUniform1f(u.uSwingRegion, static_cast<float>(SwingRegion));
}

void Vorn_3DGrass::draw_allsubmesh() {
  DrawWithWorldMatrixForProgram(*this, Vorn_3DFX::FX_GRASS, [this] { Vorn_3DGameNode::draw_allsubmesh(); });
}

}  // namespace vorn
