#pragma once
// Vorn_3Dcene: the one scene. It owns every registry of things in the world, the
// active camera and the global render values that nodes read while drawing, and it
// runs the frame (DrawScene).
#include <array>
#include <chrono>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/ordered_map.h"
#include "core/owned_list.h"
#include "core/script_owned.h"
#include "core/script_value.h"
#include "node/node_list.h"
#include "node/node_scene.h"
#include "overlay/text.h"

namespace vorn {

class Vorn_3DGameNode;
class Vorn_3DAxis;
class Vorn_3DDrawNode;
class Vorn_3DCamera;

using TextList = OwnedList<Vorn_Text>;

class Vorn_3Dcene : public NodeScene, public ScriptOwned, public std::enable_shared_from_this<Vorn_3Dcene> {
 public:
  // Builds the built-in gizmo, draw node, camera and the two overlays; they are bound
  // to the scene by InitGL. Needs the window (GL context), the resource manager and
  // the shader manager. Scenes live in shared pointers: use Create().
  static std::shared_ptr<Vorn_3Dcene> Create();
  ~Vorn_3Dcene() override;
  Vorn_3Dcene(const Vorn_3Dcene&) = delete;
  Vorn_3Dcene& operator=(const Vorn_3Dcene&) = delete;

  // ---- Lifecycle (scene_gl.cpp) ----
  // OpenGL state the engine relies on, the camera range, the screen size, and OnLoad
  // of the built-in nodes. ZeroDivisionError for a height of 0.
  void InitGL(int screenWidth, int screenHeight, double viewNear = 0.1, double viewFar = 1000.0);
  // The whole frame (scene_frame_gl.cpp).
  void DrawScene();

  // ---- Accessors ----
  // ValueError once GAMENODE_ID (a field scripts may write) is at the largest int.
  int GenNewGameNodeID() override;
  // Height of the first plane of ObjectArray_3DTerrain that covers (x, z) (its
  // CheckInHeight); 0.0 where none does. Entries that are not planes are passed over.
  double Get3DTerrainY(double x, double z) override;
  NodePtr GetActiveCamera() const override { return ActiveCamera; }
  void SetActiveCamera(NodePtr activeCamera) override { ActiveCamera = std::move(activeCamera); }
  std::optional<std::array<double, 16>> GetActiveViewMatrix() const override;
  std::optional<std::array<double, 16>> GetActiveProjMatrix() const override;
  std::pair<int, int> GetScreenSize() const { return {ScreenWidth, ScreenHeight}; }
  void SetMouseXY(int px, int py, bool checkPick = true) {
    MouseX = px;
    MouseY = py;
    checkPickOnce = checkPick;
  }
  bool isCheckPickOnce() const override { return checkPickOnce; }
  void Rotate_H(double RH) { Scene_RotateH += RH; }
  void Rotate_V(double RV) { Scene_RotateV += RV; }
  FbxAMatrix GetWorldRotateMatrix() const override;
  // Statistics stop at the largest int instead of wrapping.
  void AddBatchCount() override {
    if (BatchCount < std::numeric_limits<int>::max()) ++BatchCount;
  }
  void SetBGColor(double r, double g, double b) { BGColor = {r, g, b}; }
  double GetCurrTime() const override { return uCurrTime; }
  // Frame clock for reproducible runs: with a step above 0 every DrawScene advances the
  // time by exactly that many seconds instead of reading the wall clock; 0 returns to the
  // wall clock. Either way the time goes on from the last frame's. ValueError for a
  // negative or non-finite step.
  void SetFixedTimeStep(double seconds);
  double GetFixedTimeStep() const { return fixedTimeStep_; }
  void SetAmbientColor(double r, double g, double b) { AmbientColor = {r, g, b}; }
  std::array<double, 3> GetAmbientColor() const override { return AmbientColor; }
  void SetDepthBlurLerpValue(double value) { DepthBlurLerpValue = value; }
  double GetDepthBlurLerpValue() const override { return DepthBlurLerpValue; }
  void SetSunLight(double x, double y, double z, double r, double g, double b) {
    SunLightDir = {x, y, z};
    SunLightColor = {r, g, b};
  }
  std::array<double, 3> GetSunLightDir() const override { return SunLightDir; }
  std::array<double, 3> GetSunLightColor() const override { return SunLightColor; }
  void SetSceneFog(double start = 30.0, double end = 100.0, double r = 0.5, double g = 0.5, double b = 0.7) {
    SceneFog = {start, end, r, g, b};
  }
  void SetSceneFogStart(double start = 10.0);
  void SetSceneFogEnd(double end = 100.0);
  void SetSceneFogColor(double r = 0.5, double g = 0.5, double b = 0.7);
  std::array<double, 5> GetSceneFog() const override;
  void EnableFog() override { EnableSceneFog = true; }
  void DisableFog() override { EnableSceneFog = false; }
  bool IsDeferLightMode() const override { return DeferLightMode; }
  int GetSSAOKernelCount() const override { return 64; }
  double GetSSAOKernelRadius() const override { return SSAOKernelRadius; }
  const std::vector<double>& GetSSAOKernelList() const override { return SSAOKernelList; }
  NodePtr GetCurrSkyObject() const { return currSkyObject; }

  // ---- What the script's cycle collector sees (core/script_owned.h) ----
  long holder_count() const noexcept override { return weak_from_this().use_count(); }
  int visit_script_refs(ScriptRefVisit visit, void* context) const override;
  void clear_script_refs() override;
  NodePtr GetCurrDrawNode() const override;
  void SetBackgroundMP3(std::optional<std::string> mp3File) { BackgroundMP3File = std::move(mp3File); }
  const std::optional<std::string>& GetBackgroundMP3() const { return BackgroundMP3File; }

  // ---- Factories and lookups (scene_factories.cpp) ----
  NodePtr Create3DGameNode(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr);
  std::shared_ptr<Vorn_Text> Create2DText(double x, double y, const std::string& text, double r = 1.0,
                                          double g = 1.0, double b = 1.0, int font = Vorn_Text::FT_8_BY_13);
  NodePtr CreateCamera(double x = 0.0, double y = 0.0, double z = 0.0);
  // A camera as CreateCamera makes it, with a depth target of the window's size
  // (scene_factories_cameras.cpp).
  // The sky box (a 200-unit box with FX_SKYBOX and the cube map of cubeTextureDir) made
  // once and shown; the sky sphere is hidden. The sky lives outside the registries.
  NodePtr LoadSkyBox(const std::string& cubeTextureDir);
  // The mirror of LoadSkyBox: a 200-unit sphere with FX_SKYSPHERE and one picture.
  NodePtr LoadSkySphere(const std::string& sphereTextureFile);
  NodePtr CreateShadowMapCamera(double x = 0.0, double y = 0.0, double z = 0.0);
  // Screen rectangles and images in pixels from the top left (scene_factories_2d.cpp).
  NodePtr Create2DRect(double left, double top, double width, double height, double r = 1.0, double g = 1.0,
                       double b = 1.0);
  NodePtr Create2DImage(double left, double top, double width, double height,
                        const std::optional<std::string>& imageFile = std::nullopt);
  NodePtr CreateDrawNode();
  NodePtr CreatePointLight(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr,
                           double range = 5.0, double r = 1.0, double g = 1.0, double b = 1.0);
  // A Vorn_3DMesh loaded from meshFile by its kind (scene_factories_mesh.cpp).
  NodePtr CreateMeshFromFile(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr,
                             const std::string& meshFile = "", bool swapyz = false);
  // Our addition: a Vorn_3DMesh read from any format of the model importer
  // (Vorn_3DMesh::LoadMeshFromFile_Model).
  NodePtr CreateMeshFromModelFile(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr,
                                  const std::string& modelFile = "", bool swapyz = false);
  NodePtr CreatePlane(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr, int rows = 20,
                      int cows = 20, double tilesize = 1.0);
  // Landscape factories: the FX is applied before OnLoad; they join ObjectArray_3DTerrain.
  // A Vorn_3DTiledMap with FX_TILEDMAP (scene_factories_tiledmap.cpp).
  NodePtr CreateTiledMap(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr,
                         int rows = 20, int cows = 20, double tilesize = 1.0);
  NodePtr CreateBox(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr,
                    double size_x = 0.5, double size_y = 0.5, double size_z = 0.5);
  NodePtr CreateSphere(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr,
                       double radius = 0.5, int statckx = 30, int statcky = 30);
  NodePtr CreateCircle(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr,
                       double radius = 0.5, int statckZ = 30);
  NodePtr CreateConus(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr,
                      double radius = 0.5, double height = 1.0, int statckZ = 30);
  NodePtr CreateCylinder(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr,
                         double radius = 0.5, double height = 1.0, int statckZ = 30);
  NodePtr CreateTorus(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr,
                      double radius_in = 0.5, double radius_out = 1.0, double height = 1.0, int statckR = 30,
                      int statckZ = 10);
  NodePtr CreateTube(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr,
                     double radius_in = 0.5, double radius_out = 1.0, double height = 1.0, int statckR = 30);
  NodePtr CreateCapsule(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr,
                        double radius = 0.5, double height = 1.0, int statckR = 30);
  // A Vorn_3DTerrain of 128 by 128 tiles with FX_TERRAIN (scene_factories_terrain.cpp).
  NodePtr CreateTerrain(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr);
  // Loads terrainDir + ".hei" and terrainDir + ".ter" into the first entry of
  // ObjectArray_3DTerrain (made by CreateTerrain when the registry is empty).
  NodePtr LoadTerrain(const std::string& terrainDir);
  // Water and grass (scene_factories_water_grass.cpp).
  // A Vorn_3DOcean of 128 by 128 tiles with FX_OCEAN. A root ocean joins
  // ObjectArray_3DTerrain (so it also answers Get3DTerrainY), not ObjectArray_3DOcean.
  NodePtr CreateOcean(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr);
  // Element 0 of ObjectArray_3DOcean, or CreateOcean(0, 0, 0) while that registry is
  // empty. CreateOcean never fills it, so each call makes one more ocean unless a script
  // put one there. oceanDir is not used.
  NodePtr LoadOcean(const std::string& oceanDir);
  // A Vorn_3DGrass patch with FX_GRASS; a root patch joins ObjectArray_3D.
  NodePtr CreateGrass(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr,
                      double radius = 0.5, double density = 50, double minW = 0.3, double maxW = 0.6,
                      double minH = 0.3, double maxH = 0.6, double subsectionH = 0.2);
  // Particles (scene_factories_particles.cpp): a Vorn_3DParticleEmitter with its
  // CreateParticleEmitter() defaults (200 particles, "Gravity") and no FX; a root
  // emitter joins ObjectArray_3D.
  NodePtr CreateParticleEmitter(double x = 0.0, double y = 0.0, double z = 0.0, const NodePtr& parent = nullptr);
  const NodeList& GetPointLightList() const override { return LightList; }
  const NodeList& Get2DObjectArray() const { return ObjectArray_2D; }
  const NodeList& Get3DObjectArray() const override { return ObjectArray_3D; }
  const NodeList& Get3DTerrainArray() const { return ObjectArray_3DTerrain; }
  NodePtr QueyPointLightByTag(const std::string& tagName) const;
  NodePtr Quey2DObjectByTag(const std::string& tagName) const;
  NodePtr Quey3DObjectByTag(const std::string& tagName) const;
  NodePtr Quey3DTerrainByTag(const std::string& tagName) const;

  // ---- Picking and the gizmo (scene_picking.cpp) ----
  // The gizmo type a picked node gets: "t", the type that picks and drags.
  static constexpr const char* DefaultAxisType = "t";
  // Binds the gizmo to a node (nullptr unbinds) and sets its type.
  void Select3DObject(const NodePtr& object3D) override { Select3DObject(object3D, DefaultAxisType); }
  void Select3DObject(const NodePtr& object3D, std::optional<std::string> axisType);
  // Select3DObject of the first 3D object with the tag; an unknown tag unbinds.
  void Select3DObjectByTag(const std::string& tagName, std::optional<std::string> axisType = DefaultAxisType);
  // The ray under a window point through the active camera, world rotation undone.
  // AttributeError without an active camera (as for the two operations below).
  std::pair<Vector3, Vector3> ScreenPtTo3DPointAndDir(double px, double py);
  // The ray of the stored mouse position with the matrices in force; inside a node's
  // draw that is the unrotated world.
  std::pair<Vector3, Vector3> GetScree3DPointAndDir() override;
  // Tests the gizmo against the ray of (px, py) (Immediate) or of the stored position,
  // which sets its PickedAxis. The answer is always false: the gizmo's pick result is
  // a pair, never equal to true, and scripts rely on that.
  bool CheckPickAxis(double px, double py, bool Immediate);
  // Hands mouse offsets to the gizmo; true when it takes the drag.
  bool BeginDragAxis(double offsetX, double offsetY);
  void EndDragAxis();

  // ---- Full-screen modes (scene_fullscreen*.cpp) ----
  // A preview camera is kept under the object FX it renders with; the key none stands
  // for the plain picture. Insertion order is the order of the preview's FX list.
  using PreviewCameraMap = OrderedMap<std::optional<int>, NodeRef>;
  // Two eye cameras below the active camera, each rendering into a target that a half
  // of the window shows through its eye's FX, and the logo when its file exists. The
  // images go to the scene bound as openGLScene. dOcean is accepted and not used.
  void OpenVRMode(const std::string& dOcean = "cardboard", double Fov = 45.0, double ZNear = 0.1,
                  double ZFar = 500.0);
  // The logo file of VR mode, relative to the working directory.
  static const char* VRLogoFile();
  // Preview tiles of the position, normal and diffuse targets and the plain picture,
  // and the lit result of FX_DEFER_LIGHT; deferred lighting is on from here.
  void OpenDeferLight();
  // Preview tiles of the position, depth, view normal and diffuse targets and the plain
  // picture, a fresh kernel, and the occlusion result of FX_SSAO.
  void OpenSSAO();
  // The quad that post passes draw, in clip space.
  void RenderPostFXRect() override;
  // 64 samples in the hemisphere around +z, flattened (192 floats), drawn from the
  // engine's random generator and scaled so that they cluster towards the origin.
  static std::vector<double> BuildSSAOKernel();

  // ---- Fields, in the order the constructor sets them ----
  NodeList DrawNodeArray_3D;
  NodeList ObjectArray_3D;
  NodeList ObjectArray_3DTerrain;
  NodeList ObjectArray_3DOcean;
  NodeList ObjectArray_2D;
  TextList TextArray;
  NodeList LightList;
  NodeList CameraList;
  Ref<Vorn_3DAxis> CurrObjectAxis;
  Ref<Vorn_3DDrawNode> CurrDrawNode;
  int GAMENODE_ID = 0;
  int ScreenWidth = 0;
  int ScreenHeight = 0;
  NodeRef sceneSkyBox;
  NodeRef sceneSkyShpere;
  NodeRef currSkyObject;
  double Scene_RotateH = 0.0;
  double Scene_RotateV = 0.0;
  NodeRef ActiveCamera;
  NodeRef VRLeftCamera;
  NodeRef VRLeftEyeImage;
  NodeRef VRRightCamera;
  NodeRef VRRightEyeImage;
  NodeRef VRLogoImage;
  PreviewCameraMap DeferLightCamera;
  bool DeferLightMode = false;
  PreviewCameraMap SSAOCamera;
  std::vector<double> SSAOKernelList;
  double SSAOKernelRadius = 1.0;
  double UpdateLastTime = 0.0;
  double CurrTime = 0.0;
  int FPSCount = 0;
  double FPSTimer = 0.0;
  int BatchCount = 0;
  double BeginTime = 0.0;
  std::array<double, 3> BGColor{0.0, 0.0, 0.0};
  std::array<double, 3> AmbientColor{1.0, 0.5, 0.0};
  double DepthBlurLerpValue = 0.0;
  std::array<double, 3> SunLightDir{-1.0, -1.0, -1.0};
  std::array<double, 3> SunLightColor{1.0, 1.0, 1.0};
  std::vector<double> SceneFog{10.0, 100.0, 0.5, 0.5, 1.0};
  bool EnableSceneFog = true;
  std::vector<double> PointLightArray_ZYZRange;
  std::vector<double> PointLightArray_Color;
  Ref<Vorn_Text> FPSText;
  Ref<Vorn_Text> BatchText;
  int MouseX = 0;
  int MouseY = 0;
  bool checkPickOnce = false;
  std::optional<std::string> BackgroundMP3File;
  std::vector<ScriptValue> LoadFunctionLine;
  OrderedMap<std::string, ScriptValue> UserFunctionDict;
  // Seconds since BeginTime at the last frame; 0 until the first frame.
  double uCurrTime = 0.0;

 protected:
  Vorn_3Dcene();

 private:
  // The time of the frame being started: seconds since construction on a clock that never
  // jumps, or the last frame's time plus the fixed step.
  double ElapsedSeconds();
  void UpdatePhase(double delay);
  void MainPass(bool vrMode);
  bool IsVRMode() const;

  std::chrono::steady_clock::time_point begin_;
  double fixedTimeStep_ = 0.0;
  // Time of the last fixed-step frame.
  double fixedTime_ = 0.0;
};

}  // namespace vorn
