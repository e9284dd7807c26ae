// From points of a mesh to their UVs and back. Queries come one a point and frame, so they take no memory.

#include "host/geometry/mesh.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vesk::geom {

namespace {

struct UvPoint {
    double u, v;
};
using UvTriangle = std::array<UvPoint, 3>;
using Weights = std::array<double, 3>;

double doubleArea(const UvPoint& a, const UvPoint& b, const UvPoint& c) {
    return (b.u - a.u) * (c.v - a.v) - (b.v - a.v) * (c.u - a.u);
}

/// The weights of a triangle's corners at `p`; false when it lies outside or the triangle has no area.
bool weightsInside(const UvTriangle& uv, const UvPoint& p, Weights& weights) {
    const double whole = doubleArea(uv[0], uv[1], uv[2]);
    if (whole == 0.0) return false;
    const double w0 = doubleArea(p, uv[1], uv[2]) / whole;
    const double w1 = doubleArea(uv[0], p, uv[2]) / whole;
    weights = {w0, w1, 1.0 - w0 - w1};
    return w0 >= 0.0 && w1 >= 0.0 && weights[2] >= 0.0;
}

/// Weights of a triangle's corners at some place, and how far from the place asked for that is.
struct UvHit {
    int triangle = -1;
    Weights weights{};
    double squaredDistance = std::numeric_limits<double>::infinity();
};

/// Takes into `best` what lies nearer to `p` on the triangle's sides.
void approachSides(const UvTriangle& uv, const UvPoint& p, int triangle, UvHit& best) {
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t j = (i + 1) % 3;
        const double du = uv[j].u - uv[i].u, dv = uv[j].v - uv[i].v;
        const double square = du * du + dv * dv;
        const double along = (p.u - uv[i].u) * du + (p.v - uv[i].v) * dv;
        const double t = square > 0.0 ? std::clamp(along / square, 0.0, 1.0) : 0.0;
        const double u = uv[i].u + t * du - p.u, v = uv[i].v + t * dv - p.v;
        const double squared = u * u + v * v;
        if (!(squared < best.squaredDistance)) continue;
        best = {triangle, {}, squared};
        best.weights[i] = 1.0 - t;
        best.weights[j] = t;
    }
}

/// What rounding to single precision does to a UV: a place this near counts as inside at any tolerance.
double uvRounding(const UvPoint& p) { return 1e-7 * std::max({1.0, std::abs(p.u), std::abs(p.v)}); }

} // namespace

std::optional<Mesh::Uv> Mesh::uvOnTriangle(int set, int face, int triangle,
                                           const std::array<double, 3>& weights) const {
    const TriangleCorners& corners = triangles()[triangleStart(face) + triangle];
    double u = 0.0;
    double v = 0.0;
    for (int k = 0; k < 3; ++k) {
        const auto uv = cornerUv(set, corners[k]);
        if (!uv) return std::nullopt;
        u += weights[k] * uv->u;
        v += weights[k] * uv->v;
    }
    return Uv{static_cast<float>(u), static_cast<float>(v)};
}

std::optional<MPoint> Mesh::pointAtUv(int set, int face, Uv uv, double tolerance) const {
    const UvSet& uvs = uvSets_[set].read();
    if (uvs.ids.empty()) return std::nullopt;
    const UvPoint p{uv.u, uv.v};
    const TriangleCorners* const split = triangles().data() + triangleStart(face);
    const int count = triangleCount(face);
    UvTriangle places{};
    const auto readPlaces = [&](int triangle) {
        for (std::size_t k = 0; k < 3; ++k) {
            const int id = uvs.ids[split[triangle][k]];
            if (id < 0) return false;
            places[k] = {uvs.u[id], uvs.v[id]};
        }
        return true;
    };
    UvHit hit;
    for (int t = 0; t < count && hit.triangle < 0; ++t) {
        if (!readPlaces(t)) return std::nullopt;
        if (weightsInside(places, p, hit.weights)) hit.triangle = t;
    }
    if (hit.triangle < 0) {
        for (int t = 0; t < count && readPlaces(t); ++t)
            approachSides(places, p, t, hit);
        const double reach = std::max(tolerance, uvRounding(p));
        if (hit.triangle < 0 || !(hit.squaredDistance <= reach * reach)) return std::nullopt;
    }
    MVector sum;
    const auto& vertices = topology_->faceVertices();
    for (std::size_t k = 0; k < 3; ++k)
        sum += point(vertices[split[hit.triangle][k]]) * hit.weights[k];
    return MPoint(sum);
}

} // namespace vesk::geom
