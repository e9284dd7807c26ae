#pragma once
// Node types of the host that do nothing in a session without a renderer: shading, layers, sets, lists,
// settings.

#include "host/graph/node_type.h"

namespace vesk::nodes {

/// All of them are placeholders: what is not declared here comes to be when a file sets or connects it. After
/// `registerTransforms` and `registerShapeBases`. Of those that act on others elsewhere (constraints,
/// layers of animation ...) the first node is a warning on the log.
void registerStockTypes(graph::TypeRegistry& types);

} // namespace vesk::nodes
