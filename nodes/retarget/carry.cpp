#include "nodes/retarget/carry.h"

#include <cmath>

namespace vesk::nodes {

namespace {

/// The sides that x and y lie along, and across them z, none of unit length.
struct Axes {
    MVector x, y, z;
    double xx, yy, zz; ///< squared lengths

    explicit Axes(const TriangleCorners& corners)
        : x(corners[2] - corners[0]), y(corners[1] - corners[0]), z(x ^ y), xx(x * x), yy(y * y), zz(z * z) {}
    /// False for a triangle as good as on a line, whose z says nothing.
    bool span() const { return zz > 1e-18 * (xx * yy); }
};

} // namespace

MVector carried(const MVector& p, const TriangleFrame& from, const TriangleFrame& to) {
    const Axes a(from.corners), b(to.corners);
    const MVector d = p - from.origin;
    if (!a.span() || !b.span()) return to.origin + d;
    // Co-ordinates by Cramer's rule. The lengths of the sides cancel out but for their ratios.
    const double share = 1 / a.zz;
    const double alongX = ((d ^ a.y) * a.z) * share * std::sqrt(a.xx / b.xx);
    const double alongY = ((a.x ^ d) * a.z) * share * std::sqrt(a.yy / b.yy);
    const double alongZ = (d * a.z) / std::sqrt(a.zz * b.zz);
    return to.origin + b.x * alongX + b.y * alongY + b.z * alongZ;
}

namespace {

/// Reads the corners of a triangle; false when the reference lacks a vertex.
bool readCorners(std::span<const float> reference, const int* vertices, TriangleCorners& corners) {
    for (std::size_t k = 0; k < 3; ++k) {
        const std::size_t at = 3 * static_cast<std::size_t>(vertices[k]);
        if (vertices[k] < 0 || at + 2 >= reference.size()) return false;
        corners[k] = MVector(&reference[at]);
    }
    return true;
}

void carryPoint(const Carriage& c, std::size_t k, const Origins& origins) {
    if (k >= c.points.size() || !c.binding.has(k)) return;
    const int* vertices = &c.binding.vertices[3 * k];
    TriangleFrame first, second;
    if (!readCorners(c.references[0], vertices, first.corners)) return;
    if (!readCorners(c.references[1], vertices, second.corners)) return;
    first.origin = origins.known ? MVector(origins.first) : first.corners[0];
    second.origin = origins.known ? MVector(origins.second) : second.corners[0];
    const MVector start(c.points[k]);
    MVector moved = second.origin * c.envelope;
    if (!c.snap) {
        const MVector place = carried(start, first, second);
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
