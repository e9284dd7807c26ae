#pragma once
// What a matrix does to an object that stands at the origin.

#include <maya/MMatrix.h>
#include <maya/MVector.h>

namespace vesk::nodes {

struct Placement {
    MVector position;
    MVector rotation; ///< Euler angles in degrees, in the order that was asked for
    MVector scale;
};

/// `rotateOrder` counts as the attribute of that name does: 0 xyz, 1 yzx, 2 zxy, 3 xzy, 4 yxz, 5 zyx; what
/// lies outside is taken to the nearest. Shear is left out.
Placement placementOf(const MMatrix& matrix, int rotateOrder);

} // namespace vesk::nodes
