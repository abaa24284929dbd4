// Writes the demonstration's resources, drawn and modelled procedurally so nothing is
// downloaded: "wall.jpg", "walker.glb" (the animated character), "walker.fbx" (the same
// converted to ASCII FBX) and, in "Terrain", the
// landscape's height and blend files with their textures.
// Usage: make_demo_assets <Resources folder>
#include <cstdio>
#include <filesystem>

#include "brick_wall.h"
#include "fbx_convert.h"
#include "terrain_assets.h"
#include "walker_model.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_demo_assets <Resources folder>\n");
    return 2;
  }
  const std::filesystem::path dir(argv[1]);
  std::error_code ec;
  std::filesystem::create_directories(dir, ec);
  bool ok = vorn::tools::WriteBrickWallJPEG((dir / "wall.jpg").string());
  const std::string walker = (dir / "walker.glb").string();
  if (!vorn::tools::WriteWalkerGLB(walker)) {
    std::fprintf(stderr, "make_demo_assets: cannot write %s\n", walker.c_str());
    ok = false;
  } else if (!vorn::tools::ConvertModelToFBX(walker, (dir / "walker.fbx").string(), "fbxa")) {
    ok = false;
  }
  if (!vorn::tools::WriteIslandTerrain((dir / "Terrain").string())) {
    std::fprintf(stderr, "make_demo_assets: cannot write the terrain files in %s\n", (dir / "Terrain").string().c_str());
    ok = false;
  }
  return ok ? 0 : 1;
}
