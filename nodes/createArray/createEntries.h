#pragma once
// The work of createArray over plain arrays.

#include "nodes/common/ramp.h"

#include <array>
#include <span>

namespace vesk::nodes {

/// What new entries hold: the same values all, or with `useRamps` those of the ramps, entry i of n at
/// position i / n, so that position 1 is never reached.
struct EntryValues {
    std::array<double, 4> values{}; ///< x, y, z, w
    bool useRamps = false;
    ColorRamp xyz;
    CurveRamp w;
};

/// Fills entries of `channels` numbers each, 1 to 4, side by side.
void createEntries(const EntryValues& values, std::size_t channels, std::span<double> out);
/// Entries of x alone, truncated.
void createEntries(const EntryValues& values, std::span<int> out);

} // namespace vesk::nodes
