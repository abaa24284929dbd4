#pragma once
// Uniform locations of a program, looked up by name once per program and kept for the
// life of the process. A draw then tests a cached location where it would otherwise
// ask the driver: the GL state that results is the same as long as a program is not
// relinked. Deletions by a manager are noticed through ProgramsDeletedCount; whoever
// relinks a program calls ForgetProgramUniforms.
#include <epoxy/gl.h>

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
};

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
void SetSamplerUnit(GLint location, int channel);

// The per-submesh uniforms of draw_submesh: colours, time, ambient, fog, blur, sun,
// eye, specular and the point lights. `scene` may be null (only the colour is set).
void SetSubMeshUniforms(Vorn_3DGameNode& node, const ProgramUniforms& u, int submeshIndex, const NodeScene* scene);

}  // namespace vorn
