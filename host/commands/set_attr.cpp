// setAttr, in scripts and in scene files.

#include "host/commands/alias.h"
#include "host/commands/assign.h"
#include "host/commands/attribute_commands.h"
#include "host/commands/lookup.h"

#include <algorithm>
#include <cstdint>

namespace vesk::commands {

namespace {

AssignOptions optionsOf(const Args& args) {
    AssignOptions options;
    const auto flag = [&args](std::string_view name) {
        return args.has(name) ? std::optional<bool>(args.isOn(name)) : std::nullopt;
    };
    options.lock = flag("lock");
    options.keyable = flag("keyable");
    options.channelBox = flag("channelBox");
    options.clamp = args.isOn("clamp");
    options.any = args.hasFlags();
    return options;
}

/// `{"alias", "attribute", ...}`: names that the attributes of the plug's node get.
Outcome assignAliases(CommandContext& context, std::string_view plugName, Words& words) {
    const bool isCurrent = plugName.starts_with('.');
    graph::Node* node = isCurrent ? context.currentNode.get() : context.scene.find(nodePart(plugName));
    if (!node) return Outcome::fail("No object matches name: " + std::string(plugName));
    while (!words.atEnd()) {
        const std::string alias(words.text());
        if (words.atEnd()) return Outcome::fail("The alias '" + alias + "' comes without its attribute.");
        const auto range = graph::findPlug(*node, words.text());
        if (!range.error.empty()) return Outcome::fail(range.error);
        if (auto outcome = setAlias(range.plug, alias); !outcome) return outcome;
    }
    return {};
}

Outcome setAttr(CommandContext& context, const Args& args, const std::string& plugName, Words& words) {
    const std::string type = args.text("type");
    if (type == "attributeAlias") return assignAliases(context, plugName, words);
    const AssignOptions options = optionsOf(args);
    auto range = findPlugs(context, plugName);
    if (nodes::Placeholder* grows = range.error.empty() ? nullptr : placeholderNamed(context, plugName)) {
        const bool hasFlags = options.lock || options.keyable || options.channelBox;
        // A size alone says nothing about what will be in it.
        if (words.atEnd() && !hasFlags) return {};
        nodes::AttributeHint hint;
        hint.type = type;
        hint.numbers = static_cast<int>(std::clamp<std::size_t>(words.numbersAhead(), 1, INT32_MAX));
        if (grows->ensure(pathPart(plugName), hint)) range = findPlugs(context, plugName);
    }
    return assign(context.scene, range, options, type, words);
}

mel::Value run(CommandContext& context, const Args& args) {
    const std::string plugName = args.word(0);
    ValueWords words(std::span(args.words()).subspan(1));
    require(setAttr(context, args, plugName, words));
    return {};
}

const CommandSpec& spec() {
    static const CommandSpec row{"setAttr",
                                 "plug value...",
                                 {{"-type", "-typ", {ArgKind::Text}},
                                  {"-size", "-s", {ArgKind::Int}},
                                  {"-keyable", "-k", {ArgKind::Bool}},
                                  {"-lock", "-l", {ArgKind::Bool}},
                                  {"-channelBox", "-cb", {ArgKind::Bool}},
                                  {"-caching", "-ca", {ArgKind::Bool}},
                                  {"-capacityHint", "-ch", {ArgKind::Int}},
                                  {"-alteredValue", "-av"},
                                  {"-clamp", "-c"}},
                                 run,
                                 kCreate,
                                 true};
    return row;
}

/// The next word as a value of the language.
mel::Value takeValue(Words& words) {
    if (words.peek() != WordKind::Number) return std::string(words.text());
    double number = 0;
    if (words.numbers(&number, 1) == 1) return number;
    return {};
}

} // namespace

Outcome setAttrFrom(CommandContext& context, Words& words) {
    // What stands before the values goes through the same parser as a script's call.
    std::vector<mel::Value> head;
    bool hasPlug = false;
    for (WordKind kind = words.peek(); kind != WordKind::End; kind = words.peek()) {
        if (kind == WordKind::Flag) {
            head.emplace_back(std::string(words.text()));
            const FlagSpec* flag = findFlag(spec(), *head.back().ifString());
            if (!flag) return Outcome::fail("Invalid flag '" + *head.back().ifString() + "'.");
            for (std::size_t i = 0; i < flag->args.size() && !words.atEnd(); ++i)
                head.push_back(takeValue(words));
        } else if (!hasPlug) {
            head.emplace_back(std::string(words.text()));
            hasPlug = true;
        } else {
            break;
        }
    }
    try {
        const Args args = parse(spec(), head);
        return setAttr(context, args, args.word(0), words);
    } catch (const mel::Error& error) {
        return Outcome::fail(error.message());
    }
}

std::span<const CommandSpec> setAttrCommands() { return {&spec(), 1}; }

} // namespace vesk::commands
