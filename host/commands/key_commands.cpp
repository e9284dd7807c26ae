#include "host/commands/key_commands.h"

#include "host/commands/assign.h"
#include "host/commands/curve_keys.h"
#include "host/commands/lookup.h"
#include "host/commands/packed.h"
#include "host/commands/plug_values.h"
#include "host/commands/ui_units.h"
#include "host/nodes/anim_curve.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vesk::commands {

using graph::AttrKind;
using graph::Cell;
using graph::Node;
using mel::Error;
using nodes::Tangent;

namespace {

// --- what a call is about

/// Nodes and plugs as they were named, or the selection.
std::vector<std::string> namesOf(const CommandContext& context, const Args& args) {
    if (args.wordCount() > 0) return args.wordTexts();
    std::vector<std::string> names;
    for (const auto& item : context.scene.selection.items()) {
        const auto texts = item.texts();
        names.insert(names.end(), texts.begin(), texts.end());
    }
    return names;
}

/// Splits names into plugs, those of `-attribute` among them, and nodes that stand for themselves.
template <class OnPlug, class OnNode>
void eachTarget(const CommandContext& context, const Args& args, OnPlug onPlug, OnNode onNode) {
    const auto attributes = args.texts("attribute");
    for (const std::string& name : namesOf(context, args)) {
        if (name.find('.') != std::string::npos) {
            onPlug(name);
            continue;
        }
        for (Node* node : nodesNamed(context, name)) {
            for (const std::string& attribute : attributes)
                onPlug(node->uniqueName() + '.' + attribute);
            if (attributes.empty()) onNode(*node);
        }
    }
}

void addLeaves(Cell& cell, std::vector<Cell*>& leaves) {
    for (std::size_t i = 0; i < cell.attr.children.size(); ++i)
        addLeaves(cell.child(static_cast<int>(i)), leaves);
    if (cell.attr.children.empty()) leaves.push_back(&cell);
}

/// The numbers below the plugs of that name.
std::vector<Cell*> leavesNamed(const CommandContext& context, const std::string& name) {
    const auto range = plugsNamed(context, name);
    const auto plugs = expand(range, kMostElements);
    if (!plugs) throw Error(plugs.error());
    std::vector<Cell*> leaves;
    for (const graph::Plug& plug : *plugs) {
        std::vector<const graph::Attribute*> numbers;
        const bool holdsNumbers = !plug.isArray() && !findPacked(plug) && collectLeaves(*plug.attr, numbers);
        Cell* cell = holdsNumbers ? plug.cell() : nullptr;
        if (!cell) throw Error("'" + plug.name() + "' cannot have keys: it is no number.");
        addLeaves(*cell, leaves);
    }
    return leaves;
}

bool isKeyable(const Cell& cell) { return cell.keyable < 0 ? cell.attr.keyable : cell.keyable != 0; }

/// What stops a cell from being keyed; empty when nothing does.
std::string obstacle(const Cell& cell) {
    const std::string name = "'" + graph::Plug(cell).name() + "'";
    if (cell.feedingAncestor()) {
        const Node* curve = curveBehind(cell);
        if (curve && isAnimCurve(*curve, true)) return {};
        return name + " cannot have keys: it is fed by '" +
               graph::Plug(*cell.feedingAncestor()->source).name() + "'.";
    }
    const auto writable = graph::checkWritable(cell);
    return writable ? std::string() : writable.error;
}

/// The keyable numbers of a node that can have keys as they are.
void addKeyables(Node& node, std::vector<Cell*>& cells) {
    for (int i = 0; i < node.attributeCount(); ++i) {
        const graph::Attribute* attribute = node.attributeAt(i);
        if (!attribute || attribute->multiDepth() > 0 || !attribute->isNumber()) continue;
        Cell& cell = node.cell(*attribute);
        if (isKeyable(cell) && obstacle(cell).empty()) cells.push_back(&cell);
    }
}

/// The curves behind what is named, each once, in the order of the names.
std::vector<Node*> curvesOf(const CommandContext& context, const Args& args) {
    std::vector<Node*> curves;
    const auto add = [&curves](Node* curve) {
        if (curve && std::find(curves.begin(), curves.end(), curve) == curves.end()) curves.push_back(curve);
    };
    eachTarget(
        context, args,
        [&](const std::string& plug) {
            for (const Cell* cell : leavesNamed(context, plug))
                add(curveBehind(*cell));
        },
        [&](Node& node) {
            if (isAnimCurve(node)) return add(&node);
            node.eachCell([&](Cell& cell) {
                if (cell.source) add(curveBehind(cell));
            });
        });
    return curves;
}

// --- flags

double finite(double value, const char* what) {
    if (!std::isfinite(value)) throw Error(std::string(what) + " of a key must be a finite number.");
    return value;
}

/// The tangent type that a flag names; nothing when it was not given.
std::optional<double> tangentNamed(const Args& args, const char* flag, bool incoming) {
    static constexpr std::pair<std::string_view, Tangent> kNames[] = {
        {"linear", Tangent::Linear},    {"flat", Tangent::Flat},       {"spline", Tangent::Spline},
        {"clamped", Tangent::Clamped},  {"plateau", Tangent::Plateau}, {"auto", Tangent::Auto},
        {"slow", Tangent::Slow},        {"fast", Tangent::Fast},       {"step", Tangent::Step},
        {"stepnext", Tangent::StepNext}};
    if (!args.has(flag)) return std::nullopt;
    const std::string name = args.text(flag);
    for (const auto& [known, tangent] : kNames) {
        const bool steps = tangent == Tangent::Step || tangent == Tangent::StepNext;
        if (known == name && !(incoming && steps)) return static_cast<double>(tangent);
    }
    throw Error("'" + name + "' is no type of " + (incoming ? "incoming" : "outgoing") + " tangents.");
}

struct TimeRange {
    double first = -std::numeric_limits<double>::infinity();
    double last = std::numeric_limits<double>::infinity();
};

/// `5`, `1:24`, `10:`, `:10`.
TimeRange rangeIn(const std::string& text) {
    TimeRange range;
    const auto colon = text.find(':');
    const auto bound = [&text](const std::string& part, double& to) {
        if (part.empty()) return;
        const auto number = mel::Value(part).number();
        if (!number) throw Error("'" + text + "' is no time and no range of times, such as 1:24.");
        to = *number;
    };
    bound(text.substr(0, colon), range.first);
    bound(colon == std::string::npos ? text : text.substr(colon + 1), range.last);
    return range;
}

/// The ranges of `-time`; all times when it was not given.
std::vector<TimeRange> rangesOf(const Args& args) {
    std::vector<TimeRange> ranges;
    for (const auto& text : args.texts("time"))
        ranges.push_back(rangeIn(text));
    if (ranges.empty()) ranges.emplace_back();
    return ranges;
}

// --- setKeyframe

/// What every key of a call gets.
struct NewKeys {
    std::vector<double> times;
    std::optional<double> value; ///< none: what the plug shows now
    std::optional<double> in, out;
};

NewKeys newKeys(const CommandContext& context, const Args& args) {
    NewKeys made;
    for (const auto& use : args.uses("time"))
        made.times.push_back(finite(use[0].number().value_or(0), "The time"));
    if (made.times.empty()) made.times.push_back(context.scene.frame());
    if (args.has("value")) made.value = finite(args.number("value"), "The value");
    made.in = tangentNamed(args, "inTangentType", true);
    made.out = tangentNamed(args, "outTangentType", false);
    return made;
}

/// Switches and choices do not pass through values in between.
bool steps(const graph::Attribute& attribute) {
    return attribute.kind == AttrKind::Enum || attribute.numericType == MFnNumericData::kBoolean;
}

int keyCell(CommandContext& context, Cell& cell, const NewKeys& wanted) {
    const double value =
        wanted.value ? *wanted.value
                     : finite(toUi(context.scene, cell.attr.unit, graph::pullNumber(cell)), "The value");
    Node* curve = curveBehind(cell);
    if (!curve) {
        const auto made = makeCurve(context.scene, cell);
        if (!made) throw Error(made.error());
        curve = *made;
    }
    CurveKeys table(*curve);
    for (const double time : wanted.times) {
        auto& key = table.at(time);
        key.value = value;
        auto& out = key.columns[CurveKeys::kOutType];
        if (wanted.in) key.columns[CurveKeys::kInType] = wanted.in;
        if (wanted.out) out = wanted.out;
        if (!out && steps(cell.attr)) out = static_cast<double>(Tangent::Step);
    }
    require(table.store());
    return static_cast<int>(wanted.times.size());
}

mel::Value setKeyframe(CommandContext& context, const Args& args) {
    const NewKeys wanted = newKeys(context, args);
    std::vector<Cell*> cells;
    eachTarget(
        context, args,
        [&](const std::string& plug) {
            for (Cell* cell : leavesNamed(context, plug)) {
                if (const auto text = obstacle(*cell); !text.empty()) throw Error(text);
                cells.push_back(cell);
            }
        },
        [&](Node& node) { addKeyables(node, cells); });
    if (cells.empty()) throw Error("setKeyframe: there is nothing to set keys on.");
    int count = 0;
    for (Cell* cell : cells)
        count += keyCell(context, *cell, wanted);
    return count;
}

// --- keyframe and cutKey

mel::Value keyframe(CommandContext& context, const Args& args) {
    if (!args.isQuery()) throw Error("keyframe: only -query is known here; setKeyframe sets keys.");
    const auto ranges = rangesOf(args);
    mel::FloatArray times, values;
    mel::StringArray names;
    for (Node* curve : curvesOf(context, args)) {
        const CurveKeys table(*curve);
        const std::size_t before = times.size();
        for (const auto& key : table.keys()) {
            if (std::none_of(ranges.begin(), ranges.end(), [&](const TimeRange& range) {
                    return CurveKeys::isWithin(key.time, range.first, range.last);
                }))
                continue;
            times.push_back(key.time);
            values.push_back(key.value);
        }
        if (times.size() > before) names.push_back(curve->name());
    }
    if (args.has("timeChange")) return times;
    if (args.has("valueChange")) return values;
    if (args.has("keyframeCount")) return static_cast<int>(times.size());
    if (args.has("name")) return names;
    throw Error("keyframe: name what to query, such as -timeChange.");
}

/// A curve without keys goes; what it drove keeps what it shows.
void removeCurve(CommandContext& context, Node& curve) {
    Cell& output = curve.cell(*curve.type().find("output"));
    for (Cell* fed : output.destinations)
        graph::clean(*fed);
    context.scene.remove(curve);
}

mel::Value cutKey(CommandContext& context, const Args& args) {
    const auto ranges = rangesOf(args);
    std::size_t count = 0;
    for (Node* curve : curvesOf(context, args)) {
        CurveKeys table(*curve);
        std::size_t cut = 0;
        for (const TimeRange& range : ranges)
            cut += table.remove(range.first, range.last);
        count += cut;
        if (table.keys().empty()) {
            removeCurve(context, *curve);
        } else if (cut > 0) {
            require(table.store());
        }
    }
    return static_cast<int>(count);
}

const CommandSpec kCommands[] = {{"setKeyframe",
                                  "[node | plug]...",
                                  {{"-attribute", "-at", {ArgKind::Text}, kCreate, true},
                                   {"-time", "-t", {ArgKind::Float}, kCreate, true},
                                   {"-value", "-v", {ArgKind::Float}},
                                   {"-inTangentType", "-itt", {ArgKind::Text}},
                                   {"-outTangentType", "-ott", {ArgKind::Text}}},
                                  setKeyframe},
                                 {"keyframe",
                                  "[node | plug | curve]...",
                                  {{"-attribute", "-at", {ArgKind::Text}, kAllModes, true, true},
                                   {"-time", "-t", {ArgKind::Text}, kAllModes, true, true},
                                   {"-timeChange", "-tc"},
                                   {"-valueChange", "-vc"},
                                   {"-keyframeCount", "-kc"},
                                   {"-name", "-n"}},
                                  keyframe,
                                  kCreate | kQuery},
                                 {"cutKey",
                                  "[node | plug | curve]...",
                                  {{"-attribute", "-at", {ArgKind::Text}, kCreate, true},
                                   {"-time", "-t", {ArgKind::Text}, kCreate, true},
                                   {"-clear", "-cl"}},
                                  cutKey}};

} // namespace

void addKeyCommands(mel::CommandTable& table, CommandContext& context) {
    addCommands(table, context, kCommands);
    addCommands(table, context, expressionCommands());
}

} // namespace vesk::commands
