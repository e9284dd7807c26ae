#include "nodes/remapArray/remapArray.h"

#include "nodes/common/attributes.h"
#include "nodes/remapArray/remapValues.h"

namespace {

using namespace vesk::nodes;
using Self = remapArray;

/// Values of `outArrayType`.
enum OutArrayType : short { kDouble = 0, kVector, kPoint, kInt };

constexpr const char* kMismatch = "in/out arrays length mismatch. Result will be unpredictable.";

RemapSettings readSettings(MDataBlock& block) {
    const auto isOn = [&](const MObject& attribute) { return block.inputValue(attribute).asBool(); };
    const auto number = [&](const MObject& attribute) { return block.inputValue(attribute).asDouble(); };
    return {.absolute = isOn(Self::absolute),
            .shift = isOn(Self::shift),
            .shiftValue = number(Self::shiftValue),
            .remap = isOn(Self::remap),
            .remapMin = number(Self::remapMin),
            .remapMax = number(Self::remapMax),
            .clamp = isOn(Self::clamp),
            .clampMin = number(Self::clampMin),
            .clampMax = number(Self::clampMax)};
}

} // namespace

MObject remapArray::inArray;
MObject remapArray::outArray;
MObject remapArray::absolute;
MObject remapArray::shift;
MObject remapArray::shiftValue;
MObject remapArray::remap;
MObject remapArray::remapMin;
MObject remapArray::remapMax;
MObject remapArray::clamp;
MObject remapArray::clampMin;
MObject remapArray::clampMax;
MObject remapArray::outArrayType;

MTypeId remapArray::id(0x11574f);

void* remapArray::creator() { return new remapArray; }

MStatus remapArray::initialize() {
    const auto kinds = {MFnData::kDoubleArray, MFnData::kVectorArray, MFnData::kPointArray,
                        MFnData::kIntArray};
    AttributeTable t;
    t.generic(inArray, "inArray", "ia", kinds).notStorable();
    t.generic(outArray, "outArray", "oa", kinds).output();
    t.boolean(absolute, "absolute", "a", false).keyable();
    t.boolean(shift, "shift", "s", false).keyable();
    t.number(shiftValue, "shiftValue", "sv", 0).keyable();
    t.boolean(remap, "remap", "r", false).keyable();
    t.number(remapMin, "remapMin", "rmn", 0).keyable();
    t.number(remapMax, "remapMax", "rmx", 1).keyable();
    t.boolean(clamp, "clamp", "c", false).keyable();
    t.number(clampMin, "clampMin", "cmn", 0).keyable();
    t.number(clampMax, "clampMax", "cmx", 1).keyable();
    t.enumeration(outArrayType, "outArrayType", "oat", {"Double", "Vector", "Point", "Int"}).keyable();
    return t.finish();
}

MStatus remapArray::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking || plug != outArray) return MS::kSuccess;
    const RemapSettings settings = readSettings(block);
    const short type = block.inputValue(outArrayType).asShort();
    const InputArray input(block, inArray);
    const auto remapped = [&](auto out) { remapValues(settings, input.values(), out); };
    const std::size_t length = flatLength(input.values());
    if ((type == kVector || type == kPoint) && length % 3 != 0) warn(nodeName(*this, inArray), kMismatch);
    switch (type) {
    case kVector: putArray<VectorsOutput>(*this, block, outArray, length / 3, remapped); break;
    case kPoint: putArray<PointsOutput>(*this, block, outArray, length / 3, remapped); break;
    case kInt: putArray<IntsOutput>(*this, block, outArray, length, remapped); break;
    default: putArray<DoublesOutput>(*this, block, outArray, length, remapped); break;
    }
    return MS::kSuccess;
}
