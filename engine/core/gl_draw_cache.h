#pragma once
// What the node draw knows of the GL state, so that it issues only the calls that change
// something: the program, the buffers, polygon mode, culling and texturing already in
// force are not set again, and a uniform is not sent again with the value its program
// already holds (program_uniforms.h keeps the values).
//
// The knowledge is trusted only inside a run of engine node draws (NodeRun, opened by
// the scene's registry walks and by draw_children) while `active` is true. Anything
// else may have changed the state meanwhile, so:
//   - opening a run from outside any run forgets everything (Invalidate);
//   - a draw that is not the engine's own (a subclass, a script override, a node that
//     renders into a target) or a hand-off to script code inside a draw is preceded by
//     Settle (the state of the draw contract, gl_state_guard.h) and followed by
//     Invalidate;
//   - closing the outermost run settles.
// Inside a run the end of a node draw does not unbind its program, buffers and client
// arrays: the next node rebinds what differs, and Settle puts the contract back.
#include <epoxy/gl.h>

#include <cstdint>

namespace vorn::gl_state {

// A value no call sets: the state is not known.
inline constexpr GLuint kUnknownName = ~0u;

struct DrawCache {
  bool enabled = true;         // off: every call is issued (tests compare both ways)
  bool active = false;         // inside a run, drawing engine nodes
  std::uint64_t epoch = 1;     // uniform values recorded in an older epoch are unknown
  // Known state; the sentinels (kUnknownName, 0, -1) mean not known.
  GLuint program = kUnknownName;
  GLuint arrayBuffer = kUnknownName;
  GLuint elementBuffer = kUnknownName;
  GLenum polygonMode = 0;      // both faces
  GLint cullMode = -1;         // GL_NONE: disabled; GL_CW or GL_CCW: enabled, back faces
  int texture2D = -1;          // GL_TEXTURE_2D enabled (1)
  bool unit0Unbound = false;   // the active unit (0) has texture 0 bound on GL_TEXTURE_2D
  int pendingPushes = 0;       // modelview pushes not issued yet (gl_state_guard.h)
  // For tests: calls skipped so far, and a function called just before each draw call
  // of a node's submesh.
  std::uint64_t skipped = 0;
  void (*drawObserver)() = nullptr;
};
inline DrawCache drawCache;

// True while calls may be skipped.
inline bool CacheActive() { return drawCache.active; }

// Forgets everything known of the state and every recorded uniform value.
inline void InvalidateDrawCache() {
  drawCache.program = drawCache.arrayBuffer = drawCache.elementBuffer = kUnknownName;
  drawCache.polygonMode = 0;
  drawCache.cullMode = -1;
  drawCache.texture2D = -1;
  drawCache.unit0Unbound = false;
  ++drawCache.epoch;
}

// Tests switch the caches off to compare pictures and uniform values with them on.
inline void SetDrawCacheEnabled(bool on) {
  drawCache.enabled = on;
  InvalidateDrawCache();
}
inline bool DrawCacheEnabled() { return drawCache.enabled; }

// Unbinds a buffer target, or leaves the binding for the next node inside a run.
inline void ReleaseBuffer(GLenum target) {
  if (drawCache.active) return;
  glBindBuffer(target, 0);
  (target == GL_ARRAY_BUFFER ? drawCache.arrayBuffer : drawCache.elementBuffer) = 0;
}

// A buffer bound on GL_ARRAY_BUFFER or GL_ELEMENT_ARRAY_BUFFER; the call is skipped when
// it is already there.
inline void BindBuffer(GLenum target, GLuint name) {
  GLuint& bound = target == GL_ARRAY_BUFFER ? drawCache.arrayBuffer : drawCache.elementBuffer;
  if (drawCache.active && bound == name) {
    ++drawCache.skipped;
    return;
  }
  glBindBuffer(target, name);
  bound = name;
}

// A deleted buffer name may come back for a new buffer: it is no longer known as bound.
inline void ForgetBuffer(GLuint name) {
  if (drawCache.arrayBuffer == name) drawCache.arrayBuffer = kUnknownName;
  if (drawCache.elementBuffer == name) drawCache.elementBuffer = kUnknownName;
}

inline void PolygonMode(GLenum mode) {
  if (drawCache.active && drawCache.polygonMode == mode) {
    ++drawCache.skipped;
    return;
  }
  glPolygonMode(GL_FRONT, mode);
  glPolygonMode(GL_BACK, mode);
  drawCache.polygonMode = mode;
}

// GL_NONE disables culling; GL_CW or GL_CCW culls back faces with that front face.
inline void CullMode(GLint mode) {
  if (drawCache.active && drawCache.cullMode == mode) {
    ++drawCache.skipped;
    return;
  }
  if (mode == GL_NONE) {
    glDisable(GL_CULL_FACE);
  } else {
    glEnable(GL_CULL_FACE);
    glFrontFace(static_cast<GLenum>(mode));
    glCullFace(GL_BACK);
  }
  drawCache.cullMode = mode;
}

inline void EnableTexture2D() {
  if (drawCache.active && drawCache.texture2D == 1) {
    ++drawCache.skipped;
    return;
  }
  glEnable(GL_TEXTURE_2D);
  drawCache.texture2D = 1;
}

}  // namespace vorn::gl_state
