// The scene as the API shows it: nodes, hierarchy, selection, languages, walks.

#include "host/api/impl/test_session.h"

#include <maya/MCommandMessage.h>
#include <maya/MDGModifier.h>
#include <maya/MDagPathArray.h>
#include <maya/MDoubleArray.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnSingleIndexedComponent.h>
#include <maya/MFnTransform.h>
#include <maya/MIntArray.h>
#include <maya/MItDag.h>
#include <maya/MItDependencyGraph.h>
#include <maya/MPlugArray.h>
#include <maya/MVectorArray.h>

namespace vesk::api {
namespace {

class SceneTest : public ApiTest {
  protected:
    MObject transform(const char* name, const MObject& parent = MObject::kNullObj) {
        return MFnDagNode().create("transform", name, parent);
    }
    static std::vector<std::string> strings(const MSelectionList& list) {
        MStringArray names;
        list.getSelectionStrings(names);
        std::vector<std::string> result;
        for (const MString& name : storage(names))
            result.push_back(text(name));
        return result;
    }
    static std::string nameOfNode(const MObject& node) { return text(MFnDependencyNode(node).name()); }
    static std::vector<std::string> walked(MItDependencyGraph& it) {
        std::vector<std::string> names;
        for (; !it.isDone(); it.next())
            names.push_back(nameOfNode(it.currentItem()));
        return names;
    }
    using Names = std::vector<std::string>;
};

TEST_F(SceneTest, NodesByTypeAndName) {
    MFnDependencyNode fn;
    MStatus status;
    EXPECT_TRUE(fn.create("nothing", &status).isNull());
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    EXPECT_TRUE(fn.create("dagNode", &status).isNull()); // only a base
    (void)fn.create(MTypeId(0x1001), "here", &status);
    EXPECT_EQ(fn.name(), "here");
    EXPECT_EQ(fn.typeName(), "probe");
    EXPECT_EQ(fn.setName("there", &status), "there");
    EXPECT_TRUE(make("probe", "there").hasFn(MFn::kDependencyNode));
    EXPECT_EQ(fn.setName("", &status), "there");
    EXPECT_EQ(status, MStatus::kFailure);
    EXPECT_EQ(fn.attribute(fn.attributeCount() - 1).apiType(), MFn::kNumericAttribute);
    EXPECT_TRUE(fn.attribute(fn.attributeCount(), &status).isNull());

    MFnNumericAttribute number;
    const MObject extra = number.create("extra", "ex", MFnNumericData::kDouble, 3);
    EXPECT_TRUE(fn.addAttribute(extra));
    EXPECT_EQ(fn.addAttribute(extra), MStatus::kFailure);
    EXPECT_EQ(fn.addAttribute(number.create("alpha", "al", MFnNumericData::kInt)),
              MStatus::kFailure); // taken
    EXPECT_EQ(fn.findPlug("ex").asDouble(), 3);
    EXPECT_TRUE(fn.findPlug("ex").isDynamic());
    EXPECT_EQ(MDataBlock(nodeOf(fn.object())).inputValue(extra).asDouble(), 3);
    EXPECT_TRUE(fn.removeAttribute(extra));
    EXPECT_FALSE(fn.hasAttribute("extra"));
    EXPECT_EQ(fn.removeAttribute(Probe::a), MStatus::kFailure);
    MPlugArray plugs;
    EXPECT_EQ(fn.getConnections(plugs), MStatus::kFailure);
}

TEST_F(SceneTest, PathsThroughTheHierarchy) {
    const MObject top = transform("top");
    const MObject left = transform("left", top);
    const MObject leaf = transform("leaf", left);
    const MObject right = transform("right");
    (void)transform("leaf", right);
    MFnDagNode(top).findPlug("tx").setDouble(1);
    MFnDagNode(left).findPlug("ty").setDouble(2);
    MFnDagNode(right).findPlug("tx").setDouble(10);

    MDagPath path = MDagPath::getAPathTo(leaf);
    EXPECT_EQ(path.fullPathName(), "|top|left|leaf");
    EXPECT_EQ(path.partialPathName(), "left|leaf");
    EXPECT_EQ(MVector(path.inclusiveMatrix()[3]), MVector(1, 2, 0));
    EXPECT_TRUE(path.pop());
    EXPECT_EQ(path.node(), left);
    EXPECT_EQ(path.pop(3), MStatus::kInvalidParameter);
    EXPECT_TRUE(path.push(leaf));
    EXPECT_EQ(path.push(top), MStatus::kInvalidParameter);
    EXPECT_EQ(path.extendToShape(), MStatus::kFailure);
    EXPECT_EQ(MFnDagNode(path).fullPathName(), "|top|left|leaf");

    // A second parent makes an instance: another path, another place in the world.
    EXPECT_TRUE(MFnDagNode(right).addChild(left, MFnDagNode::kNextPos, true));
    MDagPathArray paths;
    EXPECT_TRUE(MDagPath::getAllPathsTo(leaf, paths));
    ASSERT_EQ(paths.length(), 2U);
    EXPECT_EQ(paths[1].fullPathName(), "|right|left|leaf");
    EXPECT_EQ(paths[1].instanceNumber(), 1U);
    EXPECT_EQ(MVector(paths[1].inclusiveMatrix()[3]), MVector(10, 2, 0));
    EXPECT_EQ(MFnDagNode(leaf).parent(0), left);
    EXPECT_EQ(MFnTransform(paths[1]).translation(MSpace::kWorld), MVector(10, 2, 0));
    MStatus status;
    (void)MFnTransform(leaf).translation(MSpace::kWorld, &status);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    EXPECT_TRUE(MFnTransform(paths[1]).setTranslation(MVector(10, 2, 4), MSpace::kWorld));
    EXPECT_EQ(MFnTransform(leaf).transformation().translation(MSpace::kTransform), MVector(0, 0, 4));

    MObject doomed = left;
    EXPECT_TRUE(MGlobal::deleteNode(doomed));
    EXPECT_FALSE(path.isValid()); // its nodes went with the parent
    EXPECT_EQ(path.fullPathName(&status), "");
    EXPECT_EQ(status, MStatus::kFailure);
    EXPECT_EQ(MGlobal::deleteNode(doomed), MStatus::kInvalidParameter);
    EXPECT_EQ(MFnDagNode(leaf, &status).childCount(), 0U);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
}

TEST_F(SceneTest, WalkingTheHierarchy) {
    const MObject a = transform("a");
    const MObject b = transform("b", a);
    (void)transform("c", b);
    (void)transform("d", a);
    (void)transform("e");
    const auto names = [](MItDag& it) {
        Names found;
        for (; !it.isDone(); it.next())
            found.push_back(nameOfNode(it.currentItem()) + std::to_string(it.depth()));
        return found;
    };
    MItDag it;
    EXPECT_EQ(names(it), (Names{"a0", "b1", "c2", "d1", "e0"}));
    MItDag wide(MItDag::kBreadthFirst, MFn::kTransform);
    EXPECT_EQ(names(wide), (Names{"a0", "e0", "b1", "d1", "c2"}));
    EXPECT_TRUE(it.reset(b));
    EXPECT_EQ(names(it), (Names{"b0", "c1"}));
    EXPECT_TRUE(it.reset(a, MItDag::kDepthFirst, MFn::kTransform));
    it.next();
    EXPECT_TRUE(it.prune()); // not below b
    it.next();
    EXPECT_EQ(it.fullPathName(), "|a|d");
    EXPECT_TRUE(it.reset(a, MItDag::kDepthFirst, MFn::kJoint));
    EXPECT_TRUE(it.isDone());
    EXPECT_EQ(it.next(), MStatus::kFailure);
    EXPECT_EQ(it.reset(MObject()), MStatus::kInvalidParameter);
}

TEST_F(SceneTest, WalkingTheGraph) {
    const MObject first = make("probe", "first");
    const MObject second = make("probe", "second");
    const MObject third = make("probe", "third");
    const MObject place = transform("place");
    ASSERT_TRUE(connect(MPlug(first, Probe::sum), MPlug(second, Probe::a)));
    ASSERT_TRUE(connect(MPlug(first, Probe::sum), MPlug(third, Probe::count))); // affects nothing there
    ASSERT_TRUE(connect(MPlug(second, Probe::sum), MPlug(third, Probe::b)));
    ASSERT_TRUE(connect(MPlug(third, Probe::sum), MFnDependencyNode(place).findPlug("tx")));

    MItDependencyGraph down(first);
    EXPECT_EQ(walked(down), (Names{"first", "second", "third", "place"}));
    MItDependencyGraph wide(first, MFn::kInvalid, MItDependencyGraph::kDownstream,
                            MItDependencyGraph::kBreadthFirst);
    EXPECT_EQ(walked(wide), (Names{"first", "second", "third", "place"}));
    // Through `count` the walk would end at the third node; what came in there does not reach its sum.
    MItDependencyGraph through(MPlug(third, Probe::count));
    EXPECT_EQ(walked(through), Names{"third"});

    MStatus status;
    MItDependencyGraph up(place, MFn::kPluginDependNode, MItDependencyGraph::kUpstream,
                          MItDependencyGraph::kDepthFirst, MItDependencyGraph::kNodeLevel, &status);
    EXPECT_TRUE(status);
    EXPECT_EQ(up.currentItem(), third);
    EXPECT_EQ(nameOf(up.thisPlug()), "third.sum");
    EXPECT_EQ(nameOf(up.previousPlug()), "place.translateX");
    EXPECT_EQ(walked(up), (Names{"third", "second", "first"})); // not over count
    MItDependencyGraph none(place, MFn::kMesh, MItDependencyGraph::kUpstream, MItDependencyGraph::kDepthFirst,
                            MItDependencyGraph::kNodeLevel, &status);
    EXPECT_EQ(status, MStatus::kFailure);
    EXPECT_TRUE(none.isDone());
    EXPECT_TRUE(none.currentItem(&status).isNull());

    // A ring ends, and deleting in the middle of a walk is survived.
    ASSERT_TRUE(connect(MPlug(third, Probe::sum), MPlug(first, Probe::a)));
    MItDependencyGraph ring(first);
    scene.remove(*nodeOf(second));
    EXPECT_EQ(walked(ring), (Names{"first", "third"})); // still fed at count
    MItDependencyGraph gone(second);
    EXPECT_TRUE(gone.isDone());
}

TEST_F(SceneTest, SelectionLists) {
    const MObject one = make("probe", "one");
    const MObject place = transform("place");
    MSelectionList list;
    EXPECT_TRUE(list.add("one"));
    EXPECT_TRUE(list.add("one")); // by name not a second time
    EXPECT_EQ(list.length(), 1U);
    EXPECT_TRUE(list.add(one)); // by object again, unless merging
    EXPECT_TRUE(list.add(one, true));
    EXPECT_EQ(list.length(), 2U);
    EXPECT_EQ(list.add("nobody"), MStatus::kInvalidParameter);
    EXPECT_TRUE(list.add("one.alpha"));
    EXPECT_TRUE(list.add("pl*"));
    EXPECT_EQ(strings(list), (Names{"one", "one", "one.alpha", "place"}));

    MPlug plug;
    EXPECT_TRUE(list.getPlug(2, plug));
    EXPECT_TRUE(plug == Probe::a);
    EXPECT_EQ(list.getPlug(0, plug), MStatus::kFailure);
    EXPECT_EQ(list.getPlug(9, plug), MStatus::kInvalidParameter);
    EXPECT_TRUE(plug.isNull());
    MDagPath path;
    EXPECT_EQ(list.getDagPath(0, path), MStatus::kFailure);
    EXPECT_TRUE(list.getDagPath(3, path));
    EXPECT_EQ(path.node(), place);
    EXPECT_TRUE(list.hasItem(place));
    EXPECT_TRUE(list.remove(3));
    EXPECT_FALSE(list.hasItem(place));
    EXPECT_EQ(list.add(Probe::a), MStatus::kInvalidParameter); // no node

    const MSelectionList copy = list;
    scene.remove(*nodeOf(one)); // drops out of every list
    EXPECT_TRUE(list.isEmpty());
    EXPECT_TRUE(copy.isEmpty());

    MFnSingleIndexedComponent component;
    const MObject vertices = component.create(MFn::kMeshVertComponent);
    component.addElement(4);
    EXPECT_TRUE(list.add(path, vertices));
    EXPECT_EQ(list.add(path, place), MStatus::kInvalidParameter);
    EXPECT_EQ(strings(list), Names{"place.vtx[4]"});
    MObject back;
    EXPECT_TRUE(list.getDagPath(0, path, back));
    EXPECT_EQ(back, vertices);
}

TEST_F(SceneTest, ActiveSelection) {
    const MObject a = make("probe", "a1");
    const MObject b = make("probe", "b1");
    EXPECT_TRUE(MGlobal::select(a));
    EXPECT_TRUE(MGlobal::selectByName("b1"));
    MSelectionList active;
    EXPECT_TRUE(MGlobal::getActiveSelectionList(active));
    EXPECT_EQ(strings(active), (Names{"a1", "b1"}));
    EXPECT_TRUE(MGlobal::selectByName("a1", MGlobal::kXORWithList));
    MGlobal::getActiveSelectionList(active);
    EXPECT_EQ(strings(active), Names{"b1"});
    EXPECT_TRUE(MGlobal::select(a, MGlobal::kAddToHeadOfList));
    MGlobal::getActiveSelectionList(active);
    EXPECT_EQ(strings(active), (Names{"a1", "b1"}));
    EXPECT_TRUE(MGlobal::unselect(b));
    EXPECT_TRUE(MGlobal::setHiliteList(active)); // a copy of what was
    MGlobal::getActiveSelectionList(active);
    EXPECT_EQ(strings(active), Names{"a1"});
    MGlobal::getHiliteList(active);
    EXPECT_EQ(strings(active), (Names{"a1", "b1"}));
}

TEST_F(SceneTest, CommandsAndTheirResults) {
    session.melAnswers = {{"int", 3},
                          {"float", 2.5},
                          {"string", "word"},
                          {"strings", mel::StringArray{"x", "y"}},
                          {"ints", mel::IntArray{1, 2}},
                          {"nothing", mel::Value()}};
    int whole = 9;
    EXPECT_TRUE(MGlobal::executeCommand("int", whole));
    EXPECT_EQ(whole, 3);
    double number = 0;
    EXPECT_TRUE(MGlobal::executeCommand("int", number));
    EXPECT_EQ(number, 3);
    EXPECT_EQ(MGlobal::executeCommand("float", whole), MStatus::kFailure);
    EXPECT_EQ(whole, 0); // cleared
    MStringArray strings;
    EXPECT_TRUE(MGlobal::executeCommand("strings", strings));
    EXPECT_EQ(strings[1], "y");
    EXPECT_TRUE(MGlobal::executeCommand("string", strings)); // a scalar is an array of one
    EXPECT_EQ(strings.length(), 1U);
    EXPECT_EQ(MGlobal::executeCommand("ints", strings), MStatus::kFailure);
    EXPECT_EQ(strings.length(), 0U);
    MDoubleArray doubles;
    EXPECT_TRUE(MGlobal::executeCommand("ints", doubles));
    EXPECT_EQ(doubles[1], 2);
    EXPECT_TRUE(MGlobal::executeCommand("nothing"));
    MCommandResult result;
    EXPECT_TRUE(MGlobal::executeCommand("ints", result));
    EXPECT_EQ(result.resultType(), MCommandResult::kIntArray);
    EXPECT_EQ(MGlobal::executeCommandStringResult("string"), "word");
    EXPECT_EQ(MGlobal::executeCommand("unknown", whole), MStatus::kFailure);
    EXPECT_EQ(logged(), Names{"Cannot find procedure \"unknown\"."});
    EXPECT_TRUE(MGlobal::executePythonCommand("x = 1", false, false));
    EXPECT_EQ(MGlobal::executePythonCommand("1/0"), MStatus::kFailure);
    EXPECT_EQ(MGlobal::mayaState(), MGlobal::kLibraryApp);

    MGlobal::displayWarning("careful");
    ASSERT_EQ(log().entries().size(), 1U);
    EXPECT_EQ(log().entries()[0].level, LogLevel::Warning);
    (void)log().take();

    setSession(nullptr); // nothing runs any more
    MStatus status;
    EXPECT_EQ(MGlobal::executeCommand("int", whole), MStatus::kFailure);
    EXPECT_EQ(MGlobal::executeCommandStringResult("string", false, false, &status), "");
    EXPECT_EQ(status, MStatus::kFailure);
    EXPECT_EQ(MSelectionList().add("one"), MStatus::kFailure);
    EXPECT_TRUE(MItDag().isDone());
    EXPECT_TRUE(MFnDependencyNode().create("probe", &status).isNull());
    EXPECT_EQ(status, MStatus::kFailure);
}

TEST_F(SceneTest, ModifiersMakeTheirChangesTogether) {
    MDGModifier modifier;
    const MObject from = modifier.createNode("probe");
    const MObject to = modifier.createNode(MTypeId(0x1001));
    EXPECT_TRUE(modifier.connect(from, Probe::sum, to, Probe::a));
    EXPECT_TRUE(modifier.renameNode(to, "target"));
    EXPECT_EQ(modifier.connect(MPlug(), MPlug(to, Probe::a)), MStatus::kInvalidParameter);
    EXPECT_FALSE(MPlug(to, Probe::a).isConnected());
    EXPECT_TRUE(modifier.doIt());
    EXPECT_TRUE(MPlug(to, Probe::a).isConnected());
    EXPECT_EQ(nameOfNode(to), "target");
    EXPECT_TRUE(modifier.doIt()); // nothing is left to do
    EXPECT_TRUE(modifier.connect(from, Probe::sum, to, Probe::a));
    EXPECT_EQ(modifier.doIt(), MStatus::kFailure); // there is one
    EXPECT_EQ(modifier.undoIt(), MStatus::kNotImplemented);
}

TEST_F(SceneTest, CallbacksHearWhatTheSessionSays) {
    using Heard = std::vector<std::string>;
    Heard heard;
    const auto hear = [](const MString& message, MCommandMessage::MessageType type, void* to) {
        static_cast<Heard*>(to)->push_back(std::to_string(type) + " " + text(message));
    };
    const MCallbackId id = MCommandMessage::addCommandOutputCallback(hear, &heard);
    const MCallbackId other = MCommandMessage::addCommandOutputCallback(hear, &heard);
    EXPECT_NE(id, other);
    EXPECT_TRUE(MMessage::removeCallback(other));
    EXPECT_EQ(MMessage::removeCallback(other), MStatus::kFailure);
    MGlobal::displayWarning("watch out");
    log().error("line 2: bad", "2:1 | x");
    EXPECT_TRUE(MMessage::removeCallback(id));
    MGlobal::displayInfo("unheard");
    EXPECT_EQ(heard, (Heard{"3 watch out", "4 line 2: bad\n2:1 | x"}));
    MStatus status;
    MCommandMessage::addCommandOutputCallback(nullptr, nullptr, &status);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    (void)log().take();
}

} // namespace
} // namespace vesk::api
