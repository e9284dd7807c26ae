#include "tests/session_fixture.h"

namespace vesk::tests {

/// A cube, whose faces 0, 1 and 2 are a strip over all eight vertices and whose vertex 0 has edges 0, 4
/// and 10. A row of three faces shares vertices between neighbours alone.
class ComponentToComponent : public PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("polyCube; createNode componentToComponent -n c; connectAttr pCubeShape1.worldMesh[0] c.inMesh");
    }
    std::string convert(const std::string& components, int type) {
        run("setAttr c.inComponents -type \"componentList\" " + components + "; setAttr c.outComponentType " +
            std::to_string(type));
        return mel("stringArrayToString(`getAttr c.outComponents`, \" \")");
    }
};

TEST_F(ComponentToComponent, OfVerticesEdgesAndFacesOnlyTheNumberCounts) {
    EXPECT_EQ(convert("1 \"f[3:5]\"", 0), "vtx[0:7]") << "of faces 0, 1 and 2";
    EXPECT_EQ(convert("1 \"f[5]\"", 0), "vtx[0:3]") << "of face 0";
    EXPECT_EQ(convert("1 \"f[3:5]\"", 1), "e[0:9]")
        << "all but those of the last face between its own corners";
    EXPECT_EQ(convert("1 \"vtx[7]\"", 1), "e[0] e[4] e[10]");
    EXPECT_EQ(convert("1 \"vtx[7]\"", 2), "f[0] f[3] f[5]");
    EXPECT_EQ(convert("1 \"e[11]\"", 0), "vtx[0:1]");
    EXPECT_EQ(convert("1 \"e[11]\"", 2), "f[0] f[3]");
    EXPECT_EQ(convert("1 \"f[0:5]\"", 3), "map[0:13]");
    EXPECT_EQ(convert("1 \"f[0:99]\"", 0), "vtx[0:7]") << "no more than there are";
}

TEST_F(ComponentToComponent, TheSameKindComesThroughAndTheFirstEntryCounts) {
    EXPECT_EQ(convert("1 \"f[3:5]\"", 2), "f[3:5]");
    EXPECT_EQ(convert("2 \"e[3]\" \"f[1]\"", 1), "e[3]");
    EXPECT_EQ(convert("1 \"vtx[*]\"", 2), "f[0:5]") << "complete: as many as the mesh has";
    EXPECT_EQ(convert("0", 0), "");
    run("setAttr c.outComponentType 9");
    EXPECT_EQ(convert("1 \"map[2]\"", 9), "map[2]") << "clamped to the last kind";
}

TEST_F(ComponentToComponent, OfSeveralUvsTheFirstAloneFindsAnything) {
    // A row of two squares: UV 1 is at vertex 1, which both faces share; UV 0 at vertex 0.
    run("polyPlane -sx 2 -sy 1 -n row; connectAttr -f rowShape.worldMesh[0] c.inMesh");
    EXPECT_EQ(convert("1 \"map[1]\"", 0), "vtx[1]");
    EXPECT_EQ(convert("1 \"map[1]\"", 2), "f[0:1]");
    EXPECT_EQ(convert("1 \"map[0:1]\"", 2), "f[0]");
    EXPECT_EQ(mel("size(`getAttr c.outComponents`)"), "1");
    run("setAttr -type \"string\" c.uvSet \"nowhere\"");
    EXPECT_EQ(convert("1 \"map[1]\"", 2), "");
    run("setAttr -type \"string\" c.uvSet \"\"");
    EXPECT_EQ(convert("1 \"map[1]\"", 2), "f[0:1]") << "the current set";
}

TEST_F(ComponentToComponent, ReadsObjectGroupsAndKeepsStillWithoutMeshOrEnvelope) {
    run("createNode compListToObjGrp -n g; connectAttr pCubeShape1.worldMesh[0] g.inGeometry; setAttr "
        "g.groupId 3;"
        "setAttr g.inComponents -type \"componentList\" 1 \"f[5]\"; connectAttr -f g.outGeometry c.inMesh;"
        "setAttr c.useComponents 1; setAttr c.groupId 3");
    EXPECT_EQ(convert("1 \"vtx[5]\"", 0), "vtx[0:3]");
    run("setAttr c.groupId 4");
    EXPECT_EQ(convert("1 \"vtx[5]\"", 0), "") << "no such group";
    run("setAttr c.useComponents 0; setAttr c.envelope 0");
    EXPECT_EQ(convert("1 \"vtx[5]\"", 0), "");
    run("setAttr c.envelope 1; disconnectAttr g.outGeometry c.inMesh; setAttr c.nodeState 0; createNode "
        "componentToComponent -n alone; setAttr alone.inComponents -type \"componentList\" 1 \"vtx[5]\"");
    EXPECT_EQ(mel("size(`getAttr alone.outComponents`)"), "0");
}

} // namespace vesk::tests
