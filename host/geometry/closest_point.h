#pragma once
// The point of a triangle nearest to another point.

#include <maya/MVector.h>

#include <array>

namespace vesk::geom {

/// A point of a triangle by the weights of its corners, which sum to 1.
struct TrianglePoint {
    MVector point;
    std::array<double, 3> weights{};
};

/// The point of the triangle a b c nearest to `p`, by the region of the triangle's plane that `p` lies over
/// (C. Ericson, "Real-Time Collision Detection", 2005, 5.1.5). A triangle without area is taken as its edges.
TrianglePoint closestOnTriangle(const MVector& p, const MVector& a, const MVector& b, const MVector& c);

} // namespace vesk::geom
