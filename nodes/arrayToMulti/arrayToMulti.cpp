#include "nodes/arrayToMulti/arrayToMulti.h"

#include "nodes/common/arrays.h"
#include "nodes/common/attributes.h"

#include <maya/MArrayDataBuilder.h>
#include <maya/MArrayDataHandle.h>

namespace {

using namespace vesk::nodes;
using Self = arrayToMulti;

/// Makes element 0 of the list hold these weights and no others. It is written through its plug, since a
/// multi inside a multi cannot be reached through the output's handle alone.
void writeWeights(const MPxNode& node, MDataBlock& block, std::span<const double> weights) {
    MPlug plug(node.thisMObject(), Self::weight);
    plug.selectAncestorLogicalIndex(0, Self::outWeightList);
    MDataHandle handle = plug.constructHandle(block);
    MArrayDataBuilder builder(&block, Self::weight, static_cast<unsigned>(weights.size()));
    unsigned index = 0;
    for (const double weight : weights)
        builder.addElement(index++).set(weight);
    MArrayDataHandle(handle).set(builder);
    plug.setValue(handle);
    plug.destructHandle(handle);
}

} // namespace

MObject arrayToMulti::envelope;
MObject arrayToMulti::inWeightPP;
MObject arrayToMulti::outWeightList;
MObject arrayToMulti::weight;

MTypeId arrayToMulti::id(0x115748);

void* arrayToMulti::creator() { return new arrayToMulti; }

MStatus arrayToMulti::initialize() {
    AttributeTable t;
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.typed(inWeightPP, "inWeightPP", "iwpp", MFnData::kDoubleArray).notStorable();
    t.number(weight, "weight", "w", 0).builder().keyable().notStorable();
    t.compound(outWeightList, "outWeightList", "owl", {&weight}).builder().output();
    return t.finish();
}

MStatus arrayToMulti::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kUnknownParameter;
    if (plug != outWeightList && plug != weight) return MS::kSuccess;
    if (!block.inputValue(envelope).asBool()) {
        writeWeights(*this, block, {});
    } else {
        ArrayView<MFnDoubleArrayData> weights(block.inputValue(inWeightPP).data());
        writeWeights(*this, block, weights.values());
    }
    return MS::kSuccess;
}
