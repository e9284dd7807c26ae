#include "nodes/transformsToArrays/placement.h"
#include "tests/session_fixture.h"

#include <cmath>

namespace vesk::nodes {
namespace {

class TransformsToArrays : public tests::PluginTest {};

TEST_F(TransformsToArrays, ReadsElementsByIndexWithGaps) {
    run("createNode transformsToArrays -n ta; spaceLocator -n a; spaceLocator -n b; parent b a;"
        "setAttr a.t 1 2 3; setAttr b.t 10 0 0; setAttr b.r 10 20 30; setAttr b.s 1 2 4; setAttr "
        "b.rotateOrder 2;"
        "connectAttr b.worldMatrix[0] ta.inTransforms[2].inMatrix;"
        "connectAttr b.rotateOrder ta.inTransforms[2].inRotateOrder;"
        "connectAttr a.worldMatrix[0] ta.inTransforms[7].inMatrix;"
        "setAttr ta.inTransforms[2].inWeight 0.25; setAttr ta.inTransforms[2].inRadius 3;"
        "setAttr ta.inTransforms[7].inColor 0.5 0.25 0.125; setAttr ta.inTransforms[7].inAlpha 0.5;");
    expectNear(floats("ta.outPositionPP"), {11, 2, 3, 1, 2, 3});
    expectNear(floats("ta.outRotationPP"), {10, 20, 30, 0, 0, 0});
    expectNear(floats("ta.outScalePP"), {1, 2, 4, 1, 1, 1});
    EXPECT_EQ(floats("ta.outWeightPP"), (std::vector<double>{0.25, 1}));
    EXPECT_EQ(floats("ta.outRadiusPP"), (std::vector<double>{3, 1}));
    EXPECT_EQ(floats("ta.outRgbaPP"), (std::vector<double>{1, 1, 1, 1, 0.5, 0.25, 0.125, 0.5}));
    run("setAttr a.translateX -4; setAttr ta.inTransforms[2].inRadius 5;");
    expectNear(floats("ta.outPositionPP"), {6, 2, 3, -4, 2, 3});
    EXPECT_EQ(floats("ta.outRadiusPP")[0], 5);
    run("removeMultiInstance -b 1 ta.inTransforms[2]");
    expectNear(floats("ta.outPositionPP"), {-4, 2, 3});
}

TEST_F(TransformsToArrays, NothingConnectedAndBlocking) {
    run("createNode transformsToArrays -n ta");
    for (const char* output :
         {"outPositionPP", "outRotationPP", "outScalePP", "outWeightPP", "outRgbaPP", "outRadiusPP"})
        EXPECT_TRUE(floats("ta." + std::string(output)).empty()) << output;
    run("setAttr ta.nodeState 2; setAttr ta.inTransforms[0].inWeight 2;");
    EXPECT_TRUE(floats("ta.outWeightPP").empty());
    const auto refused =
        session->run("polyCube -n box; connectAttr box.translateX ta.inTransforms[0].inMatrix;");
    EXPECT_FALSE(refused.ok);
    EXPECT_NE(refused.error.find("ta.inTransforms[0].inMatrix"), std::string::npos) << refused.error;
    (void)complaints();
}

TEST(Placement, OrderShearMirrorsAndFlatMatrices) {
    // A quarter turn about z after one about x: rows x to y, y to z, z to x. As xyz that is (90, 0, 90).
    MMatrix turned;
    const double rows[3][3] = {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}};
    for (unsigned r = 0; r < 3; ++r) {
        for (unsigned c = 0; c < 3; ++c)
            turned[r][c] = rows[r][c];
    }
    EXPECT_TRUE(placementOf(turned, 0).rotation.isEquivalent(MVector(90, 0, 90), 1e-9));
    // First z, then x: a turn of z about -y, or 90 about y behind 90 about z: zxy holds y last.
    const MVector other = placementOf(turned, 5).rotation;
    EXPECT_FALSE(other.isEquivalent(MVector(90, 0, 90), 1e-3)) << "the order counts";
    EXPECT_EQ(placementOf(turned, 99).rotation, other) << "beyond the last order: the last";
    MMatrix flat;
    flat[1][1] = 0;
    EXPECT_EQ(placementOf(flat, 0).scale, MVector(1, 0, 1));
    EXPECT_EQ(placementOf(flat, 0).rotation, MVector(0, 0, 0));
    MMatrix broken;
    broken[3][0] = std::nan("");
    EXPECT_TRUE(std::isnan(placementOf(broken, 0).position.x));
    EXPECT_EQ(placementOf(broken, 0).scale, MVector(1, 1, 1));
}

} // namespace
} // namespace vesk::nodes
