#include "fluid/fluid_3d.h"

#include "fluid/fluid_samples.h"
#include "fluid/plain_reference.h"

namespace vesk::fluid {

namespace {

using namespace test;

TEST(Borders, AreCopiedFromTheNextLayerOrZeroed) {
    struct Case {
        Field before, copied, zeroed;
    };
    const Case cases[] = {{{1, 2, 3, 4, 5}, {2, 2, 3, 4, 4}, {0, 2, 3, 4, 0}},
                          {{1, 2, 3}, {2, 2, 2}, {0, 2, 0}},
                          {{1, 2}, {2, 2}, {0, 0}},
                          {{1}, {1}, {0}},
                          {{}, {}, {}}};
    using Change = void (*)(float*, const GridSize&);
    const Change copies[] = {FLUID_3D::copyBorderX, FLUID_3D::copyBorderY, FLUID_3D::copyBorderZ};
    const Change zeroes[] = {FLUID_3D::zeroBorderX, FLUID_3D::zeroBorderY, FLUID_3D::zeroBorderZ};
    for (const Case& c : cases) {
        for (int axis = 0; axis < 3; ++axis) {
            // Three equal lines along the axis, side by side along another.
            GridSize res{1, 1, 1};
            res[axis] = static_cast<int>(c.before.size());
            res[(axis + 1) % 3] = 3;
            const auto lines = [&](const Field& line) {
                return fieldOf(res, [&](int x, int y, int z) { return line[std::array{x, y, z}[axis]]; });
            };
            Field copied = lines(c.before), zeroed = copied;
            copies[axis](copied.data(), res);
            zeroes[axis](zeroed.data(), res);
            EXPECT_EQ(copied, lines(c.copied)) << "axis " << axis;
            EXPECT_EQ(zeroed, lines(c.zeroed)) << "axis " << axis;
        }
    }
}

float tracedBack(const GridSize& res, const Field& field, const Velocity& v, float dt, int x, int y, int z) {
    Field result(field.size());
    FLUID_3D::advectSemiLagrange(dt, v.x.data(), v.y.data(), v.z.data(), field.data(), result.data(), res);
    return result[plain::cellAt(res, x, y, z)];
}

TEST(SemiLagrange, SamplesTrilinearlyWhereTheCellCameFrom) {
    const GridSize res{5, 6, 7};
    const Field ramp = fieldOf(res, [](int x, int y, int z) { return x + 10 * y + 100 * z; });
    const Field product = fieldOf(res, [](int x, int y, int z) { return x * y * z; });
    const Velocity v{uniform(res, 1), uniform(res, 0), uniform(res, -2)};
    // back by 0.25 along x, on by 0.5 along z
    EXPECT_EQ(tracedBack(res, ramp, v, 0.25F, 2, 3, 4), 1.75F + 30 + 450);
    EXPECT_EQ(tracedBack(res, product, v, 0.25F, 2, 3, 4), 1.75F * 3 * 4.5F);
    // limited to [0.5, 3.5] by [0.5, 4.5] by [0.5, 5.5]
    EXPECT_EQ(tracedBack(res, ramp, v, 0.25F, 0, 0, 6), 0.5F + 5 + 550);
    EXPECT_EQ(tracedBack(res, ramp, v, 0.25F, 4, 5, 0), 3.5F + 45 + 50);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(tracedBack(res, ramp, {uniform(res, nan), uniform(res, 0), uniform(res, 0)}, 1, 3, 2, 2),
              0.5F + 20 + 200);
    const GridSize flat{5, 1, 1};
    const Field line = fieldOf(flat, [](int x, int, int) { return 8 * x; });
    EXPECT_EQ(tracedBack(flat, line, {uniform(flat, 0.25F), uniform(flat, 9), uniform(flat, -9)}, 1, 3, 0, 0),
              22);
}

TEST(MacCormack, CorrectsLimitsAndCopiesBorders) {
    // An impulse moved by half a cell along x. Forward: 0 0 4 4 0 0. Back again: 0 2 4 2 0 0.
    // Before limits: 0 -1 6 3 0 0, and with the outer cells copied -1 -1 6 3 0 0. In the only interior row,
    // cells 1 and 4 are traced out of [1, 4] and take the forward value.
    const GridSize res{6, 3, 3};
    const Field impulse = fieldOf(res, [](int x, int, int) { return x == 2 ? 8 : 0; });
    const Field half = uniform(res, 0.5F), none = uniform(res, 0);
    Field result(impulse.size()), temp1 = result, temp2 = result;
    FLUID_3D::advectMacCormack(1, half.data(), none.data(), none.data(), impulse.data(), result.data(),
                               temp1.data(), temp2.data(), res);
    const float border[] = {-1, -1, 6, 3, 0, 0}, interior[] = {-1, 0, 6, 3, 0, 0};
    EXPECT_EQ(result,
              fieldOf(res, [&](int x, int y, int z) { return y == 1 && z == 1 ? interior[x] : border[x]; }));
    const float forward[] = {0, 0, 4, 4, 0, 0}, back[] = {0, 2, 4, 2, 0, 0};
    EXPECT_EQ(temp2, fieldOf(res, [&](int x, int, int) { return forward[x]; }));
    EXPECT_EQ(temp1, fieldOf(res, [&](int x, int, int) { return back[x]; }));
}

TEST(MacCormack, LimitsToTheCellsRoundTheSource) {
    // A step from 0 to 8 moved by a quarter: forward 0 at 4 and 6 at 5, back again 1.5 at 4 and 6.5 at 5.
    // Cell 4 would get (0 - 1.5) / 2 + 0 and cell 5 (8 - 6.5) / 2 + 6.
    const GridSize res{10, 3, 3};
    const Field step = fieldOf(res, [](int x, int, int) { return x < 5 ? 0 : 8; });
    const Field quarter = uniform(res, 0.25F), none = uniform(res, 0);
    Field result(step.size()), temp1 = result, temp2 = result;
    FLUID_3D::advectMacCormack(1, quarter.data(), none.data(), none.data(), step.data(), result.data(),
                               temp1.data(), temp2.data(), res);
    EXPECT_EQ(result[plain::cellAt(res, 4, 1, 1)], 0);
    EXPECT_EQ(result[plain::cellAt(res, 4, 0, 1)], -0.75F); // borders take it unlimited
    EXPECT_EQ(result[plain::cellAt(res, 5, 1, 1)], 6.75F);
}

TEST(Advection, FastPathEqualsThePlainOneToTheBit) {
    // The first has slabs so large that the second half of a step starts before the first is done.
    const GridSize sizes[] = {{300, 290, 9}, {1, 1, 1}, {1, 5, 4},  {2, 2, 2},    {3, 3, 3},   {9, 1, 2},
                              {4, 2, 7},     {0, 3, 3}, {11, 9, 8}, {37, 26, 23}, {64, 40, 16}};
    for (const GridSize& res : sizes) {
        const Field field = random(res, 9, 1);
        const Velocity flows[] = {swirl(res, 3), chaos(res, 1), chaos(res, 20), broken(res)};
        for (const Velocity& v : flows) {
            Field plainResult(field.size()), temp1 = plainResult, temp2 = plainResult;
            plain::advectMacCormack(0.7F, v.x.data(), v.y.data(), v.z.data(), field.data(),
                                    plainResult.data(), temp1.data(), temp2.data(), res);
            onEveryPath([&] {
                SCOPED_TRACE(::testing::PrintToString(res) + " flow " + std::to_string(&v - flows));
                Field result(field.size()), back = result, forward = result;
                FLUID_3D::advectMacCormack(0.7F, v.x.data(), v.y.data(), v.z.data(), field.data(),
                                           result.data(), back.data(), forward.data(), res);
                EXPECT_EQ(differences(result, plainResult), 0U);
                EXPECT_EQ(differences(back, temp1), 0U);
                EXPECT_EQ(differences(forward, temp2), 0U);
                FLUID_3D::advectSemiLagrange(0.7F, v.x.data(), v.y.data(), v.z.data(), field.data(),
                                             result.data(), res);
                EXPECT_EQ(differences(result, temp2), 0U);
            });
        }
    }
}

} // namespace

} // namespace vesk::fluid
