#pragma once

#include "host/commands/command_spec.h"

namespace vesk::commands {

/// createNode, delete, rename, duplicate, instance, parent, group, spaceLocator, joint.
void addNodeCommands(mel::CommandTable& table, CommandContext& context);
/// ls, select, listRelatives.
void addListCommands(mel::CommandTable& table, CommandContext& context);

/// Makes a node as `createNode` does: a shape without a parent gets a transform of its own, named after it.
/// Throws `mel::Error` for types that don't exist or can't be made.
graph::Node& makeNode(CommandContext& context, std::string_view typeName, std::string_view name = {},
                      graph::DagNode* parent = nullptr);
/// "pCube1" has the shape "pCubeShape1".
std::string shapeNameFor(std::string_view transformName);
/// Selects one node in the place of what was selected.
void selectOnly(CommandContext& context, graph::Node& node);

} // namespace vesk::commands
