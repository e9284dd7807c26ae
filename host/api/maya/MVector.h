#pragma once

#include "host/api/vector_of.h"

class MMatrix;
class MFloatVector;
class MPoint;
class MQuaternion;
class MEulerRotation;

/// Direction or displacement in doubles. What takes another class needs that class's header too.
class MVector : public vesk::VectorOf<MVector, MMatrix, double> {
  public:
    enum Axis { kXaxis, kYaxis, kZaxis, kWaxis };
    static constexpr double kTolerance = 1.0e-10;

    using VectorOf::VectorOf;
    constexpr explicit MVector(const MFloatVector& v) noexcept;
    /// x, y, z of the point as they are.
    constexpr MVector(const MPoint& p) noexcept;

    MVector rotateBy(const MQuaternion& rotation) const noexcept;
    MVector rotateBy(const MEulerRotation& rotation) const noexcept;
    /// The shortest rotation that turns this direction into that of `to`.
    MQuaternion rotateTo(const MVector& to) const noexcept;

    static const MVector zero, one, xAxis, yAxis, zAxis, xNegAxis, yNegAxis, zNegAxis;
};

inline constexpr MVector MVector::zero(0.0, 0.0, 0.0);
inline constexpr MVector MVector::one(1.0, 1.0, 1.0);
inline constexpr MVector MVector::xAxis(1.0, 0.0, 0.0);
inline constexpr MVector MVector::yAxis(0.0, 1.0, 0.0);
inline constexpr MVector MVector::zAxis(0.0, 0.0, 1.0);
inline constexpr MVector MVector::xNegAxis(-1.0, 0.0, 0.0);
inline constexpr MVector MVector::yNegAxis(0.0, -1.0, 0.0);
inline constexpr MVector MVector::zNegAxis(0.0, 0.0, -1.0);

namespace vesk {
/// For the host: some vector of length 1 across `v`, always the same one for the same `v`, which is not 0.
inline MVector across(const MVector& v) noexcept {
    const bool alongX = std::abs(v.x) > std::abs(v.y);
    return (v ^ (alongX ? MVector::yAxis : MVector::xAxis)).normal();
}
} // namespace vesk
