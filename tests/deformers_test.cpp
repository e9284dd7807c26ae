// Deformers: the base class of plug-ins, the chain that `deformer` builds, and how it is taken apart again.

#include "tests/session_fixture.h"

#include "host/api/impl/plugin_type.h"

#include <maya/MArrayDataHandle.h>
#include <maya/MFnNumericAttribute.h>
#include <maya/MPxDeformerNode.h>

namespace vesk {
namespace {

/// Moves the points of its group up by `height`, the envelope and the painted weight.
class Lift : public MPxDeformerNode {
  public:
    static inline MObject height;
    static inline std::vector<std::string> wires;
    static void* creator() { return new Lift; }
    static MStatus initialize() {
        MFnNumericAttribute maker;
        height = maker.create("height", "ht", MFnNumericData::kDouble, 1);
        addAttribute(height);
        return attributeAffects(height, outputGeom);
    }
    MStatus deform(MDataBlock& block, MItGeometry& points, const MMatrix& toWorld,
                   unsigned int index) override {
        const double by = block.inputValue(height).asDouble() * block.inputValue(envelope).asFloat();
        MArrayDataHandle lists = block.inputArrayValue(weightList);
        const bool isPainted = lists.jumpToElement(index);
        MArrayDataHandle painted(isPainted ? lists.inputValue().child(weights) : MDataHandle());
        for (; !points.isDone(); points.next()) {
            const bool isListed = isPainted && painted.jumpToElement(static_cast<unsigned>(points.index()));
            const double weight = isListed ? painted.inputValue().asFloat() : 1;
            // Up in the world, wherever the geometry says that it stands.
            const MVector up = MVector(0, by * weight, 0) * toWorld.inverse();
            points.setPosition(points.position() + up);
        }
        return {};
    }
    MStatus connectionMade(const MPlug& plug, const MPlug&, bool asSource) override {
        if (plug == inputGeom || plug == outputGeom)
            wires.push_back(std::string(plug.name().asChar()) + (asSource ? " out" : " in"));
        return MStatus::kUnknownParameter;
    }
};

class Deformers : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        const auto made = api::registerPluginType(session->types(), {.name = "lift",
                                                                     .typeId = 0x1ff01,
                                                                     .creator = Lift::creator,
                                                                     .initialize = Lift::initialize,
                                                                     .kind = MPxNode::kDeformerNode,
                                                                     .classification = {},
                                                                     .plugin = "lifts"});
        ASSERT_TRUE(made) << made.error;
        Lift::wires.clear();
    }
    std::string source(const std::string& plug) { return mel("connectionInfo -sfd " + plug); }
    std::string at(const std::string& point) { return mel("pointPosition -l " + point); }
    /// Names of the nodes that came since the last call.
    std::string newNodes() {
        std::string names;
        const mel::Value all = run("ls");
        for (const auto& name : *all.asStringArray()) {
            if (known_.insert(name).second) names += (names.empty() ? "" : " ") + name;
        }
        return names;
    }
    void refused(const std::string& command, const std::string& why) {
        (void)newNodes();
        EXPECT_EQ(mel(command), "error: " + why);
        EXPECT_EQ(newNodes(), "") << command;
        (void)complaints();
    }

  private:
    std::set<std::string> known_;
};

TEST_F(Deformers, BaseAttributesComeWithTheType) {
    run("createNode lift -n l");
    EXPECT_EQ(mel("getAttr l.en; "), "1");
    EXPECT_EQ(mel("attributeQuery -n l -sn weightList") + mel("attributeQuery -n l -sn weights") +
                  mel("attributeQuery -n l -sn input") + mel("attributeQuery -n l -sn inputGeometry") +
                  mel("attributeQuery -n l -sn groupId") + mel("attributeQuery -n l -sn outputGeometry"),
              "wlwipiggiog");
    EXPECT_EQ(mel("getAttr \"l.weightList[2].weights[7]\""), "1");
    const graph::Node* node = session->scene().find("l");
    EXPECT_EQ(node->apiType(), 601);
    EXPECT_TRUE(node->hasFn(MFn::kGeometryFilt));
}

TEST_F(Deformers, ChainOfAShapeWithoutHistory) {
    run("polyPlane -sx 1 -sy 1 -ch 0 -n p; move -a 0 0 5 p");
    (void)newNodes();
    EXPECT_EQ(mel("deformer -type lift p"), "lift1");
    EXPECT_EQ(newNodes(), "lift1 lift1Set pShapeOrig lift1GroupId lift1GroupParts groupId2 groupParts2 "
                          "tweak1 tweakSet1");
    EXPECT_EQ(mel("getAttr pShapeOrig.io"), "1");
    const std::pair<const char*, const char*> wires[] = {
        {"groupParts2.ig", "pShapeOrig.worldMesh[0]"},
        {"groupParts2.gi", "groupId2.groupId"},
        {"tweak1.ip[0].ig", "groupParts2.outputGeometry"},
        {"tweak1.ip[0].gi", "groupId2.groupId"},
        {"tweakSet1.ub[0]", "tweak1.message"},
        {"tweakSet1.gn[0]", "groupId2.message"},
        {"tweakSet1.dsm[0]", "pShape.instObjGroups[0].objectGroups[1]"},
        {"pShape.twl", "tweak1.vlist[0].vertex[0]"},
        {"lift1GroupParts.ig", "tweak1.outputGeometry[0]"},
        {"lift1GroupParts.gi", "lift1GroupId.groupId"},
        {"lift1.ip[0].ig", "lift1GroupParts.outputGeometry"},
        {"lift1.ip[0].gi", "lift1GroupId.groupId"},
        {"pShape.i", "lift1.outputGeometry[0]"},
        {"lift1Set.gn[0]", "lift1GroupId.message"},
        {"lift1Set.dsm[0]", "pShape.instObjGroups[0].objectGroups[0]"},
        {"lift1Set.ub[0]", "lift1.message"},
        {"pShape.iog[0].og[0].gid", "lift1GroupId.groupId"},
        {"pShape.iog[0].og[0].gco", "lift1Set.memberWireframeColor"},
    };
    for (const auto& [to, from] : wires)
        EXPECT_EQ(source(to), from) << to;
    EXPECT_EQ(mel("getAttr lift1GroupParts.ic"), "vtx[*]");
    EXPECT_EQ(Lift::wires, (Texts{"lift1.input[0].inputGeometry in", "lift1.outputGeometry[0] out"}));

    EXPECT_EQ(at("p.vtx[0]"), "-0.5 1 0.5");
    run("setAttr lift1.en 0.5; setAttr \"lift1.wl[0].w[1]\" 0.25");
    EXPECT_EQ(at("p.vtx[0]"), "-0.5 0.5 0.5");
    EXPECT_EQ(at("p.vtx[1]"), "0.5 0.125 0.5");
    run("setAttr lift1.nodeState 1");
    EXPECT_EQ(at("p.vtx[0]"), "-0.5 0 0.5");
    // The matrix that the geometry came with is the transform's: up in the world is down here.
    run("setAttr lift1.nodeState 0; rotate -a 180 0 0 p");
    expectNear(*run("pointPosition -l p.vtx[0]").asFloatArray(), {-0.5, -0.5, 0.5});
}

TEST_F(Deformers, SeveralShapesAndDeformersInOneChain) {
    run("polyPlane -sx 1 -sy 1 -n a; circle -n c; polyPlane -sx 1 -sy 1 -ch 0 -n b");
    EXPECT_EQ(mel("deformer -type lift -n up a c b.vtx[1] bShape.e[0]"), "up");
    EXPECT_EQ(source("aShape.i") + source("cShape.cr") + source("bShape.i"),
              "up.outputGeometry[0]up.outputGeometry[1]up.outputGeometry[2]");
    EXPECT_EQ(mel("size(`listConnections upSet.dsm`)"), "3");
    EXPECT_EQ(mel("getAttr upGroupParts1.ic"), "cv[*]");
    EXPECT_EQ(mel("getAttr upGroupParts2.ic"), "vtx[0:1]") << "an edge stands for its vertices";
    EXPECT_EQ(mel("objExists aShapeOrig"), "0") << "history starts the chain";
    EXPECT_EQ(at("a.vtx[3]"), "0.5 1 -0.5");
    EXPECT_EQ(at("b.vtx[0]"), "-0.5 1 0.5");
    EXPECT_EQ(at("b.vtx[2]"), "-0.5 0 -0.5");
    expectNear(*run("pointPosition -l c.cv[0]").asFloatArray(), {0.783611624891, 0.783611624891 + 1, 0},
               1e-9);
    EXPECT_FALSE(mel("objExists groupParts5") == "1") << "one tweak node a shape";

    EXPECT_EQ(mel("deformer -type lift -n last a"), "last");
    EXPECT_EQ(source("aShape.i"), "last.outputGeometry[0]");
    EXPECT_EQ(source("lastGroupParts.ig"), "up.outputGeometry[0]");
    EXPECT_EQ(mel("deformer -type lift -bf -n first a"), "first");
    EXPECT_EQ(source("firstGroupParts.ig"), source("aShape.twl").substr(0, 6) + ".outputGeometry[0]");
    EXPECT_EQ(source("upGroupParts.ig"), "first.outputGeometry[0]");
    EXPECT_EQ(source("aShape.i"), "last.outputGeometry[0]");
    EXPECT_EQ(at("a.vtx[3]"), "0.5 3 -0.5");
}

TEST_F(Deformers, ParticlesAreDeformedFromTheirPositions) {
    run("createNode particle -n dust; setAttr dust.pos -type \"vectorArray\" 1 1 2 3; deformer -type lift "
        "dust");
    EXPECT_EQ(source("dust.deformedPosition"), "lift1.outputGeometry[0]");
    EXPECT_EQ(source("lift1GroupParts.ig"), "dust.position");
    EXPECT_EQ(mel("getAttr lift1GroupParts.ic"), "pt[*]");
    EXPECT_EQ(mel("objExists tweak1") + mel("objExists dustOrig"), "00");
    EXPECT_EQ(floats("dust.deformedPosition"), (std::vector<double>{1, 2, 3})) << "arrays are passed on";
    run("deformer -type lift -bf dust; delete lift1");
    EXPECT_EQ(source("dust.deformedPosition"), "lift2.outputGeometry[0]");
    EXPECT_EQ(source("lift2GroupParts.ig"), "dust.position");
    run("delete lift2");
    EXPECT_EQ(mel("listConnections dust") + mel("getAttr dust.deformedPosition"), "");
}

TEST_F(Deformers, GroupsOfSurfacesAndPeriodicCurves) {
    run("nurbsPlane -ch 0 -ax 0 1 0 -n s; circle -ch 0 -n c; deformer -type lift s.cv[1:2][3] c.cv[6:9]");
    EXPECT_EQ(mel("getAttr lift1GroupParts.ic"), "cv[1:2][3]");
    int lifted = 0;
    for (int u = 0; u < 4; ++u) {
        for (int v = 0; v < 4; ++v) {
            const std::string point = "s.cv[" + std::to_string(u) + "][" + std::to_string(v) + "]";
            const mel::Value place = run("pointPosition -l " + point);
            const bool isUp = (*place.asFloatArray())[1] > 0.5;
            EXPECT_EQ(isUp, v == 3 && (u == 1 || u == 2)) << point;
            lifted += isUp;
        }
    }
    EXPECT_EQ(lifted, 2);
    // CVs 8 to 10 of the circle repeat 0 to 2 and are not walked.
    const auto rise = [&](int cv) {
        const std::string point = ".cv[" + std::to_string(cv) + "]";
        const mel::Value now = run("pointPosition -l c" + point),
                         was = run("pointPosition -l cShapeOrig" + point);
        return (*now.asFloatArray())[1] - (*was.asFloatArray())[1];
    };
    EXPECT_EQ(rise(0) + rise(1) + rise(5) + rise(8), 0);
    EXPECT_NEAR(rise(6), 1, 1e-12);
    EXPECT_NEAR(rise(7), 1, 1e-12);
}

TEST_F(Deformers, TweaksOfTheShapeGoInFront) {
    run("polyPlane -sx 1 -sy 1 -n p; move -r 1 0 0 p.vtx[0]; deformer -type lift p");
    EXPECT_EQ(mel("getAttr tweak1.vl[0].vt[0]"), "1 0 0");
    EXPECT_EQ(at("p.vtx[0]"), "0.5 1 0.5") << "once, not twice";
}

TEST_F(Deformers, SavedAndOpenedTheyAreTheSame) {
    run("polyPlane -sx 2 -sy 2 -ch 0 -n p; circle -n c; deformer -type lift p.vtx[0:3] c; "
        "setAttr -s 2 \"lift1.wl[0].w[1:2]\" 0.5 0.25; setAttr lift1.ht 2");
    const auto state = [&] {
        return mel("pointPosition p.vtx[0]") + "|" + mel("pointPosition p.vtx[1]") + "|" +
               mel("pointPosition p.vtx[2]") + "|" + mel("pointPosition p.vtx[4]") + "|" +
               mel("pointPosition c.cv[2]") + "|" +
               mel("listConnections -s 1 -d 0 -c 1 -p 1 lift1 pShape cShape lift1Set");
    };
    const auto before = state();
    EXPECT_NE(before.find("-0.5 2 0.5|0 1 0.5|0.5 0.5 0.5|0 0 0|"), std::string::npos) << before;
    const std::string file = (folder / "lifted.ma").string();
    run("file -rename \"" + file + "\"; file -save -type \"mayaAscii\"; file -f -new");
    const auto text = contentOf(file);
    write("lifted.ma", text.substr(0, text.find("requires \"lifts\"")) +
                           text.substr(text.find('\n', text.find("requires \"lifts\"")) + 1));
    run("file -o \"" + file + "\"");
    EXPECT_EQ(state(), before);
}

TEST_F(Deformers, DeletingOneGivesTheUndeformedShape) {
    run("polyPlane -sx 1 -sy 1 -ch 0 -n p; circle -n c");
    (void)newNodes();
    run("deformer -type lift -n one p c; deformer -type lift -n two p; delete one");
    EXPECT_EQ(at("p.vtx[0]"), "-0.5 1 0.5");
    EXPECT_EQ(source("twoGroupParts.ig"), "tweak1.outputGeometry[0]");
    for (const char* gone : {"oneSet", "oneGroupId", "oneGroupParts", "oneGroupId1", "tweak2", "tweakSet2"})
        EXPECT_EQ(mel(std::string("objExists ") + gone), "0") << gone;
    EXPECT_EQ(source("cShape.cr"), "makeNurbCircle1.outputCurve");
    run("delete two");
    EXPECT_EQ(at("p.vtx[0]"), "-0.5 0 0.5");
    EXPECT_EQ(newNodes(), "") << "nothing of it is left";
    EXPECT_EQ(mel("listConnections pShape"), "");
    // A tweak that moves something stays, and so does what its chain starts with.
    run("deformer -type lift -n three p; setAttr tweak1.vl[0].vt[0].vx 1; delete three");
    EXPECT_EQ(at("p.vtx[0]"), "0.5 0 0.5");
    EXPECT_EQ(source("pShape.i"), "tweak1.outputGeometry[0]");
    run("deformer -type lift p; delete -ch p");
    EXPECT_EQ(at("p.vtx[0]"), "0.5 1 0.5") << "baked";
    EXPECT_EQ(mel("listConnections pShape") + newNodes(), "");
    EXPECT_EQ(mel("objExists pShapeOrig") + mel("objExists lift1") + mel("objExists lift1GroupId"), "000");
}

TEST_F(Deformers, BadCallsSayWhatIsWrongAndMakeNothing) {
    run("polyCube; spaceLocator -n mark; select -cl");
    refused("deformer pCube1", "deformer: the type of deformer is missing (-type).");
    refused("deformer -type lift", "deformer: nothing to deform is named or selected.");
    refused("deformer -type noSuch pCube1", "Unknown object type: noSuch");
    refused("deformer -type polyCube pCube1", "Node type 'polyCube' is no deformer.");
    refused("deformer -type geometryFilter pCube1", "Node type 'geometryFilter' is no deformer.");
    refused("deformer -type lift nobody", "No object matches name: nobody");
    refused("deformer -type lift pCube1 mark", "'mark' cannot be deformed.");
    refused("deformer -type lift pCube1.map[0]", "'pCubeShape1.map[0]' cannot be deformed.");
    refused("deformer -type lift pCube1.tx", "'pCube1.translateX' cannot be deformed.");
}

} // namespace
} // namespace vesk
