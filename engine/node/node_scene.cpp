#include "node/node_scene.h"

#include "node/game_node.h"
#include "node/node_list.h"

namespace vorn {
namespace {

// Shared empties for scenes that have no such registry.
const NodeList& empty_list() {
  static const NodeList list;
  return list;
}

}  // namespace

const std::vector<double>& NodeScene::GetSSAOKernelList() const {
  static const std::vector<double> none;
  return none;
}

const NodeList& NodeScene::GetPointLightList() const { return empty_list(); }

const NodeList& NodeScene::Get3DObjectArray() const { return empty_list(); }

}  // namespace vorn
