// The nearest point of a mesh, against values worked out by hand and the plain search.

#include "host/geometry/closest_point.h"

#include "host/geometry/polygon_primitives.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace vesk::geom {
namespace {

Mesh meshOf(std::vector<MFloatVector> points, std::vector<int> counts, std::vector<int> connects) {
    auto made = Mesh::create(std::move(points), counts, connects);
    EXPECT_TRUE(made) << made.outcome.error;
    return made.mesh;
}

TEST(ClosestPoint, RegionsOfATriangle) {
    const MVector a(0, 0, 0), b(4, 0, 0), c(0, 4, 0);
    struct {
        MVector p, nearest;
    } const cases[] = {{{1, 1, 5}, {1, 1, 0}},  {{-1, -2, 3}, {0, 0, 0}}, {{9, -1, 0}, {4, 0, 0}},
                       {{-1, 9, 1}, {0, 4, 0}}, {{2, -3, 1}, {2, 0, 0}},  {{-5, 3, 0}, {0, 3, 0}},
                       {{4, 4, 7}, {2, 2, 0}}};
    for (const auto& one : cases) {
        const TrianglePoint found = closestOnTriangle(one.p, a, b, c);
        EXPECT_TRUE(found.point.isEquivalent(one.nearest, 1e-12)) << one.p.x << " " << one.p.y;
        const MVector byWeights = a * found.weights[0] + b * found.weights[1] + c * found.weights[2];
        EXPECT_TRUE(byWeights.isEquivalent(one.nearest, 1e-12));
    }
    // Without area: the nearest of its edges, or its one point.
    EXPECT_EQ(closestOnTriangle({3, 5, 0}, {0, 0, 0}, {2, 0, 0}, {4, 0, 0}).point, MVector(3, 0, 0));
    EXPECT_EQ(closestOnTriangle({3, 5, 0}, {1, 1, 1}, {1, 1, 1}, {1, 1, 1}).point, MVector(1, 1, 1));
}

TEST(ClosestPoint, TiesGoToTheLowestFaceAndTheReachCounts) {
    // Two squares beside each other, and the middle of their common edge.
    const Mesh mesh = meshOf({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}, {1, 1, 0}, {2, 1, 0}}, {4, 4},
                             {1, 2, 5, 4, 0, 1, 4, 3});
    const ClosestPoints closest(mesh);
    const auto found = closest.find({1, 0.5, 2});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->face, 0);
    EXPECT_EQ(found->triangle, 1) << "1 5 4: the edge from 4 to 1 is on it, and on 1 2 5 only its end";
    EXPECT_EQ(found->squaredDistance, 4);
    EXPECT_TRUE(closest.find({1, 0.5, 2}, 2)) << "the reach itself is in";
    EXPECT_FALSE(closest.find({1, 0.5, 2}, 1.999));
    EXPECT_FALSE(closest.find({std::nan(""), 0, 0}));
    EXPECT_FALSE(ClosestPoints(Mesh()).find({0, 0, 0}));
}

TEST(ClosestPoint, PointsThatAreNoNumbersAreNotFoundAndHarmNobody) {
    const Mesh mesh = meshOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {std::nanf(""), 0, 0}, {INFINITY, 2, 0}},
                             {3, 3, 3}, {0, 1, 3, 0, 1, 2, 1, 2, 4});
    const auto found = ClosestPoints(mesh).find({0.25, 0.25, 9});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->face, 1);
    EXPECT_EQ(found->point, MVector(0.25, 0.25, 0));
}

TEST(ClosestPoint, TheSameToTheBitAsThePlainSearch) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> inside(-1, 1);
    for (const double shift : {0.0, 1e4}) {
        std::vector<MFloatVector> points;
        std::vector<int> counts, connects;
        for (int i = 0; i < 400; ++i) {
            points.emplace_back(inside(random) + static_cast<float>(shift), inside(random), inside(random));
            connects.push_back(i);
            if (i % 4 == 3) counts.push_back(4);
        }
        const Mesh mesh = meshOf(points, counts, connects);
        const ClosestPoints closest(mesh);
        for (int i = 0; i < 300; ++i) {
            const MVector p(shift + 3 * inside(random), inside(random) / 3.0, 2 * inside(random));
            MeshPoint plain;
            for (int face = 0; face < mesh.faceCount(); ++face) {
                for (int triangle = 0; triangle < mesh.triangleCount(face); ++triangle) {
                    const auto v = mesh.triangleVertices(face, triangle);
                    const auto one =
                        closestOnTriangle(p, mesh.point(v[0]), mesh.point(v[1]), mesh.point(v[2]));
                    const double squared = (p - one.point) * (p - one.point);
                    if (squared < plain.squaredDistance) plain = {one, face, triangle, squared};
                }
            }
            const auto found = closest.find(p);
            ASSERT_TRUE(found);
            EXPECT_EQ(found->point, plain.point);
            EXPECT_EQ(found->face, plain.face);
            EXPECT_EQ(found->triangle, plain.triangle);
        }
    }
}

} // namespace
} // namespace vesk::geom
