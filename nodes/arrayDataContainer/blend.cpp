#include "nodes/arrayDataContainer/blend.h"

#include "nodes/common/arrays.h"

namespace vesk::nodes {

namespace {

/// Of arrays that are runs of numbers.
template <class FunctionSet, class Array>
MObject blended(std::span<const double> from, std::span<const double> to, double share, unsigned length) {
    FunctionSet set;
    MObject data = set.create();
    Array out = set.array();
    out.setLength(length);
    std::span<double> numbers;
    if constexpr (std::is_same_v<Array, MDoubleArray>) {
        numbers = elements(out);
    } else {
        numbers = flat(elements(out));
    }
    for (std::size_t i = 0; i < numbers.size(); ++i)
        numbers[i] = from[i] * (1 - share) + to[i] * share;
    return data;
}

} // namespace

MObject blendedArray(const MObject& earlier, const MObject& later, double share) {
    const InputArray a(earlier), b(later);
    const auto length = static_cast<unsigned>(lengthOf(a.values()));
    if (share <= 0 || a.values().index() != b.values().index() || length != lengthOf(b.values()))
        return earlier;
    if (const auto* from = std::get_if<std::span<const double>>(&a.values())) {
        return blended<MFnDoubleArrayData, MDoubleArray>(*from, std::get<std::span<const double>>(b.values()),
                                                         share, length);
    }
    if (const auto* from = std::get_if<std::span<const MVector>>(&a.values())) {
        return blended<MFnVectorArrayData, MVectorArray>(
            flat(*from), flat(std::get<std::span<const MVector>>(b.values())), share, length);
    }
    if (const auto* from = std::get_if<std::span<const MPoint>>(&a.values())) {
        return blended<MFnPointArrayData, MPointArray>(
            flat(*from), flat(std::get<std::span<const MPoint>>(b.values())), share, length);
    }
    return earlier;
}

} // namespace vesk::nodes
