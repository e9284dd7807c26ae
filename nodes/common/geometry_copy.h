#pragma once
// Geometry of an input as data that the node may write.

#include <maya/MDataHandle.h>
#include <maya/MObject.h>

namespace vesk::nodes {

/// New data with a copy of a mesh, curve or surface, its object groups included, without a matrix: the points
/// stay as the geometry gives them in its own space. Null for data of any other type, and where the host
/// refuses to copy.
MObject copyOfGeometry(const MObject& geometry);

/// The same of a handle's geometry in the space of `coordinateSystem` (steps.h): world takes the transformed
/// form.
MObject copyOfGeometry(MDataHandle& handle, short coordinateSystem);

} // namespace vesk::nodes
