// The bytes a model import travels in from the library's helper process: a plan with
// every field comes back equal, and bytes cut short or spoiled give nothing.
#include <gtest/gtest.h>

#include "mesh/model_plan_wire.h"

namespace vorn {
namespace {

ImportOutcome FullOutcome() {
  ImportOutcome out;
  out.lines = {"All polygons share the same material on layer 0", ""};
  ModelPlan plan;
  plan.withSkin = plan.withTexUV = true;
  ModelSubmeshPlan s;
  s.submeshName = "submesh_3";
  s.withSkin = true;
  s.vertices = {0.5, -1.0, 1e300, 0.0};
  s.indices = {0, 1, -2};
  s.textureFiles = {"a.png", "b\\c.dds"};
  s.images.push_back({std::make_shared<const std::vector<std::uint8_t>>(std::vector<std::uint8_t>{1, 2, 3, 4}), "RGBA", 1, 1});
  FbxMatrix bind;
  bind.Set(3, 1, 2.5);
  s.clusters.push_back({"Hips", 1, bind});
  plan.submeshes.push_back(s);
  plan.submeshes.push_back({});
  auto tree = std::make_shared<FbxSceneTree>();
  tree->frameRate = 24;
  tree->nodes.push_back({"Root", -1, {1, 2, 3, 0}, {0, 0, 0, 1}, {1, 1, 1, 1}, bind});
  plan.tree = tree;
  MeshAction walk;
  walk.set(4, {{"rotation", {{0.25, {0, 0, 0, 1}}, {0.5, {}}}}, {"scale", {}}});
  plan.actions.set("Walk", walk);
  plan.actions.set("Idle", {});
  plan.first = ModelFirstAnimation{0, 1, 1, 1.0 / 24, 24, 1};
  out.plan = plan;
  return out;
}

TEST(ModelPlanWire, EveryFieldComesBackAndDamagedBytesGiveNothing) {
  const ImportOutcome in = FullOutcome();
  const std::string bytes = EncodeImportOutcome(in);
  const auto out = DecodeImportOutcome(bytes);
  ASSERT_TRUE(out);
  EXPECT_EQ(out->lines, in.lines);
  ASSERT_TRUE(out->plan);
  const ModelPlan& a = *in.plan;
  const ModelPlan& b = *out->plan;
  EXPECT_EQ(b.withSkin, a.withSkin);
  EXPECT_EQ(b.withNormal, a.withNormal);
  ASSERT_EQ(b.submeshes.size(), 2u);
  const ModelSubmeshPlan& s = b.submeshes[0];
  EXPECT_EQ(s.submeshName, "submesh_3");
  EXPECT_EQ(s.vertices, a.submeshes[0].vertices);
  EXPECT_EQ(s.indices, a.submeshes[0].indices);
  EXPECT_EQ(s.textureFiles, a.submeshes[0].textureFiles);
  ASSERT_EQ(s.images.size(), 1u);
  EXPECT_EQ(*s.images[0].pixels, *a.submeshes[0].images[0].pixels);
  EXPECT_EQ(s.images[0].format, "RGBA");
  ASSERT_EQ(s.clusters.size(), 1u);
  EXPECT_EQ(s.clusters[0].name, "Hips");
  EXPECT_EQ(s.clusters[0].meshToBone.Get(3, 1), 2.5);
  ASSERT_TRUE(b.tree);
  EXPECT_EQ(b.tree->frameRate, 24);
  EXPECT_EQ(b.tree->nodes.at(0).T.v, a.tree->nodes[0].T.v);
  EXPECT_EQ(b.tree->nodes.at(0).local.m, a.tree->nodes[0].local.m);
  ASSERT_EQ(b.actions.size(), 2u);
  EXPECT_EQ(b.actions.begin()->first, "Walk");  // in their order
  const auto& channels = b.actions.at("Walk").at(4);
  ASSERT_EQ(channels.size(), 2u);
  EXPECT_EQ(channels[0].samples.at(0).value, (std::vector<double>{0, 0, 0, 1}));
  EXPECT_EQ(channels[0].samples.at(1).time, 0.5);
  ASSERT_TRUE(b.first);
  EXPECT_EQ(b.first->frameCount, 24);

  // A failure without a plan, and no plan at all.
  ImportOutcome failed;
  failed.failure = ImportOutcome::Failure::ValueError;
  failed.failureText = "x: a face names a vertex that is missing";
  const auto back = DecodeImportOutcome(EncodeImportOutcome(failed));
  ASSERT_TRUE(back);
  EXPECT_EQ(back->failure, ImportOutcome::Failure::ValueError);
  EXPECT_EQ(back->failureText, failed.failureText);
  EXPECT_FALSE(back->plan);

  // Every shorter length (a helper dying while it writes), a byte more, a flag byte
  // that is neither 0 nor 1.
  for (std::size_t n = 0; n < bytes.size(); ++n) ASSERT_FALSE(DecodeImportOutcome(std::span(bytes.data(), n))) << n;
  EXPECT_FALSE(DecodeImportOutcome(bytes + '\0'));
  ImportOutcome noPlan;
  std::string spoiled = EncodeImportOutcome(noPlan);
  spoiled.back() = 7;  // the has-plan flag comes last
  EXPECT_FALSE(DecodeImportOutcome(spoiled));
}

TEST(ModelPlanWire, RequestsComeBackAndDamagedOnesGiveNothing) {
  ImportRequest in;
  in.fromMemory = true;
  in.split = ModelSplit::PerMesh;
  in.swapyz = true;
  in.path = "models/walker.fbx";
  in.hint = "fbx";
  in.bytes = std::string("Kaydara\0\1", 9);
  const std::string bytes = EncodeImportRequest(in);
  const auto out = DecodeImportRequest(bytes);
  ASSERT_TRUE(out);
  EXPECT_TRUE(out->fromMemory && out->swapyz);
  EXPECT_EQ(out->split, ModelSplit::PerMesh);
  EXPECT_EQ(out->path, in.path);
  EXPECT_EQ(out->hint, in.hint);
  EXPECT_EQ(out->bytes, in.bytes);
  for (std::size_t n = 0; n < bytes.size(); ++n) ASSERT_FALSE(DecodeImportRequest(std::span(bytes.data(), n))) << n;
  std::string badSplit = bytes;
  badSplit[1] = 9;  // the split follows the one-byte flag
  EXPECT_FALSE(DecodeImportRequest(badSplit));
}

}  // namespace
}  // namespace vorn
