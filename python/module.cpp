// The extension module _engine; Vorn3DGameEngine/__init__.py re-exports it.
#include "bind_common.h"

namespace py = pybind11;
using namespace vorn::py_bind;

PYBIND11_MODULE(_engine, m) {
  m.doc() =
      "Vorn3D engine core. Import the package Vorn3DGameEngine, not this module.\n\n"
      "Ownership: the engine holds nodes in shared pointers. A scene owns its registries,\n"
      "a node owns its children; parent and scene references are non-owning. A Python\n"
      "object handed to the engine stays alive as long as the engine holds it.";
  // Errors and the console come first: every later binding may raise or print.
  bind_errors(m);
  bind_console(m);
  // Core value types before anything that takes or returns them.
  bind_core(m);
  // The window layer before anything that needs a GL context.
  bind_glut(m);
  // Shader text and programs depend only on the core.
  bind_fx_2d(m);
  bind_shader(m);
  // Images and readers need only the core; the resource manager builds the shader manager.
  bind_resource_images(m);
  bind_resource(m);
  // Actions before nodes: a node's RunAction takes action objects.
  bind_actions(m);
  bind_node(m);
  bind_camera(m);
  bind_shapes(m);
  bind_shapes_solids(m);
  bind_landscape(m);
  // Terrain derives from the plane bound just above.
  bind_terrain(m);
  // The tile map derives from the plane.
  bind_tiled_map(m);
  // Skin animation data before the mesh node that holds it.
  bind_mesh_skin(m);
  bind_mesh(m);
  bind_overlay(m);
  // The scene uses every class above.
  bind_scene(m);
  // Ocean and grass add their factories to the scene's class, and the ocean derives
  // from the plane of bind_landscape.
  bind_water_grass(m);
  // Particles add their factory to the scene's class.
  bind_particles(m);
  // Music, sounds and fonts join the resource manager's class.
  bind_audio(m);
  // Globals last: object globals refer to classes bound above.
  bind_globals(m);
}
