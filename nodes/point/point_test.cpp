#include "tests/session_fixture.h"

#include <maya/MColorArray.h>
#include <maya/MFloatArray.h>
#include <maya/MFnGeometryData.h>
#include <maya/MFnMesh.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MPlug.h>
#include <maya/MPoint.h>
#include <maya/MPointArray.h>
#include <maya/MSelectionList.h>
#include <maya/MVector.h>

#include <cmath>

namespace vesk::nodes {
namespace {

/// The node `p` on a square of four vertices: (-1,0,1) (1,0,1) (-1,0,-1) (1,0,-1), with the UVs (0,0) (1,0)
/// (0,1) (1,1) and normals straight up.
class Point : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("polyPlane -w 2 -h 2 -sx 1 -sy 1 -n g; createNode point -n p;"
            "connectAttr gShape.worldMesh[0] p.inGeometry;");
    }

    /// Switches a block on, with this text.
    void block(const std::string& channel, const std::string& text) {
        run("setAttr p.enable" + channel + " 1");
        set("string" + channel, text);
    }
    void set(const std::string& attribute, const std::string& text) {
        run("setAttr -type \"string\" p." + attribute + " \"" + text + "\"");
    }
    void expectEmpty(const std::vector<std::string>& outputs) {
        for (const auto& one : outputs)
            EXPECT_EQ(run("size(`getAttr p." + one + "`)").asInt(), 0) << one;
    }
    static MObject output() {
        MSelectionList list;
        list.add("p.outGeometry");
        MPlug plug;
        list.getPlug(0, plug);
        MObject data;
        plug.getValue(data);
        return data;
    }
    /// The points of the mesh that comes out.
    static std::vector<double> shown() {
        MPointArray points;
        MFnMesh(output()).getPoints(points);
        std::vector<double> all;
        for (unsigned i = 0; i < points.length(); ++i)
            all.insert(all.end(), {points[i].x, points[i].y, points[i].z});
        return all;
    }
    static std::vector<double> shownColor(unsigned vertex) {
        MColorArray colors;
        MFnMesh(output()).getVertexColors(colors);
        return {static_cast<double>(colors[vertex].r), static_cast<double>(colors[vertex].a)};
    }
    static std::vector<double> shownUv(unsigned id) {
        MFloatArray us, vs;
        MFnMesh(output()).getUVs(us, vs);
        return {static_cast<double>(us[id]), static_cast<double>(vs[id])};
    }

    const std::vector<double> flat = {-1, 0, 1, 1, 0, 1, -1, 0, -1, 1, 0, -1};
};

TEST_F(Point, PositionBlockMovesTheChosenPoints) {
    block("Position", "$Y=$i*10+$ID;$Z=$FF;");
    run("setAttr p.useComponents 1; setAttr p.currentTime 0.5;"
        "setAttr p.inComponents -type \"componentList\" 2 \"vtx[1:9]\" \"f[0]\";");
    const std::vector<double> moved = {-1, 0, 1, 1, 1, 0.5, -1, 12, 0.5, 1, 23, 0.5};
    expectNear(floats("p.outPositionPP"), moved);
    EXPECT_EQ(ints("p.outIdPP"), (std::vector<int>{1, 2, 3})) << "ids without a point are left out";
    expectNear(shown(), moved);
    EXPECT_EQ(floats("p.outPositionPP2").size(), 16U) << "four numbers a point";
    run("setAttr p.applyChangesPosition 0");
    expectNear(floats("p.outPositionPP"), moved);
    expectNear(shown(), flat);
    run("setAttr p.inComponents -type \"componentList\" 1 \"f[0]\"");
    expectNear(floats("p.outPositionPP"), flat);
    expectEmpty({"outIdPP"});
    run("createNode groupParts -n parts; setAttr parts.groupId 4;"
        "setAttr parts.inputComponents -type \"componentList\" 1 \"vtx[2]\";"
        "connectAttr gShape.worldMesh[0] parts.inputGeometry;"
        "connectAttr -f parts.outputGeometry p.inGeometry; setAttr p.useComponents 2; setAttr p.groupId 5;");
    expectEmpty({"outIdPP"});
    run("setAttr p.groupId 4");
    EXPECT_EQ(ints("p.outIdPP"), std::vector<int>{2});
    EXPECT_TRUE(MFnGeometryData(output()).hasObjectGroup(4)) << "goes on with the geometry";
}

TEST_F(Point, BlocksThatReadAndSetNothing) {
    block("Position", "");
    block("Weight", "$Z=7;$R=2;");
    set("stringStartBlock", "$W=9;$MAPU=9;");
    expectNear(floats("p.outPositionPP"), flat);
    expectNear(floats("p.outWeightPP"), {0, 0, 0, 0});
    // A variable that is only set now and then keeps its value.
    set("stringWeight", "if ($i==1) $W2=$ID+5; $W=$W2;");
    expectNear(floats("p.outWeightPP"), {0, 6, 6, 6});
}

TEST_F(Point, WeightAndRadiusStartFromTheInputsAndFillUp) {
    run("setAttr p.inWeightPP -type \"doubleArray\" 2 0.25 0.5;"
        "setAttr p.inRadiusPP -type \"doubleArray\" 5 1 2 3 4 5;"
        "setAttr p.inWeightPP2 -type \"doubleArray\" 4 1 2 3 4; setAttr p.useComponents 1;"
        "setAttr p.inComponents -type \"componentList\" 1 \"vtx[1:2]\";");
    block("Weight", "$W=$WEIGHT+$WEIGHT2*10;");
    block("Radius", "$R=$R*10+$RADIUS2;");
    expectNear(floats("p.outWeightPP"), {0.25, 20.5, 30, 0});
    expectNear(floats("p.outRadiusPP"), {1, 20, 30, 4});
    expectNear(shown(), flat);
}

TEST_F(Point, ColoursGoIntoTheCurrentSet) {
    run("delete -ch g; polyColorPerVertex -rgb 0.25 0.5 0.75 -a 0.5 g.vtx[3];");
    block("Color", "$R=$CR+$ID*0.125;$A=$ALPHA*0.5;");
    expectNear(floats("p.outRgbaPP"),
               {0, 0, 0, 0.5, 0.125, 0, 0, 0.5, 0.25, 0, 0, 0.5, 0.625, 0.5, 0.75, 0.25});
    expectNear(shownColor(3), {0.625, 0.25});
    run("setAttr p.applyChangesColor 0");
    expectNear(shownColor(3), {0.25, 0.5});
    set("colorSet", "none");
    expectNear(floats("p.outRgbaPP"), {0, 0, 0, 0.5, 0.125, 0, 0, 0.5, 0.25, 0, 0, 0.5, 0.375, 0, 0, 0.5});
}

TEST_F(Point, NormalsOfTheMeshOrOfAnArray) {
    block("Normal", "$X=$NX+$i;$Y=$NY*2;$Z=0;");
    expectNear(floats("p.outNormalPP"), {0, 2, 0, 1, 2, 0, 2, 2, 0, 3, 2, 0});
    MVector normal;
    MFnMesh(output()).getFaceVertexNormal(0, 1, normal);
    expectNear({normal.x, normal.y, normal.z}, {1, 2, 0});
    run("createNode network -n n; addAttr -ln v -dt vectorArray n;"
        "setAttr n.v -type \"vectorArray\" 2 1 0 0 0 0 1; connectAttr n.v p.inNormalPP;");
    set("stringNormal", "");
    expectNear(floats("p.outNormalPP"), {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(complaints(), Texts{"warning: p: inNormalPP has length different than the number of points of "
                                  "inGeometry."});
    run("setAttr p.enableNormal 0; setAttr p.enableMap 1;");
    expectEmpty({"outNormalPP", "outNormalPP2"});
    EXPECT_EQ(floats("p.outMapPP").size(), 8U);
    EXPECT_EQ(complaints().size(), 1U) << "once an evaluation";
}

TEST_F(Point, MapBlockRunsOverTheUvsOfTheChosenVertices) {
    run("polyCube -n c; connectAttr -f cShape.worldMesh[0] p.inGeometry; setAttr p.useComponents 1;"
        "setAttr p.inComponents -type \"componentList\" 1 \"vtx[1:2]\";");
    block("Map", "$U=$MAPU+$MP;$V=$ID;");
    // Vertex 1 has two UVs at a seam, (0.625, 0) and (0.625, 1); vertex 2 has one, (0.375, 0.25).
    EXPECT_EQ(ints("p.outIdForMapPP"), (std::vector<int>{1, 1, 2}));
    const auto ids = ints("p.outIdPM");
    EXPECT_EQ(ids[2], 2);
    expectNear(floats("p.outMapPP"), {0.625, 1, 1.625, 1, 2.375, 2});
    const auto shared = floats("p.outSharedMapPP");
    ASSERT_EQ(shared.size(), 16U);
    expectNear({shared[2], shared[3], shared[4], shared[5]}, {shared[2], 1, 2.375, 2});
    expectNear(shownUv(2), {2.375, 2});
    run("setAttr p.applyChangesMap 0");
    expectNear(shownUv(2), {0.375, 0.25});
    set("uvSet", "none");
    expectEmpty({"outMapPP", "outIdPM"});
}

TEST_F(Point, SecondGeometryIsReadBesideTheFirst) {
    block("Position", "$X=$TX2;$Y=$NY2+$MAPU2+$CR2;$Z=$TZ2;");
    expectNear(floats("p.outPositionPP"), {-1, 1, 1, 1, 2, 1, -1, 1, -1, 1, 2, -1});
    run("polyPlane -w 4 -h 4 -sx 1 -sy 1 -n h; delete -ch h; polyColorPerVertex -rgb 0.5 0 0 h.vtx[3];"
        "setAttr h.translateY 3; connectAttr hShape.worldMesh[0] p.inGeometry2;");
    expectNear(floats("p.outPositionPP"), {-2, 1, 2, 2, 2, 2, -2, 1, -2, 2, 2.5, -2});
    run("sphere -n s; connectAttr -f sShape.worldSpace[0] p.inGeometry2;");
    (void)floats("p.outPositionPP");
    EXPECT_EQ(complaints(), Texts{"warning: p: inGeometry2 is periodic nurbs surface. Rebuild using \"End "
                                  "Conditions\" / \"Multiple Knots\" options."});
}

TEST_F(Point, BlocksThatReturnTooLittleOrTooMuch) {
    block("Position", "$Y=5;");
    block("Weight", "$W=2;");
    for (const std::string end : {"clear($OUTPUT);", "$OUTPUT[12]=1;", "return {1.0};"}) {
        set("stringEndBlock", "if (size($OUTPUT) > 4) {" + end + "}");
        expectEmpty({"outPositionPP"});
        expectNear(shown(), flat);
        expectNear(floats("p.outWeightPP"), {2, 2, 2, 2});
    }
    run("setAttr p.enablePosition 0");
    set("stringWeight", "if ($i > 0) continue; $W=1;");
    expectEmpty({"outWeightPP"});
}

TEST_F(Point, ErrorsNameTheNodeTheBlockAndTheLine) {
    block("Weight", "$W=1;");
    block("Position", "$Y=1;\\n$X=nope($Y);");
    expectEmpty({"outPositionPP"});
    expectNear(floats("p.outWeightPP"), {1, 1, 1, 1});
    expectNear(shown(), flat);
    // The default start block has five lines and its ";": the position block begins in line 25.
    EXPECT_EQ(complaints(),
              (Texts{"error: line 26: Cannot find procedure \"nope\".",
                     "warning: p: stringPosition, line 2 (line 26 of position_POINT): Cannot find procedure "
                     "\"nope\"."}));
    // The procedure of before is not called when the new text cannot be read.
    set("stringPosition", "$Y=1;\\n\\n$Y=;");
    expectEmpty({"outPositionPP"});
    auto texts = complaints();
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_TRUE(texts[0].starts_with("error: line 27: Syntax error")) << texts[0];
    EXPECT_TRUE(texts[1].starts_with("warning: p: stringPosition, line 3 (line 27 of position_POINT): "))
        << texts[1];
    run("global proc float deep(float $x) {\n float $y = $x;\n return nope($y); }");
    set("stringPosition", "");
    set("stringStartBlock", "int $a;\\ndeep(1);");
    set("stringWeight", "");
    (void)floats("p.outPositionPP");
    texts = complaints();
    ASSERT_EQ(texts.size(), 4U) << "position and weight";
    EXPECT_TRUE(texts[1].starts_with("warning: p: stringStartBlock, line 2 (line 10 of position_POINT): "))
        << texts[1];
}

TEST_F(Point, WorldAndObjectSpace) {
    run("setAttr g.translateY 2; setAttr g.rotateZ 90;");
    block("Position", "$Y=$Y+1;");
    block("Normal", "");
    // A quarter turn about z takes (x, y, z) to (-y, x, z).
    expectNear(shown(), {0, 2, 1, 0, 4, 1, 0, 2, -1, 0, 4, -1});
    auto normals = floats("p.outNormalPP");
    expectNear({normals[0], normals[1], normals[2]}, {-1, 0, 0});
    run("setAttr p.coordinateSystem 1");
    expectNear(shown(), {-1, 1, 1, 1, 1, 1, -1, 1, -1, 1, 1, -1});
    normals = floats("p.outNormalPP");
    expectNear({normals[0], normals[1], normals[2]}, {0, 1, 0});
}

TEST_F(Point, CurvesAndSurfacesByTheirCvs) {
    run("curve -d 3 -p 0 0 0 -p 1 2 0 -p 3 2 0 -p 4 0 0 -n k; setAttr k.rotateZ 90;"
        "connectAttr -f kShape.worldSpace[0] p.inGeometry;"
        "setAttr p.inRgbaPP -type \"doubleArray\" 7 1 2 3 4 5 6 7; setAttr p.coordinateSystem 1;");
    block("Position", "$Z=$ID*10;");
    block("Color", "");
    block("Normal", "");
    run("setAttr p.enableMap 1");
    expectNear(floats("p.outPositionPP"), {0, 0, 0, 1, 2, 10, 3, 2, 20, 4, 0, 30});
    expectNear(floats("p.outRgbaPP"), {1, 2, 3, 4, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1});
    EXPECT_EQ(floats("p.outSharedMapPP").size(), 8U);
    expectEmpty({"outMapPP", "outIdPM"});
    const auto normals = floats("p.outNormalPP");
    ASSERT_EQ(normals.size(), 12U);
    // The ribbon stands on the curve's plane: at the start its normal is square to (1, 2, 0), in that plane.
    EXPECT_NEAR(std::abs(normals[0]), 2 / std::sqrt(5.0), 1e-6);
    EXPECT_NEAR(normals[0] + 2 * normals[1], 0, 1e-6);
    EXPECT_NEAR(normals[2], 0, 1e-6);
    MPoint cv;
    MFnNurbsCurve(output()).getCV(3, cv);
    expectNear({cv.x, cv.y, cv.z}, {4, 0, 30});
    EXPECT_EQ(run("size(`ls -type nurbsTessellate -type extrude -type rebuildCurve`)").asInt(), 0);

    run("nurbsPlane -d 1 -u 2 -v 1 -n s; connectAttr -f sShape.worldSpace[0] p.inGeometry;"
        "setAttr p.useComponents 1; setAttr p.inComponents -type \"componentList\" 1 \"cv[1][0:1]\";");
    EXPECT_EQ(ints("p.outIdPP"), (std::vector<int>{2, 3}));
    const auto points = floats("p.outPositionPP");
    expectNear({points[5], points[8], points[11]}, {points[5], 20, 30});
    run("circle -n r; connectAttr -f rShape.worldSpace[0] p.inGeometry;");
    (void)floats("p.outPositionPP");
    EXPECT_EQ(complaints(), Texts{"warning: p: inGeometry is periodic nurbs surface. Rebuild using \"End "
                                  "Conditions\" / \"Multiple Knots\" options."});
}

TEST_F(Point, NodesThatEvaluateWithinABlockShareTheNames) {
    run("createNode point -n q; connectAttr gShape.worldMesh[0] q.inGeometry; setAttr q.enablePosition 1;"
        "setAttr -type \"string\" q.stringPosition \"$X=100;\";");
    set("stringStartBlock", "float $other[]=`getAttr q.outPositionPP`;");
    block("Position", "$X=$other[$ox]+$ID;");
    const auto points = floats("p.outPositionPP");
    expectNear({points[0], points[3], points[9]}, {100, 101, 103});
}

TEST_F(Point, StateGuardAndSwitches) {
    expectEmpty({"outPositionPP", "outIdPP", "outRgbaPP"});
    expectNear(shown(), flat);
    block("Position", "$Y=1;");
    EXPECT_EQ(ints("p.outIdPP").size(), 4U);
    run("setAttr p.nodeState 1; setAttr p.currentTime 1;");
    expectNear(shown(), flat);
    run("setAttr p.nodeState 2; setAttr -type \"string\" p.stringPosition \"$Y=3;\";");
    expectNear(shown(), flat);
    run("setAttr p.nodeState 0; setAttr p.currentTime 2;");
    EXPECT_EQ(shown()[1], 3);
    run("setAttr p.enablePosition 0");
    expectEmpty({"outPositionPP", "outPositionPP2", "outIdPP"});
    run("setAttr p.enablePosition 1; disconnectAttr gShape.worldMesh[0] p.inGeometry;");
    EXPECT_EQ(shown()[1], 3) << "without an input the output stays as it was";
}

} // namespace
} // namespace vesk::nodes
