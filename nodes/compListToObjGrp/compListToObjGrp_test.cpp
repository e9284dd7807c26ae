// Both ways between a component list and an object group.

#include "tests/session_fixture.h"

namespace vesk::tests {

class ObjectGroups : public PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("polyCube; setAttr pCube1.translateX 5; createNode compListToObjGrp -n write; createNode "
            "objGrpToCompList -n read;"
            "connectAttr pCubeShape1.worldMesh[0] write.inGeometry; connectAttr write.outGeometry "
            "read.inGeometry;"
            "setAttr write.inComponents -type \"componentList\" 2 \"vtx[1:3]\" \"f[0]\"; setAttr "
            "read.groupId 7");
    }
    std::string group(int id) {
        run("setAttr read.groupId " + std::to_string(id));
        return mel("stringArrayToString(`getAttr read.outComponents`, \" \")");
    }
};

TEST_F(ObjectGroups, TheFirstEntryGoesIntoTheGroup) {
    EXPECT_EQ(group(7), "") << "without a group id nothing is written";
    run("setAttr write.groupId 7");
    EXPECT_EQ(group(7), "vtx[1:3]");
    EXPECT_EQ(group(6), "");
    EXPECT_EQ(group(-1), "");
    // What stood there goes; other groups stay.
    run("createNode compListToObjGrp -n again; connectAttr write.outGeometry again.inGeometry; setAttr "
        "again.groupId 7;"
        "setAttr again.inComponents -type \"componentList\" 1 \"e[4]\"; connectAttr -f again.outGeometry "
        "read.inGeometry");
    EXPECT_EQ(group(7), "e[4]");
    run("setAttr again.groupId 8");
    EXPECT_EQ(group(7), "vtx[1:3]");
    EXPECT_EQ(group(8), "e[4]");
    run("setAttr again.inComponents -type \"componentList\" 0");
    EXPECT_EQ(group(8), "") << "an empty list writes no group";
    run("setAttr read.envelope 0");
    EXPECT_EQ(group(7), "");
}

TEST_F(ObjectGroups, TheCopyIsInWorldSpace) {
    run("createNode mesh -n shown; connectAttr write.outGeometry shown.inMesh");
    EXPECT_EQ(mel("pointPosition -w shown.vtx[0]"), "4.5 -0.5 0.5");
    // Without effect the input goes on as it is, with its matrix beside it.
    run("setAttr write.groupId 7; setAttr write.nodeState 1");
    EXPECT_EQ(group(7), "");
    run("createNode nurbsCurve -n shownCurve; curve -d 1 -p 0 0 0 -p 1 0 0 -n path; setAttr path.translateY "
        "2;"
        "setAttr write.nodeState 0; connectAttr -f path.worldSpace[0] write.inGeometry;"
        "setAttr write.inComponents -type \"componentList\" 1 \"cv[1]\"");
    EXPECT_EQ(group(7), "cv[1]");
    run("disconnectAttr write.outGeometry shown.inMesh; connectAttr write.outGeometry shownCurve.create");
    EXPECT_EQ(mel("pointPosition -w shownCurve.cv[1]"), "1 2 0");
}

} // namespace vesk::tests
