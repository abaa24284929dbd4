// Submesh maps, vertex interface, interleaving and bounding boxes (no GL: buffer
// objects hold their data until their first bind).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "node/game_node.h"

namespace vorn {
namespace {

using Node = Vorn_3DGameNode;

std::vector<float> vbo_data(const Node& n, int s) {
  const auto* vbo = n.VVBOArray.find(s);
  if (!vbo || !(*vbo)->float_data()) return {};
  return *(*vbo)->float_data();
}

TEST(NodeSubmesh, CreateDeleteAndRecreateOverwritesTheOldKey) {
  Node n;
  EXPECT_EQ(n.CreateSubMesh("a"), 0);
  EXPECT_EQ(n.CreateSubMesh("b", true), 1);
  EXPECT_EQ(n.CreateSubMesh("c", true, true), 2);
  EXPECT_EQ((std::vector<int>{n.VertexDescArray.at(0), n.VertexDescArray.at(1), n.VertexDescArray.at(2)}),
            (std::vector<int>{glc::N3F_V3F, glc::T2F_N3F_V3F, glc::T4F_C4F_N3F_V4F}));
  EXPECT_EQ(n.GetSubMeshIndex("zz"), -1);

  n.PushVertex_Position(2, 1, 2, 3);
  n.SetSubMeshColor(1, 0.5, 0.5, 0.5);
  n.DeleteSubMesh(1);
  // Names shift, keys do not; colours stay.
  EXPECT_EQ(n.SubMeshList, (std::vector<std::string>{"a", "c"}));
  EXPECT_EQ(n.VertexArray_Positon.keys(), (std::vector<int>{0, 2}));
  EXPECT_EQ(n.GetSubMeshColor(1)[0], 0.5);
  EXPECT_EQ(n.GetSubMeshIndex("c"), 1);

  // The next index is 2 again: it overwrites key 2 in place.
  EXPECT_EQ(n.CreateSubMesh("d"), 2);
  EXPECT_TRUE(n.VertexArray_Positon.at(2).empty());
  EXPECT_EQ(n.VertexDescArray.at(2), glc::N3F_V3F);
  EXPECT_EQ(n.VertexArray_Positon.keys(), (std::vector<int>{0, 2}));

  EXPECT_THROW(n.DeleteSubMesh(7), IndexError);
  n.CleanSubMesh();
  EXPECT_TRUE(n.SubMeshList.empty() && n.VertexArray_Positon.empty() && n.VertexDescArray.empty());
}

TEST(NodeSubmesh, VertexFamilyAndFailures) {
  Node n;
  const int s = n.CreateSubMesh("m", true, true);
  n.PushVertex_BoneIndics(s, 1, 2, 3, 4);
  EXPECT_EQ(n.VertexArray_BoneIndics.at(s)[0], VertexEntry<2>(1.02, 3.04));
  const double quad[12] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
  n.PushQuadVertex_Postion(s, std::span<const double, 12>(quad));
  EXPECT_EQ(n.VertexArray_Positon.at(s).size(), 4u);
  EXPECT_EQ(n.VertexArray_Positon.at(s)[2], VertexEntry<3>(1, 1, 0));

  // Unknown submesh: KeyError for appends, defaults for colour getters.
  EXPECT_THROW(n.PushVertex_Normal(9, 0, 0, 1), KeyError);
  EXPECT_THROW(n.PushVIndex(9, 0), KeyError);
  EXPECT_EQ(n.GetSubMeshColor(9), (std::array<double, 4>{1, 1, 1, 1}));
  EXPECT_EQ(n.GetSubMeshSpecularColor(9), (std::array<double, 4>{1, 1, 1, 10}));
  const double eight[8] = {};
  EXPECT_THROW(n.PushLineVertex_BoneIndics(s, std::span<const double, 8>(eight)), TypeError);
  EXPECT_EQ(n.VertexArray_BoneIndics.at(s).size(), 1u);

  // Index operations: positions, not values.
  n.PushQuadVIndex(s, 0, 1, 2, 3);
  n.PushVIndex(s, 9);
  n.DropVIndex(s, 0);
  n.DropVIndex(s, -1);
  EXPECT_EQ(n.VIndexArray.at(s), (IndexArray{1, 2, 3}));
  EXPECT_THROW(n.DropVIndex(s, 3), IndexError);
  EXPECT_THROW(n.DropLineVIndex(s, 0, 1), TypeError);
  EXPECT_THROW(n.DropLineVIndex(9, 0, 1), KeyError);
  EXPECT_EQ(n.VIndexArray.at(s).size(), 3u);

  // CleanVertex keeps tangents and removes the keys of the rest.
  n.PushVertex_Tangent(s, 1, 0, 0);
  n.CleanVertex();
  EXPECT_EQ(n.VertexArray_Tangent.at(s).size(), 1u);
  EXPECT_FALSE(n.VertexArray_Positon.contains(s));
  EXPECT_THROW(n.PushVertex_Position(s, 0, 0, 0), KeyError);

  // Wire frame: false when unset, else submesh 0's entry.
  Node w;
  EXPECT_FALSE(w.IsWireFrameMode());
  w.SetSubMeshWireFrameMode(3);
  EXPECT_THROW(w.IsWireFrameMode(), KeyError);
}

// A textured quad: four corners with UVs and normals, indices 0..3.
int make_quad(Node& n, int shape = glc::QUADS) {
  const int s = n.CreateSubMesh("quad", true);
  n.SetSubMeshShapeType(s, shape);
  const double pos[12] = {0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 2, 0};
  const double nrm[12] = {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1};
  const double uv[8] = {0, 0, 1, 0, 1, 1, 0, 1};
  n.PushQuadVertex_Postion(s, std::span<const double, 12>(pos));
  n.PushQuadVertex_Normal(s, std::span<const double, 12>(nrm));
  n.PushQuadVertex_UV(s, std::span<const double, 8>(uv));
  n.PushQuadVIndex(s, 0, 1, 2, 3);
  return s;
}

TEST(NodeBuffers, InterleavedLayouts) {
  Node n;
  const int s = make_quad(n);
  n.BuildVBO();
  const std::vector<float> data = vbo_data(n, s);
  ASSERT_EQ(data.size(), 32u);
  // UV, normal, position per vertex.
  EXPECT_EQ(std::vector<float>(data.begin() + 8, data.begin() + 16), (std::vector<float>{1, 0, 0, 0, 1, 2, 0, 0}));
  EXPECT_EQ(n.SubMeshShapeCount.at(s), 4);
  ASSERT_TRUE(n.IVBOArray.contains(s));
  EXPECT_EQ(*n.IVBOArray.at(s)->index_data(), (BufferObject::IndexData{0, 1, 2, 3}));
  EXPECT_FALSE(n.IVBOArray.at(s)->wide_indices());

  // An index past the vertices is refused and the buffers stay as they were.
  const auto previous = n.IVBOArray.at(s);
  n.PushVIndex(s, 4);
  EXPECT_THROW(n.BuildSubMeshVBO(s), ValueError);
  EXPECT_EQ(n.IVBOArray.at(s), previous);
}

TEST(NodeBuffers, LargeSubmeshesGetThirtyTwoBitIndices) {
  Node n;
  const int s = n.CreateSubMesh("big");
  constexpr int kVertices = 70000;
  for (int v = 0; v < kVertices; ++v) {
    n.PushVertex_Position(s, v, 0, 0);
    n.PushVertex_Normal(s, 0, 1, 0);
  }
  n.PushTriangleVIndex(s, 0, 65536, kVertices - 1);
  n.BuildSubMeshVBO(s);
  const BufferObject& indices = *n.IVBOArray.at(s);
  ASSERT_TRUE(indices.wide_indices());
  EXPECT_EQ(*indices.wide_index_data(), (BufferObject::WideIndexData{0, 65536, kVertices - 1}));
  EXPECT_EQ(n.SubMeshShapeCount.at(s), 3);
}

TEST(NodeBuffers, TangentsSwitchToTheFifteenFloatLayout) {
  Node n;
  const int s = make_quad(n);
  n.GenTangentAndBitangent(s);
  EXPECT_EQ(n.VertexDescArray.at(s), glc::T4F_C4F_N3F_V4F);
  // u runs along +x over 2 units, v along +y: T = (2, 0, 0), B = (0, 2, 0), unnormalised.
  EXPECT_EQ(n.VertexArray_Tangent.at(s)[3], VertexEntry<3>(2, 0, 0));
  EXPECT_EQ(n.VertexArray_Bitangent.at(s)[3], VertexEntry<3>(0, 2, 0));
  const std::vector<float> data = vbo_data(n, s);
  ASSERT_EQ(data.size(), 60u);
  // UV, tangent, bitangent, normal, position, 1.0.
  EXPECT_EQ(std::vector<float>(data.begin() + 15, data.begin() + 30),
            (std::vector<float>{1, 0, 2, 0, 0, 0, 2, 0, 0, 0, 1, 2, 0, 0, 1}));

  // A line submesh gets no tangents, only a rebuild.
  Node lines;
  const int l = make_quad(lines, glc::LINES);
  lines.GenTangentAndBitangent(l);
  EXPECT_TRUE(lines.VertexArray_Tangent.at(l).empty());
  EXPECT_EQ(lines.VertexDescArray.at(l), glc::T2F_N3F_V3F);
  EXPECT_EQ(vbo_data(lines, l).size(), 32u);

  // Degenerate UVs divide by zero; a vertex no face reached fails the interleave.
  Node bad;
  const int b = make_quad(bad, glc::TRIANGLES);
  bad.VertexArray_UV.at(b) = {VertexEntry<2>(0, 0), VertexEntry<2>(0, 0), VertexEntry<2>(0, 0), VertexEntry<2>(0, 0)};
  EXPECT_THROW(bad.GenTangentAndBitangent(b), ZeroDivisionError);
  Node partial;
  const int p = make_quad(partial, glc::TRIANGLES);
  partial.LoadVIndex(p, {0, 1, 2});
  EXPECT_THROW(partial.GenTangentAndBitangent(p), IndexError);
  EXPECT_EQ(partial.VertexArray_Tangent.at(p)[3].size, 0);
  EXPECT_FALSE(partial.VVBOArray.contains(p));
}

TEST(NodeBuffers, SkinnedLayoutsAndMissingData) {
  Node n;
  const int s = n.CreateSubMesh("skin", false, true);
  n.PushVertex_Position(s, 1, 2, 3);
  n.PushVertex_Normal(s, 0, 1, 0);
  n.PushVertex_BoneIndics(s, 1, 2, 3, 4);
  n.PushVertex_BoneWeights(s, 0.5, 0.25, 0.25, 0);
  n.BuildSubMeshVBO(s);
  // The packed bone numbers reach the GPU nudged up by 0.002; scripts read them unchanged.
  EXPECT_EQ(vbo_data(n, s), (std::vector<float>{1.022f, 3.042f, 0.5f, 0.25f, 0.25f, 0, 0, 1, 0, 1, 2, 3}));
  EXPECT_EQ(n.VertexArray_BoneIndics.at(s)[0].v[0], 1.02);
  // Every pair below 64 decodes to its numbers as the vertex program takes them apart,
  // in 32-bit floats.
  Node all;
  const int a = all.CreateSubMesh("pairs", false, true);
  for (int b1 = 0; b1 < 64; ++b1) {
    for (int b2 = 0; b2 < 64; ++b2) {
      all.PushVertex_Position(a, 0, 0, 0);
      all.PushVertex_Normal(a, 0, 1, 0);
      all.PushVertex_BoneIndics(a, b1, b2, 0, 0);
      all.PushVertex_BoneWeights(a, 1, 0, 0, 0);
    }
  }
  all.BuildSubMeshVBO(a);
  const std::vector<float> gpu = vbo_data(all, a);
  int wrong = 0;
  for (int v = 0; v < 64 * 64; ++v) {
    const float z = gpu[static_cast<std::size_t>(v) * 12];
    const int first = static_cast<int>(z);
    const int second = static_cast<int>((z - static_cast<float>(first)) * 100.0f);
    if (first != v / 64 || second != v % 64) ++wrong;
  }
  EXPECT_EQ(wrong, 0);
  // Without indices: a count of 0 and no index buffer.
  EXPECT_EQ(n.SubMeshShapeCount.at(s), 0);
  EXPECT_FALSE(n.IVBOArray.contains(s));

  // A missing attribute fails and the submesh keeps its previous buffer.
  const auto previous = n.VVBOArray.at(s);
  n.PushVertex_Position(s, 4, 5, 6);
  EXPECT_THROW(n.BuildSubMeshVBO(s), IndexError);
  EXPECT_EQ(n.VVBOArray.at(s), previous);

  // Indices beyond 16 bits are refused rather than wrapped.
  n.PushVertex_Normal(s, 0, 1, 0);
  n.PushVertex_BoneIndics(s, 0, 0, 0, 0);
  n.PushVertex_BoneWeights(s, 1, 0, 0, 0);
  n.LoadVIndex(s, {0, 70000});
  EXPECT_THROW(n.BuildSubMeshVBO(s), ValueError);
}

TEST(NodeBuffers, BoundingBoxFromPositionsAndCustomData) {
  Node n;
  n.BuildVBO();  // no vertices: the sentinels stay, min above max
  EXPECT_EQ(n.boxMin.str(), "999999,999999,999999");
  EXPECT_EQ(n.boxMax.x, -999999);

  const int s = n.CreateSubMesh("pts");
  n.PushVertex_Position(s, -1, 5, 2);
  n.PushVertex_Position(s, 3, -2, 2);
  n.PushVertex_Normal(s, 0, 1, 0);
  n.PushVertex_Normal(s, 0, 1, 0);
  // Custom-only submesh in the T2F_N3F_V3F layout: x at offset 5.
  const int c = n.CreateSubMesh("custom", true);
  n.LoadVertex(c, {0, 0, 0, 1, 0, 10, 20, -30, /* second vertex */ 0, 0, 0, 1, 0, 0, 0, 0, /* partial */ 9, 9});
  n.BuildVBO();
  EXPECT_EQ(n.boxMin.str() + " " + n.boxMax.str(), "-1.0,-2.0,-30.0 10.0,20.0,2.0");
  EXPECT_EQ(vbo_data(n, c).size(), 18u);  // custom data goes up as given
  EXPECT_EQ(vbo_data(n, s).size(), 12u);

  // A submesh with no vertices gets no buffer.
  const int e = n.CreateSubMesh("empty");
  n.BuildVBO();
  EXPECT_FALSE(n.VVBOArray.contains(e));
}

TEST(NodeBuffers, SortVertex4BoneInfo) {
  struct Case {
    const char* name;
    std::vector<Node::BoneInfo> input;
    std::array<std::int64_t, 4> bones;
    std::array<double, 4> weights;
  };
  const std::vector<Case> cases = {
      {"five influences keep the four heaviest",
       {{1, 0.1}, {2, 0.5}, {3, 0.2}, {4, 0.3}, {5, 0.4}},
       {2, 5, 4, 3},
       {0.5, 0.4, 0.3, 0.2}},
      {"ties keep input order", {{7, 0.5}, {8, 0.5}, {9, 0.9}}, {9, 7, 8, 0}, {0.9, 0.5, 0.5, 0.0}},
      {"one influence then zeros", {{3, 1.0}}, {3, 0, 0, 0}, {1.0, 0, 0, 0}},
      {"none", {}, {0, 0, 0, 0}, {0, 0, 0, 0}},
  };
  for (const Case& c : cases) {
    const auto [bones, weights] = Node::SortVertex4BoneInfo(c.input);
    EXPECT_EQ(bones, c.bones) << c.name;
    EXPECT_EQ(weights, c.weights) << c.name;
  }
}

}  // namespace
}  // namespace vorn
