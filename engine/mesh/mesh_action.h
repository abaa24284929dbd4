#pragma once
// The actions of a mesh as a file gives them. Apart from mesh.h so that the file
// readers build them without the node classes.
#include <string>
#include <vector>

#include "core/ordered_map.h"

namespace vorn {

// One sample of a channel: the time in seconds and the value (three floats for scale
// and translation, four for a rotation).
struct ActionSample {
  double time = 0.0;
  std::vector<double> value;
};
// A channel of a bone: its path ("scale", "translation" or "rotation") and samples.
struct ActionChannel {
  std::string path;
  std::vector<ActionSample> samples;
};
// An action as a file gives it: bone key (the node number of the bone) to channels.
using MeshAction = OrderedMap<int, std::vector<ActionChannel>>;

}  // namespace vorn
