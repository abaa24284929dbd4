// The demonstration's walker written as GLB by our tool and converted to ASCII and to
// binary FBX by the importer's exporter (tools/fbx_convert.h): each FBX load gives the
// same submesh, the same actions and, bone for bone, the same matrices as the GLB load
// at the keyframe times; so does the general loader reading the GLB itself.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include <unistd.h>

#include "console_capture.h"
#include "mesh/glb_reader.h"
#include "mesh/mesh.h"
#include "mesh/model_import.h"
#include "mesh/skin_ani_fbx.h"
#include "mesh/skin_ani_glb.h"
#include "fbx_convert.h"
#include "walker_model.h"

namespace vorn {
namespace {

namespace fs = std::filesystem;

void ExpectSameBoneMatrices(const GlbModel& glb, const ModelPlan& fbx);

// The parameter: the exporter's format id, "fbxa" (ASCII) or "fbx" (binary).
class FbxWalker : public ::testing::TestWithParam<std::string> {
 protected:
  static void SetUpTestSuite() {
    dir_ = fs::temp_directory_path() / ("fbx_walker_" + std::to_string(::getpid()));
    fs::create_directories(dir_);
    ASSERT_TRUE(tools::WriteWalkerGLB((dir_ / "walker.glb").string()));
    for (const char* format : {"fbxa", "fbx"}) {
      ASSERT_TRUE(tools::ConvertModelToFBX((dir_ / "walker.glb").string(), FbxPath(format), format));
    }
  }
  static std::string FbxPath(const std::string& format) { return (dir_ / ("walker_" + format + ".fbx")).string(); }
  static void TearDownTestSuite() { fs::remove_all(dir_); }

  static GlbModel ReadWalkerGLB() {
    std::ifstream in(dir_ / "walker.glb", std::ios::binary);
    std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    ConsoleCapture quiet;
    auto model = ReadGLB("walker.glb", std::move(bytes));
    EXPECT_TRUE(model.has_value());
    return model ? std::move(*model) : GlbModel{};
  }

  static ModelPlan ReadWalker(const std::string& path, ModelSplit split, std::vector<std::string>* lines = nullptr) {
    ConsoleCapture out;
    auto plan = ImportModelFile(path, split, false);
    if (lines) *lines = out.lines();
    EXPECT_TRUE(plan.has_value());
    return plan ? std::move(*plan) : ModelPlan{};
  }

  static fs::path dir_;
};
fs::path FbxWalker::dir_;

// Submesh name, bone names, action names and the first action's timing are the script
// suite's checks (test_fbx.py, on one format); here both formats.
TEST_P(FbxWalker, OneSkinnedSubmeshWithItsAtlasAndTheGLBsTriangles) {
  std::vector<std::string> lines;
  const ModelPlan plan = ReadWalker(FbxPath(GetParam()), ModelSplit::PerMeshNode, &lines);
  ASSERT_EQ(plan.submeshes.size(), 1u);
  const ModelSubmeshPlan& body = plan.submeshes[0];
  EXPECT_TRUE(body.withSkin && body.withNormal && body.withTexUV);
  EXPECT_EQ(body.vertices.size() % 15, 0u);
  ASSERT_EQ(body.images.size(), 1u);  // the atlas travels inside the FBX file
  EXPECT_EQ(body.images.at(0).width, 64);
  EXPECT_EQ(plan.actions.size(), 2u);
  EXPECT_NE(std::find(lines.begin(), lines.end(), "All polygons share the same material on layer 0"), lines.end());
  EXPECT_EQ(body.indices.size(), ReadWalkerGLB().submeshes.at(0).indices.size());
}

TEST_P(FbxWalker, BoneMatricesMatchTheGLBLoadAtTheKeyframeTimes) {
  const GlbModel glb = ReadWalkerGLB();
  // The FBX file, and the GLB file itself through the general loader.
  for (const std::string& path : {FbxPath(GetParam()), (dir_ / "walker.glb").string()}) {
    SCOPED_TRACE(path);
    ExpectSameBoneMatrices(glb, ReadWalker(path, path.ends_with(".glb") ? ModelSplit::PerMesh : ModelSplit::PerMeshNode));
  }
}

INSTANTIATE_TEST_SUITE_P(AsciiAndBinary, FbxWalker, ::testing::Values("fbxa", "fbx"));

void ExpectSameBoneMatrices(const GlbModel& glb, const ModelPlan& fbx) {
  ASSERT_EQ(fbx.submeshes.size(), 1u);
  const auto names = tools::WalkerBoneNames();

  Vorn_3DMesh glbMesh, fbxMesh;
  glbMesh.ActionDict = glb.actions;
  auto glbSkin = std::make_shared<Vorn_SkinSubMeshAni_GLB>();
  glbSkin->SetInverseBindMatrices(glb.submeshes.at(0).inverseBindMatrices);
  glbSkin->SetInitBoneTree(glb.initBoneTree);
  glbMesh.SubMesh_Dict.set(0, glbSkin);
  fbxMesh.ActionDict = fbx.actions;
  auto fbxSkin = std::make_shared<Vorn_SkinSubMeshAni_FBX>();
  fbxSkin->LoadSkinMeshData(fbx.tree, fbx.submeshes[0].clusters);
  fbxMesh.SubMesh_Dict.set(0, fbxSkin);

  ConsoleCapture quiet;
  for (int action = 0; action < 2; ++action) {
    glbMesh.PlayAction(action);
    fbxMesh.PlayAction(action);
    ASSERT_EQ(glbMesh.GetActionName(action), fbxMesh.GetActionName(action));
    EXPECT_NEAR(*glbMesh.CurrAnimation_Duration, *fbxMesh.CurrAnimation_Duration, 1e-4);
    // Every keyframe time of the GLB action (the GLB path does not interpolate).
    std::vector<double> times;
    for (const auto& [bone, channels] : *glb.actions.find(*glbMesh.GetActionName(action)))
      for (const auto& c : channels)
        for (const auto& s : c.samples) times.push_back(s.time);
    ASSERT_FALSE(times.empty());
    for (double t : times) {
      if (t == 0.0) continue;  // the FBX skin keeps its last array at time zero
      const std::vector<double> a = glbSkin->GetFinalBoneMatrixByTime(t);
      const std::vector<double> b = fbxSkin->GetFinalBoneMatrixByTime(t);
      ASSERT_EQ(a.size(), names.size() * 16);
      ASSERT_EQ(b.size(), names.size() * 16);
      // GLB matrices are in the walker's bone order; FBX ones in its cluster order.
      for (std::size_t g = 0; g < names.size(); ++g) {
        const auto& clusters = fbxSkin->Clusters();
        const auto it = std::find_if(clusters.begin(), clusters.end(), [&](const FbxCluster& c) { return c.name == names[g]; });
        ASSERT_NE(it, clusters.end()) << names[g];
        const std::size_t f = static_cast<std::size_t>(it - clusters.begin());
        for (std::size_t i = 0; i < 16; ++i) {
          ASSERT_NEAR(a[g * 16 + i], b[f * 16 + i], 1e-4) << "action " << action << " bone " << names[g] << " t " << t;
        }
      }
    }
  }
}

}  // namespace
}  // namespace vorn
