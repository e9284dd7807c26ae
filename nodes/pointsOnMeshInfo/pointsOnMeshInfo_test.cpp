#include "tests/session_fixture.h"

#include <cmath>

namespace vesk::nodes {
namespace {

class PointsOnMeshInfo : public tests::PluginTest {
  protected:
    /// A sheet of 4 by 2, two faces of 2 by 2 side by side along x.
    void SetUp() override {
        PluginTest::SetUp();
        run("polyPlane -sx 2 -sy 1 -w 4 -h 2 -n sheet; createNode pointsOnMeshInfo -n i;"
            "connectAttr sheetShape.worldMesh[0] i.inMesh;"
            "setAttr i.inPositionPP -type \"vectorArray\" 3 -1 5 0.5 9 -1 0 1 0 0;");
    }
};

TEST_F(PointsOnMeshInfo, PositionNormalUvFaceAndTriangle) {
    expectNear(floats("i.outPositionPP"), {-1, 0, 0.5, 2, 0, 0, 1, 0, 0});
    expectNear(floats("i.outNormalPP"), {0, 1, 0, 0, 1, 0, 0, 1, 0});
    // u runs along x, v against z.
    expectNear(floats("i.outUvPP"), {0.25, 0.25, 1, 0.5, 0.75, 0.5});
    EXPECT_EQ(ints("i.outFaceIdPP"), (std::vector<int>{0, 1, 1}));
    // Quads part into (0, 1, 2), the half to the right, and (0, 2, 3); on the diagonal the first counts.
    EXPECT_EQ(ints("i.outTriangleIdPP"), (std::vector<int>{0, 0, 0}));
    run("setAttr i.inPositionPP -type \"vectorArray\" 1 -1 0 -0.5");
    EXPECT_EQ(ints("i.outTriangleIdPP"), std::vector<int>{1});
}

TEST_F(PointsOnMeshInfo, SpacesAndNormals) {
    run("setAttr sheet.translateY 3; setAttr sheet.rotateX 90;");
    // Turned about x, its face looks along z and its own z runs down.
    expectNear(floats("i.outPositionPP"), {-1, 4, 0, 2, 2, 0, 1, 2, 0});
    expectNear(floats("i.outNormalPP"), {0, 0, 1, 0, 0, 1, 0, 0, 1});
    run("setAttr i.coordinateSystem 1");
    expectNear(floats("i.outPositionPP"), {-1, 0, 0.5, 2, 0, 0, 1, 0, 0});
    // On the edge of a cube: between the faces, or that of the lower one.
    run("polyCube -n box; connectAttr -f boxShape.outMesh i.inMesh;"
        "setAttr i.inPositionPP -type \"vectorArray\" 1 0 3 3;");
    const double s = std::sqrt(0.5);
    expectNear(floats("i.outNormalPP"), {0, s, s});
    EXPECT_EQ(ints("i.outFaceIdPP"), std::vector<int>{0});
    run("setAttr i.averagedNormals 0");
    expectNear(floats("i.outNormalPP"), {0, 0, 1});
}

TEST_F(PointsOnMeshInfo, WhatIsMissingIsEmptyOrZero) {
    run("setAttr -type \"string\" i.uvSet \"other\"");
    EXPECT_EQ(floats("i.outUvPP"), std::vector<double>(6, 0.0));
    EXPECT_EQ(floats("i.outPositionPP").size(), 9U);
    EXPECT_EQ(complaints(), Texts{"warning: i: Cannot find uvSet named \"other\"."});
    run("setAttr -type \"string\" i.uvSet \"\"; setAttr i.inPositionPP -type \"vectorArray\" 0;");
    EXPECT_TRUE(floats("i.outPositionPP").empty());
    run("setAttr i.inPositionPP -type \"pointArray\" 1 1 5 0 9");
    expectNear(floats("i.outPositionPP"), {1, 0, 0});
    run("setAttr i.nodeState 2; setAttr i.inPositionPP -type \"vectorArray\" 2 0 0 0 0 0 0;");
    expectNear(floats("i.outPositionPP"), {1, 0, 0});
    run("setAttr i.nodeState 0; disconnectAttr sheetShape.worldMesh[0] i.inMesh;");
    EXPECT_TRUE(floats("i.outPositionPP").empty());
    EXPECT_TRUE(ints("i.outFaceIdPP").empty());
}

} // namespace
} // namespace vesk::nodes
