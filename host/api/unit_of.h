#pragma once
// Numbers with a unit: what MTime, MAngle and MDistance have in common.

#include <maya/MStatus.h>

#include <compare>

namespace vesk {

/// A value and the unit in which it counts. `Self` has `sizeOf(unit)`, the size of one unit in a measure that
/// makes the sizes exact where it can, and the static members `internalUnit()` and `uiUnit()`.
/// Comparison is by size, whatever the units.
template <class Self, class Unit>
class UnitOf {
  public:
    constexpr UnitOf(double value, Unit unit) noexcept : value_(value), unit_(unit) {}

    /// The number in the object's own unit.
    constexpr double value() const noexcept { return value_; }
    constexpr Unit unit() const noexcept { return unit_; }
    /// The number that it would be in `unit`.
    constexpr double as(Unit unit) const noexcept { return converted(value_, unit_, unit); }

    constexpr MStatus setValue(double value) noexcept { return value_ = value, MStatus(); }
    /// Changes the unit and leaves the number, so the size changes.
    constexpr MStatus setUnit(Unit unit) noexcept { return unit_ = unit, MStatus(); }

    /// The unit in which commands and the interface speak, for the whole process.
    static Unit uiUnit() noexcept { return uiUnit_; }
    static MStatus setUIUnit(Unit unit) noexcept { return uiUnit_ = unit, MStatus(); }
    static double internalToUI(double value) noexcept {
        return converted(value, Self::internalUnit(), uiUnit_);
    }
    static double uiToInternal(double value) noexcept {
        return converted(value, uiUnit_, Self::internalUnit());
    }

    friend constexpr bool operator==(const Self& a, const Self& b) noexcept { return a.size() == b.size(); }
    friend constexpr std::partial_ordering operator<=>(const Self& a, const Self& b) noexcept {
        return a.size() <=> b.size();
    }

  private:
    static constexpr double converted(double value, Unit from, Unit to) noexcept {
        return from == to ? value : value * Self::sizeOf(from) / Self::sizeOf(to);
    }
    constexpr double size() const noexcept { return value_ * Self::sizeOf(unit_); }

    static inline Unit uiUnit_ = Self::kDefaultUIUnit;
    double value_;
    Unit unit_;
};

} // namespace vesk
