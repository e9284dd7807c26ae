#include "nodes/retarget/carry.h"

#include <cmath>
#include <optional>

namespace vesk::nodes {

TriangleFrame::TriangleFrame(const TriangleCorners& corners, const MVector& at)
    : origin(at), x((corners[2] - corners[0]).normal()), y((corners[1] - corners[0]).normal()), z(x ^ y),
      sine(z.length()) {
    z.normalize();
}

MVector carried(const MVector& p, const TriangleFrame& from, const TriangleFrame& to) {
    if (!from.hasArea() || !to.hasArea()) return p + (to.origin - from.origin);
    // Co-ordinates by the inverse of the frame's matrix, whose determinant is the sine.
    const MVector d = p - from.origin;
    const double alongX = ((d ^ from.y) * from.z) / from.sine;
    const double alongY = ((from.x ^ d) * from.z) / from.sine;
    return to.origin + to.x * alongX + to.y * alongY + to.z * (d * from.z);
}

namespace {

/// The corners of a triangle; none when the reference lacks a vertex.
std::optional<TriangleCorners> cornersOf(std::span<const float> reference, std::span<const int, 3> vertices) {
    TriangleCorners corners;
    for (std::size_t k = 0; k < 3; ++k) {
        const auto at = 3 * static_cast<std::size_t>(vertices[k]);
        if (vertices[k] < 0 || at + 2 >= reference.size()) return std::nullopt;
        corners[k] = MVector(&reference[at]);
    }
    return corners;
}

void carryPoint(const Carriage& c, std::size_t k, const Origins& origins) {
    if (k >= c.points.size() || !c.binding.has(k)) return;
    const auto vertices = c.binding.vertices.subspan(3 * k).first<3>();
    const auto first = cornersOf(c.references[0], vertices), second = cornersOf(c.references[1], vertices);
    if (!first || !second) return;
    const MVector from = origins.known ? origins.first : (*first)[0];
    const MVector to = origins.known ? origins.second : (*second)[0];
    const MVector start(c.points[k]);
    MVector moved = to * c.envelope;
    if (!c.snap) {
        const MVector place = carried(start, TriangleFrame(*first, from), TriangleFrame(*second, to));
        moved = start * (1 - c.envelope) + place * c.envelope;
    }
    if (k < c.weights.size()) moved = start * (1 - c.weights[k]) + moved * c.weights[k];
    if (!std::isfinite(moved.x + moved.y + moved.z)) return;
    c.points[k] = MPoint(moved.x, moved.y, moved.z, c.points[k].w);
}

} // namespace

void carryPoints(const Carriage& carriage, std::size_t begin, std::span<const Origins> origins) {
    for (std::size_t i = 0; i < origins.size(); ++i)
        carryPoint(carriage, carriage.point(begin + i), origins[i]);
}

} // namespace vesk::nodes
