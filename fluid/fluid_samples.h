#pragma once
// Fields for tests, and the comparison to the bit that they ask for.

#include "fluid/kernels.h"
#include "fluid/wturbulence.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <omp.h>

namespace vesk::fluid::test {

using Field = std::vector<float>;

template <class Value>
Field fieldOf(const GridSize& res, Value&& value) {
    Field field;
    for (int z = 0; z < res[2]; ++z) {
        for (int y = 0; y < res[1]; ++y) {
            for (int x = 0; x < res[0]; ++x)
                field.push_back(static_cast<float>(value(x, y, z)));
        }
    }
    return field;
}

inline Field uniform(const GridSize& res, float value) { return Field(cellCount(res), value); }

inline Field random(const GridSize& res, unsigned seed, float reach) {
    std::mt19937 draw(seed);
    return fieldOf(
        res, [&](int, int, int) { return reach * (static_cast<float>(draw() >> 8) / 8388608.0F - 1.0F); });
}

struct Velocity {
    Field x, y, z;
};

/// A flow that turns slowly from cell to cell.
inline Velocity swirl(const GridSize& res, float speed) {
    return {fieldOf(res, [&](int, int y, int z) { return speed * std::sin(0.21 * y) * std::cos(0.13 * z); }),
            fieldOf(res, [&](int x, int, int z) { return speed * std::sin(0.17 * z) * std::cos(0.11 * x); }),
            fieldOf(res, [&](int x, int y, int) { return speed * std::sin(0.19 * x) * std::cos(0.23 * y); })};
}

/// Every cell goes somewhere else, many out of the grid.
inline Velocity chaos(const GridSize& res, float speed) {
    return {random(res, 1, speed), random(res, 2, speed), random(res, 3, speed)};
}

/// A swirl with values that are no numbers and values beyond all bounds.
inline Velocity broken(const GridSize& res) {
    Velocity v = swirl(res, 2);
    for (std::size_t i = 0; i < v.x.size(); i += 7) {
        v.x[i] = std::numeric_limits<float>::quiet_NaN();
        v.y[i / 2] = i % 2 ? std::numeric_limits<float>::infinity() : -1e30F;
    }
    return v;
}

/// How many values differ in a bit. Values that are no numbers count as one and the same.
template <class A, class B>
std::size_t differences(const A& a, const B& b) {
    if (a.size() != b.size()) return a.size() + b.size();
    std::size_t count = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const bool same = std::bit_cast<std::uint32_t>(a[i]) == std::bit_cast<std::uint32_t>(b[i]);
        count += !same && !(std::isnan(a[i]) && std::isnan(b[i]));
    }
    return count;
}

/// Calls with each vector width that this processor has, on one thread and on several, and resets both.
template <class Do>
void onEveryPath(Do&& run) {
    const int before = omp_get_max_threads();
    const std::pair<int, int> lanesAndThreads[] = {{4, 1}, {8, 1}, {16, 1}, {16, 3}, {8, 3}, {4, 8}};
    for (const auto& [lanes, threads] : lanesAndThreads) {
        if (!forceLanes(lanes)) continue;
        omp_set_num_threads(threads);
        SCOPED_TRACE(std::to_string(lanes) + " lanes, " + std::to_string(threads) + " threads");
        run();
    }
    omp_set_num_threads(before);
    forceLanes(0);
}

} // namespace vesk::fluid::test
