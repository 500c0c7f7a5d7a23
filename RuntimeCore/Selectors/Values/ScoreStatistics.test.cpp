#include "RuntimeCore/Selectors/Values/ScoreStatistics.h"

#include <gtest/gtest.h>

#include "Common/include/Archive.h"
#include "RuntimeCore/Selectors/Values/CompareDoubles.h"

namespace Zorvex {
namespace {

constexpr double kLargest = std::numeric_limits<double>::max();

TEST(ScoreStatistics, AFreshRecordHasNoScoreAndTheLargestMinimum) {
    const ScoreStatistics stats;
    EXPECT_EQ(0.0, stats.mean);
    EXPECT_EQ(0u, stats.count);
    EXPECT_EQ(0.0, stats.max);
    EXPECT_EQ(kLargest, stats.min);
    EXPECT_EQ(0.0, stats.sum);
}

TEST(ScoreStatistics, AddFollowsEachScore) {
    ScoreStatistics stats;
    stats.Add(0.5);
    stats.Add(1.0);
    stats.Add(0.0);
    EXPECT_EQ(3u, stats.count);
    EXPECT_EQ(1.0, stats.max);
    EXPECT_EQ(0.0, stats.min);
    EXPECT_EQ(1.5, stats.sum);
    EXPECT_EQ(0.5, stats.mean);
}

TEST(ScoreStatistics, MergeOfARecordWithoutScoresChangesNothing) {
    ScoreStatistics stats;
    stats.Add(0.25);
    stats.Merge(ScoreStatistics());
    EXPECT_EQ(1u, stats.count);
    EXPECT_EQ(0.25, stats.mean);
    EXPECT_EQ(0.25, stats.sum);
    EXPECT_EQ(0.25, stats.min);
    EXPECT_EQ(0.25, stats.max);
}

TEST(ScoreStatistics, MergeTakesLimitsEvenOfARecordWithoutScores) {
    ScoreStatistics stats;
    stats.Add(0.5);
    ScoreStatistics other;
    other.max = 0.75;
    other.min = 0.125;
    other.mean = 0.9;
    other.sum = 9;
    stats.Merge(other);
    EXPECT_EQ(0.75, stats.max);
    EXPECT_EQ(0.125, stats.min);
    EXPECT_EQ(0.5, stats.mean);
    EXPECT_EQ(0.5, stats.sum);
}

TEST(ScoreStatistics, MergeWeighsTheMeanAndIgnoresTheSum) {
    ScoreStatistics stats;
    stats.Add(1.0);
    ScoreStatistics other;
    other.count = 3;
    other.mean = 0.5;
    other.sum = 1000;
    other.max = 0.25;  // below its own mean: the mean counts as a score
    stats.Merge(other);
    EXPECT_EQ(4u, stats.count);
    EXPECT_EQ(2.5, stats.sum);
    EXPECT_EQ(0.625, stats.mean);
    EXPECT_EQ(0.5, stats.min);
    EXPECT_EQ(1.0, stats.max);
}

TEST(ScoreStatistics, MergedMeanRaisesTheMaximum) {
    ScoreStatistics stats;
    ScoreStatistics other;
    other.count = 1;
    other.mean = 0.7;
    stats.Merge(other);
    EXPECT_EQ(0.7, stats.max);
    EXPECT_EQ(0.7, stats.min);
}

TEST(ScoreStatistics, CountsThatAddUpToNothingLeaveTheMean) {
    ScoreStatistics stats;
    stats.Add(0.5);
    ScoreStatistics other;
    other.count = 0xFFFFFFFF;
    other.mean = 1.0;
    stats.Merge(other);
    EXPECT_EQ(0u, stats.count);
    EXPECT_EQ(0.5, stats.mean);
}

TEST(ScoreStatistics, TravelsAsMaximumMinimumMeanSumAndCount) {
    ScoreStatistics stats;
    stats.max = 1;
    stats.min = 2;
    stats.mean = 3;
    stats.sum = 4;
    stats.count = 5;
    Archive archive;
    stats.WriteToArchive(archive);
    ASSERT_EQ(4u + 4 * 8 + 5, archive.buffer().size());
    Archive reader(archive.buffer());
    double max = 0, min = 0, mean = 0, sum = 0;
    std::uint32_t count = 0;
    reader.read(max).read(min).read(mean).read(sum).read(count);
    EXPECT_EQ(1, max);
    EXPECT_EQ(2, min);
    EXPECT_EQ(3, mean);
    EXPECT_EQ(4, sum);
    EXPECT_EQ(5u, count);
    Archive again(archive.buffer());
    ScoreStatistics read;
    read.ReadFromArchive(again);
    EXPECT_EQ(4, read.sum);
    EXPECT_EQ(5u, read.count);
    EXPECT_EQ(0u, again.remaining());
}

TEST(CompareDoubles, AlmostEqualIsRelative) {
    EXPECT_TRUE(AlmostEqual(0.0, 0.0));
    EXPECT_TRUE(AlmostEqual(0.9, 0.9 + 1e-17));
    EXPECT_TRUE(AlmostEqual(0.1 + 0.2, 0.3));
    EXPECT_TRUE(AlmostEqual(1e300, std::nextafter(1e300, 0)));
    EXPECT_FALSE(AlmostEqual(0.9, 0.9000001));
    EXPECT_FALSE(AlmostEqual(0.0, 1e-300));
    EXPECT_FALSE(AlmostEqual(std::nan(""), std::nan("")));
    EXPECT_TRUE(AlmostEqual(1.0, 1.5, 0.5));
}

TEST(CompareDoubles, GreaterComesInTwoStrengths) {
    const double sum = 0.1 + 0.2;  // greater than 0.3 by one bit
    EXPECT_FALSE(DefinitelyGreater(sum, 0.3));
    EXPECT_TRUE(GreaterOrAlmostEqual(0.3, sum));
    EXPECT_TRUE(DefinitelyGreater(0.31, 0.3));
    EXPECT_TRUE(GreaterOrAlmostEqual(0.31, 0.3));
    EXPECT_FALSE(DefinitelyGreater(0.3, 0.31));
    EXPECT_FALSE(GreaterOrAlmostEqual(0.3, 0.31));
}

}  // namespace
}  // namespace Zorvex
