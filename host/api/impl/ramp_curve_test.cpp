#include "host/api/impl/ramp_curve.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vesk::api {
namespace {

using Key = RampKey<1>;

float at(const std::vector<Key>& keys, float position) {
    RampCurve<1> curve;
    curve.set(keys);
    return curve.at(position)[0];
}

constexpr int kNone = 0, kLinear = 1, kSmooth = 2, kSpline = 3;

TEST(RampCurve, StepsOfTheLeftKeyDecide) {
    // Between 0 and 0.5 at u = 0.5: stays 2; straight 3; eased 2 + (3/4 - 2/8) * 2 = 3; at u = 0.25:
    // straight 2.5, eased 2 + (3/16 - 2/64) * 2 = 2.3125.
    const auto keys = [](int step) {
        return std::vector<Key>{{0, {2}, step}, {0.5F, {4}, kNone}, {1, {8}, kNone}};
    };
    EXPECT_EQ(at(keys(kNone), 0.25F), 2);
    EXPECT_EQ(at(keys(kLinear), 0.25F), 3);
    EXPECT_EQ(at(keys(kLinear), 0.125F), 2.5F);
    EXPECT_EQ(at(keys(kSmooth), 0.25F), 3);
    EXPECT_EQ(at(keys(kSmooth), 0.125F), 2.3125F);
    EXPECT_EQ(at(keys(kLinear), 0.75F), 4); // the middle key stays
    EXPECT_EQ(at(keys(9), 0.25F), 3);       // no such step: straight
}

TEST(RampCurve, SplineTangentsAreMeansOfSlopes) {
    // Keys (0, 0) (0.5, 1) (1, 0): slopes 2 and -2, tangents 2, 0, -2; scaled by 0.5 on the first segment: 1
    // and 0. At u = 0.5: h00 0 + h10 (1/8) * 1 + h01 (1/2) * 1 + h11 * 0 = 0.625.
    const std::vector<Key> hill{{0, {0}, kSpline}, {0.5F, {1}, kSpline}, {1, {0}, kSpline}};
    EXPECT_EQ(at(hill, 0.25F), 0.625F);
    EXPECT_EQ(at(hill, 0.75F), 0.625F);
    // Uneven: (0, 0) (0.25, 1) (1, 1): slopes 4 and 0, tangent 2 at the middle. Second segment, length 0.75,
    // at u = 1/3 (position 0.5): a = b = 1, ta = 1.5, tb = 0; h10 = 1/27 - 2/9 + 1/3 = 4/27; 1 + 1.5 * 4/27
    // = 1.2222.
    const std::vector<Key> uneven{{0, {0}, kSpline}, {0.25F, {1}, kSpline}, {1, {1}, kSpline}};
    EXPECT_NEAR(at(uneven, 0.5F), 1 + 1.5 * 4 / 27, 1e-7);
    // Two keys: both tangents are the only slope, so a straight line comes out.
    EXPECT_EQ(at({{0, {1}, kSpline}, {1, {3}, kSpline}}, 0.25F), 1.5F);
}

TEST(RampCurve, EndsOrderAndEqualPositions) {
    const std::vector<Key> mixed{{1, {10}, kLinear}, {0.25F, {2}, kLinear}, {0.5F, {4}, kLinear}};
    EXPECT_EQ(at(mixed, -5), 2);
    EXPECT_EQ(at(mixed, 0.25F), 2);
    EXPECT_EQ(at(mixed, 0.375F), 3);
    EXPECT_EQ(at(mixed, 1), 10);
    EXPECT_EQ(at(mixed, 7), 10);
    EXPECT_EQ(at({}, 0.5F), 0);
    EXPECT_EQ(at({{0.5F, {6}, kLinear}}, 0.1F), 6);

    // Of two at one position the later holds at the position; before it, the way leads to the earlier.
    const std::vector<Key> jump{
        {0, {0}, kLinear}, {0.5F, {1}, kLinear}, {0.5F, {5}, kLinear}, {1, {6}, kLinear}};
    EXPECT_EQ(at(jump, 0.25F), 0.5F);
    EXPECT_EQ(at(jump, 0.5F), 5);
    EXPECT_EQ(at(jump, 0.75F), 5.5F);
    EXPECT_EQ(at({{0, {1}, kLinear}, {0, {2}, kLinear}, {1, {3}, kLinear}}, 0), 2);
    EXPECT_EQ(at({{0, {1}, kLinear}, {0, {2}, kLinear}, {1, {3}, kLinear}}, -1), 1);
}

TEST(RampCurve, NumbersThatAreNone) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::vector<Key> keys{{0.5F, {4}, kLinear}, {0.25F, {2}, kLinear}};
    EXPECT_EQ(at(keys, nan), 2);
    // A key with such a position, or one without end, is left out, wherever it stands.
    const float infinity = std::numeric_limits<float>::infinity();
    for (const float outside : {nan, infinity, -infinity}) {
        for (std::size_t place = 0; place < 3; ++place) {
            auto broken = keys;
            broken.insert(broken.begin() + static_cast<std::ptrdiff_t>(place), Key{outside, {100}, kLinear});
            EXPECT_EQ(at(broken, 0.375F), 3) << place;
            EXPECT_EQ(at(broken, 1), 4) << place;
        }
        EXPECT_EQ(at({{outside, {1}, kLinear}}, 0), 0);
    }
    EXPECT_EQ(at(keys, infinity), 4);
    EXPECT_EQ(at(keys, -infinity), 2);
}

TEST(RampCurve, ColoursGoChannelByChannelAndChangesShow) {
    RampCurve<3> curve;
    curve.set({{0, {0, 1, 0}, kLinear}, {1, {1, 0, 0.5F}, kLinear}});
    EXPECT_EQ(curve.at(0.25F), (std::array<float, 3>{0.25F, 0.75F, 0.125F}));
    curve.set({{0, {0, 1, 0}, kNone}, {1, {1, 0, 0.5F}, kLinear}});
    EXPECT_EQ(curve.at(0.25F), (std::array<float, 3>{0, 1, 0}));
}

} // namespace
} // namespace vesk::api
