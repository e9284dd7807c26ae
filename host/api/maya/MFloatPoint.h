#pragma once

#include <maya/MFloatVector.h>
#include <maya/MPoint.h>

#include "host/api/point_of.h"

class MFloatMatrix;

/// Position in floats with its weight w: exactly four floats.
class MFloatPoint : public vesk::PointOf<MFloatPoint, MFloatVector, MFloatMatrix, float> {
  public:
    static constexpr float kTolerance = 1.0e-5F;

    using PointOf::PointOf;
    constexpr MFloatPoint(const MFloatVector& v) noexcept : PointOf(v.x, v.y, v.z) {}
    constexpr explicit MFloatPoint(const MPoint& p) noexcept
        : PointOf(static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z),
                  static_cast<float>(p.w)) {}

    static const MFloatPoint origin;
};
static_assert(sizeof(MFloatPoint) == 4 * sizeof(float));

inline constexpr MFloatPoint MFloatPoint::origin;

constexpr MPoint::MPoint(const MFloatPoint& p) noexcept : PointOf(p.x, p.y, p.z, p.w) {}
constexpr MFloatVector::MFloatVector(const MFloatPoint& p) noexcept : VectorOf(p.x, p.y, p.z) {}
