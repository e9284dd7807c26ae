#include "host/geometry/nurbs_extrude.h"

#include <cmath>
#include <utility>

namespace vesk::geom {

namespace {

/// Lengths below this part of the profile's size are rounding.
constexpr double rounding = 1e-10;

/// The longest of the vectors that `toVector` makes of each point; the first of equals.
template <class ToVector>
MVector longest(const std::vector<MPoint>& points, const ToVector& toVector) {
    MVector best;
    double bestLength = 0.0;
    for (const MPoint& point : points) {
        const MVector vector = toVector(point);
        if (vector.length() <= bestLength) continue;
        best = vector;
        bestLength = vector.length();
    }
    return best;
}

} // namespace

MVector profileNormal(const NurbsCurve& profile) {
    if (profile.empty()) return {};
    const std::vector<MPoint> points(profile.cvs().begin(),
                                     profile.cvs().begin() + profile.distinctCvCount());
    const MPoint origin = points.front();
    const MVector line = longest(points, [&](const MPoint& p) { return p - origin; });
    const double size = line.length();
    if (!(size > 0.0)) return {};

    // Newell's sum as triangles from the first corner: exact for a polygon far from the origin, too.
    MVector sum;
    for (std::size_t i = 2; i < points.size(); ++i)
        sum += (points[i - 1] - origin) ^ (points[i] - origin);
    if (sum.length() > rounding * size * size) return sum.normal();

    const MVector direction = line / size;
    const MVector across = longest(points, [&](const MPoint& p) { return direction ^ (p - origin); });
    if (across.length() > rounding * size) return across.normal();

    const MVector flat = direction ^ MVector::zAxis;
    return flat.length() > rounding ? flat.normal() : (direction ^ MVector::xAxis).normal();
}

Result<NurbsSurface> extrudeDistance(const NurbsCurve& profile, const ExtrudeOptions& options) {
    if (profile.empty()) return Outcome::fail("there is no profile to extrude");
    const MVector direction = options.useProfileNormal ? profileNormal(profile) : options.direction.normal();
    const MVector offset = direction * options.length;
    std::vector<MPoint> cvs;
    cvs.reserve(2 * profile.cvs().size());
    for (const MPoint& cv : profile.cvs()) {
        cvs.push_back(cv);
        cvs.push_back(cv + offset);
    }
    return NurbsSurface::create(profile.basis(), NurbsBasis::clamped(1, 1), std::move(cvs),
                                profile.isRational());
}

} // namespace vesk::geom
