#pragma once

#include "host/commands/command_spec.h"

namespace vesk::commands {

/// deformer.
void addDeformerCommands(mel::CommandTable& table, CommandContext& context);

} // namespace vesk::commands
