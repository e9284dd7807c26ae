#include "nodes/createArray/createEntries.h"

#include "nodes/common/arrays.h"

#include <algorithm>

namespace vesk::nodes {

namespace {

/// Calls `write` with each entry's place and its values, of which the first `Channels` are meant.
template <std::size_t Channels, class Write>
void eachEntry(const EntryValues& values, std::size_t count, Write write) {
    std::array<double, 4> entry = values.values;
    if (!values.useRamps) {
        for (std::size_t i = 0; i < count; ++i)
            write(i, entry);
        return;
    }
    std::size_t xyzSegment = 0, wSegment = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const auto position = static_cast<float>(static_cast<double>(i) / static_cast<double>(count));
        const auto xyz = values.xyz.at(position, xyzSegment);
        std::copy(xyz.begin(), xyz.end(), entry.begin());
        if constexpr (Channels == 4) entry[3] = static_cast<double>(values.w.at(position, wSegment)[0]);
        write(i, entry);
    }
}

template <std::size_t Channels>
void fill(const EntryValues& values, std::span<double> out) {
    eachEntry<Channels>(values, out.size() / Channels, [to = out.data()](std::size_t i, const auto& entry) {
        for (std::size_t c = 0; c < Channels; ++c)
            to[Channels * i + c] = entry[c];
    });
}

} // namespace

void createEntries(const EntryValues& values, std::size_t channels, std::span<double> out) {
    switch (channels) {
    case 1: return fill<1>(values, out);
    case 2: return fill<2>(values, out);
    case 3: return fill<3>(values, out);
    default: return fill<4>(values, out);
    }
}

void createEntries(const EntryValues& values, std::span<int> out) {
    eachEntry<1>(values, out.size(), [&](std::size_t i, const auto& entry) { out[i] = truncated(entry[0]); });
}

} // namespace vesk::nodes
