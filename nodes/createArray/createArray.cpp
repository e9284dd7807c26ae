#include "nodes/createArray/createArray.h"

#include "nodes/common/arrays.h"
#include "nodes/common/attributes.h"
#include "nodes/createArray/createEntries.h"

#include <algorithm>

namespace {

using namespace vesk::nodes;
using Self = createArray;

/// Values of `outputType`.
enum OutputType : short { kInteger = 0, kDouble, kUv, kXyz, kVector, kRgba };

EntryValues readValues(const MObject& node, MDataBlock& block, short type) {
    const auto number = [&](const MObject& attribute) { return block.inputValue(attribute).asDouble(); };
    EntryValues result;
    result.values = {number(Self::defaultValueX), number(Self::defaultValueY), number(Self::defaultValueZ),
                     number(Self::defaultValueW)};
    if (!block.inputValue(Self::useRamps).asBool()) return result;
    result.xyz = readColorRamp(node, Self::rampDefaultValueXYZ);
    if (type == kRgba) result.w = readCurveRamp(node, Self::rampDefaultValueW);
    // A ramp of one entry is a value for all.
    result.useRamps = result.xyz.entryCount() != 1;
    if (!result.useRamps) {
        const auto color = result.xyz.at(0);
        std::copy(color.begin(), color.end(), result.values.begin());
    }
    if (result.w.entryCount() == 1) result.values[3] = static_cast<double>(result.w.at(0)[0]);
    return result;
}

} // namespace

MObject createArray::outArray;
MObject createArray::outputType;
MObject createArray::length;
MObject createArray::defaultValueX;
MObject createArray::defaultValueY;
MObject createArray::defaultValueZ;
MObject createArray::defaultValueW;
MObject createArray::useRamps;
MObject createArray::rampDefaultValueXYZ;
MObject createArray::rampDefaultValueW;

MTypeId createArray::id(0x115779);

void* createArray::creator() { return new createArray; }

MStatus createArray::initialize() {
    AttributeTable t;
    t.generic(outArray, "outArray", "oa", {MFnData::kIntArray, MFnData::kDoubleArray, MFnData::kVectorArray})
        .output()
        .stored();
    t.enumeration(outputType, "outputType", "ot",
                  {"1 integer", "1 double", "2 doubles (UV)", "3 doubles (XYZ/RGB)", "vector (XYZ/RGB)",
                   "4 doubles (RGBA)"})
        .keyable();
    t.integer(length, "length", "l", 0).min(0).keyable();
    t.number(defaultValueX, "defaultValueX", "dvx", 0).keyable();
    t.number(defaultValueY, "defaultValueY", "dvy", 0).keyable();
    t.number(defaultValueZ, "defaultValueZ", "dvz", 0).keyable();
    t.number(defaultValueW, "defaultValueW", "dvw", 0).keyable();
    t.boolean(useRamps, "useRamps", "ur", false);
    t.colorRamp(rampDefaultValueXYZ, "rampDefaultValueXYZ", "rxyz");
    t.curveRamp(rampDefaultValueW, "rampDefaultValueW", "rw");
    return t.finish();
}

MStatus createArray::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kHasNoEffect) return MS::kUnknownParameter;
    if (plug != outArray) return MS::kSuccess;
    const int wanted = block.inputValue(length).asInt();
    if (wanted < 1) {
        block.outputValue(outArray).set(MObject::kNullObj);
        return MS::kSuccess;
    }
    const auto count = static_cast<std::size_t>(wanted);
    const short type = std::clamp<short>(block.inputValue(outputType).asShort(), kInteger, kRgba);
    const EntryValues values = readValues(thisMObject(), block, type);
    switch (type) {
    case kInteger:
        putArray<IntsOutput>(*this, block, outArray, count,
                             [&](std::span<int> out) { createEntries(values, out); });
        break;
    case kVector:
        putArray<VectorsOutput>(*this, block, outArray, count,
                                [&](std::span<MVector> out) { createEntries(values, 3, flat(out)); });
        break;
    default: {
        constexpr std::size_t kChannels[] = {1, 1, 2, 3, 3, 4};
        const std::size_t channels = kChannels[type];
        putArray<DoublesOutput>(*this, block, outArray, channels * count,
                                [&](std::span<double> out) { createEntries(values, channels, out); });
    }
    }
    return MS::kSuccess;
}
