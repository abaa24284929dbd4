#include "core/actions.h"

#include <cmath>
#include <string>

#include "core/errors.h"
#include "core/pyseq.h"

namespace vorn {

void GAction::Run() {
  running = true;
  runtime = 0.0;
  over = false;
}

void GAction::update(double delay) {
  if (running && !over) runtime += delay;
}

std::shared_ptr<ActionTarget> GAction::advance(double delay) {
  if (!running || over) return nullptr;
  std::shared_ptr<ActionTarget> target = targetNode.lock();
  if (target) GAction::update(delay);
  return target;
}

void CallBackAction::update(double delay) {
  if (!advance(delay)) return;
  if (progress_of(runtime, duration) >= 1.0) {
    // A callback that raises leaves the action unfinished, so the next frame calls again.
    if (!callbackFunc.is_none()) callbackFunc.call({callbackParams});
    over = true;
  }
}

BlinkAction::BlinkAction(double duration_, double blinkcount_)
    : duration(duration_), blinkcount(blinkcount_), delaytime(0.0) {
  if (blinkcount == 0.0) throw ZeroDivisionError("division by zero");
  delaytime = duration / blinkcount;
}

void BlinkAction::update(double delay) {
  const std::shared_ptr<ActionTarget> target = advance(delay);
  if (!target) return;
  // The number of half periods run so far, truncated toward zero; only its parity matters,
  // so it stays a double (every double from 2^53 on is an even integer).
  const double half = delaytime * 0.5;
  if (half == 0.0) throw ZeroDivisionError("float division by zero");
  const double quotient = runtime / half;
  if (std::isnan(quotient)) throw ValueError("BlinkAction.update: cannot convert float NaN to integer");
  if (std::isinf(quotient)) throw ValueError("BlinkAction.update: cannot convert float infinity to integer");
  const double currblinkcount = std::trunc(quotient);
  if (std::fmod(currblinkcount, 2.0) == 0.0) {
    if (target->IsVisible()) {
      if (static_cast<double>(blinkindex) == blinkcount + 1.0) {
        over = true;
        return;
      }
      ++blinkindex;
      target->SetVisible(false);
    }
  } else {
    target->SetVisible(true);
  }
}

namespace {

// A queue slot that holds no action fails as calling an operation on None does.
GAction& action_in(const std::shared_ptr<GAction>& action, const char* operation) {
  if (!action) throw AttributeError(std::string("'NoneType' object has no attribute '") + operation + "'");
  return *action;
}

}  // namespace

void ActionPlayer::AddActions(std::vector<std::vector<std::shared_ptr<GAction>>> actions) {
  for (const Queue& queue : actions) {
    for (const std::shared_ptr<GAction>& action : queue) {
      if (action) action->SetTarget(targetNode);
    }
  }
  ActionArray = std::move(actions);
}

void ActionPlayer::Run() {
  if (targetNode.expired() || !ActionArray || ActionArray->empty()) return;
  ActionIndex = 0;
  Queue& queue = (*ActionArray)[0];
  // Run() may replace ActionArray (a script's override); hold the action while it runs.
  const std::shared_ptr<GAction> first = at(queue, ActionIndex);
  action_in(first, "Run").Run();
  GAction::Run();
}

void ActionPlayer::update(double delay) {
  if (targetNode.expired() || !running || over) return;
  GAction::update(delay);
  if (!ActionArray) return;
  const std::shared_ptr<GAction> current = at(at(*ActionArray, 0), ActionIndex);
  action_in(current, "update").update(delay);
  if (!current->IsOver()) return;
  // The finished action hands over in this frame; its unused time is dropped.
  ++ActionIndex;
  if (!ActionArray) return;
  const Queue& queue = at(*ActionArray, 0);
  if (ActionIndex >= static_cast<std::int64_t>(queue.size())) {
    over = true;
  } else {
    const std::shared_ptr<GAction> next = at(queue, ActionIndex);
    action_in(next, "Run").Run();
  }
}

}  // namespace vorn
