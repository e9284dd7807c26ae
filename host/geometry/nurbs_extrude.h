#pragma once
// A ribbon along a curve.

#include "host/geometry/nurbs_curve.h"
#include "host/geometry/nurbs_surface.h"

namespace vesk::geom {

struct ExtrudeOptions {
    double length = 1.0;
    MVector direction{0.0, 1.0, 0.0}; ///< its length makes no difference; zero for a ribbon without width
    bool useProfileNormal = false;    ///< along `profileNormal` in place of `direction`
};

/// Normal of the plane that the distinct CVs lie in, or nearly: Newell's sum over them as a closed polygon
/// (counter-clockwise round it), of unit length. A polygon without area has the normal across its first CV,
/// the CV farthest from that, and the CV farthest from the line of these two. A straight one has the cross
/// product of its direction and (0,0,1), or of that and (1,0,0) if the first is zero; a single point has
/// (0,0,0).
MVector profileNormal(const NurbsCurve& profile);

/// The profile along u and degree 1 along v, from the profile to the profile moved: CV 2i is the profile's CV
/// i, CV 2i + 1 the moved one. Fails on an empty profile.
Result<NurbsSurface> extrudeDistance(const NurbsCurve& profile, const ExtrudeOptions& options);

} // namespace vesk::geom
