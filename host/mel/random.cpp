#include "host/mel/random.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vesk::mel {

namespace {

std::uint64_t scrambled(std::uint64_t bits) {
    bits = (bits ^ (bits >> 30U)) * 0xBF58476D1CE4E5B9ULL;
    bits = (bits ^ (bits >> 27U)) * 0x94D049BB133111EBULL;
    return bits ^ (bits >> 31U);
}

/// The slope of the noise at a lattice point, along the offset: one of the twelve edge directions of a cube.
double slope(std::int64_t x, std::int64_t y, std::int64_t z, double dx, double dy, double dz) {
    const std::uint64_t hash =
        scrambled(static_cast<std::uint64_t>(x) * 0x9E3779B97F4A7C15ULL ^
                  scrambled(static_cast<std::uint64_t>(y) ^ scrambled(static_cast<std::uint64_t>(z))));
    const std::uint64_t edge = hash % 12;
    const double first = edge < 8 ? dx : dy;
    const double second = edge < 4 ? dy : dz;
    return ((edge & 1U) != 0 ? -first : first) + ((edge & 2U) != 0 ? -second : second);
}

double faded(double t) { return t * t * t * (t * (t * 6.0 - 15.0) + 10.0); }

double mixed(double a, double b, double t) { return a + (b - a) * t; }

} // namespace

std::uint64_t Random::next() { return scrambled(state_ += 0x9E3779B97F4A7C15ULL); }

double Random::uniform() { return static_cast<double>(next() >> 11U) * 0x1p-53; }

double Random::gauss() {
    if (hasSpare_) {
        hasSpare_ = false;
        return spare_;
    }
    constexpr double turn = 6.283185307179586;
    const double radius = std::sqrt(-2.0 * std::log(1.0 - uniform()));
    const double angle = turn * uniform();
    spare_ = radius * std::sin(angle);
    hasSpare_ = true;
    return radius * std::cos(angle);
}

MVector Random::inBall() {
    MVector point;
    do {
        point = MVector(2.0 * uniform() - 1.0, 2.0 * uniform() - 1.0, 2.0 * uniform() - 1.0);
    } while (point * point > 1.0);
    return point;
}

double noise(const MVector& point) {
    constexpr double farthest = 0x1p50;
    const double largest = std::max({std::abs(point.x), std::abs(point.y), std::abs(point.z)});
    if (!(largest < farthest) || std::isnan(point.x + point.y + point.z)) return 0.0;
    const std::array<double, 3> corner{std::floor(point.x), std::floor(point.y), std::floor(point.z)};
    const std::array<double, 3> d{point.x - corner[0], point.y - corner[1], point.z - corner[2]};
    const auto at = [&](int i, int j, int k) {
        return slope(static_cast<std::int64_t>(corner[0]) + i, static_cast<std::int64_t>(corner[1]) + j,
                     static_cast<std::int64_t>(corner[2]) + k, d[0] - i, d[1] - j, d[2] - k);
    };
    const double u = faded(d[0]);
    const double v = faded(d[1]);
    const double w = faded(d[2]);
    const double near = mixed(mixed(at(0, 0, 0), at(1, 0, 0), u), mixed(at(0, 1, 0), at(1, 1, 0), u), v);
    const double far = mixed(mixed(at(0, 0, 1), at(1, 0, 1), u), mixed(at(0, 1, 1), at(1, 1, 1), u), v);
    return std::clamp(mixed(near, far, w), -1.0, 1.0);
}

MVector noiseVector(const MVector& point) {
    // Far-off places of the same field have nothing to do with each other.
    return {noise(point), noise(point + MVector(131.7, 57.3, 211.9)),
            noise(point + MVector(-83.1, 173.5, -19.4))};
}

} // namespace vesk::mel
