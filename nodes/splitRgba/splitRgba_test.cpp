#include "tests/session_fixture.h"

namespace vesk::nodes {
namespace {

class SplitRgba : public tests::PluginTest {};

TEST_F(SplitRgba, TakesOneChannelOfEachKindOfColour) {
    run("createNode splitRgba -n s");
    const auto channels = [&](const std::vector<std::vector<double>>& expected) {
        for (int channel = 0; channel < 4; ++channel) {
            run("setAttr s.channel " + std::to_string(channel));
            EXPECT_EQ(floats("s.outArray"), expected[static_cast<std::size_t>(channel)]) << channel;
        }
    };
    run("setAttr s.inArray -type \"doubleArray\" 8 1 2 3 4 5 6 7 8");
    channels({{1, 5}, {2, 6}, {3, 7}, {4, 8}});
    run("setAttr s.inArray -type \"vectorArray\" 2 1 2 3 4 5 6");
    channels({{1, 4}, {2, 5}, {3, 6}, {1, 1}});
    run("setAttr s.inArray -type \"pointArray\" 1 1 2 3 0.5");
    channels({{1}, {2}, {3}, {0.5}});
    run("setAttr s.inArray -type \"doubleArray\" 0");
    channels({{}, {}, {}, {}});
}

TEST_F(SplitRgba, ATornColourIsLeftOutWithAWarning) {
    run("createNode splitRgba -n s; setAttr s.inArray -type \"doubleArray\" 7 1 2 3 4 5 6 7;");
    EXPECT_EQ(floats("s.outArray"), std::vector<double>{1});
    EXPECT_EQ(complaints(),
              Texts{"warning: s: The array length is no multiple of four (r, g, b, a). Its end is "
                    "left out."});
    run("setAttr s.inArray -type \"doubleArray\" 3 1 2 3");
    EXPECT_EQ(floats("s.outArray"), std::vector<double>{});
    EXPECT_EQ(complaints().size(), 1U);
}

TEST_F(SplitRgba, StatesAndConnections) {
    run("createNode splitRgba -n s; setAttr s.inArray -type \"doubleArray\" 4 1 2 3 4;");
    EXPECT_EQ(floats("s.outArray"), std::vector<double>{1});
    run("setAttr s.nodeState 2; setAttr s.channel 1;");
    EXPECT_EQ(floats("s.outArray"), std::vector<double>{1}) << "blocking leaves the output as it was";
    run("createNode pointAttributeToArray -n p");
    const auto refused = session->run("connectAttr p.outIdPP s.inArray");
    EXPECT_FALSE(refused.ok);
    EXPECT_NE(refused.error.find("p.outIdPP"), std::string::npos) << refused.error;
    EXPECT_NE(refused.error.find("s.inArray"), std::string::npos) << refused.error;
    (void)complaints();
}

} // namespace
} // namespace vesk::nodes
