// The ocean's grid, fields and texture slots.
#include "landscape/ocean.h"

#include "shader/fx_3d.h"
#include "shader/tex_id.h"

namespace vorn {

Vorn_3DOcean::Vorn_3DOcean(double x_, double y_, double z_, const Ptr& parent_) : Vorn_3DPlane(x_, y_, z_, parent_) {
  NodeType = "3DOcean";
}

void Vorn_3DOcean::CreateOcean(int rows, int cows, double tilesize) {
  CreatePlane(rows, cows, tilesize);
  ApplyFX(Vorn_3DFX::FX_OCEAN);
}

void Vorn_3DOcean::SetWave(double Freq, double Amp) {
  WaveFreq = Freq;
  WaveAmp = Amp;
}

void Vorn_3DOcean::SetWaveTexture(const std::string& XWaveTexFile, const std::string& YWaveTexFile) {
  LoadSubMeshTextureFromFile(0, Vorn_TEXID::TEX_OCEAN_WAVEBUMP1, XWaveTexFile);
  LoadSubMeshTextureFromFile(0, Vorn_TEXID::TEX_OCEAN_WAVEBUMP2, YWaveTexFile);
}

void Vorn_3DOcean::SetDepthTexture(const std::string& DepthTexFile) {
  LoadSubMeshTextureFromFile(0, Vorn_TEXID::TEX_OCEAN_REFRACT, DepthTexFile);
}

void Vorn_3DOcean::SetBump(double BumpScale_, double BumpSpeedX_, double BumpSpeedY_) {
  BumpScale = BumpScale_;
  BumpSpeedX = BumpSpeedX_;
  BumpSpeedY = BumpSpeedY_;
}

}  // namespace vorn
