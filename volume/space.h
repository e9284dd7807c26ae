#pragma once
// Points, matrices and boxes of the volume code, with the host's own arithmetic, so that a volume is met at
// the same bits here and there.

#include <algorithm>
#include <cmath>

namespace vesk::volume {

/// A point or a direction.
struct Vec3 {
    double x = 0, y = 0, z = 0;

    constexpr Vec3& operator+=(const Vec3& b) { return x += b.x, y += b.y, z += b.z, *this; }
    friend constexpr Vec3 operator+(Vec3 a, const Vec3& b) { return a += b; }
    friend constexpr Vec3 operator-(const Vec3& a, const Vec3& b) {
        return {a.x - b.x, a.y - b.y, a.z - b.z};
    }
    friend constexpr Vec3 operator*(const Vec3& a, double s) { return {a.x * s, a.y * s, a.z * s}; }
    friend constexpr bool operator==(const Vec3&, const Vec3&) = default;
};

inline double length(const Vec3& v) { return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z); }

/// At unit length; a vector of length zero stays as it is.
inline Vec3 normalised(const Vec3& v) {
    const double size = length(v);
    return size > 0 ? Vec3{v.x / size, v.y / size, v.z / size} : v;
}

/// `rows[row][column]`, made for row vectors: translation stands in row 3. A new one is the identity.
struct Matrix {
    double rows[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};

    /// Of a point, translation included. The last column is taken as 0, 0, 0, 1.
    constexpr Vec3 point(const Vec3& p) const {
        const auto column = [&](int c) {
            return p.x * rows[0][c] + p.y * rows[1][c] + p.z * rows[2][c] + rows[3][c];
        };
        return {column(0), column(1), column(2)};
    }
    /// Of a direction, without translation.
    constexpr Vec3 direction(const Vec3& v) const {
        const auto column = [&](int c) { return v.x * rows[0][c] + v.y * rows[1][c] + v.z * rows[2][c]; };
        return {column(0), column(1), column(2)};
    }
};

/// A box along the axes; an empty one holds and meets nothing.
class Box {
  public:
    constexpr Box() = default;
    constexpr explicit Box(const Vec3& p) { grow(p); }

    constexpr void grow(const Vec3& p) {
        min_ = empty_ ? p : Vec3{std::min(min_.x, p.x), std::min(min_.y, p.y), std::min(min_.z, p.z)};
        max_ = empty_ ? p : Vec3{std::max(max_.x, p.x), std::max(max_.y, p.y), std::max(max_.z, p.z)};
        empty_ = false;
    }
    constexpr bool isEmpty() const { return empty_; }
    constexpr const Vec3& min() const { return min_; }
    constexpr const Vec3& max() const { return max_; }
    /// The faces belong to the box.
    constexpr bool contains(const Vec3& p) const {
        return !empty_ && p.x >= min_.x && p.x <= max_.x && p.y >= min_.y && p.y <= max_.y && p.z >= min_.z &&
               p.z <= max_.z;
    }
    /// Boxes that touch meet.
    constexpr bool meets(const Box& b) const {
        return !empty_ && !b.empty_ && min_.x <= b.max_.x && b.min_.x <= max_.x && min_.y <= b.max_.y &&
               b.min_.y <= max_.y && min_.z <= b.max_.z && b.min_.z <= max_.z;
    }

  private:
    Vec3 min_, max_;
    bool empty_ = true;
};

} // namespace vesk::volume
