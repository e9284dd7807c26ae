#pragma once

#include "host/commands/command_spec.h"

namespace vesk::commands {

/// polyCube polySphere polyPlane polyCylinder polyCone polyTorus, polyColorPerVertex, polyEvaluate.
void addPolyCommands(mel::CommandTable& table, CommandContext& context);

} // namespace vesk::commands
