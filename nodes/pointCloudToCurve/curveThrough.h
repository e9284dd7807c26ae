#pragma once
// Curves whose CVs are points of a cloud.

#include <maya/MObject.h>
#include <maya/MVector.h>

#include <span>
#include <vector>

namespace vesk::nodes {

inline constexpr int kLowestDegree = 1, kHighestDegree = 7;

/// What a curve with that many points has: the degree within its limits and below the number of points.
int degreeFor(std::size_t pointCount, int degree);

/// Knots of a curve of `degreeFor` these points. Open: uniform with full ends, 0 0 0 1 2 .. s s s. Closed:
/// uniform round the domain 0 .. pointCount.
std::vector<double> knotsFor(std::size_t pointCount, int degree, bool isClosed);

/// Curve data with the points as CVs, in their order. A closed curve is periodic. Null for fewer than two
/// points.
MObject curveThrough(std::span<const MVector> points, int degree, bool isClosed);

} // namespace vesk::nodes
