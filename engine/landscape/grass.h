#pragma once
// Vorn_3DGrass: a patch of grass blades spread over a disc around the node, each blade
// a column of stacked quads that FX_GRASS sways in the vertex program.
//   grass.cpp     blade generation and dropping the blades onto the ground
//   grass_gl.cpp  the swing uniforms of the draw
//
// Every submesh is GL_QUADS with the layout GL_T2F_N3F_V3F. A blade is a column of
// vertex pairs (left edge, right edge) from its root upwards; u is 0 on the left edge
// and 1 on the right, v runs from 0 at the root to 1 at the tip, and the program scales
// the swing by v so that roots stay put.
#include <cstddef>

#include "node/game_node.h"

namespace vorn {

class Vorn_3DGrass : public Vorn_3DGameNode {
 public:
  // Blades per submesh; a larger patch is split over several submeshes.
  static constexpr int kMaxBladesPerSubMesh = 3000;
  // The most vertices one CreateGrass may make (about half a gigabyte of vertex data):
  // a tiny subsectionH or a huge density from a script's typo is refused instead.
  static constexpr std::size_t kMaxVertices = std::size_t{1} << 22;

  explicit Vorn_3DGrass(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  // Makes floor(density) blades within radius of the node, in submeshes "submesh_0",
  // "submesh_1", ... of at most kMaxBladesPerSubMesh blades each (at least one
  // submesh), then BuildVBO() and FX_GRASS. Widths lie in [minW, maxW], heights in
  // [minH, maxH]; a blade of height H has int(H / subsectionH) sections, at least one.
  // Random values come from RANDOM01 and RANDOM11, so SeedRandom repeats a patch.
  // ValueError, before anything changes, for a value that is not finite, a negative
  // density, width or height, subsectionH not above 0 or above maxH, or a patch of more
  // than kMaxVertices vertices.
  void CreateGrass(double radius = 2.0, double density = 50.0, double minW = 0.4, double maxW = 0.6,
                   double minH = 0.3, double maxH = 0.6, double subsectionH = 0.2);
  void SetSwing(double swingSpeed, double swingRegion);

  // Raises every vertex by the scene's ground height (Get3DTerrainY) below it, at the
  // vertex's x and z plus the node's world x and z, then rebuilds the buffers. The
  // ground is asked once per blade edge (the vertices of an edge share x and z). The
  // blades keep that shape: a node moved later does not follow the ground. standOn is
  // accepted for the base operation's signature and not used. Without a scene prints
  // "No SceneInstance" and changes nothing.
  void StandOnGround(bool standOn = true) override;

  // The base operation, then SwingSpeed and SwingRegion into the program in use.
  void draw_begin_shader(int submeshIndex) override;
  // With its own program, the submeshes draw with the world matrix on the modelview
  // stack, since that program does not read uModelMatrix (world_placed_draw.h).
  void draw_allsubmesh() override;

  // The radius of the last CreateGrass (30 until then). Scripts read the initial value
  // back as an int and a radius as the float it is: statckRIsInt says which.
  double statckR = 30;
  bool statckRIsInt = true;
  double SwingSpeed = 1.0;
  double SwingRegion = 0.1;
};

}  // namespace vorn
