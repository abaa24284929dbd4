#pragma once
// Building blocks the solid primitives share: step checks, grids of quads split into
// triangles, fans and rings. Positions and normals go through the node's vertex
// interface; counts are 64-bit so that no step count can overflow the index math.
#include <cmath>
#include <cstdint>
#include <string>

#include "core/errors.h"
#include "node/game_node.h"

namespace vorn::solid {

// Step counts divide angles: 0 is a ZeroDivisionError, named after the operation.
inline void require_nonzero(std::int64_t steps, const char* where, const char* name) {
  if (steps == 0) throw ZeroDivisionError(std::string(where) + ": " + name + " is 0 (division by zero)");
}

// Vertex count beyond which a solid is refused: far past what 16-bit indices address,
// so only a mistaken step count gets there, and it should fail before memory runs out.
inline constexpr std::int64_t kMaxSolidVertices = std::int64_t{1} << 24;

// ValueError for a solid of more than kMaxSolidVertices vertices (negative counts
// stand for empty grids).
inline void require_size(std::int64_t vertices, const char* where) {
  if (vertices > kMaxSolidVertices)
    throw ValueError(std::string(where) + ": " + std::to_string(vertices) +
                     " vertices are too many for one solid (step counts too large)");
}

// Grid vertices (rows + 1) * (cols + 1), 0 when either count is negative.
inline std::int64_t grid_vertices(std::int64_t rows, std::int64_t cols) {
  return rows < 0 || cols < 0 ? 0 : (rows + 1) * (cols + 1);
}

// Clears the node's geometry before a solid is built anew: the submeshes and also
// the buffers of the former shape, which CleanSubMesh keeps, so that no stale index
// buffer or vertex buffer outlives it.
inline void reset_geometry(Vorn_3DGameNode& n) {
  n.CleanSubMesh();
  n.VVBOArray.clear();
  n.IVBOArray.clear();
  n.SubMeshShapeCount.clear();
}

// Reserves room for `count` more vertices in the position and normal arrays of s
// (ignored for counts no real mesh reaches, which fail in the pushes instead).
inline void reserve_vertices(Vorn_3DGameNode& n, int s, std::int64_t count) {
  if (count <= 0 || count > kMaxSolidVertices) return;
  auto& positions = n.VertexArray_Positon.at(s);
  auto& normals = n.VertexArray_Normal.at(s);
  positions.reserve(positions.size() + static_cast<std::size_t>(count));
  normals.reserve(normals.size() + static_cast<std::size_t>(count));
}

inline void push_vertex(Vorn_3DGameNode& n, int s, double x, double y, double z, double nx, double ny, double nz) {
  n.PushVertex_Position(s, x, y, z);
  n.PushVertex_Normal(s, nx, ny, nz);
}

// A unit normal; a zero vector stays zero (a degenerate surface has no direction).
inline void push_unit_normal_vertex(Vorn_3DGameNode& n, int s, double x, double y, double z, double nx, double ny,
                                    double nz) {
  const double len = std::sqrt(nx * nx + ny * ny + nz * nz);
  if (len > 0.0) nx /= len, ny /= len, nz /= len;
  push_vertex(n, s, x, y, z, nx, ny, nz);
}

// Triangles over a grid of (rows + 1) x (cols + 1) vertices laid out row by row from
// `base`. Rows run along the surface's second direction and columns around it; with
// `outwardCCW` each triangle winds counter-clockwise seen from the side the normals
// point to when row and column directions form a right-handed frame with the normal
// (the sphere's: columns towards +z from +x, rows upwards).
inline void push_grid_indices(Vorn_3DGameNode& n, int s, std::int64_t base, std::int64_t rows, std::int64_t cols,
                              bool outwardCCW = true) {
  for (std::int64_t row = 0; row < rows; ++row) {
    for (std::int64_t col = 0; col < cols; ++col) {
      const std::int64_t a = base + row * (cols + 1) + col;
      const std::int64_t b = a + 1, c = a + cols + 1, d = a + cols + 2;
      if (outwardCCW) {
        n.PushTriangleVIndex(s, a, c, b);
        n.PushTriangleVIndex(s, b, c, d);
      } else {
        n.PushTriangleVIndex(s, a, b, c);
        n.PushTriangleVIndex(s, b, d, c);
      }
    }
  }
}

// A fan from `centre` over the rim vertices rimFirst .. rimFirst + steps, for a disc in
// a plane of constant y whose rim runs from +x towards +z. `up` picks the side that
// the triangles face (+y or -y).
inline void push_fan_indices(Vorn_3DGameNode& n, int s, std::int64_t centre, std::int64_t rimFirst,
                             std::int64_t steps, bool up) {
  for (std::int64_t k = 0; k < steps; ++k) {
    const std::int64_t r0 = rimFirst + k, r1 = r0 + 1;
    if (up)
      n.PushTriangleVIndex(s, centre, r1, r0);
    else
      n.PushTriangleVIndex(s, centre, r0, r1);
  }
}

// A disc in the plane y: its centre, then steps + 1 rim vertices (the seam twice),
// with a flat normal (0, +-1, 0) and a fan facing that normal.
inline void push_disc(Vorn_3DGameNode& n, int s, double radius, double y, std::int64_t steps, double angle,
                      bool up) {
  const std::int64_t base = static_cast<std::int64_t>(n.VertexArray_Positon.at(s).size());
  const double ny = up ? 1.0 : -1.0;
  reserve_vertices(n, s, steps + 2);
  push_vertex(n, s, 0.0, y, 0.0, 0.0, ny, 0.0);
  for (std::int64_t k = 0; k <= steps; ++k) {
    const double a = static_cast<double>(k) * angle;
    push_vertex(n, s, radius * std::cos(a), y, radius * std::sin(a), 0.0, ny, 0.0);
  }
  push_fan_indices(n, s, base, base + 1, steps, up);
}

// A wall around the y axis from y0 to y1: two rings of steps + 1 vertices (lower
// first) with unit radial normals, pointing away from the axis when `outward`.
inline void push_wall(Vorn_3DGameNode& n, int s, double radius, double y0, double y1, std::int64_t steps,
                      double angle, bool outward) {
  const std::int64_t base = static_cast<std::int64_t>(n.VertexArray_Positon.at(s).size());
  const double sign = outward ? 1.0 : -1.0;
  reserve_vertices(n, s, 2 * (steps + 1));
  for (const double y : {y0, y1}) {
    for (std::int64_t k = 0; k <= steps; ++k) {
      const double a = static_cast<double>(k) * angle;
      const double c = std::cos(a), sn = std::sin(a);
      push_vertex(n, s, radius * c, y, radius * sn, sign * c, 0.0, sign * sn);
    }
  }
  push_grid_indices(n, s, base, 1, steps, outward);
}

// Turns a layout that has no texture coordinates into the one that has them.
inline void add_uv_to_layout(Vorn_3DGameNode& n, int s) {
  if (int* layout = n.VertexDescArray.find(s)) {
    if (*layout == glc::N3F_V3F)
      *layout = glc::T2F_N3F_V3F;
    else if (*layout == glc::V3F)
      *layout = glc::T2F_V3F;
  }
}

// Whether the submesh already carries texture coordinates (KeyError for an unknown one).
inline bool has_uv(const Vorn_3DGameNode& n, int s, const char* where) {
  const Vec2Array* uv = n.VertexArray_UV.find(s);
  if (!uv) throw KeyError(std::string(where) + ": submesh " + std::to_string(s) + " does not exist");
  return !uv->empty();
}

}  // namespace vorn::solid
