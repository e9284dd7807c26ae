#include "volume/sphere_index.h"

#include <limits>
#include <map>

namespace vesk::volume {

namespace {

constexpr double kFarthestCell = 0x1p50;

std::int64_t cellOf(double coordinate, double perUnit) {
    // Far outside all points that have a cell; a coordinate that is no number gets any.
    const double cell = std::floor(coordinate * perUnit);
    return static_cast<std::int64_t>(cell < kFarthestCell ? std::max(cell, -kFarthestCell) : kFarthestCell);
}

/// More than rounding can make of the distance between a point and the centre.
double slack(double center, double radius) { return 1e-12 * (radius + std::abs(center)); }

template <class Visit>
void eachCell(const Sphere& s, double perUnit, Visit&& visit) {
    struct Range {
        std::int64_t first, last;
    };
    const auto range = [&](double center) {
        const double reach = s.radius + slack(center, s.radius);
        return Range{cellOf(center - reach, perUnit), cellOf(center + reach, perUnit)};
    };
    const Range xs = range(s.center.x), ys = range(s.center.y), zs = range(s.center.z);
    for (std::int64_t x = xs.first; x <= xs.last; ++x) {
        for (std::int64_t y = ys.first; y <= ys.last; ++y) {
            for (std::int64_t z = zs.first; z <= zs.last; ++z)
                visit(x, y, z);
        }
    }
}

bool isFinite(const Vec3& v) { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }

/// The edge of a sphere's cells: more than its diameter, and not so small that cells cannot be counted.
int exponentFor(const Sphere& s, double farthest) {
    const double smallest = farthest * 0x1p-36 + std::numeric_limits<double>::min() * 0x1p10;
    return std::ilogb(std::max(2.001 * s.radius, smallest)) + 1;
}

} // namespace

SphereIndex::SphereIndex(std::span<const Sphere> spheres) {
    double farthest = 0;
    for (const auto& s : spheres) {
        if (!isFinite(s.center)) continue;
        farthest = std::max({farthest, std::abs(s.center.x), std::abs(s.center.y), std::abs(s.center.z)});
    }
    std::map<int, std::vector<std::uint32_t>> byExponent;
    for (std::uint32_t place = 0; place < spheres.size(); ++place) {
        const Sphere& s = spheres[place];
        if (!(s.radius >= 0)) continue; // nothing is inside
        // Cells beyond this size would not be numbers any more.
        if (s.radius > 0x1p1000 || farthest > 0x1p1000 || !isFinite(s.center)) {
            everywhere_.push_back(place);
        } else {
            byExponent[exponentFor(s, farthest)].push_back(place);
        }
    }
    for (const auto& [exponent, members] : byExponent) {
        Level& level = levels_.emplace_back();
        level.exponent = exponent;
        level.perUnit = std::ldexp(1.0, -exponent);
        level.fill(spheres, members);
    }
}

void SphereIndex::Level::fill(std::span<const Sphere> spheres, const std::vector<std::uint32_t>& members) {
    std::size_t buckets = 16;
    while (buckets < 4 * members.size())
        buckets *= 2;
    mask = buckets - 1;
    // Cells of one sphere that share a bucket enter it once.
    constexpr auto kNobody = std::numeric_limits<std::uint32_t>::max();
    std::vector<std::uint32_t> last(buckets, kNobody);
    const auto eachEntry = [&](auto&& enter) {
        std::fill(last.begin(), last.end(), kNobody);
        for (const std::uint32_t place : members) {
            eachCell(spheres[place], perUnit, [&](std::int64_t x, std::int64_t y, std::int64_t z) {
                const std::uint64_t bucket = bucketOf(x, y, z);
                if (last[bucket] == place) return;
                last[bucket] = place;
                enter(bucket, place);
            });
        }
    };
    start.assign(buckets + 1, 0);
    eachEntry([&](std::uint64_t bucket, std::uint32_t) { ++start[bucket + 1]; });
    for (std::size_t i = 0; i < buckets; ++i)
        start[i + 1] += start[i];
    places.resize(start.back());
    std::vector<std::uint32_t> next(start.begin(), start.end() - 1);
    eachEntry([&](std::uint64_t bucket, std::uint32_t place) { places[next[bucket]++] = place; });
}

std::uint64_t SphereIndex::Level::bucketOf(std::int64_t x, std::int64_t y, std::int64_t z) const {
    std::uint64_t h = static_cast<std::uint64_t>(x) * 0x9e3779b97f4a7c15U ^
                      static_cast<std::uint64_t>(y) * 0xc2b2ae3d27d4eb4fU ^
                      static_cast<std::uint64_t>(z) * 0x165667b19e3779f9U;
    h ^= h >> 32;
    h *= 0xd6e8feb86659fd93U;
    h ^= h >> 32;
    return h & mask;
}

std::span<const std::uint32_t> SphereIndex::Level::bucketAt(const Vec3& p) const {
    const std::uint64_t bucket = bucketOf(cellOf(p.x, perUnit), cellOf(p.y, perUnit), cellOf(p.z, perUnit));
    return std::span(places).subspan(start[bucket], start[bucket + 1] - start[bucket]);
}

std::vector<std::uint32_t> SphereIndex::gathered(const Vec3& p) const {
    std::vector<std::uint32_t> places = everywhere_;
    for (const auto& level : levels_) {
        const auto bucket = level.bucketAt(p);
        places.insert(places.end(), bucket.begin(), bucket.end());
    }
    std::sort(places.begin(), places.end());
    return places;
}

} // namespace vesk::volume
