#pragma once
// Which faces of a mesh lie outside another.

#include <maya/MIntArray.h>
#include <maya/MObject.h>

namespace vesk::nodes {

/// The faces round each vertex that is outside of `cage`, ascending. A vertex is inside when its ray along
/// its normal leaves through the cage in about the same direction: the normals of the two, the cage's at the
/// hit, part by no more than `tolerance` radians. Both meshes are read in world space.
MIntArray outsideFaces(const MObject& mesh, MObject& cage, double tolerance);

} // namespace vesk::nodes
