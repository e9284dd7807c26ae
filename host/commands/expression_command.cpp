// expression.

#include "host/commands/attribute_commands.h"
#include "host/commands/key_commands.h"
#include "host/commands/lookup.h"
#include "host/core/log.h"
#include "host/data/value_data.h"
#include "host/mel/mentions.h"
#include "host/nodes/expression_node.h"

#include <algorithm>

namespace vesk::commands {

using graph::Cell;
using graph::Node;
using mel::Error;
using mel::Mention;

namespace {

Cell& cellOf(Node& node, std::string_view attribute) { return node.cell(*node.type().find(attribute)); }

/// The plugs that a text reads and writes, each once, in the order of their first place.
struct Wiring {
    std::vector<Cell*> inputs, outputs;
    bool followsTime = false;
    std::string text; ///< with placeholders for them
};

/// Tells the line of the text in which something is wrong.
[[noreturn]] void refuse(std::string_view text, const Mention& mention, const std::string& message) {
    const auto line =
        1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(mention.begin), '\n');
    throw Error("expression: line " + std::to_string(line) + " of the text: " + message);
}

std::string nameIn(std::string_view text, const Mention& mention) {
    return std::string(text.substr(mention.begin, mention.end - mention.begin));
}

/// The cell that a mention means; null for names that are no attributes of the object.
Cell* cellOfMention(const CommandContext& context, std::string_view text, const Mention& mention,
                    const std::string& object) {
    std::string name = nameIn(text, mention);
    if (mention.kind == Mention::Kind::Name) {
        if (object.empty()) return nullptr;
        name.insert(0, object + '.');
    }
    const auto range = findPlugs(context, name);
    if (!range.error.empty()) {
        if (mention.kind == Mention::Kind::Name) return nullptr;
        refuse(text, mention, range.error);
    }
    Cell* cell = range.first < 0 && range.childPath.empty() ? range.plug.cell() : nullptr;
    if (!cell || !cell->isLeaf() || !cell->attr.isNumber()) {
        refuse(text, mention, "'" + name + "' is no number.");
    }
    return cell;
}

int indexOf(const std::vector<Cell*>& list, const Cell* cell) {
    const auto place = std::find(list.begin(), list.end(), cell);
    return place == list.end() ? -1 : static_cast<int>(place - list.begin());
}

/// Refuses an output that something else than the expression itself feeds, or that is locked.
void checkOutput(const Cell& cell, const Node* own, std::string_view text, const Mention& mention) {
    const Cell* fed = cell.feedingAncestor();
    const Cell* source = fed ? fed->source : nullptr;
    if (source && source->node.type().name() == "unitConversion")
        source = cellOf(source->node, "input").source;
    if (cell.locked || (source && &source->node != own)) {
        refuse(text, mention,
               "the attribute '" + graph::Plug(cell).name() +
                   "' is locked or connected and cannot be modified.");
    }
}

/// Reads the text of a new expression, or of `own`.
Wiring wiringOf(const CommandContext& context, const std::string& text, const std::string& object,
                const Node* own) {
    Wiring wiring;
    const auto mentions = mel::mentionsIn(text);
    std::vector<Cell*> cells;
    for (const Mention& mention : mentions) {
        const bool isTime = mention.kind == Mention::Kind::Time || mention.kind == Mention::Kind::Frame;
        wiring.followsTime = wiring.followsTime || isTime;
        const bool named = mention.kind == Mention::Kind::Plug || mention.kind == Mention::Kind::Name;
        cells.push_back(named ? cellOfMention(context, text, mention, object) : nullptr);
        if (!cells.back() || !mention.isWritten || indexOf(wiring.outputs, cells.back()) >= 0) continue;
        checkOutput(*cells.back(), own, text, mention);
        wiring.outputs.push_back(cells.back());
    }
    std::size_t next = 0;
    wiring.text = mel::replaceMentions(text, mentions, [&](const Mention& mention) -> std::string {
        Cell* cell = cells[next++];
        if (!cell) return nameIn(text, mention);
        // What the text writes it also reads from itself.
        if (const int output = indexOf(wiring.outputs, cell); output >= 0)
            return ".O[" + std::to_string(output) + ']';
        int input = indexOf(wiring.inputs, cell);
        if (input < 0) {
            input = static_cast<int>(wiring.inputs.size());
            wiring.inputs.push_back(cell);
        }
        return ".I[" + std::to_string(input) + ']';
    });
    return wiring;
}

/// Wires of the expression before: the new text brings its own.
void unwire(Node& node) {
    for (const char* name : {"input", "output", "time"})
        graph::disconnectAll(cellOf(node, name));
}

void wire(CommandContext& context, Node& node, const Wiring& wiring, bool always) {
    unwire(node);
    const auto text = makeRef<StringData>(MString(wiring.text.c_str()));
    require(graph::storeData(cellOf(node, "internalExpression"), text));
    require(graph::storeNumber(cellOf(node, "animated"), always ? 1 : 0));
    for (std::size_t i = 0; i < wiring.inputs.size(); ++i)
        connectCells(context, *wiring.inputs[i], cellOf(node, "input").element(static_cast<int>(i)), false);
    for (std::size_t i = 0; i < wiring.outputs.size(); ++i)
        connectCells(context, cellOf(node, "output").element(static_cast<int>(i)), *wiring.outputs[i], false);
    Node* time = always || wiring.followsTime ? context.scene.find("time1") : nullptr;
    if (time) connectCells(context, cellOf(*time, "outTime"), cellOf(node, "time"), false);
}

// --- the command

Node& expressionNamed(const CommandContext& context, const Args& args) {
    Node& node = nodeNamed(context, args.word(0));
    if (node.type().name() != "expression") throw Error("'" + node.name() + "' is no expression.");
    return node;
}

/// The other end of an element's wire, past a conversion of units; empty when there is none.
std::string plugAt(Node& node, const Mention& mention) {
    const bool isInput = mention.kind == Mention::Kind::Input;
    const Cell* element = cellOf(node, isInput ? "input" : "output").elementIfThere(mention.index);
    const auto next = [isInput](const Cell& cell) -> const Cell* {
        if (isInput) return cell.source;
        return cell.destinations.empty() ? nullptr : cell.destinations.front();
    };
    const Cell* end = element ? next(*element) : nullptr;
    if (end && end->node.type().name() == "unitConversion")
        end = next(cellOf(end->node, isInput ? "input" : "output"));
    return end ? graph::Plug(*end).name() : std::string();
}

mel::Value query(const CommandContext& context, const Args& args) {
    Node& node = expressionNamed(context, args);
    if (args.has("alwaysEvaluate")) return graph::pullNumber(cellOf(node, "animated")) != 0;
    if (!args.has("string")) throw Error("expression: name what to query, such as -string.");
    const auto data = graph::pullAs<StringData>(cellOf(node, "internalExpression"));
    const std::string text = data ? data->value.asChar() : "";
    return mel::replaceMentions(text, mel::mentionsIn(text), [&](const Mention& mention) {
        const bool stands = mention.kind == Mention::Kind::Input || mention.kind == Mention::Kind::Output;
        const std::string plug = stands ? plugAt(node, mention) : std::string();
        return plug.empty() ? nameIn(text, mention) : plug;
    });
}

mel::Value expression(CommandContext& context, const Args& args) {
    if (args.isQuery()) return query(context, args);
    if (!args.has("string")) throw Error("expression: give the text with -string.");
    if (args.text("unitConversion", "all") != "all")
        throw Error(
            "expression: numbers are in the units of the interface here; only -unitConversion all is known.");
    const std::string object = args.text("object");
    if (!object.empty()) (void)nodeNamed(context, object);
    Ref<Node> node = args.isEdit() ? &expressionNamed(context, args) : nullptr;
    const Wiring wiring = wiringOf(context, args.text("string"), object, node.get());
    if (!node) node = context.scene.create(*context.scene.types().find("expression"), args.text("name"));
    try {
        (void)context.mel.evaluate(nodes::expressionProcedure("vesk_expression", wiring.text), node->name());
        wire(context, *node, wiring, args.boolean("alwaysEvaluate", true));
    } catch (const Error&) {
        if (!args.isEdit()) context.scene.remove(*node);
        throw;
    }
    if (wiring.outputs.empty())
        log().warning("expression '" + node->name() + "' writes no attribute: nothing will ask for it.");
    return node->name();
}

} // namespace

std::span<const CommandSpec> expressionCommands() {
    static const CommandSpec rows[] = {{"expression",
                                        "[name]",
                                        {{"-string", "-s", {ArgKind::Text}},
                                         {"-name", "-n", {ArgKind::Text}, kCreate},
                                         {"-object", "-o", {ArgKind::Text}, kCreate | kEdit},
                                         {"-alwaysEvaluate", "-ae", {ArgKind::Bool}},
                                         {"-unitConversion", "-uc", {ArgKind::Text}, kCreate | kEdit}},
                                        expression,
                                        kAllModes}};
    return rows;
}

} // namespace vesk::commands
