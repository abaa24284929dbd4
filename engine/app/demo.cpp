#include "app/demo.h"

#include <filesystem>
#include <optional>
#include <variant>

#include "app/driver.h"
#include "app/globals.h"
#include "app/screenshot_gl.h"
#include "app/window_gl.h"
#include "core/console.h"
#include "core/gl_api.h"
#include "core/math_util.h"
#include "core/screen_settings.h"
#include "landscape/grass.h"
#include "landscape/ocean.h"
#include "mesh/mesh.h"
#include "resource/res_manager.h"
#include "scene/scene.h"
#include "shader/fx_3d.h"
#include "shapes/draw_node.h"

namespace vorn {
namespace {

struct DemoOptions {
  std::optional<int> frames;
  std::optional<std::string> screenshot;
  std::optional<std::string> resources;
  std::optional<double> fixedStep;
};

DemoOptions parse(const std::vector<std::string>& args) {
  DemoOptions options;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--frames" && i + 1 < args.size()) {
      options.frames = std::stoi(args[++i]);
    } else if (args[i] == "--screenshot" && i + 1 < args.size()) {
      options.screenshot = args[++i];
    } else if (args[i] == "--resources" && i + 1 < args.size()) {
      options.resources = args[++i];
    } else if (args[i] == "--fixed-step" && i + 1 < args.size()) {
      options.fixedStep = std::stod(args[++i]);
    }
  }
  // A screenshot alone still needs a frame to show.
  if (options.screenshot && !options.frames) options.frames = 1;
  return options;
}

// The world: a landscape of 128 by 128 tiles (flat in the middle, hills around, a pond
// filled by the water plane), a patch of grass, one walker standing idle in the middle
// and one walking a circle around it, and the same walker read from FBX walking on the
// spot beside the idle one. make_demo_assets writes the files; without them
// the brick plane of the first demonstration stands alone.
bool has_resource(const char* name) {
  return ResManagerInstance && !std::holds_alternative<std::monostate>(ResManagerInstance->GetResPath(name));
}

void build_landscape(Vorn_3Dcene& scene) {
  if (!has_resource("island.hei") || !has_resource("island.ter")) {
    auto newPlane = scene.CreatePlane(0.0, 0.0, 0.0, nullptr, 20, 20, 2.0);
    newPlane->LoadTextureFromFile("wall.jpg");
    newPlane->ApplyFX(Vorn_3DFX::FX_DIFFUSE_TEXTURE);
    newPlane->SetMeshColor(0.6, 0.6, 0.6, 0.6);
    return;
  }
  scene.LoadTerrain("island");
  // The sea level lies below the flat middle: water shows only in the pond.
  auto ocean = scene.CreateOcean(0.0, -0.35, 0.0);
  ocean->SetMeshColor(0.12, 0.42, 0.48, 1.0);
  if (auto* water = dynamic_cast<Vorn_3DOcean*>(ocean.get())) water->SetWave(0.8, 0.06);

  auto grass = scene.CreateGrass(4.5, 0.0, -3.5, nullptr, 1.6, 900, 0.04, 0.08, 0.3, 0.55, 0.12);
  for (int s = 0; s < static_cast<int>(grass->SubMeshList.size()); ++s) {
    grass->LoadSubMeshTextureFromFile(s, 0, "grass_blade.png");
  }
  if (auto* patch = dynamic_cast<Vorn_3DGrass*>(grass.get())) patch->SetSwing(1.5, 0.05);
  grass->StandOnGround(true);
}

void build_world(Vorn_3Dcene& scene) {
  build_landscape(scene);
  if (!has_resource("walker.glb")) return;

  auto idle = std::dynamic_pointer_cast<Vorn_3DMesh>(scene.CreateMeshFromFile(0.0, 0.0, 0.0, nullptr, "walker.glb"));
  if (idle) idle->PlayAction(1);  // "Idle"
  // The pivot turns 40 degrees a second; the walker, three units out and turned to face
  // the way the turn carries it (-z at the start), covers about the stride of its "Walk".
  auto pivot = scene.Create3DGameNode(0.0, 0.0, 0.0);
  pivot->SetLoopRotateY(40.0);
  auto walker = std::dynamic_pointer_cast<Vorn_3DMesh>(scene.CreateMeshFromFile(3.0, 0.0, 0.0, pivot, "walker.glb"));
  if (walker) {
    walker->SetRY(180.0);
    walker->PlayAction(0);  // "Walk"
  }
  // The same walker read from FBX, walking on the spot beside the idle one.
  if (!has_resource("walker.fbx")) return;
  auto fbxWalker = std::dynamic_pointer_cast<Vorn_3DMesh>(scene.CreateMeshFromFile(-1.5, 0.0, 0.0, nullptr, "walker.fbx"));
  if (fbxWalker) fbxWalker->PlayAction(0);  // "Walk"
}

// Each callback runs behind the boundary: an exception ends the loop and reaches main.
void display_cb() { AtCallbackBoundary([] { DrawFunc(); }); }
// A run of N frames draws exactly N: redraws the window system asks for (mapping, expose)
// come at times that vary run to run, so they are left to the next frame.
void no_display_cb() {}
void mouse_cb(int btn, int state, int x, int y) { AtCallbackBoundary([&] { MouseFunc(btn, state, x, y); }); }
void motion_cb(int x, int y) { AtCallbackBoundary([&] { MotionFunc(x, y); }); }
void keyboard_cb(unsigned char key, int x, int y) {
  AtCallbackBoundary([&] {
    // A byte key prints as the script layer shows bytes: b'a'.
    std::string text = "b";
    text += console::py_repr_str(std::string(1, static_cast<char>(key)));
    KeyboardFunc(text, x, y);
  });
}
void special_cb(int key, int x, int y) { AtCallbackBoundary([&] { KeyboardFunc(std::to_string(key), x, y); }); }
void reshape_cb(int w, int h) { AtCallbackBoundary([&] { ChangeSizeFunc(w, h); }); }

}  // namespace

int RunDemo(const std::vector<std::string>& args) {
  const DemoOptions options = parse(args);
  // A reproducible run: the same random numbers (textures, grass) and the same frame times.
  if (options.fixedStep) SeedRandom(0);

  if (!glutGet(GLUT_INIT_STATE)) {
    int argc = 1;
    char name[] = "vorn-demo";
    char* argv[] = {name, nullptr};
    glutInit(&argc, argv);
  }
  SetDisplayMode(GLUT_SINGLE | GLUT_RGBA | GLUT_DEPTH | GLUT_MULTISAMPLE);
  glutInitWindowSize(SCREEN_WIDTH, SCREEN_HEIGHT);
  CreateEngineWindow("Vorn - 3DWorld");

  // The folder Resources under the working directory, unless the caller names another
  // (the installed package passes the resources shipped inside it).
  const std::string ResDir =
      options.resources ? *options.resources : (std::filesystem::current_path() / "Resources").string();
  auto ResManager = PyGameResManager::Create(ResDir);
  const bool DXT_Support = ResManager->CheckCompressTextureFormat_DXT();
  console::print(DXT_Support);

  openGLScene = Vorn_3Dcene::Create();
  openGLScene->InitGL(SCREEN_WIDTH, SCREEN_HEIGHT);
  if (options.fixedStep) openGLScene->SetFixedTimeStep(*options.fixedStep);
  openGLScene->SetBGColor(0.1, 0.3, 0.5);
  openGLScene->SetAmbientColor(1.0, 1.0, 1.0);
  openGLScene->SetSceneFog(0.0, 20.0);
  openGLScene->DisableFog();
  pickDrawNode = std::dynamic_pointer_cast<Vorn_3DDrawNode>(openGLScene->CreateDrawNode());
  build_world(*openGLScene);

  driverInput = DriverInput{};
  glutDisplayFunc(options.frames ? &no_display_cb : &display_cb);
  glutMouseFunc(&mouse_cb);
  glutMotionFunc(&motion_cb);
  glutKeyboardFunc(&keyboard_cb);
  glutSpecialFunc(&special_cb);
  glutReshapeFunc(&reshape_cb);

  if (!options.frames) {
    RunMainLoop(&DrawFunc);
    return 0;
  }
  for (int i = 0; i < *options.frames; ++i) {
    glutMainLoopEvent();
    RethrowCallbackError();
    DrawFunc();
  }
  if (options.screenshot && !SaveWindowPNG(*options.screenshot, SCREEN_WIDTH, SCREEN_HEIGHT)) return 1;
  return 0;
}

}  // namespace vorn
