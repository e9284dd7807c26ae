#pragma once

#include "host/core/outcome.h"
#include "host/graph/scene.h"

#include <filesystem>
#include <vector>

namespace vesk::scene {

/// Writes nodes as a Maya ASCII scene: what is stored and not default, and the wires between them and to the
/// session's own nodes. A node's parents must be among `nodes`, or it is written below the world. The file
/// appears whole or not at all.
Outcome writeAscii(graph::Scene& scene, const std::vector<graph::Node*>& nodes,
                   const std::filesystem::path& file);

} // namespace vesk::scene
