#include "RuntimeCore/Selectors/Unified/RankedResults.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/Support/NaiveSearch.h"

namespace Zorvex::Testing {
namespace {

using Found = NaiveSearch::Found;
using Search::RankedResults;

Found Make(std::int64_t id, double mean) {
    Found found;
    found.id = id;
    found.stats.mean = mean;
    return found;
}

std::vector<std::int64_t> Ids(const std::vector<Found>& results) {
    std::vector<std::int64_t> ids;
    for (const Found& found : results) ids.push_back(found.id);
    return ids;
}

auto InsertInto(RankedResults<Found>& results, std::int64_t id, double mean) {
    return results.Insert(mean, [&] { return Make(id, mean); });
}

TEST(RankedResults, ATieGoesToWhatIsThereAlready) {
    RankedResults<Found> results(10);
    InsertInto(results, 1, 0.5);
    InsertInto(results, 2, 0.5);
    InsertInto(results, 3, 0.5 + 1e-17);
    InsertInto(results, 4, 0.6);
    EXPECT_EQ(Ids(results.Take()), (std::vector<std::int64_t>{4, 1, 2, 3}));
}

TEST(RankedResults, ABetterResultPushesTheWorstOut) {
    RankedResults<Found> results(2);
    InsertInto(results, 1, 0.5);
    InsertInto(results, 2, 0.4);
    const auto answer = InsertInto(results, 3, 0.9);
    EXPECT_TRUE(answer.inserted);
    EXPECT_EQ(answer.pushedOut, 2);
    EXPECT_FALSE(InsertInto(results, 4, 0.5).inserted);
    EXPECT_EQ(Ids(results.Take()), (std::vector<std::int64_t>{3, 1}));
}

TEST(RankedResults, AFullListOfPerfectResultsIsSaturated) {
    RankedResults<Found> results(1);
    EXPECT_FALSE(results.IsSaturated());
    InsertInto(results, 1, 0.99);
    EXPECT_TRUE(results.IsAtLimit());
    EXPECT_FALSE(results.IsSaturated());
    InsertInto(results, 2, 1.0);
    EXPECT_TRUE(results.IsSaturated());
    EXPECT_FALSE(InsertInto(results, 3, 1.0).inserted);
}

TEST(RankedResults, AListThatMayHoldNothingIsSaturatedFromTheStart) {
    RankedResults<Found> results(0);
    EXPECT_TRUE(results.IsSaturated());
    EXPECT_FALSE(InsertInto(results, 1, 1.0).inserted);
}

TEST(RankedResults, AMeanThatIsNoNumberStaysBehindEverything) {
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    RankedResults<Found> results(3);
    InsertInto(results, 1, 0.5);
    EXPECT_TRUE(InsertInto(results, 2, notANumber).inserted);
    EXPECT_TRUE(InsertInto(results, 3, 0.7).inserted);
    EXPECT_FALSE(InsertInto(results, 4, notANumber).inserted);
    EXPECT_EQ(Ids(results.Take()), (std::vector<std::int64_t>{3, 1, 2}));
}

TEST(RankedResults, AgreesWithAPlainListForRandomScores) {
    std::mt19937 random(5);
    for (int round = 0; round < 60; ++round) {
        const std::uint32_t limit = round % 3 == 0 ? 50'000'000 : 1 + random() % 400;
        // Few values make many ties; neighbours closer than the comparison can tell make unsorted runs.
        const unsigned values = round % 2 ? 5 : 100'000;
        RankedResults<Found> results(limit);
        std::vector<Found> expected;
        for (std::int64_t id = 1; id <= 1500; ++id) {
            double mean = static_cast<double>(random() % values) / values;
            if (random() % 3 == 0) mean *= 1.0 + 1e-16 * static_cast<double>(random() % 5);
            if (random() % 50 == 0) mean = 1.0;
            const std::size_t before = expected.size();
            const std::int64_t last = before ? expected.back().id : 0;
            const bool inserted = NaiveSearch::Insert(expected, limit, Make(id, mean));
            const auto answer = InsertInto(results, id, mean);
            ASSERT_EQ(answer.inserted, inserted);
            ASSERT_EQ(answer.pushedOut.has_value(), inserted && expected.size() == before);
            if (answer.pushedOut) {
                ASSERT_EQ(*answer.pushedOut, last);
            }
        }
        ASSERT_EQ(results.Size(), expected.size());
        ASSERT_EQ(Ids(results.Take()), Ids(expected));
        ASSERT_TRUE(results.IsEmpty());
    }
}

}  // namespace
}  // namespace Zorvex::Testing
