#pragma once
// Points that move along a direction each.

#include <maya/MFloatVector.h>
#include <maya/MVector.h>

#include <span>

namespace vesk::nodes {

/// How far the points of one geometry go: point i by its direction times distance, envelope, painted weight i
/// and weight i, multiplied in this order. An empty run stands for ones.
struct Displacement {
    double distance = 0;
    double envelope = 1;
    std::span<const float> painted;
    std::span<const double> weights;

    MVector operator()(std::size_t i, const MVector& direction) const {
        MVector move = direction * distance * envelope;
        if (!painted.empty()) move = move * static_cast<double>(painted[i]);
        if (!weights.empty()) move = move * weights[i];
        return move;
    }
};

/// The direction of each point: one of its own as far as there are any, its normal from there on. Directions
/// are used as they are, of whatever length.
struct Directions {
    std::span<const MVector> own;
    std::span<const MFloatVector> normals;
};

/// Moves points of single precision. `from` holds x, y, z of each, `to` gets x, y, z, 1. Points that `chosen`
/// marks with 0 stay; when it is empty all move. Works in double precision, in one pass; many points on
/// several threads, with the same result.
void displace(std::span<const float> from, const Directions& directions, const Displacement& by,
              std::span<const char> chosen, std::span<float> to);

} // namespace vesk::nodes
