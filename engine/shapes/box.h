#pragma once
// Vorn_3DBox: an axis-aligned box centred on the node, six flat quads with their own
// vertices and no index buffer. Its pick tests the exact box from its sizes, whatever
// its submeshes hold.
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "core/vector3.h"
#include "node/game_node.h"

namespace vorn {

class Vorn_3DBox : public Vorn_3DGameNode {
 public:
  using Face = std::array<Vector3, 4>;

  explicit Vorn_3DBox(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  // Replaces the node's geometry by the box: submesh 0, GL_QUADS, faces +z, -z, +y,
  // -y, +x, -x, each wound counter-clockwise seen from outside.
  void CreateBox(double size_x = 1.0, double size_y = 1.0, double size_z = 1.0);
  void GenTexCoords(int submeshIndex) override { GenTexCoords(submeshIndex, true); }
  // Pushes one quad of coordinates per face unless the submesh has them already, adds
  // them to the layout and rebuilds the buffers when RebuildVBO is set.
  void GenTexCoords(int submeshIndex, bool RebuildVBO);

  // The six faces in local space, in the order CreateBox pushes them.
  std::array<Face, 6> FaceVertexList() const;
  // The box's own pick: the ray against the twelve world-space triangles of its faces
  // (WorldMatrix as of the last update). The first hit in face order, or nothing.
  // Length is accepted for the pick interface; the ray is an infinite line.
  std::optional<PickDetail> checkBoxPick(const Vector3& Pt, const Vector3& Dir, double Length = 99999.0) const;
  // The node's pick is the box's own.
  std::optional<PickDetail> checkPick(const Vector3& Pt, const Vector3& Dir, double Length = 99999.0) override {
    return checkBoxPick(Pt, Dir, Length);
  }

  std::optional<unsigned> cubeMapTexID;
  int cubeMapWidth = 0;
  int cubeMapHeight = 0;
  std::shared_ptr<const std::vector<std::uint8_t>> cubeMapData;
  double size_x = 1.0;
  double size_y = 1.0;
  double size_z = 1.0;
};

}  // namespace vorn
