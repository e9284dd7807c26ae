// The fast transfer beside the plain loops.

#include "bench/plain_transfer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

namespace vesk::nodes {
namespace {

using volume::Vec3;

class Transfer : public ::testing::Test {
  protected:
    double number(double low, double high) { return std::uniform_real_distribution(low, high)(random); }
    int whole(int low, int high) { return std::uniform_int_distribution(low, high)(random); }
    Vec3 place(double size) { return {number(-size, size), number(-size, size), number(-size, size)}; }

    CurveRamp curve() {
        std::vector<CurveRamp::Entry> entries;
        for (int i = whole(1, 3); i > 0; --i)
            entries.push_back(
                {static_cast<float>(number(0, 1)), {static_cast<float>(number(-0.3, 1.2))}, whole(0, 3)});
        return CurveRamp(entries);
    }
    ColorRamp colors() {
        const auto channel = [&] { return static_cast<float>(number(0, 1)); };
        return ColorRamp(
            {{0, {channel(), channel(), channel()}, 1}, {1, {channel(), channel(), channel()}, 1}});
    }
    /// A turned, stretched place; the inverse is made by hand: turn about y, then scale, then move.
    volume::Placement placement() {
        volume::Placement at;
        const double angle = number(0, 6), scale = number(0.5, 2), c = std::cos(angle), s = std::sin(angle);
        at.translation = place(1.5);
        at.matrix = {{{scale * c, 0, -scale * s, 0},
                      {0, scale, 0, 0},
                      {scale * s, 0, scale * c, 0},
                      {at.translation.x, at.translation.y, at.translation.z, 1}}};
        volume::Matrix turn = {
            {{c / scale, 0, s / scale, 0}, {0, 1 / scale, 0, 0}, {-s / scale, 0, c / scale, 0}}};
        const Vec3 back = turn.direction(at.translation * -1);
        turn.rows[3][0] = back.x, turn.rows[3][1] = back.y, turn.rows[3][2] = back.z;
        at.inverse = turn;
        return at;
    }
    volume::Cloud cloud(double envelope) {
        volume::Cloud made;
        made.envelope = envelope;
        const Vec3 middle = place(whole(0, 4) == 0 ? 20 : 1);
        for (int i = whole(0, 4) == 0 ? 0 : whole(1, 60); i > 0; --i) {
            made.points.push_back({{middle + place(1), whole(0, 9) == 0 ? 0 : number(0, 0.5)},
                                   place(1),
                                   number(-0.2, 1.2),
                                   {number(0, 1), number(0, 1), number(0, 1), number(0, 1)}});
        }
        return made;
    }
    plain::Volume volume() {
        plain::Volume v;
        v.controls.kind = whole(0, 3);
        v.controls.envelope = whole(0, 5) == 0 ? 0 : whole(0, 5) == 0 ? 0.5 : 1;
        v.controls.normal = whole(0, 3);
        v.controls.capsule = {number(0, 1),
                              number(0, 1),
                              {number(0, 2), number(0, 2), number(0, 2)},
                              {number(0, 2), number(0, 2), number(0, 2)}};
        v.placement = placement();
        v.cloud = cloud(v.controls.envelope);
        v.ramps = {curve(), curve(), curve(), curve(), curve(), colors()};
        return v;
    }
    TransferPoints points(std::size_t count) {
        TransferPoints p;
        for (std::size_t i = 0; i < count; ++i) {
            p.positions.push_back(place(2));
            p.normals.push_back(place(1));
            p.radii.push_back(number(0, 1));
            p.weights.push_back(whole(0, 3) == 0 ? 0 : number(0, 1));
            p.colors.push_back(whole(0, 1) == 0 ? Rgba{} : Rgba{0.5F, 0.25F, 0, 1});
        }
        p.outRgba.assign(whole(0, 1) == 0 ? 0 : 4 * count, 0.125);
        return p;
    }

    std::mt19937_64 random{11};
};

template <class T>
bool sameBits(const std::vector<T>& a, const std::vector<T>& b) {
    // NaN among the values: a comparison of numbers would call equal results different.
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}

TEST_F(Transfer, GivesTheBitsOfThePlainLoops) {
    int changed = 0;
    for (int round = 0; round < 300; ++round) {
        std::vector<plain::Volume> volumes;
        for (int i = whole(1, 7); i > 0; --i)
            volumes.push_back(volume());
        TransferSettings s;
        s.maxInfluences = whole(1, 6);
        s.position = s.weight = s.color = s.normal = s.radius = true;
        s.merge = whole(0, 2) > 0;
        s.blend = whole(0, 1) == 0;
        s.alphaModulate = whole(0, 1) == 0;
        s.solidAlpha = whole(0, 1) == 0;
        s.areParticles = whole(0, 1) == 0;
        const CurveRamp kernel = curve();
        const TransferPoints start = points(60);
        std::vector<char> inside(60, 1);
        for (char& one : inside)
            one = round % 3 == 0 || whole(0, 20) > 0 ? 1 : 0;

        volume::VolumeList list;
        volume::CloudStore clouds;
        std::vector<VolumeRamps> ramps;
        for (const auto& v : volumes) {
            list.add(v.controls, v.placement);
            ramps.push_back(v.ramps);
            if (v.controls.envelope > 0 && v.controls.kind == volume::kCloud) clouds.add(v.cloud);
        }
        TransferPoints fast = start, slow = start;
        transfer(s, {list, clouds, ramps, kernel}, inside, fast);
        plain::transfer(s, volumes, kernel, inside, slow);
        ASSERT_TRUE(sameBits(fast.positions, slow.positions)) << round;
        ASSERT_TRUE(sameBits(fast.normals, slow.normals)) << round;
        ASSERT_TRUE(sameBits(fast.radii, slow.radii)) << round;
        ASSERT_TRUE(sameBits(fast.weights, slow.weights)) << round;
        ASSERT_TRUE(sameBits(fast.colors, slow.colors)) << round;
        ASSERT_TRUE(sameBits(fast.outRgba, slow.outRgba)) << round;
        changed += sameBits(fast.positions, start.positions) ? 0 : 1;
    }
    EXPECT_GT(changed, 200) << "most set-ups reach some point";
}

} // namespace
} // namespace vesk::nodes
