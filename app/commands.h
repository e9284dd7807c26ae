#pragma once

#include "app/options.h"

#include <string>

namespace vesk::app {

struct NodesOptions {
    std::string type;   ///< empty: list all
    std::string plugin; ///< empty: the one beside the command
    bool json = false;
};

std::string versionText();
int runScenes(const RunOptions& options);
int listNodes(const NodesOptions& options);

/// `build/plug-ins/Vesk.so` for `build/bin/vesk`: where the plug-in lies for a command at this place.
std::string pluginBesideCommand();

} // namespace vesk::app
