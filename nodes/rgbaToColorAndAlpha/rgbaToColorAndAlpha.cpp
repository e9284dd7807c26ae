#include "nodes/rgbaToColorAndAlpha/rgbaToColorAndAlpha.h"

#include "nodes/common/array_inputs.h"
#include "nodes/common/attributes.h"
#include "nodes/common/steps.h"
#include "nodes/rgbaToColorAndAlpha/colors.h"

#include <maya/MFnDoubleArrayData.h>
#include <maya/MFnVectorArrayData.h>

using namespace vesk::nodes;

MObject rgbaToColorAndAlpha::inRgbaPP;
MObject rgbaToColorAndAlpha::outRgbPP;
MObject rgbaToColorAndAlpha::outAlphaPP;

MTypeId rgbaToColorAndAlpha::id(0x115765);

void* rgbaToColorAndAlpha::creator() { return new rgbaToColorAndAlpha; }

MStatus rgbaToColorAndAlpha::initialize() {
    AttributeTable t;
    t.typed(inRgbaPP, "inRgbaPP", "irgbapp", MFnData::kDoubleArray).notStorable().resets();
    t.typed(outRgbPP, "outRgbPP", "orgbpp", MFnData::kVectorArray).output();
    t.typed(outAlphaPP, "outAlphaPP", "oapp", MFnData::kDoubleArray).output();
    return t.finish();
}

MStatus rgbaToColorAndAlpha::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kSuccess;
    if (!isOneOf(plug, {&outRgbPP, &outAlphaPP})) return MS::kUnknownParameter;
    MDoubleArray rgba = doublesIn(block.inputValue(inRgbaPP).data());
    if (rgba.length() % 4 != 0) warn(nodeName(*this, inRgbaPP), kTornColor);
    ArrayOutput<MFnVectorArrayData, MVectorArray> rgb;
    ArrayOutput<MFnDoubleArrayData, MDoubleArray> alpha;
    rgb.values.setLength(rgba.length() / 4);
    alpha.values.setLength(rgba.length() / 4);
    splitColors(elements(rgba), elements(rgb.values), elements(alpha.values));
    rgb.handOver(block, outRgbPP);
    alpha.handOver(block, outAlphaPP);
    return MS::kSuccess;
}
