// Vorn_FXManage operations that call GL: building the catalogue's programs and the
// compile/link diagnostic.
#include <epoxy/gl.h>

#include "core/errors.h"
#include "core/gl_context.h"
#include "shader/fx_2d.h"
#include "shader/fx_3d.h"
#include "shader/fx_manage.h"

namespace vorn {
namespace {

GLuint CompileInto(GLuint program, GLenum kind, const std::string& code) {
  const GLuint shader = glCreateShader(kind);
  const GLchar* source = code.c_str();
  const auto length = static_cast<GLint>(code.size());
  glShaderSource(shader, 1, &source, &length);
  glCompileShader(shader);
  glAttachShader(program, shader);
  return shader;
}

std::string ShaderLog(GLuint shader) {
  GLint length = 0;
  glGetShaderiv(shader, GL_INFO_LOG_LENGTH, &length);
  if (length <= 1) return {};
  std::string log(static_cast<std::size_t>(length), '\0');
  GLsizei written = 0;
  glGetShaderInfoLog(shader, length, &written, log.data());
  log.resize(static_cast<std::size_t>(written));
  return log;
}

std::string ProgramLog(GLuint program) {
  GLint length = 0;
  glGetProgramiv(program, GL_INFO_LOG_LENGTH, &length);
  if (length <= 1) return {};
  std::string log(static_cast<std::size_t>(length), '\0');
  GLsizei written = 0;
  glGetProgramInfoLog(program, length, &written, log.data());
  log.resize(static_cast<std::size_t>(written));
  return log;
}

// GL calls without a current context would end the process in the loader; a script
// that builds the manager before its window gets an exception instead.
void RequireContext(const char* operation) { RequireGLContext(std::string("Vorn_FXManage.") + operation); }

}  // namespace

Vorn_FXManage::Vorn_FXManage() {
  RequireContext("__init__");
  for (int i = Vorn_2DFX::FX_BEGIN; i < Vorn_2DFX::FX_END; ++i) {
    const auto [vsCode, psCode] = Vorn_2DFX::ProgramTexts(i);
    Shader_2DFX_Dict[i] = CreateShader(vsCode, psCode);
  }
  // The 3D pair is stateful: the pixel text continues on what GetVS left behind.
  Vorn_3DFX vn3DFX;
  for (int i = Vorn_3DFX::FX_BEGIN; i < Vorn_3DFX::FX_END; ++i) {
    const std::optional<std::string> vsCode = vn3DFX.GetVS(i);
    const std::optional<std::string> psCode = vn3DFX.GetPS(i);
    Shader_3DFX_Dict[i] = CreateShader(vsCode.value_or(std::string()), psCode.value_or(std::string()));
  }
}

Vorn_FXManage::~Vorn_FXManage() {
  // Compiled programs hold megabytes in the driver; the names are forgotten even
  // without a context, as they are meaningless once the context is gone.
  const bool deletable = HasCurrentGLContext();
  for (const auto& [program, objects] : shaderObjects_) {
    if (deletable) {
      glDeleteShader(objects.first);
      glDeleteShader(objects.second);
      glDeleteProgram(program);
    }
    ++ProgramsDeletedCount;
  }
}

// No status is queried here; a refused text still yields a program handle.
std::optional<unsigned int> Vorn_FXManage::CreateShader(const std::string& vsCode, const std::string& psCode) {
  if (vsCode.empty() || psCode.empty()) return std::nullopt;
  RequireContext("CreateShader");
  const GLuint program = glCreateProgram();
  const GLuint vsObj = CompileInto(program, GL_VERTEX_SHADER, vsCode);
  const GLuint psObj = CompileInto(program, GL_FRAGMENT_SHADER, psCode);
  glLinkProgram(program);
  shaderObjects_[program] = {vsObj, psObj};
  return program;
}

std::vector<FXProgramStatus> Vorn_FXManage::DiagnoseShaders() const {
  std::vector<FXProgramStatus> result;
  if (Shader_2DFX_Dict.empty() && Shader_3DFX_Dict.empty()) return result;
  RequireContext("DiagnoseShaders");
  for (const ProgramMap* map : {&Shader_2DFX_Dict, &Shader_3DFX_Dict}) {
    for (const auto& [id, program] : *map) {
      if (!program) continue;
      FXProgramStatus status;
      status.FXID = id;
      status.Name = IdentifierName(id);
      status.Program = *program;
      if (const auto objects = ShaderObjects(*program)) {
        GLint ok = GL_FALSE;
        glGetShaderiv(objects->first, GL_COMPILE_STATUS, &ok);
        status.VSCompiled = ok == GL_TRUE;
        status.VSLog = ShaderLog(objects->first);
        ok = GL_FALSE;
        glGetShaderiv(objects->second, GL_COMPILE_STATUS, &ok);
        status.PSCompiled = ok == GL_TRUE;
        status.PSLog = ShaderLog(objects->second);
      }
      GLint linked = GL_FALSE;
      glGetProgramiv(*program, GL_LINK_STATUS, &linked);
      status.Linked = linked == GL_TRUE;
      status.LinkLog = ProgramLog(*program);
      result.push_back(std::move(status));
    }
  }
  return result;
}

}  // namespace vorn
