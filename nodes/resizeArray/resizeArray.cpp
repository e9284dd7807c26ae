#include "nodes/resizeArray/resizeArray.h"

#include "nodes/common/arrays.h"
#include "nodes/common/attributes.h"

#include <algorithm>

using namespace vesk::nodes;

namespace {

/// A new array is zero where nothing is copied to it.
template <class Output, class T>
void putResized(const MPxNode& node, MDataBlock& block, std::span<const T> from, std::size_t length) {
    putArray<Output>(node, block, resizeArray::outArray, length, [&](std::span<T> out) {
        std::copy_n(from.begin(), std::min(from.size(), out.size()), out.begin());
    });
}

} // namespace

MObject resizeArray::inArray;
MObject resizeArray::outArray;
MObject resizeArray::length;

MTypeId resizeArray::id(0x11578c);

void* resizeArray::creator() { return new resizeArray; }

MStatus resizeArray::initialize() {
    const auto kinds = {MFnData::kDoubleArray, MFnData::kVectorArray, MFnData::kIntArray};
    AttributeTable t;
    t.generic(inArray, "inArray", "ia", kinds).notStorable();
    t.generic(outArray, "outArray", "oa", kinds).output();
    t.integer(length, "length", "l", 0).min(0).keyable();
    return t.finish();
}

MStatus resizeArray::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking || plug != outArray) return MS::kSuccess;
    const auto wanted = static_cast<std::size_t>(std::max(block.inputValue(length).asInt(), 0));
    const InputArray input(block, inArray);
    if (const auto* ints = std::get_if<std::span<const int>>(&input.values())) {
        putResized<IntsOutput>(*this, block, *ints, wanted);
    } else if (const auto* doubles = std::get_if<std::span<const double>>(&input.values())) {
        putResized<DoublesOutput>(*this, block, *doubles, wanted);
    } else if (const auto* vectors = std::get_if<std::span<const MVector>>(&input.values())) {
        putResized<VectorsOutput>(*this, block, *vectors, wanted);
    }
    return MS::kSuccess;
}
