#include "nodes/remapArray/remapValues.h"

#include <algorithm>
#include <cmath>

namespace vesk::nodes {

namespace {

/// Work goes on in blocks that stay in the cache; divisible by three.
constexpr std::size_t kBlock = 3 * 512;

/// Numbers `first` and following of the flattened input.
void read(const AnyElements& in, std::size_t first, std::span<double> to) {
    if (const auto* ints = std::get_if<std::span<const int>>(&in)) {
        std::copy_n(ints->begin() + static_cast<std::ptrdiff_t>(first), to.size(), to.begin());
    } else if (const auto* points = std::get_if<std::span<const MPoint>>(&in)) {
        // Blocks begin at a point; the last point may be wanted in part.
        const MPoint* point = points->data() + first / 3;
        for (std::size_t i = 0; i < to.size(); i += 3, ++point) {
            to[i] = point->x;
            if (i + 1 < to.size()) to[i + 1] = point->y;
            if (i + 2 < to.size()) to[i + 2] = point->z;
        }
    } else if (!to.empty()) {
        const auto* vectors = std::get_if<std::span<const MVector>>(&in);
        const auto numbers = vectors ? flat(*vectors) : std::get<std::span<const double>>(in);
        std::copy_n(numbers.begin() + static_cast<std::ptrdiff_t>(first), to.size(), to.begin());
    }
}

/// Of fixed length where it matters: such loops become vector instructions.
template <std::size_t Length>
void apply(const RemapSettings& s, std::span<double, Length> values) {
    if (s.absolute) {
        for (double& x : values)
            x = std::fabs(x);
    }
    if (s.shift) {
        for (double& x : values)
            x += s.shiftValue;
    }
    if (s.remap) {
        const double least = std::fabs(s.remapMin);
        for (double& x : values)
            x = s.remapMax * x - least * x;
    }
    if (s.clamp) {
        for (double& x : values)
            x = x < s.clampMin ? s.clampMin : x > s.clampMax ? s.clampMax : x;
    }
}

/// Calls `write` with the first number's place and the finished numbers, block by block.
template <class Write>
void inBlocks(const RemapSettings& settings, const AnyElements& in, std::size_t count, Write write) {
    double values[kBlock] = {};
    for (std::size_t first = 0; first < count; first += kBlock) {
        const std::span<double> block(values, std::min(kBlock, count - first));
        read(in, first, block);
        apply(settings, std::span(values)); // what is behind the end does no harm
        write(first, block);
    }
}

} // namespace

std::size_t flatLength(const AnyElements& in) {
    const bool isTuple = std::holds_alternative<std::span<const MVector>>(in) ||
                         std::holds_alternative<std::span<const MPoint>>(in);
    return lengthOf(in) * (isTuple ? 3 : 1);
}

void remapValues(const RemapSettings& settings, const AnyElements& in, std::span<double> out) {
    std::size_t first = 0;
    for (; first + kBlock <= out.size(); first += kBlock) {
        const auto block = out.subspan(first).first<kBlock>();
        read(in, first, block);
        apply(settings, block);
    }
    read(in, first, out.subspan(first));
    apply(settings, out.subspan(first));
}

void remapValues(const RemapSettings& settings, const AnyElements& in, std::span<MVector> out) {
    remapValues(settings, in, flat(out));
}

void remapValues(const RemapSettings& settings, const AnyElements& in, std::span<MPoint> out) {
    inBlocks(settings, in, 3 * out.size(), [&](std::size_t first, std::span<const double> values) {
        MPoint* point = out.data() + first / 3;
        for (std::size_t i = 0; i < values.size(); i += 3)
            *point++ = MPoint(values[i], values[i + 1], values[i + 2]);
    });
}

void remapValues(const RemapSettings& settings, const AnyElements& in, std::span<int> out) {
    inBlocks(settings, in, out.size(), [&](std::size_t first, std::span<const double> values) {
        std::transform(values.begin(), values.end(), out.data() + first, truncated);
    });
}

} // namespace vesk::nodes
