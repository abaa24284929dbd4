#pragma once
// Vorn_3DMesh: the node of everything loaded from a model file. It adds the loaders and
// skeletal actions: a named table of animations, one of which plays at a time on one
// clock per mesh. Implemented over:
//   mesh.cpp          actions, the clock, the loaders' dispatch
//   mesh_gl.cpp       bone upload and the debug skeleton
//   glb_load.cpp      the GLB loader (glb_reader.cpp, glb_file.cpp below it)
//   fbx_load.cpp      FBX and every other format of the model importer (model_import.cpp)
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/ordered_map.h"
#include "mesh/mesh_action.h"
#include "node/game_node.h"

namespace vorn {

class Vorn_SkinSubMeshAniData;

class Vorn_3DMesh : public Vorn_3DGameNode {
 public:
  explicit Vorn_3DMesh(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);
  ~Vorn_3DMesh() override;

  // ---- Loaders ----
  // Reads a binary glTF file: one submesh per primitive, its material image, and for a
  // skinned file the skin objects, the bind skeleton and one action per animation.
  // swapyz is accepted and not used.
  void LoadMeshFromFile_GLB(const std::string& glbFile, bool swapyz = false);
  // Reads an OBJ file and the MTL file beside it: one submesh per material.
  void LoadMeshFromFile_OBJ(const std::string& objFile, bool swapyz = false);
  // Reads an FBX file: one submesh per mesh node ("submesh_<node index>", triangles
  // only), its textures, a skin object per skinned submesh, one action per animation
  // stack and the FirstAnimation_* times. swapyz swaps y and z of positions and normals.
  void LoadMeshFromFile_FBX(const std::string& fbxFile, bool swapyz = false);
  // Any format the model importer reads (glTF with all its primitives and materials,
  // Collada, 3DS, PLY, STL, FBX, ...): one submesh per mesh of the file, polygons
  // triangulated, skins and actions as for FBX. IsFBX stays as it is.
  void LoadMeshFromFile_Model(const std::string& modelFile, bool swapyz = false);

  // ---- Actions ----
  // Accepts the name and does nothing: actions come from files only.
  void AddAction(const std::string& /*actionName*/) {}
  int GetActionCount() const noexcept { return static_cast<int>(ActionDict.size()); }
  // The name of the action at that position of ActionDict; nothing outside [0, count).
  std::optional<std::string> GetActionName(int actionIndex) const;
  // Prepares the action's keyframes and starts the clock, looping. An unknown index is
  // ignored (a running action goes on).
  void PlayAction(int actionIndex);
  void SetActionSpeed(double speed) noexcept { CurrAnimation_Speed = speed; }
  void SetSkeletonVisible(bool isVisible) noexcept { SkeletonVisible = isVisible; }

  // ---- Frame hooks ----
  // Advances the clock by delay times the speed; past the end it restarts exactly at
  // the beginning (or stays at the end without looping).
  void update_skin_animation(double delay) override;
  // Uploads the bone matrices of the submesh being drawn to "uBoneMatrixs".
  void prepare_uniform_for_shader(int submeshIndex) override;
  // Bone segments of every skinned submesh, green to red, when SkeletonVisible.
  void draw_skeleton() override;

  // ---- Fields, in the order the constructor sets them ----
  bool IsFBX = false;
  OrderedMap<std::string, MeshAction> ActionDict;
  std::vector<ScriptValue> CurrAction;
  OrderedMap<int, std::shared_ptr<Vorn_SkinSubMeshAniData>> SubMesh_Dict;
  std::string CurrActionName;
  std::optional<double> CurrAnimation_Duration;
  std::optional<double> CurrAnimation_BeginTime;
  std::optional<double> CurrAnimation_EndTime;
  std::optional<double> CurrAnimation_CurrTime;
  double CurrAnimation_Speed = 1.0;
  bool Playing = false;
  // Not set before the first PlayAction.
  std::optional<bool> Looping;
  bool SkeletonVisible = false;
  // The first animation of a file read by LoadMeshFromFile_FBX or _Model, in seconds
  // (TimeSpan: begin and end; FrameCount: frames at the file's frame rate; SecondCount:
  // whole seconds; FrameDelayTime: one frame). None for a file without animation.
  std::optional<std::pair<double, double>> FirstAnimation_TimeSpan;
  std::optional<double> FirstAnimation_Duration;
  std::optional<std::int64_t> FirstAnimation_FrameCount;
  std::optional<std::int64_t> FirstAnimation_SecondCount;
  std::optional<double> FirstAnimation_BeginTime;
  std::optional<double> FirstAnimation_EndTime;
  std::optional<double> FrameDelayTime;

 private:
  // PlayAction for meshes whose skins evaluate the channels themselves (FBX and the
  // other importer formats); false when the mesh has no such skin.
  bool PlayImportedAction(const MeshAction& action);
};

}  // namespace vorn
