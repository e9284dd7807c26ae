#include "tests/session_fixture.h"

namespace vesk::tests {

/// A cube: faces 0 front, 1 top, 2 back, 3 bottom, 4 right, 5 left; vertices 2 to 5 above. A plane of two by
/// two squares, nine points from (-1, 0, 1) on, x first.
class Group : public PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("polyCube -n box; polyPlane -w 2 -h 2 -sx 2 -sy 2 -n floor; createNode group -n g");
        connect("boxShape.worldMesh[0]");
    }
    void connect(const std::string& plug) { run("connectAttr -f " + plug + " g.inGeometry"); }
    void set(const std::string& attribute, int value) {
        run("setAttr g." + attribute + " " + std::to_string(value));
    }
    void text(const std::string& attribute, const std::string& value) {
        run("setAttr -type \"string\" g." + attribute + " \"" + value + "\"");
    }
    void input(const std::string& components) {
        run("setAttr g.inComponents -type \"componentList\" " + components);
    }
    std::string selected() { return mel("stringArrayToString(`getAttr g.outComponents`, \" \")"); }
    std::string pattern(const std::string& value) {
        text("pattern", value);
        return selected();
    }
    void expectWarning(const std::string& warning) {
        EXPECT_EQ(complaints(), Texts{"warning: g: " + warning});
    }

    enum Kind { kVertex, kEdge, kFace, kMap, kCurve, kSurface, kParticle };
    enum Operation { kPattern, kRange, kNormal, kDepth, kLength, kArea, kPerimeter };
};

TEST_F(Group, AnEmptySelectionIsMarkedBeyondTheLastElement) {
    EXPECT_EQ(selected(), "vtx[108]");
    set("envelope", 0);
    EXPECT_EQ(selected(), "vtx[108]");
    input("2 \"f[1]\" \"vtx[3]\"");
    EXPECT_EQ(selected(), "f[1]") << "off: the first entry of the input";
    set("envelope", 1);
    for (const auto& [kind, mark] : std::vector<std::pair<Kind, std::string>>{
             {kEdge, "e[112]"}, {kFace, "f[106]"}, {kMap, "map[114]"}, {kCurve, ""}}) {
        set("componentType", kind);
        EXPECT_EQ(selected(), mark);
    }
}

TEST_F(Group, PatternsAndRangesCountTheKindsElements) {
    EXPECT_EQ(pattern("5:2 7"), "vtx[2:5] vtx[7]");
    set("componentType", kEdge);
    EXPECT_EQ(pattern("*"), "e[0:11]");
    set("componentType", kMap);
    EXPECT_EQ(pattern("*"), "map[0:13]");
    set("componentType", kFace);
    set("operation", kRange);
    EXPECT_EQ(selected(), "f[0] f[2] f[4]");
    run("setAttr g.stepA 5");
    EXPECT_EQ(selected(), "f[0:4]") << "two of each two; the last is left out";
    EXPECT_EQ(mel("getAttr g.stepA"), "2") << "cut to stepB";
}

TEST_F(Group, DirectionsAndAngles) {
    set("operation", kNormal);
    set("componentType", kFace);
    EXPECT_EQ(selected(), "f[1]") << "spread 0 finds what is parallel";
    run("setAttr g.spreadAngle 90");
    EXPECT_EQ(selected(), "f[0:2] f[4:5]");
    set("componentType", kVertex);
    run("setAttr g.spreadAngle 54"); // a corner's normal is 54.7 degrees from the axis
    EXPECT_EQ(selected(), "vtx[108]");
    run("setAttr g.spreadAngle 55");
    EXPECT_EQ(selected(), "vtx[2:5]");
    run("setAttr g.direction 0 0 0");
    EXPECT_EQ(selected(), "vtx[108]");
    set("mode", 1);
    set("componentType", kFace);
    run("setAttr g.inBetweenAngle 89");
    EXPECT_EQ(selected(), "f[106]");
    run("setAttr g.inBetweenAngle 90");
    EXPECT_EQ(selected(), "f[0:5]");
    // Points bring half of their own index: of the flat plane's nine points 0 to 4, beside all their
    // neighbours.
    connect("floorShape.worldMesh[0]");
    set("componentType", kVertex);
    run("setAttr g.inBetweenAngle 0");
    EXPECT_EQ(selected(), "vtx[0:8]");
}

TEST_F(Group, DepthGrowsFromTheSeeds) {
    connect("floorShape.worldMesh[0]");
    set("operation", kDepth);
    text("initialComponents", "4");
    EXPECT_EQ(selected(), "vtx[4]");
    set("depth", 1);
    EXPECT_EQ(selected(), "vtx[1] vtx[3:5] vtx[7]");
    set("depth", 50);
    EXPECT_EQ(selected(), "vtx[0:8]");
    set("componentType", kFace);
    text("initialComponents", "0");
    set("depth", 1);
    EXPECT_EQ(selected(), "f[0:2]");
    run("curve -d 1 -p 0 0 0 -p 1 0 0 -p 3 0 0 -p 4 0 0 -n path");
    connect("path.worldSpace[0]");
    set("componentType", kCurve);
    EXPECT_EQ(selected(), "cv[0:1]");
    set("operation", kLength);
    run("setAttr g.lengthThreshold 1.5");
    EXPECT_EQ(selected(), "cv[0:3]");
    run("setAttr g.lengthThreshold 0.5");
    EXPECT_EQ(selected(), "cv[104]");
}

TEST_F(Group, SizesOfFacesInTheChosenSpace) {
    run("setAttr box.scaleZ 3");
    set("componentType", kFace);
    for (const Operation operation : {kArea, kPerimeter}) {
        set("operation", operation);
        run("setAttr g.areaThreshold 1; setAttr g.perimeterThreshold 4");
        set("coordinateSystem", 0);
        EXPECT_EQ(selected(), "f[0] f[2]") << "front and back alone are still squares";
        set("coordinateSystem", 1);
        EXPECT_EQ(selected(), "f[0:5]");
    }
    set("componentType", kVertex);
    run("setAttr g.perimeterThreshold 3");
    EXPECT_EQ(selected(), "vtx[108]");
}

TEST_F(Group, CombinesWithTheInput) {
    input("1 \"vtx[0:2]\"");
    set("combine", 1);
    EXPECT_EQ(pattern("5"), "vtx[0:2] vtx[5]");
    set("combine", 2);
    EXPECT_EQ(pattern("1"), "vtx[0] vtx[2]");
    set("combine", 3);
    EXPECT_EQ(pattern("1:5"), "vtx[1:2]");
    EXPECT_EQ(pattern("5:7"), "vtx[5:7]") << "sets of one size are not compared";
    EXPECT_EQ(pattern("none"), "vtx[108]");
    input("1 \"f[0]\"");
    set("combine", 1);
    EXPECT_EQ(pattern("5"), "f[0] vtx[5]");
    set("filterInput", 1);
    EXPECT_EQ(pattern("5"), "vtx[5]");
    set("invert", 1);
    EXPECT_EQ(pattern("1:7"), "vtx[0]");
    EXPECT_EQ(pattern("none"), "vtx[0:7]");
}

TEST_F(Group, VolumesSelectByAnyPointOrByAll) {
    connect("floorShape.worldMesh[0]");
    run("createNode transform -n ballT; createNode boundingObject -n ball -p ballT;"
        "connectAttr ballT.worldMatrix[0] ball.inParentMatrix; connectAttr ball.outData g.boundingObjects[0];"
        "connectAttr ball.outData.outParentMatrix g.boundingObjects[0].boundParentMatrix;"
        "xform -t -1 0 1 -s 1.2 1.2 1.2 ballT");
    EXPECT_EQ(selected(), "vtx[0:1] vtx[3]") << "within 1.2 of the corner";
    set("componentType", kFace);
    run("setAttr ball.contained 0");
    EXPECT_EQ(selected(), "f[0:2]") << "any of their points";
    run("setAttr ball.contained 1");
    EXPECT_EQ(selected(), "f[104]");
    run("xform -s 1.5 1.5 1.5 ballT");
    EXPECT_EQ(selected(), "f[0]") << "all four corners within 1.5";
    input("1 \"f[0:1]\"");
    set("combine", 2);
    EXPECT_EQ(selected(), "f[1]") << "taken out of the input";
}

TEST_F(Group, MirrorsAcrossThePlaneOfAMatrix) {
    connect("floorShape.worldMesh[0]");
    set("mirror", 1);
    EXPECT_EQ(pattern("0 3"), "vtx[0] vtx[3]");
    expectWarning("No mirror matrix provided.");
    run("createNode transform -n plane; connectAttr plane.worldMatrix[0] g.mirrorMatrix");
    EXPECT_EQ(pattern("0 3"), "vtx[2] vtx[5]");
    set("mirror", 2);
    EXPECT_EQ(pattern("0 3"), "vtx[0] vtx[2:3] vtx[5]");
    set("axis", 2);
    EXPECT_EQ(pattern("0"), "vtx[0] vtx[6]");
    run("setAttr plane.translateZ 0.5; setAttr plane.rotateY 30"); // the rotation takes no part
    EXPECT_EQ(pattern("0"), "vtx[0] vtx[3]");
    run("setAttr plane.translateZ 0");
    // Faces go by their vertices, and come back as every face at one of these.
    set("componentType", kFace);
    set("mirror", 1);
    EXPECT_EQ(pattern("0"), "f[0:3]");
    run("setAttr plane.rotateY 0");
    set("contained", 1);
    EXPECT_EQ(pattern("0"), "f[0]") << "those whose points are in reach of the selection itself";
    set("componentType", kMap);
    EXPECT_EQ(pattern("0"), "");
    expectWarning("Mirroring is not supported for mesh UVs.");
}

TEST_F(Group, BoundariesOfMeshesAndSurfaces) {
    connect("floorShape.worldMesh[0]");
    text("pattern", "3:5");
    for (const auto& [mode, result] : std::vector<std::pair<int, std::string>>{
             {1, "vtx[0:3] vtx[5:8]"}, {2, "vtx[0:8]"}, {3, "vtx[4]"}, {4, "vtx[3] vtx[5]"}}) {
        set("boundary", mode);
        EXPECT_EQ(selected(), result);
    }
    set("componentType", kMap);
    EXPECT_EQ(selected(), "map[109]") << "UVs have no boundary";
    run("nurbsPlane -d 1 -u 2 -v 2 -n sheet");
    connect("sheetShape.worldSpace[0]");
    set("componentType", kSurface);
    set("boundary", 3);
    EXPECT_EQ(pattern("*"), "cv[1][1]");
    set("boundary", 0);
    EXPECT_EQ(pattern("0:3"), "cv[0][0:2] cv[1][0]");
    EXPECT_EQ(pattern(""), "cv[109][109]");
}

TEST_F(Group, AccumulatesOverTime) {
    text("resetFrames", "");
    EXPECT_EQ(pattern("0"), "vtx[0]");
    set("currentTime", 2);
    EXPECT_EQ(pattern("1"), "vtx[0:1]");
    text("resetFrames", "3 4.5");
    EXPECT_EQ(pattern("2"), "vtx[0:2]");
    run("setAttr g.initStateComponents -type \"componentList\" 1 \"vtx[6]\"");
    text("startFrames", "2 3");
    EXPECT_EQ(selected(), "vtx[0:2] vtx[6]");
    set("currentTime", 3);
    EXPECT_EQ(selected(), "vtx[2]") << "the reset wins over the start";
    run("setAttr g.currentTime 4.5");
    EXPECT_EQ(pattern("4"), "vtx[4]");
    text("resetFrames", "*");
    set("currentTime", 2);
    EXPECT_EQ(pattern("5"), "vtx[5]");
}

TEST_F(Group, ParticlesAreIds) {
    run("createNode transform -n cloud; createNode particle -n cloudShape -p cloud;"
        "setAttr cloudShape.position -type \"vectorArray\" 1 0 1 0");
    set("componentType", kParticle);
    connect("cloudShape.position");
    EXPECT_EQ((text("pattern", "*"), ints("g.outComponents")), (std::vector<int>{0})) << "one, not three";
    EXPECT_EQ((text("pattern", ""), ints("g.outComponents")), (std::vector<int>{103}));
    run("setAttr cloudShape.position -type \"vectorArray\" 4 0 0 0 1 0 0 1 1 0 0 1 0");
    set("operation", kNormal);
    run("setAttr -type \"vectorArray\" cloudShape.velocity 3 0 2 0 1 0 0 0 1 0");
    EXPECT_EQ(ints("g.outComponents"), (std::vector<int>{0, 2, 3}))
        << "upwards; one without a velocity is at no angle to anything";
    EXPECT_EQ(mel("size(`getAttr g.outGeometry`)"), "12");
}

TEST_F(Group, BadInputsAreToldAndHarmNothing) {
    text("uvSet", "nowhere");
    set("componentType", kMap);
    EXPECT_EQ(pattern("*"), "map[0:7]") << "as many as there are vertices";
    expectWarning("Cannot find uvSet named \"nowhere\".");
    set("componentType", kSurface);
    run("sphere -n globe; setAttr -type \"string\" g.uvSet \"\"");
    connect("globeShape.worldSpace[0]");
    EXPECT_EQ(pattern("*"), "");
    expectWarning("Geometry at the input is a periodic nurbs surface. Rebuild using the \"End Conditions\" / "
                  "\"Multiple Knots\" options.");
    run("createNode createArray -n some; setAttr some.outputType 4; setAttr some.length 4; disconnectAttr "
        "globeShape.worldSpace[0] g.inGeometry; connectAttr some.outArray g.inGeometry");
    (void)selected();
    expectWarning(
        "Cannot find particle shape node on the input. Please supply velocity data to the inVelocityPP "
        "attribute.");
}

TEST_F(Group, TheSelectionGoesIntoAnObjectGroup) {
    run("createNode objGrpToCompList -n read; connectAttr g.outGeometry read.inGeometry; setAttr "
        "read.groupId 3;"
        "setAttr g.outputObjectGroup 1; setAttr g.groupId 3");
    text("pattern", "1:2");
    EXPECT_EQ(mel("stringArrayToString(`getAttr read.outComponents`, \" \")"), "vtx[1:2]");
    set("nodeState", 1);
    input("1 \"vtx[4]\"");
    EXPECT_EQ(selected(), "vtx[4]") << "without effect the input goes on";
    EXPECT_EQ(mel("size(`getAttr read.outComponents`)"), "0");
}

} // namespace vesk::tests
