#pragma once
// What the tests of commands drive: a session's scene and language, and node types with attributes of every
// kind.

#include "host/commands/attribute_commands.h"
#include "host/core/log.h"

#include <gtest/gtest.h>

namespace vesk::commands {

/// `sum` is twice `amount` plus `whole`.
class ProbeNode : public graph::Node {
  public:
    using Node::Node;
    graph::ComputeResult compute(graph::Cell& requested) override {
        if (requested.attr.longName != "sum") return graph::ComputeResult::NotMine;
        const double amount = graph::pullNumber(cell(*findAttribute("amount")));
        const double whole = graph::pullNumber(cell(*findAttribute("whole")));
        graph::putNumber(requested, 2 * amount + whole);
        return graph::ComputeResult::Done;
    }
};

/// `output` is `input` times `conversionFactor`.
class ConversionNode : public graph::Node {
  public:
    using Node::Node;
    graph::ComputeResult compute(graph::Cell& requested) override {
        const double input = graph::pullNumber(cell(*findAttribute("input")));
        graph::putNumber(requested, input * graph::pullNumber(cell(*findAttribute("conversionFactor"))));
        return graph::ComputeResult::Done;
    }
};

inline void registerProbe(graph::TypeRegistry& types) {
    using namespace graph;
    using Num = MFnNumericData;
    auto type = std::make_unique<NodeType>("probe", MFn::kPluginDependNode, types.find("node"),
                                           [](const NodeType& own) { return makeRef<ProbeNode>(own); });
    auto& t = *type;
    t(boolean("flag", "fl"));
    t(number("small", "sm", Num::kByte));
    t(number("shorty", "sy", Num::kShort));
    const auto whole = t(integer("whole", "wh", 3));
    t(number("ratio", "ra", Num::kFloat, 0.5)->limits(0, 1)->asKeyable());
    const auto amount = t(real("amount", "am", 1.5)->asKeyable());
    t(unit("turn", "tu", UnitKind::Angle));
    t(unit("reach", "re", UnitKind::Distance));
    t(unit("moment", "mt", UnitKind::Time));
    t(enumeration("mode", "mo", {"Off", "On", "Auto"}));
    t(tuple("pos", "ps", Num::k3Double, {"X", "Y", "Z"}));
    t(tuple("size2", "s2", Num::k2Int, {"W", "H"}));
    t(tuple("rot", "rt", Num::k3Double, {"X", "Y", "Z"}, UnitKind::Angle));
    t(color("tint", "ti", 1, 0.5, 0.25));
    t(text("label", "la", "none"));
    t(matrix("mat", "mx"));
    t(typed("names", "nm", MFnData::kStringArray));
    t(typed("doubles", "db", MFnData::kDoubleArray));
    t(typed("ints", "in", MFnData::kIntArray));
    t(typed("vectors", "vc", MFnData::kVectorArray));
    t(typed("points", "pn", MFnData::kPointArray));
    t(typed("parts", "pa", MFnData::kComponentList));
    t(typed("shape", "sh", MFnData::kMesh));
    t(typed("curve", "cu", MFnData::kNurbsCurve));
    t(typed("surface", "su2", MFnData::kNurbsSurface));
    t(typed("anything", "an", MFnData::kAny));
    auto open = makeRef<Attribute>();
    open->longName = "open";
    open->shortName = "op";
    open->kind = AttrKind::Generic;
    open->acceptedData = {MFnData::kDoubleArray, MFnData::kVectorArray};
    open->acceptedNumbers = {Num::kDouble, Num::k3Double};
    t(open);
    t(message("link", "lk"));
    t(message("members", "mb")->multi()->indexFree());
    t(real("weight", "w")->multi());
    t(compound("entry", "en",
               {number("entryPosition", "ep", Num::kFloat), number("entryValue", "ev", Num::kFloat),
                enumeration("entryMode", "em", {"None", "Linear"})})
          ->multi());
    t(compound("list", "li", {real("inner", "ir")->multi(), text("tag", "tg")})->multi());
    t(text("lines", "ln")->multi());
    t(tuple("vrts", "vt", Num::k3Float, {"x", "y", "z"})->asPacked());
    t(tuple("edge", "ed", Num::k3Int, {"1", "2", "h"})->asPacked());
    t(fileData("face", "fc", "polyFaces")->multi());
    t(fileData("crease", "cd", "dataPolyComponent"));
    t(real("fixed", "fi")->notConnectable());
    t(real("secret", "se")->notReadable()->asHidden());
    const auto sum = t(real("sum", "su")->output());
    t.affectsAll({amount, whole}, {sum});
    (void)types.add(std::move(type));

    auto conversion =
        std::make_unique<NodeType>("unitConversion", MFn::kDependencyNode, types.find("node"),
                                   [](const NodeType& own) { return makeRef<ConversionNode>(own); });
    const auto input = (*conversion)(real("input", "i"));
    const auto factor = (*conversion)(real("conversionFactor", "cf", 1));
    const auto output = (*conversion)(real("output", "o")->output());
    conversion->affectsAll({input, factor}, {output});
    (void)types.add(std::move(conversion));

    const auto makeDag = [](const NodeType& own) { return makeRef<DagNode>(own); };
    (void)types.add(std::make_unique<NodeType>("group", MFn::kTransform, types.find("dagNode"), makeDag));
    auto shape = std::make_unique<NodeType>("probeShape", MFn::kMesh, types.find("dagNode"), makeDag);
    shape->isShape = true;
    (*shape)(real("roundness", "rn"));
    (void)types.add(std::move(shape));
}

/// A call and what must come of it: a result as `show` writes it, or `! ` and the message.
struct Row {
    const char* call;
    const char* expected;
};

/// Nodes `n` and `m` of type probe, and `time1` at frame 1.
class ProbeScene : public testing::Test {
  protected:
    ProbeScene() {
        addAttributeCommands(machine.commands(), context);
        (void)scene.create(*types.find("time"), "time1");
        scene.setFrame(1);
        n = scene.create(*types.find("probe"), "n");
        m = scene.create(*types.find("probe"), "m");
    }

    /// Kind and value: `int 3`, `float[] 1 2`, `string x`; `-` for no result.
    static std::string show(const mel::Value& value) {
        if (value.isNone()) return "-";
        const std::string text = value.display();
        return std::string(mel::nameOf(value.type())) + (text.empty() ? "" : " ") + text;
    }
    std::string run(const std::string& call) {
        const auto result = machine.run(call);
        return result.ok ? show(result.value) : "! " + result.error;
    }
    void check(std::initializer_list<Row> rows) {
        for (const auto& row : rows)
            EXPECT_EQ(run(row.call), row.expected) << row.call;
    }

    static graph::TypeRegistry& allTypes() {
        static graph::TypeRegistry registry;
        if (!registry.find("probe")) {
            graph::registerBaseTypes(registry);
            registerProbe(registry);
        }
        return registry;
    }

    graph::TypeRegistry& types = allTypes();
    graph::Scene scene{types};
    mel::Machine machine;
    CommandContext context{scene, machine, {}, {}, {}};
    Ref<graph::Node> n, m;
};

} // namespace vesk::commands
