// Animation curves against values worked out by hand.

#include "host/nodes/anim_curve.h"

#include "host/nodes/test_scene.h"

namespace vesk::nodes {
namespace {

AnimKey key(double time, double value, Tangent both = Tangent::Spline) {
    AnimKey made;
    made.time = time;
    made.value = value;
    made.in = made.out = both;
    return made;
}

TEST(AnimCurve, SegmentsFollowTheTangentsOfTheirKeys) {
    AnimCurve curve;
    EXPECT_EQ(curve.at(3), 0) << "no keys";
    curve.keys = {key(0, 0, Tangent::Flat), key(1, 1, Tangent::Flat)};
    EXPECT_DOUBLE_EQ(curve.at(0.5), 0.5);
    EXPECT_DOUBLE_EQ(curve.at(0.25), 0.15625); // 3u² - 2u³
    curve.keys[0].out = Tangent::Fixed;
    curve.keys[0].outX = 1, curve.keys[0].outY = 2;
    EXPECT_DOUBLE_EQ(curve.at(0.5), 0.75); // and u(1-u)² times the slope 2
    curve.keys[0].out = Tangent::Step;
    EXPECT_EQ(curve.at(0.999), 0);
    EXPECT_EQ(curve.at(1), 1);
    curve.keys[0].out = Tangent::StepNext;
    EXPECT_EQ(curve.at(0), 0);
    EXPECT_EQ(curve.at(0.001), 1);
    curve.keys = {key(0, 0, Tangent::Linear), key(2, 4, Tangent::Linear), key(4, 0, Tangent::Linear)};
    EXPECT_DOUBLE_EQ(curve.at(0.5), 1);
    EXPECT_DOUBLE_EQ(curve.at(3.5), 1);
}

TEST(AnimCurve, SlopesThatComeFromNeighbours) {
    AnimCurve curve;
    curve.keys = {key(0, 0), key(1, 2), key(3, 2)};
    EXPECT_DOUBLE_EQ(curve.inSlope(1), 2.0 / 3);
    EXPECT_DOUBLE_EQ(curve.outSlope(0), 2) << "that of the only segment";
    curve.keys[1].in = Tangent::Clamped;
    EXPECT_EQ(curve.inSlope(1), 0);
    curve.keys = {key(0, 0, Tangent::Auto), key(1, 1, Tangent::Auto), key(2, 10, Tangent::Auto)};
    EXPECT_DOUBLE_EQ(curve.outSlope(1), 3) << "spline would have 5; three times the flatter side at most";
    EXPECT_EQ(curve.outSlope(0), 0);
    curve.keys[2].value = 0.5;
    EXPECT_EQ(curve.outSlope(1), 0) << "an extreme";
    // A tangent straight up and keys at one time must not give infinities.
    curve.keys = {key(0, 0, Tangent::Fixed), key(0, 5, Tangent::Linear), key(1, 6, Tangent::Linear)};
    curve.keys[0].outX = 0, curve.keys[0].outY = 1;
    EXPECT_EQ(curve.at(0), 5);
    EXPECT_DOUBLE_EQ(curve.at(0.5), 5.5);
    EXPECT_TRUE(std::isfinite(curve.outSlope(0)));
}

TEST(AnimCurve, WeightsMoveTheControlPointsInTime) {
    AnimCurve curve;
    curve.weighted = true;
    curve.keys = {key(0, 0, Tangent::Fixed), key(3, 3, Tangent::Fixed)};
    curve.keys[0].outX = 3;
    curve.keys[1].inX = 3;
    EXPECT_NEAR(curve.at(0.75), 0.46875, 1e-12) << "control points at thirds: time runs evenly";
    // Control points (2,0) and (1,3): the curve's parameter 1/4 lies at time 1.03125 with the same value.
    curve.keys[0].outX = 6;
    curve.keys[1].inX = 6;
    EXPECT_NEAR(curve.at(1.03125), 0.46875, 1e-12);
    EXPECT_NEAR(curve.at(1.5), 1.5, 1e-12);
    curve.keys = {key(0, 0, Tangent::Linear), key(3, 3, Tangent::Linear)};
    EXPECT_NEAR(curve.at(1), 1, 1e-12) << "tangents without weights of their own";
}

TEST(AnimCurve, BeyondItsKeys) {
    AnimCurve curve;
    curve.keys = {key(0, 0, Tangent::Linear), key(2, 4, Tangent::Linear)};
    const auto ends = [&](Infinity infinity) {
        curve.before = curve.after = infinity;
        return std::pair(curve.at(-1.5), curve.at(2.5));
    };
    using Pair = std::pair<double, double>;
    EXPECT_EQ(ends(Infinity::Constant), Pair(0, 4));
    EXPECT_EQ(ends(Infinity::Linear), Pair(-3, 5));
    EXPECT_EQ(ends(Infinity::Cycle), Pair(1, 1));
    EXPECT_EQ(ends(Infinity::CycleRelative), Pair(-3, 5));
    EXPECT_EQ(ends(Infinity::Oscillate), Pair(3, 3));
    curve.keys.resize(1);
    EXPECT_EQ(ends(Infinity::Cycle), Pair(0, 0));
}

class AnimCurveNodeTest : public NodesTest {
  protected:
    void SetUp() override {
        NodesTest::SetUp();
        make("time", "time1");
        scene->setFrame(1);
    }
    /// Linear keys; times in frames of 250 ticks.
    void keys(const std::string& node, const std::vector<std::pair<double, double>>& values,
              double unit = 250) {
        set(node + ".tan", 2);
        int index = 0;
        for (const auto& [time, value] : values) {
            const std::string element = node + ".ktv[" + std::to_string(index++) + "]";
            set(element + ".kt", time * unit);
            set(element + ".kv", value);
        }
    }
};

TEST_F(AnimCurveNodeTest, CurvesFollowTheTimeAndGiveInternalUnits) {
    make("transform", "t");
    make("animCurveTA", "turn");
    keys("turn", {{1, 0}, {25, 90}});
    connect("turn.o", "t.rx");
    EXPECT_EQ(get("t.rx"), 0);
    scene->setFrame(13);
    EXPECT_NEAR(get("t.rx"), 45 * kDegree, 1e-12);
    EXPECT_NEAR((MPoint(0, 1, 0) * matrixIn(at("t.m"))).z, std::sqrt(0.5), 1e-12);
    make("animCurveTL", "move");
    keys("move", {{25, 8}, {1, 2}}); // stored out of order
    EXPECT_NEAR(get("move.o"), 5, 1e-12);
    make("animCurveTT", "warp");
    keys("warp", {{1, 1}, {25, 49}});
    EXPECT_NEAR(get("warp.o"), 25 * 250, 1e-9);
    // A fixed tangent's direction is in seconds: 24 frames are one.
    set("move.ktv[2].kt", 49 * 250);
    set("move.ktv[2].kv", 8);
    set("move.kot[0]", 1);
    set("move.koy[0]", 8);
    set("move.kit[2]", 3);
    set("move.wgt", 0);
    scene->setFrame(37);
    EXPECT_NEAR(get("move.o"), 9, 1e-12); // half way: u(1-u)² is 1/8, times the slope 8
    // With a wire the session's time is nobody's business.
    make("animCurveTU", "driven");
    keys("driven", {{0, 0}, {10, 100}});
    connect("warp.o", "driven.i");
    scene->setFrame(1);
    EXPECT_NEAR(get("driven.o"), 10, 1e-9);
}

TEST_F(AnimCurveNodeTest, DrivenCurvesTakeANumber) {
    make("animCurveUU", "u");
    keys("u", {{0, 1}, {2, 5}}, 1);
    set("u.i", 1.5);
    EXPECT_DOUBLE_EQ(get("u.o"), 4);
    set("u.pst", 1);
    set("u.i", 3);
    EXPECT_DOUBLE_EQ(get("u.o"), 7);
}

} // namespace
} // namespace vesk::nodes
