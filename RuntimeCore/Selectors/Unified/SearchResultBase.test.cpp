#include "RuntimeCore/Selectors/Unified/SearchResultBase.h"

#include <gtest/gtest.h>

#include <limits>

#include "RuntimeCore/Selectors/Unified/SearchResultSequence.h"
#include "tests/Support/ArchiveBytes.h"

namespace Zorvex::Search {
namespace {

TEST(SearchResultSequence, TheNextResultGetsTheIdThatWasSet) {
    SetSearchResultSequence(101);
    EXPECT_EQ(SearchResultBase().id, 101);
    EXPECT_EQ(SearchResultBase().id, 102);
    EXPECT_EQ(GetSearchResultSequence(), 103);
}

TEST(SearchResultSequence, WrapsAroundAtTheLargestNumber) {
    SetSearchResultSequence(std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(TakeSearchResultId(), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(TakeSearchResultId(), std::numeric_limits<std::int64_t>::min());
}

TEST(SearchResultBase, ANewResultHasNoParentAndOneSample) {
    const SearchResultBase plain;
    EXPECT_EQ(plain.parentId, 0);
    EXPECT_EQ(plain.stats.count, 1u);
    EXPECT_EQ(plain.stats.mean, 1.0);
    EXPECT_EQ(plain.score, 1.0);
    const SearchResultBase half(0.5);
    EXPECT_EQ(half.stats.mean, 0.5);
    EXPECT_EQ(half.score, 0.5);
}

TEST(SearchResultBase, CopiesKeepTheIdAndUseNoneUp) {
    SetSearchResultSequence(7);
    const SearchResultBase original;
    SearchResultBase copy(original);
    copy = original;
    EXPECT_EQ(copy.id, 7);
    EXPECT_EQ(GetSearchResultSequence(), 8);
}

TEST(SearchResultBase, AnswersForAnElementThatKnowsNothingOfItself) {
    SearchResultBase result;
    result.UpdateLocation(true);
    EXPECT_TRUE(result.IsSelf());
    EXPECT_TRUE(result.IsVisible());
    EXPECT_TRUE(result.IsValid());
}

TEST(SearchResultBase, StatisticsThenIdParentAndScoreTravel) {
    SetSearchResultSequence(3);
    SearchResultBase result;
    result.parentId = 2;
    result.score = 0.0;
    Archive archive;
    result.WriteToArchive(archive);
    EXPECT_EQ(Testing::PayloadText(archive),
              "00 00 00 00 00 00 f0 3f 00 00 00 00 00 00 f0 3f 00 00 00 00 00 00 f0 3f 00 00 00 00 00 00 f0 3f 01 01 00 00 00 "
              "06 03 00 00 00 00 00 00 00 06 02 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    SearchResultBase back;
    Archive reader = Testing::Reread(archive);
    back.ReadFromArchive(reader);
    EXPECT_EQ(back.id, 3);
    EXPECT_EQ(back.parentId, 2);
    EXPECT_EQ(back.score, 0.0);
    EXPECT_EQ(back.stats.count, 1u);
}

}  // namespace
}  // namespace Zorvex::Search
