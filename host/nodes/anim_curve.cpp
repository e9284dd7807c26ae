#include "host/nodes/anim_curve.h"

#include <algorithm>
#include <cmath>

namespace vesk::nodes {

namespace {

/// Slope of a fixed tangent that points straight up or down.
constexpr double kSteepest = 5729577.9485111479;

double cubic(double a, double b, double c, double d, double u) {
    const double w = 1 - u;
    return w * w * w * a + 3 * w * w * u * b + 3 * w * u * u * c + u * u * u * d;
}

} // namespace

double AnimCurve::segmentSlope(std::size_t first) const {
    const AnimKey &a = keys[first], &b = keys[first + 1];
    return b.time > a.time ? (b.value - a.value) / (b.time - a.time) : 0;
}

double AnimCurve::splineSlope(std::size_t key) const {
    if (keys.size() < 2) return 0;
    if (key == 0) return segmentSlope(0);
    if (key + 1 == keys.size()) return segmentSlope(key - 1);
    const AnimKey &a = keys[key - 1], &b = keys[key + 1];
    return b.time > a.time ? (b.value - a.value) / (b.time - a.time) : 0;
}

double AnimCurve::limitedSlope(std::size_t key) const {
    if (key == 0 || key + 1 >= keys.size()) return 0;
    const double back = segmentSlope(key - 1), ahead = segmentSlope(key);
    if (back * ahead <= 0) return 0;
    const double most = 3 * std::min(std::abs(back), std::abs(ahead));
    return std::clamp(splineSlope(key), -most, most);
}

double AnimCurve::slope(std::size_t key, Tangent tangent, double x, double y, bool incoming) const {
    switch (tangent) {
    case Tangent::Fixed:
        if (x > 0) return std::clamp(y / x, -kSteepest, kSteepest);
        return y == 0 ? 0 : std::copysign(kSteepest, y);
    case Tangent::Linear:
    case Tangent::Slow:
    case Tangent::Fast:
        if (incoming) return key > 0 ? segmentSlope(key - 1) : splineSlope(key);
        return key + 1 < keys.size() ? segmentSlope(key) : splineSlope(key);
    case Tangent::Flat:
    case Tangent::Step:
    case Tangent::StepNext: return 0;
    case Tangent::Clamped: {
        const double value = keys[key].value;
        const bool flat = (key > 0 && keys[key - 1].value == value) ||
                          (key + 1 < keys.size() && keys[key + 1].value == value);
        return flat ? 0 : splineSlope(key);
    }
    case Tangent::Plateau:
    case Tangent::Auto: return limitedSlope(key);
    case Tangent::Smooth:
    case Tangent::Spline: break;
    }
    return splineSlope(key);
}

double AnimCurve::inSlope(std::size_t key) const {
    return slope(key, keys[key].in, keys[key].inX, keys[key].inY, true);
}

double AnimCurve::outSlope(std::size_t key) const {
    return slope(key, keys[key].out, keys[key].outX, keys[key].outY, false);
}

double AnimCurve::onWeightedSegment(const AnimKey& from, const AnimKey& to, double slopeOut, double slopeIn,
                                    double time) const {
    const double span = to.time - from.time;
    const auto handle = [span](Tangent tangent, double x) {
        return std::clamp(tangent == Tangent::Fixed ? x / 3 : span / 3, 0.0, span);
    };
    const double out = handle(from.out, from.outX), in = handle(to.in, to.inX);
    const double outRise = from.out == Tangent::Fixed && from.outX <= 0 ? from.outY / 3 : slopeOut * out;
    const double inRise = to.in == Tangent::Fixed && to.inX <= 0 ? to.inY / 3 : slopeIn * in;
    // Control points within the segment: time only grows with the curve's parameter.
    double low = 0, high = 1;
    for (int i = 0; i < 60; ++i) {
        const double middle = (low + high) / 2;
        if (cubic(from.time, from.time + out, to.time - in, to.time, middle) < time) {
            low = middle;
        } else {
            high = middle;
        }
    }
    return cubic(from.value, from.value + outRise, to.value - inRise, to.value, (low + high) / 2);
}

double AnimCurve::onSegment(std::size_t first, double time) const {
    const AnimKey &from = keys[first], &to = keys[first + 1];
    if (from.out == Tangent::Step) return from.value;
    if (from.out == Tangent::StepNext) return to.value;
    const double slopeOut = outSlope(first), slopeIn = inSlope(first + 1);
    if (weighted) return onWeightedSegment(from, to, slopeOut, slopeIn, time);
    const double span = to.time - from.time;
    return cubic(from.value, from.value + slopeOut * span / 3, to.value - slopeIn * span / 3, to.value,
                 (time - from.time) / span);
}

double AnimCurve::inside(double time) const {
    const auto next = std::upper_bound(keys.begin(), keys.end(), time,
                                       [](double t, const AnimKey& key) { return t < key.time; });
    const auto index = static_cast<std::size_t>(next - keys.begin());
    if (index == 0) return keys.front().value;
    if (keys[index - 1].time == time || index == keys.size()) return keys[index - 1].value;
    return onSegment(index - 1, time);
}

double AnimCurve::outside(double time, Infinity infinity) const {
    const AnimKey &first = keys.front(), &last = keys.back();
    const bool isBefore = time < first.time;
    const AnimKey& end = isBefore ? first : last;
    const double span = last.time - first.time;
    if (infinity == Infinity::Linear)
        return end.value + (time - end.time) * (isBefore ? outSlope(0) : inSlope(keys.size() - 1));
    if (infinity == Infinity::Constant || span <= 0) return end.value;
    const double turns = std::floor((time - first.time) / span);
    double place = (time - first.time) - turns * span;
    if (infinity == Infinity::Oscillate && std::fmod(turns, 2) != 0) place = span - place;
    const double rise = infinity == Infinity::CycleRelative ? turns * (last.value - first.value) : 0;
    return inside(first.time + place) + rise;
}

double AnimCurve::at(double time) const {
    if (keys.empty()) return 0;
    if (time < keys.front().time) return outside(time, before);
    if (time > keys.back().time) return outside(time, after);
    return inside(time);
}

} // namespace vesk::nodes
