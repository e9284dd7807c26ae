#include "nodes/remapArray/remapValues.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <type_traits>

namespace vesk::nodes {

namespace {

/// Work goes on in blocks that stay in the cache; divisible by three.
constexpr std::size_t kBlock = 3 * 512;

using Block = std::array<double, kBlock>;

/// The input's own numbers where it consists of them, none otherwise.
std::span<const double> numbersOf(const AnyElements& in) {
    if (const auto* vectors = std::get_if<std::span<const MVector>>(&in)) return flat(*vectors);
    const auto* numbers = std::get_if<std::span<const double>>(&in);
    return numbers ? *numbers : std::span<const double>();
}

/// Numbers `first` and following of a flattened input that does not consist of numbers.
void convert(const AnyElements& in, std::size_t first, std::span<double> to) {
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
    }
}

/// Calls `work` with the switch as a constant.
template <class Work>
void asConstant(bool isOn, Work work) {
    if (isOn) {
        work(std::true_type());
    } else {
        work(std::false_type());
    }
}

/// Calls `work` with the steps that are on as one function of a number.
template <class Work>
void withSteps(const RemapSettings& s, Work work) {
    const double least = std::fabs(s.remapMin);
    asConstant(s.absolute, [&](auto absolute) {
        asConstant(s.shift, [&](auto shift) {
            asConstant(s.remap, [&](auto remap) {
                asConstant(s.clamp, [&](auto clamp) {
                    work([=](double x) {
                        if constexpr (absolute) x = std::fabs(x);
                        if constexpr (shift) x += s.shiftValue;
                        if constexpr (remap) x = s.remapMax * x - least * x;
                        if constexpr (clamp)
                            x = x < s.clampMin ? s.clampMin : x > s.clampMax ? s.clampMax : x;
                        return x;
                    });
                });
            });
        });
    });
}

/// The steps over a whole block, of a length that is known: such a loop becomes vector instructions.
template <class Step>
void applyBlock(Step step, const double* __restrict from, double* __restrict to) {
    for (std::size_t i = 0; i < kBlock; ++i)
        to[i] = step(from[i]);
}

/// Finishes `count` numbers block by block. `place(first)` says where the whole block from there on goes, or
/// null for a block between, which `write` then gets, as it gets the last one, with its first number's place.
template <class Place, class Write>
void inBlocks(const RemapSettings& settings, const AnyElements& in, std::size_t count, Place place,
              Write write) {
    const std::span<const double> numbers = numbersOf(in);
    Block read = {}, finished;
    withSteps(settings, [&](auto step) {
        for (std::size_t first = 0; first < count; first += kBlock) {
            const std::size_t length = std::min(kBlock, count - first);
            const double* from = read.data();
            if (numbers.empty()) {
                convert(in, first, std::span(read).first(length));
            } else if (length == kBlock) {
                from = numbers.data() + first;
            } else {
                std::copy_n(numbers.begin() + static_cast<std::ptrdiff_t>(first), length, read.begin());
            }
            double* to = length == kBlock ? place(first) : nullptr;
            applyBlock(step, from, to ? to : finished.data()); // what is behind the end does no harm
            if (!to) write(first, std::span<const double>(finished).first(length));
        }
    });
}

double* nowhere(std::size_t) { return nullptr; }

} // namespace

std::size_t flatLength(const AnyElements& in) {
    const bool isTuple = std::holds_alternative<std::span<const MVector>>(in) ||
                         std::holds_alternative<std::span<const MPoint>>(in);
    return lengthOf(in) * (isTuple ? 3 : 1);
}

void remapValues(const RemapSettings& settings, const AnyElements& in, std::span<double> out) {
    inBlocks(
        settings, in, out.size(), [&](std::size_t first) { return out.data() + first; },
        [&](std::size_t first, std::span<const double> values) {
            std::copy(values.begin(), values.end(), out.data() + first);
        });
}

void remapValues(const RemapSettings& settings, const AnyElements& in, std::span<MVector> out) {
    remapValues(settings, in, flat(out));
}

void remapValues(const RemapSettings& settings, const AnyElements& in, std::span<MPoint> out) {
    inBlocks(settings, in, 3 * out.size(), nowhere, [&](std::size_t first, std::span<const double> values) {
        MPoint* point = out.data() + first / 3;
        for (std::size_t i = 0; i < values.size(); i += 3)
            *point++ = MPoint(values[i], values[i + 1], values[i + 2]);
    });
}

void remapValues(const RemapSettings& settings, const AnyElements& in, std::span<int> out) {
    inBlocks(settings, in, out.size(), nowhere, [&](std::size_t first, std::span<const double> values) {
        std::transform(values.begin(), values.end(), out.data() + first, truncated);
    });
}

} // namespace vesk::nodes
