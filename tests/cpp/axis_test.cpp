// The gizmo's geometry, its pick of an axis and the drag request.
#include "overlay/axis.h"

#include <gtest/gtest.h>

#include <cmath>

#include "console_capture.h"
#include "core/math_util.h"

namespace vorn {
namespace {

TEST(Axis, ArrowsStayWithinTheirConstantsAndRepeatOnEachAxis) {
  auto axis = MakeNode<Vorn_3DAxis>();
  const auto& t = axis->PickTriangleDict.at("t");
  const auto& xs = t.at("x");
  ASSERT_FALSE(xs.empty());
  ASSERT_EQ(xs.size() % 3, 0u);
  double reach = 0.0;
  for (const auto& v : xs) {
    EXPECT_GE(v[0], 0.0);
    reach = std::max(reach, v[0]);
    // Across the axis: the bar's half-width up to the head, the head's beyond it.
    const double across = std::max(std::fabs(v[1]), std::fabs(v[2]));
    EXPECT_LE(across, v[0] <= Vorn_3DAxis::LineLength - 1e-12 ? Vorn_3DAxis::LineRadius : Vorn_3DAxis::ArrowRadius);
  }
  EXPECT_DOUBLE_EQ(reach, Vorn_3DAxis::ArrowTip);
  const auto& ys = t.at("y");
  const auto& zs = t.at("z");
  ASSERT_EQ(ys.size(), xs.size());
  ASSERT_EQ(zs.size(), xs.size());
  for (std::size_t i = 0; i < xs.size(); ++i) {
    EXPECT_EQ(ys[i], (Vorn_3DAxis::Vertex{xs[i][2], xs[i][0], xs[i][1]}));
    EXPECT_EQ(zs[i], (Vorn_3DAxis::Vertex{xs[i][1], xs[i][2], xs[i][0]}));
  }
  const auto before = axis->PickTriangleDict;
  axis->BuildScaleAxisPickTriangle();
  EXPECT_EQ(axis->PickTriangleDict, before);
}

struct PickCase {
  const char* name;
  Vector3 from, dir;
  const char* axis;  // nullptr for a miss
};

TEST(Axis, PicksTheFirstAxisTheRayMeetsOnTheBoundNode) {
  auto node = MakeNode<Vorn_3DGameNode>(5.0, 0.0, 0.0);
  node->update(0.0);
  auto axis = MakeNode<Vorn_3DAxis>();
  axis->Binding(node);
  axis->SetType("t");
  const Vector3 down(0.0, -1.0, 0.0), back(0.0, 0.0, -1.0);
  const PickCase cases[] = {
      {"x bar", Vector3(6.0, 9.0, 0.05), down, "x"},
      {"x head", Vector3(7.1, 9.0, 0.15), down, "x"},
      {"z bar", Vector3(5.05, 9.0, 1.0), down, "z"},
      {"y bar, seen from the front", Vector3(5.05, 1.0, 9.0), back, "y"},
      {"x wins over z where both lie", Vector3(5.05, 9.0, 0.05), down, "x"},
      {"beside the tip", Vector3(7.6, 9.0, 0.0), down, nullptr},
      {"between the axes", Vector3(6.0, 9.0, 1.0), down, nullptr},
  };
  for (const auto& c : cases) {
    axis->PickedAxis = "stale";
    ConsoleCapture console;
    const auto hit = axis->checkPick(c.from, c.dir);
    if (c.axis) {
      ASSERT_TRUE(hit) << c.name;
      EXPECT_EQ(axis->PickedAxis, c.axis) << c.name;
      const std::string line = std::string("picked ") + static_cast<char>(std::toupper(c.axis[0]));
      EXPECT_EQ(console.lines(), std::vector<std::string>{line}) << c.name;
    } else {
      EXPECT_FALSE(hit) << c.name;
      EXPECT_FALSE(axis->PickedAxis) << c.name;
      EXPECT_TRUE(console.lines().empty()) << c.name;
    }
  }

  // The pick surface follows the node's world matrix, scale included.
  node->SetScale(2.0);
  node->update(0.0);
  EXPECT_TRUE(axis->checkPick(Vector3(9.5, 9.0, 0.0), down));
  EXPECT_EQ(axis->PickedAxis, "x");

  // Only the translate type picks; an unbound gizmo picks nothing.
  axis->SetType("s");
  EXPECT_FALSE(axis->checkPick(Vector3(6.0, 9.0, 0.05), down));
  EXPECT_FALSE(axis->PickedAxis);
  axis->SetType("t");
  axis->Binding(nullptr);
  EXPECT_FALSE(axis->checkPick(Vector3(6.0, 9.0, 0.05), down));
}

}  // namespace
}  // namespace vorn
