// The uniforms of a node draw: the per-program block (program switch, matrices, SSAO
// kernel, shadow map) and the per-submesh block (material, scene values, point lights).
// Every uniform is set only where the program has it, so one path serves all FX.
#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/console.h"
#include "core/gl_state_guard.h"
#include "node/game_node.h"
#include "node/program_uniforms.h"
#include "node/submesh_lookup.h"
#include "shader/fx_manage.h"

namespace vorn {
namespace {

// Cached locations by program name. Names are small integers on every driver in use,
// so a vector indexed by name serves; very large names go to a hash map.
// Never destroyed: a shader manager held by a global is dropped at exit, after the
// objects of this file, and forgets its programs here.
constexpr GLuint kDirectNames = 1u << 16;
auto& directCache = *new std::vector<std::unique_ptr<ProgramUniforms>>();
auto& farCache = *new std::unordered_map<GLuint, ProgramUniforms>();

bool linked_program(GLuint program) {
  if (program == 0 || !glIsProgram(program)) return false;
  GLint linked = GL_FALSE;
  glGetProgramiv(program, GL_LINK_STATUS, &linked);
  return linked == GL_TRUE;
}

ProgramUniforms lookup(GLuint program) {
  ProgramUniforms u;
  u.program = program;
  if (!linked_program(program)) return u;
  struct Entry {
    const char* name;
    GLint ProgramUniforms::*field;
  };
  static constexpr Entry kEntries[] = {
      {"uModelMatrix", &ProgramUniforms::uModelMatrix},
      {"uViewMatrix", &ProgramUniforms::uViewMatrix},
      {"uProjMatrix", &ProgramUniforms::uProjMatrix},
      {"uSSAOKernelCount", &ProgramUniforms::uSSAOKernelCount},
      {"uSSAOKernelRadius", &ProgramUniforms::uSSAOKernelRadius},
      {"uSSAOKernelSample", &ProgramUniforms::uSSAOKernelSample},
      {"uShadoMapTexSize", &ProgramUniforms::uShadoMapTexSize},
      {"uBoneMatrixs", &ProgramUniforms::uBoneMatrixs},
      {"uShadowMapViewProjectMatrix", &ProgramUniforms::uShadowMapViewProjectMatrix},
      {"uSubmeshColor", &ProgramUniforms::uSubmeshColor},
      {"uCurrTime", &ProgramUniforms::uCurrTime},
      {"uAmbientColor", &ProgramUniforms::uAmbientColor},
      {"uFogInfo", &ProgramUniforms::uFogInfo},
      {"fBlurLerpValue", &ProgramUniforms::fBlurLerpValue},
      {"uSunLight", &ProgramUniforms::uSunLight},
      {"uEyePosition", &ProgramUniforms::uEyePosition},
      {"uSpecularColor", &ProgramUniforms::uSpecularColor},
      {"uPointLightCount", &ProgramUniforms::uPointLightCount},
      {"uPointLightXYZRangeArray", &ProgramUniforms::uPointLightXYZRangeArray},
      {"uPointLightColorArray", &ProgramUniforms::uPointLightColorArray},
      {"uTexSize", &ProgramUniforms::uTexSize},
      {"uMSKSize", &ProgramUniforms::uMSKSize},
      {"uTextureDensity", &ProgramUniforms::uTextureDensity},
      {"uSwingSpeed", &ProgramUniforms::uSwingSpeed},
      {"uSwingRegion", &ProgramUniforms::uSwingRegion},
      {"uWaveFreq", &ProgramUniforms::uWaveFreq},
      {"uWaveAmp", &ProgramUniforms::uWaveAmp},
      {"uBumpScale", &ProgramUniforms::uBumpScale},
      {"uBumpSpeedX", &ProgramUniforms::uBumpSpeedX},
      {"uBumpSpeedY", &ProgramUniforms::uBumpSpeedY},
  };
  for (const Entry& e : kEntries) u.*e.field = glGetUniformLocation(program, e.name);
  for (int c = 0; c < 8; ++c) u.texture[c] = glGetUniformLocation(program, ("texture" + std::to_string(c)).c_str());
  return u;
}

// Scratch space for the float lists of the uniforms; the draw runs on one thread.
std::vector<float> scratchA;
std::vector<float> scratchB;

template <std::size_t N>
std::array<float, N> to_floats(const std::array<double, N>& v) {
  std::array<float, N> out;
  for (std::size_t i = 0; i < N; ++i) out[i] = static_cast<float>(v[i]);
  return out;
}

void upload_matrix(const ProgramUniforms& u, GLint location, const std::array<double, 16>& m) {
  const std::array<float, 16> f = to_floats(m);
  UniformMatrix4fv(u, location, f.data());
}

void set_point_lights(const ProgramUniforms& u, const NodeScene& scene) {
  if (u.uPointLightCount < 0 && u.uPointLightXYZRangeArray < 0 && u.uPointLightColorArray < 0) return;
  const NodeList& lights = scene.GetPointLightList();
  const std::size_t limit = scene.IsDeferLightMode() ? 64 : 3;
  const std::size_t count = std::min(lights.size(), limit);
  if (u.uPointLightCount >= 0) Uniform1i(u, u.uPointLightCount, static_cast<GLint>(count));
  if (count == 0) return;
  // Position and range make one vec4 a light. The colours go as four floats a light to
  // a vec3 array, so only the first light's colour lands aligned; that layout is what
  // the light shaders are written against.
  scratchA.resize(count * 4);
  scratchB.resize(count * 4);
  for (std::size_t i = 0; i < count; ++i) {
    const Vorn_3DGameNode* light = lights[i].get();
    float* xyzr = scratchA.data() + i * 4;
    float* colour = scratchB.data() + i * 4;
    if (!light) {
      std::fill(xyzr, xyzr + 4, 0.0f);
      std::fill(colour, colour + 4, 0.0f);
      continue;
    }
    const Vector3 p = light->GetWorldXYZ();
    xyzr[0] = static_cast<float>(p.x), xyzr[1] = static_cast<float>(p.y), xyzr[2] = static_cast<float>(p.z);
    xyzr[3] = static_cast<float>(light->GetLightRange());
    const std::array<double, 4> c = light->GetSubMeshColor();
    for (int k = 0; k < 4; ++k) colour[k] = static_cast<float>(c[k]);
  }
  const auto n = static_cast<GLsizei>(count);
  if (u.uPointLightXYZRangeArray >= 0) Uniform4fv(u, u.uPointLightXYZRangeArray, n, scratchA.data());
  if (u.uPointLightColorArray >= 0) Uniform3fv(u, u.uPointLightColorArray, n, scratchB.data());
}

}  // namespace

const ProgramUniforms& GetProgramUniforms(GLuint program) {
  // A manager deleted programs since the last lookup: their names may come back.
  static std::uint64_t seenDeletions = 0;
  if (seenDeletions != ProgramsDeletedCount) {
    seenDeletions = ProgramsDeletedCount;
    ForgetAllProgramUniforms();
  }
  if (program < kDirectNames) {
    if (program >= directCache.size()) directCache.resize(program + 1);
    std::unique_ptr<ProgramUniforms>& slot = directCache[program];
    if (!slot) {
      slot = std::make_unique<ProgramUniforms>(lookup(program));
    } else if (slot->program != program) {
      *slot = lookup(program);
    }
    return *slot;
  }
  auto it = farCache.find(program);
  if (it == farCache.end()) {
    it = farCache.emplace(program, lookup(program)).first;
  } else if (it->second.program != program) {
    it->second = lookup(program);
  }
  return it->second;
}

// Entries are marked (program 0) rather than freed: a draw in progress may still hold
// a reference to one when a script drops the manager that owned the program.
void ForgetProgramUniforms(GLuint program) {
  if (program == 0) return;
  if (program < directCache.size() && directCache[program]) *directCache[program] = ProgramUniforms{};
  if (auto it = farCache.find(program); it != farCache.end()) it->second = ProgramUniforms{};
}

void ForgetAllProgramUniforms() {
  for (auto& slot : directCache)
    if (slot) *slot = ProgramUniforms{};
  for (auto& [program, entry] : farCache) entry = ProgramUniforms{};
}

GLint SamplerLocation(const ProgramUniforms& u, int channel) {
  if (channel >= 0 && channel < 8) return u.texture[channel];
  if (u.program == 0) return -1;
  return glGetUniformLocation(u.program, ("texture" + std::to_string(channel)).c_str());
}

void SetSamplerUnit(const ProgramUniforms& u, GLint location, int channel) {
  if (location < 0) return;
  static GLint units = [] {
    GLint n = 0;
    glGetIntegerv(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS, &n);
    return n;
  }();
  if (channel < 0 || channel >= units) {
    console::print("Sampler texture" + std::to_string(channel) + " can't use texture unit", channel,
                   "(the driver has", units, "units)");
    return;
  }
  Uniform1i(u, location, channel);
}

void Vorn_3DGameNode::draw_begin_shader(int submeshIndex) {
  gl_state::CheckContext("Vorn_3DGameNode.draw_begin_shader");
  const unsigned* currShaderVN = FindSubMeshEntry(SubMeshFX, submeshIndex);
  if (!currShaderVN || *currShaderVN == 0) return;
  // Submeshes of a node that share a program share these uniforms.
  if (CurrSubMeshFX && *CurrSubMeshFX == *currShaderVN) return;
  CurrSubMeshFX = *currShaderVN;
  gl_state::UseProgram(*currShaderVN);
  const ProgramUniforms& u = GetProgramUniforms(*currShaderVN);

  if (u.uModelMatrix >= 0) {
    const std::array<float, 16> m = WorldMatrix.FlattenFloat();
    UniformMatrix4fv(u, u.uModelMatrix, m.data());
  }
  // Scene values; with no scene, or no camera matrices yet, the uniforms keep theirs.
  if (const auto scene = sceneInstance.lock()) {
    if (u.uViewMatrix >= 0) {
      if (const auto view = scene->GetActiveViewMatrix()) upload_matrix(u, u.uViewMatrix, *view);
    }
    if (u.uProjMatrix >= 0) {
      if (const auto proj = scene->GetActiveProjMatrix()) upload_matrix(u, u.uProjMatrix, *proj);
    }
    if (u.uSSAOKernelCount >= 0) Uniform1i(u, u.uSSAOKernelCount, scene->GetSSAOKernelCount());
    if (u.uSSAOKernelRadius >= 0) Uniform1f(u, u.uSSAOKernelRadius, static_cast<float>(scene->GetSSAOKernelRadius()));
    if (u.uSSAOKernelSample >= 0) {
      // The count never reaches past the end of the list.
      const std::vector<double>& kernel = scene->GetSSAOKernelList();
      const std::size_t count =
          std::min(static_cast<std::size_t>(std::max(scene->GetSSAOKernelCount(), 0)), kernel.size() / 3);
      scratchA.resize(count * 3);
      for (std::size_t i = 0; i < count * 3; ++i) scratchA[i] = static_cast<float>(kernel[i]);
      Uniform3fv(u, u.uSSAOKernelSample, static_cast<GLsizei>(count), scratchA.data());
    }
  }

  if (ShadowMapCamera && (u.uShadoMapTexSize >= 0 || u.uShadowMapViewProjectMatrix >= 0)) {
    if (const auto info = ShadowMapCamera->GetShadowMapInfo()) {
      if (u.uShadoMapTexSize >= 0 && info->texSize) {
        const float size[2] = {static_cast<float>(info->texSize->first), static_cast<float>(info->texSize->second)};
        Uniform2fv(u, u.uShadoMapTexSize, 1, size);
      }
      if (u.uShadowMapViewProjectMatrix >= 0 && info->projMatrix && info->viewMatrix) {
        FbxMatrix proj, view;
        for (int r = 0; r < 4; ++r) {
          for (int c = 0; c < 4; ++c) {
            proj.Set(r, c, (*info->projMatrix)[r * 4 + c]);
            view.Set(r, c, (*info->viewMatrix)[r * 4 + c]);
          }
        }
        const std::array<float, 16> vp = (view * proj).FlattenFloat();
        UniformMatrix4fv(u, u.uShadowMapViewProjectMatrix, vp.data());
      }
    }
  }
}

void SetSubMeshUniforms(Vorn_3DGameNode& node, const ProgramUniforms& u, int submeshIndex, const NodeScene* scene) {
  if (u.uSubmeshColor >= 0) {
    const auto* entry = FindSubMeshEntry(node.SubMeshColor, submeshIndex);
    const auto c = to_floats(entry ? *entry : std::array<double, 4>{1.0, 1.0, 1.0, 1.0});
    Uniform4fv(u, u.uSubmeshColor, 1, c.data());
  }
  if (!scene) return;
  if (u.uCurrTime >= 0) Uniform1f(u, u.uCurrTime, static_cast<float>(scene->GetCurrTime()));
  if (u.uAmbientColor >= 0) {
    const auto c = to_floats(scene->GetAmbientColor());
    Uniform3fv(u, u.uAmbientColor, 1, c.data());
  }
  if (u.uFogInfo >= 0) {
    const auto fog = to_floats(scene->GetSceneFog());
    Uniform1fv(u, u.uFogInfo, 5, fog.data());
  }
  if (u.fBlurLerpValue >= 0) Uniform1f(u, u.fBlurLerpValue, static_cast<float>(scene->GetDepthBlurLerpValue()));
  if (u.uSunLight >= 0) {
    const auto dir = scene->GetSunLightDir();
    const auto colour = scene->GetSunLightColor();
    const float sun[6] = {static_cast<float>(dir[0]),    static_cast<float>(dir[1]),    static_cast<float>(dir[2]),
                          static_cast<float>(colour[0]), static_cast<float>(colour[1]), static_cast<float>(colour[2])};
    Uniform3fv(u, u.uSunLight, 2, sun);
  }
  if (u.uEyePosition >= 0) {
    // Without an active camera the eye stays where the program had it.
    if (const auto camera = scene->GetActiveCamera()) {
      const Vector3 eye = camera->GetWorldXYZ();
      const float e[3] = {static_cast<float>(eye.x), static_cast<float>(eye.y), static_cast<float>(eye.z)};
      Uniform3fv(u, u.uEyePosition, 1, e);
    }
  }
  if (u.uSpecularColor >= 0) {
    const auto* entry = FindSubMeshEntry(node.SubMeshSpecularColor, submeshIndex);
    const auto c = to_floats(entry ? *entry : std::array<double, 4>{1.0, 1.0, 1.0, 10.0});
    Uniform4fv(u, u.uSpecularColor, 1, c.data());
  }
  set_point_lights(u, *scene);
}

}  // namespace vorn
