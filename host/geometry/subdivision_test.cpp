#include "host/geometry/mesh_samples.h"
#include "host/geometry/subdivision.h"

namespace vesk::geom {
namespace {

using test::build;
using test::Ids;
using test::made;
using test::near;

Mesh smooth(const Mesh& mesh, int divisions = 1, bool keepHardEdges = false) {
    const MeshResult result = subdivided(mesh, {divisions, keepHardEdges});
    EXPECT_TRUE(result) << result.outcome.error;
    EXPECT_TRUE(result.mesh.checkInvariants());
    return result.mesh;
}

TEST(Subdivision, ClosedMeshKeepsItsIdsAndTurnsRound) {
    const Mesh cube = made(makeCube({})); // half a unit each way
    const Mesh fine = smooth(cube);
    EXPECT_EQ(fine.vertexCount(), 8 + 12 + 6);
    EXPECT_EQ(fine.edgeCount(), 2 * 12 + 24);
    EXPECT_EQ(fine.faceCount(), 24);
    // A vertex of three faces: a third of the mean face point and twice the mean of edge middles, which
    // leaves 5/9 of the corner.
    EXPECT_TRUE(near(fine.point(0), MVector(cube.point(0)) * (5.0 / 9.0)));
    // An edge: the mean of its ends and of the two face points.
    const MeshEdge edge = cube.topology().edges()[4];
    const MVector middle = (cube.point(edge.a) + cube.point(edge.b)) / 2.0;
    EXPECT_TRUE(near(fine.point(8 + 4), middle * 0.75));
    EXPECT_TRUE(near(fine.point(8 + 12 + 1), MVector(cube.faceCenter(1))));
    EXPECT_EQ(fine.topology().edges()[2 * 4], (MeshEdge{edge.a, 8 + 4}));
    EXPECT_EQ(fine.topology().edges()[2 * 4 + 1], (MeshEdge{8 + 4, edge.b}));
    const auto quad = fine.topology().verticesOfFace(1);
    const auto corners = cube.topology().verticesOfFace(0);
    const auto edges = cube.topology().edgesOfFace(0);
    EXPECT_EQ(Ids(quad.begin(), quad.end()), (Ids{corners[1], 8 + edges[1], 8 + 12, 8 + edges[0]}));
    EXPECT_EQ(smooth(cube, 3).faceCount(), 24 * 16);
    EXPECT_EQ(smooth(cube, 0).vertexCount(), 8);
    EXPECT_EQ(smooth(Mesh(), 2).vertexCount(), 0);
}

TEST(Subdivision, BoundariesAreCreasedAndCornersStay) {
    const Mesh fine = smooth(test::fold());
    for (const int corner : {0, 3, 4, 5})
        EXPECT_EQ(fine.point(corner), test::fold().point(corner));
    // A boundary vertex goes by its neighbours on the boundary alone: an eighth of each and six of itself.
    EXPECT_TRUE(near(fine.point(1), {0.875, 0, -0.125}));
    EXPECT_TRUE(near(fine.point(6 + 0), {0.5, 0, 0}));
    EXPECT_TRUE(near(fine.point(6 + 1), {0.875, 0.5, -0.125}));
    // Three faces on an edge crease it too.
    const Mesh three = build({{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, {0, 1, 0}, {-1, 0, 0}}, {3, 3, 3},
                             {0, 1, 2, 0, 1, 3, 0, 1, 4});
    EXPECT_TRUE(near(smooth(three).point(5), {0, 0, 0.5}));
}

TEST(Subdivision, HardEdgesAreKeptWhenAskedFor) {
    Mesh cube = made(makeCube({}));
    cube.setAllEdgesHard(false);
    EXPECT_TRUE(near(smooth(cube, 1, true).point(0), MVector(cube.point(0)) * (5.0 / 9.0)));
    cube.setAllEdgesHard(true);
    EXPECT_FALSE(smooth(cube).isHardEdge(0));
    const Mesh kept = smooth(cube, 2, true);
    EXPECT_EQ(kept.point(0), cube.point(0));
    const MeshEdge edge = cube.topology().edges()[7];
    EXPECT_TRUE(near(kept.point(8 + 7), (cube.point(edge.a) + cube.point(edge.b)) / 2.0));
    int hard = 0;
    for (int e = 0; e < kept.edgeCount(); ++e)
        hard += kept.isHardEdge(e) ? 1 : 0;
    EXPECT_EQ(hard, 12 * 4);
}

TEST(Subdivision, LayersAreInterpolated) {
    Mesh strip = build({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}, {1, 1, 0}, {2, 1, 0}}, {4, 4},
                       {0, 1, 4, 3, 1, 2, 5, 4});
    ASSERT_TRUE(strip.setUvs(0, {0, 0.5F, 0.5F, 0}, {0, 0, 1, 1}));
    ASSERT_TRUE(strip.assignUvs(0, Ids{4, 0}, Ids{0, 1, 2, 3}));
    ASSERT_TRUE(strip.setVertexColors(std::vector<MColor>{{1, 0, 0, 1}, {0, 1, 0, 1}}, Ids{1, 4}));
    const Mesh fine = smooth(strip);
    const UvSet& uvs = fine.uvSet(0);
    EXPECT_EQ(uvs.uvCount(), 4 + 4 + 1); // the quads share what lies on their common edges
    const auto uv = fine.cornerUv(0, 4 * 1 + 2);
    EXPECT_EQ(uv->u, 0.25F);
    EXPECT_EQ(uv->v, 0.5F);
    EXPECT_EQ(fine.cornerUv(0, 4 * 0 + 1)->u, 0.25F);
    EXPECT_EQ(fine.cornerUv(0, 4 * 0 + 1)->v, 0.0F);
    EXPECT_FALSE(fine.cornerUv(0, 16));
    EXPECT_EQ(fine.cornerColor(0, 4 * 1), MColor(1, 0, 0, 1));
    EXPECT_EQ(fine.cornerColor(0, 4 * 1 + 1), unsetColor); // two corners of the face have no colour
}

TEST(Subdivision, OddMeshesKeepWhatHasNoFace) {
    const std::vector<MeshEdge> edges{{3, 4}, {0, 1}};
    const auto topology = MeshTopology::fromFacesAndEdges(6, edges, Ids{3}, Ids{0, 1, 2});
    const Mesh loose = made(
        Mesh::create(topology.topology, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {5, 5, 5}, {6, 6, 6}, {7, 7, 7}}));
    const Mesh fine = smooth(loose);
    EXPECT_EQ(fine.vertexCount(), 6 + 3 + 1);
    EXPECT_EQ(fine.point(5), MVector(7, 7, 7));
    EXPECT_TRUE(near(fine.point(6), {0.5, 0, 0}));
    for (const auto& [name, mesh] : test::openMeshes()) {
        SCOPED_TRACE(name);
        if (!mesh.topology().hasFaceWithRepeatedVertex()) (void)smooth(mesh, 2);
    }
    // The same face twice, and once turned over.
    (void)smooth(build({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {3, 3, 3}, {0, 1, 2, 0, 1, 2, 2, 1, 0}), 2);
}

TEST(Subdivision, WhatCannotBeRefinedIsRefused) {
    const auto refusal = [](const Mesh& mesh, int divisions) {
        return subdivided(mesh, {divisions, false}).outcome.error;
    };
    EXPECT_EQ(
        refusal(build({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {-1, 0, 0}, {0, -1, 0}}, {6}, {0, 1, 2, 0, 3, 4}), 1),
        "subdivision: a face visits a vertex twice");
    const Mesh cube = made(makeCube({}));
    EXPECT_EQ(refusal(cube, 40), "subdivision: more than 67108864 faces");
    // A fan of triangles round one vertex, with as many edges there as may be, and one more.
    for (const int edges : {65535, 65536}) {
        std::vector<MFloatVector> points(static_cast<std::size_t>(edges) + 1);
        Ids counts, connects;
        for (int i = 1; i < edges; ++i) {
            counts.push_back(3);
            connects.insert(connects.end(), {0, i, i + 1});
        }
        EXPECT_EQ(refusal(build(points, counts, connects), 1),
                  edges == 65535 ? "" : "subdivision: a vertex has too many edges");
    }
}

} // namespace
} // namespace vesk::geom
