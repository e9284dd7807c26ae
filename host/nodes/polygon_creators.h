#pragma once

#include "host/graph/node_type.h"

namespace vesk::nodes {

/// Node types `polyCube`, `polyPlane`, `polySphere`, `polyCylinder`, `polyCone` and `polyTorus`: a mesh in
/// `output`.
void registerPolygonCreators(graph::TypeRegistry& types);

} // namespace vesk::nodes
