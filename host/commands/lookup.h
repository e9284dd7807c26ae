#pragma once
// Nodes and plugs by the names that commands are given. Everything here throws `mel::Error` in the host's
// words when there is no such thing.

#include "host/commands/command_spec.h"
#include "host/nodes/placeholder.h"

namespace vesk::commands {

/// The one node of that name or path.
graph::Node& nodeNamed(const CommandContext& context, std::string_view name);
graph::DagNode& dagNodeNamed(const CommandContext& context, std::string_view name);
/// All nodes that a name, path or pattern means; at least one.
std::vector<graph::Node*> nodesNamed(const CommandContext& context, std::string_view pattern);
/// The nodes that the operands name, or those selected when there are none.
std::vector<graph::Node*> operandNodes(const CommandContext& context, const Args& args);

/// What a plug name means, ranges included. `.tx` is a plug of the current node; a transform answers for the
/// attributes of its shape.
graph::PlugRange plugsNamed(const CommandContext& context, std::string_view name);
/// The same as an outcome, for those who do not throw: `error` is set when nothing was found.
graph::PlugRange findPlugs(const CommandContext& context, std::string_view name);
/// The placeholder whose plug is named, while a file is read: it may be given the attributes that it lacks.
/// Null at any other time, and for nodes that know their attributes.
nodes::Placeholder* placeholderNamed(const CommandContext& context, std::string_view plugName);
/// One plug; a range is refused.
graph::Plug plugNamed(const CommandContext& context, std::string_view name);
/// The cell of one plug, made when missing.
graph::Cell& cellNamed(const CommandContext& context, std::string_view name);

/// The name of what stands in front of the first dot, and what stands behind it.
std::string_view nodePart(std::string_view plugName);
std::string_view pathPart(std::string_view plugName);
/// The node's one shape that is not intermediate; the node itself when it is a shape; null when it has none.
graph::DagNode* shapeOf(graph::DagNode& node);

} // namespace vesk::commands
