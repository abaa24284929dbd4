#pragma once
// OpenGL enumerant values that node data stores (primitive types, culling, blending,
// interleaved layouts, buffer targets). The node's data code needs the numbers but no
// GL: node_buffers_gl.cpp checks them against the real headers at compile time.
namespace vorn::glc {

inline constexpr int NONE = 0;
inline constexpr int LINES = 0x0001;
inline constexpr int TRIANGLES = 0x0004;
inline constexpr int QUADS = 0x0007;
inline constexpr int BLEND = 0x0BE2;
inline constexpr int CW = 0x0900;
inline constexpr int CCW = 0x0901;

inline constexpr int V3F = 0x2A21;
inline constexpr int N3F_V3F = 0x2A25;
inline constexpr int T2F_V3F = 0x2A27;
inline constexpr int T2F_N3F_V3F = 0x2A2B;
inline constexpr int T2F_C4F_N3F_V3F = 0x2A2C;
inline constexpr int T4F_C4F_N3F_V4F = 0x2A2D;

inline constexpr int ARRAY_BUFFER = 0x8892;
inline constexpr int ELEMENT_ARRAY_BUFFER = 0x8893;

}  // namespace vorn::glc
