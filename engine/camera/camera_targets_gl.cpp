// The camera's render targets on the GL side: frame buffers with a colour texture and a
// depth-stencil render buffer, and the passes that render node lists into them.
#include <algorithm>
#include <string>

#include "camera/camera.h"
#include "core/errors.h"
#include "core/gl_api.h"
#include "core/gl_state_guard.h"
#include "core/screen_settings.h"
#include "resource/frame_buffer_gl.h"
#include "resource/res_manager.h"
#include "shader/fx_3d.h"

namespace vorn {
namespace {

// Target passes nested inside target passes: a camera that renders a list holding one
// of its own ancestors starts its pass again from inside it, without end. Each level
// costs a draw walk's worth of C++ stack, so the bound is far below WalkDepth's.
constexpr int kMaxNestedTargetPasses = 64;
thread_local int nestedTargetPasses = 0;

struct NestedPass {
  NestedPass() {
    if (nestedTargetPasses >= kMaxNestedTargetPasses) {
      throw RecursionError("maximum recursion depth exceeded in Vorn_3DCamera.draw (render targets nested " +
                           std::to_string(kMaxNestedTargetPasses) + " deep)");
    }
    ++nestedTargetPasses;
  }
  ~NestedPass() { --nestedTargetPasses; }
  NestedPass(const NestedPass&) = delete;
  NestedPass& operator=(const NestedPass&) = delete;
};

// The size of one side: 0 means the window's, and the driver's limits hold.
int target_side(int side, int screenSide, const char* where, const char* what) {
  if (side < 0) {
    throw ValueError(std::string("Vorn_3DCamera.") + where + ": " + what + " must not be negative");
  }
  const int value = side == 0 ? screenSide : side;
  GLint maxTexture = 0, maxRenderbuffer = 0;
  glGetIntegerv(GL_MAX_TEXTURE_SIZE, &maxTexture);
  glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &maxRenderbuffer);
  const GLint limit = std::min(maxTexture, maxRenderbuffer);
  if (value < 0 || (limit > 0 && value > limit)) {
    throw ValueError(std::string("Vorn_3DCamera.") + where + ": " + what + " " + std::to_string(value) +
                     " is outside what the driver allows (0.." + std::to_string(limit) + ")");
  }
  return value;
}

// Draws the nodes of a list into the bound target. The size is read at each step, as
// a script's draw may change the list it belongs to.
template <class List>
void draw_list(const List& objList, const std::optional<int>& FXID) {
  for (std::size_t i = 0; i < objList.size(); ++i) {
    const Vorn_3DGameNode::Ptr ObjectInst = objList[i];
    if (!ObjectInst) continue;
    if (!FXID) {
      ObjectInst->draw(0, 0, 0);
      continue;
    }
    // Each node gets its own FX back before the next one draws. The pass runs every
    // frame, so the program listing that a script's ApplyFX prints is left out.
    const Vorn_3DGameNode::QuietFXListing quiet;
    ObjectInst->ApplyFX(*FXID, true);
    try {
      ObjectInst->draw(0, 0, 0);
    } catch (...) {
      ObjectInst->RecoverFX(true);
      throw;
    }
    ObjectInst->RecoverFX(true);
  }
}

template <class List>
void render_into_targets(const OrderedMap<int, RenderTargetRecord>& targets, const List& objList) {
  for (std::size_t k = 0; k < targets.size(); ++k) {
    const RenderTargetRecord RenderTargetInfo = (targets.begin() + static_cast<std::ptrdiff_t>(k))->second;
    // The viewport stays the enclosing one; the enclosing frame buffer comes back on
    // exit, also when a node's draw fails.
    const gl_state::PassScope pass(RenderTargetInfo.FrameBuffer, {}, {0, 0, SCREEN_WIDTH, SCREEN_HEIGHT});
    glEnable(GL_DEPTH_TEST);
    glClearDepth(1.0);
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    draw_list(objList, RenderTargetInfo.FXID);
  }
}

}  // namespace

unsigned Vorn_3DCamera::CreateTarget(int key, int texWidth, int texHeight, bool floatMode, std::optional<int> fxid,
                                     const char* where) {
  // Everything is checked before the first GL object exists.
  gl_state::CheckContext(std::string("Vorn_3DCamera.") + where);
  const int width = target_side(texWidth, SCREEN_WIDTH, where, "texWidth");
  const int height = target_side(texHeight, SCREEN_HEIGHT, where, "texHeight");
  const std::shared_ptr<PyGameResManager> resources = ResManagerInstance;
  if (!resources) {
    throw AttributeError(std::string("Vorn_3DCamera.") + where +
                         ": ResManagerInstance is None; create the PyGameResManager first");
  }
  CameraType = key;

  const ColourFrameBuffer target = CreateColourFrameBuffer(width, height, floatMode, true);
  const GLuint FrameBuffer = target.frameBuffer;
  const GLuint FrameTexture = target.texture;
  resources->AddDynamicTexture(FrameTexture, width, height, "RGB", 24);
  RenderTargetArray.set(key, RenderTargetRecord{FrameBuffer, FrameTexture, width, height, fxid});
  return FrameTexture;
}

unsigned Vorn_3DCamera::CreateRenderTarget(int texWidth, int texHeight, bool floatMode) {
  return CreateTarget(CAMERA_RENDERGARGET, texWidth, texHeight, floatMode, std::nullopt, "CreateRenderTarget");
}

unsigned Vorn_3DCamera::CreateDepthTarget(int texWidth, int texHeight) {
  return CreateTarget(CAMERA_DEPTH, texWidth, texHeight, false, Vorn_3DFX::FX_DEPTH, "CreateDepthTarget");
}

void Vorn_3DCamera::RenderObjListToRenderTarget(const NodeList& objList) {
  gl_state::CheckContext("Vorn_3DCamera.RenderObjListToRenderTarget");
  render_into_targets(RenderTargetArray, objList);
}

void Vorn_3DCamera::RenderObjListToRenderTarget(const std::vector<NodePtr>& objList) {
  gl_state::CheckContext("Vorn_3DCamera.RenderObjListToRenderTarget");
  render_into_targets(RenderTargetArray, objList);
}

void Vorn_3DCamera::RenderTargets(NodeScene& scene) {
  const NestedPass nested;
  // Reached again through a node it is rendering (the camera is that node's child):
  // the targets are being drawn already.
  if (renderingTargets_) return;
  renderingTargets_ = true;
  struct Reset {
    bool& flag;
    ~Reset() { flag = false; }
  } reset{renderingTargets_};
  const NodePtr caught = tagetNode.lock();
  // The caught node would be rendered as a list of nodes, which a node is not. This is
  // refused before fog or frame buffer change.
  if (CameraTargetType == CAMERA_TARGET_OBJECT && caught) {
    throw TypeError(
        "Vorn_3DCamera.draw: CAMERA_TARGET_OBJECT renders tagetNode as a list of nodes, and a node is not a list");
  }
  if (!EnableSceneFog) scene.DisableFog();
  if (CameraTargetType == CAMERA_TARGET_POINTLIGHT) {
    const NodeList& PointLightArray = scene.GetPointLightList();
    if (!PointLightArray.empty()) RenderObjListToRenderTarget(PointLightArray);
  } else if (CameraTargetType != CAMERA_TARGET_OBJECT) {
    RenderObjListToRenderTarget(scene.Get3DObjectArray());
  }
  // Fog comes back on even where the script had it off.
  if (!EnableSceneFog) scene.EnableFog();
}

}  // namespace vorn
