#pragma once
// A small session for tests of the API: a scene, a plug-in and one node type whose compute each test brings
// along.

#include "host/api/impl/access.h"
#include "host/api/impl/plugin_object.h"
#include "host/api/impl/plugin_type.h"
#include "host/api/impl/session_hooks.h"
#include "host/core/log.h"
#include "host/graph/evaluate.h"

#include <maya/MFnCompoundAttribute.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MFnEnumAttribute.h>
#include <maya/MFnGenericAttribute.h>
#include <maya/MFnMatrixAttribute.h>
#include <maya/MFnMessageAttribute.h>
#include <maya/MFnNumericAttribute.h>
#include <maya/MFnTypedAttribute.h>
#include <maya/MFnUnitAttribute.h>
#include <maya/MPxNode.h>
#include <maya/MRampAttribute.h>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>

namespace vesk::api {

/// Keeps what it is asked to run, and answers with values that the test put there.
class FakeSession : public Session {
  public:
    explicit FakeSession(graph::Scene& scene) : scene_(scene) {}
    graph::Scene& scene() override { return scene_; }
    mel::Result runMel(const std::string& text, bool) override {
        ran.push_back(text);
        mel::Result result;
        const auto found = melAnswers.find(text);
        if (found == melAnswers.end()) {
            result.ok = false;
            log().error("Cannot find procedure \"" + text + "\".");
        } else {
            result.value = found->second;
        }
        return result;
    }
    void deferMel(const std::string& text) override { deferred.push_back(text); }
    mel::Result sourceFile(const std::string& path) override { return runMel("source " + path, false); }
    PythonResult runPython(const std::string& text, bool) override {
        return {text != "1/0", "<" + text + ">"};
    }
    MGlobal::MMayaState state() const override { return MGlobal::kLibraryApp; }

    std::map<std::string, mel::Value> melAnswers;
    std::vector<std::string> ran, deferred;

  private:
    graph::Scene& scene_;
};

/// A transform with a translation alone.
class TestTransform : public graph::DagNode {
  public:
    using DagNode::DagNode;
    static inline graph::AttrRef translate;
    MMatrix localMatrix() override {
        const auto t = graph::pullNumbers(cell(*translate));
        MMatrix matrix;
        for (unsigned int i = 0; i < 3; ++i)
            matrix[3][i] = t[i];
        return matrix;
    }
};

class Probe : public MPxNode {
  public:
    Probe() { ++alive; }
    ~Probe() override { --alive; }
    static void* creator() {
        if (creatorThrows) throw std::runtime_error("no memory for a probe");
        return new Probe;
    }
    static MStatus initialize();

    void postConstructor() override { nameAtStart = name(); }
    MStatus compute(const MPlug& plug, MDataBlock& block) override {
        ++computes;
        return onCompute ? onCompute(*this, plug, block) : MStatus::kUnknownParameter;
    }
    MStatus setDependentsDirty(const MPlug& plug, MPlugArray& plugs) override {
        if (onDirty) onDirty(*this, plug, plugs);
        return {};
    }
    MStatus connectionMade(const MPlug& plug, const MPlug& other, bool asSource) override {
        wires.push_back(text(plug.name()) + (asSource ? " -> " : " <- ") + text(other.name()));
        return MStatus::kUnknownParameter;
    }

    MString nameAtStart;

    static inline std::function<MStatus(Probe&, const MPlug&, MDataBlock&)> onCompute;
    static inline std::function<void(Probe&, const MPlug&, MPlugArray&)> onDirty;
    static inline bool creatorThrows = false;
    static inline int computes = 0;
    static inline int alive = 0;
    static inline std::vector<std::string> wires;

    static inline MObject a, b, count, flag, mode, when, turn, label, place, placeX, any, numbers, items,
        curve, shade;
    static inline MObject rows, rowWeight, rowNames; ///< rows[].rowWeight, rows[].rowNames[]
    static inline MObject sum, sumPlace, anyOut, list, table, tableCell; ///< outputs; table[].tableCell[]
};

inline MStatus Probe::initialize() {
    MFnNumericAttribute number;
    a = number.create("alpha", "a", MFnNumericData::kDouble, 1.5);
    number.setKeyable(true);
    b = number.create("beta", "b", MFnNumericData::kDouble, 2);
    count = number.create("count", "cnt", MFnNumericData::kInt, 3);
    flag = number.create("flag", "fl", MFnNumericData::kBoolean, 1);
    place = number.createPoint("place", "p");
    placeX = number.child(0);
    MFnEnumAttribute choice;
    mode = choice.create("mode", "mo", 7);
    choice.addField("Low", 2);
    choice.addField("High", 7);
    MFnUnitAttribute unit;
    when = unit.create("when", "w", MFnUnitAttribute::kTime, 0.5);
    turn = unit.create("turn", "tu", MAngle(90, MAngle::kDegrees));
    MFnTypedAttribute typed;
    label = typed.create("label", "l", MFnData::kString);
    numbers = typed.create("numbers", "n", MFnData::kDoubleArray);
    MFnGenericAttribute generic;
    any = generic.create("any", "an");
    generic.addDataAccept(MFnData::kDoubleArray);
    generic.addDataAccept(MFnData::kString);
    generic.addDataAccept(MFnData::kMesh);
    generic.addNumericDataAccept(MFnNumericData::kDouble);
    generic.setDisconnectBehavior(MFnAttribute::kReset);
    items = number.create("items", "it", MFnNumericData::kDouble, 9);
    number.setArray(true);
    number.setUsesArrayDataBuilder(true);
    rowWeight = number.create("rowWeight", "rw", MFnNumericData::kDouble, 4);
    rowNames = typed.create("rowNames", "rn", MFnData::kString);
    typed.setArray(true);
    MFnCompoundAttribute compound;
    rows = compound.create("rows", "r");
    compound.addChild(rowWeight);
    compound.addChild(rowNames);
    compound.setArray(true);
    compound.setUsesArrayDataBuilder(true);
    curve = MRampAttribute::createCurveRamp("curve", "cv");
    shade = MRampAttribute::createColorRamp("shade", "sh");

    sum = number.create("sum", "s", MFnNumericData::kDouble);
    number.setWritable(false);
    sumPlace = number.createPoint("sumPlace", "sp");
    number.setWritable(false);
    anyOut = generic.create("anyOut", "ao");
    generic.addDataAccept(MFnData::kDoubleArray);
    generic.addDataAccept(MFnData::kMesh);
    list = number.create("list", "li", MFnNumericData::kDouble);
    number.setArray(true);
    number.setUsesArrayDataBuilder(true);
    tableCell = number.create("tableCell", "tc", MFnNumericData::kDouble);
    number.setArray(true);
    number.setUsesArrayDataBuilder(true);
    table = compound.create("table", "ta");
    compound.addChild(tableCell);
    compound.setArray(true);
    compound.setWritable(false);
    compound.setUsesArrayDataBuilder(true);

    for (const MObject& one : {a,   b,     count, flag,  place, mode, when,     turn,   label, numbers,
                               any, items, rows,  curve, shade, sum,  sumPlace, anyOut, list,  table}) {
        CHECK_MSTATUS_AND_RETURN_IT(addAttribute(one));
    }
    CHECK_MSTATUS_AND_RETURN_IT(addAttribute(tableCell)); // a child by itself as well does no harm
    for (const MObject& in : {a, b, when, place, any, items, curve}) {
        for (const MObject& out : {sum, sumPlace, anyOut, list, table})
            CHECK_MSTATUS_AND_RETURN_IT(attributeAffects(in, out));
    }
    return {};
}

/// A fresh session; what a test does not expect on the log fails it.
class ApiTest : public ::testing::Test {
  protected:
    ApiTest() : scene(registered(types)), session(scene) {
        setSession(&session);
        log().keepEntries(true);
        (void)log().take();
        plugin = makeRef<PluginObject>(types, "probes", "/plug-ins/");
        const auto made = registerPluginType(types, probeRequest());
        EXPECT_TRUE(made) << made.error;
        Probe::onCompute = nullptr;
        Probe::onDirty = nullptr;
        Probe::creatorThrows = false;
        Probe::computes = 0;
        Probe::wires.clear();
    }
    ~ApiTest() override {
        for (const auto& entry : log().take())
            ADD_FAILURE() << "on the log: " << entry.text;
        setSession(nullptr);
    }

    static graph::TypeRegistry& registered(graph::TypeRegistry& types) {
        graph::registerBaseTypes(types);
        registerLocatorType(types);
        auto transform = std::make_unique<graph::NodeType>(
            "transform", MFn::kTransform, types.find("dagNode"),
            [](const graph::NodeType& type) -> Ref<graph::Node> { return makeRef<TestTransform>(type); });
        TestTransform::translate = graph::tuple("translate", "t", MFnNumericData::k3Double, {"X", "Y", "Z"},
                                                graph::UnitKind::Distance);
        (*transform)(TestTransform::translate);
        transform->affectsAll({TestTransform::translate}, {graph::dagAttributes().matrix});
        (void)types.add(std::move(transform));
        return types;
    }

    static PluginTypeRequest probeRequest() {
        return {.name = "probe",
                .typeId = 0x1001,
                .creator = Probe::creator,
                .initialize = Probe::initialize,
                .kind = MPxNode::kDependNode,
                .classification = "test/probe",
                .plugin = "probes"};
    }

    MObject make(const char* type = "probe", const char* name = "") {
        return MFnDependencyNode().create(MString(type), MString(name));
    }
    static MStatus connect(const MPlug& from, const MPlug& to) {
        const auto outcome = graph::connect(*from.hostPlug().cell(), *to.hostPlug().cell());
        return outcome ? MStatus::kSuccess : MStatus::kFailure;
    }
    static std::string nameOf(const MPlug& plug) { return text(plug.name()); }
    /// The texts that came on the log since the last call.
    static std::vector<std::string> logged() {
        std::vector<std::string> texts;
        for (auto& entry : log().take())
            texts.push_back(entry.text);
        return texts;
    }

    graph::TypeRegistry types;
    graph::Scene scene;
    FakeSession session;
    Ref<PluginObject> plugin;
};

} // namespace vesk::api
