#include "nodes/transformsToArrays/placement.h"

#include <maya/MTransformationMatrix.h>

#include <algorithm>
#include <cmath>

namespace vesk::nodes {

Placement placementOf(const MMatrix& matrix, int rotateOrder) {
    MTransformationMatrix transform(matrix);
    auto order = static_cast<MTransformationMatrix::RotationOrder>(std::clamp(rotateOrder, 0, 5) + 1);
    transform.reorderRotation(order);
    double angles[3], scales[3];
    transform.getRotation(angles, order);
    transform.getScale(scales, MSpace::kTransform);
    return {transform.getTranslation(MSpace::kTransform), MVector(angles) * (180 / M_PI), MVector(scales)};
}

} // namespace vesk::nodes
