#include "parallel/loops.h"
#include "parallel/morton.h"

#include <gtest/gtest.h>

#include <atomic>
#include <limits>

namespace vesk::parallel {
namespace {

TEST(Loops, PiecesCoverEachNumberOnceForAnyThreads) {
    const int before = threads();
    for (const int count : {1, 2, 5}) {
        setThreads(count);
        for (const std::size_t size : {0u, 1u, 7u, 8u, 100u}) {
            std::vector<std::atomic<int>> visits(size);
            std::atomic<bool> isTooLong{false};
            inPieces(size, 8, [&](std::size_t begin, std::size_t end) {
                if (end - begin > 8) isTooLong = true;
                for (std::size_t i = begin; i < end; ++i)
                    ++visits[i];
            });
            EXPECT_FALSE(isTooLong);
            for (const auto& each : visits)
                EXPECT_EQ(each, 1);
        }
    }
    setThreads(0);
    EXPECT_EQ(threads(), 1);
    inPieces(3, 0, [](std::size_t begin, std::size_t end) { EXPECT_EQ(end, begin + 1); });
    setThreads(before);
}

TEST(MortonOrder, TakesTheLowerHalvesFirstAndKeepsEqualsInOrder) {
    // The corners of a square: x is the low digit of the code, y the next.
    EXPECT_EQ(mortonOrder({{1, 1, 0}, {0, 1, 0}, {1, 0, 0}, {0, 0, 0}}),
              (std::vector<std::uint32_t>{3, 2, 1, 0}));
    EXPECT_EQ(mortonOrder({{5, 5, 5}, {5, 5, 5}, {5, 5, 5}}), (std::vector<std::uint32_t>{0, 1, 2}));
    EXPECT_TRUE(mortonOrder({}).empty());
}

TEST(MortonOrder, CountsWhatIsNoNumberAsTheLowerSide) {
    const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
    EXPECT_EQ(mortonOrder({{2, 2, 2}, {nan, nan, -inf}, {1, 1, 1}}), (std::vector<std::uint32_t>{1, 2, 0}));
    EXPECT_EQ(mortonOrder({{nan, nan, nan}, {nan, 0, 0}}), (std::vector<std::uint32_t>{0, 1}));
}

} // namespace
} // namespace vesk::parallel
