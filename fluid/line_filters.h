#pragma once
// The wavelet pair that splits a field into a half-resolution band and the rest: along the lines of one axis
// of a grid, either periodic in 128 or with its end values continued.

#include "fluid/fluid_3d.h"

#include <array>

namespace vesk::fluid {

/// Analysis coefficients at the offsets -16 to 15.
inline constexpr std::array<float, 32> downCoefficients = {
    0.000334F,  -0.001528F, 0.000410F,  0.003545F,  -0.000938F, -0.008233F, 0.002172F,  0.019120F,
    -0.005040F, -0.044412F, 0.011655F,  0.103311F,  -0.025936F, -0.243780F, 0.033979F,  0.655340F,
    0.655340F,  0.033979F,  -0.243780F, -0.025936F, 0.103311F,  0.011655F,  -0.044412F, -0.005040F,
    0.019120F,  0.002172F,  -0.008233F, -0.000938F, 0.003546F,  0.000410F,  -0.001528F, 0.000334F};
/// Synthesis coefficients at the offsets -2 to 1.
inline constexpr std::array<float, 4> upCoefficients = {0.25F, 0.75F, 0.75F, 0.25F};

/// What a line continues with beyond its ends.
enum class LineEnds {
    periodic, ///< itself
    repeated  ///< its first and last value
};

/// Along `axis` (0 x, 1 y, 2 z) of every line of n samples: the first n/2 samples of the line in `to` become
/// the half-resolution band of the line in `from`. The arrays must differ.
void downsampleLines(const float* from, float* to, const GridSize& res, int axis, LineEnds ends);

/// The n samples of each line in `to` from the first n/2 of the line in `from`. With repeated ends, sample
/// n/2 of `from` is read too, and stands for those beyond it.
void upsampleLines(const float* from, float* to, const GridSize& res, int axis, LineEnds ends);

} // namespace vesk::fluid
