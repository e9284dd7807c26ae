#include "nodes/arrayToDynArrays/arrayToDynArrays.h"

#include "nodes/common/arrays.h"
#include "nodes/common/attributes.h"

#include <maya/MFnArrayAttrsData.h>
#include <maya/MFnStringArrayData.h>

namespace {

using namespace vesk::nodes;
using Self = arrayToDynArrays;

constexpr const char* kUnsupported = "Unsupported data type.";

/// Which kind of channel an array of this kind makes.
MFnArrayAttrsData::Type channelType(MFn::Type arrayKind) {
    switch (arrayKind) {
    case MFn::kIntArrayData: return MFnArrayAttrsData::kIntArray;
    case MFn::kDoubleArrayData: return MFnArrayAttrsData::kDoubleArray;
    case MFn::kVectorArrayData:
    case MFn::kPointArrayData: return MFnArrayAttrsData::kVectorArray;
    case MFn::kStringArrayData: return MFnArrayAttrsData::kStringArray;
    default: return MFnArrayAttrsData::kInvalid;
    }
}

/// Writes an array of a kind that makes a channel.
void writeChannel(MFnArrayAttrsData& channels, const MString& name, const MObject& array) {
    switch (array.apiType()) {
    case MFn::kIntArrayData: {
        MIntArray to = channels.intArray(name);
        MFnIntArrayData(array).copyTo(to);
        break;
    }
    case MFn::kDoubleArrayData: {
        MDoubleArray to = channels.doubleArray(name);
        MFnDoubleArrayData(array).copyTo(to);
        break;
    }
    case MFn::kVectorArrayData: {
        MVectorArray to = channels.vectorArray(name);
        MFnVectorArrayData(array).copyTo(to);
        break;
    }
    case MFn::kStringArrayData: {
        MStringArray to = channels.stringArray(name);
        MFnStringArrayData(array).copyTo(to);
        break;
    }
    default: // points: room for as many vectors, deliberately without their values
        channels.vectorArray(name).setLength(MFnPointArrayData(array).length());
        break;
    }
}

} // namespace

MObject arrayToDynArrays::envelope;
MObject arrayToDynArrays::inArray;
MObject arrayToDynArrays::inDynamicArrays;
MObject arrayToDynArrays::outDynamicArrays;
MObject arrayToDynArrays::name;

MTypeId arrayToDynArrays::id(0x115764);

void* arrayToDynArrays::creator() { return new arrayToDynArrays; }

MStatus arrayToDynArrays::initialize() {
    AttributeTable t;
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.generic(inArray, "inArray", "ia",
              {MFnData::kIntArray, MFnData::kDoubleArray, MFnData::kVectorArray, MFnData::kPointArray,
               MFnData::kStringArray})
        .notStorable();
    t.generic(inDynamicArrays, "inDynamicArrays", "ida", {MFnData::kDynArrayAttrs}).notStorable();
    t.generic(outDynamicArrays, "outDynamicArrays", "oda", {MFnData::kDynArrayAttrs}).output();
    t.string(name, "name", "n").keyable();
    return t.finish();
}

MStatus arrayToDynArrays::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking || plug != outDynamicArrays) return MS::kUnknownParameter;
    // What arrived is set first and written to there: channels that stay are shared with it.
    MObject arrived = block.inputValue(inDynamicArrays).data();
    MDataHandle output = block.outputValue(outDynamicArrays);
    output.set(arrived.isNull() ? MFnArrayAttrsData().create() : arrived);
    const MString channel = block.inputValue(name).asString();
    if (!block.inputValue(envelope).asBool() || channel.length() == 0) return MS::kSuccess;
    const MObject array = block.inputValue(inArray).data();
    const MFnArrayAttrsData::Type type = channelType(array.apiType());
    if (type == MFnArrayAttrsData::kInvalid) {
        warn(nodeName(*this, inArray), kUnsupported);
        return MS::kSuccess;
    }
    MFnArrayAttrsData channels(output.data());
    MFnArrayAttrsData::Type present;
    if (channels.checkArrayExist(channel, present) && present != type) {
        warn(nodeName(*this, inArray), ("There is a channel \"" + channel + "\" of another type.").asChar());
        return MS::kSuccess;
    }
    writeChannel(channels, channel, array);
    return MS::kSuccess;
}
