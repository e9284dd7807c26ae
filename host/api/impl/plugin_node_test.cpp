// Nodes of plug-ins: how they are registered, computed, dirtied and let go.

#include "host/api/impl/locator_node.h"
#include "host/api/impl/plugin_node.h"
#include "host/api/impl/test_session.h"

#include <maya/MFnDagNode.h>
#include <maya/MFnPlugin.h>
#include <maya/MPxLocatorNode.h>

namespace vesk::api {
namespace {

class PluginNodeTest : public ApiTest {
  protected:
    MPlug plug(const char* name) { return MFnDependencyNode(node).findPlug(name); }
    static MStatus addUp(Probe&, const MPlug& plug, MDataBlock& block) {
        if (plug != Probe::sum) return MStatus::kUnknownParameter;
        const double sum = block.inputValue(Probe::a).asDouble() + block.inputValue(Probe::b).asDouble();
        block.outputValue(Probe::sum).set(sum);
        return MStatus::kSuccess;
    }
    MObject node = make("probe", "n");
};

TEST_F(PluginNodeTest, ComputesOncePerDirtying) {
    Probe::onCompute = addUp;
    EXPECT_EQ(plug("sum").asDouble(), 3.5);
    EXPECT_EQ(plug("sum").asDouble(), 3.5);
    EXPECT_EQ(Probe::computes, 1); // clean, though the node never said so
    plug("a").setDouble(2);
    plug("b").setDouble(3);
    EXPECT_EQ(Probe::computes, 1); // nothing is computed by setting
    EXPECT_EQ(plug("sum").asDouble(), 5);
    EXPECT_EQ(Probe::computes, 2);
    plug("count").setInt(1); // affects nothing
    EXPECT_EQ(plug("sum").asDouble(), 5);
    EXPECT_EQ(Probe::computes, 2);

    // An unknown plug keeps its value and is clean until the next dirtying.
    EXPECT_EQ(plug("list[3]").asDouble(), 0);
    EXPECT_EQ(plug("list[3]").asDouble(), 0);
    EXPECT_EQ(Probe::computes, 3);
}

TEST_F(PluginNodeTest, PlugOfTheComputeIsTheOneAskedFor) {
    std::vector<std::string> asked;
    Probe::onCompute = [&](Probe&, const MPlug& plug, MDataBlock& block) {
        asked.push_back(text(plug.name()));
        if (plug == Probe::list) {
            block.outputArrayValue(Probe::list).jumpToElement(plug.logicalIndex());
            block.outputValue(plug).set(static_cast<double>(plug.logicalIndex()) * 2);
        }
        return MStatus::kSuccess;
    };
    EXPECT_EQ(plug("list[4]").asDouble(), 8);
    EXPECT_EQ(plug("sumPlaceX").asDouble(), 0);
    EXPECT_EQ(asked, (std::vector<std::string>{"n.list[4]", "n.sumPlaceX"}));
}

TEST_F(PluginNodeTest, FailuresLeaveTheValue) {
    Probe::onCompute = addUp;
    EXPECT_EQ(plug("sum").asDouble(), 3.5);
    Probe::onCompute = [](Probe&, const MPlug&, MDataBlock&) { return MStatus::kFailure; };
    plug("a").setDouble(9);
    MStatus status;
    EXPECT_EQ(plug("sum").asDouble(MDGContext::fsNormal, &status), 3.5);
    EXPECT_TRUE(status); // errors do not run along wires
    EXPECT_EQ(Probe::computes, 2);
    EXPECT_EQ(plug("sum").asDouble(), 3.5);
    EXPECT_EQ(Probe::computes, 2);
}

TEST_F(PluginNodeTest, NothingThrownPassesTheBoundary) {
    Probe::onCompute = [](Probe&, const MPlug&, MDataBlock&) -> MStatus {
        throw std::runtime_error("out of range");
    };
    EXPECT_EQ(plug("sum").asDouble(), 0);
    EXPECT_EQ(logged(), std::vector<std::string>{"Exception in compute of 'n.sum' (probe): out of range"});
    Probe::onDirty = [](Probe&, const MPlug&, MPlugArray&) { throw 3; };
    plug("a").setDouble(2);
    const auto dirtyTexts = logged();
    ASSERT_FALSE(dirtyTexts.empty());
    EXPECT_EQ(dirtyTexts[0], "Exception of unknown kind in setDependentsDirty of 'n.alpha' (probe).");
    Probe::onDirty = nullptr;
    Probe::creatorThrows = true;
    EXPECT_TRUE(make().isNull());
    EXPECT_EQ(logged(), std::vector<std::string>{
                            "Exception in the creator of node type 'probe': no memory for a probe"});
}

TEST_F(PluginNodeTest, ExtraDependentsAreDirtied) {
    Probe::onCompute = addUp;
    EXPECT_EQ(plug("sum").asDouble(), 3.5);
    Probe::onDirty = [](Probe& self, const MPlug& changed, MPlugArray& plugs) {
        if (changed == Probe::count) plugs.append(MPlug(self.thisMObject(), Probe::sum));
        plugs.append(changed); // itself: must not go round for ever
    };
    plug("count").setInt(8);
    EXPECT_EQ(plug("sum").asDouble(), 3.5);
    EXPECT_EQ(Probe::computes, 2);
}

TEST_F(PluginNodeTest, StateMessageAndLife) {
    EXPECT_EQ(MPlug(node, MPxNode::state).partialName(false, false, false, false, false, true), "nodeState");
    EXPECT_EQ(MDataBlock(nodeOf(node)).outputValue(MPxNode::state).asShort(), 0);
    EXPECT_FALSE(MPxNode::message.isNull() || MPxNode::caching.isNull());
    auto* probe = dynamic_cast<Probe*>(MFnDependencyNode(node).userNode());
    ASSERT_NE(probe, nullptr);
    EXPECT_EQ(probe->nameAtStart, "n"); // the node was there in postConstructor
    EXPECT_EQ(probe->thisMObject(), node);
    EXPECT_EQ(probe->typeId(), MTypeId(0x1001));
    EXPECT_EQ(node.apiType(), MFn::kPluginDependNode);
    EXPECT_TRUE(node.hasFn(MFn::kDependencyNode));

    // Outside of initialize nothing is added.
    EXPECT_EQ(MPxNode::addAttribute(MFnNumericAttribute().create("late", "lt", MFnNumericData::kInt)),
              MStatus::kFailure);
    EXPECT_EQ(MPxNode::attributeAffects(Probe::a, Probe::sum), MStatus::kFailure);
    EXPECT_EQ(MFnNumericAttribute(Probe::a).setArray(true), MStatus::kFailure);
    EXPECT_EQ(MFnCompoundAttribute(Probe::rows).removeChild(Probe::rowWeight), MStatus::kFailure);
}

TEST_F(PluginNodeTest, ObjectsGoWithTheirNodesButNotFromUnderneath) {
    // A node that deletes itself in its compute ends that compute first.
    Probe::onCompute = [&](Probe& self, const MPlug&, MDataBlock& block) {
        MObject doomed = self.thisMObject();
        EXPECT_TRUE(MGlobal::deleteNode(doomed));
        EXPECT_EQ(Probe::alive, 1);
        block.outputValue(Probe::sum).set(4.0);
        return MStatus::kSuccess;
    };
    EXPECT_EQ(Probe::alive, 1);
    (void)plug("sum").asDouble();
    EXPECT_EQ(Probe::alive, 0); // though this test still holds the node
    EXPECT_FALSE(nodeOf(node));

    Probe::onCompute = nullptr;
    MObject other = make();
    EXPECT_EQ(Probe::alive, 1);
    EXPECT_TRUE(MGlobal::deleteNode(other));
    EXPECT_EQ(Probe::alive, 0);
}

int initializeCalls = 0;

MStatus failing() {
    ++initializeCalls;
    return MStatus::kFailure;
}
MStatus throwing() { throw std::runtime_error("no"); }
MStatus clashing() {
    MFnNumericAttribute number;
    (void)MPxNode::addAttribute(number.create("same", "s1", MFnNumericData::kInt));
    return MPxNode::addAttribute(number.create("same", "s2", MFnNumericData::kInt));
}
MStatus affectingKeyable() {
    MFnNumericAttribute number;
    const MObject in = number.create("in", "i", MFnNumericData::kInt);
    (void)MPxNode::addAttribute(in);
    const MObject out = number.create("out", "o", MFnNumericData::kInt);
    if (MPxNode::attributeAffects(in, out)) return MStatus::kSuccess; // not added yet
    number.setKeyable(true);
    (void)MPxNode::addAttribute(out);
    if (MPxNode::attributeAffects(in, out)) return MStatus::kSuccess; // keyable
    number.setKeyable(false);
    return MPxNode::attributeAffects(in, out) ? MStatus::kSuccess : MStatus::kFailure;
}

TEST_F(PluginNodeTest, RegistrationIsAllOrNothing) {
    initializeCalls = 0;
    MObject object(plugin.get());
    MFnPlugin fn(object, "somebody", "2.1");
    EXPECT_EQ(fn.vendor(), "somebody");
    EXPECT_EQ(fn.version(), "2.1");
    EXPECT_EQ(fn.apiVersion(), "Any");
    EXPECT_EQ(fn.name(), "probes");

    EXPECT_EQ(fn.registerNode("probe", MTypeId(5), Probe::creator, failing), MStatus::kFailure);
    EXPECT_EQ(fn.registerNode("other", MTypeId(0x1001), Probe::creator, failing), MStatus::kFailure);
    EXPECT_EQ(initializeCalls, 0); // a known name or id is refused before anything runs
    EXPECT_EQ(fn.registerNode("other", MTypeId(5), Probe::creator, failing), MStatus::kFailure);
    EXPECT_EQ(initializeCalls, 1);
    EXPECT_EQ(fn.registerNode("other", MTypeId(5), Probe::creator, throwing), MStatus::kFailure);
    EXPECT_EQ(fn.registerNode("other", MTypeId(5), Probe::creator, clashing), MStatus::kFailure);
    EXPECT_EQ(fn.registerNode("other", MTypeId(5), Probe::creator, clashing, MPxNode::kSpringNode),
              MStatus::kFailure);
    EXPECT_EQ(fn.registerNode("other", MTypeId(5), nullptr, clashing), MStatus::kFailure);
    EXPECT_EQ(types.find("other"), nullptr);
    const auto texts = logged();
    EXPECT_EQ(texts.front(), "Cannot register node type 'probe': the name is taken.");
    EXPECT_EQ(texts[1], "Cannot register node type 'other': its id is that of 'probe'.");
    EXPECT_EQ(typeInTheMaking(), nullptr);

    const MString classification("texture/2d");
    EXPECT_TRUE(fn.registerNode("other", MTypeId(5), Probe::creator, affectingKeyable, MPxNode::kDependNode,
                                &classification));
    EXPECT_EQ(MFnDependencyNode::classification("other"), "texture/2d");
    EXPECT_EQ(MFnPlugin(node).registerNode("third", MTypeId(6), Probe::creator, affectingKeyable),
              MStatus::kInvalidParameter); // no plug-in
}

TEST_F(PluginNodeTest, DeregisteredNodesKeepTheirData) {
    Probe::onCompute = addUp;
    plug("a").setDouble(7);
    const MObject to = make("transform");
    ASSERT_TRUE(connect(plug("sum"), MFnDependencyNode(to).findPlug("translateX")));
    MObject object(plugin.get());
    MFnPlugin fn(object);
    EXPECT_TRUE(fn.deregisterNode(MTypeId(0x1001)));
    EXPECT_EQ(fn.deregisterNode(MTypeId(0x1001)), MStatus::kFailure);
    EXPECT_EQ(logged(), std::vector<std::string>{"No plug-in's node type has the id 4097."});
    EXPECT_EQ(node.apiType(), MFn::kUnknown);
    EXPECT_EQ(MFnDependencyNode(node).userNode(), nullptr);
    EXPECT_EQ(plug("a").asDouble(), 7);
    EXPECT_EQ(plug("sum").asDouble(), 0);
    EXPECT_EQ(Probe::computes, 0); // the plug-in's code is not called again
    EXPECT_TRUE(plug("sum").isConnected());
    EXPECT_TRUE(make().isNull());
    // The name and id are free for a new load of the plug-in.
    EXPECT_TRUE(registerPluginType(types, probeRequest()));
    EXPECT_EQ(make().apiType(), MFn::kPluginDependNode);
}

class Marker : public MPxLocatorNode {
  public:
    static void* creator() { return new Marker; }
    static MStatus initialize() { return MStatus::kSuccess; }
    // Takes every plug for its own, as some nodes do.
    MStatus compute(const MPlug& plug, MDataBlock&) override {
        return plug == worldPosition || plug == worldPositionX ? MStatus::kUnknownParameter
                                                               : MStatus::kSuccess;
    }
    bool isBounded() const override { return true; }
    MBoundingBox boundingBox() const override { return {MPoint(-1, -1, -1), MPoint(1, 2, 1)}; }
};

TEST_F(PluginNodeTest, LocatorsStandInTheHierarchy) {
    MObject object(plugin.get());
    ASSERT_TRUE(MFnPlugin(object).registerNode("marker", MTypeId(9), Marker::creator, Marker::initialize,
                                               MPxNode::kLocatorNode));
    MFnDagNode fn;
    const MObject transform = fn.create("marker", MObject::kNullObj);
    EXPECT_EQ(transform.apiType(), MFn::kTransform); // a shape alone gets one
    const MObject marker = fn.child(0);
    EXPECT_EQ(marker.apiType(), MFn::kPluginLocatorNode);
    EXPECT_TRUE(marker.hasFn(MFn::kLocator) && marker.hasFn(MFn::kShape));
    fn.findPlug("translateX").setDouble(5);
    EXPECT_EQ(fn.boundingBox().max().y, 2);
    EXPECT_EQ(fn.boundingBox().min().x, -1); // in the transform's own space

    MDagPath path;
    EXPECT_TRUE(MFnDagNode(marker).getPath(path));
    EXPECT_EQ(path.inclusiveMatrix()[3][0], 5);
    MPlug(marker, MPxLocatorNode::localPositionX).setDouble(0.5);
    EXPECT_EQ(MFnDependencyNode(marker).findPlug("worldPosition[0].worldPositionX").asDouble(), 5.5);
}

} // namespace
} // namespace vesk::api
