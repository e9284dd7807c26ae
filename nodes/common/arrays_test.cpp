#include "nodes/common/arrays.h"
#include "tests/api_access.h"
#include "tests/session_fixture.h"

#include <maya/MStringArray.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

/// Blocks of a megabyte and more that were asked for since `Allocations` began: arrays, and nothing else.
constexpr std::size_t kLarge = 1U << 20U;
std::size_t largeCount = 0, largeBytes = 0;

struct Allocations {
    std::size_t countBefore = largeCount, bytesBefore = largeBytes;
    std::size_t count() const { return largeCount - countBefore; }
    std::size_t bytes() const { return largeBytes - bytesBefore; }
};

} // namespace

// The test program's own, so that they can be counted, in the libraries too. The forms that don't throw are
// among them: what one of the family hands out any other takes back.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (size >= kLarge) ++largeCount, largeBytes += size;
    return std::malloc(size > 0 ? size : 1);
}
void* operator new(std::size_t size) {
    if (void* memory = operator new(size, std::nothrow)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace vesk::nodes {
namespace {

using tests::plugNamed;

class Arrays : public tests::PluginTest {};

TEST_F(Arrays, AChainAllocatesItsOutputsAndNoMore) {
    const std::size_t n = 1000000;
    run("createNode createArray -n a1; setAttr a1.outputType 1; setAttr a1.length 1000000;"
        "setAttr a1.defaultValueX -1;"
        "createNode remapArray -n a2; setAttr a2.absolute 1; connectAttr a1.outArray a2.inArray;"
        "createNode arrayToArray -n a3; connectAttr a2.outArray a3.inArray1;"
        "createNode remapArray -n a4; setAttr a4.outArrayType 1; connectAttr a3.outArray a4.inArray;"
        "createNode arrayBlend -n a5; connectAttr a3.outArray a5.inArray1;"
        "connectAttr a4.outArray a5.inArray2;"
        "createNode resizeArray -n a6; setAttr a6.length 1000000; connectAttr a5.outArray a6.inArray;"
        "createNode arrayToArray -n a7; setAttr a7.outDataType 1; connectAttr a6.outArray a7.inArray1;"
        "createNode remapArray -n a8; setAttr a8.outArrayType 1; connectAttr a7.outArray a8.inArray;"
        "createNode arrayBlend -n a9; setAttr a9.operation 1; connectAttr a8.outArray a9.inArray1;"
        "connectAttr a1.outArray a9.inArray2;"
        "createNode remapArray -n a10; setAttr a10.shift 1; setAttr a10.shiftValue 2;"
        "connectAttr a9.outArray a10.inArray;");
    const auto pull = [] {
        const Allocations allocations;
        const MObject data = plugNamed("a10.outArray").asMObject();
        ArrayView<MFnDoubleArrayData> view(data);
        EXPECT_EQ(view.values().size(), 3 * n);
        EXPECT_EQ(view.values().front(), 2) << "1 - 1 + 2";
        return std::pair(allocations.count(), allocations.bytes());
    };
    // Doubles twice, points once, and seven times three doubles an entry.
    const auto all = std::pair<std::size_t, std::size_t>(10, (2 + 4 + 7 * 3) * n * sizeof(double));
    EXPECT_EQ(pull(), all);
    EXPECT_EQ(pull(), (std::pair<std::size_t, std::size_t>())) << "clean: nothing is computed";
    run("setAttr a10.shiftValue 2");
    EXPECT_EQ(pull().first, 1U) << "the last one alone";
    run("setAttr a1.defaultValueX -1");
    EXPECT_EQ(pull(), all);
}

TEST_F(Arrays, WiresThatDoNotFitNameBothPlugs) {
    run("createNode pointAttributeToArray -n p; createNode arrayToArray -n mix; createNode remapArray -n r;"
        "createNode arrayToDynArrays -n d; createNode arrayBlend -n b; createNode resizeArray -n z;"
        "createNode arrayToPointColor -n c; createNode arrayToMulti -n m; createNode multiToArray -n w;"
        "createNode arrayToTexture2D -n t; polyCube;");
    const char* const refused[][2] = {
        {"p.outIdPP", "mix.inArray1"},       {"pCubeShape1.outMesh", "r.inArray"},
        {"p.outPositionPP", "m.inWeightPP"}, {"pCubeShape1.outMesh", "b.inArray1"},
        {"d.outDynamicArrays", "z.inArray"}, {"p.outIdPP", "c.inRgbaPP"},
        {"pCube1.matrix", "d.inArray"},      {"p.outRgbaPP", "w.inWeightList[0].weights[0]"},
        {"p.outPositionPP", "t.inWeightPP"}, {"w.outArray", "c.inGeometry"},
        {"w.outArray", "d.inDynamicArrays"}, {"pCube1.translate", "mix.inArray4"},
    };
    for (const auto& [from, to] : refused) {
        const auto result = session->run(std::string("connectAttr ") + from + " " + to);
        EXPECT_FALSE(result.ok) << from << " " << to;
        EXPECT_NE(result.error.find(std::string("'") + from + "'"), std::string::npos) << result.error;
        EXPECT_NE(result.error.find(std::string("'") + to + "'"), std::string::npos) << result.error;
    }
    complaints();
}

TEST(ArrayElements, TruncatedStaysInTheRangeOfAnInt) {
    constexpr int kLeast = std::numeric_limits<int>::min(), kMost = std::numeric_limits<int>::max();
    EXPECT_EQ(truncated(1.9), 1);
    EXPECT_EQ(truncated(-1.9), -1);
    EXPECT_EQ(truncated(NAN), 0);
    EXPECT_EQ(truncated(-2147483648.9), kLeast);
    EXPECT_EQ(truncated(2147483646.9), kMost - 1);
    EXPECT_EQ(truncated(INFINITY), kMost);
    EXPECT_EQ(truncated(-INFINITY), kLeast);
}

} // namespace
} // namespace vesk::nodes
