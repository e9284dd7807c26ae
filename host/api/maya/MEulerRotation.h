#pragma once

#include <maya/MMatrix.h>
#include <maya/MQuaternion.h>
#include <maya/MVector.h>

#include <cmath>
#include <numbers>

/// Rotation as three angles in radians about the axes, one after the other in the named order:
/// kXYZ turns about x first, so the matrix for row vectors is Rx * Ry * Rz.
class MEulerRotation {
  public:
    enum RotationOrder { kXYZ = 0, kYZX, kZXY, kXZY, kYXZ, kZYX };
    static constexpr double kTolerance = 1.0e-10;
    double x = 0.0, y = 0.0, z = 0.0; ///< about that axis, whatever the order
    RotationOrder order = kXYZ;

    constexpr MEulerRotation() noexcept = default;
    constexpr MEulerRotation(double xx, double yy, double zz, RotationOrder ord = kXYZ) noexcept
        : x(xx), y(yy), z(zz), order(ord) {}
    constexpr explicit MEulerRotation(const double v[3], RotationOrder ord = kXYZ) noexcept
        : MEulerRotation(v[0], v[1], v[2], ord) {}
    constexpr explicit MEulerRotation(const MVector& v, RotationOrder ord = kXYZ) noexcept
        : MEulerRotation(v.x, v.y, v.z, ord) {}

    /// Angles in the present order.
    MEulerRotation& operator=(const MMatrix& rotation) noexcept { return *this = decompose(rotation, order); }
    MEulerRotation& operator=(const MQuaternion& rotation) noexcept { return *this = rotation.asMatrix(); }
    MEulerRotation& setValue(double xx, double yy, double zz, RotationOrder ord = kXYZ) noexcept {
        return *this = MEulerRotation(xx, yy, zz, ord);
    }

    /// The angles of a matrix whose upper rows have length 1 and stand square, the middle one in -pi/2..pi/2.
    /// Where that is a right angle, the last one is 0.
    static MEulerRotation decompose(const MMatrix& rotation, RotationOrder order) noexcept;

    constexpr MVector asVector() const noexcept { return {x, y, z}; }
    MMatrix asMatrix() const noexcept;
    MQuaternion asQuaternion() const noexcept { return MQuaternion() = asMatrix(); }

    constexpr double& operator[](unsigned int i) noexcept { return i == 0 ? x : i == 1 ? y : z; }
    constexpr double operator[](unsigned int i) const noexcept { return i == 0 ? x : i == 1 ? y : z; }

    /// The same rotation in another order.
    MEulerRotation reorder(RotationOrder ord) const noexcept {
        return ord == order ? *this : decompose(asMatrix(), ord);
    }
    MEulerRotation inverse() const noexcept { return decompose(asMatrix().transpose(), order); }
    /// The other triple in the same order that makes the same rotation.
    MEulerRotation alternateSolution() const noexcept;
    /// Of this triple, the alternate one and both plus whole turns: the nearest to `target`, angle by angle.
    MEulerRotation closestSolution(const MEulerRotation& target) const noexcept;
    /// Every angle brought to -pi..pi by whole turns.
    MEulerRotation bound() const noexcept;
    MEulerRotation& reorderIt(RotationOrder ord) noexcept { return *this = reorder(ord); }
    MEulerRotation& invertIt() noexcept { return *this = inverse(); }
    MEulerRotation& boundIt() noexcept { return *this = bound(); }

    /// `a` first, then `b`; in the order of `a`.
    friend MEulerRotation operator*(const MEulerRotation& a, const MEulerRotation& b) noexcept {
        return decompose(a.asMatrix() * b.asMatrix(), a.order);
    }
    MEulerRotation& operator*=(const MEulerRotation& b) noexcept { return *this = *this * b; }
    constexpr bool operator==(const MEulerRotation& b) const noexcept = default;

    /// Whether the orders are the same and every angle differs by `tolerance` at most.
    bool isEquivalent(const MEulerRotation& b, double tolerance = kTolerance) const noexcept {
        return order == b.order && asVector().isEquivalent(b.asVector(), tolerance);
    }
    bool isZero(double tolerance = kTolerance) const noexcept {
        return asVector().isEquivalent(MVector::zero, tolerance);
    }

    static const MEulerRotation identity;

  private:
    /// The axes first to last, and 1 if they follow each other as x y z do, else -1.
    struct Axes {
        unsigned int first, middle, last;
        double sign;
    };
    static constexpr Axes axesOf(RotationOrder order) noexcept {
        switch (order) {
        case kYZX: return {1, 2, 0, 1.0};
        case kZXY: return {2, 0, 1, 1.0};
        case kXZY: return {0, 2, 1, -1.0};
        case kYXZ: return {1, 0, 2, -1.0};
        case kZYX: return {2, 1, 0, -1.0};
        default: return {0, 1, 2, 1.0};
        }
    }
    static MMatrix about(unsigned int axis, double angle) noexcept;
};

inline constexpr MEulerRotation MEulerRotation::identity;

inline MMatrix MEulerRotation::about(unsigned int axis, double angle) noexcept {
    MMatrix m;
    const unsigned int a = (axis + 1) % 3;
    const unsigned int b = (axis + 2) % 3;
    m[a][a] = m[b][b] = std::cos(angle);
    m[a][b] = std::sin(angle);
    m[b][a] = -std::sin(angle);
    return m;
}

inline MMatrix MEulerRotation::asMatrix() const noexcept {
    const Axes axes = axesOf(order);
    return about(axes.first, (*this)[axes.first]) * about(axes.middle, (*this)[axes.middle]) *
           about(axes.last, (*this)[axes.last]);
}

inline MEulerRotation MEulerRotation::decompose(const MMatrix& m, RotationOrder order) noexcept {
    const auto [i, j, k, sign] = axesOf(order);
    MEulerRotation r(0.0, 0.0, 0.0, order);
    const double cosine = std::hypot(m(i, i), m(i, j));
    r[j] = std::atan2(-sign * m(i, k), cosine);
    if (cosine > 1.0e-10) {
        r[i] = std::atan2(sign * m(j, k), m(k, k));
        r[k] = std::atan2(sign * m(i, j), m(i, i));
    } else {
        r[i] = std::atan2(-sign * m(k, j), m(j, j));
    }
    return r;
}

inline MEulerRotation MEulerRotation::alternateSolution() const noexcept {
    const Axes axes = axesOf(order);
    MEulerRotation r = *this;
    r[axes.first] += std::numbers::pi;
    r[axes.middle] = std::numbers::pi - r[axes.middle];
    r[axes.last] += std::numbers::pi;
    return r.bound();
}

inline MEulerRotation MEulerRotation::closestSolution(const MEulerRotation& target) const noexcept {
    const auto nearest = [&](MEulerRotation r) {
        for (unsigned int i = 0; i < 3; ++i)
            r[i] = target[i] + std::remainder(r[i] - target[i], 2.0 * std::numbers::pi);
        return r;
    };
    const auto distance = [&](const MEulerRotation& r) {
        const MVector d = r.asVector() - target.asVector();
        return std::abs(d.x) + std::abs(d.y) + std::abs(d.z);
    };
    const MEulerRotation own = nearest(*this);
    const MEulerRotation other = nearest(alternateSolution());
    return distance(other) < distance(own) ? other : own;
}

inline MEulerRotation MEulerRotation::bound() const noexcept {
    MEulerRotation r = *this;
    for (unsigned int i = 0; i < 3; ++i)
        r[i] = std::remainder(r[i], 2.0 * std::numbers::pi);
    return r;
}

inline MEulerRotation MQuaternion::asEulerRotation() const noexcept {
    return MEulerRotation::decompose(asMatrix(), MEulerRotation::kXYZ);
}
inline MQuaternion& MQuaternion::operator=(const MEulerRotation& rotation) noexcept {
    return *this = rotation.asMatrix();
}
inline MVector MVector::rotateBy(const MEulerRotation& rotation) const noexcept {
    return *this * rotation.asMatrix();
}
