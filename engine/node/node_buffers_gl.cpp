// The GL side of buffer objects: creation on first bind, deletion with the object.
#include <epoxy/gl.h>

#include "core/gl_context.h"
#include "core/gl_draw_cache.h"
#include "node/buffer_object.h"
#include "node/gl_enums.h"

namespace vorn {

static_assert(glc::NONE == GL_NONE && glc::LINES == GL_LINES && glc::TRIANGLES == GL_TRIANGLES &&
              glc::QUADS == GL_QUADS && glc::BLEND == GL_BLEND && glc::CW == GL_CW && glc::CCW == GL_CCW);
static_assert(glc::V3F == GL_V3F && glc::N3F_V3F == GL_N3F_V3F && glc::T2F_V3F == GL_T2F_V3F &&
              glc::T2F_N3F_V3F == GL_T2F_N3F_V3F && glc::T2F_C4F_N3F_V3F == GL_T2F_C4F_N3F_V3F &&
              glc::T4F_C4F_N3F_V4F == GL_T4F_C4F_N3F_V4F);
static_assert(glc::ARRAY_BUFFER == GL_ARRAY_BUFFER && glc::ELEMENT_ARRAY_BUFFER == GL_ELEMENT_ARRAY_BUFFER);

BufferObject::BufferObject(FloatData data, int target)
    : data_(std::move(data)), target_(target), count_(std::get<FloatData>(data_).size()) {}

BufferObject::BufferObject(IndexData data, int target)
    : data_(std::move(data)), target_(target), count_(std::get<IndexData>(data_).size()) {}

BufferObject::BufferObject(WideIndexData data, int target)
    : data_(std::move(data)), target_(target), count_(std::get<WideIndexData>(data_).size()), wide_(true) {}

BufferObject::~BufferObject() {
  if (name_ != 0 && HasCurrentGLContext()) {
    const GLuint name = name_;
    glDeleteBuffers(1, &name);
    gl_state::ForgetBuffer(name);
  }
}

void BufferObject::bind() {
  const auto target = static_cast<GLenum>(target_);
  if (name_ != 0) {
    glBindBuffer(target, name_);
    return;
  }
  GLuint name = 0;
  glGenBuffers(1, &name);
  glBindBuffer(target, name);
  std::visit(
      [target](auto& values) {
        using T = typename std::decay_t<decltype(values)>::value_type;
        glBufferData(target, static_cast<GLsizeiptr>(values.size() * sizeof(T)), values.data(), GL_STATIC_DRAW);
        std::decay_t<decltype(values)>().swap(values);
      },
      data_);
  name_ = name;
}

void BufferObject::unbind() { glBindBuffer(static_cast<GLenum>(target_), 0); }

}  // namespace vorn
