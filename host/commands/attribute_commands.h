#pragma once
// The commands on attributes, connections and the kinds of nodes.

#include "host/commands/command_spec.h"
#include "host/commands/words.h"

namespace vesk::commands {

/// setAttr getAttr addAttr deleteAttr renameAttr aliasAttr attributeQuery attributeExists listAttr
/// connectAttr disconnectAttr isConnected connectionInfo listConnections removeMultiInstance
/// getNextFreeMultiIndex objExists nodeType objectType.
void addAttributeCommands(mel::CommandTable& table, CommandContext& context);

/// A whole `setAttr` statement as a stream, its own name taken: flags and the plug in any order, then the
/// values, which are read straight from the stream. For scene files; scripts come through the command.
Outcome setAttrFrom(CommandContext& context, Words& words);

/// Wires the cells as `connectAttr` does: with a conversion in between where their units differ. Throws
/// `mel::Error`.
void connectCells(CommandContext& context, graph::Cell& source, graph::Cell& destination, bool force);

// The rows of each family, for `addAttributeCommands`.
std::span<const CommandSpec> setAttrCommands();
std::span<const CommandSpec> getAttrCommands();
std::span<const CommandSpec> addAttrCommands();
std::span<const CommandSpec> attributeNameCommands();
std::span<const CommandSpec> attributeQueryCommands();
std::span<const CommandSpec> listAttrCommands();
std::span<const CommandSpec> connectionCommands();
std::span<const CommandSpec> connectionQueryCommands();
std::span<const CommandSpec> multiCommands();
std::span<const CommandSpec> nodeQueryCommands();

} // namespace vesk::commands
