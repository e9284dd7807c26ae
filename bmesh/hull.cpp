#include "bmesh/hull.h"

#include <Wm5ConvexHull3.h>

#include <algorithm>
#include <vector>

namespace vesk::skin {

namespace {

constexpr float kEpsilon = 0.0001F;

HullTriangle smallestFirst(HullTriangle triangle) {
    std::rotate(triangle.begin(), std::min_element(triangle.begin(), triangle.end()), triangle.end());
    return triangle;
}

} // namespace

Hull convexHull(const QVector<Float3>& points) {
    Hull hull{points, {}};
    if (points.size() < 4 || !std::all_of(points.begin(), points.end(), isFinite)) return hull;
    std::vector<Wm5::Vector3f> vertices;
    vertices.reserve(static_cast<std::size_t>(points.size()));
    for (const Float3& p : points)
        vertices.emplace_back(p.x, p.y, p.z);
    // Exact on a grid of 2^20 steps, which is a few thousand times finer than the patches of a branch, and
    // some hundred times faster than exact on the floats themselves.
    const Wm5::ConvexHull3<float> made(points.size(), vertices.data(), kEpsilon, false, Wm5::Query::QT_INT64);
    if (made.GetDimension() != 3) return hull;
    const int* corners = made.GetIndices();
    hull.triangles.reserve(made.GetNumSimplices());
    for (int i = 0; i < made.GetNumSimplices(); ++i, corners += 3)
        hull.triangles.append(smallestFirst({corners[0], corners[1], corners[2]}));
    std::sort(hull.triangles.begin(), hull.triangles.end());
    return hull;
}

} // namespace vesk::skin
