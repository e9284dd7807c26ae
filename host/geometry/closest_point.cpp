#include "host/geometry/closest_point.h"

#include <embree3/rtcore.h>

#include <cmath>

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

bool isFinite(const MVector& v) { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }

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

// --- the search: the library walks its tree of boxes, distances are worked out here
// -----------------------------------

struct ClosestPoints::Tree {
    RTCDevice device = nullptr;
    RTCScene scene = nullptr;

    explicit Tree(const Mesh& mesh) : device(rtcNewDevice("threads=1")), scene(rtcNewScene(device)) {
        RTCGeometry geometry = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_TRIANGLE);
        const auto& points = mesh.points();
        const auto& corners = mesh.topology().faceVertices();
        auto* vertices = static_cast<float*>(rtcSetNewGeometryBuffer(
            geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3, 3 * sizeof(float), points.size()));
        for (const MFloatVector& point : points) {
            for (const float value : {point.x, point.y, point.z})
                *vertices++ = value;
        }
        auto* ids = static_cast<unsigned*>(rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0,
                                                                   RTC_FORMAT_UINT3, 3 * sizeof(unsigned),
                                                                   mesh.triangles().size()));
        for (const TriangleCorners& triangle : mesh.triangles()) {
            for (const int corner : triangle)
                *ids++ = static_cast<unsigned>(corners[static_cast<std::size_t>(corner)]);
        }
        rtcCommitGeometry(geometry);
        rtcSetSceneFlags(scene, RTC_SCENE_FLAG_ROBUST);
        rtcAttachGeometry(scene, geometry);
        rtcReleaseGeometry(geometry);
        rtcCommitScene(scene);
    }
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;
    ~Tree() {
        rtcReleaseScene(scene);
        rtcReleaseDevice(device);
    }
};

namespace {

/// One search, as the library's call-back sees it.
struct Search {
    const Mesh& mesh;
    MVector p;
    double rounding; ///< how far what the library takes for `p` may lie from it
    double bestSquared;
    int best = -1;
    TrianglePoint found;

    /// Whether the triangle is the nearest so far.
    bool visit(int triangle) {
        const auto& corners = mesh.triangles()[static_cast<std::size_t>(triangle)];
        std::array<MVector, 3> at;
        for (std::size_t k = 0; k < 3; ++k) {
            at[k] = mesh.point(mesh.topology().faceVertices()[static_cast<std::size_t>(corners[k])]);
            if (!isFinite(at[k])) return false;
        }
        const TrianglePoint nearest = closestOnTriangle(p, at[0], at[1], at[2]);
        const double squared = (p - nearest.point) * (p - nearest.point);
        const bool isTie = squared == bestSquared && (best < 0 || triangle < best);
        if (!(squared < bestSquared || isTie)) return false;
        bestSquared = squared;
        best = triangle;
        found = nearest;
        return true;
    }
    /// For the library's boxes, in single precision and never too small.
    float radius() const {
        const double wide = std::sqrt(bestSquared) * (1 + 1e-5) + rounding;
        return wide < std::numeric_limits<float>::max() ? std::nextafter(static_cast<float>(wide), INFINITY)
                                                        : INFINITY;
    }
};

bool visitTriangle(RTCPointQueryFunctionArguments* arguments) {
    auto& search = *static_cast<Search*>(arguments->userPtr);
    if (!search.visit(static_cast<int>(arguments->primID))) return false;
    arguments->query->radius = search.radius();
    return true;
}

} // namespace

ClosestPoints::ClosestPoints(const Mesh& mesh) : mesh_(mesh), tree_(std::make_unique<Tree>(mesh_)) {
    faceOfTriangle_.reserve(mesh_.triangles().size());
    for (int face = 0; face < mesh_.faceCount(); ++face)
        faceOfTriangle_.insert(faceOfTriangle_.end(), static_cast<std::size_t>(mesh_.triangleCount(face)),
                               face);
}

ClosestPoints::~ClosestPoints() = default;

std::optional<MeshPoint> ClosestPoints::find(const MVector& p, double maxDistance) const {
    if (!isFinite(p) || !(maxDistance >= 0)) return std::nullopt;
    RTCPointQuery query{};
    query.x = static_cast<float>(p.x);
    query.y = static_cast<float>(p.y);
    query.z = static_cast<float>(p.z);
    const double size = std::max({std::abs(p.x), std::abs(p.y), std::abs(p.z)});
    Search search{mesh_, p, 1e-6 * size, maxDistance * maxDistance, -1, {}};
    query.radius = search.radius();
    RTCPointQueryContext context;
    rtcInitPointQueryContext(&context);
    rtcPointQuery(tree_->scene, &query, &context, visitTriangle, &search);
    if (search.best < 0) return std::nullopt;
    MeshPoint result;
    static_cast<TrianglePoint&>(result) = search.found;
    result.face = faceOfTriangle_[static_cast<std::size_t>(search.best)];
    result.triangle = search.best - mesh_.triangleStart(result.face);
    result.squaredDistance = search.bestSquared;
    return result;
}

} // namespace vesk::geom
