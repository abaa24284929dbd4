#pragma once
// Vorn_3DGameNode: the base of everything that stands in the 3D world. One class,
// implemented over several files by concern:
//   node_core.cpp       identity, loading, flags, the per-frame update, follow camera
//   node_hierarchy.cpp  children and parent
//   node_transform.cpp  accessors, matrices, following, standing on the ground
//   node_submesh.cpp    submesh maps and the vertex interface
//   node_buffers.cpp    interleaving, tangents, bounding box
//   vertex_bone_sort.cpp  bone ranking, shared with the file readers
//   node_buffers_gl.cpp the GL side of BufferObject (upload on first bind)
//   node_bindings.cpp   binding tables and script events
//   node_actions.cpp    the timed-action target side
//   node_list.cpp       NodeList, the owning sequence behind `children`
//   node_fx_gl.cpp      effect assignment and render targets
//   node_draw_gl.cpp    the draw walk, textures, GL state and geometry
//   node_draw_uniforms_gl.cpp  the uniforms of a draw
//   node_textures.cpp   texture records: files, images, dynamic textures, bump maps
//   node_textures_gl.cpp cube maps
//   node_2d_shapes.cpp  screen-space rectangles and images
//   node_picking.cpp    the pick ray test, the pick event of the draw, bounding box
//   node_debug_draw_gl.cpp  bounding-box brackets and axis lines
//
// Ownership (core/script_owned.h): nodes live in std::shared_ptr; `children`,
// `FollowCamera` and `ShadowMapCamera` own (NodeList, NodeRef); `parent`,
// `followTarget` and `sceneInstance` are non-owning. Make nodes with MakeNode<T>(...),
// which also hangs a node constructed with a parent under that parent.
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "core/action_target.h"
#include "core/fbx_matrix.h"
#include "core/ordered_map.h"
#include "core/script_owned.h"
#include "core/script_value.h"
#include "core/vector3.h"
#include "node/buffer_object.h"
#include "node/gl_enums.h"
#include "node/node_list.h"
#include "node/node_scene.h"
#include "node/node_types.h"
#include "node/submesh_lookup.h"
#include "node/vertex_bone_sort.h"

namespace vorn {

class ActionPlayer;
class GAction;

class Vorn_3DGameNode : public ActionTarget,
                        public ScriptOwned,
                        public std::enable_shared_from_this<Vorn_3DGameNode> {
 public:
  using Ptr = std::shared_ptr<Vorn_3DGameNode>;
  template <class V>
  using SubMeshMap = OrderedMap<int, V>;
  using ActionQueue = std::vector<std::shared_ptr<GAction>>;

  // Sets every field. With a parent that is in a scene, the node is loaded into that
  // scene at once, under the base label "3DGameNode" (a subclass writes its own label
  // only after this constructor returns). Hanging the node under the parent needs a
  // shared pointer to it and is done by FinishConstruction, which MakeNode calls.
  explicit Vorn_3DGameNode(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);
  ~Vorn_3DGameNode() override;
  Vorn_3DGameNode(const Vorn_3DGameNode&) = delete;
  Vorn_3DGameNode& operator=(const Vorn_3DGameNode&) = delete;

  // The second half of construction: AddChild on the constructor's parent.
  void FinishConstruction();

  // ---- Identity, loading, flags (node_core.cpp) ----
  const std::string& GetNodeType() const noexcept { return NodeType; }
  int GetNodeIndex() const noexcept { return NodeIndex; }
  void SetTag(std::optional<std::string> tagName) { TagName = std::move(tagName); }
  const std::optional<std::string>& GetTag() const noexcept { return TagName; }
  void OnLoad(const std::shared_ptr<NodeScene>& scene);
  void OnDestroy();
  std::shared_ptr<NodeScene> GetSceneInstance() const noexcept { return sceneInstance.lock(); }
  void SetInstanceID(int id) noexcept { instanceID = id; }
  int GetInstanceID() const noexcept { return instanceID; }
  void SetUserData(ScriptValue data) { userData = std::move(data); }
  const ScriptValue& GetUserData() const noexcept { return userData; }
  void SetVisible(bool v) override { visible = v; }
  bool IsVisible() const override { return visible; }
  void SetFocusIn(bool f) noexcept { focusIn = f; }
  // The argument is required and ignored.
  bool IsFocusIn(const ScriptValue& /*ignored*/ = {}) const noexcept { return focusIn; }
  void SetBoundingBoxVisible(bool v) noexcept { boxVisible = v; }
  bool IsBoundingBoxVisible() const noexcept { return boxVisible; }
  void SetPickTriangleVisible(bool v) noexcept { PickTriangleVisible = v; }
  bool IsPickTriangleVisible() const noexcept { return PickTriangleVisible; }
  void SetAxisVisible(bool v) noexcept { axisVisible = v; }
  bool IsAxisVisible() const noexcept { return axisVisible; }
  void SetShadowMapCamera(Ptr camera) { ShadowMapCamera = std::move(camera); }
  const Ptr& GetShadowMapCamera() const noexcept { return ShadowMapCamera.ptr(); }

  // Once a frame: loop rotation, matrices, skin, children, actions, update callback.
  virtual void update(double delay);
  virtual void update_skin_animation(double /*delay*/) {}
  virtual bool checkColl(const Vorn_3DGameNode* /*other*/) { return false; }
  // Creates (once) the camera that follows this node, places it at (x, y, z) and
  // points it here. Defined with the camera (camera/camera_follow.cpp): the node knows
  // cameras only as nodes.
  Ptr CreateFollowCamera(double x, double y, double z);

  // ---- Hierarchy (node_hierarchy.cpp) ----
  Ptr GetParent() const noexcept { return parent.lock(); }
  void SetParent(const Ptr& node);
  // ValueError when the child is this node or one of its ancestors: trees hold no cycles.
  void AddChild(Ptr child);
  // Whether node is this node or below it (through children, not parent fields).
  bool IsInSubtree(const Vorn_3DGameNode* node) const;
  // The check of every way a node enters a children list: TypeError for None,
  // ValueError for a cycle.
  void CheckNewChild(const Vorn_3DGameNode* child, const char* where) const;
  void RemoveChild(const Vorn_3DGameNode* child);
  std::vector<Ptr> GetAllChildrens() const;
  void RemoveAllChild();

  // ---- Transform (node_transform.cpp) ----
  double GetX() const noexcept { return x; }
  double GetY() const noexcept { return y; }
  double GetZ() const noexcept { return z; }
  void SetX(double v) noexcept { x = v, xyzIntMask &= ~1u; }
  void SetY(double v) noexcept { y = v, xyzIntMask &= ~2u; }
  void SetZ(double v) noexcept { z = v, xyzIntMask &= ~4u; }
  void MoveX(double v) noexcept { x += v, xyzIntMask &= ~1u; }
  void MoveY(double v) noexcept { y += v, xyzIntMask &= ~2u; }
  void MoveZ(double v) noexcept { z += v, xyzIntMask &= ~4u; }
  std::array<double, 3> GetXYZ() const noexcept { return {x, y, z}; }
  void SetXYZ(double nx, double ny, double nz) override { x = nx, y = ny, z = nz, xyzIntMask = 0; }
  void MoveXYZ(double dx, double dy, double dz) noexcept { x += dx, y += dy, z += dz, xyzIntMask = 0; }

  double GetSX() const override { return sx; }
  double GetSY() const override { return sy; }
  double GetSZ() const noexcept { return sz; }
  void SetSX(double v) noexcept { sx = v; }
  void SetSY(double v) noexcept { sy = v; }
  void SetSZ(double v) noexcept { sz = v; }
  // The relative scale operations add; they do not multiply.
  void ScaleX(double v) noexcept { sx += v; }
  void ScaleY(double v) noexcept { sy += v; }
  void ScaleZ(double v) noexcept { sz += v; }
  std::array<double, 3> GetSXYZ() const noexcept { return {sx, sy, sz}; }
  void SetSXYZ(double nx, double ny, double nz) noexcept { sx = nx, sy = ny, sz = nz; }
  void SetScale(double s) noexcept { sx = sy = sz = s; }
  void ScaleXYZ(double dx, double dy, double dz) noexcept { sx += dx, sy += dy, sz += dz; }

  double GetRX() const noexcept { return rx; }
  double GetRY() const noexcept { return ry; }
  double GetRZ() const noexcept { return rz; }
  void SetRX(double v) noexcept { rx = v; }
  void SetRY(double v) noexcept { ry = v; }
  void SetRZ(double v) noexcept { rz = v; }
  virtual void RotateX(double v) { rx += v; }
  virtual void RotateY(double v) { ry += v; }
  void RotateZ(double v) noexcept { rz += v; }
  std::array<double, 3> GetRXYZ() const noexcept { return {rx, ry, rz}; }
  void SetRXYZ(double nx, double ny, double nz) noexcept { rx = nx, ry = ny, rz = nz; }
  void RotateXYZ(double dx, double dy, double dz) noexcept { rx += dx, ry += dy, rz += dz; }

  void SetLoopRotateX(double speed) noexcept { rx_speed = speed; }
  void SetLoopRotateY(double speed) noexcept { ry_speed = speed; }
  void SetLoopRotateZ(double speed) noexcept { rz_speed = speed; }
  void StopLoopRotate() noexcept { rx_speed = ry_speed = rz_speed = 0.0; }

  FbxAMatrix GetParentMatrix() const;
  const FbxAMatrix& GetWorldMatrix() const noexcept { return WorldMatrix; }
  const FbxAMatrix& GetAxisMatrix() const noexcept { return AxisMatrix; }
  // Position from the world matrix; the ground height instead when standing on it.
  Vector3 GetWorldXYZ() const override;
  void Follow(const Ptr& targetObj) { followTarget = targetObj; }
  virtual void StandOnGround(bool standOn);
  // Whether update runs only this node's own engine code (no script code, no subtree),
  // so that the walk over a parent's children need not hold it meanwhile.
  bool UpdatesAlone() const noexcept;
  // update for a node that UpdatesAlone: the loop rotation and the matrices.
  void UpdateAlone(double delay);
  // Starts loading the fields that update reads (a hint; changes nothing).
  void PrefetchUpdateFields() const noexcept {
    const char* first = reinterpret_cast<const char*>(this);
    const char* last = reinterpret_cast<const char*>(&parentNode_ + 1);
    for (const char* p = first; p < last; p += 64) __builtin_prefetch(p);
  }
  // Starts loading what the engine's draw of this node reads, in three steps that a walk
  // over many nodes issues for nodes ahead of the one it draws, each step reading what
  // the one before loaded: the node's own fields, the entries of its first submesh in
  // the submesh maps, that submesh's buffer objects. Hints only; nothing changes.
  void PrefetchDrawFields() const noexcept;
  void PrefetchDrawEntries() const noexcept;
  void PrefetchDrawBuffers() const noexcept;
  // The entries of submesh s in the maps its draw reads (a hint).
  inline void PrefetchSubMeshEntries(int s) const noexcept;
  // The matrix step of update: WorldMatrix, then AxisMatrix. Computed only when the
  // node's position, rotation or scale, its parent or the parent's WorldMatrix changed
  // since the last time, or while it follows a target.
  void UpdateMatrices();
  // Advances the loop rotation by `delay` seconds.
  void LoopRotate(double delay) noexcept;

  // ---- Timed actions (node_actions.cpp) ----
  void SetSXY(double nsx, double nsy) override { sx = nsx, sy = nsy; }
  double GetAngle() const override { return rz; }
  void SetAngle(double angle) override { rz = angle; }
  void RunAction(const ActionQueue& actionqueue);

  // ---- Submeshes (node_submesh.cpp) ----
  int CreateSubMesh(const std::string& submeshName, bool withTexUV = false, bool withSkin = false);
  int GetSubMeshIndex(const std::string& subMeshName) const noexcept;
  void DeleteSubMesh(int submeshIndex);
  void CleanSubMesh();

  void PushVertex_Position(int s, double x, double y, double z);
  void PushVertex_Normal(int s, double nx, double ny, double nz);
  void PushVertex_Tangent(int s, double tx, double ty, double tz);
  void PushVertex_Bitangent(int s, double bx, double by, double bz);
  void PushVertex_UV(int s, double u, double v);
  // Packs the four bone numbers into two floats: b1 + b2 * 0.01, b3 + b4 * 0.01.
  void PushVertex_BoneIndics(int s, double b1, double b2, double b3, double b4);
  void PushVertex_BoneWeights(int s, double w1, double w2, double w3, double w4);
  // The line, triangle and quad forms take 2, 3 or 4 vertices' values in a row.
  void PushLineVertex_Position(int s, std::span<const double, 6> v);
  void PushTriangleVertex_Positon(int s, std::span<const double, 9> v);
  void PushQuadVertex_Postion(int s, std::span<const double, 12> v);
  void PushLineVertex_Normal(int s, std::span<const double, 6> v);
  void PushTriangleVertex_Normal(int s, std::span<const double, 9> v);
  void PushQuadVertex_Normal(int s, std::span<const double, 12> v);
  void PushLineVertex_Tangent(int s, std::span<const double, 6> v);
  void PushTriangleVertex_Tangent(int s, std::span<const double, 9> v);
  void PushQuadVertex_Tangent(int s, std::span<const double, 12> v);
  void PushLineVertex_Bitangent(int s, std::span<const double, 6> v);
  void PushTriangleVertex_Bitangent(int s, std::span<const double, 9> v);
  void PushQuadVertex_Bitangent(int s, std::span<const double, 12> v);
  void PushLineVertex_UV(int s, std::span<const double, 4> v);
  void PushTriangleVertex_UV(int s, std::span<const double, 6> v);
  void PushQuadVertex_UV(int s, std::span<const double, 8> v);
  // Kept broken on purpose: it forwards four bone numbers where eight are needed and
  // always fails with a TypeError, changing nothing.
  void PushLineVertex_BoneIndics(int s, std::span<const double, 8> v);
  void PushTriangleVertex_BoneIndics(int s, std::span<const double, 12> v);
  void PushQuadVertex_BoneIndics(int s, std::span<const double, 16> v);
  void PushLineVertex_BoneWeights(int s, std::span<const double, 8> v);
  void PushTriangleVertex_BoneWeights(int s, std::span<const double, 12> v);
  void PushQuadVertex_BoneWeights(int s, std::span<const double, 16> v);

  void LoadVertex(int s, FloatArray vertexArray);
  void CleanVertex();
  void LoadVIndex(int s, IndexArray indexArray);
  void PushVIndex(int s, std::int64_t index);
  // Removes the entry at position `index` (a position, not a vertex number).
  void DropVIndex(int s, std::int64_t index);
  void PushLineVIndex(int s, std::int64_t i1, std::int64_t i2);
  void PushTriangleVIndex(int s, std::int64_t i1, std::int64_t i2, std::int64_t i3);
  void PushQuadVIndex(int s, std::int64_t i1, std::int64_t i2, std::int64_t i3, std::int64_t i4);
  // Kept broken on purpose: they hand several positions to a one-position removal and
  // always fail with a TypeError (KeyError first for an unknown submesh).
  void DropLineVIndex(int s, std::int64_t i1, std::int64_t i2);
  void DropTriangleVIndex(int s, std::int64_t i1, std::int64_t i2, std::int64_t i3);
  void DropQuadVIndex(int s, std::int64_t i1, std::int64_t i2, std::int64_t i3, std::int64_t i4);
  void CleanVIndex(int s);

  void SetSubMeshColor(int s, double r, double g, double b, double a = 1.0);
  void SetMeshColor(double r, double g, double b, double a = 1.0);
  std::array<double, 4> GetSubMeshColor(int s = 0) const;
  void SetSubMeshSpecularColor(int s, double r, double g, double b, double power = 1.0);
  void SetMeshSpecularColor(double r, double g, double b, double power = 10.0);
  std::array<double, 4> GetSubMeshSpecularColor(int s = 0) const;
  void SetSubMeshAlphaMode(int s, int alphaMode = glc::BLEND);
  void SetSubMeshShapeType(int s, int shapeType, int cullMode = glc::NONE);
  void SetShapeType(int shapeType, int cullMode = glc::NONE);
  void SetSubMeshWireFrameMode(int s, bool IsWireFrame = true);
  void SetWireFrameMode(bool IsWireFrame = true);
  bool IsWireFrameMode() const;
  virtual void GenTexCoords(int /*submeshIndex*/) {}

  // ---- Buffers (node_buffers.cpp) ----
  void GenTangentAndBitangent(int submeshIndex);
  void BuildSubMeshVBO(int submeshIndex);
  void BuildVBO();
  // The node's name for vorn::SortVertex4BoneInfo (node/vertex_bone_sort.h).
  using BoneInfo = vorn::BoneInfo;
  static std::pair<std::array<std::int64_t, 4>, std::array<double, 4>> SortVertex4BoneInfo(
      std::span<const BoneInfo> BoneInfoArray) {
    return vorn::SortVertex4BoneInfo(BoneInfoArray);
  }
  // The interleaved floats BuildSubMeshVBO would upload for a submesh (empty when it
  // has no vertex data); throws as BuildSubMeshVBO does on missing attributes.
  std::vector<float> InterleaveSubMesh(int submeshIndex) const;

  // ---- Effects and drawing (node_fx_gl.cpp, node_draw_gl.cpp, node_draw_uniforms_gl.cpp) ----
  // Every submesh gets the program of VN_FXID; the former one is kept as one level of
  // undo for RecoverFX. A program the driver refuses is not stored.
  virtual void ApplyFX(int VN_FXID, bool IncludeChildren = false);
  void ApplySubMeshFX(int submeshIndex, int VN_FXID);
  void RecoverFX(bool IncludeChildren = false);
  // While one exists, ApplySubMeshFX does not print the program listing. A camera's
  // forced FX pass applies and restores the FX of every node it renders, each frame;
  // the listing is for a script's own ApplyFX.
  class QuietFXListing {
   public:
    QuietFXListing() noexcept { ++depth; }
    ~QuietFXListing() { --depth; }
    QuietFXListing(const QuietFXListing&) = delete;
    QuietFXListing& operator=(const QuietFXListing&) = delete;
    static bool active() noexcept { return depth > 0; }

   private:
    static inline int depth = 0;
  };
  std::optional<unsigned> GetShader() const noexcept { return CurrSubMeshFX; }
  // Draws into the frame buffer of a render-target texture from now on.
  void SetRenderTargetTexture(unsigned texID, bool isPostFXMode = true);
  // The node and its subtree; a hidden node draws nothing and counts no batch.
  virtual void draw(double rx = 0, double ry = 0, double rz = 0);
  void draw_begin(double rx = 0, double ry = 0, double rz = 0);
  void draw_end();
  // Program switch and the per-program uniforms; skipped while the program stays.
  virtual void draw_begin_shader(int submeshIndex);
  virtual void draw_allsubmesh();
  void draw_submesh(int submeshIndex);
  virtual void prepare_uniform_for_shader(int /*submeshIndex*/) {}
  void draw_children();
  virtual void draw_skeleton() {}
  // ---- Picking and debug drawing (node_picking.cpp, node_debug_draw_gl.cpp) ----
  // The world-space line Pt + t * Dir (any t) against the triangles of every submesh
  // that has positions and indices, three indices a triangle, corners carried by
  // WorldMatrix. The first hit in submesh and index order wins, not the nearest;
  // nothing on a miss. Length is accepted for the pick interface and not used.
  // IndexError for an index outside the positions (negative ones wrap).
  virtual std::optional<PickDetail> checkPick(const Vector3& Pt, const Vector3& Dir, double Length = 99999.0);
  // (boxMin, boxMax); with LocalMode false both corners go through WorldMatrix (the
  // pair of moved corners, not the box around the moved box).
  std::pair<Vector3, Vector3> GetBoundingBox(bool LocalMode = true) const;
  // The pick event, run inside draw: with a pick requested this frame, a hit of the
  // scene's pick ray selects this node, calls PickDownFunction(self, detail) when
  // enabled and, with PickTriangleVisible, marks the triangle on the scene's draw node.
  virtual void draw_picktriangle();
  // The box from boxMin to boxMax as corner brackets, in the transform in force.
  void draw_boundingbox();
  // Unit lines along the node's own x (red), y (green) and z (blue) axes.
  virtual void draw_axis(double rx = 0, double ry = 0, double rz = 0);
  // Reach of a point light; the light class answers its range, other nodes 0.0.
  virtual double GetLightRange() const { return 0.0; }
  // Ground height at world (x, z) when this node is ground that covers the point (a
  // plane, terrain or tile map answers); nothing otherwise. The scene's height query
  // asks the nodes of its terrain registry in turn.
  virtual std::optional<double> GroundHeightAt(double /*x*/, double /*z*/) { return std::nullopt; }
  // Marks of a pick on the scene's draw node: a picked triangle and a picked tile's
  // outline (four corners in drawing order). Only the draw node draws them.
  virtual void MarkPickedTriangle(const std::array<Vector3, 3>& /*corners*/) {}
  virtual void MarkPickedQuad(const std::array<Vector3, 4>& /*corners*/) {}
  // What a shadow-casting camera hands to the programs of the nodes that name it as
  // their ShadowMapCamera; nothing from nodes that are not cameras.
  virtual std::optional<ShadowMapInfo> GetShadowMapInfo() const { return std::nullopt; }

  // ---- Textures (node_textures.cpp, node_textures_gl.cpp) ----
  // A file for a texture: fileName as given, else the first of its matches in the
  // resource index, else the same name beside MeshFile; nothing when all fail.
  std::optional<std::string> FindTextureFile(const std::string& fileName) const;
  // Finds and reads fileName and appends it on `channel`; "Can't find texture:" when absent.
  void LoadSubMeshTextureFromFile(int submeshIndex, int channel, const std::string& fileName, bool mipMap = true,
                                  double density = 1.0);
  // The six faces of cubeTextureDir (below the resource root) as one cube map on channel 0.
  bool LoadSubMeshCubeMapTextureFromFile(int submeshIndex, const std::string& cubeTextureDir);
  // A normal map from the channel 0 picture on `channel`, tangents and the bump FX.
  void MakeSubMeshBump(int submeshIndex = 0, int channel = 1);
  // One picture, as "RGBA" on channel 0, replacing the textures of every submesh.
  virtual void LoadTextureFromFile(const std::string& fileName);
  void LoadSubMeshTextureFromImage(int submeshIndex, int channel, TexturePixels imgData, const std::string& Format,
                                   int width, int height, bool mipMap = true, double density = 1.0);
  void SetDynamicTextureID(unsigned texID, int channel = 0);
  // Appends an existing GL texture known to the resource manager; nothing for an unknown id.
  void SetSubMeshDynamicTextureID(int submeshIndex, unsigned texID, int channel = 0);
  void SetSubMeshTextureDensity(int submeshIndex, int channel, double density);
  std::optional<TextureInfo> GetSubMeshTextureInfo(int submeshIndex, int channel) const;

  // ---- 2D shapes in screen pixels (node_2d_shapes.cpp) ----
  int Create2DShape(const std::string& submeshName, int shapeType = glc::QUADS);
  void Draw2DRect(double left, double top, double width, double height, double r = 1.0, double g = 1.0,
                  double b = 1.0);
  void Draw2DImage(double left, double top, double width, double height,
                   const std::optional<std::string>& textureFile = std::nullopt);

  // ---- Bindings and script hooks (node_bindings.cpp) ----
  void SetBindingVar(const std::string& varname, ScriptValue varvalue);
  // None and the line "No Find Variable" for an unknown name.
  ScriptValue GetBindingVar(const std::string& varname) const;
  void DelBindingVar(const std::string& varname);
  void CleanUpBindingVar() { BindingVarArray.clear(); }
  void SetBindingEvent(const std::string& eventName, ScriptValue functionName, ScriptValue functionCode = {});
  std::optional<EventEntry> GetBindingEvent(const std::string& eventName) const;
  void DelBindingEvent(const std::string& eventName);
  void CleanUpBindingEvent() { BindingEventArray.clear(); }
  void SetInnerBindingEvent(const std::string& eventName, ScriptValue functionName, ScriptValue functionCode = {});
  std::optional<EventEntry> GetInnerBindingEvent(const std::string& eventName) const;
  void DelInnerBindingEvent(const std::string& eventName);
  void CleanUpInnerBindingEvent() { InnerBindingEventArray.clear(); }
  void SetBindingPoint(const std::string& pointName, ScriptValue posType, ScriptValue x, ScriptValue y);
  std::optional<BindingPoint> GetBindingPoint(const std::string& pointName) const;
  void DelBindingPoint(const std::string& pointName);
  void CleanUpBindingPoint() { BindingPointArray.clear(); }
  // Calls the event's function with the parameters (one map). A missing function is
  // looked up as the node's operation "on_<eventName>" and bound into the entry.
  void CallEvent(const std::string& eventName, const ScriptValue& params);
  void CallInnerEvent(const std::string& eventName, const ScriptValue& params);
  void SetPickDownFunction(PickCallback function) { PickDownFunction = std::move(function); }
  void EnablePickDownEvent(bool enable) noexcept { Enable_PickDown = enable; }
  void SetPickUpFunction(PickCallback function) { PickUpFunction = std::move(function); }
  void EnablePickUpEvent(bool enable) noexcept { Enable_PickUp = enable; }
  void SetUpdateFunction(UpdateCallback function) { UpdateFunction = std::move(function); }

  // ---- Hooks for script subclasses (the Python binding overrides these) ----
  // The operation `name` of this node as a script callable, or None.
  virtual ScriptValue FindEventOperation(const std::string& name);

  // ---- What the script's cycle collector sees (core/script_owned.h) ----
  long holder_count() const noexcept override { return weak_from_this().use_count(); }
  // The stored script values, the children and the owned cameras; subclasses that own
  // more add theirs and call this.
  int visit_script_refs(ScriptRefVisit visit, void* context) const override;
  void clear_script_refs() override;

  // ---- Fields ----
  // What the per-frame update reads comes first and together, a few cache lines from
  // the start of the object. `parent` is written only by the constructor and
  // SetParent, which keep parentNode_ beside it.
  std::weak_ptr<Vorn_3DGameNode> parent;
  NodeList children;
  double x = 0, y = 0, z = 0;
  double sx = 1.0, sy = 1.0, sz = 1.0;
  double rx = 0.0, ry = 0.0, rz = 0.0;
  double rx_speed = 0, ry_speed = 0, rz_speed = 0;
  std::weak_ptr<Vorn_3DGameNode> followTarget;
  std::shared_ptr<vorn::ActionPlayer> ActionPlayer;
  UpdateCallback UpdateFunction;
  // Which of x, y, z hold whole numbers a script gave as integers (bit 0 x, 1 y, 2 z),
  // so that scripts read them back as integers. Engine-side writes clear the bits.
  std::uint8_t xyzIntMask = 7;
  bool is2DMode = false;
  bool visible = true;

 private:
  // The inputs of the last matrix computation (node_transform.cpp): position, scale and
  // rotation as stored, the parent and the version of its WorldMatrix then.
  struct MatrixInputs {
    double x, y, z, sx, sy, sz, rx, ry, rz;
  };
  MatrixInputs matrixInputs_{};
  const Vorn_3DGameNode* matrixParent_ = nullptr;
  std::uint64_t matrixParentVersion_ = 0;
  // Bumped (from one counter for all nodes) whenever WorldMatrix is computed; 0 before.
  std::uint64_t matrixVersion_ = 0;
  // The node `parent` points to while it lives (compared and read only while
  // `parent` has not expired).
  const Vorn_3DGameNode* parentNode_ = nullptr;

 public:
  std::string NodeType = "3DGameNode";
  int NodeIndex = -1;
  std::optional<std::string> TagName;
  std::weak_ptr<NodeScene> sceneInstance;
  int instanceID = -1;
  FbxAMatrix WorldMatrix;
  FbxAMatrix AxisMatrix;
  OrderedMap<std::string, ScriptValue> BindingVarArray;
  OrderedMap<std::string, EventEntry> BindingEventArray;
  OrderedMap<std::string, BindingPoint> BindingPointArray;
  OrderedMap<std::string, EventEntry> InnerBindingEventArray;
  PickCallback PickDownFunction;
  bool Enable_PickDown = true;
  PickCallback PickUpFunction;
  bool Enable_PickUp = true;
  std::vector<std::string> SubMeshList;
  SubMeshMap<FloatArray> VertexArray_Custom;
  SubMeshMap<Vec3Array> VertexArray_Positon;
  SubMeshMap<Vec3Array> VertexArray_Normal;
  SubMeshMap<Vec3Array> VertexArray_Tangent;
  SubMeshMap<Vec3Array> VertexArray_Bitangent;
  SubMeshMap<Vec2Array> VertexArray_UV;
  SubMeshMap<Vec2Array> VertexArray_BoneIndics;
  SubMeshMap<Vec4Array> VertexArray_BoneWeight;
  SubMeshMap<int> VertexDescArray;
  SubMeshMap<IndexArray> VIndexArray;
  SubMeshMap<std::vector<TextureInfo>> TextureArray;
  SubMeshMap<std::shared_ptr<BufferObject>> VVBOArray;
  SubMeshMap<std::shared_ptr<BufferObject>> IVBOArray;
  std::optional<unsigned> TargetFrameBuffer;
  bool TargetFrameBuffer_IsPostFXMode = false;
  int TargetFrameWidth = 0;
  int TargetFrameHeight = 0;
  bool withNormal = true;
  bool withTexUV = false;
  bool withSkin = false;
  SubMeshMap<int> SubMeshShapeType;
  SubMeshMap<std::int64_t> SubMeshShapeCount;
  SubMeshMap<int> SubMeshCullMode;
  SubMeshMap<int> SubMeshAlphaMode;
  SubMeshMap<bool> SubMeshWireFrame;
  SubMeshMap<std::array<double, 4>> SubMeshColor;
  SubMeshMap<std::array<double, 4>> SubMeshSpecularColor;
  SubMeshMap<unsigned> SubMeshFX;
  SubMeshMap<unsigned> SubMeshFX_BackUp;
  std::optional<unsigned> CurrSubMeshFX;
  std::string MeshFile;
  bool clicked = false;
  Vector3 boxMin;
  Vector3 boxMax;
  bool boxVisible = false;
  bool axisVisible = false;
  bool focusIn = false;
  ScriptValue userData;
  bool standOnGround = false;
  NodeRef FollowCamera;
  NodeRef ShadowMapCamera;
  bool PickTriangleVisible = false;

 private:
  // Advances ActionPlayer by one frame (node_actions.cpp).
  void UpdateActionPlayer(double delay);
  void CallEventIn(OrderedMap<std::string, EventEntry>& table, const std::string& eventName,
                   const ScriptValue& params, const char* missing);
};

inline void Vorn_3DGameNode::PrefetchSubMeshEntries(int s) const noexcept {
  PrefetchSubMeshEntry(TextureArray, s);
  PrefetchSubMeshEntry(VertexDescArray, s);
  PrefetchSubMeshEntry(VVBOArray, s);
  PrefetchSubMeshEntry(IVBOArray, s);
  PrefetchSubMeshEntry(SubMeshShapeType, s);
  PrefetchSubMeshEntry(SubMeshShapeCount, s);
  PrefetchSubMeshEntry(SubMeshCullMode, s);
  PrefetchSubMeshEntry(SubMeshAlphaMode, s);
  PrefetchSubMeshEntry(SubMeshWireFrame, s);
  PrefetchSubMeshEntry(SubMeshColor, s);
  PrefetchSubMeshEntry(SubMeshSpecularColor, s);
  PrefetchSubMeshEntry(SubMeshFX, s);
}

// Constructs a node (or subclass) and completes its construction.
template <class T, class... Args>
std::shared_ptr<T> MakeNode(Args&&... args) {
  auto node = std::make_shared<T>(std::forward<Args>(args)...);
  node->FinishConstruction();
  return node;
}

}  // namespace vorn
