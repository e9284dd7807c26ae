#pragma once

#include <maya/MMatrix.h>
#include <maya/MVector.h>

#include <algorithm>
#include <cmath>

class MEulerRotation;

/// Rotation as a quaternion, x y z for the axis and w last. `a * b` applies `a` first, as with matrices.
class MQuaternion {
  public:
    static constexpr double kTolerance = 1.0e-10;
    double x = 0.0, y = 0.0, z = 0.0, w = 1.0;

    constexpr MQuaternion() noexcept = default;
    constexpr MQuaternion(double xx, double yy, double zz, double ww) noexcept : x(xx), y(yy), z(zz), w(ww) {}
    constexpr explicit MQuaternion(const double q[4]) noexcept : MQuaternion(q[0], q[1], q[2], q[3]) {}
    /// By `angle` radians about `axis`, which need not have length 1; no rotation if it has length 0.
    MQuaternion(double angle, const MVector& axis) noexcept { setAxisAngle(axis, angle); }
    /// The shortest rotation that turns the direction of `from` into that of `to`.
    /// Of opposite directions: half a turn about some axis across. None if either has length 0.
    MQuaternion(const MVector& from, const MVector& to) noexcept;

    /// The rotation of a matrix whose upper rows have length 1 and stand square.
    MQuaternion& operator=(const MMatrix& rotation) noexcept;
    MQuaternion& operator=(const MEulerRotation& rotation) noexcept;

    /// As if the quaternion had length 1; the identity if it has length 0.
    MMatrix asMatrix() const noexcept;
    MEulerRotation asEulerRotation() const noexcept;
    MQuaternion& setAxisAngle(const MVector& axis, double angle) noexcept;
    /// `angle` in 0..2 pi. Without a rotation the axis is z and the answer false.
    bool getAxisAngle(MVector& axis, double& angle) const noexcept;

    constexpr double operator[](unsigned int i) const noexcept {
        return i == 0 ? x : i == 1 ? y : i == 2 ? z : w;
    }
    constexpr MQuaternion operator-() const noexcept { return {-x, -y, -z, -w}; }
    friend constexpr MQuaternion operator+(const MQuaternion& a, const MQuaternion& b) noexcept {
        return {a.x + b.x, a.y + b.y, a.z + b.z, a.w + b.w};
    }
    friend constexpr MQuaternion operator-(const MQuaternion& a, const MQuaternion& b) noexcept {
        return a + -b;
    }
    friend constexpr MQuaternion operator*(const MQuaternion& a, const MQuaternion& b) noexcept {
        return {b.w * a.x + b.x * a.w + b.y * a.z - b.z * a.y, b.w * a.y - b.x * a.z + b.y * a.w + b.z * a.x,
                b.w * a.z + b.x * a.y - b.y * a.x + b.z * a.w, b.w * a.w - b.x * a.x - b.y * a.y - b.z * a.z};
    }
    friend constexpr MQuaternion operator*(double s, const MQuaternion& q) noexcept {
        return {s * q.x, s * q.y, s * q.z, s * q.w};
    }
    constexpr MQuaternion& operator*=(const MQuaternion& b) noexcept { return *this = *this * b; }
    constexpr bool operator==(const MQuaternion& b) const noexcept = default;

    constexpr MQuaternion conjugate() const noexcept { return {-x, -y, -z, w}; }
    constexpr MQuaternion inverse() const noexcept { return (1.0 / dot(*this)) * conjugate(); }
    /// The same direction with length 1; length 0 stays.
    MQuaternion normal() const noexcept {
        const double size = std::sqrt(dot(*this));
        return size > 0.0 ? (1.0 / size) * *this : *this;
    }
    MQuaternion& conjugateIt() noexcept { return *this = conjugate(); }
    MQuaternion& invertIt() noexcept { return *this = inverse(); }
    MQuaternion& normalizeIt() noexcept { return *this = normal(); }
    MQuaternion& negateIt() noexcept { return *this = -*this; }

    constexpr double dot(const MQuaternion& b) const noexcept {
        return x * b.x + y * b.y + z * b.z + w * b.w;
    }
    bool isEquivalent(const MQuaternion& b, double tolerance = kTolerance) const noexcept {
        const MQuaternion d = *this - b;
        return std::max({std::abs(d.x), std::abs(d.y), std::abs(d.z), std::abs(d.w)}) <= tolerance;
    }

    static const MQuaternion identity;
};

inline constexpr MQuaternion MQuaternion::identity;

/// From `p` (t = 0) to `q` (t = 1) along the shorter arc, at an even pace. Both of length 1.
inline MQuaternion slerp(const MQuaternion& p, const MQuaternion& q, double t) noexcept {
    const double cosine = p.dot(q);
    const MQuaternion to = cosine < 0.0 ? -q : q;
    const double angle = std::acos(std::min(std::abs(cosine), 1.0));
    if (angle < 1.0e-8) return ((1.0 - t) * p + t * to).normal();
    return (1.0 / std::sin(angle)) * (std::sin((1.0 - t) * angle) * p + std::sin(t * angle) * to);
}

inline MQuaternion::MQuaternion(const MVector& from, const MVector& to) noexcept {
    const MVector a = from.normal();
    const MVector b = to.normal();
    const double half = 1.0 + a * b;
    if (!(a * a > 0.0) || !(b * b > 0.0)) return;
    if (half > 1.0e-12) {
        const MVector axis = a ^ b;
        *this = MQuaternion(axis.x, axis.y, axis.z, half).normal();
        return;
    }
    const MVector axis = vesk::across(a);
    *this = MQuaternion(axis.x, axis.y, axis.z, 0.0);
}

inline MQuaternion& MQuaternion::setAxisAngle(const MVector& axis, double angle) noexcept {
    const MVector unit = axis.normal() * std::sin(angle / 2.0);
    if (!(axis.length() > 0.0)) return *this = MQuaternion();
    return *this = MQuaternion(unit.x, unit.y, unit.z, std::cos(angle / 2.0));
}

inline bool MQuaternion::getAxisAngle(MVector& axis, double& angle) const noexcept {
    const MVector part(x, y, z);
    const bool turns = part.length() > 0.0;
    axis = turns ? part.normal() : MVector::zAxis;
    angle = turns ? 2.0 * std::atan2(part.length(), w) : 0.0;
    return turns;
}

inline MMatrix MQuaternion::asMatrix() const noexcept {
    MMatrix m;
    const double size = dot(*this);
    if (!(size > 0.0)) return m;
    const double s = 2.0 / size;
    m[0][0] = 1.0 - s * (y * y + z * z), m[0][1] = s * (x * y + z * w), m[0][2] = s * (x * z - y * w);
    m[1][0] = s * (x * y - z * w), m[1][1] = 1.0 - s * (x * x + z * z), m[1][2] = s * (y * z + x * w);
    m[2][0] = s * (x * z + y * w), m[2][1] = s * (y * z - x * w), m[2][2] = 1.0 - s * (x * x + y * y);
    return m;
}

inline MQuaternion& MQuaternion::operator=(const MMatrix& m) noexcept {
    const double trace = m(0, 0) + m(1, 1) + m(2, 2);
    // Whichever component is largest comes first; the others are divided by it.
    if (trace > std::max({m(0, 0), m(1, 1), m(2, 2)})) {
        return *this =
                   MQuaternion(m(1, 2) - m(2, 1), m(2, 0) - m(0, 2), m(0, 1) - m(1, 0), 1.0 + trace).normal();
    }
    const unsigned int i = m(0, 0) >= m(1, 1) && m(0, 0) >= m(2, 2) ? 0 : m(1, 1) >= m(2, 2) ? 1 : 2;
    const unsigned int j = (i + 1) % 3;
    const unsigned int k = (i + 2) % 3;
    double q[4];
    q[i] = 1.0 + m(i, i) - m(j, j) - m(k, k);
    q[j] = m(i, j) + m(j, i);
    q[k] = m(i, k) + m(k, i);
    q[3] = m(j, k) - m(k, j);
    return *this = MQuaternion(q).normal();
}

inline MVector MVector::rotateBy(const MQuaternion& rotation) const noexcept {
    return *this * rotation.asMatrix();
}
inline MQuaternion MVector::rotateTo(const MVector& to) const noexcept { return MQuaternion(*this, to); }
