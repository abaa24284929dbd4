#pragma once
// Opening the GLUT window with the display mode a host asked for, falling back to a
// visual without multisampling where the display offers none.
#include <string>

namespace vorn {

// Whether the X display can be opened (DISPLAY, or `name` when given). GLUT ends the
// process when it cannot open it, so glutInit asks here first. A display that is only
// starting up (a test server under load) is given up to `waitSeconds` to answer.
bool CanOpenDisplay(const char* name = nullptr, double waitSeconds = 2.0);

// Records the display mode for the next window (and tells GLUT).
void SetDisplayMode(unsigned int mode);
// Creates the window; drops GLUT_MULTISAMPLE (printing one line) when that mode is not
// possible on this display. Returns the GLUT window id.
int CreateEngineWindow(const std::string& title);

}  // namespace vorn
