#pragma once
// Points with a weight: what MPoint and MFloatPoint have in common.

#include <maya/MStatus.h>

#include <cmath>
#include <ostream>

namespace vesk {

/// `Self` is the class made from this; `Vector` and `Matrix` have the same precision.
/// Sums, differences, distances and scaling use x, y, z as they are and leave w alone.
template <class Self, class Vector, class Matrix, class Real>
class PointOf {
  public:
    Real x = 0, y = 0, z = 0, w = 1;

    constexpr PointOf() noexcept = default;
    constexpr PointOf(Real xx, Real yy, Real zz = 0, Real ww = 1) noexcept : x(xx), y(yy), z(zz), w(ww) {}
    constexpr explicit PointOf(const double v[4]) noexcept
        : x(static_cast<Real>(v[0])), y(static_cast<Real>(v[1])), z(static_cast<Real>(v[2])),
          w(static_cast<Real>(v[3])) {}
    constexpr explicit PointOf(const float v[4]) noexcept
        : x(static_cast<Real>(v[0])), y(static_cast<Real>(v[1])), z(static_cast<Real>(v[2])),
          w(static_cast<Real>(v[3])) {}

    /// Component 0 to 3; any other index means w.
    constexpr Real& operator[](unsigned int i) noexcept { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
    constexpr Real operator[](unsigned int i) const noexcept {
        return i == 0 ? x : i == 1 ? y : i == 2 ? z : w;
    }
    constexpr Real& operator()(unsigned int i) noexcept { return (*this)[i]; }
    constexpr Real operator()(unsigned int i) const noexcept { return (*this)[i]; }

    template <class To>
    constexpr MStatus get(To to[4]) const noexcept {
        to[0] = static_cast<To>(x), to[1] = static_cast<To>(y), to[2] = static_cast<To>(z);
        to[3] = static_cast<To>(w);
        return {};
    }

    constexpr Self& operator+=(const Vector& v) noexcept { return x += v.x, y += v.y, z += v.z, self(); }
    constexpr Self& operator-=(const Vector& v) noexcept { return x -= v.x, y -= v.y, z -= v.z, self(); }
    constexpr Self& operator*=(Real s) noexcept { return x *= s, y *= s, z *= s, self(); }
    constexpr Self& operator/=(Real s) noexcept { return x /= s, y /= s, z /= s, self(); }
    constexpr Self& operator*=(const Matrix& m) noexcept { return self() = self() * m; }

    friend constexpr Self operator+(Self p, const Vector& v) noexcept { return p += v; }
    friend constexpr Self operator-(Self p, const Vector& v) noexcept { return p -= v; }
    friend constexpr Vector operator-(const Self& a, const Self& b) noexcept {
        return Vector(a.x - b.x, a.y - b.y, a.z - b.z);
    }
    friend constexpr Self operator*(Self p, Real s) noexcept { return p *= s; }
    friend constexpr Self operator*(Real s, Self p) noexcept { return p *= s; }
    friend constexpr Self operator/(Self p, Real s) noexcept { return p /= s; }
    /// A row of four numbers times the matrix; the resulting w stays.
    friend constexpr Self operator*(const Self& p, const Matrix& m) noexcept {
        const auto column = [&](unsigned int c) {
            return p.x * m.matrix[0][c] + p.y * m.matrix[1][c] + p.z * m.matrix[2][c] + p.w * m.matrix[3][c];
        };
        return Self(column(0), column(1), column(2), column(3));
    }
    friend constexpr bool operator==(const Self& a, const Self& b) noexcept {
        return a.x == b.x && a.y == b.y && a.z == b.z && a.w == b.w;
    }

    /// Divides by w, so that w is 1. A w of 0 stays, with the rest as it is.
    constexpr Self& cartesianize() noexcept {
        if (w != 0) x /= w, y /= w, z /= w, w = 1;
        return self();
    }
    Real distanceTo(const Self& other) const noexcept { return (self() - other).length(); }
    /// Whether every component, w too, differs by `tolerance` at most.
    bool isEquivalent(const Self& other, Real tolerance = Self::kTolerance) const noexcept {
        return std::abs(x - other.x) <= tolerance && std::abs(y - other.y) <= tolerance &&
               std::abs(z - other.z) <= tolerance && std::abs(w - other.w) <= tolerance;
    }

    friend std::ostream& operator<<(std::ostream& out, const Self& v) {
        return out << '[' << v.x << ", " << v.y << ", " << v.z << ", " << v.w << ']';
    }

  private:
    constexpr Self& self() noexcept { return static_cast<Self&>(*this); }
    constexpr const Self& self() const noexcept { return static_cast<const Self&>(*this); }
};

} // namespace vesk
