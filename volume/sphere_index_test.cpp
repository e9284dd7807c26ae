#include "volume/cloud_store.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace vesk::volume {
namespace {

using Hits = std::vector<std::pair<std::size_t, double>>;

/// What every query is compared with: all spheres, one after the other.
Hits plainLoop(const std::vector<Sphere>& spheres, const Vec3& p) {
    Hits hits;
    for (std::size_t i = 0; i < spheres.size(); ++i) {
        const double distance = distanceInside(spheres[i], p);
        if (distance != kOutside) hits.emplace_back(i, distance);
    }
    return hits;
}

Hits indexed(const SphereIndex& index, const std::vector<Sphere>& spheres, const Vec3& p,
             std::size_t* visited = nullptr) {
    Hits hits;
    index.eachNear(p, [&](std::uint32_t i) {
        if (visited) ++*visited;
        const double distance = distanceInside(spheres[i], p);
        if (distance != kOutside) hits.emplace_back(i, distance);
    });
    return hits;
}

void expectSame(const Hits& a, const Hits& b) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        EXPECT_EQ(a[i].first, b[i].first);
        EXPECT_TRUE(a[i].second == b[i].second || (std::isnan(a[i].second) && std::isnan(b[i].second)));
    }
}

class SphereSearch : public ::testing::Test {
  protected:
    double number(double low, double high) { return std::uniform_real_distribution(low, high)(random); }
    Vec3 place(double size) { return {number(-size, size), number(-size, size), number(-size, size)}; }
    std::mt19937_64 random{7};
};

TEST_F(SphereSearch, FindsWhatThePlainLoopFindsInTheSameOrder) {
    // Size of the cloud, smallest and largest radius as powers of ten.
    const double clouds[][3] = {{1, -1, -1}, {100, 0, 1}, {1, -9, 2}, {1e12, -3, 12}, {1e-12, -13, -11}};
    for (const auto& [size, low, high] : clouds) {
        std::vector<Sphere> spheres;
        for (int i = 0; i < 300; ++i)
            spheres.push_back({place(size), std::pow(10, number(low, high))});
        const SphereIndex index(spheres);
        for (int i = 0; i < 300; ++i) {
            const Sphere& s = spheres[static_cast<std::size_t>(i)];
            for (const Vec3& p : {place(size), s.center, s.center + Vec3{s.radius, 0, 0},
                                  s.center + Vec3{0, -s.radius, 0}, s.center + place(s.radius)})
                expectSame(indexed(index, spheres, p), plainLoop(spheres, p));
        }
    }
}

TEST_F(SphereSearch, OddSpheresHideNoOther) {
    const double nan = std::nan(""), infinity = std::numeric_limits<double>::infinity();
    const std::vector<Sphere> spheres = {
        {{0, 0, 0}, 0},        {{0, 0, 0}, -1},    {{nan, 0, 0}, 1}, {{1, 0, 0}, nan}, {{1, 0, 0}, infinity},
        {{infinity, 0, 0}, 1}, {{0, 0, 0}, 1e308}, {{0.5, 0, 0}, 1}, {{0, 0, 0}, 0},   {{1e300, 0, 0}, 1}};
    const SphereIndex index(spheres);
    for (const Vec3& p : {Vec3{}, Vec3{1, 0, 0}, Vec3{1e300, 0, 0}, Vec3{nan, 0, 0}, Vec3{infinity, 0, 0}})
        expectSame(indexed(index, spheres, p), plainLoop(spheres, p));
    EXPECT_EQ(plainLoop(spheres, {}).size(), 5U) << "the two bare ones, the two huge ones and the one of 1";
    EXPECT_TRUE(indexed(SphereIndex(std::span<const Sphere>()), {}, {}).empty());
}

TEST_F(SphereSearch, LooksAtFewSpheresThatDoNotHoldThePoint) {
    // Two dense crowds far apart and one sphere round them all: what defeats a single grid over the cloud.
    std::vector<Sphere> spheres = {{{500, 0, 0}, 1000}};
    for (int i = 0; i < 4000; ++i)
        spheres.push_back({place(10) + Vec3{i % 2 == 0 ? 0.0 : 1000.0, 0, 0}, 0.5});
    const SphereIndex index(spheres);
    std::size_t visited = 0, held = 0;
    for (int i = 0; i < 1000; ++i)
        held += indexed(index, spheres, place(10), &visited).size();
    EXPECT_LT(visited, 20 * held);
    EXPECT_GT(held, 1000U);
}

// --- the store
// -------------------------------------------------------------------------------------------------------

Cloud cloud(std::initializer_list<Sphere> spheres, double envelope = 1) {
    Cloud made;
    made.envelope = envelope;
    for (const auto& sphere : spheres)
        made.points.push_back({sphere, {}, 0, {}});
    return made;
}

TEST(Clouds, BoxesHoldThePointsThatHaveARadius) {
    CloudStore store;
    store.add(cloud({{{1, 1, 1}, 0.5}, {{9, 9, 9}, 0}, {{2, 1, 1}, 0.25}, {{std::nan(""), 0, 0}, 1}}));
    EXPECT_EQ(store.box(0).min(), (Vec3{0.5, 0.5, 0.5}));
    EXPECT_EQ(store.box(0).max(), (Vec3{2.25, 1.5, 1.5}));
    CloudStore bare({.onlyWholeClouds = true, .boxHoldsBarePoints = true});
    bare.add(cloud({{{1, 1, 1}, 0.5}, {{9, 9, 9}, 0}}));
    EXPECT_EQ(bare.box(0).max(), (Vec3{9, 9, 9}));
}

TEST(Clouds, WhichOnesTakePart) {
    Cloud mismatch = cloud({{{0, 0, 0}, 1}}, 0.5);
    mismatch.radiiMatch = mismatch.allMatch = false;
    Cloud shortWeights = cloud({{{0, 0, 0}, 1}});
    shortWeights.allMatch = false;
    for (const bool onlyWhole : {false, true}) {
        CloudStore store({.onlyWholeClouds = onlyWhole});
        for (const Cloud& one : {mismatch, shortWeights, cloud({}, 0.5), cloud({}, 1), cloud({{{}, 1}}, 0.5)})
            store.add(one);
        std::size_t hits[5] = {};
        for (std::size_t i = 0; i < 5; ++i)
            store.eachHolding(i, {0, 0.5, 0}, [&](std::size_t, double distance) {
                ++hits[i];
                EXPECT_DOUBLE_EQ(distance, 0.5);
            });
        EXPECT_EQ(hits[0], onlyWhole ? 0U : 1U);
        EXPECT_EQ(hits[1], 1U) << "weights are not what decides";
        EXPECT_TRUE(store.box(2).contains({})) << "an empty slice has its box at the origin";
        EXPECT_EQ(store.box(3).isEmpty(), !onlyWhole) << "an envelope of 1 gives an empty cloud no box";
        EXPECT_EQ(hits[4], onlyWhole ? 0U : 1U);
    }
}

} // namespace
} // namespace vesk::volume
