#pragma once
// The application's own globals: the objects a host hands to the driver callbacks.
// Screen settings live in core/screen_settings.h, the manager instances beside their
// classes (resource/res_manager.h, shader/fx_manage.h). The header only
// forward-declares the classes it names.
#include "core/script_owned.h"
#include "scene/open_gl_scene.h"

namespace vorn {

class Vorn_3DDrawNode;
class Vorn_3Dcene;

// The demonstration's debug draw node.
inline Ref<Vorn_3DDrawNode> pickDrawNode;

}  // namespace vorn
