#pragma once
// The demonstration's landscape: a 128 by 128 height field with a flat middle, a pond
// and hills around, its blend record and mask, the layer textures and a grass blade.
#include <string>

namespace vorn::tools {

// The ground height the files describe at world (x, z), for the demo and its tests.
double IslandHeight(double x, double z);

// Writes "island.hei", "island.ter", "island.ter_Blend1.tga", "island_mask.png", the
// layer textures and "grass_blade.png" into `dir`; false when a file can't be written.
bool WriteIslandTerrain(const std::string& dir);

}  // namespace vorn::tools
