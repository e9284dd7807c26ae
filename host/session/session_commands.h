#pragma once

#include "host/commands/command_spec.h"

namespace vesk {

class Session;

/// Commands about the session itself: plug-ins, folders, what the host is, files, units, time, options.
void addSessionCommands(Session& session, commands::CommandContext& context);

} // namespace vesk
