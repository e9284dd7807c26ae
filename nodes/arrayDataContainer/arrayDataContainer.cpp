#include "nodes/arrayDataContainer/arrayDataContainer.h"

#include "nodes/arrayDataContainer/blend.h"
#include "nodes/common/attributes.h"
#include "nodes/common/points.h"
#include "nodes/common/steps.h"

#include <maya/MArrayDataBuilder.h>
#include <maya/MArrayDataHandle.h>

#include <algorithm>
#include <cmath>
#include <map>

using namespace vesk::nodes;
using Self = arrayDataContainer;

MObject arrayDataContainer::inArray;
MObject arrayDataContainer::outArray;
MObject arrayDataContainer::inTime;
MObject arrayDataContainer::startTime;
MObject arrayDataContainer::endTime;
MObject arrayDataContainer::record;
MObject arrayDataContainer::heldTime;
MObject arrayDataContainer::heldArray;
MObject arrayDataContainer::held;

MTypeId arrayDataContainer::id(0x115761);

void* arrayDataContainer::creator() { return new arrayDataContainer; }

MStatus arrayDataContainer::initialize() {
    const auto arrays = {MFnData::kIntArray, MFnData::kDoubleArray, MFnData::kVectorArray,
                         MFnData::kPointArray};
    AttributeTable t;
    t.generic(inArray, "inArray", "ia", arrays).notStorable().resets();
    t.generic(outArray, "outArray", "oa", arrays).output();
    t.number(inTime, "inTime", "it", 0).keyable();
    t.number(startTime, "startTime", "st", 0).keyable();
    t.number(endTime, "endTime", "et", 0).keyable();
    t.boolean(record, "record", "rec", true).keyable();
    t.number(heldTime, "heldTime", "ht", 0);
    t.generic(heldArray, "heldArray", "ha", arrays);
    t.compound(held, "held", "h", {&heldTime, &heldArray}).hidden().builder();
    return t.finish();
}

namespace {

/// Arrays by their frame.
using Held = std::map<double, MObject>;

Held readHeld(MArrayDataHandle elements) {
    Held held;
    for (unsigned i = 0; i < elements.elementCount(); ++i) {
        elements.jumpToArrayElement(i);
        MDataHandle element = elements.inputValue();
        const double frame = element.child(Self::heldTime).asDouble();
        if (!std::isnan(frame)) held.insert_or_assign(frame, element.child(Self::heldArray).data());
    }
    return held;
}

void writeHeld(MDataBlock& block, const Held& held) {
    MArrayDataBuilder builder(&block, Self::held, static_cast<unsigned>(held.size()));
    unsigned index = 0;
    for (const auto& [frame, data] : held) {
        MDataHandle element = builder.addElement(index++);
        element.child(Self::heldTime).set(frame);
        element.child(Self::heldArray).set(data);
    }
    MArrayDataHandle elements = block.outputArrayValue(Self::held);
    elements.set(builder);
    elements.setAllClean();
}

/// What is held at a frame: between two of them what lies on the way, before the first and behind the last
/// these.
MObject heldAt(const Held& held, double frame) {
    if (held.empty()) return MObject::kNullObj;
    const auto later = held.upper_bound(frame);
    if (later == held.begin()) return later->second;
    const auto earlier = std::prev(later);
    if (later == held.end()) return earlier->second;
    return blendedArray(earlier->second, later->second,
                        (frame - earlier->first) / (later->first - earlier->first));
}

/// Takes the array of a whole frame in, and lets go of what lies outside of the range.
void hold(MDataBlock& block, double frame, const MObject& array, double start, double end) {
    Held held = readHeld(block.outputArrayValue(Self::held));
    std::erase_if(held, [&](const auto& entry) { return entry.first < start || entry.first > end; });
    held.insert_or_assign(frame, array);
    writeHeld(block, held);
}

} // namespace

MStatus arrayDataContainer::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kSuccess;
    if (plug != outArray) return MS::kUnknownParameter;
    const auto number = [&](const MObject& attribute) {
        const double value = block.inputValue(attribute).asDouble();
        return std::isnan(value) ? 0.0 : value;
    };
    const double time = number(inTime), start = number(startTime), end = std::max(start, number(endTime));
    const double frame = std::clamp(time, start, end);
    MObject array;
    if (!block.inputValue(record).asBool()) {
        array = heldAt(readHeld(block.inputArrayValue(held)), frame);
    } else if (frame != time) {
        array = dataAtFrame(MPlug(thisMObject(), inArray), frame);
    } else {
        array = block.inputValue(inArray).data();
        const bool isWhole = frame == std::floor(frame);
        if (isWhole && !array.isNull() && block.context().isNormal()) hold(block, frame, array, start, end);
    }
    MDataHandle out = block.outputValue(outArray);
    out.set(array);
    out.setClean();
    return MS::kSuccess;
}
