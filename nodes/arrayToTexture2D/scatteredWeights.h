#pragma once
// The work of arrayToTexture2D over plain arrays.

#include <span>

namespace vesk::nodes {

/// Values of `interpolation`.
enum class TextureInterpolation { kNearestNeighbor = 0, kDistanceWeighted = 1 };

/// Whether there are as many pairs as weights, and any at all.
bool areScatteredWeights(std::span<const double> map, std::span<const double> weights);

/// The value at (u, v) of weights that stand at the u, v pairs of `map`; arrays as the function above asks
/// for.
///
/// Nearest: the weight at the least distance below 2, the first of equals; 0 when all are farther. Weighted:
/// the sum of (1 - distance)^power * weight over the sum of (1 - distance)^n with n the integer part of
/// `power`, which weights a fractional power's values without normalising them: part of the contract. A sum
/// of 0 gives 0. Distances are of single precision, sums of double.
double scatteredWeight(std::span<const double> map, std::span<const double> weights, float u, float v,
                       TextureInterpolation interpolation, float power);

} // namespace vesk::nodes
