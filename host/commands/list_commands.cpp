// What is there and what is selected: ls, select, listRelatives.

#include "host/commands/lookup.h"
#include "host/commands/node_commands.h"

#include "host/data/component.h"
#include "host/graph/evaluate.h"

#include <algorithm>

namespace vesk::commands {

using graph::DagNode;
using graph::DagPath;
using graph::Node;
using graph::SelectionItem;

namespace {

bool isOfType(const Node& node, const std::vector<std::string>& types) {
    return types.empty() || std::any_of(types.begin(), types.end(),
                                        [&](const std::string& type) { return node.type().isA(type); });
}

/// One entry an element instead of one a run.
std::vector<std::string> flattened(const SelectionItem& item) {
    const auto* component = dynamic_cast<const Component*>(item.component.get());
    const auto* single = dynamic_cast<const SingleComponent*>(component);
    const auto* pairs = dynamic_cast<const DoubleComponent*>(component);
    const std::string name = item.path.isEmpty() ? item.node->uniqueName() : item.path.partialName();
    std::vector<std::string> texts;
    if (single && !single->isUnsized()) {
        const std::string word(Component::wordOf(single->apiType()));
        for (std::size_t i = 0; i < single->count(); ++i) {
            texts.push_back(name + '.' + word + '[' + std::to_string(single->at(i)[0]) + ']');
        }
    } else if (pairs && !pairs->isUnsized()) {
        const std::string word(Component::wordOf(pairs->apiType()));
        for (std::size_t i = 0; i < pairs->count(); ++i) {
            const auto at = pairs->at(i);
            texts.push_back(name + '.' + word + '[' + std::to_string(at[0]) + "][" + std::to_string(at[1]) +
                            ']');
        }
    } else {
        texts = item.texts();
    }
    return texts;
}

mel::Value ls(CommandContext& context, const Args& args) {
    std::vector<SelectionItem> items;
    const auto take = [&](Node& node) {
        SelectionItem item;
        item.node = &node;
        if (node.type().isDag) item.path = graph::firstPath(static_cast<DagNode&>(node));
        items.push_back(std::move(item));
    };
    if (args.isOn("selection")) {
        items = context.scene.selection.items();
    } else if (args.wordCount() > 0) {
        for (const auto& pattern : args.wordTexts()) {
            for (auto& item : graph::resolve(context.scene, pattern))
                items.push_back(std::move(item));
        }
    } else {
        for (Node* node : context.scene.nodes())
            take(*node);
    }
    if (args.isOn("dagObjects") || args.isOn("shapes") || args.isOn("transforms")) {
        if (args.isOn("dagObjects") && (args.wordCount() > 0 || args.isOn("selection"))) {
            // Everything below, parents first.
            std::vector<SelectionItem> roots;
            roots.swap(items);
            const auto below = [&](const auto& self, DagNode& node) -> void {
                take(node);
                for (DagNode* child : node.children())
                    self(self, *child);
            };
            for (const auto& root : roots) {
                if (root.node->type().isDag) below(below, static_cast<DagNode&>(*root.node));
            }
        }
        std::erase_if(items, [&](const SelectionItem& item) {
            if (!item.node->type().isDag) return true;
            if (args.isOn("shapes") && !item.node->type().isShape) return true;
            return args.isOn("transforms") && !item.node->type().isA("transform");
        });
    }
    const auto types = args.texts("type");
    for (const auto& type : types) {
        if (!context.scene.types().find(type)) throw mel::Error("Unknown object type: " + type);
    }
    const auto exactTypes = args.texts("exactType");
    mel::StringArray names;
    for (const auto& item : items) {
        if (!isOfType(*item.node, types)) continue;
        if (!exactTypes.empty() &&
            std::find(exactTypes.begin(), exactTypes.end(), item.node->type().name()) == exactTypes.end()) {
            continue;
        }
        const bool isIntermediate =
            item.node->type().isDag && static_cast<DagNode&>(*item.node).isIntermediate();
        if (args.isOn("noIntermediate") && isIntermediate) continue;
        if (args.isOn("intermediateObjects") && !isIntermediate) continue;
        std::vector<std::string> texts;
        const bool wholeNode = item.plug.isNull() && !item.component;
        if (args.isOn("flatten") && item.component) {
            texts = flattened(item);
        } else if (wholeNode && !item.path.isEmpty() && args.isOn("allPaths")) {
            for (const auto& path : graph::allPaths(*item.path.node())) {
                texts.push_back(args.isOn("long") ? path.fullName() : path.partialName());
            }
        } else if (wholeNode && !item.path.isEmpty() && args.isOn("long")) {
            texts = {item.path.fullName()};
        } else {
            texts = item.texts();
        }
        for (auto& text : texts) {
            names.push_back(std::move(text));
            if (args.isOn("showType")) names.push_back(item.node->type().name());
        }
    }
    return mel::Value(std::move(names));
}

mel::Value select(CommandContext& context, const Args& args) {
    auto& selection = context.scene.selection;
    if (args.isOn("clear")) {
        selection.clear();
        return mel::Value();
    }
    std::vector<SelectionItem> items;
    for (const auto& name : args.wordTexts()) {
        auto found = graph::resolve(context.scene, name);
        if (found.empty()) throw mel::Error("No object matches name: " + name);
        for (auto& item : found)
            items.push_back(std::move(item));
    }
    if (args.isOn("all")) {
        for (DagNode* top : context.scene.world().children()) {
            if (!top->isDefault) {
                for (auto& item : graph::resolve(context.scene, top->uniqueName()))
                    items.push_back(std::move(item));
            }
        }
    }
    if (args.isOn("hierarchy")) {
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (!items[i].node->type().isDag || items[i].component) continue;
            for (DagNode* child : static_cast<DagNode&>(*items[i].node).children()) {
                for (auto& item : graph::resolve(context.scene, child->uniqueName()))
                    items.push_back(std::move(item));
            }
        }
    }
    if (args.isOn("deselect")) {
        for (const auto& item : items)
            selection.remove(item);
    } else if (args.isOn("toggle")) {
        for (const auto& item : items) {
            const auto& present = selection.items();
            const bool isIn = std::any_of(present.begin(), present.end(),
                                          [&](const SelectionItem& one) { return one.sameThing(item); });
            if (isIn) {
                selection.remove(item);
            } else {
                selection.add(item);
            }
        }
    } else {
        if (!args.isOn("add") && !args.isOn("addFirst")) selection.clear();
        for (auto& item : items)
            selection.add(std::move(item));
    }
    // In a file, lines that follow `select -ne :node` go to that node.
    if (!selection.items().empty()) context.currentNode = selection.items().back().node;
    return mel::Value();
}

mel::Value listRelatives(CommandContext& context, const Args& args) {
    mel::StringArray names;
    const auto put = [&](const DagPath& path) {
        std::string name = args.isOn("fullPath") ? path.fullName()
                           : args.isOn("path")   ? path.partialName()
                                                 : path.node()->name();
        if (!args.isOn("fullPath") && !args.isOn("path")) name = path.node()->uniqueName();
        if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(std::move(name));
    };
    const auto types = args.texts("type");
    const auto wanted = [&](const DagNode& node) {
        if (args.isOn("shapes") && !node.type().isShape) return false;
        if (args.isOn("noIntermediate") && node.isIntermediate()) return false;
        return isOfType(node, types);
    };
    const auto below = [&](const DagPath& path, DagNode& child) {
        DagPath down = path;
        down.nodes.emplace_back(&child);
        return down;
    };
    const auto descend = [&](const auto& self, const DagPath& path) -> void {
        for (DagNode* child : path.node()->children()) {
            const DagPath down = below(path, *child);
            if (args.isOn("allDescendents")) self(self, down);
            if (wanted(*child)) put(down);
        }
    };
    for (Node* node : operandNodes(context, args)) {
        if (!node->type().isDag) continue;
        auto& dag = static_cast<DagNode&>(*node);
        if (args.isOn("parent") || args.isOn("allParents")) {
            for (DagNode* parent : dag.parents()) {
                if (parent->isWorld() || !isOfType(*parent, types)) continue;
                put(graph::firstPath(*parent));
                if (!args.isOn("allParents")) break;
            }
            continue;
        }
        descend(descend, graph::firstPath(dag));
    }
    return mel::Value(std::move(names));
}

const CommandSpec kCommands[] = {
    {"ls",
     "[name...]",
     {{"-selection", "-sl"},
      {"-type", "-typ", {ArgKind::Text}, kAllModes, true},
      {"-exactType", "-et", {ArgKind::Text}, kAllModes, true},
      {"-long", "-l"},
      {"-dagObjects", "-dag"},
      {"-shapes", "-s"},
      {"-transforms", "-tr"},
      {"-flatten", "-fl"},
      {"-allPaths", "-ap"},
      {"-showType", "-st"},
      {"-noIntermediate", "-ni"},
      {"-intermediateObjects", "-io"}},
     ls},
    {"select",
     "[name...]",
     {{"-replace", "-r"},
      {"-add", "-add"},
      {"-addFirst", "-af"},
      {"-deselect", "-d"},
      {"-toggle", "-tgl"},
      {"-clear", "-cl"},
      {"-all", "-all"},
      {"-hierarchy", "-hi"},
      {"-noExpand", "-ne"}},
     select},
    {"listRelatives",
     "[node...]",
     {{"-parent", "-p"},
      {"-allParents", "-ap"},
      {"-path", "-pa"},
      {"-shapes", "-s"},
      {"-allDescendents", "-ad"},
      {"-children", "-c"},
      {"-fullPath", "-f"},
      {"-noIntermediate", "-ni"},
      {"-type", "-typ", {ArgKind::Text}, kAllModes, true}},
     listRelatives},
};

} // namespace

void addListCommands(mel::CommandTable& table, CommandContext& context) {
    addCommands(table, context, kCommands);
}

} // namespace vesk::commands
