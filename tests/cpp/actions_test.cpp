#include "core/actions.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "core/errors.h"

namespace vorn {
namespace {

// A target that records what the actions do to it. Its world position is offset from its
// local one, as a child node's would be, so the tests see which of the two is read.
class FakeTarget : public ActionTarget {
 public:
  Vector3 local{0, 0, 0};
  Vector3 worldOffset{0, 0, 0};
  double sx = 1.0, sy = 1.0, angle = 0.0;
  bool visible = true;
  std::vector<bool> visibility;  // every SetVisible call

  void SetXYZ(double x, double y, double z) override { local = Vector3(x, y, z); }
  Vector3 GetWorldXYZ() const override { return local + worldOffset; }
  double GetSX() const override { return sx; }
  double GetSY() const override { return sy; }
  void SetSXY(double x, double y) override { sx = x, sy = y; }
  double GetAngle() const override { return angle; }
  void SetAngle(double a) override { angle = a; }
  bool IsVisible() const override { return visible; }
  void SetVisible(bool v) override {
    visible = v;
    visibility.push_back(v);
  }
};

void ExpectAt(const FakeTarget& t, double x, double y, double z, const std::string& when) {
  EXPECT_DOUBLE_EQ(t.local.x, x) << when;
  EXPECT_DOUBLE_EQ(t.local.y, y) << when;
  EXPECT_DOUBLE_EQ(t.local.z, z) << when;
}

TEST(Actions, MoveToLerpsFromTheWorldPositionAndEndsExactly) {
  auto target = std::make_shared<FakeTarget>();
  target->local = Vector3(1, 2, 3);
  target->worldOffset = Vector3(1, 0, 0);  // world (2, 2, 3)
  MoveToAction move(2.0, 10, 6, -5);
  move.SetTarget(target);
  move.Run();
  EXPECT_EQ(move.srcPostion.str(), "2.0,2.0,3.0");

  // 0.5 s steps of a 2 s move: a quarter of the way per frame, from the world position.
  const double expected[][3] = {{4, 3, 1}, {6, 4, -1}, {8, 5, -3}};
  for (int frame = 0; frame < 3; ++frame) {
    move.update(0.5);
    ExpectAt(*target, expected[frame][0], expected[frame][1], expected[frame][2], "frame " + std::to_string(frame));
    EXPECT_FALSE(move.IsOver());
  }
  move.update(0.5);
  ExpectAt(*target, 10, 6, -5, "last frame");
  EXPECT_TRUE(move.IsOver() && move.IsRunning());  // over, yet still running
  // Once over, nothing moves any more.
  target->local = Vector3(0, 0, 0);
  move.update(0.5);
  ExpectAt(*target, 0, 0, 0, "after the end");
}

TEST(Actions, MoveByScaleAndRotateReachTheirEnds) {
  // Each action over 1 s from position (1, 1, 1), scale (2, 4), angle 30: the state
  // after 0.5 s, then after an overshooting 0.75 s that must land on the end exactly.
  using State = std::array<double, 6>;  // x, y, z, sx, sy, angle
  const auto state = [](const FakeTarget& t) { return State{t.local.x, t.local.y, t.local.z, t.sx, t.sy, t.angle}; };
  const struct {
    const char* name;
    std::shared_ptr<GAction> action;
    State half, end;
  } cases[] = {
      {"MoveBy", std::make_shared<MoveByAction>(1.0, 2, 4, 6), {2, 3, 4, 2, 4, 30}, {3, 5, 7, 2, 4, 30}},
      {"ScaleTo", std::make_shared<ScaleToAction>(1.0, 4, 8), {1, 1, 1, 3, 6, 30}, {1, 1, 1, 4, 8, 30}},
      {"ScaleBy", std::make_shared<ScaleByAction>(1.0, 1, -1), {1, 1, 1, 2.5, 3.5, 30}, {1, 1, 1, 3, 3, 30}},
      {"RotateTo", std::make_shared<RotateToAction>(1.0, 130), {1, 1, 1, 2, 4, 80}, {1, 1, 1, 2, 4, 130}},
      {"RotateBy 30 by 90", std::make_shared<RotateByAction>(1.0, 90), {1, 1, 1, 2, 4, 75}, {1, 1, 1, 2, 4, 120}},
  };
  for (const auto& c : cases) {
    auto target = std::make_shared<FakeTarget>();
    target->local = Vector3(1, 1, 1);
    target->sx = 2.0, target->sy = 4.0, target->angle = 30.0;
    c.action->SetTarget(target);
    c.action->Run();
    c.action->update(0.5);
    EXPECT_EQ(state(*target), c.half) << c.name;
    c.action->update(0.75);
    EXPECT_EQ(state(*target), c.end) << c.name;
    EXPECT_TRUE(c.action->IsOver()) << c.name;
  }
}

TEST(Actions, ZeroDurationPauseStopAndMissingTargets) {
  auto target = std::make_shared<FakeTarget>();
  MoveToAction instant(0.0, 7, 8, 9);
  instant.SetTarget(target);
  instant.Run();
  instant.update(0.0);
  ExpectAt(*target, 7, 8, 9, "duration 0");
  EXPECT_TRUE(instant.IsOver());

  // Pause and Stop keep the run time; Resume goes on from it; Run starts afresh.
  RotateToAction rot(4.0, 40);
  rot.SetTarget(target);
  rot.Run();
  rot.update(1.0);
  rot.Pause();
  rot.update(1.0);
  EXPECT_DOUBLE_EQ(rot.GetRunTime(), 1.0);
  rot.Resume();
  rot.update(1.0);
  EXPECT_DOUBLE_EQ(target->angle, 20.0);
  rot.Stop();
  EXPECT_FALSE(rot.IsRunning());
  rot.Resume();
  rot.update(1.0);
  EXPECT_DOUBLE_EQ(rot.GetRunTime(), 3.0);
  rot.Run();
  EXPECT_DOUBLE_EQ(rot.GetRunTime(), 0.0);
  EXPECT_DOUBLE_EQ(rot.srcAngle, 30.0);

  // Without a target Run does not start (a target gone away is the script suite's case).
  MoveToAction loose(1.0, 1, 1, 1);
  loose.Run();
  EXPECT_FALSE(loose.IsRunning());
}

TEST(Actions, BlinkHidesForHalfAPeriodAndEndsOnTheCount) {
  auto target = std::make_shared<FakeTarget>();
  BlinkAction blink(2.0, 2);  // delaytime 1: half periods of 0.5 s
  EXPECT_DOUBLE_EQ(blink.delaytime, 1.0);
  blink.SetTarget(target);
  blink.Run();
  std::vector<bool> seen;
  int frames = 0;
  while (!blink.IsOver() && frames < 100) {
    blink.update(0.25);
    seen.push_back(target->visible);
    ++frames;
  }
  // Hidden in each even half period, shown in each odd one; blinkindex runs to
  // blinkcount + 1 before the last visible even half period ends the action.
  const std::vector<bool> expected{false, true, true, false, false, true, true, false, false, true, true, true};
  EXPECT_EQ(seen, expected);
  EXPECT_EQ(blink.blinkindex, 3);
  EXPECT_TRUE(target->visible);

  // The default count -1 gives a negative delaytime and ends at once on a visible target.
  BlinkAction quick(2.0);
  EXPECT_DOUBLE_EQ(quick.delaytime, -2.0);
  quick.SetTarget(target);
  quick.Run();
  quick.update(0.1);
  EXPECT_TRUE(quick.IsOver());

  BlinkAction zero(0.0, 2);
  zero.SetTarget(target);
  zero.Run();
  EXPECT_THROW(zero.update(0.1), ZeroDivisionError);
}

TEST(ActionPlayer, QueueHandsOverInTheSameFrameWithoutCarryingTime) {
  auto target = std::make_shared<FakeTarget>();
  auto move = std::make_shared<MoveToAction>(1.0, 4, 0, 0);
  auto rot = std::make_shared<RotateByAction>(0.5, 90);
  auto scale = std::make_shared<ScaleToAction>(1.0, 3, 3);
  ActionPlayer player;
  player.SetTarget(target);
  player.AddActions({{move, rot, scale}});
  EXPECT_FALSE(rot->targetNode.expired());
  player.Run();
  EXPECT_TRUE(move->IsRunning());
  EXPECT_FALSE(rot->IsRunning());

  // 1.5 s finishes the move; the rotation starts in this frame but is not updated.
  player.update(1.5);
  ExpectAt(*target, 4, 0, 0, "move done");
  EXPECT_EQ(player.ActionIndex, 1);
  EXPECT_TRUE(rot->IsRunning());
  EXPECT_DOUBLE_EQ(rot->GetRunTime(), 0.0);
  EXPECT_DOUBLE_EQ(target->angle, 0.0);

  player.update(0.25);
  EXPECT_DOUBLE_EQ(target->angle, 45.0);
  player.update(0.25);
  EXPECT_DOUBLE_EQ(target->angle, 90.0);
  EXPECT_EQ(player.ActionIndex, 2);
  EXPECT_FALSE(player.IsOver());

  player.update(1.0);
  EXPECT_DOUBLE_EQ(target->sx, 3.0);
  EXPECT_TRUE(player.IsOver());
  EXPECT_DOUBLE_EQ(player.GetRunTime(), 3.0);
  // Over: further updates change nothing, and the actions stay (until CleanUp).
  player.update(1.0);
  EXPECT_EQ(player.ActionIndex, 3);
  EXPECT_TRUE(player.ActionArray.has_value());
}

TEST(ActionPlayer, EmptyOrBrokenQueuesRaiseInsteadOfCrashing) {
  auto target = std::make_shared<FakeTarget>();
  ActionPlayer player;
  player.SetTarget(target);
  player.AddActions({{}});
  EXPECT_THROW(player.Run(), IndexError);

  // Nothing stored, or no target: Run does nothing.
  ActionPlayer idle, untargeted;
  idle.SetTarget(target);
  untargeted.AddActions({{std::make_shared<GAction>()}});
  idle.Run();
  untargeted.Run();
  EXPECT_FALSE(idle.IsRunning() || untargeted.IsRunning());

  ActionPlayer holed;
  holed.SetTarget(target);
  holed.AddActions({{std::make_shared<RotateToAction>(0.0, 1), nullptr}});
  holed.Run();
  EXPECT_THROW(holed.update(0.1), AttributeError);

  // A script may set ActionIndex out of range.
  ActionPlayer skewed;
  skewed.SetTarget(target);
  skewed.AddActions({{std::make_shared<RotateToAction>(1.0, 1)}});
  skewed.Run();
  skewed.ActionIndex = 5;
  EXPECT_THROW(skewed.update(0.1), IndexError);
}

}  // namespace
}  // namespace vorn
