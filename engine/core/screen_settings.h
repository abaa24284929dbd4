#pragma once
// Screen settings every layer reads: the module globals of the window. They live here
// so that the Python module reads and writes the very values the engine uses
// (SCREEN_WIDTH written by a host's resize reaches the next frame's viewport).

namespace vorn {

// Declared tick rate; the frame takes its step from the clock, not from this.
inline int TICKS_PER_SEC = 60;
// Declared debug switch.
inline bool DEBUG_MODE = true;
// Current window size in pixels; written by the reshape callback.
inline int SCREEN_WIDTH = 800;
inline int SCREEN_HEIGHT = 600;

}  // namespace vorn
