// Plugs: addresses, wires, reading and writing.

#include "host/api/impl/test_session.h"

#include <maya/MFnDoubleArrayData.h>
#include <maya/MFnNumericData.h>
#include <maya/MFnStringData.h>
#include <maya/MPlugArray.h>

namespace vesk::api {
namespace {

class PlugTest : public ApiTest {
  protected:
    MPlug plug(const char* name) { return MFnDependencyNode(node).findPlug(name); }
    std::vector<int> existing(MPlug multi) {
        MIntArray indices;
        multi.getExistingArrayAttributeIndices(indices);
        return storage(indices);
    }
    MObject node = make("probe", "n");
};

TEST_F(PlugTest, NamesAndAddresses) {
    EXPECT_EQ(nameOf(plug("a")), "n.alpha");
    EXPECT_EQ(nameOf(plug("placeX")), "n.placeX");
    EXPECT_EQ(nameOf(plug("place.placeX")), "n.placeX");
    EXPECT_EQ(nameOf(plug("rows[2].rw")), "n.rows[2].rowWeight");
    EXPECT_EQ(nameOf(plug("rows[2].rowNames[5]")), "n.rows[2].rowNames[5]");
    MStatus status;
    EXPECT_TRUE(MFnDependencyNode(node).findPlug("nothing", &status).isNull());
    EXPECT_EQ(status, MStatus::kInvalidParameter);

    const MPlug rows(node, Probe::rows);
    const MPlug element = rows.elementByLogicalIndex(4);
    EXPECT_EQ(element.logicalIndex(), 4U);
    EXPECT_TRUE(element.isElement() && element.isCompound());
    EXPECT_FALSE(element.isArray());
    EXPECT_EQ(element.array(), rows);
    EXPECT_EQ(element.child(1).elementByLogicalIndex(3).array().parent(), element);
    EXPECT_EQ(element.child(Probe::rowWeight), plug("rows[4].rowWeight"));
    EXPECT_NE(element.child(0), plug("rows[5].rowWeight"));
    EXPECT_TRUE(element.child(0) == Probe::rowWeight); // compares the attribute alone
    EXPECT_TRUE(element.child(2, &status).isNull());
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    EXPECT_TRUE(element.child(Probe::a).isNull());
    EXPECT_TRUE(plug("a").elementByLogicalIndex(0).isNull());
    EXPECT_TRUE(MPlug(node, MFnDependencyNode(make("transform")).attribute("translate")).isNull());
    EXPECT_EQ(plug("rows[4].rowWeight").partialName(), "r[4].rw");
    EXPECT_EQ(plug("placeX").partialName(), "px");
    EXPECT_EQ(plug("placeX").partialName(false, false, false, false, true, true), "place.placeX");
    EXPECT_EQ(plug("rows[4]").partialName(true, false, false, false, false, true), "n.rows[4]");
}

TEST_F(PlugTest, OpenIndicesAreChosenLater) {
    MPlug weight(node, Probe::rowWeight);
    EXPECT_EQ(weight.setDouble(6), MStatus::kInvalidParameter);
    EXPECT_TRUE(weight.selectAncestorLogicalIndex(3, Probe::rows));
    EXPECT_EQ(nameOf(weight), "n.rows[3].rowWeight");
    EXPECT_TRUE(weight.setDouble(6));
    EXPECT_EQ(plug("rows[3].rowWeight").asDouble(), 6);
    EXPECT_EQ(weight.selectAncestorLogicalIndex(3, Probe::items), MStatus::kInvalidParameter);
    EXPECT_EQ(weight.selectAncestorLogicalIndex(3), MStatus::kInvalidParameter); // no multi itself
    MPlug items(node, Probe::items);
    EXPECT_TRUE(items.selectAncestorLogicalIndex(2));
    EXPECT_EQ(nameOf(items), "n.items[2]");
}

TEST_F(PlugTest, SparseMultis) {
    MPlug items(node, Probe::items);
    EXPECT_EQ(items.numElements(), 0U);
    for (const unsigned int index : {7U, 2U, 30U})
        EXPECT_TRUE(items.elementByLogicalIndex(index).setDouble(index * 10.0));
    EXPECT_EQ(items.elementByLogicalIndex(5).asDouble(), 9); // the default, and it does not come to be
    EXPECT_EQ(existing(items), (std::vector<int>{2, 7, 30}));
    EXPECT_EQ(items.elementByPhysicalIndex(1).logicalIndex(), 7U);
    MStatus status;
    EXPECT_TRUE(items.elementByPhysicalIndex(3, &status).isNull());
    EXPECT_EQ(status, MStatus::kInvalidParameter);

    // An element whose child alone is connected counts.
    const MObject other = make();
    ASSERT_TRUE(connect(MPlug(other, Probe::a), plug("rows[6].rowWeight")));
    EXPECT_EQ(existing(MPlug(node, Probe::rows)), (std::vector<int>{6}));
    EXPECT_EQ(MPlug(node, Probe::rows).numConnectedElements(), 1U);
    EXPECT_EQ(nameOf(MPlug(node, Probe::rows).connectionByPhysicalIndex(0)), "n.rows[6]");
    EXPECT_FALSE(plug("rows[6]").isConnected()); // the child is, not the element
    EXPECT_EQ(plug("rows[6]").numConnectedChildren(), 1U);
}

TEST_F(PlugTest, ConnectedTo) {
    const MObject from = make("probe", "from");
    const MObject to = make("probe", "to");
    ASSERT_TRUE(connect(MPlug(from, Probe::sum), plug("a")));
    ASSERT_TRUE(connect(plug("a"), MPlug(to, Probe::b)));
    ASSERT_TRUE(connect(plug("a"), MPlug(to, Probe::a)));
    EXPECT_EQ(Probe::wires[0], "from.sum -> n.alpha");
    EXPECT_EQ(Probe::wires[1], "n.alpha <- from.sum");

    MPlugArray plugs;
    EXPECT_TRUE(plug("a").connectedTo(plugs, true, false));
    ASSERT_EQ(plugs.length(), 1U);
    EXPECT_EQ(nameOf(plugs[0]), "from.sum");
    EXPECT_TRUE(plug("a").connectedTo(plugs, false, true)); // cleared first, in order of connection
    ASSERT_EQ(plugs.length(), 2U);
    EXPECT_EQ(nameOf(plugs[0]), "to.beta");
    EXPECT_EQ(nameOf(plugs[1]), "to.alpha");
    EXPECT_TRUE(
        MPlug(to, Probe::a).connectedTo(plugs, false, true)); // there is one, of the kind not asked for
    EXPECT_EQ(plugs.length(), 0U);
    EXPECT_FALSE(plug("b").connectedTo(plugs, true, true));
    EXPECT_TRUE(plug("a").isSource() && plug("a").isDestination());
    EXPECT_EQ(plug("a").setDouble(1), MStatus::kFailure); // fed by a wire
    EXPECT_TRUE(plug("b").setLocked(true));
    EXPECT_EQ(plug("b").setDouble(1), MStatus::kFailure);
}

TEST_F(PlugTest, NumbersConvert) {
    EXPECT_TRUE(plug("count").setValue(5.9));
    EXPECT_EQ(plug("count").asInt(), 5);
    EXPECT_EQ(plug("count").asShort(), 5);
    EXPECT_TRUE(plug("count").asBool());
    EXPECT_EQ(plug("flag").asInt(), 1);
    EXPECT_TRUE(plug("a").setDouble(-1e30));
    EXPECT_EQ(plug("a").asInt(), -2147483647 - 1);
    EXPECT_EQ(plug("mode").asShort(), 7);
    EXPECT_TRUE(plug("when").setValue(MTime(6, MTime::kFilm)));
    EXPECT_EQ(plug("when").asMTime().as(MTime::kFilm), 6);
    EXPECT_DOUBLE_EQ(plug("turn").asMAngle().asDegrees(), 90);

    MStatus status;
    EXPECT_EQ(plug("place").asDouble(MDGContext::fsNormal, &status), 0);
    EXPECT_EQ(status, MStatus::kFailure); // no number
    EXPECT_EQ(plug("label").asInt(MDGContext::fsNormal, &status), 0);
    EXPECT_EQ(status, MStatus::kFailure);
    EXPECT_EQ(plug("place").setDouble(1), MStatus::kFailure);
    EXPECT_EQ(plug("label").setDouble(1), MStatus::kFailure);
    EXPECT_EQ(MPlug().setDouble(1), MStatus::kInvalidParameter);
}

TEST_F(PlugTest, DataObjects) {
    MObject object;
    EXPECT_EQ(plug("numbers").getValue(object), MStatus::kFailure);
    EXPECT_TRUE(object.isNull());
    MFnDoubleArrayData array;
    object = array.create();
    EXPECT_TRUE(plug("numbers").setMObject(object));
    EXPECT_EQ(plug("numbers").asMObject().apiType(), MFn::kDoubleArrayData);
    EXPECT_EQ(plug("label").setValue(object), MStatus::kFailure); // another type
    EXPECT_EQ(plug("numbers").setValue(node), MStatus::kInvalidParameter);
    EXPECT_TRUE(plug("label").setValue("word"));
    EXPECT_EQ(plug("label").asString(), "word");

    // Triples come and go as numeric data.
    MFnNumericData triple;
    object = triple.create(MFnNumericData::k3Float);
    triple.setData(1.0F, 2.0F, 3.0F);
    EXPECT_TRUE(plug("place").setMObject(object));
    EXPECT_EQ(plug("placeY").asFloat(), 2);
    float x = 0;
    float y = 0;
    float z = 0;
    object = plug("place").asMObject();
    EXPECT_TRUE(MFnNumericData(object).getData(x, y, z));
    EXPECT_EQ(z, 3);
}

TEST_F(PlugTest, AnotherTimeLeavesNoTrace) {
    const MObject time = make("time", "time1");
    scene.setFrame(1);
    ASSERT_TRUE(connect(MFnDependencyNode(time).findPlug("outTime"), plug("when")));
    Probe::onCompute = [](Probe&, const MPlug&, MDataBlock& block) {
        const double frame = block.inputValue(Probe::when).asTime().as(MTime::kFilm);
        block.outputValue(Probe::sum).set(frame + block.inputValue(Probe::a).asDouble());
        return MStatus::kSuccess;
    };
    EXPECT_EQ(plug("sum").asDouble(), 2.5);
    MDGContext later(MTime(10, MTime::kFilm));
    EXPECT_EQ(plug("sum").asDouble(later), 11.5);
    EXPECT_EQ(plug("sum").asDouble(), 2.5);
    EXPECT_EQ(Probe::computes, 2); // the value of the current time was kept
    EXPECT_EQ(plug("when").asMTime().as(MTime::kFilm), 1);
    EXPECT_EQ(scene.frame(), 1);
}

TEST_F(PlugTest, DeletedNodesAnswerWithFailure) {
    const MPlug a = plug("a");
    MPlug element = MPlug(node, Probe::items).elementByLogicalIndex(1);
    MFnDependencyNode fn(node);
    scene.remove(*nodeOf(node));
    MStatus status;
    EXPECT_EQ(a.asDouble(MDGContext::fsNormal, &status), 0);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    EXPECT_EQ(element.setDouble(1), MStatus::kInvalidParameter);
    EXPECT_EQ(a.name(&status), "");
    EXPECT_TRUE(a.node(&status).isNull());
    EXPECT_TRUE(a.isNull());
    EXPECT_FALSE(a.isConnected());
    EXPECT_EQ(fn.name(&status), "");
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    EXPECT_TRUE(fn.findPlug("a", &status).isNull());
    EXPECT_EQ(MFnDependencyNode().setObject(node), MStatus::kInvalidParameter);
    EXPECT_EQ(fn.userNode(), nullptr);
}

} // namespace
} // namespace vesk::api
