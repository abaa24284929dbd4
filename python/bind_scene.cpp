// The scene, its live registries, the GLUT driver callbacks and the demonstration.
#include <memory>

#include "app/demo.h"
#include "app/driver.h"
#include "app/globals.h"
#include "app/screenshot_gl.h"
#include "bind_common.h"
#include "camera/camera.h"
#include "core/screen_settings.h"
#include "node_trampoline.h"
#include "node_views.h"
#include "overlay/axis.h"
#include "scene/scene.h"
#include "shapes/draw_node.h"

namespace vorn::py_bind {
namespace {

using Scene = Vorn_3Dcene;
using SceneClass = py::class_<Scene, NodeScene, std::shared_ptr<Scene>>;

// A text field of the scene (FPSText, BatchText): a Vorn_Text or None.
template <Ref<Vorn_Text> Scene::*Field>
void text_field(SceneClass& cls, const char* name, const char* doc) {
  cls.def_property(
      name, [](const Scene& s) { return py::cast(s.*Field); },
      [name](Scene& s, py::handle value) {
        if (!value.is_none() && !py::isinstance<Vorn_Text>(value)) {
          throw py::type_error(std::string("Vorn_3Dcene.") + name + " must be a Vorn_Text or None");
        }
        s.*Field = value.is_none() ? nullptr : value.cast<std::shared_ptr<Vorn_Text>>();
      },
      doc);
}

// TextArray through the list view: texts are owned by the scene's TextList, which
// has the list interface of the node lists.
struct TextConv {
  static constexpr const char* items = "Vorn_Text objects";
  static py::object to_py(const std::shared_ptr<Vorn_Text>& text) { return py::cast(text); }
  static std::shared_ptr<Vorn_Text> from_py(py::handle value, const std::string& where) {
    if (!value.is_none() && py::isinstance<Vorn_Text>(value)) return value.cast<std::shared_ptr<Vorn_Text>>();
    throw py::type_error(where + ": expected a Vorn_Text, not " +
                         std::string(py::str(py::type::handle_of(value).attr("__name__"))));
  }
};
using TextListView = ListView<TextList, TextConv>;

// A registry of the scene as a live list that keeps the scene alive.
template <NodeList Scene::*Field>
void registry(SceneClass& cls, const char* name, const char* doc) {
  cls.def_property(
      name, [](const std::shared_ptr<Scene>& s) { return NodeListView{s, &((*s).*Field)}; },
      [name](const std::shared_ptr<Scene>& s, py::handle value) {
        assign_node_list((*s).*Field, value, std::string("Vorn_3Dcene.") + name);
      },
      doc);
}

// A node field of the scene (camera, sky, VR images) read and written as a node.
template <NodeRef Scene::*Field>
void node_field(SceneClass& cls, const char* name, const char* doc) {
  cls.def_property(
      name, [](const Scene& s) { return node_to_py(s.*Field); },
      [name](Scene& s, py::handle value) {
        s.*Field = value.is_none() ? nullptr : node_arg(value, std::string("Vorn_3Dcene.") + name);
      },
      doc);
}

// A factory's parent argument: None or a node.
NodeScene::NodePtr parent_arg(py::handle parent, const char* factory) {
  return parent.is_none() ? nullptr : node_arg(parent, std::string("Vorn_3Dcene.") + factory);
}

// The binding of a factory Create...(x=0.0, y=0.0, z=0.0, parent=None, further...): the
// further arguments keep their C++ types, the parent may be None or a node.
template <auto Method>
struct Factory;
template <class... Ts, NodeScene::NodePtr (Scene::*Method)(double, double, double, const NodeScene::NodePtr&, Ts...)>
struct Factory<Method> {
  template <class... Args>
  static void def(SceneClass& cls, const char* name, const char* doc, Args&&... further) {
    cls.def(
        name,
        [name](Scene& s, double x, double y, double z, py::handle parent, Ts... rest) {
          return node_to_py((s.*Method)(x, y, z, parent_arg(parent, name), rest...));
        },
        py::arg("x") = 0.0, py::arg("y") = 0.0, py::arg("z") = 0.0, py::arg("parent") = py::none(),
        std::forward<Args>(further)..., doc);
  }
};

void bind_factories(SceneClass& cls) {
  Factory<&Scene::CreatePointLight>::def(cls, "CreatePointLight", "A Vorn_3DPointLight in LightList (also with a parent).",
                                         py::arg("range") = 5.0, py::arg("r") = 1.0, py::arg("g") = 1.0,
                                         py::arg("b") = 1.0);
  Factory<&Scene::CreateMeshFromFile>::def(
      cls, "CreateMeshFromFile",
      "A Vorn_3DMesh loaded from meshFile by the kind its name shows (\".fbx\", \".glb\", \".obj\");\n"
      "a name of no known kind gives an empty mesh. No FX of its own: the loader sets them.",
      py::arg("meshFile") = "", py::arg("swapyz") = false);
  Factory<&Scene::CreateMeshFromModelFile>::def(
      cls, "CreateMeshFromModelFile",
      "An addition of this engine: a Vorn_3DMesh read by LoadMeshFromFile_Model from any format\n"
      "of the model importer (glTF, Collada, 3DS, PLY, STL, FBX, ...).",
      py::arg("modelFile") = "", py::arg("swapyz") = false);
  Factory<&Scene::CreatePlane>::def(cls, "CreatePlane", "A Vorn_3DPlane with FX_DIFFUSE.", py::arg("rows") = 20,
                                    py::arg("cows") = 20, py::arg("tilesize") = 1.0);
  // Landscape factories: FX before OnLoad, entered in ObjectArray_3DTerrain.
  Factory<&Scene::CreateTiledMap>::def(cls, "CreateTiledMap",
                                       "A Vorn_3DTiledMap with FX_TILEDMAP in ObjectArray_3DTerrain (tiles of 1.0).",
                                       py::arg("rows") = 20, py::arg("cows") = 20, py::arg("tilesize") = 1.0);
  Factory<&Scene::CreateBox>::def(cls, "CreateBox", "A Vorn_3DBox with FX_DIFFUSE.", py::arg("size_x") = 0.5,
                                  py::arg("size_y") = 0.5, py::arg("size_z") = 0.5);
  Factory<&Scene::CreateSphere>::def(cls, "CreateSphere", "A Vorn_3DSphere with FX_DIFFUSE.", py::arg("radius") = 0.5,
                                     py::arg("statckx") = 30, py::arg("statcky") = 30);
  Factory<&Scene::CreateCircle>::def(cls, "CreateCircle", "A Vorn_3DCircle with FX_DIFFUSE.", py::arg("radius") = 0.5,
                                     py::arg("statckZ") = 30);
  Factory<&Scene::CreateConus>::def(cls, "CreateConus", "A Vorn_3DConus with FX_DIFFUSE.", py::arg("radius") = 0.5,
                                    py::arg("height") = 1.0, py::arg("statckZ") = 30);
  Factory<&Scene::CreateCylinder>::def(cls, "CreateCylinder", "A Vorn_3DCylinder with FX_DIFFUSE.",
                                       py::arg("radius") = 0.5, py::arg("height") = 1.0, py::arg("statckZ") = 30);
  Factory<&Scene::CreateTorus>::def(cls, "CreateTorus", "A Vorn_3DTorus with FX_DIFFUSE.", py::arg("radius_in") = 0.5,
                                    py::arg("radius_out") = 1.0, py::arg("height") = 1.0, py::arg("statckR") = 30,
                                    py::arg("statckZ") = 10);
  Factory<&Scene::CreateTube>::def(cls, "CreateTube", "A Vorn_3DTube with FX_DIFFUSE.", py::arg("radius_in") = 0.5,
                                   py::arg("radius_out") = 1.0, py::arg("height") = 1.0, py::arg("statckR") = 30);
  Factory<&Scene::CreateCapsule>::def(cls, "CreateCapsule", "A Vorn_3DCapsule with FX_DIFFUSE.",
                                      py::arg("radius") = 0.5, py::arg("height") = 1.0, py::arg("statckR") = 30);
}

// The terrain factory and its file loader.
void bind_terrain_factories(SceneClass& cls) {
  Factory<&Scene::CreateTerrain>::def(
      cls, "CreateTerrain",
      "A Vorn_3DTerrain of 128 by 128 tiles of 1.0 with texture coordinates and FX_TERRAIN\n"
      "(given before OnLoad); a root terrain joins ObjectArray_3DTerrain.");
  cls.def(
      "LoadTerrain", [](Scene& s, const std::string& terrainDir) { return node_to_py(s.LoadTerrain(terrainDir)); },
      py::arg("terrainDir"),
      "Loads terrainDir + \".hei\" (LoadHeightFile) and terrainDir + \".ter\" (LoadBlendFile)\n"
      "into the first entry of ObjectArray_3DTerrain, made by CreateTerrain(0, 0, 0) when the\n"
      "registry is empty, applies FX_TERRAIN and returns it. terrainDir is a path without\n"
      "an extension. The loaders' exceptions pass through (FileNotFoundError, ValueError);\n"
      "an entry that is not a Vorn_3DTerrain is an AttributeError.");
}

void bind_scene_class(py::module_& m) {
  bind_list_view<TextList, TextConv>(m, "TextList",
                                     "A live list of Vorn_Text overlays held by the scene; it behaves as a\n"
                                     "Python list and holds only Vorn_Text objects (TypeError).");

  SceneClass cls(
      m, "Vorn_3Dcene",
      "The one scene: registries of everything in the world, the active camera, the\n"
      "render values nodes read while drawing, and the frame (DrawScene). Construct it\n"
      "after the window and the PyGameResManager, then call InitGL.\n\n"
      "Ownership: the scene owns every object in its registries; registries read from\n"
      "Python are live lists (append reaches the engine).",
      py::dynamic_attr(), twin_type_setup());
  cls.def(py::init([] { return Scene::Create(); }));
  attach_twin_after_init(cls,
                         "Builds the gizmo, the draw node, the camera at (0, 10, 10) and the FPS and batch\n"
                         "overlays; InitGL binds them to the scene.");

  // Lifecycle and frame.
  cls.def("InitGL", &Scene::InitGL, py::arg("screenWidth"), py::arg("screenHeight"), py::arg("viewNear") = 0.1,
          py::arg("viewFar") = 1000.0,
          "Sets the OpenGL state the engine relies on, the camera range and the screen size,\n"
          "and binds the built-in nodes (OnLoad). ZeroDivisionError for a height of 0.")
      .def("DrawScene", &Scene::DrawScene,
           "One frame: clock, statistics, update of every object, target passes, clear, main\n"
           "pass, end of the pick request, glFlush.")
      .def("GenNewGameNodeID", &Scene::GenNewGameNodeID, "Adds 1 to GAMENODE_ID and returns it.")
      .def("SetActiveCamera", [](Scene& s, py::handle c) { s.SetActiveCamera(node_arg(c, "Vorn_3Dcene.SetActiveCamera")); },
           py::arg("activeCamera"), "Makes any camera the active one; no registry is touched.")
      .def("GetActiveCamera", [](const Scene& s) { return node_to_py(s.GetActiveCamera()); }, "The active camera.")
      .def("GetScreenSize", &Scene::GetScreenSize, "(ScreenWidth, ScreenHeight) as InitGL set them.")
      .def("SetMouseXY", &Scene::SetMouseXY, py::arg("px"), py::arg("py"), py::arg("checkPickOnce") = true,
           "Stores the mouse position and asks for a pick in the next frame.")
      .def("isCheckPickOnce", &Scene::isCheckPickOnce, "Whether a pick is requested.")
      .def("Rotate_H", &Scene::Rotate_H, py::arg("RH"), "Adds to Scene_RotateH (degrees about Y).")
      .def("Rotate_V", &Scene::Rotate_V, py::arg("RV"), "Adds to Scene_RotateV (degrees about X).")
      .def("GetWorldRotateMatrix", &Scene::GetWorldRotateMatrix, "FbxAMatrix of the world rotation.")
      .def("AddBatchCount", &Scene::AddBatchCount, "One more draw batch in this frame.")
      .def("SetBGColor", &Scene::SetBGColor, py::arg("r"), py::arg("g"), py::arg("b"), "Clear colour of the next frame.")
      .def("GetCurrTime", &Scene::GetCurrTime, "Seconds since construction, as of the last frame.")
      .def("SetFixedTimeStep", &Scene::SetFixedTimeStep, py::arg("seconds"),
           "Reproducible frames: with seconds above 0 each DrawScene advances the scene's time by\n"
           "exactly that step (actions, animations, particles and shader time repeat run to run);\n"
           "0 goes back to the wall clock. The time goes on from the last frame's either way.\n"
           "ValueError for a negative or non-finite step.")
      .def("GetFixedTimeStep", &Scene::GetFixedTimeStep, "The fixed frame step in seconds; 0 means the wall clock.")
      .def("SetAmbientColor", &Scene::SetAmbientColor, py::arg("r"), py::arg("g"), py::arg("b"), "Ambient colour r, g, b that shaded programs multiply in.")
      .def("GetAmbientColor", [](const Scene& s) { return std::vector<double>(s.AmbientColor.begin(), s.AmbientColor.end()); }, "AmbientColor as a list [r, g, b].")
      .def("SetDepthBlurLerpValue", &Scene::SetDepthBlurLerpValue, py::arg("depthBlurLerpValue"), "Mix factor that full-screen effects read.")
      .def("GetDepthBlurLerpValue", &Scene::GetDepthBlurLerpValue, "DepthBlurLerpValue.")
      .def("SetSunLight", &Scene::SetSunLight, py::arg("x"), py::arg("y"), py::arg("z"), py::arg("r"), py::arg("g"),
           py::arg("b"), "Sun direction and colour.")
      .def("GetSunLightDir", [](const Scene& s) { return std::vector<double>(s.SunLightDir.begin(), s.SunLightDir.end()); }, "SunLightDir as a list [x, y, z].")
      .def("GetSunLightColor",
           [](const Scene& s) { return std::vector<double>(s.SunLightColor.begin(), s.SunLightColor.end()); }, "SunLightColor as a list [r, g, b].")
      .def("SetSceneFog", &Scene::SetSceneFog, py::arg("start") = 30.0, py::arg("end") = 100.0, py::arg("r") = 0.5,
           py::arg("g") = 0.5, py::arg("b") = 0.7, "SceneFog = [start, end, r, g, b].")
      .def("SetSceneFogStart", &Scene::SetSceneFogStart, py::arg("start") = 10.0, "Element 0 of SceneFog when it is not empty.")
      .def("SetSceneFogEnd", &Scene::SetSceneFogEnd, py::arg("end") = 100.0, "Element 1 of SceneFog when it is not empty.")
      .def("SetSceneFogColor", &Scene::SetSceneFogColor, py::arg("r") = 0.5, py::arg("g") = 0.5, py::arg("b") = 0.7, "Elements 2 to 4 of SceneFog; SetSceneFog(30.0, 100.0, r, g, b) when it is empty.")
      .def("GetSceneFog", [](const Scene& s) { auto f = s.GetSceneFog(); return std::vector<double>(f.begin(), f.end()); },
           "SceneFog while fog is enabled, else five zeros.")
      .def("EnableFog", &Scene::EnableFog, "Fog on: GetSceneFog gives SceneFog.")
      .def("DisableFog", &Scene::DisableFog, "Fog off: GetSceneFog gives five zeros; SceneFog keeps its values.")
      .def("IsDeferLightMode", &Scene::IsDeferLightMode, "DeferLightMode.")
      .def("GetSSAOKernelCount", &Scene::GetSSAOKernelCount, "The constant 64.")
      .def("GetSSAOKernelRadius", &Scene::GetSSAOKernelRadius, "SSAOKernelRadius.")
      .def("GetSSAOKernelList", &Scene::GetSSAOKernelList, "SSAOKernelList, flattened.")
      .def("GetCurrSkyObject", [](const Scene& s) { return node_to_py(s.GetCurrSkyObject()); }, "The visible sky node, or None.")
      .def("GetCurrDrawNode", [](const Scene& s) { return node_to_py(s.GetCurrDrawNode()); }, "The built-in draw node that marks picked triangles.")
      .def("SetBackgroundMP3", &Scene::SetBackgroundMP3, py::arg("mp3File"), "Stores the file name; nothing plays here.")
      .def("GetBackgroundMP3", &Scene::GetBackgroundMP3, "The stored music file name, or None.");

  // Factories and lookups.
  bind_factories(cls);
  bind_terrain_factories(cls);
  Factory<&Scene::Create3DGameNode>::def(cls, "Create3DGameNode",
                                         "A Vorn_3DGameNode loaded into the scene; a root node joins ObjectArray_3D.");
  cls.def("Create2DText", &Scene::Create2DText, py::arg("x"), py::arg("y"), py::arg("text"), py::arg("r") = 1.0,
           py::arg("g") = 1.0, py::arg("b") = 1.0, py::arg("font") = Vorn_Text::FT_8_BY_13,
           "A Vorn_Text in TextArray.")
      .def(
          "Create2DRect",
          [](Scene& s, double left, double top, double width, double height, double r, double g, double b) {
            return node_to_py(s.Create2DRect(left, top, width, height, r, g, b));
          },
          py::arg("left"), py::arg("top"), py::arg("width"), py::arg("height"), py::arg("r") = 1.0, py::arg("g") = 1.0,
          py::arg("b") = 1.0,
          "A rectangle in pixels from the top left of the screen, coloured (r, g, b), with\n"
          "Vorn_2DFX.FX_COLOR, in ObjectArray_2D.")
      .def(
          "Create2DImage",
          [](Scene& s, double left, double top, double width, double height, std::optional<std::string> imageFile) {
            return node_to_py(s.Create2DImage(left, top, width, height, imageFile));
          },
          py::arg("left"), py::arg("top"), py::arg("width"), py::arg("height"), py::arg("imageFile") = py::none(),
          "A screen rectangle showing imageFile upright, with Vorn_2DFX.FX_TEXTURE, in\n"
          "ObjectArray_2D.")
      .def("CreateCamera", [](Scene& s, double x, double y, double z) { return node_to_py(s.CreateCamera(x, y, z)); },
           py::arg("x") = 0, py::arg("y") = 0, py::arg("z") = 0, "A camera looking at the origin, in CameraList.")
      .def(
          "CreateShadowMapCamera",
          [](Scene& s, double x, double y, double z) { return node_to_py(s.CreateShadowMapCamera(x, y, z)); },
          py::arg("x") = 0, py::arg("y") = 0, py::arg("z") = 0,
          "A camera as CreateCamera makes it, with a depth target of the window's size\n"
          "(CreateDepthTarget()), in CameraList. Give it to nodes by SetShadowMapCamera.")
      .def("CreateDrawNode", [](Scene& s) { return node_to_py(s.CreateDrawNode()); },
           "A Vorn_3DDrawNode in DrawNodeArray_3D.")
      .def("LoadSkyBox", [](Scene& s, const std::string& dir) { return node_to_py(s.LoadSkyBox(dir)); },
           py::arg("cubeTextureDir"),
           "Shows the sky box with the cube map of cubeTextureDir (made on first use); hides the sphere.")
      .def("LoadSkySphere", [](Scene& s, const std::string& file) { return node_to_py(s.LoadSkySphere(file)); },
           py::arg("sphereTextureFile"), "Shows the sky sphere with one picture (made on first use); hides the box.")
      .def("GetPointLightList", [](const std::shared_ptr<Scene>& s) { return NodeListView{s, &s->LightList}; }, "LightList itself (a live list).")
      .def("Get2DObjectArray", [](const std::shared_ptr<Scene>& s) { return NodeListView{s, &s->ObjectArray_2D}; }, "ObjectArray_2D itself (a live list).")
      .def("Get3DObjectArray", [](const std::shared_ptr<Scene>& s) { return NodeListView{s, &s->ObjectArray_3D}; }, "ObjectArray_3D itself (a live list).")
      .def("Get3DTerrainArray",
           [](const std::shared_ptr<Scene>& s) { return NodeListView{s, &s->ObjectArray_3DTerrain}; }, "ObjectArray_3DTerrain itself (a live list).")
      .def("QueyPointLightByTag", [](const Scene& s, const std::string& t) { return node_to_py(s.QueyPointLightByTag(t)); },
           py::arg("tagName"), "First registered light with the tag, or None.")
      .def("Quey2DObjectByTag", [](const Scene& s, const std::string& t) { return node_to_py(s.Quey2DObjectByTag(t)); },
           py::arg("tagName"), "First registered 2D object with the tag, or None.")
      .def("Quey3DObjectByTag", [](const Scene& s, const std::string& t) { return node_to_py(s.Quey3DObjectByTag(t)); },
           py::arg("tagName"), "First registered 3D object with the tag, or None.")
      .def("Quey3DTerrainByTag", [](const Scene& s, const std::string& t) { return node_to_py(s.Quey3DTerrainByTag(t)); },
           py::arg("tagName"), "First registered terrain with the tag, or None.");

  // Picking and the gizmo.
  cls.def(
         "Select3DObject",
         [](Scene& s, py::handle object3D, std::optional<std::string> axisType) {
           s.Select3DObject(object3D.is_none() ? nullptr : node_arg(object3D, "Vorn_3Dcene.Select3DObject"),
                            std::move(axisType));
         },
         py::arg("object3D"), py::arg("axisType") = Scene::DefaultAxisType,
         "Binds the gizmo (CurrObjectAxis) to object3D and sets its type: \"t\" translates\n"
         "and is what a picked node gets; None unbinds the gizmo.")
      .def("Select3DObjectByTag", &Scene::Select3DObjectByTag, py::arg("tagName"),
           py::arg("axisType") = Scene::DefaultAxisType,
           "Select3DObject of Quey3DObjectByTag(tagName); an unknown tag unbinds the gizmo.")
      .def("ScreenPtTo3DPointAndDir", &Scene::ScreenPtTo3DPointAndDir, py::arg("px"), py::arg("py"),
           "(Pt, Dir): the ray under window point (px, py) (origin at the top left) through the\n"
           "active camera, with the world rotation undone. Uses the GL matrices in force.")
      .def("GetScree3DPointAndDir", &Scene::GetScree3DPointAndDir,
           "(Pt, Dir): the ray of the stored mouse position (MouseX, MouseY) with the GL\n"
           "matrices in force, the world rotation not undone. Inside a node's draw it lies in\n"
           "the world in which nodes keep their positions.")
      .def("CheckPickAxis", &Scene::CheckPickAxis, py::arg("px"), py::arg("py"), py::arg("Immediate"),
           "Tests the gizmo against the ray of (px, py) (Immediate) or of the stored position\n"
           "(px, py ignored), which sets its PickedAxis. Always returns False.")
      .def("BeginDragAxis", &Scene::BeginDragAxis, py::arg("offsetX"), py::arg("offsetY"),
           "Hands the offsets to the gizmo (Drag); True when it takes the drag, False without\n"
           "a picked translate axis (the caller then rotates the world).")
      .def("EndDragAxis", &Scene::EndDragAxis, "Ends a gizmo drag (ReleaseDrag).")
      .def("Get3DTerrainY", &Scene::Get3DTerrainY, py::arg("x"), py::arg("z"),
           "Height of the first plane in ObjectArray_3DTerrain that covers (x, z), by its\n"
           "CheckInHeight; 0.0 where none does.");

  // Registries, live.
  registry<&Scene::DrawNodeArray_3D>(cls, "DrawNodeArray_3D", "Immediate draw nodes.");
  registry<&Scene::ObjectArray_3D>(cls, "ObjectArray_3D", "Root 3D nodes.");
  registry<&Scene::ObjectArray_3DTerrain>(cls, "ObjectArray_3DTerrain", "Terrains, tiled maps and oceans.");
  registry<&Scene::ObjectArray_3DOcean>(cls, "ObjectArray_3DOcean", "The ocean registry.");
  registry<&Scene::ObjectArray_2D>(cls, "ObjectArray_2D", "2D rectangles and images.");
  registry<&Scene::LightList>(cls, "LightList", "Point lights.");
  registry<&Scene::CameraList>(cls, "CameraList", "Additional cameras.");
  cls.def_property(
      "TextArray", [](const std::shared_ptr<Scene>& s) { return TextListView{s, &s->TextArray}; },
      [](const std::shared_ptr<Scene>& s, py::handle value) {
        assign_list<TextList, TextConv>(s->TextArray, value, "Vorn_3Dcene.TextArray");
      },
      "Vorn_Text overlays, live.");

  node_field<&Scene::ActiveCamera>(cls, "ActiveCamera", "Camera of the main view.");
  node_field<&Scene::sceneSkyBox>(cls, "sceneSkyBox", "Sky box node or None.");
  node_field<&Scene::sceneSkyShpere>(cls, "sceneSkyShpere", "Sky sphere node or None.");
  node_field<&Scene::currSkyObject>(cls, "currSkyObject", "The visible sky node or None.");
  node_field<&Scene::VRLeftCamera>(cls, "VRLeftCamera", "VR mode.");
  node_field<&Scene::VRLeftEyeImage>(cls, "VRLeftEyeImage", "VR mode.");
  node_field<&Scene::VRRightCamera>(cls, "VRRightCamera", "VR mode.");
  node_field<&Scene::VRRightEyeImage>(cls, "VRRightEyeImage", "VR mode.");
  node_field<&Scene::VRLogoImage>(cls, "VRLogoImage", "VR mode.");
  cls.def_property_readonly("CurrObjectAxis", [](const Scene& s) { return node_to_py(s.CurrObjectAxis); },
                            "The gizmo.")
      .def_property_readonly("CurrDrawNode", [](const Scene& s) { return node_to_py(s.CurrDrawNode); },
                             "The built-in draw node.")
      .def_readwrite("GAMENODE_ID", &Scene::GAMENODE_ID, "Last node id handed out.")
      .def_readwrite("ScreenWidth", &Scene::ScreenWidth, "Width given to InitGL.")
      .def_readwrite("ScreenHeight", &Scene::ScreenHeight, "Height given to InitGL.")
      .def_readwrite("Scene_RotateH", &Scene::Scene_RotateH, "World rotation about Y, degrees.")
      .def_readwrite("Scene_RotateV", &Scene::Scene_RotateV, "World rotation about X, degrees.")
      .def_readwrite("DeferLightMode", &Scene::DeferLightMode, "Deferred lighting active.")
      .def_readwrite("SSAOKernelList", &Scene::SSAOKernelList, "SSAO kernel, flattened.")
      .def_readwrite("SSAOKernelRadius", &Scene::SSAOKernelRadius, "SSAO radius.")
      .def_readwrite("UpdateLastTime", &Scene::UpdateLastTime, "Seconds since BeginTime at the last update step.")
      .def_readwrite("CurrTime", &Scene::CurrTime, "Declared; frames use uCurrTime.")
      .def_readwrite("uCurrTime", &Scene::uCurrTime, "Seconds since BeginTime as of the last frame.")
      .def_readwrite("FPSCount", &Scene::FPSCount, "Frames since the last FPS report.")
      .def_readwrite("FPSTimer", &Scene::FPSTimer, "Seconds since the last FPS report.")
      .def_readwrite("BatchCount", &Scene::BatchCount, "Draw batches of the running frame.")
      .def_readwrite("BeginTime", &Scene::BeginTime, "Wall clock at construction, seconds.")
      .def_readwrite("BGColor", &Scene::BGColor, "Clear colour [r, g, b].")
      .def_readwrite("AmbientColor", &Scene::AmbientColor, "Ambient colour [r, g, b].")
      .def_readwrite("DepthBlurLerpValue", &Scene::DepthBlurLerpValue, "Mix factor of full-screen effects.")
      .def_readwrite("SunLightDir", &Scene::SunLightDir, "Sun direction [x, y, z].")
      .def_readwrite("SunLightColor", &Scene::SunLightColor, "Sun colour [r, g, b].")
      .def_readwrite("SceneFog", &Scene::SceneFog, "[start, end, r, g, b].")
      .def_readwrite("EnableSceneFog", &Scene::EnableSceneFog, "Fog on.")
      .def_readwrite("PointLightArray_ZYZRange", &Scene::PointLightArray_ZYZRange, "Declared; nodes fill their own light uniforms.")
      .def_readwrite("PointLightArray_Color", &Scene::PointLightArray_Color, "Declared.")
      .def_readwrite("MouseX", &Scene::MouseX, "Last x given to SetMouseXY.")
      .def_readwrite("MouseY", &Scene::MouseY, "Last y given to SetMouseXY.")
      .def_readwrite("checkPickOnce", &Scene::checkPickOnce, "A pick is requested for the next frame.")
      .def_readwrite("BackgroundMP3File", &Scene::BackgroundMP3File, "Music file name set by script.");
  // The full-screen modes and their maps (bind_fullscreen.cpp).
  bind_scene_fullscreen(cls);
  text_field<&Scene::FPSText>(cls, "FPSText", "The FPS overlay (a Vorn_Text; the frame needs one).");
  text_field<&Scene::BatchText>(cls, "BatchText", "The batch overlay (a Vorn_Text; the frame needs one).");
}

void bind_driver(py::module_& m) {
  m.def("DrawFunc", &DrawFunc, "Display and idle callback: openGLScene.DrawScene().");
  m.def("MouseFunc", &MouseFunc, py::arg("btn"), py::arg("state"), py::arg("x"), py::arg("y"),
        "Mouse callback: picks on a left press, ends a gizmo drag on release, wheel zooms.");
  m.def("MotionFunc", &MotionFunc, py::arg("x"), py::arg("y"),
        "Motion callback: left drag moves the gizmo or rotates the world, right drag pans.");
  m.def(
      "KeyboardFunc", [](py::handle key, int x, int y) { KeyboardFunc(py::str(key), x, y); }, py::arg("key"),
      py::arg("x"), py::arg("y"), "Keyboard and special-key callback: prints the key.");
  m.def("ChangeSizeFunc", &ChangeSizeFunc, py::arg("w"), py::arg("h"),
        "Reshape callback: stores the size in SCREEN_WIDTH and SCREEN_HEIGHT.");
  m.def(
      "_reset_driver_input", [] { driverInput = DriverInput{}; },
      "Resets last_x, last_y to None and rotateKey, dragKey to 1.");
  m.def(
      "SaveScreenshot",
      [](const std::string& path, std::optional<int> width, std::optional<int> height) {
        return SaveWindowPNG(path, width.value_or(SCREEN_WIDTH), height.value_or(SCREEN_HEIGHT));
      },
      py::arg("path"), py::arg("width") = py::none(), py::arg("height") = py::none(),
      "Saves the window (SCREEN_WIDTH x SCREEN_HEIGHT by default) as a PNG file; False on failure.");
  m.def(
      "ReadScreenPixels",
      [](int x, int y, int width, int height) {
        if (width <= 0 || height <= 0) throw py::value_error("ReadScreenPixels: width and height must be positive");
        return py::bytes(ReadWindowPixels(x, y, width, height));
      },
      py::arg("x"), py::arg("y"), py::arg("width"), py::arg("height"),
      "RGB bytes of a window rectangle; x, y from the top left, rows from the top.");
  m.def(
      "RunDemo", [](const std::vector<std::string>& args) { return RunDemo(args); }, py::arg("args"),
      "Runs the demonstration (--frames N, --screenshot out.png).");

  register_global("openGLScene",
                  GlobalSlot{[]() -> py::object { return py::cast(openGLScene); },
                             [](py::handle value) {
                               if (!value.is_none() && !py::isinstance<Vorn_3Dcene>(value)) {
                                 throw py::type_error("openGLScene must be a Vorn_3Dcene or None");
                               }
                               openGLScene = value.is_none() ? nullptr : value.cast<std::shared_ptr<Vorn_3Dcene>>();
                             },
                             "The scene the driver callbacks (and VR mode) reach."});
  register_global("pickDrawNode",
                  GlobalSlot{[]() -> py::object { return node_to_py(pickDrawNode); },
                             [](py::handle value) {
                               if (!value.is_none() && !py::isinstance<Vorn_3DDrawNode>(value)) {
                                 throw py::type_error("pickDrawNode must be a Vorn_3DDrawNode or None");
                               }
                               pickDrawNode =
                                   value.is_none() ? nullptr : value.cast<std::shared_ptr<Vorn_3DDrawNode>>();
                             },
                             "The demonstration's debug draw node."});
}

}  // namespace

void bind_scene(py::module_& m) {
  bind_scene_class(m);
  bind_driver(m);
}

}  // namespace vorn::py_bind
