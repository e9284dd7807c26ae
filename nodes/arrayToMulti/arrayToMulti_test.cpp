#include "tests/api_access.h"
#include "tests/session_fixture.h"

#include "host/graph/scene.h"

#include <maya/MIntArray.h>

namespace vesk::nodes {
namespace {

class ArrayToMulti : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("createNode arrayToMulti -n a; createNode multiToArray -n back;"
            "connectAttr a.outWeightList[0] back.inWeightList[0];"
            "setAttr a.inWeightPP -type doubleArray 3 0.25 -2 8;");
    }
    std::vector<double> back() { return floats("back.outArray"); }
    double weight(int index) {
        return run("getAttr a.outWeightList[0].weight[" + std::to_string(index) + "]").asFloat();
    }
};

TEST_F(ArrayToMulti, ThereAndBack) {
    EXPECT_EQ(back(), (std::vector<double>{0.25, -2, 8}));
    run("setAttr a.inWeightPP -type doubleArray 1 5");
    EXPECT_EQ(back(), std::vector<double>{5}) << "shorter: the rest goes";
    run("setAttr a.inWeightPP -type doubleArray 4 1 2 3 4");
    EXPECT_EQ(back(), (std::vector<double>{1, 2, 3, 4})) << "longer";
    run("setAttr a.nodeState 2; setAttr a.inWeightPP -type doubleArray 1 5;");
    EXPECT_EQ(back(), (std::vector<double>{1, 2, 3, 4}));
    EXPECT_EQ(weight(2), 3);
    run("setAttr a.nodeState 0; setAttr a.envelope 0;");
    EXPECT_EQ(back(), std::vector<double>());
    run("setAttr a.envelope 1; setAttr a.inWeightPP -type doubleArray 0;");
    EXPECT_EQ(back(), std::vector<double>());
}

TEST_F(ArrayToMulti, SingleWeightsAndWhatHangsOnOneThatGoes) {
    run("createNode transform -n t; connectAttr a.outWeightList[0].weight[2] t.translateX;");
    EXPECT_EQ(run("getAttr t.translateX").asFloat(), 8);
    run("setAttr a.inWeightPP -type doubleArray 2 1 1");
    EXPECT_EQ(run("getAttr t.translateX").asFloat(), 0);
    run("setAttr a.inWeightPP -type doubleArray 3 1 1 6");
    EXPECT_EQ(run("getAttr t.translateX").asFloat(), 6);
}

TEST_F(ArrayToMulti, ElementsStayWhereTheyAre) {
    (void)back();
    const auto cellOf = [&](const char* name) { return tests::plugNamed(name).hostPlug().cellIfThere(); };
    const auto* first = cellOf("a.outWeightList[0].weight[0]");
    const auto* last = cellOf("a.outWeightList[0].weight[2]");
    run("setAttr a.inWeightPP -type doubleArray 4 4 5 6 7");
    EXPECT_EQ(back(), (std::vector<double>{4, 5, 6, 7}));
    EXPECT_EQ(cellOf("a.outWeightList[0].weight[0]"), first);
    EXPECT_EQ(cellOf("a.outWeightList[0].weight[2]"), last);
}

TEST_F(ArrayToMulti, OneEvaluationWritesAll) {
    (void)back();
    run("setAttr a.inWeightPP -type doubleArray 3 1 2 3");
    const auto before = session->scene().profile.computes;
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(weight(i), i + 1);
    EXPECT_EQ(back(), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(session->scene().profile.computes - before, 2U) << "one of each node";
}

} // namespace
} // namespace vesk::nodes
