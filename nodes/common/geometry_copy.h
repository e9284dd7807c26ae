#pragma once
// Geometry of an input as data that the node may write.

#include <maya/MDataHandle.h>
#include <maya/MObject.h>

namespace vesk::nodes {

/// New data with a copy of the handle's mesh, curve or surface in the space of `coordinateSystem` (steps.h):
/// world takes the transformed form, so that the copy's own space is the world. Object groups come along.
/// Null for data of any other type.
MObject copyOfGeometry(MDataHandle& handle, short coordinateSystem);

} // namespace vesk::nodes
