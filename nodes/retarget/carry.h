#pragma once
// Carrying points from one mesh to another of the same topology: each point keeps its place in the frame of
// the triangle that it is bound to. Over plain arrays.

#include <maya/MPoint.h>
#include <maya/MVector.h>

#include <array>
#include <span>

namespace vesk::nodes {

/// Corners of a triangle.
using TriangleCorners = std::array<MVector, 3>;

/// A frame on the triangle a b c: x from a to c, y from a to b, z at right angles to both, all of unit
/// length. Between x and y stands the angle of the triangle, so that co-ordinates follow its shape.
struct TriangleFrame {
    TriangleCorners corners;
    MVector origin;
};

/// The point that has the co-ordinates in `to` that `p` has in `from`. Where one of the triangles has no
/// area, the point that is moved as the origins are.
MVector carried(const MVector& p, const TriangleFrame& from, const TriangleFrame& to);

/// What points are bound to: of each one its u and v, its face, and the vertices of its triangle.
struct BindingView {
    std::span<const double> uvs;   ///< two a point
    std::span<const int> faces;    ///< one
    std::span<const int> vertices; ///< three

    bool has(std::size_t point) const {
        return 2 * point + 1 < uvs.size() && point < faces.size() && 3 * point + 2 < vertices.size();
    }
};

/// Where bound points lie on the two references; not `known` where a reference has no such place.
struct Origins {
    MPoint first, second;
    bool known = false;
};

/// What `carryPoints` works with.
struct Carriage {
    std::span<MPoint> points;    ///< read and written; their weights w stay
    std::span<const int> chosen; ///< which of them; empty: all
    BindingView binding;
    std::array<std::span<const float>, 2> references; ///< x, y and z of each vertex
    std::span<const double> weights;                  ///< by point; beyond its end points count in full
    double envelope = 1;
    bool snap = false; ///< to the place on the second reference

    std::size_t count() const { return chosen.empty() ? points.size() : chosen.size(); }
    std::size_t point(std::size_t i) const {
        return chosen.empty() ? i : static_cast<std::size_t>(chosen[i]);
    }
};

/// Carries the points `begin` up to `begin` + `origins.size()` of those chosen, which must be there and
/// different. Without known origins the frames stand on the first corners of the triangles. Points whose
/// binding is too short or names vertices that are not there stay, and so do those that would go nowhere
/// finite.
void carryPoints(const Carriage& carriage, std::size_t begin, std::span<const Origins> origins);

} // namespace vesk::nodes
