#include "nodes/computeVelocity/velocities.h"
#include "tests/session_fixture.h"

#include <cmath>

namespace vesk::nodes {
namespace {

class ComputeVelocity : public tests::PluginTest {
  protected:
    /// A plane of four vertices that stands still up to frame 1, goes 1 along x a frame up to 25, then
    /// stands.
    void SetUp() override {
        PluginTest::SetUp();
        run("polyPlane -sx 1 -sy 1 -n board; createNode animCurveTL -n move; setAttr -s 2 move.ktv[0:1] 1 0 "
            "25 24;"
            "setAttr move.tangentType 2; connectAttr move.output board.translateX;"
            "createNode computeVelocity -n v; connectAttr boardShape.worldMesh[0] v.inGeometry;");
    }
    std::vector<double> at(double frame) {
        run("currentTime " + std::to_string(frame));
        return floats("v.outVelocityPP");
    }
    static std::vector<double> along(double x) { return {x, 0, 0, x, 0, 0, x, 0, 0, x, 0, 0}; }
};

TEST_F(ComputeVelocity, IsTheSameInWhateverOrderFramesAreAskedFor) {
    // 1 a frame is 24 a second. The curve stands still before its first key and behind its last one.
    for (const auto& [frame, speed] :
         {std::pair{11.0, 24.0}, {5, 24}, {1, 0}, {1.5, 12}, {40, 0}, {25.5, 12}, {11, 24}})
        expectNear(at(frame), along(speed), 1e-4);
    EXPECT_NEAR(run("getAttr board.translateX").asFloat(), 10, 1e-9) << "the scene is at its own frame";
    run("setAttr v.scale -0.5");
    expectNear(at(11), along(-12), 1e-4);
    run("setAttr v.coordinateSystem 1");
    expectNear(at(11), along(0));
}

TEST_F(ComputeVelocity, PointsOutsideTheSelectionHaveNone) {
    run("setAttr v.useComponents 1; setAttr v.inComponents -type \"componentList\" 1 \"vtx[2]\";");
    expectNear(at(11), {0, 0, 0, 0, 0, 0, 24, 0, 0, 0, 0, 0}, 1e-4);
    run("setAttr v.useComponents 2");
    expectNear(at(11), along(0));
}

TEST_F(ComputeVelocity, EnvelopeStateAndNoInput) {
    expectNear(at(11), along(24), 1e-4);
    run("setAttr v.nodeState 1; setAttr v.scale 3;");
    expectNear(at(11), along(24), 1e-4);
    run("setAttr v.nodeState 0; setAttr v.envelope 0;");
    EXPECT_TRUE(at(11).empty());
    run("setAttr v.envelope 1; disconnectAttr boardShape.worldMesh[0] v.inGeometry;");
    EXPECT_TRUE(at(11).empty());
}

TEST_F(ComputeVelocity, AChangedPointCountGivesZerosAndAWarning) {
    run("createNode polyPlane -n maker; connectAttr -f maker.output boardShape.inMesh; setAttr "
        "maker.subdivisionsHeight 1;"
        "createNode animCurveTU -n more; setAttr -s 2 more.ktv[0:1] 1 1 2 2; setAttr -s 2 more.kit[0:1] 5 5;"
        "setAttr -s 2 more.kot[0:1] 5 5; connectAttr more.output maker.subdivisionsWidth;");
    EXPECT_EQ(at(2), std::vector<double>(18, 0.0));
    EXPECT_EQ(complaints(),
              Texts{"warning: v: The point count is not that of the frame before. Velocities are zero."});
    EXPECT_EQ(at(3).size(), 18U);
    EXPECT_EQ(at(1).size(), 12U);
}

TEST_F(ComputeVelocity, CurvesSurfacesAndParticles) {
    run("curve -d 1 -p 0 0 0 -p 1 0 0 -n path; connectAttr move.output path.translateY;"
        "connectAttr -f pathShape.worldSpace[0] v.inGeometry;");
    expectNear(at(11), {0, 24, 0, 0, 24, 0}, 1e-4);
    run("setAttr v.useComponents 1; setAttr v.inComponents -type \"componentList\" 1 \"cv[0]\";");
    expectNear(at(11), {0, 24, 0, 0, 0, 0}, 1e-4);
    run("createNode transformsToArrays -n ta; connectAttr board.worldMatrix[0] ta.inTransforms[0].inMatrix;"
        "connectAttr path.worldMatrix[0] ta.inTransforms[1].inMatrix; connectAttr -f ta.outPositionPP "
        "v.inGeometry;"
        "setAttr v.inComponents -type \"Int32Array\" 3 1 -4 9;");
    expectNear(at(11), {0, 0, 0, 0, 24, 0}, 1e-4);
    run("setAttr v.useComponents 2");
    expectNear(at(11), {0, 0, 0, 0, 0, 0});
    EXPECT_EQ(
        complaints(),
        Texts{"warning: v: Object groups are not supported for particles. Use components list instead."});
}

TEST(Velocities, WhatIsNoNumberStaysWithItsPoint) {
    const MVector now[] = {{std::nan(""), 1, 1}, {2, 2, 2}}, before[] = {{0, 0, 0}, {1, 1, 1}};
    MVector out[2];
    velocities(now, before, 2, {}, out);
    EXPECT_TRUE(std::isnan(out[0].x));
    EXPECT_EQ(out[0].y, 2);
    EXPECT_EQ(out[1], MVector(2, 2, 2));
}

} // namespace
} // namespace vesk::nodes
