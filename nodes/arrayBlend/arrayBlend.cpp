#include "nodes/arrayBlend/arrayBlend.h"

#include "nodes/arrayBlend/blendArrays.h"
#include "nodes/common/attributes.h"

#include <maya/MGlobal.h>

namespace {

using namespace vesk::nodes;
using Self = arrayBlend;

// The node's messages have no name in front of them.
constexpr const char* kUnequal = "Both arrays need to be of an equal length";
constexpr const char* kTypesDiffer = "Blend operation requires both input data types to be the same";
constexpr const char* kInvalidTypes = "Invalid input types.";

} // namespace

MObject arrayBlend::inArray1;
MObject arrayBlend::inArray2;
MObject arrayBlend::outArray;
MObject arrayBlend::operation;
MObject arrayBlend::blend;

MTypeId arrayBlend::id(0x115775);

void* arrayBlend::creator() { return new arrayBlend; }

MStatus arrayBlend::initialize() {
    const auto kinds = {MFnData::kIntArray, MFnData::kDoubleArray, MFnData::kVectorArray};
    AttributeTable t;
    t.generic(inArray1, "inArray1", "ia1", kinds).notStorable();
    t.generic(inArray2, "inArray2", "ia2", kinds).notStorable();
    t.generic(outArray, "outArray", "oa", kinds).output();
    t.enumeration(operation, "operation", "o", {"Blend", "Add", "Minus", "Multiply", "Divide"});
    t.number(blend, "blend", "b", 0.5).min(0).max(1);
    return t.finish();
}

MStatus arrayBlend::compute(const MPlug& plug, MDataBlock& block) {
    if (plug != outArray) return MS::kUnknownParameter;
    const InputArray first(block, inArray1), second(block, inArray2);
    const AnyElements& a = first.values();
    const AnyElements& b = second.values();
    const auto chosen = static_cast<BlendOperation>(block.inputValue(operation).asShort());
    const double share = block.inputValue(blend).asDouble();
    const auto stop = [](const char* text) {
        MGlobal::displayWarning(text);
        return MStatus(MS::kSuccess);
    };
    const std::size_t length = lengthOf(a);
    if (length != lengthOf(b)) return stop(kUnequal);
    if (chosen == BlendOperation::kBlend && a.index() != b.index()) return stop(kTypesDiffer);
    const auto put = [&](auto output) {
        using Output = decltype(output);
        putArray<typename Output::type>(*this, block, outArray, length,
                                        [&](auto out) { blendArrays(chosen, share, a, b, out); });
    };
    switch (blendResult(a, b)) {
    case BlendResult::kNone: return stop(kInvalidTypes);
    case BlendResult::kInts: put(std::type_identity<IntsOutput>()); break;
    case BlendResult::kDoubles: put(std::type_identity<DoublesOutput>()); break;
    case BlendResult::kVectors: put(std::type_identity<VectorsOutput>()); break;
    }
    return MS::kSuccess;
}
