#include "nodes/arrayToArray/arrayToArray.h"

#include "nodes/arrayToArray/mixChannels.h"
#include "nodes/common/attributes.h"

#include <string>

namespace {

using namespace vesk::nodes;
using Self = arrayToArray;

/// Values of `outDataType`.
enum OutDataType : short { kVectors = 0, kPoints = 1 };

} // namespace

MObject arrayToArray::envelope;
MObject arrayToArray::inArrays[4];
MObject arrayToArray::reads[4][4];
MObject arrayToArray::outArray;
MObject arrayToArray::outDataType;

MTypeId arrayToArray::id(0x11575f);

void* arrayToArray::creator() { return new arrayToArray; }

MStatus arrayToArray::initialize() {
    // Input 1 is read for x, y and z, and of the others input 2 alone for w: part of the contract.
    constexpr bool kDefaults[4][4] = {{true, true, true, false}, {false, false, false, true}, {}, {}};
    const auto kinds = {MFnData::kDoubleArray, MFnData::kVectorArray, MFnData::kPointArray};
    AttributeTable t;
    t.boolean(envelope, "envelope", "en", true).keyable();
    for (std::size_t input = 0; input < 4; ++input) {
        const std::string number = std::to_string(input + 1);
        t.generic(inArrays[input], ("inArray" + number).c_str(), ("ia" + number).c_str(), kinds)
            .notStorable();
        for (std::size_t channel = 0; channel < 4; ++channel) {
            const std::string longName = std::string("read") + "XYZW"[channel] + number;
            const std::string shortName = std::string("r") + "xyzw"[channel] + number;
            t.boolean(reads[input][channel], longName.c_str(), shortName.c_str(), kDefaults[input][channel])
                .keyable();
        }
    }
    t.generic(outArray, "outArray", "oa", kinds).output();
    t.enumeration(outDataType, "outDataType", "odt", {"vectors (xyz / rgb)", "points (xyzw / rgba)"});
    return t.finish();
}

MStatus arrayToArray::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kUnknownParameter;
    if (plug != outArray) return MS::kSuccess;
    if (!block.inputValue(envelope).asBool()) return MS::kSuccess;
    const InputArray inputs[4] = {
        {block, inArrays[0]}, {block, inArrays[1]}, {block, inArrays[2]}, {block, inArrays[3]}};
    ChannelSources sources;
    for (std::size_t input = 0; input < 4; ++input) {
        sources[input].values = inputs[input].values();
        for (std::size_t channel = 0; channel < 4; ++channel)
            sources[input].reads[channel] = block.inputValue(reads[input][channel]).asBool();
    }
    const auto mix = [&](auto out) { mixChannels(sources, out); };
    const std::size_t length = mixedLength(sources);
    if (block.inputValue(outDataType).asShort() == kVectors) {
        putArray<VectorsOutput>(*this, block, outArray, length, mix);
    } else {
        putArray<PointsOutput>(*this, block, outArray, length, mix);
    }
    return MS::kSuccess;
}
