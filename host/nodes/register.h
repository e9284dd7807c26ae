#pragma once

#include "host/graph/node_type.h"

namespace vesk::nodes {

/// All node types of the host but those of the graph itself; after `graph::registerBaseTypes`.
void registerHostTypes(graph::TypeRegistry& types);

} // namespace vesk::nodes
