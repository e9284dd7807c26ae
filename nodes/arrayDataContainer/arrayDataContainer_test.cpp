#include "nodes/arrayDataContainer/blend.h"
#include "tests/session_fixture.h"

#include <maya/MFnIntArrayData.h>
#include <maya/MFnPointArrayData.h>
#include <maya/MFnVectorArrayData.h>
#include <maya/MIntArray.h>
#include <maya/MPointArray.h>
#include <maya/MVectorArray.h>

namespace vesk::nodes {
namespace {

class ArrayDataContainer : public tests::PluginTest {
  protected:
    /// Frames 2 to 6 of an array with one vector, which goes 1 along x a frame.
    void SetUp() override {
        PluginTest::SetUp();
        run("spaceLocator -n l; createNode animCurveTL -n move; setAttr -s 2 move.ktv[0:1] 0 0 100 100;"
            "setAttr move.tangentType 2; connectAttr move.output l.translateX;"
            "createNode transformsToArrays -n ta; connectAttr l.worldMatrix[0] ta.inTransforms[0].inMatrix;"
            "createNode arrayDataContainer -n box; connectAttr ta.outPositionPP box.inArray;"
            "connectAttr time1.outTime box.inTime; setAttr box.startTime 2; setAttr box.endTime 6;");
    }
    /// x of the vector at a frame.
    double at(double frame) {
        run("currentTime " + std::to_string(frame));
        const auto vectors = floats("box.outArray");
        return vectors.size() == 3 ? vectors[0] : -1000;
    }
    void cut() { run("disconnectAttr ta.outPositionPP box.inArray"); }
};

TEST_F(ArrayDataContainer, WhileRecordingItPassesTheRangeThroughAndHoldsTheEnds) {
    for (const auto& [frame, x] :
         {std::pair{4.0, 4.0}, {9, 6}, {3.25, 3.25}, {-5, 2}, {6, 6}, {4, 4}, {2, 2}})
        EXPECT_NEAR(at(frame), x, 1e-9) << frame;
    EXPECT_EQ(run("getAttr -s box.held").asInt(), 3) << "whole frames of the range that were shown: 2, 4, 6";
}

TEST_F(ArrayDataContainer, PlaysWhatItHoldsInAnyOrderAfterSavingAndWithoutItsSource) {
    for (const double frame : {6.0, 2.0, 4.0})
        (void)at(frame);
    run("setAttr box.record 0");
    cut();
    const auto check = [&] {
        for (const auto& [frame, x] :
             {std::pair{2.0, 2.0}, {6, 6}, {3, 3}, {5.5, 5.5}, {0, 2}, {50, 6}, {4, 4}})
            EXPECT_NEAR(at(frame), x, 1e-9) << frame;
    };
    check();
    const std::string file = (folder / "held.ma").string();
    run("file -rename \"" + file + "\"; file -save -type \"mayaAscii\"; file -f -new; file -o \"" + file +
        "\"");
    check();
}

TEST_F(ArrayDataContainer, ARangeLetsGoOfWhatLiesOutsideAndNeverGrowsBeyondItself) {
    for (double frame = 0; frame < 10; frame += 0.25)
        (void)at(frame);
    EXPECT_EQ(run("getAttr -s box.held").asInt(), 5);
    run("setAttr box.startTime 5; setAttr box.endTime 3;"); // backwards: the start alone
    EXPECT_NEAR(at(9), 5, 1e-9);
    EXPECT_NEAR(at(5), 5, 1e-9);
    EXPECT_EQ(run("getAttr -s box.held").asInt(), 1);
}

TEST_F(ArrayDataContainer, ReadingAtAnotherTimeRecordsNothing) {
    (void)at(3);
    run("createNode computeVelocity -n v; connectAttr box.outArray v.inGeometry; currentTime 5;");
    expectNear(floats("v.outVelocityPP"), {24, 0, 0});
    EXPECT_EQ(run("getAttr -s box.held").asInt(), 2) << "3 and 5, not 4";
}

TEST_F(ArrayDataContainer, NothingHeldNothingConnectedAndBlocking) {
    run("setAttr box.record 0");
    EXPECT_EQ(at(3), -1000);
    run("setAttr box.record 1");
    cut();
    EXPECT_EQ(at(4), -1000);
    EXPECT_EQ(run("getAttr -s box.held").asInt(), 0);
    run("setAttr box.inArray -type \"doubleArray\" 3 7 8 9");
    EXPECT_EQ(at(4), 7) << "any kind of array";
    run("setAttr box.nodeState 2");
    EXPECT_EQ(at(5), 7);
}

TEST(BlendedArray, MixesWhatGoesTogether) {
    const MVector vectors[] = {{0, 2, 4}}, others[] = {{4, 2, 0}};
    const MObject a = MFnVectorArrayData().create(MVectorArray(vectors, 1));
    const MObject b = MFnVectorArrayData().create(MVectorArray(others, 1));
    EXPECT_EQ(MFnVectorArrayData(blendedArray(a, b, 0.25))[0], MVector(1, 2, 3));
    EXPECT_EQ(blendedArray(a, b, 0), a);
    const MPoint points[] = {{0, 0, 0, 1}}, heavier[] = {{2, 2, 2, 3}};
    const MObject p = MFnPointArrayData().create(MPointArray(points, 1));
    const MObject q = MFnPointArrayData().create(MPointArray(heavier, 1));
    EXPECT_EQ(MFnPointArrayData(blendedArray(p, q, 0.5))[0], MPoint(1, 1, 1, 2));
    EXPECT_EQ(blendedArray(a, p, 0.5), a) << "kinds differ";
    EXPECT_EQ(blendedArray(a, MFnVectorArrayData().create(), 0.5), a) << "lengths differ";
    const MObject ints = MFnIntArrayData().create(MIntArray(2, 3));
    EXPECT_EQ(blendedArray(ints, MFnIntArrayData().create(MIntArray(2, 5)), 0.5), ints);
    EXPECT_TRUE(blendedArray(MObject::kNullObj, a, 0.5).isNull());
}

} // namespace
} // namespace vesk::nodes
