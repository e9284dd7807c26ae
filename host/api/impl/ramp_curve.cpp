#include "host/api/impl/ramp_curve.h"

#include <algorithm>
#include <cmath>

namespace vesk::api {

template <int Channels>
void RampCurve<Channels>::set(const std::vector<Key>& keys) {
    if (keys == given_) return;
    given_ = keys;
    sorted_ = keys;
    std::erase_if(sorted_, [](const Key& key) { return !std::isfinite(key.position); });
    std::stable_sort(sorted_.begin(), sorted_.end(),
                     [](const Key& a, const Key& b) { return a.position < b.position; });
}

/// Rise over run of the segment from a key to the next; 0 where both stand at one position.
template <int Channels>
double RampCurve<Channels>::slope(std::size_t segment, std::size_t channel) const {
    const Key& a = sorted_[segment];
    const Key& b = sorted_[segment + 1];
    const double run = static_cast<double>(b.position) - static_cast<double>(a.position);
    const double rise = static_cast<double>(b.values[channel]) - static_cast<double>(a.values[channel]);
    return run > 0 ? rise / run : 0;
}

template <int Channels>
double RampCurve<Channels>::tangent(std::size_t key, std::size_t channel) const {
    if (key == 0) return slope(0, channel);
    if (key + 1 == sorted_.size()) return slope(key - 1, channel);
    return (slope(key - 1, channel) + slope(key, channel)) / 2;
}

template <int Channels>
double RampCurve<Channels>::between(std::size_t left, double u, std::size_t channel) const {
    const Key& from = sorted_[left];
    const Key& to = sorted_[left + 1];
    const double a = static_cast<double>(from.values[channel]);
    const double b = static_cast<double>(to.values[channel]);
    switch (static_cast<RampStep>(from.step)) {
    case RampStep::None: return a;
    case RampStep::Smooth: return a + u * u * (3 - 2 * u) * (b - a);
    case RampStep::Spline: {
        const double length = static_cast<double>(to.position) - static_cast<double>(from.position);
        const double ta = tangent(left, channel) * length;
        const double tb = tangent(left + 1, channel) * length;
        const double u2 = u * u;
        const double u3 = u2 * u;
        return (2 * u3 - 3 * u2 + 1) * a + (u3 - 2 * u2 + u) * ta + (3 * u2 - 2 * u3) * b + (u3 - u2) * tb;
    }
    case RampStep::Linear: break;
    }
    return a + u * (b - a);
}

template <int Channels>
typename RampCurve<Channels>::Values RampCurve<Channels>::at(float position) const {
    if (sorted_.empty()) return {};
    if (!(position > sorted_.front().position)) {
        // Of several keys at the first position the last one holds at the position itself.
        const auto& first = sorted_.front();
        if (position != first.position) return first.values;
    }
    if (position >= sorted_.back().position) return sorted_.back().values;
    const auto right = std::upper_bound(sorted_.begin(), sorted_.end(), position,
                                        [](float wanted, const Key& key) { return wanted < key.position; });
    const auto left = static_cast<std::size_t>(right - sorted_.begin()) - 1;
    const double start = static_cast<double>(sorted_[left].position);
    const double length = static_cast<double>(sorted_[left + 1].position) - start;
    if (static_cast<double>(position) == start) return sorted_[left].values;
    const double u = (static_cast<double>(position) - start) / length;
    Values values;
    for (std::size_t i = 0; i < Channels; ++i)
        values[i] = static_cast<float>(between(left, u, i));
    return values;
}

template class RampCurve<1>;
template class RampCurve<3>;

} // namespace vesk::api
