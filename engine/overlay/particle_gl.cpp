// The particle draw (point sprites in immediate mode) and the emitter's own texture.
#include <epoxy/gl.h>

#include "core/console.h"
#include "core/errors.h"
#include "core/gl_state_guard.h"
#include "node/node_textures_read.h"
#include "overlay/particle.h"

namespace vorn {

void Vorn_Particle::draw() const {
  if (!(life > 0)) return;
  glColor3f(static_cast<float>(color[0]), static_cast<float>(color[1]), static_cast<float>(color[2]));
  glVertex3f(static_cast<float>(pos[0]), static_cast<float>(pos[1]), static_cast<float>(pos[2]));
}

void Vorn_3DParticleEmitter::draw_allsubmesh() {
  gl_state::CheckContext("Vorn_3DParticleEmitter.draw_allsubmesh");
  // Fixed function: the colour of each point modulates the sprite texture.
  gl_state::UseProgram(0);
  glEnable(GL_TEXTURE_2D);
  if (TextureID) {
    gl_state::SelectTextureUnit(0);
    glBindTexture(GL_TEXTURE_2D, *TextureID);
  }
  glTexEnvi(GL_POINT_SPRITE, GL_COORD_REPLACE, GL_TRUE);
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  glEnable(GL_POINT_SPRITE);
  glEnable(GL_POINT_SMOOTH);
  glEnable(GL_PROGRAM_POINT_SIZE);
  glPointSize(20.0f);
  // Every particle is checked before glBegin: a half-set record must not leave the
  // primitive open.
  for (const auto& p : ParticleArray) {
    if (p->life > 0 && (p->Set & (Vorn_Particle::kPos | Vorn_Particle::kColor)) !=
                           (Vorn_Particle::kPos | Vorn_Particle::kColor)) {
      glDisable(GL_BLEND);
      throw TypeError("Vorn_3DParticleEmitter.draw_allsubmesh: a live particle has no pos or color");
    }
  }
  glBegin(GL_POINTS);
  for (const auto& p : ParticleArray) p->draw();
  glEnd();
  if (TextureID) glBindTexture(GL_TEXTURE_2D, 0);
  glDisable(GL_BLEND);
}

void Vorn_3DParticleEmitter::LoadTextureFromFile(const std::string& fileName) {
  gl_state::CheckContext("Vorn_3DParticleEmitter.LoadTextureFromFile");
  const std::optional<std::string> path = FindTextureFile(fileName);
  if (!path) {
    console::print("Can't find texture:", fileName);
    return;
  }
  const std::optional<DecodedTexture> tex = ReadTextureFile(*path, true);
  if (!tex) {
    console::print("Can't read texture:", *path);
    return;
  }
  // A texture of its own, outside the image cache: the previous one is ours to free.
  if (TextureID) {
    const GLuint old = *TextureID;
    glDeleteTextures(1, &old);
    TextureID.reset();
  }
  GLuint id = 0;
  glGenTextures(1, &id);
  gl_state::SelectTextureUnit(0);
  glBindTexture(GL_TEXTURE_2D, id);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, tex->width, tex->height, 0, GL_RGBA, GL_UNSIGNED_BYTE, tex->pixels->data());
  glBindTexture(GL_TEXTURE_2D, 0);
  TextureID = id;
}

}  // namespace vorn
