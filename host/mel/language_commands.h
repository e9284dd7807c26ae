#pragma once

#include "host/mel/command.h"

namespace vesk::mel {

/// Adds the commands that belong to the language: error, warning, eval, evalDeferred, source, rehash,
/// whatIs, exists, format.
void addLanguageCommands(CommandTable& commands);

} // namespace vesk::mel
