#pragma once
// The owning sequence behind a node's children and the scene's node registries.
#include "core/owned_list.h"

namespace vorn {

class Vorn_3DGameNode;
using NodeList = OwnedList<Vorn_3DGameNode>;
// The owning handle of a single node-valued field (FollowCamera, ActiveCamera, ...).
using NodeRef = Ref<Vorn_3DGameNode>;

}  // namespace vorn
