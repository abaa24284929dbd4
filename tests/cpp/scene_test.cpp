// The scene's own state, without a GL context: ids, fog, world rotation, lookups.
#include "scene/scene.h"

#include <gtest/gtest.h>

#include "camera/camera.h"
#include "node/game_node.h"

namespace vorn {
namespace {

TEST(Scene, IdsFogRotationAndBuiltIns) {
  auto scene = Vorn_3Dcene::Create();
  EXPECT_EQ(scene->GenNewGameNodeID(), 1);
  EXPECT_EQ(scene->GenNewGameNodeID(), 2);

  // Disabled fog reads as five zeros and keeps its values for the next EnableFog.
  scene->SetSceneFog(1.0, 2.0, 0.1, 0.2, 0.3);
  scene->DisableFog();
  EXPECT_EQ(scene->GetSceneFog(), (std::array<double, 5>{}));
  scene->EnableFog();
  EXPECT_EQ(scene->GetSceneFog(), (std::array<double, 5>{1.0, 2.0, 0.1, 0.2, 0.3}));
  scene->SceneFog.clear();
  scene->SetSceneFogStart(5.0);  // nothing to change
  scene->SetSceneFogColor(0.4, 0.5, 0.6);
  EXPECT_EQ(scene->SceneFog, (std::vector<double>{30.0, 100.0, 0.4, 0.5, 0.6}));

  // World rotation: V about X, then H about Y; no translation.
  scene->Rotate_H(90.0);
  const FbxAMatrix r = scene->GetWorldRotateMatrix();
  EXPECT_NEAR(r.Get(0, 2), -1.0, 1e-12);  // x goes to -z under 90 degrees about Y
  EXPECT_EQ(r.GetRow(3), FbxVector4(0, 0, 0, 1));

  // The built-ins exist before InitGL; the camera stands at (0, 10, 10).
  ASSERT_TRUE(scene->CurrObjectAxis && scene->CurrDrawNode);
  auto camera = std::dynamic_pointer_cast<Vorn_3DCamera>(scene->GetActiveCamera());
  ASSERT_TRUE(camera);
  EXPECT_EQ(camera->GetXYZ(), (std::array<double, 3>{0.0, 10.0, 10.0}));
  ASSERT_EQ(scene->TextArray.size(), 2u);
  EXPECT_EQ(scene->TextArray[1]->text, "Batch:0");
  EXPECT_EQ(scene->GetSSAOKernelCount(), 64);
}

TEST(Scene, LookupsFindTheOlderRegisteredNodeOnly) {
  auto scene = Vorn_3Dcene::Create();
  auto first = scene->Create3DGameNode();
  auto second = scene->Create3DGameNode();
  first->SetTag("hero");
  second->SetTag("hero");
  EXPECT_EQ(scene->Quey3DObjectByTag("hero"), first);
  auto child = scene->Create3DGameNode(0, 0, 0, first);
  child->SetTag("sidekick");
  EXPECT_EQ(scene->ObjectArray_3D.size(), 2u);  // a child is driven by its parent
  EXPECT_EQ(scene->Quey3DObjectByTag("sidekick"), nullptr);
  EXPECT_EQ(scene->Quey2DObjectByTag("hero"), nullptr);
}

}  // namespace
}  // namespace vorn
