#include "host/commands/creation.h"

#include "host/commands/lookup.h"
#include "host/commands/node_commands.h"
#include "host/graph/evaluate.h"

namespace vesk::commands {

using graph::Cell;
using graph::DagNode;
using graph::Node;

namespace {

Cell& cellOf(Node& node, std::string_view attribute) {
    const graph::Attribute* found = node.findAttribute(attribute);
    if (!found)
        throw mel::Error("'" + node.uniqueName() + "' has no attribute '" + std::string(attribute) + "'.");
    return node.cell(*found);
}

} // namespace

std::vector<FlagSpec> creationFlags(std::vector<FlagSpec> own) {
    own.push_back({"-name", "-n", {ArgKind::Text}});
    own.push_back({"-constructionHistory", "-ch", {ArgKind::Bool}});
    return own;
}

mel::Value createGeometry(CommandContext& context, const Args& args, const CreatorSpec& spec) {
    auto& transform =
        static_cast<DagNode&>(makeNode(context, "transform", args.text("name", spec.transformName)));
    Node& shape = makeNode(context, spec.shapeType, shapeNameFor(transform.name()), &transform);
    Node& creator = makeNode(context, spec.creatorType);
    for (const auto& flag : spec.flags) {
        if (!args.has(flag.flag)) continue;
        for (std::size_t i = 0; i < flag.attributes.size(); ++i) {
            Cell& cell = cellOf(creator, flag.attributes[i]);
            const double value = args.number(flag.flag, 0, i);
            if (cell.attr.unit == graph::UnitKind::Angle)
                throw mel::Error("Angles are set on the creator node.");
            require(graph::storeNumber(cell, value));
        }
    }
    Cell& input = cellOf(shape, spec.input);
    require(graph::connect(cellOf(creator, spec.output), input));
    mel::StringArray names{transform.uniqueName()};
    if (args.boolean("constructionHistory", true)) {
        names.push_back(creator.uniqueName());
    } else {
        graph::clean(input);
        require(graph::disconnect(cellOf(creator, spec.output), input));
        context.scene.remove(creator);
    }
    selectOnly(context, transform);
    return mel::Value(std::move(names));
}

} // namespace vesk::commands
