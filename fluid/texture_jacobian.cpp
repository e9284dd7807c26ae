#include "fluid/texture_jacobian.h"

#include <cmath>
#include <limits>

namespace vesk::fluid {

namespace {

/// Where all three differences exist.
inline float leastOfThree(float before, float here, float after, float n) {
    const float back = (here - before) * n, forward = (after - here) * n;
    const float central = (after - before) * n * 0.5F;
    const float value = std::fabs(forward) > std::fabs(central) ? central : forward;
    return std::fabs(back) > std::fabs(value) ? value : back;
}

} // namespace

float smallestDifference(const float* at, std::ptrdiff_t stride, int c, int n) {
    const auto scale = static_cast<float>(n);
    if (c <= 1) return c < n - 2 ? (at[stride] - at[0]) * scale : std::numeric_limits<float>::max();
    if (c >= n - 2) return (at[0] - at[-stride]) * scale;
    return leastOfThree(at[-stride], at[0], at[stride], scale);
}

void smallestDifferences(const float* field, const GridSize& res, int axis, int y, int z, float* out) {
    const int xRes = res[0], n = res[axis];
    const float* row = field + (static_cast<std::size_t>(z) * res[1] + y) * xRes;
    const std::ptrdiff_t stride = axis == 0 ? 1 : axis == 1 ? xRes : std::ptrdiff_t{xRes} * res[1];
    const int fixed = axis == 1 ? y : z;
    const auto atEnd = [n](int c) { return c <= 1 || c >= n - 2; };
    if (axis != 0 && atEnd(fixed)) {
        for (int x = 0; x < xRes; ++x)
            out[x] = smallestDifference(row + x, stride, fixed, n);
        return;
    }
    const int first = axis == 0 ? 2 : 0, last = axis == 0 ? xRes - 2 : xRes;
    const auto scale = static_cast<float>(n);
#pragma omp simd
    for (int x = first; x < last; ++x)
        out[x] = leastOfThree(row[x - stride], row[x], row[x + stride], scale);
    if (axis != 0) return;
    for (int x = 0; x < xRes; ++x) {
        if (atEnd(x)) out[x] = smallestDifference(row + x, stride, x, n);
    }
}

} // namespace vesk::fluid
