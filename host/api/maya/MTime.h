#pragma once

#include "host/api/unit_of.h"

namespace vesk {
struct TimeUnits {
    enum Unit {
        kInvalid = 0,
        kHours = 1,
        kMinutes = 2,
        kSeconds = 3,
        kMilliseconds = 4,
        kGames = 5,      ///< 15 frames a second
        kFilm = 6,       ///< 24
        kPALFrame = 7,   ///< 25
        kNTSCFrame = 8,  ///< 30
        kShowScan = 9,   ///< 48
        kPALField = 10,  ///< 50
        kNTSCField = 11, ///< 60
        kLast = 12
    };
};
} // namespace vesk

/// Time with its unit. Arithmetic gives the left side's unit; a plain number counts in that unit.
class MTime : public vesk::TimeUnits, public vesk::UnitOf<MTime, vesk::TimeUnits::Unit> {
  public:
    static constexpr Unit kDefaultUIUnit = kFilm;

    MTime() noexcept : MTime(0.0) {}
    /// A number alone counts in the unit of the interface.
    explicit MTime(double value) noexcept : UnitOf(value, uiUnit()) {}
    constexpr MTime(double value, Unit unit) noexcept : UnitOf(value, unit) {}

    MTime& operator+=(const MTime& t) noexcept { return *this += t.as(unit()); }
    MTime& operator-=(const MTime& t) noexcept { return *this -= t.as(unit()); }
    MTime& operator+=(double t) noexcept { return setValue(value() + t), *this; }
    MTime& operator-=(double t) noexcept { return setValue(value() - t), *this; }
    MTime& operator*=(double s) noexcept { return setValue(value() * s), *this; }
    MTime& operator/=(double s) noexcept { return setValue(value() / s), *this; }
    MTime& operator++() noexcept { return *this += 1.0; }
    MTime& operator--() noexcept { return *this -= 1.0; }
    friend MTime operator+(MTime a, const MTime& b) noexcept { return a += b; }
    friend MTime operator-(MTime a, const MTime& b) noexcept { return a -= b; }
    friend MTime operator+(MTime a, double b) noexcept { return a += b; }
    friend MTime operator-(MTime a, double b) noexcept { return a -= b; }
    friend MTime operator*(MTime a, double s) noexcept { return a *= s; }
    friend MTime operator*(double s, MTime a) noexcept { return a *= s; }
    friend MTime operator/(MTime a, double s) noexcept { return a /= s; }
    friend double operator/(const MTime& a, const MTime& b) noexcept { return a.value() / b.as(a.unit()); }

    static constexpr Unit internalUnit() noexcept { return kSeconds; }
    /// In 6000ths of a second, a whole number for every unit.
    static constexpr double sizeOf(Unit unit) noexcept {
        switch (unit) {
        case kHours: return 21600000.0;
        case kMinutes: return 360000.0;
        case kMilliseconds: return 6.0;
        case kGames: return 400.0;
        case kFilm: return 250.0;
        case kPALFrame: return 240.0;
        case kNTSCFrame: return 200.0;
        case kShowScan: return 125.0;
        case kPALField: return 120.0;
        case kNTSCField: return 100.0;
        default: return 6000.0;
        }
    }
};
