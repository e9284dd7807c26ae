#include "host/nodes/tweaks.h"

namespace vesk::nodes {

namespace {

bool holdsValue(const Cell& cell) {
    if (cell.isSet || cell.source) return true;
    return std::any_of(cell.children.begin(), cell.children.end(),
                       [](const auto& child) { return child && holdsValue(*child); });
}

} // namespace

std::vector<int> tweaksWithCells(const Cell& list) {
    std::vector<int> indices;
    for (const auto& element : list.children) {
        if (holdsValue(*element)) indices.push_back(element->logicalIndex);
    }
    return indices;
}

void addTweaks(Cell& list, std::vector<MFloatVector>& points) {
    eachTweak(list, [&points](std::size_t point, const MVector& offset) {
        if (point >= points.size()) return;
        points[point] += MFloatVector(static_cast<float>(offset.x), static_cast<float>(offset.y),
                                      static_cast<float>(offset.z));
    });
}

void addTweaks(Cell& list, std::vector<MPoint>& points) {
    eachTweak(list, [&points](std::size_t point, const MVector& offset) {
        if (point < points.size()) points[point] += offset;
    });
}

} // namespace vesk::nodes
