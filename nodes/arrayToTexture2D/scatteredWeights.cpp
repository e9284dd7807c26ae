#include "nodes/arrayToTexture2D/scatteredWeights.h"

#include "nodes/common/arrays.h"

#include <cmath>

namespace vesk::nodes {

namespace {

float distance(std::span<const double> map, std::size_t pair, float u, float v) {
    const float du = u - static_cast<float>(map[2 * pair]);
    const float dv = v - static_cast<float>(map[2 * pair + 1]);
    return std::sqrt(du * du + dv * dv);
}

/// By repeated squaring; a negative power is the reciprocal of the positive one.
double wholePower(double base, long long exponent) {
    double result = 1;
    for (auto rest = static_cast<unsigned long long>(exponent < 0 ? -exponent : exponent); rest > 0;
         rest /= 2) {
        if (rest % 2 == 1) result *= base;
        base *= base;
    }
    return exponent < 0 ? 1 / result : result;
}

double nearest(std::span<const double> map, std::span<const double> weights, float u, float v) {
    float best = 2;
    double result = 0;
    for (std::size_t i = 0; i < weights.size(); ++i) {
        const float d = distance(map, i, u, v);
        if (!(d < best)) continue;
        best = d;
        result = weights[i];
    }
    return result;
}

double weighted(std::span<const double> map, std::span<const double> weights, float u, float v, float power) {
    const int wholeExponent = truncated(static_cast<double>(power));
    const auto exponent = static_cast<double>(power);
    double sum = 0, values = 0;
    for (std::size_t i = 0; i < weights.size(); ++i) {
        const double closeness = 1 - static_cast<double>(distance(map, i, u, v));
        sum += wholePower(closeness, wholeExponent);
        values += std::pow(closeness, exponent) * weights[i];
    }
    return sum == 0 ? 0 : values / sum;
}

} // namespace

bool areScatteredWeights(std::span<const double> map, std::span<const double> weights) {
    return !weights.empty() && map.size() == 2 * weights.size();
}

double scatteredWeight(std::span<const double> map, std::span<const double> weights, float u, float v,
                       TextureInterpolation interpolation, float power) {
    return interpolation == TextureInterpolation::kNearestNeighbor ? nearest(map, weights, u, v)
                                                                   : weighted(map, weights, u, v, power);
}

} // namespace vesk::nodes
