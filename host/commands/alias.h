#pragma once

#include "host/core/outcome.h"
#include "host/graph/plug.h"

namespace vesk::commands {

/// Gives an attribute, or an element of a multi, another name on its node; replaces the one that it has.
/// Fails on a name that the node has already, on one with other than letters, digits and underscores, and on
/// plugs below an element.
Outcome setAlias(const graph::Plug& plug, const std::string& alias);
/// Returns whether there was one.
bool removeAlias(const graph::Plug& plug);

} // namespace vesk::commands
