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
    const double turn = std::copysign(1.0, whole), size = whole * turn;
    const double a0 = doubleArea(p, uv[1], uv[2]) * turn, a1 = doubleArea(uv[0], p, uv[2]) * turn;
    const double a2 = size - a0 - a1;
    if (!(size > 0.0 && a0 >= 0.0 && a1 >= 0.0 && a2 >= 0.0)) return false;
    const double share = 1.0 / size;
    weights = {a0 * share, a1 * share, a2 * share};
    return true;
}

/// The UVs of a triangle's corners; false when one is not mapped.
bool readPlaces(const UvSet& set, const TriangleCorners& corners, UvTriangle& places) {
    for (std::size_t k = 0; k < 3; ++k) {
        const int id = set.ids[corners[k]];
        if (id < 0) return false;
        places[k] = {set.u[id], set.v[id]};
    }
    return true;
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
    const auto weighted = [this](const TriangleCorners& corners, const Weights& weights) {
        const auto& vertices = topology_->faceVertices();
        return MPoint(point(vertices[corners[0]]) * weights[0] + point(vertices[corners[1]]) * weights[1] +
                      point(vertices[corners[2]]) * weights[2]);
    };
    const UvPoint p{uv.u, uv.v};
    const TriangleCorners* const split = triangles().data() + triangleStart(face);
    const int count = triangleCount(face);
    UvTriangle places;
    Weights weights;
    for (int t = 0; t < count; ++t) {
        if (!readPlaces(uvs, split[t], places)) return std::nullopt;
        if (weightsInside(places, p, weights)) return weighted(split[t], weights);
    }
    UvHit hit;
    for (int t = 0; t < count; ++t) {
        (void)readPlaces(uvs, split[t], places);
        approachSides(places, p, t, hit);
    }
    const double reach = std::max(tolerance, uvRounding(p));
    if (hit.triangle < 0 || !(hit.squaredDistance <= reach * reach)) return std::nullopt;
    return weighted(split[hit.triangle], hit.weights);
}

} // namespace vesk::geom
