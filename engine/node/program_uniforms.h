#pragma once
// Uniform locations of a program, looked up by name once per program and kept for the
// life of the process. A draw then tests a cached location where it would otherwise
// ask the driver: the GL state that results is the same as long as a program is not
// relinked. Deletions by a manager are noticed through ProgramsDeletedCount; whoever
// relinks a program calls ForgetProgramUniforms.
#include <epoxy/gl.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "core/gl_draw_cache.h"

namespace vorn {

class NodeScene;
class Vorn_3DGameNode;

struct ProgramUniforms {
  GLuint program = 0;
  // Per-program block of draw_begin_shader.
  GLint uModelMatrix = -1;
  GLint uViewMatrix = -1;
  GLint uProjMatrix = -1;
  GLint uSSAOKernelCount = -1;
  GLint uSSAOKernelRadius = -1;
  GLint uSSAOKernelSample = -1;
  GLint uShadoMapTexSize = -1;
  GLint uShadowMapViewProjectMatrix = -1;
  // Per-submesh block of draw_submesh.
  GLint uSubmeshColor = -1;
  GLint uCurrTime = -1;
  GLint uAmbientColor = -1;
  GLint uFogInfo = -1;
  GLint fBlurLerpValue = -1;
  GLint uSunLight = -1;
  GLint uEyePosition = -1;
  GLint uSpecularColor = -1;
  GLint uPointLightCount = -1;
  GLint uPointLightXYZRangeArray = -1;
  GLint uPointLightColorArray = -1;
  GLint uTexSize = -1;
  GLint uMSKSize = -1;
  GLint uTextureDensity = -1;
  // Bone matrices of skinned meshes.
  GLint uBoneMatrixs = -1;
  // Grass swing and ocean waves, set by those node classes' draw_begin_shader.
  GLint uSwingSpeed = -1;
  GLint uSwingRegion = -1;
  GLint uWaveFreq = -1;
  GLint uWaveAmp = -1;
  GLint uBumpScale = -1;
  GLint uBumpSpeedX = -1;
  GLint uBumpSpeedY = -1;
  // "texture0" to "texture7".
  GLint texture[8] = {-1, -1, -1, -1, -1, -1, -1, -1};
  // The values the program was last sent by the node draw, by location, as raw words;
  // empty where not known. Recorded in drawCache.epoch `valuesEpoch`; an older epoch
  // means all are unknown. Dropped with the locations when the program is forgotten.
  mutable std::vector<std::vector<std::uint32_t>> values;
  mutable std::uint64_t valuesEpoch = 0;
};

// Whether the program (bound now) already holds `bytes` of `data` at `location`, as far
// as a cached run of node draws knows; otherwise records them as sent and says false.
inline bool UniformHolds(const ProgramUniforms& u, GLint location, const void* data, std::size_t bytes) {
  constexpr GLint kMaxTracked = 1024;
  if (location < 0 || location >= kMaxTracked || bytes % 4 != 0) return false;
  if (u.valuesEpoch != gl_state::drawCache.epoch) {
    for (auto& v : u.values) v.clear();
    u.valuesEpoch = gl_state::drawCache.epoch;
  }
  if (u.values.size() <= static_cast<std::size_t>(location)) u.values.resize(static_cast<std::size_t>(location) + 1);
  std::vector<std::uint32_t>& v = u.values[static_cast<std::size_t>(location)];
  const std::size_t words = bytes / 4;
  if (gl_state::drawCache.active && v.size() == words && std::memcmp(v.data(), data, bytes) == 0) {
    ++gl_state::drawCache.skipped;
    return true;
  }
  v.resize(words);
  std::memcpy(v.data(), data, bytes);
  return false;
}

// The uniform calls of the node draw, skipped where the program holds the value.
inline void Uniform1i(const ProgramUniforms& u, GLint location, GLint value) {
  if (!UniformHolds(u, location, &value, sizeof value)) glUniform1i(location, value);
}
inline void Uniform1f(const ProgramUniforms& u, GLint location, GLfloat value) {
  if (!UniformHolds(u, location, &value, sizeof value)) glUniform1f(location, value);
}
inline void Uniform1fv(const ProgramUniforms& u, GLint location, GLsizei count, const GLfloat* v) {
  if (!UniformHolds(u, location, v, sizeof(GLfloat) * static_cast<std::size_t>(count))) glUniform1fv(location, count, v);
}
inline void Uniform2fv(const ProgramUniforms& u, GLint location, GLsizei count, const GLfloat* v) {
  if (!UniformHolds(u, location, v, 2 * sizeof(GLfloat) * static_cast<std::size_t>(count)))
    glUniform2fv(location, count, v);
}
inline void Uniform3fv(const ProgramUniforms& u, GLint location, GLsizei count, const GLfloat* v) {
  if (!UniformHolds(u, location, v, 3 * sizeof(GLfloat) * static_cast<std::size_t>(count)))
    glUniform3fv(location, count, v);
}
inline void Uniform4fv(const ProgramUniforms& u, GLint location, GLsizei count, const GLfloat* v) {
  if (!UniformHolds(u, location, v, 4 * sizeof(GLfloat) * static_cast<std::size_t>(count)))
    glUniform4fv(location, count, v);
}
inline void UniformMatrix4fv(const ProgramUniforms& u, GLint location, const GLfloat* m) {
  if (!UniformHolds(u, location, m, 16 * sizeof(GLfloat))) glUniformMatrix4fv(location, 1, GL_FALSE, m);
}

// The locations of a program (looked up on first use). A name that is not a linked
// program yields -1 everywhere, without a GL error.
const ProgramUniforms& GetProgramUniforms(GLuint program);
// Drops the cached locations of one program (after a relink or deletion).
void ForgetProgramUniforms(GLuint program);
// Drops the cached locations of every program (after a manager deleted its programs).
void ForgetAllProgramUniforms();

// Location of the sampler "texture<channel>" of a program; channels 0 to 7 come from
// the cache, others are asked of the driver.
GLint SamplerLocation(const ProgramUniforms& u, int channel);
// Gives the sampler at `location` the unit `channel`. A unit the driver does not have
// prints one line and sets nothing, instead of leaving a GL error.
void SetSamplerUnit(const ProgramUniforms& u, GLint location, int channel);

// The per-submesh uniforms of draw_submesh: colours, time, ambient, fog, blur, sun,
// eye, specular and the point lights. `scene` may be null (only the colour is set).
void SetSubMeshUniforms(Vorn_3DGameNode& node, const ProgramUniforms& u, int submeshIndex, const NodeScene* scene);

}  // namespace vorn
