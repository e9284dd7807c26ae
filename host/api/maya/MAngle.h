#pragma once

#include "host/api/unit_of.h"

#include <numbers>

namespace vesk {
struct AngleUnits {
    enum Unit { kInvalid = 0, kRadians = 1, kDegrees = 2, kLast = 3 };
};
} // namespace vesk

/// Angle with its unit. The graph holds radians, commands speak degrees.
class MAngle : public vesk::AngleUnits, public vesk::UnitOf<MAngle, vesk::AngleUnits::Unit> {
  public:
    static constexpr Unit kDefaultUIUnit = kDegrees;

    constexpr MAngle() noexcept : MAngle(0.0) {}
    constexpr explicit MAngle(double value, Unit unit = kRadians) noexcept : UnitOf(value, unit) {}

    constexpr double asRadians() const noexcept { return as(kRadians); }
    constexpr double asDegrees() const noexcept { return as(kDegrees); }

    static constexpr Unit internalUnit() noexcept { return kRadians; }
    /// In 180ths of a degree over pi, so that 180 degrees are exactly pi.
    static constexpr double sizeOf(Unit unit) noexcept { return unit == kDegrees ? std::numbers::pi : 180.0; }
};
