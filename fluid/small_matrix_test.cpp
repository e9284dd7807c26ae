#include "fluid/small_matrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace vesk::fluid {

namespace {

using Matrix = double[3][3];

TEST(LuFactors, ZeroOnTheDiagonalIsSingular) {
    const Matrix regular[] = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}, {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}};
    for (const Matrix& m : regular)
        EXPECT_FALSE(isSingular(luFactors(m)));
    const Matrix singular[] = {{{0, 0, 0}, {0, 0, 0}, {0, 0, 0}},
                               {{0, 1, 2}, {0, 3, 4}, {0, 5, 7}},
                               {{1, 2, 3}, {1, 2, 3}, {0, 0, 1}},
                               {{1, 0, 0}, {0, 1, 0}, {1, 1, 0}}};
    for (const Matrix& m : singular)
        EXPECT_TRUE(isSingular(luFactors(m)));
}

TEST(LuFactors, SolveForUnitVectors) {
    std::mt19937 draw(5);
    Matrix swapped = {{0, 2, 0}, {4, 0, 0}, {0, 0, 8}};
    double u[3];
    solveUnit(luFactors(swapped), 0, u);
    EXPECT_EQ(u[1], 0.5);
    solveUnit(luFactors(swapped), 1, u);
    EXPECT_EQ(u[0], 0.25);
    for (int round = 0; round < 200; ++round) {
        Matrix m;
        for (auto& row : m) {
            for (double& entry : row)
                entry = draw() / 2147483648.0 - 1;
        }
        for (int column = 0; column < 3; ++column) {
            solveUnit(luFactors(m), column, u);
            for (int r = 0; r < 3; ++r)
                EXPECT_NEAR(m[r][0] * u[0] + m[r][1] * u[1] + m[r][2] * u[2], r == column, 1e-10);
        }
    }
}

TEST(EigenvalueRange, OfMatricesWithKnownEigenvalues) {
    struct Case {
        Matrix matrix;
        double smallest, largest;
    };
    const Case cases[] = {
        {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}, 1, 1},          {{{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}, 0, 0},
        {{{1, 0, 0}, {0, -4, 0}, {0, 0, 2}}, 1, 4},         {{{2, 7, -3}, {0, 3, 5}, {0, 0, 4}}, 2, 4},
        {{{1, 5, 0}, {0, 1, 0}, {0, 0, 1}}, 1, 1},          {{{5, 0, 0}, {0, 2, 0}, {0, 0, 2}}, 2, 5},
        {{{0, -3, 0}, {3, 0, 0}, {0, 0, 0.5}}, 0.5, 3},     // +-3i and 0.5
        {{{3, -4, 0}, {4, 3, 0}, {0, 0, 7}}, 5, 7},         // 3 +- 4i and 7
        {{{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}, 1, 1},          // the cube roots of 1
        {{{1, 1, 0}, {0, 1, 1}, {0, 0, 1}}, 1, 1},          // one eigenvector only
        {{{3e38, 0, 0}, {0, 1, 0}, {0, 0, 3e38}}, 1, 3e38}, // as without a difference
    };
    for (const Case& c : cases) {
        const EigenvalueRange<double> range = eigenvalueRange(c.matrix);
        // A threefold eigenvalue is known to the cube root of the precision.
        EXPECT_NEAR(range.smallest, c.smallest, 2e-5 * c.largest) << &c - cases;
        EXPECT_NEAR(range.largest, c.largest, 2e-5 * c.largest) << &c - cases;
    }
}

TEST(EigenvalueRange, DoesNotDependOnTheBasis) {
    std::mt19937 draw(6);
    const double values[3] = {0.4, -1.1, 2.5};
    for (int round = 0; round < 200; ++round) {
        Matrix basis, m = {};
        for (auto& row : basis) {
            for (double& entry : row)
                entry = draw() / 2147483648.0 - 1;
        }
        double inverse[3][3]; // columns
        for (int column = 0; column < 3; ++column)
            solveUnit(luFactors(basis), column, inverse[column]);
        for (int r = 0; r < 3; ++r) {
            for (int c = 0; c < 3; ++c) {
                for (int k = 0; k < 3; ++k)
                    m[r][c] += basis[r][k] * values[k] * inverse[c][k];
            }
        }
        const EigenvalueRange<double> range = eigenvalueRange(m);
        EXPECT_NEAR(range.smallest, 0.4, 1e-6);
        EXPECT_NEAR(range.largest, 2.5, 1e-6);
    }
}

} // namespace

} // namespace vesk::fluid
