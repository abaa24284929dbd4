// The draw walk of a node: render targets, the fixed-function frame of draw_begin and
// draw_end, submeshes with their textures, blend, wire-frame and culling state, the
// buffered draw and the immediate fallback, then the children.
#include <epoxy/gl.h>

#include <algorithm>
#include <string>
#include <vector>

#include "core/console.h"
#include "core/errors.h"
#include "core/gl_state_guard.h"
#include "core/screen_settings.h"
#include "node/game_node.h"
#include "node/node_run.h"
#include "node/program_uniforms.h"
#include "node/submesh_lookup.h"

namespace vorn {
namespace {

// Texture unit of a channel. A channel outside 0..7 selects none and leaves the active
// unit as it was.
void select_unit(int channel) {
  if (channel >= 0 && channel <= 7) gl_state::SelectTextureUnit(channel);
}

// Creates and fills the GL texture of a record on the channel's unit. The FX path asks
// for mipmaps before the texture is bound and keeps the linear minification filter, so
// the request acts on whatever the unit had bound and shows nowhere: a fixed order.
void upload_texture(TextureInfo& rec, int submeshIndex, bool withFX) {
  GLuint texID = 0;
  glGenTextures(1, &texID);
  rec.texID = texID;
  select_unit(rec.channel);
  if (withFX && rec.mipMap) {
    // A unit with no image bound refuses the request; it would change nothing.
    GLint boundWidth = 0;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &boundWidth);
    if (boundWidth > 0) glGenerateMipmap(GL_TEXTURE_2D);
  }
  glBindTexture(GL_TEXTURE_2D, texID);
  glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
  if (withFX) {
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
  }
  const bool rgba = rec.Format == "RGBA";
  const GLenum format = rgba ? GL_RGBA : GL_RGB;
  // Rows are tightly packed; data shorter than the image would be read past its end,
  // so such a texture is made without pixels and the fault is printed.
  const void* pixels = nullptr;
  if (rec.imgData && rec.width > 0 && rec.height > 0) {
    const std::size_t need =
        static_cast<std::size_t>(rec.width) * static_cast<std::size_t>(rec.height) * (rgba ? 4u : 3u);
    if (rec.imgData->size() >= need) {
      pixels = rec.imgData->data();
    } else {
      console::print("Texture data of submesh", submeshIndex, "channel", rec.channel, "holds", rec.imgData->size(),
                     "bytes,", rec.width, "x", rec.height, rec.Format, "needs", need);
    }
  }
  GLint alignment = 4;
  glGetIntegerv(GL_UNPACK_ALIGNMENT, &alignment);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), rec.width, rec.height, 0, format, GL_UNSIGNED_BYTE,
               pixels);
  glPixelStorei(GL_UNPACK_ALIGNMENT, alignment);
  rec.genFinish = true;
}

// Scratch space for the density list; the draw runs on one thread.
std::vector<float> densities;

void bind_textures(Vorn_3DGameNode& n, std::vector<TextureInfo>& records, int submeshIndex) {
  // An empty entry binds nothing: unit 0 keeps what the cache knows of it.
  if (records.empty()) return;
  gl_state::drawCache.unit0Unbound = false;
  if (!n.CurrSubMeshFX) {
    for (TextureInfo& rec : records) {
      if (rec.genFinish) {
        glBindTexture(GL_TEXTURE_2D, rec.texID);
      } else {
        upload_texture(rec, submeshIndex, false);
      }
    }
    return;
  }
  const ProgramUniforms& u = GetProgramUniforms(*n.CurrSubMeshFX);
  for (TextureInfo& rec : records) {
    if (!rec.genFinish) upload_texture(rec, submeshIndex, true);
    select_unit(rec.channel);
    glBindTexture(rec.Format == "CUBE" ? GL_TEXTURE_CUBE_MAP : GL_TEXTURE_2D, rec.texID);
    SetSamplerUnit(u, SamplerLocation(u, rec.channel), rec.channel);
  }
  // Each record would set these in turn; the last one's size is what stays.
  if (u.uTexSize >= 0) {
    const float size[2] = {static_cast<float>(records.back().width), static_cast<float>(records.back().height)};
    Uniform2fv(u, u.uTexSize, 1, size);
  }
  if (u.uMSKSize >= 0) {
    const float size[2] = {10.0f, 10.0f};
    Uniform2fv(u, u.uMSKSize, 1, size);
  }
  if (u.uTextureDensity >= 0) {
    densities.resize(records.size());
    for (std::size_t i = 0; i < records.size(); ++i) densities[i] = static_cast<float>(records[i].density);
    Uniform1fv(u, u.uTextureDensity, static_cast<GLsizei>(densities.size()), densities.data());
  }
}

// ---- Immediate path ----

[[noreturn]] void missing_vertex_data(int s, const char* name, std::size_t vertex) {
  throw IndexError("Vorn_3DGameNode.draw_submesh: submesh " + std::to_string(s) + " has no complete " + name +
                   " for vertex " + std::to_string(vertex));
}

// The attribute array of a submesh with `need` components for each of `count`
// vertices; checked before glBegin so that a fault never leaves a primitive open.
template <std::size_t N>
const std::vector<VertexEntry<N>>& vertex_column(const Vorn_3DGameNode::SubMeshMap<std::vector<VertexEntry<N>>>& map,
                                                 int s, std::size_t count, std::size_t need, const char* name) {
  const std::vector<VertexEntry<N>>* array = map.find(s);
  if (!array) {
    throw KeyError("Vorn_3DGameNode.draw_submesh: submesh " + std::to_string(s) + " has no " + name + " entry");
  }
  if (array->size() < count) missing_vertex_data(s, name, array->size());
  for (std::size_t v = 0; v < count; ++v)
    if ((*array)[v].size < need) missing_vertex_data(s, name, v);
  return *array;
}

inline float f(double v) { return static_cast<float>(v); }

void draw_immediate(const Vorn_3DGameNode& n, int s, int shapeType, int layout) {
  gl_state::ApplyProgram();
  if (gl_state::drawCache.drawObserver) gl_state::drawCache.drawObserver();
  const Vec3Array* found = n.VertexArray_Positon.find(s);
  static const Vec3Array none;
  const Vec3Array& pos = found ? *found : none;
  const std::size_t count = pos.size();
  for (std::size_t v = 0; v < count; ++v)
    if (pos[v].size < 3) missing_vertex_data(s, "position", v);

  // Each branch sends per vertex what its interleaved layout carries.
  switch (layout) {
    case glc::T4F_C4F_N3F_V4F: {
      const auto* bones = n.VertexArray_BoneIndics.find(s);
      const auto* tangents = n.VertexArray_Tangent.find(s);
      if (bones && !bones->empty()) {
        const auto& uv = vertex_column(n.VertexArray_UV, s, count, 2, "UV");
        const auto& bi = vertex_column(n.VertexArray_BoneIndics, s, count, 2, "bone indices");
        const auto& bw = vertex_column(n.VertexArray_BoneWeight, s, count, 4, "bone weights");
        const auto& nor = vertex_column(n.VertexArray_Normal, s, count, 3, "normal");
        glBegin(static_cast<GLenum>(shapeType));
        for (std::size_t v = 0; v < count; ++v) {
          glTexCoord4f(f(uv[v][0]), f(uv[v][1]), f(bi[v][0]), f(bi[v][1]));
          glColor4f(f(bw[v][0]), f(bw[v][1]), f(bw[v][2]), f(bw[v][3]));
          glNormal3f(f(nor[v][0]), f(nor[v][1]), f(nor[v][2]));
          glVertex3f(f(pos[v][0]), f(pos[v][1]), f(pos[v][2]));
        }
        glEnd();
        return;
      }
      if (tangents && !tangents->empty()) {
        const auto& uv = vertex_column(n.VertexArray_UV, s, count, 2, "UV");
        const auto& tan = vertex_column(n.VertexArray_Tangent, s, count, 3, "tangent");
        const auto& bit = vertex_column(n.VertexArray_Bitangent, s, count, 3, "bitangent");
        const auto& nor = vertex_column(n.VertexArray_Normal, s, count, 3, "normal");
        glBegin(static_cast<GLenum>(shapeType));
        for (std::size_t v = 0; v < count; ++v) {
          glTexCoord4f(f(uv[v][0]), f(uv[v][1]), f(tan[v][0]), f(tan[v][1]));
          glColor4f(f(tan[v][2]), f(bit[v][0]), f(bit[v][1]), f(bit[v][2]));
          glNormal3f(f(nor[v][0]), f(nor[v][1]), f(nor[v][2]));
          glVertex3f(f(pos[v][0]), f(pos[v][1]), f(pos[v][2]));
        }
        glEnd();
        return;
      }
      // Neither bones nor tangents: the layout carries no vertex.
      break;
    }
    case glc::T2F_C4F_N3F_V3F: {
      const auto& bi = vertex_column(n.VertexArray_BoneIndics, s, count, 2, "bone indices");
      const auto& bw = vertex_column(n.VertexArray_BoneWeight, s, count, 4, "bone weights");
      const auto& nor = vertex_column(n.VertexArray_Normal, s, count, 3, "normal");
      glBegin(static_cast<GLenum>(shapeType));
      for (std::size_t v = 0; v < count; ++v) {
        glTexCoord2f(f(bi[v][0]), f(bi[v][1]));
        glColor4f(f(bw[v][0]), f(bw[v][1]), f(bw[v][2]), f(bw[v][3]));
        glNormal3f(f(nor[v][0]), f(nor[v][1]), f(nor[v][2]));
        glVertex3f(f(pos[v][0]), f(pos[v][1]), f(pos[v][2]));
      }
      glEnd();
      return;
    }
    case glc::T2F_N3F_V3F: {
      const auto& uv = vertex_column(n.VertexArray_UV, s, count, 2, "UV");
      const auto& nor = vertex_column(n.VertexArray_Normal, s, count, 3, "normal");
      glBegin(static_cast<GLenum>(shapeType));
      for (std::size_t v = 0; v < count; ++v) {
        glTexCoord2f(f(uv[v][0]), f(uv[v][1]));
        glNormal3f(f(nor[v][0]), f(nor[v][1]), f(nor[v][2]));
        glVertex3f(f(pos[v][0]), f(pos[v][1]), f(pos[v][2]));
      }
      glEnd();
      return;
    }
    case glc::N3F_V3F: {
      const auto& nor = vertex_column(n.VertexArray_Normal, s, count, 3, "normal");
      glBegin(static_cast<GLenum>(shapeType));
      for (std::size_t v = 0; v < count; ++v) {
        glNormal3f(f(nor[v][0]), f(nor[v][1]), f(nor[v][2]));
        glVertex3f(f(pos[v][0]), f(pos[v][1]), f(pos[v][2]));
      }
      glEnd();
      return;
    }
    case glc::V3F: {
      glBegin(static_cast<GLenum>(shapeType));
      for (std::size_t v = 0; v < count; ++v) glVertex3f(f(pos[v][0]), f(pos[v][1]), f(pos[v][2]));
      glEnd();
      return;
    }
    default:
      // GL_T2F_V3F and unknown layouts have no branch: an empty primitive.
      break;
  }
  glBegin(static_cast<GLenum>(shapeType));
  glEnd();
}

// The screen draw of a node, shared by the plain case and the debug redraw of a node
// that renders into a target.
void draw_to_screen(Vorn_3DGameNode& n, double rx, double ry, double rz, const NodeScene* scene) {
  n.draw_begin(rx, ry, rz);
  n.draw_allsubmesh();
  n.draw_skeleton();
  // A pick runs the node's callbacks, which may be script code.
  if (scene && scene->isCheckPickOnce()) {
    const DrawCacheHandOff handOff;
    n.draw_picktriangle();
  } else {
    n.draw_picktriangle();
  }
  n.draw_children();
  n.draw_end();
}

// The draw of a node that renders into its target frame buffer.
void draw_into_target(Vorn_3DGameNode& n, double rx_, double ry_, double rz_, NodeScene* scene) {
  // The enclosing pass's frame buffer and viewport come back on exit, thrown or not.
  const gl_state::PassScope pass(*n.TargetFrameBuffer, {0, 0, n.TargetFrameWidth, n.TargetFrameHeight},
                                 {0, 0, SCREEN_WIDTH, SCREEN_HEIGHT});
  glClearDepth(1.0);
  glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
  if (!n.TargetFrameBuffer_IsPostFXMode) {
    n.draw_begin(rx_, ry_, rz_);
    n.draw_allsubmesh();
    n.draw_children();
    n.draw_end();
    return;
  }
  n.draw_begin(rx_, ry_, rz_);
  n.draw_begin_shader(0);
  const unsigned* fx0 = n.SubMeshFX.find(0);
  const std::optional<unsigned> currShaderVN = fx0 ? std::optional<unsigned>(*fx0) : std::nullopt;
  // Every record binds to unit 0 here and its sampler is told the channel number.
  if (auto* records = n.TextureArray.find(0)) {
    const ProgramUniforms* u = currShaderVN ? &GetProgramUniforms(*currShaderVN) : nullptr;
    for (const TextureInfo& rec : *records) {
      gl_state::SelectTextureUnit(0);
      glBindTexture(GL_TEXTURE_2D, rec.texID);
      if (u) SetSamplerUnit(*u, SamplerLocation(*u, rec.channel), rec.channel);
    }
    // The source size and mosaic cell as a submesh draw gives them, so that the
    // filters that step by texels (blur, mosaic, depth of field) work as post passes.
    if (u && !records->empty()) {
      if (u->uTexSize >= 0) {
        const float size[2] = {static_cast<float>(records->back().width), static_cast<float>(records->back().height)};
        glUniform2fv(u->uTexSize, 1, size);
      }
      if (u->uMSKSize >= 0) {
        const float cell[2] = {10.0f, 10.0f};
        glUniform2fv(u->uMSKSize, 1, cell);
      }
    }
  }
  if (scene) scene->RenderPostFXRect();
  n.draw_children();
  n.draw_end();
  glBindTexture(GL_TEXTURE_2D, 0);
  if (currShaderVN) gl_state::UseProgram(0);
  n.CurrSubMeshFX.reset();
}

// Binds a buffer object, uploading it on first use; a binding already in force stays.
void bind_buffer(BufferObject& buffer) {
  const auto target = static_cast<GLenum>(buffer.target());
  if (buffer.uploaded()) {
    gl_state::BindBuffer(target, buffer.gl_name());
    return;
  }
  buffer.bind();
  (target == GL_ARRAY_BUFFER ? gl_state::drawCache.arrayBuffer : gl_state::drawCache.elementBuffer) = buffer.gl_name();
}

template <class V>
const V& entry(const Vorn_3DGameNode::SubMeshMap<V>& map, int s, const char* name) {
  if (const V* found = FindSubMeshEntry(map, s)) return *found;
  throw KeyError("Vorn_3DGameNode.draw_submesh: submesh " + std::to_string(s) + " has no " + name + " entry");
}

}  // namespace

void Vorn_3DGameNode::PrefetchDrawFields() const noexcept {
  // The fields lie apart in the object; each is asked for once (a line asked for twice
  // costs nothing more).
  const void* fields[] = {&visible,
                          &children,
                          &sceneInstance,
                          &TargetFrameBuffer,
                          &WorldMatrix.m[0],
                          &WorldMatrix.m[2],
                          &WorldMatrix.m[3][3],
                          &VertexArray_Positon,
                          &VertexDescArray,
                          &TextureArray,
                          &VVBOArray,
                          &IVBOArray,
                          &SubMeshShapeType,
                          &SubMeshShapeCount,
                          &SubMeshCullMode,
                          &SubMeshAlphaMode,
                          &SubMeshWireFrame,
                          &SubMeshColor,
                          &SubMeshSpecularColor,
                          &SubMeshFX,
                          &CurrSubMeshFX,
                          &axisVisible,
                          &ShadowMapCamera};
  for (const void* field : fields) __builtin_prefetch(field);
}

// The entries of submesh 0, the usual first one: reading the first key here would wait
// on the very load this step starts.
void Vorn_3DGameNode::PrefetchDrawEntries() const noexcept {
  if (VertexArray_Positon.empty()) return;
  __builtin_prefetch(&*VertexArray_Positon.begin());
  PrefetchSubMeshEntries(0);
}

void Vorn_3DGameNode::PrefetchDrawBuffers() const noexcept {
  for (const auto* map : {&VVBOArray, &IVBOArray}) {
    if (!map->empty() && map->begin()->second) map->begin()->second->PrefetchDrawFields();
  }
}

void Vorn_3DGameNode::draw_begin(double rx_, double ry_, double rz_) {
  gl_state::CheckContext("Vorn_3DGameNode.draw_begin");
  // A rotation by 0 is the identity; skipping it leaves the same matrix.
  if (rx_ == 0.0 && ry_ == 0.0 && rz_ == 0.0) {
    gl_state::PushModelviewUnchanged();
    return;
  }
  gl_state::PushModelview();
  if (rx_ != 0.0) glRotatef(static_cast<float>(rx_), 1.0f, 0.0f, 0.0f);
  if (ry_ != 0.0) glRotatef(static_cast<float>(ry_), 0.0f, 1.0f, 0.0f);
  if (rz_ != 0.0) glRotatef(static_cast<float>(rz_), 0.0f, 0.0f, 1.0f);
}

void Vorn_3DGameNode::draw_end() {
  gl_state::CheckContext("Vorn_3DGameNode.draw_end");
  gl_state::PopModelview();
}

void Vorn_3DGameNode::draw(double rx_, double ry_, double rz_) {
  // A hidden node hides its subtree and counts no batch.
  if (!IsVisible()) return;
  const gl_state::DrawScope scope("Vorn_3DGameNode.draw");
  // A draw that failed half-way may have left its program recorded; the next one
  // must bind it again.
  CurrSubMeshFX.reset();
  const auto scene = sceneInstance.lock();
  if (TargetFrameBuffer) {
    draw_into_target(*this, rx_, ry_, rz_, scene.get());
    if (DEBUG_MODE) draw_to_screen(*this, rx_, ry_, rz_, scene.get());
  } else {
    draw_to_screen(*this, rx_, ry_, rz_, scene.get());
  }
  if (scene) scene->AddBatchCount();
  if (IsAxisVisible()) {
    const DrawCacheHandOff handOff;
    draw_axis(rx_, ry_, rz_);
  } else {
    draw_axis(rx_, ry_, rz_);
  }
}

void Vorn_3DGameNode::draw_children() {
  if (!IsVisible()) return;
  // By index with the size read at each step, each child held while it draws: a
  // script's draw may add to the list or take the child out of it.
  const NodeDrawRun run;
  ForEachNode<WalkFor::kDraw>(children, [&run](Vorn_3DGameNode& child) { run.draw(child, 0.0, 0.0, 0.0); });
}

void Vorn_3DGameNode::draw_allsubmesh() {
  gl_state::CheckContext("Vorn_3DGameNode.draw_allsubmesh");
  // By position, in first-insertion order of the keys.
  for (std::size_t i = 0; i < VertexArray_Positon.size(); ++i) {
    draw_submesh((VertexArray_Positon.begin() + static_cast<std::ptrdiff_t>(i))->first);
  }
  // Unit 0 with nothing bound stays so until a submesh binds textures.
  if (!gl_state::drawCache.active || !gl_state::drawCache.unit0Unbound ||
      gl_state::tracked.textureUnit != 0) {
    glBindTexture(GL_TEXTURE_2D, 0);
    gl_state::drawCache.unit0Unbound = gl_state::tracked.textureUnit == 0;
  }
  gl_state::UseProgram(0);
  CurrSubMeshFX.reset();
}

void Vorn_3DGameNode::draw_submesh(int submeshIndex) {
  gl_state::CheckContext("Vorn_3DGameNode.draw_submesh");
  const int s = submeshIndex;
  // The entries of one submesh lie in a dozen separate arrays: start all their reads now,
  // before the GL calls below (a walk asked for submesh 0's already).
  PrefetchSubMeshEntries(s);
  draw_begin_shader(s);

  if (CurrSubMeshFX) {
    const auto scene = sceneInstance.lock();
    SetSubMeshUniforms(*this, GetProgramUniforms(*CurrSubMeshFX), s, scene.get());
    prepare_uniform_for_shader(s);
  }

  // GL_TEXTURE_2D stays enabled after this.
  if (auto* records = FindSubMeshEntry(TextureArray, s)) {
    gl_state::EnableTexture2D();
    bind_textures(*this, *records, s);
  }

  const int ShapeType = entry(SubMeshShapeType, s, "shape type");
  const int CullMode = entry(SubMeshCullMode, s, "cull mode");
  const int* alpha = FindSubMeshEntry(SubMeshAlphaMode, s);
  if (!alpha) console::print(s);
  const bool blend = alpha && *alpha == glc::BLEND;

  if (blend) {
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  }
  const bool* wire = FindSubMeshEntry(SubMeshWireFrame, s);
  gl_state::PolygonMode(wire && *wire ? GL_LINE : GL_FILL);
  gl_state::CullMode(CullMode == glc::NONE ? GL_NONE : CullMode);

  const auto* vbo = FindSubMeshEntry(VVBOArray, s);
  const auto* ibo = FindSubMeshEntry(IVBOArray, s);
  if (vbo && ibo && *vbo && *ibo) {
    BufferObject& vertices = **vbo;
    BufferObject& indices = **ibo;
    gl_state::ApplyProgram();
    bind_buffer(vertices);
    gl_state::MarkClientArrays();
    glInterleavedArrays(static_cast<GLenum>(entry(VertexDescArray, s, "layout")), 0, nullptr);
    const std::int64_t* shapeCount = FindSubMeshEntry(SubMeshShapeCount, s);
    // Never more indices than the buffer holds.
    const std::int64_t count =
        std::min<std::int64_t>(shapeCount ? *shapeCount : 0, static_cast<std::int64_t>(indices.count()));
    if (count > 0) {
      bind_buffer(indices);
      if (gl_state::drawCache.drawObserver) gl_state::drawCache.drawObserver();
      glDrawElements(static_cast<GLenum>(ShapeType), static_cast<GLsizei>(count),
                     indices.wide_indices() ? GL_UNSIGNED_INT : GL_UNSIGNED_SHORT, nullptr);
      gl_state::ReleaseBuffer(GL_ELEMENT_ARRAY_BUFFER);
    }
    gl_state::ReleaseBuffer(GL_ARRAY_BUFFER);
  } else {
    const int* layout = FindSubMeshEntry(VertexDescArray, s);
    draw_immediate(*this, s, ShapeType, layout ? *layout : 0);
  }

  if (blend) glDisable(GL_BLEND);
}

}  // namespace vorn
