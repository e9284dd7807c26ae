#pragma once

#include "host/mel/command.h"

namespace vesk::mel {

/// Adds `displayString` and `uiRes`: texts of the interface under keys such as `m_AEgroupTemplate.kRange`.
/// The table of texts lives as long as the commands.
void addDisplayStringCommands(CommandTable& commands);

} // namespace vesk::mel
