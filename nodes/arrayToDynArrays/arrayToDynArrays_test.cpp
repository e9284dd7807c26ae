#include "tests/api_access.h"
#include "tests/session_fixture.h"

#include <maya/MFnArrayAttrsData.h>

namespace vesk::nodes {
namespace {

class ArrayToDynArrays : public tests::PluginTest {
  protected:
    /// A node that adds a channel to what another puts out.
    void add(const std::string& node, const std::string& from, const std::string& name,
             const std::string& array) {
        run("createNode arrayToDynArrays -n " + node + "; setAttr -type \"string\" " + node + ".name \"" +
            name + "\"; setAttr " + node + ".inArray -type " + array + ";");
        if (!from.empty()) run("connectAttr " + from + ".outDynamicArrays " + node + ".inDynamicArrays");
    }
    static MObject data(const std::string& node) {
        return tests::plugNamed((node + ".outDynamicArrays").c_str()).asMObject();
    }
    static std::string names(const std::string& node) {
        const MStringArray list = MFnArrayAttrsData(data(node)).list();
        std::string all;
        for (unsigned i = 0; i < list.length(); ++i)
            all += (i > 0 ? " " : "") + std::string(list[i].asChar());
        return all;
    }
};

TEST_F(ArrayToDynArrays, AChainGathersChannels) {
    add("a", "", "id", "Int32Array 2 7 8");
    add("b", "a", "mass", "doubleArray 1 0.5");
    add("c", "b", "position", "vectorArray 1 1 2 3");
    add("d", "c", "label", "stringArray 2 \"one\" \"two\"");
    EXPECT_EQ(names("d"), "id mass position label");
    const MFnArrayAttrsData all(data("d"));
    EXPECT_EQ(all.getIntData("id")[1], 8);
    EXPECT_EQ(all.getDoubleData("mass")[0], 0.5);
    EXPECT_EQ(all.getVectorData("position")[0], MVector(1, 2, 3));
    EXPECT_EQ(all.getStringData("label")[1], MString("two"));
    EXPECT_EQ(names("a"), "id") << "what came in stays as it was";
    run("setAttr a.inArray -type Int32Array 1 3");
    EXPECT_EQ(MFnArrayAttrsData(data("d")).getIntData("id").length(), 1U);
    run("setAttr b.envelope 0; setAttr -type \"string\" c.name \"\"");
    EXPECT_EQ(names("d"), "id label");
    run("setAttr a.nodeState 2; setAttr a.inArray -type Int32Array 3 1 2 3;");
    EXPECT_EQ(MFnArrayAttrsData(data("d")).getIntData("id").length(), 1U) << "blocking";
}

TEST_F(ArrayToDynArrays, OverwritesAChannelOfItsKindOnly) {
    add("a", "", "mass", "doubleArray 2 1 2");
    add("b", "a", "mass", "doubleArray 3 4 5 6");
    EXPECT_EQ(names("b"), "mass");
    EXPECT_EQ(MFnArrayAttrsData(data("b")).getDoubleData("mass")[2], 6);
    EXPECT_EQ(MFnArrayAttrsData(data("a")).getDoubleData("mass").length(), 2U);
    run("setAttr b.inArray -type Int32Array 1 9");
    EXPECT_EQ(MFnArrayAttrsData(data("b")).getDoubleData("mass")[1], 2) << "what came in passes through";
    EXPECT_EQ(complaints(), Texts{"warning: b: There is a channel \"mass\" of another type."});
}

TEST_F(ArrayToDynArrays, PointsGiveRoomAlone) {
    add("p", "", "position", "pointArray 2 1 2 3 1 4 5 6 1");
    MVectorArray positions = MFnArrayAttrsData(data("p")).getVectorData("position");
    ASSERT_EQ(positions.length(), 2U);
    EXPECT_EQ(positions[1], MVector::zero);
    // Over vectors of that name, those that are there stay.
    add("v", "", "position", "vectorArray 1 7 8 9");
    run("connectAttr v.outDynamicArrays p.inDynamicArrays");
    positions = MFnArrayAttrsData(data("p")).getVectorData("position");
    ASSERT_EQ(positions.length(), 2U);
    EXPECT_EQ(positions[0], MVector(7, 8, 9));
    EXPECT_EQ(positions[1], MVector::zero);
}

TEST_F(ArrayToDynArrays, WithoutAnArray) {
    run("createNode arrayToDynArrays -n n");
    EXPECT_EQ(names("n"), "") << "no name: nothing to say";
    EXPECT_FALSE(data("n").isNull());
    run("setAttr -type \"string\" n.name \"x\"");
    EXPECT_EQ(names("n"), "");
    EXPECT_EQ(complaints(), Texts{"warning: n: Unsupported data type."});
    run("setAttr n.inArray -type doubleArray 0");
    EXPECT_EQ(names("n"), "x") << "an empty array is one";
}

} // namespace
} // namespace vesk::nodes
