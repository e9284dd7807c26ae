// objExists, nodeType and objectType.

#include "host/commands/attribute_commands.h"
#include "host/commands/lookup.h"

#include <algorithm>

namespace vesk::commands {

namespace {

using graph::NodeType;
using mel::Error;
using mel::Value;

Value objExists(CommandContext& context, const Args& args) {
    const std::string name = args.word(0);
    if (name.find('.') == std::string::npos) return !context.scene.match(name).empty();
    return !graph::resolve(context.scene, name).empty();
}

const NodeType& typeNamed(const CommandContext& context, const std::string& name) {
    const NodeType* type = context.scene.types().find(name);
    if (!type) throw Error("'" + name + "' is not a type of node.");
    return *type;
}

/// Base first.
mel::StringArray inheritance(const NodeType& type) {
    mel::StringArray names;
    for (const NodeType* at = &type; at; at = at->base())
        names.insert(names.begin(), at->name());
    return names;
}

mel::StringArray derivedTypes(CommandContext& context, const NodeType& base) {
    mel::StringArray names;
    for (const NodeType* type : context.scene.types().all()) {
        if (type->isA(base.name())) names.push_back(type->name());
    }
    return names;
}

Value nodeType(CommandContext& context, const Args& args) {
    const std::string name = args.word(0);
    const bool isTypeName = args.isOn("isTypeName");
    const NodeType& type = isTypeName ? typeNamed(context, name) : nodeNamed(context, nodePart(name)).type();
    if (args.isOn("inherited")) return inheritance(type);
    if (args.isOn("derived")) return derivedTypes(context, type);
    return args.isOn("apiType") ? kindName(type.apiType()) : type.name();
}

Value objectType(CommandContext& context, const Args& args) {
    const NodeType& type = nodeNamed(context, nodePart(args.word(0))).type();
    if (args.has("isAType")) return type.isA(args.text("isAType"));
    if (args.has("isType")) return type.name() == args.text("isType");
    return type.name();
}

} // namespace

std::span<const CommandSpec> nodeQueryCommands() {
    static const CommandSpec rows[] = {
        {"objExists", "name", {}, objExists},
        {"nodeType",
         "node",
         {{"-apiType", "-api"}, {"-inherited", "-i"}, {"-derived", "-d"}, {"-isTypeName", "-itn"}},
         nodeType},
        {"objectType",
         "node",
         {{"-isAType", "-isa", {ArgKind::Text}}, {"-isType", "-i", {ArgKind::Text}}},
         objectType}};
    return rows;
}

} // namespace vesk::commands
