// deleteAttr, renameAttr and aliasAttr.

#include "host/commands/alias.h"
#include "host/commands/attribute_commands.h"
#include "host/commands/lookup.h"

#include <algorithm>

namespace vesk::commands {

namespace {

using graph::Attribute;
using graph::Node;
using graph::Plug;
using mel::Error;
using mel::Value;

bool isAliasName(std::string_view name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
               static_cast<unsigned char>(c) >= 0x80;
    });
}

/// The index that an alias of this plug carries: -1 for no element. Nothing for plugs that can have none.
std::optional<int> aliasIndex(const Plug& plug) {
    if (plug.depth == 0) return -1;
    if (plug.isElement() && plug.depth == 1) return plug.indices[0];
    return std::nullopt;
}

auto findAlias(const Plug& plug) {
    auto& aliases = plug.node->aliases;
    const auto index = aliasIndex(plug);
    return std::find_if(aliases.begin(), aliases.end(), [&](const Node::Alias& one) {
        return index && one.attribute == plug.attr && one.logicalIndex == *index;
    });
}

// --- deleteAttr, renameAttr ------------------------------------------------------------------------------

Value deleteAttr(CommandContext& context, const Args& args) {
    if (args.has("attribute")) {
        for (Node* node : operandNodes(context, args)) {
            const Plug plug = plugNamed(context, node->uniqueName() + '.' + args.text("attribute"));
            require(plug.node->removeDynamicAttribute(*plug.attr));
        }
        return {};
    }
    (void)args.word(0);
    for (const auto& word : args.wordTexts()) {
        const Plug plug = plugNamed(context, word);
        require(plug.node->removeDynamicAttribute(*plug.attr));
    }
    return {};
}

Value renameAttr(CommandContext& context, const Args& args) {
    const Plug plug = plugNamed(context, args.word(0));
    const std::string name = args.word(1);
    Attribute& attribute = *plug.attr;
    if (!attribute.dynamic) {
        throw Error("'" + plug.name() + "' was not added to its node and cannot be renamed.");
    }
    if (!isAliasName(name)) throw Error("'" + name + "' cannot be the name of an attribute.");
    const Attribute* other = plug.node->findAttribute(name);
    if (other && other != &attribute) {
        throw Error("Found an existing attribute '" + name + "' on node '" + plug.node->uniqueName() + "'.");
    }
    if (attribute.shortName == attribute.longName) attribute.shortName = name;
    attribute.longName = name;
    return name;
}

// --- aliasAttr -------------------------------------------------------------------------------------------

/// The plain name of what an alias stands for.
std::string realName(const Node::Alias& alias) {
    std::string name = alias.attribute->longName;
    if (alias.logicalIndex >= 0) name += '[' + std::to_string(alias.logicalIndex) + ']';
    return name;
}

Value queryAlias(CommandContext& context, const std::string& name) {
    if (name.find('.') != std::string::npos) {
        const Plug plug = plugNamed(context, name);
        const auto found = findAlias(plug);
        return found == plug.node->aliases.end() ? std::string() : found->name;
    }
    mel::StringArray pairs;
    for (const auto& alias : nodeNamed(context, name).aliases) {
        pairs.push_back(alias.name);
        pairs.push_back(realName(alias));
    }
    return pairs;
}

Value aliasAttr(CommandContext& context, const Args& args) {
    if (args.isQuery()) return queryAlias(context, args.word(0));
    if (args.isOn("remove")) {
        (void)args.word(0);
        for (const auto& word : args.wordTexts()) {
            if (!removeAlias(plugNamed(context, word))) throw Error("'" + word + "' has no alias.");
        }
        return {};
    }
    if (args.wordCount() % 2 != 0 || args.wordCount() == 0) {
        throw Error("aliasAttr takes names and plugs in turn.");
    }
    for (std::size_t i = 0; i < args.wordCount(); i += 2)
        require(setAlias(plugNamed(context, args.word(i + 1)), args.word(i)));
    return {};
}

} // namespace

Outcome setAlias(const Plug& plug, const std::string& alias) {
    const auto index = aliasIndex(plug);
    if (!index || plug.indices[0] < *index) {
        return Outcome::fail("'" + plug.name() + "' cannot have an alias.");
    }
    if (!isAliasName(alias)) return Outcome::fail("'" + alias + "' cannot be an alias.");
    Node& node = *plug.node;
    const auto present = findAlias(plug);
    const bool isTaken = node.findAttribute(alias) ||
                         std::any_of(node.aliases.begin(), node.aliases.end(), [&](const Node::Alias& one) {
                             return one.name == alias && (present == node.aliases.end() || &one != &*present);
                         });
    if (isTaken) {
        return Outcome::fail("The name '" + alias + "' is taken on node '" + node.uniqueName() + "'.");
    }
    if (present != node.aliases.end()) {
        present->name = alias;
    } else {
        node.aliases.push_back({alias, plug.attr, *index});
    }
    return {};
}

bool removeAlias(const Plug& plug) {
    const auto found = findAlias(plug);
    if (found == plug.node->aliases.end()) return false;
    plug.node->aliases.erase(found);
    return true;
}

std::span<const CommandSpec> attributeNameCommands() {
    static const CommandSpec rows[] = {
        {"deleteAttr",
         "plug...",
         {{"-attribute", "-at", {ArgKind::Text}}, {"-name", "-n", {ArgKind::Text}}},
         deleteAttr},
        {"renameAttr", "plug name", {}, renameAttr},
        {"aliasAttr", "[name plug]...", {{"-remove", "-rm"}}, aliasAttr, kCreate | kQuery}};
    return rows;
}

} // namespace vesk::commands
