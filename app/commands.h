#pragma once

#include "app/options.h"

#include <string>

namespace vesk::app {

struct NodesOptions {
    std::string type;   ///< empty: list all
    std::string plugin; ///< empty: the one beside the command
    bool json = false;
};

struct IconsOptions {
    std::string file;
    std::string svg; ///< empty: no sheet
};

std::string versionText();
int runScenes(const RunOptions& options);
int listNodes(const NodesOptions& options);
/// Prints what the parser reports; fails on a file that cannot be read and on icons with errors.
int checkIcons(const IconsOptions& options);

/// `build/plug-ins/Vesk.so` for `build/bin/vesk`: where the plug-in lies for a command at this place.
std::string pluginBesideCommand();

} // namespace vesk::app
