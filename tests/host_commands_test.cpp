// Commands on nodes, lists, transforms and geometry, as scripts use them.

#include "tests/session_fixture.h"

namespace vesk {
namespace {

class HostCommands : public tests::PluginTest {
  protected:
    void refused(const std::string& command, const std::string& part) {
        const auto result = session->run(command);
        EXPECT_FALSE(result.ok) << command;
        EXPECT_NE(result.error.find(part), std::string::npos) << command << "\n  " << result.error;
        (void)complaints();
    }
};

TEST_F(HostCommands, CreateNodeNamesShapesAndTransforms) {
    EXPECT_EQ(mel("createNode mesh"), "polySurfaceShape1");
    EXPECT_EQ(mel("listRelatives -p polySurfaceShape1"), "polySurface1");
    EXPECT_EQ(mel("createNode nurbsCurve"), "curveShape1");
    EXPECT_EQ(mel("createNode locator -n \"xShape3\""), "xShape3");
    EXPECT_EQ(mel("listRelatives -p xShape3"), "x3");
    EXPECT_EQ(mel("createNode transform -n \"g#\""), "g1");
    EXPECT_EQ(mel("createNode transform -n g1"), "g2");
    EXPECT_EQ(mel("ls -sl"), "g2");
    run("createNode -ss transform -n quiet");
    EXPECT_EQ(mel("ls -sl"), "g2");
    refused("createNode noSuchType", "Unknown object type: noSuchType");
    refused("createNode transform -p nobody", "nobody");
}

TEST_F(HostCommands, WorldSpaceOutputsMeanTheirFirstInstance) {
    run("polyCube; createNode mesh -n shown");
    EXPECT_EQ(mel("connectAttr pCubeShape1.worldMesh shown.inMesh"),
              "Connected pCubeShape1.worldMesh[0] to shown.inMesh.");
    run("disconnectAttr pCubeShape1.worldMesh shown.inMesh");
    EXPECT_EQ(mel("isConnected pCubeShape1.worldMesh[0] shown.inMesh"), "0");
}

TEST_F(HostCommands, RoundShapesTakeDivisionsOfTheirCaps) {
    run("polyCylinder -sx 4 -sz 1 -n a; polyCylinder -sx 4 -sz 0 -n b; polyCone -sx 4 -sz 1 -n c;");
    EXPECT_EQ(mel("polyEvaluate -v a"), "10") << "two rings of four and the middles of the caps";
    EXPECT_EQ(mel("polyEvaluate -v b"), "8");
    EXPECT_EQ(mel("polyEvaluate -v c"), "6") << "a ring, the tip and the middle of the cap";
}

TEST_F(HostCommands, DeletingHistoryKeepsWhatTheShapeShows) {
    mel("polyCube -w 4; delete -ch pCube1");
    EXPECT_EQ(mel("objExists polyCube1"), "0");
    EXPECT_EQ(mel("size(`listConnections pCubeShape1.inMesh`)"), "0");
    EXPECT_EQ(mel("pointPosition -w pCube1.vtx[0]"), "-2 -0.5 0.5");
    // What feeds another shape as well stays.
    mel("polySphere; createNode mesh -n other; connectAttr polySphere1.output other.inMesh; delete -ch "
        "pSphere1");
    EXPECT_EQ(mel("objExists polySphere1"), "1");
}

TEST_F(HostCommands, RenameDeleteAndSelect) {
    EXPECT_EQ(mel("polyCube"), "pCube1 polyCube1");
    EXPECT_EQ(mel("rename pCube1 box"), "box");
    EXPECT_EQ(mel("listRelatives -s box"), "boxShape");
    run("select -r box; select -add polyCube1;");
    EXPECT_EQ(mel("ls -sl"), "box polyCube1");
    run("select -d box");
    EXPECT_EQ(mel("ls -sl"), "polyCube1");
    run("delete box");
    EXPECT_EQ(mel("objExists boxShape"), "0");
    EXPECT_EQ(mel("objExists polyCube1"), "1") << "no more than was named";
    refused("delete persp", "session's own");
    refused("select -r nobody", "No object matches name: nobody");
    run("polyPlane -sx 2 -sy 2; select -r pPlane1.vtx[0:3];");
    EXPECT_EQ(mel("ls -sl"), "pPlaneShape1.vtx[0:3]");
    EXPECT_EQ(mel("ls -sl -fl"),
              "pPlaneShape1.vtx[0] pPlaneShape1.vtx[1] pPlaneShape1.vtx[2] pPlaneShape1.vtx[3]");
}

TEST_F(HostCommands, HierarchyKeepsPlacesInTheWorld) {
    run("createNode transform -n a; createNode transform -n b; setAttr a.translateX 5; setAttr b.translateX "
        "7; parent b a;");
    EXPECT_EQ(mel("getAttr b.translateX"), "2");
    EXPECT_EQ(mel("xform -q -ws -t b"), "7 0 0");
    EXPECT_EQ(mel("ls -l b"), "|a|b");
    run("parent -w b");
    EXPECT_EQ(mel("getAttr b.translateX"), "7");
    refused("parent a a", "below itself");
    EXPECT_EQ(mel("group -em -n upper"), "upper");
    EXPECT_EQ(mel("group -n both a b"), "both");
    EXPECT_EQ(mel("listRelatives -c both"), "a b");
    EXPECT_EQ(mel("listRelatives -ad -f both"), "|both|a |both|b");
    run("delete both");
    EXPECT_EQ(mel("objExists a"), "0");
}

TEST_F(HostCommands, InstancesHaveAMatrixEach) {
    run("polyCube; instance pCube1; setAttr pCube2.translateX 4;");
    EXPECT_EQ(mel("ls -ap -l pCubeShape1"), "|pCube1|pCubeShape1 |pCube2|pCubeShape1");
    run("createNode pointAttributeToArray -n p; connectAttr pCubeShape1.worldMesh[1] p.inGeometry; setAttr "
        "p.pointPosition 1;");
    EXPECT_NEAR(floats("p.outPositionPP")[0], 3.5, 1e-6);
    run("connectAttr -f pCubeShape1.worldMesh[0] p.inGeometry");
    EXPECT_NEAR(floats("p.outPositionPP")[0], -0.5, 1e-6);
    run("delete pCube1");
    EXPECT_EQ(mel("ls -ap -l pCubeShape1"), "|pCube2|pCubeShape1");
}

TEST_F(HostCommands, DuplicateCopiesGeometryWithoutHistory) {
    run("polyCube -w 3; setAttr pCube1.translateY 2; addAttr -ln extra -at double -dv 4 pCube1; setAttr "
        "pCube1.extra 9;");
    EXPECT_EQ(mel("duplicate pCube1"), "pCube2");
    EXPECT_EQ(mel("getAttr pCube2.translateY"), "2");
    EXPECT_EQ(mel("getAttr pCube2.extra"), "9");
    EXPECT_EQ(mel("polyEvaluate -v pCube2"), "8");
    run("setAttr polyCube1.width 8");
    EXPECT_EQ(mel("pointPosition -w pCube2.vtx[1]"), "1.5 1.5 0.5");
    EXPECT_EQ(mel("pointPosition -w pCube1.vtx[1]"), "4 1.5 0.5");
}

TEST_F(HostCommands, TransformsByCommand) {
    run("polyCube; move 1 2 3 pCube1; move -r 1 0 0 pCube1; rotate 0 90 0 pCube1; scale 2 1 1 pCube1;");
    EXPECT_EQ(mel("xform -q -ws -t pCube1"), "2 2 3");
    // Twice as wide along x, which then points to -z.
    EXPECT_EQ(mel("pointPosition -w pCube1.vtx[1]"), "2.5 1.5 2");
    run("xform -ws -t 0 0 0 -ro 0 0 0 -s 1 1 1 pCube1; move -y 4 pCube1;");
    EXPECT_EQ(mel("getAttr pCube1.translate"), "0 4 0");
    run("xform -m 1 0 0 0 0 1 0 0 0 0 1 0 7 8 9 1 pCube1");
    EXPECT_EQ(mel("getAttr pCube1.translate"), "7 8 9");
    run("move -r 0 1 0 pCube1.vtx[0:1]");
    EXPECT_EQ(mel("pointPosition -l pCube1.vtx[0]"), "-0.5 0.5 0.5");
    EXPECT_EQ(mel("pointPosition -l pCube1.vtx[2]"), "-0.5 0.5 0.5");
    run("setAttr -l on pCube1.translateX");
    refused("move 1 1 1 pCube1", "locked");
}

TEST_F(HostCommands, TimeUnitsAndPlayback) {
    EXPECT_EQ(mel("currentTime -q"), "1");
    run("currentTime 12.5");
    EXPECT_EQ(mel("getAttr time1.outTime"), "12.5");
    run("currentUnit -t pal");
    EXPECT_EQ(mel("currentTime -q"), "12.5");
    EXPECT_EQ(mel("currentUnit -q -t"), "pal");
    EXPECT_EQ(mel("playbackOptions -q -max"), "24");
    run("playbackOptions -max 99");
    EXPECT_EQ(mel("playbackOptions -q -max"), "99");
    refused("currentUnit -t lightyears", "lightyears");
}

TEST_F(HostCommands, SessionQueries) {
    EXPECT_EQ(mel("about -batch"), "1");
    EXPECT_EQ(mel("pluginInfo -q -loaded Vesk"), "1");
    EXPECT_EQ(mel("stringArrayContains(\"point\", `pluginInfo -q -dependNode Vesk`)"), "1");
    EXPECT_EQ(mel("pluginInfo -q -version Vesk"), "Jan 20 2013");
    EXPECT_EQ(mel("loadPlugin Vesk"), "Vesk") << "twice is no error";
    refused("loadPlugin nowhereToBeFound", "was not found");
    EXPECT_EQ(mel("commandEcho -q -st"), "0");
    run("optionVar -iv answer 42");
    EXPECT_EQ(mel("optionVar -q answer"), "42");
    EXPECT_EQ(mel("whatIs createNode"), "Command");
    refused("python \"1\"", "no Python");
    EXPECT_NE(mel("help createNode").find("-parent"), std::string::npos);
}

} // namespace
} // namespace vesk
