#pragma once
// The work of remapArray over plain arrays.

#include "nodes/common/arrays.h"

namespace vesk::nodes {

struct RemapSettings {
    bool absolute = false;
    bool shift = false;
    double shiftValue = 0;
    bool remap = false;
    double remapMin = 0, remapMax = 1;
    bool clamp = false;
    double clampMin = 0, clampMax = 1;
};

/// How many numbers an array holds: three for each vector or point, whose w is not read.
std::size_t flatLength(const AnyElements& in);

/// Each number of `in` through the steps that are on: absolute value; plus `shiftValue`; `remapMax` * x -
/// |`remapMin`| * x, which scales and fits no range; limits, of which the lower is tested first.
///
/// The output takes as many numbers as it has room for: points get three each and w 1, ints truncate.
void remapValues(const RemapSettings& settings, const AnyElements& in, std::span<double> out);
void remapValues(const RemapSettings& settings, const AnyElements& in, std::span<MVector> out);
void remapValues(const RemapSettings& settings, const AnyElements& in, std::span<MPoint> out);
void remapValues(const RemapSettings& settings, const AnyElements& in, std::span<int> out);

} // namespace vesk::nodes
