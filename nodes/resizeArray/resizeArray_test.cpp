#include "tests/session_fixture.h"

namespace vesk::nodes {
namespace {

class ResizeArray : public tests::PluginTest {};

TEST_F(ResizeArray, CutsAndPadsEachKind) {
    run("createNode resizeArray -n r; setAttr r.length 2; getAttr r.outArray;"); // no array: nothing happens
    run("setAttr r.inArray -type doubleArray 3 1 2 3;");
    expectNear(floats("r.outArray"), {1, 2});
    run("setAttr r.length 5");
    expectNear(floats("r.outArray"), {1, 2, 3, 0, 0});
    run("setAttr r.inArray -type vectorArray 1 1 2 3; setAttr r.length 2;");
    expectNear(floats("r.outArray"), {1, 2, 3, 0, 0, 0});
    run("setAttr r.inArray -type Int32Array 1 7");
    EXPECT_EQ(ints("r.outArray"), (std::vector<int>{7, 0}));
    run("setAttr r.length 0");
    EXPECT_EQ(ints("r.outArray"), std::vector<int>());
    run("setAttr r.length 1");
    EXPECT_EQ(ints("r.outArray"), std::vector<int>{7});
    run("setAttr r.nodeState 2; setAttr r.length 3;");
    EXPECT_EQ(ints("r.outArray"), std::vector<int>{7});
    run("setAttr r.nodeState 0; setAttr r.inArray -type doubleArray 0;");
    expectNear(floats("r.outArray"), {0, 0, 0});
    // Values over a wire have no limits.
    run("createNode transform -n t; setAttr t.translateX -4; connectAttr t.translateX r.length;");
    EXPECT_EQ(floats("r.outArray"), std::vector<double>());
}

} // namespace
} // namespace vesk::nodes
