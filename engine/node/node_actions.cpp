// The node as the target of timed actions.
#include "core/actions.h"
#include "node/game_node.h"

namespace vorn {

void Vorn_3DGameNode::RunAction(const ActionQueue& actionqueue) {
  if (!ActionPlayer) ActionPlayer = std::make_shared<vorn::ActionPlayer>();
  auto player = ActionPlayer;
  player->SetTarget(std::weak_ptr<ActionTarget>(shared_from_this()));
  // Whatever was queued before is dropped.
  player->CleanUp();
  player->AddActions({actionqueue});
  player->Run();
}

void Vorn_3DGameNode::UpdateActionPlayer(double delay) {
  // Held for the call: an action's callback may replace the player.
  auto player = ActionPlayer;
  player->update(delay);
}

}  // namespace vorn
