#include "nodes/createArray/createEntries.h"

#include "nodes/common/arrays.h"

#include <algorithm>

namespace vesk::nodes {

namespace {

template <std::size_t Channels>
void fill(const EntryValues& values, std::span<double> out) {
    double* const to = out.data();
    const std::size_t count = out.size() / Channels;
    if (!values.useRamps) {
        const std::array<double, 4> entry = values.values;
        for (std::size_t i = 0; i < count; ++i) {
            for (std::size_t c = 0; c < Channels; ++c)
                to[Channels * i + c] = entry[c];
        }
        return;
    }
    values.xyz.along(count, [to](std::size_t i, const ColorRamp::Values& xyz) {
        for (std::size_t c = 0; c < std::min<std::size_t>(Channels, 3); ++c)
            to[Channels * i + c] = static_cast<double>(xyz[c]);
    });
    if constexpr (Channels == 4) {
        values.w.along(count, [to](std::size_t i, const CurveRamp::Values& w) {
            to[Channels * i + 3] = static_cast<double>(w[0]);
        });
    }
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
    if (!values.useRamps) {
        std::fill(out.begin(), out.end(), truncated(values.values[0]));
        return;
    }
    values.xyz.along(out.size(), [to = out.data()](std::size_t i, const ColorRamp::Values& xyz) {
        to[i] = truncated(static_cast<double>(xyz[0]));
    });
}

} // namespace vesk::nodes
