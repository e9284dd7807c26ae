#include "nodes/rgbaToColorAndAlpha/colors.h"
#include "tests/session_fixture.h"

#include <cmath>
#include <limits>

namespace vesk::nodes {
namespace {

class RgbaToColorAndAlpha : public tests::PluginTest {};

TEST_F(RgbaToColorAndAlpha, PartsColoursFromAlpha) {
    run("createNode rgbaToColorAndAlpha -n c; setAttr c.inRgbaPP -type \"doubleArray\" 8 1 2 3 4 5 6 7 8;");
    EXPECT_EQ(floats("c.outRgbPP"), (std::vector<double>{1, 2, 3, 5, 6, 7}));
    EXPECT_EQ(floats("c.outAlphaPP"), (std::vector<double>{4, 8}));
    run("setAttr c.inRgbaPP -type \"doubleArray\" 5 1 2 3 4 5");
    EXPECT_EQ(floats("c.outAlphaPP"), std::vector<double>{4});
    EXPECT_EQ(floats("c.outRgbPP").size(), 3U);
    EXPECT_EQ(complaints().size(), 1U) << "one compute serves both outputs";
    run("setAttr c.inRgbaPP -type \"doubleArray\" 0");
    EXPECT_EQ(floats("c.outRgbPP").size() + floats("c.outAlphaPP").size(), 0U);
    run("setAttr c.inRgbaPP -type \"doubleArray\" 4 1 2 3 4; setAttr c.nodeState 2;");
    EXPECT_EQ(floats("c.outAlphaPP").size(), 0U);
}

TEST(Colors, WhatIsNoNumberStaysInItsPlace) {
    const double nan = std::nan(""), infinity = std::numeric_limits<double>::infinity();
    const double rgba[] = {nan, 2, 3, 4, 5, 6, infinity, 8};
    MVector rgb[2];
    double alpha[2];
    splitColors(rgba, rgb, alpha);
    EXPECT_TRUE(std::isnan(rgb[0].x));
    EXPECT_EQ(rgb[0].y, 2);
    EXPECT_EQ(rgb[1], MVector(5, 6, infinity));
    EXPECT_EQ(alpha[0] + alpha[1], 12);
}

} // namespace
} // namespace vesk::nodes
