// Cube maps: six face pictures of one directory in one GL texture, registered with
// the resource manager and put on a submesh as a dynamic texture.
#include <epoxy/gl.h>

#include <array>
#include <filesystem>
#include <string>
#include <system_error>
#include <variant>

#include "core/console.h"
#include "core/errors.h"
#include "core/gl_state_guard.h"
#include "node/game_node.h"
#include "node/node_textures_read.h"
#include "resource/image_path.h"
#include "resource/res_manager.h"
#include "resource/res_manager.h"

namespace fs = std::filesystem;

namespace vorn {
namespace {

constexpr std::array<const char*, 6> kCubeFaces = {"right.jpg", "left.jpg",  "top.jpg",
                                                   "bottom.jpg", "front.jpg", "back.jpg"};

fs::path normal_dir(const fs::path& p) {
  std::error_code ec;
  fs::path out = fs::weakly_canonical(p, ec);
  if (ec) out = p.lexically_normal();
  if (!out.has_filename()) out = out.parent_path();
  return out;
}

// The face file inside `dir`: the index's match in that directory, else the file
// standing there (the index may predate it).
std::optional<std::string> find_face(const PyGameResManager& res, const std::string& face, const fs::path& dir) {
  const ResPath found = res.GetResPath(face);
  std::vector<std::string> candidates;
  if (const auto* one = std::get_if<std::string>(&found)) candidates.push_back(*one);
  if (const auto* many = std::get_if<std::vector<std::string>>(&found)) candidates = *many;
  for (const std::string& path : candidates) {
    if (normal_dir(fs::path(path).parent_path()) == dir && PathExists(path)) return path;
  }
  const std::string direct = (dir / face).string();
  if (PathExists(direct)) return direct;
  return std::nullopt;
}

}  // namespace

bool Vorn_3DGameNode::LoadSubMeshCubeMapTextureFromFile(int submeshIndex, const std::string& cubeTextureDir) {
  constexpr const char* op = "Vorn_3DGameNode.LoadSubMeshCubeMapTextureFromFile";
  gl_state::CheckContext(op);
  if (!ResManagerInstance) throw RuntimeError(std::string(op) + ": no ResManagerInstance; create the PyGameResManager first");
  if (!TextureArray.find(submeshIndex)) {
    throw KeyError(std::string(op) + ": submesh " + std::to_string(submeshIndex) +
                   " has no texture entry (create it with CreateSubMesh)");
  }

  GLuint cubeMapTexID = 0;
  glGenTextures(1, &cubeMapTexID);
  glBindTexture(GL_TEXTURE_CUBE_MAP, cubeMapTexID);
  const fs::path CurrCubeTexDir = normal_dir(fs::path(ResManagerInstance->GetResRootDir()) / cubeTextureDir);

  GLint alignment = 4;
  glGetIntegerv(GL_UNPACK_ALIGNMENT, &alignment);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  int width = 0, height = 0, depth = 24;
  for (std::size_t i = 0; i < kCubeFaces.size(); ++i) {
    const std::optional<std::string> path = find_face(*ResManagerInstance, kCubeFaces[i], CurrCubeTexDir);
    std::optional<DecodedTexture> face = path ? ReadTextureFile(*path, false) : std::nullopt;
    // A face GL would refuse counts as lost too: cube faces are square and of one size.
    const bool usable = face && face->width == face->height && face->width > 0 && (i == 0 || face->width == width);
    if (!usable) {
      console::print("SkyBox Texture ", path ? *path : (CurrCubeTexDir / kCubeFaces[i]).string(), " Lost !");
      // The texture made so far stays; only the binding is undone.
      glPixelStorei(GL_UNPACK_ALIGNMENT, alignment);
      glBindTexture(GL_TEXTURE_CUBE_MAP, 0);
      return false;
    }
    width = face->width;
    height = face->height;
    const bool rgba = face->format == "RGBA";
    depth = rgba ? 32 : 24;
    const GLenum format = rgba ? GL_RGBA : GL_RGB;
    glTexImage2D(static_cast<GLenum>(GL_TEXTURE_CUBE_MAP_POSITIVE_X + i), 0, static_cast<GLint>(format), width, height,
                 0, format, GL_UNSIGNED_BYTE, face->pixels->data());
  }
  glPixelStorei(GL_UNPACK_ALIGNMENT, alignment);
  // Clamped at the edges: repeating would bleed the opposite border into each seam.
  glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
  glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
  glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
  glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_WRAP_R, GL_CLAMP_TO_EDGE);
  glBindTexture(GL_TEXTURE_CUBE_MAP, 0);

  ResManagerInstance->AddDynamicTexture(cubeMapTexID, width, height, "CUBE", depth);
  SetSubMeshDynamicTextureID(submeshIndex, cubeMapTexID, 0);
  return true;
}

}  // namespace vorn
