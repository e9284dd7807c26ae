#pragma once
// The work of arrayToPointColor over plain arrays.

#include "nodes/common/arrays.h"

#include <maya/MColorArray.h>

#include <vector>

namespace vesk::nodes {

struct ColorSettings {
    bool clamp = false;
    double clampMin = 0, clampMax = 1;
    bool solidAlpha = false; ///< alpha 1, whatever the array says
};

/// Points and their colours, in step.
struct PointColors {
    MIntArray points;
    MColorArray colors;
};

/// Whether an array is a colour array for so many points: doubles four a point (r, g, b, a) or one (grey,
/// alpha too); vectors or points one a point (r, g, b; alpha 0).
bool fitsPoints(const AnyElements& values, std::size_t pointCount);

/// The colours of the points that `inside`, one entry a point, has. `values` fits the points. Limits come
/// before `solidAlpha`; the lower is tested first, and the alpha of a vector or point has none.
PointColors colorsOf(const AnyElements& values, const std::vector<char>& inside,
                     const ColorSettings& settings);

} // namespace vesk::nodes
