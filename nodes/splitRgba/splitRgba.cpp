#include "nodes/splitRgba/splitRgba.h"

#include "nodes/common/arrays.h"
#include "nodes/common/attributes.h"
#include "nodes/common/steps.h"
#include "nodes/rgbaToColorAndAlpha/colors.h"

#include <algorithm>

using namespace vesk::nodes;

MObject splitRgba::inArray;
MObject splitRgba::outArray;
MObject splitRgba::channel;

MTypeId splitRgba::id(0x115777);

void* splitRgba::creator() { return new splitRgba; }

MStatus splitRgba::initialize() {
    AttributeTable t;
    t.generic(inArray, "inArray", "ia", {MFnData::kDoubleArray, MFnData::kVectorArray, MFnData::kPointArray})
        .notStorable()
        .resets();
    t.generic(outArray, "outArray", "oa", {MFnData::kDoubleArray}).output();
    t.enumeration(channel, "channel", "ch", {"Red", "Green", "Blue", "Alpha"}).keyable();
    return t.finish();
}

MStatus splitRgba::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kSuccess;
    if (plug != outArray) return MS::kUnknownParameter;
    const int chosen = std::clamp<int>(block.inputValue(channel).asShort(), kRed, kAlpha);
    const InputArray in(block, inArray);
    std::size_t count = lengthOf(in.values());
    const auto* rgba = std::get_if<std::span<const double>>(&in.values());
    if (rgba) {
        if (count % 4 != 0) warn(nodeName(*this, inArray), kTornColor);
        count /= 4;
    }
    putArray<DoublesOutput>(*this, block, outArray, count, [&](std::span<double> out) {
        if (rgba) return takeChannel(*rgba, chosen, out);
        if (const auto* rgb = std::get_if<std::span<const MVector>>(&in.values()))
            return takeChannel(*rgb, chosen, out);
        if (const auto* points = std::get_if<std::span<const MPoint>>(&in.values()))
            takeChannel(*points, chosen, out);
    });
    return MS::kSuccess;
}
