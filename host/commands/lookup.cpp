#include "host/commands/lookup.h"

#include <algorithm>

namespace vesk::commands {

using mel::Error;

graph::Node& nodeNamed(const CommandContext& context, std::string_view name) {
    bool ambiguous = false;
    graph::Node* node = context.scene.find(name, &ambiguous);
    if (node) return *node;
    throw Error((ambiguous ? "More than one object matches name: " : "No object matches name: ") +
                std::string(name));
}

graph::DagNode& dagNodeNamed(const CommandContext& context, std::string_view name) {
    graph::Node& node = nodeNamed(context, name);
    if (!node.type().isDag) throw Error("'" + std::string(name) + "' is not a DAG node.");
    return static_cast<graph::DagNode&>(node);
}

std::vector<graph::Node*> nodesNamed(const CommandContext& context, std::string_view pattern) {
    auto found = context.scene.match(pattern);
    if (found.empty()) throw Error("No object matches name: " + std::string(pattern));
    return found;
}

std::vector<graph::Node*> operandNodes(const CommandContext& context, const Args& args) {
    std::vector<graph::Node*> list;
    const auto add = [&list](graph::Node* node) {
        if (std::find(list.begin(), list.end(), node) == list.end()) list.push_back(node);
    };
    for (const auto& word : args.wordTexts()) {
        for (graph::Node* node : nodesNamed(context, word))
            add(node);
    }
    if (args.wordCount() > 0) return list;
    for (const auto& item : context.scene.selection.items())
        add(item.node.get());
    return list;
}

std::string_view nodePart(std::string_view plugName) { return plugName.substr(0, plugName.find('.')); }
std::string_view pathPart(std::string_view plugName) { return plugName.substr(plugName.find('.') + 1); }

graph::DagNode* shapeOf(graph::DagNode& node) {
    if (node.type().isShape) return &node;
    for (graph::DagNode* child : node.children()) {
        if (child->type().isShape && !child->isIntermediate()) return child;
    }
    return nullptr;
}

namespace {

/// The node that a plug name means; without one, `error` says why.
graph::Node* ownerOf(const CommandContext& context, std::string_view name, std::string& error) {
    const auto dot = name.find('.');
    if (dot == 0) {
        graph::Node* node = context.currentNode.get();
        if (node && node->isAlive()) return node;
        error = "No node is current that '" + std::string(name) + "' could belong to.";
        return nullptr;
    }
    if (dot == std::string_view::npos) {
        error = "No attribute was named in '" + std::string(name) + "'.";
        return nullptr;
    }
    bool ambiguous = false;
    graph::Node* node = context.scene.find(name.substr(0, dot), &ambiguous);
    if (!node) {
        error = (ambiguous ? "More than one object matches name: " : "No object matches name: ") +
                std::string(name);
    }
    return node;
}

} // namespace

graph::PlugRange findPlugs(const CommandContext& context, std::string_view name) {
    graph::PlugRange range;
    graph::Node* node = ownerOf(context, name, range.error);
    if (!node) return range;
    const std::string_view path = pathPart(name);
    range = graph::findPlug(*node, path);
    if (range.error.empty() || !node->type().isDag || node->type().isShape) return range;
    if (graph::DagNode* shape = shapeOf(static_cast<graph::DagNode&>(*node))) {
        auto below = graph::findPlug(*shape, path);
        if (below.error.empty()) return below;
    }
    return range;
}

nodes::Placeholder* placeholderNamed(const CommandContext& context, std::string_view plugName) {
    if (!context.scene.readingFile) return nullptr;
    std::string error;
    return dynamic_cast<nodes::Placeholder*>(ownerOf(context, plugName, error));
}

graph::PlugRange plugsNamed(const CommandContext& context, std::string_view name) {
    auto range = findPlugs(context, name);
    if (!range.error.empty()) throw Error(range.error);
    return range;
}

graph::Plug plugNamed(const CommandContext& context, std::string_view name) {
    const auto range = plugsNamed(context, name);
    if (range.first >= 0 || !range.childPath.empty()) {
        throw Error("'" + std::string(name) + "' names several plugs where one is wanted.");
    }
    return range.plug;
}

graph::Cell& cellNamed(const CommandContext& context, std::string_view name) {
    graph::Cell* cell = plugNamed(context, name).cell();
    if (!cell) throw Error("'" + std::string(name) + "' leaves the index of an element open.");
    return *cell;
}

} // namespace vesk::commands
