#include "host/geometry/nurbs_extrude.h"
#include "host/geometry/nurbs_primitives.h"
#include "host/geometry/nurbs_tessellate.h"

#include <gtest/gtest.h>

namespace vesk::geom {
namespace {

void expectNear(const MVector& a, const MVector& b, double tolerance = 1e-6) {
    EXPECT_LT((a - b).length(), tolerance) << a << " is not " << b;
}

NurbsCurve line(const std::vector<MPoint>& cvs) {
    return *NurbsCurve::create(NurbsBasis::clamped(1, static_cast<int>(cvs.size()) - 1), cvs);
}

std::vector<int> loop(const Mesh& mesh, int face) {
    const auto vertices = mesh.topology().verticesOfFace(face);
    return {vertices.begin(), vertices.end()};
}

/// u along x, v along y, `countU` by `countV` CVs one apart; normals along z.
NurbsSurface grid(NurbsForm formU, int countU, int countV) {
    std::vector<MPoint> cvs;
    for (int i = 0; i < countU; ++i) {
        for (int j = 0; j < countV; ++j)
            cvs.emplace_back(i, j);
    }
    NurbsBasis u = NurbsBasis::clamped(1, countU - 1);
    u.form = formU;
    return *NurbsSurface::create(u, NurbsBasis::clamped(1, countV - 1), cvs);
}

TEST(ExtrudeDistance, PairsEachProfileCvWithItsMovedOne) {
    const NurbsCurve ring = *makeCircle({});
    ExtrudeOptions options;
    options.length = 3;
    options.direction = {0, 0, -2};
    const NurbsSurface ribbon = *extrudeDistance(ring, options);
    EXPECT_EQ(ribbon.basisU(), ring.basis());
    EXPECT_EQ(ribbon.basisV().knots, (std::vector<double>{0, 1}));
    ASSERT_EQ(ribbon.cvCount(), 22);
    for (int i = 0; i < 11; ++i) {
        EXPECT_EQ(ribbon.cvs()[2 * i], ring.cvs()[i]);
        EXPECT_EQ(ribbon.cvs()[2 * i + 1], ring.cvs()[i] + MVector(0, 0, -3));
    }
    EXPECT_FALSE(extrudeDistance(NurbsCurve(), options));
    options.direction = {};
    EXPECT_EQ(extrudeDistance(ring, options)->cvs()[1], ring.cvs()[0]);
}

TEST(ExtrudeDistance, FindsTheProfilesNormal) {
    const struct {
        std::vector<MPoint> cvs;
        MVector normal;
    } cases[] = {
        {{{5, 0}, {6, 0}, {6, 1}}, {0, 0, 1}},          // counter-clockwise about z
        {{{5, 0}, {6, 1}, {6, 0}}, {0, 0, -1}},         // and the other way
        {{{0, 0, 0}, {0, 2, 0}, {0, 2, 2}}, {1, 0, 0}}, // y then z
        {{{0, 0}, {1, 1}, {2, -1}, {3, 0}}, {0, 0, 1}}, // no area; CV 1 lies to the left of the line
        {{{1, 1}, {3, 1}, {9, 1}}, {0, -1, 0}},         // straight: x ^ z
        {{{0, 0, 4}, {0, 0, 3}, {0, 0, 9}}, {0, 1, 0}}, // along z: z ^ x
        {{{2, 2, 2}, {2, 2, 2}}, {0, 0, 0}},            // nowhere to go
    };
    for (const auto& [cvs, normal] : cases)
        expectNear(profileNormal(line(cvs)), normal, 1e-12);
    expectNear(profileNormal(*makeCircle({{9, 9, 9}, {0, 3, 4}})), {0, 0.6, 0.8}, 1e-12);
}

TEST(ControlNet, WindsByTheSurfaceNormal) {
    const NurbsSurface surface = grid(NurbsForm::Open, 3, 2);
    const Mesh along = *controlNet(surface, {.quads = true, .matchNormalDir = true});
    EXPECT_EQ(along.vertexCount(), 6);
    ASSERT_EQ(along.faceCount(), 2);
    EXPECT_EQ(loop(along, 0), (std::vector<int>{0, 2, 3, 1}));
    EXPECT_EQ(loop(along, 1), (std::vector<int>{2, 4, 5, 3}));
    expectNear(MVector(along.faceNormals()[0]), {0, 0, 1});
    const Mesh against = *controlNet(surface, {.quads = true});
    EXPECT_EQ(loop(against, 0), (std::vector<int>{0, 1, 3, 2}));
    expectNear(MVector(against.faceNormals()[1]), {0, 0, -1});
    const Mesh triangles = *controlNet(surface, {.matchNormalDir = true});
    ASSERT_EQ(triangles.faceCount(), 4);
    EXPECT_EQ(loop(triangles, 0), (std::vector<int>{0, 2, 3}));
    EXPECT_EQ(loop(triangles, 1), (std::vector<int>{0, 3, 1}));
    EXPECT_EQ(along.point(3), MVector(1, 1, 0));
    EXPECT_FALSE(controlNet({}, {}));
}

TEST(ControlNet, ClosesRoundPeriodicDirectionsOnly) {
    const Mesh closed = *controlNet(grid(NurbsForm::Closed, 4, 2), {.quads = true});
    EXPECT_EQ(closed.faceCount(), 3);
    // Four CVs along u, the last the first again: three columns in a ring.
    const Mesh ring = *controlNet(grid(NurbsForm::Periodic, 4, 2), {.quads = true, .matchNormalDir = true});
    EXPECT_EQ(ring.vertexCount(), 6);
    ASSERT_EQ(ring.faceCount(), 3);
    EXPECT_EQ(loop(ring, 2), (std::vector<int>{4, 0, 1, 5}));

    const Mesh torus = *controlNet(*makeTorus({}), {.quads = true});
    EXPECT_EQ(torus.vertexCount(), 32);
    EXPECT_EQ(torus.faceCount(), 32);
    for (int edge = 0; edge < torus.edgeCount(); ++edge)
        ASSERT_FALSE(torus.topology().isBoundaryEdge(edge));
}

TEST(ControlNet, SpreadsUvsOverTheCvs) {
    const auto uvAt = [](const Mesh& mesh, int vertex) { return *mesh.vertexUv(0, vertex); };
    const Mesh open = *controlNet(grid(NurbsForm::Open, 3, 5), {});
    EXPECT_EQ(open.uvSet(0).name, "map1");
    EXPECT_EQ(open.uvSet(0).uvCount(), 15);
    EXPECT_EQ(uvAt(open, 5 + 3).u, 0.5F);
    EXPECT_EQ(uvAt(open, 5 + 3).v, 0.75F);
    const Mesh ring = *controlNet(grid(NurbsForm::Periodic, 5, 2), {});
    EXPECT_EQ(uvAt(ring, 2 * 3).u, 0.75F);
}

TEST(ControlNet, KeepsThePolesOfASphere) {
    const Mesh net = *controlNet(*makeSphere({.axis = {0, 1, 0}}), {.quads = true, .matchNormalDir = true});
    EXPECT_EQ(net.vertexCount(), 7 * 8);
    ASSERT_EQ(net.faceCount(), 6 * 8);
    EXPECT_EQ(loop(net, 0).size(), 4U);
    for (int face = 8; face < 40; ++face)
        EXPECT_GT(MVector(net.faceNormals()[face]) * (net.faceCenter(face) - MPoint()), 0.0);
}

} // namespace
} // namespace vesk::geom
