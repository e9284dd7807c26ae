#include "tests/session_fixture.h"

namespace vesk::nodes {
namespace {

class MultiToArray : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("createNode multiToArray -n m");
    }
    std::vector<double> out() { return floats("m.outArray"); }
};

TEST_F(MultiToArray, GapsCloseUp) {
    EXPECT_EQ(out(), std::vector<double>()) << "no element 0: nothing is computed";
    run("setAttr m.inWeightList[1].weights[0] 9");
    EXPECT_EQ(out(), std::vector<double>()) << "another element";
    run("setAttr m.inWeightList[0].weights[6] 3; setAttr m.inWeightList[0].weights[0] 1;"
        "setAttr m.inWeightList[0].weights[5] 2;");
    EXPECT_EQ(out(), (std::vector<double>{1, 2, 3}));
    run("removeMultiInstance m.inWeightList[0].weights[5]");
    EXPECT_EQ(out(), (std::vector<double>{1, 3}));
    run("setAttr m.nodeState 2; setAttr m.inWeightList[0].weights[0] 7;");
    EXPECT_EQ(out(), (std::vector<double>{1, 3}));
    run("setAttr m.nodeState 0; setAttr m.envelope 0;");
    EXPECT_EQ(out(), std::vector<double>());
}

TEST_F(MultiToArray, EvaluatedAgainAndAgain) {
    run("setAttr m.inWeightList[0].weights[1] 1; setAttr m.inWeightList[0].weights[4] 4;"
        "createNode transform -n t; setAttr t.translateX 9; ");
    const auto again = [&] {
        run("setAttr m.envelope 0; getAttr m.outArray; setAttr m.envelope 1;");
        return out();
    };
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(again(), (std::vector<double>{1, 4}));
    run("setAttr m.inWeightList[0].weights[4] 5");
    EXPECT_EQ(again(), (std::vector<double>{1, 5}));
    run("setAttr m.inWeightList[0].weights[2] 2");
    EXPECT_EQ(again(), (std::vector<double>{1, 2, 5}));
    EXPECT_EQ(again(), (std::vector<double>{1, 2, 5}));
    run("connectAttr t.translateX m.inWeightList[0].weights[1]");
    EXPECT_EQ(again(), (std::vector<double>{9, 2, 5}));
    run("setAttr t.translateX 8");
    EXPECT_EQ(again(), (std::vector<double>{8, 2, 5}));
    run("disconnectAttr t.translateX m.inWeightList[0].weights[1];"
        "removeMultiInstance m.inWeightList[0].weights[1];");
    EXPECT_EQ(again(), (std::vector<double>{2, 5}));
}

TEST_F(MultiToArray, ConnectedWeights) {
    run("createNode transform -n t; setAttr t.translateX 4; setAttr m.inWeightList[0].weights[3] 1;"
        "connectAttr t.translateX m.inWeightList[0].weights[2];");
    EXPECT_EQ(out(), (std::vector<double>{4, 1}));
    run("setAttr t.translateX 5");
    EXPECT_EQ(out(), (std::vector<double>{5, 1}));
}

} // namespace
} // namespace vesk::nodes
