#include "RuntimeCore/Selectors/Search/AaTagMatchingPolicy.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "RuntimeCore/Selectors/Values/SelectorTags.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"

namespace Zorvex::Search {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// An element made of texts, which notes what is read.
class Texts final : public AttributeAccessPolicy {
public:
    Texts(std::initializer_list<std::pair<const std::wstring, CString>> texts) : m_texts(texts) {}
    std::vector<std::wstring> reads;

private:
    CString GetValueImpl(std::wstring_view name) override {
        reads.emplace_back(name);
        const auto found = m_texts.find(name);
        return found == m_texts.end() ? CString() : found->second;
    }
    std::int64_t GetNumberValueImpl(std::wstring_view name) override {
        reads.emplace_back(name);
        return -1;
    }

    std::map<std::wstring, CString, std::less<>> m_texts;
};

std::shared_ptr<StringValue> Wanted(const wchar_t* text, std::uint32_t matchingType = MatchingTypeNormal, double level = 1.0, bool enabled = true) {
    return std::make_shared<StringValue>(text, matchingType, level, enabled);
}

std::shared_ptr<AaTag> Tag(std::initializer_list<std::pair<const wchar_t*, std::shared_ptr<IAttrValue>>> attributes) {
    auto tag = std::make_shared<AaTag>();
    for (const auto& [name, value] : attributes) tag->SetAttribute(name, value);
    return tag;
}

TEST(AttributeAccessPolicy, AnAttributeIsReadOnceWhetherItIsEmptyOrNot) {
    Texts texts{{L"name", L"OK"}};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(texts.GetValue(L"name"), L"OK");
        EXPECT_EQ(texts.GetValue(L"role"), L"");
        EXPECT_EQ(texts.GetNumberValue(L"idx"), -1);
    }
    EXPECT_THAT(texts.reads, ElementsAre(L"name", L"role", L"idx"));
}

TEST(AaTagMatchingPolicy, RequiredStatesMayStandInAnyOrderAmongOthersAndInAnyCase) {
    AaTagMatchingPolicy policy(Tag({{L"aastate", Wanted(L"focusable, Selected")}}));
    EXPECT_EQ(policy.GetAttributeCount(), 1u);
    Texts fitting{{L"aastate", L"selected,focusable,offscreen"}};
    ScoreStatistics stats;
    EXPECT_TRUE(policy.Matches(fitting, stats));
    EXPECT_EQ(stats.count, 1u);
    EXPECT_EQ(stats.mean, 1.0);
}

TEST(AaTagMatchingPolicy, AMissingRequiredStateScoresNothing) {
    AaTagMatchingPolicy policy(Tag({{L"aastate", Wanted(L"focusable, selected")}}));
    Texts other{{L"aastate", L"focusable"}};
    ScoreStatistics stats;
    EXPECT_FALSE(policy.Matches(other, stats));
    EXPECT_EQ(stats.count, 1u);
    EXPECT_EQ(stats.mean, 0.0);
}

TEST(AaTagMatchingPolicy, WildcardsPlayNoPartInRequiredStates) {
    AaTagMatchingPolicy policy(Tag({{L"aastate", Wanted(L"focus*")}}));
    Texts texts{{L"aastate", L"focusable"}};
    ScoreStatistics stats;
    EXPECT_FALSE(policy.Matches(texts, stats));
}

TEST(AaTagMatchingPolicy, FuzzyStatesGoThroughTheFuzzyMatcherOnTheWholeText) {
    AaTagMatchingPolicy policy(Tag({{L"aastate", Wanted(L"focusable, selectd", MatchingTypeFuzzy, 0.5)}}));
    EXPECT_EQ(policy.GetAttributeCount(), 1u);
    Texts texts{{L"aastate", L"focusable, selected"}};
    ScoreStatistics stats;
    EXPECT_TRUE(policy.Matches(texts, stats));
    EXPECT_GT(stats.mean, 0.5);
    EXPECT_LT(stats.mean, 1.0);
}

TEST(AaTagMatchingPolicy, EmptyRequiredStatesAreNoTestAtAll) {
    AaTagMatchingPolicy policy(Tag({{L"aastate", Wanted(L" , ")}}));
    EXPECT_EQ(policy.GetAttributeCount(), 0u);
    Texts texts{};
    ScoreStatistics stats;
    EXPECT_TRUE(policy.Matches(texts, stats));
    EXPECT_THAT(texts.reads, IsEmpty());
    EXPECT_EQ(stats.count, 0u);
}

TEST(AaTagMatchingPolicy, ADisabledAttributeIsNotCountedAndMayLeaveNothingToTest) {
    EXPECT_EQ(AaTagMatchingPolicy(Tag({{L"name", Wanted(L"OK")}, {L"role", Wanted(L"push button")}})).GetAttributeCount(), 2u);
    EXPECT_EQ(AaTagMatchingPolicy(Tag({{L"name", Wanted(L"OK", 1, 1.0, false)}, {L"role", Wanted(L"push button")}})).GetAttributeCount(), 1u);
    EXPECT_EQ(AaTagMatchingPolicy(Tag({{L"name", Wanted(L"OK", 1, 1.0, false)}})).GetAttributeCount(), 0u);
    EXPECT_EQ(AaTagMatchingPolicy(Tag({{L"aastate", Wanted(L"focused", 1, 1.0, false)}})).GetAttributeCount(), 0u);
}

TEST(AaTagMatchingPolicy, IdxIsAPositionAndNoTest) {
    AaTagMatchingPolicy policy(Tag({{L"idx", std::make_shared<NumberValue>(3)}}));
    EXPECT_EQ(policy.GetAttributeCount(), 0u);
}

TEST(AaTagMatchingPolicy, AttributesAreReadInTheOrderOfTestingWithRequiredStatesLast) {
    AaTagMatchingPolicy policy(Tag({{L"rowName", Wanted(L"*")},
                                    {L"aastate", Wanted(L"focused")},
                                    {L"helpText", Wanted(L"*")},
                                    {L"text", Wanted(L"*")},
                                    {L"virtualname", Wanted(L"*")},
                                    {L"labeledby", Wanted(L"*")},
                                    {L"automationid", Wanted(L"*")},
                                    {L"name", Wanted(L"*")},
                                    {L"role", Wanted(L"*")}}));
    EXPECT_EQ(policy.GetAttributeCount(), 9u);
    Texts texts{{L"aastate", L"focused"}};
    ScoreStatistics stats;
    EXPECT_TRUE(policy.Matches(texts, stats));
    EXPECT_EQ(stats.count, 9u);
    EXPECT_THAT(texts.reads, ElementsAre(L"role", L"name", L"automationid", L"labeledby", L"virtualname", L"text", L"helpText", L"rowName", L"aastate"));
}

TEST(AaTagMatchingPolicy, StatesOfAnotherMatchingTypeAreTestedBeforeTheRowName) {
    AaTagMatchingPolicy policy(Tag({{L"rowName", Wanted(L"*")}, {L"aastate", Wanted(L".*", MatchingTypeRegex)}}));
    Texts texts{};
    ScoreStatistics stats;
    EXPECT_TRUE(policy.Matches(texts, stats));
    EXPECT_THAT(texts.reads, ElementsAre(L"aastate", L"rowName"));
}

TEST(AaTagMatchingPolicy, AfterTheFirstFailureNothingMoreIsRead) {
    AaTagMatchingPolicy policy(Tag({{L"role", Wanted(L"push button")}, {L"name", Wanted(L"OK")}, {L"aastate", Wanted(L"focused")}}));
    Texts texts{{L"role", L"push button"}, {L"name", L"Cancel"}, {L"aastate", L"focused"}};
    ScoreStatistics stats;
    EXPECT_FALSE(policy.Matches(texts, stats));
    EXPECT_THAT(texts.reads, ElementsAre(L"role", L"name"));
    EXPECT_EQ(stats.count, 2u);
    EXPECT_EQ(stats.mean, 0.5);
}

TEST(AaTagMatchingPolicy, ATagOfAnotherTechnologyIsJudgedByTheNamesThatItShares) {
    auto tag = std::make_shared<UiAutoTag>();
    tag->SetAttribute(L"role", Wanted(L"button"));
    tag->SetAttribute(L"cls", Wanted(L"Button"));
    AaTagMatchingPolicy policy(tag);
    EXPECT_EQ(policy.GetAttributeCount(), 1u);
}

TEST(AaTagMatchingPolicy, AMissingTagHasNothingToTest) { EXPECT_EQ(AaTagMatchingPolicy(nullptr).GetAttributeCount(), 0u); }

}  // namespace
}  // namespace Zorvex::Search
