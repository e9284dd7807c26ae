#pragma once

#include "host/api/unit_of.h"

namespace vesk {
struct DistanceUnits {
    enum Unit {
        kInvalid = 0,
        kInches = 1,
        kFeet = 2,
        kYards = 3,
        kMiles = 4,
        kMillimeters = 5,
        kCentimeters = 6,
        kKilometers = 7,
        kMeters = 8,
        kLast = 9
    };
};
} // namespace vesk

/// Length with its unit. The graph holds centimetres, and commands speak them too unless the user changes
/// that.
class MDistance : public vesk::DistanceUnits, public vesk::UnitOf<MDistance, vesk::DistanceUnits::Unit> {
  public:
    static constexpr Unit kDefaultUIUnit = kCentimeters;

    constexpr MDistance() noexcept : MDistance(0.0) {}
    constexpr explicit MDistance(double value, Unit unit = kCentimeters) noexcept : UnitOf(value, unit) {}

    constexpr double asInches() const noexcept { return as(kInches); }
    constexpr double asFeet() const noexcept { return as(kFeet); }
    constexpr double asYards() const noexcept { return as(kYards); }
    constexpr double asMiles() const noexcept { return as(kMiles); }
    constexpr double asMillimeters() const noexcept { return as(kMillimeters); }
    constexpr double asCentimeters() const noexcept { return as(kCentimeters); }
    constexpr double asKilometers() const noexcept { return as(kKilometers); }
    constexpr double asMeters() const noexcept { return as(kMeters); }

    static constexpr Unit internalUnit() noexcept { return kCentimeters; }
    /// In tenths of a millimetre.
    static constexpr double sizeOf(Unit unit) noexcept {
        switch (unit) {
        case kInches: return 254.0;
        case kFeet: return 3048.0;
        case kYards: return 9144.0;
        case kMiles: return 16093440.0;
        case kMillimeters: return 10.0;
        case kKilometers: return 10000000.0;
        case kMeters: return 10000.0;
        default: return 100.0;
        }
    }
};
