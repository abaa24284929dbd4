#include "fbx_convert.h"

#include <assimp/Exporter.hpp>
#include <assimp/Importer.hpp>
#include <assimp/scene.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <vector>

#include "fbx_binary_repair.h"

namespace vorn::tools {
namespace {

template <typename Key>
void ToSeconds(Key* keys, unsigned count, double tps) {
  for (unsigned k = 0; k < count; ++k) keys[k].mTime /= tps;
}

bool RepairBinaryFile(const std::string& path) {
  std::vector<std::uint8_t> bytes;
  {
    std::ifstream in(path, std::ios::binary);
    bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  const auto repaired = AddFbxEndRecords(bytes);
  if (!repaired) {
    std::fprintf(stderr, "ConvertModelToFBX: %s: not a binary FBX file of version 7500 or later\n", path.c_str());
    return false;
  }
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(repaired->data()), static_cast<std::streamsize>(repaired->size()));
  return static_cast<bool>(out);
}

}  // namespace

bool ConvertModelToFBX(const std::string& in, const std::string& out, const std::string& formatId) {
  Assimp::Importer importer;
  // The importer owns the scene; the exporter only reads it after the key fix below.
  auto* scene = const_cast<aiScene*>(importer.ReadFile(in, 0));
  if (!scene) {
    std::fprintf(stderr, "ConvertModelToFBX: %s: %s\n", in.c_str(), importer.GetErrorString());
    return false;
  }
  for (unsigned a = 0; a < scene->mNumAnimations; ++a) {
    aiAnimation* anim = scene->mAnimations[a];
    const double tps = anim->mTicksPerSecond > 0 ? anim->mTicksPerSecond : 25.0;
    for (unsigned c = 0; c < anim->mNumChannels; ++c) {
      aiNodeAnim* ch = anim->mChannels[c];
      ToSeconds(ch->mPositionKeys, ch->mNumPositionKeys, tps);
      ToSeconds(ch->mRotationKeys, ch->mNumRotationKeys, tps);
      ToSeconds(ch->mScalingKeys, ch->mNumScalingKeys, tps);
    }
    anim->mDuration /= tps;
    anim->mTicksPerSecond = 1.0;
  }
  Assimp::Exporter exporter;
  if (exporter.Export(scene, formatId, out) != AI_SUCCESS) {
    std::fprintf(stderr, "ConvertModelToFBX: %s: %s\n", out.c_str(), exporter.GetErrorString());
    return false;
  }
  return formatId != "fbx" || RepairBinaryFile(out);
}

}  // namespace vorn::tools
