#include "host/geometry/nurbs_primitives.h"

#include "host/geometry/nurbs_fit.h"

#include <maya/MQuaternion.h>

#include <cmath>
#include <string>
#include <utility>

namespace vesk::geom {

namespace {

constexpr int maxCount = 10000;

Outcome checkCount(const char* what, int count, int fewest) {
    if (count >= fewest && count <= maxCount) return {};
    return Outcome::fail(std::to_string(count) + " " + what + " are not between " + std::to_string(fewest) +
                         " and " + std::to_string(maxCount));
}

/// Turned by the shortest way from one direction to another, then moved to the pivot.
MMatrix placement(const MVector& from, const MVector& to, const MPoint& pivot) {
    MMatrix matrix = MQuaternion(from, to).asMatrix();
    matrix[3][0] = pivot.x, matrix[3][1] = pivot.y, matrix[3][2] = pivot.z;
    return matrix;
}

/// A flat curve in x and y.
struct Outline {
    NurbsBasis basis;
    std::vector<MPoint> cvs;
};

/// On the circle round the origin, angles from x to y; exact on the axes.
MPoint onCircle(double angle, double radius = 1.0) {
    const auto cleaned = [&](double value) { return std::abs(value) < 1e-15 ? 0.0 : radius * value; };
    return {cleaned(std::cos(angle)), cleaned(std::sin(angle))};
}

/// The cubic through the ends of all sections whose ends have the direction of the circle and, as speed, the
/// chord of a section.
Result<Outline> openCubicArc(double start, double step, int sections) {
    Outline arc{NurbsBasis::clamped(3, sections), std::vector<MPoint>(sections + 3)};
    const double end = start + sections * step;
    const double handle = 2.0 * std::sin(0.5 * step) / 3.0;
    arc.cvs.front() = onCircle(start);
    arc.cvs.back() = onCircle(end);
    const double quarter = 0.25 * fullTurn;
    arc.cvs[1] = arc.cvs.front() + MVector(onCircle(start + quarter, handle));
    arc.cvs[sections + 1] = arc.cvs.back() - MVector(onCircle(end + quarter, handle));
    std::vector<double> sites;
    std::vector<NurbsSum> targets;
    for (int i = 1; i < sections; ++i) {
        sites.push_back(i);
        targets.emplace_back().add(onCircle(start + i * step), 1.0);
    }
    if (Outcome fault = fitCvs(arc.basis, 2, sites, targets, arc.cvs); !fault) return fault;
    for (MPoint& cv : arc.cvs)
        cv.w = 1.0;
    return arc;
}

/// On the unit circle from one angle on.
Result<Outline> makeArc(double start, double sweep, int sections, int degree) {
    if (degree != 1 && degree != 3)
        return Outcome::fail("a round shape has degree 1 or 3, not " + std::to_string(degree));
    if (!(sweep > 0.0)) return Outcome::fail("the sweep is not positive");
    const bool closed = sweep >= fullTurn - 1e-9;
    if (Outcome fault = checkCount("sections", sections, closed ? degree + 1 : 1); !fault) return fault;
    const double step = (closed ? fullTurn : sweep) / sections;
    if (!closed && degree == 3) return openCubicArc(start, step, sections);

    Outline arc{closed ? NurbsBasis::periodic(degree, sections) : NurbsBasis::clamped(degree, sections), {}};
    // Where sections meet, a uniform cubic has the weights 1/6 4/6 1/6: with CVs at this radius it is on the
    // circle there. CV 1 belongs to the start then.
    const double radius = degree == 3 ? 3.0 / (2.0 + std::cos(step)) : 1.0;
    const int before = degree == 3 ? 1 : 0;
    for (int i = 0; i < arc.basis.cvCount(); ++i)
        arc.cvs.push_back(onCircle(start + (i - before) * step, radius));
    return arc;
}

/// A straight line, its parameter even in space.
Result<Outline> makeLine(const MPoint& from, const MPoint& to, int spans, int degree) {
    if (Outcome fault = NurbsBasis::checkDegree(degree); !fault) return fault;
    if (Outcome fault = checkCount("spans", spans, 1); !fault) return fault;
    Outline line{NurbsBasis::clamped(degree, spans), {}};
    for (int i = 0; i < line.basis.cvCount(); ++i)
        line.cvs.push_back(from + (to - from) * (line.basis.greville(i) / spans));
    return line;
}

/// x of the outline is the distance from the axis, y the height along it.
Result<NurbsSurface> revolved(const Result<Outline>& outline, const RevolvedOptions& options) {
    if (!outline) return Outcome::fail(outline.error());
    const Result<Outline> ring =
        makeArc(options.startSweep, options.endSweep - options.startSweep, options.sections, options.degree);
    if (!ring) return Outcome::fail(ring.error());
    std::vector<MPoint> cvs;
    for (const MPoint& profile : outline->cvs) {
        for (const MPoint& around : ring->cvs)
            cvs.emplace_back(profile.x * around.x, profile.y, profile.x * around.y);
    }
    Result<NurbsSurface> surface = NurbsSurface::create(outline->basis, ring->basis, std::move(cvs));
    if (!surface) return surface;
    return surface->transformed(placement(MVector::yAxis, options.axis, options.pivot));
}

void placeOutline(Result<Outline>& outline, double scale, double alongX) {
    if (!outline) return;
    for (MPoint& cv : outline->cvs)
        cv = cv * scale + MVector(alongX, 0.0);
}

} // namespace

Result<NurbsCurve> makeCircle(const CircleOptions& options) {
    Result<Outline> arc = makeArc(0.25 * fullTurn, options.sweep, options.sections, options.degree);
    if (!arc) return Outcome::fail(arc.error());
    placeOutline(arc, options.radius, 0.0);
    Result<NurbsCurve> curve = NurbsCurve::create(std::move(arc->basis), std::move(arc->cvs));
    if (!curve) return curve;
    return curve->transformed(placement(MVector::zAxis, options.normal, options.center));
}

Result<NurbsCurve> makeCurve(int degree, std::vector<MPoint> cvs, std::vector<double> knots, bool periodic) {
    const int count = static_cast<int>(cvs.size());
    NurbsBasis basis{degree, periodic ? NurbsForm::Periodic : NurbsForm::Open, std::move(knots)};
    if (basis.knots.empty()) {
        if (periodic) return Outcome::fail("a periodic curve needs its knots given");
        if (Outcome fault = NurbsBasis::checkDegree(degree); !fault) return fault;
        if (count < degree + 1)
            return Outcome::fail(std::to_string(count) + " CVs are too few for degree " +
                                 std::to_string(degree));
        basis = NurbsBasis::clamped(degree, count - degree);
    }
    bool rational = false;
    for (const MPoint& cv : cvs)
        rational = rational || cv.w != 1.0;
    if (periodic && degree >= 1 && count > degree) {
        for (int i = 0; i < degree; ++i) {
            if (!cvs[i].isEquivalent(cvs[count - degree + i], 1e-5))
                return Outcome::fail("the last CVs of a periodic curve must repeat the first");
        }
    }
    return NurbsCurve::create(std::move(basis), std::move(cvs), rational);
}

Result<NurbsSurface> makePlane(const PlaneOptions& options) {
    const double x = 0.5 * options.width;
    const double y = x * options.lengthRatio;
    const Result<Outline> u = makeLine({-x, 0.0}, {x, 0.0}, options.patchesU, options.degree);
    const Result<Outline> v = makeLine({0.0, -y}, {0.0, y}, options.patchesV, options.degree);
    if (!u) return Outcome::fail(u.error());
    if (!v) return Outcome::fail(v.error());
    std::vector<MPoint> cvs;
    for (const MPoint& across : u->cvs) {
        for (const MPoint& along : v->cvs)
            cvs.emplace_back(across.x, along.y);
    }
    Result<NurbsSurface> plane = NurbsSurface::create(
        NurbsBasis::clamped(options.degree, options.patchesU, 1.0 / options.patchesU),
        NurbsBasis::clamped(options.degree, options.patchesV, 1.0 / options.patchesV), std::move(cvs));
    if (!plane) return plane;
    return plane->transformed(placement(MVector::zAxis, options.axis, options.pivot));
}

Result<NurbsSurface> makeSphere(const RevolvedOptions& options, int spans) {
    Result<Outline> half = makeArc(-0.25 * fullTurn, 0.5 * fullTurn, spans, options.degree);
    placeOutline(half, options.radius, 0.0);
    return revolved(half, options);
}

Result<NurbsSurface> makeCylinder(const RevolvedOptions& options, double heightRatio, int spans) {
    const double half = 0.5 * heightRatio * options.radius;
    return revolved(makeLine({options.radius, -half}, {options.radius, half}, spans, options.degree),
                    options);
}

Result<NurbsSurface> makeCone(const RevolvedOptions& options, double heightRatio, int spans) {
    const double half = 0.5 * heightRatio * options.radius;
    return revolved(makeLine({options.radius, -half}, {0.0, half}, spans, options.degree), options);
}

Result<NurbsSurface> makeTorus(const RevolvedOptions& options, double minorRatio, int spans) {
    Result<Outline> tube = makeArc(0.0, fullTurn, spans, options.degree);
    placeOutline(tube, options.radius * minorRatio, options.radius);
    return revolved(tube, options);
}

} // namespace vesk::geom
