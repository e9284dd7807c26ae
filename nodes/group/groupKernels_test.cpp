// The stages of group over plain lists and points.

#include "nodes/group/groupMirror.h"
#include "nodes/group/groupOperations.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>

namespace vesk::nodes {

namespace {

using Ids = std::vector<int>;

double& along(MPoint& p, int axis) { return axis == 0 ? p.x : axis == 1 ? p.y : p.z; }

MPoint reflect(MPoint p, const MirrorSettings& s) {
    MPoint origin = s.origin;
    double& c = along(p, s.axis);
    c = c - 2 * (c - along(origin, s.axis));
    return p;
}

bool isLeftOut(MPoint p, const MirrorSettings& s) {
    const double c = along(p, s.axis);
    return (s.direction == MirrorDirection::kPositiveToNegative && c < 0) ||
           (s.direction == MirrorDirection::kNegativeToPositive && c > 0);
}

/// The rule in its plain form: buckets by key, every cell tried for every selected point.
Ids plainMirror(const std::vector<MPoint>& points, const Ids& selected, const MirrorSettings& s) {
    MBoundingBox all;
    for (const auto& p : points)
        all.expand(p);
    const MBoundingBox reach = mirrorReach(points, selected, s.radius);
    const double extent[] = {all.width(), all.height(), all.depth()};
    const int keyZ = mirrorKeyResolution(s.resolution[2]);
    std::map<long, std::pair<MBoundingBox, Ids>> cells;
    for (std::size_t i = 0; i < points.size(); ++i) {
        MPoint q = reflect(points[i], s), low = all.min();
        if (!reach.contains(q) || isLeftOut(q, s)) continue;
        MPoint high = low;
        long at[3];
        for (int axis = 0; axis < 3; ++axis) {
            const double size = extent[axis] / s.resolution[axis];
            const double distance = std::abs(along(q, axis) - along(low, axis));
            at[axis] = std::max(0L, static_cast<long>(std::ceil(distance / size)) - 1);
            along(high, axis) = along(low, axis) + static_cast<double>(at[axis] + 1) * size;
        }
        for (int axis = 0; axis < 3; ++axis)
            along(low, axis) += static_cast<double>(at[axis]) * (extent[axis] / s.resolution[axis]);
        auto& cell = cells[(at[1] * keyZ + at[2]) * s.resolution[0] + at[0]];
        cell.first = MBoundingBox(reflect(low, s), reflect(high, s));
        cell.second.push_back(static_cast<int>(i));
    }
    std::map<int, int> joined;
    for (const int index : selected) {
        const MPoint& p = points[static_cast<std::size_t>(index)];
        if (isLeftOut(p, s)) continue;
        const MPoint q = reflect(p, s);
        for (const auto& [key, cell] : cells) {
            double squared = 0;
            for (unsigned axis = 0; axis < 3; ++axis) {
                const double out =
                    std::max({cell.first.min()[axis] - q[axis], 0.0, q[axis] - cell.first.max()[axis]});
                squared += out * out;
            }
            if (!cell.first.contains(q) && squared > s.radius * s.radius) continue;
            for (const int candidate : cell.second) {
                if (points[static_cast<std::size_t>(candidate)].distanceTo(q) <= s.radius)
                    joined[candidate] = 1;
            }
        }
    }
    Ids ids;
    for (const auto& [id, is] : joined)
        ids.push_back(id);
    return ids;
}

} // namespace

TEST(GroupPattern, TakesNumbersAndRangesBelowTheCount) {
    EXPECT_EQ(patternIndices("*", 3), (Ids{0, 1, 2}));
    EXPECT_EQ(patternIndices("5:2 1 7", 8), (Ids{2, 3, 4, 5, 1, 7}));
    EXPECT_EQ(patternIndices("6:99 8", 8), (Ids{6, 7}));
    for (const char* nothing : {"", "word", "3:", ":3", "-1", "1:2:3", "1.5", "99999999999999999999"})
        EXPECT_EQ(patternIndices(nothing, 8), Ids()) << nothing;
    EXPECT_EQ(patternIndices("*", 0), Ids());
}

TEST(GroupRange, StopsBelowItsEnd) {
    EXPECT_EQ(rangeIndices(0, -1, 1, 2, 10), (Ids{0, 2, 4, 6, 8})) << "the last is left out";
    EXPECT_EQ(rangeIndices(0, 0, 1, 3, 7), (Ids{0, 3, 6}));
    // From 1: a first run without its multiple of four, then two of each four.
    EXPECT_EQ(rangeIndices(1, 0, 2, 4, 10), (Ids{1, 4, 5, 8, 9}));
    EXPECT_EQ(rangeIndices(0, -10, 1, 1, 10), Ids());
    EXPECT_EQ(rangeIndices(0, -11, 1, 1, 10), Ids());
}

TEST(GroupMirror, FindsThePlainRulesPoints) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> spread(-1, 1);
    for (int round = 0; round < 60; ++round) {
        MirrorSettings s;
        s.axis = round % 3;
        s.origin = MPoint(spread(random) / 4, 0, spread(random) / 4);
        s.direction = static_cast<MirrorDirection>(round / 3 % 3);
        s.radius = round % 2 ? 0.3 : 0.05;
        s.resolution[0] = 2 + round % 5;
        s.resolution[2] = round % 4 ? 6 : 3; // cells along z share keys
        std::vector<MPoint> points;
        Ids selected;
        for (int i = 0; i < 300; ++i) {
            points.emplace_back(spread(random), spread(random), spread(random));
            if (i % 3) points.push_back(reflect(points.back(), s)); // pairs that meet
            if (i % 4 == 0) selected.push_back(static_cast<int>(points.size()) - 1);
        }
        EXPECT_EQ(mirroredPoints(points, selected, s), plainMirror(points, selected, s)) << round;
    }
}

TEST(GroupMirror, SidesAreToldBySign) {
    const std::vector<MPoint> points{{1, 0, 0}, {-1, 0, 0}, {2, 0, 0}, {-2.05, 0, 0}};
    MirrorSettings s;
    const Ids all{0, 1, 2, 3};
    EXPECT_EQ(mirroredPoints(points, Ids{0, 2}, s), (Ids{1, 3}));
    EXPECT_EQ(mirroredPoints(points, all, s), all);
    s.direction = MirrorDirection::kPositiveToNegative;
    EXPECT_EQ(mirroredPoints(points, all, s), (Ids{1, 3}));
    s.direction = MirrorDirection::kNegativeToPositive;
    EXPECT_EQ(mirroredPoints(points, all, s), (Ids{0, 2}));
    s.radius = 0.01;
    EXPECT_EQ(mirroredPoints(points, all, s), (Ids{0})) << "the other pair is too far apart";
    s.direction = MirrorDirection::kBothWays;
    s.precise = false;
    // Without precision whatever is reflected into the reach of the selection: from 0.9 to 2.1.
    s.radius = 0.1;
    EXPECT_EQ(mirroredPoints(points, Ids{0, 2}, s), (Ids{1, 3}));
    EXPECT_EQ(mirroredPoints(points, Ids(), s), Ids());
    EXPECT_EQ(mirrorKeyResolution(3), 2);
    EXPECT_EQ(mirrorKeyResolution(6144), 6143);
    EXPECT_EQ(mirrorKeyResolution(10), 10);
}

TEST(GroupMirror, FlatAndBadPointsDoNoHarm) {
    const double none = std::nan("");
    const std::vector<MPoint> points{{1, 0, 0}, {-1, 0, 0}, {none, none, none}};
    EXPECT_EQ(mirroredPoints(points, Ids{0, 2}, MirrorSettings()), (Ids{1}));
}

} // namespace vesk::nodes
