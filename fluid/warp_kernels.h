#pragma once
// What the Jacobians of a row of coarse cells tell of their warp.

#include "fluid/kernels.h"
#include "fluid/lanes.h"
#include "fluid/small_matrix.h"

namespace vesk::fluid {

template <class D, int count>
[[gnu::always_inline]] inline D loadDoubles(const float* from, int valid) {
    D value{};
    for (int i = 0; i < count; ++i)
        value[i] = from[i < valid ? i : valid - 1];
    return value;
}

/// The half of W cells that go into a vector of doubles.
template <int W>
void measureWarpOf(const WarpRow& row, int x) {
    using D = typename Lanes<W>::Double;
    constexpr int cells = W / 2;
    const int valid = row.count - x < cells ? row.count - x : cells;
    D jacobian[3][3];
    for (int i = 0; i < 9; ++i)
        jacobian[i / 3][i % 3] = loadDoubles<D, cells>(row.jacobian[i] + x, valid);
    const LuFactors<D> lu = luFactors(jacobian);
    const auto singular = isSingular(lu);
    const EigenvalueRange<D> range = eigenvalueRange(jacobian);
    for (int i = 0; i < valid; ++i) {
        if (singular[i] == 0) {
            row.eigMin[x + i] = static_cast<float>(range.smallest[i]);
            row.eigMax[x + i] = static_cast<float>(range.largest[i]);
        } else if (!row.unwarped) {
            row.eigMin[x + i] = 0.1F;
            row.eigMax[x + i] = 10.0F;
        }
    }
    if (!row.unwarped) return;
    for (int column = 0; column < 3; ++column) {
        D u[3];
        solveUnit(lu, column, u);
        for (int r = 0; r < 3; ++r) {
            for (int i = 0; i < valid; ++i) {
                const float unit = r == column ? 1.0F : 0.0F;
                row.unwarped[3 * column + r][x + i] = singular[i] ? unit : static_cast<float>(u[r][i]);
            }
        }
    }
}

template <int W>
void measureWarpRow(const WarpRow& row) {
    for (int x = 0; x < row.count; x += W / 2)
        measureWarpOf<W>(row, x);
}

} // namespace vesk::fluid
