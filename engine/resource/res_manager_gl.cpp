// GL-facing half of the resource manager.
#include "core/gl_api.h"
#include "resource/res_manager.h"
#include "shader/fx_manage.h"
#include "shader/fx_manage.h"

namespace vorn {

std::string ReadGLExtensionString() {
  if (const auto* text = glGetString(GL_EXTENSIONS)) return reinterpret_cast<const char*>(text);
  // A core-profile context has no single string: join the indexed names.
  std::string joined;
  GLint count = 0;
  glGetIntegerv(GL_NUM_EXTENSIONS, &count);
  for (GLint i = 0; i < count; ++i) {
    if (const auto* name = glGetStringi(GL_EXTENSIONS, static_cast<GLuint>(i))) {
      if (!joined.empty()) joined += ' ';
      joined += reinterpret_cast<const char*>(name);
    }
  }
  while (glGetError() != GL_NO_ERROR) {
  }
  return joined;
}

void CreateFXManager() { FXManagerInstance = std::make_shared<Vorn_FXManage>(); }

}  // namespace vorn
