#pragma once
// The demonstration: opens an 800 by 600 window, builds a scene and lets the mouse
// rotate the world, pan and zoom. Options: --frames N renders N frames and returns;
// --screenshot out.png saves the window after them; --resources DIR reads the resources
// from DIR instead of ./Resources; --fixed-step S seeds the random numbers and advances
// every frame by exactly S seconds, so a run draws the same pictures.
#include <string>
#include <vector>

namespace vorn {

int RunDemo(const std::vector<std::string>& args);

}  // namespace vorn
