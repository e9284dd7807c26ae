#include "nodes/pointCloudToMesh/cloudMesh.h"
#include "tests/session_fixture.h"

#include <cmath>

namespace vesk::nodes {
namespace {

class PointCloudToMesh : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("createNode pointCloudToMesh -n c; createNode pointAttributeToArray -n p; connectAttr c.outMesh "
            "p.inGeometry;"
            "setAttr p.pointPosition 1; setAttr p.pointNormal 1; setAttr p.pointColor 1; setAttr p.mapData "
            "1;");
    }
    void setGrid() {
        run("setAttr c.meshType 2; setAttr c.columns 3;"
            "setAttr c.inPositionPP -type \"vectorArray\" 6 0 0 0 1 0 0 2 0 0 0 1 0 1 1 0 2 1 0;");
    }
};

TEST_F(PointCloudToMesh, GridsKeepPointsAndTakeTheirAttributes) {
    setGrid();
    EXPECT_EQ(floats("p.outPositionPP"),
              (std::vector<double>{0, 0, 0, 1, 0, 0, 2, 0, 0, 0, 1, 0, 1, 1, 0, 2, 1, 0}));
    EXPECT_EQ(floats("p.outMapPP"), (std::vector<double>{0, 0, 0.5, 0, 1, 0, 0, 1, 0.5, 1, 1, 1}));
    auto normals = floats("p.outNormalPP");
    expectNear({normals[0], normals[1], normals[2]}, {0, 0, 1});
    EXPECT_EQ(floats("p.outRgbaPP"), std::vector<double>(24, 0.0)) << "no colour";
    run("setAttr c.inNormalPP -type \"vectorArray\" 6 1 0 0 1 0 0 1 0 0 1 0 0 1 0 0 1 0 0;"
        "setAttr c.inRgbaPP -type \"doubleArray\" 24 .5 0 0 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 .25 0 1;"
        "setAttr c.inMapPP -type \"doubleArray\" 12 5 6 0 0 0 0 0 0 0 0 7 8; setAttr p.averagedNormals 0;");
    normals = floats("p.outNormalPP");
    expectNear({normals[0], normals[1], normals[2]}, {1, 0, 0});
    const auto colors = floats("p.outRgbaPP"), map = floats("p.outMapPP");
    expectNear({colors[0], colors[3], colors[21], colors[23]}, {0.5, 1, 0.25, 1});
    expectNear({map[0], map[1], map[10], map[11]}, {5, 6, 7, 8});
}

TEST_F(PointCloudToMesh, CardsFaceTheirNormals) {
    run("setAttr c.inPositionPP -type \"vectorArray\" 2 0 0 0 10 0 0; setAttr c.cardSize 2;");
    EXPECT_EQ(floats("p.outPositionPP"), (std::vector<double>{-1, -1, 0, 1,  -1, 0, 1,  1, 0, -1, 1, 0,
                                                              9,  -1, 0, 11, -1, 0, 11, 1, 0, 9,  1, 0}));
    EXPECT_EQ(floats("p.outMapPP"), (std::vector<double>{0, 0, 1, 0, 1, 1, 0, 1, 0, 0, 1, 0, 1, 1, 0, 1}));
    run("setAttr c.inNormalPP -type \"vectorArray\" 2 5 0 0 0 0 -1; setAttr c.inMapPP -type \"doubleArray\" "
        "4 .5 .5 .25 1;"
        "setAttr c.inRgbaPP -type \"doubleArray\" 8 1 0 0 1 0 0 1 1;");
    const auto normals = floats("p.outNormalPP"), map = floats("p.outMapPP"), colors = floats("p.outRgbaPP");
    expectNear({normals[0], normals[1], normals[2], normals[12], normals[13], normals[14]},
               {1, 0, 0, 0, 0, -1});
    expectNear({map[6], map[7], map[8], map[9]}, {0.5, 0.5, 0.25, 1});
    expectNear({colors[12], colors[16], colors[18]}, {1, 0, 1});
}

TEST_F(PointCloudToMesh, WrongLengthsAreLeftAloneAndLeftoversAreTold) {
    setGrid();
    run("setAttr c.inNormalPP -type \"vectorArray\" 1 1 0 0; setAttr c.inRgbaPP -type \"doubleArray\" 6 1 1 "
        "1 1 1 1;"
        "setAttr c.inMapPP -type \"doubleArray\" 6 1 1 1 1 1 1;");
    EXPECT_EQ(floats("p.outPositionPP").size(), 18U);
    EXPECT_EQ(complaints(), (Texts{"warning: c: inNormalPP array length does not match the point count.",
                                   "warning: c: inRgbaPP array length does not match the point count.",
                                   "warning: c: inMapPP array length does not match the point count."}));
    run("setAttr c.inNormalPP -type \"vectorArray\" 0; setAttr c.inRgbaPP -type \"doubleArray\" 0;"
        "setAttr c.inMapPP -type \"doubleArray\" 0; setAttr c.meshType 1; setAttr c.polygonSize 4;");
    EXPECT_EQ(floats("p.outPositionPP").size(), 18U) << "all points are there";
    EXPECT_TRUE(floats("p.outMapPP").empty());
    EXPECT_EQ(complaints(),
              Texts{"warning: c: The point count does not fill the last face or row. The last points have "
                    "no face."});
    run("setAttr c.meshType 0; setAttr c.inPositionPP -type \"vectorArray\" 0;");
    EXPECT_TRUE(floats("p.outPositionPP").empty());
    run("setAttr c.nodeState 2; setAttr c.inPositionPP -type \"vectorArray\" 1 0 0 0;");
    EXPECT_TRUE(floats("p.outPositionPP").empty());
}

TEST(CloudMesh, Faces) {
    EXPECT_EQ(gridFaces(6, 3).connects, (std::vector<int>{0, 1, 4, 3, 1, 2, 5, 4}));
    EXPECT_EQ(gridFaces(7, 3).pointsLeft, 1U);
    EXPECT_EQ(gridFaces(5, 3).pointsLeft, 5U) << "one row makes no face";
    EXPECT_EQ(gridFaces(4, -3).connects, (std::vector<int>{0, 1, 3, 2}));
    EXPECT_EQ(consecutiveFaces(7, 3).counts, (std::vector<int>{3, 3}));
    EXPECT_EQ(consecutiveFaces(7, 3).pointsLeft, 1U);
    EXPECT_EQ(consecutiveFaces(3, 0).connects, (std::vector<int>{0, 1, 2}));
    EXPECT_TRUE(consecutiveFaces(0, 3).counts.empty());
    EXPECT_EQ(cardFaces(2).counts, (std::vector<int>{4, 4}));
}

TEST(CloudMesh, CardsOfUprightAndBrokenNormals) {
    const double nan = std::nan("");
    const MVector points[] = {{0, 0, 0}, {nan, 0, 0}, {0, 0, 0}, {0, 0, 0}};
    const MVector normals[] = {{0, 3, 0}, {0, 0, 1}, {nan, 0, 1}, {0, 0, 0}};
    const auto corners = cardCorners(points, normals, 2);
    // Upright: up is z, and to the right of it, seen from above, -x.
    EXPECT_EQ(corners[0], MVector(1, 0, -1));
    EXPECT_EQ(corners[2], MVector(-1, 0, 1));
    EXPECT_TRUE(std::isnan(corners[4].x));
    EXPECT_EQ(corners[4].y, -1);
    EXPECT_EQ(corners[8], MVector(-1, -1, 0));
    EXPECT_EQ(corners[12], MVector(-1, -1, 0));
}

} // namespace
} // namespace vesk::nodes
