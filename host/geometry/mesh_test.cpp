#include "host/geometry/mesh_samples.h"

#include <cmath>

namespace vesk::geom {
namespace {

using test::Ids;
using test::near;

const double half = std::sqrt(0.5);

MMatrix scaling(double x, double y, double z) {
    MMatrix matrix;
    matrix[0][0] = x, matrix[1][1] = y, matrix[2][2] = z;
    return matrix;
}

TEST(MeshNormals, OfFacesAndVertices) {
    const Mesh cube = test::made(makeCube({}));
    EXPECT_TRUE(near(cube.faceNormals()[1], {0, 1, 0}));
    EXPECT_TRUE(near(cube.faceNormals()[4], {1, 0, 0}));
    const double third = std::sqrt(1.0 / 3.0);
    EXPECT_TRUE(near(cube.vertexNormals()[0], {-third, -third, third}));
    EXPECT_TRUE(near(cube.vertexNormals(true)[5], {third, third, -third}));

    const Mesh flat = test::build({{0, 0, 0}, {1, 1, 1}, {2, 2, 2}}, {3}, {0, 1, 2});
    EXPECT_EQ(flat.faceNormals()[0], MFloatVector::zero);
    EXPECT_EQ(flat.vertexNormals()[0], MFloatVector::zero);
}

TEST(MeshNormals, AngleWeightUndoesASplit) {
    // Three sides of a box meet in vertex 0; the one facing -z is split there into two triangles.
    const Mesh corner =
        test::build({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 0}, {0, 1, 1}, {1, 0, 1}},
                    {3, 3, 4, 4}, {0, 2, 4, 0, 4, 1, 0, 3, 5, 2, 0, 1, 6, 3});
    EXPECT_TRUE(near(corner.vertexNormals()[0], MVector(-1, -1, -2) / std::sqrt(6.0)));
    EXPECT_TRUE(near(corner.vertexNormals(true)[0], MVector(-1, -1, -1) / std::sqrt(3.0)));
}

TEST(MeshNormals, HardEdgesAndLooseFansSeparate) {
    Mesh fold = test::fold();
    EXPECT_TRUE(near(fold.cornerNormals()[1], {half, 0, half}));
    EXPECT_TRUE(near(fold.cornerNormals()[4], {half, 0, half}));
    EXPECT_TRUE(near(fold.cornerNormals()[0], {0, 0, 1}));
    const Mesh smooth = fold;
    fold.setEdgeHard(1, true);
    EXPECT_TRUE(near(fold.cornerNormals()[1], {0, 0, 1}));
    EXPECT_TRUE(near(fold.cornerNormals()[4], {1, 0, 0}));
    EXPECT_TRUE(near(fold.vertexNormals()[1], {half, 0, half}));
    EXPECT_TRUE(near(smooth.cornerNormals()[1], {half, 0, half}));

    const Mesh tie = test::bowTie();
    EXPECT_TRUE(near(tie.vertexNormals()[0], {half, 0, half}));
    EXPECT_TRUE(near(tie.cornerNormals()[0], {0, 0, 1}));
    EXPECT_TRUE(near(tie.cornerNormals()[3], {1, 0, 0}));
}

TEST(MeshNormals, AFaceThatMeetsAVertexTwiceCountsOnce) {
    // Two lobes of one face in the plane z = 0 and a triangle facing +x meet in vertex 0.
    const Mesh mesh =
        test::build({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {-1, 0, 0}, {-1, -1, 0}, {0, -1, 0}, {0, 0, -1}},
                    {6, 3}, {0, 1, 2, 0, 3, 4, 0, 5, 6});
    EXPECT_TRUE(near(mesh.vertexNormals()[0], {half, 0, half}));
    EXPECT_EQ(mesh.topology().faceCountOfVertex(0), 2);
}

TEST(MeshNormals, OfCornersAreThoseOfVerticesWhereAllIsSmoothAndWhole) {
    for (const auto& group : {test::closedMeshes(), test::openMeshes()}) {
        for (test::NamedMesh named : group) {
            named.mesh.setAllEdgesHard(false);
            const MeshTopology& t = named.mesh.topology();
            for (int c = 0; c < t.cornerCount(); ++c)
                EXPECT_EQ(named.mesh.cornerNormals()[c], named.mesh.vertexNormals()[t.faceVertices()[c]])
                    << named.name << " corner " << c;
            named.mesh.setAllEdgesHard(true);
            for (int c = 0; c < t.cornerCount(); ++c)
                EXPECT_TRUE(
                    near(named.mesh.cornerNormals()[c], MVector(named.mesh.faceNormals()[t.faceOfCorner(c)])))
                    << named.name;
        }
    }
}

TEST(MeshNormals, LockedOnesWinAndStay) {
    Mesh fold = test::fold();
    const std::vector<MFloatVector> given{{0, 3, 0}, {0, 0, 0}};
    ASSERT_TRUE(fold.setVertexNormals(given, Ids{1, 0}));
    std::vector<MFloatVector> points = fold.points();
    points[1].z = 0.5F;
    ASSERT_TRUE(fold.setPoints(points));
    EXPECT_EQ(fold.cornerNormals()[1], MFloatVector(0, 3, 0));
    EXPECT_EQ(fold.cornerNormals()[4], MFloatVector(0, 3, 0));
    EXPECT_EQ(fold.cornerNormals()[0], MFloatVector::zero);
    EXPECT_FALSE(fold.isNormalLocked(2));

    const Mesh world = fold.transformed(scaling(2, 2, 2));
    EXPECT_TRUE(near(world.cornerNormals()[1], {0, 1, 0}));
    EXPECT_EQ(world.cornerNormals()[0], MFloatVector::zero);

    EXPECT_FALSE(fold.setVertexNormals(given, Ids{1}));
    EXPECT_FALSE(fold.setVertexNormals(given, Ids{2, 6}));
    EXPECT_FALSE(fold.isNormalLocked(2));
    fold.unlockNormals();
    EXPECT_TRUE(near(fold.cornerNormals()[3], {0, 0, 1}, 0.5));
}

TEST(MeshNormals, GoThroughAMatrixByItsInverseTranspose) {
    const NormalTransform stretched(scaling(2, 1, 1));
    EXPECT_TRUE(near(stretched(MFloatVector(1, 1, 0)), MVector(1, 2, 0) / std::sqrt(5.0)));
    EXPECT_EQ(stretched(MFloatVector::zero), MFloatVector::zero);
    const NormalTransform mirrored(scaling(-1, 1, 1));
    EXPECT_TRUE(near(mirrored(MFloatVector(1, 0, 0)), {-1, 0, 0}));
    EXPECT_TRUE(near(mirrored(MFloatVector(0, 0, 1)), {0, 0, 1}));
    const NormalTransform flattened(scaling(1, 0, 1));
    EXPECT_TRUE(near(flattened(MFloatVector(1, 1, 0)), {0, 1, 0}));
}

TEST(Mesh, PointsAreReplacedOnlyWhole) {
    Mesh fold = test::fold();
    const Mesh before = fold;
    ASSERT_TRUE(near(fold.faceNormals()[0], {0, 0, 1}));
    EXPECT_FALSE(fold.setPoints({{0, 0, 0}}));
    EXPECT_EQ(fold.points(), before.points());
    for (MFloatVector& point : fold.editPoints())
        point.x = -point.x;
    EXPECT_TRUE(near(fold.faceNormals()[0], {0, 0, -1}));
    EXPECT_TRUE(near(before.faceNormals()[0], {0, 0, 1}));
    EXPECT_EQ(&fold.topology(), &before.topology());
    EXPECT_FALSE(Mesh::create(before.topologyPtr(), {{0, 0, 0}}));
}

TEST(Mesh, Measures) {
    Mesh cube = test::made(makeCube({}));
    MMatrix matrix = scaling(2, 3, 5);
    matrix[3][0] = 10;
    EXPECT_DOUBLE_EQ(cube.edgeLength(4), 1.0); // 0-2, upwards
    EXPECT_DOUBLE_EQ(cube.edgeLength(4, matrix), 3.0);
    EXPECT_DOUBLE_EQ(cube.faceArea(0), 1.0);
    EXPECT_DOUBLE_EQ(cube.faceArea(0, matrix), 6.0);
    EXPECT_TRUE(near(MVector(cube.faceCenter(1)), {0, 0.5, 0}));
    EXPECT_TRUE(near(cube.transformed(matrix).points()[3], {11, 1.5, 2.5}));
}

TEST(MeshTriangles, SplitQuadsAlongTheDiagonalThatLiesInside) {
    // An arrowhead with its notch at (0, 0), begun at the tip, then at a barb.
    const Mesh fromTip = test::build({{0, 2, 0}, {-2, -1, 0}, {0, 0, 0}, {2, -1, 0}}, {4}, {0, 1, 2, 3});
    EXPECT_EQ(fromTip.triangleLocalCorners(0, 0), (std::array{0, 1, 2}));
    EXPECT_EQ(fromTip.triangleLocalCorners(0, 1), (std::array{0, 2, 3}));
    const Mesh fromBarb = test::build({{0, 2, 0}, {-2, -1, 0}, {0, 0, 0}, {2, -1, 0}}, {4}, {1, 2, 3, 0});
    EXPECT_EQ(fromBarb.triangleLocalCorners(0, 0), (std::array{1, 2, 3}));
    EXPECT_EQ(fromBarb.triangleLocalCorners(0, 1), (std::array{1, 3, 0}));
    EXPECT_EQ(fromBarb.triangleVertices(0, 1), (std::array{2, 0, 1}));
}

TEST(MeshTriangles, ClipEarsFromCornerZero) {
    const Mesh convex =
        test::build({{0, 0, 0}, {2, 0, 0}, {3, 2, 0}, {1, 3, 0}, {-1, 2, 0}}, {5}, {0, 1, 2, 3, 4});
    EXPECT_EQ(convex.triangles(), (std::vector<TriangleCorners>{{0, 1, 2}, {0, 2, 3}, {0, 3, 4}}));
    const Mesh notched = test::openMeshes()[3].mesh;
    EXPECT_EQ(notched.triangles(), (std::vector<TriangleCorners>{{1, 2, 3}, {3, 4, 0}, {3, 0, 1}}));
}

TEST(MeshTriangles, CoverAPlanePolygonOnceWhateverItsShape) {
    std::vector<MFloatVector> star;
    std::vector<MFloatVector> comb;
    std::vector<MFloatVector> beaded; // a square with corners along its sides
    for (int i = 0; i < 40; ++i) {
        const double angle = i * 0.05 * 3.14159265358979, radius = i % 2 == 0 ? 3.0 : 1.0;
        star.emplace_back(0.5F, static_cast<float>(radius * std::cos(angle)),
                          static_cast<float>(radius * std::sin(angle)));
        comb.emplace_back(static_cast<float>(i), i % 2 == 0 ? 0.0F : 5.0F, 0.0F);
        const float along = static_cast<float>(i % 10);
        const MFloatVector beads[] = {{along, 0, 0}, {10, along, 0}, {10 - along, 10, 0}, {0, 10 - along, 0}};
        beaded.push_back(beads[i / 10]);
    }
    comb.emplace_back(40.0F, 6.0F, 0.0F);
    comb.emplace_back(-1.0F, 6.0F, 0.0F);
    for (const auto& loop : {star, comb, beaded}) {
        Ids connects;
        for (std::size_t i = 0; i < loop.size(); ++i)
            connects.push_back(static_cast<int>(i));
        const Mesh mesh = test::build(loop, {static_cast<int>(loop.size())}, connects);
        EXPECT_NEAR(mesh.faceArea(0), mesh.faceAreaVector(0).length(), 1e-4);
    }
    for (const auto& [name, mesh] : test::allMeshes()) {
        for (int f = 0; f < mesh.faceCount(); ++f) {
            for (int t = 0; t < mesh.triangleCount(f); ++t) {
                const auto corners = mesh.triangleLocalCorners(f, t);
                EXPECT_LT(*std::max_element(corners.begin(), corners.end()), mesh.topology().faceSize(f));
            }
        }
    }
}

TEST(MeshTangents, FollowTheUvs) {
    Mesh plane = test::made(makePlane({}));
    Mesh::CornerFrame frame = plane.cornerFrame(0, 7);
    ASSERT_TRUE(frame.valid);
    EXPECT_TRUE(near(frame.tangent, {1, 0, 0}));
    EXPECT_TRUE(near(frame.binormal, {0, 0, -1}));

    const Mesh::CornerFrame mirrored = transformedFrame(frame, scaling(-2, 1, 1));
    EXPECT_TRUE(near(mirrored.tangent, {-1, 0, 0}));
    EXPECT_TRUE(near(mirrored.binormal, {0, 0, -1}));

    std::vector<float> u = plane.uvSet(0).u;
    const std::vector<float> v = plane.uvSet(0).v;
    for (float& value : u)
        value = 1.0F - value;
    ASSERT_TRUE(plane.setUvs(0, u, v));
    frame = plane.cornerFrame(0, 7);
    EXPECT_TRUE(near(frame.tangent, {-1, 0, 0}));
    EXPECT_TRUE(near(frame.binormal, {0, 0, -1}));
}

TEST(MeshTangents, AreZeroWithoutUvsUvAreaOrNormal) {
    Mesh fold = test::fold();
    EXPECT_FALSE(fold.cornerFrame(0, 0).valid);
    EXPECT_EQ(fold.cornerFrames(0).tangents, std::vector<MFloatVector>(8));
    // Face 0 mapped onto a line, face 1 onto a square.
    ASSERT_TRUE(fold.setUvs(0, {0, 0.1F, 0.3F, 0.7F, 1, 1}, {0, 0.1F, 0.3F, 0.7F, 0, 1}));
    ASSERT_TRUE(fold.assignUvs(0, Ids{4, 4}, Ids{0, 1, 2, 3, 0, 4, 5, 3}));
    EXPECT_FALSE(fold.cornerFrame(0, 1).valid);
    EXPECT_EQ(fold.cornerFrame(0, 1).tangent, MFloatVector::zero);
    EXPECT_TRUE(fold.cornerFrame(0, 4).valid);
    ASSERT_TRUE(fold.setVertexNormals(std::vector<MFloatVector>{{0, 0, 0}}, Ids{1}));
    EXPECT_FALSE(fold.cornerFrame(0, 4).valid);
}

TEST(MeshTangents, StandSquareOnTheNormalInAllMappedMeshes) {
    for (const auto& [name, mesh] : test::closedMeshes()) {
        const Mesh::CornerFrames frames = mesh.cornerFrames(0);
        for (int c = 0; c < mesh.cornerCount(); ++c) {
            const MVector normal(mesh.cornerNormals()[c]);
            const MVector tangent(frames.tangents[c]);
            EXPECT_NEAR(tangent.length(), 1.0, 1e-6) << name << " corner " << c;
            EXPECT_NEAR(tangent * normal, 0.0, 1e-6) << name << " corner " << c;
            EXPECT_TRUE(near(frames.binormals[c], normal ^ tangent)) << name << " corner " << c;
            EXPECT_EQ(mesh.cornerFrame(0, c).tangent, frames.tangents[c]) << name << " corner " << c;
        }
    }
}

} // namespace
} // namespace vesk::geom
