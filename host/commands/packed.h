#pragma once
// Addresses inside multis whose elements live in one flat array: `vt[3]`, `pnts[0:7]`, `uvsp[2].uvspu`.

#include "host/commands/words.h"
#include "host/core/outcome.h"
#include "host/graph/plug.h"

#include <optional>
#include <vector>

namespace vesk::commands {

/// How far past its end one statement may let such an array grow by naming an index.
inline constexpr int kPackedGap = 1 << 24;

/// What a plug of a packed multi, of an element or of a child of an element stands for.
struct PackedPlace {
    graph::Cell* array = nullptr; ///< the whole multi
    int stride = 1;               ///< numbers of an element
    int element = -1;             ///< -1: the whole multi
    int firstNumber = 0;          ///< within the element
    int numberCount = 1;
    bool holdsIntegers = false;

    /// Elements that the array holds.
    int count() const;
    /// Appends the numbers of these elements. What was never stored reads as zero.
    void read(int first, int last, std::vector<double>& to) const;
    /// Stores the numbers of these elements from the stream; the array grows where it must. On failure it is
    /// as it was.
    Outcome write(int first, int last, Words& words) const;
    /// Sets an element to zero, and shortens the array when it was the last one.
    Outcome clear(int element) const;
};

/// Nothing when no packed multi is on the plug's way, or the index of a multi above it is open.
std::optional<PackedPlace> findPacked(const graph::Plug& plug);

/// The data object on a cell if nobody else holds it, else a clone of it; to be written and then given back
/// with `placeWritten`. Null when there is none of that class.
template <class T>
Ref<T> takeToWrite(graph::Cell& cell);
/// Puts the written object onto the cell as a stored value and spreads dirt, except for what a node writes to
/// an output while it computes; the object itself is kept.
void placeWritten(graph::Cell& cell, Ref<Data> data);

} // namespace vesk::commands

#include "host/graph/scene.h"

namespace vesk::commands {

template <class T>
Ref<T> takeToWrite(graph::Cell& cell) {
    auto* present = dynamic_cast<T*>(cell.data.get());
    if (!present) return nullptr;
    const graph::Scene* scene = cell.node.scene();
    const bool isShared = present->referenceCount() > 1 || (scene && scene->preserving);
    if (!isShared) return Ref<T>(present);
    const Ref<Data> copy = present->clone();
    return Ref<T>(static_cast<T*>(copy.get()));
}

} // namespace vesk::commands
