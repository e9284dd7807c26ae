#pragma once
// 3x3 linear algebra on a scalar or, element for element with the same results, on a vector of them. Only
// additions, multiplications, divisions and square roots, so that every machine computes the same bits.

#include <type_traits>

namespace vesk::fluid {

template <class T>
T squareRoot(T value) {
    if constexpr (std::is_floating_point_v<T>) {
        return __builtin_sqrt(value);
    } else {
        for (unsigned i = 0; i < sizeof(T) / sizeof(double); ++i)
            value[i] = __builtin_sqrt(value[i]);
        return value;
    }
}

/// Whether a mask is set in any element.
template <class Mask>
bool anyOf(const Mask& mask) {
    if constexpr (std::is_integral_v<Mask>) {
        return mask;
    } else {
        bool any = false;
        for (unsigned i = 0; i < sizeof(Mask) / sizeof(double); ++i)
            any |= mask[i] != 0;
        return any;
    }
}

template <class T>
T absolute(T value) {
    return value < T{} ? -value : value;
}

template <class T>
T larger(T a, T b) {
    return a > b ? a : b;
}

template <class T>
T smaller(T a, T b) {
    return a < b ? a : b;
}

/// The LU factors of a matrix by rows, with partial pivoting, and the inverse's columns from them.
template <class T>
struct LuFactors {
    T upper[3][3]; ///< U on and above the diagonal
    T right[3][3]; ///< the unit matrix taken through the same row operations
};

template <class T, class Mask>
void swapRows(LuFactors<T>& lu, Mask mask, int a, int b) {
    for (int c = 0; c < 3; ++c) {
        for (auto* rows : {lu.upper, lu.right}) {
            const T first = rows[a][c], second = rows[b][c];
            rows[a][c] = mask ? second : first;
            rows[b][c] = mask ? first : second;
        }
    }
}

template <class T>
void eliminate(LuFactors<T>& lu, int pivot, int row) {
    const T factor = lu.upper[row][pivot] / lu.upper[pivot][pivot];
    for (int c = 0; c < 3; ++c) {
        if (c > pivot) lu.upper[row][c] = lu.upper[row][c] - factor * lu.upper[pivot][c];
        lu.right[row][c] = lu.right[row][c] - factor * lu.right[pivot][c];
    }
}

template <class T>
LuFactors<T> luFactors(const T (&matrix)[3][3]) {
    LuFactors<T> lu;
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            lu.upper[r][c] = matrix[r][c];
            lu.right[r][c] = r == c ? T{} + 1.0 : T{};
        }
    }
    const T first = absolute(lu.upper[0][0]), second = absolute(lu.upper[1][0]);
    const auto third = absolute(lu.upper[2][0]) > larger(first, second);
    swapRows(lu, third, 0, 2);
    swapRows(lu, absolute(lu.upper[1][0]) > absolute(lu.upper[0][0]), 0, 1);
    eliminate(lu, 0, 1);
    eliminate(lu, 0, 2);
    swapRows(lu, absolute(lu.upper[2][1]) > absolute(lu.upper[1][1]), 1, 2);
    eliminate(lu, 1, 2);
    return lu;
}

/// Whether a diagonal entry of the factor is exactly zero.
template <class T>
auto isSingular(const LuFactors<T>& lu) {
    return (lu.upper[0][0] == T{}) | (lu.upper[1][1] == T{}) | (lu.upper[2][2] == T{});
}

/// Solves matrix * u = unit vector `column`.
template <class T>
void solveUnit(const LuFactors<T>& lu, int column, T (&u)[3]) {
    u[2] = lu.right[2][column] / lu.upper[2][2];
    u[1] = (lu.right[1][column] - lu.upper[1][2] * u[2]) / lu.upper[1][1];
    u[0] = (lu.right[0][column] - lu.upper[0][1] * u[1] - lu.upper[0][2] * u[2]) / lu.upper[0][0];
}

/// The largest root of x^3 + p*x - q, q not negative: Newton's method from above, where the cubic is convex
/// and every iterate stays above the root.
template <class T>
T largestCubicRoot(T p, T q) {
    constexpr double closeEnough = 1e-13;
    T root = larger(absolute(p), q) + 1.0;
    auto moving = root > T{};
    for (int i = 0; i < 100 && anyOf(moving); ++i) {
        const T next = root - ((root * root + p) * root - q) / (3.0 * root * root + p);
        moving = moving & (next < root - closeEnough);
        root = moving ? next : root;
    }
    return root;
}

/// The magnitudes of the eigenvalues that are largest and smallest.
template <class T>
struct EigenvalueRange {
    T smallest, largest;
};

/// Of a general real matrix; complex pairs count with their magnitude. From the characteristic polynomial
/// about the mean eigenvalue, so that matrices near a multiple of the unit matrix lose nothing.
template <class T>
EigenvalueRange<T> eigenvalueRange(const T (&matrix)[3][3]) {
    const T mean = (matrix[0][0] + matrix[1][1] + matrix[2][2]) / 3.0;
    T m[3][3];
    T scale{};
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            m[r][c] = r == c ? matrix[r][c] - mean : matrix[r][c];
            scale = larger(absolute(m[r][c]), scale);
        }
    }
    const T divisor = scale > T{} ? scale : T{} + 1.0;
    for (auto& row : m) {
        for (T& entry : row)
            entry = entry / divisor;
    }
    const T minor0 = m[1][1] * m[2][2] - m[1][2] * m[2][1];
    const T p = minor0 + (m[0][0] * m[2][2] - m[0][2] * m[2][0]) + (m[0][0] * m[1][1] - m[0][1] * m[1][0]);
    const T determinant = m[0][0] * minor0 - m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
                          m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
    const T root = largestCubicRoot(p, absolute(determinant));
    const T sign = determinant < T{} ? -scale : scale;
    // The other two are the roots of x^2 + root*x + root^2 + p.
    const T discriminant = -0.75 * root * root - p;
    const T spread = squareRoot(absolute(discriminant));
    const T half = -0.5 * root;
    const T real = absolute(mean + sign * root);
    const T middle = mean + sign * half;
    const T pair = squareRoot(middle * middle + scale * spread * (scale * spread));
    const auto isPair = discriminant < T{};
    const T second = isPair ? pair : absolute(mean + sign * (half + spread));
    const T last = isPair ? pair : absolute(mean + sign * (half - spread));
    return {smaller(smaller(second, last), real), larger(larger(second, last), real)};
}

} // namespace vesk::fluid
