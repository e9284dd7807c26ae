#pragma once
// How the texture coordinates of a coarse grid change from cell to cell.

#include "fluid/fluid_3d.h"

namespace vesk::fluid {

/// The smallest difference at cell `c` of an axis of n cells, `stride` apart: of the backward, forward and
/// central difference that which is least in magnitude, times n. In the first two cells only the forward one
/// counts, in the last two only the backward one; the largest float if there is none.
float smallestDifference(const float* at, std::ptrdiff_t stride, int c, int n);

/// The same for each cell of the row (y, z), along axis 0, 1 or 2, into `out`.
void smallestDifferences(const float* field, const GridSize& res, int axis, int y, int z, float* out);

} // namespace vesk::fluid
