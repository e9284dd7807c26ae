#pragma once

#include "host/graph/node_type.h"

namespace vesk::nodes {

/// Node types `rebuildCurve`, `extrude` and `nurbsTessellate`, and the creators `makeNurbCircle`,
/// `makeNurbSphere` and `makeNurbPlane`.
///
/// The three operators read their input with its matrix applied: fed from world space, the result is in world
/// coordinates and carries no matrix. `rebuildCurve` does what `geom::rebuildCurve` does, `extrude` goes
/// along a distance
/// (`extrudeType` 0), `nurbsTessellate` gives the net of CVs (`format` 3). Anything else is an error on the
/// log that names the node, and no output.
void registerNurbsOperators(graph::TypeRegistry& types);

} // namespace vesk::nodes
