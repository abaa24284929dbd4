#pragma once
// The module's globals. They live here, in the engine, so that the Python module reads
// and writes the very values the engine uses (SCREEN_WIDTH written by a host's resize
// reaches the next frame's viewport). The header only forward-declares the classes it
// names, so any subsystem may include it without depending on the application layer.
#include <memory>

#include "core/script_owned.h"

namespace vorn {

class Vorn_3DDrawNode;
class PyGameResManager;
class Vorn_FXManage;
class Vorn_3Dcene;

// Declared tick rate; the frame takes its step from the clock, not from this.
inline int TICKS_PER_SEC = 60;
// Declared debug switch.
inline bool DEBUG_MODE = true;
// Current window size in pixels; written by the reshape callback.
inline int SCREEN_WIDTH = 800;
inline int SCREEN_HEIGHT = 600;

// The demonstration's debug draw node.
inline Ref<Vorn_3DDrawNode> pickDrawNode;
// The one resource manager; its constructor stores itself here.
inline std::shared_ptr<PyGameResManager> ResManagerInstance;
// The one shader manager, created by the resource manager.
inline std::shared_ptr<Vorn_FXManage> FXManagerInstance;
// The scene a host exposes to the engine (full-screen VR mode reaches it by this name).
inline Ref<Vorn_3Dcene> openGLScene;

}  // namespace vorn
