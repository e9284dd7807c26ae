#include "nodes/arrayToArray/mixChannels.h"

#include <algorithm>

namespace vesk::nodes {

namespace {

constexpr std::size_t kW = 3;
constexpr double kZero = 0, kOne = 1;

/// Numbers in memory, so many apart; a distance of 0 repeats one number.
struct Numbers {
    const double* at = &kZero;
    std::size_t distance = 0;
};

bool isVectors(const AnyElements& values) { return std::holds_alternative<std::span<const MVector>>(values); }

std::size_t usableLength(const AnyElements& values) {
    return std::holds_alternative<std::span<const int>>(values) ? 0 : lengthOf(values);
}

/// Where a channel of an input begins, for an input that is read for it.
Numbers channelOf(const AnyElements& values, std::size_t input, std::size_t channel) {
    if (const auto* doubles = std::get_if<std::span<const double>>(&values)) return {doubles->data(), 1};
    if (const auto* points = std::get_if<std::span<const MPoint>>(&values)) {
        return {flat(*points).data() + channel, 4};
    }
    if (channel == kW) return {input == 3 ? &kOne : &kZero, 0};
    return {flat(std::get<std::span<const MVector>>(values)).data() + channel, 3};
}

/// What a channel reads in a stretch of entries from `first` on over which no input ends.
Numbers choose(const ChannelSources& sources, std::size_t channel, std::size_t first) {
    for (std::size_t input = sources.size(); input-- > 0;) {
        const ChannelSource& source = sources[input];
        if (!source.reads[channel] || first >= usableLength(source.values)) continue;
        const AnyElements& fourth = sources[3].values;
        if (input == 2 && channel == kW && isVectors(fourth) && first < usableLength(fourth)) return {};
        Numbers numbers = channelOf(source.values, input, channel);
        numbers.at += first * numbers.distance;
        return numbers;
    }
    return {};
}

template <std::size_t Channels>
void mix(const ChannelSources& sources, std::span<double> out) {
    const std::size_t length = out.size() / Channels;
    for (std::size_t first = 0; first < length;) {
        std::size_t end = length;
        for (const ChannelSource& source : sources) {
            const std::size_t inputEnd = usableLength(source.values);
            if (inputEnd > first) end = std::min(end, inputEnd);
        }
        std::array<Numbers, Channels> from;
        for (std::size_t c = 0; c < Channels; ++c)
            from[c] = choose(sources, c, first);
        double* to = out.data() + Channels * first;
        for (std::size_t i = 0; i < end - first; ++i) {
            for (std::size_t c = 0; c < Channels; ++c)
                *to++ = from[c].at[i * from[c].distance];
        }
        first = end;
    }
}

} // namespace

std::size_t mixedLength(const ChannelSources& sources) {
    std::size_t length = 0;
    for (const ChannelSource& source : sources)
        length = std::max(length, usableLength(source.values));
    return length;
}

void mixChannels(const ChannelSources& sources, std::span<MVector> out) { mix<3>(sources, flat(out)); }
void mixChannels(const ChannelSources& sources, std::span<MPoint> out) { mix<4>(sources, flat(out)); }

} // namespace vesk::nodes
