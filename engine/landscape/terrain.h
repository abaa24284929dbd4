#pragma once
// Vorn_3DTerrain: a plane whose heights and textures come from files (the readers are
// in terrain_files.h). The height file replaces the grid; the blend file gives
// submesh 0 its blend map on channel 0 and up to five layer textures with their
// repeat densities on channels 1 to 5, which FX_TERRAIN mixes.
//
// A file that is not there as named is looked up in the resource index. Both loaders
// read and check the whole file before they change the terrain: a missing file is a
// FileNotFoundError, an unreadable one an OSError, bad content a ValueError, and the
// terrain keeps its grid, heights and textures.
#include <string>

#include "landscape/plane.h"

namespace vorn {

class Vorn_3DTerrain : public Vorn_3DPlane {
 public:
  explicit Vorn_3DTerrain(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  // The default grid: 128 by 128 tiles of 1.0 with texture coordinates.
  void CreateTerrain();
  // Replaces submesh 0 by the grid of a height file: binary with readflag "rb", text
  // with any other flag.
  void LoadHeightFile(const std::string& FileName, const std::string& readflag = "rb", double tilesize = 1.0);
  // The blend map FileName + "_Blend1.tga" on channel 0, then the record's five layer
  // textures and densities on channels 1 to 5. Only "rb" reads; any other flag opens
  // the file and leaves the terrain as it is.
  void LoadBlendFile(const std::string& FileName, const std::string& readflag = "rb");
};

}  // namespace vorn
