#include "nodes/arrayToTexture2D/scatteredWeights.h"
#include "tests/session_fixture.h"

#include <cmath>

namespace vesk::nodes {
namespace {

constexpr auto kNearest = TextureInterpolation::kNearestNeighbor;
constexpr auto kWeighted = TextureInterpolation::kDistanceWeighted;

TEST(ScatteredWeights, WeightedMeansByHand) {
    // At (0, 0): distances 0.5 and 0.75, closeness 0.5 and 0.25.
    const std::vector<double> map = {0.5, 0, 0, 0.75}, weights = {1, 5};
    const auto at = [&](float power) { return scatteredWeight(map, weights, 0, 0, kWeighted, power); };
    EXPECT_NEAR(at(1), (0.5 * 1 + 0.25 * 5) / 0.75, 1e-12);
    EXPECT_NEAR(at(3), (0.125 * 1 + 0.015625 * 5) / 0.140625, 1e-12);
    EXPECT_NEAR(at(-2), (4 * 1 + 16 * 5) / 20.0, 1e-12);
    EXPECT_NEAR(at(0), 3, 1e-12);
    // A fractional power: numerator by 1.5, sum by 1.
    EXPECT_NEAR(at(1.5F), (std::pow(0.5, 1.5) + 0.125 * 5) / 0.75, 1e-12);
    EXPECT_NEAR(at(-1.5F), (std::pow(0.5, -1.5) + 8 * 5) / 6, 1e-12) << "-1 is its integer part";
    // Closeness 1 and -1 to an odd power: the sum is 0.
    EXPECT_EQ(scatteredWeight(std::vector<double>{0, 0, 2, 0}, weights, 0, 0, kWeighted, 3), 0);
    EXPECT_EQ(scatteredWeight(std::vector<double>{0, 0}, std::vector<double>{4}, 0, 0, kWeighted, 1e30F), 4);
}

TEST(ScatteredWeights, NearestIsTheFirstOfEqualsBelowTwo) {
    const std::vector<double> map = {0.75, 0.5, 0.25, 0.5, 0.5, 0.5}, weights = {7, 8, 9};
    EXPECT_EQ(scatteredWeight(map, weights, 0.5F, 0.5F, kNearest, 7), 9);
    EXPECT_EQ(scatteredWeight(std::span(map).first(4), std::span(weights).first(2), 0.5F, 0.5F, kNearest, 7),
              7);
    EXPECT_EQ(scatteredWeight(std::vector<double>{2, 0}, std::vector<double>{3}, 0, 0, kNearest, 7), 0);
    EXPECT_EQ(
        scatteredWeight(std::vector<double>{NAN, 0, 1, 0}, std::vector<double>{3, 4}, 0, 0, kNearest, 7), 4);
    EXPECT_FALSE(areScatteredWeights({}, {}));
    EXPECT_FALSE(areScatteredWeights(std::span(map).first(5), std::span(weights).first(2)));
    EXPECT_FALSE(areScatteredWeights(std::span(map).first(4), weights));
    EXPECT_TRUE(areScatteredWeights(map, weights));
}

class ArrayToTexture2D : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("createNode arrayToTexture2D -n t; setAttr t.inMapPP -type doubleArray 4 0.25 0 0.75 0;"
            "setAttr t.inWeightPP -type doubleArray 2 1 3; setAttr t.power 1; setAttr t.uvCoord 0.25 0;");
    }
    double red() { return run("getAttr t.outColorR").asFloat(); }
};

TEST_F(ArrayToTexture2D, WrapsThePositionAndFillsAllChannels) {
    expectNear(floats("t.outColor"), {5.0 / 3, 5.0 / 3, 5.0 / 3}); // (1 * 1 + 0.5 * 3) / 1.5
    run("setAttr t.uvCoord 1.25 -3");
    EXPECT_NEAR(red(), 5.0 / 3, 1e-6);
    run("setAttr t.uvCoord -0.25 0");
    EXPECT_NEAR(red(), 7.0 / 3, 1e-6) << "as at 0.75";
}

TEST_F(ArrayToTexture2D, InterpolationAloneDoesNotDirty) {
    EXPECT_NEAR(red(), 5.0 / 3, 1e-6);
    run("setAttr t.interpolation 0");
    EXPECT_NEAR(red(), 5.0 / 3, 1e-6);
    run("setAttr t.uCoord 0.3");
    EXPECT_EQ(red(), 1);
}

TEST_F(ArrayToTexture2D, ArraysThatDoNotFitLeaveTheColour) {
    EXPECT_NEAR(red(), 5.0 / 3, 1e-6);
    for (const char* map : {"3 0 0 0", "2 0 0", "0"}) {
        run(std::string("setAttr t.inMapPP -type doubleArray ") + map);
        EXPECT_NEAR(red(), 5.0 / 3, 1e-6) << map;
    }
    run("createNode arrayToTexture2D -n bare");
    expectNear(floats("bare.outColor"), {0, 0, 0});
}

} // namespace
} // namespace vesk::nodes
