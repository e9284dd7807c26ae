#include "nodes/common/bounding_volumes_test.h"
#include "tests/session_fixture.h"

namespace vesk::nodes {
namespace {

class MultiAttributeTransfer : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("createNode multiAttributeTransfer -n m; createNode particle -n cloud;"
            "connectAttr cloud.position m.inGeometry;");
    }
    void place(const std::string& countAndPositions) {
        run("setAttr cloud.position -type \"vectorArray\" " + countAndPositions);
    }
    void addVolume(const std::string& name, int kind, const std::string& place = "0 0 0") {
        run(volumeText(name, kind, "m", volumes_++) + "setAttr " + name + "T.translate " + place);
    }
    /// The indices of the weights below an element, and the weights.
    std::vector<std::pair<int, double>> weights(int element) {
        const std::string list = "m.outWeightList[" + std::to_string(element) + "].weights";
        (void)run("getAttr " + list + "[0]"); // evaluates
        std::vector<std::pair<int, double>> found;
        for (const int index :
             *run("int $found[] = `getAttr -mi " + list + "`; $found = $found;").asIntArray())
            found.emplace_back(index, run("getAttr " + list + "[" + std::to_string(index) + "]").asFloat());
        return found;
    }
    void expectWeights(int element, const std::vector<std::pair<int, double>>& expected) {
        const auto actual = weights(element);
        ASSERT_EQ(actual.size(), expected.size()) << "element " << element;
        for (std::size_t i = 0; i < actual.size(); ++i) {
            EXPECT_EQ(actual[i].first, expected[i].first);
            EXPECT_NEAR(actual[i].second, expected[i].second, 1e-6);
        }
    }
    int elementCount() {
        (void)run("getAttr m.outWeightList[0].weights[0]");
        return run("size(`getAttr -mi m.outWeightList`)").asInt();
    }

    std::size_t volumes_ = 0;
};

TEST_F(MultiAttributeTransfer, OneWeightForEachPointAtMostOne) {
    place("3 0.5 0 0 0.25 0 0 9 0 0");
    addVolume("a", 0, "0 0 0");
    expectWeights(0, {{0, 0.5}, {1, 0.75}, {2, 0}});
    run("setAttr a.weightFalloff[0].weightFalloff_FloatValue 3"); // 3 - 3d
    expectWeights(0, {{0, 1}, {1, 1}, {2, 0}});
    run("setAttr a.weightFalloff[0].weightFalloff_FloatValue -1"); // d - 1, no limit below
    expectWeights(0, {{0, -0.5}, {1, -0.75}, {2, 0}});
    expectNear(floats("m.outGeometry"), {0.5, 0, 0, 0.25, 0, 0, 9, 0, 0});
}

TEST_F(MultiAttributeTransfer, PointsThatAreLeftOut) {
    place("3 0 0 0 0 0 0 0 0 0");
    addVolume("a", 0, "0 0 0");
    run("setAttr m.useComponents 1; setAttr m.inComponents -type \"componentList\" 1 \"pt[1]\";");
    expectWeights(0, {{0, 0}, {1, 1}, {2, 0}});
    run("setAttr m.processAllComponents 0");
    expectWeights(0, {{1, 1}});
    // By influence they keep what they have, or lose it with everything else.
    run("setAttr m.mode 1; setAttr m.useComponents 0; setAttr m.processAllComponents 1;");
    EXPECT_EQ(elementCount(), 3);
    run("setAttr m.useComponents 1; setAttr aT.translateX 0.5;");
    expectWeights(0, {{0, 1}});
    expectWeights(1, {{0, 1}});
    EXPECT_EQ(elementCount(), 3);
    run("setAttr m.processAllComponents 0");
    EXPECT_EQ(elementCount(), 1);
    place("1 0 0 0");
    EXPECT_EQ(elementCount(), 0) << "of points that are gone nothing stays";
}

TEST_F(MultiAttributeTransfer, WeightsByVolumeSumToOne) {
    place("3 0.5 0 0 0.2 0 0 5 0 0");
    addVolume("a", 0, "0 0 0");
    addVolume("b", 0, "1 0 0");
    run("setAttr m.mode 1");
    expectWeights(0, {{0, 0.5}, {1, 0.5}});
    expectWeights(1, {{0, 0.8}, {1, 0.2}});
    expectWeights(2, {});
    run("setAttr aT.translateX 9"); // nothing of the old weights stays
    expectWeights(1, {{1, 1}});
    run("setAttr aT.translateX 0; setAttr m.maxInfluences 1;");
    expectWeights(1, {{0, 1}});
}

TEST_F(MultiAttributeTransfer, FreePointsGoToTheFirstOrTheClosest) {
    place("3 8 0 0 -3 0 0 10 0 0");
    addVolume("a", 0, "0 0 0");
    addVolume("b", 2, "10 0 0");
    run("setAttr m.mode 1; setAttr m.weightFreePointsTo 2;");
    expectWeights(0, {{1, 1}});
    expectWeights(1, {{0, 1}});
    run("setAttr m.weightFreePointsTo 1"); // the closest one of point 0
    expectWeights(0, {{1, 1}});
    expectWeights(1, {{1, 1}});
    place("3 4 0 0 -3 0 0 10 0 0");
    expectWeights(0, {{0, 1}});
    run("setAttr m.useComponents 1; setAttr m.inComponents -type \"Int32Array\" 1 0;");
    expectWeights(0, {{0, 1}});
}

TEST_F(MultiAttributeTransfer, ACloudCountsByTheSumOfItsPoints) {
    // Two spheres of radius 1 at 0.5 to either side, of weights 0.5 and 1: 0.5 * 0.5 + 0.5 * 1 = 0.75. Beside
    // them a sphere with the value 0.25.
    place("1 0 0 0");
    run("createNode particle -n seeds; setAttr seeds.position -type \"vectorArray\" 2 0.5 0 0 -0.5 0 0;"
        "addAttr -ln w -dt doubleArray seeds; setAttr seeds.w -type \"doubleArray\" 2 0.5 1;");
    addVolume("a", 3, "0 0 0");
    addVolume("b", 0, "0.75 0 0");
    run("connectAttr seeds.position a.inParticlePositionPP; connectAttr seeds.w a.inParticleWeightPP; "
        "setAttr m.mode 1;");
    expectWeights(0, {{0, 0.75}, {1, 0.25}});
    // One slot for both points of the cloud: the sum still holds what the first one brought.
    run("setAttr m.mode 0; setAttr m.maxInfluences 1; setAttr seeds.position -type \"vectorArray\" 2 0.5 0 0 "
        "-0.25 0 0;");
    expectWeights(0, {{0, 0.75}}); // the nearer one alone: 0.75 * 1
}

TEST_F(MultiAttributeTransfer, StatesAndEnvelope) {
    place("1 0 0 0");
    addVolume("a", 0, "0 0 0");
    expectWeights(0, {{0, 1}});
    run("setAttr m.envelope 0; setAttr aT.translateX 0.5;");
    expectWeights(0, {{0, 1}});
    expectNear(floats("m.outGeometry"), {0, 0, 0});
    run("setAttr m.envelope 1");
    expectWeights(0, {{0, 0.5}});
    run("setAttr m.nodeState 2; setAttr aT.translateX 0;");
    expectWeights(0, {{0, 0.5}});
    run("setAttr m.nodeState 0; nurbsPlane; sphere; connectAttr -f nurbsSphereShape1.worldSpace[0] "
        "m.inGeometry;");
    expectWeights(0, {});
    EXPECT_EQ(complaints(),
              Texts{"warning: m: inGeometry is periodic nurbs surface. Rebuild using \"End Conditions\" / "
                    "\"Multiple Knots\" options."});
    run("connectAttr -f nurbsPlaneShape1.worldSpace[0] m.inGeometry");
    EXPECT_EQ(weights(0).size(), 16U);
}

} // namespace
} // namespace vesk::nodes
