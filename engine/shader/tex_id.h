#pragma once
// Vorn_TEXID: texture-unit numbers by role. Three groups reuse the same numbers; each
// applies to the programs of its kind (plain nodes, ocean, terrain).
namespace vorn {

class Vorn_TEXID {
 public:
  // Plain node programs.
  static constexpr int TEX_DIFFUSE = 0;
  static constexpr int TEX_MASK = 1;
  static constexpr int TEX_ENVREFLECT = 2;
  // Ocean.
  static constexpr int TEX_OCEAN_WAVEBUMP1 = 0;
  static constexpr int TEX_OCEAN_WAVEBUMP2 = 1;
  static constexpr int TEX_OCEAN_REFRACT = 2;
  static constexpr int TEX_OCEAN_REFLECT = 3;
  // Terrain.
  static constexpr int TEX_TERRAIN_BLEND = 0;
  static constexpr int TEX_TERRAIN_LAYER1 = 1;
  static constexpr int TEX_TERRAIN_LAYER2 = 2;
  static constexpr int TEX_TERRAIN_LAYER3 = 3;
  static constexpr int TEX_TERRAIN_LAYER4 = 4;
  static constexpr int TEX_TERRAIN_SHADOW = 5;
};

}  // namespace vorn
