#include "nodes/common/mesh_queries.h"

#include "parallel/loops.h"
#include "parallel/morton.h"

#include <maya/MFnMesh.h>
#include <maya/MMeshIntersector.h>
#include <maya/MMeshIsectAccelParams.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace vesk::nodes {

namespace {

constexpr bool mayRunTogether = VESK_CONCURRENT_QUERIES;
constexpr std::size_t grain = 4096;

} // namespace

void inQueryPieces(std::size_t count, const std::function<void(std::size_t, std::size_t)>& work) {
    if (count == 0) return;
    work(0, 1);
    const auto rest = [&](std::size_t begin, std::size_t end) { work(begin + 1, end + 1); };
    if constexpr (mayRunTogether) {
        parallel::inPieces(count - 1, grain, rest);
    } else if (count > 1) {
        rest(0, count - 1);
    }
}

namespace {

using Places = std::vector<std::array<float, 3>>;

/// Whether one place follows another about as closely as on a surface covered row by row, so that sorting
/// gains nothing.
bool areNearbyInOrder(const Places& places) {
    std::array<float, 3> least = places.front(), most = least;
    double way = 0;
    for (std::size_t i = 1; i < places.size(); ++i) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const float at = places[i][axis];
            least[axis] = std::min(least[axis], at);
            most[axis] = std::max(most[axis], at);
            way += static_cast<double>(std::abs(at - places[i - 1][axis]));
        }
    }
    double size = 0;
    for (std::size_t axis = 0; axis < 3; ++axis)
        size += static_cast<double>(most[axis] - least[axis]);
    return way <= 4 * size * std::sqrt(static_cast<double>(places.size()));
}

/// Calls work(run) for runs of the indices of `places`, in an order in which neighbours come close to each
/// other.
template <class Place, class Work>
void inNearbyOrder(std::span<const Place> places, const Work& work) {
    if (places.empty()) return;
    Places keys(places.size());
    std::transform(places.begin(), places.end(), keys.begin(), [](const Place& p) {
        return std::array{static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)};
    });
    std::vector<std::uint32_t> order;
    if (areNearbyInOrder(keys)) {
        order.resize(places.size());
        std::iota(order.begin(), order.end(), 0U);
    } else {
        order = parallel::mortonOrder(keys);
    }
    inQueryPieces(order.size(), [&](std::size_t begin, std::size_t end) {
        work(std::span<const std::uint32_t>(order).subspan(begin, end - begin));
    });
}

/// Asks one point after the other, each not farther out than the last answer lies from it.
class NearbySearch {
  public:
    NearbySearch(const MMeshIntersector& intersector, const MMatrix& toMesh, double maxDistance)
        : intersector_(intersector), toMesh_(toMesh), maxDistance_(maxDistance) {}

    NearestPoint operator()(const MPoint& point) {
        MPointOnMesh found;
        const double hint = hintFor(point);
        const bool isFound = (hint < maxDistance_ && intersector_.getClosestPoint(point, found, hint)) ||
                             intersector_.getClosestPoint(point, found, maxDistance_);
        if (!isFound) return {};
        NearestPoint result{found.getPoint(), found.getNormal(), found.faceIndex(), found.triangleIndex()};
        found.getBarycentricCoords(result.u, result.v);
        last_ = result;
        return result;
    }

  private:
    double hintFor(const MPoint& point) const {
        if (!last_) return maxDistance_;
        // What rounding to floats may have moved the answer by, and more.
        return (point * toMesh_).distanceTo(MPoint(last_.point)) * 1.001 +
               1e-6 * MVector(last_.point).length();
    }

    const MMeshIntersector& intersector_;
    const MMatrix& toMesh_;
    const double maxDistance_;
    NearestPoint last_;
};

} // namespace

std::vector<RayHit> firstHits(const MFnMesh& mesh, std::span<const MFloatPoint> sources,
                              std::span<const MFloatVector> directions, const RayReach& reach) {
    std::vector<RayHit> hits(sources.size());
    MMeshIsectAccelParams accelParams = MFnMesh::autoUniformGridParams();
    inNearbyOrder(sources, [&](std::span<const std::uint32_t> run) {
        for (const std::uint32_t i : run) {
            if (directions[i] == MFloatVector()) continue;
            RayHit& hit = hits[i];
            (void)mesh.closestIntersection(sources[i], directions[i], nullptr, nullptr, false, reach.space,
                                           reach.maxParam, reach.bothDirections, &accelParams, hit.point,
                                           nullptr, &hit.face, &hit.triangle, &hit.u, &hit.v,
                                           reach.tolerance);
        }
    });
    return hits;
}

std::vector<NearestPoint> nearestPoints(MObject& mesh, const MMatrix& matrix, std::span<const MPoint> points,
                                        double maxDistance) {
    std::vector<NearestPoint> nearest(points.size());
    MMeshIntersector intersector;
    if (!intersector.create(mesh, matrix)) return nearest;
    const MMatrix toMesh = matrix.inverse();
    inNearbyOrder(points, [&](std::span<const std::uint32_t> run) {
        NearbySearch search(intersector, toMesh, maxDistance);
        for (const std::uint32_t i : run)
            nearest[i] = search(points[i]);
    });
    return nearest;
}

} // namespace vesk::nodes
