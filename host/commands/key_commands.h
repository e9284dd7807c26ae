#pragma once

#include "host/commands/command_spec.h"

namespace vesk::commands {

/// setKeyframe, keyframe, cutKey, expression.
void addKeyCommands(mel::CommandTable& table, CommandContext& context);

// The row of `expression`, for `addKeyCommands`.
std::span<const CommandSpec> expressionCommands();

} // namespace vesk::commands
