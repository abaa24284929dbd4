#pragma once
// The scene a host exposes to the engine by name. The driver callbacks use it, and VR
// mode places its eye images in it rather than in the scene it is called on, so it
// lives with the scene rather than with the application that binds it.
#include "core/script_owned.h"

namespace vorn {

class Vorn_3Dcene;

inline Ref<Vorn_3Dcene> openGLScene;

}  // namespace vorn
