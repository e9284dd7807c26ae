#include "nodes/timeOffset/offsetPoints.h"
#include "tests/session_fixture.h"

#include <cmath>
#include <limits>

namespace vesk::nodes {
namespace {

class TimeOffset : public tests::PluginTest {
  protected:
    /// A plane of 2 by 2 that goes 1 along x a frame from frame 1 to 25, read by `p` behind the node.
    void SetUp() override {
        PluginTest::SetUp();
        run("polyPlane -sx 1 -sy 1 -w 2 -h 2 -n board; createNode animCurveTL -n move;"
            "setAttr -s 2 move.ktv[0:1] 1 0 25 24; setAttr move.tangentType 2;"
            "connectAttr move.output board.translateX; createNode timeOffset -n t;"
            "connectAttr boardShape.worldMesh[0] t.inGeometry; createNode pointAttributeToArray -n p;"
            "connectAttr t.outGeometry p.inGeometry; setAttr p.pointPosition 1;");
    }
    /// x of each point at a frame.
    std::vector<double> at(double frame) {
        run("currentTime " + std::to_string(frame));
        std::vector<double> xs;
        const auto all = floats("p.outPositionPP");
        for (std::size_t i = 0; i < all.size(); i += 3)
            xs.push_back(all[i]);
        return xs;
    }
};

TEST_F(TimeOffset, PointsLagByTheirWeightsInAnyOrderOfFrames) {
    expectNear(at(11), {9, 11, 9, 11});
    run("setAttr t.offset -4; setAttr t.inWeightPP -type \"doubleArray\" 4 0 1 0.5 0.125;");
    // Ways of 10, 6, 8 and 9.5; at frame 3 those before the first key stand still.
    const std::vector<double> late = {9, 7, 7, 10.5}, early = {1, 1, -1, 2.5};
    expectNear(at(11), late);
    expectNear(at(3), early);
    expectNear(at(11), late);
    expectNear(at(11.5), {9.5, 7.5, 7.5, 11}, 1e-5);
    run("setAttr t.offset 1");
    expectNear(at(24.5), {22.5, 25, 23, 24.625}, 1e-5);
}

TEST_F(TimeOffset, WithoutWeightsAndWithWrongOnes) {
    run("setAttr t.offset -2");
    expectNear(at(11), {7, 9, 7, 9});
    run("setAttr t.inWeightPP -type \"doubleArray\" 3 0 0 0");
    expectNear(at(11), {7, 9, 7, 9});
    EXPECT_EQ(complaints(), Texts{"warning: t: inWeightPP array length does not match the point count."});
}

TEST_F(TimeOffset, StatesEnvelopeAndSpaces) {
    run("setAttr t.offset -2; setAttr t.coordinateSystem 1;");
    expectNear(at(11), {9, 11, 9, 11}); // its own points stand still, and it keeps its matrix
    run("setAttr t.coordinateSystem 0; setAttr t.envelope 0;");
    expectNear(at(11), {9, 11, 9, 11});
    run("setAttr t.envelope 1; setAttr t.nodeState 1;");
    expectNear(at(11), {9, 11, 9, 11});
    run("setAttr t.nodeState 0");
    expectNear(at(11), {7, 9, 7, 9});
    run("setAttr t.nodeState 2; setAttr t.offset -5;");
    expectNear(at(11), {7, 9, 7, 9});
}

TEST_F(TimeOffset, ChainsOfTwoAddUpAndCurvesAndVectorsComeThrough) {
    run("createNode timeOffset -n second; setAttr t.offset -2; setAttr second.offset -3;"
        "connectAttr t.outGeometry second.inGeometry; connectAttr -f second.outGeometry p.inGeometry;");
    expectNear(at(11), {4, 6, 4, 6});
    run("sphere -ch 0 -n ball; connectAttr move.output ball.translateX; connectAttr -f "
        "ballShape.worldSpace[0] "
        "t.inGeometry; createNode computeVelocity -n v; connectAttr second.outGeometry v.inGeometry; "
        "currentTime 11;");
    const auto speeds = floats("v.outVelocityPP");
    ASSERT_GT(speeds.size(), 0U);
    for (std::size_t i = 0; i < speeds.size(); ++i)
        EXPECT_NEAR(speeds[i], i % 3 == 0 ? 24 : 0, 1e-9);
    run("createNode transformsToArrays -n ta; connectAttr board.worldMatrix[0] ta.inTransforms[0].inMatrix;"
        "connectAttr -f ta.outPositionPP t.inGeometry;");
    expectNear(at(11), {5});
}

TEST_F(TimeOffset, AChangingPointCountLeavesPointsWhereTheyAre) {
    run("createNode polyPlane -n maker; connectAttr -f maker.output boardShape.inMesh; setAttr "
        "maker.subdivisionsHeight 1;"
        "createNode animCurveTU -n more; setAttr -s 2 more.ktv[0:1] 1 1 9 2; setAttr -s 2 more.kot[0:1] 5 5;"
        "connectAttr more.output maker.subdivisionsWidth; setAttr t.offset -2;");
    expectNear(at(10), {8.5, 9, 9.5, 8.5, 9, 9.5});
    EXPECT_EQ(complaints(),
              Texts{"warning: t: The point count changes over time. Points stay where it is another one."});
    expectNear(at(11), {7.5, 8, 8.5, 7.5, 8, 8.5});
}

TEST(OffsetPoints, AsksOnceForEachFrameAndKeepsWithinReach) {
    const double nan = std::nan(""), infinity = std::numeric_limits<double>::infinity();
    const double weights[] = {0, nan, infinity, -2000, 0.5, 1, 2};
    const auto frames = offsetFrames(100, 1, weights, 7);
    EXPECT_EQ(frames,
              (std::vector<double>{100, 100, 100 + kFarthestOffset, 100 - kFarthestOffset, 100.5, 101, 102}));
    EXPECT_EQ(offsetFrames(5, -kFarthestOffset - 1, {}, 1), std::vector<double>{5 - kFarthestOffset});
    std::vector<MVector> points(7, MVector(-1, 0, 0));
    std::vector<double> asked;
    EXPECT_TRUE(offsetPoints(frames, 100, points, [&](double frame) {
        asked.push_back(frame);
        return MVectorArray(7, MVector(frame, frame == 102 ? nan : 0, 0));
    }));
    EXPECT_EQ(asked, (std::vector<double>{-900, 100, 101, 102, 1100}));
    EXPECT_EQ(points[0].x, -1);
    EXPECT_EQ(points[1].x, -1) << "no number: it stays";
    EXPECT_EQ(points[3].x, -900);
    EXPECT_EQ(points[4], MVector(100.5, 0, 0));
    EXPECT_EQ(points[5], MVector(101, 0, 0)) << "a whole frame does not mix with the next";
    EXPECT_TRUE(std::isnan(points[6].y));
}

} // namespace
} // namespace vesk::nodes
