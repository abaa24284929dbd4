#pragma once
// The GLB reader's console lines show values as a script's print shows them: the parsed
// document, byte strings, accessor data and the tables the load builds.
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/ordered_map.h"
#include "mesh/glb_file.h"
#include "mesh/mesh_action.h"

namespace vorn {

using GlbAttributes = OrderedMap<std::string, GlbAttribute>;

// The document as a script's print shows the parsed value ({'a': [1, 2.5, None]}).
// ValueError for a document nested deeper than 256 levels.
std::string JsonToPy(const GlbJson& value, int depth = 0);
// The records as a script prints them: a plain list for scalars, else a list of lists.
std::string AttributeToPy(const GlbAttribute& attr);
// A byte string as a script prints it (b'glTF\x02\x00').
std::string BytesToPy(std::span<const std::uint8_t> bytes);
// Chunk type text, decoded as UTF-8 with undecodable bytes dropped.
std::string ChunkTypeText(std::span<const std::uint8_t> bytes);

// {'POSITION': [[x, y, z], ...], 'indices': [0, 1, 2]}
std::string AttributesToPy(const GlbAttributes& data);
// Joint -> the vertices that name it: {0: [0, 0, 1], 1: [1]}
std::string BoneDictToPy(const OrderedMap<std::int64_t, std::vector<std::int64_t>>& dict);
// {'name': {bone: [('path', [(time, [values]), ...]), ...]}}
std::string ActionsToPy(const OrderedMap<std::string, MeshAction>& actions);

}  // namespace vorn
