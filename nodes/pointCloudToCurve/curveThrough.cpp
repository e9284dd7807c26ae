#include "nodes/pointCloudToCurve/curveThrough.h"

#include <maya/MDoubleArray.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MFnNurbsCurveData.h>
#include <maya/MPointArray.h>

#include <algorithm>

namespace vesk::nodes {

int degreeFor(std::size_t pointCount, int degree) {
    const std::size_t wanted = static_cast<std::size_t>(std::clamp(degree, kLowestDegree, kHighestDegree));
    return static_cast<int>(pointCount < 2 ? kLowestDegree : std::min(wanted, pointCount - 1));
}

std::vector<double> knotsFor(std::size_t pointCount, int degree, bool isClosed) {
    const auto count = static_cast<int>(pointCount);
    std::vector<double> knots;
    if (isClosed) {
        for (int knot = 1 - degree; knot < count + degree; ++knot)
            knots.push_back(knot);
    } else {
        const int spans = count - degree;
        for (int knot = 1 - degree; knot < spans + degree; ++knot)
            knots.push_back(std::clamp(knot, 0, spans));
    }
    return knots;
}

MObject curveThrough(std::span<const MVector> points, int degree, bool isClosed) {
    if (points.size() < 2) return MObject::kNullObj;
    degree = degreeFor(points.size(), degree);
    const auto knots = knotsFor(points.size(), degree, isClosed);
    const std::size_t repeated = isClosed ? static_cast<std::size_t>(degree) : 0;
    MPointArray cvs;
    cvs.setLength(static_cast<unsigned>(points.size() + repeated));
    unsigned next = 0;
    for (const MVector& point : points)
        cvs[next++] = MPoint(point);
    for (const MVector& point : points.first(repeated))
        cvs[next++] = MPoint(point);
    MFnNurbsCurve curve;
    return curve.create(cvs, MDoubleArray(knots.data(), static_cast<unsigned>(knots.size())),
                        static_cast<unsigned>(degree),
                        isClosed ? MFnNurbsCurve::kPeriodic : MFnNurbsCurve::kOpen, false, false,
                        MFnNurbsCurveData().create());
}

} // namespace vesk::nodes
