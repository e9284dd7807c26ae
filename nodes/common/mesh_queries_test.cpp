// Batches against one question after the other.

#include "nodes/common/mesh_queries.h"

#include "parallel/loops.h"

#include <maya/MFnMesh.h>
#include <maya/MFnMeshData.h>
#include <maya/MIntArray.h>
#include <maya/MMeshIntersector.h>
#include <maya/MPointArray.h>

#include <gtest/gtest.h>

#include <cmath>

namespace vesk::nodes {
namespace {

/// Squares of size 1 over (0, 0) to (side, side), at heights that roll.
MObject hills(int side) {
    MPointArray points;
    MIntArray counts, connects;
    for (int y = 0; y <= side; ++y) {
        for (int x = 0; x <= side; ++x) {
            points.append(MPoint(x, y, std::sin(0.7 * x) * std::cos(0.4 * y)));
            if (x == side || y == side) continue;
            const int v = y * (side + 1) + x;
            counts.append(4);
            for (const int corner : {v, v + 1, v + side + 2, v + side + 1})
                connects.append(corner);
        }
    }
    MObject data = MFnMeshData().create();
    MFnMesh().create(static_cast<int>(points.length()), static_cast<int>(counts.length()), points, counts,
                     connects, data);
    return data;
}

/// Places in no order over the hills and around, with some that are no numbers.
std::vector<MPoint> places(std::size_t count) {
    std::vector<MPoint> all;
    for (std::size_t i = 0; i < count; ++i) {
        const auto turn = static_cast<double>(i * 7919 % 10007);
        all.emplace_back(std::fmod(turn * 0.37, 24) - 2, std::fmod(turn * 0.91, 24) - 2,
                         std::fmod(turn, 5) - 2);
    }
    all.at(5).x = std::nan("");
    return all;
}

class MeshQueries : public ::testing::TestWithParam<int> {
  protected:
    void SetUp() override { parallel::setThreads(GetParam()); }
    void TearDown() override { parallel::setThreads(before_); }
    const int before_ = parallel::threads();
    MObject mesh_ = hills(20);
    const std::vector<MPoint> places_ = places(12'000);
};

TEST_P(MeshQueries, RaysAsOneByOne) {
    const MFnMesh mesh(mesh_);
    std::vector<MFloatPoint> sources;
    std::vector<MFloatVector> directions;
    for (const MPoint& place : places_) {
        sources.emplace_back(place);
        const auto slope = static_cast<float>(sources.size() % 13) * 0.1F;
        directions.emplace_back(slope - 0.6F, 0.2F, sources.size() % 3 == 0 ? 1.0F : -1.0F);
    }
    directions[7] = MFloatVector();
    for (const bool both : {false, true}) {
        const auto hits = firstHits(mesh, sources, directions, {6, both, 1e-6F});
        int count = 0;
        for (std::size_t i = 0; i < hits.size(); ++i) {
            MFloatPoint point;
            int face = -1, triangle = -1;
            float u = 0, v = 0;
            const bool isHit =
                mesh.closestIntersection(sources[i], directions[i], nullptr, nullptr, false, MSpace::kWorld,
                                         6, both, nullptr, point, nullptr, &face, &triangle, &u, &v);
            ASSERT_EQ(isHit, static_cast<bool>(hits[i])) << i;
            ASSERT_EQ(std::tuple(hits[i].face, hits[i].triangle, hits[i].u, hits[i].v),
                      std::tuple(face, triangle, u, v))
                << i;
            ASSERT_EQ(hits[i].point, point) << i;
            count += isHit;
        }
        EXPECT_GT(count, 2000);
        EXPECT_LT(count, 11'900);
        EXPECT_FALSE(hits[5] || hits[7]);
    }
}

TEST_P(MeshQueries, NearestPointsAsOneByOne) {
    MMatrix moved;
    moved[3][0] = 3, moved[0][0] = 0.5;
    MMeshIntersector intersector;
    ASSERT_TRUE(intersector.create(mesh_, moved));
    for (const double reach : {DBL_MAX, 1.0}) {
        const auto nearest = nearestPoints(mesh_, moved, places_, reach);
        int count = 0;
        for (std::size_t i = 0; i < nearest.size(); ++i) {
            MPointOnMesh found;
            const bool isFound = intersector.getClosestPoint(places_[i], found, reach) == MStatus::kSuccess;
            ASSERT_EQ(isFound, static_cast<bool>(nearest[i])) << i;
            if (!isFound) continue;
            ++count;
            float u = 0, v = 0;
            found.getBarycentricCoords(u, v);
            ASSERT_EQ(nearest[i].point, found.getPoint()) << i;
            ASSERT_EQ(nearest[i].normal, found.getNormal()) << i;
            ASSERT_EQ(std::tuple(nearest[i].face, nearest[i].triangle, nearest[i].u, nearest[i].v),
                      std::tuple(found.faceIndex(), found.triangleIndex(), u, v))
                << i;
        }
        EXPECT_EQ(count == 11'999, reach > 1);
        EXPECT_GT(count, 1000);
    }
    MObject nothing;
    EXPECT_FALSE(nearestPoints(nothing, MMatrix(), places_).front());
}

INSTANTIATE_TEST_SUITE_P(Threads, MeshQueries, ::testing::Values(1, 2, 5));

} // namespace
} // namespace vesk::nodes
