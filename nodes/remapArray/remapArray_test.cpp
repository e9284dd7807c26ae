#include "nodes/remapArray/remapValues.h"
#include "tests/session_fixture.h"

#include <cmath>

namespace vesk::nodes {
namespace {

class RemapArray : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("createNode remapArray -n r; setAttr r.inArray -type doubleArray 4 -3 -0.5 0.25 2;");
    }
};

TEST_F(RemapArray, StepsInTheirOrder) {
    expectNear(floats("r.outArray"), {-3, -0.5, 0.25, 2});
    run("setAttr r.clamp 1");
    expectNear(floats("r.outArray"), {0, 0, 0.25, 1});
    run("setAttr r.absolute 1; setAttr r.clampMax 5");
    expectNear(floats("r.outArray"), {3, 0.5, 0.25, 2});
    run("setAttr r.shift 1; setAttr r.shiftValue -1");
    expectNear(floats("r.outArray"), {2, 0, 0, 1});
    run("setAttr r.remap 1");
    expectNear(floats("r.outArray"), {2, 0, 0, 1}); // 1 * x - 0 * x
    run("setAttr r.remapMin -3; setAttr r.remapMax 5; setAttr r.clamp 0;");
    expectNear(floats("r.outArray"), {4, -1, -1.5, 2}); // twice
    run("setAttr r.remapMin -1; setAttr r.remapMax 1;");
    expectNear(floats("r.outArray"), {0, 0, 0, 0});
    // A lower limit above the upper: below it, it wins.
    run("setAttr r.remap 0; setAttr r.clamp 1; setAttr r.clampMin 1.5; setAttr r.clampMax 0;");
    expectNear(floats("r.outArray"), {0, 1.5, 1.5, 1.5});
}

TEST_F(RemapArray, KindsInAndOut) {
    run("setAttr r.outArrayType 3; setAttr r.inArray -type doubleArray 4 1.9 -1.9 1e300 0.5;");
    EXPECT_EQ(ints("r.outArray"), (std::vector<int>{1, -1, 2147483647, 0}));
    run("setAttr r.inArray -type vectorArray 2 1 2 3 4 5 6");
    EXPECT_EQ(ints("r.outArray"), (std::vector<int>{1, 2, 3, 4, 5, 6}));
    run("setAttr r.outArrayType 1");
    expectNear(floats("r.outArray"), {1, 2, 3, 4, 5, 6});
    run("setAttr r.outArrayType 2");
    expectNear(floats("r.outArray"), {1, 2, 3, 1, 4, 5, 6, 1});
    run("setAttr r.inArray -type pointArray 1 7 8 9 5; setAttr r.outArrayType 0;");
    expectNear(floats("r.outArray"), {7, 8, 9});
    run("setAttr r.inArray -type Int32Array 3 4 5 6; setAttr r.outArrayType 1;");
    expectNear(floats("r.outArray"), {4, 5, 6});
}

TEST_F(RemapArray, WhatThreeDoesNotDivideWarnsOnce) {
    const Texts mismatch = {"warning: r: in/out arrays length mismatch. Result will be unpredictable."};
    run("setAttr r.outArrayType 1");
    expectNear(floats("r.outArray"), {-3, -0.5, 0.25});
    EXPECT_EQ(complaints(), mismatch);
    run("setAttr r.outArrayType 2; setAttr r.inArray -type doubleArray 2 1 2;");
    EXPECT_EQ(floats("r.outArray"), std::vector<double>());
    EXPECT_EQ(complaints(), mismatch);
    run("setAttr r.outArrayType 0");
    EXPECT_EQ(floats("r.outArray").size(), 2U);
    for (int type = 0; type < 4; ++type) {
        const std::string node = "none" + std::to_string(type);
        run("createNode remapArray -n " + node + "; setAttr " + node + ".outArrayType " +
            std::to_string(type));
        EXPECT_EQ(mel("size(`getAttr " + node + ".outArray`)"), "0");
    }
    run("setAttr r.outArrayType 0; setAttr r.nodeState 2; setAttr r.inArray -type doubleArray 1 5;");
    EXPECT_EQ(floats("r.outArray").size(), 2U) << "blocking";
}

TEST(RemapValues, BlocksMeetWithoutASeam) {
    // Around the ends of blocks, for every kind of input and output.
    for (const std::size_t count : {1U, 511U, 512U, 513U, 1024U, 1700U}) {
        std::vector<MPoint> points;
        std::vector<MVector> vectors;
        std::vector<double> numbers;
        for (std::size_t i = 0; i < count; ++i) {
            const auto x = static_cast<double>(3 * i);
            points.emplace_back(x, x + 1, x + 2, -1);
            vectors.emplace_back(x, x + 1, x + 2);
            numbers.insert(numbers.end(), {x, x + 1, x + 2});
        }
        const RemapSettings settings{.shift = true, .shiftValue = 0.5};
        for (const AnyElements& in :
             {AnyElements(std::span<const MPoint>(points)), AnyElements(std::span<const MVector>(vectors)),
              AnyElements(std::span<const double>(numbers))}) {
            ASSERT_EQ(flatLength(in), 3 * count);
            std::vector<double> doubles(3 * count);
            std::vector<int> ints(3 * count);
            std::vector<MPoint> moved(count);
            remapValues(settings, in, std::span<double>(doubles));
            remapValues(settings, in, std::span<int>(ints));
            remapValues(settings, in, std::span<MPoint>(moved));
            for (std::size_t i = 0; i < 3 * count; ++i) {
                ASSERT_EQ(doubles[i], static_cast<double>(i) + 0.5);
                ASSERT_EQ(ints[i], static_cast<int>(i));
                ASSERT_EQ(moved[i / 3][static_cast<unsigned>(i % 3)], static_cast<double>(i) + 0.5);
            }
            ASSERT_EQ(moved.back().w, 1);
        }
    }
}

TEST(RemapValues, EachChoiceOfStepsIsThatOfAPlainLoop) {
    std::vector<double> in;
    for (int i = 0; i < 1600; ++i)
        in.push_back((i % 97 - 48) / 7.0);
    for (unsigned choice = 0; choice < 16; ++choice) {
        const RemapSettings s{.absolute = (choice & 1U) != 0,
                              .shift = (choice & 2U) != 0,
                              .shiftValue = -0.3,
                              .remap = (choice & 4U) != 0,
                              .remapMin = -0.7,
                              .remapMax = 1.9,
                              .clamp = (choice & 8U) != 0,
                              .clampMin = -1.1,
                              .clampMax = 2.3};
        std::vector<double> out(in.size());
        remapValues(s, std::span<const double>(in), std::span<double>(out));
        for (std::size_t i = 0; i < in.size(); ++i) {
            double x = in[i];
            if (s.absolute) x = std::fabs(x);
            if (s.shift) x = x + -0.3;
            if (s.remap) x = 1.9 * x - 0.7 * x;
            if (s.clamp) x = std::fmin(std::fmax(x, -1.1), 2.3);
            ASSERT_EQ(out[i], x) << choice << ", " << i;
        }
    }
}

TEST(RemapValues, NumbersThatAreNonePassAlone) {
    const double in[] = {NAN, INFINITY, -INFINITY, 0.5};
    double out[4];
    remapValues({.absolute = true, .shift = true, .shiftValue = 1, .clamp = true, .clampMax = 9},
                std::span<const double>(in), std::span<double>(out));
    EXPECT_TRUE(std::isnan(out[0]));
    EXPECT_EQ(out[1], 9);
    EXPECT_EQ(out[2], 9);
    EXPECT_EQ(out[3], 1.5);
}

} // namespace
} // namespace vesk::nodes
