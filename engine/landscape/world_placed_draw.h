#pragma once
// The grass and ocean programs of the catalogue position their vertices with the
// built-in modelview-projection matrix alone; they never read uModelMatrix. So that a
// patch of grass or a sea stands where its node stands, the node's world matrix joins
// the modelview stack while its submeshes draw with that program. Only then: any other
// program reads uModelMatrix, and the matrix must not count twice.
#include "core/gl_state_guard.h"
#include "node/game_node.h"
#include "shader/fx_manage.h"

namespace vorn {

// Runs `drawSubmeshes` with the node's world matrix on the modelview stack when every
// submesh of `node` uses the program of `fxid`, and plainly otherwise.
template <class Draw>
void DrawWithWorldMatrixForProgram(const Vorn_3DGameNode& node, int fxid, Draw&& drawSubmeshes) {
  const auto program = FXManagerInstance ? FXManagerInstance->GetShader(fxid) : std::nullopt;
  bool own = program.has_value() && !node.SubMeshFX.empty();
  for (const auto& [submesh, shader] : node.SubMeshFX) own = own && shader == *program;
  if (!own) {
    drawSubmeshes();
    return;
  }
  struct Pushed {
    Pushed() { gl_state::PushModelview(); }
    ~Pushed() { gl_state::PopModelview(); }  // also when a draw throws
  } pushed;
  // Rows of the engine's matrix are OpenGL's columns (row-vector convention).
  glMultMatrixd(node.GetWorldMatrix().Flatten().data());
  drawSubmeshes();
}

}  // namespace vorn
