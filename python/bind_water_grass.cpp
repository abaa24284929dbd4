// Water and grass: Vorn_3DOcean, Vorn_3DGrass and the scene factories that make them.
// Bound after the scene: the factories are added to the scene's class.
#include <memory>
#include <string>

#include "bind_node.h"
#include "landscape/grass.h"
#include "landscape/ocean.h"
#include "node_trampoline.h"
#include "node_views.h"
#include "scene/scene.h"

namespace vorn::py_bind {
namespace {

using Ocean = Vorn_3DOcean;
using Grass = Vorn_3DGrass;
using Scene = Vorn_3Dcene;
using OceanClass = py::class_<Ocean, Vorn_3DPlane, PyNode<Ocean>, std::shared_ptr<Ocean>>;
using GrassClass = py::class_<Grass, Vorn_3DGameNode, PyNode<Grass>, std::shared_ptr<Grass>>;
using SceneClass = py::class_<Scene, NodeScene, std::shared_ptr<Scene>>;

void bind_ocean(py::module_& m) {
  OceanClass cls(m, "Vorn_3DOcean",
                 "A Vorn_3DPlane drawn with FX_OCEAN: two summed sine waves move the surface in the\n"
                 "vertex program over the scene's time. The node holds the wave and bump values the\n"
                 "program reads each draw, and three textures on submesh 0: channel 0 the x wave\n"
                 "texture, 1 the y wave texture, 2 the depth texture. NodeType \"3DOcean\".",
                 py::dynamic_attr(), twin_type_setup());
  def_node_init<Ocean, PyNode<Ocean>>(cls, "Vorn_3DOcean",
                                      "__init__(self, x=0, y=0, z=0, parent=None)\n\n"
                                      "An empty ocean with the default wave and bump values; CreateOcean builds\n"
                                      "the surface.");
  cls.def("CreateOcean", &Ocean::CreateOcean, py::arg("rows") = 128, py::arg("cows") = 128,
          py::arg("tilesize") = 1.0,
          "CreatePlane(rows, cows, tilesize), then ApplyFX(Vorn_3DFX.FX_OCEAN). The errors are\n"
          "CreatePlane's (ValueError for negative or too large counts).")
      .def("SetWave", &Ocean::SetWave, py::arg("Freq"), py::arg("Amp"), "Stores WaveFreq and WaveAmp.")
      .def("SetWaveTexture", &Ocean::SetWaveTexture, py::arg("XWaveTexFile"), py::arg("YWaveTexFile"),
           "Loads the x wave texture on channel 0 and the y wave texture on channel 1 of\n"
           "submesh 0 (LoadSubMeshTextureFromFile; a missing file prints \"Can't find texture:\").")
      .def("SetDepthTexture", &Ocean::SetDepthTexture, py::arg("DepthTexFile"),
           "Loads the depth texture on channel 2 of submesh 0.")
      .def("SetDepthFrTexture", &Ocean::SetDepthFrTexture, py::arg("DepthTexFile"),
           "SetDepthTexture under a second name: the same channel 2, so whichever runs last wins.")
      .def("SetBump", &Ocean::SetBump, py::arg("BumpScale"), py::arg("BumpSpeedX"), py::arg("BumpSpeedY"),
           "Stores BumpScale, BumpSpeedX and BumpSpeedY.")
      .def("draw_begin_shader", &Ocean::draw_begin_shader, py::arg("submeshIndex"),
           "The node's program switch, then uWaveFreq, uWaveAmp, uBumpScale, uBumpSpeedX and\n"
           "uBumpSpeedY from the fields, each where the program has it.")
      .def_readwrite("WaveFreq", &Ocean::WaveFreq, "Wave frequency, to uWaveFreq (0.5).")
      .def_readwrite("WaveAmp", &Ocean::WaveAmp, "Wave amplitude in world units, to uWaveAmp (0.1).")
      .def_readwrite("BumpScale", &Ocean::BumpScale, "Scale of the bump texture, to uBumpScale (0.8).")
      .def_readwrite("BumpSpeedX", &Ocean::BumpSpeedX, "Bump scrolling along x, to uBumpSpeedX (0.8).")
      .def_readwrite("BumpSpeedY", &Ocean::BumpSpeedY, "Bump scrolling along y, to uBumpSpeedY (0.8).");
}

void bind_grass(py::module_& m) {
  GrassClass cls(m, "Vorn_3DGrass",
                 "A patch of grass: blades of stacked quads spread over a disc around the node,\n"
                 "swaying in the vertex program (FX_GRASS) by SwingSpeed and SwingRegion. Every\n"
                 "submesh is GL_QUADS in the layout GL_T2F_N3F_V3F; u runs 0 to 1 across a blade and\n"
                 "v from 0 at the root to 1 at the tip. NodeType \"3DGrass\".",
                 py::dynamic_attr(), twin_type_setup());
  def_node_init<Grass, PyNode<Grass>>(cls, "Vorn_3DGrass",
                                      "__init__(self, x=0, y=0, z=0, parent=None)\n\n"
                                      "An empty patch; CreateGrass makes the blades.");
  cls.attr("kMaxBladesPerSubMesh") = Grass::kMaxBladesPerSubMesh;
  cls.def("CreateGrass", &Grass::CreateGrass, py::arg("radius") = 2.0, py::arg("density") = 50.0,
          py::arg("minW") = 0.4, py::arg("maxW") = 0.6, py::arg("minH") = 0.3, py::arg("maxH") = 0.6,
          py::arg("subsectionH") = 0.2,
          "Makes int(density) blades within radius of the node, at most 3000 a submesh\n"
          "(submeshes \"submesh_0\", \"submesh_1\", ...; the last takes the rest), widths in\n"
          "[minW, maxW], heights in [minH, maxH], int(height / subsectionH) sections a blade\n"
          "(at least one); then BuildVBO() and ApplyFX(Vorn_3DFX.FX_GRASS). Random values come\n"
          "from the engine's generator: SeedRandom(n) repeats a patch. ValueError, before any\n"
          "submesh is made, for a value that is not finite, a negative density, width or\n"
          "height, subsectionH not above 0 or above maxH, or a patch of over 4194304 vertices.")
      .def("SetSwing", &Grass::SetSwing, py::arg("swingSpeed"), py::arg("swingRegion"),
           "Stores SwingSpeed and SwingRegion.")
      .def("StandOnGround", &Grass::StandOnGround, py::arg("standOn") = true,
           "Raises every blade vertex by the scene's Get3DTerrainY at its x and z plus the\n"
           "node's world x and z (asked once per blade edge, whose vertices share x and z),\n"
           "then BuildVBO(). The blades keep that shape when the node\n"
           "moves later. standOn is accepted and not used. Without a scene prints\n"
           "\"No SceneInstance\" and changes nothing.")
      .def("draw_begin_shader", &Grass::draw_begin_shader, py::arg("submeshIndex"),
           "The node's program switch, then uSwingSpeed and uSwingRegion from the fields, each\n"
           "where the program has it.")
      .def_property(
          "statckR", [](const Grass& g) { return script_number(g.statckR, g.statckRIsInt); },
          [](Grass& g, py::handle v) {
            g.statckR = number_arg(v, "Vorn_3DGrass.statckR", "statckR");
            g.statckRIsInt = is_py_int(v);
          },
          "The radius of the last CreateGrass; 30 until then.")
      .def_readwrite("SwingSpeed", &Grass::SwingSpeed, "Speed of the sway, to uSwingSpeed (1.0).")
      .def_readwrite("SwingRegion", &Grass::SwingRegion, "Width of the sway in world units, to uSwingRegion (0.1).");
}

// A factory's parent argument: None or a node.
NodeScene::NodePtr parent_arg(py::handle parent, const char* factory) {
  return parent.is_none() ? nullptr : node_arg(parent, std::string("Vorn_3Dcene.") + factory);
}

void bind_factories(py::module_& m) {
  auto cls = py::reinterpret_borrow<SceneClass>(m.attr("Vorn_3Dcene"));
  cls.def(
         "CreateOcean",
         [](Scene& s, double x, double y, double z, py::handle parent) {
           return node_to_py(s.CreateOcean(x, y, z, parent_arg(parent, "CreateOcean")));
         },
         py::arg("x") = 0.0, py::arg("y") = 0.0, py::arg("z") = 0.0, py::arg("parent") = py::none(),
         "A Vorn_3DOcean of 128 by 128 tiles (CreateOcean()) with FX_OCEAN. A root ocean joins\n"
         "ObjectArray_3DTerrain, not ObjectArray_3DOcean, and so also answers Get3DTerrainY.")
      .def(
          "LoadOcean", [](Scene& s, const std::string& oceanDir) { return node_to_py(s.LoadOcean(oceanDir)); },
          py::arg("oceanDir"),
          "Element 0 of ObjectArray_3DOcean, or CreateOcean(0, 0, 0) while that registry is\n"
          "empty. CreateOcean registers in ObjectArray_3DTerrain, so in a plain scene every\n"
          "call makes one more ocean. oceanDir is not used.")
      .def(
          "CreateGrass",
          [](Scene& s, double x, double y, double z, py::handle parent, double radius, double density, double minW,
             double maxW, double minH, double maxH, double subsectionH) {
            return node_to_py(s.CreateGrass(x, y, z, parent_arg(parent, "CreateGrass"), radius, density, minW, maxW,
                                            minH, maxH, subsectionH));
          },
          py::arg("x") = 0.0, py::arg("y") = 0.0, py::arg("z") = 0.0, py::arg("parent") = py::none(),
          py::arg("radius") = 0.5, py::arg("density") = 50, py::arg("minW") = 0.3, py::arg("maxW") = 0.6,
          py::arg("minH") = 0.3, py::arg("maxH") = 0.6, py::arg("subsectionH") = 0.2,
          "A Vorn_3DGrass patch (CreateGrass with these values, see there for the ValueErrors)\n"
          "with FX_GRASS; a root patch joins ObjectArray_3D.");
}

}  // namespace

void bind_water_grass(py::module_& m) {
  bind_ocean(m);
  bind_grass(m);
  bind_factories(m);
}

}  // namespace vorn::py_bind
