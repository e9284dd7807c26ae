#include "host/geometry/closest_point.h"

namespace vesk::geom {

namespace {

TrianglePoint atWeights(const MVector& a, const MVector& b, const MVector& c, double wb, double wc) {
    return {a + (b - a) * wb + (c - a) * wc, {1 - wb - wc, wb, wc}};
}

/// How far along from 0 to 1 the point of a segment nearest to its start's `ahead` lies.
double share(double ahead, double squaredLength) {
    return squaredLength > 0 ? std::clamp(ahead / squaredLength, 0.0, 1.0) : 0.0;
}

TrianglePoint closestOnEdges(const MVector& p, const MVector& a, const MVector& b, const MVector& c) {
    const double ab = share((p - a) * (b - a), (b - a) * (b - a));
    const double ac = share((p - a) * (c - a), (c - a) * (c - a));
    const double bc = share((p - b) * (c - b), (c - b) * (c - b));
    TrianglePoint best = atWeights(a, b, c, ab, 0);
    for (const TrianglePoint& other : {atWeights(a, b, c, 0, ac), atWeights(a, b, c, 1 - bc, bc)}) {
        const MVector away = p - other.point, bestAway = p - best.point;
        if (away * away < bestAway * bestAway) best = other;
    }
    return best;
}

} // namespace

TrianglePoint closestOnTriangle(const MVector& p, const MVector& a, const MVector& b, const MVector& c) {
    const MVector ab = b - a, ac = c - a, ap = p - a;
    const double d1 = ab * ap, d2 = ac * ap;
    if (d1 <= 0 && d2 <= 0) return {a, {1, 0, 0}};
    const MVector bp = p - b;
    const double d3 = ab * bp, d4 = ac * bp;
    if (d3 >= 0 && d4 <= d3) return {b, {0, 1, 0}};
    const MVector cp = p - c;
    const double d5 = ab * cp, d6 = ac * cp;
    if (d6 >= 0 && d5 <= d6) return {c, {0, 0, 1}};
    const double vc = d1 * d4 - d3 * d2, vb = d5 * d2 - d1 * d6, va = d3 * d6 - d5 * d4;
    const double sum = va + vb + vc;
    if (vc <= 0 || vb <= 0 || va <= 0 || !(sum > 0)) return closestOnEdges(p, a, b, c);
    return atWeights(a, b, c, vb / sum, vc / sum);
}

} // namespace vesk::geom
