#include "fluid/wturbulence.h"

#include "fluid/fluid_samples.h"
#include "fluid/plain_reference.h"
#include "fluid/texture_jacobian.h"

#include <filesystem>
#include <memory>
#include <stdexcept>

#include <unistd.h>

namespace vesk::fluid {

namespace {

using namespace test;

class Turbulence : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        file_ = ::testing::TempDir() + "/noise_" + std::to_string(::getpid()) + ".wt";
    }
    static void TearDownTestSuite() { std::filesystem::remove(file_); }

    static std::unique_ptr<WTURBULENCE> make(const GridSize& res, int amplify, float strength = 10,
                                             int octaveCount = 4) {
        return std::make_unique<WTURBULENCE>(res[0], res[1], res[2], amplify, strength, octaveCount, file_);
    }

    static inline std::string file_;
};

TEST_F(Turbulence, StartsAtRest) {
    const auto w = make({4, 5, 6}, 3, 7);
    EXPECT_EQ(w->resBig, (GridSize{12, 15, 18}));
    EXPECT_EQ(w->resSm, (GridSize{4, 5, 6}));
    EXPECT_EQ(w->totalCellsBig, 3240);
    EXPECT_EQ(w->slabSizeBig, 180);
    EXPECT_EQ(w->totalCellsSm, 120);
    EXPECT_EQ(w->slabSizeSm, 20);
    EXPECT_EQ(w->invResSm[0], 0.25F);
    EXPECT_EQ(w->invResBig[1], 1 / 15.0F);
    EXPECT_EQ(w->cullThreshold, 0.001F);
    EXPECT_EQ(w->stepCount, 0);
    EXPECT_EQ(w->texU[3], 0.75F); // the last column too
    EXPECT_EQ(w->texV[w->totalCellsSm - 1], 4 / 5.0F);
    EXPECT_EQ(w->texW[w->totalCellsSm - 1], 5 / 6.0F);
    for (const FloatArray* zero : {&w->densityBig, &w->densityBigOld, &w->bigVelX, &w->bigVelY, &w->bigVelZ,
                                   &w->tempBig1, &w->tempBig2}) {
        EXPECT_EQ(zero->size(), 3240U);
        EXPECT_EQ(std::count(zero->begin(), zero->end(), 0.0F), 3240);
    }
    const int octaves[][2] = {{1, 0}, {2, 1}, {3, 1}, {4, 2}, {7, 2}, {8, 3}, {16, 4}, {0, 0}, {-3, 0}};
    for (const auto& [count, expected] : octaves)
        EXPECT_EQ(make({1, 1, 1}, 1, 1, count)->octaves, expected) << count;
    EXPECT_THROW(make({2000, 2000, 2000}, 4), std::length_error);
}

TEST(SmallestDifference, PrefersWhatChangesLeast) {
    const GridSize res{6, 1, 1};
    const Field squares{0, 1, 4, 9, 16, 25}, zigzag{0, 5, 5, 4, 5, 5};
    Field out(6);
    smallestDifferences(squares.data(), res, 0, 0, 0, out.data());
    EXPECT_EQ(out, (Field{6, 18, 18, 30, 42, 54}));
    smallestDifferences(zigzag.data(), res, 0, 0, 0, out.data());
    EXPECT_EQ(out, (Field{30, 0, 0, 0, 6, 0}));
    const Field three{1, 2, 4};
    smallestDifferences(three.data(), {3, 1, 1}, 0, 0, 0, out.data());
    EXPECT_EQ(out[0], 3);
    EXPECT_EQ(out[1], std::numeric_limits<float>::max());
    EXPECT_EQ(out[2], 6);
    smallestDifferences(three.data(), {1, 3, 1}, 1, 2, 0, out.data());
    EXPECT_EQ(out[0], 6);
    smallestDifferences(squares.data(), {1, 1, 6}, 2, 0, 3, out.data());
    EXPECT_EQ(out[0], 30);
}

TEST_F(Turbulence, EnergyIsThatOfTheVelocityAndItsHighPartIsInside) {
    const GridSize res{5, 4, 4};
    const auto w = make(res, 1);
    const Field x = fieldOf(res, [](int i, int, int) { return i; }), y = uniform(res, 2), z = uniform(res, 4);
    w->measureEnergy(x.data(), y.data(), z.data());
    // (x^2 + 4 + 16) / 2, the outer columns as their neighbours
    const float expected[] = {10.5F, 10.5F, 12, 14.5F, 14.5F};
    for (int i = 0; i < w->totalCellsSm; ++i)
        EXPECT_EQ(w->energy[i], expected[i % 5]);
    w->isolateHighFrequencyEnergy();
    EXPECT_EQ(w->highFreqEnergy[0], 0);
    EXPECT_NE(w->highFreqEnergy[plain::cellAt(res, 2, 1, 1)], 0);
    // What is the same everywhere is low: in a grid of even sides but for the last cells.
    const GridSize even{8, 8, 8};
    const auto calm = make(even, 1);
    const Field one = uniform(even, 1);
    calm->measureEnergy(one.data(), one.data(), one.data());
    calm->isolateHighFrequencyEnergy();
    for (const int c : {1, 3, 5})
        EXPECT_NEAR(calm->highFreqEnergy[plain::cellAt(even, c, c, c)], 0, 1e-5) << c;
}

TEST_F(Turbulence, WarpIsMeasuredAndRestored) {
    const GridSize res{8, 8, 8};
    const auto w = make(res, 1);
    w->measureTextureWarp();
    const std::size_t cell = plain::cellAt(res, 3, 4, 5);
    EXPECT_NEAR(w->eigMin[cell], 1, 1e-6);
    EXPECT_NEAR(w->eigMax[cell], 1, 1e-6);
    EXPECT_EQ(w->eigMax[0], 0); // the outer layer is left out
    for (float& u : w->texU)
        u *= 3;
    w->measureTextureWarp();
    EXPECT_NEAR(w->eigMin[cell], 1, 1e-6);
    EXPECT_NEAR(w->eigMax[cell], 3, 1e-6);
    w->restoreTextureCoordinates();
    EXPECT_EQ(w->texU[cell], 3 / 8.0F);
    EXPECT_EQ(w->texU[7], 3 * 7 / 8.0F); // not in the outer layer
    std::fill(w->texV.begin(), w->texV.end(), 0.5F);
    w->measureTextureWarp();
    EXPECT_EQ(w->eigMin[cell], 0.1F);
    EXPECT_EQ(w->eigMax[cell], 10);
    w->restoreTextureCoordinates();
    EXPECT_EQ(w->texV[cell], 4 / 8.0F);
}

using Step = void (WTURBULENCE::*)(float, const float*, const float*, const float*, bool, std::int32_t);
constexpr Step steps[] = {&WTURBULENCE::stepNoiseAdvection, &WTURBULENCE::stepFullTurbulence};

void take(WTURBULENCE& w, Step step, float dt, const Velocity& v, bool macCormack, int maxSubSteps) {
    (w.*step)(dt, v.x.data(), v.y.data(), v.z.data(), macCormack, maxSubSteps);
}

Velocity along(const GridSize& res, float x, float y, float z) {
    return {uniform(res, x), uniform(res, y), uniform(res, z)};
}

TEST_F(Turbulence, NoVelocityOnlyClearsTheOuterLayers) {
    const GridSize res{4, 4, 4};
    for (const Step step : steps) {
        for (const bool macCormack : {false, true}) {
            const auto w = make(res, 2);
            const Field density = random(w->resBig, 3, 1);
            std::copy(density.begin(), density.end(), w->densityBig.begin());
            take(*w, step, 1, along(res, 0, 0, 0), macCormack, 15);
            // The outermost cells inside are sampled at 1, which is itself.
            const Field expected = fieldOf(w->resBig, [&](int x, int y, int z) {
                const bool outer = std::min({x, y, z}) == 0 || std::max({x, y, z}) == 7;
                return outer ? 0 : density[plain::cellAt(w->resBig, x, y, z)];
            });
            EXPECT_EQ(differences(w->densityBig, expected), 0U);
            EXPECT_EQ(w->stepCount, 1);
        }
    }
}

TEST_F(Turbulence, WithoutNoiseItOnlyInterpolatesAndAdvects) {
    const GridSize res{8, 8, 8};
    const float strengthAndOctaves[][2] = {{10, 1}, {0, 8}}; // no octave; no amplitude
    for (const auto& [strength, octaves] : strengthAndOctaves) {
        for (const Step step : steps) {
            const auto w = make(res, 2, strength, static_cast<int>(octaves));
            const Field ramp = fieldOf(w->resBig, [](int x, int, int) { return x; });
            std::copy(ramp.begin(), ramp.end(), w->densityBig.begin());
            Velocity v = along(res, 0, 1, 0);
            v.x = fieldOf(res, [](int x, int, int) { return x; });
            take(*w, step, 0.25F, v, false, 1);
            // Fine cell 6 lies at coarse 3, and is fed from half the velocity of that to the left.
            const std::size_t cell = plain::cellAt(w->resBig, 6, 5, 4);
            EXPECT_EQ(w->bigVelX[cell], 3);
            EXPECT_EQ(w->bigVelY[cell], 1);
            EXPECT_EQ(w->bigVelZ[cell], 0);
            EXPECT_EQ(w->densityBig[cell], 6 - 0.5F * 3);
            EXPECT_EQ(w->bigVelX[plain::cellAt(w->resBig, 7, 5, 4)], 3.5F);
        }
    }
}

TEST_F(Turbulence, LongWaysAreTakenInSubsteps) {
    // An impulse goes 5 cells. Two substeps of 2.5 spread it, one does not.
    const GridSize res{14, 4, 4};
    struct Case {
        int maxSubSteps;
        float at8, at9, at10;
    };
    for (const Case& c : {Case{1, 0, 8, 0}, Case{2, 2, 4, 2}, Case{3, 0, 8, 0}, Case{0, 0, 8, 0}}) {
        for (const Step step : steps) {
            const auto w = make(res, 1, 0);
            for (int i = 4; i < w->totalCellsBig; i += 14)
                w->densityBig[i] = 8;
            take(*w, step, 5, along(res, 1, 0, 0), false, c.maxSubSteps);
            const float* row = w->densityBig.data() + plain::cellAt(res, 0, 1, 1);
            EXPECT_EQ(row[8], c.at8) << c.maxSubSteps;
            EXPECT_EQ(row[9], c.at9) << c.maxSubSteps;
            EXPECT_EQ(row[10], c.at10) << c.maxSubSteps;
        }
    }
}

void expectSame(const WTURBULENCE& a, const WTURBULENCE& b) {
    using Array = FloatArray WTURBULENCE::*;
    const std::pair<const char*, Array> arrays[] = {{"densityBig", &WTURBULENCE::densityBig},
                                                    {"densityBigOld", &WTURBULENCE::densityBigOld},
                                                    {"bigVelX", &WTURBULENCE::bigVelX},
                                                    {"bigVelY", &WTURBULENCE::bigVelY},
                                                    {"bigVelZ", &WTURBULENCE::bigVelZ},
                                                    {"texU", &WTURBULENCE::texU},
                                                    {"texV", &WTURBULENCE::texV},
                                                    {"texW", &WTURBULENCE::texW},
                                                    {"eigMin", &WTURBULENCE::eigMin},
                                                    {"eigMax", &WTURBULENCE::eigMax},
                                                    {"energy", &WTURBULENCE::energy},
                                                    {"highFreqEnergy", &WTURBULENCE::highFreqEnergy}};
    for (const auto& [name, array] : arrays)
        EXPECT_EQ(differences(a.*array, b.*array), 0U) << name;
    EXPECT_EQ(a.stepCount, b.stepCount);
}

TEST_F(Turbulence, FastPathEqualsThePlainOneToTheBit) {
    struct Case {
        GridSize res;
        int amplify, octaveCount;
        float speed; ///< of the swirl; 0: with values that are no numbers
    };
    const Case cases[] = {{{1, 1, 1}, 1, 4, 1},   {{1, 1, 1}, 4, 4, 1},    {{2, 2, 2}, 3, 4, 1},
                          {{3, 3, 3}, 2, 4, 1},   {{3, 1, 2}, 4, 4, 1},    {{5, 4, 6}, 0, 4, 1},
                          {{5, 4, 6}, -2, 4, 1},  {{0, 4, 6}, 2, 4, 1},    {{6, 7, 5}, 1, 8, 3},
                          {{12, 10, 9}, 3, 8, 5}, {{17, 12, 11}, 4, 4, 3}, {{12, 10, 9}, 3, 4, 0}};
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::PrintToString(c.res) + " amplify " + std::to_string(c.amplify));
        const Velocity v = c.speed == 0 ? broken(c.res) : swirl(c.res, c.speed);
        // One object for each path, and all steps in a row: each starts from what the last one left.
        const auto reference = make(c.res, c.amplify, 10, c.octaveCount);
        std::vector<std::unique_ptr<WTURBULENCE>> fast;
        onEveryPath([&] { fast.push_back(make(c.res, c.amplify, 10, c.octaveCount)); });
        const Field density = random(reference->resBig, 4, 1);
        for (int kind = 0; kind < 8; ++kind) {
            const bool full = kind & 1, macCormack = kind & 2;
            const float dt = kind & 4 ? 0.05F : 0.3F;
            std::copy(density.begin(), density.end(), reference->densityBig.begin());
            (full ? plain::stepFullTurbulence : plain::stepNoiseAdvection)(
                *reference, dt, v.x.data(), v.y.data(), v.z.data(), macCormack, 3);
            auto next = fast.begin();
            onEveryPath([&] {
                WTURBULENCE& w = **next++;
                std::copy(density.begin(), density.end(), w.densityBig.begin());
                take(w, steps[full], dt, v, macCormack, 3);
                expectSame(w, *reference);
            });
        }
    }
}

TEST_F(Turbulence, NoiseMovesWhatWarpAndAmplitudeAllow) {
    const GridSize res{10, 10, 10};
    const auto w = make(res, 2);
    take(*w, steps[0], 0.01F, along(res, 1, 0, 0), false, 1);
    double sum = 0, squares = 0;
    int moved = 0, inside = 0;
    for (int i = 0; i < w->totalCellsBig; ++i) {
        if (w->bigVelX[i] == 0 && w->bigVelY[i] == 0 && w->bigVelZ[i] == 0) continue;
        ++inside;
        moved += w->bigVelY[i] != 0;
        sum += w->bigVelY[i];
        squares += w->bigVelY[i] * w->bigVelY[i];
    }
    // Energy 1/2 all over: an amplitude of 0.5 * 10 * 0.56123 for noise of no mean.
    EXPECT_GT(moved, inside / 2);
    EXPECT_LT(std::fabs(sum / inside), 0.2 * std::sqrt(squares / inside));
    EXPECT_GT(std::sqrt(squares / inside), 0.1);
    // A threshold that no amplitude passes.
    w->cullThreshold = 3;
    take(*w, steps[0], 0.01F, along(res, 1, 0, 0), false, 1);
    EXPECT_EQ(w->bigVelY[plain::cellAt(w->resBig, 9, 9, 9)], 0);
}

} // namespace

} // namespace vesk::fluid
