#include "nodes/pointCloudToMultiCurve/groups.h"
#include "tests/session_fixture.h"

#include <cmath>

namespace vesk::nodes {
namespace {

class PointCloudToMultiCurve : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("createNode pointCloudToMultiCurve -n c; setAttr c.degree 1;"
            "setAttr c.inPositionPP -type \"vectorArray\" 5 0 0 0 1 0 0 2 0 0 3 0 0 4 0 0;");
    }
    /// x of the CVs of the curve at an element; read through a shape, which is made on the way.
    std::vector<double> curve(int element) {
        const std::string n = std::to_string(element);
        if (run("objExists line" + n).asInt() == 0) {
            run("createNode nurbsCurve -n line" + n + "; connectAttr c.outputCurves[" + n + "] line" + n +
                ".create; createNode pointAttributeToArray -n p" + n + "; connectAttr line" + n +
                ".worldSpace[0] p" + n + ".inGeometry; setAttr p" + n + ".pointPosition 1;");
        }
        std::vector<double> xs;
        const auto all = floats("p" + n + ".outPositionPP");
        for (std::size_t i = 0; i < all.size(); i += 3)
            xs.push_back(all[i]);
        return xs;
    }
};

TEST_F(PointCloudToMultiCurve, ACurveForEachGroupInTheOrderOfIds) {
    EXPECT_EQ(curve(0), (std::vector<double>{0, 1, 2, 3, 4})) << "no groups: one curve";
    run("setAttr c.inGroupPP -type \"doubleArray\" 5 7 3 7 3 7; setAttr c.inIdPP -type \"Int32Array\" 5 9 1 "
        "4 0 4;");
    EXPECT_EQ(curve(7), (std::vector<double>{2, 4, 0}));
    EXPECT_EQ(curve(3), (std::vector<double>{3, 1}));
    EXPECT_EQ(curve(0), std::vector<double>{});
    EXPECT_EQ(run("getAttr -s c.outputCurves").asInt(), 3) << "element 0 stays for its wire";
    // Another group takes over; wires stay with their numbers.
    run("setAttr c.inGroupPP -type \"Int32Array\" 5 0 0 7 7 -1; setAttr c.inIdPP -type \"doubleArray\" 0;");
    EXPECT_EQ(curve(0), (std::vector<double>{0, 1}));
    EXPECT_EQ(curve(7), (std::vector<double>{2, 3}));
    EXPECT_EQ(curve(3), std::vector<double>{});
}

TEST_F(PointCloudToMultiCurve, ArraysOfOtherLengthsAreLeftAloneWithAWarning) {
    run("setAttr c.inGroupPP -type \"doubleArray\" 4 1 1 1 1; setAttr c.inIdPP -type \"doubleArray\" 6 5 4 3 "
        "2 1 0;");
    EXPECT_EQ(curve(0), (std::vector<double>{0, 1, 2, 3, 4}));
    EXPECT_EQ(complaints(), (Texts{"warning: c: inGroupPP array length does not match the point count.",
                                   "warning: c: inIdPP array length does not match the point count."}));
    run("setAttr c.inPositionPP -type \"vectorArray\" 0; setAttr c.inGroupPP -type \"doubleArray\" 0;"
        "setAttr c.inIdPP -type \"doubleArray\" 0;");
    EXPECT_EQ(curve(0), std::vector<double>{});
    run("setAttr c.inPositionPP -type \"vectorArray\" 1 5 5 5");
    EXPECT_EQ(curve(0), std::vector<double>{});
}

TEST(GroupedPoints, LeavesOutWhatIsNoGroupAndSortsWhatIsNoNumberLast) {
    const double nan = std::nan("");
    const double groups[] = {0.9, nan, -1, 3e9, 0, 0, 2147483647, 0};
    const double ids[] = {nan, 0, 0, 0, 2, nan, 0, -INFINITY};
    const auto grouped = groupedPoints(8, groups, ids);
    ASSERT_EQ(grouped.size(), 2U);
    EXPECT_EQ(grouped.at(0), (std::vector<unsigned>{7, 4, 0, 5}));
    EXPECT_EQ(grouped.at(2147483647), std::vector<unsigned>{6});
}

} // namespace
} // namespace vesk::nodes
