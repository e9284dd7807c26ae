#pragma once
// Curves and surfaces made from a few numbers. Angles are in radians, a full turn or more closes the shape.
//
// Round shapes are plain, not rational: cubic ones pass through the circle at the ends of their sections and
// stay within 0.0012 radii of it for eight; those of degree 1 are polygons. Other degrees fail, as do fewer
// sections than a closed form needs (4, or 2 for degree 1), counts below 1 or above 10000, and a sweep that
// is not positive.

#include "host/geometry/nurbs_curve.h"
#include "host/geometry/nurbs_surface.h"

#include <numbers>

namespace vesk::geom {

inline constexpr double fullTurn = 2.0 * std::numbers::pi;

struct CircleOptions {
    MPoint center{};
    MVector normal{0.0, 0.0, 1.0};
    double radius = 1.0;
    double sweep = fullTurn;
    int degree = 3;
    int sections = 8; ///< spans
};

/// Begins on the y axis and runs counter-clockwise about z, then turned by the shortest way from z to the
/// normal. A closed one is periodic.
Result<NurbsCurve> makeCircle(const CircleOptions& options);

/// A curve of these CVs, rational if a weight is not 1. Without knots, it is clamped with spans of length 1.
/// A periodic one needs its knots given, and the last `degree` CVs to repeat the first ones to 1e-5.
Result<NurbsCurve> makeCurve(int degree, std::vector<MPoint> cvs, std::vector<double> knots = {},
                             bool periodic = false);

struct PlaneOptions {
    MPoint pivot{};
    MVector axis{1.0, 0.0, 0.0}; ///< the normal
    double width = 1.0;          ///< along u
    double lengthRatio = 1.0;    ///< length along v by width
    int degree = 3;
    int patchesU = 1, patchesV = 1; ///< spans
};

/// With axis z, u runs along x and v along y; otherwise turned by the shortest way. Domain 0..1 both ways.
Result<NurbsSurface> makePlane(const PlaneOptions& options);

/// What the shapes of revolution share. Sections run along v, from `startSweep` to `endSweep`. With axis y,
/// angle 0 is on the x axis and angles grow toward z; otherwise turned by the shortest way. Normals point
/// outward.
struct RevolvedOptions {
    MPoint pivot{};
    MVector axis{1.0, 0.0, 0.0};
    double radius = 1.0;
    double startSweep = 0.0, endSweep = fullTurn;
    int degree = 3; ///< both ways
    int sections = 8;
};

/// `spans` along u from the pole below to the one above.
Result<NurbsSurface> makeSphere(const RevolvedOptions& options, int spans = 4);
/// The wall alone, upward along u; the pivot is its middle. Height is `heightRatio` radii.
Result<NurbsSurface> makeCylinder(const RevolvedOptions& options, double heightRatio = 2.0, int spans = 1);
/// The same up to the apex.
Result<NurbsSurface> makeCone(const RevolvedOptions& options, double heightRatio = 2.0, int spans = 1);
/// The tube has `minorRatio` radii as its radius and `spans` round it, from outside upward.
Result<NurbsSurface> makeTorus(const RevolvedOptions& options, double minorRatio = 0.5, int spans = 4);

} // namespace vesk::geom
