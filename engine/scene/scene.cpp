#include "scene/scene.h"

#include <cmath>
#include <limits>

#include "camera/camera.h"
#include "core/errors.h"
#include "node/game_node.h"
#include "overlay/axis.h"
#include "shapes/draw_node.h"

namespace vorn {
namespace {

std::shared_ptr<Vorn_3DCamera> as_camera(const NodeScene::NodePtr& node) {
  return std::dynamic_pointer_cast<Vorn_3DCamera>(node);
}

NodeScene::NodePtr find_by_tag(const NodeList& list, const std::string& tagName) {
  for (const auto& node : list) {
    if (node && node->GetTag() == tagName) return node;
  }
  return nullptr;
}

}  // namespace

std::shared_ptr<Vorn_3Dcene> Vorn_3Dcene::Create() { return std::shared_ptr<Vorn_3Dcene>(new Vorn_3Dcene()); }

Vorn_3Dcene::Vorn_3Dcene()
    : CurrObjectAxis(MakeNode<Vorn_3DAxis>(0.0, 0.0, 0.0)),
      CurrDrawNode(MakeNode<Vorn_3DDrawNode>(0.0, 0.0, 0.0)),
      begin_(std::chrono::steady_clock::now()) {
  auto camera = MakeNode<Vorn_3DCamera>(0.0, 10.0, 10.0);
  camera->LookAt(0.0, 0.0, 0.0);
  ActiveCamera = camera;
  BeginTime = std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
  FPSText = Create2DText(2, 2, "FPS:60");
  FPSText->SetBorderMode();
  BatchText = Create2DText(2, 22, "Batch:0");
  BatchText->SetBorderMode();
}

Vorn_3Dcene::~Vorn_3Dcene() = default;

double Vorn_3Dcene::ElapsedSeconds() {
  if (fixedTimeStep_ > 0.0) {
    // The frame reads a last time of 0 as "no frame yet", so the fixed clock starts one
    // step in: the first frame has delay 0 and every later one exactly the step.
    fixedTime_ += fixedTimeStep_;
    return fixedTime_;
  }
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin_).count();
}

void Vorn_3Dcene::SetFixedTimeStep(double seconds) {
  if (!std::isfinite(seconds) || seconds < 0.0) {
    throw ValueError("Vorn_3Dcene.SetFixedTimeStep: the step must be a finite number of seconds, 0 or more");
  }
  if (seconds > 0.0) {
    fixedTime_ = uCurrTime;
  } else if (fixedTimeStep_ > 0.0) {
    // Back on the wall clock: it reads on from the last frame's time.
    begin_ = std::chrono::steady_clock::now() -
             std::chrono::duration_cast<std::chrono::steady_clock::duration>(std::chrono::duration<double>(uCurrTime));
  }
  fixedTimeStep_ = seconds;
}

std::optional<std::array<double, 16>> Vorn_3Dcene::GetActiveViewMatrix() const {
  auto camera = as_camera(ActiveCamera);
  if (!camera) return std::nullopt;
  return camera->GetViewMatrix();
}

std::optional<std::array<double, 16>> Vorn_3Dcene::GetActiveProjMatrix() const {
  auto camera = as_camera(ActiveCamera);
  if (!camera) return std::nullopt;
  return camera->GetProjMatrix();
}

FbxAMatrix Vorn_3Dcene::GetWorldRotateMatrix() const {
  return FbxAMatrix(FbxVector4(0.0, 0.0, 0.0, 0.0), FbxVector4(Scene_RotateV, Scene_RotateH, 0.0, 0.0),
                    FbxVector4(1.0, 1.0, 1.0, 1.0));
}

void Vorn_3Dcene::SetSceneFogStart(double start) {
  if (!SceneFog.empty()) SceneFog[0] = start;
}

void Vorn_3Dcene::SetSceneFogEnd(double end) {
  if (SceneFog.size() > 1) SceneFog[1] = end;
}

void Vorn_3Dcene::SetSceneFogColor(double r, double g, double b) {
  if (SceneFog.size() < 5) {
    SetSceneFog(30.0, 100.0, r, g, b);
    return;
  }
  SceneFog[2] = r;
  SceneFog[3] = g;
  SceneFog[4] = b;
}

std::array<double, 5> Vorn_3Dcene::GetSceneFog() const {
  // A fog from 0 to 0 is how a shader sees no fog.
  std::array<double, 5> fog{};
  if (!EnableSceneFog) return fog;
  for (std::size_t i = 0; i < fog.size() && i < SceneFog.size(); ++i) fog[i] = SceneFog[i];
  return fog;
}

NodeScene::NodePtr Vorn_3Dcene::GetCurrDrawNode() const { return CurrDrawNode; }

int Vorn_3Dcene::GenNewGameNodeID() {
  if (GAMENODE_ID == std::numeric_limits<int>::max()) {
    throw ValueError("Vorn_3Dcene.GenNewGameNodeID: GAMENODE_ID is at the largest number a node can have");
  }
  return ++GAMENODE_ID;
}

int Vorn_3Dcene::visit_script_refs(ScriptRefVisit visit, void* context) const {
  int r = 0;
  auto list = [&](const auto& l) {
    if (r == 0) r = l.visit(visit, context);
  };
  auto ref = [&](const auto& f) {
    if (r == 0) r = f.visit(visit, context);
  };
  for (const NodeList* l : {&DrawNodeArray_3D, &ObjectArray_3D, &ObjectArray_3DTerrain, &ObjectArray_3DOcean,
                            &ObjectArray_2D, &LightList, &CameraList})
    list(*l);
  list(TextArray);
  ref(CurrObjectAxis);
  ref(CurrDrawNode);
  for (const NodeRef* f : {&sceneSkyBox, &sceneSkyShpere, &currSkyObject, &ActiveCamera, &VRLeftCamera,
                           &VRLeftEyeImage, &VRRightCamera, &VRRightEyeImage, &VRLogoImage})
    ref(*f);
  for (const auto* map : {&DeferLightCamera, &SSAOCamera})
    for (const auto& [id, camera] : *map) ref(camera);
  ref(FPSText);
  ref(BatchText);
  for (const auto& f : LoadFunctionLine)
    if (r == 0) r = visit_value(f, visit, context);
  for (const auto& [name, f] : UserFunctionDict)
    if (r == 0) r = visit_value(f, visit, context);
  return r;
}

void Vorn_3Dcene::clear_script_refs() {
  // Moved out first and dropped together at the end: each drop may run script code
  // that reaches the scene again, and must find it consistent (empty).
  std::vector<NodeList> lists;
  for (NodeList* l : {&DrawNodeArray_3D, &ObjectArray_3D, &ObjectArray_3DTerrain, &ObjectArray_3DOcean,
                      &ObjectArray_2D, &LightList, &CameraList})
    lists.push_back(std::move(*l));
  TextList texts = std::move(TextArray);
  std::vector<NodeRef> refs;
  for (NodeRef* f : {&sceneSkyBox, &sceneSkyShpere, &currSkyObject, &ActiveCamera, &VRLeftCamera, &VRLeftEyeImage,
                     &VRRightCamera, &VRRightEyeImage, &VRLogoImage})
    refs.push_back(std::move(*f));
  auto deferCameras = std::move(DeferLightCamera);
  auto ssaoCameras = std::move(SSAOCamera);
  DeferLightCamera = {};
  SSAOCamera = {};
  Ref<Vorn_3DAxis> axis = std::move(CurrObjectAxis);
  Ref<Vorn_3DDrawNode> drawNode = std::move(CurrDrawNode);
  Ref<Vorn_Text> fps = std::move(FPSText);
  Ref<Vorn_Text> batch = std::move(BatchText);
  auto loadLine = std::move(LoadFunctionLine);
  auto userFunctions = std::move(UserFunctionDict);
  LoadFunctionLine = {};
  UserFunctionDict = {};
}

NodeScene::NodePtr Vorn_3Dcene::Create3DGameNode(double x, double y, double z, const NodePtr& parent) {
  auto node = MakeNode<Vorn_3DGameNode>(x, y, z, parent);
  node->OnLoad(shared_from_this());
  if (!parent) ObjectArray_3D.push_back(node);
  return node;
}

std::shared_ptr<Vorn_Text> Vorn_3Dcene::Create2DText(double x, double y, const std::string& text, double r,
                                                     double g, double b, int font) {
  auto newText = std::make_shared<Vorn_Text>(x, y, text, font);
  newText->SetColor(r, g, b);
  TextArray.push_back(newText);
  return newText;
}

NodeScene::NodePtr Vorn_3Dcene::CreateCamera(double x, double y, double z) {
  auto camera = MakeNode<Vorn_3DCamera>(x, y, z);
  camera->LookAt(0.0, 0.0, 0.0);
  camera->OnLoad(shared_from_this());
  CameraList.push_back(camera);
  return camera;
}

NodeScene::NodePtr Vorn_3Dcene::CreateDrawNode() {
  auto drawNode = MakeNode<Vorn_3DDrawNode>(0.0, 0.0, 0.0);
  drawNode->OnLoad(shared_from_this());
  DrawNodeArray_3D.push_back(drawNode);
  return drawNode;
}

NodeScene::NodePtr Vorn_3Dcene::QueyPointLightByTag(const std::string& tagName) const {
  return find_by_tag(LightList, tagName);
}
NodeScene::NodePtr Vorn_3Dcene::Quey2DObjectByTag(const std::string& tagName) const {
  return find_by_tag(ObjectArray_2D, tagName);
}
NodeScene::NodePtr Vorn_3Dcene::Quey3DObjectByTag(const std::string& tagName) const {
  return find_by_tag(ObjectArray_3D, tagName);
}
NodeScene::NodePtr Vorn_3Dcene::Quey3DTerrainByTag(const std::string& tagName) const {
  return find_by_tag(ObjectArray_3DTerrain, tagName);
}

}  // namespace vorn
