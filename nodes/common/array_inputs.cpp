#include "nodes/common/array_inputs.h"

#include <algorithm>

namespace vesk::nodes {

MVectorArray vectorsIn(MObject data) {
    if (data.apiType() == MFn::kVectorArrayData) return MFnVectorArrayData(data).array();
    MVectorArray vectors;
    if (data.apiType() == MFn::kPointArrayData) {
        MPointArray points = MFnPointArrayData(data).array();
        vectors.setLength(points.length());
        std::ranges::transform(elements(points), elements(vectors).begin(),
                               [](const MPoint& p) { return MVector(p.x, p.y, p.z); });
    }
    return vectors;
}

MDoubleArray doublesIn(MObject data) {
    if (data.apiType() == MFn::kDoubleArrayData) return MFnDoubleArrayData(data).array();
    MDoubleArray doubles;
    if (data.apiType() == MFn::kIntArrayData) {
        MIntArray ints = MFnIntArrayData(data).array();
        doubles.setLength(ints.length());
        std::ranges::copy(elements(ints), elements(doubles).begin());
    }
    return doubles;
}

void warnOfLength(const MString& nodeName, const char* attribute) {
    warn(nodeName, (MString(attribute) + " array length does not match the point count.").asChar());
}

bool fitsPoints(const MString& nodeName, const char* attribute, std::size_t length, std::size_t wanted) {
    if (length == wanted) return true;
    if (length > 0) warnOfLength(nodeName, attribute);
    return false;
}

bool isOneOf(const MPlug& plug, std::initializer_list<const MObject*> attributes) {
    return std::ranges::any_of(attributes, [&](const MObject* attribute) { return plug == *attribute; });
}

} // namespace vesk::nodes
