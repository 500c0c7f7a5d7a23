#include "RuntimeCore/Selectors/Unified/SearchClock.h"

#include <gtest/gtest.h>

namespace Zorvex::Search {
namespace {

TEST(SearchClock, TheCommonFrequencyIsAPlainFactor) {
    EXPECT_EQ(TicksToNanoseconds(0, 10'000'000), 0);
    EXPECT_EQ(TicksToNanoseconds(1, 10'000'000), 100);
    EXPECT_EQ(TicksToNanoseconds(123'456'789'012, 10'000'000), 12'345'678'901'200);
}

TEST(SearchClock, OtherFrequenciesAreSplitIntoSecondsAndRemainder) {
    EXPECT_EQ(TicksToNanoseconds(3, 2), 1'500'000'000);
    EXPECT_EQ(TicksToNanoseconds(1, 3), 333'333'333);
    EXPECT_EQ(TicksToNanoseconds(3'579'545, 3'579'545), 1'000'000'000);
}

TEST(SearchClock, AYearOfAFastCounterDoesNotOverflow) {
    const std::int64_t year = 365LL * 24 * 3600;
    EXPECT_EQ(TicksToNanoseconds(year * 3'000'000'000LL, 3'000'000'000LL), year * 1'000'000'000LL);
}

TEST(SearchClock, NeverRunsBackwards) {
    std::int64_t before = NowNanoseconds();
    for (int i = 0; i < 1000; ++i) {
        const std::int64_t now = NowNanoseconds();
        ASSERT_GE(now, before);
        before = now;
    }
}

}  // namespace
}  // namespace Zorvex::Search
