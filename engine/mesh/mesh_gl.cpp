// The GL side of skinned meshes: bone matrices to the program, the debug skeleton.
#include <epoxy/gl.h>

#include <vector>

#include "core/console.h"
#include "core/gl_context.h"
#include "mesh/mesh.h"
#include "mesh/skin_ani_data.h"
#include "node/program_uniforms.h"

namespace vorn {

void Vorn_3DMesh::prepare_uniform_for_shader(int submeshIndex) {
  if (!withSkin || !CurrSubMeshFX) return;
  RequireGLContext("Vorn_3DMesh.prepare_uniform_for_shader");
  const GLint boneLocation = GetProgramUniforms(*CurrSubMeshFX).uBoneMatrixs;
  const std::shared_ptr<Vorn_SkinSubMeshAniData>* skin = SubMesh_Dict.find(submeshIndex);
  if (boneLocation < 0 || !skin || !*skin) return;
  if (!CurrAnimation_CurrTime) {
    throw RuntimeError("Vorn_3DMesh.prepare_uniform_for_shader: no action started (call PlayAction first)");
  }
  const std::vector<double>& AnimationFinalMatrix = (*skin)->GetFinalBoneMatrixByTime(*CurrAnimation_CurrTime);
  if (AnimationFinalMatrix.empty()) return;
  const std::size_t nMatrixCount = AnimationFinalMatrix.size() / 16;
  if (nMatrixCount == 0) {
    console::print("No matrix of the bone!");
  }
  if (nMatrixCount > 64) {
    console::print("The matrix tatal of the bone must be less than 64!");
    return;
  }
  // Rows as they stand, no transpose.
  static thread_local std::vector<float> floats;
  floats.assign(AnimationFinalMatrix.begin(), AnimationFinalMatrix.begin() + static_cast<std::ptrdiff_t>(nMatrixCount * 16));
  if (nMatrixCount > 0) glUniformMatrix4fv(boneLocation, static_cast<GLsizei>(nMatrixCount), GL_FALSE, floats.data());
}

void Vorn_3DMesh::draw_skeleton() {
  if (!withSkin || !SkeletonVisible) return;
  RequireGLContext("Vorn_3DMesh.draw_skeleton");
  for (const auto& [index, skin] : SubMesh_Dict) {
    if (!skin) continue;
    glBegin(GL_LINES);
    for (const auto& xyz : skin->FinalBoneXYZArray) {
      glColor3f(0.0f, 1.0f, 0.0f);
      glVertex3f(static_cast<float>(xyz[0]), static_cast<float>(xyz[1]), static_cast<float>(xyz[2]));
      glColor3f(1.0f, 0.0f, 0.0f);
      glVertex3f(static_cast<float>(xyz[3]), static_cast<float>(xyz[4]), static_cast<float>(xyz[5]));
    }
    glEnd();
  }
}

}  // namespace vorn
