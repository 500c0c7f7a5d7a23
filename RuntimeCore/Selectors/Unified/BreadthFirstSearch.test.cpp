#include "RuntimeCore/Selectors/Unified/BreadthFirstSearch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "RuntimeCore/Selectors/Unified/SearchResultSequence.h"
#include "RuntimeCore/Selectors/Values/AttributeNames.h"
#include "RuntimeCore/Selectors/Values/StaticSelectorTagBase.h"
#include "tests/Support/LogCapture.h"
#include "tests/Support/SearchTree.h"

namespace Zorvex::Testing {
namespace {

using Search::ResultPolicy;
using Search::SelectorEntry;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::shared_ptr<StringValue> Disabled(const wchar_t* text) {
    auto value = std::make_shared<StringValue>(text);
    value->SetEnabled(false);
    return value;
}

// Root 0 with children a1, b2, a3; a1 has b4, a5; b2 has b6; b6 has a7.
SearchTree Family() {
    SearchTree tree;
    for (const wchar_t* label : {L"a", L"b", L"a"}) tree.Add(0, label);
    tree.Add(1, L"b");
    tree.Add(1, L"a");
    tree.Add(2, L"b");
    tree.Add(6, L"a");
    return tree;
}

// ---- The walk ----

TEST(BreadthFirstSearch, VisitsLevelByLevelAndNeverTheRoot) {
    const SearchTree tree = Family();
    SearchIn(tree, {Entry({LabelTag(L"nowhere")})});
    EXPECT_THAT(tree.visited, ElementsAre(1, 2, 3, 4, 5, 6, 7));
    EXPECT_THAT(tree.enumerated, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
}

TEST(BreadthFirstSearch, WithNoTimeAtAllNoChildIsFetchedAndNothingIsFound) {
    const SearchTree tree = Family();
    const auto results = SearchIn(tree, {Entry({LabelTag(L"a")}), Entry({LabelTag(L"b")})}, 0);
    EXPECT_THAT(tree.visited, IsEmpty());
    EXPECT_THAT(tree.reads, IsEmpty());
    ASSERT_EQ(results.size(), 2u);
    for (const auto& result : results) {
        EXPECT_TRUE(result.results.empty());
        ASSERT_NE(result.error, nullptr);
        EXPECT_TRUE(result.error->Equals(Search::ElementNotFoundError()));
    }
}

TEST(BreadthFirstSearch, WithoutSelectorsTheWalkEndsAtTheFirstChild) {
    const SearchTree tree = Family();
    EXPECT_TRUE(SearchIn(tree, {}).empty());
    EXPECT_THAT(tree.visited, ElementsAre(1));
}

TEST(BreadthFirstSearch, ARootWithoutChildrenEndsWithStartAndEndLogged) {
    LogCapture log(L"INFO");
    const SearchTree tree;
    const auto results = SearchIn(tree, {Entry({LabelTag(L"a")})});
    EXPECT_NE(results[0].error, nullptr);
    ASSERT_EQ(log.Lines().size(), 2u) << log.Text();
    EXPECT_THAT(log.Lines()[0], ::testing::MatchesRegex("I .*BFS Start"));
    EXPECT_THAT(log.Lines()[1], ::testing::MatchesRegex("I .*BFS End"));
}

TEST(BreadthFirstSearch, ASimpleElementIsMatchedButNotEntered) {
    SearchTree tree = Family();
    tree[1].simple = true;
    const auto results = SearchIn(tree, {Entry({LabelTag(L"a")})});
    EXPECT_THAT(NodesOf(results[0].results), ElementsAre(1, 3, 7));
    EXPECT_THAT(tree.enumerated, ElementsAre(0, 2, 3, 6, 7));
}

TEST(BreadthFirstSearch, OneWalkServesAllSelectorsAndAnswersInTheirOrder) {
    const SearchTree tree = Family();
    const auto results = SearchIn(tree, {Entry({LabelTag(L"b")}), Entry({LabelTag(L"nowhere")}), Entry({LabelTag(L"a")})});
    ASSERT_EQ(results.size(), 3u);
    EXPECT_THAT(NodesOf(results[0].results), ElementsAre(2, 4, 6));
    EXPECT_NE(results[1].error, nullptr);
    EXPECT_THAT(NodesOf(results[2].results), ElementsAre(1, 3, 5, 7));
    EXPECT_EQ(results[0].error, nullptr);
    EXPECT_EQ(results[2].error, nullptr);
    EXPECT_EQ(tree.visited.size(), 7u);
}

TEST(BreadthFirstSearch, TwoSelectorsThatTestOneAttributeReadItOnce) {
    const SearchTree tree = Family();
    SearchIn(tree, {Entry({LabelTag(L"a")}), Entry({LabelTag(L"b")})});
    EXPECT_EQ(tree.reads.size(), 7u);
}

TEST(BreadthFirstSearch, TheWalkEndsWhenTheLastSelectorIsDone) {
    const SearchTree tree = Family();
    SelectorEntry first = Entry({LabelTag(L"b")});
    first.options.maxResults = 1;
    SelectorEntry later = Entry({LabelTag(L"b", 2)});
    const auto results = SearchIn(tree, {first, later});
    EXPECT_THAT(NodesOf(results[0].results), ElementsAre(2));
    EXPECT_THAT(NodesOf(results[1].results), ElementsAre(4));
    EXPECT_THAT(tree.visited, ElementsAre(1, 2, 3, 4));
}

TEST(BreadthFirstSearch, ASelectorThatIsDoneReadsNothingMore) {
    const SearchTree tree = Family();
    SelectorEntry role = Entry({LabelTag(L"a")});
    role.options.maxResults = 1;
    const SelectorEntry fuzzy = Entry({FuzzyTag(0, 1.0)});
    SearchIn(tree, {role, fuzzy});
    EXPECT_THAT(tree.reads, ElementsAre("1role", "1name", "2name", "3name", "4name", "5name", "6name", "7name"));
}

TEST(BreadthFirstSearch, OneSelectorsWishToGoDeeperQueuesAChildForAll) {
    const SearchTree tree = Family();
    const auto results = SearchIn(tree, {Entry({LabelTag(L"nowhere")}, 0), Entry({LabelTag(L"b")})});
    EXPECT_EQ(tree.visited.size(), 7u);
    EXPECT_EQ(results[1].results.size(), 3u);
}

TEST(BreadthFirstSearch, EveryElementHasOneIdOfItsOwnForAllSelectors) {
    const SearchTree tree = Family();
    Search::SetSearchResultSequence(101);
    const auto results = SearchIn(tree, {Entry({LabelTag(L"")}), Entry({LabelTag(L"")})});
    std::vector<std::int64_t> ids;
    for (const auto& result : results[0].results) ids.push_back(result.id);
    EXPECT_THAT(ids, ElementsAre(102, 103, 104, 105, 106, 107, 108));
    EXPECT_EQ(results[1].results[3].id, 105);
    EXPECT_EQ(Search::GetSearchResultSequence(), 109);
}

// ---- Limits, idx and policies ----

TEST(SelectorMatching, TheThirdMatchInVisitingOrderAnswersIdxThreeAndEndsTheWalk) {
    LogCapture log(L"INFO");
    const SearchTree tree = Family();
    const auto results = SearchIn(tree, {Entry({LabelTag(L"a", 3)})});
    EXPECT_THAT(NodesOf(results[0].results), ElementsAre(5));
    EXPECT_EQ(results[0].limit, 1u);
    EXPECT_THAT(tree.visited, ElementsAre(1, 2, 3, 4, 5));
    EXPECT_EQ(log.Count("Searching for IDX = 3"), 1u);
    EXPECT_EQ(log.Count("Found result for IDX = "), 3u);
    EXPECT_TRUE(log.Contains("Found result for IDX = 1"));
    EXPECT_TRUE(log.Contains("Found result for IDX = 3"));
}

TEST(SelectorMatching, ALimitOfTwoKeepsTheFirstTwoPerfectCandidatesAndEndsTheWalkThere) {
    const SearchTree tree = Family();
    SelectorEntry entry = Entry({LabelTag(L"a")});
    entry.options.maxResults = 2;
    const auto results = SearchIn(tree, {entry});
    EXPECT_THAT(NodesOf(results[0].results), ElementsAre(1, 3));
    EXPECT_EQ(results[0].limit, 2u);
    EXPECT_THAT(tree.visited, ElementsAre(1, 2, 3));
}

TEST(SelectorMatching, UnderBestMatchALaterCandidateWithAHigherScoreReplacesTheEarlier) {
    SearchTree tree = Family();
    for (int node = 1; node <= 7; ++node) tree[node].resemblance = {0.5};
    tree[5].resemblance = {0.75};
    SelectorEntry entry = Entry({FuzzyTag(0, 0.3)});
    entry.options.maxResults = 1;
    entry.options.resultPolicy = ResultPolicy::BestMatch;
    EXPECT_THAT(NodesOf(SearchIn(tree, {entry})[0].results), ElementsAre(5));
    tree[5].resemblance = {0.5};
    EXPECT_THAT(NodesOf(SearchIn(tree, {entry})[0].results), ElementsAre(1));
}

TEST(SelectorMatching, UnderFirstMatchALimitOfOneTakesTheFirstAcceptableCandidate) {
    SearchTree tree = Family();
    for (int node = 1; node <= 7; ++node) tree[node].resemblance = {0.5};
    tree[5].resemblance = {1.0};
    SelectorEntry entry = Entry({FuzzyTag(0, 0.3)});
    entry.options.maxResults = 1;
    EXPECT_THAT(NodesOf(SearchIn(tree, {entry})[0].results), ElementsAre(1));
}

TEST(SelectorMatching, PoliciesAboveOneIgnoreIdx) {
    const SearchTree tree = Family();
    SelectorEntry entry = Entry({LabelTag(L"a", 2)});
    entry.options.resultPolicy = ResultPolicy::IgnoreIndex;
    EXPECT_THAT(NodesOf(SearchIn(tree, {entry})[0].results), ElementsAre(1, 3, 5, 7));
    entry.options.resultPolicy = static_cast<ResultPolicy>(0xFFFFFFFF);
    EXPECT_EQ(SearchIn(tree, {entry})[0].results.size(), 4u);
}

TEST(SelectorMatching, ATagWithOnlyIdxFitsEveryElementWithAFullScore) {
    const SearchTree tree = Family();
    const auto results = SearchIn(tree, {Entry({LabelTag(L"", 4)})});
    ASSERT_THAT(NodesOf(results[0].results), ElementsAre(4));
    EXPECT_EQ(results[0].results[0].stats.count, 1u);
    EXPECT_EQ(results[0].results[0].score, 1.0);
    EXPECT_THAT(tree.reads, IsEmpty());
}

TEST(SelectorMatching, ADisabledIdxIsIgnored) {
    const SearchTree tree = Family();
    auto tag = LabelTag(L"a", 3);
    tag->GetAttribute(L"idx")->SetEnabled(false);
    EXPECT_EQ(SearchIn(tree, {Entry({tag})})[0].results.size(), 4u);
}

// A tag whose idx is a text, as no tag of this library has it but another component's could.
class TextIndexTag final : public StaticSelectorTagBase<TextIndexTag, 2> {
public:
    static constexpr std::uint32_t kSerializationId = 0;
    static constexpr TagKind kTagKind = TagKind::Aa;
    static const AttributeTable& StaticTable() {
        static const AttributeTable table = BuildTable({{AttributeNames::Role, AttributeValueKind::String}, {AttributeNames::Idx, AttributeValueKind::String}});
        return table;
    }
};

TEST(SelectorMatching, AnIdxThatIsNoNumberMatchesNoCandidate) {
    LogCapture log(L"INFO");
    const SearchTree tree = Family();
    auto tag = std::make_shared<TextIndexTag>();
    tag->SetAttribute(L"role", std::make_shared<StringValue>(L"a"));
    tag->SetAttribute(L"idx", std::make_shared<StringValue>(L"1"));
    ASSERT_NE(tag->GetAttribute(L"idx"), nullptr);
    const auto results = SearchIn(tree, {Entry({tag})});
    EXPECT_TRUE(results[0].results.empty());
    EXPECT_NE(results[0].error, nullptr);
    EXPECT_EQ(results[0].limit, 1u);
    EXPECT_EQ(tree.visited.size(), 7u);
    EXPECT_TRUE(log.Contains("Searching for IDX = -9223372036854775808"));
}

TEST(SelectorMatching, AnIdxOnAnEarlierTagLeavesOneParent) {
    const SearchTree tree = Family();
    const auto results = SearchIn(tree, {Entry({LabelTag(L"b", 2), LabelTag(L"")}), Entry({LabelTag(L"b", 1), LabelTag(L"")})});
    EXPECT_NE(results[0].error, nullptr);  // the second b has no children
    EXPECT_THAT(NodesOf(results[1].results), ElementsAre(6, 7));
}

TEST(SelectorMatching, TheLimitBindsAtEveryLevelUnlessATagIsFuzzyOrSaysOtherwise) {
    SearchTree tree;
    for (int i = 0; i < 3; ++i) tree.Add(tree.Add(0, L"a"), L"b");
    SelectorEntry entry = Entry({LabelTag(L"a"), LabelTag(L"b")});
    entry.options.maxResults = 2;
    entry.options.keepIntermediateAlways = true;
    EXPECT_EQ(SearchIn(tree, {entry})[0].intermediate[0].limit, 2u);
    entry.tags[0]->SetLimitsEveryLevel(false);
    auto results = SearchIn(tree, {entry});
    EXPECT_EQ(results[0].intermediate[0].limit, 50'000'000u);
    EXPECT_EQ(results[0].intermediate[0].results.size(), 3u);
    entry.tags[0] = FuzzyTag(0, 0.5);
    results = SearchIn(tree, {entry});
    EXPECT_EQ(results[0].intermediate[0].limit, 50'000'000u);
    EXPECT_EQ(results[0].limit, 2u);
}

TEST(SelectorMatching, ALimitOfNothingFindsNothing) {
    const SearchTree tree = Family();
    SelectorEntry entry = Entry({LabelTag(L"a")});
    entry.options.maxResults = 0;
    const auto results = SearchIn(tree, {entry});
    EXPECT_NE(results[0].error, nullptr);
    EXPECT_EQ(results[0].limit, 0u);
    EXPECT_THAT(tree.reads, IsEmpty());
}

// ---- Scopes ----

TEST(SelectorMatching, WithChildrenOnlyAnElementWhoseParentDidNotMatchIsRefused) {
    const SearchTree tree = Family();
    const auto results = SearchIn(tree, {Entry({LabelTag(L"a"), LabelTag(L"b")}, 0), Entry({LabelTag(L"b"), LabelTag(L"a")}, 0)});
    EXPECT_THAT(NodesOf(results[0].results), ElementsAre(4));
    EXPECT_TRUE(results[1].results.empty());  // a7 hangs below b6, which is no child of the root
    EXPECT_NE(results[1].error, nullptr);
}

TEST(SelectorMatching, WithChildrenOnlyAnElementThatDoesNotMatchIsNotEntered) {
    const SearchTree tree = Family();
    SearchIn(tree, {Entry({LabelTag(L"a"), LabelTag(L"b")}, 0)});
    EXPECT_THAT(tree.visited, ElementsAre(1, 2, 3, 4, 5));
}

TEST(SelectorMatching, WithTopLevelScopeAndOneTagNoGrandchildIsVisited) {
    const SearchTree tree = Family();
    const auto results = SearchIn(tree, {Entry({LabelTag(L"b")}, 2)});
    EXPECT_THAT(NodesOf(results[0].results), ElementsAre(2));
    EXPECT_THAT(tree.visited, ElementsAre(1, 2, 3));
}

TEST(SelectorMatching, WithTopLevelScopeTheFirstTagFitsChildrenOfTheRootOnlyAndLaterOnesAnyDepth) {
    const SearchTree tree = Family();
    const auto results = SearchIn(tree, {Entry({LabelTag(L"b"), LabelTag(L"a")}, 2), Entry({LabelTag(L"a"), LabelTag(L"a")}, 2)});
    EXPECT_THAT(NodesOf(results[0].results), ElementsAre(7));
    EXPECT_THAT(NodesOf(results[1].results), ElementsAre(5));
}

TEST(SelectorMatching, WithAnUnknownScopeAnElementThatDoesNotMatchIsNotEntered) {
    const SearchTree tree = Family();
    const auto results = SearchIn(tree, {Entry({LabelTag(L"b")}, 77)});
    EXPECT_THAT(NodesOf(results[0].results), ElementsAre(2, 6));
    EXPECT_THAT(tree.visited, ElementsAre(1, 2, 3, 6, 7));
}

// ---- Parents and scores ----

TEST(SelectorMatching, AResultNamesTheParentAndCarriesTheScoreOfTheChain) {
    SearchTree tree;
    tree[tree.Add(0, L"a")].resemblance = {0.5};
    tree[tree.Add(1, L"b")].resemblance = {1.0};
    Search::SetSearchResultSequence(1);
    const auto results = SearchIn(tree, {Entry({FuzzyTag(0, 0.4), LabelTag(L"b")})});
    ASSERT_EQ(results[0].results.size(), 1u);
    const SearchTreeResult& found = results[0].results[0];
    EXPECT_EQ(found.id, 3);
    EXPECT_EQ(found.parentId, 2);
    EXPECT_EQ(found.score, 1.0);
    EXPECT_EQ(found.stats.count, 2u);
    EXPECT_EQ(found.stats.mean, 0.75);
}

TEST(SelectorMatching, OnATieTheNearestOfTwoParentsWins) {
    SearchTree tree;
    tree.Add(tree.Add(tree.Add(0, L"a"), L"a"), L"b");
    const auto results = SearchIn(tree, {Entry({LabelTag(L"a"), LabelTag(L"b")})});
    ASSERT_EQ(results[0].results.size(), 1u);
    EXPECT_EQ(results[0].results[0].parentId, results[0].results[0].id - 1);
}

TEST(SelectorMatching, TheInheritedScoreIsMergedAtTheFirstTag) {
    const SearchTree tree = Family();
    SelectorEntry entry = Entry({LabelTag(L"a", 1)});
    entry.inheritedScore.Add(0.25);
    entry.inheritedScore.Add(0.25);
    const auto results = SearchIn(tree, {entry});
    ASSERT_EQ(results[0].results.size(), 1u);
    EXPECT_EQ(results[0].results[0].parentId, 0);
    EXPECT_EQ(results[0].results[0].score, 1.0);
    EXPECT_EQ(results[0].results[0].stats.count, 3u);
    EXPECT_EQ(results[0].results[0].stats.mean, 0.5);
}

TEST(SelectorMatching, AParentThatWasPushedOutLosesItsChildrenAndIsLogged) {
    // Two candidates for the first tag, of which the better one comes second; the limit leaves room for one.
    SearchTree tree;
    tree[tree.Add(0, L"a")].resemblance = {0.5};
    tree[tree.Add(0, L"a")].resemblance = {0.75};
    tree.Add(1, L"b");
    LogCapture log(L"INFO");
    SelectorEntry entry = Entry({FuzzyTag(0, 0.4), LabelTag(L"b")}, 0);
    entry.options.resultPolicy = ResultPolicy::BestMatch;
    entry.tags[0]->SetAttribute(L"idx", nullptr);
    // A resemblance below the level 1.0 by normal matching type isn't fuzzy to the limit.
    entry.tags[0]->GetAttribute(L"name")->SetMatchingType(MatchingTypeNormal);
    entry.options.maxResults = 1;
    const auto results = SearchIn(tree, {entry});
    EXPECT_NE(results[0].error, nullptr);
    EXPECT_TRUE(log.Contains("Parent score not found. Failed to find the parent based on the id; Possible that it was pushed out "
                             "by better results if the size limit was small"))
        << log.Text();
}

TEST(SelectorMatching, ABranchThatCanNoLongerReachTheMinimumIsGivenUp) {
    // With 0.5 on one attribute and one more to come the rest would need (2 * 0.9 - 0.5) / 1 = 1.3.
    SearchTree tree;
    tree[tree.Add(0, L"a")].resemblance = {0.5};
    tree.Add(1, L"b");
    SelectorEntry entry = Entry({FuzzyTag(0, 0.1), LabelTag(L"b")}, 0);
    entry.options.minimumScore = 0.9;
    EXPECT_NE(SearchIn(tree, {entry})[0].error, nullptr);
    EXPECT_THAT(tree.visited, ElementsAre(1));
    // With 0.75 it is reachable: (1.5 - 0.5) / 1 = 1.0.
    tree.ForgetNotes();
    entry.options.minimumScore = 0.75;
    EXPECT_THAT(NodesOf(SearchIn(tree, {entry})[0].results), ElementsAre(2));
}

TEST(SelectorMatching, AttributesThatAreSearchedElsewhereKeepABranchAlive) {
    SearchTree tree;
    tree[tree.Add(0, L"a")].resemblance = {0.5};
    tree.Add(1, L"b");
    SelectorEntry entry = Entry({FuzzyTag(0, 0.1), LabelTag(L"b")}, 0);
    entry.options.minimumScore = 0.9;
    entry.pendingAttributeCount = 3;  // (5 * 0.9 - 0.5) / 4 = 1.0
    SearchIn(tree, {entry});
    EXPECT_THAT(tree.visited, ElementsAre(1, 2));
    tree.ForgetNotes();
    entry.pendingAttributeCount = std::numeric_limits<std::uint32_t>::max();
    SearchIn(tree, {entry});
    EXPECT_THAT(tree.visited, ElementsAre(1, 2));
}

TEST(SelectorMatching, TheLastTagMustReachTheMinimumItself) {
    SearchTree tree;
    tree[tree.Add(0, L"a")].resemblance = {0.5};
    tree[tree.Add(0, L"a")].resemblance = {0.9};
    SelectorEntry entry = Entry({FuzzyTag(0, 0.1)});
    entry.options.minimumScore = 0.9;
    EXPECT_THAT(NodesOf(SearchIn(tree, {entry})[0].results), ElementsAre(2));
}

TEST(SelectorMatching, AMinimumOfExactlyZeroComparesNoScores) {
    SearchTree tree;
    tree[tree.Add(0, L"a")].resemblance = {-5.0};
    EXPECT_EQ(SearchIn(tree, {Entry({FuzzyTag(0, -10.0)})})[0].results.size(), 1u);
    SelectorEntry entry = Entry({FuzzyTag(0, -10.0)});
    entry.options.minimumScore = 1e-300;
    EXPECT_NE(SearchIn(tree, {entry})[0].error, nullptr);
}

// ---- Visibility ----

TEST(SelectorMatching, HiddenElementsAreResultsUnlessTheOptionsSayOtherwise) {
    SearchTree tree = Family();
    tree[1].visible = tree[7].visible = false;
    SelectorEntry entry = Entry({LabelTag(L"a")});
    EXPECT_THAT(NodesOf(SearchIn(tree, {entry})[0].results), ElementsAre(1, 3, 5, 7));
    entry.options.acceptHidden = false;
    EXPECT_THAT(NodesOf(SearchIn(tree, {entry})[0].results), ElementsAre(3, 5));
}

TEST(SelectorMatching, AHiddenElementIsStillAParent) {
    SearchTree tree = Family();
    tree[1].visible = false;
    SelectorEntry entry = Entry({LabelTag(L"a"), LabelTag(L"b")});
    entry.options.acceptHidden = false;
    EXPECT_THAT(NodesOf(SearchIn(tree, {entry})[0].results), ElementsAre(4));
}

TEST(SelectorMatching, UnderTopLevelScopeHiddenChildrenOfTheRootAreRefusedUnlessAllowed) {
    SearchTree tree = Family();
    tree[1].visible = false;
    SelectorEntry entry = Entry({LabelTag(L"a")}, 2);
    EXPECT_THAT(NodesOf(SearchIn(tree, {entry})[0].results), ElementsAre(3));
    entry.options.acceptHiddenAtFirstLevel = true;
    EXPECT_THAT(NodesOf(SearchIn(tree, {entry})[0].results), ElementsAre(1, 3));
}

// ---- Collecting ----

TEST(SelectorMatching, WithoutTagsThereIsNoErrorAndAnEmptyListWithoutALimit) {
    const SearchTree tree = Family();
    const auto results = SearchIn(tree, {Entry({})});
    EXPECT_EQ(results[0].limit, 50'000'000u);
    EXPECT_TRUE(results[0].results.empty());
    EXPECT_EQ(results[0].error, nullptr);
    EXPECT_TRUE(results[0].intermediate.empty());
    EXPECT_EQ(results[0].reserved, -1);
}

TEST(SelectorMatching, ResultsOfEarlierTagsAreReportedOnlyWhenAskedFor) {
    const SearchTree tree = Family();
    SelectorEntry entry = Entry({LabelTag(L"a"), LabelTag(L"b")});
    auto results = SearchIn(tree, {entry});
    ASSERT_EQ(results[0].intermediate.size(), 1u);
    EXPECT_TRUE(results[0].intermediate[0].results.empty());
    EXPECT_EQ(results[0].intermediate[0].limit, 50'000'000u);
    entry.options.keepIntermediateAlways = true;
    results = SearchIn(tree, {entry});
    EXPECT_THAT(NodesOf(results[0].intermediate[0].results), ElementsAre(1, 3, 5, 7));
}

TEST(SelectorMatching, AFailedSearchReportsHowFarItGotWhenAskedTo) {
    const SearchTree tree = Family();
    SelectorEntry entry = Entry({LabelTag(L"a"), LabelTag(L"nowhere")});
    EXPECT_TRUE(SearchIn(tree, {entry})[0].intermediate[0].results.empty());
    entry.options.keepIntermediateOnError = true;
    const auto results = SearchIn(tree, {entry});
    EXPECT_NE(results[0].error, nullptr);
    EXPECT_EQ(results[0].intermediate[0].results.size(), 4u);
    entry.tags[1] = LabelTag(L"b");
    EXPECT_TRUE(SearchIn(tree, {entry})[0].intermediate[0].results.empty());
}

TEST(SelectorMatching, EveryResultIsLocatedButOnlyTheLastTagsWithARectangle) {
    const SearchTree tree = Family();
    SelectorEntry entry = Entry({LabelTag(L"a"), LabelTag(L"b")});
    SearchIn(tree, {entry});
    EXPECT_THAT(tree.located, ElementsAre(1, 3, 5, 7));
    EXPECT_THAT(tree.locatedWithRectangle, ElementsAre(4));
    tree.ForgetNotes();
    entry.options.refreshLocation = false;
    SearchIn(tree, {entry});
    EXPECT_THAT(tree.located, ElementsAre(1, 3, 5, 7, 4));
    EXPECT_THAT(tree.locatedWithRectangle, IsEmpty());
}

TEST(SelectorMatching, AMissingTagFindsNothingInsteadOfEverything) {
    const SearchTree tree = Family();
    const auto results = SearchIn(tree, {Entry({nullptr}), Entry({LabelTag(L"a"), nullptr}), Entry({nullptr, LabelTag(L"a")})});
    for (const auto& result : results) {
        EXPECT_TRUE(result.results.empty());
        EXPECT_NE(result.error, nullptr);
    }
}

TEST(SelectorMatching, OptionsThatAreOnlyCarriedChangeNothing) {
    const SearchTree tree = Family();
    const SelectorEntry plain = Entry({LabelTag(L"a"), LabelTag(L"b")});
    SelectorEntry odd = plain;
    auto& options = odd.options;
    options.optionC = false;
    options.optionD = options.optionE = options.optionH = options.optionI = options.optionJ = true;
    options.optionF = options.optionG = options.optionK = options.optionL = options.optionM = 99;
    const auto results = SearchIn(tree, {plain, odd});
    EXPECT_EQ(NodesOf(results[0].results), NodesOf(results[1].results));
    EXPECT_EQ(results[0].limit, results[1].limit);
}

TEST(SelectorMatching, ADisabledAttributeIsNotTested) {
    const SearchTree tree = Family();
    auto tag = LabelTag(L"");
    tag->SetAttribute(L"role", Disabled(L"nowhere"));
    EXPECT_EQ(SearchIn(tree, {Entry({tag})})[0].results.size(), 7u);
    EXPECT_THAT(tree.reads, IsEmpty());
}

}  // namespace
}  // namespace Zorvex::Testing
