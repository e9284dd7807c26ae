#include "nodes/createArray/createEntries.h"
#include "tests/api_access.h"
#include "tests/session_fixture.h"

namespace vesk::nodes {
namespace {

class CreateArray : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("createNode createArray -n c; setAttr c.defaultValueX 1.9; setAttr c.defaultValueY 2;"
            "setAttr c.defaultValueZ 3; setAttr c.defaultValueW 4;");
    }
    MFn::Type kind() const { return tests::plugNamed("c.outArray").asMObject().apiType(); }
};

TEST_F(CreateArray, EveryKindOfEntry) {
    EXPECT_EQ(kind(), MFn::kInvalid) << "length 0 gives no object at all";
    run("setAttr c.length 2");
    EXPECT_EQ(ints("c.outArray"), (std::vector<int>{1, 1}));
    const std::vector<double> expected[] = {{},
                                            {1.9, 1.9},
                                            {1.9, 2, 1.9, 2},
                                            {1.9, 2, 3, 1.9, 2, 3},
                                            {1.9, 2, 3, 1.9, 2, 3},
                                            {1.9, 2, 3, 4, 1.9, 2, 3, 4}};
    for (int type = 1; type < 6; ++type) {
        run("setAttr c.outputType " + std::to_string(type));
        expectNear(floats("c.outArray"), expected[type]);
        EXPECT_EQ(kind(), type == 4 ? MFn::kVectorArrayData : MFn::kDoubleArrayData);
    }
    run("setAttr c.nodeState 1; setAttr c.length 7;");
    expectNear(floats("c.outArray"), expected[5]);
    run("setAttr c.nodeState 0; setAttr c.length 0;");
    EXPECT_EQ(kind(), MFn::kInvalid);
    // A type over a wire is brought into range.
    run("createNode transform -n t; setAttr t.translateX 40; connectAttr -f t.translateX c.outputType;"
        "setAttr c.length 1;");
    expectNear(floats("c.outArray"), {1.9, 2, 3, 4});
    run("setAttr t.translateX -3");
    EXPECT_EQ(ints("c.outArray"), std::vector<int>{1});
}

TEST_F(CreateArray, RampsOfOneEntryAreValues) {
    run("setAttr c.length 1; setAttr c.outputType 5; setAttr c.useRamps 1;"
        "setAttr c.rampDefaultValueXYZ[0].rampDefaultValueXYZ_Color -type double3 0.5 0.25 1;"
        "setAttr c.rampDefaultValueW[0].rampDefaultValueW_FloatValue 0.75;");
    expectNear(floats("c.outArray"), {0.5, 0.25, 1, 0.75});
    run("setAttr c.outputType 4");
    expectNear(floats("c.outArray"), {0.5, 0.25, 1});
    // A curve of more entries is only read along with a colour ramp of more.
    run("setAttr c.outputType 5; setAttr c.rampDefaultValueW[1] 1 1 1;");
    expectNear(floats("c.outArray"), {0.5, 0.25, 1, 4});
}

TEST_F(CreateArray, RampsRunFromTheStartAndNeverReachTheEnd) {
    run("setAttr c.length 4; setAttr c.outputType 5; setAttr c.useRamps 1;"
        "setAttr c.rampDefaultValueXYZ[1].rampDefaultValueXYZ_Color -type double3 1 2 4;"
        "setAttr c.rampDefaultValueXYZ[1].rampDefaultValueXYZ_Position 1;"
        "setAttr c.rampDefaultValueXYZ[1].rampDefaultValueXYZ_Interp 1;"
        "setAttr c.rampDefaultValueW[0].rampDefaultValueW_FloatValue 8;");
    expectNear(floats("c.outArray"), {0, 0, 0, 8, 0.25, 0.5, 1, 8, 0.5, 1, 2, 8, 0.75, 1.5, 3, 8});
    // One entry edited, one child of it: the output follows.
    run("setAttr c.rampDefaultValueXYZ[1].rampDefaultValueXYZ_ColorG 4; setAttr c.outputType 2;"
        "setAttr c.length 2;");
    expectNear(floats("c.outArray"), {0, 0, 0.5, 2});
    run("setAttr c.outputType 0; setAttr c.rampDefaultValueXYZ[0].rampDefaultValueXYZ_ColorR 8;");
    EXPECT_EQ(ints("c.outArray"), (std::vector<int>{8, 4})); // 4.5 truncated
}

TEST_F(CreateArray, MoreThanAnArrayCanHold) {
    run("setAttr c.outputType 5; setAttr c.length 1; getAttr c.outArray; setAttr c.length 2147483647;");
    EXPECT_EQ(floats("c.outArray").size(), 4U);
    EXPECT_EQ(complaints(), Texts{"warning: c: There is no memory for an array of 8589934588 elements."});
}

TEST_F(CreateArray, SavedAndOpened) {
    run("setAttr c.length 2; setAttr c.outputType 5; getAttr c.outArray;");
    const std::string file = (folder / "c.ma").string();
    run("file -rename \"" + file + "\"; file -save -type \"mayaAscii\"; file -f -new; file -o \"" + file +
        "\"");
    expectNear(floats("c.outArray"), {1.9, 2, 3, 4, 1.9, 2, 3, 4});
}

} // namespace
} // namespace vesk::nodes
