#include "host/geometry/mesh_samples.h"

#include <algorithm>
#include <climits>

namespace vesk::geom {
namespace {

using test::gathered;
using test::Ids;
using test::list;

struct BadInput {
    const char* name;
    int vertices;
    Ids counts, connects;
    const char* message; ///< part of it
};

TEST(MeshTopology, RefusesBadLoopsByName) {
    const BadInput cases[] = {
        {"vertex too high", 3, {3}, {0, 1, 3}, "face 0: vertex 3"},
        {"vertex negative", 3, {3, 3}, {0, 1, 2, 0, -1, 2}, "face 1: vertex -1"},
        {"count negative", 3, {3, -3}, {0, 1, 2}, "face 1: negative"},
        {"counts too many", 3, {3, 1}, {0, 1, 2}, "face 1: only 3"},
        {"counts overflow", 3, {INT_MAX, INT_MAX, INT_MAX}, {0, 1, 2}, "face 0: only 3"},
        {"counts too few", 4, {3}, {0, 1, 2, 3}, "4 corners are given"},
        {"vertices negative", -1, {}, {}, "negative vertex count"},
    };
    for (const BadInput& bad : cases) {
        const MeshTopologyResult result = MeshTopology::fromFaces(bad.vertices, bad.counts, bad.connects);
        EXPECT_FALSE(result) << bad.name;
        EXPECT_NE(result.outcome.error.find(bad.message), std::string::npos) << result.outcome.error;
    }
}

TEST(MeshTopology, RefusesBadEdgeLoopsByName) {
    const std::vector<MeshEdge> edges{{1, 0}, {1, 2}, {2, 0}};
    const BadInput cases[] = {
        {"broken loop", 3, {3}, {0, 1, 2}, "face 0: edge 1 does not begin where edge 0 ends"},
        {"open loop", 3, {2}, {-1, 1}, "face 0: edge 0 does not begin where edge 1 ends"},
        {"edge too high", 3, {3}, {-1, 1, 3}, "face 0: edge 3 does not exist"},
        {"edge too low", 3, {3}, {-1, 1, INT_MIN}, "face 0: edge 2147483647 does not exist"},
        {"end does not exist", 2, {3}, {-1, 1, 2}, "edge 1: vertex 2"},
    };
    for (const BadInput& bad : cases) {
        const auto result = MeshTopology::fromEdgeLoops(bad.vertices, edges, bad.counts, bad.connects);
        EXPECT_FALSE(result) << bad.name;
        EXPECT_NE(result.outcome.error.find(bad.message), std::string::npos) << result.outcome.error;
    }
}

TEST(MeshTopology, NumbersEdgesAsLoopsMeetThem) {
    const Mesh fold = test::fold();
    const std::vector<MeshEdge> expected{{0, 1}, {1, 2}, {2, 3}, {3, 0}, {1, 4}, {4, 5}, {5, 2}};
    EXPECT_EQ(fold.topology().edges(), expected);
    EXPECT_EQ(fold.topology().cornerEdges(), (Ids{0, 1, 2, 3, 4, 5, 6, 1}));
    EXPECT_EQ(fold.topology().findEdge(2, 1), 1);
    EXPECT_EQ(fold.topology().findEdge(0, 2), -1);
}

TEST(MeshTopology, KeepsGivenEdgesAndTheirDirection) {
    const auto walked =
        MeshTopology::fromEdgeLoops(4, {{1, 0}, {1, 2}, {3, 3}, {2, 0}}, Ids{3}, Ids{-1, 1, 3});
    ASSERT_TRUE(walked) << walked.outcome.error;
    EXPECT_EQ(walked.topology->faceVertices(), (Ids{0, 1, 2}));
    EXPECT_EQ(walked.topology->cornerEdges(), (Ids{0, 1, 3}));
    EXPECT_EQ(list(walked.topology->edgesOfVertex(3)), (Ids{2}));
    EXPECT_TRUE(walked.topology->checkInvariants());

    const auto named = MeshTopology::fromFacesAndEdges(3, {{2, 1}}, Ids{3}, Ids{0, 1, 2});
    ASSERT_TRUE(named);
    EXPECT_EQ(named.topology->edges(), (std::vector<MeshEdge>{{2, 1}, {0, 1}, {2, 0}}));
    EXPECT_EQ(named.topology->cornerEdges(), (Ids{1, 0, 2}));
}

TEST(MeshTopology, CollapsesRepeatedCornersAndSaysWhich) {
    const Ids counts{4, 3, 0, 5};
    const Ids connects{0, 1, 1, 2, 3, 3, 4, 0, 2, 3, 4, 0};
    const auto result = MeshTopology::fromFaces(5, counts, connects);
    ASSERT_TRUE(result) << result.outcome.error;
    EXPECT_EQ(result.topology->faceVertices(), (Ids{0, 1, 2, 0, 2, 3, 4}));
    EXPECT_EQ(result.topology->faceStart(), (Ids{0, 3, 7}));
    EXPECT_TRUE(result.dropped);
    EXPECT_EQ(result.sourceFaces, (Ids{0, 3}));
    EXPECT_EQ(result.sourceCorners, (Ids{0, 1, 3, 7, 8, 9, 10}));
    EXPECT_EQ(result.followCorners<int>(connects), result.topology->faceVertices());

    // The same by edges: those from a vertex to itself fall out of the loop.
    const std::vector<MeshEdge> edges{{0, 1}, {1, 1}, {1, 2}, {2, 0}};
    const auto byEdges = MeshTopology::fromEdgeLoops(3, edges, Ids{4}, Ids{0, 1, 2, 3});
    ASSERT_TRUE(byEdges) << byEdges.outcome.error;
    EXPECT_EQ(byEdges.topology->cornerEdges(), (Ids{0, 2, 3}));
    EXPECT_TRUE(byEdges.topology->checkInvariants());
}

TEST(MeshTopology, GoesRoundAVertexCounterClockwise) {
    const Mesh fold = test::fold();
    const MeshTopology& open = fold.topology();
    EXPECT_EQ(list(open.edgesOfVertex(1)), (Ids{4, 1, 0}));
    EXPECT_EQ(list(open.cornersOfVertex(1)), (Ids{4, 1}));
    EXPECT_EQ(list(open.edgesOfVertex(2)), (Ids{2, 1, 6}));
    EXPECT_EQ(gathered([&](Ids& out) { open.facesOfVertex(1, out); }), (Ids{1, 0}));
    EXPECT_EQ(list(open.verticesOfVertex(1)), (Ids{4, 2, 0}));

    PlaneShape shape;
    shape.subdivisionsWidth = shape.subdivisionsHeight = 2;
    const Mesh plane = test::made(makePlane(shape));
    const MeshTopology& grid = plane.topology();
    EXPECT_EQ(list(grid.edgesOfVertex(4)), (Ids{3, 7, 8, 5}));
    EXPECT_EQ(gathered([&](Ids& out) { grid.facesOfVertex(4, out); }), (Ids{1, 3, 2, 0}));
    EXPECT_FALSE(grid.isBoundaryVertex(4));
    EXPECT_TRUE(grid.isBoundaryVertex(1));
}

TEST(MeshTopology, ListsFansOfAVertexByTheirLowestEdge) {
    const Mesh tie = test::bowTie(); // edges 0-1 1-2 2-0, then 0-3 3-4 4-0
    EXPECT_EQ(list(tie.topology().edgesOfVertex(0)), (Ids{0, 2, 3, 5}));
    EXPECT_EQ(list(tie.topology().cornersOfVertex(0)), (Ids{0, 3}));
    // Edge 3 carries three faces, so that each is a fan of its own.
    const Mesh leaves = test::oddMeshes()[3].mesh;
    EXPECT_EQ(list(leaves.topology().edgesOfVertex(1)), (Ids{3, 2, 4, 7}));
    EXPECT_EQ(list(leaves.topology().cornersOfVertex(1)), (Ids{3, 4, 9}));
}

TEST(MeshTopology, FindsNeighboursOfFacesAndEdges) {
    const Mesh cube = test::made(makeCube({}));
    const MeshTopology& t = cube.topology();
    EXPECT_EQ(gathered([&](Ids& out) { t.facesAcrossEdges(0, out); }), (Ids{1, 3, 4, 5}));
    EXPECT_EQ(gathered([&](Ids& out) { t.verticesAroundFace(0, out); }), (Ids{4, 5, 6, 7}));
    EXPECT_EQ(gathered([&](Ids& out) { t.edgesTouchingFace(0, out); }), (Ids{6, 7, 10, 11}));
    EXPECT_EQ(gathered([&](Ids& out) { t.edgesTouchingEdge(0, out); }), (Ids{4, 5, 10, 11}));
    EXPECT_EQ(gathered([&](Ids& out) { t.facesOfEdge(0, out); }), (Ids{0, 3}));
    EXPECT_EQ(t.findCorner(3, 1), 14); // face 3 is 6 7 1 0
    EXPECT_EQ(t.findCorner(1, 1), -1);
}

TEST(MeshTopology, KnowsItsBoundary) {
    for (const auto& [name, mesh] : test::closedMeshes()) {
        for (int e = 0; e < mesh.edgeCount(); ++e)
            EXPECT_FALSE(mesh.topology().isBoundaryEdge(e)) << name << " edge " << e;
    }
    const Mesh fold = test::fold();
    EXPECT_FALSE(fold.topology().isBoundaryEdge(1));
    EXPECT_TRUE(fold.topology().isBoundaryEdge(0));
    EXPECT_TRUE(fold.topology().isBoundaryFace(0));
    const Mesh points = test::build({{0, 0, 0}}, {}, {});
    EXPECT_FALSE(points.topology().isBoundaryVertex(0));
}

/// Edge k, corner k, edge k + 1 follow each other wherever all faces lie in one fan.
void expectUnbroken(const MeshTopology& t, int vertex, const std::string& name) {
    const auto edges = t.edgesOfVertex(vertex);
    const auto corners = t.cornersOfVertex(vertex);
    for (std::size_t k = 0; k < corners.size(); ++k) {
        EXPECT_EQ(t.cornerEdges()[corners[k]], edges[k]) << name << " vertex " << vertex;
        EXPECT_EQ(t.cornerEdges()[t.previousCorner(corners[k])], edges[(k + 1) % edges.size()])
            << name << " vertex " << vertex;
    }
}

TEST(MeshTopology, EveryCornerAndEdgeIsMetOnceRoundItsVertex) {
    for (const auto& [name, mesh] : test::allMeshes()) {
        const MeshTopology& t = mesh.topology();
        EXPECT_TRUE(mesh.checkInvariants()) << name << ": " << mesh.checkInvariants().error;
        Ids cornersMet(static_cast<std::size_t>(t.cornerCount()), 0);
        Ids endsMet(static_cast<std::size_t>(t.edgeCount()), 0);
        for (int v = 0; v < t.vertexCount(); ++v) {
            for (const int corner : t.cornersOfVertex(v)) {
                EXPECT_EQ(t.faceVertices()[corner], v) << name;
                ++cornersMet[corner];
            }
            for (const int edge : t.edgesOfVertex(v)) {
                EXPECT_TRUE(t.edges()[edge].a == v || t.edges()[edge].b == v) << name;
                ++endsMet[edge];
            }
        }
        EXPECT_EQ(std::count(cornersMet.begin(), cornersMet.end(), 1), t.cornerCount()) << name;
        EXPECT_EQ(std::count(endsMet.begin(), endsMet.end(), 2), t.edgeCount()) << name;
    }
    for (const auto& group : {test::closedMeshes(), test::openMeshes()}) {
        for (const auto& [name, mesh] : group) {
            for (int v = 0; v < mesh.vertexCount(); ++v)
                expectUnbroken(mesh.topology(), v, name);
        }
    }
}

TEST(MeshTopology, OneVertexMayCarryVeryManyEdges) {
    constexpr int leaves = 50'000;
    Ids connects;
    for (int i = 0; i < leaves; ++i)
        connects.insert(connects.end(), {0, 2 * i + 1, 2 * i + 2});
    const auto result = MeshTopology::fromFaces(2 * leaves + 1, Ids(leaves, 3), connects);
    ASSERT_TRUE(result);
    EXPECT_EQ(result.topology->edgeCount(), 3 * leaves);
    EXPECT_EQ(result.topology->edgesOfVertex(0).size(), 2U * leaves);
}

} // namespace
} // namespace vesk::geom
