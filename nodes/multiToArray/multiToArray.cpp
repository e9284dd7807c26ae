#include "nodes/multiToArray/multiToArray.h"

#include "nodes/common/arrays.h"
#include "nodes/common/attributes.h"

#include <maya/MArrayDataHandle.h>

using namespace vesk::nodes;

MObject multiToArray::envelope;
MObject multiToArray::inWeightList;
MObject multiToArray::weights;
MObject multiToArray::outArray;

MTypeId multiToArray::id(0x115756);

void* multiToArray::creator() { return new multiToArray; }

MStatus multiToArray::initialize() {
    AttributeTable t;
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.number(weights, "weights", "w", 0).builder().keyable().notStorable();
    t.compound(inWeightList, "inWeightList", "iwl", {&weights}).builder().notStorable();
    t.typed(outArray, "outArray", "oa", MFnData::kDoubleArray).output();
    return t.finish();
}

MStatus multiToArray::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kUnknownParameter;
    if (plug != outArray) return MS::kSuccess;
    if (!block.inputValue(envelope).asBool()) {
        putEmptyArray<DoublesOutput>(block, outArray);
        return MS::kSuccess;
    }
    MArrayDataHandle lists = block.inputArrayValue(inWeightList);
    if (!lists.jumpToElement(0)) return MS::kUnknownParameter;
    MArrayDataHandle list(lists.inputValue().child(weights));
    // Elements in the order of their indices, gaps closed.
    putArray<DoublesOutput>(*this, block, outArray, list.elementCount(), [&](std::span<double> out) {
        for (double& weight : out) {
            weight = list.inputValue().asDouble();
            list.next();
        }
    });
    return MS::kSuccess;
}
