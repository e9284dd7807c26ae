#pragma once
// Offsets per point, as shapes and tweak nodes hold them: a packed multi of triples.

#include "host/data/packed_data.h"
#include "host/nodes/declare.h"

#include <maya/MFloatVector.h>
#include <maya/MPoint.h>

#include <algorithm>
#include <vector>

namespace vesk::nodes {

/// Whether anything is held there at all.
inline bool hasTweaks(const Cell* list) { return list && (list->data || !list->children.empty()); }

/// Indices of elements with a cell that holds a value or is fed by a wire.
std::vector<int> tweaksWithCells(const Cell& list);

/// Calls `visit(point, offset)` for each element of a packed multi of triples. An element whose own cell
/// holds a value (an API plug set it, or a wire feeds it) stands in for what the list has at its place.
/// Pulls.
template <class F>
void eachTweak(Cell& list, F&& visit) {
    const auto withCells = tweaksWithCells(list);
    if (const auto* packed = dynamic_cast<const PackedFloats*>(list.data.get())) {
        const auto& numbers = packed->values();
        auto own = withCells.begin();
        for (std::size_t i = 0; 3 * i + 2 < numbers.size(); ++i) {
            if (own != withCells.end() && static_cast<std::size_t>(*own) == i) {
                ++own;
                continue;
            }
            visit(i, MVector(numbers[3 * i], numbers[3 * i + 1], numbers[3 * i + 2]));
        }
    }
    for (const int index : withCells) {
        const auto offset = graph::pullNumbers(list.element(index));
        visit(static_cast<std::size_t>(index), MVector(offset[0], offset[1], offset[2]));
    }
}

/// Adds the offsets to points that are there.
void addTweaks(Cell& list, std::vector<MFloatVector>& points);
void addTweaks(Cell& list, std::vector<MPoint>& points);

} // namespace vesk::nodes
