// The mesh shape: file lists to a mesh and back, what is shown, tweaks, instances, groups.

#include "host/nodes/mesh_node.h"

#include "host/data/component_list_data.h"
#include "host/nodes/mesh_file.h"
#include "host/nodes/test_scene.h"

namespace vesk::nodes {
namespace {

using Code = PolyFacesData::Code;

/// Two unit squares side by side. Edge 1 is shared; the second face walks it backwards (-2).
MeshFileArrays twoSquares() {
    MeshFileArrays arrays;
    arrays.points = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 2, 0, 0, 2, 1, 0};
    arrays.edges = {0, 1, 1, 1, 2, 0, 2, 3, 1, 3, 0, 1, 1, 4, 1, 4, 5, 1, 5, 2, 1};
    arrays.faceCodes = {Code::Face, 4, 0, 1, 2, 3, Code::Face, 4, 4, 5, 6, -2};
    arrays.faceCount = 2;
    return arrays;
}

/// The same with everything that a file may add.
MeshFileArrays twoSquaresInFull() {
    MeshFileArrays arrays = twoSquares();
    arrays.faceCodes = {Code::Face,   4, 0, 1,  2, 3, Code::Uvs, 0,          4, 0, 1, 2, 3,
                        Code::Colors, 0, 4, -1, 0, 1, -1,        Code::Face, 4, 4, 5, 6, -2,
                        Code::Uvs,    1, 4, 1,  1, 0, 0};
    const float no = kUnlockedNormal;
    arrays.normals.assign(3 * 8, no);
    arrays.normals[3] = 0, arrays.normals[4] = 2, arrays.normals[5] = 0;
    arrays.uvSets = {{0, "map1", {0, 0, 1, 0, 1, 1, 0, 1}}, {1, "second", {0.25F, 0.5F, 0.75F, 1}}};
    arrays.currentUvSet = "second";
    arrays.colorSets = {{0, "colorSet1", {1, 0, 0, 1, 0, 1, 0, 0.5F}}};
    arrays.currentColorSet = "colorSet1";
    return arrays;
}

class MeshNodeTest : public NodesTest {
  protected:
    /// What a reader does with the lists.
    void store(const std::string& node, const MeshFileArrays& arrays) {
        setData(node + ".vt", packed(3, arrays.points));
        setData(node + ".ed", packed(3, arrays.edges));
        auto faces = makeRef<PolyFacesData>();
        faces->codes = arrays.faceCodes;
        faces->faceCount = arrays.faceCount;
        setData(node + ".fc", faces);
        if (!arrays.normals.empty()) setData(node + ".n", packed(3, arrays.normals));
        for (const auto& set : arrays.uvSets) {
            const std::string element = node + ".uvst[" + std::to_string(set.index) + "]";
            setText(element + ".uvsn", set.name.c_str());
            setData(element + ".uvsp", packed(2, set.uvs));
        }
        for (const auto& set : arrays.colorSets) {
            const std::string element = node + ".clst[" + std::to_string(set.index) + "]";
            setText(element + ".clsn", set.name.c_str());
            setData(element + ".clsp", packed(4, set.colors));
        }
        if (!arrays.currentUvSet.empty()) setText(node + ".cuvs", arrays.currentUvSet.c_str());
    }
    MeshNode& squares(const char* name, Node* parent = nullptr) {
        auto& node = make<MeshNode>("mesh", name, parent);
        store(name, twoSquares());
        return node;
    }
    geom::Mesh shown(const std::string& plug) {
        const auto data = getData<MeshData>(plug);
        EXPECT_TRUE(data) << plug;
        return data ? data->geometry() : geom::Mesh();
    }
};

TEST_F(MeshNodeTest, FileListsMakeOneMeshAndAreDropped) {
    auto& node = make<MeshNode>("mesh", "m");
    store("m", twoSquaresInFull());
    const geom::Mesh mesh = shown("m.outMesh");
    ASSERT_TRUE(mesh.checkInvariants());
    EXPECT_EQ(mesh.vertexCount(), 6);
    EXPECT_EQ(mesh.edgeCount(), 7);
    const auto second = mesh.topology().verticesOfFace(1);
    EXPECT_EQ(std::vector<int>(second.begin(), second.end()), (std::vector<int>{1, 4, 5, 2}));
    EXPECT_TRUE(mesh.isHardEdge(1));
    EXPECT_FALSE(mesh.isHardEdge(0));
    EXPECT_FALSE(mesh.isNormalLocked(0));
    ASSERT_TRUE(mesh.isNormalLocked(1));
    EXPECT_TRUE(isNear(mesh.cornerNormals()[1], MVector(0, 2, 0)));
    ASSERT_EQ(mesh.uvSetCount(), 2);
    EXPECT_EQ(mesh.uvSet(mesh.currentUvSet()).name, "second");
    EXPECT_EQ(mesh.cornerUv(0, 2)->v, 1);
    EXPECT_FALSE(mesh.cornerUv(0, 4)) << "the second face has no UVs in the first set";
    EXPECT_EQ(mesh.cornerUv(1, 4)->u, 0.75F);
    EXPECT_FALSE(mesh.cornerUv(1, 0));
    EXPECT_EQ(mesh.cornerColor(0, 2), MColor(0, 1, 0, 0.5F));
    EXPECT_EQ(mesh.cornerColor(0, 3), geom::unsetColor);
    EXPECT_FALSE(at("m.vt").data) << "the lists are not kept beside the mesh";
    EXPECT_FALSE(at("m.fc").data);
    EXPECT_TRUE(node.ownBounds().max().isEquivalent(MPoint(2, 1, 0)));
    setText("m.cuvs", "map1");
    EXPECT_EQ(shown("m.o").currentUvSet(), 0);
}

TEST_F(MeshNodeTest, ListsComeBackAsTheyWere) {
    const MeshFileArrays before = twoSquaresInFull();
    auto built = meshFromFileArrays(before);
    ASSERT_TRUE(built) << built.error();
    const MeshFileArrays after = meshFileArrays(built->mesh);
    EXPECT_EQ(after.points, before.points);
    EXPECT_EQ(after.edges, before.edges);
    EXPECT_EQ(after.faceCodes, before.faceCodes);
    EXPECT_EQ(after.faceCount, 2);
    EXPECT_EQ(after.normals, before.normals);
    ASSERT_EQ(after.uvSets.size(), 2U);
    EXPECT_EQ(after.uvSets[1].name, "second");
    EXPECT_EQ(after.uvSets[1].uvs, before.uvSets[1].uvs);
    ASSERT_EQ(after.colorSets.size(), 1U);
    EXPECT_EQ(after.colorSets[0].colors, before.colorSets[0].colors);
    EXPECT_EQ(after.currentUvSet, "second");
}

TEST_F(MeshNodeTest, OlderRecordsHolesAndSmallFaces) {
    MeshFileArrays old = twoSquares();
    old.uvSets = {{0, "", {0.5F, 0.5F}}};
    old.faceCodes = {Code::Face, 4,
                     0,          1,
                     2,          3,
                     Code::Hole, 4,
                     4,          5,
                     6,          -2,
                     Code::Uvs,  0,
                     4,          9,
                     9,          9,
                     9,          Code::Face,
                     2,          0,
                     -1,         Code::OldUvs,
                     2,          0,
                     0,          Code::Face,
                     4,          4,
                     5,          6,
                     -2,         Code::OldUvs,
                     4,          0,
                     0,          0,
                     0};
    auto built = meshFromFileArrays(old);
    ASSERT_TRUE(built) << built.error();
    EXPECT_EQ(built->holes, 1) << "a hole's own UVs are left out with it";
    EXPECT_EQ(built->mesh.faceCount(), 2) << "a face of two corners goes";
    EXPECT_FALSE(built->mesh.cornerUv(0, 3));
    EXPECT_TRUE(built->mesh.cornerUv(0, 4)) << "layers follow the faces that stay";
    EXPECT_EQ(built->mesh.uvSet(0).name, "map1");
    make("mesh", "m");
    store("m", old);
    EXPECT_EQ(shown("m.o").faceCount(), 2);
    EXPECT_EQ(messages(), std::vector<std::string>{"'m': holes in faces are not supported; 1 were filled."});
}

TEST_F(MeshNodeTest, BadListsAreAnErrorThatNamesTheNode) {
    const auto fault = [](auto change) {
        MeshFileArrays arrays = twoSquaresInFull();
        change(arrays);
        const auto built = meshFromFileArrays(std::move(arrays));
        return built ? std::string("accepted") : built.error();
    };
    EXPECT_EQ(fault([](auto& a) { a.points.pop_back(); }),
              "the list of points does not hold whole elements.");
    EXPECT_EQ(fault([](auto& a) { a.faceCodes.pop_back(); }),
              "the face records end in the middle of face 1.");
    EXPECT_EQ(fault([](auto& a) { a.normals.resize(9); }), "there are 3 normals for 8 corners.");
    EXPECT_EQ(fault([](auto& a) { a.uvSets.pop_back(); }), "face 1 has ids of UV set 1, which there is not.");
    EXPECT_EQ(fault([](auto& a) {
                  a.faceCodes[8] = 3;
                  a.faceCodes.erase(a.faceCodes.begin() + 9);
              }),
              "face 0 has 3 UV ids for 4 corners.");
    // Refused by the mesh itself: an edge, a walk, a UV and a colour that are not there.
    for (const int place : {0, 1, 2, 3, 4, 5}) {
        const std::string text = fault([place](auto& a) {
            if (place == 0) a.edges[0] = 6;
            if (place == 1) a.edges[1] = -1;
            if (place == 2) a.faceCodes[2] = 7;
            if (place == 3) a.faceCodes[2] = -1;
            if (place == 4) a.faceCodes[9] = 4;
            if (place == 5) a.colorSets[0].colors.resize(4);
        });
        EXPECT_NE(text, "accepted") << place;
        EXPECT_FALSE(text.empty());
    }
    make("mesh", "broken");
    MeshFileArrays arrays = twoSquares();
    arrays.edges[4] = 99;
    store("broken", arrays);
    EXPECT_EQ(shown("broken.o").vertexCount(), 0);
    EXPECT_EQ(shown("broken.w[0]").vertexCount(), 0);
    const auto said = messages();
    ASSERT_EQ(said.size(), 1U) << "once";
    EXPECT_TRUE(said[0].starts_with("The mesh stored in 'broken' cannot be read: ")) << said[0];
}

TEST_F(MeshNodeTest, ShowsItsInputAndKeepsTheLastOneWhenTheWireGoes) {
    squares("source");
    auto& node = make<MeshNode>("mesh", "copy");
    set("copy.pt[0].px", 5);
    connect("source.w[0]", "copy.i");
    EXPECT_EQ(shown("copy.o").points()[0].x, 5) << "tweaks add to the input";
    EXPECT_EQ(shown("source.o").points()[0].x, 0);
    EXPECT_FALSE(node.setMesh(geom::Mesh())) << "refused with history";
    // A change that was never pulled is not seen; what was shown last stays.
    set("source.pt[1].py", 7);
    ASSERT_TRUE(graph::disconnect(at("source.w[0]"), at("copy.i")));
    EXPECT_EQ(shown("copy.o").vertexCount(), 6);
    EXPECT_EQ(shown("copy.o").points()[0].x, 5) << "tweaks are not added twice";
    EXPECT_EQ(shown("copy.o").points()[1].y, 0);
    scene->remove(at("source.o").node);
    EXPECT_EQ(shown("copy.w[0]").faceCount(), 2);
    ASSERT_TRUE(node.setMesh(geom::Mesh()));
    EXPECT_EQ(shown("copy.o").vertexCount(), 0);
}

TEST_F(MeshNodeTest, OwnMeshesArriveByPlugOrByCallAndReplaceWhatAFileGave) {
    auto& node = make<MeshNode>("mesh", "m");
    store("m", twoSquaresInFull());
    auto triangle =
        geom::Mesh::create({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, std::vector<int>{3}, std::vector<int>{0, 1, 2});
    ASSERT_TRUE(triangle);
    setData("m.inMesh", makeRef<MeshData>(triangle.mesh));
    EXPECT_EQ(shown("m.o").vertexCount(), 3) << "the lists were never pulled and are gone";
    EXPECT_FALSE(at("m.i").data);
    store("m", twoSquaresInFull());
    EXPECT_EQ(shown("m.o").vertexCount(), 6) << "a file read into the shape";
    ASSERT_TRUE(node.setMesh(triangle.mesh));
    EXPECT_EQ(shown("m.w[0]").vertexCount(), 3);
    EXPECT_EQ(textIn(at("m.cuvs")), "") << "its own sets count";
    EXPECT_EQ(node.mesh().faceCount(), 1);
    // With a wire that never brought anything, the own mesh stays.
    make("mesh", "empty");
    connect("empty.o", "m.i");
    EXPECT_FALSE(getData<MeshData>("m.o"));
    ASSERT_TRUE(graph::disconnect(at("empty.o"), at("m.i")));
    EXPECT_EQ(shown("m.o").vertexCount(), 3);
}

TEST_F(MeshNodeTest, AnEvaluationAtAnotherTimeLeavesTheListsAlone) {
    make("mesh", "m");
    store("m", twoSquaresInFull());
    {
        const graph::Preserve preserve(*scene);
        EXPECT_EQ(shown("m.o").vertexCount(), 6);
    }
    EXPECT_TRUE(at("m.vt").data);
    EXPECT_EQ(shown("m.o").vertexCount(), 6);
    EXPECT_EQ(shown("m.o").uvSetCount(), 2);
    EXPECT_FALSE(at("m.vt").data);
}

TEST_F(MeshNodeTest, SetsAreChosenByName) {
    make("mesh", "m");
    MeshFileArrays arrays = twoSquaresInFull();
    arrays.colorSets.push_back({4, "late", {0, 0, 1, 1}});
    arrays.faceCodes.insert(arrays.faceCodes.end(), {Code::Colors, 4, 4, 0, 0, 0, 0});
    store("m", arrays);
    make("mesh", "shown");
    connect("m.o", "shown.i");
    EXPECT_EQ(shown("m.o").currentColorSet(), 0) << "the first, since none is named";
    setText("shown.ccls", "late");
    setText("shown.cuvs", "nowhere");
    EXPECT_EQ(shown("shown.o").currentColorSet(), 1);
    EXPECT_EQ(shown("shown.o").cornerColor(1, 7), MColor(0, 0, 1, 1));
    EXPECT_EQ(shown("shown.o").currentUvSet(), 1) << "an unknown name chooses nothing";
    EXPECT_EQ(shown("m.o").currentColorSet(), 0);
}

TEST_F(MeshNodeTest, TweaksComeFromTheListAndFromWires) {
    squares("m");
    setData("m.pt", packed<float>(3, {0, 0, 1, 0, 0, 2, 0, 0, 3}));
    make("transform", "driver");
    set("driver.tx", 0.5);
    connect("driver.tx", "m.pt[1].pz");
    EXPECT_EQ(shown("m.o").points()[0].z, 1);
    EXPECT_EQ(shown("m.o").points()[1].z, 0.5F);
    EXPECT_EQ(shown("m.o").points()[2].z, 3);
    set("driver.tx", -1);
    EXPECT_EQ(shown("m.o").points()[1].z, -1);
    set("m.pt[40].px", 1);
    EXPECT_EQ(shown("m.o").vertexCount(), 6) << "a tweak past the end is nobody's";
}

TEST_F(MeshNodeTest, WorldMeshCarriesTheMatrixOfItsInstance) {
    Node& top = make("transform", "top");
    Node& a = make("transform", "a", &top);
    auto& shape = squares("m", &a);
    set("top.ty", 3);
    const auto place = [&](const char* plug) { return MPoint() * getData<MeshData>(plug)->matrix(); };
    EXPECT_TRUE(isNear(place("m.w[0]"), MPoint(0, 3, 0)));
    EXPECT_TRUE(isNear(place("m.o"), MPoint(0, 0, 0)));
    EXPECT_EQ(getData<MeshData>("m.w[0]")->geometry().points().data(),
              getData<MeshData>("m.o")->geometry().points().data())
        << "one geometry for all";
    auto& b = make<graph::DagNode>("transform", "b");
    set("b.tx", 8);
    ASSERT_TRUE(scene->reparent(shape, &b, true));
    EXPECT_TRUE(isNear(place("m.w[0]"), MPoint(0, 3, 0)));
    EXPECT_TRUE(isNear(place("m.w[1]"), MPoint(8, 0, 0)));
    set("top.ty", 4);
    set("b.tx", 9);
    EXPECT_TRUE(isNear(place("m.w[0]"), MPoint(0, 4, 0)));
    EXPECT_TRUE(isNear(place("m.w[1]"), MPoint(9, 0, 0)));
    // A shape fed from world space shows object space.
    make("mesh", "other");
    connect("m.w[1]", "other.i");
    EXPECT_TRUE(isNear(place("other.o"), MPoint()));
}

TEST_F(MeshNodeTest, GroupsOfTheShapeTravelWithItsGeometry) {
    squares("m");
    std::string error;
    const std::string vertices[] = {"vtx[0:1]", "vtx[4]"};
    setData("m.iog.og[2].gcl", ComponentListData::fromTexts(vertices, error));
    set("m.iog.og[2].gid", 7);
    const auto group = [&](const char* plug) {
        const Component* found = getData<MeshData>(plug)->groups().component(7);
        return found ? found->texts() : std::vector<std::string>{"none"};
    };
    EXPECT_EQ(group("m.o"), (std::vector<std::string>{"vtx[0:1]", "vtx[4]"}));
    EXPECT_EQ(group("m.w[0]"), group("m.o"));
    // A group of that id that comes from upstream is not replaced.
    make("mesh", "next");
    connect("m.o", "next.i");
    const std::string others[] = {"vtx[5]"};
    setData("next.iog.og[0].gcl", ComponentListData::fromTexts(others, error));
    set("next.iog.og[0].gid", 7);
    EXPECT_EQ(group("next.o"), group("m.o"));
    connect("m.iog", "next.blindDataNodes[0]");
}

} // namespace
} // namespace vesk::nodes
