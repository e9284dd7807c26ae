#include "nodes/common/deformer_inputs.h"

#include <maya/MArrayDataHandle.h>
#include <maya/MPxDeformerNode.h>

namespace vesk::nodes {

DeformerInput::DeformerInput(MDataBlock& block, unsigned index) {
    MArrayDataHandle inputs = block.inputArrayValue(MPxDeformerNode::input);
    if (!inputs.jumpToElement(index)) return;
    MDataHandle element = inputs.inputValue();
    geometry = element.child(MPxDeformerNode::inputGeom);
    groupId = element.child(MPxDeformerNode::groupId).asInt();
}

std::vector<float> paintedWeights(MDataBlock& block, unsigned index, unsigned pointCount) {
    MArrayDataHandle lists = block.inputArrayValue(MPxDeformerNode::weightList);
    if (!lists.jumpToElement(index)) return {};
    MArrayDataHandle painted(lists.inputValue().child(MPxDeformerNode::weights));
    const unsigned count = painted.elementCount();
    if (count == 0) return {};
    std::vector<float> weights(pointCount, 1.0F);
    for (unsigned i = 0; i < count; ++i, painted.next()) {
        const unsigned point = painted.elementIndex();
        if (point < pointCount) weights[point] = painted.inputValue().asFloat();
    }
    return weights;
}

} // namespace vesk::nodes
