#include "host/geometry/id_table.h"
#include "host/geometry/mesh_samples.h"

#include <map>

namespace vesk::geom {
namespace {

using test::Ids;

std::vector<MFloatVector> loopOf(const Mesh& mesh, int face) {
    std::vector<MFloatVector> loop;
    for (const int v : mesh.topology().verticesOfFace(face))
        loop.push_back(mesh.points()[v]);
    return loop;
}

TEST(IdTable, GivesWhatAMapGives) {
    IdTable table;
    std::map<std::uint64_t, int> map;
    EXPECT_EQ(table.find(0), -1);
    for (int i = 0; i < 3000; ++i) {
        // Keys that come several times, the first of them 0, and that share their low or their high bits.
        const auto n = static_cast<std::uint64_t>(i * i % 1009);
        const std::uint64_t key = i % 2 == 0 ? n << 40U : n;
        const bool isNew = map.try_emplace(key, i).second;
        const auto [id, inserted] = table.insert(key, i);
        EXPECT_EQ(inserted, isNew);
        if (i % 7 == 0) id = map[key] = i;
        EXPECT_EQ(id, map[key]);
    }
    for (const auto& [key, id] : map)
        EXPECT_EQ(table.find(key), id);
    EXPECT_EQ(table.find(1ULL << 63U), -1);
}

TEST(MeshEdit, FacesAddedOneByOneMakeTheSameMesh) {
    for (const auto& [name, mesh] : test::closedMeshes()) {
        Mesh grown;
        for (int f = 0; f < mesh.faceCount(); ++f)
            ASSERT_TRUE(grown.addPolygon(loopOf(mesh, f))) << name;
        EXPECT_TRUE(grown.checkInvariants()) << name << ": " << grown.checkInvariants().error;
        EXPECT_EQ(grown.vertexCount(), mesh.vertexCount()) << name;
        EXPECT_EQ(grown.edgeCount(), mesh.edgeCount()) << name;
        Ids counts;
        for (int f = 0; f < mesh.faceCount(); ++f)
            counts.push_back(mesh.topology().faceSize(f));
        const auto whole =
            MeshTopology::fromFaces(grown.vertexCount(), counts, grown.topology().faceVertices());
        EXPECT_EQ(grown.topology().edges(), whole.topology->edges()) << name;
        EXPECT_EQ(grown.topology().cornerEdges(), whole.topology->cornerEdges()) << name;
    }
}

TEST(MeshEdit, AddedFacesTakeTheLowestVertexWithinTheTolerance) {
    Mesh mesh = test::build({{0, 0, 0.75F}, {0, 0, 1.25F}, {1, 0, 0}, {0, 1, 0}}, {3}, {0, 2, 3});
    const Mesh before = mesh;
    const std::vector<MFloatVector> loop{{0, 0, 1}, {0, 1, 0.5F}, {1, 0, 0.75F}};
    ASSERT_TRUE(mesh.addPolygon(loop, true, 0.5));
    EXPECT_EQ(Ids(mesh.topology().faceVertices()), (Ids{0, 2, 3, 0, 3, 4}));
    EXPECT_EQ(mesh.vertexCount(), 5);
    ASSERT_TRUE(mesh.addPolygon(loop, false));
    EXPECT_EQ(mesh.vertexCount(), 8);
    EXPECT_EQ(mesh.topology().faceCount(), 3);
    EXPECT_TRUE(mesh.checkInvariants());
    EXPECT_EQ(before.vertexCount(), 4);
    EXPECT_EQ(before.faceCount(), 1);

    // A vertex that has moved is found where it is now.
    mesh.setPoint(4, MFloatVector(9, 9, 9));
    ASSERT_TRUE(mesh.addPolygon(std::vector<MFloatVector>{{9, 9, 9}, {0, 0, 0.75F}, {1, 0, 0}}));
    EXPECT_EQ(test::list(mesh.topology().verticesOfFace(3)), (Ids{4, 0, 2}));
}

TEST(MeshEdit, AFaceThatCollapsesIsRefused) {
    Mesh mesh = test::fold();
    const std::vector<MFloatVector> sliver{{0, 0, 0}, {1e-3F, 0, 0}, {5, 5, 5}};
    EXPECT_FALSE(mesh.addPolygon(sliver, true, 0.01));
    EXPECT_EQ(mesh.vertexCount(), 6);
    EXPECT_FALSE(mesh.addPolygon({}));
    EXPECT_EQ(mesh.points(), test::fold().points());
}

TEST(MeshEdit, LayersFollowTheFacesThatStay) {
    Mesh cube = test::made(makeCube({}));
    ASSERT_TRUE(cube.setVertexColors(std::vector<MColor>{MColor(1, 0, 0)}, Ids{7}));
    ASSERT_TRUE(cube.setVertexNormals(std::vector<MFloatVector>{{0, 1, 0}}, Ids{0}));
    cube.setEdgeHard(11, false); // 7-1
    ASSERT_TRUE(cube.addPolygon(std::vector<MFloatVector>{{0.5F, -0.5F, 0.5F}, {2, 0, 0}, {2, 1, 0}}));
    EXPECT_TRUE(cube.checkInvariants());
    EXPECT_FALSE(cube.cornerUv(0, 24).has_value());
    EXPECT_EQ(cube.cornerColor(0, 24), unsetColor);
    EXPECT_FALSE(cube.isHardEdge(12));
    EXPECT_FALSE(cube.isNormalLocked(0));

    ASSERT_TRUE(cube.deleteFace(2));
    EXPECT_TRUE(cube.checkInvariants());
    EXPECT_EQ(cube.faceCount(), 6);
    EXPECT_EQ(cube.edgeCount(), 15); // the back's edges have other faces too
    EXPECT_FALSE(cube.isHardEdge(11));
    EXPECT_TRUE(cube.isHardEdge(10));
    EXPECT_EQ(test::list(cube.topology().verticesOfFace(2)), (Ids{6, 7, 1, 0}));
    EXPECT_EQ(cube.uvSet(0).ids[cube.topology().findCorner(2, 1)], 9);
    EXPECT_EQ(cube.cornerColor(0, cube.topology().findCorner(2, 7)), MColor(1, 0, 0));

    ASSERT_TRUE(cube.deleteFace(5)); // the added triangle takes its two vertices and three edges along
    EXPECT_EQ(cube.vertexCount(), 8);
    EXPECT_EQ(cube.edgeCount(), 12);
    EXPECT_TRUE(cube.checkInvariants());
}

TEST(MeshEdit, ADeletedVertexLeavesItsFacesOneCornerLess) {
    Mesh cube = test::made(makeCube({}));
    ASSERT_TRUE(cube.deleteVertex(3));
    EXPECT_TRUE(cube.checkInvariants());
    EXPECT_EQ(cube.vertexCount(), 7);
    EXPECT_EQ(cube.faceCount(), 6);
    EXPECT_EQ(cube.edgeCount(), 12); // three went, three diagonals came
    EXPECT_EQ(test::list(cube.topology().verticesOfFace(0)), (Ids{0, 1, 2}));
    EXPECT_EQ(test::list(cube.topology().verticesOfFace(1)), (Ids{2, 4, 3})); // 2 5 4 before
    EXPECT_EQ(cube.points()[3], MFloatVector(-0.5F, 0.5F, -0.5F));

    Mesh triangle = test::openMeshes()[0].mesh;
    ASSERT_TRUE(triangle.deleteVertex(1));
    EXPECT_EQ(triangle.vertexCount(), 0);
    EXPECT_TRUE(triangle.checkInvariants());
}

TEST(MeshEdit, DeletingAVertexTidiesAwayUnusedOnes) {
    Mesh mesh =
        test::build({{9, 0, 0}, {0, 0, 0}, {8, 0, 0}, {1, 0, 0}, {0, 1, 0}, {7, 0, 0}}, {3}, {1, 3, 4});
    ASSERT_TRUE(mesh.deleteVertex(2));
    EXPECT_EQ(mesh.vertexCount(), 3);
    EXPECT_EQ(mesh.topology().faceVertices(), (Ids{0, 1, 2}));
    EXPECT_FALSE(mesh.deleteVertex(3));
    EXPECT_FALSE(mesh.deleteFace(0)) << "the last face";
    EXPECT_FALSE(mesh.deleteFace(1));
    EXPECT_EQ(mesh.faceCount(), 1);
}

} // namespace
} // namespace vesk::geom
