#pragma once
// The work of arrayToArray over plain arrays.

#include "nodes/common/arrays.h"

#include <array>

namespace vesk::nodes {

/// One input and which of its channels are read: x, y, z, w.
struct ChannelSource {
    AnyElements values;
    std::array<bool, 4> reads{};
};
/// Inputs 1 to 4. Ints count as no array.
using ChannelSources = std::array<ChannelSource, 4>;

/// Length of the longest input.
std::size_t mixedLength(const ChannelSources& sources);

/// Each channel of each entry comes from the highest-numbered input that is read for it and is long enough;
/// else it is 0. A double stands for all of its input's channels; a vector's w is 0, but in input 4 it is 1,
/// and there input 3 reads 0 as its w wherever input 4 has a vector: both are part of the contract. Entries
/// have three channels or four.
void mixChannels(const ChannelSources& sources, std::span<MVector> out);
void mixChannels(const ChannelSources& sources, std::span<MPoint> out);

} // namespace vesk::nodes
