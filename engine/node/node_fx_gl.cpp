// Effect assignment (with one level of undo) and render targets.
#include <epoxy/gl.h>

#include <string>

#include "core/console.h"
#include "core/errors.h"
#include "core/gl_state_guard.h"
#include "node/game_node.h"
#include "resource/res_manager.h"
#include "shader/fx_manage.h"
#include "shader/fx_manage.h"

namespace vorn {
namespace {

// Why a program cannot be used, or empty when glUseProgram would accept it. Asking
// first keeps a refused program from leaving a GL error behind.
std::string program_failure(const std::optional<unsigned>& program, int VN_FXID) {
  if (!program) return "ApplySubMeshFX: FX " + std::to_string(VN_FXID) + " has no program";
  if (*program == 0 || !glIsProgram(*program)) {
    return "ApplySubMeshFX: " + std::to_string(*program) + " of FX " + std::to_string(VN_FXID) + " is not a program";
  }
  GLint linked = GL_FALSE;
  glGetProgramiv(*program, GL_LINK_STATUS, &linked);
  if (linked != GL_TRUE) {
    return "ApplySubMeshFX: program " + std::to_string(*program) + " of FX " + std::to_string(VN_FXID) +
           " is not linked";
  }
  return {};
}

}  // namespace

void Vorn_3DGameNode::ApplySubMeshFX(int submeshIndex, int VN_FXID) {
  const Vorn_FXManage* fx = FXManagerInstance.get();
  if (!fx) {
    throw RuntimeError("Vorn_3DGameNode.ApplySubMeshFX: no FXManagerInstance; create the PyGameResManager first");
  }
  gl_state::CheckContext("Vorn_3DGameNode.ApplySubMeshFX");
  const std::optional<unsigned> ShaderVN = fx->GetShader(VN_FXID);
  if (const unsigned* current = SubMeshFX.find(submeshIndex); current && ShaderVN && *current == *ShaderVN) return;

  const std::string failure = program_failure(ShaderVN, VN_FXID);
  if (!failure.empty()) {
    // The submesh keeps its former program.
    console::print(failure);
    fx->PrintShader(VN_FXID);
    return;
  }
  if (!QuietFXListing::active()) {
    gl_state::UseProgram(*ShaderVN);
    gl_state::UseProgram(0);
    fx->PrintShader(VN_FXID);
  }
  SubMeshFX.set(submeshIndex, *ShaderVN);
}

void Vorn_3DGameNode::ApplyFX(int VN_FXID, bool IncludeChildren) {
  // By position: ApplySubMeshFX adds no submesh, but the walk must not rely on it.
  for (std::size_t i = 0; i < VertexArray_Positon.size(); ++i) {
    const int s = (VertexArray_Positon.begin() + static_cast<std::ptrdiff_t>(i))->first;
    if (const unsigned* current = SubMeshFX.find(s)) SubMeshFX_BackUp.set(s, *current);
    ApplySubMeshFX(s, VN_FXID);
  }
  if (IncludeChildren) {
    for (const auto& child : children.snapshot()) child->ApplyFX(VN_FXID, IncludeChildren);
  }
}

void Vorn_3DGameNode::RecoverFX(bool IncludeChildren) {
  // The backup stays: a second RecoverFX restores the same programs again.
  for (const auto& [s, positions] : VertexArray_Positon) {
    if (const unsigned* backup = SubMeshFX_BackUp.find(s)) {
      SubMeshFX.set(s, *backup);
    } else {
      SubMeshFX.discard(s);
    }
  }
  if (IncludeChildren) {
    for (const auto& child : children.snapshot()) child->RecoverFX(true);
  }
}

void Vorn_3DGameNode::SetRenderTargetTexture(unsigned texID, bool isPostFXMode) {
  // The manager of the moment, so a script that makes a new manager is served by it.
  if (!ResManagerInstance) {
    throw AttributeError(
        "Vorn_3DGameNode.SetRenderTargetTexture: ResManagerInstance is None; create the PyGameResManager first");
  }
  TargetFrameBuffer = ResManagerInstance->GetRenderTargetTextureFrameBuffer(texID);
  TargetFrameBuffer_IsPostFXMode = isPostFXMode;
  const DynamicTextureRecord* TexInfo = ResManagerInstance->GetDynamicTexture(texID);
  if (!TexInfo) {
    throw TypeError("Vorn_3DGameNode.SetRenderTargetTexture: texture " + std::to_string(texID) +
                    " is not a generated texture");
  }
  TargetFrameWidth = TexInfo->Width;
  TargetFrameHeight = TexInfo->Height;
}

}  // namespace vorn
