// deformer.

#include "host/commands/deformer_commands.h"

#include "host/commands/deformer_chain.h"
#include "host/commands/lookup.h"
#include "host/commands/node_commands.h"
#include "host/commands/point_edits.h"
#include "host/graph/selection.h"

namespace vesk::commands {

using graph::DagNode;

namespace {

/// The type of deformer that the call asks for.
const graph::NodeType& wantedType(const CommandContext& context, const Args& args) {
    const std::string name = args.text("type");
    if (name.empty()) throw mel::Error("deformer: the type of deformer is missing (-type).");
    const graph::NodeType* type = context.scene.types().find(name);
    if (!type) throw mel::Error("Unknown object type: " + name);
    if (!type->isA("geometryFilter") || type->isAbstract)
        throw mel::Error("Node type '" + name + "' is no deformer.");
    return *type;
}

/// Joins with the same shape's entry, if it was named before.
void addTarget(std::vector<DeformTarget>& targets, DagNode& shape, const Ref<Component>& points) {
    for (auto& present : targets) {
        if (present.shape.get() != &shape) continue;
        (void)present.points->unite(*points);
        return;
    }
    targets.push_back({Ref<DagNode>(&shape), points});
}

void addItem(std::vector<DeformTarget>& targets, const graph::SelectionItem& item) {
    const std::string name = item.texts().empty() ? item.node->uniqueName() : item.texts().front();
    const auto refuse = [&] { throw mel::Error("'" + name + "' cannot be deformed."); };
    if (!item.node->type().isDag || !item.plug.isNull()) refuse();
    auto& node = static_cast<DagNode&>(*item.node);
    if (item.component) {
        const auto points = isDeformable(node) ? pointsOf(item) : nullptr;
        if (!points) refuse();
        return addTarget(targets, node, points);
    }
    if (isDeformable(node)) return addTarget(targets, node, allPoints(node));
    bool found = false;
    for (DagNode* child : node.children()) {
        if (!child->type().isShape || child->isIntermediate() || !isDeformable(*child)) continue;
        addTarget(targets, *child, allPoints(*child));
        found = true;
    }
    if (!found) refuse();
}

std::vector<DeformTarget> targetsOf(const CommandContext& context, const Args& args) {
    std::vector<DeformTarget> targets;
    if (args.wordCount() == 0) {
        for (const auto& item : context.scene.selection.items())
            addItem(targets, item);
    }
    for (const auto& name : args.wordTexts()) {
        const auto items = graph::resolve(context.scene, name);
        if (items.empty()) throw mel::Error("No object matches name: " + name);
        for (const auto& item : items)
            addItem(targets, item);
    }
    if (targets.empty()) throw mel::Error("deformer: nothing to deform is named or selected.");
    return targets;
}

mel::Value deformer(CommandContext& context, const Args& args) {
    const graph::NodeType& type = wantedType(context, args);
    const auto targets = targetsOf(context, args);
    graph::Node& filter = makeNode(context, type.name(), args.text("name"));
    const bool isFirst = args.isOn("before") || args.isOn("frontOfChain");
    applyDeformer(context, filter, targets, isFirst ? ChainPlace::Front : ChainPlace::End);
    selectOnly(context, filter);
    return mel::Value(mel::StringArray{filter.uniqueName()});
}

const CommandSpec kCommands[] = {
    {"deformer",
     "[object...]",
     {{"-type", "-typ", {ArgKind::Text}},
      {"-name", "-n", {ArgKind::Text}},
      {"-before", "-bf"},
      {"-frontOfChain", "-foc"},
      {"-after", "-af"}},
     deformer},
};

} // namespace

void addDeformerCommands(mel::CommandTable& table, CommandContext& context) {
    addCommands(table, context, kCommands);
}

} // namespace vesk::commands
