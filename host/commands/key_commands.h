#pragma once

#include "host/commands/command_spec.h"

namespace vesk::commands {

/// setKeyframe, keyframe, cutKey.
void addKeyCommands(mel::CommandTable& table, CommandContext& context);

} // namespace vesk::commands
