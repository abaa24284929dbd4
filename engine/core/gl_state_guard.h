#pragma once
// GL state at the boundaries of a draw, and the scopes that put it back.
//
// What every draw (a node, a camera pass, text, the gizmo, particles, the ocean, a
// full-screen pass) may assume on entry, and must leave behind on exit, whether it
// returns or throws:
//
//   frame buffer    the target of the pass in progress: 0 (the window) in the frame's
//                   main pass, the target's frame buffer inside a render-target pass
//   viewport        the one of that pass (the window's in the main pass)
//   matrix mode     GL_MODELVIEW
//   matrix stacks   modelview at the pass's current node transform, projection holding
//                   the active camera's projection and view; every push popped
//   program         0 (fixed function)
//   texture unit    GL_TEXTURE0 active; the texture bound on it is not promised
//   client arrays   vertex, normal, colour and texture-coordinate arrays disabled
//   buffers         no array or element buffer bound
//
// Everything else (blend, cull, polygon mode, depth test, current colour) is set by
// each draw for itself before use; nothing may be assumed of it.
//
// The engine runs GL on one thread, so what it knows of the state lives in one plain
// record. Scopes restore values from that record rather than asking the driver: a node
// draw makes no glGet* call. A draw that throws gets everything above put back.
#include <epoxy/gl.h>

#include <exception>
#include <string_view>

#include "core/gl_context.h"
#include "core/gl_draw_cache.h"

namespace vorn::gl_state {

struct Viewport {
  GLint x = 0, y = 0;
  GLsizei width = 0, height = 0;  // width 0: not known (left as it is)
};

// What the engine last set. Only code that goes through the helpers below keeps it
// true; a scope that fails restores everything unconditionally.
struct Tracked {
  GLuint frameBuffer = 0;          // frame buffer of the pass in progress
  Viewport viewport;               // viewport of that pass
  int modelviewPushes = 0;         // draw_begin pushes not yet popped
  GLuint program = 0;              // program set by UseProgram (inside a cached run of
                                   // node draws, drawCache.program is the one bound)
  int textureUnit = 0;             // unit selected by SelectTextureUnit
  bool clientArrays = false;       // glInterleavedArrays enabled client arrays
  int checkedScopes = 0;           // open scopes that found a current context
};
inline Tracked tracked;

// ---- Helpers that keep the record true ----

// Pushes that a cached run of node draws left for later (always the topmost ones):
// nothing in the run changes the matrix under them, so issuing them late gives the same
// stack, and a pop of one that was never issued is skipped.
inline void IssuePendingPushes() {
  for (; drawCache.pendingPushes > 0; --drawCache.pendingPushes) glPushMatrix();
}

inline void PushModelview() {
  IssuePendingPushes();
  glPushMatrix();
  ++tracked.modelviewPushes;
}

// A push whose matrix stays as it is until the matching pop: inside a cached run it is
// only counted.
inline void PushModelviewUnchanged() {
  if (!drawCache.active) {
    PushModelview();
    return;
  }
  ++drawCache.pendingPushes;
  ++tracked.modelviewPushes;
}

inline void PopModelview() {
  if (drawCache.pendingPushes > 0) {
    --drawCache.pendingPushes;
  } else {
    glPopMatrix();
  }
  if (tracked.modelviewPushes > 0) --tracked.modelviewPushes;
}

// Inside a cached run of node draws (gl_draw_cache.h) the program already bound is not
// bound again, and the release to 0 waits: the next draw call binds what it needs
// (ApplyProgram) and Settle releases it when the run ends.
inline void UseProgram(GLuint program) {
  tracked.program = program;
  if (drawCache.active && (program == 0 || drawCache.program == program)) {
    ++drawCache.skipped;
    return;
  }
  glUseProgram(program);
  drawCache.program = program;
}

// Binds the program of the draw that follows if a release was left waiting.
inline void ApplyProgram() {
  if (drawCache.program == tracked.program) return;
  glUseProgram(tracked.program);
  drawCache.program = tracked.program;
}

inline void SelectTextureUnit(int unit) {
  glActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
  tracked.textureUnit = unit;
  drawCache.unit0Unbound = false;
}

inline void MarkClientArrays() { tracked.clientArrays = true; }

// Checks for a current context unless an enclosing scope already did.
inline void CheckContext(std::string_view operation) {
  if (tracked.checkedScopes == 0) RequireGLContext(operation);
}

// ---- Restoring ----

inline void DisableClientArrays() {
  glDisableClientState(GL_VERTEX_ARRAY);
  glDisableClientState(GL_NORMAL_ARRAY);
  glDisableClientState(GL_COLOR_ARRAY);
  glDisableClientState(GL_TEXTURE_COORD_ARRAY);
  tracked.clientArrays = false;
}

inline void SetViewport(const Viewport& v) {
  if (v.width > 0) glViewport(v.x, v.y, v.width, v.height);
}

// Puts back what a cached run of node draws left waiting: program 0, no buffers bound,
// client arrays disabled.
inline void Settle() {
  IssuePendingPushes();
  tracked.program = 0;
  if (drawCache.program != 0 && drawCache.program != kUnknownName) {
    glUseProgram(0);
    drawCache.program = 0;
  }
  if (drawCache.arrayBuffer != 0 && drawCache.arrayBuffer != kUnknownName) {
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    drawCache.arrayBuffer = 0;
  }
  if (drawCache.elementBuffer != 0 && drawCache.elementBuffer != kUnknownName) {
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    drawCache.elementBuffer = 0;
  }
  if (tracked.clientArrays) DisableClientArrays();
}

// The cheap end of a draw that returned: only what the record says changed. Inside a
// cached run, what the next node may reuse stays until Settle.
inline void RestoreAfterDraw(int modelviewPushes) {
  while (tracked.modelviewPushes > modelviewPushes) PopModelview();
  if (tracked.program != 0) UseProgram(0);
  if (tracked.textureUnit != 0) SelectTextureUnit(0);
  if (drawCache.active) return;
  if (drawCache.program != 0 && drawCache.program != kUnknownName) ApplyProgram();
  if (tracked.clientArrays) DisableClientArrays();
}

// The full end of a draw that threw: everything of the contract, whatever the record
// says, since the failure may have come between a GL call and its bookkeeping.
inline void RestoreAfterFailure(int modelviewPushes) {
  glMatrixMode(GL_MODELVIEW);
  while (tracked.modelviewPushes > modelviewPushes) PopModelview();
  glUseProgram(0);
  tracked.program = 0;
  InvalidateDrawCache();
  drawCache.program = 0;
  SelectTextureUnit(0);
  DisableClientArrays();
  glBindBuffer(GL_ARRAY_BUFFER, 0);
  glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
  glBindFramebuffer(GL_FRAMEBUFFER, tracked.frameBuffer);
  SetViewport(tracked.viewport);
}

// ---- Scopes ----

// One draw: a node, a camera, text, the gizmo. The outermost scope checks for a
// context (nested ones cost nothing). On exit the contract above holds again.
class DrawScope {
 public:
  explicit DrawScope(std::string_view operation)
      : pushes_(tracked.modelviewPushes), exceptions_(std::uncaught_exceptions()) {
    CheckContext(operation);
    ++tracked.checkedScopes;
  }
  ~DrawScope() {
    --tracked.checkedScopes;
    if (std::uncaught_exceptions() > exceptions_) {
      RestoreAfterFailure(pushes_);
    } else {
      RestoreAfterDraw(pushes_);
    }
  }
  DrawScope(const DrawScope&) = delete;
  DrawScope& operator=(const DrawScope&) = delete;

 private:
  int pushes_;
  int exceptions_;
};

// A pass into a frame buffer: binds it (and sets `viewport` when it has a width;
// otherwise the enclosing viewport stays), and on exit binds the enclosing pass's
// frame buffer and viewport again. Outside any pass that is the window, `screen`.
class PassScope {
 public:
  PassScope(GLuint frameBuffer, Viewport viewport, Viewport screen)
      : outerFrameBuffer_(tracked.frameBuffer),
        outerViewport_(tracked.viewport.width > 0 ? tracked.viewport : screen) {
    glBindFramebuffer(GL_FRAMEBUFFER, frameBuffer);
    tracked.frameBuffer = frameBuffer;
    if (viewport.width > 0) {
      SetViewport(viewport);
      tracked.viewport = viewport;
    } else {
      tracked.viewport = outerViewport_;
    }
  }
  ~PassScope() {
    glBindFramebuffer(GL_FRAMEBUFFER, outerFrameBuffer_);
    SetViewport(outerViewport_);
    tracked.frameBuffer = outerFrameBuffer_;
    tracked.viewport = outerViewport_;
  }
  PassScope(const PassScope&) = delete;
  PassScope& operator=(const PassScope&) = delete;

 private:
  GLuint outerFrameBuffer_;
  Viewport outerViewport_;
};

// The whole frame: checks for a context, binds the window's frame buffer and viewport,
// and on exit balances both matrix stacks to their depth at entry (the only state it
// asks the driver for, twice a frame) besides the contract of a draw.
class FrameScope {
 public:
  FrameScope(std::string_view operation, Viewport screen) : exceptions_(std::uncaught_exceptions()) {
    RequireGLContext(operation);
    ++tracked.checkedScopes;
    // Scripts and other code ran since the last frame: nothing cached is trusted.
    drawCache.active = false;
    InvalidateDrawCache();
    tracked.frameBuffer = 0;
    tracked.viewport = screen;
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    SetViewport(screen);
    glMatrixMode(GL_MODELVIEW);
    glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &modelviewDepth_);
    glGetIntegerv(GL_PROJECTION_STACK_DEPTH, &projectionDepth_);
    pushes_ = tracked.modelviewPushes;
  }
  ~FrameScope() {
    --tracked.checkedScopes;
    if (std::uncaught_exceptions() > exceptions_) {
      RestoreAfterFailure(pushes_);
    } else {
      RestoreAfterDraw(pushes_);
    }
    // Pushes the record does not know of (a script's own GL calls) come off here.
    PopTo(GL_PROJECTION, GL_PROJECTION_STACK_DEPTH, projectionDepth_);
    PopTo(GL_MODELVIEW, GL_MODELVIEW_STACK_DEPTH, modelviewDepth_);
  }
  FrameScope(const FrameScope&) = delete;
  FrameScope& operator=(const FrameScope&) = delete;

 private:
  // Leaves GL_MODELVIEW current when it is the last one popped.
  static void PopTo(GLenum mode, GLenum depthName, GLint depth) {
    GLint now = 0;
    glGetIntegerv(depthName, &now);
    if (now <= depth) return;
    glMatrixMode(mode);
    for (; now > depth; --now) glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
  }

  int exceptions_;
  int pushes_ = 0;
  GLint modelviewDepth_ = 1;
  GLint projectionDepth_ = 1;
};

}  // namespace vorn::gl_state
