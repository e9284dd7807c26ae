#include "nodes/bmesh/meshOutput.h"
#include "tests/session_fixture.h"

#include <maya/MFnMesh.h>
#include <maya/MIntArray.h>

namespace vesk::nodes {
namespace {

class Bmesh : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("createNode bmesh -n skin; setAttr skin.subdivisions 0; createNode mesh -n shape;"
            "connectAttr skin.outMesh shape.inMesh; createNode pointAttributeToArray -n points;"
            "setAttr points.pointPosition 1; connectAttr shape.outMesh points.inGeometry;");
    }

    /// A joint in world space, fed into an element of the skin unless that is negative.
    void joint(const std::string& name, const std::string& parent, const std::string& position, int element) {
        run("select -cl; joint -n " + name + " -p " + position);
        if (!parent.empty()) run("parent " + name + " " + parent);
        if (element < 0) return;
        const std::string to = " skin.inJoints[" + std::to_string(element) + "]";
        run("connectAttr " + name + ".worldMatrix[0]" + to + ".matrix; connectAttr " + name + ".radius" + to +
            ".radius;");
    }
    /// Root at the origin, tip 3 above it.
    void box() {
        joint("root", "", "0 0 0", 0);
        joint("tip", "root", "0 3 0", 1);
    }
    void expectCounts(int vertices, int faces) {
        EXPECT_EQ(run("polyEvaluate -v shape").asInt(), vertices);
        EXPECT_EQ(run("polyEvaluate -f shape").asInt(), faces);
    }
    void expectPoint(std::size_t vertex, const std::vector<double>& expected) {
        const auto all = floats("points.outPositionPP");
        ASSERT_GE(all.size(), 3 * vertex + 3);
        expectNear({all[3 * vertex], all[3 * vertex + 1], all[3 * vertex + 2]}, expected, 1e-5);
    }
};

TEST_F(Bmesh, JointsAndTheirRadiiMakeTheSkin) {
    joint("root", "", "1 2 3", 0);
    expectCounts(8, 6);
    expectPoint(0, {2, 3, 4});
    joint("tip", "root", "1 5 3", 1);
    expectCounts(16, 14);
    expectPoint(0, {2, 6, 4}); // the quad of the tip's cap comes first
    expectPoint(4, {2, 5, 4});
    run("setAttr tip.radius 0.5; setAttr root.translateX 0");
    expectPoint(0, {0.5, 5.5, 3.5});
    run("setAttr root.radius 0"); // is 0.001: then the gap of 2.499 is four times the sum of the radii
    expectCounts(16 + 4 * 4, 14 + 4 * 4);
}

TEST_F(Bmesh, ElementsAreMatchedWithTheHierarchy) {
    // Out of order, with a gap, and with a joint that is not below the root.
    joint("root", "", "0 0 0", 0);
    joint("middle", "root", "3 0 0", 7);
    joint("tip", "middle", "6 0 0", 2);
    joint("stranger", "", "0 -9 0", 1);
    expectCounts(20, 18);
    // Below a transform a new part begins: a cube of its own.
    run("createNode transform -n between -p root");
    joint("loose", "between", "0 9 9", 9);
    expectCounts(28, 24);
    // A joint that nothing names stands at the origin as a part of its own.
    joint("unnamed", "tip", "9 0 0", -1);
    run("setAttr tip.radius 1.1"); // the hierarchy alone dirties nothing
    expectCounts(20 + 8 + 8, 18 + 6 + 6);
    // The root becomes a branch of two arms: the second is a tip and four rings, the band between them four
    // quads.
    run("delete unnamed loose; parent stranger root");
    expectCounts(16 + 8 + 4 * 4, 13 + 5 + 4 * 4 + 4);
}

TEST_F(Bmesh, WithoutARootThereIsNothing) {
    joint("tip", "", "0 3 0", 1);
    EXPECT_EQ(mel("polyEvaluate -v shape"), "0");
    run("disconnectAttr skin.outMesh shape.inMesh");
    run("connectAttr tip.radius skin.inJoints[0].radius");
    EXPECT_EQ(mel("polyEvaluate -v shape"), "0");
}

TEST_F(Bmesh, OverlappingJointsGiveAWarningAndAnEmptyMesh) {
    box();
    joint("arm", "root", "3 0 0", 2);
    joint("hand", "arm", "0 3.001 0", 3);
    expectCounts(0, 0);
    EXPECT_EQ(complaints(), Texts{"warning: skin: Overlapping joints detected. This is a no-no situation."});
    run("setAttr hand.translateY 3.0011");
    EXPECT_GT(run("polyEvaluate -v shape").asInt(), 0);
}

TEST_F(Bmesh, UnusableJointsAreNamed) {
    box();
    run("setAttr tip.translateX 1e300");
    expectCounts(0, 0);
    EXPECT_EQ(complaints(),
              Texts{"warning: skin: The position or the radius of \"tip\" is not a finite number."});
    run("setAttr tip.translateX 3e38; setAttr root.radius 3e38;");
    expectCounts(0, 0);
    EXPECT_EQ(complaints(), Texts{"warning: skin: The joints are too far apart or too large."});
    run("setAttr tip.translateX 0; setAttr tip.translateY 3000; setAttr root.radius 0; setAttr tip.radius "
        "0;");
    EXPECT_EQ(run("polyEvaluate -v shape").asInt(), 16 + 4 * 100000);
    EXPECT_EQ(complaints(),
              Texts{"warning: skin: Radii are so small next to the distances that some bones get "
                    "fewer rings than they should."});
}

TEST_F(Bmesh, SmoothingAndSubdivisionHaveTheirLimits) {
    box();
    run("setAttr skin.smooth 1");
    // The corner (1, 4, 1), two more of the cap, and (1, 3, 1) below.
    expectPoint(0, {0.5, 3.75, 0.5});
    run("setAttr skin.smooth 3");
    const auto three = floats("points.outPositionPP");
    run("setAttr skin.smooth 5");
    EXPECT_EQ(floats("points.outPositionPP"), three);
    run("setAttr skin.smooth 0; setAttr skin.subdivisions 1");
    expectCounts(16 + 28 + 14, 14 * 4);
    expectPoint(16 + 28, {0, 4, 0});
    // Values beyond the limits can only come in by wire.
    run("createNode transform -n values; connectAttr values.translateX skin.subdivisions;"
        "connectAttr values.translateY skin.smooth;");
    for (const auto& [x, faces] : {std::pair(7, 14 * 64), std::pair(3, 14 * 64), std::pair(-1, 14)}) {
        run("setAttr values.translateX " + std::to_string(x) + "; setAttr values.translateY " +
            std::to_string(std::min(x, 0)));
        EXPECT_EQ(run("polyEvaluate -f shape").asInt(), faces) << x;
    }
    expectPoint(0, {1, 4, 1});
}

TEST_F(Bmesh, BlockingLeavesTheOutputAlone) {
    box();
    expectCounts(16, 14);
    run("setAttr skin.nodeState 2; setAttr tip.translateY 9");
    expectPoint(0, {1, 4, 1});
}

skin::SkinMesh skinWith(const QVector<skin::Float3>& points, const QVector<skin::Quad>& quads,
                        const QVector<skin::Triangle>& triangles) {
    skin::SkinMesh mesh;
    for (const auto& point : points)
        mesh.vertices.append(skin::SkinVertex{point, {}, {}});
    mesh.quads = quads;
    mesh.triangles = triangles;
    return mesh;
}

TEST(BmeshOutput, FacesThatFallTogetherLoseCornersOrAreLeftOut) {
    const QVector<skin::Float3> points{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 0}, {1, 0, 0}};
    const skin::Triangle gone{{{0}, {4}, {1}}}, kept{{{5}, {4}, {3}}};
    const skin::Quad flat{{{0}, {1}, {4}, {5}}}, three{{{0}, {1}, {2}, {4}}}, whole{{{0}, {1}, {2}, {3}}};
    const MObject data = weldedMesh(skinWith(points, {flat, three, whole}, {gone, kept}));
    const MFnMesh mesh(data);
    EXPECT_EQ(mesh.numVertices(), 4);
    ASSERT_EQ(mesh.numPolygons(), 3);
    EXPECT_EQ(mesh.polygonVertexCount(0), 3);
    EXPECT_EQ(mesh.polygonVertexCount(1), 4);
    MIntArray corners;
    mesh.getPolygonVertices(2, corners);
    EXPECT_EQ(corners[0], 1);
    EXPECT_EQ(corners[1], 0);
    EXPECT_EQ(corners[2], 3);
    EXPECT_TRUE(weldedMesh(skinWith(points, {flat}, {gone})).isNull());
}

} // namespace
} // namespace vesk::nodes
