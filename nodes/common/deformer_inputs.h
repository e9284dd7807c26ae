#pragma once
// What comes to an element of a deformer.

#include <maya/MDataBlock.h>
#include <maya/MDataHandle.h>

#include <vector>

namespace vesk::nodes {

/// Element `index` of the base's `input`: its geometry and the group of the points that belong to the
/// deformer. Empty handles when there is no such element.
struct DeformerInput {
    DeformerInput(MDataBlock& block, unsigned index);

    MDataHandle geometry;
    int groupId = -1;
};

/// The painted weights of element `index`, one a point; a point that is not painted has 1, an index beyond
/// the points counts for nothing. Empty when nothing is painted.
std::vector<float> paintedWeights(MDataBlock& block, unsigned index, unsigned pointCount);

} // namespace vesk::nodes
