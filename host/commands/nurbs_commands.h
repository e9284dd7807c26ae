#pragma once

#include "host/commands/command_spec.h"

namespace vesk::commands {

/// curve, circle, sphere, nurbsPlane.
void addNurbsCommands(mel::CommandTable& table, CommandContext& context);

} // namespace vesk::commands
