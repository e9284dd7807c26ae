// addAttr: attributes of single nodes, compounds piece by piece.

#include "host/commands/attribute_commands.h"
#include "host/commands/attribute_types.h"
#include "host/commands/lookup.h"
#include "host/commands/ui_units.h"

#include <algorithm>

namespace vesk::commands {

namespace {

using graph::Attribute;
using graph::AttrKind;
using graph::AttrRef;
using graph::Node;
using mel::Error;
using mel::Value;

bool isName(std::string_view name) {
    const auto isLetter = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
               static_cast<unsigned char>(c) >= 0x80;
    };
    if (name.empty() || !isLetter(name[0])) return false;
    return std::all_of(name.begin(), name.end(),
                       [&](char c) { return isLetter(c) || (c >= '0' && c <= '9'); });
}

// --- flags -----------------------------------------------------------------------------------------------

/// What may be said of an attribute when it is made, and changed afterwards.
void applyNumbers(const graph::Scene& scene, const Args& args, Attribute& attribute) {
    const auto internal = [&](std::string_view flag) {
        return attribute.coerced(toInternal(scene, attribute.unit, args.number(flag)));
    };
    if (args.has("defaultValue")) attribute.defaultNumber = internal("defaultValue");
    if (args.has("minValue")) attribute.min = internal("minValue");
    if (args.has("maxValue")) attribute.max = internal("maxValue");
    if (args.has("softMinValue")) attribute.softMin = internal("softMinValue");
    if (args.has("softMaxValue")) attribute.softMax = internal("softMaxValue");
    const auto drop = [&](std::string_view flag, std::optional<double>& limit) {
        if (!args.boolean(flag, true)) limit.reset();
    };
    drop("hasMinValue", attribute.min);
    drop("hasMaxValue", attribute.max);
    drop("hasSoftMinValue", attribute.softMin);
    drop("hasSoftMaxValue", attribute.softMax);
    if (args.has("enumName")) {
        auto fields = enumFields(args.text("enumName"));
        if (!fields) throw Error(fields.error());
        attribute.fields = std::move(*fields);
    }
}

void applySwitches(const Args& args, Attribute& attribute) {
    attribute.keyable = args.boolean("keyable", attribute.keyable);
    attribute.hidden = args.boolean("hidden", attribute.hidden);
    attribute.readable = args.boolean("readable", attribute.readable);
    attribute.writable = args.boolean("writable", attribute.writable);
    attribute.storable = args.boolean("storable", attribute.storable);
    attribute.cached = args.boolean("cachedInternally", attribute.cached);
    attribute.internal = args.boolean("internalSet", attribute.internal);
    attribute.usedAsColor = args.boolean("usedAsColor", attribute.usedAsColor);
    attribute.indexMatters = args.boolean("indexMatters", attribute.indexMatters);
    if (args.has("multi")) attribute.array = attribute.usesArrayDataBuilder = args.isOn("multi");
    if (args.has("disconnectBehaviour")) {
        const int behavior = args.integer("disconnectBehaviour");
        if (behavior < 0 || behavior > 2) throw Error("A disconnect behaviour is 0, 1 or 2.");
        attribute.onDisconnect = static_cast<graph::DisconnectBehavior>(behavior);
    }
}

AttributeType newAttribute(const graph::Scene& scene, const Args& args) {
    const std::string shortName = args.text("shortName", args.text("longName"));
    const std::string longName = args.text("longName", shortName);
    for (const auto& name : {longName, shortName}) {
        if (!isName(name)) throw Error("New attribute needs a name; '" + name + "' is not one.");
    }
    const auto dataTypes = args.texts("dataType");
    auto made = dataTypes.empty() ? attributeOfType(args.text("attributeType", "double"), longName, shortName)
                                  : attributeOfData(dataTypes.front(), longName, shortName);
    if (!made) throw Error(made.error());
    if (made->childCount > 0 && made->attribute->kind == AttrKind::Compound) {
        const int count = args.integer("numberOfChildren", 1);
        if (count < 1 || count > 65535) throw Error("A compound attribute needs one child or more.");
        made->childCount = static_cast<std::size_t>(count);
    }
    applyNumbers(scene, args, *made->attribute);
    applySwitches(args, *made->attribute);
    return std::move(*made);
}

// --- compounds in the making -----------------------------------------------------------------------------

PendingCompound::Place* findPlace(CommandContext& context, const Node& node, std::string_view name) {
    for (auto& pending : context.pendingCompounds) {
        if (pending.node.get() != &node) continue;
        for (auto& place : pending.places) {
            const bool isIt = place.compound->longName == name || place.compound->shortName == name;
            if (isIt && place.compound->children.size() < place.childCount) return &place;
        }
    }
    return nullptr;
}

PendingCompound& pendingOf(CommandContext& context, const PendingCompound::Place& place) {
    return *std::find_if(context.pendingCompounds.begin(), context.pendingCompounds.end(), [&](auto& one) {
        return &place >= one.places.data() && &place < one.places.data() + one.places.size();
    });
}

/// The short name of a clash, or nothing.
bool isTaken(const CommandContext& context, const Node& node, const std::string& longName) {
    if (node.findAttribute(longName)) return true;
    const auto below = [&](const auto& self, const Attribute& one) -> bool {
        return one.longName == longName ||
               std::any_of(one.children.begin(), one.children.end(),
                           [&](const AttrRef& child) { return self(self, *child); });
    };
    return std::any_of(context.pendingCompounds.begin(), context.pendingCompounds.end(),
                       [&](const auto& one) { return one.node.get() == &node && below(below, *one.top); });
}

/// Puts the compound onto its node when nothing is missing below it any more.
void finishIfComplete(CommandContext& context, PendingCompound& pending) {
    const bool isComplete =
        std::all_of(pending.places.begin(), pending.places.end(), [](const PendingCompound::Place& place) {
            return place.compound->children.size() == place.childCount;
        });
    if (!isComplete) return;
    const auto at = &pending - context.pendingCompounds.data();
    const PendingCompound done = std::move(pending);
    context.pendingCompounds.erase(context.pendingCompounds.begin() + at);
    require(done.node->addDynamicAttribute(done.top));
}

void addChild(CommandContext& context, Node& node, AttributeType made, std::string_view parentName) {
    PendingCompound::Place* place = findPlace(context, node, parentName);
    if (!place) {
        const bool isFull = node.findAttribute(parentName) != nullptr;
        throw Error(isFull ? "The attribute '" + std::string(parentName) + "' has all its children."
                           : "No object matches name: " + node.uniqueName() + '.' + std::string(parentName));
    }
    made.attribute->parent = place->compound.get();
    place->compound->children.push_back(made.attribute);
    PendingCompound& pending = pendingOf(context, *place);
    if (made.childCount > 0) {
        pending.places.push_back({std::move(made.attribute), made.childCount});
        return;
    }
    finishIfComplete(context, pending);
}

void addTo(CommandContext& context, Node& node, const Args& args) {
    AttributeType made = newAttribute(context.scene, args);
    if (isTaken(context, node, made.attribute->longName)) {
        throw Error("Found an existing attribute '" + made.attribute->longName + "' on node '" +
                    node.uniqueName() + "'.");
    }
    if (args.has("parent")) return addChild(context, node, std::move(made), args.text("parent"));
    if (made.childCount > 0) {
        PendingCompound pending{Ref<Node>(&node), made.attribute, {}};
        pending.places.push_back({made.attribute, made.childCount});
        context.pendingCompounds.push_back(std::move(pending));
        return;
    }
    require(node.addDynamicAttribute(made.attribute));
}

// --- the command -----------------------------------------------------------------------------------------

/// Nodes that get the attribute. Names of plugs and components stand for their nodes.
std::vector<Node*> targets(CommandContext& context, const Args& args) {
    if (args.wordCount() == 0 && context.currentNode && context.currentNode->isAlive()) {
        return {context.currentNode.get()};
    }
    if (args.wordCount() == 0) return operandNodes(context, args);
    std::vector<Node*> nodes;
    for (const auto& word : args.wordTexts()) {
        for (Node* node : nodesNamed(context, nodePart(word)))
            nodes.push_back(node);
    }
    return nodes;
}

Attribute& dynamicAttribute(const CommandContext& context, const Args& args) {
    const graph::Plug plug = plugNamed(context, args.word(0));
    if (!plug.attr->dynamic) {
        throw Error("'" + plug.name() + "' was not added to its node and cannot be changed.");
    }
    return *plug.attr;
}

Value limitValue(const graph::Scene& scene, const Attribute& attribute, const std::optional<double>& limit) {
    return limit ? Value(toUi(scene, attribute.unit, *limit)) : Value();
}

Value query(CommandContext& context, const Args& args) {
    if (args.has("exists")) return findPlugs(context, args.word(0)).error.empty();
    const graph::Scene& scene = context.scene;
    const Attribute& a = *plugNamed(context, args.word(0)).attr;
    if (args.has("longName")) return a.longName;
    if (args.has("shortName")) return a.shortName;
    if (args.has("attributeType")) return a.typeName();
    if (args.has("dataType")) return mel::StringArray{a.typeName()};
    if (args.has("defaultValue")) return toUi(scene, a.unit, a.defaultNumber);
    if (args.has("minValue")) return limitValue(scene, a, a.min);
    if (args.has("maxValue")) return limitValue(scene, a, a.max);
    if (args.has("softMinValue")) return limitValue(scene, a, a.softMin);
    if (args.has("softMaxValue")) return limitValue(scene, a, a.softMax);
    if (args.has("hasMinValue")) return a.min.has_value();
    if (args.has("hasMaxValue")) return a.max.has_value();
    if (args.has("hasSoftMinValue")) return a.softMin.has_value();
    if (args.has("hasSoftMaxValue")) return a.softMax.has_value();
    if (args.has("enumName")) return enumText(a);
    if (args.has("numberOfChildren")) return static_cast<int>(a.children.size());
    if (args.has("parent")) return a.parent ? a.parent->longName : a.longName;
    if (args.has("keyable")) return a.keyable;
    if (args.has("hidden")) return a.hidden;
    if (args.has("readable")) return a.readable;
    if (args.has("writable")) return a.writable;
    if (args.has("storable")) return a.storable;
    if (args.has("cachedInternally")) return a.cached;
    if (args.has("usedAsColor")) return a.usedAsColor;
    if (args.has("multi")) return a.array;
    if (args.has("indexMatters")) return a.indexMatters;
    throw Error("addAttr cannot be asked for that.");
}

Value run(CommandContext& context, const Args& args) {
    if (args.isQuery()) return query(context, args);
    if (args.isEdit()) {
        Attribute& attribute = dynamicAttribute(context, args);
        applyNumbers(context.scene, args, attribute);
        applySwitches(args, attribute);
        return {};
    }
    std::erase_if(context.pendingCompounds, [](const auto& one) { return !one.node->isAlive(); });
    const auto nodes = targets(context, args);
    if (nodes.empty()) throw Error("No object was named or is selected for the new attribute.");
    for (Node* node : nodes)
        addTo(context, *node, args);
    return {};
}

} // namespace

std::span<const CommandSpec> addAttrCommands() {
    constexpr auto kBool = ArgKind::Bool;
    constexpr auto kFloat = ArgKind::Float;
    constexpr auto kText = ArgKind::Text;
    constexpr Modes kMake = kCreate | kQuery;
    static const CommandSpec rows[] = {{"addAttr",
                                        "node...",
                                        {{"-longName", "-ln", {kText}, kMake},
                                         {"-shortName", "-sn", {kText}, kMake},
                                         {"-niceName", "-nn", {kText}},
                                         {"-attributeType", "-at", {kText}, kMake},
                                         {"-dataType", "-dt", {kText}, kMake, true},
                                         {"-defaultValue", "-dv", {kFloat}},
                                         {"-minValue", "-min", {kFloat}},
                                         {"-maxValue", "-max", {kFloat}},
                                         {"-softMinValue", "-smn", {kFloat}},
                                         {"-softMaxValue", "-smx", {kFloat}},
                                         {"-hasMinValue", "-hnv", {kBool}},
                                         {"-hasMaxValue", "-hxv", {kBool}},
                                         {"-hasSoftMinValue", "-hsn", {kBool}},
                                         {"-hasSoftMaxValue", "-hsx", {kBool}},
                                         {"-enumName", "-en", {kText}},
                                         {"-keyable", "-k", {kBool}},
                                         {"-hidden", "-h", {kBool}},
                                         {"-readable", "-r", {kBool}},
                                         {"-writable", "-w", {kBool}},
                                         {"-storable", "-s", {kBool}},
                                         {"-cachedInternally", "-ci", {kBool}},
                                         {"-internalSet", "-is", {kBool}},
                                         {"-multi", "-m", {}, kMake},
                                         {"-indexMatters", "-im", {kBool}, kMake},
                                         {"-parent", "-p", {kText}, kMake},
                                         {"-numberOfChildren", "-nc", {ArgKind::Int}, kMake},
                                         {"-usedAsColor", "-uac", {}, kMake},
                                         {"-usedAsFilename", "-uaf"},
                                         {"-usedAsProxy", "-uap"},
                                         {"-proxy", "-pxy", {kText}},
                                         {"-disconnectBehaviour", "-dcb", {ArgKind::Int}, kMake},
                                         {"-category", "-ct", {kText}, kAllModes, true},
                                         {"-binaryTag", "-bt", {kText}},
                                         {"-fromPlugin", "-fp"},
                                         {"-exists", "-ex", {}, kQuery}},
                                        run,
                                        kAllModes}};
    return rows;
}

} // namespace vesk::commands
