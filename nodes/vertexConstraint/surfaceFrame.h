#pragma once
// How something turns that stands on a surface.

#include <maya/MMatrix.h>
#include <maya/MVector.h>

namespace vesk::nodes {

/// A rotation that takes axis number `axis` (0 to 2) to the normal, and the axis before it to `side` as far
/// as that is square to the normal. Neither needs unit length. Where the two say nothing (no length, no
/// number, one direction), axes of the space stand in: y for the normal, for the side the first one that is
/// not along the normal, in the order x y z.
MMatrix surfaceFrame(const MVector& normal, const MVector& side, unsigned axis);

} // namespace vesk::nodes
