// Odd FBX files made from a scene built here and written by the model importer's
// exporter: a vertex bound to six bones, a quad beside a triangle, no normals, no
// animation, bone nodes without meshes. (The general loader triangulating the quad is the
// script suite's check, test_fbx.py.)
#include <assimp/Exporter.hpp>
#include <assimp/scene.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <span>
#include <string>

#include "console_capture.h"
#include "core/errors.h"
#include "mesh/model_import.h"

namespace vorn {
namespace {

constexpr unsigned kBones = 6;

std::string BoneName(unsigned b) {
  std::string name(1, 'B');
  name += std::to_string(b);
  return name;
}

// Root with the mesh node "Body" first, then six bone nodes. The mesh: a triangle
// (vertices 0-2) and a quad (3-6); vertex 0 is bound to all six bones, the strongest
// being B5; every other vertex to B0 alone. (Or as many bones as asked for.)
std::string OddFBX(unsigned kBones = vorn::kBones) {
  aiScene scene;
  scene.mRootNode = new aiNode("Root");
  scene.mRootNode->mNumChildren = 1 + kBones;
  scene.mRootNode->mChildren = new aiNode*[1 + kBones];
  aiNode* body = new aiNode("Body");
  body->mParent = scene.mRootNode;
  body->mNumMeshes = 1;
  body->mMeshes = new unsigned[1]{0};
  scene.mRootNode->mChildren[0] = body;
  for (unsigned b = 0; b < kBones; ++b) {
    aiNode* bone = new aiNode(BoneName(b));
    bone->mParent = scene.mRootNode;
    bone->mTransformation = aiMatrix4x4::Translation(aiVector3D(float(b), 0, 0), bone->mTransformation);
    scene.mRootNode->mChildren[1 + b] = bone;
  }
  scene.mNumMaterials = 1;
  scene.mMaterials = new aiMaterial*[1]{new aiMaterial};
  aiString name("Paint");
  scene.mMaterials[0]->AddProperty(&name, AI_MATKEY_NAME);
  scene.mNumMeshes = 1;
  scene.mMeshes = new aiMesh*[1]{new aiMesh};
  aiMesh& mesh = *scene.mMeshes[0];
  mesh.mPrimitiveTypes = aiPrimitiveType_TRIANGLE | aiPrimitiveType_POLYGON;
  const aiVector3D corners[7] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {2, 0, 0}, {3, 0, 0}, {3, 1, 0}, {2, 1, 0}};
  mesh.mNumVertices = 7;
  mesh.mVertices = new aiVector3D[7];
  std::copy(corners, corners + 7, mesh.mVertices);
  mesh.mNumFaces = 2;
  mesh.mFaces = new aiFace[2];
  mesh.mFaces[0].mNumIndices = 3;
  mesh.mFaces[0].mIndices = new unsigned[3]{0, 1, 2};
  mesh.mFaces[1].mNumIndices = 4;
  mesh.mFaces[1].mIndices = new unsigned[4]{3, 4, 5, 6};
  mesh.mNumBones = kBones;
  mesh.mBones = new aiBone*[kBones];
  for (unsigned b = 0; b < kBones; ++b) {
    aiBone* bone = mesh.mBones[b] = new aiBone;
    bone->mName = aiString(BoneName(b));
    bone->mOffsetMatrix = aiMatrix4x4::Translation(aiVector3D(-float(b), 0, 0), bone->mOffsetMatrix);
    bone->mNumWeights = b == 0 ? 7 : 1;
    bone->mWeights = new aiVertexWeight[bone->mNumWeights];
    bone->mWeights[0] = aiVertexWeight(0, 0.05f + 0.05f * float(b));
    for (unsigned v = 1; v < bone->mNumWeights; ++v) bone->mWeights[v] = aiVertexWeight(v, 1.0f);
  }
  Assimp::Exporter exporter;
  const aiExportDataBlob* blob = exporter.ExportToBlob(&scene, "fbxa");
  EXPECT_NE(blob, nullptr) << exporter.GetErrorString();
  return blob ? std::string(static_cast<const char*>(blob->data), blob->size) : std::string();
}

TEST(FbxOddFiles, SixBonesOnAVertexAQuadNoNormalsNoAnimation) {
  const std::string file = OddFBX();
  ASSERT_FALSE(file.empty());
  ConsoleCapture out;
  const auto plan = ImportModelMemory(std::span(reinterpret_cast<const std::uint8_t*>(file.data()), file.size()), "fbx",
                                      "odd.fbx", ModelSplit::PerMeshNode, false);
  ASSERT_TRUE(plan.has_value());
  // Bone nodes have no mesh: one submesh, named after the mesh node's place in the walk.
  ASSERT_EQ(plan->submeshes.size(), 1u);
  const ModelSubmeshPlan& body = plan->submeshes[0];
  EXPECT_EQ(body.submeshName, "submesh_0");
  EXPECT_TRUE(body.withSkin);
  EXPECT_FALSE(plan->withNormal);
  EXPECT_EQ(body.indices.size(), 3u);  // the quad is not drawn
  EXPECT_TRUE(plan->actions.empty());
  EXPECT_FALSE(plan->first.has_value());
  ASSERT_EQ(body.clusters.size(), kBones);

  // One line for the vertex with six bones, naming its number.
  std::vector<std::string> many;
  for (const std::string& line : out.lines())
    if (line.rfind("顶点", 0) == 0) many.push_back(line);
  ASSERT_EQ(many.size(), 1u);
  const std::size_t number = std::stoul(many[0].substr(std::strlen("顶点")));
  EXPECT_EQ(many[0], "顶点" + std::to_string(number) + "的绑定骨骼数量大于4");

  // That vertex keeps its four strongest bones (B5, B4, B3, B2), and no normal.
  const double* record = &body.vertices.at(number * 15);
  std::vector<std::string> kept;
  for (double packed : {record[2], record[3]}) {
    const auto hi = static_cast<std::size_t>(packed + 1e-6);
    const auto lo = static_cast<std::size_t>((packed - double(hi)) * 100.0 + 0.5);
    kept.push_back(body.clusters.at(hi).name);
    kept.push_back(body.clusters.at(lo).name);
  }
  std::sort(kept.begin(), kept.end());
  EXPECT_EQ(kept, (std::vector<std::string>{"B2", "B3", "B4", "B5"}));
  EXPECT_EQ(record[8] * record[8] + record[9] * record[9] + record[10] * record[10], 0.0);
  EXPECT_NE(std::find(out.lines().begin(), out.lines().end(), "All polygons share the same material on layer 0"),
            out.lines().end());
}

TEST(FbxOddFiles, TooManyBonesRaiseAfterTheLinesPrintedBefore) {
  // The read runs in the library's helper process: its lines and its error come back.
  const std::string file = OddFBX(65);
  ConsoleCapture out;
  try {
    ImportModelMemory(std::span(reinterpret_cast<const std::uint8_t*>(file.data()), file.size()), "fbx", "many.fbx",
                      ModelSplit::PerMeshNode, false);
    ADD_FAILURE() << "no RuntimeError";
  } catch (const RuntimeError& e) {
    EXPECT_STREQ(e.what(), "The number of bones cannot exceed 64!");
  }
  EXPECT_EQ(out.lines(), std::vector<std::string>{"All polygons share the same material on layer 0"});
}

}  // namespace
}  // namespace vorn
