#include "nodes/common/arrays.h"

#include <maya/MPxNode.h>

namespace vesk::nodes {

static_assert(sizeof(MVector) == 3 * sizeof(double) && sizeof(MPoint) == 4 * sizeof(double));

std::span<const double> flat(std::span<const MVector> vectors) {
    return vectors.empty() ? std::span<const double>() : std::span(&vectors[0].x, 3 * vectors.size());
}
std::span<double> flat(std::span<MVector> vectors) {
    return vectors.empty() ? std::span<double>() : std::span(&vectors[0].x, 3 * vectors.size());
}
std::span<const double> flat(std::span<const MPoint> points) {
    return points.empty() ? std::span<const double>() : std::span(&points[0].x, 4 * points.size());
}
std::span<double> flat(std::span<MPoint> points) {
    return points.empty() ? std::span<double>() : std::span(&points[0].x, 4 * points.size());
}

std::size_t lengthOf(const AnyElements& elements) {
    return std::visit(
        [](const auto& run) -> std::size_t {
            if constexpr (std::is_same_v<std::remove_cvref_t<decltype(run)>, std::monostate>) {
                return 0;
            } else {
                return run.size();
            }
        },
        elements);
}

InputArray::InputArray(const MObject& data) {
    switch (data.apiType()) {
    case MFn::kIntArrayData: values_ = view_.emplace<1>(data).values(); break;
    case MFn::kDoubleArrayData: values_ = view_.emplace<2>(data).values(); break;
    case MFn::kVectorArrayData: values_ = view_.emplace<3>(data).values(); break;
    case MFn::kPointArrayData: values_ = view_.emplace<4>(data).values(); break;
    default: break;
    }
}

void warnOfMemory(const MPxNode& node, const MObject& attribute, std::size_t length) {
    const MString text =
        MString("There is no memory for an array of ") + static_cast<double>(length) + " elements.";
    warn(nodeName(node, attribute), text.asChar());
}

} // namespace vesk::nodes
