#pragma once
// Ramps as plain values: read from the graph once a compute, evaluated without it.

#include <array>
#include <cstddef>
#include <vector>

class MObject;

namespace vesk::nodes {

/// A ramp's entries, ready to be evaluated any number of times. The results are those of
/// `MRampAttribute::getValueAtPosition` and `getColorAtPosition` to the bit: this evaluation and the embedded
/// host's have to say the same, and a test compares them.
///
/// At or before the first position the first value, at or after the last the last one; between two entries
/// the left one says how (straight, unless it says none, smooth or spline). Of several entries at one
/// position the last counts at the position itself. A position that is no number reads the first value; an
/// entry whose position is no finite number is not there. No entries: 0.
template <int Channels>
class Ramp {
  public:
    using Values = std::array<float, Channels>;
    struct Entry {
        float position = 0;
        Values values{};
        int interpolation = 1; ///< an `MRampAttribute::MInterpolation`
    };

    Ramp() = default;
    /// Entries in any order; equal positions keep theirs.
    explicit Ramp(std::vector<Entry> entries);

    /// As `MRampAttribute::getNumEntries` counts them.
    std::size_t entryCount() const { return entryCount_; }
    Values at(float position) const {
        std::size_t segment = 0;
        return at(position, segment);
    }
    /// The same, faster where positions run along the ramp: `segment`, 0 at first, remembers where the last
    /// one lay.
    Values at(float position, std::size_t& segment) const {
        if (segment < segments_.size()) {
            const Segment& s = segments_[segment];
            if (position > s.first && position < s.last) return between(s, position);
        }
        return find(position, segment);
    }

  private:
    /// From an entry to the next, in the terms of the evaluation.
    struct Segment {
        float first = 0, last = 0; ///< positions
        double start = 0, length = 0;
        int interpolation = 1;
        std::array<double, Channels> from{}, to{}, fromTangent{}, toTangent{};
    };
    static Values between(const Segment& s, float position);
    Values find(float position, std::size_t& segment) const;

    std::size_t entryCount_ = 0;
    std::vector<Entry> entries_; ///< by position
    std::vector<Segment> segments_;
};

template <int Channels>
inline typename Ramp<Channels>::Values Ramp<Channels>::between(const Segment& s, float position) {
    constexpr int kNone = 0, kSmooth = 2, kSpline = 3;
    const double u = (static_cast<double>(position) - s.start) / s.length;
    Values values;
    const auto each = [&](auto formula) {
        for (std::size_t c = 0; c < Channels; ++c)
            values[c] = static_cast<float>(formula(s.from[c], s.to[c], c));
    };
    switch (s.interpolation) {
    case kNone: each([](double a, double, std::size_t) { return a; }); break;
    case kSmooth:
        each([u](double a, double b, std::size_t) { return a + u * u * (3 - 2 * u) * (b - a); });
        break;
    case kSpline: {
        const double u2 = u * u;
        const double u3 = u2 * u;
        each([&](double a, double b, std::size_t c) {
            return (2 * u3 - 3 * u2 + 1) * a + (u3 - 2 * u2 + u) * s.fromTangent[c] + (3 * u2 - 2 * u3) * b +
                   (u3 - u2) * s.toTangent[c];
        });
        break;
    }
    default: each([u](double a, double b, std::size_t) { return a + u * (b - a); }); break;
    }
    return values;
}

using CurveRamp = Ramp<1>;
using ColorRamp = Ramp<3>;

/// The ramp on a node, connected entries evaluated. Without entries when the attribute is no such ramp.
CurveRamp readCurveRamp(const MObject& node, const MObject& attribute);
ColorRamp readColorRamp(const MObject& node, const MObject& attribute);

} // namespace vesk::nodes
