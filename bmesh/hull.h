#pragma once
// The convex hull of a few points.

#include "bmesh/float3.h"

#include <QVector>

#include <array>

namespace vesk::skin {

using HullTriangle = std::array<int, 3>;

/// Points and the triangles between them, counter-clockwise seen from outside. Each triangle begins with its
/// smallest index, and the list is sorted, so that the same points always give the same list.
struct Hull {
    QVector<Float3> points;
    QVector<HullTriangle> triangles;
};

/// The hull of the points. There are no triangles when the points lie in a plane, on a line or in one place
/// (within 0.0001 of their extent), or when a coordinate is not finite.
Hull convexHull(const QVector<Float3>& points);

} // namespace vesk::skin
