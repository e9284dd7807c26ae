#include "host/geometry/ray_triangle.h"

namespace vesk::geom {

namespace {

double sumOfSides(const MVector& v) { return std::abs(v.x) + std::abs(v.y) + std::abs(v.z); }

bool isInside(double value, double a, double b, double c, double reach) {
    return value >= std::min({a, b, c}) - reach && value <= std::max({a, b, c}) + reach;
}

} // namespace

std::optional<TriangleHit> hitTriangle(const Ray& ray, const MVector& a, const MVector& b, const MVector& c,
                                       double tolerance) {
    const MVector ab = b - a, ac = c - a, normal = ab ^ ac;
    const double facing = -(ray.direction * normal);
    if (!(facing != 0)) return std::nullopt;
    const MVector from = ray.source - a, moment = from ^ ray.direction;
    const double sign = facing > 0 ? 1.0 : -1.0, size = facing * sign;
    // The weights times `size`.
    const double wb = (ac * moment) * sign, wc = -(ab * moment) * sign, wa = size - wb - wc;
    const double area = normal * normal; // squared, of the parallelogram
    const auto isBeyond = [&](double weight, double squaredEdge) {
        return weight < 0 &&
               weight * weight * area > tolerance * tolerance * squaredEdge * squaredEdge * size * size;
    };
    const double bb = ab * ab, cc = ac * ac;
    if (isBeyond(wb, cc) || isBeyond(wc, bb)) return std::nullopt;
    const MVector bc = c - b;
    const double aa = bc * bc;
    if (isBeyond(wa, aa)) return std::nullopt;

    const double param = (from * normal) / facing;
    const MVector along = ray.direction * param, point = ray.source + along;
    // Of a line nearly in the plane, rounding may put the point anywhere.
    const auto isInBox = [&](double reach) {
        return isInside(point.x, a.x, b.x, c.x, reach) && isInside(point.y, a.y, b.y, c.y, reach) &&
               isInside(point.z, a.z, b.z, c.z, reach);
    };
    const double rounding = 1e-14 * (sumOfSides(ray.source) + sumOfSides(along));
    if (!isInBox(rounding) && !isInBox(tolerance * std::sqrt(std::max({aa, bb, cc})) + rounding))
        return std::nullopt;
    return TriangleHit{param, {wa / size, wb / size, wc / size}};
}

} // namespace vesk::geom
