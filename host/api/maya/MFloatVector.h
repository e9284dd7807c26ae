#pragma once

#include <maya/MVector.h>

#include "host/api/vector_of.h"

class MFloatMatrix;
class MFloatPoint;

/// Direction or displacement: exactly three floats.
class MFloatVector : public vesk::VectorOf<MFloatVector, MFloatMatrix, float> {
  public:
    static constexpr float kTolerance = 1.0e-5F;

    using VectorOf::VectorOf;
    constexpr explicit MFloatVector(const MVector& v) noexcept
        : VectorOf(static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)) {}
    /// x, y, z of the point as they are.
    constexpr MFloatVector(const MFloatPoint& p) noexcept;

    static const MFloatVector zero, one, xAxis, yAxis, zAxis, xNegAxis, yNegAxis, zNegAxis;
};
static_assert(sizeof(MFloatVector) == 3 * sizeof(float));

inline constexpr MFloatVector MFloatVector::zero(0.0F, 0.0F, 0.0F);
inline constexpr MFloatVector MFloatVector::one(1.0F, 1.0F, 1.0F);
inline constexpr MFloatVector MFloatVector::xAxis(1.0F, 0.0F, 0.0F);
inline constexpr MFloatVector MFloatVector::yAxis(0.0F, 1.0F, 0.0F);
inline constexpr MFloatVector MFloatVector::zAxis(0.0F, 0.0F, 1.0F);
inline constexpr MFloatVector MFloatVector::xNegAxis(-1.0F, 0.0F, 0.0F);
inline constexpr MFloatVector MFloatVector::yNegAxis(0.0F, -1.0F, 0.0F);
inline constexpr MFloatVector MFloatVector::zNegAxis(0.0F, 0.0F, -1.0F);

constexpr MVector::MVector(const MFloatVector& v) noexcept : VectorOf(v.x, v.y, v.z) {}
