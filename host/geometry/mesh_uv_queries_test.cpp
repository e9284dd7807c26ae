// From UVs to points of a face and back.

#include "host/geometry/mesh_samples.h"

#include <cmath>
#include <limits>
#include <numeric>
#include <random>

namespace vesk::geom {
namespace {

using test::Ids;

/// The mesh with these UVs: one pair a corner, in the corners' order.
Mesh mapped(Mesh mesh, std::vector<float> u, std::vector<float> v) {
    Ids ids(u.size());
    std::iota(ids.begin(), ids.end(), 0);
    EXPECT_TRUE(mesh.setUvSets({UvSet{"map1", std::move(u), std::move(v), std::move(ids)}}, 0));
    return mesh;
}

void expectPoint(const Mesh& mesh, Mesh::Uv uv, double tolerance, const MVector& expected) {
    const auto point = mesh.pointAtUv(0, 0, uv, tolerance);
    ASSERT_TRUE(point) << uv.u << " " << uv.v;
    EXPECT_TRUE(test::near(MVector(*point), expected)) << uv.u << " " << uv.v;
}

TEST(MeshUvQueries, LeadToPointsAndBack) {
    const Mesh cube = test::made(makeCube({}));
    // The top face spans v 0.25 to 0.5, from the front backwards.
    const auto point = cube.pointAtUv(0, 1, {0.5625F, 0.3125F});
    ASSERT_TRUE(point);
    EXPECT_TRUE(test::near(MVector(*point), {0.25, 0.5, 0.25}));
    EXPECT_FALSE(cube.pointAtUv(0, 1, {0.5F, 0.2F}));
    EXPECT_FALSE(cube.pointAtUv(0, 1, {0.5F, 0.2F}, 0.04));
    const auto nearest = cube.pointAtUv(0, 1, {0.5F, 0.2F}, 0.06);
    ASSERT_TRUE(nearest);
    EXPECT_TRUE(test::near(MVector(*nearest), {0, 0.5, 0.5}));

    const auto uv = cube.uvOnTriangle(0, 1, 0, {0.5, 0.25, 0.25}); // vertices 2, 3, 5
    ASSERT_TRUE(uv);
    EXPECT_FLOAT_EQ(uv->u, 0.5F);
    EXPECT_FLOAT_EQ(uv->v, 0.3125F);
}

TEST(MeshUvQueries, EveryTriangleOfTheFaceIsReached) {
    // A quad of 4 by 2 and a concave face whose tip 3 points inwards.
    const Mesh quad = mapped(test::build({{0, 0, 0}, {4, 0, 0}, {4, 2, 0}, {0, 2, 0}}, {4}, {0, 1, 2, 3}),
                             {0, 1, 1, 0}, {0, 0, 1, 1});
    expectPoint(quad, {0.75F, 0.25F}, 0, {3, 0.5, 0});
    expectPoint(quad, {0.25F, 0.75F}, 0, {1, 1.5, 0});
    expectPoint(quad, {0.5F, 0.5F}, 0, {2, 1, 0});
    const Mesh concave =
        mapped(test::build({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {2, 1, 0}, {0, 4, 0}}, {5}, {0, 1, 2, 3, 4}),
               {0, 4, 4, 2, 0}, {0, 0, 4, 1, 4});
    expectPoint(concave, {3.5F, 2.5F}, 0, {3.5, 2.5, 0});
    expectPoint(concave, {0.5F, 2.5F}, 0, {0.5, 2.5, 0});
    // In the notch: from the tip (2, 1) it is 5.5 / 13 of the side to (4, 4) to the nearest place.
    expectPoint(concave, {2.5F, 2.5F}, 0.5, {2 + 11 / 13.0, 1 + 16.5 / 13.0, 0});
    EXPECT_FALSE(concave.pointAtUv(0, 0, {2.5F, 2.5F}, 0.4));
}

TEST(MeshUvQueries, FacesWithoutUvArea) {
    // UVs on a line, and all in one place.
    const Mesh line =
        mapped(test::build({{0, 0, 0}, {2, 0, 0}, {1, 3, 0}}, {3}, {0, 1, 2}), {0, 1, 0.5F}, {0, 0, 0});
    expectPoint(line, {0.25F, 0}, 0, {0.5, 0, 0});
    expectPoint(line, {0.25F, 0.125F}, 0.125, {0.5, 0, 0});
    EXPECT_FALSE(line.pointAtUv(0, 0, {0.25F, 0.126F}, 0.125));
    expectPoint(line, {-3, 0}, 3, {0, 0, 0});
    const Mesh spot =
        mapped(test::build({{0, 0, 0}, {2, 0, 0}, {1, 3, 0}}, {3}, {0, 1, 2}), {1, 1, 1}, {1, 1, 1});
    expectPoint(spot, {1, 1}, 0, {0, 0, 0});
    EXPECT_FALSE(spot.pointAtUv(0, 0, {1.5F, 1}, 0.4));
}

TEST(MeshUvQueries, WhatIsNotThereIsNotFound) {
    EXPECT_FALSE(test::fold().pointAtUv(0, 0, {0, 0}, 100)) << "unmapped";
    Mesh mesh = test::build({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}}, {4}, {0, 1, 2, 3});
    ASSERT_TRUE(mesh.setUvSets({UvSet{"map1", {0, 1, 1}, {0, 0, 1}, {0, 1, 2, -1}}}, 0));
    EXPECT_FALSE(mesh.pointAtUv(0, 0, {0.25F, 0.75F}, 100)) << "a corner has no UV";
    EXPECT_FALSE(mesh.uvOnTriangle(0, 0, 1, {1, 0, 0}));
    const float none = std::nanf("");
    const Mesh odd = mapped(mesh, {none, none, none, none}, {0, 0, 1, 1});
    EXPECT_FALSE(odd.pointAtUv(0, 0, {0.5F, 0.5F}, std::numeric_limits<double>::infinity()));
    const Mesh square = mapped(mesh, {0, 1, 1, 0}, {0, 0, 1, 1});
    EXPECT_FALSE(square.pointAtUv(0, 0, {none, 0}, 1));
    EXPECT_FALSE(square.pointAtUv(0, 0, {2, 0}, std::nan("")));
    EXPECT_FALSE(square.pointAtUv(0, 0, {1.01F, 0}, -1));
}

TEST(MeshUvQueries, ThereAndBackOnAllFaces) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> share(0, 1);
    for (Mesh mesh : {test::made(makeCylinder({})), test::made(makeTorus({}))}) {
        // Some tiles away single precision is coarser: still no tolerance is needed.
        UvSet moved = mesh.uvSet(0);
        for (float& u : moved.u)
            u += 30;
        ASSERT_TRUE(mesh.setUvSets({moved}, 0));
        for (int face = 0; face < mesh.faceCount(); ++face) {
            const int triangle = face % mesh.triangleCount(face);
            const double a = share(random), b = (1 - a) * share(random);
            const auto uv = mesh.uvOnTriangle(0, face, triangle, {a, b, 1 - a - b});
            ASSERT_TRUE(uv);
            const auto v = mesh.triangleVertices(face, triangle);
            const auto point = mesh.pointAtUv(0, face, *uv);
            ASSERT_TRUE(point) << face;
            EXPECT_TRUE(test::near(
                MVector(*point), mesh.point(v[0]) * a + mesh.point(v[1]) * b + mesh.point(v[2]) * (1 - a - b),
                1e-3))
                << face;
        }
    }
}

} // namespace
} // namespace vesk::geom
