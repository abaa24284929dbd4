// The full-screen quad of post passes: the GL-facing part of the full-screen modes.
#include "core/gl_api.h"
#include "core/gl_state_guard.h"
#include "node/game_node.h"
#include "scene/scene.h"

namespace vorn {

void Vorn_3Dcene::RenderPostFXRect() {
  gl_state::CheckContext("Vorn_3Dcene.RenderPostFXRect");
  glPolygonMode(GL_FRONT, GL_FILL);
  glPolygonMode(GL_BACK, GL_FILL);
  // The quad winds clockwise on the screen; with culling of back faces in force it
  // would vanish, so culling is off while it draws and as it was afterwards.
  const GLboolean culling = glIsEnabled(GL_CULL_FACE);
  if (culling) glDisable(GL_CULL_FACE);
  // Clip-space corners: the full-screen programs take gl_Vertex as is.
  glBegin(GL_QUADS);
  glTexCoord2f(0.0f, 1.0f);
  glVertex3f(-1.0f, 1.0f, 0.0f);
  glTexCoord2f(1.0f, 1.0f);
  glVertex3f(1.0f, 1.0f, 0.0f);
  glTexCoord2f(1.0f, 0.0f);
  glVertex3f(1.0f, -1.0f, 0.0f);
  glTexCoord2f(0.0f, 0.0f);
  glVertex3f(-1.0f, -1.0f, 0.0f);
  glEnd();
  if (culling) glEnable(GL_CULL_FACE);
}

}  // namespace vorn
