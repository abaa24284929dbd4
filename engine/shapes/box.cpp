// The box: geometry, texture coordinates and its pick.
#include "shapes/box.h"

#include "core/math_util.h"
#include "shapes/solid_mesh.h"

namespace vorn {
namespace {

// Face normals in the order of the faces.
constexpr double kFaceNormals[6][3] = {{0, 0, 1}, {0, 0, -1}, {0, 1, 0}, {0, -1, 0}, {1, 0, 0}, {-1, 0, 0}};

// Per face, the corner signs of x, y, z. Each face is the mirror of its partner with
// the corner order reversed, so every face winds counter-clockwise seen from outside.
constexpr double kCornerSigns[6][4][3] = {
    {{1, 1, 1}, {-1, 1, 1}, {-1, -1, 1}, {1, -1, 1}},          // +z
    {{1, 1, -1}, {1, -1, -1}, {-1, -1, -1}, {-1, 1, -1}},      // -z
    {{-1, 1, -1}, {-1, 1, 1}, {1, 1, 1}, {1, 1, -1}},          // +y
    {{-1, -1, -1}, {1, -1, -1}, {1, -1, 1}, {-1, -1, 1}},      // -y
    {{1, 1, 1}, {1, -1, 1}, {1, -1, -1}, {1, 1, -1}},          // +x
    {{-1, 1, 1}, {-1, 1, -1}, {-1, -1, -1}, {-1, -1, 1}},      // -x
};

// Coordinates of the faces: the first, fourth and sixth face get the first set.
constexpr double kUVa[8] = {0, 1, 1, 1, 1, 0, 0, 0};
constexpr double kUVb[8] = {0, 1, 0, 0, 1, 0, 1, 1};

}  // namespace

Vorn_3DBox::Vorn_3DBox(double x, double y, double z, const Ptr& parent) : Vorn_3DGameNode(x, y, z, parent) {
  NodeType = "3DBox";
}

std::array<Vorn_3DBox::Face, 6> Vorn_3DBox::FaceVertexList() const {
  const double half[3] = {size_x * 0.5, size_y * 0.5, size_z * 0.5};
  std::array<Face, 6> faces;
  for (int f = 0; f < 6; ++f)
    for (int c = 0; c < 4; ++c)
      faces[f][c] = Vector3(kCornerSigns[f][c][0] * half[0], kCornerSigns[f][c][1] * half[1],
                            kCornerSigns[f][c][2] * half[2]);
  return faces;
}

void Vorn_3DBox::CreateBox(double sizeX, double sizeY, double sizeZ) {
  size_x = sizeX;
  size_y = sizeY;
  size_z = sizeZ;
  solid::reset_geometry(*this);
  const int s = CreateSubMesh("0");
  SetSubMeshShapeType(s, glc::QUADS);
  for (const Face& face : FaceVertexList()) {
    const std::array<double, 12> corners = {face[0].x, face[0].y, face[0].z, face[1].x, face[1].y, face[1].z,
                                            face[2].x, face[2].y, face[2].z, face[3].x, face[3].y, face[3].z};
    PushQuadVertex_Postion(s, corners);
  }
  for (const auto& n : kFaceNormals) {
    const std::array<double, 12> normals = {n[0], n[1], n[2], n[0], n[1], n[2], n[0], n[1], n[2], n[0], n[1], n[2]};
    PushQuadVertex_Normal(s, normals);
  }
  BuildVBO();
}

void Vorn_3DBox::GenTexCoords(int s, bool RebuildVBO) {
  if (!solid::has_uv(*this, s, "Vorn_3DBox.GenTexCoords")) {
    for (int f = 0; f < 6; ++f) {
      const bool first = f == 0 || f == 3 || f == 5;
      PushQuadVertex_UV(s, std::span<const double, 8>(first ? kUVa : kUVb, 8));
    }
  }
  solid::add_uv_to_layout(*this, s);
  if (RebuildVBO) BuildVBO();
}

std::optional<PickDetail> Vorn_3DBox::checkBoxPick(const Vector3& Pt, const Vector3& Dir, double /*Length*/) const {
  const FloatList16 mat_float_list = MatrixToFloatList(GetWorldMatrix());
  for (const Face& face : FaceVertexList()) {
    Face world;
    for (int c = 0; c < 4; ++c) world[c] = Vec3MulMatrix(face[c], mat_float_list);
    // The quad as the triangles (0, 1, 2) and (0, 2, 3).
    for (const auto& tri : {std::array<int, 3>{0, 1, 2}, std::array<int, 3>{0, 2, 3}}) {
      const Vector3 &V1 = world[tri[0]], &V2 = world[tri[1]], &V3 = world[tri[2]];
      const auto [Result, Position] = IntersectTriangle(Pt, Dir, V1, V2, V3);
      if (Result) return PickDetail{Position, {V1, V2, V3}};
    }
  }
  return std::nullopt;
}

}  // namespace vorn
