#include "nodes/arrayBlend/blendArrays.h"
#include "tests/session_fixture.h"

#include <cmath>
#include <limits>

namespace vesk::nodes {
namespace {

class ArrayBlend : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("createNode arrayBlend -n b");
    }
    void set(const std::string& first, const std::string& second, int operation) {
        run("setAttr b.inArray1 -type " + first + "; setAttr b.inArray2 -type " + second +
            "; setAttr b.operation " + std::to_string(operation));
    }
    const Texts unequal = {"warning: Both arrays need to be of an equal length"};
    const Texts typesDiffer = {"warning: Blend operation requires both input data types to be the same"};
    const Texts invalid = {"warning: Invalid input types."};
};

TEST_F(ArrayBlend, OperationsOnEveryMixOfKinds) {
    const std::string whole = "Int32Array 2 7 -7", doubles = "doubleArray 2 2 0.5";
    const std::string vectors = "vectorArray 2 1 2 4 0.5 -1 2";
    enum { kAdd = 1, kMinus, kMultiply, kDivide };
    set(whole, "Int32Array 2 2 2", kDivide);
    EXPECT_EQ(ints("b.outArray"), (std::vector<int>{3, -3}));
    set(whole, doubles, kDivide);
    expectNear(floats("b.outArray"), {3.5, -14});
    set(doubles, whole, kMinus);
    expectNear(floats("b.outArray"), {-5, 7.5});
    set(whole, vectors, kMinus);
    expectNear(floats("b.outArray"), {6, 5, 3, -7.5, -6, -9});
    set(vectors, doubles, kDivide);
    expectNear(floats("b.outArray"), {0.5, 1, 2, 1, -2, 4});
    set(doubles, vectors, kDivide);
    expectNear(floats("b.outArray"), {2, 1, 0.5, 1, -0.5, 0.25});
    set(vectors, "vectorArray 2 3 3 3 2 2 2", kMultiply);
    expectNear(floats("b.outArray"), {3, 6, 12, 1, -2, 4});
    set(vectors, vectors, kAdd);
    expectNear(floats("b.outArray"), {2, 4, 8, 1, -2, 4});
}

TEST_F(ArrayBlend, BlendGoesFromTheSecondToTheFirst) {
    set("doubleArray 2 4 8", "doubleArray 2 0 2", 0);
    expectNear(floats("b.outArray"), {2, 5});
    run("setAttr b.blend 0");
    expectNear(floats("b.outArray"), {0, 2});
    run("setAttr b.blend 1");
    expectNear(floats("b.outArray"), {4, 8});
    run("setAttr b.blend 0.25");
    set("vectorArray 1 4 8 0", "vectorArray 1 0 4 -4", 0);
    expectNear(floats("b.outArray"), {1, 5, -3});
    set("Int32Array 2 5 -5", "Int32Array 2 2 -2", 0); // 1.25 + 1.5 = 2.75
    EXPECT_EQ(ints("b.outArray"), (std::vector<int>{2, -2}));
}

TEST_F(ArrayBlend, RefusalsLeaveTheOutput) {
    set("doubleArray 1 3", "doubleArray 1 4", 1);
    expectNear(floats("b.outArray"), {7});
    const auto refuses = [&](const Texts& message) {
        expectNear(floats("b.outArray"), {7});
        EXPECT_EQ(complaints(), message);
    };
    set("doubleArray 1 3", "doubleArray 2 4 5", 1);
    refuses(unequal);
    set("doubleArray 1 3", "doubleArray 0", 0);
    refuses(unequal);
    set("Int32Array 1 3", "doubleArray 1 4", 0);
    refuses(typesDiffer);
    run("createNode arrayBlend -n e; setAttr e.inArray1 -type doubleArray 0; setAttr e.operation 3;"
        "getAttr e.outArray;");
    EXPECT_EQ(complaints(), invalid) << "an empty array and none";
    run("setAttr e.operation 0; getAttr e.outArray;");
    EXPECT_EQ(complaints(), typesDiffer);
    run("setAttr e.inArray2 -type doubleArray 0; getAttr e.outArray;");
    EXPECT_EQ(complaints(), Texts{}) << "two empty ones are an empty one";
    run("createNode arrayBlend -n none; getAttr none.outArray;");
    EXPECT_EQ(complaints(), invalid);
}

TEST(BlendArrays, IntsNeverTrap) {
    constexpr int kLeast = std::numeric_limits<int>::min(), kMost = std::numeric_limits<int>::max();
    const int a[] = {kLeast, kMost, 5, kLeast}, b[] = {-1, 1, 0, kLeast};
    int out[4];
    const AnyElements left = std::span<const int>(a), right = std::span<const int>(b);
    const auto results = [&](BlendOperation operation) {
        blendArrays(operation, 1, left, right, std::span<int>(out));
        return std::vector<int>(out, out + 4);
    };
    EXPECT_EQ(results(BlendOperation::kDivide), (std::vector<int>{kLeast, kMost, 0, 1}));
    EXPECT_EQ(results(BlendOperation::kAdd), (std::vector<int>{kMost, kLeast, 5, 0}));
    EXPECT_EQ(results(BlendOperation::kMultiply), (std::vector<int>{kLeast, kMost, 0, 0}));
    EXPECT_EQ(results(BlendOperation::kBlend), (std::vector<int>{kLeast, kMost, 5, kLeast}));
}

TEST(BlendArrays, OddNumbersStayWhereTheyAre) {
    const double a[] = {1, NAN, INFINITY, 4}, b[] = {2, 2, 2, 0};
    double out[4];
    blendArrays(BlendOperation::kDivide, 0.5, std::span<const double>(a), std::span<const double>(b),
                std::span<double>(out));
    EXPECT_EQ(out[0], 0.5);
    EXPECT_TRUE(std::isnan(out[1]));
    EXPECT_EQ(out[2], INFINITY);
    EXPECT_EQ(out[3], INFINITY);
    const MPoint point;
    EXPECT_EQ(blendResult(std::span(&point, 1), std::span<const double>(a, 1)), BlendResult::kNone);
}

} // namespace
} // namespace vesk::nodes
