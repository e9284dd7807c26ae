#pragma once
// 4x4 matrices: what MMatrix and MFloatMatrix have in common.

#include <maya/MStatus.h>

#include <cmath>

namespace vesk {

/// `matrix[row][column]`, made for row vectors: translation stands in row 3, `a * b` applies `a` first.
/// A new matrix is the identity.
template <class Self, class Real>
class MatrixOf {
  public:
    Real matrix[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};

    constexpr MatrixOf() noexcept = default;
    constexpr explicit MatrixOf(const double m[4][4]) noexcept { assign(m); }
    constexpr explicit MatrixOf(const float m[4][4]) noexcept { assign(m); }

    constexpr Real& operator()(unsigned int row, unsigned int column) noexcept { return matrix[row][column]; }
    constexpr Real operator()(unsigned int row, unsigned int column) const noexcept {
        return matrix[row][column];
    }
    constexpr Real* operator[](unsigned int row) noexcept { return matrix[row]; }
    constexpr const Real* operator[](unsigned int row) const noexcept { return matrix[row]; }

    template <class To>
    constexpr MStatus get(To to[4][4]) const noexcept {
        for (int r = 0; r < 4; ++r) {
            for (int c = 0; c < 4; ++c)
                to[r][c] = static_cast<To>(matrix[r][c]);
        }
        return {};
    }

    constexpr Self& setToIdentity() noexcept { return self() = Self(); }
    constexpr Self& setToProduct(const Self& a, const Self& b) noexcept { return self() = a * b; }

    constexpr Self& operator+=(const Self& b) noexcept {
        return eachEntry([&](int r, int c) { return matrix[r][c] + b.matrix[r][c]; });
    }
    constexpr Self& operator-=(const Self& b) noexcept {
        return eachEntry([&](int r, int c) { return matrix[r][c] - b.matrix[r][c]; });
    }
    constexpr Self& operator*=(Real s) noexcept {
        return eachEntry([&](int r, int c) { return matrix[r][c] * s; });
    }
    constexpr Self& operator*=(const Self& b) noexcept { return self() = self() * b; }

    friend constexpr Self operator+(Self a, const Self& b) noexcept { return a += b; }
    friend constexpr Self operator-(Self a, const Self& b) noexcept { return a -= b; }
    friend constexpr Self operator*(Self a, Real s) noexcept { return a *= s; }
    friend constexpr Self operator*(Real s, Self a) noexcept { return a *= s; }
    friend constexpr Self operator*(const Self& a, const Self& b) noexcept {
        Self product;
        for (int r = 0; r < 4; ++r) {
            for (int c = 0; c < 4; ++c) {
                product.matrix[r][c] = a.matrix[r][0] * b.matrix[0][c] + a.matrix[r][1] * b.matrix[1][c] +
                                       a.matrix[r][2] * b.matrix[2][c] + a.matrix[r][3] * b.matrix[3][c];
            }
        }
        return product;
    }
    friend constexpr bool operator==(const Self& a, const Self& b) noexcept {
        for (int r = 0; r < 4; ++r) {
            for (int c = 0; c < 4; ++c) {
                if (a.matrix[r][c] != b.matrix[r][c]) return false;
            }
        }
        return true;
    }

    constexpr Self transpose() const noexcept {
        Self result;
        result.eachEntry([&](int r, int c) { return matrix[c][r]; });
        return result;
    }
    /// Adjoint over determinant. The inverse of a singular matrix holds no finite entry.
    constexpr Self inverse() const noexcept {
        const Self adjugate = adjoint();
        const Real determinant = det4x4();
        Self result;
        // Adding 0 turns -0 into 0.
        result.eachEntry([&](int r, int c) { return adjugate.matrix[r][c] / determinant + Real(0); });
        return result;
    }
    /// The transposed matrix of cofactors.
    constexpr Self adjoint() const noexcept;
    constexpr Real det4x4() const noexcept { return Minors(matrix).determinant(); }
    /// Determinant of the upper 3x3.
    constexpr Real det3x3() const noexcept {
        const auto& m = matrix;
        return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
               m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
               m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
    }
    /// Whether the determinant is 0 within `Self::kTolerance`.
    bool isSingular() const noexcept { return !(std::abs(det4x4()) > Self::kTolerance); }
    /// Whether every entry differs by `tolerance` at most.
    bool isEquivalent(const Self& other, Real tolerance = Self::kTolerance) const noexcept {
        for (int r = 0; r < 4; ++r) {
            for (int c = 0; c < 4; ++c) {
                if (!(std::abs(matrix[r][c] - other.matrix[r][c]) <= tolerance)) return false;
            }
        }
        return true;
    }

  private:
    /// The 2x2 minors of rows 0-1 (`upper`) and rows 2-3 (`lower`), for column pairs 01 02 03 12 13 23.
    struct Minors {
        Real upper[6], lower[6];
        constexpr explicit Minors(const Real (&m)[4][4]) noexcept : upper(), lower() {
            int pair = 0;
            for (int a = 0; a < 3; ++a) {
                for (int b = a + 1; b < 4; ++b, ++pair) {
                    upper[pair] = m[0][a] * m[1][b] - m[0][b] * m[1][a];
                    lower[pair] = m[2][a] * m[3][b] - m[2][b] * m[3][a];
                }
            }
        }
        constexpr Real determinant() const noexcept {
            return upper[0] * lower[5] - upper[1] * lower[4] + upper[2] * lower[3] + upper[3] * lower[2] -
                   upper[4] * lower[1] + upper[5] * lower[0];
        }
    };

    constexpr Self& self() noexcept { return static_cast<Self&>(*this); }
    constexpr const Self& self() const noexcept { return static_cast<const Self&>(*this); }
    template <class From>
    constexpr void assign(const From (*m)[4]) noexcept {
        eachEntry([&](int r, int c) { return static_cast<Real>(m[r][c]); });
    }
    template <class Entry>
    constexpr Self& eachEntry(Entry entry) noexcept {
        for (int r = 0; r < 4; ++r) {
            for (int c = 0; c < 4; ++c)
                matrix[r][c] = entry(r, c);
        }
        return self();
    }
};

template <class Self, class Real>
constexpr Self MatrixOf<Self, Real>::adjoint() const noexcept {
    const Minors minors(matrix);
    const auto& u = minors.upper;
    const auto& l = minors.lower;
    const auto& m = matrix;
    Self result;
    auto& a = result.matrix;
    // Columns 0 and 1 come from the lower minors and rows 1 and 0, columns 2 and 3 from the upper and 3
    // and 2.
    const auto column = [&a](int c, const Real* row, const Real(&s)[6], Real sign) {
        a[0][c] = sign * (row[1] * s[5] - row[2] * s[4] + row[3] * s[3]);
        a[1][c] = -sign * (row[0] * s[5] - row[2] * s[2] + row[3] * s[1]);
        a[2][c] = sign * (row[0] * s[4] - row[1] * s[2] + row[3] * s[0]);
        a[3][c] = -sign * (row[0] * s[3] - row[1] * s[1] + row[2] * s[0]);
    };
    column(0, m[1], l, 1);
    column(1, m[0], l, -1);
    column(2, m[3], u, 1);
    column(3, m[2], u, -1);
    return result;
}

} // namespace vesk
