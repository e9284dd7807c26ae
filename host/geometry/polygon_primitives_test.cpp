#include "host/geometry/mesh_samples.h"

#include <cmath>

namespace vesk::geom {
namespace {

using test::Ids;
using test::made;
using test::near;

std::vector<MeshEdge> pairs(std::initializer_list<int> ends) {
    std::vector<MeshEdge> edges;
    for (const int* end = ends.begin(); end != ends.end(); end += 2)
        edges.push_back({end[0], end[1]});
    return edges;
}

double volume(const Mesh& mesh) {
    double sum = 0.0;
    for (int f = 0; f < mesh.faceCount(); ++f) {
        for (int t = 0; t < mesh.triangleCount(f); ++t) {
            const auto [a, b, c] = mesh.triangleVertices(f, t);
            sum += mesh.point(a) * (mesh.point(b) ^ mesh.point(c)) / 6.0;
        }
    }
    return sum;
}

TEST(Primitives, CubeHasItsKnownIds) {
    CubeShape shape;
    shape.width = 2, shape.height = 4, shape.depth = 6;
    const Mesh cube = made(makeCube(shape));
    const std::vector<MFloatVector> points{{-1, -2, 3}, {1, -2, 3}, {-1, 2, 3},   {1, 2, 3},
                                           {-1, 2, -3}, {1, 2, -3}, {-1, -2, -3}, {1, -2, -3}};
    EXPECT_EQ(cube.points(), points);
    EXPECT_EQ(cube.topology().edges(),
              pairs({0, 1, 2, 3, 4, 5, 6, 7, 0, 2, 1, 3, 2, 4, 3, 5, 4, 6, 5, 7, 6, 0, 7, 1}));
    EXPECT_EQ(cube.topology().faceVertices(),
              (Ids{0, 1, 3, 2, 2, 3, 5, 4, 4, 5, 7, 6, 6, 7, 1, 0, 1, 7, 5, 3, 6, 0, 2, 4}));
    EXPECT_EQ(cube.uvSet(0).ids,
              (Ids{0, 1, 3, 2, 2, 3, 5, 4, 4, 5, 7, 6, 6, 7, 9, 8, 1, 10, 11, 3, 12, 0, 2, 13}));
    EXPECT_EQ(cube.uvSet(0).u, (std::vector<float>{0.375F, 0.625F, 0.375F, 0.625F, 0.375F, 0.625F, 0.375F,
                                                   0.625F, 0.375F, 0.625F, 0.875F, 0.875F, 0.125F, 0.125F}));
    EXPECT_EQ(cube.uvSet(0).v,
              (std::vector<float>{0, 0, 0.25F, 0.25F, 0.5F, 0.5F, 0.75F, 0.75F, 1, 1, 0, 0.25F, 0, 0.25F}));
    EXPECT_EQ(cube.hardEdges(), std::vector<std::uint8_t>(12, 1));
}

TEST(Primitives, DividedCubeIsClosedAndWhole) {
    const Mesh cube = test::closedMeshes()[1].mesh; // 2 x 3 x 4
    EXPECT_EQ(cube.vertexCount(), 3 * 14 + 2 * 6);
    EXPECT_EQ(cube.faceCount(), 2 * (2 * 3 + 2 * 4 + 3 * 4));
    EXPECT_EQ(cube.edgeCount(), 2 * cube.faceCount());
    EXPECT_NEAR(volume(cube), 1.0, 1e-6);
    for (const MFloatVector& p : cube.points())
        EXPECT_FLOAT_EQ(std::max({std::abs(p.x), std::abs(p.y), std::abs(p.z)}), 0.5F);
    // Right side: 3 x 4 steps, then the left. The first face of each begins at the strip's bottom border.
    const int right = 2 * 14;
    EXPECT_TRUE(near(cube.faceNormals()[right], {1, 0, 0}));
    EXPECT_TRUE(near(MVector(cube.faceCenter(right)), {0.5, -1.0 / 3.0, 0.375}));
    EXPECT_TRUE(near(cube.faceNormals()[right + 12], {-1, 0, 0}));
    EXPECT_TRUE(near(MVector(cube.faceCenter(right + 12)), {-0.5, -1.0 / 3.0, -0.375}));
}

TEST(Primitives, PlaneHasItsKnownIds) {
    PlaneShape shape;
    shape.width = 2, shape.height = 4;
    shape.subdivisionsWidth = shape.subdivisionsHeight = 1;
    const Mesh one = made(makePlane(shape));
    EXPECT_EQ(one.points(), (std::vector<MFloatVector>{{-1, 0, 2}, {1, 0, 2}, {-1, 0, -2}, {1, 0, -2}}));
    EXPECT_EQ(one.topology().edges(), pairs({0, 1, 0, 2, 1, 3, 2, 3}));
    EXPECT_EQ(one.topology().faceVertices(), (Ids{0, 1, 3, 2}));
    EXPECT_TRUE(near(one.faceNormals()[0], {0, 1, 0}));

    const Mesh plane = made(makePlane({}));
    EXPECT_EQ(plane.vertexCount(), 121);
    EXPECT_EQ(plane.edgeCount(), 220);
    EXPECT_EQ(test::list(plane.topology().verticesOfFace(11)), (Ids{12, 13, 24, 23}));
    EXPECT_EQ(plane.uvSet(0).ids, plane.topology().faceVertices());
    EXPECT_TRUE(near(plane.points()[12], {-0.4, 0, 0.4}));
    EXPECT_FLOAT_EQ(plane.uvSet(0).v[12], 0.1F);
}

TEST(Primitives, SphereHasItsKnownIds) {
    const Mesh sphere = made(makeSphere({}));
    EXPECT_EQ(sphere.vertexCount(), 382);
    EXPECT_EQ(sphere.edgeCount(), 780);
    EXPECT_EQ(sphere.faceCount(), 400);
    EXPECT_EQ(sphere.uvSet(0).uvCount(), 439);
    // sin 9° = 0.156434, cos 9° = 0.987688, cos 18° = 0.951057, sin 18° = 0.309017
    EXPECT_TRUE(near(sphere.points()[0], {0.148778, -0.987688, -0.048341}, 2e-6));
    EXPECT_TRUE(near(sphere.points()[19], {0.156434, -0.987688, 0}, 2e-6));
    EXPECT_TRUE(near(sphere.points()[380], {0, -1, 0}));
    EXPECT_TRUE(near(sphere.points()[381], {0, 1, 0}));
    const auto& edges = sphere.topology().edges();
    EXPECT_EQ(edges[19], (MeshEdge{19, 0}));
    EXPECT_EQ(edges[380], (MeshEdge{0, 20}));
    EXPECT_EQ(test::list(sphere.topology().verticesOfFace(0)), (Ids{0, 1, 21, 20}));
    for (const int pole : {380, 381})
        EXPECT_EQ(sphere.topology().edgesOfVertex(pole).size(), 20U);
    for (int f = 360; f < 400; ++f)
        EXPECT_EQ(sphere.topology().findCorner(f, f < 380 ? 380 : 381) >= 0, true) << f;
    for (int e = 0; e < 780; ++e)
        EXPECT_FALSE(sphere.isHardEdge(e));
}

TEST(Primitives, CylinderAndConeHaveTheirKnownIds) {
    CylinderShape menu;
    menu.subdivisionsCaps = 1;
    const Mesh capped = made(makeCylinder(menu));
    EXPECT_EQ(capped.vertexCount(), 42);
    EXPECT_EQ(capped.edgeCount(), 100);
    EXPECT_TRUE(near(capped.points()[0], {0.951057, -1, -0.309017}, 2e-6));
    EXPECT_TRUE(near(capped.points()[20], {0.951057, 1, -0.309017}, 2e-6));
    EXPECT_TRUE(near(capped.points()[40], {0, -1, 0}));
    EXPECT_TRUE(near(capped.points()[41], {0, 1, 0}));

    const Mesh plain = made(makeCylinder({}));
    EXPECT_EQ(plain.edgeCount(), 60);
    EXPECT_EQ(plain.faceCount(), 22);
    EXPECT_TRUE(near(plain.faceNormals()[20], {0, -1, 0}));
    EXPECT_TRUE(near(plain.faceNormals()[21], {0, 1, 0}));
    for (int e = 0; e < 60; ++e)
        EXPECT_EQ(plain.isHardEdge(e), e < 40) << e;

    const Mesh cone = made(makeCone({}));
    EXPECT_EQ(cone.vertexCount(), 21);
    EXPECT_EQ(cone.faceCount(), 21);
    EXPECT_TRUE(near(cone.points()[20], {0, 1, 0}));
}

TEST(Primitives, EncloseTheirVolume) {
    const double twentyGon = 10.0 * std::sin(std::acos(-1.0) / 10.0);
    CylinderShape rings;
    rings.subdivisionsCaps = 2, rings.subdivisionsHeight = 3;
    EXPECT_NEAR(volume(made(makeCylinder({}))), 2.0 * twentyGon, 1e-5);
    EXPECT_NEAR(volume(made(makeCylinder(rings))), 2.0 * twentyGon, 1e-5);
    EXPECT_NEAR(volume(made(makeCone({}))), 2.0 * twentyGon / 3.0, 1e-5);
    SphereShape octahedral;
    octahedral.subdivisionsAxis = 4, octahedral.subdivisionsHeight = 4;
    // Two frustums of height s between squares of area 2 and 1, two pyramids of height 1 - s on area 1.
    const double s = std::sqrt(0.5);
    EXPECT_NEAR(volume(made(makeSphere(octahedral))), 2.0 / 3.0 * (s * (3.0 + 2.0 * s) + 1.0 - s), 1e-6);
    TorusShape square;
    square.subdivisionsAxis = square.subdivisionsHeight = 4;
    // Above and below the middle plane, a square ring between diagonals 1.5 and 0.5 that narrows to a line at
    // diagonal 1 and height 0.5: outside less inside frustums.
    const double outside = 0.5 / 3.0 * (4.5 + 2.0 + 3.0);
    const double inside = 0.5 / 3.0 * (0.5 + 2.0 + 1.0);
    EXPECT_NEAR(volume(made(makeTorus(square))), 2.0 * (outside - inside), 1e-6);
}

TEST(Primitives, AreMappedTheRightWayRound) {
    for (const auto& [name, mesh] : test::closedMeshes()) {
        const UvSet& uvs = mesh.uvSet(0);
        for (int f = 0; f < mesh.faceCount(); ++f) {
            for (int t = 0; t < mesh.triangleCount(f); ++t) {
                const auto& corners = mesh.triangles()[mesh.triangleStart(f) + t];
                double u[3];
                double v[3];
                for (int k = 0; k < 3; ++k) {
                    const int id = uvs.idOfCorner(corners[k]);
                    ASSERT_GE(id, 0) << name << " face " << f;
                    u[k] = uvs.u[id], v[k] = uvs.v[id];
                }
                EXPECT_GT((u[1] - u[0]) * (v[2] - v[0]) - (u[2] - u[0]) * (v[1] - v[0]), 0.0)
                    << name << " face " << f;
            }
        }
        std::vector<char> used(uvs.u.size(), 0);
        for (const int id : uvs.ids)
            used[id] = 1;
        EXPECT_EQ(std::count(used.begin(), used.end(), 1), uvs.uvCount()) << name;
    }
}

TEST(Primitives, StandOnTheAxisAskedFor) {
    struct Case {
        MVector axis, normal;
    };
    const Case cases[] = {
        {{2, 0, 0}, {1, 0, 0}}, {{0, 0, -3}, {0, 0, -1}}, {{0, -1, 0}, {0, -1, 0}}, {{0, 0, 0}, {0, 1, 0}}};
    for (const Case& c : cases) {
        PlaneShape shape;
        shape.axis = c.axis;
        EXPECT_TRUE(near(made(makePlane(shape)).faceNormals()[0], c.normal));
    }
}

TEST(Primitives, TakeOddSubdivisionsInStride) {
    SphereShape coarse;
    coarse.subdivisionsAxis = -5, coarse.subdivisionsHeight = 0;
    EXPECT_EQ(made(makeSphere(coarse)).vertexCount(), 8);
    CubeShape huge;
    huge.subdivisionsWidth = huge.subdivisionsHeight = huge.subdivisionsDepth = 2'000'000'000;
    const MeshResult refused = makeCube(huge);
    EXPECT_FALSE(refused);
    EXPECT_NE(refused.outcome.error.find("cube: too many subdivisions"), std::string::npos);
    PlaneShape wide;
    wide.subdivisionsWidth = maxPrimitiveFaces + 1, wide.subdivisionsHeight = 1;
    EXPECT_FALSE(makePlane(wide));
}

} // namespace
} // namespace vesk::geom
