#pragma once
// The test of a ray with one triangle that all ray queries go by.

#include <maya/MVector.h>

#include <array>
#include <optional>

namespace vesk::geom {

struct Ray {
    MVector source, direction; ///< the direction need not be of unit length
};

struct TriangleHit {
    double param = 0;              ///< in lengths of the direction, negative behind the source
    std::array<double, 3> weights; ///< of the corners; they sum to 1
};

/// Where the line of the ray meets the triangle, from either side (T. Möller, B. Trumbore, "Fast, Minimum
/// Storage Ray/Triangle Intersection", 1997). A hit outside counts up to `tolerance` times the length of the
/// edge that it lies beyond, though not farther than that share of the longest edge outside the triangle's
/// box. A triangle without area and one whose plane the line runs along are never met, nor is anything met
/// with numbers that are not finite.
std::optional<TriangleHit> hitTriangle(const Ray& ray, const MVector& a, const MVector& b, const MVector& c,
                                       double tolerance);

} // namespace vesk::geom
