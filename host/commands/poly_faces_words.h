#pragma once

#include "host/commands/words.h"
#include "host/graph/plug.h"

#include <vector>

namespace vesk::commands {

/// Takes `polyFaces` records up to the end of the words and appends them to `codes`, laid out as in
/// `PolyFacesData`. Returns the number of faces; on failure `codes` holds what was read so far.
/// `taken` is the first word where it was taken from the stream already, else empty.
Result<std::size_t> readFaceRecords(Words& words, std::vector<int>& codes, std::string_view taken = {});

/// Stores the `polyFaces` records of the faces `first` to `last` on the multi's cell: behind those that it
/// has, or in their place. Takes time by the words read when it appends. On failure nothing changes.
Outcome assignPolyFaces(graph::Cell& array, int first, int last, Words& words);

} // namespace vesk::commands
