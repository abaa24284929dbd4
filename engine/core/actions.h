#pragma once
// Timed actions: changes to an ActionTarget spread over a span of seconds, and the
// ActionPlayer that plays a queue of them one after the other.
//
// Ownership: a node owns its ActionPlayer, the player owns its actions (shared_ptr), and
// every action refers to its target without owning it (weak_ptr), so the chain
// node -> player -> action -> node never forms a cycle. An action whose target is gone
// behaves as one without a target: it does nothing.
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "core/action_target.h"
#include "core/script_value.h"
#include "core/vector2.h"
#include "core/vector3.h"

namespace vorn {

class GAction {
 public:
  GAction() = default;
  virtual ~GAction() = default;

  bool running = false;
  std::weak_ptr<ActionTarget> targetNode;
  double runtime = 0.0;
  bool over = false;
  // Written by Stop() only; absent until then.
  std::optional<double> time;

  void SetTarget(std::weak_ptr<ActionTarget> target) { targetNode = std::move(target); }
  bool IsRunning() const { return running; }
  double GetRunTime() const { return runtime; }
  bool IsOver() const { return over; }

  // Starts (or restarts) the action from the beginning.
  virtual void Run();
  // Advances the action by delay seconds of one frame.
  virtual void update(double delay);

  void Pause() { running = false; }
  void Resume() { running = true; }
  // Stops without resetting runtime: a later Resume() goes on where the action was.
  void Stop() {
    running = false;
    time = 0.0;
  }

 protected:
  // The common start of a timed update: the target if the action acts this frame (it has
  // a live target, runs and is not over), after adding delay to runtime; else null.
  std::shared_ptr<ActionTarget> advance(double delay);
  // runtime / duration, or 1 for a duration of 0 or less (done at the first update).
  static double progress_of(double runtime, double duration) {
    return duration > 0.0 ? runtime / duration : 1.0;
  }
};

// Waits duration seconds, then calls callbackFunc(callbackParams) once, if a function is set.
class CallBackAction : public GAction {
 public:
  CallBackAction(double duration_, ScriptValue callbackFunc_, ScriptValue params)
      : duration(duration_), callbackFunc(std::move(callbackFunc_)), callbackParams(std::move(params)) {}

  double duration;
  ScriptValue callbackFunc;
  ScriptValue callbackParams;

  void update(double delay) override;
};

// Moves the target from its world position at Run() to dstPostion.
class MoveToAction : public GAction {
 public:
  MoveToAction(double duration_, double x, double y, double z)
      : duration(duration_), srcPostion(0, 0, 0, Vector3::kAllInt), dstPostion(x, y, z) {}

  double duration;
  Vector3 srcPostion;
  Vector3 dstPostion;

  void Run() override;
  void update(double delay) override;
};

// Moves the target by the offset dstPostion from its world position at Run().
class MoveByAction : public GAction {
 public:
  MoveByAction(double duration_, double x, double y, double z)
      : duration(duration_), srcPostion(0, 0, 0, Vector3::kAllInt), dstPostion(x, y, z) {}

  double duration;
  Vector3 srcPostion;
  Vector3 dstPostion;

  void Run() override;
  void update(double delay) override;
};

// Scales the target (2D: x and y) from its scale at Run() to dstScale.
class ScaleToAction : public GAction {
 public:
  ScaleToAction(double duration_, double sx, double sy)
      : duration(duration_), srcScale(1, 1, Vector2::kAllInt), dstScale(sx, sy) {}

  double duration;
  Vector2 srcScale;
  Vector2 dstScale;

  void Run() override;
  void update(double delay) override;
};

// Adds dstScale to the target's scale at Run(), spread over duration.
class ScaleByAction : public GAction {
 public:
  ScaleByAction(double duration_, double sx, double sy)
      : duration(duration_), srcScale(0, 0, Vector2::kAllInt), dstScale(sx, sy) {}

  double duration;
  Vector2 srcScale;
  Vector2 dstScale;

  void Run() override;
  void update(double delay) override;
};

// Turns the target's 2D angle from its angle at Run() to dstAngle (degrees).
class RotateToAction : public GAction {
 public:
  RotateToAction(double duration_, double angle) : duration(duration_), dstAngle(angle) {}

  double duration;
  double srcAngle = 0.0;
  double dstAngle;

  void Run() override;
  void update(double delay) override;
};

// Turns the target's 2D angle by dstAngle degrees from its angle at Run().
class RotateByAction : public GAction {
 public:
  RotateByAction(double duration_, double angle) : duration(duration_), dstAngle(angle) {}

  double duration;
  double srcAngle = 0.0;
  double dstAngle;

  void Run() override;
  void update(double delay) override;
};

// Hides the target for one half period and shows it for the next, blinkcount times;
// the count, not duration, ends it. delaytime = duration / blinkcount is negative for
// the default count of -1, which ends the action at its first visible update.
class BlinkAction : public GAction {
 public:
  // Throws ZeroDivisionError for a blinkcount of 0.
  explicit BlinkAction(double duration_, double blinkcount_ = -1);

  double duration;
  double blinkcount;
  double delaytime;
  std::int64_t blinkindex = 0;

  void update(double delay) override;
};

// Plays the queue ActionArray[0] on its target, one action after the other. An action
// that ends in a frame hands over in that frame (the next one is Run()); the next one's
// first update comes with the next frame, and unused time is not carried over.
class ActionPlayer : public GAction {
 public:
  using Queue = std::vector<std::shared_ptr<GAction>>;

  ActionPlayer() = default;

  // The argument list of the last AddActions(); none after CleanUp().
  std::optional<std::vector<Queue>> ActionArray;
  std::int64_t ActionIndex = 0;

  // Stores the argument list and targets every action in it at this player's target.
  void AddActions(std::vector<std::vector<std::shared_ptr<GAction>>> ActionArray);
  void CleanUp() { ActionArray.reset(); }

  // Starts the first action of the queue; an empty queue raises IndexError.
  void Run() override;
  void update(double delay) override;
};

}  // namespace vorn
