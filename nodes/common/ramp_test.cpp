#include "nodes/common/ramp.h"
#include "tests/api_access.h"
#include "tests/session_fixture.h"

#include <maya/MFnDependencyNode.h>
#include <maya/MRampAttribute.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace vesk::nodes {
namespace {

constexpr int kNone = 0, kLinear = 1, kSmooth = 2, kSpline = 3;

float at(std::vector<CurveRamp::Entry> entries, float position) {
    return CurveRamp(std::move(entries)).at(position)[0];
}

TEST(Ramp, EachInterpolationByHand) {
    // A quarter of the way from (0.5, 4) to (1, 8), in one ramp with (0, 2): stays 4; straight 5; eased 4 +
    // (3/16 - 2/64) * 4 = 4.625. Spline: slopes 4 and 8, tangents 6 and 8, times the length 3 and 4; weights
    // at 1/4 are 54/64, 9/64, 10/64 and -3/64: (216 + 27 + 80 - 12) / 64 = 311/64.
    const auto ramp = [](int way) {
        return std::vector<CurveRamp::Entry>{{1, {8}, kNone}, {0, {2}, kLinear}, {0.5F, {4}, way}};
    };
    EXPECT_EQ(at(ramp(kNone), 0.625F), 4);
    EXPECT_EQ(at(ramp(kLinear), 0.625F), 5);
    EXPECT_EQ(at(ramp(kSmooth), 0.625F), 4.625F);
    EXPECT_EQ(at(ramp(kSpline), 0.625F), 311.0F / 64);
    EXPECT_EQ(at(ramp(17), 0.625F), 5) << "no such way: straight";
    EXPECT_EQ(at(ramp(kNone), 0.25F), 3) << "unsorted entries, and the left one decides";
    EXPECT_EQ(at(ramp(kNone), 1), 8);
    EXPECT_EQ(at({}, 0.5F), 0);
    EXPECT_EQ(at({{0.7F, {6}, kSpline}}, 0.1F), 6);
    EXPECT_EQ(CurveRamp({{NAN, {6}, kSpline}, {0, {1}, kNone}}).entryCount(), 2U);
}

TEST(Ramp, AlongItIsTheSameToTheBit) {
    std::minstd_rand random(3);
    const auto number = [&](unsigned steps) {
        return static_cast<float>(random() % steps) / static_cast<float>(steps - 1);
    };
    for (int round = 0; round < 60; ++round) {
        std::vector<ColorRamp::Entry> entries;
        for (int i = 0; i < round % 7; ++i)
            entries.push_back({1.4F * number(9) - 0.2F,
                               {number(1000), number(1000), 8 * number(1000)},
                               static_cast<int>(random() % 5)});
        const ColorRamp ramp(entries);
        for (const std::size_t count : {1U, 3U, 8U, 255U, 257U, 1000U}) {
            std::size_t next = 0;
            ramp.along(count, [&](std::size_t i, const ColorRamp::Values& values) {
                ASSERT_EQ(i, next++);
                const auto position = static_cast<float>(static_cast<double>(i) / static_cast<double>(count));
                const ColorRamp::Values expected = ramp.at(position);
                for (std::size_t c = 0; c < 3; ++c)
                    ASSERT_EQ(std::bit_cast<unsigned>(values[c]), std::bit_cast<unsigned>(expected[c])) << i;
            });
            ASSERT_EQ(next, count);
        }
    }
}

/// Compares with the host's evaluation of the same ramp on a node.
class RampOfANode : public tests::PluginTest {};

TEST_F(RampOfANode, ReadsTheSameAsTheHostToTheBit) {
    run("createNode createArray -n c");
    const MObject node = tests::nodeNamed("c");
    const auto attribute = [&](const char* name) { return MFnDependencyNode(node).attribute(name); };
    const MObject curveAttribute = attribute("rampDefaultValueW");
    const MObject colorAttribute = attribute("rampDefaultValueXYZ");
    MRampAttribute curve(node, curveAttribute), color(node, colorAttribute);
    std::minstd_rand random(7);
    const auto number = [&](int steps) {
        return static_cast<float>(static_cast<int>(random() % static_cast<unsigned>(steps))) /
               static_cast<float>(steps - 1);
    };
    constexpr float kOdd[] = {-2,
                              -0.0F,
                              0,
                              1,
                              1.5F,
                              std::numeric_limits<float>::infinity(),
                              -std::numeric_limits<float>::infinity(),
                              std::numeric_limits<float>::quiet_NaN()};
    for (int round = 0; round < 40; ++round) {
        // Few different positions, so that some are equal; a wild one now and then.
        MFloatArray position, value;
        MColorArray tint;
        MIntArray way;
        position.append(round % 5 == 4 ? kOdd[static_cast<unsigned>(round / 5)] : number(9));
        value.append(number(1000));
        tint.append(MColor(number(1000), number(1000), number(1000)));
        way.append(static_cast<int>(random() % 5));
        curve.addEntries(position, value, way);
        color.addEntries(position, tint, way);
        const CurveRamp plainCurve = readCurveRamp(node, curveAttribute);
        const ColorRamp plainColor = readColorRamp(node, colorAttribute);
        ASSERT_EQ(plainCurve.entryCount(), curve.getNumEntries());
        std::size_t segment = 0;
        for (int i = 0; i < 120; ++i) {
            const float t = i < 8 ? kOdd[static_cast<unsigned>(i)] : i % 2 == 0 ? number(17) : number(100000);
            float expected = -1;
            curve.getValueAtPosition(t, expected);
            const auto bits = std::bit_cast<unsigned>(expected);
            ASSERT_EQ(std::bit_cast<unsigned>(plainCurve.at(t)[0]), bits) << t;
            ASSERT_EQ(std::bit_cast<unsigned>(plainCurve.at(t, segment)[0]), bits) << t << " with a memory";
            MColor shade;
            color.getColorAtPosition(t, shade);
            ASSERT_EQ(plainColor.at(t), (ColorRamp::Values{shade.r, shade.g, shade.b})) << t;
        }
    }
    EXPECT_EQ(readColorRamp(node, curveAttribute).entryCount(), 0U) << "no colour ramp";
    EXPECT_EQ(readCurveRamp(node, attribute("length")).entryCount(), 0U) << "no ramp at all";
}

TEST_F(RampOfANode, EntriesInScenesAndConnections) {
    run("createNode createArray -n c; createNode createArray -n d; setAttr d.defaultValueX 5;"
        "setAttr -s 2 \"c.rampDefaultValueW[3:4]\" 1 8 1 0.5 2 0;"
        "setAttr c.rampDefaultValueXYZ[0].rampDefaultValueXYZ_Color -type double3 1 0.5 0.25;"
        "connectAttr d.defaultValueX c.rampDefaultValueW[3].rampDefaultValueW_FloatValue;");
    const auto check = [&] {
        const MObject node = tests::nodeNamed("c");
        const auto attribute = [&](const char* name) { return MFnDependencyNode(node).attribute(name); };
        const CurveRamp curve = readCurveRamp(node, attribute("rampDefaultValueW"));
        EXPECT_EQ(curve.entryCount(), 3U) << "the first is there from the start";
        EXPECT_EQ(curve.at(0.25F)[0], 1);
        EXPECT_EQ(curve.at(0.75F)[0], 2);
        EXPECT_EQ(curve.at(1)[0], 5) << "connected";
        EXPECT_EQ(readColorRamp(node, attribute("rampDefaultValueXYZ")).at(0),
                  (ColorRamp::Values{1, 0.5F, 0.25F}));
    };
    check();
    const std::string file = (folder / "ramps.ma").string();
    run("file -rename \"" + file + "\"; file -save -type \"mayaAscii\"; file -f -new; file -o \"" + file +
        "\"");
    check();
}

} // namespace
} // namespace vesk::nodes
