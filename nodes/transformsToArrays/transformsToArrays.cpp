#include "nodes/transformsToArrays/transformsToArrays.h"

#include "nodes/common/array_inputs.h"
#include "nodes/common/attributes.h"
#include "nodes/common/steps.h"
#include "nodes/transformsToArrays/placement.h"

#include <maya/MArrayDataHandle.h>
#include <maya/MFnDoubleArrayData.h>
#include <maya/MFnVectorArrayData.h>

using namespace vesk::nodes;

MObject transformsToArrays::inMatrix;
MObject transformsToArrays::inRotateOrder;
MObject transformsToArrays::inWeight;
MObject transformsToArrays::inColor;
MObject transformsToArrays::inAlpha;
MObject transformsToArrays::inRadius;
MObject transformsToArrays::inTransforms;
MObject transformsToArrays::outPositionPP;
MObject transformsToArrays::outRotationPP;
MObject transformsToArrays::outScalePP;
MObject transformsToArrays::outWeightPP;
MObject transformsToArrays::outRgbaPP;
MObject transformsToArrays::outRadiusPP;

MTypeId transformsToArrays::id(0x11578f);

void* transformsToArrays::creator() { return new transformsToArrays; }

MStatus transformsToArrays::initialize() {
    AttributeTable t;
    t.matrix(inMatrix, "inMatrix", "im");
    t.enumeration(inRotateOrder, "inRotateOrder", "iro", {"xyz", "yzx", "zxy", "xzy", "yxz", "zyx"});
    t.real(inWeight, "inWeight", "iw", 1);
    t.color(inColor, "inColor", "ic", 1, 1, 1);
    t.real(inAlpha, "inAlpha", "ial", 1);
    t.real(inRadius, "inRadius", "ir", 1);
    t.compound(inTransforms, "inTransforms", "it",
               {&inMatrix, &inRotateOrder, &inWeight, &inColor, &inAlpha, &inRadius})
        .array();
    t.typed(outPositionPP, "outPositionPP", "oppp", MFnData::kVectorArray).output();
    t.typed(outRotationPP, "outRotationPP", "ortpp", MFnData::kVectorArray).output();
    t.typed(outScalePP, "outScalePP", "ospp", MFnData::kVectorArray).output();
    t.typed(outWeightPP, "outWeightPP", "owpp", MFnData::kDoubleArray).output();
    t.typed(outRgbaPP, "outRgbaPP", "orgbapp", MFnData::kDoubleArray).output();
    t.typed(outRadiusPP, "outRadiusPP", "ordpp", MFnData::kDoubleArray).output();
    return t.finish();
}

MStatus transformsToArrays::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kSuccess;
    if (!isOneOf(plug, {&outPositionPP, &outRotationPP, &outScalePP, &outWeightPP, &outRgbaPP, &outRadiusPP}))
        return MS::kUnknownParameter;
    ArrayOutput<MFnVectorArrayData, MVectorArray> positions, rotations, scales;
    ArrayOutput<MFnDoubleArrayData, MDoubleArray> weights, rgba, radii;
    MArrayDataHandle transforms = block.inputArrayValue(inTransforms);
    const unsigned count = transforms.elementCount();
    for (unsigned i = 0; i < count; ++i) {
        transforms.jumpToArrayElement(i);
        MDataHandle element = transforms.inputValue();
        const Placement placed =
            placementOf(element.child(inMatrix).asMatrix(), element.child(inRotateOrder).asShort());
        positions.values.append(placed.position);
        rotations.values.append(placed.rotation);
        scales.values.append(placed.scale);
        weights.values.append(static_cast<double>(element.child(inWeight).asFloat()));
        const MFloatVector color = element.child(inColor).asFloatVector();
        for (const float channel : {color.x, color.y, color.z, element.child(inAlpha).asFloat()})
            rgba.values.append(static_cast<double>(channel));
        radii.values.append(static_cast<double>(element.child(inRadius).asFloat()));
    }
    positions.handOver(block, outPositionPP);
    rotations.handOver(block, outRotationPP);
    scales.handOver(block, outScalePP);
    weights.handOver(block, outWeightPP);
    rgba.handOver(block, outRgbaPP);
    radii.handOver(block, outRadiusPP);
    return MS::kSuccess;
}
