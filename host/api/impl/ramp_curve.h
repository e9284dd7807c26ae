#pragma once
// Evaluation of ramps over plain arrays.

#include <array>
#include <cstddef>
#include <vector>

namespace vesk::api {

/// How a ramp goes from an entry to the next: stays, straight, eased (3u^2 - 2u^3), or a cubic through the
/// entries.
enum class RampStep : int { None = 0, Linear = 1, Smooth = 2, Spline = 3 };

/// One entry; `Channels` values at a position.
template <int Channels>
struct RampKey {
    float position = 0;
    std::array<float, Channels> values{};
    int step = static_cast<int>(RampStep::Linear); ///< a `RampStep`; other numbers count as linear

    bool operator==(const RampKey&) const = default;
};

/// A ramp ready to be read. Keys come in any order; equal positions keep theirs.
///
/// At or before the first position the ramp has the first value, at or after the last the last one. Between
/// two keys the left one says how. A spline's tangent at a key is the mean of the slopes of the segments at
/// its two sides, or the slope of its only one. Where two keys share a position the value jumps, and at the
/// position itself the later one holds. No keys: 0. A position that is no number: the first value; a key
/// whose position is no finite number is not there. Worked out in double, rounded once. The nodes read ramps
/// into plain values and evaluate these by the same formulas (`nodes/common/ramp.h`): a change here is one
/// there.
template <int Channels>
class RampCurve {
  public:
    using Key = RampKey<Channels>;
    using Values = std::array<float, Channels>;

    /// Replaces the keys; cheap when they are the same as before.
    void set(const std::vector<Key>& keys);
    Values at(float position) const;

  private:
    double slope(std::size_t segment, std::size_t channel) const;
    double tangent(std::size_t key, std::size_t channel) const;
    double between(std::size_t left, double u, std::size_t channel) const;

    std::vector<Key> given_;
    std::vector<Key> sorted_;
};

extern template class RampCurve<1>;
extern template class RampCurve<3>;

} // namespace vesk::api
