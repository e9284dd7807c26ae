#include "volume/influences.h"

#include <gtest/gtest.h>

namespace vesk::volume {
namespace {

std::vector<int> taken(InfluenceSlots& slots, const std::vector<double>& distances) {
    std::vector<int> result;
    for (const double distance : distances)
        result.push_back(slots.offer({distance, static_cast<int>(result.size()), 0}));
    return result;
}

TEST(InfluenceSlots, FullSlotsYieldOnlyToNearerOffers) {
    InfluenceSlots slots(2);
    EXPECT_EQ(taken(slots, {0.5, 0.7, 0.5, 0.6, 0.4, 0.5}), (std::vector<int>{0, 1, 1, -1, 0, -1}))
        << "the first slot that is farther goes, which need not be the farthest";
    InfluenceSlots one(1);
    EXPECT_EQ(taken(one, {0.5, 0.5, 0.4}), (std::vector<int>{0, -1, 0})) << "an equal one changes nothing";
    EXPECT_EQ(one[0].volume, 2);
    InfluenceSlots none(0);
    EXPECT_EQ(taken(none, {0.5}), std::vector<int>{-1});
    EXPECT_TRUE(none.isEmpty());
}

TEST(InfluenceSlots, TheListIsSortedOnlyInPart) {
    const auto listed = [](const std::vector<double>& distances) {
        InfluenceSlots slots(8);
        taken(slots, distances);
        std::vector<int> order;
        slots.list(order);
        return order;
    };
    // 1: before 0. 2: behind. 3: before 1. 4: behind, though it is farther than 2.
    EXPECT_EQ(listed({0.3, 0.5, 0.1, 0.9, 0.4}), (std::vector<int>{3, 1, 0, 2, 4}));
    EXPECT_EQ(listed({0.3, 0.3}), (std::vector<int>{0, 1}));
    EXPECT_EQ(listed({}), std::vector<int>{});
}

TEST(Kernel, LoneInfluencesAreNotWeighed) {
    KernelWeights weights;
    const std::vector<double> distances = {0.25, 0.75, 2};
    const auto at = [&](std::size_t i) { return distances[i]; };
    const auto ramp = [](float d) { return d > 1 ? -5.0F : 1 - d; };
    weights.weigh(3, at, ramp);
    EXPECT_EQ(weights[0], 0.75F);
    EXPECT_EQ(weights[2], 0) << "negative values count as 0";
    EXPECT_EQ(weights.settled(3), 3.0F) << "0.75 + 0.25 + 0";
    weights.weigh(2, at, [](float) { return 0.0F; });
    EXPECT_EQ(weights.settled(3), 0) << "a sum of 0";
    weights.weigh(1, at, [](float) -> float { throw 1; });
    EXPECT_EQ(weights[0], 1);
    EXPECT_EQ(weights.settled(3), 3);
}

TEST(PointBounds, OriginAndThePointsBeforeTheFirstMaskedOneButTheLast) {
    const std::vector<Vec3> points = {{1, 1, 1}, {2, 2, 2}, {3, 3, 3}, {4, 4, 4}};
    const auto top = [&](const std::vector<char>& inside) {
        const Box box = pointBounds(std::span(points).first(inside.size()), inside);
        EXPECT_EQ(box.min(), Vec3{});
        return box.max().x;
    };
    EXPECT_EQ(top({1, 1, 1, 1}), 3);
    EXPECT_EQ(top({1, 1, 0, 1}), 2);
    EXPECT_EQ(top({0, 1, 1, 1}), 0);
    EXPECT_EQ(top({1}), 0);
    EXPECT_EQ(top({}), 0);
}

Placement at(double x) {
    Placement placement;
    placement.translation = {x, 0, 0};
    placement.matrix.rows[3][0] = x;
    placement.inverse.rows[3][0] = -x;
    return placement;
}

Controls of(int kind, double envelope = 1) {
    Controls controls;
    controls.kind = kind;
    controls.envelope = envelope;
    return controls;
}

std::vector<int> holding(const VolumeList& volumes, const CloudStore& clouds, const Vec3& p,
                         const Box& bounds = Box(Vec3{})) {
    std::vector<int> found;
    InfluenceSearch(volumes, clouds, bounds).eachHolding(p, [&](const Influence& influence) {
        found.push_back(influence.volume);
        if (volumes.controls(static_cast<std::size_t>(influence.volume)).kind == kCloud)
            found.push_back(100 + influence.cloudPoint);
    });
    return found;
}

TEST(Volumes, ThoseBehindASwitchedOffOneStandWhereTheOneBeforeStood) {
    VolumeList volumes;
    volumes.add(of(kSphere), at(10));
    volumes.add(of(kSphere, 0), at(20));
    volumes.add(of(kSphere), at(30));
    volumes.add(of(kCube, 0.5), at(40));
    ASSERT_EQ(volumes.size(), 4U);
    EXPECT_EQ(holding(volumes, CloudStore(), {10, 0, 0}), std::vector<int>{0});
    EXPECT_EQ(holding(volumes, CloudStore(), {20, 0, 0}), std::vector<int>{}) << "switched off";
    EXPECT_EQ(holding(volumes, CloudStore(), {0, 0, 0}), std::vector<int>{2}) << "no transformation";
    EXPECT_EQ(holding(volumes, CloudStore(), {30, 0, 0}), std::vector<int>{3});
    EXPECT_EQ(volumes.placement(3).translation, (Vec3{30, 0, 0}));
}

TEST(Volumes, AFarCloudLeavesItsSliceToTheNext) {
    CloudStore clouds;
    VolumeList volumes;
    for (const double x : {50.0, 0.5, 1.0}) {
        Cloud cloud;
        cloud.points.push_back({{{x, 0, 0}, 1}, {}, 0, {}});
        clouds.add(cloud);
        volumes.add(of(kCloud), at(x));
    }
    EXPECT_EQ(holding(volumes, clouds, {0.5, 0, 0}), std::vector<int>{})
        << "all three are held against the far cloud's box";
    Box wide{Vec3{}};
    wide.grow({60, 0, 0});
    EXPECT_EQ(holding(volumes, clouds, {0.5, 0, 0}, wide), (std::vector<int>{1, 101, 2, 102}));
    EXPECT_EQ(holding(volumes, clouds, {50, 0, 0}, wide), (std::vector<int>{0, 100}));
}

TEST(Volumes, NearestByPlainDistance) {
    CloudStore clouds;
    Cloud cloud;
    cloud.points = {{{{0, 5, 0}, 6}, {}, 0, {}}};
    clouds.add(cloud);
    VolumeList volumes;
    volumes.add(of(kSphere), at(10));
    volumes.add(of(kCube), at(-10));
    volumes.add(of(kCloud), at(0));
    const InfluenceSearch search(volumes, clouds, Box(Vec3{}));
    EXPECT_EQ(search.nearestVolume({7, 0, 0}), 0);
    EXPECT_EQ(search.nearestVolume({-7, 0, 0}), 1);
    EXPECT_EQ(search.nearestVolume({0, 2, 0}), 2) << "3 from the cloud's point";
    EXPECT_EQ(search.nearestVolume({0, 12, 0}), 0) << "outside the cloud's box; of equals the earlier";
    EXPECT_EQ(InfluenceSearch(VolumeList(), clouds, Box()).nearestVolume({}), 0);
}

} // namespace
} // namespace vesk::volume
