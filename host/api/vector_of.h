#pragma once
// Vectors of three components: what MVector and MFloatVector have in common.

#include <maya/MStatus.h>

#include <algorithm>
#include <cmath>
#include <ostream>

namespace vesk {

/// `Self` is the class made from this, `Matrix` the matrix class of the same precision.
/// A row vector: `v * m` uses the upper 3x3 of the matrix only, so translation leaves it alone.
template <class Self, class Matrix, class Real>
class VectorOf {
  public:
    Real x = 0, y = 0, z = 0;

    constexpr VectorOf() noexcept = default;
    constexpr VectorOf(Real xx, Real yy, Real zz = 0) noexcept : x(xx), y(yy), z(zz) {}
    constexpr explicit VectorOf(const double v[3]) noexcept
        : x(static_cast<Real>(v[0])), y(static_cast<Real>(v[1])), z(static_cast<Real>(v[2])) {}
    constexpr explicit VectorOf(const float v[3]) noexcept
        : x(static_cast<Real>(v[0])), y(static_cast<Real>(v[1])), z(static_cast<Real>(v[2])) {}

    /// Component 0, 1 or 2; any other index means z.
    constexpr Real& operator[](unsigned int i) noexcept { return i == 0 ? x : i == 1 ? y : z; }
    constexpr Real operator[](unsigned int i) const noexcept { return i == 0 ? x : i == 1 ? y : z; }
    constexpr Real& operator()(unsigned int i) noexcept { return (*this)[i]; }
    constexpr Real operator()(unsigned int i) const noexcept { return (*this)[i]; }

    template <class To>
    constexpr MStatus get(To to[3]) const noexcept {
        to[0] = static_cast<To>(x), to[1] = static_cast<To>(y), to[2] = static_cast<To>(z);
        return {};
    }

    constexpr Self& operator+=(const Self& b) noexcept { return x += b.x, y += b.y, z += b.z, self(); }
    constexpr Self& operator-=(const Self& b) noexcept { return x -= b.x, y -= b.y, z -= b.z, self(); }
    constexpr Self& operator*=(Real s) noexcept { return x *= s, y *= s, z *= s, self(); }
    constexpr Self& operator/=(Real s) noexcept { return x /= s, y /= s, z /= s, self(); }
    constexpr Self& operator*=(const Matrix& m) noexcept { return self() = self() * m; }

    constexpr Self operator-() const noexcept { return Self(-x, -y, -z); }
    friend constexpr Self operator+(Self a, const Self& b) noexcept { return a += b; }
    friend constexpr Self operator-(Self a, const Self& b) noexcept { return a -= b; }
    friend constexpr Self operator*(Self a, Real s) noexcept { return a *= s; }
    friend constexpr Self operator*(Real s, Self a) noexcept { return a *= s; }
    friend constexpr Self operator/(Self a, Real s) noexcept { return a /= s; }
    /// Dot product.
    friend constexpr Real operator*(const Self& a, const Self& b) noexcept {
        return a.x * b.x + a.y * b.y + a.z * b.z;
    }
    /// Cross product.
    friend constexpr Self operator^(const Self& a, const Self& b) noexcept {
        return Self(a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x);
    }
    friend constexpr Self operator*(const Self& v, const Matrix& m) noexcept {
        return Self(v.x * m.matrix[0][0] + v.y * m.matrix[1][0] + v.z * m.matrix[2][0],
                    v.x * m.matrix[0][1] + v.y * m.matrix[1][1] + v.z * m.matrix[2][1],
                    v.x * m.matrix[0][2] + v.y * m.matrix[1][2] + v.z * m.matrix[2][2]);
    }
    friend constexpr bool operator==(const Self& a, const Self& b) noexcept {
        return a.x == b.x && a.y == b.y && a.z == b.z;
    }

    Real length() const noexcept { return std::sqrt(x * x + y * y + z * z); }
    /// A vector of length zero stays as it is.
    MStatus normalize() noexcept {
        const Real size = length();
        if (size > 0) *this /= size;
        return {};
    }
    Self normal() const noexcept {
        Self v = self();
        v.normalize();
        return v;
    }
    /// Angle between the two in radians, 0 to pi; 0 when either has length zero.
    Real angle(const Self& other) const noexcept {
        const Real sizes = length() * other.length();
        if (!(sizes > 0)) return 0;
        return std::acos(std::clamp(self() * other / sizes, Real(-1), Real(1)));
    }

    /// Whether every component differs by `tolerance` at most.
    bool isEquivalent(const Self& other, Real tolerance = Self::kTolerance) const noexcept {
        return std::abs(x - other.x) <= tolerance && std::abs(y - other.y) <= tolerance &&
               std::abs(z - other.z) <= tolerance;
    }
    /// Whether the directions are the same or opposite: the cosine's size differs from 1 by `tolerance` at
    /// most.
    bool isParallel(const Self& other, Real tolerance = Self::kTolerance) const noexcept {
        return std::abs(1 - std::abs(normal() * other.normal())) <= tolerance;
    }

    /// The normal of a surface that `m` transforms: inverse transpose of its upper 3x3, not normalised.
    Self transformAsNormal(const Matrix& m) const noexcept {
        const Matrix inverse = m.inverse();
        const auto& i = inverse.matrix;
        return Self(x * i[0][0] + y * i[0][1] + z * i[0][2], x * i[1][0] + y * i[1][1] + z * i[1][2],
                    x * i[2][0] + y * i[2][1] + z * i[2][2]);
    }

    friend std::ostream& operator<<(std::ostream& out, const Self& v) {
        return out << '[' << v.x << ", " << v.y << ", " << v.z << ']';
    }

  private:
    constexpr Self& self() noexcept { return static_cast<Self&>(*this); }
    constexpr const Self& self() const noexcept { return static_cast<const Self&>(*this); }
};

} // namespace vesk
