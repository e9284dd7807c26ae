#pragma once
// Ramps as plain values: read from the graph once a compute, evaluated without it.

#include <algorithm>
#include <array>
#include <cstddef>
#include <ranges>
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

    /// Calls `write(i, values)` for each of `count` positions along the ramp, i / count, as `at` gives them.
    template <class Write>
    void along(std::size_t count, Write write) const;

  private:
    /// From an entry to the next, in the terms of the evaluation.
    struct Segment {
        float first = 0, last = 0; ///< positions
        double start = 0, length = 0;
        int interpolation = 1;
        std::array<double, Channels> from{}, to{}, fromTangent{}, toTangent{};
    };
    template <class Work>
    static void withFormula(const Segment& s, Work work);
    static Values between(const Segment& s, float position);
    template <class Write>
    void alongSegment(const Segment& s, std::size_t first, std::size_t last, double count, Write write) const;
    Values find(float position, std::size_t& segment) const;

    std::size_t entryCount_ = 0;
    std::vector<Entry> entries_; ///< by position
    std::vector<Segment> segments_;
};

/// Calls `work` with the segment's interpolation: a function of how far along it, 0 to 1, and the channel.
template <int Channels>
template <class Work>
inline void Ramp<Channels>::withFormula(const Segment& s, Work work) {
    constexpr int kNone = 0, kSmooth = 2, kSpline = 3;
    switch (s.interpolation) {
    case kNone: work([&s](double, std::size_t c) { return s.from[c]; }); break;
    case kSmooth:
        work([&s](double u, std::size_t c) {
            return s.from[c] + u * u * (3 - 2 * u) * (s.to[c] - s.from[c]);
        });
        break;
    case kSpline:
        work([&s](double u, std::size_t c) {
            const double u2 = u * u;
            const double u3 = u2 * u;
            return (2 * u3 - 3 * u2 + 1) * s.from[c] + (u3 - 2 * u2 + u) * s.fromTangent[c] +
                   (3 * u2 - 2 * u3) * s.to[c] + (u3 - u2) * s.toTangent[c];
        });
        break;
    default: work([&s](double u, std::size_t c) { return s.from[c] + u * (s.to[c] - s.from[c]); }); break;
    }
}

template <int Channels>
inline typename Ramp<Channels>::Values Ramp<Channels>::between(const Segment& s, float position) {
    const double u = (static_cast<double>(position) - s.start) / s.length;
    Values values;
    withFormula(s, [&](auto formula) {
        for (std::size_t c = 0; c < Channels; ++c)
            values[c] = static_cast<float>(formula(u, c));
    });
    return values;
}

template <int Channels>
template <class Write>
void Ramp<Channels>::alongSegment(const Segment& segment, std::size_t first, std::size_t last, double count,
                                  Write write) const {
    constexpr std::size_t kBlock = 256;
    const Segment s = segment; // apart from what `write` writes to
    withFormula(s, [&](auto formula) {
        for (; first < last; first += kBlock) {
            // Of fixed length: these divisions become vector instructions.
            std::array<double, kBlock> u;
            const auto start = static_cast<double>(first);
            for (int i = 0; i < static_cast<int>(kBlock); ++i)
                u[static_cast<std::size_t>(i)] =
                    (static_cast<double>(static_cast<float>((start + i) / count)) - s.start) / s.length;
            const std::size_t length = std::min(kBlock, last - first);
            for (std::size_t i = 0; i < length; ++i) {
                Values values;
                for (std::size_t c = 0; c < Channels; ++c)
                    values[c] = static_cast<float>(formula(u[i], c));
                write(first + i, values);
            }
        }
    });
}

template <int Channels>
template <class Write>
void Ramp<Channels>::along(std::size_t count, Write write) const {
    const auto total = static_cast<double>(count);
    const auto position = [total](std::size_t i) {
        return static_cast<float>(static_cast<double>(i) / total);
    };
    for (std::size_t i = 0; i < count;) {
        std::size_t segment = segments_.size();
        const Values values = at(position(i), segment);
        const bool isInside = segment < segments_.size() && position(i) > segments_[segment].first &&
                              position(i) < segments_[segment].last;
        if (!isInside) {
            write(i++, values);
            continue;
        }
        // Positions ascend: all up to the segment's end lie in it.
        const Segment& s = segments_[segment];
        const auto rest = std::views::iota(i, count);
        const auto behind =
            std::ranges::partition_point(rest, [&](std::size_t one) { return position(one) < s.last; });
        const std::size_t end = i + static_cast<std::size_t>(behind - rest.begin());
        alongSegment(s, i, end, total, write);
        i = end;
    }
}

using CurveRamp = Ramp<1>;
using ColorRamp = Ramp<3>;

/// The ramp on a node, connected entries evaluated. Without entries when the attribute is no such ramp.
CurveRamp readCurveRamp(const MObject& node, const MObject& attribute);
ColorRamp readColorRamp(const MObject& node, const MObject& attribute);

} // namespace vesk::nodes
