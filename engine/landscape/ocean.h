#pragma once
// Vorn_3DOcean: a plane drawn with FX_OCEAN. All motion happens in the vertex program;
// the node holds the wave and bump values the program reads and three texture slots
// on submesh 0: the x wave texture (channel 0), the y wave texture (1) and the depth
// texture (2).
//   ocean.cpp     creation, fields and textures
//   ocean_gl.cpp  the wave uniforms of the draw
#include <string>

#include "landscape/plane.h"

namespace vorn {

class Vorn_3DOcean : public Vorn_3DPlane {
 public:
  explicit Vorn_3DOcean(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  // CreatePlane(rows, cows, tilesize), then FX_OCEAN.
  void CreateOcean(int rows = 128, int cows = 128, double tilesize = 1.0);
  void SetWave(double Freq, double Amp);
  // The two wave textures on channels 0 and 1 of submesh 0.
  void SetWaveTexture(const std::string& XWaveTexFile, const std::string& YWaveTexFile);
  // The depth texture on channel 2 of submesh 0. SetDepthFrTexture is the same
  // operation under its second name: whichever runs last wins.
  void SetDepthTexture(const std::string& DepthTexFile);
  void SetDepthFrTexture(const std::string& DepthTexFile) { SetDepthTexture(DepthTexFile); }
  void SetBump(double BumpScale, double BumpSpeedX, double BumpSpeedY);

  // The base operation, then the wave and bump fields into the program in use.
  void draw_begin_shader(int submeshIndex) override;
  // With its own program, the submeshes draw with the world matrix on the modelview
  // stack, since that program does not read uModelMatrix (world_placed_draw.h).
  void draw_allsubmesh() override;

  double WaveFreq = 0.5;
  double WaveAmp = 0.1;
  double BumpScale = 0.8;
  double BumpSpeedX = 0.8;
  double BumpSpeedY = 0.8;
};

}  // namespace vorn
