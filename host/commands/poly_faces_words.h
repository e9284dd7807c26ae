#pragma once

#include "host/commands/words.h"
#include "host/core/outcome.h"
#include "host/graph/plug.h"

namespace vesk::commands {

/// Stores the `polyFaces` records of the faces `first` to `last` on the multi's cell: behind those that it
/// has, or in their place. Takes time by the words read when it appends. On failure nothing changes.
Outcome assignPolyFaces(graph::Cell& array, int first, int last, Words& words);

} // namespace vesk::commands
