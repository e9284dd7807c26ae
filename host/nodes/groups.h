#pragma once
// Nodes that pass geometry on: with a group added, with points moved, through a matrix.

#include "host/graph/node_type.h"

namespace vesk::nodes {

/// Node types `groupId`, `groupParts`, `tweak` and `transformGeometry`, and `geometryFilter`, the base of all
/// deformers.
///
/// Element i of a deformer's `input`, `outputGeometry` and `weightList` belong together; all inputs affect
/// all outputs. An input that loses its wire holds nothing.
/// A `groupId` gets its number when it is made; no other of the session has it. `groupParts` adds that group,
/// holding `inputComponents` without `inputRemoveComponent`, to the geometry. `tweak` adds the offsets
/// `vlist[i].vertex[k]` to point k of geometry i; it knows meshes, curves and surfaces, and passes other data
/// on.
void registerGroups(graph::TypeRegistry& types);

} // namespace vesk::nodes
