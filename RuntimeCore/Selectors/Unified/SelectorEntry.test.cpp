#include "RuntimeCore/Selectors/Unified/SelectorEntry.h"

#include <gtest/gtest.h>

#include "Common/include/ArchiveExtension.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"
#include "tests/Support/ArchiveBytes.h"

namespace Zorvex::Search {
namespace {

using Testing::PayloadText;
using Testing::Reread;

TEST(SearchParameters, DefaultsAreThoseOfAnOrdinarySearch) {
    const SearchParameters options;
    EXPECT_EQ(options.scope, SearchScope::Descendants);
    EXPECT_EQ(options.resultPolicy, ResultPolicy::FirstMatch);
    EXPECT_EQ(options.maxResults, 50'000'000u);
    EXPECT_FALSE(options.acceptHiddenAtFirstLevel);
    EXPECT_TRUE(options.acceptHidden);
    EXPECT_TRUE(options.optionC);
    EXPECT_FALSE(options.optionD || options.optionE || options.optionH || options.optionI || options.optionJ);
    EXPECT_EQ(options.optionF, 0);
    EXPECT_EQ(options.optionG, 2);
    EXPECT_EQ(options.minimumScore, 0.0);
    EXPECT_FALSE(options.keepIntermediateAlways || options.keepIntermediateOnError);
    EXPECT_TRUE(options.refreshLocation);
    EXPECT_EQ(options.optionK, 0);
    EXPECT_EQ(options.optionL, 0);
    EXPECT_EQ(options.optionM, 0);
}

SearchParameters AllDifferent() {
    SearchParameters options;
    options.scope = static_cast<SearchScope>(0x11);
    options.resultPolicy = static_cast<ResultPolicy>(0x12);
    options.maxResults = 0x13;
    options.optionF = 0x14;
    options.optionG = 0x15;
    options.optionK = 0x16;
    options.optionL = 0x17;
    options.optionM = 0x18;
    options.minimumScore = 1.0;
    return options;
}

TEST(SearchParameters, NumbersTravelInTheOrderOfTheWireAndNotOfTheFields) {
    SearchParameters options = AllDifferent();
    options.optionC = options.acceptHidden = options.refreshLocation = false;
    Archive archive;
    options.WriteToArchive(archive);
    EXPECT_EQ(PayloadText(archive),
              "01 11 00 00 00 01 12 00 00 00 01 13 00 00 00 "
              "00 00 00 00 00 "
              "01 14 00 00 00 01 15 00 00 00 00 01 16 00 00 00 01 17 00 00 00 01 18 00 00 00 "
              "00 00 00 00 00 00 f0 3f "
              "00 00 00 00 00");
}

TEST(SearchParameters, EveryFlagHasItsOwnPlaceOnTheWire) {
    const std::pair<bool SearchParameters::*, std::size_t> places[] = {
        {&SearchParameters::optionC, 15},
        {&SearchParameters::acceptHiddenAtFirstLevel, 16},
        {&SearchParameters::acceptHidden, 17},
        {&SearchParameters::optionD, 18},
        {&SearchParameters::optionE, 19},
        {&SearchParameters::optionH, 30},
        {&SearchParameters::keepIntermediateAlways, 54},
        {&SearchParameters::keepIntermediateOnError, 55},
        {&SearchParameters::refreshLocation, 56},
        {&SearchParameters::optionI, 57},
        {&SearchParameters::optionJ, 58},
    };
    for (const auto& [flag, place] : places) {
        SearchParameters options;
        for (const auto& [other, otherPlace] : places) options.*other = false;
        options.*flag = true;
        Archive archive;
        options.WriteToArchive(archive);
        ASSERT_EQ(archive.buffer().size(), 4u + 59);
        for (const auto& [other, otherPlace] : places)
            EXPECT_EQ(archive.buffer()[4 + otherPlace], otherPlace == place ? 1 : 0) << "flag at " << place << ", byte at " << otherPlace;
        SearchParameters back;
        Archive reader = Reread(archive);
        back.ReadFromArchive(reader);
        for (const auto& [other, otherPlace] : places) EXPECT_EQ(back.*other, otherPlace == place);
    }
}

TEST(SearchParameters, NumbersOutsideTheEnumerationsSurviveTheJourney) {
    Archive archive;
    AllDifferent().WriteToArchive(archive);
    Archive reader = Reread(archive);
    SearchParameters back;
    back.ReadFromArchive(reader);
    EXPECT_EQ(static_cast<unsigned>(back.scope), 0x11u);
    EXPECT_EQ(static_cast<unsigned>(back.resultPolicy), 0x12u);
    EXPECT_EQ(back.maxResults, 0x13u);
    EXPECT_EQ(back.optionF, 0x14);
    EXPECT_EQ(back.optionG, 0x15);
    EXPECT_EQ(back.optionK, 0x16);
    EXPECT_EQ(back.optionL, 0x17);
    EXPECT_EQ(back.optionM, 0x18);
    EXPECT_EQ(back.minimumScore, 1.0);
    EXPECT_EQ(reader.remaining(), 0u);
}

TEST(SelectorEntry, TagsOptionsInheritedScoreAndPendingCountTravelInThisOrder) {
    SelectorEntry entry;
    auto tag = std::make_shared<AaTag>();
    tag->SetAttribute(L"name", std::make_shared<StringValue>(L"OK"));
    entry.tags = {tag, nullptr};
    entry.options.maxResults = 7;
    entry.inheritedScore.Add(0.5);
    entry.pendingAttributeCount = 9;
    Archive archive;
    entry.WriteToArchive(archive);
    Archive reader = Reread(archive);
    SelectorEntry back;
    back.ReadFromArchive(reader);
    EXPECT_EQ(reader.remaining(), 0u);
    ASSERT_EQ(back.tags.size(), 2u);
    EXPECT_TRUE(back.tags[0]->Equals(*tag));
    EXPECT_EQ(back.tags[1], nullptr);
    EXPECT_EQ(back.options.maxResults, 7u);
    EXPECT_EQ(back.inheritedScore.count, 1u);
    EXPECT_EQ(back.inheritedScore.mean, 0.5);
    EXPECT_EQ(back.pendingAttributeCount, 9u);
}

TEST(SelectorEntry, AnEntryWithoutTagsTakesTheSmallestNumberOfBytes) {
    Archive archive;
    SelectorEntry().WriteToArchive(archive);
    EXPECT_EQ(archive.buffer().size(), 4 + SelectorEntry::kMinimumWireSize);
}

TEST(SelectorEntry, EveryTruncationThrows) {
    SelectorEntry entry;
    auto tag = std::make_shared<AaTag>();
    tag->SetAttribute(L"role", std::make_shared<StringValue>(L"push button"));
    entry.tags = {tag};
    Archive archive;
    entry.WriteToArchive(archive);
    for (std::size_t size = 4; size < archive.buffer().size(); ++size) {
        Archive reader(Testing::Truncated(archive.buffer(), size));
        SelectorEntry back;
        EXPECT_THROW(back.ReadFromArchive(reader), ArchiveException) << size;
    }
}

}  // namespace
}  // namespace Zorvex::Search
